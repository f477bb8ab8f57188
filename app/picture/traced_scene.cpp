#include "picture/traced_scene.h"

#include "export/triangles.h"
#include "picture/sampler.h"
#include "vdt/math/box.h"

#include <cstring>
#include <set>

namespace verdanth {
namespace {

constexpr float kNearest = 1e-5F;       // a ray does not meet what it starts from
constexpr float kCutOff = 0.5F;         // less opacity is none
constexpr double kFarthestPlant = 1e15; // metres; what lies beyond is no part of a picture

bool isInReach(const vdt::Vector3& p)
{
    return std::fabs(p.x) < kFarthestPlant && std::fabs(p.y) < kFarthestPlant && std::fabs(p.z) < kFarthestPlant;
}

// The points of a mesh that lie farthest out, in 26 directions: enough to tell how far its copies reach.
std::vector<vdt::Vector3> extremePoints(const SceneMesh& mesh)
{
    std::set<size_t> chosen;
    for (int direction = 0; direction < 27 && !mesh.points.empty(); ++direction) {
        const auto part = [&](int divisor) { return static_cast<float>(direction / divisor % 3 - 1); };
        const Float3 axis{part(1), part(3), part(9)};
        const auto nearer = [&](const Float3& a, const Float3& b) { return Dot(a, axis) < Dot(b, axis); };
        chosen.insert(static_cast<size_t>(std::max_element(mesh.points.begin(), mesh.points.end(), nearer) -
                                          mesh.points.begin()));
    }
    std::vector<vdt::Vector3> points;
    points.reserve(chosen.size());
    for (const size_t index : chosen) points.push_back(Widened(mesh.points[index]));
    return points;
}

// Calls `visit` with points in metres that tell how far the plant reaches.
template <class Visit> void forEachOutlinePoint(const SceneLevel& plant, Visit visit)
{
    const auto visitInReach = [&](const vdt::Vector3& point) {
        if (isInReach(point)) visit(point);
    };
    for (const Float3& point : plant.body.mesh.points) visitInReach(Widened(point));
    for (const Float3& point : plant.cloud.positions) visitInReach(Widened(point));
    for (const SceneObject& object : plant.foliage) {
        const std::vector<vdt::Vector3> extremes = extremePoints(object.mesh);
        for (const Placement& placement : object.placements) {
            const vdt::Matrix matrix = placement.matrix();
            for (const vdt::Vector3& point : extremes) visitInReach(vdt::TransformPoint(point, matrix));
        }
    }
}

// Plants root at the origin's height. One that hangs or floats stands on its lowest point instead.
double groundHeight(const vdt::Box& box)
{
    constexpr double kSlack = 0.08; // of the height: roots may go below
    return std::fabs(box.min.y) <= kSlack * box.size().y ? 0 : box.min.y;
}

// Calls `rejects` with each hit of a filter call, and strikes out those for which it is true.
template <class Rejects> void filterHits(const RTCFilterFunctionNArguments* arguments, Rejects rejects)
{
    for (unsigned i = 0; i < arguments->N; ++i)
        if (arguments->valid[i] == -1 && rejects(rtcGetHitFromHitN(arguments->hit, arguments->N, i)))
            arguments->valid[i] = 0;
}

RTCRay rayOf(const SceneRay& ray)
{
    RTCRay result{};
    result.org_x = ray.origin.x;
    result.org_y = ray.origin.y;
    result.org_z = ray.origin.z;
    result.dir_x = ray.direction.x;
    result.dir_y = ray.direction.y;
    result.dir_z = ray.direction.z;
    result.tnear = kNearest;
    result.tfar = ray.farthest;
    result.mask = ~0U;
    return result;
}

// `normal` with the relief of a texture: `relief` has its parts along u, along v and away from the surface.
Float3 bent(const TriangleMesh& triangles, const uint32_t* corner, const Float3& normal, const Float3& relief)
{
    // The directions in which u and v grow along the triangle.
    const Float3 sideB = triangles.positions[corner[1]] - triangles.positions[corner[0]];
    const Float3 sideC = triangles.positions[corner[2]] - triangles.positions[corner[0]];
    const vdt::Vector2f& a = triangles.coordinates[corner[0]];
    const vdt::Vector2f& b = triangles.coordinates[corner[1]];
    const vdt::Vector2f& c = triangles.coordinates[corner[2]];
    const float turn = (b.u - a.u) * (c.v - a.v) - (c.u - a.u) * (b.v - a.v);
    const Float3 alongU = (sideB * (c.v - a.v) - sideC * (b.v - a.v)) * (turn < 0 ? -1.0F : 1.0F);
    const Float3 alongV = (sideC * (b.u - a.u) - sideB * (c.u - a.u)) * (turn < 0 ? -1.0F : 1.0F);
    const Float3 tangent = Normalized(alongU - normal * Dot(alongU, normal));
    const Float3 across = Cross(normal, tangent);
    const Float3 bitangent = Dot(across, alongV) < 0 ? -across : across;
    return Normalized(tangent * relief.x + bitangent * relief.y + normal * relief.z);
}

struct ShadowContext {
    RTCIntersectContext base;
    uint32_t seed;
};

} // namespace

struct TracedScene::Side {
    Light color;
    const Texture* colorTexture;
    const Texture* relief;
    Light gloss;
    const Texture* glossTexture;
    float roughness;
};

struct TracedScene::Material {
    Side front;
    std::optional<Side> back{}; // if it looks other than the front
    const Texture* mask = nullptr;
    float transmission = 0; // what goes through of the light that is not swallowed
    Light transmissionColor{0, 0, 0};
    const Texture* transmissionTexture = nullptr;
};

struct TracedScene::Piece {
    const Material* material;
    TriangleMesh triangles;

