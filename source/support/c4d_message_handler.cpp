#include "support/c4d_message_handler.h"

#include "support/text.h"

#include <algorithm>

void C4dMessageHandler::endProgress()
{
    StatusClear();
}

void C4dMessageHandler::beginProgress(std::string_view text)
{
    StatusSetText(ToHostString(text));
}

void C4dMessageHandler::progress(float fraction)
{
    // A file may lie about its size. No number counts as nothing done.
    const float percent = fraction > 0.0f ? std::min(fraction, 1.0f) * 100.0f : 0.0f;
    StatusSetBar(static_cast<Int32>(percent));
}

void C4dMessageHandler::message(std::string_view text)
{
    GePrint(ToHostString(text));
}

void C4dMessageHandler::warning(std::string_view text)
{
    message(text);
}

void C4dMessageHandler::error(std::string_view text)
{
    if (!showDialogs) return message(text);
    MessageDialog(ToHostString(text));
}

bool C4dMessageHandler::isCancelled()
{
    return thread && thread->TestBreak();
}
