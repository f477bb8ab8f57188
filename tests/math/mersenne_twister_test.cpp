#include "vdt/math/mersenne_twister.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <sstream>
#include <vector>

namespace vdt {
namespace {

// The standard library's generator with the old seeding, which it only takes as a written-out state.
std::mt19937 seededTheOldWay(uint32_t seed)
{
    std::ostringstream state;
    for (int i = 0; i < 624; ++i) {
        state << seed << ' ';
        seed *= 69069;
    }
    std::mt19937 generator;
    std::istringstream(state.str() + "624") >> generator;
    return generator;
}

TEST(MersenneTwister, IsThePublishedGeneratorWithItsFirstSeeding)
{
    for (const uint32_t seed : {4357U, 1U, 2U, 0xffffffffU}) {
        std::mt19937 judge = seededTheOldWay(seed);
        MersenneTwister random(seed);
        for (int i = 0; i < 2000; ++i) ASSERT_EQ(random.next(), judge()) << "seed " << seed << ", draw " << i;
    }
    EXPECT_EQ(MersenneTwister().next(), MersenneTwister(4357).next());
}

TEST(MersenneTwister, RandomBelowIsTheFirstOutputOfAGeneratorSeededWithTheBound)
{
    for (uint32_t n = 1; n < 20000; ++n) ASSERT_EQ(RandomBelow(n), MersenneTwister(n).next() % n) << n;
    EXPECT_EQ(RandomBelow(0xfffffffbU), MersenneTwister(0xfffffffbU).next() % 0xfffffffbU);
    EXPECT_EQ(RandomBelow(0), 0);

    for (const uint32_t first : {1U, 5U, 0x7ffffff8U, 0xfffffff8U}) { // the last one wraps round
        const auto run = RandomBelowRun(first);
        for (uint32_t i = 0; i < kRandomRun; ++i) EXPECT_EQ(run[i], RandomBelow(first + i)) << first << " + " << i;
    }
}

TEST(MersenneTwister, AShuffleSwapsEachElementWithTheOneThatItsPlaceNames)
{
    for (size_t count = 0; count < 80; ++count) {
        std::vector<int> shuffled(count);
        std::iota(shuffled.begin(), shuffled.end(), 0);
        std::vector<int> expected = shuffled;
        ShuffleRange(shuffled.begin(), shuffled.end());
        for (size_t i = 1; i < count; ++i)
            std::swap(expected[i], expected[MersenneTwister(static_cast<uint32_t>(i + 1)).next() % (i + 1)]);
        EXPECT_EQ(shuffled, expected) << count;
    }
}

TEST(MersenneTwister, AnIndexNeverReachesTheCount)
{
    MersenneTwister random;
    uint64_t highest = 0;
    for (int i = 0; i < 100000; ++i) highest = std::max(highest, random.index(3));
    EXPECT_EQ(highest, 2);
    EXPECT_EQ(random.index(1), 0);
}

} // namespace
} // namespace vdt
