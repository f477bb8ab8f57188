// From a file's bytes to finished records, stage by stage, each beside what it is measured against.
#include "ratio.h"
#include "vdt/file/inflate_stream.h"
#include "vdt/file/number_list.h"
#include "vdt/file/vdt_reader.h"
#include "workloads.h"

#include <benchmark/benchmark.h>

#ifdef VERDANTH_BENCH_PEERS
#include <fast_float/fast_float.h>
#include <pugixml.hpp>
#endif

#include <zlib.h>

#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace {

using workloads::LargeGzip;
using workloads::LargeText;
using workloads::MemoryStream;

constexpr size_t kSmallArea = 4096;
constexpr size_t kLargeArea = 65536; // what the inflating stream uses

constexpr auto nothing = [] {};

// Two in turns, seven times each.
template <class Ours, class Anchor> void compare(benchmark::State& state, size_t bytes, Ours ours, Anchor anchor)
{
    vdt::bench::CompareTimes(state, ours, anchor, nothing);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

void InTurns(benchmark::internal::Benchmark* run)
{
    run->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);
}

// zlib by itself: header skipped, two areas, a running CRC.
uLong inflateBare(size_t area)
{
    const std::string& gzip = LargeGzip();
    std::vector<Bytef> input(area), output(area);
    z_stream zlib{};
    inflateInit2(&zlib, -MAX_WBITS);
    size_t at = 10;
    uLong crc = crc32(0, nullptr, 0);
    for (int code = Z_OK; code != Z_STREAM_END;) {
        if (zlib.avail_in == 0) {
            const size_t count = std::min(area, gzip.size() - at);
            std::memcpy(input.data(), gzip.data() + at, count);
            at += count;
            zlib.next_in = input.data();
            zlib.avail_in = static_cast<uInt>(count);
        }
        zlib.next_out = output.data();
        zlib.avail_out = static_cast<uInt>(area);
        code = inflate(&zlib, Z_SYNC_FLUSH);
        crc = crc32(crc, output.data(), static_cast<uInt>(area - zlib.avail_out));
    }
    inflateEnd(&zlib);
    return crc;
}

uLong inflateThroughStream()
{
    char piece[kSmallArea];
    MemoryStream source(LargeGzip());
    zlib_stream::zip_istream stream(source);
    while (stream.read(piece, sizeof piece)) benchmark::DoNotOptimize(piece);
    return stream.crc();
}

void inflate_beside_zlib(benchmark::State& state, size_t area)
{
    LargeGzip();
    compare(state, LargeText().size(), inflateThroughStream, [area] { return inflateBare(area); });
}
BENCHMARK_CAPTURE(inflate_beside_zlib, same_areas, kLargeArea)->Apply(InTurns);
BENCHMARK_CAPTURE(inflate_beside_zlib, areas_of_4k, kSmallArea)->Apply(InTurns);

class NoEvents : public vdt::SimpleXml {
public:
    using SimpleXml::SimpleXml;

    void startDocument() override {}
    void endDocument() override {}
    void startElement(std::string_view, const std::vector<vdt::XmlAttribute>&) override {}
    void endElement(std::string_view) override {}
    void characters(std::string_view text) override { benchmark::DoNotOptimize(text.data()); }
};

bool parseEvents()
{
    vdt::NullMessageHandler silent;
    MemoryStream stream(LargeText());
    return NoEvents(silent).parse(stream, LargeText().size());
}

// Every number of the text into arrays by kind, without making records.
class NumbersAlone final : public NoEvents {
public:
    using NoEvents::NoEvents;

    void startElement(std::string_view name, const std::vector<vdt::XmlAttribute>& attributes) override
    {
        floats.clear();
        integers.clear();
        const bool integerAttribute = name == "attrib" && attributes.size() > 1 && attributes[1].value == "int";
        isInteger = name == "vertices" || name == "nvertices" || integerAttribute;
        isNumber = isInteger || name == "points" || name == "attrib";
    }
    void endElement(std::string_view) override
    {
        total += floats.values.size() + integers.values.size();
        isNumber = false;
    }
    void characters(std::string_view text) override
    {
        if (!isNumber) return;
        if (isInteger) {
            integers.append(text);
        } else {
            floats.append(text);
        }
    }

    vdt::FloatList floats;
    vdt::IntegerList integers;
    size_t total = 0;
    bool isNumber = false, isInteger = false;
};

size_t parseToArrays()
{
    vdt::NullMessageHandler silent;
    MemoryStream stream(LargeText());
    NumbersAlone numbers(silent);
    numbers.parse(stream, LargeText().size());
    return numbers.total;
}

std::unique_ptr<vdt::Model> parseToRecords()
{
    vdt::NullMessageHandler silent;
    MemoryStream stream(LargeText());
    auto model = std::make_unique<vdt::Model>();
    vdt::VdtReader(*model, silent).parse(stream, LargeText().size());
    return model;
}

