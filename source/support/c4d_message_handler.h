// What the model library has to say, told through the host: progress in the status bar, texts on the console.
#pragma once

#include "c4d.h"
#include "vdt/messages/message_handler.h"

class C4dMessageHandler final : public vdt::MessageHandler {
public:
    explicit C4dMessageHandler(BaseThread* runsOn = nullptr, Bool mayAsk = false) : thread(runsOn), showDialogs(mayAsk)
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

    BaseThread* thread; // the host's, which does the work; null: nobody can stop it
    Bool showDialogs;   // errors come up in boxes: for the main thread only
};
