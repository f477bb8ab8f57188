// The terminal: results to one stream, everything else to another.
//
// Problems are single lines that begin with the program's name and tell the file that they are about. Progress is one
// line that is drawn over itself on a terminal, and one plain line a task elsewhere.
#pragma once

#include "vdt/messages/message_handler.h"

#include <ostream>
#include <string>

namespace verdanth {

class Console final : public vdt::MessageHandler {
public:
    /// `isTerminal`: whether `messages` is one, so that a line may be drawn over.
    Console(std::ostream& results, std::ostream& messages, bool isTerminal)
        : resultStream(&results),
          messageStream(&messages),
          terminal(isTerminal)
    {
    }
    ~Console() override { clearLine(); }

    void endProgress() override { clearLine(); }
    void beginProgress(std::string_view text) override;
    void progress(float fraction) override;
    void message(std::string_view text) override;
    void warning(std::string_view text) override;
    void error(std::string_view text) override;
    void debug(std::string_view) override {}
    bool isCancelled() override;

    /// Where results go.
    std::ostream& out() { return *resultStream; }

    /// The file that messages are about from now on; empty for none.
    void setSubject(std::string file) { subject = std::move(file); }

private:
    void line(std::string_view kind, std::string_view text);
    void clearLine();

    std::ostream* resultStream;
    std::ostream* messageStream;
    bool terminal;
    std::string subject;
    std::string task;
    std::string lastTask; // a plain line is not repeated for each of many equal steps
    int shownPercent = -1;
    size_t drawnLength = 0;
};

/// `text` on one line: control characters, which could steer a terminal, become blanks.
std::string OneLine(std::string_view text);

} // namespace verdanth
