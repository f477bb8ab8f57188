// The choice of a picture's layers or channels, as a value.
#pragma once

#include "c4d_customdatatype.h"

#include <vector>

#define CUSTOMGUI_LAYERSET 200000043
#define CUSTOMDATATYPE_LAYERSET 200000044

enum LAYERSETMODE {
    LAYERSETMODE_LAYERS = 0,
    LAYERSETMODE_LAYERMASKS = 1,
    LAYERSETMODE_ALPHAS = 2, // alpha channels by name
    LAYERSETMODE_LAYERALPHA = 3,
    LAYERSETMODE_DISABLED = 4
} ENUM_END_LIST(LAYERSETMODE);

class LayerSet : public CustomDataType {
public:
    static LayerSet* Alloc(); // layers, none chosen
    static void Free(LayerSet*& data);

    /// True if a layer is chosen.
    Bool Content() const { return !layers.empty(); }
    Bool IsLayerEnabled(const String& name) const;
    /// The names of what is chosen, with commas between them.
    String GetName() const;
    LAYERSETMODE GetMode() const { return mode; }
    void SetMode(LAYERSETMODE kind) { mode = kind; }
    /// A layer that is chosen already stays where it is.
    void AddLayer(const String& name);
    void RemoveLayer(const String& name);
    void FlushLayers() { layers.clear(); }

    friend Bool operator==(const LayerSet& a, const LayerSet& b) { return a.mode == b.mode && a.layers == b.layers; }
    friend Bool operator!=(const LayerSet& a, const LayerSet& b) { return !(a == b); }

private:
    friend class LayerSetType;
    LayerSet() = default;
    ~LayerSet() = default;

    LAYERSETMODE mode = LAYERSETMODE_LAYERS;
    std::vector<String> layers; // in the order of choosing
};
