#include "c4d_string.h"
#include "core/string_access.h"
#include "core/unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

constexpr size_t kEscapeLength = 6; // \uHHHH

size_t clampedTo(Int position, size_t length)
{
    return position < 0 ? 0 : std::min(static_cast<size_t>(position), length);
}

int hexDigit(char32_t character)
{
    if (character >= '0' && character <= '9') return static_cast<int>(character - '0');
    if (character >= 'a' && character <= 'f') return static_cast<int>(character - 'a') + 10;
    if (character >= 'A' && character <= 'F') return static_cast<int>(character - 'A') + 10;
    return -1;
}

// The number behind a \u at the front of `text`; -1 if there is no escape.
template <class Character> Int32 escapeAt(std::basic_string_view<Character> text)
{
    if (text.size() < kEscapeLength || text[0] != '\\' || text[1] != 'u') return -1;
    Int32 number = 0;
    for (size_t digit = 2; digit < kEscapeLength; ++digit) {
        const int value = hexDigit(static_cast<char32_t>(static_cast<std::make_unsigned_t<Character>>(text[digit])));
        if (value < 0) return -1;
        number = number * 16 + value;
    }
    return number;
}

// Escapes name UTF-16 units, so that two of them make a character beyond 16 bits.
std::u32string fromEscaped(std::string_view bytes)
{
    std::u32string text;
    std::u16string units;
    const auto flushUnits = [&] {
        text += host::FromUtf16(units);
        units.clear();
    };
    while (!bytes.empty()) {
        if (const Int32 unit = escapeAt(bytes); unit >= 0) {
            units.push_back(static_cast<char16_t>(unit));
            bytes.remove_prefix(kEscapeLength);
            continue;
        }
        flushUnits();
        text.push_back(static_cast<unsigned char>(bytes.front()));
        bytes.remove_prefix(1);
    }
    flushUnits();
    return text;
}

std::u32string decode(std::string_view bytes, STRINGENCODING type)
{
    if (type == STRINGENCODING_UTF8 || type == STRINGENCODING_HTML) return host::FromUtf8(bytes);
    if (type == STRINGENCODING_XBIT || type == STRINGENCODING_7BITHEX) return fromEscaped(bytes);
    std::u32string text;
    for (const char byte : bytes) {
        const auto character = static_cast<unsigned char>(byte);
        text.push_back(type == STRINGENCODING_7BIT && character > 0x7F ? host::kReplacementCharacter : character);
    }
    return text;
}

std::string escaped(char32_t character)
{
    std::string bytes;
    for (const char16_t unit : host::ToUtf16({&character, 1})) {
        bytes += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4) bytes += "0123456789ABCDEF"[unit >> shift & 0xF];
    }
    return bytes;
}

// The bytes of the character at the front of `text`.
std::string encodeFront(std::u32string_view text, STRINGENCODING type)
{
    const char32_t character = text.front();
    switch (type) {
    case STRINGENCODING_8BIT: return {character > 0xFF ? '?' : static_cast<char>(character)};
    case STRINGENCODING_7BIT: return {character > 0x7F ? '?' : static_cast<char>(character)};
    case STRINGENCODING_XBIT:
    case STRINGENCODING_7BITHEX:
        // A backslash that would be read as the start of an escape becomes one itself.
        if (character > 0x7F || escapeAt(text) >= 0) return escaped(character);
        return {static_cast<char>(character)};
    default: return host::ToUtf8({&character, 1});
    }
}

std::string encode(std::u32string_view text, STRINGENCODING type)
{
    if (type == STRINGENCODING_UTF8 || type == STRINGENCODING_HTML) return host::ToUtf8(text);
    std::string bytes;
    for (; !text.empty(); text.remove_prefix(1)) bytes += encodeFront(text, type);
    return bytes;
}

std::u32string caseless(std::u32string_view text)
{
    std::u32string lower(text);
    std::ranges::transform(lower, lower.begin(), host::ToLower);
    return lower;
}

Int32 sign(int order)
{
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

Bool found(size_t at, Int32* position)
{
    if (at == std::u32string::npos) return false;
    if (position) *position = static_cast<Int32>(at);
    return true;
}

template <class Number> String integerText(Number value)
{
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return host::TextOf({digits.data(), static_cast<size_t>(end - digits.data())});
}

// As many digits as tell the number from its neighbours; an exponent only where the zeros would hide them.
template <class Number> std::string plainDigits(Number value, Int32 behindPoint, bool exponent)
{
    constexpr Int32 kMostDigits = 300;
    std::array<char, 700> text{}; // the largest double has 309 digits before the point
    const Number amount = std::abs(value);
    const bool extreme = amount != 0 && (amount < Number(1e-5) || amount >= Number(1e15));
    const bool scientific = exponent || (behindPoint < 0 && extreme);
    const auto format = scientific ? std::chars_format::scientific : std::chars_format::fixed;
    char* const last = text.data() + text.size();
    const auto written = behindPoint < 0
                             ? std::to_chars(text.data(), last, amount, format)
                             : std::to_chars(text.data(), last, amount, format, std::min(behindPoint, kMostDigits));
    return {text.data(), written.ptr};
}

template <class Number>
String floatText(Number value, Int32 beforePoint, Int32 behindPoint, bool exponent, Utf32Char fill)
{
    const std::string digits = plainDigits(value, behindPoint, exponent);
    const size_t whole = std::min(digits.find_first_not_of("0123456789"), digits.size());
    const size_t wanted = clampedTo(beforePoint, 300);
    const bool nothing = digits.find_first_of("123456789in") == std::string::npos; // no digit, nor inf, nor nan
    String text;
    if (std::signbit(value) && !nothing) text += String(1, U'-');
    if (whole < wanted) text += String(static_cast<Int>(wanted - whole), fill);
    return text + host::TextOf(digits);
}

} // namespace

