#include "support/recording_messages.h"
#include "vdt/file/simple_xml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace vdt::test {
namespace {

using testing::ElementsAre;
using Events = std::vector<std::string>;

// Writes events down: "<a b=[c]", "</a", and text as it came.
class EventLog final : public SimpleXml {
public:
    using SimpleXml::SimpleXml;

    void startDocument() override { events.emplace_back("document"); }
    void endDocument() override { events.emplace_back("end of document"); }
    void startElement(std::string_view name, const std::vector<XmlAttribute>& attributes) override
    {
        std::string event = "<";
        event += name;
        for (const XmlAttribute& attribute : attributes) event += " " + attribute.name + "=[" + attribute.value + "]";
        events.push_back(event);
    }
    void endElement(std::string_view name) override { events.emplace_back("</").append(name); }
    void characters(std::string_view text) override { events.emplace_back(text); }

    Events events;
};

struct Parsed {
    bool result = false;
    Events events;
    RecordingMessages messages;
};

Parsed parse(const std::string& text, uint64_t totalSize = 0)
{
    Parsed parsed;
    EventLog log(parsed.messages);
    std::istringstream stream(text);
    parsed.result = log.parse(stream, totalSize);
    parsed.events = log.events;
    return parsed;
}

Events eventsOf(const std::string& text)
{
    return parse(text).events;
}

} // namespace

TEST(SimpleXml, TagsBecomeEvents)
{
    struct Row {
        const char* text;
        Events events;
    };
    const Row rows[] = {
        {"<a/>", {"<a", "</a"}},
        {"<a>x y</a>", {"<a", "x y", "</a"}},
        {"< a >", {"<a"}},
        {"< / a >", {"</a"}},
        {"<>< >", {}},
        {"<?xml version=\"1.0\"?><!DOCTYPE x><a>", {"<a"}},
        {"<!-- a \"b > c\" d --><a>", {"<a"}},
        {"<!-- a > b --><a>", {" b -->", "<a"}},
        {"<a b=\"x&amp;&lt;&gt;&quot;&apos;y\"/>", {"<a b=[x&<>\"'y]", "</a"}},
        {"<a b=\"x&unknown;y\" c=\"&#65;\"/>", {"<a b=[x] c=[]", "</a"}},
        {"<a b=\"c\\\"d\"/>", {"<a b=[c\\\"d]", "</a"}},
        {"<a b=c d e f=\"g h=i/<\">", {"<a b=[c] d=[e] f=[g h=i/<]"}},
        {"<a b = \"c\"><d e>", {"<a b=[]", "<d c=[e]"}},
        {"<a b=c/d>", {"<a b=[c]", "</a"}},
        {"<a b><c d=e>", {"<a", "<c b=[d]"}},
        {"</a b=c><d>", {"</a", "<d b=[c]"}},
        {"<a>x &amp; y</a>", {"<a", "x &amp; y", "</a"}},
        {"<a>  \n</a>left", {"<a", "  \n", "</a"}},
        {"<a b=\"unterminated>", {}},
        {"<a b=\"1\" b=\"2\"/>", {"<a b=[1] b=[2]", "</a"}},
        {"<a b=\"\\\"c\"d\\ e=f>", {"<a b=[\\\"cd\\] e=[f]"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(eventsOf(row.text), row.events);
    }
}

TEST(SimpleXml, TextComesInPiecesCountedFromTheTagsEnd)
{
    const std::string text(10000, 'x');
    for (const size_t before : {0, 1, 4090, 4093, 4094, 4095, 4096, 70000}) {
        SCOPED_TRACE(before);
        Events events = eventsOf(std::string(before, ' ') + "<a>" + text + "<b>");
        Events tail(events.end() - 5, events.end());
        EXPECT_THAT(tail, ElementsAre("<a", text.substr(0, 4096), text.substr(0, 4096), text.substr(0, 1808), "<b"));
    }
    EXPECT_THAT(eventsOf("<a>" + text.substr(0, 4096) + "<b>"), ElementsAre("<a", text.substr(0, 4096), "<b"));
    EXPECT_THAT(eventsOf("<a>" + text.substr(0, 4096)), ElementsAre("<a")) << "text behind the last tag is dropped";
}

TEST(SimpleXml, ChunksLeaveNoTrace)
{
    const std::string document = "<a b=\"1&amp;2\"><!-- c --><d e=f/>12 34<g h='i'/>\n</a>";
    const Events expected = eventsOf("<x>" + document);
    for (size_t shift = 4096 - 3 - document.size(); shift <= 4096; ++shift) {
        Events events = eventsOf("<x>" + std::string(shift, '-') + document);
        std::erase_if(events, [](const std::string& event) { return event.find('-') != std::string::npos; });
        ASSERT_EQ(events, expected) << shift;
    }
}

TEST(SimpleXml, AZeroByteCutsTextNamesAndValues)
{
    using namespace std::string_literals;
    EXPECT_THAT(eventsOf("<a\0x b\0y=\"c\0d\">e\0f<g>"s), ElementsAre("<a b=[c]", "e", "<g"));
}

TEST(SimpleXml, ProgressIsToldForEachChunkIfTheSizeIsKnown)
{
    const Parsed known = parse("<a>" + std::string(8189, ' '), 8192);
    EXPECT_THAT(known.messages.progressBegins, ElementsAre("loading vdt file"));
    EXPECT_THAT(known.messages.fractions, ElementsAre(0.5f, 1.0f, 1.0f)); // the last read finds the end
    EXPECT_EQ(known.messages.progressEnds, 1);
    EXPECT_TRUE(parse("<a>").messages.progressBegins.empty());

    const Parsed nothing = parse("", 100);
    EXPECT_FALSE(nothing.result);
    EXPECT_TRUE(nothing.messages.progressBegins.empty());
}

TEST(SimpleXml, CancellingStopsBetweenChunks)
{
    RecordingMessages messages;
    messages.cancelAfter = 1;
    EventLog log(messages);
    std::istringstream stream("<a>" + std::string(5000, ' ') + "<b>");
    EXPECT_TRUE(log.parse(stream, 0));
    EXPECT_THAT(log.events, ElementsAre("<a"));
}

TEST(SimpleXml, WhatIsTooLongForTheFormatEndsTheParse)
{
    const std::string fits(4096, 'x');
    struct Row {
        const char* name;
        std::string text;
        bool fits;
    };
    const Row rows[] = {
        {"name that fits", "<" + fits + "/>", true},
        {"value that fits", "<a b=\"" + fits + "\"/>", true},
        {"comment that fits", "<!" + fits + "><a>", true},
        {"name", "<x" + fits + "/>", false},
        {"value", "<a b=\"x" + fits + "\"/>", false},
        {"comment", "<!x" + fits + "><a>", false},
        {"brackets", std::string(10 << 20, '<'), false},
        {"value of entities", "<a b=\"" + std::string(4096, ' ') + "&lt;\">", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Parsed parsed = parse("<before/>" + row.text + "<after/>", 1);
        EXPECT_EQ(parsed.result, row.fits);
        EXPECT_EQ(parsed.messages.errors.empty(), row.fits);
        EXPECT_EQ(parsed.events.back() == "</after", row.fits);
        EXPECT_EQ(parsed.messages.progressEnds, 1);
    }

    std::string manyAttributes = "<a";
    for (int i = 0; i < 2000000; ++i) manyAttributes += " b c";
    EXPECT_FALSE(parse(manyAttributes + ">").result);
}

} // namespace vdt::test
