#include "vdt/materials/maxwell_material_linker.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vdt {
namespace {

constexpr std::array<std::string_view, 9> kPartCodes{"br", "tr", "bl", "ft", "lf", "ne", "tw", "ha", "pe"};

// The words before the first part code; the whole name if it has none.
std::string_view plantOf(std::string_view name)
{
    size_t begin = 0;
    while (begin <= name.size()) {
        const size_t end = std::min(name.find('_', begin), name.size());
        if (std::ranges::find(kPartCodes, name.substr(begin, end - begin)) != kPartCodes.end())
            return name.substr(0, begin > 0 ? begin - 1 : 0);
        begin = end + 1;
    }
    return name;
}

std::string_view levelOf(int32_t quality)
{
    if (quality >= kQualityHigh) return "high";
    return quality >= kQualityMedium ? "medium" : "low";
}

void appendPart(std::string& path, std::string_view part)
{
    if (part.empty()) return;
    if (!path.empty() && path.back() != '/') path += '/';
    path += part;
}

} // namespace

bool MaxwellMaterialLinker::convert(const MaterialData& material, int32_t quality)
{
    setMaterialName(material.name);
    std::string path = basePath;
    appendPart(path, plantOf(material.name));
    appendPart(path, "textures");
    appendPart(path, material.name + "_" + std::string(levelOf(quality)) + ".mxm");
    linkFile(path);
    return true;
}

} // namespace vdt
