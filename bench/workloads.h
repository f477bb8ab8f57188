// The texts that the file benchmarks read, made once a run.
#pragma once

#include <istream>
#include <streambuf>
#include <string>
#include <string_view>

namespace workloads {

/// The grower's large plant as a model file's text, about 35 MB.
const std::string& LargeText();

/// The same as a gzip stream.
const std::string& LargeGzip();

/// Reads from memory that outlives it, without copying it first.
class MemoryStream final : private std::streambuf, public std::istream {
public:
    explicit MemoryStream(std::string_view text) : std::istream(this)
    {
        char* begin = const_cast<char*>(text.data()); // a read-only buffer never writes
        setg(begin, begin, begin + text.size());
    }

private:
    std::streampos seekoff(std::streamoff offset, std::ios_base::seekdir from, std::ios_base::openmode) override
    {
        char* base = from == std::ios_base::beg ? eback() : from == std::ios_base::cur ? gptr() : egptr();
        setg(eback(), base + offset, egptr());
        return gptr() - eback();
    }
    std::streampos seekpos(std::streampos position, std::ios_base::openmode mode) override
    {
        return seekoff(position, std::ios_base::beg, mode);
    }
};

} // namespace workloads
