// The one channel through which the library tells of progress and problems and learns that it should stop.
//
// The library throws nothing of its own. What goes wrong shows in a result; what a person should know of it goes
// through the handler that the caller lends for the length of the call. All texts are UTF-8.
#pragma once

#include <string_view>

namespace vdt {

class MessageHandler {
public:
    virtual ~MessageHandler() = default;

    virtual void endProgress() = 0;
    virtual void beginProgress(std::string_view text) = 0;
    virtual void progress(float fraction) = 0; // 0 to 1
    virtual void message(std::string_view text) = 0;
    virtual void warning(std::string_view text) = 0;
    virtual void error(std::string_view text) = 0;
    virtual void debug(std::string_view text) = 0; // timings and reasons, for developers

    /// Asked now and then during long work; true ends that work as soon as it can be ended cleanly.
    virtual bool isCancelled() = 0;
};

/// For callers who want to hear nothing.
class NullMessageHandler final : public MessageHandler {
public:
    void endProgress() override {}
    void beginProgress(std::string_view) override {}
    void progress(float) override {}
    void message(std::string_view) override {}
    void warning(std::string_view) override {}
    void error(std::string_view) override {}
    void debug(std::string_view) override {}
    bool isCancelled() override { return false; }
};

} // namespace vdt
