// Random numbers that are the same on every machine and in every run, and the two shuffles made with them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

namespace vdt {

/// MT19937 (Matsumoto and Nishimura, 1998) with the seeding of its first publication: each word of the state is 69069
/// times the one before. Later seedings give other numbers, and other clouds than every earlier version of the module.
class MersenneTwister {
public:
    static constexpr uint32_t kDefaultSeed = 4357;

    explicit MersenneTwister(uint32_t seed = kDefaultSeed);

    /// All 32-bit numbers are equally likely.
    uint32_t next()
    {
        if (position == kStateSize) reload();
        return outputs[position++];
    }

    /// From 0 to 1, both included.
    double real() { return next() / 4294967295.0; }

    /// From 0 to count - 1; `count` is at least 1. Rounding may lead to `count` itself, which counts as the last.
    uint64_t index(uint64_t count)
    {
        return std::min(static_cast<uint64_t>(real() * static_cast<double>(count)), count - 1);
    }

private:
    static constexpr uint32_t kStateSize = 624;

    void reload();

    std::array<uint32_t, kStateSize> state;
    std::array<uint32_t, kStateSize> outputs; // the state, tempered
    uint32_t position = kStateSize;
};

/// The first output of a generator seeded with `n`, modulo `n`: always the same for the same `n`. 0 for 0.
uint32_t RandomBelow(uint32_t n);

/// How many bounds RandomBelowRun() takes at once.
constexpr uint32_t kRandomRun = 16;

/// RandomBelow() for `firstBound` and the bounds that follow it, in less time than one by one.
std::array<uint32_t, kRandomRun> RandomBelowRun(uint32_t firstBound);

/// Shuffles by RandomBelow: the order depends on the range's length alone.
template <std::random_access_iterator Iterator> void ShuffleRange(Iterator first, Iterator last)
{
    const auto count = last - first;
    std::iter_difference_t<Iterator> i = 1;
    while (i + static_cast<std::iter_difference_t<Iterator>>(kRandomRun) <= count)
        for (const uint32_t other : RandomBelowRun(static_cast<uint32_t>(i + 1)))
            std::iter_swap(first + i++, first + other);
    for (; i < count; ++i) std::iter_swap(first + i, first + RandomBelow(static_cast<uint32_t>(i + 1)));
}

/// Shuffles by a running generator.
template <std::random_access_iterator Iterator>
void ShuffleRange(Iterator first, Iterator last, MersenneTwister& random)
{
    const auto count = last - first;
    for (std::iter_difference_t<Iterator> i = 1; i < count; ++i)
        std::iter_swap(first + i, first + static_cast<std::iter_difference_t<Iterator>>(
                                              random.index(static_cast<uint64_t>(i + 1))));
}

} // namespace vdt
