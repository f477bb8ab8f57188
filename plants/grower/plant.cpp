#include "grower/plant.h"

#include "grower/organs.h"
#include "grower/vocabulary.h"
#include "vdt/generate/foliage.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace grower {
namespace {

constexpr vdt::Vector3 kUp{0, 1, 0};

double rounded(double value, double steps)
{
    return std::round(value * steps) / steps;
}

vdt::Vector3 rounded(const vdt::Vector3& place)
{
    constexpr double kSteps = 1000;
    return {rounded(place.x, kSteps), rounded(place.y, kSteps), rounded(place.z, kSteps)};
}

vdt::Quaternion rounded(const vdt::Quaternion& turn)
{
    constexpr double kSteps = 10000;
    const auto part = [](float value) { return static_cast<float>(rounded(double{value}, kSteps)); };
    return {part(turn.x), part(turn.y), part(turn.z), part(turn.w)};
}

// Across a stem and level with it: what lies between its two sides looks the way that its parent grows.
vdt::Vector3 sidewaysOf(const Stems& stems, const Stem& stem)
{
    const vdt::Vector3 parent = stem.parent == vdt::kNone ? kUp : StemDirection(stems[stem.parent], stem.parentVertex);
    return vdt::Cross(parent, StemDirection(stem, 0));
}

void addFoliage(vdt::Skeleton& skeleton, const Stems& stems, const Stem& stem, const std::vector<uint64_t>& points,
                const FoliageRule& rule, Random& random)
{
    const vdt::Vector3 sideways = sidewaysOf(stems, stem);
    const uint64_t last = stem.vertices.size() - 1;
    uint64_t first = rule.tipOnly ? last : 1;
    while (first < last && static_cast<double>(first) < rule.firstAt * static_cast<double>(last)) ++first;
    for (uint64_t vertex = first; vertex <= last; ++vertex) {
        const int count = static_cast<int>(std::floor(rule.perVertex + random.real()));
        for (int i = 0; i < count; ++i) {
            const double angle = random.around(rule.angle) * vdt::kPi / 180;
            const vdt::Vector3 chaos{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1)};
            // Along the piece before the vertex, which a spray that reaches back covers.
            const vdt::Vector3 along =
                vdt::Normalized(stem.vertices[vertex].position - stem.vertices[vertex - 1].position);
            const vdt::Vector3 side = vdt::Normalized(chaos - along * vdt::Dot(chaos, along));
            vdt::Vector3 direction = along * std::cos(angle) + side * std::sin(angle);
            direction = vdt::Normalized(direction - kUp * rule.droop);
            const vdt::Vector3 upper = rule.upperSide ? vdt::Normalized(vdt::Cross(along, sideways)) : kUp;
            const vdt::Vector3 facing = upper * rule.faceUp + chaos * (1.05 - rule.faceUp);
            const double place = static_cast<double>(vertex) / static_cast<double>(last);
            const double factor = rule.scaleAlong.empty() ? 1 : ProfileValue(rule.scaleAlong, place);

            vdt::ConnectorAttributes attributes;
            attributes.orient = rounded(vdt::ToQuaternion(StandingFrame({0, 0, 0}, direction, facing)));
            attributes.scale = rounded(random.around(rule.scale) * factor, 1000);
            attributes.group = rule.groups[random.below(static_cast<uint32_t>(rule.groups.size()))];
            skeleton.AddConnector(attributes, points[vertex]);
        }
    }
}

// Shortens the bark's coordinates by the length of its pictures.
void fitBark(const SpeciesRecipe& recipe, Stems& stems)
{
    std::map<int32_t, int> turns;
    for (const MaterialRecipe& material : recipe.materials) turns[material.id] = material.turns;
    for (Stem& stem : stems)
        for (StemVertex& vertex : stem.vertices) vertex.barkV /= turns.at(stem.material);
}

