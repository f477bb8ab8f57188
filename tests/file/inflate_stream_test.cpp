#include "support/gzip.h"
#include "vdt/file/inflate_stream.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <sstream>

namespace vdt::test {
namespace {

using zlib_stream::InflateState;
using zlib_stream::zip_istream;

std::string restOf(std::istream& stream)
{
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string sampleText(size_t size)
{
    std::mt19937 random(3);
    std::string text;
    while (text.size() < size) text += std::to_string(random() % 1000) + ' ';
    text.resize(size);
    return text;
}

} // namespace

TEST(InflateStream, ReadsEveryHeaderThatGzipAllows)
{
    using namespace std::string_literals;
    const std::string text = sampleText(300000);
    struct Row {
        const char* name;
        unsigned char flags;
        std::string fields;
    };
    const Row rows[] = {
        {"plain", 0, ""},
        {"text", 1, ""},
        {"header crc", 2, "cc"},
        {"extra", 4, "\3\0abc"s},
        {"name", 8, "plant.vdt\0"s},
        {"comment", 16, "a\xFF comment\0"s},
        {"all", 31,
         "\1\0x"
         "name\0comment\0"
         "cc"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::istringstream source(Gzip(text, row.flags, row.fields));
        zip_istream stream(source);
        ASSERT_TRUE(stream.isGzip());
        EXPECT_EQ(restOf(stream), text);
        EXPECT_EQ(stream.state(), InflateState::Finished);
        EXPECT_EQ(stream.crc(), crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
    }
}

TEST(InflateStream, LeavesPlainDataAlone)
{
    for (const char* text : {"", "\x1F", "\x1Fx", "<verdanth/>"}) {
        std::istringstream source(text);
        EXPECT_FALSE(zip_istream(source).isGzip());
        EXPECT_EQ(restOf(source), text);
    }
}

TEST(InflateStream, RefusesMalformedHeaders)
{
    const std::string good = Gzip("text", 31, std::string("\1\0xname\0comment\0cc", 17));
    for (size_t length = 2; length < good.find("cc") + 2; ++length) {
        std::istringstream source(good.substr(0, length));
        zip_istream stream(source);
        EXPECT_TRUE(stream.isGzip());
        EXPECT_EQ(stream.zlibCode(), -3) << length;
        EXPECT_EQ(restOf(stream), "");
    }
    for (const auto& [place, byte] : {std::pair{2, '\7'}, {3, '\x20'}, {3, '\x80'}}) {
        std::string bad = Gzip("text");
        bad[static_cast<size_t>(place)] = byte;
        std::istringstream source(bad);
        EXPECT_EQ(zip_istream(source).zlibCode(), -3);
    }
}

TEST(InflateStream, DeliversWhatCanStillBeDelivered)
{
    const std::string text = sampleText(200000);
    const std::string whole = Gzip(text);
    for (size_t length = 10; length < whole.size() - 8; length += 997) {
        std::istringstream source(whole.substr(0, length));
        zip_istream stream(source);
        const std::string part = restOf(stream);
        EXPECT_EQ(part, text.substr(0, part.size()));
        EXPECT_GE(part.size() + 2000, (length - 10) * 2) << "far less came out than went in";
        EXPECT_EQ(stream.state(), InflateState::Truncated);
    }
    std::string damaged = whole;
    for (size_t i = whole.size() / 2; i < whole.size() / 2 + 64; ++i) damaged[i] = '\xFF';
    std::istringstream source(damaged);
    zip_istream stream(source);
    EXPECT_GT(restOf(stream).size(), text.size() / 3);
    EXPECT_NE(stream.state(), InflateState::Running);
}

TEST(InflateStream, GivesBackWhatItReadTooFar)
{
    std::istringstream source(Gzip("text") + "behind");
    zip_istream stream(source);
    EXPECT_EQ(restOf(stream), "text");
    source.ignore(8); // the trailer
    EXPECT_EQ(restOf(source), "behind");
}

TEST(InflateStream, PutsBackFourCharactersAcrossItsBuffers)
{
    const std::string text = sampleText(200000);
    std::istringstream source(Gzip(text));
    zip_istream stream(source);
    for (size_t at = 0; at < text.size(); ++at) {
        ASSERT_EQ(stream.get(), text[at]);
        if (at < 4 || at % 13 != 0) continue;
        for (int i = 0; i < 4; ++i) ASSERT_TRUE(stream.unget()) << at;
        for (size_t i = at - 3; i <= at; ++i) ASSERT_EQ(stream.get(), text[i]);
    }
}

TEST(InflateStream, StopsABomb)
{
    const std::string bomb = Gzip(std::string(size_t{200} << 20, ' '));
    ASSERT_LT(bomb.size(), 300000u);
    std::istringstream source(bomb);
    zip_istream stream(source);
    EXPECT_LT(restOf(stream).size(), size_t{80} << 20);
    EXPECT_EQ(stream.state(), InflateState::TooLarge);
}

} // namespace vdt::test
