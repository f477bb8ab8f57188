// The pictures of a glTF file: inside a .glb, beside a .gltf.
#pragma once

#include "export/picture.h"
#include "export/texture_files.h"
#include "vdt/messages/message_handler.h"

#include <nlohmann/json.hpp>

namespace verdanth {

/// One picture of the file: either bytes to store, or a place to refer to.
struct GltfImage {
    std::string name;
    std::string mimeType;
    std::string uri;
    std::vector<uint8_t> bytes;
};

/// The base colour texture of a material.
struct GltfBaseTexture {
    std::optional<size_t> image;
    bool cutOut = false;   // its alpha tells where the surface is
    bool hasColor = false; // it brings the colour too
};

class GltfImages {
public:
    /// With `files` pictures are placed outside; without they are kept as bytes.
    GltfImages(TextureFiles* files, vdt::MessageHandler& handler) : textureFiles(files), messages(&handler) {}

    /// A picture file as it is; none, with a warning, if glTF cannot hold it.
    std::optional<size_t> add(const std::string& path);

    /// Colour of one of the material's sides and cut-out in one picture, as glTF wants them.
    GltfBaseTexture addBaseTexture(const SceneSide& side, const SceneMaterial& material);

    /// The side's normals; without such a picture those of its heights.
    std::optional<size_t> addNormals(const SceneSide& side);

    std::vector<GltfImage> images;

private:
    std::optional<size_t> addCombined(const SceneSide& side, const SceneMaterial& material);
    std::optional<size_t> addRelief(const SceneSide& side);
    std::optional<size_t> keepNew(std::string name, const Picture& picture);
    size_t keep(GltfImage image);

    TextureFiles* textureFiles;
    vdt::MessageHandler* messages;
    std::map<std::string, std::optional<size_t>> known; // by path, or by what a new one is made of
};

} // namespace verdanth
