#include "fuzz/entries.h"
#include "vdt/file/inflate_stream.h"

#include <zlib.h>

#include <sstream>
#include <vector>

namespace vdt::test {

std::string FuzzInflateStream(std::string_view input)
{
    std::istringstream source{std::string(input)};
    zlib_stream::zip_istream stream(source);
    const bool looksLikeGzip = input.size() >= 2 && input.substr(0, 2) == "\x1f\x8b";
    if (stream.isGzip() != looksLikeGzip) return "gzip was not told from plain data";
    if (!stream.isGzip()) {
        const std::string plain(std::istreambuf_iterator<char>(source), {});
        return plain == input ? "" : "the plain data was not put back";
    }

    std::vector<char> area(70000); // reads of another size than the stream's own areas
    uLong crc = crc32(0, nullptr, 0);
    size_t delivered = 0;
    while (stream.read(area.data(), static_cast<std::streamsize>(area.size())) || stream.gcount() > 0) {
        const auto count = static_cast<size_t>(stream.gcount());
        crc = crc32(crc, reinterpret_cast<const Bytef*>(area.data()), static_cast<uInt>(count));
        delivered += count;
    }

    if (stream.state() == zlib_stream::InflateState::Running) return "the stream ended without saying why";
    if (stream.crc() != crc) return "the sum is not that of the " + std::to_string(delivered) + " bytes delivered";
    if (delivered > 100 * input.size() + (size_t{32} << 20) + 65536) return "the data grew out of all proportion";
    return {};
}

} // namespace vdt::test
