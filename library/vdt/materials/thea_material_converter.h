// Materials of a diffuse and a coated layer, with a relief of their own kind.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class TheaMaterialConverter : public virtual MaterialConverter {
public:
    /// Alpha and bump come from medium quality on, translucency and subsurface at high quality where a subsurface
    /// colour is there. Specular always comes.
    bool convert(const MaterialData& material, int32_t quality);

    virtual void setDiffuse(const Color3f& color, const std::string& texture, float roughness) = 0;
    virtual void setAlpha(const std::string& texture) = 0;
    virtual void setSpecular(const Color3f& color, const std::string& texture, float roughness) = 0;
    virtual void setTranslucency(const Color3f& color, const std::string& texture) = 0;
    virtual void setBumpAndDisplacement(float strength, const std::string& texture,
                                        const std::string& displacementTexture) = 0;
    virtual void setSubsurface(const Color3f& color, const std::string& texture) = 0;
};

} // namespace vdt
