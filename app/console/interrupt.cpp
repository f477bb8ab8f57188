#include "console/interrupt.h"

#include <csignal>

namespace verdanth {
namespace {

volatile std::sig_atomic_t g_caughtSignal = 0;

void noteSignal(int number)
{
    g_caughtSignal = number;
    std::signal(number, SIG_DFL);
}

} // namespace

void CatchInterrupts()
{
    std::signal(SIGINT, noteSignal);
    std::signal(SIGTERM, noteSignal);
}

int CaughtSignal()
{
    return g_caughtSignal;
}

} // namespace verdanth
