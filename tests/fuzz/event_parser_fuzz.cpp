#include "fuzz/entries.h"
#include "support/recording_messages.h"
#include "vdt/file/simple_xml.h"

#include <sstream>

namespace vdt::test {
namespace {

// Checks what the parser promises of every event.
class CheckedEvents final : public SimpleXml {
public:
    using SimpleXml::SimpleXml;

    void startDocument() override { complaint = "startDocument was called"; }
    void endDocument() override { complaint = "endDocument was called"; }
    void startElement(std::string_view name, const std::vector<XmlAttribute>& attributes) override
    {
        checkWord(name);
        if (attributes.size() > kMostAttributes) complaint = "too many attributes";
        for (const XmlAttribute& attribute : attributes) {
            checkWord(attribute.name);
            delivered += attribute.value.size();
            if (attribute.value.size() > kPieceSize) complaint = "an overlong attribute value";
        }
    }
    void endElement(std::string_view name) override { checkWord(name); }
    void characters(std::string_view text) override
    {
        delivered += text.size();
        if (text.size() > kPieceSize) complaint = "a piece of text of " + std::to_string(text.size());
    }

    std::string complaint;
    size_t delivered = 0; // bytes of text and values

private:
    void checkWord(std::string_view word)
    {
        if (word.size() > kPieceSize) complaint = "an overlong name";
    }
};

} // namespace

std::string FuzzEventParser(std::string_view input)
{
    RecordingMessages messages;
    CheckedEvents events(messages);
    std::istringstream stream{std::string(input)};

    const bool consumed = events.parse(stream, input.size());

    if (!events.complaint.empty()) return events.complaint;
    if (events.delivered > input.size()) return "more was delivered than was there";
    if (consumed == (input.empty() || !messages.errors.empty())) return "the result disagrees with the messages";
    if (messages.progressBegins.size() != (input.empty() ? 0u : 1u)) return "progress began otherwise than once";
    if (static_cast<size_t>(messages.progressEnds) != messages.progressBegins.size()) return "progress did not end";
    return {};
}

} // namespace vdt::test
