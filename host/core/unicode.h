// UTF-8, UTF-16 and letter case, independent of any locale.
//
// Decoding never fails: what is no valid sequence (overlong forms, surrogates, numbers past U+10FFFF, cut sequences)
// becomes U+FFFD, one for each longest part that could have begun a valid sequence.
#pragma once

#include <string>
#include <string_view>

namespace host {

constexpr char32_t kReplacementCharacter = 0xFFFD;

std::u32string FromUtf8(std::string_view bytes);
/// Code points that UTF-8 cannot hold are written as U+FFFD.
std::string ToUtf8(std::u32string_view text);

std::u32string FromUtf16(std::u16string_view units);
std::u16string ToUtf16(std::u32string_view text);

/// One letter for one letter, so that lengths stay: Latin, Greek and Cyrillic; any other character is its own.
char32_t ToUpper(char32_t letter);
char32_t ToLower(char32_t letter);

} // namespace host
