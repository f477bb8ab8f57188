// Gzip streams for tests, with whatever header they want.
#pragma once

#include <string>
#include <string_view>

namespace vdt::test {

/// `text` as raw deflate data behind a header with these flags and this content for them, and a trailer.
std::string Gzip(std::string_view text, unsigned char flags = 0, std::string_view headerFields = {});

} // namespace vdt::test
