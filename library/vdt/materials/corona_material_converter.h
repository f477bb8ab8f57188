// Materials of five blocks, of which low quality leaves but the first.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class CoronaMaterialConverter : public virtual MaterialConverter {
public:
    /// Opacity and bump come from medium quality on, specular and translucency at high quality; translucency only
    /// where both a subsurface colour and a subsurface texture are there.
    bool convert(const MaterialData& material, int32_t quality);

    virtual void setDiffuse(const Color3f& color, const std::string& texture, float roughness) = 0;
    /// `isOwnPicture`: the cut-out is not the alpha channel of the diffuse texture.
    virtual void setOpacity(const std::string& texture, bool isOwnPicture) = 0;
    virtual void setSpecular(const Color3f& color, const std::string& texture, float roughness) = 0;
    virtual void setTranslucency(const Color3f& color, const std::string& texture) = 0;
    virtual void setBump(float strength, const std::string& texture) = 0;
};

} // namespace vdt
