#include "c4d_file.h"
#include "core/native_path.h"
#include "core/string_access.h"

#include <algorithm>
#include <system_error>
#include <vector>

namespace {

constexpr Int kLongestSuffix = 7; // of those that ClearSuffix takes off
constexpr Int kNowhere = -1;

Bool isSeparator(Utf32Char character)
{
    return character == '/' || character == '\\';
}

// The length without separators at the end; a path of separators alone keeps them.
Int lengthWithoutEnd(const String& path)
{
    Int length = path.GetLength();
    while (length > 0 && isSeparator(path[length - 1])) --length;
    return length > 0 ? length : path.GetLength();
}

// Where the last part begins.
Int fileStart(const String& path)
{
    Int start = lengthWithoutEnd(path);
    while (start > 0 && !isSeparator(path[start - 1])) --start;
    return start;
}

// Where the last dot of the last part stands.
Int suffixDot(const String& path)
{
    for (Int dot = path.GetLength() - 1; dot >= fileStart(path); --dot)
        if (path[dot] == '.') return dot;
    return kNowhere;
}

// The separator in use: the last one that the folder has, else the one that goes with a drive or with none.
Utf32Char separatorOf(const String& folder)
{
    for (Int position = folder.GetLength() - 1; position >= 0; --position)
        if (isSeparator(folder[position])) return folder[position];
    return folder.GetLength() > 1 && folder[1] == ':' ? '\\' : '/';
}

String joined(const String& folder, const String& part)
{
    if (!folder.Content() || !part.Content()) return folder + part;
    Int end = folder.GetLength();
    while (end > 0 && isSeparator(folder[end - 1])) --end;
    Int start = 0;
    while (start < part.GetLength() && isSeparator(part[start])) ++start;
    return folder.Left(end) + String(1, separatorOf(folder)) + part.Right(part.GetLength() - start);
}

} // namespace

Filename Filename::GetFile() const
{
    return GetFileString();
}

String Filename::GetFileString() const
{
    const Int start = fileStart(text);
    return text.SubStr(start, lengthWithoutEnd(text) - start);
}

Filename Filename::GetDirectory() const
{
    const String folder = text.Left(fileStart(text));
    return folder.Left(lengthWithoutEnd(folder));
}

void Filename::SetFile(const Filename& file)
{
    *this = GetDirectory() + file;
}

void Filename::SetDirectory(const Filename& directory)
{
    *this = directory + GetFile();
}

String Filename::GetSuffix() const
{
    const Int dot = suffixDot(text);
    return dot == kNowhere ? String() : text.Right(text.GetLength() - dot - 1);
}

void Filename::SetSuffix(const String& suffix)
{
    ClearSuffixComplete();
    if (suffix.Content()) text = text + String(".") + suffix;
}

Bool Filename::CheckSuffix(const String& suffix) const
{
    return suffixDot(text) != kNowhere && GetSuffix().LexCompare(suffix) == 0;
}

void Filename::ClearSuffix()
{
    if (GetSuffix().GetLength() <= kLongestSuffix) ClearSuffixComplete();
}

void Filename::ClearSuffixComplete()
{
    const Int dot = suffixDot(text);
    if (dot != kNowhere) text = text.Left(dot);
}

Filename& Filename::operator+=(const Filename& part)
{
    text = joined(text, part.text);
    return *this;
}

Filename operator+(const Filename& folder, const Filename& part)
{
    return joined(folder.text, part.text);
}

Bool GeFExist(const Filename& name, Bool isdir)
{
    std::error_code error;
    const auto status = std::filesystem::status(host::FilePath(name), error);
    return isdir ? std::filesystem::is_directory(status)
                 : std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

namespace host {

struct FolderEntry {
    std::string name; // UTF-8
    bool isFolder;
};

struct FolderListing {
    std::vector<FolderEntry> entries;
    size_t next = 0;
};

} // namespace host

BrowseFiles::BrowseFiles() : listing(std::make_unique<host::FolderListing>())
{
}
BrowseFiles::~BrowseFiles() = default;

BrowseFiles* BrowseFiles::Alloc()
{
    return new BrowseFiles;
}

void BrowseFiles::Free(BrowseFiles*& browse)
{
    delete browse;
    browse = nullptr;
}

void BrowseFiles::Init(const Filename& directory, Int32)
{
    *listing = {};
    std::error_code error;
    for (std::filesystem::directory_iterator entry(host::FilePath(directory), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        const std::u8string name = entry->path().filename().u8string();
        listing->entries.push_back({{name.begin(), name.end()}, entry->is_directory(unknown)});
    }
    std::ranges::sort(listing->entries, {}, &host::FolderEntry::name);
}

Bool BrowseFiles::GetNext()
{
    if (listing->next >= listing->entries.size()) return false;
    ++listing->next;
    return true;
}

Filename BrowseFiles::GetFilename()
{
    return listing->next == 0 ? Filename() : Filename(host::TextOf(listing->entries[listing->next - 1].name));
}

Bool BrowseFiles::IsDir()
{
    return listing->next > 0 && listing->entries[listing->next - 1].isFolder;
}
