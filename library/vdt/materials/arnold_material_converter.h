// Networks of shaders: one surface shader, or two under a two-sided one, and a displacement.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class ArnoldMaterialConverter : public virtual MaterialConverter {
public:
    /// Two surfaces are made at high quality for a separate back where a subsurface colour is there. False if the
    /// network cannot be made.
    bool convert(const MaterialData& material, int32_t quality);

    /// Starts the network.
    virtual bool setUpTwoSided(bool hasTwoSurfaces) = 0;
    /// The next specular is about the same side.
    virtual void setDiffuse(SurfaceSide side, const Color3f& color, const std::string& texture, float roughness,
                            float weight) = 0;
    virtual void setSpecular(const Color3f& color, const std::string& texture, float roughness, float weight) = 0;
    // About all surfaces.
    virtual void setAlpha(const std::string& texture) = 0;
    virtual void setSideCount(int32_t count) = 0;
    virtual void setIndexOfRefraction(float index) = 0;
    virtual void setFresnel(bool on) = 0;
    virtual void setBumpStrength(float strength, const std::string& texture) = 0;
    virtual void setSubsurface(float weight, const Color3f& color, const std::string& texture) = 0;
};

} // namespace vdt
