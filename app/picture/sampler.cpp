#include "picture/sampler.h"

namespace verdanth {
namespace {

uint32_t reversedBits(uint32_t x)
{
    x = x << 16 | x >> 16;
    x = (x & 0x00FF00FFU) << 8 | (x & 0xFF00FF00U) >> 8;
    x = (x & 0x0F0F0F0FU) << 4 | (x & 0xF0F0F0F0U) >> 4;
    x = (x & 0x33333333U) << 2 | (x & 0xCCCCCCCCU) >> 2;
    return (x & 0x55555555U) << 1 | (x & 0xAAAAAAAAU) >> 1;
}

// Turns each bit of the reversed number over depending on those below it.
uint32_t permuted(uint32_t x, uint32_t seed)
{
    x += seed;
    x ^= x * 0x6C50B47CU;
    x ^= x * 0xB82F1E52U;
    x ^= x * 0xC7AFE638U;
    return x ^ x * 0x8D22F6E6U;
}

uint32_t scrambled(uint32_t x, uint32_t seed)
{
    return reversedBits(permuted(reversedBits(x), seed));
}

uint32_t sobolSecond(uint32_t index)
{
    uint32_t result = 0;
    for (uint32_t direction = 1U << 31; index; index >>= 1, direction ^= direction >> 1)
        if (index & 1) result ^= direction;
    return result;
}

float unitFloat(uint32_t bits)
{
    return static_cast<float>(bits >> 8) * 0x1p-24F;
}

} // namespace

SamplePoint Sampler::next()
{
    seed = HashBits(seed + 0x9E3779B9U);
    const uint32_t shuffled = scrambled(index, seed);
    return {unitFloat(scrambled(reversedBits(shuffled), HashBits(seed ^ 0x68E31DA4U))),
            unitFloat(scrambled(sobolSecond(shuffled), HashBits(seed ^ 0xB5297A4DU)))};
}

} // namespace verdanth
