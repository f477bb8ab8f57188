#include "export/coarse_level.h"

#include "export/mean_color.h"
#include "export/scene_mesh_builder.h"
#include "lookup/open_plant.h"
#include "vdt/generate/coarse_mesh.h"
#include "vdt/generate/field_function.h"
#include "vdt/generate/point_cloud.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace verdanth {
namespace {

// Corners by bits: 1 for the maximum in x, 2 in y, 4 in z. Counter-clockwise seen from outside.
constexpr int kBoxFaces[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};

double fieldAt(const vdt::Vector3& position, const std::vector<vdt::Vector3>& points, const vdt::FieldFunction& field)
{
    double sum = 0;
    for (const vdt::Vector3& point : points) sum += field.Value(position, point);
    return sum;
}

// Balls so large that they run into each other all over the crown, and a skin a little outside the connectors.
vdt::BlobOptions blobOptionsFor(const vdt::Skeleton& skeleton)
{
    constexpr double kFirstReach = 0.08; // of the crown's diagonal
    constexpr double kGrowth = 1.25;
    constexpr double kEnough = 6;  // the sum at the median connector
    constexpr double kSkin = 0.35; // of that
    constexpr size_t kProbes = 200;

    const std::vector<vdt::Vector3> points = vdt::ConnectorPositions(skeleton);
    vdt::Box crown;
    skeleton.GetBounds(crown, vdt::BoundsMode::ConnectorPoints);
    const double diagonal = crown.isEmpty() ? 0 : crown.diagonal();
    vdt::BlobOptions options{kFirstReach * diagonal, 1};
    for (; options.radius < diagonal; options.radius *= kGrowth) {
        const vdt::WyvillFieldFunction field(options.radius);
        std::vector<double> sums;
        const size_t step = std::max<size_t>(points.size() / kProbes, 1);
        for (size_t i = 0; i < points.size(); i += step) {
            const double sum = fieldAt(points[i], points, field);
            if (std::isfinite(sum)) sums.push_back(sum);
        }
        if (sums.empty()) break;
        const auto median = sums.begin() + static_cast<std::ptrdiff_t>(sums.size() / 2);
        std::nth_element(sums.begin(), median, sums.end());
        options.threshold = std::max(kSkin * *median, 1.0); // below 1 inside and outside change places
        if (*median >= kEnough) break;
    }
    return options;
}

SceneCloud cloudOf(const SceneRequest& request, SceneMaterials& materials)
{
    const double meters = MetersPerUnit(request.model.unit);
    vdt::Array<vdt::CloudSample> samples;
    double areaPerSample = 0;
    vdt::SamplePoints(request.variant, request.season, request.cloudPoints, samples, true, &areaPerSample);

    std::map<int32_t, vdt::Color3f> colors;
    const auto colorOf = [&](int32_t matid) {
        const auto found = colors.find(matid);
        if (found != colors.end()) return found->second;
        return colors[matid] = MeanColor(materials[materials.indexOf(matid)]);
    };

    SceneCloud cloud;
    cloud.areaPerPoint = areaPerSample * meters * meters;
    for (const vdt::CloudSample& sample : samples) {
        vdt::Vector3 normal = sample.normal;
        if (!vdt::IsFinite(sample.position) || !vdt::IsFinite(normal)) continue;
        if (!vdt::Normalize(normal)) normal = {0, 1, 0};
        cloud.positions.push_back(Narrowed(sample.position * meters));
        cloud.normals.push_back(Narrowed(normal));
        cloud.colors.push_back(colorOf(sample.material));
    }
    return cloud;
}

} // namespace

void WriteBox(const vdt::Box& box, vdt::MeshOutputAccessor& output)
{
    if (box.isEmpty()) return;
    constexpr float kCorners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const auto& face : kBoxFaces) {
        uint64_t points[4], coordinates[4]; // of its own, so that edges stay sharp
        for (int i = 0; i < 4; ++i) {
            points[i] = output.AddPoint({face[i] & 1 ? box.max.x : box.min.x, face[i] & 2 ? box.max.y : box.min.y,
                                         face[i] & 4 ? box.max.z : box.min.z},
                                        {});
            coordinates[i] = output.AddUV(kCorners[i][0], kCorners[i][1]);
        }
        output.AddPolygon(points, coordinates, kCrownMaterial);
    }
}

SceneLevel BuildCoarseLevel(const SceneRequest& request, SceneMaterials& materials, uint64_t& droppedPolygons,
                            vdt::MessageHandler& messages)
{
    const vdt::ModelVariant& variant = request.variant;
    if (request.details.front() != PlantDetail())
        messages.warning("only the full plant is reduced and rounded; its lighter forms are made of all of it");
    SceneLevel level;
    if (request.form == PlantForm::Cloud) {
        level.cloud = cloudOf(request, materials);
        return level;
    }

    SceneMeshBuilder output(level.body.mesh, MetersPerUnit(request.model.unit),
                            [&](int32_t matid) { return materials.indexOf(matid); });
    level.body.mesh.name = "crown";
    level.body.placements = {Placement()};
    switch (request.form) {
    case PlantForm::Proxy:
        if (const vdt::Mesh* stored = vdt::FindProxy(variant, ""))
            output.AppendMesh(*stored, vdt::Matrix::Identity());
        else
            vdt::BuildHullMesh(variant, request.season, output, messages);
        break;
    case PlantForm::Box: WriteBox(variant.computeBound(), output); break;
    case PlantForm::Blob:
        vdt::BuildBlobMesh(variant, request.season, blobOptionsFor(variant.skeleton), output, messages);
        break;
    case PlantForm::Full:
    case PlantForm::Cloud: break;
    }
    output.finish();
    droppedPolygons += output.droppedPolygons;
    return level;
}

} // namespace verdanth
