#include "support/gzip.h"

#include <zlib.h>

#include <vector>

namespace vdt::test {

std::string Gzip(std::string_view text, unsigned char flags, std::string_view headerFields)
{
    std::string result{'\x1F', '\x8B', '\x08', static_cast<char>(flags), 0, 0, 0, 0, 0, 3};
    result += headerFields;

    z_stream zlib{};
    deflateInit2(&zlib, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::vector<Bytef> output(deflateBound(&zlib, text.size()));
    std::string input(text);
    zlib.next_in = reinterpret_cast<Bytef*>(input.data());
    zlib.avail_in = static_cast<uInt>(input.size());
    zlib.next_out = output.data();
    zlib.avail_out = static_cast<uInt>(output.size());
    deflate(&zlib, Z_FINISH);
    result.append(output.begin(), output.begin() + static_cast<std::ptrdiff_t>(zlib.total_out));
    deflateEnd(&zlib);

    const uLong crc = crc32(0, reinterpret_cast<const Bytef*>(input.data()), static_cast<uInt>(input.size()));
    for (const uLong value : {crc, static_cast<uLong>(text.size())})
        for (int shift = 0; shift < 32; shift += 8) result += static_cast<char>(value >> shift & 0xFF);
    return result;
}

} // namespace vdt::test
