// Processor time for the lines that generators send through MessageHandler::debug.
#pragma once

#include <cstdint>
#include <ctime>

namespace vdt {

class Stopwatch {
public:
    /// Since the watch was made.
    int64_t milliseconds() const { return int64_t{std::clock() - start} * 1000 / CLOCKS_PER_SEC; }

private:
    std::clock_t start = std::clock();
};

} // namespace vdt
