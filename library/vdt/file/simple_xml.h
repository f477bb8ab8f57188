// A push parser for the XML shape of model files.
//
// Not a conforming XML parser, and not to become one: it streams tens of megabytes of number lists in constant
// memory and hands elements, attributes and text to its subclass as they come. Tags are not balanced, text is
// delivered as it stands, and a malformed file yields whatever events its bytes cause. What it takes for well-formed
// is told in docs/file_format.md.
#pragma once

#include "vdt/messages/message_handler.h"

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vdt {

struct XmlAttribute {
    std::string name;
    std::string value;

    friend bool operator==(const XmlAttribute&, const XmlAttribute&) = default;
};

class SimpleXml {
public:
    explicit SimpleXml(MessageHandler& handler) : messageHandler(&handler) {}
    SimpleXml(const SimpleXml&) = delete;
    SimpleXml& operator=(const SimpleXml&) = delete;
    virtual ~SimpleXml() = default;

    virtual void startDocument() = 0; // reserved: never called
    virtual void endDocument() = 0;   // reserved: never called
    virtual void startElement(std::string_view name, const std::vector<XmlAttribute>& attributes) = 0;
    virtual void endElement(std::string_view name) = 0;
    /// A piece of text, at most kPieceSize bytes. It may be cut anywhere.
    virtual void characters(std::string_view text) = 0;

    /// Runs over the whole stream. `totalSize` is what progress is measured by; 0 for no progress calls. False if
    /// the stream cannot be read or is empty, without any event, and if a tag is too long to be of this format,
    /// with an error message. True otherwise, cancelling included.
    bool parse(std::istream& stream, uint64_t totalSize);

    /// The longest piece of text, name, value or skipped tag.
    static constexpr size_t kPieceSize = 4096;
    /// The most attributes that one tag may have.
    static constexpr size_t kMostAttributes = 1024;

protected:
    MessageHandler* messageHandler;
};

} // namespace vdt
