// Replays what the fuzzers found and what was put into their corpus by hand, whole and cut at every place.
#include "fuzz/entries.h"
#include "fuzz/replay.h"

namespace vdt::test {
namespace {

TEST(Corpus, EventParserKeepsItsPromises)
{
    ReplayCorpus("event_parser", FuzzEventParser);
}
TEST(Corpus, ModelReaderKeepsItsPromises)
{
    ReplayCorpus("model_reader", FuzzModelReader);
}
TEST(Corpus, InflateStreamKeepsItsPromises)
{
    ReplayCorpus("inflate_stream", FuzzInflateStream);
}
TEST(Corpus, GeoKeepsItsPromises)
{
    ReplayCorpus("geo", FuzzGeo);
}
TEST(Corpus, PlantsOfAnyNumbersKeepTheirPromises)
{
    ReplayCorpus("plant", FuzzPlant);
}

} // namespace
} // namespace vdt::test
