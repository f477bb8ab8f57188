// Files that appear whole or not at all.
//
// Each file is written beside its place under another name. commit() moves all of them into place, in the order in
// which they were created, so that a file never names another that is not there yet. What is not committed is removed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdanth {

/// One file being written, through a large buffer. A failure is kept until commit() asks for it.
class OutputFile {
public:
    explicit OutputFile(std::string target);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    void write(const void* bytes, size_t count);
    template <class Array> void writeAll(const Array& values)
    {
        write(values.data(), values.size() * sizeof(values[0]));
    }
    void text(std::string_view words) { write(words.data(), words.size()); }
    /// The shortest text that reads back as the same number, in the C locale.
    void number(float value);
    void number(uint64_t value);
    /// Zero bytes, or others, up to the next multiple of four.
    void align(char filler = 0);

    uint64_t size() const { return flushed + buffer.size(); }
    bool failed() const { return !cause.empty(); }

private:
    friend class OutputFiles;
    void flush();
    void fail(int code);
    bool close();

    std::string path;     // where the file is to stand
    std::string partPath; // where it is written
    std::FILE* file = nullptr;
    std::string buffer;
    uint64_t flushed = 0;
    std::string cause;
};

class OutputFiles {
public:
    OutputFiles() = default;
    OutputFiles(const OutputFiles&) = delete;
    OutputFiles& operator=(const OutputFiles&) = delete;
    ~OutputFiles() { discard(); }

    /// Never null; a file that cannot be created has failed from the start. Makes its folder if there is none.
    OutputFile& create(const std::string& path);

    /// False, with `problem` naming file and cause, if anything failed; what did not get into place is then removed.
    bool commit(std::string& problem);

    /// Sizes of all files together.
    uint64_t size() const;

private:
    void discard();

    std::vector<std::unique_ptr<OutputFile>> files;
    std::vector<std::string> newFolders;
};

} // namespace verdanth
