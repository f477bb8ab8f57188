#include "inspect/check_gzip.h"

#include "vdt/file/inflate_stream.h"

#include <array>
#include <fstream>

namespace verdanth {
namespace {

uint32_t littleEndian(const uint8_t* bytes)
{
    return bytes[0] | static_cast<uint32_t>(bytes[1]) << 8 | static_cast<uint32_t>(bytes[2]) << 16 |
           static_cast<uint32_t>(bytes[3]) << 24;
}

} // namespace

void CheckGzip(const std::string& path, FindingList& findings, vdt::MessageHandler& messages)
{
    std::ifstream file(path, std::ios::binary);
    zlib_stream::zip_istream inflated(file);
    if (!inflated.isGzip()) return;

    std::array<char, 1 << 16> piece;
    uint64_t length = 0;
    while (inflated && !messages.isCancelled()) {
        inflated.read(piece.data(), piece.size());
        length += static_cast<uint64_t>(inflated.gcount());
    }
    if (messages.isCancelled()) return;

    switch (inflated.state()) {
    case zlib_stream::InflateState::Finished: break;
    case zlib_stream::InflateState::Truncated:
        return findings.fail("gzip", "the compressed data is cut off; everything behind the cut is lost");
    case zlib_stream::InflateState::TooLarge:
        return findings.fail("gzip", "the compressed data inflates beyond what its size can justify");
    default: return findings.fail("gzip", "the compressed data is damaged; everything behind the damage is lost");
    }

    // The stream has given back what it read too far, so the trailer comes next.
    std::array<uint8_t, 8> trailer;
    file.clear();
    file.read(reinterpret_cast<char*>(trailer.data()), trailer.size());
    if (file.gcount() != static_cast<std::streamsize>(trailer.size()))
        return findings.warn("gzip", "the checksum at the end of the compressed file is cut off");
    if (littleEndian(trailer.data()) != inflated.crc())
        return findings.warn("gzip", "the compressed file's checksum does not fit its content");
    if (littleEndian(trailer.data() + 4) != static_cast<uint32_t>(length))
        return findings.warn("gzip", "the compressed file's stored length does not fit its content");
}

} // namespace verdanth