    size_t triangleCount() const { return triangles.indices.size() / 3; }

    // The three indices of the triangle that was hit, in whichever copy.
    const uint32_t* cornersOf(const RTCHit& hit) const { return &triangles.indices[hit.primID % triangleCount() * 3]; }

    vdt::Vector2f coordinateAt(const RTCHit& hit) const
    {
        const uint32_t* corner = cornersOf(hit);
        const vdt::Vector2f& a = triangles.coordinates[corner[0]];
        const vdt::Vector2f& b = triangles.coordinates[corner[1]];
        const vdt::Vector2f& c = triangles.coordinates[corner[2]];
        const float first = 1 - hit.u - hit.v;
        return {a.u * first + b.u * hit.u + c.u * hit.v, a.v * first + b.v * hit.u + c.v * hit.v};
    }

    // Asked only where the material has a mask.
    bool isCutOut(const RTCHit& hit) const { return material->mask->opacity(coordinateAt(hit)) < kCutOff; }
};

struct TracedScene::Mesh {
    std::vector<Piece> pieces;
    RTCScene scene = nullptr; // of instances alone; its geometries have the pieces' numbers

    ~Mesh()
    {
        if (scene) rtcReleaseScene(scene);
    }
};

TracedScene::TracedScene(const Scene& scene, vdt::MessageHandler& messages, uint64_t copyBudget) : textures(messages)
{
    // With one thread, the tree over the triangles is the same on every run, and so is each hit on an edge.
    device = rtcNewDevice("threads=1");
    if (!device) {
        failure = "the ray tracer does not start on this machine";
        return;
    }
    const SceneLevel& plant = scene.finest();
    findSpace(plant);
    addMaterials(scene, messages);
    root = rtcNewScene(device);

    body = makeMesh(plant.body.mesh, true);
    for (const Piece& piece : body->pieces) {
        attachPiece(piece, piece.triangles.positions, root, parts.size());
        parts.push_back({body.get(), parts.size(), vdt::kNone});
    }
    for (const SceneObject& object : plant.foliage) {
        if (messages.isCancelled()) return;
        addFoliage(object, copyBudget);
    }
    addCloud(plant.cloud);
    rtcCommitScene(root);
    if (rtcGetDeviceError(device) != RTC_ERROR_NONE) failure = "the ray tracer cannot hold the plant in memory";
}

TracedScene::~TracedScene()
{
    if (root) rtcReleaseScene(root);
    foliage.clear();
    body.reset();
    if (device) rtcReleaseDevice(device);
}

// Gathers the outline, and makes of the plant's box the space in which rays live.
void TracedScene::findSpace(const SceneLevel& plant)
{
    vdt::Box box;
    forEachOutlinePoint(plant, [&](const vdt::Vector3& point) { box.extend(point); });
    if (box.isEmpty()) return;

    constexpr double kSmallestPlant = 1e-9; // metres
    origin = {box.center().x, groundHeight(box), box.center().z};
    scale = 1 / std::max(box.diagonal(), kSmallestPlant);
    forEachOutlinePoint(plant, [&](const vdt::Vector3& point) { outlinePoints.push_back(localPoint(point)); });
}

Float3 TracedScene::localPoint(const vdt::Vector3& meters) const
{
    return Narrowed((meters - origin) * scale);
}

void TracedScene::addMaterials(const Scene& scene, vdt::MessageHandler& messages)
{
    messages.beginProgress("reading textures");
    materials.reserve(scene.materials.size());
    for (const SceneMaterial& source : scene.materials) {
        Material material{sideOf(source)};
        if (source.back) material.back = sideOf(*source.back);
        material.mask = textures.find(source.alphaTexture);
        if (source.alphaTexture == source.colorTexture && material.mask && !material.mask->hasAlpha())
            material.mask = nullptr; // a picture without alpha cuts nothing out of itself
        material.transmission = source.transmission;
        material.transmissionColor = LightOfSrgb(source.transmissionColor);
        material.transmissionTexture = textures.find(source.transmissionTexture);
        materials.push_back(material);
    }
    messages.endProgress();
}

TracedScene::Side TracedScene::sideOf(const SceneSide& source)
{
    return {LightOfSrgb(source.color),         textures.find(source.colorTexture),    textures.findRelief(source),
            LightOfSrgb(source.specularColor), textures.find(source.specularTexture), source.roughness};
}

std::unique_ptr<TracedScene::Mesh> TracedScene::makeMesh(const SceneMesh& source, bool isBody) const
{
    auto mesh = std::make_unique<Mesh>();
    for (const uint32_t material : MaterialsOf(source)) {
        Piece piece{&materials[material], TrianglesOf(source, material)};
        if (piece.triangles.indices.empty()) continue;
        if (isBody)
            for (Float3& position : piece.triangles.positions) position = localPoint(Widened(position));
        mesh->pieces.push_back(std::move(piece));
    }
    return mesh;
}

// Enters the triangles of a piece under a number, as many copies of them as there are positions for.
void TracedScene::attachPiece(const Piece& piece, const vdt::Array<Float3>& positions, RTCScene target,
                              size_t number) const
{
    const vdt::Array<uint32_t>& indices = piece.triangles.indices;
    const size_t pointCount = piece.triangles.positions.size();
    const size_t copies = positions.size() / pointCount;
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    void* const points = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, sizeof(Float3),
                                                 positions.size());
    auto* corner = static_cast<uint32_t*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                                  3 * sizeof(uint32_t), indices.size() / 3 * copies));
    if (points && corner) {
        std::memcpy(points, positions.data(), positions.size() * sizeof(Float3));
        for (size_t copy = 0; copy < copies; ++copy)
            for (const uint32_t index : indices) *corner++ = static_cast<uint32_t>(copy * pointCount + index);
        rtcSetGeometryUserData(geometry, const_cast<Piece*>(&piece));
        if (piece.material->mask) rtcSetGeometryIntersectFilterFunction(geometry, rejectCutOut);
        if (piece.material->mask || piece.material->transmission > 0)
            rtcSetGeometryOccludedFilterFunction(geometry, letLightThrough);
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(target, geometry, static_cast<unsigned>(number));
    }
    rtcReleaseGeometry(geometry);
}

