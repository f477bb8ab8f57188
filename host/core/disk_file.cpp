#include "core/disk_file.h"

#include <fstream>
#include <string>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

// What a name leads to: the file itself where the name is a link.
fs::path followed(const fs::path& path)
{
    std::error_code error;
    const fs::path target = fs::is_symlink(path, error) ? fs::canonical(path, error) : path;
    return error ? path : target;
}

// A name in the same folder that is free.
fs::path nameBeside(const fs::path& path)
{
    std::error_code error;
    for (int number = 0;; ++number) {
        fs::path candidate = path;
        candidate += ".saving" + std::to_string(number);
        if (!fs::exists(fs::symlink_status(candidate, error))) return candidate;
    }
}

bool writeWhole(const fs::path& path, std::span<const uint8_t> bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return !file.fail();
}

bool mayReplace(const fs::file_status& old)
{
    if (!fs::exists(old)) return true;
    return fs::is_regular_file(old) && (old.permissions() & fs::perms::owner_write) != fs::perms::none;
}

} // namespace

std::optional<std::vector<uint8_t>> LoadFile(const fs::path& path)
{
    // A folder would open and a pipe would wait for ever.
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return {};
    const uintmax_t size = fs::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) return {};

    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<size_t>(file.gcount()) != bytes.size()) return {};
    return bytes;
}

bool SaveFile(const fs::path& name, std::span<const uint8_t> bytes)
{
    const fs::path path = followed(name);
    std::error_code error;
    const fs::file_status old = fs::status(path, error);
    if (!mayReplace(old)) return false;

    const fs::path beside = nameBeside(path);
    std::error_code ignored;
    bool saved = writeWhole(beside, bytes);
    if (saved && fs::exists(old)) fs::permissions(beside, old.permissions(), ignored);
    if (saved) {
        fs::rename(beside, path, error);
        saved = !error;
    }
    if (!saved) fs::remove(beside, ignored);
    return saved;
}

} // namespace host
