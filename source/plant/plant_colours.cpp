#include "plant/plant_colours.h"

#include "ddoc.h"
#include "geometry/selection_names.h"
#include "materials/base_color.h"
#include "plant/plant_units.h"
#include "support/colour_space.h"
#include "ttexture.h"

#include <algorithm>

namespace {

Vector ownColour(const vdt::Model& model, int32_t id)
{
    const auto found = std::ranges::find(model.materials, id, &vdt::MaterialData::matid);
    return found == model.materials.end() ? Vector(1.0) : ToHostColour(found->front.diffuseColor);
}

// Calls `visit` with each texture tag that has a material, and with that material.
template <class Visit> void forEachTextureTag(BaseObject& object, const Visit& visit)
{
    for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext()) {
        if (tag->GetType() != Ttexture) continue;
        if (BaseMaterial* material = static_cast<TextureTag*>(tag)->GetMaterial()) visit(*tag, *material);
    }
}

Bool isForBack(BaseTag& tag)
{
    return tag.GetDataInstance()->GetInt32(TEXTURETAG_SIDE) == TEXTURETAG_SIDE_BACK;
}

} // namespace

PlantColours MaterialColours(BaseObject& object, const vdt::Model* model, MaterialChanges* changes)
{
    PlantColours colours;
    BaseDocument* document = DocumentOf(object);
    if (!document || !model) return colours;

    const ColourSpace space = DocumentColourSpace(document);
    forEachTextureTag(object, [&](BaseTag& tag, BaseMaterial& material) {
        const Int32 id = MaterialIdOfTag(&object, &tag);
        if (id == NOTOK || isForBack(tag)) return;
        if (changes) (*changes)[&material] = material.GetDirty(DIRTYFLAGS_DATA);
        const Vector fallback = SrgbToParameter(ownColour(*model, id), space);
        colours[id] = ToModelColour(ParameterToSrgb(baseColorOfMaterial(material, fallback), space));
    });
    return colours;
}

Bool HasChangedMaterial(BaseObject& object, const MaterialChanges& changes)
{
    Bool changed = false;
    forEachTextureTag(object, [&](BaseTag& /*tag*/, BaseMaterial& material) {
        const auto known = changes.find(&material);
        changed = changed || (known != changes.end() && known->second != material.GetDirty(DIRTYFLAGS_DATA));
    });
    return changed;
}

Bool DefaultColour(BaseDocument* document, vdt::Color3f& colour)
{
    const BaseContainer* settings = document ? document->GetDataInstance() : nullptr;
    if (!settings) return false;
    const Vector parameter = settings->GetVector(DOCUMENT_DEFAULTMATERIAL_COLOR);
    colour = ToModelColour(ParameterToSrgb(parameter, DocumentColourSpace(document)));
    return true;
}