// The box of wood and foliage in all seasons, rounded outwards. The library's own bound leaves room for the largest
// mesh at every connector, which makes a tuft of grass three times as tall.
vdt::Box boundOf(const vdt::ModelVariant& variant)
{
    vdt::Box box;
    variant.skeleton.GetBounds(box, vdt::BoundsMode::AllPoints);
    for (const vdt::VariantMesh& record : variant.meshes) {
        for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors) {
            if (!vdt::IsPlacedAt(variant.skeleton, connector, record)) continue;
            const vdt::Matrix frame = vdt::ConnectorFrame(variant.skeleton, connector);
            for (const vdt::Vector3& position : record.mesh->positions)
                box.extend(vdt::TransformPoint(position, frame));
        }
    }
    const auto outwards = [](const vdt::Vector3& v) {
        return vdt::Vector3{std::ceil(v.x), std::ceil(v.y), std::ceil(v.z)};
    };
    return {-outwards(-box.min), outwards(box.max)};
}

} // namespace

vdt::Skeleton BuildSkeleton(const AgeRecipe& age, const Stems& stems)
{
    vdt::Skeleton skeleton;
    uint64_t vertexCount = 0;
    for (const Stem& stem : stems) vertexCount += stem.vertices.size();
    skeleton.reserveVertices(vertexCount);
    skeleton.points.reserve(vertexCount);
    skeleton.branches.reserve(stems.size());

    std::vector<std::vector<uint64_t>> points(stems.size()); // of each stem's vertices
    std::vector<vdt::VertexAttributes> attributes;
    for (size_t i = 0; i < stems.size(); ++i) {
        const Stem& stem = stems[i];
        attributes.clear();
        points[i].reserve(stem.vertices.size());
        for (const StemVertex& vertex : stem.vertices) {
            const bool onParent = points[i].empty() && stem.parent != vdt::kNone;
            points[i].push_back(onParent ? points[stem.parent][stem.parentVertex]
                                         : skeleton.AddPoint(rounded(vertex.position)));
            vdt::VertexAttributes record;
            record.radius = rounded(vertex.radius, 10000);
            record.tex_v = static_cast<float>(rounded(vertex.barkV, 1000));
            attributes.push_back(record);
        }
        skeleton.AddBranch(stem.material, points[i], attributes);
    }

    // One stream a rule, so that a new rule leaves the others' leaves where they are.
    for (size_t rule = 0; rule < age.foliage.size(); ++rule) {
        Random random(age.seed, 100 + rule);
        for (size_t i = 0; i < stems.size(); ++i)
            if (stems[i].layer >= age.foliage[rule].fromLayer && stems[i].layer <= age.foliage[rule].lastLayer)
                addFoliage(skeleton, stems, stems[i], points[i], age.foliage[rule], random);
    }

    skeleton.ComputeOrientations();
    for (vdt::SkeletonBranch& branch : skeleton.branches)
        for (vdt::SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next)
            vertex->attributes.orient = rounded(vertex->attributes.orient);
    return skeleton;
}

vdt::ModelVariant GrowVariant(const SpeciesRecipe& recipe, const AgeRecipe& age)
{
    vdt::ModelVariant variant;
    variant.name = age.name;
    variant.labels = AgeLabels(age.name);
    variant.qualifiers = Seasons();
    variant.defaultQualifier = recipe.shownSeason;

    Stems stems = GrowStems(age);
    ThickenStems(age, stems);
    fitBark(recipe, stems);
    variant.skeleton = BuildSkeleton(age, stems);
    for (const OrganRecipe& organ : recipe.organs) {
        auto mesh = std::make_unique<vdt::Mesh>();
        mesh->SetName(organ.name);
        organ.build(*mesh);
        for (vdt::Vector3& position : mesh->positions) position = rounded(position);
        for (vdt::Vector2f& coordinate : mesh->coordinates) {
            coordinate.u = static_cast<float>(rounded(double{coordinate.u}, 10000));
            coordinate.v = static_cast<float>(rounded(double{coordinate.v}, 10000));
        }
        variant.meshes.emplace_back(organ.group, organ.season, std::move(mesh));
    }
    variant.bound = boundOf(variant);
    if (recipe.storeProxy) {
        variant.proxies.emplace_back();
        variant.proxies.back().mesh = BuildProxy(recipe, variant.skeleton);
    }
    return variant;
}

