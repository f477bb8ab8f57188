// Text output for model files: XML tags and number lists that read back to the same values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace vdt {

/// Takes finished text, piece by piece.
class TextSink {
public:
    virtual ~TextSink() = default;
    virtual bool take(std::string_view text) = 0;
};

class XmlOutput {
public:
    explicit XmlOutput(TextSink& target) : sink(&target) { buffer.reserve(kFlushSize + kFlushSize / 4); }

    /// A tag on a line of its own, left open for attributes until something else is written.
    void open(std::string_view element);
    void attribute(std::string_view name, std::string_view value);
    void attribute(std::string_view name, int64_t value) { attribute(name, std::to_string(value)); }
    void attribute(std::string_view name, double value);
    void attribute(std::string_view name, float value);
    /// Ends the element opened last.
    void close();
    /// The content of the element opened last. The format has no escapes there: '<' and zero bytes cannot be told.
    void text(std::string_view content);

    /// One number of a list; `perLine` of them stand on a line.
    template <class Number> void number(Number value, uint64_t perLine);

    /// Notes that something cannot be told in the format; the first such reason counts.
    void fail(std::string_view why)
    {
        if (reason.empty()) reason = why;
    }
    /// Sends what is still held back. Empty if everything went out, else the reason why not.
    std::string finish();

private:
    static constexpr size_t kFlushSize = 65536;

    void endTag();
    void send();
    void indent();

    TextSink* sink;
    std::string buffer;
    std::string elements; // names of open elements, each behind a '<'
    uint64_t depth = 0;   // how many there are
    uint64_t numbersInRow = 0;
    std::string reason;       // empty while all is well
    bool inTag = false;       // the tag opened last still takes attributes
    bool hasChildren = false; // the element opened last ends on a line of its own
};

/// The shortest text that reads back as `value`: as the double itself, or narrowed to the float.
std::string NumberText(double value);
std::string NumberText(float value);

} // namespace vdt
