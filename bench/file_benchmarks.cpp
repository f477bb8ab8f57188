// From a file's bytes to finished records, stage by stage, each beside what it is measured against.
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

void setBytes(benchmark::State& state, size_t bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// zlib by itself: header skipped, two areas, a running CRC.
void inflateBare(benchmark::State& state, size_t area)
{
    const std::string& gzip = LargeGzip();
    std::vector<Bytef> input(area), output(area);
    uLong crc = 0;
    for (auto _ : state) {
        z_stream zlib{};
        inflateInit2(&zlib, -MAX_WBITS);
        size_t at = 10;
        crc = crc32(0, nullptr, 0);
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
        benchmark::DoNotOptimize(crc);
    }
    setBytes(state, LargeText().size());
}

void inflate_zlib_4k(benchmark::State& state)
{
    inflateBare(state, kSmallArea);
}
BENCHMARK(inflate_zlib_4k)->Unit(benchmark::kMillisecond);

void inflate_zlib(benchmark::State& state)
{
    inflateBare(state, kLargeArea);
}
BENCHMARK(inflate_zlib)->Unit(benchmark::kMillisecond);

void inflate_stream(benchmark::State& state)
{
    char piece[kSmallArea];
    for (auto _ : state) {
        MemoryStream source(LargeGzip());
        zlib_stream::zip_istream stream(source);
        while (stream.read(piece, sizeof piece)) benchmark::DoNotOptimize(piece);
    }
    setBytes(state, LargeText().size());
    state.SetLabel("vs=inflate_zlib vs=inflate_zlib_4k");
}
BENCHMARK(inflate_stream)->Unit(benchmark::kMillisecond);

class NoEvents : public vdt::SimpleXml {
public:
    using SimpleXml::SimpleXml;

    void startDocument() override {}
    void endDocument() override {}
    void startElement(std::string_view, const std::vector<vdt::XmlAttribute>&) override {}
    void endElement(std::string_view) override {}
    void characters(std::string_view text) override { benchmark::DoNotOptimize(text.data()); }
};

void xml_events(benchmark::State& state)
{
    vdt::NullMessageHandler silent;
    for (auto _ : state) {
        MemoryStream stream(LargeText());
        NoEvents(silent).parse(stream, LargeText().size());
    }
    setBytes(state, LargeText().size());
    state.SetLabel("vs=xml_pugixml");
}
BENCHMARK(xml_events)->Unit(benchmark::kMillisecond);

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

void text_to_arrays(benchmark::State& state)
{
    vdt::NullMessageHandler silent;
    for (auto _ : state) {
        MemoryStream stream(LargeText());
        NumbersAlone numbers(silent);
        numbers.parse(stream, LargeText().size());
        benchmark::DoNotOptimize(numbers.total);
    }
    setBytes(state, LargeText().size());
    state.SetLabel("vs=text_pugixml_fast_float");
}
BENCHMARK(text_to_arrays)->Unit(benchmark::kMillisecond);

void text_to_records(benchmark::State& state)
{
    vdt::NullMessageHandler silent;
    for (auto _ : state) {
        MemoryStream stream(LargeText());
        auto model = std::make_unique<vdt::Model>();
        vdt::VdtReader(*model, silent).parse(stream, LargeText().size());
        benchmark::DoNotOptimize(model->variants.data());
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    setBytes(state, LargeText().size());
    state.SetLabel("vs=text_pugixml_fast_float");
}
BENCHMARK(text_to_records)->Unit(benchmark::kMillisecond);

void gzip_to_records(benchmark::State& state)
{
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "verdanth_bench_large.vdt.gz";
    std::ofstream(path, std::ios::binary) << LargeGzip();
    vdt::NullMessageHandler silent;
    for (auto _ : state) {
        auto model = std::make_unique<vdt::Model>();
        if (!vdt::VdtReader(*model, silent).readFile(path.string())) state.SkipWithError("the file cannot be read");
        benchmark::DoNotOptimize(model->variants.data());
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    std::filesystem::remove(path);
    setBytes(state, LargeText().size());
    state.SetLabel("vs=inflate_zlib vs=inflate_zlib_4k");
}
BENCHMARK(gzip_to_records)->Unit(benchmark::kMillisecond);

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

template <class List> void appendList(benchmark::State& state, const std::string& text, const char* label)
{
    List list;
    for (auto _ : state) {
        list.clear();
        for (size_t at = 0; at < text.size(); at += kSmallArea)
            list.append(std::string_view(text).substr(at, kSmallArea));
        benchmark::DoNotOptimize(list.values.data());
    }
    setBytes(state, text.size());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * list.values.size()));
    state.SetLabel(label);
}

void numbers_floats(benchmark::State& state)
{
    appendList<vdt::FloatList>(state, floatText(), "vs=numbers_fast_float");
}
BENCHMARK(numbers_floats)->Unit(benchmark::kMillisecond);

void numbers_integers(benchmark::State& state)
{
    appendList<vdt::IntegerList>(state, integerText(), "vs=numbers_from_chars");
}
BENCHMARK(numbers_integers)->Unit(benchmark::kMillisecond);

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

template <class Number, class Parse> void parsePeer(benchmark::State& state, const std::string& text, Parse parse)
{
    std::vector<Number> values;
    for (auto _ : state) {
        values.clear();
        parseAll<Number>(text.data(), text.data() + text.size(), values, parse);
        benchmark::DoNotOptimize(values.data());
    }
    setBytes(state, text.size());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * values.size()));
}

constexpr auto fromChars = [](const char* at, const char* end, int32_t& value) {
    return std::from_chars(at, end, value).ptr;
};

void numbers_from_chars(benchmark::State& state)
{
    parsePeer<int32_t>(state, integerText(), fromChars);
}
BENCHMARK(numbers_from_chars)->Unit(benchmark::kMillisecond);

#ifdef VERDANTH_BENCH_PEERS

constexpr auto fastFloat = [](const char* at, const char* end, double& value) {
    return fast_float::from_chars(at, end, value).ptr;
};

void numbers_fast_float(benchmark::State& state)
{
    parsePeer<double>(state, floatText(), fastFloat);
}
BENCHMARK(numbers_fast_float)->Unit(benchmark::kMillisecond);

void xml_pugixml(benchmark::State& state)
{
    std::string copy;
    for (auto _ : state) {
        state.PauseTiming();
        copy = LargeText();
        pugi::xml_document document;
        state.ResumeTiming();
        document.load_buffer_inplace(copy.data(), copy.size(), pugi::parse_minimal);
        benchmark::DoNotOptimize(document.first_child());
    }
    setBytes(state, LargeText().size());
}
BENCHMARK(xml_pugixml)->Unit(benchmark::kMillisecond);

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

void text_pugixml_fast_float(benchmark::State& state)
{
    std::string copy;
    for (auto _ : state) {
        state.PauseTiming();
        copy = LargeText();
        state.ResumeTiming();
        pugi::xml_document document;
        document.load_buffer_inplace(copy.data(), copy.size(), pugi::parse_minimal);
        std::vector<double> floats;
        std::vector<int32_t> integers;
        size_t total = 0;
        collect(document, floats, integers, total);
        benchmark::DoNotOptimize(total);
    }
    setBytes(state, LargeText().size());
}
BENCHMARK(text_pugixml_fast_float)->Unit(benchmark::kMillisecond);

#endif

} // namespace
