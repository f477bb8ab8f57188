#include "vdt/file/file_access.h"

#include <algorithm>

namespace vdt {

std::filesystem::path ToFilePath(std::string_view utf8)
{
    return std::u8string(utf8.begin(), utf8.end());
}

void OpenForReading(std::ifstream& file, const std::string& path)
{
    std::error_code error;
    std::filesystem::path found = ToFilePath(path);
    if (!std::filesystem::exists(found, error)) {
        std::string withSlashes = path;
        std::replace(withSlashes.begin(), withSlashes.end(), '\\', '/');
        found = ToFilePath(withSlashes);
    }
    // A folder would open and a pipe would wait for ever.
    if (std::filesystem::is_regular_file(found, error)) file.open(found, std::ios::binary);
}

} // namespace vdt
