// From neutral materials to the host materials of a renderer.
#pragma once

#include "materials/material_entry.h"
#include "support/colour_space.h"
#include "vdt/model/material_data.h"

/// Renderers by number, as settings store them. `Automatic` has to be replaced by what `detectRenderer` finds.
enum class Renderer : Int32 {
    Automatic = 0,
    Standard = 1,
    Vray = 2,
    Mia = 3,
    Corona = 4,
    Thea = 5,
    Arnold = 6,
    Octane = 7,
    Maxwell = 8,
    Iray = 9
};

/// Appends what `material` becomes: one entry, or two of one id where front and back are materials of their own.
/// False, with nothing appended and nothing left over, if `renderer` is none or the host cannot make a material.
/// `quality` is 0 low, 1 medium, 2 high; `colorProfile` says what the document's colours are; `reserved` is 0.
Bool convertMaterial(const vdt::MaterialData& material, ColourSpace colorProfile, Int32 renderer, Int32 quality,
                     Int32 reserved, MaterialEntries& result, BaseDocument* document);

/// The same for each material in order. False, with `result` empty and all freed, if one fails.
Bool convertMaterials(const std::vector<vdt::MaterialData>& materials, MaterialEntries& result,
                      ColourSpace colorProfile, Int32 renderer, Int32 quality, Int32 reserved, BaseDocument* document);
