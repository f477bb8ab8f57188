#include "core/layer_set.h"

#include "customgui_layerset.h"

#include <algorithm>

namespace {

constexpr Int32 kMostLayers = 4096; // in a file; no picture has so many

bool isMode(Int32 number)
{
    return number >= LAYERSETMODE_LAYERS && number <= LAYERSETMODE_DISABLED;
}

} // namespace

LayerSet* LayerSet::Alloc()
{
    return new LayerSet;
}

void LayerSet::Free(LayerSet*& data)
{
    delete data;
    data = nullptr;
}

Bool LayerSet::IsLayerEnabled(const String& name) const
{
    return std::ranges::find(layers, name) != layers.end();
}

String LayerSet::GetName() const
{
    String names;
    for (const String& layer : layers) names += (names.Content() ? String(", ") : String()) + layer;
    return names;
}

void LayerSet::AddLayer(const String& name)
{
    if (!IsLayerEnabled(name)) layers.push_back(name);
}

void LayerSet::RemoveLayer(const String& name)
{
    std::erase(layers, name);
}

class LayerSetType final : public CustomDataTypeClass {
public:
    Int32 GetId() override { return CUSTOMDATATYPE_LAYERSET; }
    CustomDataType* AllocData() override { return LayerSet::Alloc(); }
    void FreeData(CustomDataType* data) override { delete static_cast<LayerSet*>(data); }

    Bool CopyData(const CustomDataType* src, CustomDataType* dest, AliasTrans*) override
    {
        *static_cast<LayerSet*>(dest) = *static_cast<const LayerSet*>(src);
        return true;
    }

    Int32 Compare(const CustomDataType* d1, const CustomDataType* d2) override
    {
        const auto& a = *static_cast<const LayerSet*>(d1);
        const auto& b = *static_cast<const LayerSet*>(d2);
        if (a.mode != b.mode) return a.mode < b.mode ? -1 : 1;
        if (a.layers == b.layers) return 0;
        const auto isBefore = [](const String& one, const String& other) { return one.Compare(other) < 0; };
        return std::ranges::lexicographical_compare(a.layers, b.layers, isBefore) ? -1 : 1;
    }

    Bool WriteData(const CustomDataType* d, HyperFile* hf) override
    {
        const auto& set = *static_cast<const LayerSet*>(d);
        const auto count = static_cast<Int32>(set.layers.size());
        return hf->WriteInt32(set.mode) && hf->WriteInt32(count) &&
               std::ranges::all_of(set.layers, [hf](const String& layer) { return hf->WriteString(layer) != 0; });
    }

    Bool ReadData(CustomDataType* d, HyperFile* hf, Int32) override
    {
        auto& set = *static_cast<LayerSet*>(d);
        Int32 mode = 0, count = 0;
        if (!hf->ReadInt32(&mode) || !hf->ReadInt32(&count) || !isMode(mode) || count > kMostLayers) return false;
        set.SetMode(static_cast<LAYERSETMODE>(mode));
        for (Int32 i = 0; i < count; ++i) {
            String layer;
            if (!hf->ReadString(&layer)) return false;
            set.AddLayer(layer);
        }
        return true;
    }

    const Char* GetResourceSym() override { return "LAYERSET"; }
};

namespace host {

CustomDataTypeClass* NewLayerSetType()
{
    return new LayerSetType;
}

} // namespace host
