// The look of one material id, neutral of any renderer.
#pragma once

#include "vdt/math/vector.h"
#include "vdt/model/path_mapper.h"

#include <cstdint>
#include <memory>
#include <string>

namespace vdt {

struct MaterialSide {
    Color3f diffuseColor{0.85f, 0.85f, 0.85f};
    std::string diffuseTexture;
    float diffuseRoughness = 0;
    Color3f specularColor;
    std::string specularTexture;
    float specularRoughness = 0.25f;
    std::string normalTexture;
    std::string bumpTexture;
    float bumpStrength = 0;

    friend bool operator==(const MaterialSide&, const MaterialSide&) = default;
};

/// A material has one side, two of one appearance, or two of their own. Copies keep which of these holds: the back
/// of a copy that looks like its front is the copy's own front.
struct MaterialData {
    MaterialData() = default;
    MaterialData(const MaterialData& other);
    MaterialData& operator=(const MaterialData& other);
    MaterialData(MaterialData&& other) noexcept = default;
    MaterialData& operator=(MaterialData&& other) noexcept = default;
    ~MaterialData() = default;

    /// Null: one-sided. The address of `front`: two sides of one appearance. Else the back's own record.
    const MaterialSide* back() const { return ownBack ? ownBack.get() : backIsFront ? &front : nullptr; }

    bool hasSeparateBack() const { return ownBack != nullptr; }
    /// The separate back, or null. With `create`, one of default values is made where there is none.
    MaterialSide* backSide(bool create);
    /// Gives a one-sided material a back that looks like its front.
    void aliasBack();

    /// Maps every relative texture path.
    void mapPaths(const PathMapper& mapper);

    friend bool operator==(const MaterialData& a, const MaterialData& b);

    int32_t matid = 0; // what polylines and polygons refer to
    std::string name;
    std::string alphaTexture;
    std::string displacementTexture;
    double displacementHeight = 1; // model units
    bool displacementCentered = true;
    Color3f subsurfaceColor;
    double subsurfaceDepth = 0; // model units
    std::string subsurfaceTexture;
    MaterialSide front;

private:
    bool backIsFront = false;
    std::unique_ptr<MaterialSide> ownBack;
};

} // namespace vdt
