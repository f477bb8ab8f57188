// The line at the bottom of the main window: a text and a bar.
#pragma once

#include "core/application.h"

#include <string>

namespace host {

/// Written from any thread, kept on the main thread.
class StatusBar final : public ApplicationPart {
public:
    static constexpr Int32 kNoBar = -1;

    std::string text;
    Int32 percent = kNoBar;
    std::function<void()> onChange; // a front end's; may be empty
};

} // namespace host
