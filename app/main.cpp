#include "command_line.h"
#include "console/interrupt.h"

#include <iostream>
#include <unistd.h>

int main(int count, char** values)
{
    verdanth::CatchInterrupts();
    verdanth::Console console(std::cout, std::cerr, isatty(STDERR_FILENO) != 0);
    return verdanth::RunCommandLine({values + 1, values + count}, console);
}