void gzip_to_records_beside_zlib(benchmark::State& state, size_t area)
{
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "verdanth_bench_large.vdt.gz";
    std::ofstream(path, std::ios::binary) << LargeGzip();
    const auto read = [&] {
        vdt::NullMessageHandler silent;
        auto model = std::make_unique<vdt::Model>();
        if (!vdt::VdtReader(*model, silent).readFile(path.string())) state.SkipWithError("the file cannot be read");
        return model;
    };
    compare(state, LargeText().size(), read, [area] { return inflateBare(area); });
    std::filesystem::remove(path);
}
BENCHMARK_CAPTURE(gzip_to_records_beside_zlib, same_areas, kLargeArea)->Apply(InTurns);
BENCHMARK_CAPTURE(gzip_to_records_beside_zlib, areas_of_4k, kSmallArea)->Apply(InTurns);

// The text of the largest lists, numbers and white space alone.
std::string numbersBetween(const char* from, const char* to)
{
    const size_t begin = LargeText().find(from) + std::strlen(from);
    return LargeText().substr(begin, LargeText().find(to, begin) - begin);
}

const std::string& floatText()
{
    static const std::string text = numbersBetween("<points>", "</points>");
    return text;
}

const std::string& integerText()
{
    static const std::string text = numbersBetween("<vertices>", "</vertices>");
    return text;
}

template <class List> size_t appendAll(List& list, const std::string& text)
{
    list.clear();
    for (size_t at = 0; at < text.size(); at += kSmallArea) list.append(std::string_view(text).substr(at, kSmallArea));
    return list.values.size();
}

// White space skipped and numbers parsed by `parse(begin, end, value)`, which gives the end of the number.
template <class Number, class Parse>
void parseAll(const char* at, const char* end, std::vector<Number>& values, Parse parse)
{
    for (;;) {
        while (at != end && vdt::IsSpace(*at)) ++at;
        if (at == end) return;
        Number value{};
        at = parse(at, end, value);
        values.push_back(value);
    }
}

template <class Number, class List, class Parse>
void compareNumbers(benchmark::State& state, const std::string& text, Parse parse)
{
    List list;
    std::vector<Number> values;
    compare(
        state, text.size(), [&] { return appendAll(list, text); },
        [&] {
            values.clear();
            parseAll<Number>(text.data(), text.data() + text.size(), values, parse);
            return values.size();
        });
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * values.size()));
}

constexpr auto fromChars = [](const char* at, const char* end, int32_t& value) {
    return std::from_chars(at, end, value).ptr;
};

void integers_beside_from_chars(benchmark::State& state)
{
    compareNumbers<int32_t, vdt::IntegerList>(state, integerText(), fromChars);
}
BENCHMARK(integers_beside_from_chars)->Apply(InTurns)->Iterations(41);

#ifdef VERDANTH_BENCH_PEERS

constexpr auto fastFloat = [](const char* at, const char* end, double& value) {
    return fast_float::from_chars(at, end, value).ptr;
};

void floats_beside_fast_float(benchmark::State& state)
{
    compareNumbers<double, vdt::FloatList>(state, floatText(), fastFloat);
}
BENCHMARK(floats_beside_fast_float)->Apply(InTurns)->Iterations(41);

void collect(const pugi::xml_node& node, std::vector<double>& floats, std::vector<int32_t>& integers, size_t& total)
{
    for (const pugi::xml_node& child : node.children()) {
        const std::string_view name = child.name();
        const std::string_view text = child.child_value();
        const char* begin = text.data();
        const char* end = begin + text.size();
        floats.clear();
        integers.clear();
        if (name == "vertices" || name == "nvertices" || child.attribute("type").value() == std::string_view("int")) {
            parseAll<int32_t>(begin, end, integers, fromChars);
        } else if (name == "points" || name == "attrib") {
            parseAll<double>(begin, end, floats, fastFloat);
        }
        total += floats.size() + integers.size();
        collect(child, floats, integers, total);
    }
}

// Parses in place, for which the text is copied before each turn.
class PugixmlTurn {
public:
    void prepare()
    {
        copy = LargeText();
        document = std::make_unique<pugi::xml_document>();
    }
    bool parse() { return document->load_buffer_inplace(copy.data(), copy.size(), pugi::parse_minimal); }
    size_t parseToArrays()
    {
        parse();
        std::vector<double> floats;
        std::vector<int32_t> integers;
        size_t total = 0;
        collect(*document, floats, integers, total);
        return total;
    }

private:
    std::string copy;
    std::unique_ptr<pugi::xml_document> document;
};

template <class Ours, class Peer> void compareWithPugixml(benchmark::State& state, Ours ours, Peer peer)
{
    PugixmlTurn turn;
    vdt::bench::CompareTimes(
        state, ours, [&] { return peer(turn); }, [&] { turn.prepare(); });
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeText().size()));
}

void events_beside_pugixml(benchmark::State& state)
{
    compareWithPugixml(state, parseEvents, [](PugixmlTurn& turn) { return turn.parse(); });
}
BENCHMARK(events_beside_pugixml)->Apply(InTurns)->Iterations(21);

void text_to_arrays_beside_pugixml_fast_float(benchmark::State& state)
{
    compareWithPugixml(state, parseToArrays, [](PugixmlTurn& turn) { return turn.parseToArrays(); });
}
BENCHMARK(text_to_arrays_beside_pugixml_fast_float)->Apply(InTurns);

void text_to_records_beside_pugixml_fast_float(benchmark::State& state)
{
    compareWithPugixml(state, parseToRecords, [](PugixmlTurn& turn) { return turn.parseToArrays(); });
}
BENCHMARK(text_to_records_beside_pugixml_fast_float)->Apply(InTurns);

#endif

} // namespace
