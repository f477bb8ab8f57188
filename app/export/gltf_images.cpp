#include "export/gltf_images.h"

#include "export/line_buffer.h"
#include "export/relief.h"
#include "files/input_file.h"

#include <filesystem>

namespace verdanth {

std::optional<size_t> GltfImages::add(const std::string& path)
{
    if (path.empty()) return std::nullopt;
    if (const auto found = known.find(path); found != known.end()) return found->second;

    std::string problem;
    const std::optional<PictureKind> kind = ProbePicture(path, problem);
    if (kind == PictureKind::Other) problem = "is neither PNG nor JPEG, and glTF knows no others";

    GltfImage image{
        std::filesystem::path(path).stem().string(), kind == PictureKind::Png ? "image/png" : "image/jpeg", {}, {}};
    if (problem.empty() && textureFiles) image.uri = UriOf(textureFiles->place(path, problem));
    if (problem.empty() && !textureFiles) image.bytes = ReadWholeFile(path, problem).value_or(std::vector<uint8_t>());
    if (problem.empty()) return known[path] = keep(std::move(image));

    messages->warning("texture " + path + " " + problem + "; it is left out");
    return known[path] = std::nullopt;
}

GltfBaseTexture GltfImages::addBaseTexture(const SceneSide& side, const SceneMaterial& material)
{
    if (!material.alphaTexture.empty() && material.alphaTexture != side.colorTexture) {
        const std::string key = side.colorTexture + '\n' + material.alphaTexture;
        const auto [entry, isNew] = known.emplace(key, std::nullopt);
        if (isNew) entry->second = addCombined(side, material);
        if (entry->second) return {entry->second, true, !side.colorTexture.empty()};
    }
    const std::optional<size_t> image = add(side.colorTexture);
    return {image, image && material.alphaTexture == side.colorTexture, image.has_value()};
}

std::optional<size_t> GltfImages::addCombined(const SceneSide& side, const SceneMaterial& material)
{
    const auto failed = [&](const std::string& texture, const std::string& problem) {
        messages->warning("texture " + texture + " " + problem + "; material \"" + material.name +
                          "\" stays without its cut-out, which glTF wants in the colour picture");
        return std::nullopt;
    };
    std::string problem;
    const std::optional<Picture> mask = ReadPng(material.alphaTexture, problem);
    if (!mask) return failed(material.alphaTexture, problem);

    std::optional<Picture> color = Picture{1, 1, {255, 255, 255, 255}};
    if (!side.colorTexture.empty()) color = ReadPng(side.colorTexture, problem);
    if (!color) return failed(side.colorTexture, problem);

    const std::string& namedLike = side.colorTexture.empty() ? material.alphaTexture : side.colorTexture;
    const auto image =
        keepNew(std::filesystem::path(namedLike).stem().string() + "_cutout", WithAlphaOf(*color, *mask));
    if (!image) return failed(namedLike, "cannot be written as PNG");
    return image;
}

std::optional<size_t> GltfImages::addNormals(const SceneSide& side)
{
    if (!side.normalTexture.empty()) return add(side.normalTexture);
    if (side.bumpTexture.empty()) return std::nullopt;
    LineBuffer key;
    key.add('\n').add(side.bumpStrength);
    const auto [entry, isNew] = known.emplace(side.bumpTexture + std::string(key.text()), std::nullopt);
    if (isNew) entry->second = addRelief(side);
    return entry->second;
}

std::optional<size_t> GltfImages::addRelief(const SceneSide& side)
{
    std::string problem;
    std::optional<size_t> image;
    if (const std::optional<Picture> heights = ReadPng(side.bumpTexture, problem)) {
        problem = "gives no picture of normals";
        image = keepNew(std::filesystem::path(side.bumpTexture).stem().string() + "_relief",
                        NormalsOfHeights(*heights, side.bumpStrength));
    }
    if (!image) messages->warning("texture " + side.bumpTexture + " " + problem + "; its relief is left out");
    return image;
}

// None if the picture cannot be written as PNG.
std::optional<size_t> GltfImages::keepNew(std::string name, const Picture& picture)
{
    GltfImage image{std::move(name), "image/png", {}, EncodePng(picture)};
    if (image.bytes.empty()) return std::nullopt;
    if (textureFiles) {
        image.uri = UriOf(textureFiles->placeNew(image.name + ".png", image.bytes));
        image.bytes.clear();
    }
    return keep(std::move(image));
}

size_t GltfImages::keep(GltfImage image)
{
    images.push_back(std::move(image));
    return images.size() - 1;
}

} // namespace verdanth
