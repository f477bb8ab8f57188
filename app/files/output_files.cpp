#include "files/output_files.h"

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace verdanth {
namespace {

constexpr size_t kBufferSize = size_t{1} << 20;

// A name beside `path` that no other file has. Opening fails on a name that is taken, so two runs never share one.
std::FILE* openBeside(const std::string& path, std::string& partPath)
{
    constexpr int kMostLeftovers = 100;
    for (int number = 1; number <= kMostLeftovers; ++number) {
        partPath = path + ".part" + (number > 1 ? std::to_string(number) : "");
        if (std::FILE* file = std::fopen(partPath.c_str(), "wbx")) return file;
        if (errno != EEXIST) break;
    }
    const int code = errno;
    partPath.clear();
    errno = code;
    return nullptr;
}

} // namespace

OutputFile::OutputFile(std::string target) : path(std::move(target))
{
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        fail(EISDIR);
        return;
    }
    file = openBeside(path, partPath);
    if (!file) {
        fail(errno);
        return;
    }
    std::setvbuf(file, nullptr, _IONBF, 0);
    buffer.reserve(kBufferSize);
}

OutputFile::~OutputFile()
{
    if (file) std::fclose(file);
    if (!partPath.empty()) std::remove(partPath.c_str());
}

void OutputFile::fail(int code)
{
    if (cause.empty()) cause = std::generic_category().message(code);
}

void OutputFile::write(const void* bytes, size_t count)
{
    if (failed() || count == 0) return;
    if (buffer.size() + count > kBufferSize) flush();
    if (count < kBufferSize) {
        buffer.append(static_cast<const char*>(bytes), count);
        return;
    }
    if (!failed() && std::fwrite(bytes, 1, count, file) != count) fail(errno);
    flushed += count;
}

void OutputFile::flush()
{
    if (failed() || buffer.empty()) return;
    if (std::fwrite(buffer.data(), 1, buffer.size(), file) != buffer.size()) fail(errno);
    flushed += buffer.size();
    buffer.clear();
}

void OutputFile::number(float value)
{
    char text[32];
    write(text, static_cast<size_t>(std::to_chars(text, text + sizeof text, value).ptr - text));
}

void OutputFile::number(uint64_t value)
{
    char text[32];
    write(text, static_cast<size_t>(std::to_chars(text, text + sizeof text, value).ptr - text));
}

void OutputFile::align(char filler)
{
    while (!failed() && size() % 4 != 0) write(&filler, 1);
}

bool OutputFile::close()
{
    flush();
    if (file && std::fclose(file) != 0) fail(errno);
    file = nullptr;
    return !failed();
}

OutputFile& OutputFiles::create(const std::string& path)
{
    std::error_code ignored; // opening the file tells what is wrong with its folder
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (!folder.empty() && std::filesystem::create_directory(folder, ignored)) newFolders.push_back(folder.string());
    files.push_back(std::make_unique<OutputFile>(path));
    return *files.back();
}

bool OutputFiles::commit(std::string& problem)
{
    const auto failed = [&](const OutputFile& file, const std::string& cause) {
        problem = file.path + ": cannot be written: " + cause;
        discard();
        return false;
    };
    for (const auto& file : files)
        if (!file->close()) return failed(*file, file->cause);
    for (const auto& file : files) {
        std::error_code code;
        std::filesystem::rename(file->partPath, file->path, code);
        if (code) return failed(*file, code.message());
        file->partPath.clear();
    }
    newFolders.clear();
    return true;
}

void OutputFiles::discard()
{
    files.clear();
    std::error_code ignored; // a folder that is not empty stays
    for (const std::string& folder : newFolders) std::filesystem::remove(folder, ignored);
    newFolders.clear();
}

uint64_t OutputFiles::size() const
{
    uint64_t total = 0;
    for (const auto& file : files) total += file->size();
    return total;
}

} // namespace verdanth
