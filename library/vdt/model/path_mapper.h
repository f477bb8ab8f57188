// Turns the paths that stand in model files into paths that can be opened.
#pragma once

#include <string>
#include <string_view>

namespace vdt {

/// Maps paths to themselves; the base of all others.
class PathMapper {
public:
    virtual ~PathMapper() = default;
    virtual std::string map(std::string_view path) const { return std::string(path); }
};

/// Joins relative paths to a base directory, climbing for each "..". Results have slashes only.
class MakeAbsolutePathMapper final : public PathMapper {
public:
    /// `base` ends in a slash or is empty.
    explicit MakeAbsolutePathMapper(std::string base) : basePath(std::move(base)) {}
    std::string map(std::string_view path) const override;

    std::string basePath;
};

/// True for "/..." and for a drive letter, colon and slash or backslash. The empty path is relative.
bool IsAbsolutePath(std::string_view path);

/// Everything up to and including the last slash, backslashes turned into slashes; empty if there is none.
std::string DirectoryOfPath(std::string_view path);

} // namespace vdt
