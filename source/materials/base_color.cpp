#include "materials/base_color.h"

#include "materials/renderer_ids.h"
#include "mmaterial.h"

#include <algorithm>
#include <iterator>

namespace {

// Which parameter of which kind of material is its colour.
struct ColorParameter {
    Int32 materialType;
    Int32 parameter;
};
constexpr ColorParameter kColorParameters[] = {
    {Mmaterial, MATERIAL_COLOR_COLOR}, {kVrayMaterialId, 3000},   {kMiaMaterialId, 2001},
    {kTheaMaterialId, 27001},          {kCoronaMaterialId, 4300}, {kIrayMaterialId, 9000},
};

} // namespace

Vector baseColorOfMaterial(BaseMaterial& material, const Vector& fallback)
{
    const auto* found = std::ranges::find(kColorParameters, material.GetType(), &ColorParameter::materialType);
    GeData value;
    if (found == std::end(kColorParameters)) return fallback;
    if (!material.GetParameter(found->parameter, value, DESCFLAGS_GET_0)) return fallback;
    return value.GetType() == DA_VECTOR ? value.GetVector() : fallback;
}
