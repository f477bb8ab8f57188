// The materials of a glTF file: metallic-roughness as every reader knows it, and extensions for what that cannot say.
#pragma once

#include "export/export_scene.h"
#include "export/gltf_images.h"

#include <set>
#include <span>

namespace verdanth {

class GltfMaterials {
public:
    /// `source` and the pictures, to which materials add theirs, must outlive this.
    GltfMaterials(std::span<const SceneMaterial> source, BackForm backForm, GltfImages& pictures);

    /// The number of the material for a surface of its own on the back, where there is one.
    std::optional<size_t> backOf(size_t material) const { return backs[material]; }

    /// All materials: those of the scene, then those of backs.
    nlohmann::ordered_json describe();

    /// What `describe` has used.
    const std::set<std::string>& extensions() const { return used; }

private:
    using Json = nlohmann::ordered_json;

    Json described(size_t index, const SceneSide& side, const std::string& suffix);
    Json describedSurface(const SceneSide& side, const GltfBaseTexture& base) const;
    Json describedHighlights(const SceneSide& side);
    Json describedTransmission(const SceneMaterial& material, std::optional<size_t> image);
    void extend(Json& material, const char* extension, Json content);

    std::span<const SceneMaterial> materials;
    std::vector<std::optional<size_t>> backs;
    GltfImages* images;
    std::set<std::string> used;
};

} // namespace verdanth
