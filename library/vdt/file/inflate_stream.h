// An input stream over gzip-compressed data in another input stream.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>

namespace zlib_stream {

/// What became of the compressed data.
enum class InflateState {
    Running,
    Finished,  // the deflate data ended as it should
    Truncated, // the underlying stream ended before the data did
    Corrupt,   // zlib refused the data, or the header was malformed
    TooLarge,  // the data inflates beyond what its size can justify
};

template <class Char, class Traits = std::char_traits<Char>>
class basic_unzip_streambuf : public std::basic_streambuf<Char, Traits> {
public:
    using int_type = typename Traits::int_type;

    /// `source` stands behind the gzip header, and outlives the buffer.
    explicit basic_unzip_streambuf(std::basic_istream<Char, Traits>& source);
    basic_unzip_streambuf(const basic_unzip_streambuf&) = delete;
    basic_unzip_streambuf& operator=(const basic_unzip_streambuf&) = delete;
    ~basic_unzip_streambuf() override;

    /// The last return code of zlib.
    int zlibCode() const;
    InflateState state() const;
    /// The CRC-32 of everything inflated so far.
    uint32_t crc() const;

protected:
    int_type underflow() override;

private:
    struct Inflater;
    std::unique_ptr<Inflater> inflater;
};

/// Looks at the stream's first two bytes to tell gzip from plain data. If they are not gzip's they are put back and
/// the stream is not to be read through this wrapper. A malformed header gives code -3 and a stream without data.
template <class Char, class Traits = std::char_traits<Char>>
class basic_zip_istream : public std::basic_istream<Char, Traits> {
public:
    explicit basic_zip_istream(std::basic_istream<Char, Traits>& source);
    ~basic_zip_istream() override;

    bool isGzip() const { return gzip; }
    int zlibCode() const;
    InflateState state() const;
    uint32_t crc() const;

private:
    bool gzip = false;
    bool headerOk = false;
    std::unique_ptr<basic_unzip_streambuf<Char, Traits>> buffer;
};

using zip_istream = basic_zip_istream<char>;

} // namespace zlib_stream
