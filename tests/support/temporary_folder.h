// A folder of its own for one test, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <string_view>

namespace vdt::test {

inline std::string BytesOfFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "verdanth-XXXXXX").string();
        root = mkdtemp(name.data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(root); }

    std::string path(std::string_view name) const { return (root / name).string(); }
    /// Makes folders on the way. Gives the new file's path.
    std::string write(std::string_view name, std::string_view content) const
    {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << content;
        return path(name);
    }
    std::string read(std::string_view name) const { return BytesOfFile(root / name); }
    bool has(std::string_view name) const { return std::filesystem::exists(root / name); }

    std::filesystem::path root;
};

} // namespace vdt::test
