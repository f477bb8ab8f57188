#include "inspect/plant_facts.h"

#include "console/as_written.h"
#include "console/console.h"
#include "inspect/counting_output.h"
#include "vdt/generate/foliage.h"
#include "vdt/generate/plant_mesh.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <system_error>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

Json describeInfo(const vdt::FileInfo& info)
{
    return {{"creator", info.creator}, {"user", info.user}, {"timestamp", info.timestamp}, {"source", info.source}};
}

Json describeTexts(const vdt::LocalizedTexts& texts)
{
    Json object = Json::object();
    for (const auto& [language, text] : texts) object[language] = text;
    return object;
}

Json describeColors(const vdt::SeasonColors& colors)
{
    Json object = Json::object();
    for (const auto& [season, color] : colors)
        object[season] = {AsWritten(color.r), AsWritten(color.g), AsWritten(color.b), AsWritten(color.a)};
    return object;
}

Json describeColor(const vdt::Color3f& color)
{
    return {AsWritten(color.r), AsWritten(color.g), AsWritten(color.b)};
}

Json describeSide(const vdt::MaterialSide& side)
{
    return {{"diffuseColor", describeColor(side.diffuseColor)},
            {"diffuseTexture", side.diffuseTexture},
            {"diffuseRoughness", AsWritten(side.diffuseRoughness)},
            {"specularColor", describeColor(side.specularColor)},
            {"specularTexture", side.specularTexture},
            {"specularRoughness", AsWritten(side.specularRoughness)},
            {"normalTexture", side.normalTexture},
            {"bumpTexture", side.bumpTexture},
            {"bumpStrength", AsWritten(side.bumpStrength)}};
}

Json describeMaterial(const vdt::MaterialData& material)
{
    Json object = {{"matid", material.matid},
                   {"name", material.name},
                   {"sides", material.back() ? 2 : 1},
                   {"front", describeSide(material.front)}};
    if (material.hasSeparateBack()) object["back"] = describeSide(*material.back());
    object["alphaTexture"] = material.alphaTexture;
    object["displacement"] = {{"texture", material.displacementTexture},
                              {"height", material.displacementHeight},
                              {"centered", material.displacementCentered}};
    object["subsurface"] = {{"color", describeColor(material.subsurfaceColor)},
                            {"texture", material.subsurfaceTexture},
                            {"depth", material.subsurfaceDepth}};
    return object;
}

Json describeVector(const vdt::Vector3& v)
{
    return {v.x, v.y, v.z};
}

Json describeBox(const vdt::Box& box)
{
    if (box.isEmpty()) return nullptr;
    return {{"min", describeVector(box.min)}, {"max", describeVector(box.max)}};
}

// Of the box, along the axis that points up; null for an empty box.
Json describeHeight(const vdt::Box& box, double metersPerUnit)
{
    if (box.isEmpty()) return nullptr;
    return box.size().y * metersPerUnit;
}

Json describeQualifiers(const vdt::ModelVariant& variant)
{
    Json list = Json::array();
    for (size_t i = 0; i < variant.qualifiers.size(); ++i) {
        const vdt::Qualifier& qualifier = variant.qualifiers[i];
        list.push_back({{"id", qualifier.id},
                        {"name", qualifier.name},
                        {"labels", describeTexts(qualifier.labels)},
                        {"default", i == variant.defaultQualifier}});
    }
    return list;
}

Json describeProxies(const vdt::ModelVariant& variant)
{
    Json list = Json::array();
    for (const vdt::ProxyMesh& proxy : variant.proxies)
        list.push_back({{"qualifier", proxy.qualifier},
                        {"points", proxy.mesh.PointCount()},
                        {"polygons", proxy.mesh.PolygonCount()}});
    return list;
}

Json describeFoliage(const vdt::ModelVariant& variant)
{
    std::map<int32_t, uint64_t> connectorsOfGroup;
    for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
        ++connectorsOfGroup[connector.attributes.group];

    Json list = Json::array();
    for (const vdt::VariantMesh& record : variant.meshes) {
        list.push_back({{"group", record.group},
                        {"qualifier", record.qualifier},
                        {"name", record.mesh ? record.mesh->GetName() : std::string()},
                        {"points", record.mesh ? record.mesh->PointCount() : 0},
                        {"polygons", record.mesh ? record.mesh->PolygonCount() : 0},
                        {"connectors", connectorsOfGroup[record.group]}});
    }
    return list;
}

