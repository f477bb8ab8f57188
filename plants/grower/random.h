// Random numbers that are the same on every machine.
//
// Generator: PCG32 of O'Neill, "PCG: A Family of Simple Fast Space-Efficient Statistically Good Algorithms for Random
// Number Generation", 2014. The standard library's distributions differ from one implementation to the next, so none
// of them is used.
#pragma once

#include <cstdint>

namespace grower {

/// A number and how far it strays from it, to both sides.
struct Spread {
    double mean = 0;
    double stray = 0;
};

class Random {
public:
    /// Generators of one seed and different streams give unrelated numbers.
    explicit Random(uint64_t seed, uint64_t stream = 0) : increment(stream * 2 + 1)
    {
        next();
        state += seed;
        next();
    }

    uint32_t next()
    {
        const uint64_t old = state;
        state = old * 6364136223846793005u + increment;
        const auto mixed = static_cast<uint32_t>(((old >> 18) ^ old) >> 27);
        const auto turn = static_cast<uint32_t>(old >> 59);
        return (mixed >> turn) | (mixed << ((32 - turn) & 31));
    }

    /// From 0 to below 1.
    double real() { return next() * (1.0 / 4294967296.0); }
    double between(double low, double high) { return low + (high - low) * real(); }
    double around(const Spread& spread) { return spread.mean + spread.stray * (2 * real() - 1); }
    bool chance(double probability) { return real() < probability; }
    /// From 0 to below `count`, which is above 0.
    uint32_t below(uint32_t count) { return static_cast<uint32_t>((uint64_t{next()} * count) >> 32); }

private:
    uint64_t state = 0;
    uint64_t increment;
};

} // namespace grower
