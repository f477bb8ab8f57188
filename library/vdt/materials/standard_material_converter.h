// The host's own materials: one, or one a side, each a set of channels.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class StandardMaterialConverter : public virtual MaterialConverter {
public:
    /// Two materials are made at high quality for a separate back. False if one cannot be made.
    bool convert(const MaterialData& material, int32_t quality);

    /// Starts a material, the front first; the setters that follow are about it. `isPair`: there is one for each side.
    virtual bool startMaterial(SurfaceSide side, bool isPair) = 0;
    virtual void setDiffuse(const Color3f& color, const std::string& texture) = 0;
    virtual void setSpecular(const Color3f& color, const std::string& texture, float roughness) = 0;
    virtual void setAlpha(const std::string& texture) = 0;
    virtual void setBump(float strength, const std::string& texture) = 0;
    virtual void setNormal(const std::string& texture) = 0;
    /// `height` in the unit of the record; `isCentered`: middle grey stays where it is.
    virtual void setDisplacement(const std::string& texture, double height, bool isCentered) = 0;
};

} // namespace vdt
