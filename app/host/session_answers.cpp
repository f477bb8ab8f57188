#include "host/session_answers.h"

#include "console/console.h"

namespace verdanth {

GEMB_R SessionAnswers::message(const std::string& text, GEMB flags)
{
    constexpr int kButtons = 0x0F; // the part of the flags that says which there are
    if ((flags & kButtons) == GEMB_YESNO) return GEMB_R_YES;
    console->message(text);
    return host::RefusingAnswer(flags);
}

} // namespace verdanth
