#include "vdt/file/simple_xml.h"

#include "vdt/file/number_list.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace vdt {
namespace {

constexpr size_t kChunkSize = 4096;

// The byte that an entity stands for. Unknown ones give a zero byte, which ends the value that they stand in.
char entityValue(std::string_view name)
{
    if (name == "amp") return '&';
    if (name == "lt") return '<';
    if (name == "gt") return '>';
    if (name == "quot") return '"';
    if (name == "apos") return '\'';
    return '\0';
}

// Names, values and pieces of text are strings that end at their first zero byte.
std::string_view untilZero(std::string_view text)
{
    const void* zero = std::memchr(text.data(), 0, text.size());
    return zero ? text.substr(0, static_cast<size_t>(static_cast<const char*>(zero) - text.data())) : text;
}

// What stands inside the angle brackets, byte by byte.
class TagMachine {
public:
    enum class Result { More, Ended, TooLong };

    void begin()
    {
        tagName.clear();
        fill = 0;
        lastNonSpace = previous = '<';
    }

    // Takes bytes up to the end of the tag or of the chunk; `at` is left behind the last one taken.
    Result take(const char*& at, const char* end)
    {
        while (at != end) {
            const char c = *at++;
            const bool closing = c == '>' && !inQuote;
            if (inQuote) {
                takeQuoted(c);
            } else if (!closing) {
                takeBare(c);
            }
            previous = c;
            if (!IsSpace(c)) lastNonSpace = c;
            // The bracket itself completes the attribute before it.
            const size_t attributeCount = attributes.size() + (closing && !skipTag && !attributeName.empty() ? 1 : 0);
            if (fill > SimpleXml::kPieceSize || attributeCount > SimpleXml::kMostAttributes) return Result::TooLong;
            if (closing) return Result::Ended;
        }
        return Result::More;
    }

    // Sends the events of a tag that has ended.
    void finish(SimpleXml& target)
    {
        if (!skipTag) sendEvents(target);
        sawSlash = skipTag = false;
        isOpening = true;
        fill = 0;
    }

private:
    void takeQuoted(char c)
    {
        if (inEntity) {
            takeEntity(c);
        } else if (c == '"' && previous != '\\') {
            inQuote = false;
        } else if (c == '&') {
            openEntity();
        } else {
            append(c);
        }
    }

    void takeBare(char c)
    {
        if (c == '"') {
            inQuote = true;
        } else if (IsSpace(c) || c == '=') {
            endWord();
        } else if (c == '/') {
            sawSlash = true;
            if (lastNonSpace == '<') isOpening = false;
            endWord();
        } else if ((c == '?' || c == '!') && lastNonSpace == '<') {
            skipTag = true;
        } else if (inEntity) {
            takeEntity(c);
        } else if (c == '&') {
            openEntity();
        } else {
            append(c);
        }
    }

    void openEntity()
    {
        inEntity = true;
        entityFill = 0;
    }

    void takeEntity(char c)
    {
        if (c == ';') {
            inEntity = false;
            append(entityValue({entity, std::min(entityFill, sizeof entity)}));
        } else if (entityFill < sizeof entity) {
            entity[entityFill++] = c;
        }
    }

    // One byte too many may enter: that is how an overlong word is noticed.
    void append(char c)
    {
        if (fill <= SimpleXml::kPieceSize) buffer[fill++] = c;
    }

    std::string_view word() const { return untilZero({buffer, fill}); }

    void endWord()
    {
        if (skipTag) return;
        if (tagName.empty()) {
            tagName = word();
        } else if (attributeName.empty()) {
            attributeName = word();
        } else {
            endAttribute();
        }
        fill = 0;
    }

    void endAttribute()
    {
        attributes.push_back({std::move(attributeName), std::string(word())});
        attributeName.clear();
    }

    void sendEvents(SimpleXml& target)
    {
        if (tagName.empty()) {
            tagName = word();
        } else if (!attributeName.empty()) {
            endAttribute();
        } else {
            // Compatibility: a bare word before the bracket waits for its value in the next tag.
            attributeName = word();
        }
        if (tagName.empty()) return;
        if (isOpening) {
            target.startElement(tagName, attributes);
            attributes.clear();
        }
        if (sawSlash) target.endElement(tagName);
    }

