#include "materials/c4d_material_name_converter.h"

#include "support/text.h"

C4dMaterialNameConverter::C4dMaterialNameConverter(Int32 plugin, const ParameterMap& parameters,
                                                   ColourSpace documentColours)
    : material(BaseMaterial::Alloc(plugin)),
      target(material.get()),
      parameterMap(parameters),
      colourSpace(documentColours)
{
}

void C4dMaterialNameConverter::setMaterialName(const std::string& name)
{
    if (material) material->SetName(ToHostString(name));
}

void C4dMaterialNameConverter::takeEntries(Int32 matid, MaterialEntries& result)
{
    FinishMaterial(*material);
    result.push_back({.material = std::move(material), .matid = matid});
}

void FinishMaterial(BaseMaterial& material)
{
    material.Message(MSG_UPDATE);
    material.Update(true, true);
}

MaterialEntry JoinPair(HostPtr<BaseMaterial> container, HostPtr<BaseMaterial> front, HostPtr<BaseMaterial> back,
                       Int32 matid)
{
    MaterialEntry entry;
    entry.matid = matid;
    for (HostPtr<BaseMaterial>* part : {&front, &back}) {
        FinishMaterial(**part);
        entry.parts.push_back(std::move(*part));
    }
    FinishMaterial(*container);
    entry.material = std::move(container);
    return entry;
}
