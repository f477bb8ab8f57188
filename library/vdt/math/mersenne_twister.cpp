#include "vdt/math/mersenne_twister.h"

namespace vdt {
namespace {

constexpr uint32_t kSeedFactor = 69069;
constexpr uint32_t kShift = 397; // how far apart the words lie that make a new one

constexpr uint32_t twisted(uint32_t upper, uint32_t lower, uint32_t shifted)
{
    const uint32_t joined = (upper & 0x80000000U) | (lower & 0x7fffffffU);
    return shifted ^ (joined >> 1) ^ ((0U - (joined & 1U)) & 0x9908b0dfU);
}

constexpr uint32_t tempered(uint32_t word)
{
    word ^= word >> 11;
    word ^= (word << 7) & 0x9d2c5680U;
    word ^= (word << 15) & 0xefc60000U;
    return word ^ (word >> 18);
}

// The factor that leads from the seed to the word at `position`.
constexpr uint32_t seedFactorOf(uint32_t position)
{
    uint32_t factor = 1;
    for (uint32_t i = 0; i < position; ++i) factor *= kSeedFactor;
    return factor;
}

// Of a generator seeded with `seed`. Three words of the seeded state are all that it is made of.
constexpr uint32_t firstOutput(uint32_t seed)
{
    constexpr uint32_t kShiftedFactor = seedFactorOf(kShift);
    return tempered(twisted(seed, seed * kSeedFactor, seed * kShiftedFactor));
}

} // namespace

MersenneTwister::MersenneTwister(uint32_t seed)
{
    for (uint32_t& word : state) {
        word = seed;
        seed *= kSeedFactor;
    }
}

void MersenneTwister::reload()
{
    // In three stretches, so that no index has to be wrapped and the loops can run on several words at once.
    constexpr uint32_t kWrap = kStateSize - kShift;
    for (uint32_t i = 0; i < kWrap; ++i) state[i] = twisted(state[i], state[i + 1], state[i + kShift]);
    for (uint32_t i = kWrap; i < kStateSize - 1; ++i) state[i] = twisted(state[i], state[i + 1], state[i - kWrap]);
    state.back() = twisted(state.back(), state.front(), state[kShift - 1]);

    for (uint32_t i = 0; i < kStateSize; ++i) outputs[i] = tempered(state[i]);
    position = 0;
}

uint32_t RandomBelow(uint32_t n)
{
    return n == 0 ? 0 : firstOutput(n) % n;
}

std::array<uint32_t, kRandomRun> RandomBelowRun(uint32_t firstBound)
{
    std::array<uint32_t, kRandomRun> numbers;
    for (uint32_t i = 0; i < kRandomRun; ++i) numbers[i] = firstOutput(firstBound + i);
    // Apart from the loop above, which can run on several words at once.
    for (uint32_t i = 0; i < kRandomRun; ++i) numbers[i] %= std::max(firstBound + i, 1U);
    return numbers;
}

} // namespace vdt
