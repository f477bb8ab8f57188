#include "vdt/file/number_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>

namespace vdt::test {
namespace {

// Texts that have caught parsers before, and some that are no numbers at all.
constexpr std::string_view kNasty =
    "|+|-|.|-.|e5|.e5|1e|1e+|1e-|1.e5|.5|-.5e-3|+7|--1|+-1|1 2|12abc|0|-0|0.0|-0.0e10|00012|0x10|0x|0x.8p1"
    "|-0X1.fffffffffffffp+1023|0xg|1x2|10x3|inf|-INF|infinity|infin|nan|-nan|nan(123)|nan(|INFINITYx|1,5|1'000"
    "|\v\f\t\r\n 3|9007199254740992|9007199254740993|9007199254740993.0|9007199254740992e22|9007199254740991e-22"
    "|1e22|1e23|1e-22|1e-23|8.5e22|123456789012345678|1234567890123456789|12345678901234567890"
    "|0.1234567890123456789|0.00000000000000000000000000001|18446744073709551615|18446744073709551616|1e308"
    "|1.7976931348623157e308|1.7976931348623159e308|1e309|-1e400|1e99999999999999999999|4.9e-324"
    "|2.4703282292062327e-324|2.4703282292062328e-324|2.2250738585072011e-308|1e-400|1e-99999|2147483647"
    "|2147483648|-2147483648|-2147483649|9223372036854775807|9223372036854775808|-9223372036854775808"
    "|-9223372036854775809|99999999999999999999999999|-99999999999999999999999999"
    "|000000000000000000000000000000000042|0.000000000000000000000000000000000042e30";

std::string randomNumber(std::mt19937& random)
{
    constexpr char kCharacters[] = "0123456789012345678901234567890123456789..eE+-x \tn";
    std::string text;
    const size_t length = random() % 28;
    for (size_t i = 0; i < length; ++i) text += kCharacters[random() % (sizeof kCharacters - 1)];
    return text;
}

// What most numbers in files look like.
std::string plainNumber(std::mt19937& random)
{
    char text[64];
    const double value = std::ldexp(static_cast<double>(random()) - 2e9, static_cast<int>(random() % 60) - 40);
    std::snprintf(text, sizeof text, random() % 2 ? "%.8g" : "%.17g", value);
    return text;
}

void expectAsTheStandardLibrary(const std::string& text)
{
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const ParsedNumber<double> number = ParseDouble(text);
    ASSERT_EQ(number.length, static_cast<size_t>(end - text.c_str())) << '"' << text << '"';
    ASSERT_EQ(std::bit_cast<uint64_t>(number.value), std::bit_cast<uint64_t>(expected)) << '"' << text << '"';

    const int64_t expectedInteger = std::strtol(text.c_str(), &end, 10);
    const ParsedNumber<int64_t> integer = ParseInteger(text);
    ASSERT_EQ(integer.length, static_cast<size_t>(end - text.c_str())) << '"' << text << '"';
    ASSERT_EQ(integer.value, expectedInteger) << '"' << text << '"';
    ASSERT_EQ(ParseInteger32(text).value, std::clamp<int64_t>(expectedInteger, INT32_MIN, INT32_MAX));
}

template <class Number> std::vector<Number> listOf(std::initializer_list<std::string_view> pieces)
{
    NumberList<Number> list;
    for (const std::string_view piece : pieces) list.append(piece);
    return {list.values.begin(), list.values.end()};
}

} // namespace

TEST(Numbers, AreWhatTheStandardLibraryMakesOfThem)
{
    for (size_t start = 0, end = 0; end < kNasty.size(); start = end + 1) {
        end = std::min(kNasty.find('|', start), kNasty.size());
        expectAsTheStandardLibrary(std::string(kNasty.substr(start, end - start)));
    }
    std::mt19937 random(1);
    for (int i = 0; i < 300000; ++i) expectAsTheStandardLibrary(i % 3 ? plainNumber(random) : randomNumber(random));
}

TEST(Numbers, DoNotFollowTheProcesssLocale)
{
    // Machines seldom have the locale; most can make one.
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "verdanth_test_locales";
    std::filesystem::create_directories(folder);
    const std::string make = "localedef -i de_DE -f UTF-8 " + (folder / "de_DE.UTF-8").string() + " >/dev/null 2>&1";
    [[maybe_unused]] const int made = std::system(make.c_str());
    setenv("LOCPATH", folder.c_str(), 1);
    const bool german = std::setlocale(LC_ALL, "de_DE.UTF-8") && std::strtod("1,5", nullptr) == 1.5;
    const double fast = ParseDouble("1.5").value;
    const double slow = ParseDouble("1.50000000000000000000").value;
    const double comma = ParseDouble("1,50000000000000000000").value;
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
    if (!german) GTEST_SKIP() << "no German locale to be had";
    EXPECT_EQ(fast, 1.5);
    EXPECT_EQ(slow, 1.5);
    EXPECT_EQ(comma, 1.0);
}

TEST(NumberList, CutAnywhereGivesTheSameNumbers)
{
    const std::string floats = " 12 -3.5e+2\n.25\t1e22 0x1p4 nan 7";
    const std::string integers = "1 -22 333\n99999999999 -2147483648  0005 ";
    const auto wholeFloats = listOf<double>({floats});
    const auto wholeIntegers = listOf<int32_t>({integers});
    ASSERT_EQ(wholeFloats.size(), 7u);
    ASSERT_EQ(wholeIntegers.size(), 6u);
    const auto bitsOf = [](const std::vector<double>& values) {
        std::vector<uint64_t> bits;
        for (const double value : values) bits.push_back(std::bit_cast<uint64_t>(value));
        return bits;
    };
    for (size_t cut = 1; cut < floats.size(); ++cut)
        EXPECT_EQ(bitsOf(listOf<double>({std::string_view(floats).substr(0, cut), floats.substr(cut)})),
                  bitsOf(wholeFloats))
            << cut;
    for (size_t cut = 1; cut < integers.size(); ++cut)
        EXPECT_EQ(listOf<int32_t>({std::string_view(integers).substr(0, cut), integers.substr(cut)}), wholeIntegers)
            << cut;
}

TEST(NumberList, HoldsBackWhatMayGoOn)
{
    EXPECT_EQ(listOf<double>({"1 12", "34.5 6"}), (std::vector<double>{1, 1234.5, 6}));
    EXPECT_EQ(listOf<double>({"1.5,2.5 7"}), (std::vector<double>{1.5})) << "a float ends only at white space";
    EXPECT_EQ(listOf<int32_t>({"1,2 7"}), (std::vector<int32_t>{1, 0})) << "an integer ends at its last digit";
    EXPECT_EQ(listOf<double>({"1 x 2", " 3"}), (std::vector<double>{1, 0, 3})) << "a word that is no number counts 0";
    EXPECT_EQ(listOf<int32_t>({"1 2", "", " 3"}), (std::vector<int32_t>{1, 2, 3}));
    EXPECT_TRUE(listOf<double>({" \n ", "\t"}).empty());
}

TEST(NumberList, StaysLinearWithoutWhiteSpace)
{
    NumberList<double> list;
    const std::string digits(4096, '7');
    for (int i = 0; i < 3000; ++i) list.append(digits);
    EXPECT_LE(list.values.size(), 3000u);
}

} // namespace vdt::test
