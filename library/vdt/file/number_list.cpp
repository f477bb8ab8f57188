#include "vdt/file/number_list.h"

#include <algorithm>
#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

#ifndef _WIN32
#include <locale.h> // NOLINT(modernize-deprecated-headers): the other need not have newlocale()
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
// Gives `at` back if there is no number.
const char* takeByLibrary(const char* at, const char* end, double& value)
{
    const std::string word(at, std::find_if(at, end, IsSpace));
    char* behind = nullptr;
    value = strtodInC(word.c_str(), &behind);
    return at + (behind - word.c_str());
}

// Appends eight digits to `mantissa` at once, added up pair by pair. False if there are fewer. Fractions are mostly
// that long, and a loop over them would have to guess where it ends.
bool takeEightDigits(const char* at, const char* end, uint64_t& mantissa)
{
    if (std::endian::native != std::endian::little || end - at < 8) return false;
    uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    word ^= 0x3030303030303030; // digits become their values
    if (((word + 0x7676767676767676) | word) & 0x8080808080808080) return false;
    word = word * 10 + (word >> 8);
    word =
        ((word & 0x000000FF000000FF) * 0x000F424000000064 + ((word >> 16) & 0x000000FF000000FF) * 0x0000271000000001) >>
        32;
    mantissa = mantissa * 100000000 + word;
    return true;
}

// Where a word is known to end before the text does, nobody need ask for the end at each of its characters.
enum class Ending { Text, Word };

template <Ending ending> bool isAtEnd(const char* at, const char* end)
{
    return ending == Ending::Text && at == end;
}

