#include "materials/c4d_mia_setters.h"
#include "materials/renderer_ids.h"

namespace {

constexpr Int32 kPicture = 1; // the part of a parameter that is a picture in place of its value

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 9000, Write::Color},
    {Slot::DiffuseColor, 9001, Write::On},
    {Slot::DiffuseTexture, 9000, Write::Texture, kPicture},
    {Slot::DiffuseRoughness, 9002, Write::Number},
    {Slot::SpecularColor, 9003, Write::Color},
    {Slot::SpecularTexture, 9003, Write::Texture, kPicture},
    {Slot::Reflectivity, 9005, Write::Number},
    {Slot::Glossiness, 9004, Write::Number},
    {Slot::IndexOfRefraction, 9012, Write::Number},
    {Slot::ThinWalled, 9024, Write::Switch},
    {Slot::AlphaTexture, 9025, Write::AlphaTexture},
    {Slot::BumpTexture, 9028, Write::Texture},
    {Slot::TranslucencyEnabled, 9011, Write::Switch},
    {Slot::TranslucencyTexture, 9011, Write::Texture, kPicture},
    {Slot::SubsurfaceEnabled, 9019, Write::Switch},
    {Slot::SubsurfaceWeight, 2021, Write::Number}, // outside the range of the others
    {Slot::SubsurfaceColor, 9020, Write::Color},
    {Slot::SubsurfaceTexture, 9020, Write::Texture, kPicture},
};
constexpr ParameterMap kMap{.rows = kRows};

class C4dIrayMaterialConverter final : public C4dMiaSetters {
public:
    explicit C4dIrayMaterialConverter(ColourSpace colours) : C4dMiaSetters(kIrayMaterialId, kMap, colours) {}
};

} // namespace

Bool ConvertToIray(const Conversion& conversion)
{
    return ConvertWith(C4dIrayMaterialConverter(conversion.colourSpace), conversion);
}
