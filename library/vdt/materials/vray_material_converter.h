// Layered materials, one a side, in a container that holds the two together.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class VrayMaterialConverter : public virtual MaterialConverter {
public:
    /// What shines through goes into the front, before anything else. False if the layers cannot be made.
    bool convert(const MaterialData& material, int32_t quality);

    /// Makes the back and the container where `hasBack` asks for them. The front is there already.
    virtual bool makeLayerPair(bool hasBack) = 0;
    /// The setters that follow are about this side.
    virtual void setSide(SurfaceSide side, const Color3f& diffuseColor) = 0;
    virtual void setDiffuseTexture(const std::string& path) = 0;
    virtual void setDiffuseRoughness(float roughness) = 0;
    virtual void setSpecularColor(const Color3f& color) = 0;
    virtual void setSpecularTexture(const std::string& path) = 0;
    virtual void setSpecularGlossiness(float glossiness) = 0;
    virtual void setSpecularLayer(bool on) = 0;
    virtual void setIndexOfRefraction(float index) = 0;
    virtual void setFastMode(bool on) = 0;
    virtual void setReflectionGlossiness(float glossiness) = 0;
    virtual void setAlphaTexture(const std::string& path) = 0;
    virtual void setBumpTexture(const std::string& path) = 0;
    virtual void setBumpStrength(float strength) = 0;
    virtual void setSubsurface(const Color3f& color, const std::string& texture, const Color3f& diffuseColor) = 0;

private:
    void convertSide(const MaterialData& material, SurfaceSide which, const MaterialSide& side, int32_t quality);
};

} // namespace vdt
