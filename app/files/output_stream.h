// A standard stream into an output file, for writers that know no other.
#pragma once

#include "files/output_files.h"

#include <ostream>
#include <streambuf>

namespace verdanth {

/// What fails is told by OutputFiles::commit(), not by the stream.
class OutputFileStream final : public std::ostream {
public:
    explicit OutputFileStream(OutputFile& target) : std::ostream(nullptr), buffer(target) { rdbuf(&buffer); }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(OutputFile& target) : file(target) {}

    protected:
        int_type overflow(int_type character) override
        {
            const char byte = traits_type::to_char_type(character);
            file.write(&byte, 1);
            return traits_type::not_eof(character);
        }
        std::streamsize xsputn(const char* bytes, std::streamsize count) override
        {
            file.write(bytes, static_cast<size_t>(count));
            return count;
        }

    private:
        OutputFile& file;
    };

    Buffer buffer;
};

} // namespace verdanth
