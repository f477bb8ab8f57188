// Well spread sample points that depend on pixel and sample number alone, so that a picture is the same whatever thread
// draws which part of it.
//
// Sobol's first two dimensions, scrambled and shuffled anew for each pair: Burley, "Practical Hash-based Owen
// Scrambling", 2020. A power of two samples a pixel spreads best.
#pragma once

#include <cstdint>

namespace verdanth {

struct SamplePoint {
    float u, v; // 0 to below 1
};

/// The bits of `value` mixed well.
inline uint32_t HashBits(uint32_t value)
{
    value ^= value >> 16;
    value *= 0x21F0AAADU;
    value ^= value >> 15;
    value *= 0x735A2D97U;
    return value ^ value >> 15;
}

class Sampler {
public:
    Sampler() = default;
    Sampler(uint32_t pixel, uint32_t sample);

    /// The next pair of this sample's path.
    SamplePoint next();
    /// A number that no other sample's path shares.
    uint32_t bits() const { return HashBits(seed ^ (index * 0x85EBCA6BU + 0x27D4EB2FU)); }

private:
    uint32_t seed = 0;
    uint32_t index = 0;
    uint32_t reversedIndex = 0;
};

} // namespace verdanth
