#include "materials/recorded_calls.h"

#include "vdt/materials/arnold_material_converter.h"
#include "vdt/materials/corona_material_converter.h"
#include "vdt/materials/maxwell_material_linker.h"
#include "vdt/materials/mia_material_converter.h"
#include "vdt/materials/octane_material_converter.h"
#include "vdt/materials/standard_material_converter.h"
#include "vdt/materials/thea_material_converter.h"
#include "vdt/materials/vray_material_converter.h"

#include <charconv>

namespace vdt::test {
namespace {

using Text = const std::string&;
using Color = const Color3f&;

std::string textOf(Color color)
{
    return NumberText(color.r) + " " + NumberText(color.g) + " " + NumberText(color.b);
}
std::string textOf(Text path)
{
    return std::string("\"").append(path) + '"';
}
std::string textOf(SurfaceSide side)
{
    return side == SurfaceSide::Front ? "front" : "back";
}
std::string textOf(bool value)
{
    return value ? "true" : "false";
}
std::string textOf(double value)
{
    return NumberText(value);
}
std::string textOf(int32_t value)
{
    return std::to_string(value);
}

// What all recorders share: the calls so far.
struct Recorder : virtual MaterialConverter {
    void setMaterialName(Text name) override { call("- setMaterialName", name); }

    template <class... Values> bool call(int slot, const char* operation, const Values&... values)
    {
        return call(std::to_string(slot).append(" ").append(operation), values...);
    }

    template <class... Values> bool call(std::string line, const Values&... values)
    {
        (line.append(" ").append(textOf(values)), ...);
        calls.push_back(line);
        return true;
    }

    std::vector<std::string> calls;
};

struct RecordingStandard final : Recorder, StandardMaterialConverter {
    bool startMaterial(SurfaceSide side, bool isPair) override { return call(0, "startMaterial", side, isPair); }
    void setDiffuse(Color color, Text texture) override { call(1, "setDiffuse", color, texture); }
    void setSpecular(Color color, Text texture, float r) override { call(2, "setSpecular", color, texture, r); }
    void setAlpha(Text texture) override { call(3, "setAlpha", texture); }
    void setBump(float strength, Text texture) override { call(4, "setBump", strength, texture); }
    void setNormal(Text texture) override { call(5, "setNormal", texture); }
    void setDisplacement(Text t, double height, bool centered) override
    {
        call(6, "setDisplacement", t, height, centered);
    }
};

struct RecordingVray final : Recorder, VrayMaterialConverter {
    bool makeLayerPair(bool hasBack) override { return call(0, "makeLayerPair", hasBack); }
    void setSide(SurfaceSide side, Color color) override { call(1, "setSide", side, color); }
    void setDiffuseTexture(Text path) override { call(2, "setDiffuseTexture", path); }
    void setDiffuseRoughness(float value) override { call(3, "setDiffuseRoughness", value); }
    void setSpecularColor(Color color) override { call(4, "setSpecularColor", color); }
    void setSpecularTexture(Text path) override { call(5, "setSpecularTexture", path); }
    void setSpecularGlossiness(float value) override { call(6, "setSpecularGlossiness", value); }
    void setSpecularLayer(bool on) override { call(7, "setSpecularLayer", on); }
    void setIndexOfRefraction(float index) override { call(8, "setIndexOfRefraction", index); }
    void setFastMode(bool on) override { call(9, "setFastMode", on); }
    void setReflectionGlossiness(float value) override { call(10, "setReflectionGlossiness", value); }
    void setAlphaTexture(Text path) override { call(11, "setAlphaTexture", path); }
    void setBumpTexture(Text path) override { call(12, "setBumpTexture", path); }
    void setBumpStrength(float strength) override { call(13, "setBumpStrength", strength); }
    void setSubsurface(Color color, Text path, Color diffuse) override
    {
        call(14, "setSubsurface", color, path, diffuse);
    }
};

struct RecordingMia final : Recorder, MiaMaterialConverter {
    void setDiffuseColor(Color color) override { call(0, "setDiffuseColor", color); }
    void setDiffuseTexture(Text path) override { call(1, "setDiffuseTexture", path); }
    void setDiffuseRoughness(float value) override { call(2, "setDiffuseRoughness", value); }
    void setReflectionColor(Color color) override { call(3, "setReflectionColor", color); }
    void setReflectionTexture(Text path) override { call(4, "setReflectionTexture", path); }
    void setReflectivity(float value) override { call(5, "setReflectivity", value); }
    void setReflectionGlossiness(float value) override { call(6, "setReflectionGlossiness", value); }
    void setIndexOfRefraction(float index) override { call(7, "setIndexOfRefraction", index); }
    void setFresnel(bool on) override { call(8, "setFresnel", on); }
    void setFastGlossy(bool on) override { call(9, "setFastGlossy", on); }
    void setThinWalled(bool on) override { call(10, "setThinWalled", on); }
    void setBacksideCulling(bool on) override { call(11, "setBacksideCulling", on); }
    void setCutoutTexture(Text path) override { call(12, "setCutoutTexture", path); }
    void setBumpTexture(Text path) override { call(13, "setBumpTexture", path); }
    void setBumpStrength(float strength) override { call(14, "setBumpStrength", strength); }
    void setTranslucency(bool on) override { call(15, "setTranslucency", on); }
    void setTranslucencyWeight(float weight) override { call(16, "setTranslucencyWeight", weight); }
    void setTranslucencyTexture(Text path) override { call(17, "setTranslucencyTexture", path); }
    void setSubsurfaceEnabled(bool on) override { call(18, "setSubsurfaceEnabled", on); }
    void setSubsurfaceWeight(float weight) override { call(19, "setSubsurfaceWeight", weight); }
    void setSubsurfaceColor(Color color) override { call(20, "setSubsurfaceColor", color); }
    void setSubsurfaceTexture(Text path) override { call(21, "setSubsurfaceTexture", path); }
};

struct RecordingCorona final : Recorder, CoronaMaterialConverter {
    void setDiffuse(Color color, Text texture, float value) override { call(0, "setDiffuse", color, texture, value); }
    void setOpacity(Text texture, bool isOwn) override { call(1, "setOpacity", texture, isOwn); }
    void setSpecular(Color color, Text texture, float value) override { call(2, "setSpecular", color, texture, value); }
    void setTranslucency(Color color, Text texture) override { call(3, "setTranslucency", color, texture); }
    void setBump(float strength, Text texture) override { call(4, "setBump", strength, texture); }
};

struct RecordingThea final : Recorder, TheaMaterialConverter {
    void setDiffuse(Color color, Text texture, float value) override { call(0, "setDiffuse", color, texture, value); }
    void setAlpha(Text texture) override { call(1, "setAlpha", texture); }
    void setSpecular(Color color, Text texture, float value) override { call(2, "setSpecular", color, texture, value); }
    void setTranslucency(Color color, Text texture) override { call(3, "setTranslucency", color, texture); }
    void setBumpAndDisplacement(float strength, Text bump, Text displacement) override
    {
        call(4, "setBumpAndDisplacement", strength, bump, displacement);
    }
    void setSubsurface(Color color, Text texture) override { call(5, "setSubsurface", color, texture); }
};

struct RecordingArnold final : Recorder, ArnoldMaterialConverter {
    bool setUpTwoSided(bool hasTwoSurfaces) override { return call(0, "setUpTwoSided", hasTwoSurfaces); }
    void setDiffuse(SurfaceSide side, Color color, Text texture, float value, float weight) override
    {
        call(1, "setDiffuse", side, color, texture, value, weight);
    }
    void setSpecular(Color color, Text texture, float value, float weight) override
    {
        call(2, "setSpecular", color, texture, value, weight);
    }
    void setAlpha(Text texture) override { call(3, "setAlpha", texture); }
    void setSideCount(int32_t count) override { call(4, "setSideCount", count); }
    void setIndexOfRefraction(float index) override { call(5, "setIndexOfRefraction", index); }
    void setFresnel(bool on) override { call(6, "setFresnel", on); }
    void setBumpStrength(float strength, Text texture) override { call(7, "setBumpStrength", strength, texture); }
    void setSubsurface(float weight, Color color, Text path) override { call(8, "setSubsurface", weight, color, path); }
};

struct RecordingMaxwell final : Recorder, MaxwellMaterialLinker {
    RecordingMaxwell() : MaxwellMaterialLinker("C:/lib") {}
    void linkFile(Text path) override { call(0, "linkFile", path); }
};

// The record in the order of writing.
struct RecordingOctane final : OctaneMaterialConverter {
    bool convert(const MaterialData& material, int32_t quality)
    {
        OctaneMaterialConverter::convert(material, quality);
        calls.push_back(std::string("- name ").append(textOf(name)));
        record("front.", front);
        if (back) record("back.", *back);
        return true;
    }

