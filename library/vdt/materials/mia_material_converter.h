// Materials of the architectural kind: one layer of diffuse colour under one reflection.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class MiaMaterialConverter : public virtual MaterialConverter {
public:
    /// Light shines through at high quality if a subsurface texture, and no subsurface colour, is there.
    bool convert(const MaterialData& material, int32_t quality);

    virtual void setDiffuseColor(const Color3f& color) = 0;
    virtual void setDiffuseTexture(const std::string& path) = 0;
    virtual void setDiffuseRoughness(float roughness) = 0;
    virtual void setReflectionColor(const Color3f& color) = 0;
    virtual void setReflectionTexture(const std::string& path) = 0;
    virtual void setReflectivity(float reflectivity) = 0;
    virtual void setReflectionGlossiness(float glossiness) = 0;
    virtual void setIndexOfRefraction(float index) = 0;
    virtual void setFresnel(bool on) = 0;
    virtual void setFastGlossy(bool on) = 0;
    virtual void setThinWalled(bool on) = 0;
    virtual void setBacksideCulling(bool on) = 0;
    virtual void setCutoutTexture(const std::string& path) = 0;
    virtual void setBumpTexture(const std::string& path) = 0;
    virtual void setBumpStrength(float strength) = 0;
    virtual void setTranslucency(bool on) = 0;
    virtual void setTranslucencyWeight(float weight) = 0;
    virtual void setTranslucencyTexture(const std::string& path) = 0;
    virtual void setSubsurfaceEnabled(bool on) = 0;
    virtual void setSubsurfaceWeight(float weight) = 0;
    virtual void setSubsurfaceColor(const Color3f& color) = 0;
    virtual void setSubsurfaceTexture(const std::string& path) = 0;
};

} // namespace vdt
