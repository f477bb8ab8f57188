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

// Turns each bit over depending on those below it: on a number with its bits reversed, Owen's scrambling.
uint32_t permuted(uint32_t x, uint32_t seed)
{
    x += seed;
    x ^= x * 0x6C50B47CU;
    x ^= x * 0xB82F1E52U;
    x ^= x * 0xC7AFE638U;
    return x ^ x * 0x8D22F6E6U;
}

// Sobol's second dimension with its bits reversed: the index times Pascal's triangle, where only odd and even count.
uint32_t reversedSobolSecond(uint32_t index)
{
    index ^= index >> 16;
    index ^= (index & 0xFF00FF00U) >> 8;
    index ^= (index & 0xF0F0F0F0U) >> 4;
    index ^= (index & 0xCCCCCCCCU) >> 2;
    return index ^ (index & 0xAAAAAAAAU) >> 1;
}

float unitFloat(uint32_t bits)
{
    return static_cast<float>(bits >> 8) * 0x1p-24F;
}

} // namespace

Sampler::Sampler(uint32_t pixel, uint32_t sample)
    : seed(HashBits(pixel + 0x9E3779B9U)),
      index(sample),
      reversedIndex(reversedBits(sample))
{
}

SamplePoint Sampler::next()
{
    seed = HashBits(seed + 0x9E3779B9U);
    // The first dimension is the index itself with its bits reversed.
    const uint32_t shuffled = reversedBits(permuted(reversedIndex, seed));
    return {unitFloat(reversedBits(permuted(shuffled, HashBits(seed ^ 0x68E31DA4U)))),
            unitFloat(reversedBits(permuted(reversedSobolSecond(shuffled), HashBits(seed ^ 0xB5297A4DU))))};
}

} // namespace verdanth
