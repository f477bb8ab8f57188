// What the model library has to say, told through the host: progress in the status bar, texts on the console.
#pragma once

#include "c4d.h"
#include "vdt/messages/message_handler.h"

class C4dMessageHandler final : public vdt::MessageHandler {
public:
    /// `thread` is the host's thread that does the work, null if nobody can stop it. With `showDialogs` errors come up
    /// in boxes, which is for the main thread only.
    explicit C4dMessageHandler(BaseThread* thread = nullptr, Bool showDialogs = false)
        : thread(thread),
          showDialogs(showDialogs)
    {
    }

    void endProgress() override;
    void beginProgress(std::string_view text) override;
    void progress(float fraction) override;
    void message(std::string_view text) override;
    void warning(std::string_view text) override;
    void error(std::string_view text) override;
    void debug(std::string_view) override {}
    bool isCancelled() override;

    BaseThread* thread;
    Bool showDialogs;
};
