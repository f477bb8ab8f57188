#include "core/resource_lexer.h"

#include "core/unicode.h"

#include <charconv>

namespace host {
namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isWordStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isWordPart(char c)
{
    return isWordStart(c) || isDigit(c);
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

bool isSurrogate(uint32_t code)
{
    return code >= 0xD800 && code <= 0xDFFF;
}

} // namespace

ResourceLexer::ResourceLexer(const ResourceText& source, ResourceFaults& report)
    : name(source.name),
      content(source.content),
      faults(report)
{
    if (content.starts_with("\xEF\xBB\xBF")) place = 3;
    read();
}

ResourceToken ResourceLexer::next()
{
    ResourceToken result = std::move(token);
    read();
    return result;
}

bool ResourceLexer::take(char mark)
{
    if (!token.isMark(mark)) return false;
    read();
    return true;
}

bool ResourceLexer::expect(char mark)
{
    if (take(mark)) return true;
    const bool atEnd = token.kind == ResourceToken::Kind::End;
    fault(token.line,
          "expected " + InQuotes({&mark, 1}) + ", found " + (atEnd ? "the file's end" : InQuotes(token.text)));
    return false;
}

void ResourceLexer::skipToEnd()
{
    place = content.size();
    read();
}

void ResourceLexer::read()
{
    skipBlanks();
    token = {};
    token.line = line;
    if (place == content.size()) return;

    const char c = content[place];
    const char second = at(1);
    if (isWordStart(c)) return readWord();
    if (c == '"') return readText();
    const bool isSigned = (c == '-' || c == '+') && (isDigit(second) || (second == '.' && isDigit(at(2))));
    if (isDigit(c) || isSigned || (c == '.' && isDigit(second))) return readNumber();
    token.kind = ResourceToken::Kind::Mark;
    token.text = c;
    ++place;
}

// Blanks, comments and lines for the C++ compiler alone. Bytes that mean nothing anywhere are told and passed, once
// for a run of them.
void ResourceLexer::skipBlanks()
{
    constexpr std::string_view kMarks = "{};,=~+-.()<>|\"";
    bool told = false;
    while (place < content.size()) {
        const char c = content[place];
        if (c == '\n' || (c == '\r' && at(1) != '\n')) ++line;
        if (isBlank(c)) {
            ++place;
        } else if (c == '#') {
            place = std::min(content.find_first_of("\r\n", place), content.size());
        } else if (c == '/' && skipComment()) {
            continue;
        } else if (isWordPart(c) || kMarks.find(c) != std::string_view::npos) {
            return;
        } else {
            if (!told) fault(line, "what stands here has no meaning");
            told = true;
            ++place;
        }
    }
}

bool ResourceLexer::skipComment()
{
    if (at(1) == '/') {
        place = std::min(content.find_first_of("\r\n", place), content.size());
        return true;
    }
    if (at(1) != '*') return false;
    const size_t end = content.find("*/", place + 2);
    if (end == std::string_view::npos) fault(line, "a comment is left open");
    for (const size_t stop = std::min(end, content.size()); place < stop; ++place) {
        if (at(0) == '\n' || (at(0) == '\r' && at(1) != '\n')) ++line;
    }
    if (end != std::string_view::npos) place = end + 2;
    return true;
}

void ResourceLexer::readWord()
{
    const size_t start = place;
    while (place < content.size() && isWordPart(content[place])) ++place;
    token.kind = ResourceToken::Kind::Word;
    token.text = content.substr(start, place - start);
}

void ResourceLexer::readNumber()
{
    const size_t start = place;
    if (content[place] == '-' || content[place] == '+') ++place;
    const bool isHexadecimal = at(0) == '0' && (at(1) == 'x' || at(1) == 'X');
    while (place < content.size()) {
        const char c = content[place];
        const char before = content[place - (place > start ? 1 : 0)];
        const bool signsExponent = !isHexadecimal && (c == '-' || c == '+') && (before == 'e' || before == 'E');
        if (!isWordPart(c) && c != '.' && !signsExponent) break;
        ++place;
    }
    token.kind = ResourceToken::Kind::Number;
    token.text = content.substr(start, place - start);

    int32_t integer = 0;
    if (ParseInteger(token.text, integer)) {
        token.number = integer;
        return;
    }
    const char* first = token.text.data() + (token.text.front() == '+' ? 1 : 0);
    const char* last = token.text.data() + token.text.size();
    const auto [end, error] = std::from_chars(first, last, token.number);
    if (error != std::errc() || end != last) fault(line, InQuotes(token.text) + " is no number");
}

// A text ends on its line: one that is left open must not swallow those behind it.
void ResourceLexer::readText()
{
    token.kind = ResourceToken::Kind::Text;
    ++place;
    while (place < content.size() && at(0) != '"' && at(0) != '\n' && at(0) != '\r') {
        if (at(0) == '\\') {
            readEscape();
        } else {
            token.text += content[place++];
        }
    }
    if (at(0) == '"') {
        ++place;
    } else {
        fault(line, "a text is left open");
    }

    std::erase(token.text, '\0');
    const std::string sound = ToUtf8(FromUtf8(token.text));
    if (sound != token.text) fault(line, "a text holds bytes that are no UTF-8");
    token.text = sound;
}

void ResourceLexer::readEscape()
{
    ++place;
    const char c = at(0);
    if (place == content.size() || c == '\n' || c == '\r') return;
    if (c != 'u') {
        if (c == 'n' || c == 't') {
            token.text += c == 'n' ? '\n' : '\t';
            ++place;
        } else if (c == '"' || c == '\\') {
            token.text += c;
            ++place;
        } else {
            fault(line, "a backslash stands before what needs none");
        }
        return;
    }

    uint32_t code = 0;
    ++place;
    if (!readHexadecimal(code)) return fault(line, "\\u needs four hexadecimal digits");
    if (code >= 0xD800 && code <= 0xDBFF && at(0) == '\\' && at(1) == 'u') {
        const size_t mark = place;
        uint32_t low = 0;
        place += 2;
        if (readHexadecimal(low) && low >= 0xDC00 && low <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10 | (low - 0xDC00));
        } else {
            place = mark;
        }
    }
    if (code == 0 || isSurrogate(code)) {
        fault(line, "an escape is no character");
        code = kReplacementCharacter;
    }
    token.text += ToUtf8(std::u32string(1, code));
}

bool ResourceLexer::readHexadecimal(uint32_t& unit)
{
    const std::string_view digits = content.substr(place, 4);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (digits.size() < 4 || error != std::errc() || end != digits.data() + 4) return false;
    place += 4;
    return true;
}

} // namespace host
