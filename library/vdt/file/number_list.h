// Number lists that arrive in pieces, and the numbers in attributes.
//
// Every number is what strtod or strtol (base 10) give in the C locale, to the bit, whatever the process's locale.
#pragma once

#include "vdt/memory/array.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vdt {

/// White space of the C locale.
constexpr bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// A number read from the front of a text, white space before it included.
template <class Number> struct ParsedNumber {
    Number value{};
    size_t length = 0; // characters used; 0 if there is no number
};

ParsedNumber<double> ParseDouble(std::string_view text);
/// Clamped to the 64-bit range.
ParsedNumber<int64_t> ParseInteger(std::string_view text);
/// Clamped to the 32-bit range.
ParsedNumber<int32_t> ParseInteger32(std::string_view text);

/// One growing list of numbers separated by white space. Pieces of text may end inside a number: the last number of
/// a piece is parsed, and corrected when the next piece brings its rest.
template <class Number> class NumberList {
public:
    void append(std::string_view piece);
    /// Empties the list, and forgets a number that was held back.
    void clear();
    /// Ends the list: what was held back stays as parsed.
    void finish() { pending.clear(); }

    Array<Number> values;

private:
    std::string pending; // text of the last number, or of something that is none
};

using FloatList = NumberList<double>;
using IntegerList = NumberList<int32_t>;

} // namespace vdt
