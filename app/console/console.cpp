#include "console/console.h"

#include "console/interrupt.h"

#include <algorithm>

namespace verdanth {

void Console::beginProgress(std::string_view text)
{
    clearLine();
    task = OneLine(text);
    if (!subject.empty()) task += ": " + OneLine(subject);
    shownPercent = -1;
    if (terminal)
        progress(0);
    else if (task != lastTask)
        *messageStream << "verdanth: " << task << '\n';
    lastTask = task;
}

void Console::progress(float fraction)
{
    const int percent = fraction >= 0 ? static_cast<int>(std::min(fraction, 1.0F) * 100) : 0;
    if (!terminal || percent == shownPercent) return;

    shownPercent = percent;
    const std::string text = task + "  " + std::to_string(percent) + " %";
    *messageStream << '\r' << text << std::flush;
    drawnLength = std::max(drawnLength, text.size());
}

void Console::clearLine()
{
    if (drawnLength > 0) *messageStream << '\r' << std::string(drawnLength, ' ') << '\r' << std::flush;
    drawnLength = 0;
}

void Console::line(std::string_view kind, std::string_view text)
{
    clearLine();
    *messageStream << "verdanth: " << kind;
    if (!subject.empty()) *messageStream << OneLine(subject) << ": ";
    *messageStream << OneLine(text) << std::endl;
}

void Console::message(std::string_view text)
{
    line("", text);
}

void Console::warning(std::string_view text)
{
    line("warning: ", text);
}

void Console::error(std::string_view text)
{
    line("error: ", text);
}

bool Console::isCancelled()
{
    return CaughtSignal() != 0;
}

std::string OneLine(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    return line;
}

} // namespace verdanth
