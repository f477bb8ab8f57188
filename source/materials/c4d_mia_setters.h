// The setters of the two renderers with materials of the architectural kind, which differ in their tables.
#pragma once

#include "materials/c4d_material_name_converter.h"
#include "vdt/materials/mia_material_converter.h"

class C4dMiaSetters : public C4dMaterialNameConverter, public vdt::MiaMaterialConverter {
public:
    using C4dMaterialNameConverter::C4dMaterialNameConverter;

    void setDiffuseColor(const vdt::Color3f& color) override { write(Slot::DiffuseColor, color); }
    void setDiffuseTexture(const std::string& path) override { write(Slot::DiffuseTexture, path); }
    void setDiffuseRoughness(float roughness) override { write(Slot::DiffuseRoughness, roughness); }
    void setReflectionColor(const vdt::Color3f& color) override { write(Slot::SpecularColor, color); }
    void setReflectionTexture(const std::string& path) override { write(Slot::SpecularTexture, path); }
    void setReflectivity(float reflectivity) override { write(Slot::Reflectivity, reflectivity); }
    void setReflectionGlossiness(float glossiness) override { write(Slot::Glossiness, glossiness); }
    void setIndexOfRefraction(float index) override { write(Slot::IndexOfRefraction, index); }
    void setFresnel(bool on) override { write(Slot::Fresnel, on); }
    void setFastGlossy(bool on) override { write(Slot::FastMode, on); }
    void setThinWalled(bool on) override { write(Slot::ThinWalled, on); }
    void setBacksideCulling(bool on) override { write(Slot::BacksideCulling, on); }
    void setCutoutTexture(const std::string& path) override { write(Slot::AlphaTexture, path); }
    void setBumpTexture(const std::string& path) override { write(Slot::BumpTexture, path); }
    void setBumpStrength(float strength) override { write(Slot::BumpStrength, strength); }
    void setTranslucency(bool on) override { write(Slot::TranslucencyEnabled, on); }
    void setTranslucencyWeight(float weight) override { write(Slot::TranslucencyWeight, weight); }
    void setTranslucencyTexture(const std::string& path) override { write(Slot::TranslucencyTexture, path); }
    void setSubsurfaceEnabled(bool on) override { write(Slot::SubsurfaceEnabled, on); }
    void setSubsurfaceWeight(float weight) override { write(Slot::SubsurfaceWeight, weight); }
    void setSubsurfaceColor(const vdt::Color3f& color) override { write(Slot::SubsurfaceColor, color); }
    void setSubsurfaceTexture(const std::string& path) override { write(Slot::SubsurfaceTexture, path); }
};