void TracedScene::addFoliage(const SceneObject& source, uint64_t& copyBudget)
{
    std::vector<Placement> placements = source.placements;
    std::erase_if(placements, [this](const Placement& placement) {
        // A ray that is as much longer or shorter in the copy's own space could not be traced there.
        constexpr double kLargestStep = 1e15;
        const double step = std::fabs(placement.scale * scale);
        return !isInReach(placement.translation) || !(step < kLargestStep && step > 1 / kLargestStep);
    });
    const size_t firstTurn = turns.size();
    for (const Placement& placement : placements) {
        const vdt::Matrix matrix = vdt::ToMatrix(placement.rotation, {0, 0, 0});
        Turn turn{};
        for (int row = 0; row < 3; ++row) turn.axes[row] = Narrowed(matrix.row(row) * (placement.scale < 0 ? -1 : 1));
        turns.push_back(turn);
    }

    foliage.push_back(makeMesh(source.mesh, false));
    Mesh& mesh = *foliage.back();
    uint64_t triangles = 0;
    for (const Piece& piece : mesh.pieces) triangles += piece.triangleCount() * placements.size();
    if (triangles > copyBudget) return addInstances(mesh, placements, firstTurn);
    copyBudget -= triangles;
    addCopies(mesh, placements, firstTurn);
}

