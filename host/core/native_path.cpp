#include "core/native_path.h"

#include "core/application.h"
#include "core/string_access.h"
#include "core/unicode.h"

#include <algorithm>

namespace host {
namespace {

// The folder that stands for a drive; empty if none does.
std::string driveFolder(char letter)
{
    if (!Application::running()) return {};
    const auto& drives = Application::current().options().drives;
    for (const auto& [drive, folder] : drives) {
        if (ToUpper(static_cast<unsigned char>(drive)) != ToUpper(static_cast<unsigned char>(letter))) continue;
        const std::u8string path = folder.u8string();
        return {path.begin(), path.end()};
    }
    return {};
}

bool hasDrive(const std::string& path)
{
    if (path.size() < 2 || path[1] != ':') return false;
    const char32_t letter = ToUpper(static_cast<unsigned char>(path[0]));
    return letter >= 'A' && letter <= 'Z';
}

} // namespace

std::string NativePath(const Filename& name)
{
    std::string path = Utf8Of(name.GetString());
    std::ranges::replace(path, '\\', '/');
    if (!hasDrive(path)) return path;

    std::string folder = driveFolder(path[0]);
    if (folder.empty()) return path;
    const bool joins = folder.ends_with('/') || path.size() == 2 || path[2] == '/';
    if (folder.ends_with('/') && path.size() > 2 && path[2] == '/') folder.pop_back();
    return folder + (joins ? "" : "/") + path.substr(2);
}

std::filesystem::path FilePath(const Filename& name)
{
    const std::string path = NativePath(name);
    return std::u8string(path.begin(), path.end());
}

} // namespace host
