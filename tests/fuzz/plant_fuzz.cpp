// Any tree of branches with any numbers on it, through all that makes something lighter of a plant.
#include "fuzz/complaints.h"
#include "fuzz/entries.h"
#include "vdt/generate/coarse_mesh.h"
#include "vdt/generate/draw_helper.h"
#include "vdt/generate/plant_mesh.h"
#include "vdt/generate/point_cloud.h"

#include <limits>

namespace vdt::test {
namespace {

// Takes the input apart. At its end everything is 0.
class Bytes {
public:
    explicit Bytes(std::string_view input) : rest(input) {}

    bool atEnd() const { return rest.empty(); }
    uint8_t byte()
    {
        if (rest.empty()) return 0;
        const auto value = static_cast<uint8_t>(rest.front());
        rest.remove_prefix(1);
        return value;
    }
    uint64_t below(uint64_t count) { return count ? byte() % count : 0; }
    // Mostly small numbers with many equal ones among them, now and then one that is none, or far too large.
    double number()
    {
        constexpr double kOdd[] = {std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::max(),
                                   1e-300,
                                   -1e30,
                                   1e-12};
        const uint8_t value = byte();
        return value < std::size(kOdd) ? kOdd[value] : (value - 128) / 8.0;
    }
    Vector3 vector()
    {
        const double x = number(), y = number();
        return {x, y, number()};
    }

private:
    std::string_view rest;
};

std::unique_ptr<Mesh> leafFrom(Bytes& bytes)
{
    auto leaf = std::make_unique<Mesh>();
    const uint64_t points = bytes.below(6);
    for (uint64_t i = 0; i < points; ++i) leaf->AddPoint(bytes.vector(), {0, 0, 0});
    leaf->AddUV(0.5F, 0.5F);
    const uint64_t coordinates[4] = {};
    for (uint64_t polygons = bytes.below(4); points > 0 && polygons > 0; --polygons) {
        const uint64_t corners[] = {bytes.below(points), bytes.below(points), bytes.below(points), bytes.below(points)};
        const uint64_t count = 3 + bytes.below(2);
        leaf->AddPolygon({corners, count}, {coordinates, count}, static_cast<int32_t>(bytes.below(3)) - 1);
    }
    return leaf;
}

ModelVariant plantFrom(Bytes& bytes)
{
    ModelVariant plant;
    for (uint64_t meshes = bytes.below(3); meshes > 0; --meshes)
        plant.meshes.push_back({static_cast<int32_t>(bytes.below(2)), "", bytes.below(8) ? leafFrom(bytes) : nullptr});

    Skeleton& skeleton = plant.skeleton;
    while (!bytes.atEnd()) {
        if (bytes.below(3) == 0) {
            ConnectorAttributes attributes;
            attributes.scale = bytes.number();
            attributes.group = static_cast<int32_t>(bytes.below(2));
            skeleton.AddConnector(attributes, bytes.below(skeleton.points.size()));
            continue;
        }
        std::vector<uint64_t> points;
        std::vector<VertexAttributes> attributes;
        if (!skeleton.points.empty() && bytes.below(16)) points.push_back(bytes.below(skeleton.points.size()));
        for (uint64_t more = 1 + bytes.below(5); more > 0; --more) points.push_back(skeleton.AddPoint(bytes.vector()));
        for (size_t i = 0; i < points.size(); ++i) attributes.push_back({.radius = bytes.number()});
        skeleton.AddBranch(static_cast<int32_t>(bytes.below(3)), points, attributes);
    }
    return plant;
}

ReductionParameters reductionFrom(Bytes& bytes)
{
    const auto share = [&] { return static_cast<float>(bytes.below(4) ? 1 : bytes.number()); };
    return {.maxLevel = bytes.below(2) ? ReductionParameters::kAllLevels : bytes.byte() % 4U,
            .minRadius = static_cast<float>(bytes.number()),
            .foliageAmount = share(),
            .foliageThinning = share()};
}

class CheckedDrawing final : public DrawHelper {
public:
    bool BeginPoints(uint64_t count, double) override
    {
        pointsLeft = count;
        return true;
    }
    bool AddDrawPoint(const Vector3&, const Color3f&) override
    {
        if (pointsLeft-- == 0) complaint = "more points are drawn than were announced";
        return true;
    }
    bool AddPolyline(std::span<const Vector3> positions, std::span<const Color3f> colours,
                     std::span<const double> radii) override
    {
        if (positions.size() != colours.size() || positions.size() != radii.size())
            complaint = "the lists of a polyline differ in length";
        return true;
    }

    uint64_t pointsLeft = 0;
    std::string complaint;
};

} // namespace

std::string FuzzPlant(std::string_view input)
{
    Bytes bytes(input.substr(0, 4096));
    const ReductionParameters reduction = reductionFrom(bytes);
    const BlobOptions blob{bytes.number(), bytes.number()};
    const ModelVariant plant = plantFrom(bytes);
    NullMessageHandler messages;

    Skeleton reduced;
    plant.skeleton.Reduce(plant.meshes, "", reduced, reduction);
    if (reduced.connectors.size() > plant.skeleton.connectors.size()) return "reduction has made connectors";
    Mesh whole, hull, skin;
    BuildPlantMesh(plant, {.subdivisionLevel = 1, .reduction = reduction}, whole, messages);
    BuildHullMesh(plant, "", hull, messages);
    BuildBlobMesh(plant, "", blob, skin, messages);
    for (const Mesh* mesh : {&whole, &hull, &skin})
        if (const std::string complaint = MeshComplaint(*mesh); !complaint.empty()) return complaint;

    constexpr uint64_t kSamples = 50;
    Array<CloudSample> samples;
    SamplePoints(plant, "", kSamples, samples, true, nullptr);
    if (!samples.empty() && samples.size() != kSamples) return "a cloud has another number of points than asked for";
    CheckedDrawing drawing;
    FillDrawHelper(drawing, plant, {.colours = {}, .shaded = true, .maxSegments = 20, .maxPoints = 20});
    return drawing.complaint;
}

} // namespace vdt::test
