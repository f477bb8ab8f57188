#include "materials/material_factory.h"

#include "materials/c4d_material_name_converter.h"

#include <iterator>

namespace {

// By number, the first for Renderer::Standard.
constexpr Bool (*kConversions[])(const Conversion&) = {
    ConvertToStandard, ConvertToVray,   ConvertToMia,     ConvertToCorona, ConvertToThea,
    ConvertToArnold,   ConvertToOctane, ConvertToMaxwell, ConvertToIray,
};
static_assert(std::size(kConversions) == static_cast<size_t>(Renderer::Iray));

} // namespace

Bool convertMaterial(const vdt::MaterialData& material, ColourSpace colorProfile, Int32 renderer, Int32 quality,
                     Int32 /*reserved*/, MaterialEntries& result, BaseDocument* /*document*/)
{
    if (renderer < static_cast<Int32>(Renderer::Standard) || renderer > static_cast<Int32>(Renderer::Iray))
        return false;
    return kConversions[renderer - static_cast<Int32>(Renderer::Standard)](
        {.material = material, .colourSpace = colorProfile, .quality = quality, .result = result});
}

Bool convertMaterials(const std::vector<vdt::MaterialData>& materials, MaterialEntries& result,
                      ColourSpace colorProfile, Int32 renderer, Int32 quality, Int32 reserved, BaseDocument* document)
{
    result.clear();
    for (const vdt::MaterialData& material : materials) {
        if (convertMaterial(material, colorProfile, renderer, quality, reserved, result, document)) continue;
        result.clear();
        return false;
    }
    return true;
}
