// A folder of its own for one test, removed with everything in it at the end.
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace vdt::test {

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        static std::atomic<int> count = 0;
        folder = std::filesystem::temp_directory_path() /
                 ("verdanth_test_" + std::to_string(getpid()) + "_" + std::to_string(count++));
        std::filesystem::create_directories(folder);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }

    std::string path(std::string_view name) const { return (folder / name).string(); }

    /// Gives the new file's path.
    std::string write(std::string_view name, std::string_view content) const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary) << content;
        return path(name);
    }

private:
    std::filesystem::path folder;
};

} // namespace vdt::test
