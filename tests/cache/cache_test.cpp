#include "support/recording_messages.h"
#include "support/temporary_folder.h"
#include "vdt/cache/cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vdt::test {
namespace {

const std::string kSkeleton = "<skeleton><points>0 0 0 0 4 0 1 6 0</points><polylines><nvertices>3</nvertices>"
                              "<vertices>0 1 2</vertices></polylines><connectors><vertices>2</vertices></connectors>"
                              "</skeleton><mesh><points>0 0 0 3 4 0 0 1 0</points><polygons><nvertices>3</nvertices>"
                              "<vertices>0 1 2</vertices></polygons></mesh>";

std::string plant(const std::string& content)
{
    return "<verdanth version=\"1.0\"><plant>" + content + "</plant></verdanth>";
}

class CacheTest : public testing::Test {
protected:
    ModelHandle acquire(const std::string& path, uint64_t variant = kNone)
    {
        return cache.acquire(path, messages, variant);
    }

    TemporaryFolder folder;
    PathMapper mapper;
    Cache cache{&mapper};
    RecordingMessages messages;
    // Two complete variants, the second the default, and a stub.
    std::string oak =
        folder.write("oak.vdt", plant("<model name=\"a\">" + kSkeleton + "</model><model default=\"1\">" + kSkeleton +
                                      "</model><model extref=\"m/stub.vdt\"><bound>0 0 0 1 1 1"
                                      "</bound><qualifiers><qualifier id=\"0\" name=\"own\"/>"
                                      "</qualifiers></model>"));
    std::string stub = folder.write("m/stub.vdt", "<verdanth version=\"1.0\" creator=\"c\"><model>" + kSkeleton +
                                                      "<qualifiers default=\"2\"><qualifier id=\"1\"/>"
                                                      "<qualifier id=\"2\"/></qualifiers></model><model/></verdanth>");
};

} // namespace

TEST_F(CacheTest, ReadsAFileOnceAndCountsItsVariants)
{
    const ModelHandle a = acquire(oak, 0);
    const ModelHandle b = acquire(oak, 1);
    const ModelHandle byDefault = acquire(oak, 17);
    EXPECT_EQ(messages.progressBegins.size(), 1u);
    EXPECT_EQ(cache.entries.size(), 1u);
    EXPECT_EQ(byDefault.variant, 1u);
    EXPECT_EQ(cache.entries[0].refCounts, (std::vector<uint64_t>{1, 2, 0}));
    EXPECT_EQ(a.model(), b.model());
    EXPECT_EQ(acquire(folder.path("./oak.vdt")).slot, 1u) << "another text is another path";
}

TEST_F(CacheTest, HandlesKeepTheCountThroughCopiesAndAssignments)
{
    ModelHandle a = acquire(oak, 0);
    {
        const ModelHandle copy = a;
        EXPECT_EQ(cache.entries[0].refCounts[0], 2u);
    }
    ModelHandle& self = a;
    a = self;
    EXPECT_EQ(cache.entries[0].refCounts[0], 1u);
    a = acquire(oak, 1);
    EXPECT_EQ(cache.entries[0].refCounts, (std::vector<uint64_t>{0, 1, 0}));
    a = ModelHandle();
    EXPECT_EQ(a.model(), nullptr);
    EXPECT_EQ(a.variantData(messages, true), nullptr);
    EXPECT_FALSE(cache.entries[0].model);
    EXPECT_TRUE(cache.entries[0].path.empty() && cache.entries[0].refCounts.empty());
}

TEST_F(CacheTest, AFreedSlotIsTheNextToBeFilled)
{
    const std::string paths[] = {oak, folder.write("b.vdt", plant("<model/>")),
                                 folder.write("c.vdt", plant("<model/>"))};
    ModelHandle first = acquire(paths[0]);
    ModelHandle second = acquire(paths[1]);
    const ModelHandle third = acquire(paths[2]);
    second.release();
    first.release();
    EXPECT_EQ(acquire(paths[1]).slot, 0u);
    EXPECT_EQ(cache.entries.size(), 3u);
}

