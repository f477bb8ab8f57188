#include "support/utf8.h"

#include "support/text.h"

#include <iostream>

namespace {

void warn(std::string_view function, std::string_view fault)
{
    std::cerr << '[' << function << "] WARNING: " << fault << std::endl;
}

bool continues(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

} // namespace

int32_t utf8_get_size(unsigned char first)
{
    if (first < 0x80) return 1;
    for (int32_t size = 2; size <= 6; ++size) {
        // As many ones as the sequence has bytes, then a zero.
        const int lead = 0xFF00 >> size & 0xFF;
        const int mask = 0xFF00 >> (size + 1) & 0xFF;
        if ((first & mask) == lead) return size;
    }
    warn("utf8_get_size", "Invalid character size.");
    return 0;
}

bool utf8_to_uint(std::string_view sequence, uint32_t& codePoint)
{
    codePoint = 0;
    const size_t size = sequence.size();
    if (size == 0 || size > 6) {
        warn("utf8_to_uint", "Invalid character size.");
        return false;
    }
    const auto lead = static_cast<unsigned char>(sequence[0]);
    if (size == 1) {
        if (lead > 127) {
            warn("utf8_to_uint", "Invalid single-byte character.");
            return false;
        }
        codePoint = lead;
        return true;
    }

    codePoint = static_cast<uint32_t>(lead & 0xFF >> (size + 1)) << (size - 1) * 6;
    for (size_t i = 1; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(sequence[i]);
        if (!continues(byte)) {
            warn("utf8_to_uint", "Invalid continuation byte.");
            return false;
        }
        codePoint |= static_cast<uint32_t>(byte & 0x3F) << (size - i - 1) * 6;
    }
    return true;
}

bool utf8_to_uints(std::string_view text, std::vector<uint32_t>& codePoints)
{
    codePoints.clear();
    for (size_t position = 0; position < text.size();) {
        const auto size = static_cast<size_t>(utf8_get_size(static_cast<unsigned char>(text[position])));
        uint32_t codePoint = 0;
        if (size == 0 || size > text.size() - position || !utf8_to_uint(text.substr(position, size), codePoint)) {
            warn("utf8_to_uint", "Could not convert UTF-8 character (size = " + std::to_string(size) +
                                     ", position = " + std::to_string(position) + ").");
            return false;
        }
        codePoints.push_back(codePoint);
        position += size;
    }
    return true;
}

std::string uint_to_utf8(uint32_t codePoint)
{
    if (codePoint < 0x80) return std::string(1, static_cast<char>(codePoint));
    if (codePoint >= 0x80000000) {
        warn("uint_to_utf8", "Character not representable by UTF-8.");
        return {};
    }
    // Each byte after the first holds six bits; the first one's share shrinks by one bit a byte.
    size_t size = 2;
    while (codePoint >> (size * 5 + 1)) ++size;

    std::string bytes(1, static_cast<char>(0xFF00 >> size | codePoint >> (size - 1) * 6));
    for (size_t i = size - 1; i-- > 0;) bytes += static_cast<char>(0x80 | (codePoint >> i * 6 & 0x3F));
    return bytes;
}

std::vector<uint32_t> StringToCodePoints(const String& text)
{
    std::vector<uint32_t> codePoints;
    utf8_to_uints(ToUtf8(text), codePoints);
    return codePoints;
}
