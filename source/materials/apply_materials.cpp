#include "materials/apply_materials.h"

#include "geometry/selection_names.h"

namespace {

// What a texture tag is made of.
struct Covering {
    BaseMaterial* material;
    Int32 matid;
    Int32 side;
};

class Inserter {
public:
    Inserter(BaseDocument& target, LayerObject* targetLayer) : document(target), layer(targetLayer) {}

    BaseMaterial* insert(HostPtr<BaseMaterial>& material)
    {
        BaseMaterial* placed = material.release(); // the document's from here on
        document.InsertMaterial(placed, inserted.empty() ? nullptr : inserted.back());
        if (layer) placed->SetLayerObject(layer);
        inserted.push_back(placed);
        return placed;
    }

    BaseMaterial* insert(MaterialEntry& entry)
    {
        for (HostPtr<BaseMaterial>& part : entry.parts) insert(part);
        entry.parts.clear();
        return insert(entry.material);
    }

    std::vector<BaseMaterial*> inserted;

private:
    BaseDocument& document;
    LayerObject* layer;
};

BaseTag* addTextureTag(BaseObject& object, const Covering& covering, BaseTag* last)
{
    auto* tag = static_cast<TextureTag*>(object.MakeTag(Ttexture, last));
    if (!tag) return last;
    tag->SetParameter(TEXTURETAG_PROJECTION, GeData(TEXTURETAG_PROJECTION_UVW), DESCFLAGS_SET_0);
    tag->SetParameter(TEXTURETAG_SIDE, GeData(covering.side), DESCFLAGS_SET_0);
    tag->SetParameter(TEXTURETAG_RESTRICTION, GeData(MaterialSelectionName(covering.matid)), DESCFLAGS_SET_0);
    tag->SetMaterial(covering.material);
    return tag;
}

} // namespace

std::vector<BaseMaterial*> applyMaterials(BaseDocument& document, MaterialEntries& entries, const MaterialUse& use)
{
    Inserter inserter(document, use.layer);
    std::vector<Covering> coverings;
    for (size_t i = 0; i < entries.size(); ++i) {
        MaterialEntry& entry = entries[i];
        BaseMaterial* existing = i < use.existing.size() ? use.existing[i] : nullptr;
        coverings.push_back({existing ? existing : inserter.insert(entry), entry.matid, entry.side});
    }
    for (BaseObject* object : use.objects) {
        if (object->GetTag(Ttexture) && !use.overwrite) continue;
        while (object->GetTag(Ttexture)) object->KillTag(Ttexture);
        BaseTag* last = nullptr;
        for (const Covering& covering : coverings) last = addTextureTag(*object, covering, last);
    }
    return std::move(inserter.inserted);
}
