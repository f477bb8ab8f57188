#include "c4d_baseselect.h"
#include "core/hyper_stream.h"
#include "core/selection_record.h"
#include "support/skeleton_builder.h"

#include <gmock/gmock.h>

#include <set>

namespace host::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vdt::test::Dice;

std::vector<std::pair<Int32, Int32>> runs(const BaseSelect& select)
{
    std::vector<std::pair<Int32, Int32>> result;
    Int32 first = 0, last = 0;
    for (Int32 i = 0; select.GetRange(i, LIMIT<Int32>::MAX, &first, &last); ++i) result.emplace_back(first, last);
    return result;
}

// Holds what the set holds, in runs with gaps between.
void expectHolds(const BaseSelect& select, const std::set<Int32>& expected)
{
    std::set<Int32> held;
    Int32 previousLast = -2;
    for (const auto& [first, last] : runs(select)) {
        ASSERT_GT(first, previousLast + 1);
        ASSERT_GE(last, first);
        for (Int32 i = first; i <= last; ++i) held.insert(i);
        previousLast = last;
    }
    ASSERT_EQ(held, expected);
    EXPECT_EQ(select.GetCount(), static_cast<Int32>(expected.size()));
    EXPECT_EQ(select.GetLastElement(), expected.empty() ? NOTOK : *expected.rbegin());
    for (Int32 i = -1; i < 70; ++i) ASSERT_EQ(select.IsSelected(i), expected.contains(i)) << i;
}

TEST(BaseSelect, HoldsWhatAnyRunOfEditsLeaves)
{
    SelectionRecord one, other;
    std::set<Int32> ones, others;
    Dice dice(3);
    for (int step = 0; step < 3000; ++step) {
        SCOPED_TRACE(step);
        const auto element = static_cast<Int32>(dice.below(60));
        const uint32_t edit = dice.below(10);
        if (edit < 3) {
            EXPECT_TRUE(one.select.Select(element));
            ones.insert(element);
        } else if (edit < 5) {
            EXPECT_TRUE(one.select.Deselect(element));
            ones.erase(element);
        } else if (edit == 5) {
            EXPECT_TRUE(other.select.Select(element));
        } else if (edit == 6) {
            EXPECT_TRUE(other.select.Deselect(element));
        } else if (edit == 7) {
            EXPECT_TRUE(one.select.Merge(&other.select));
            ones.insert(others.begin(), others.end());
        } else if (edit == 8) {
            EXPECT_TRUE(one.select.Deselect(&other.select));
            std::erase_if(ones, [&](Int32 i) { return others.contains(i); });
        } else if (dice.below(4) == 0) {
            EXPECT_TRUE(one.select.Cross(&other.select));
            std::erase_if(ones, [&](Int32 i) { return !others.contains(i); });
        }
        others.clear();
        for (const auto& [first, last] : runs(other.select))
            for (Int32 i = first; i <= last; ++i) others.insert(i);
        expectHolds(one.select, ones);
    }
}

TEST(BaseSelect, KeepsToItsLimits)
{
    SelectionRecord record;
    BaseSelect& select = record.select;
    EXPECT_FALSE(select.Select(-1));
    EXPECT_FALSE(select.Select(LIMIT<Int32>::MAX));
    EXPECT_FALSE(select.SelectAll(5, 4));
    EXPECT_TRUE(select.Select(LIMIT<Int32>::MAX - 1));
    EXPECT_TRUE(select.SelectAll(10, 20)); // and nothing else
    EXPECT_THAT(runs(select), ElementsAre(std::pair(10, 20)));

    Int32 first = 0, last = 0;
    EXPECT_TRUE(select.GetRange(0, 15, &first, &last));
    EXPECT_EQ(last, 14);
    EXPECT_FALSE(select.GetRange(0, 10, &first, &last));
    EXPECT_FALSE(select.GetRange(-1, 100, &first, &last));

    BaseSelect* clone = select.GetClone();
    const UInt32 changes = select.GetDirty();
    clone->DeselectAll();
    EXPECT_EQ(select.GetCount(), 11);
    EXPECT_TRUE(clone->CopyTo(&select));
    EXPECT_EQ(select.GetCount(), 0);
    EXPECT_GT(select.GetDirty(), changes);
    BaseSelect::Free(clone);
    EXPECT_EQ(clone, nullptr);
}

TEST(BaseSelect, ReadsItsOwnRunsAndRefusesOthers)
{
    struct Row {
        std::vector<Int32> stored;
        bool good;
    };
    const Row rows[] = {
        {{}, true},       {{3, 5, 7, 7}, true},  {{3, 5, 5, 7}, false}, {{3, 2}, false},
        {{-4, 2}, false}, {{3, 5, 1, 2}, false}, {{3, 5, 7}, false},    {{0, LIMIT<Int32>::MAX}, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.stored));
        HyperFilePtr file = HyperStream::Write(1);
        file->WriteMemory(row.stored.data(), static_cast<Int>(row.stored.size() * sizeof(Int32)));
        const std::vector<uint8_t> bytes = HyperStream::Of(*file).takeBytes();

        SelectionRecord record;
        file = HyperStream::Read(1, bytes);
        EXPECT_EQ(record.select.Read(file.get()), row.good);
        EXPECT_EQ(2 * static_cast<size_t>(record.select.GetSegments()), row.good ? row.stored.size() : 0);

        HyperFilePtr again = HyperStream::Write(1);
        EXPECT_TRUE(record.select.Write(again.get()));
        EXPECT_EQ(!row.good || HyperStream::Of(*again).takeBytes() == bytes, true);
    }
}

} // namespace
} // namespace host::test
