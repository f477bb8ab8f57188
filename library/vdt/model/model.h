// What one model file says: one plant with its names, colours, materials and variants. Plain records without locks:
// the reader fills them before anybody else sees them.
#pragma once

#include "vdt/model/material_data.h"
#include "vdt/model/model_variant.h"

namespace vdt {

/// Colours by season.
using SeasonColors = std::map<std::string, Color4f, std::less<>>;

constexpr int32_t kMillimeters = 0;
constexpr int32_t kCentimeters = 1;
constexpr int32_t kMeters = 2;

struct Model {
    FileInfo info;
    int32_t unit = kCentimeters;
    std::string name; // botanical
    LocalizedTexts labels;
    LocalizedTexts descriptions;
    SeasonColors woodColors;
    SeasonColors foliageColors;
    std::vector<ModelVariant> variants; // in file order
    uint64_t defaultVariant = 0;
    std::vector<MaterialData> materials; // in file order

    /// Maps every relative path of materials and variants.
    void mapPaths(const PathMapper& mapper);
};

} // namespace vdt
