// One line of text with numbers, put together without the locale.
#pragma once

#include <charconv>
#include <cstdint>
#include <string_view>

namespace verdanth {

/// Room for a few numbers; for lines whose length is known to be short.
class LineBuffer {
public:
    LineBuffer& add(char c)
    {
        *end++ = c;
        return *this;
    }
    template <class Number> LineBuffer& add(Number value) requires(sizeof(Number) >= 4)
    {
        end = std::to_chars(end, characters + sizeof characters, value).ptr;
        return *this;
    }
    std::string_view text() const { return {characters, static_cast<size_t>(end - characters)}; }

private:
    char characters[256];
    char* end = characters;
};

} // namespace verdanth
