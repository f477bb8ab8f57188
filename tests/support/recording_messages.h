// A message handler that keeps what it is told.
#pragma once

#include "vdt/messages/message_handler.h"

#include <string>
#include <vector>

namespace vdt::test {

class RecordingMessages final : public MessageHandler {
public:
    void endProgress() override { ++progressEnds; }
    void beginProgress(std::string_view text) override { progressBegins.emplace_back(text); }
    void progress(float fraction) override { fractions.push_back(fraction); }
    void message(std::string_view text) override { messages.emplace_back(text); }
    void warning(std::string_view text) override { warnings.emplace_back(text); }
    void error(std::string_view text) override { errors.emplace_back(text); }
    void debug(std::string_view text) override { debugs.emplace_back(text); }
    bool isCancelled() override { return cancelAfter >= 0 && asked++ >= cancelAfter; }

    std::vector<std::string> progressBegins, messages, warnings, errors, debugs;
    std::vector<float> fractions;
    int progressEnds = 0;
    int cancelAfter = -1; // how often isCancelled() answers no; negative for always
    int asked = 0;
};

} // namespace vdt::test
