#include "support/library_location.h"

#include "support/plugin_ids.h"
#include "support/text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include "support/utf8.h"

#include <cstdlib>
#include <fstream>
#endif

#include <iostream>
#include <string_view>

namespace {

constexpr std::string_view kFallbackLanguage = "en-US";

void warnOfBadPath()
{
    std::cerr << "The path of the plant library: bad conversion" << std::endl;
}

#ifndef _WIN32

// The first line of the file that an installer leaves in the user's configuration folder.
std::string configuredPath()
{
    std::string folder;
    if (const char* configuration = std::getenv("XDG_CONFIG_HOME"); configuration && *configuration)
        folder = configuration;
    else if (const char* home = std::getenv("HOME"); home && *home)
        folder = std::string(home) + "/.config";
    else
        return {};
    std::string line;
    std::ifstream file(folder + "/verdanth/plants");
    std::getline(file, line);
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

#endif

} // namespace

Filename GetPlantLibraryPath()
{
    const BaseContainer* settings = GetWorldPluginData(kPlantBrowserId);
    const Filename chosen = settings ? settings->GetFilename(kSettingLibraryFolder) : Filename();
    return chosen.Content() ? chosen : Filename(ToHostString(GetRegistryPlantPath()));
}

#ifdef _WIN32

std::string GetRegistryPlantPath()
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Verdanth", 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS)
        return {};
    wchar_t text[256] = {};
    DWORD size = sizeof(text);
    const LSTATUS status = RegQueryValueExW(key, L"Plants", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS) return {};

    const int length = static_cast<int>(wcsnlen(text, 256));
    if (length == 0) return {};
    const int bytes = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, length, nullptr, 0, nullptr, nullptr);
    if (bytes <= 0) {
        warnOfBadPath();
        return {};
    }
    std::string utf8(static_cast<size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, length, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

#else

std::string GetRegistryPlantPath()
{
    const char* environment = std::getenv("VERDANTH_PLANTS");
    std::string path = environment && *environment ? environment : configuredPath();
    std::vector<uint32_t> codePoints;
    if (utf8_to_uints(path, codePoints)) return path;
    warnOfBadPath();
    return {};
}

#endif

String GetFullSuffix(const Filename& file)
{
    String suffixes;
    Filename rest = file.GetFile();
    for (String suffix = rest.GetSuffix(); suffix.Content(); suffix = rest.GetSuffix()) {
        suffixes = suffixes.Content() ? suffix + "." + suffixes : suffix;
        const Filename before = rest;
        rest.ClearSuffixComplete();
        if (rest == before) break;
    }
    return suffixes.ToLower();
}

Bool IsModelFile(const Filename& file)
{
    const String suffix = GetFullSuffix(file);
    return suffix == "vdt" || suffix == "vdt.gz";
}

HostLanguage GetHostLanguage()
{
    HostLanguage language;
    Bool isDefault = false;
    for (Int32 i = 0; GeGetLanguage(i, &language.suffix, &language.name, &isDefault); ++i)
        if (isDefault) return language;
    return {"US", "English"};
}

String GetLocalizedText(const vdt::LocalizedTexts& texts)
{
    const std::string language = vdt::languageTagFromHost(ToUtf8(GetHostLanguage().suffix), kFallbackLanguage);
    return ToHostString(vdt::lookupText(texts, language, kFallbackLanguage, {}));
}