TEST_F(CacheTest, WhatCannotBeReadLeavesAFreeSlot)
{
    EXPECT_EQ(acquire("").cache, nullptr);
    EXPECT_TRUE(cache.entries.empty());
    const std::string bad[] = {folder.path("nothing.vdt"), folder.path("m"), folder.write("none.vdt", plant("")),
                               folder.write("empty.vdt", "")};
    for (const std::string& path : bad) {
        EXPECT_EQ(acquire(path).cache, nullptr) << path;
        ASSERT_EQ(cache.entries.size(), 1u);
        EXPECT_FALSE(cache.entries[0].model);
        EXPECT_TRUE(cache.entries[0].refCounts.empty());
    }
    EXPECT_EQ(acquire(oak).slot, 0u);
}

TEST_F(CacheTest, AStubIsReadOnDemandAndDroppedWithItsLastHandle)
{
    const ModelHandle other = acquire(oak, 0);
    ModelHandle handle = acquire(oak, 2);
    ModelVariant* variant = handle.variantData(messages, false);
    EXPECT_TRUE(variant->skeleton.isEmpty());
    EXPECT_EQ(variant->computeBound(), (Box{{0, 0, 0}, {1, 1, 1}}));

    for (int i = 0; i < 3; ++i) EXPECT_EQ(handle.variantData(messages, true), variant);
    EXPECT_EQ(messages.progressBegins.size(), 2u) << "the main file and the stub's, once each";
    EXPECT_EQ(variant->info.creator, "c");
    EXPECT_EQ(variant->qualifiers.size(), 2u);
    EXPECT_EQ(variant->defaultQualifier, 1u);
    EXPECT_GT(variant->skeleton.points[1].weight, 0.0f);
    EXPECT_NE(variant->skeleton.branches[0].firstVertex->next->attributes.orient, Quaternion());
    const Box bound = variant->computeBound();
    EXPECT_EQ(bound.max, (Vector3{1 + 5, 6 + 5, 0 + 5})) << "grown by the mesh's diagonal";

    handle.release();
    EXPECT_TRUE(variant->skeleton.isEmpty() && variant->meshes.empty());
    EXPECT_EQ(other.variantData(messages, true)->skeleton.points.size(), 3u);
    handle = acquire(oak, 2);
    EXPECT_NE(handle.variantData(messages, true), nullptr);
    EXPECT_EQ(messages.progressBegins.size(), 3u);
}

TEST_F(CacheTest, ADroppedVariantOfACompleteFileComesBackOnDemand)
{
    const ModelHandle other = acquire(oak, 0);
    ModelHandle handle = acquire(oak, 1);
    handle.release();
    handle = acquire(oak, 1);
    EXPECT_TRUE(handle.variantData(messages, false)->skeleton.isEmpty());
    ASSERT_NE(handle.variantData(messages, true), nullptr);
    EXPECT_EQ(handle.variantData(messages, true)->skeleton.points.size(), 3u);
    EXPECT_EQ(handle.variantData(messages, true)->meshes.size(), 1u);
    EXPECT_EQ(messages.progressBegins.size(), 2u);
}

TEST_F(CacheTest, StubsThatCannotBeFilledStayStubs)
{
    struct Row {
        const char* extref;
        const char* reason;
    };
    const Row rows[] = {
        {"nothing.vdt", "parseVdt returned false for :\""},
        {"m", "parseVdt returned false for :\""},
        {"none.vdt", "No model read during expansion from file!"},
        {"self.vdt", ""},
        {"hollow.vdt", ""},
    };
    folder.write("none.vdt", plant(""));
    folder.write("hollow.vdt", plant("<model/>"));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.extref);
        messages = {};
        const std::string path = folder.write("self.vdt", plant(std::string("<model extref=\"") + row.extref + "\"/>"));
        const ModelHandle handle = acquire(path);
        ASSERT_NE(handle.model(), nullptr);
        EXPECT_EQ(handle.variantData(messages, true), nullptr);
        EXPECT_NE(handle.variantData(messages, false), nullptr);
        if (*row.reason == '\0') continue;
        ASSERT_EQ(messages.debugs.size(), 1u);
        EXPECT_THAT(messages.debugs[0], testing::StartsWith(row.reason));
    }
    messages = {};
    const ModelHandle handle = acquire(folder.write("one.vdt", plant("<model extref=\"x.vdt\"/>")));
    EXPECT_EQ(handle.variantData(messages, true), nullptr);
    EXPECT_EQ(messages.debugs.at(0), "parseVdt returned false for :\"" + folder.path("x.vdt") + "\" (extref: \"" +
                                         folder.path("x.vdt") + "\")");
}

} // namespace vdt::test
