#include "commands/picture_size.h"

#include "console/console.h"

#include <charconv>

namespace verdanth {
namespace {

constexpr uint32_t kLargestSide = 8192;

bool parseSide(std::string_view text, uint32_t& side)
{
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), side);
    return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size() && side >= 1 && side <= kLargestSide;
}

} // namespace

void AddSizeOption(CLI::App& command, std::string& text)
{
    command.add_option("--size", text, "The picture's sides in pixels")->capture_default_str()->type_name("N|WxH");
}

bool ParsePictureSize(const std::string& text, uint32_t& width, uint32_t& height, Console& console)
{
    const size_t cross = text.find('x');
    const std::string_view whole = text;
    if (parseSide(whole.substr(0, cross), width) &&
        parseSide(cross == std::string::npos ? whole : whole.substr(cross + 1), height))
        return true;
    console.error("--size " + text + ": wanted are one or two numbers from 1 to " + std::to_string(kLargestSide) +
                  ", as in 512 or 640x480");
    return false;
}

} // namespace verdanth