// Decimal digits from `at` on, appended to `mantissa`, which may wrap.
template <Ending ending> const char* takeDigits(const char* at, const char* end, uint64_t& mantissa)
{
    while (!isAtEnd<ending>(at, end) && isDigit(*at)) mantissa = mantissa * 10 + static_cast<uint64_t>(*at++ - '0');
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

#ifdef __SIZEOF_INT128__
__extension__ using Wide = unsigned __int128;

constexpr int kLargestDivision = 19; // 10^19 fits into 64 bits

constexpr auto kIntegerPowersOfTen = [] {
    std::array<uint64_t, kLargestDivision + 1> powers{1};
    for (size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

// mantissa / 10^power, rounded once: the quotient is taken to 63 bits, far more than a double keeps, and its last bit
// remembers whether anything came behind it.
double divideByPowerOfTen(uint64_t mantissa, int power)
{
    const uint64_t divisor = kIntegerPowersOfTen[static_cast<size_t>(power)];
    const int mantissaShift = std::countl_zero(mantissa);
    const int divisorShift = std::countl_zero(divisor);
    const auto dividend = static_cast<Wide>(mantissa << mantissaShift) << 63;
    const uint64_t normalised = divisor << divisorShift;
    auto quotient = static_cast<uint64_t>(dividend / normalised);
    quotient |= static_cast<uint64_t>(dividend % normalised != 0);
    return std::ldexp(static_cast<double>(quotient), divisorShift - mantissaShift - 63);
}
#else
constexpr int kLargestDivision = 0;

double divideByPowerOfTen(uint64_t, int)
{
    return 0;
} // never asked
#endif

// The number at `at`, where no white space stands; gives its end, or `at` if there is none.
//
// Clinger, "How to read floating point numbers accurately", 1990: where mantissa and power of ten are both exact, one
// multiplication or division rounds once and is right. Longer mantissas are divided as integers. What is left goes to
// the standard library.
template <Ending ending> const char* takeNumber(const char* const start, const char* const end, double& value)
{
    const char* at = start;
    const bool negative = !isAtEnd<ending>(at, end) && *at == '-';
    if (!isAtEnd<ending>(at, end) && (*at == '-' || *at == '+')) ++at;

    uint64_t mantissa = 0;
    const char* const digits = at;
    at = takeDigits<ending>(at, end, mantissa);
    auto digitCount = at - digits;
    int exponent = 0;
    if (!isAtEnd<ending>(at, end) && *at == '.') {
        const char* const fraction = ++at;
        if (takeEightDigits(at, end, mantissa)) at += 8;
        at = takeDigits<ending>(at, end, mantissa);
        exponent = static_cast<int>(fraction - at);
        digitCount += at - fraction;
    }
    if (!isAtEnd<ending>(at, end) && (*at == 'e' || *at == 'E')) at = takeExponent(at, end, exponent);

    const bool hexadecimal = !isAtEnd<ending>(at, end) && (*at == 'x' || *at == 'X');
    if (digitCount == 0 || digitCount > kDigitsThatFit || hexadecimal) return takeByLibrary(start, end, value);
    const auto whole = static_cast<double>(mantissa);
    if (mantissa <= kLargestExactInteger && exponent >= -kLargestExactPower && exponent <= kLargestExactPower) {
        value = exponent < 0 ? whole / kPowersOfTen[-exponent] : whole * kPowersOfTen[exponent];
    } else if (exponent == 0) {
        value = whole;
    } else if (exponent < 0 && exponent >= -kLargestDivision) {
        value = divideByPowerOfTen(mantissa, -exponent);
    } else {
        return takeByLibrary(start, end, value);
    }
    if (negative) value = -value;
    return at;
}

// The same for integers, clamped to 64 bits.
template <Ending ending> const char* takeNumber(const char* const start, const char* const end, int64_t& value)
{
    constexpr uint64_t kMost = std::numeric_limits<int64_t>::max();
    const char* at = start;
    bool negative = false;
    if (!isAtEnd<ending>(at, end) && !isDigit(*at)) {
        negative = *at == '-';
        if (negative || *at == '+') ++at;
    }

    const char* const digits = at;
    uint64_t magnitude = 0;
    at = takeDigits<ending>(at, end, magnitude);
    if (at == digits) return start;

    // Beyond 18 digits the sum may have wrapped: add again, stopping at the limit.
    const uint64_t limit = negative ? kMost + 1 : kMost;
    if (at - digits > 18) {
        magnitude = 0;
        for (const char* digit = digits; digit != at; ++digit) {
            const auto next = static_cast<uint64_t>(*digit - '0');
            magnitude = magnitude > (limit - next) / 10 ? limit : magnitude * 10 + next;
        }
    }
    value = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
    return at;
}

// Clamped to 32 bits. Nine digits always fit, and indices seldom have more.
template <Ending ending> const char* takeNumber(const char* const start, const char* const end, int32_t& value)
{
    uint64_t magnitude = 0;
    const char* const behind = takeDigits<ending>(start, end, magnitude);
    if (behind != start && behind - start <= 9) {
        value = static_cast<int32_t>(magnitude);
        return behind;
    }
    int64_t wide = 0;
    const char* const behindWide = takeNumber<ending>(start, end, wide);
    value = static_cast<int32_t>(
        std::clamp<int64_t>(wide, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
    return behindWide;
}

template <class Number> ParsedNumber<Number> parseNumber(std::string_view text)
{
    const char* const end = text.data() + text.size();
    const char* const start = skipSpace(text.data(), end);
    ParsedNumber<Number> number;
    const char* const behind = takeNumber<Ending::Text>(start, end, number.value);
    if (behind != start) number.length = static_cast<size_t>(behind - text.data());
    return number;
}

} // namespace

ParsedNumber<double> ParseDouble(std::string_view text)
{
    return parseNumber<double>(text);
}

ParsedNumber<int64_t> ParseInteger(std::string_view text)
{
    return parseNumber<int64_t>(text);
}

ParsedNumber<int32_t> ParseInteger32(std::string_view text)
{
    return parseNumber<int32_t>(text);
}

template <class Number> void NumberList<Number>::append(std::string_view piece)
{
    const char* at = piece.data();
    const char* const end = at + piece.size();
    if (!pending.empty()) {
        const char* const behind = std::find_if(at, end, IsSpace);
        pending.append(at, behind);
        if (!values.empty()) values.back() = parseNumber<Number>(pending).value;
        pending.clear();
        at = behind;
    }

    // Every number but the first takes two bytes at least.
    const size_t before = values.size();
    values.resize(before + piece.size() / 2 + 1);
    Number* to = values.data() + before;
    const char* lastWord = end;
    while (lastWord != at && !IsSpace(lastWord[-1])) --lastWord;
    bool cut = false;
    for (at = skipSpace(at, end); at < lastWord && !cut; at = skipSpace(at, end)) {
        const char* const behind = takeNumber<Ending::Word>(at, end, *to++);
        cut = behind == at || (std::is_same_v<Number, double> && !IsSpace(*behind));
        if (!cut) at = behind;
    }
    while (at != end && !cut) {
        const char* const behind = takeNumber<Ending::Text>(at, end, *to++);
        cut = behind == at || behind == end || (std::is_same_v<Number, double> && !IsSpace(*behind));
        if (!cut) at = behind;
    }
    if (cut) pending.assign(at, end);
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
