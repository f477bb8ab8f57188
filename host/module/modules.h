// The plug-in modules: shared libraries with an entry point, or entry points of this process.
//
// Modules are loaded first and started together, those of a higher priority before the others. Once its entry point has
// accepted the host, a library stays mapped to the end of the process: others may hold pointers into it.
#pragma once

#include "core/application.h"
#include "operatingsystem.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace host {

/// A module's one way in: an action and its three arguments.
using EntryPoint = Int32 (*)(Int32 action, void* first, void* second, void* third);

class Modules final : public ApplicationPart {
public:
    Modules();
    ~Modules() override;
    void end(Ending step) override;

    /// Opens a library and shows it the host. False, with a line on the console that names file and cause, if it is no
    /// module or does not want this host.
    bool load(const std::filesystem::path& file);
    /// The same with an entry point of this process. `file` is what the module is told as its own file.
    bool attach(EntryPoint entry, const Filename& file);

    /// Starts what was loaded, once. Modules that refuse their system start hear nothing more until they end.
    void start();
    /// Has the modules add to the menus; again whenever those are built anew.
    void buildMenus();
    /// To all started modules, the higher priority first.
    void send(Int32 id, void* data);

    size_t count() const { return modules.size(); }
    /// The folder of the module whose code stands at `address`; where that is not known, of the one being called.
    Filename folderOf(const void* address) const;

private:
    struct Module;

    Int32 call(Module& module, Int32 action, void* first = nullptr, void* second = nullptr, void* third = nullptr);
    Int32 sendTo(Module& module, Int32 id, void* data);
    void endModules();

    std::vector<std::unique_ptr<Module>> modules; // in order of loading, from the start on in order of priority
    const Module* called = nullptr;               // the one that is being called
    C4D_General general;
    OperatingSystem tables;
};

} // namespace host
