#include "export/gltf_images.h"

#include "export/picture.h"
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

GltfBaseTexture GltfImages::addBaseTexture(const SceneMaterial& material)
{
    if (!material.alphaTexture.empty() && material.alphaTexture != material.colorTexture) {
        const std::string key = material.colorTexture + '\n' + material.alphaTexture;
        const auto [entry, isNew] = known.emplace(key, std::nullopt);
        if (isNew) entry->second = addCombined(material);
        if (entry->second) return {entry->second, true, !material.colorTexture.empty()};
    }
    const std::optional<size_t> image = add(material.colorTexture);
    return {image, image && material.alphaTexture == material.colorTexture, image.has_value()};
}

std::optional<size_t> GltfImages::addCombined(const SceneMaterial& material)
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
    if (!material.colorTexture.empty()) color = ReadPng(material.colorTexture, problem);
    if (!color) return failed(material.colorTexture, problem);

    const std::string& namedLike = material.colorTexture.empty() ? material.alphaTexture : material.colorTexture;
    GltfImage image{std::filesystem::path(namedLike).stem().string() + "_cutout", "image/png", {}, {}};
    image.bytes = EncodePng(WithAlphaOf(*color, *mask));
    if (image.bytes.empty()) return failed(namedLike, "cannot be written as PNG");
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