void TracedScene::addCopies(const Mesh& mesh, std::span<const Placement> placements, size_t firstTurn)
{
    if (placements.empty()) return;
    for (size_t i = 0; i < mesh.pieces.size(); ++i) {
        const Piece& piece = mesh.pieces[i];
        vdt::Array<Float3> positions;
        positions.reserve(piece.triangles.positions.size() * placements.size());
        for (const Placement& placement : placements) {
            const vdt::Matrix matrix = placement.matrix();
            for (const Float3& p : piece.triangles.positions)
                positions.push_back(localPoint(vdt::TransformPoint(Widened(p), matrix)));
        }
        attachPiece(piece, positions, root, parts.size());
        parts.push_back({&mesh, i, firstTurn});
    }
}

void TracedScene::addInstances(Mesh& mesh, std::span<const Placement> placements, size_t firstTurn)
{
    mesh.scene = rtcNewScene(device);
    for (size_t i = 0; i < mesh.pieces.size(); ++i)
        attachPiece(mesh.pieces[i], mesh.pieces[i].triangles.positions, mesh.scene, i);
    rtcCommitScene(mesh.scene);

    for (const Placement& placement : placements) {
        const vdt::Matrix matrix = placement.matrix();
        Float3 columns[4]; // the transposed matrix's, which are our rows
        for (int row = 0; row < 3; ++row) columns[row] = Narrowed(matrix.row(row) * scale);
        columns[3] = localPoint(placement.translation);
        RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE);
        rtcSetGeometryInstancedScene(geometry, mesh.scene);
        rtcSetGeometryTransform(geometry, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, columns);
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(root, geometry, static_cast<unsigned>(parts.size()));
        rtcReleaseGeometry(geometry);
        parts.push_back({&mesh, 0, firstTurn++});
    }
}

// Each point becomes a small disc that lies on the surface for which it stands.
void TracedScene::addCloud(const SceneCloud& cloud)
{
    if (cloud.isEmpty()) return;

    constexpr double kSmallestDisc = 0.0015;
    constexpr double kLargestDisc = 0.02;
    const double ownRadius = std::sqrt(std::max(cloud.areaPerPoint, 0.0) / vdt::kPi) * scale;
    const auto radius = static_cast<float>(std::clamp(ownRadius, kSmallestDisc, kLargestDisc));
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_ORIENTED_DISC_POINT);
    auto* places = static_cast<float*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT4,
                                                               4 * sizeof(float), cloud.positions.size()));
    auto* normals = static_cast<Float3*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_NORMAL, 0, RTC_FORMAT_FLOAT3,
                                                                 sizeof(Float3), cloud.positions.size()));
    if (places && normals) {
        for (size_t i = 0; i < cloud.positions.size(); ++i) {
            const Float3 place = localPoint(Widened(cloud.positions[i]));
            std::memcpy(places + 4 * i, &place, sizeof place);
            places[4 * i + 3] = radius;
            normals[i] = cloud.normals[i];
            discColors.push_back(LightOfSrgb(cloud.colors[i]));
        }
        rtcCommitGeometry(geometry);
        discGeometry = static_cast<uint32_t>(parts.size());
        rtcAttachGeometryByID(root, geometry, discGeometry);
    }
    rtcReleaseGeometry(geometry);
}

