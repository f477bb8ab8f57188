#include "convert/build_model.h"

#include "vdt/skeleton/frames.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace verdanth {
namespace {

constexpr vdt::Color3f kWoodColor{0.42F, 0.34F, 0.26F};
constexpr vdt::Color3f kLeafColor{0.27F, 0.46F, 0.14F};
constexpr double kThinTip = 0.25; // of the thickest radius: a thicker end is a stump or where a scanner lost sight
constexpr int kLeavesPerTip = 4;  // the first one goes straight on
constexpr double kLeafTilt = 0.9; // of the others from the branch, radians
constexpr double kGoldenAngle = 2.39996322972865332;
constexpr double kLeafPerExtent = 0.01;
constexpr int32_t kLeafGroup = 0;

void addBranches(const PlantDraft& tree, int32_t matid, vdt::Skeleton& skeleton)
{
    for (const vdt::Vector3& position : tree.points) skeleton.AddPoint(position);
    std::vector<uint64_t> points;
    std::vector<vdt::VertexAttributes> attributes;
    for (const DraftBranch& branch : tree.branches) {
        points.clear();
        attributes.clear();
        double barkV = 0; // one bark picture is as long as the branch is round
        for (const DraftVertex& vertex : branch) {
            if (!points.empty()) {
                const double length = vdt::Length(tree.points[vertex.point] - tree.points[points.back()]);
                const double girth = vdt::kPi * (attributes.back().radius + vertex.radius);
                if (girth > 0) barkV += length / girth;
            }
            vdt::VertexAttributes record;
            record.radius = vertex.radius;
            record.tex_v = static_cast<float>(std::min(barkV, double{std::numeric_limits<float>::max()}));
            record.color = vertex.color;
            points.push_back(vertex.point);
            attributes.push_back(record);
        }
        skeleton.AddBranch(matid, points, attributes);
    }
}

// Ends that are thin for the plant. Where all branches are of one radius, nobody has told how thick they are.
double thinLimit(const PlantDraft& tree)
{
    double thickest = 0;
    double thinnest = std::numeric_limits<double>::infinity();
    for (const DraftBranch& branch : tree.branches)
        for (const DraftVertex& vertex : branch) {
            thickest = std::max(thickest, vertex.radius);
            thinnest = std::min(thinnest, vertex.radius);
        }
    return thinnest < thickest ? thickest * kThinTip : thickest;
}

// The frame of a leaf that grows along `direction`, its upper side up.
vdt::Quaternion leafOrient(const vdt::Vector3& direction)
{
    vdt::Vector3 across = vdt::Cross({0, 1, 0}, direction);
    if (vdt::Length(across) < 1e-6) across = {1, 0, 0}; // straight up or down
    vdt::Normalize(across);
    vdt::Matrix frame = vdt::Matrix::Identity();
    frame.setRow(0, across);
    frame.setRow(1, vdt::Cross(direction, across));
    frame.setRow(2, direction);
    return vdt::ToQuaternion(frame);
}

void addLeaves(const PlantDraft& tree, vdt::Skeleton& skeleton)
{
    std::vector<bool> goesOn(tree.points.size());
    for (const DraftBranch& branch : tree.branches) goesOn[branch.front().point] = true;

    const double limit = thinLimit(tree);
    uint64_t tips = 0;
    for (const DraftBranch& branch : tree.branches) {
        const DraftVertex& tip = branch.back();
        if (tip.radius > limit || goesOn[tip.point]) continue;

        const vdt::Vector3 along =
            vdt::Normalized(tree.points[tip.point] - tree.points[branch[branch.size() - 2].point]);
        const vdt::Matrix frame = vdt::FrameFromTangent(along, {0, 0, 0});
        for (int leaf = 0; leaf < kLeavesPerTip; ++leaf) {
            // Neighbouring tips are turned against each other.
            const double turn =
                kGoldenAngle * static_cast<double>(tips % 360) + 2 * vdt::kPi * leaf / (kLeavesPerTip - 1);
            const vdt::Vector3 aside = frame.row(0) * std::cos(turn) + frame.row(1) * std::sin(turn);
            vdt::ConnectorAttributes attributes;
            attributes.group = kLeafGroup;
            attributes.orient =
                leafOrient(leaf == 0 ? along : along * std::cos(kLeafTilt) + aside * std::sin(kLeafTilt));
            skeleton.AddConnector(attributes, tip.point);
        }
        ++tips;
    }
}

// Two halves, folded at the midrib, growing along z with their upper sides towards y.
std::unique_ptr<vdt::Mesh> leafMesh(double length, int32_t matid)
{
    constexpr double kHalfWidth = 0.3, kFold = 0.08, kShoulder = 0.3, kWaist = 0.75; // of the length
    auto mesh = std::make_unique<vdt::Mesh>();
    mesh->SetName("leaf");
    const vdt::Vector3 outline[] = {{0, 0, 0},
                                    {0, 0, 1},
                                    {-kHalfWidth, kFold, kShoulder},
                                    {-kHalfWidth, kFold, kWaist},
                                    {kHalfWidth, kFold, kShoulder},
                                    {kHalfWidth, kFold, kWaist}};
    for (const vdt::Vector3& corner : outline) mesh->AddPoint(corner * length, {0, 0, 0});
    const auto addHalf = [&](std::initializer_list<uint32_t> corners) {
        std::vector<float> coordinates;
        for (const uint32_t corner : corners) {
            coordinates.push_back(static_cast<float>(0.5 + outline[corner].x / (2 * kHalfWidth)));
            coordinates.push_back(static_cast<float>(outline[corner].z));
        }
        mesh->AddPolygonFromLists(corners, coordinates, matid);
    };
    addHalf({0, 2, 3, 1});
    addHalf({0, 1, 5, 4});
    mesh->ComputeNormals();
    return mesh;
}

vdt::MaterialData plainMaterial(int32_t matid, const char* name, const vdt::Color3f& color)
{
    vdt::MaterialData material;
    material.matid = matid;
    material.name = name;
    material.front.diffuseColor = color;
    material.front.diffuseRoughness = 0.5F;
    return material;
}

double leafLength(const PlantDraft& tree, const ModelOptions& options)
{
    if (options.leafSize > 0) return options.leafSize;
    vdt::Box box;
    for (const vdt::Vector3& point : tree.points) box.extend(point);
    const vdt::Vector3 size = box.size();
    return std::max({size.x, size.y, size.z}) * kLeafPerExtent;
}

} // namespace

