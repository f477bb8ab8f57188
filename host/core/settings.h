// What the host keeps for its user between runs: the preferences, and a container for each plug-in that asked for one.
//
// The file is read when a setting is first asked for and written at the end of the application.
#pragma once

#include "core/application.h"

#include <map>

namespace host {

class Settings final : public ApplicationPart {
public:
    /// Reads the application's settings file. What cannot be read of it is told on the console; the rest counts.
    Settings();
    void end(Ending step) override;

    /// The host's own; null if nothing is stored under the id.
    BaseContainer* plugin(Int32 id);
    /// With `merge` the entries of `values` join what is stored, else they replace it.
    void setPlugin(Int32 id, const BaseContainer& values, bool merge);
    BaseContainer& preferences() { return stored[kPreferences]; }

    /// False, with a line on the console, if the file cannot be written.
    bool save();

private:
    static constexpr Int32 kPreferences = 0; // no plug-in has this id

    std::map<Int32, BaseContainer> stored;
};

} // namespace host
