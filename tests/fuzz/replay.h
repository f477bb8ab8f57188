// How the ordinary tests go through what the fuzzers found and what was put into their corpus by hand.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vdt::test {

inline std::vector<std::filesystem::path> CorpusOf(const std::string& target)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(VERDANTH_TEST_DATA "/corpus/" + target))
        files.push_back(entry.path());
    if (target == "model_reader")
        for (const char* example : {"seedling.vdt", "seedling_adult.vdt"})
            files.emplace_back(std::string(VERDANTH_DOCS "/examples/") + example);
    std::ranges::sort(files);
    return files;
}

/// Calls the entry with every file of the target's corpus, whole and cut at every place.
inline void ReplayCorpus(const std::string& target, std::string (*entry)(std::string_view))
{
    const std::vector<std::filesystem::path> files = CorpusOf(target);
    EXPECT_GE(files.size(), 10u);
    for (const std::filesystem::path& path : files) {
        SCOPED_TRACE(path.filename().string());
        std::ifstream file(path, std::ios::binary);
        const std::string whole(std::istreambuf_iterator<char>(file), {});
        EXPECT_EQ(entry(whole), "");

        const size_t step = std::max<size_t>(1, whole.size() / 300);
        for (size_t length = 0; length < whole.size(); length += step) {
            // An allocation of its own lets the sanitizer see a byte too far.
            const auto prefix = std::make_unique<char[]>(length);
            std::copy_n(whole.data(), length, prefix.get());
            EXPECT_EQ(entry({prefix.get(), length}), "") << "cut to " << length << " bytes";
        }
    }
}

} // namespace vdt::test
