#include "export/texture_files.h"

#include "files/input_file.h"
#include "lookup/species.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

// Absolute, with links resolved as far as the path exists.
fs::path resolved(const fs::path& path)
{
    std::error_code code;
    const fs::path result = fs::weakly_canonical(fs::absolute(path, code), code);
    return code ? path : result;
}

} // namespace

TextureFiles::TextureFiles(const std::string& mainPath, const std::vector<SceneMaterial>& materials, OutputFiles& files)
    : outputFiles(&files),
      baseFolder(resolved(fs::path(mainPath)).parent_path().string()),
      textureFolder(fs::path(mainPath).stem().string() + "_textures")
{
    for (const SceneMaterial& material : materials)
        for (const std::string& texture : material.textures())
            if (!texture.empty()) sources.push_back(texture);
}

std::string TextureFiles::place(const std::string& texture, std::string& problem)
{
    if (const auto known = placed.find(texture); known != placed.end()) return known->second;

    const fs::path relative = resolved(texture).lexically_relative(baseFolder);
    if (!relative.empty() && *relative.begin() != "..") return placed[texture] = relative.generic_string();

    const auto content = ReadWholeFile(texture, problem);
    if (!content) return {};
    return placed[texture] = placeNew(fs::path(texture).filename().string(), *content);
}

std::string TextureFiles::placeNew(const std::string& name, const std::vector<uint8_t>& content)
{
    const std::string relative = textureFolder + "/" + newName(name);
    outputFiles->create((fs::path(baseFolder) / relative).string()).writeAll(content);
    return relative;
}

std::string TextureFiles::newName(const std::string& name)
{
    const fs::path path(name);
    std::string candidate = name;
    const auto isSource = [&](const std::string& source) {
        return IsSameFile((fs::path(baseFolder) / textureFolder / candidate).string(), source);
    };
    for (int number = 2;
         !usedNames.insert(FoldName(candidate)).second || std::any_of(sources.begin(), sources.end(), isSource);
         ++number)
        candidate = path.stem().string() + "_" + std::to_string(number) + path.extension().string();
    return candidate;
}

std::string UriOf(const std::string& path)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri;
    for (const char c : path) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                           std::string_view("-._~/").find(c) != std::string_view::npos;
        const auto byte = static_cast<unsigned char>(c);
        if (plain)
            uri += c;
        else
            uri.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
    return uri;
}

} // namespace verdanth
