#include "materials/arnold_network.h"
#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "mmaterial.h"
#include "vdt/materials/arnold_material_converter.h"

namespace {

// A network shows in no viewport: the material's own colour stands for it.
constexpr ParameterRow kRows[] = {{Slot::DiffuseColor, MATERIAL_COLOR_COLOR, Write::Color}};
constexpr ParameterMap kMap{.rows = kRows};

class C4dArnoldMaterialConverter final : public C4dMaterialNameConverter, public vdt::ArnoldMaterialConverter {
public:
    explicit C4dArnoldMaterialConverter(ColourSpace colours) : C4dMaterialNameConverter(Mmaterial, kMap, colours) {}

    bool setUpTwoSided(bool hasTwoSurfaces) override
    {
        if (!material) return false;
        if (!hasTwoSurfaces) {
            surfaces = {network.addNode(kArnoldStandardId, "standard")};
            network.setSurface(surfaces.front());
            return true;
        }
        const Int32 twoSided = network.addNode(0, "two_sided");
        for (const Char* side : {"front", "back"}) {
            surfaces.push_back(network.addNode(kArnoldStandardId, "standard"));
            network.linkInput(twoSided, side, surfaces.back());
        }
        network.setSurface(twoSided);
        return true;
    }

    void setDiffuse(vdt::SurfaceSide side, const vdt::Color3f& color, const std::string& texture, float roughness,
                    float weight) override
    {
        if (surfaces.empty()) return;
        const bool isFront = side == vdt::SurfaceSide::Front;
        if (isFront) write(Slot::DiffuseColor, color);
        surface = isFront ? surfaces.front() : surfaces.back();
        network.setInput(surface, "Kd_color", pictureOr(color, texture));
        network.setInput(surface, "diffuse_roughness", GeData(roughness));
        network.setInput(surface, "Kd", GeData(weight));
    }

    void setSpecular(const vdt::Color3f& color, const std::string& texture, float roughness, float weight) override
    {
        if (surfaces.empty()) return;
        network.setInput(surface, "Ks_color", pictureOr(color, texture));
        network.setInput(surface, "specular_roughness", GeData(roughness));
        network.setInput(surface, "Ks", GeData(weight));
    }

    void setAlpha(const std::string& texture) override
    {
        if (!texture.empty()) setOnAll("opacity", GeData(TextureFilename(CutoutPath(texture))));
    }

    void setSideCount(int32_t count) override { setOnAll("side_count", GeData(static_cast<Int32>(count))); }
    void setIndexOfRefraction(float index) override { setOnAll("IOR", GeData(index)); }
    void setFresnel(bool on) override { setOnAll("Fresnel", GeData(static_cast<Int32>(on))); }

    void setBumpStrength(float strength, const std::string& texture) override
    {
        if (!material || texture.empty()) return;
        const Int32 displacement = network.addNode(kArnoldDisplacementId, "displacement");
        network.setInput(displacement, "picture", GeData(TextureFilename(texture)));
        network.setInput(displacement, "height", GeData(strength));
        network.setDisplacement(displacement);
    }

    void setSubsurface(float weight, const vdt::Color3f& color, const std::string& texture) override
    {
        setOnAll("Ksss", GeData(weight));
        setOnAll("Ksss_color", pictureOr(color, texture));
    }

    void takeEntries(Int32 matid, MaterialEntries& result) override
    {
        material->GetDataInstance()->SetContainer(kArnoldNetworkId, network.toContainer());
        C4dMaterialNameConverter::takeEntries(matid, result);
    }

private:
    GeData pictureOr(const vdt::Color3f& color, const std::string& texture) const
    {
        return texture.empty() ? GeData(ColorParameter(color, colourSpace)) : GeData(TextureFilename(texture));
    }

    void setOnAll(const Char* input, const GeData& value)
    {
        for (const Int32 each : surfaces) network.setInput(each, input, value);
    }

    ArnoldNetwork network;
    std::vector<Int32> surfaces; // nodes: the front, and the back if there are two
    Int32 surface = NOTOK;       // the one that is set now
};

} // namespace

Bool ConvertToArnold(const Conversion& conversion)
{
    return ConvertWith(C4dArnoldMaterialConverter(conversion.colourSpace), conversion);
}