vdt::Mesh BuildProxy(const SpeciesRecipe& recipe, const vdt::Skeleton& skeleton)
{
    vdt::Mesh proxy;
    proxy.SetName("proxy");

    // The trunk, up to where half of its foot's radius is left. Its pieces are the first branches.
    Profile trunk;
    const vdt::SkeletonVertex* foot = skeleton.branches[0].firstVertex;
    uint64_t branch = 0;
    for (const vdt::SkeletonVertex* vertex = foot; vertex;) {
        const double height = skeleton.points[vertex->point].position.y;
        if (trunk.empty() || height > trunk.back().at) trunk.push_back({height, vertex->attributes.radius});
        if (vertex->attributes.radius < 0.5 * foot->attributes.radius && trunk.size() > 1) break;
        const uint64_t point = vertex->point;
        vertex = vertex->next;
        if (vertex || ++branch == skeleton.branches.size()) continue;
        const vdt::SkeletonVertex* further = skeleton.branches[branch].firstVertex;
        if (further->point == point) vertex = further->next;
    }
    AddTurned(proxy, {.outline = trunk, .material = recipe.proxyBark}, vdt::Matrix::Identity());
    if (skeleton.connectors.empty()) return proxy;

    // The crown: how far the foliage reaches in each direction from its middle. Fields of about thirty degrees.
    constexpr size_t kRows = 7;
    constexpr size_t kColumns = 12;
    vdt::Vector3 centre{0, 0, 0};
    for (const vdt::SkeletonConnector& connector : skeleton.connectors)
        centre += skeleton.points[connector.point].position / static_cast<double>(skeleton.connectors.size());
    std::vector<double> reach[kRows];
    for (std::vector<double>& row : reach) row.assign(kColumns, 0);
    for (const vdt::SkeletonConnector& connector : skeleton.connectors) {
        const vdt::Vector3 way = skeleton.points[connector.point].position - centre;
        const double length = vdt::Length(way);
        if (length == 0) continue;
        const double polar = std::acos(std::clamp(way.y / length, -1.0, 1.0)) / vdt::kPi;
        const double turn = std::atan2(way.z, way.x) / (2 * vdt::kPi) + 1;
        const auto row = static_cast<size_t>(std::lround(polar * (kRows - 1)));
        const auto column = static_cast<size_t>(std::lround(turn * kColumns)) % kColumns;
        reach[row][column] = std::max(reach[row][column], length);
    }

    const auto average = [&](size_t row) {
        double sum = 0;
        for (const double value : reach[row]) sum += value;
        return sum / kColumns;
    };
    const uint64_t top = proxy.AddPoint(rounded(centre + kUp * average(0)), {0, 0, 0});
    const uint64_t ring = top + 1;
    for (size_t row = 1; row + 1 < kRows; ++row) {
        for (size_t column = 0; column < kColumns; ++column) {
            const double polar = static_cast<double>(row) / (kRows - 1) * vdt::kPi;
            const double turn = static_cast<double>(column) / kColumns * 2 * vdt::kPi;
            const vdt::Vector3 way{std::sin(polar) * std::cos(turn), std::cos(polar), std::sin(polar) * std::sin(turn)};
            const double length = reach[row][column] > 0 ? reach[row][column] : average(row);
            proxy.AddPoint(rounded(centre + way * (0.92 * length)), {0, 0, 0});
        }
    }
    const uint64_t bottom = proxy.AddPoint(rounded(centre - kUp * average(kRows - 1)), {0, 0, 0});

    const vdt::Vector2f middle{0.5f, 0.5f}; // where the leaf's picture shows its blade
    for (size_t column = 0; column < kColumns; ++column) {
        const uint64_t here = column;
        const uint64_t there = (column + 1) % kColumns;
        const uint64_t lowest = ring + (kRows - 3) * kColumns;
        vdt::AddTriangle(proxy, {top, ring + there, ring + here}, {middle, middle, middle}, recipe.proxyFoliage);
        for (size_t row = 0; row + 3 < kRows; ++row) {
            const uint64_t above = ring + row * kColumns;
            const uint64_t below = above + kColumns;
            vdt::AddQuad(proxy, {above + here, above + there, below + there, below + here},
                         {middle, middle, middle, middle}, recipe.proxyFoliage);
        }
        vdt::AddTriangle(proxy, {bottom, lowest + here, lowest + there}, {middle, middle, middle}, recipe.proxyFoliage);
    }
    proxy.ComputeNormals();
    return proxy;
}

} // namespace grower