    void record(const std::string& side, const OctaneLook& look)
    {
        const auto field = [&](const char* fieldName, const auto& value) {
            calls.push_back(std::string("- ").append(side).append(fieldName).append(" ").append(textOf(value)));
        };
        field("diffuseColor", look.diffuseColor);
        field("diffuseTexture", look.diffuseTexture);
        field("specularColor", look.specularColor);
        field("specularTexture", look.specularTexture);
        field("specularRoughness", look.specularRoughness);
        field("opacityTexture", look.opacityTexture);
        field("bumpTexture", look.bumpTexture);
        field("indexOfRefraction", look.indexOfRefraction);
        field("translucencyTexture", look.translucencyTexture);
    }

    std::vector<std::string> calls;
};

template <class Recording> std::vector<std::string> callsOf(const MaterialData& material, int32_t quality)
{
    Recording recording;
    recording.convert(material, quality);
    return recording.calls;
}

} // namespace

std::vector<std::string> RecordedCalls(const std::string& renderer, const MaterialData& material, int32_t quality)
{
    if (renderer == "standard") return callsOf<RecordingStandard>(material, quality);
    if (renderer == "vray") return callsOf<RecordingVray>(material, quality);
    if (renderer == "mia" || renderer == "iray") return callsOf<RecordingMia>(material, quality);
    if (renderer == "corona") return callsOf<RecordingCorona>(material, quality);
    if (renderer == "thea") return callsOf<RecordingThea>(material, quality);
    if (renderer == "arnold") return callsOf<RecordingArnold>(material, quality);
    if (renderer == "octane") return callsOf<RecordingOctane>(material, quality);
    return callsOf<RecordingMaxwell>(material, quality);
}

std::string NumberText(double number)
{
    char text[64];
    const auto narrow = static_cast<float>(number);
    const auto end = narrow == number ? std::to_chars(text, text + sizeof(text), narrow)
                                      : std::to_chars(text, text + sizeof(text), number);
    return {text, end.ptr};
}

} // namespace vdt::test