void TracedScene::rejectCutOut(const RTCFilterFunctionNArguments* arguments)
{
    const auto& piece = *static_cast<const Piece*>(arguments->geometryUserPtr);
    filterHits(arguments, [&](const RTCHit& hit) { return piece.isCutOut(hit); });
}

void TracedScene::letLightThrough(const RTCFilterFunctionNArguments* arguments)
{
    const auto& piece = *static_cast<const Piece*>(arguments->geometryUserPtr);
    const uint32_t seed = reinterpret_cast<const ShadowContext*>(arguments->context)->seed;
    filterHits(arguments, [&](const RTCHit& hit) {
        // The chance hangs on ray and triangle, not on the order in which the ray meets them.
        const uint32_t chance = HashBits(seed ^ HashBits(hit.primID + HashBits(hit.geomID + HashBits(hit.instID[0]))));
        if (static_cast<float>(chance >> 8) * 0x1p-24F < piece.material->transmission) return true;
        return piece.material->mask && piece.isCutOut(hit);
    });
}

bool TracedScene::intersect(const SceneRay& ray, Surface& surface) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    RTCRayHit query{};
    query.ray = rayOf(ray);
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(root, &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;
    describe(query.hit, ray, query.ray.tfar, surface);
    return true;
}

uint32_t TracedScene::intersectBundle(std::span<const SceneRay> rays, std::span<Surface> surfaces) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    RTCRayHit16 query{};
    auto* const rayLanes = reinterpret_cast<RTCRayN*>(&query.ray);
    auto* const hitLanes = reinterpret_cast<RTCHitN*>(&query.hit);
    alignas(64) int valid[kBundle] = {};
    for (unsigned i = 0; i < rays.size(); ++i) {
        valid[i] = -1;
        const RTCRay ray = rayOf(rays[i]);
        RTCRayN_org_x(rayLanes, kBundle, i) = ray.org_x;
        RTCRayN_org_y(rayLanes, kBundle, i) = ray.org_y;
        RTCRayN_org_z(rayLanes, kBundle, i) = ray.org_z;
        RTCRayN_tnear(rayLanes, kBundle, i) = ray.tnear;
        RTCRayN_dir_x(rayLanes, kBundle, i) = ray.dir_x;
        RTCRayN_dir_y(rayLanes, kBundle, i) = ray.dir_y;
        RTCRayN_dir_z(rayLanes, kBundle, i) = ray.dir_z;
        RTCRayN_tfar(rayLanes, kBundle, i) = ray.tfar;
        RTCRayN_mask(rayLanes, kBundle, i) = ray.mask;
        RTCHitN_geomID(hitLanes, kBundle, i) = RTC_INVALID_GEOMETRY_ID;
        RTCHitN_instID(hitLanes, kBundle, i, 0) = RTC_INVALID_GEOMETRY_ID;
    }
    rtcIntersect16(valid, root, &context, &query);

    uint32_t met = 0;
    for (unsigned i = 0; i < rays.size(); ++i) {
        const RTCHit hit = rtcGetHitFromHitN(hitLanes, kBundle, i);
        if (hit.geomID == RTC_INVALID_GEOMETRY_ID) continue;
        describe(hit, rays[i], RTCRayN_tfar(rayLanes, kBundle, i), surfaces[i]);
        met |= 1U << i;
    }
    return met;
}