Json describeContent(const vdt::ModelVariant& variant)
{
    const vdt::Skeleton& skeleton = variant.skeleton;
    uint64_t vertices = 0;
    for (const vdt::SkeletonBranch& branch : skeleton.branches) vertices += branch.vertexCount;
    uint64_t polygons = 0;
    for (const vdt::VariantMesh& record : variant.meshes) polygons += record.mesh ? record.mesh->PolygonCount() : 0;
    return {
        {"points", skeleton.points.size()},         {"branches", skeleton.branches.size()}, {"vertices", vertices},
        {"connectors", skeleton.connectors.size()}, {"meshes", variant.meshes.size()},      {"meshPolygons", polygons}};
}

Json describeCounts(const CountingOutput& counted)
{
    return {{"points", counted.points}, {"polygons", counted.polygons}, {"bytes", counted.bytes()}};
}

// Builds the plant part by part and keeps none of it. Foliage is what its copies sum up to.
Json describeCost(const vdt::ModelVariant& variant, double metersPerUnit, vdt::MessageHandler& messages)
{
    const std::string season = DefaultSeason(variant);
    CountingOutput branches(messages);
    CountingOutput foliage(messages);
    constexpr int32_t kSubdivision = vdt::PlantMeshOptions().subdivisionLevel;
    vdt::BuildBranchMesh(variant.skeleton, variant.meshes, kSubdivision, false, branches, messages);
    if (!messages.isCancelled()) vdt::PlaceFoliage(variant.skeleton, variant.meshes, season, foliage);
    vdt::Box bound = branches.bound;
    bound.extend(foliage.bound);
    return {{"season", season},
            {"subdivision", kSubdivision},
            {"bound", describeBox(bound)},
            {"heightMeters", describeHeight(bound, metersPerUnit)},
            {"branches", describeCounts(branches)},
            {"foliage", describeCounts(foliage)},
            {"points", branches.points + foliage.points},
            {"polygons", branches.polygons + foliage.polygons},
            {"bytes", branches.bytes() + foliage.bytes()}};
}

Json describeVariant(OpenPlant& plant, uint64_t index, Console& console)
{
    const vdt::Model& model = plant.model();
    const vdt::ModelVariant& stored = model.variants[index];
    const double meters = MetersPerUnit(model.unit);
    Json object = {{"index", index},
                   {"name", stored.name},
                   {"labels", describeTexts(stored.labels)},
                   {"default", index == FindVariant(model, "", console)},
                   {"extref", stored.extref},
                   {"storedBound", describeBox(stored.bound)},
                   {"proxies", describeProxies(stored)}};

    const vdt::ModelHandle handle = plant.cache.acquire(plant.file, console, index);
    const vdt::ModelVariant* variant = handle.variantData(console, true);
    object["loaded"] = variant != nullptr;
    if (!variant && !console.isCancelled())
        console.warning("variant \"" + VariantTitle(model, index) + "\" cannot be loaded from " + stored.extref);
    const vdt::ModelVariant& shown = variant ? *variant : stored;

    object["info"] = describeInfo(shown.info); // a stub knows it only once it is loaded
    object["qualifiers"] = describeQualifiers(shown);
    const vdt::Box bound = shown.computeBound();
    object["bound"] = describeBox(bound);
    object["heightMeters"] = describeHeight(bound, meters);
    if (!variant || console.isCancelled()) return object;

    object["holds"] = describeContent(*variant);
    object["foliage"] = describeFoliage(*variant);
    object["built"] = describeCost(*variant, meters, console);
    return object;
}

} // namespace

nlohmann::ordered_json DescribePlant(OpenPlant& plant, uint64_t onlyVariant, Console& console)
{
    const vdt::Model& model = plant.model();
    std::error_code ignored;
    const auto fileSize = std::filesystem::file_size(plant.file, ignored);

    Json facts = {{"file", plant.file},
                  {"fileBytes", ignored ? 0 : fileSize},
                  {"info", describeInfo(model.info)},
                  {"name", model.name},
                  {"unit", UnitName(model.unit)},
                  {"labels", describeTexts(model.labels)},
                  {"descriptions", describeTexts(model.descriptions)},
                  {"woodColors", describeColors(model.woodColors)},
                  {"foliageColors", describeColors(model.foliageColors)},
                  {"materials", Json::array()},
                  {"variants", Json::array()}};
    for (const vdt::MaterialData& material : model.materials) facts["materials"].push_back(describeMaterial(material));
    for (uint64_t i = 0; i < model.variants.size() && !console.isCancelled(); ++i)
        if (onlyVariant == vdt::kNone || onlyVariant == i)
            facts["variants"].push_back(describeVariant(plant, i, console));
    return facts;
}

} // namespace verdanth
