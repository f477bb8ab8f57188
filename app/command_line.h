// The program behind main(): reads the arguments, runs one command, gives the exit status.
#pragma once

#include "console/console.h"

#include <string>
#include <vector>

namespace verdanth {

/// `arguments` without the program's own name.
int RunCommandLine(std::vector<std::string> arguments, Console& console);

} // namespace verdanth
