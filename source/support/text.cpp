#include "support/text.h"

#include <algorithm>
#include <limits>

std::string ToUtf8(const String& text)
{
    Char* copy = text.GetCStringCopy(STRINGENCODING_UTF8);
    if (!copy) return {};
    std::string utf8 = copy;
    DeleteMem(copy);
    return utf8;
}

std::string ToUtf8(const Filename& path)
{
    return ToUtf8(path.GetString());
}

String ToHostString(std::string_view utf8)
{
    String text;
    // The count's type is 32 bits wide in some releases.
    constexpr size_t kLongest = std::numeric_limits<Int32>::max();
    text.SetCString(utf8.data(), static_cast<Int32>(std::min(utf8.size(), kLongest)), STRINGENCODING_UTF8);
    return text;
}
