#include "host/plant_materials.h"

#include "export/mean_color.h"
#include "export/scene_materials.h"
#include "host/host_session.h"
#include "mmaterial.h"
#include "ttexture.h"

namespace verdanth {

void AddMaterials(BaseDocument& document, BaseObject& plant, const vdt::Model& model, const std::string& season)
{
    std::vector<SceneMaterial> looks;
    vdt::NullMessageHandler unheard; // a viewport shows what it can
    SceneMaterials collected(model, season, looks, unheard);
    for (const vdt::MaterialData& data : model.materials) collected.indexOf(data.matid);

    BaseTag* last = plant.GetLastTag();
    for (const SceneMaterial& look : looks) {
        BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
        if (!material) return;
        material->SetName(HostText(look.name));
        const vdt::Color3f color = MeanColor(look);
        const Vector parameter(color.r, color.g, color.b); // a document of ours keeps colours as they are shown
        material->SetParameter(DescID(MATERIAL_COLOR_COLOR), GeData(parameter), DESCFLAGS_SET_0);
        document.InsertMaterial(material);

        auto* tag = static_cast<TextureTag*>(plant.MakeTag(Ttexture, last));
        if (!tag) return;
        last = tag;
        tag->SetMaterial(material);
        const std::string selection = "MAT" + std::to_string(look.matid);
        tag->SetParameter(DescID(TEXTURETAG_RESTRICTION), GeData(HostText(selection)), DESCFLAGS_SET_0);
    }
}

} // namespace verdanth