    bool inQuote = false;
    bool inEntity = false;
    bool isOpening = true;
    bool sawSlash = false;
    bool skipTag = false; // a processing instruction, declaration or comment
    char lastNonSpace = 0;
    char previous = 0;
    std::string tagName;
    std::string attributeName;
    std::vector<XmlAttribute> attributes;
    size_t fill = 0;
    char buffer[SimpleXml::kPieceSize + 1] = {};
    size_t entityFill = 0;
    char entity[8] = {};
};

// The text between tags and the window of the file that it lies in.
//
// Chunks are read one behind the other into a window of several, so that a piece of text is delivered where it lies
// although it may begin in one chunk and end in the next.
class TextWindow {
public:
    // Room for the next chunk, behind what is held back.
    char* room()
    {
        if (end + kChunkSize > sizeof window) {
            const size_t held = end - piece;
            std::memmove(window, window + piece, held);
            piece = 0;
            end = held;
        }
        return window + end;
    }

    // `from` is where text goes on: a piece begins there.
    void beginPiece(const char* from) { piece = static_cast<size_t>(from - window); }

    // Takes text up to the next tag or the end of the chunk; `at` is left on the bracket or at the end. True if
    // there is a tag.
    bool take(const char*& at, const char* chunkEnd, SimpleXml& target)
    {
        while (at != chunkEnd) {
            const char* full = window + piece + SimpleXml::kPieceSize;
            const char* limit = std::min(full, chunkEnd);
            const void* bracket = std::memchr(at, '<', static_cast<size_t>(limit - at));
            if (bracket) {
                at = static_cast<const char*>(bracket);
                deliver(at, target);
                return true;
            }
            at = limit;
            if (at == chunkEnd) break;
            deliver(at, target);
        }
        end = static_cast<size_t>(chunkEnd - window);
        return false;
    }

    // A tag goes on past the chunk: nothing of it need be kept.
    void dropAll() { piece = end = 0; }

private:
    void deliver(const char* upTo, SimpleXml& target)
    {
        const char* from = window + piece;
        if (upTo != from) target.characters(untilZero({from, static_cast<size_t>(upTo - from)}));
        beginPiece(upTo);
    }

    size_t piece = 0; // where the piece of text that is not delivered yet begins
    size_t end = 0;   // where the next chunk goes
    char window[17 * kChunkSize] = {};
};

struct ParserState {
    TextWindow text;
    TagMachine tag;
    bool inTag = false;

    // False if a tag is too long.
    bool takeChunk(const char* at, const char* end, SimpleXml& target)
    {
        while (at != end) {
            if (!inTag) {
                if (!text.take(at, end, target)) return true;
                ++at;
                inTag = true;
                tag.begin();
            }
            const TagMachine::Result result = tag.take(at, end);
            if (result == TagMachine::Result::TooLong) return false;
            if (result == TagMachine::Result::More) break;
            tag.finish(target);
            inTag = false;
            text.beginPiece(at);
        }
        if (inTag) {
            text.dropAll();
        } else {
            text.take(at, end, target);
        }
        return true;
    }
};

} // namespace

bool SimpleXml::parse(std::istream& stream, uint64_t totalSize)
{
    if (!stream.good() || stream.peek() == std::istream::traits_type::eof()) return false;

    if (totalSize > 0) messageHandler->beginProgress("loading vdt file");
    const auto state = std::make_unique<ParserState>();
    uint64_t taken = 0;
    bool wellFormed = true;
    while (wellFormed && stream.good() && !messageHandler->isCancelled()) {
        char* chunk = state->text.room();
        stream.read(chunk, kChunkSize);
        const auto size = static_cast<size_t>(stream.gcount());
        taken += size;
        wellFormed = state->takeChunk(chunk, chunk + size, *this);
        if (totalSize > 0)
            messageHandler->progress(
                std::min(1.0f, static_cast<float>(static_cast<double>(taken) / static_cast<double>(totalSize))));
    }
    if (!wellFormed)
        messageHandler->error("A tag is not of this format: it holds a name, value or comment of more than 4096 bytes "
                              "or more than 1024 attributes. Reading ends there.");
    if (totalSize > 0) messageHandler->endProgress();
    return wellFormed;
}

} // namespace vdt