vdt::Model BuildModel(const PlantDraft& tree, const ModelOptions& options, vdt::MessageHandler& messages)
{
    vdt::Model model;
    model.name = options.name;
    model.info.creator = "verdanth convert";
    model.info.source = options.source;
    model.materials.push_back(plainMaterial(options.woodMatid, "wood", kWoodColor));
    model.woodColors[""] = {kWoodColor.r, kWoodColor.g, kWoodColor.b, 1};
    model.foliageColors[""] = {kLeafColor.r, kLeafColor.g, kLeafColor.b, 1};

    vdt::ModelVariant& variant = model.variants.emplace_back();
    variant.name = "adult";
    addBranches(tree, options.woodMatid, variant.skeleton);
    if (options.leaves) addLeaves(tree, variant.skeleton);
    if (!variant.skeleton.connectors.empty()) {
        vdt::MaterialData leaf = plainMaterial(options.leafMatid, "leaf", kLeafColor);
        leaf.aliasBack();
        model.materials.push_back(std::move(leaf));
        variant.meshes.emplace_back(kLeafGroup, "", leafMesh(leafLength(tree, options), options.leafMatid));
    } else if (options.leaves) {
        messages.message("no branch ends thin enough for leaves");
    }

    if (tree.weights.empty())
        variant.skeleton.ComputeWeights();
    else
        for (size_t i = 0; i < tree.weights.size(); ++i) variant.skeleton.points[i].weight = tree.weights[i];
    variant.skeleton.ComputeOrientations();
    variant.bound = variant.computeBound();
    return model;
}

} // namespace verdanth
