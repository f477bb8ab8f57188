#include "vdt/file/number_list.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <limits>

#ifndef _WIN32
#include <locale.h>
#endif

namespace vdt {
namespace {

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestExactPower = 22;
constexpr uint64_t kLargestExactInteger = uint64_t{1} << 53;
constexpr int kDigitsThatFit = 19; // any 19 digits fit into 64 bits

// strtod in the C locale, whatever the process's locale is.
double strtodInC(const char* text, char** end)
{
#ifdef _WIN32
    static const _locale_t c = _create_locale(LC_ALL, "C");
    return _strtod_l(text, end, c);
#else
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, end, c);
#endif
}

const char* skipSpace(const char* at, const char* end)
{
    while (at != end && IsSpace(*at)) ++at;
    return at;
}

// Takes the word at `at` through the standard library: long mantissas, hexadecimal, infinity, overflow, no number.
ParsedNumber<double> parseByLibrary(const char* begin, const char* at, const char* end)
{
    const std::string word(at, std::find_if(at, end, IsSpace));
    char* behind = nullptr;
    const double value = strtodInC(word.c_str(), &behind);
    if (behind == word.c_str()) return {};
    return {value, static_cast<size_t>(at - begin) + static_cast<size_t>(behind - word.c_str())};
}

// Decimal digits from `at` on, appended to `mantissa` while they fit.
const char* takeDigits(const char* at, const char* end, uint64_t& mantissa)
{
    while (at != end && isDigit(*at)) mantissa = mantissa * 10 + static_cast<uint64_t>(*at++ - '0');
    return at;
}

// An exponent from its letter on; gives `at` back if there is none. Saturates well beyond what a double can hold.
const char* takeExponent(const char* at, const char* end, int& exponent)
{
    const char* digit = at + 1;
    const bool negative = digit != end && *digit == '-';
    if (digit != end && (*digit == '-' || *digit == '+')) ++digit;
    if (digit == end || !isDigit(*digit)) return at;

    int value = 0;
    for (; digit != end && isDigit(*digit); ++digit) value = std::min(value * 10 + (*digit - '0'), 99999);
    exponent += negative ? -value : value;
    return digit;
}

} // namespace

// Clinger, "How to read floating point numbers accurately", 1990: where mantissa and power of ten are both exact, one
// multiplication or division rounds once and is right. Everything else goes to the standard library.
ParsedNumber<double> ParseDouble(std::string_view text)
{
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* const start = skipSpace(begin, end);
    const char* at = start;
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;

    uint64_t mantissa = 0;
    const char* const digits = at;
    at = takeDigits(at, end, mantissa);
    auto digitCount = at - digits;
    int exponent = 0;
    if (at != end && *at == '.') {
        const char* const fraction = ++at;
        at = takeDigits(at, end, mantissa);
        exponent = static_cast<int>(fraction - at);
        digitCount += at - fraction;
    }
    if (at != end && (*at == 'e' || *at == 'E')) at = takeExponent(at, end, exponent);

    const bool hexadecimal = at != end && (*at == 'x' || *at == 'X');
    const bool exact = digitCount > 0 && digitCount <= kDigitsThatFit && mantissa <= kLargestExactInteger &&
                       exponent >= -kLargestExactPower && exponent <= kLargestExactPower && !hexadecimal;
    if (!exact) return parseByLibrary(begin, start, end);

    const auto whole = static_cast<double>(mantissa);
    const double value = exponent < 0 ? whole / kPowersOfTen[-exponent] : whole * kPowersOfTen[exponent];
    return {negative ? -value : value, static_cast<size_t>(at - begin)};
}

ParsedNumber<int64_t> ParseInteger(std::string_view text)
{
    constexpr uint64_t kMost = std::numeric_limits<int64_t>::max();
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* at = skipSpace(begin, end);
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;

    const char* const digits = at;
    uint64_t magnitude = 0;
    at = takeDigits(at, end, magnitude);
    if (at == digits) return {};

    // Beyond 18 digits the sum may have wrapped: add again, stopping at the limit.
    const uint64_t limit = negative ? kMost + 1 : kMost;
    if (at - digits > 18) {
        magnitude = 0;
        for (const char* digit = digits; digit != at; ++digit) {
            const auto value = static_cast<uint64_t>(*digit - '0');
            magnitude = magnitude > (limit - value) / 10 ? limit : magnitude * 10 + value;
        }
    }
    const auto used = static_cast<size_t>(at - begin);
    return {negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude), used};
}

ParsedNumber<int32_t> ParseInteger32(std::string_view text)
{
    const ParsedNumber<int64_t> number = ParseInteger(text);
    const int64_t clamped =
        std::clamp<int64_t>(number.value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
    return {static_cast<int32_t>(clamped), number.length};
}

namespace {

ParsedNumber<double> parse(std::string_view text, double)
{
    return ParseDouble(text);
}
ParsedNumber<int32_t> parse(std::string_view text, int32_t)
{
    return ParseInteger32(text);
}

} // namespace

template <class Number> void NumberList<Number>::append(std::string_view piece)
{
    const char* at = piece.data();
    const char* const end = at + piece.size();
    if (!pending.empty()) {
        const char* const behind = std::find_if(at, end, IsSpace);
        pending.append(at, behind);
        if (!values.empty()) values.back() = parse(pending, Number{}).value;
        pending.clear();
        at = behind;
    }

    // Every number but the first takes two bytes at least.
    const size_t before = values.size();
    values.resize(before + piece.size() / 2 + 1);
    Number* to = values.data() + before;
    for (at = skipSpace(at, end); at != end; at = skipSpace(at, end)) {
        const ParsedNumber<Number> number = parse({at, static_cast<size_t>(end - at)}, Number{});
        *to++ = number.value;
        const char* const behind = at + number.length;
        const bool cutHere = behind == end || number.length == 0;
        if (cutHere || (std::is_same_v<Number, double> && !IsSpace(*behind))) {
            pending.assign(at, end);
            break;
        }
        at = behind;
    }
    values.resize(static_cast<size_t>(to - values.data()));
}

template <class Number> void NumberList<Number>::clear()
{
    values.clear();
    pending.clear();
}

template class NumberList<double>;
template class NumberList<int32_t>;

} // namespace vdt
