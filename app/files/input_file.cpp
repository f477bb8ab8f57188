#include "files/input_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace verdanth {

std::string ProblemOfFile(const std::string& path)
{
    std::error_code code;
    const std::filesystem::file_status status = std::filesystem::status(path, code);
    if (status.type() == std::filesystem::file_type::not_found) return "does not exist";
    if (code) return "cannot be read: " + code.message();
    if (std::filesystem::is_directory(status)) return "is a folder";
    if (!std::filesystem::is_regular_file(status)) return "is no ordinary file"; // reading a pipe may never end

    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return "cannot be read: " + std::generic_category().message(errno ? errno : EIO);
    if (stream.peek() == std::ifstream::traits_type::eof()) return "is empty";
    return {};
}

std::optional<std::vector<uint8_t>> ReadWholeFile(const std::string& path, std::string& problem)
{
    problem = ProblemOfFile(path);
    if (!problem.empty()) return std::nullopt;

    std::ifstream stream(path, std::ios::binary);
    std::vector<uint8_t> bytes;
    constexpr size_t kPiece = size_t{1} << 18;
    while (stream) {
        const size_t before = bytes.size();
        bytes.resize(before + kPiece);
        stream.read(reinterpret_cast<char*>(bytes.data() + before), kPiece);
        bytes.resize(before + static_cast<size_t>(stream.gcount()));
    }
    return bytes;
}

bool IsSameFile(const std::string& a, const std::string& b)
{
    std::error_code code;
    return std::filesystem::equivalent(a, b, code) && !code;
}

} // namespace verdanth
