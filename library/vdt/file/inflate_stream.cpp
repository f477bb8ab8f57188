#include "vdt/file/inflate_stream.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace zlib_stream {
namespace {

constexpr size_t kAreaSize = 65536; // larger areas spare zlib many of its starts and stops
constexpr size_t kPutBack = 4;

// Model files shrink to a third or a tenth. Data that goes beyond a hundredfold is made to exhaust memory.
constexpr uint64_t kAlwaysAllowed = uint64_t{32} << 20;
constexpr uint64_t kLargestRatio = 100;

constexpr int kHeaderError = Z_DATA_ERROR;

template <class Stream> bool skip(Stream& source, std::streamsize count)
{
    source.ignore(count);
    return source.good() && source.gcount() == count;
}

template <class Stream> bool skipText(Stream& source)
{
    int c = source.get();
    while (source.good() && c != 0) c = source.get();
    return source.good();
}

// Reads the rest of a gzip header, behind its two magic bytes.
template <class Stream> bool readHeader(Stream& source)
{
    constexpr int kDeflate = 8;
    constexpr int kHasCrc = 2, kHasExtra = 4, kHasName = 8, kHasComment = 16, kReserved = 0xE0;

    const int method = source.get();
    const int flags = source.get();
    if (!source.good() || method != kDeflate || (flags & kReserved)) return false;

    constexpr std::streamsize kTimeExtraFlagsAndSystem = 6;
    if (!skip(source, kTimeExtraFlagsAndSystem)) return false;
    if (flags & kHasExtra) {
        const int low = source.get();
        const int high = source.get();
        if (!source.good() || !skip(source, low | high << 8)) return false;
    }
    if ((flags & kHasName) && !skipText(source)) return false;
    if ((flags & kHasComment) && !skipText(source)) return false;
    return !(flags & kHasCrc) || skip(source, 2);
}

} // namespace

template <class Char, class Traits> struct basic_unzip_streambuf<Char, Traits>::Inflater {
    explicit Inflater(std::basic_istream<Char, Traits>& stream) : source(stream), input(kAreaSize), output(kAreaSize)
    {
        code = inflateInit2(&zlib, -MAX_WBITS); // raw deflate: the header is behind us
        if (code != Z_OK) state = InflateState::Corrupt;
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    ~Inflater() { inflateEnd(&zlib); }

    // Inflates to behind the put-back area. Gives the count; 0 once there is nothing more.
    size_t fill()
    {
        Bytef* const begin = output.data() + kPutBack;
        zlib.next_out = begin;
        zlib.avail_out = static_cast<uInt>(kAreaSize - kPutBack);
        while (state == InflateState::Running && zlib.next_out == begin) {
            const bool more = zlib.avail_in > 0 || refill();
            code = inflate(&zlib, Z_SYNC_FLUSH);
            if (code == Z_STREAM_END) {
                finish();
            } else if (code != Z_OK && code != Z_BUF_ERROR) {
                state = InflateState::Corrupt;
            } else if (!more && zlib.next_out == begin) {
                state = InflateState::Truncated;
            }
        }
        const auto count = static_cast<size_t>(zlib.next_out - begin);
        crc = static_cast<uint32_t>(crc32(crc, begin, static_cast<uInt>(count)));
        if (zlib.total_out > kAlwaysAllowed + kLargestRatio * zlib.total_in) state = InflateState::TooLarge;
        return count;
    }

    bool refill()
    {
        source.read(reinterpret_cast<Char*>(input.data()), kAreaSize);
        zlib.next_in = input.data();
        zlib.avail_in = static_cast<uInt>(source.gcount());
        return zlib.avail_in > 0;
    }

    // What was read beyond the end of the data goes back to the stream below.
    void finish()
    {
        state = InflateState::Finished;
        source.clear(source.rdstate() & ~(std::ios_base::eofbit | std::ios_base::failbit));
        source.seekg(-static_cast<std::streamoff>(zlib.avail_in), std::ios_base::cur);
        zlib.avail_in = 0;
    }

    std::basic_istream<Char, Traits>& source;
    std::vector<Bytef> input;
    std::vector<Bytef> output;
    z_stream zlib{};
    int code = Z_OK;
    InflateState state = InflateState::Running;
    uint32_t crc = 0;
};

template <class Char, class Traits>
basic_unzip_streambuf<Char, Traits>::basic_unzip_streambuf(std::basic_istream<Char, Traits>& source)
    : inflater(std::make_unique<Inflater>(source))
{
    static_assert(sizeof(Char) == 1, "the wrapper is made for bytes");
}

template <class Char, class Traits> basic_unzip_streambuf<Char, Traits>::~basic_unzip_streambuf() = default;

template <class Char, class Traits> int basic_unzip_streambuf<Char, Traits>::zlibCode() const
{
    return inflater->code;
}

template <class Char, class Traits> InflateState basic_unzip_streambuf<Char, Traits>::state() const
{
    return inflater->state;
}

template <class Char, class Traits> uint32_t basic_unzip_streambuf<Char, Traits>::crc() const
{
    return inflater->crc;
}

template <class Char, class Traits>
typename basic_unzip_streambuf<Char, Traits>::int_type basic_unzip_streambuf<Char, Traits>::underflow()
{
    if (this->gptr() != this->egptr()) return Traits::to_int_type(*this->gptr());

    // The last few characters stay in front of the new ones.
    auto* const area = reinterpret_cast<Char*>(inflater->output.data());
    const auto kept = std::min<size_t>(kPutBack, static_cast<size_t>(this->gptr() - this->eback()));
    if (kept > 0) std::memmove(area + kPutBack - kept, this->gptr() - kept, kept);

    const size_t count = inflater->fill();
    Char* const begin = area + kPutBack;
    this->setg(begin - kept, begin, begin + count);
    return count > 0 ? Traits::to_int_type(*begin) : Traits::eof();
}

template <class Char, class Traits>
basic_zip_istream<Char, Traits>::basic_zip_istream(std::basic_istream<Char, Traits>& source)
    : std::basic_istream<Char, Traits>(nullptr)
{
    constexpr int kMagic[] = {0x1F, 0x8B};

    const auto start = source.tellg();
    const bool first = source.get() == kMagic[0];
    gzip = first && source.get() == kMagic[1];
    if (!gzip) {
        source.clear();
        source.seekg(start);
        return;
    }
    headerOk = readHeader(source);
    buffer = std::make_unique<basic_unzip_streambuf<Char, Traits>>(source);
    this->rdbuf(buffer.get());
    if (!headerOk) this->setstate(std::ios_base::failbit);
}

template <class Char, class Traits> basic_zip_istream<Char, Traits>::~basic_zip_istream() = default;

template <class Char, class Traits> int basic_zip_istream<Char, Traits>::zlibCode() const
{
    if (gzip && !headerOk) return kHeaderError;
    return buffer ? buffer->zlibCode() : Z_OK;
}

template <class Char, class Traits> InflateState basic_zip_istream<Char, Traits>::state() const
{
    if (gzip && !headerOk) return InflateState::Corrupt;
    return buffer ? buffer->state() : InflateState::Finished;
}

template <class Char, class Traits> uint32_t basic_zip_istream<Char, Traits>::crc() const
{
    return buffer ? buffer->crc() : 0;
}

template class basic_unzip_streambuf<char>;
template class basic_zip_istream<char>;

} // namespace zlib_stream