bool TracedScene::isOccluded(const SceneRay& ray, uint32_t seed) const
{
    ShadowContext context{};
    rtcInitIntersectContext(&context.base);
    context.seed = seed;
    RTCRay query = rayOf(ray);
    rtcOccluded1(root, &context.base, &query);
    return query.tfar < 0;
}

void TracedScene::describe(const RTCHit& hit, const SceneRay& ray, float distance, Surface& surface) const
{
    surface.position = ray.origin + ray.direction * distance;
    if (hit.instID[0] == RTC_INVALID_GEOMETRY_ID && hit.geomID == discGeometry)
        describeDisc(hit, ray.direction, surface);
    else
        describeTriangle(hit, ray.direction, surface);
}

void TracedScene::describeTriangle(const RTCHit& hit, const Float3& direction, Surface& surface) const
{
    const bool isInstance = hit.instID[0] != RTC_INVALID_GEOMETRY_ID;
    const Part& part = parts[isInstance ? hit.instID[0] : hit.geomID];
    const Piece& piece = part.mesh->pieces[isInstance ? hit.geomID : part.piece];
    const Material& material = *piece.material;
    const TriangleMesh& triangles = piece.triangles;
    const uint32_t* corner = piece.cornersOf(hit);
    const vdt::Vector2f coordinate = piece.coordinateAt(hit);

    Float3 normal = Normalized(triangles.normals[corner[0]] * (1 - hit.u - hit.v) +
                               triangles.normals[corner[1]] * hit.u + triangles.normals[corner[2]] * hit.v);
    const auto turned = [&](const Float3& v) {
        if (part.firstTurn == vdt::kNone) return v;
        return turns[part.firstTurn + (isInstance ? 0 : hit.primID / piece.triangleCount())](v);
    };
    const Float3 geometric{hit.Ng_x, hit.Ng_y, hit.Ng_z};
    Float3 flat = Normalized(isInstance ? turned(geometric) : geometric);
    if (Dot(flat, turned(normal)) < 0) flat = -flat;
    const bool isBack = Dot(flat, direction) > 0;
    surface.flatNormal = isBack ? -flat : flat;

    // A back of its own has its relief on it; else the front's is seen from inside.
    const bool hasOwnBack = isBack && material.back;
    const Side& side = hasOwnBack ? *material.back : material.front;
    if (hasOwnBack) normal = -normal;
    if (side.relief) normal = bent(triangles, corner, normal, side.relief->raw(coordinate) * 2 - Float3{1, 1, 1});
    normal = turned(normal);
    surface.normal = isBack && !hasOwnBack ? -normal : normal;
    describeLook(material, side, coordinate, surface);
}

void TracedScene::describeLook(const Material& material, const Side& side, const vdt::Vector2f& coordinate,
                               Surface& surface) const
{
    const Light color = side.colorTexture ? side.colorTexture->color(coordinate) : side.color;
    surface.reflection = color * (1 - material.transmission);
    surface.transmission = {0, 0, 0};
    if (material.transmission > 0) {
        const Texture* texture = material.transmissionTexture;
        const Light through = !texture                       ? material.transmissionColor
                              : texture == side.colorTexture ? color
                                                             : texture->color(coordinate);
        surface.transmission = through * material.transmission;
    }
    surface.gloss = side.glossTexture ? side.glossTexture->color(coordinate) : side.gloss;
    surface.roughness = side.roughness;
}

void TracedScene::describeDisc(const RTCHit& hit, const Float3& direction, Surface& surface) const
{
    const Float3 normal = Normalized({hit.Ng_x, hit.Ng_y, hit.Ng_z});
    surface.flatNormal = surface.normal = Dot(normal, direction) > 0 ? -normal : normal;
    surface.reflection = discColors[hit.primID];
    surface.transmission = {0, 0, 0};
    surface.gloss = {0, 0, 0};
    surface.roughness = 1;
}

} // namespace verdanth
