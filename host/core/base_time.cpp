#include "c4d_basetime.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr Float kMilliseconds = 1000; // in a second
constexpr Float kFarthest = 1e18;     // of both parts

Float wholeNumber(Float value)
{
    if (std::isnan(value)) return 0;
    return std::floor(std::clamp(value, -kFarthest, kFarthest) + 0.5);
}

Float greatestCommonDivisor(Float a, Float b)
{
    while (b != 0) {
        const Float rest = std::fmod(a, b);
        a = b;
        b = rest;
    }
    return a;
}

} // namespace

BaseTime::BaseTime(Float seconds)
    : BaseTime(std::isnan(seconds) ? 0 : std::clamp(seconds, -1e15, 1e15) * kMilliseconds, kMilliseconds)
{
}

BaseTime::BaseTime(Float z, Float n) : numerator(wholeNumber(z)), denominator(wholeNumber(n))
{
    if (denominator < 0) {
        numerator = -numerator;
        denominator = -denominator;
    }
    denominator = std::max<Float>(denominator, 1);
    if (numerator == 0) {
        numerator = 0; // not minus zero
        denominator = 1;
        return;
    }
    const Float divisor = greatestCommonDivisor(std::abs(numerator), denominator);
    numerator /= divisor;
    denominator /= divisor;
}

Int32 BaseTime::Compare(const BaseTime& other) const
{
    if (numerator == other.numerator && denominator == other.denominator) return 0;
    const Float mine = std::floor(numerator * other.denominator);
    const Float others = std::floor(other.numerator * denominator);
    return mine < others ? -1 : mine > others ? 1 : 0;
}

BaseTime operator+(const BaseTime& a, const BaseTime& b)
{
    return BaseTime(a.numerator * b.denominator + b.numerator * a.denominator, a.denominator * b.denominator);
}

BaseTime operator-(const BaseTime& a, const BaseTime& b)
{
    return BaseTime(a.numerator * b.denominator - b.numerator * a.denominator, a.denominator * b.denominator);
}
