#include "geolib/geo.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace geolib {
namespace {

constexpr size_t kMostReserved = 65536; // elements; beyond them room grows with what is really there

bool isBlank(int c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The number at the front of `text` as C's atof gives it in the C locale; 0 if there is none. `whole` tells whether
// that is all of the text.
double numberOf(std::string_view text, bool* whole = nullptr)
{
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    const char* const end = text.data() + text.size();
    double number = 0;
    const auto parsed = std::from_chars(text.data() + plus, end, number);
    if (whole) *whole = parsed.ec != std::errc::invalid_argument && parsed.ptr == end;
    if (parsed.ec != std::errc::result_out_of_range) return number;

    const std::string_view used(text.data(), static_cast<size_t>(parsed.ptr - text.data()));
    const size_t exponent = used.find_first_of("eE");
    const bool tiny = exponent != used.npos ? used.substr(exponent + 1).starts_with('-')
                                            : used.find_first_of("123456789") > used.find('.');
    return tiny ? 0 : (text[0] == '-' ? -1 : 1) * std::numeric_limits<double>::infinity();
}

float floatOf(double number)
{
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (number > kLargest) return std::numeric_limits<float>::infinity();
    if (number < -kLargest) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(number);
}

// Cuts the next word off `text`: up to white space, or to the end of a text in quotes or square brackets. Empty at
// the end.
std::string_view takeWord(std::string_view& text)
{
    while (!text.empty() && isBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    if (text.empty()) return {};

    size_t length = 0;
    if (text.front() == '"' || text.front() == '[') {
        const size_t closing = text.find(text.front() == '"' ? '"' : ']', 1);
        length = closing == text.npos ? text.size() : closing + 1;
    } else {
        while (length < text.size() && !isBlank(static_cast<unsigned char>(text[length]))) ++length;
    }
    const std::string_view word = text.substr(0, length);
    text.remove_prefix(length);
    return word;
}

// The text between the first `open` and the `close` that follows; what stands behind `open` if none does.
std::string_view between(std::string_view text, char open, char close)
{
    const size_t begin = text.find(open);
    if (begin == text.npos) return {};
    text.remove_prefix(begin + 1);
    return text.substr(0, text.find(close));
}

// Lines, words and numbers of a stream.
class Scanner {
public:
    explicit Scanner(std::istream& stream) : source(stream) { fill(); }

    /// How many lines have been begun.
    size_t line() const { return lineNumber; }

    /// The rest of the line, without its end.
    std::string restOfLine()
    {
        std::string text;
        for (; current != kEnd && current != '\n'; advance()) text += static_cast<char>(current);
        advance();
        if (text.ends_with('\r')) text.pop_back(); // of a file with the other line ends
        return text;
    }

    /// Up to white space, or to the end of a text in quotes or square brackets. Empty at the end of the stream.
    std::string word()
    {
        skipBlanks();
        std::string text;
        const int closing = current == '"' ? '"' : current == '[' ? ']' : kEnd;
        while (current != kEnd && (closing != kEnd || !isBlank(current))) {
            const bool closes = current == closing && !text.empty();
            text += static_cast<char>(current);
            advance();
            if (closes) break;
        }
        return text;
    }

    /// False if no whole number within 32 bits stands there.
    bool readInteger(int32_t& value)
    {
        skipBlanks();
        std::string digits;
        for (; (current >= '0' && current <= '9') || (digits.empty() && (current == '-' || current == '+')); advance())
            digits += static_cast<char>(current);
        const size_t plus = digits.starts_with('+');
        return std::from_chars(digits.data() + plus, digits.data() + digits.size(), value).ec == std::errc();
    }

    /// Takes all up to white space or values in brackets. False if that is no number.
    bool readFloat(float& value)
    {
        skipBlanks();
        std::string text;
        for (; current != kEnd && !isBlank(current) && current != '('; advance()) text += static_cast<char>(current);
        bool whole = false;
        value = floatOf(numberOf(text, &whole));
        return whole;
    }

    /// The text in the round brackets that come next on the line; empty if something else does.
    std::string bracketed()
    {
        std::string text;
        while (current != '\n' && isBlank(current)) advance();
        if (current != '(') return text;
        for (advance(); current != kEnd && current != ')'; advance()) text += static_cast<char>(current);
        advance();
        return text;
    }

private:
    static constexpr int kEnd = std::char_traits<char>::eof();
    static constexpr size_t kPieceSize = 4096;

    void skipBlanks()
    {
        while (isBlank(current)) advance();
    }

    void advance()
    {
        if (current == kEnd) return;
        lineNumber += current == '\n';
        if (++position < pieceEnd)
            current = static_cast<unsigned char>(piece[position]);
        else
            fill();
    }

    // Lines may be longer than a piece.
    void fill()
    {
        source.read(piece.data(), kPieceSize);
        pieceEnd = static_cast<size_t>(source.gcount());
        position = 0;
        current = pieceEnd > 0 ? static_cast<unsigned char>(piece[0]) : kEnd;
    }

    std::istream& source;
    std::array<char, kPieceSize> piece;
    size_t position = 0, pieceEnd = 0;
    size_t lineNumber = 1;
    int current = kEnd; // the character at `position`
};

struct Counts {
    int32_t points = -1, primitives = -1;
    int32_t pointGroups = -1, primitiveGroups = -1;
    std::array<int32_t, 3> attributes{-1, -1, -1}; // by AttributeClass
    int32_t wholeAttributes = -1;
};

class GeoReader {
public:
    GeoReader(Geo& target, std::istream& stream) : geo(target), scanner(stream) {}

    /// Where reading came to its end.
    size_t line() const { return scanner.line(); }

    bool read()
    {
        if (scanner.restOfLine() != "PGEOMETRY V5" || !readCounts()) return false;
        return readDefinitions(AttributeClass::Point, "PointAttrib") && readPoints() &&
               readDefinitions(AttributeClass::Vertex, "VertexAttrib") &&
               readDefinitions(AttributeClass::Primitive, "PrimitiveAttrib") && readPrimitives();
    }

private:
    using NamedCount = std::pair<std::string_view, int32_t*>;

    // As many pairs of a name and a number as there are names, in any order.
    bool readCountGroup(std::initializer_list<NamedCount> group)
    {
        for (size_t pair = 0; pair < group.size(); ++pair) {
            const std::string name = scanner.word();
            int32_t value = -1;
            if (!scanner.readInteger(value)) return false;
            const auto named = std::ranges::find(group, name, &NamedCount::first);
            if (named != group.end()) *named->second = value;
        }
        return std::ranges::all_of(group, [](const NamedCount& named) { return *named.second >= 0; });
    }

    bool readCounts()
    {
        auto& [points, vertices, primitives] = counts.attributes;
        if (!readCountGroup({{"NPoints", &counts.points}, {"NPrims", &counts.primitives}}) ||
            !readCountGroup({{"NPointGroups", &counts.pointGroups}, {"NPrimGroups", &counts.primitiveGroups}}) ||
            !readCountGroup({{"NPointAttrib", &points},
                             {"NVertexAttrib", &vertices},
                             {"NPrimAttrib", &primitives},
                             {"NAttrib", &counts.wholeAttributes}}))
            return false;
        scanner.restOfLine();
        return true;
    }

    int32_t attributeCount(AttributeClass elements) const { return counts.attributes[static_cast<size_t>(elements)]; }

    bool readDefinitions(AttributeClass elements, std::string_view title)
    {
        if (attributeCount(elements) == 0) return true;
        if (scanner.restOfLine() != title) return false;
        for (int32_t i = 0; i < attributeCount(elements); ++i)
            if (!readDefinition(geo.attributeTables[static_cast<size_t>(elements)])) return false;
        return true;
    }

    bool readDefinition(std::vector<GeoAttribute>& table)
    {
        GeoAttribute attribute;
        attribute.name = scanner.word();
        if (attribute.name.empty() || !scanner.readInteger(attribute.size) || attribute.size < 1) return false;
        attribute.type = scanner.word();
        for (int32_t component = 0; component < attribute.size; ++component) {
            const std::string word = scanner.word();
            if (word.empty()) return false;
            if (component < static_cast<int32_t>(kMostComponents))
                attribute.defaults[static_cast<size_t>(component)] = floatOf(numberOf(word));
        }
        scanner.restOfLine();
        if (!table.empty()) attribute.firstComponent = table.back().firstComponent + table.back().keptComponents();
        table.push_back(std::move(attribute));
        return true;
    }

    // One element's row. Words beyond the last attribute are left.
    void addRow(AttributeClass elements, std::string_view text)
    {
        AttributeRows& rows = geo.values[static_cast<size_t>(elements)];
        for (const GeoAttribute& attribute : geo.attributes(elements)) {
            for (int32_t component = 0; component < attribute.size; ++component) {
                const std::string_view word = takeWord(text);
                if (word.empty()) break;
                if (component < static_cast<int32_t>(kMostComponents))
                    rows.components.push_back(floatOf(numberOf(word)));
            }
            if (text.empty()) break;
        }
        rows.ends.push_back(rows.components.size());
    }

    bool readPoints()
    {
        geo.points.reserve(std::min(static_cast<size_t>(counts.points), kMostReserved));
        for (int32_t i = 0; i < counts.points; ++i) {
            std::array<float, 4> point;
            for (float& coordinate : point)
                if (!scanner.readFloat(coordinate)) return false;
            const std::string rest = scanner.restOfLine();
            geo.points.push_back(point);
            if (attributeCount(AttributeClass::Point) > 0) addRow(AttributeClass::Point, between(rest, '(', ')'));
        }
        return true;
    }

    bool readPrimitives()
    {
        geo.primitives.reserve(std::min(static_cast<size_t>(counts.primitives), kMostReserved));
        while (geo.primitives.size() < static_cast<size_t>(counts.primitives)) {
            const std::string word = scanner.word();
            const bool isRun = word == "Run";
            int32_t runLength = 1;
            if (isRun && (!scanner.readInteger(runLength) || runLength < 0)) return false;
            if ((isRun ? scanner.word() : word) != "Poly") return false;
            for (int32_t i = 0; i < runLength; ++i)
                if (!readPolygon()) return false;
        }
        return true;
    }

    bool readPolygon()
    {
        int32_t vertexCount = -1;
        if (!scanner.readInteger(vertexCount) || vertexCount < 0) return false;
        const std::string kind = scanner.word();
        if (kind != "<" && kind != ":") return false;

        auto polygon = std::make_unique<Polygon>();
        polygon->closed = kind == "<";
        const bool hasValues = attributeCount(AttributeClass::Vertex) > 0;
        AttributeRows& rows = geo.values[static_cast<size_t>(AttributeClass::Vertex)];
        const size_t rowsBefore = rows.ends.size();
        const size_t componentsBefore = rows.components.size();
        for (int32_t i = 0; i < vertexCount; ++i) {
            int32_t index = 0;
            if (!scanner.readInteger(index)) {
                rows.ends.resize(rowsBefore); // of the primitive that is not kept
                rows.components.resize(componentsBefore);
                return false;
            }
            polygon->vertices.push_back(index);
            if (hasValues) addRow(AttributeClass::Vertex, scanner.bracketed());
        }
        geo.primitives.push_back(std::move(polygon));
        if (attributeCount(AttributeClass::Primitive) > 0)
            addRow(AttributeClass::Primitive, between(scanner.restOfLine(), '[', ']'));
        return true;
    }

    Geo& geo;
    Scanner scanner;
    Counts counts;
};

} // namespace

bool Geo::read(std::istream& stream)
{
    *this = Geo();
    GeoReader reader(*this, stream);
    const bool complete = reader.read();
    lastLine = reader.line();
    return complete;
}

size_t Geo::findAttribute(AttributeClass elements, std::string_view name) const
{
    const std::vector<GeoAttribute>& table = attributes(elements);
    const auto found = std::ranges::find(table, name, &GeoAttribute::name);
    return found == table.end() ? kNoAttribute : static_cast<size_t>(found - table.begin());
}

AttributeValue Geo::value(AttributeClass elements, size_t attribute, size_t element) const
{
    const GeoAttribute& definition = attributes(elements)[attribute];
    const AttributeRows& rows = values[static_cast<size_t>(elements)];
    const size_t begin = rows.rowBegin(element) + definition.firstComponent;
    AttributeValue result = definition.defaults;
    for (size_t i = 0; i < definition.keptComponents() && begin + i < rows.ends[element]; ++i)
        result[i] = rows.components[begin + i];
    return result;
}

} // namespace geolib
