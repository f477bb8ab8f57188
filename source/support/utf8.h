// UTF-8 bytes to code points and back, with the old forms of five and six bytes.
//
// Faults are reported as lines on the error stream. Overlong forms and surrogates pass: what the host hands out is
// trusted to mean what it says.
#pragma once

#include "c4d.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// How many bytes a sequence has that begins with `first`, 1 to 6; 0 if none begins so.
int32_t utf8_get_size(unsigned char first);

/// Decodes exactly one sequence. On failure `codePoint` is 0 or what was decoded so far.
bool utf8_to_uint(std::string_view sequence, uint32_t& codePoint);

/// Decodes a text. At the first fault it stops, and `codePoints` holds what stands before it.
bool utf8_to_uints(std::string_view text, std::vector<uint32_t>& codePoints);

/// Up to six bytes; empty for 0x80000000 and above.
std::string uint_to_utf8(uint32_t codePoint);

std::vector<uint32_t> StringToCodePoints(const String& text);