namespace host {

String TextOf(std::string_view utf8)
{
    const std::u32string characters = FromUtf8(utf8);
    return String(characters.data(), static_cast<Int>(characters.size()));
}

std::string Utf8Of(const String& text)
{
    std::string bytes(static_cast<size_t>(text.GetCStringLen(STRINGENCODING_UTF8)), '\0');
    text.GetCString(bytes.data(), static_cast<Int>(bytes.size()) + 1, STRINGENCODING_UTF8);
    return bytes;
}

} // namespace host

String::String(const Char* bytes, STRINGENCODING type)
{
    SetCString(bytes, -1, type);
}

String::String(const Utf16Char* units, Int count)
{
    std::u16string own;
    for (Int unit = 0; units && (count < 0 ? units[unit] != 0 : unit < count); ++unit)
        own.push_back(static_cast<char16_t>(units[unit]));
    text = host::FromUtf16(own);
}

String::String(const Utf32Char* characters, Int count)
{
    if (!characters) return;
    text = count < 0 ? std::u32string(characters) : std::u32string(characters, static_cast<size_t>(count));
}

String::String(Int count, Utf32Char fill) : text(clampedTo(count, text.max_size()), fill)
{
}

Bool String::FindFirst(const String& part, Int32* position, Int start) const
{
    if (part.text.empty()) return false;
    return found(text.find(part.text, clampedTo(start, text.size())), position);
}

Bool String::FindFirst(Utf32Char character, Int32* position, Int start) const
{
    return found(text.find(character, clampedTo(start, text.size())), position);
}

Bool String::FindLast(const String& part, Int32* position, Int start) const
{
    if (part.text.empty()) return false;
    return found(text.rfind(part.text, start < 0 ? std::u32string::npos : static_cast<size_t>(start)), position);
}

Bool String::FindLast(Utf32Char character, Int32* position, Int start) const
{
    return found(text.rfind(character, start < 0 ? std::u32string::npos : static_cast<size_t>(start)), position);
}

void String::Insert(Int position, Utf32Char character)
{
    text.insert(clampedTo(position, text.size()), 1, character);
}

void String::Insert(Int position, const String& part, Int start, Int end)
{
    const size_t first = clampedTo(start, part.text.size());
    const size_t last = end < 0 ? part.text.size() : clampedTo(end, part.text.size());
    if (first < last) text.insert(clampedTo(position, text.size()), part.text.substr(first, last - first));
}

void String::Delete(Int position, Int count)
{
    if (position < 0 || count <= 0 || static_cast<size_t>(position) >= text.size()) return;
    text.erase(static_cast<size_t>(position), static_cast<size_t>(count));
}

String String::SubStr(Int start, Int count) const
{
    String part;
    part.text = text.substr(clampedTo(start, text.size()), clampedTo(count, text.size()));
    return part;
}

String String::Left(Int count) const
{
    return SubStr(0, count);
}

String String::Right(Int count) const
{
    const size_t length = clampedTo(count, text.size());
    return SubStr(static_cast<Int>(text.size() - length), static_cast<Int>(length));
}

String String::ToUpper() const
{
    String upper = *this;
    std::ranges::transform(upper.text, upper.text.begin(), host::ToUpper);
    return upper;
}

String String::ToLower() const
{
    String lower;
    lower.text = caseless(text);
    return lower;
}

Int32 String::Compare(const String& other) const
{
    return sign(text.compare(other.text));
}

Int32 String::LexCompare(const String& other) const
{
    return sign(caseless(text).compare(caseless(other.text)));
}

Int String::GetCStringLen(STRINGENCODING type) const
{
    return static_cast<Int>(encode(text, type).size());
}

Int String::GetCString(Char* buffer, Int max, STRINGENCODING type) const
{
    if (!buffer || max <= 0) return 0;
    const auto room = static_cast<size_t>(max) - 1;
    size_t written = 0;
    // Whole characters only, so that what was cut is still valid text.
    for (std::u32string_view rest = text; !rest.empty(); rest.remove_prefix(1)) {
        const std::string bytes = encodeFront(rest, type);
        if (written + bytes.size() > room) break;
        std::copy(bytes.begin(), bytes.end(), buffer + written);
        written += bytes.size();
    }
    buffer[written] = 0;
    return static_cast<Int>(written);
}

Char* String::GetCStringCopy(STRINGENCODING type) const
{
    const std::string bytes = encode(text, type);
    Char* copy = NewMem(Char, static_cast<Int>(bytes.size()) + 1);
    if (copy) CopyMem(bytes.c_str(), copy, static_cast<Int>(bytes.size()) + 1);
    return copy;
}

void String::SetCString(const Char* bytes, Int count, STRINGENCODING type)
{
    text.clear();
    if (!bytes) return;
    std::string_view view = count < 0 ? std::string_view(bytes) : std::string_view(bytes, static_cast<size_t>(count));
    text = decode(view.substr(0, view.find('\0')), type);
}

String String::IntToString(Int32 value)
{
    return integerText(value);
}

String String::IntToString(Int64 value)
{
    return integerText(value);
}

String String::FloatToString(Float32 value, Int32 vvk, Int32 nnk, Bool e, Utf32Char fill)
{
    return floatText(value, vvk, nnk, e != 0, fill);
}

String String::FloatToString(Float64 value, Int32 vvk, Int32 nnk, Bool e, Utf32Char fill)
{
    return floatText(value, vvk, nnk, e != 0, fill);
}

String& String::operator+=(const String& other)
{
    text += other.text;
    return *this;
}

String operator+(const String& a, const String& b)
{
    String sum = a;
    return sum += b;
}
