#include "fuzz/entries.h"
#include "fuzz/replay.h"

namespace vdt::test {
namespace {

TEST(Corpus, ResourcesOfAnyBytesKeepTheirPromises)
{
    ReplayCorpus("resource", FuzzResource);
}

} // namespace
} // namespace vdt::test
