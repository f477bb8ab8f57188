#include "support/utf8.h"

#include <gtest/gtest.h>

namespace {

struct Decoded {
    bool ok;
    std::vector<uint32_t> codePoints;
    std::string warnings;
};

// Decodes a copy whose last byte is the last of its allocation.
Decoded decode(std::string_view text)
{
    const std::vector<char> copy(text.begin(), text.end());
    Decoded result;
    testing::internal::CaptureStderr();
    result.ok = utf8_to_uints({copy.data(), copy.size()}, result.codePoints);
    result.warnings = testing::internal::GetCapturedStderr();
    return result;
}

TEST(Utf8, TheFirstAndLastCodePointOfEachSizeComeBack)
{
    struct Row {
        uint32_t first, last;
        unsigned lead; // of the first
    };
    const Row rows[] = {{0, 0x7F, 0x00},           {0x80, 0x7FF, 0xC2},         {0x800, 0xFFFF, 0xE0},
                        {0x10000, 0x1FFFFF, 0xF0}, {0x200000, 0x3FFFFFF, 0xF8}, {0x4000000, 0x7FFFFFFF, 0xFC}};
    size_t size = 0;
    std::string all;
    std::vector<uint32_t> codePoints;
    for (const Row& row : rows) {
        SCOPED_TRACE(++size);
        EXPECT_EQ(static_cast<unsigned char>(uint_to_utf8(row.first)[0]), row.lead);
        for (const uint32_t codePoint : {row.first, row.last}) {
            EXPECT_EQ(uint_to_utf8(codePoint).size(), size);
            all += uint_to_utf8(codePoint);
            codePoints.push_back(codePoint);
        }
    }
    EXPECT_EQ(decode(all).codePoints, codePoints);
}

TEST(Utf8, FaultsStopTheTextWhereTheyStandAndAreTold)
{
    const std::string kSize = "[utf8_get_size] WARNING: Invalid character size.\n";
    const auto kConversion = [](int size, int position) {
        return "[utf8_to_uint] WARNING: Could not convert UTF-8 character (size = " + std::to_string(size) +
               ", position = " + std::to_string(position) + ").\n";
    };
    const std::string kContinuation = "[utf8_to_uint] WARNING: Invalid continuation byte.\n";
    struct Row {
        const char* text;
        std::vector<uint32_t> codePoints;
        std::string warnings;
    };
    const Row rows[] = {
        {"", {}, ""},
        {"\x80", {}, kSize + kConversion(0, 0)},
        {"a\xFE", {'a'}, kSize + kConversion(0, 1)},
        {"ab\xC3", {'a', 'b'}, kConversion(2, 2)},         // cut
        {"\xE2\x82", {}, kConversion(3, 0)},               // cut
        {"\xC3(b", {}, kContinuation + kConversion(2, 0)}, // interrupted
        {"x\xF0\x9F\x8C(y", {'x'}, kContinuation + kConversion(4, 1)},
        {"\xC0\x80\xED\xA0\x80", {0, 0xD800}, ""}, // overlong, surrogate
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        const Decoded result = decode(row.text);
        EXPECT_EQ(result.ok, row.warnings.empty());
        EXPECT_EQ(result.codePoints, row.codePoints);
        EXPECT_EQ(result.warnings, row.warnings);
    }
}

TEST(Utf8, WhatNoSequenceHoldsIsRefused)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(uint_to_utf8(0x80000000), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[uint_to_utf8] WARNING: Character not representable by UTF-8.\n");

    testing::internal::CaptureStderr();
    uint32_t codePoint = 1;
    EXPECT_FALSE(utf8_to_uint("\xC3", codePoint));
    EXPECT_EQ(codePoint, 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[utf8_to_uint] WARNING: Invalid single-byte character.\n");
}

} // namespace
