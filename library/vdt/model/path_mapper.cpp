#include "vdt/model/path_mapper.h"

#include <algorithm>

namespace vdt {
namespace {

std::string withSlashes(std::string_view path)
{
    std::string result(path);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

bool isAsciiLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Cuts the last directory off `base`, which ends in a slash. False, with nothing changed, if there is none with a name:
// the root, a drive, "." and ".." are left for the file system to make sense of.
bool leaveLastDirectory(std::string& base)
{
    if (base.size() < 2) return false;
    const size_t slash = base.rfind('/', base.size() - 2);
    const size_t start = slash == std::string::npos ? 0 : slash + 1;
    const std::string_view last = std::string_view(base).substr(start, base.size() - 1 - start);
    if (last.empty() || last == "." || last == ".." || last.ends_with(':')) return false;
    base.resize(start);
    return true;
}

} // namespace

bool IsAbsolutePath(std::string_view path)
{
    if (path.starts_with('/')) return true;
    return path.size() >= 3 && isAsciiLetter(path[0]) && path[1] == ':' && (path[2] == '/' || path[2] == '\\');
}

std::string DirectoryOfPath(std::string_view path)
{
    std::string directory = withSlashes(path);
    const size_t slash = directory.rfind('/');
    directory.resize(slash == std::string::npos ? 0 : slash + 1);
    return directory;
}

std::string MakeAbsolutePathMapper::map(std::string_view path) const
{
    if (path.empty()) return {};

    std::string relative = withSlashes(path);
    if (IsAbsolutePath(relative)) return relative;

    std::string base = withSlashes(basePath);
    while (relative.starts_with("..") && leaveLastDirectory(base)) relative.erase(0, 3);
    return base + relative;
}

} // namespace vdt
