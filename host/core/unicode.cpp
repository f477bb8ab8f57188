#include "core/unicode.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace host {
namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t character)
{
    return character >= 0xD800 && character <= 0xDFFF;
}

// What a first byte promises: how many bytes follow, and the range of the first of them. The range is what keeps out
// overlong forms, surrogates and numbers that are too large.
struct Lead {
    int following;
    uint8_t low, high;
};

Lead leadOf(uint8_t byte)
{
    if (byte < 0xC2) return {0, 0, 0};
    if (byte < 0xE0) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte < 0xF0) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte < 0xF4) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

// The character at `at`, which moves behind it.
char32_t decodeOne(std::string_view bytes, size_t& at)
{
    const auto first = static_cast<uint8_t>(bytes[at++]);
    if (first < 0x80) return first;

    Lead lead = leadOf(first);
    if (lead.following == 0) return kReplacementCharacter;
    char32_t character = first & (0x3Fu >> lead.following);
    for (; lead.following > 0; --lead.following) {
        if (at == bytes.size()) return kReplacementCharacter;
        const auto next = static_cast<uint8_t>(bytes[at]);
        if (next < lead.low || next > lead.high) return kReplacementCharacter;
        character = character << 6 | (next & 0x3Fu);
        lead = {lead.following, 0x80, 0xBF};
        ++at;
    }
    return character;
}

char32_t writable(char32_t character)
{
    return character > kLastCodePoint || isSurrogate(character) ? kReplacementCharacter : character;
}

// A run of letters whose partners stand at one distance, or alternate with them (distance 1, step 2).
struct CaseRun {
    char32_t firstLower, lastLower;
    int distance; // from lower to upper
    char32_t step;
};

constexpr CaseRun kCaseRuns[] = {
    {U'a', U'z', -32, 1},
    {0x00E0, 0x00F6, -32, 1}, // Latin-1
    {0x00F8, 0x00FE, -32, 1},
    {0x00FF, 0x00FF, 121, 1},
    {0x0101, 0x012F, -1, 2}, // Latin Extended-A; the dotless i and
                             // its kin have no partner of one
                             // letter
    {0x0133, 0x0137, -1, 2},
    {0x013A, 0x0148, -1, 2},
    {0x014B, 0x0177, -1, 2},
    {0x017A, 0x017E, -1, 2},
    {0x03AC, 0x03AC, -38, 1}, // Greek
    {0x03AD, 0x03AF, -37, 1},
    {0x03B1, 0x03C1, -32, 1},
    {0x03C3, 0x03CB, -32, 1},
    {0x03CC, 0x03CC, -64, 1},
    {0x03CD, 0x03CE, -63, 1},
    {0x0430, 0x044F, -32, 1}, // Cyrillic
    {0x0450, 0x045F, -80, 1},
    {0x1E01, 0x1E95, -1, 2}, // Latin Extended Additional
    {0x1EA1, 0x1EFF, -1, 2},
};

char32_t moved(char32_t letter, int distance)
{
    return static_cast<char32_t>(static_cast<int32_t>(letter) + distance);
}

} // namespace

std::u32string FromUtf8(std::string_view bytes)
{
    std::u32string text;
    text.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) text.push_back(decodeOne(bytes, at));
    return text;
}

std::string ToUtf8(std::u32string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    const auto put = [&bytes](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
    for (const char32_t any : text) {
        const char32_t character = writable(any);
        if (character < 0x80) {
            put(character);
            continue;
        }
        if (character < 0x800) {
            put(0xC0 | character >> 6);
        } else {
            if (character < 0x10000) {
                put(0xE0 | character >> 12);
            } else {
                put(0xF0 | character >> 18);
                put(0x80 | (character >> 12 & 0x3F));
            }
            put(0x80 | (character >> 6 & 0x3F));
        }
        put(0x80 | (character & 0x3F));
    }
    return bytes;
}

std::u32string FromUtf16(std::u16string_view units)
{
    std::u32string text;
    text.reserve(units.size());
    for (size_t at = 0; at < units.size(); ++at) {
        const char32_t unit = units[at];
        const bool pair = unit >= 0xD800 && unit < 0xDC00 && at + 1 < units.size() && units[at + 1] >= 0xDC00 &&
                          units[at + 1] <= 0xDFFF;
        if (pair)
            text.push_back(0x10000 + ((unit - 0xD800) << 10) + (char32_t{units[++at]} - 0xDC00));
        else
            text.push_back(writable(unit));
    }
    return text;
}

std::u16string ToUtf16(std::u32string_view text)
{
    std::u16string units;
    units.reserve(text.size());
    for (const char32_t any : text) {
        const char32_t character = writable(any);
        if (character < 0x10000) {
            units.push_back(static_cast<char16_t>(character));
            continue;
        }
        units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)));
        units.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
    }
    return units;
}

char32_t ToUpper(char32_t letter)
{
    if (letter == 0x03C2) return 0x03A3; // the sigma at the end of a word
    const auto* run = std::ranges::find_if(kCaseRuns, [letter](const CaseRun& candidate) {
        return letter >= candidate.firstLower && letter <= candidate.lastLower &&
               (letter - candidate.firstLower) % candidate.step == 0;
    });
    return run == std::end(kCaseRuns) ? letter : moved(letter, run->distance);
}

char32_t ToLower(char32_t letter)
{
    const auto* run = std::ranges::find_if(kCaseRuns, [letter](const CaseRun& candidate) {
        const char32_t lower = moved(letter, -candidate.distance);
        return lower >= candidate.firstLower && lower <= candidate.lastLower &&
               (lower - candidate.firstLower) % candidate.step == 0;
    });
    return run == std::end(kCaseRuns) ? letter : moved(letter, -run->distance);
}

} // namespace host
