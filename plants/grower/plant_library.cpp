#include "grower/plant_library.h"

#include "grower/plant.h"
#include "vdt/file/vdt_writer.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace grower {
namespace {

constexpr const char* kCreator = "Verdanth grower";

bool writeBytes(const std::string& path, const std::vector<uint8_t>& bytes, vdt::MessageHandler& messages)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file && !bytes.empty()) return true;
    messages.error("Cannot write " + path);
    return false;
}

// "leaf_a.png" beside "leaf.png": for renderers that want the cut-out as a picture of its own.
std::string maskOf(const std::string& texture)
{
    std::string name = texture;
    return name.insert(name.rfind('.'), "_a");
}

// Draws and writes the pictures, and beside each one that cuts out its material a mask. `colors` gets the mean colours.
bool writeTextures(const SpeciesRecipe& recipe, const std::string& directory,
                   std::map<std::string, vdt::Color3f>& colors, vdt::MessageHandler& messages)
{
    for (const TextureRecipe& texture : recipe.textures) {
        const Image image = texture.draw();
        colors[texture.file] = MeanColor(image);
        if (!writeBytes(directory + texture.file, EncodePng(image), messages)) return false;
        const bool isCutOut = std::ranges::any_of(recipe.materials, [&](const MaterialRecipe& material) {
            return material.cutOut && material.front.texture == texture.file;
        });
        if (image.hasAlpha && isCutOut && !writeBytes(directory + maskOf(texture.file), EncodeMask(image), messages))
            return false;
    }
    return true;
}

void fillSide(vdt::MaterialSide& side, const SideRecipe& recipe, const std::string& textures, const vdt::Color3f& color)
{
    side.diffuseColor = color;
    if (!recipe.texture.empty()) side.diffuseTexture = textures + recipe.texture;
    if (!recipe.normal.empty()) side.normalTexture = textures + recipe.normal;
    side.diffuseRoughness = recipe.diffuseRoughness;
    side.specularColor = recipe.specular;
    side.specularRoughness = recipe.specularRoughness;
}

vdt::MaterialData makeMaterial(const MaterialRecipe& recipe, const std::string& textures,
                               const std::map<std::string, vdt::Color3f>& colors)
{
    vdt::MaterialData material;
    material.matid = recipe.id;
    material.name = recipe.name;
    fillSide(material.front, recipe.front, textures, colors.at(recipe.front.texture));
    if (recipe.back) fillSide(*material.backSide(true), *recipe.back, textures, colors.at(recipe.back->texture));
    if (recipe.cutOut) material.alphaTexture = material.front.diffuseTexture;
    if (recipe.translucency > 0) {
        material.subsurfaceColor = Scaled(material.front.diffuseColor, recipe.translucency);
        material.subsurfaceDepth = recipe.depth;
        material.subsurfaceTexture = material.front.diffuseTexture;
    }
    return material;
}

// Pictures of what stood there before show another plant.
void removePreviews(const SpeciesRecipe& recipe, const std::string& base)
{
    std::error_code isMissing;
    const std::string name = FolderOf(recipe);
    std::filesystem::remove(base + name + ".png", isMissing);
    for (const AgeRecipe& age : recipe.ages)
        std::filesystem::remove(base + "models/" + name + "_" + age.name + ".png", isMissing);
}

} // namespace

std::string FolderOf(const SpeciesRecipe& recipe)
{
    std::string folder = recipe.name;
    std::replace(folder.begin(), folder.end(), ' ', '_');
    return folder;
}

bool WriteSpecies(const SpeciesRecipe& recipe, const std::string& directory, vdt::MessageHandler& messages)
{
    const std::string folder = FolderOf(recipe);
    const std::string base = directory + "/" + folder + "/";
    std::error_code failure;
    std::filesystem::create_directories(base + "models", failure);
    std::filesystem::create_directories(base + "textures", failure);

    removePreviews(recipe, base);

    std::map<std::string, vdt::Color3f> colors;
    if (!writeTextures(recipe, base + "textures/", colors, messages)) return false;

    vdt::Model plant;
    plant.info.creator = kCreator;
    plant.unit = vdt::kCentimeters;
    plant.name = recipe.name;
    plant.labels = recipe.labels;
    plant.descriptions = recipe.descriptions;
    plant.woodColors = recipe.wood;
    plant.foliageColors = recipe.foliage;
    for (const MaterialRecipe& material : recipe.materials)
        plant.materials.push_back(makeMaterial(material, base + "textures/", colors));

    for (const AgeRecipe& age : recipe.ages) {
        vdt::Model part;
        part.info.creator = kCreator;
        part.variants.push_back(GrowVariant(recipe, age));
        part.variants[0].info = part.info;
        const std::string path = base + "models/" + folder + "_" + age.name + ".vdt.gz";

        // The main file holds what can be known of the age without its geometry.
        vdt::ModelVariant stub;
        stub.extref = path;
        stub.name = age.name;
        stub.bound = part.variants[0].bound;
        stub.labels = part.variants[0].labels;
        stub.qualifiers = part.variants[0].qualifiers;
        stub.defaultQualifier = part.variants[0].defaultQualifier;
        stub.proxies = std::move(part.variants[0].proxies);
        part.variants[0].proxies.clear();
        plant.variants.push_back(std::move(stub));

        if (!vdt::VdtWriter(part, messages, {.withoutPlant = true, .baseDirectory = {}}).writeFile(path)) return false;
    }
    plant.defaultVariant = plant.variants.size() - 1;
    return vdt::VdtWriter(plant, messages).writeFile(base + folder + ".vdt.gz");
}

} // namespace grower
