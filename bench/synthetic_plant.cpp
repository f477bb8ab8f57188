#include "synthetic_plant.h"

#include <random>

namespace vdt::bench {
namespace {

constexpr uint64_t kBranchCount = 39981;
constexpr uint64_t kVertexCount = 246754;
constexpr uint64_t kConnectorCount = 60000;

class PlantMaker {
public:
    Skeleton make(double share)
    {
        const auto part = [share](uint64_t count) { return static_cast<uint64_t>(share * static_cast<double>(count)); };
        const uint64_t branchCount = std::max<uint64_t>(part(kBranchCount), 4), vertexCount = part(kVertexCount);
        skeleton.reserveVertices(vertexCount);

        // The inner orders have a share of the branches each; the twigs share the vertices that are left.
        addBranch(0, skeleton.AddPoint(SkeletonPoint()), {0, 0, 1}, {60, 1, 10});
        const Order limbs = addOrder({0, 1}, 1 + branchCount / 400, {24, 0.5, 40});
        const Order boughs = addOrder(limbs, 1 + branchCount / 20, {14, 0.3, 12});
        const uint64_t firstTwig = skeleton.branches.size();
        const uint64_t twigs = branchCount > firstTwig ? branchCount - firstTwig : 1;
        for (uint64_t twig = 0; twig < twigs; ++twig) {
            const uint64_t spare = vertexCount > written ? vertexCount - written : 0, left = twigs - twig;
            addSide(parentOf(boughs, twig, twigs), {std::max<uint64_t>(3, (spare + left / 2) / left), 0.1, 2});
        }

        addConnectors(part(kConnectorCount), firstTwig);
        skeleton.ComputeOrientations();
        skeleton.ComputeWeights();
        return std::move(skeleton);
    }

private:
    // 0 to 1.
    double fraction() { return static_cast<double>(random()) / 4294967296.0; }
    uint64_t below(uint64_t count) { return random() % count; }

    // Branches first to end - 1.
    struct Order {
        uint64_t first, end;
    };

    struct Shape {
        uint64_t vertexCount;
        double radius, step; // at the root; between vertices
    };

    Order addOrder(const Order& parents, uint64_t count, const Shape& shape)
    {
        const uint64_t first = skeleton.branches.size();
        for (uint64_t branch = 0; branch < count; ++branch) addSide(parentOf(parents, branch, count), shape);
        return {first, skeleton.branches.size()};
    }

    // Level by level, each in its parents' order, as growing lists them.
    const SkeletonBranch& parentOf(const Order& parents, uint64_t branch, uint64_t count) const
    {
        return skeleton.branches[parents.first + branch * (parents.end - parents.first) / count];
    }

    // A branch off a vertex that is neither its parent's first nor its tip.
    void addSide(const SkeletonBranch& parent, const Shape& shape)
    {
        const SkeletonVertex* from = parent.firstVertex->next;
        for (uint64_t skip = below(parent.vertexCount - 2); skip > 0; --skip) from = from->next;
        const Vector3 direction{fraction() - 0.5, fraction() - 0.5, fraction() - 0.2};
        addBranch(1, from->point, direction, shape);
    }

    void addBranch(int32_t matid, uint64_t from, Vector3 direction, const Shape& shape)
    {
        points = {from};
        attributes.assign(shape.vertexCount, {});
        Vector3 position = skeleton.points[from].position;
        for (uint64_t vertex = 0; vertex < shape.vertexCount; ++vertex) {
            const double along = static_cast<double>(vertex) / static_cast<double>(shape.vertexCount - 1);
            attributes[vertex].radius = shape.radius * (1 - 0.9 * along);
            attributes[vertex].tex_v = static_cast<float>(along);
            if (vertex == 0) continue;
            direction += Vector3{fraction() - 0.5, fraction() - 0.5, fraction() - 0.4} * 0.3;
            Normalize(direction);
            position += shape.step * direction;
            points.push_back(skeleton.AddPoint(position));
        }
        skeleton.AddBranch(matid, points, attributes);
        written += shape.vertexCount;
    }

    void addConnectors(uint64_t count, uint64_t firstTwig)
    {
        for (uint64_t connector = 0; connector < count; ++connector) {
            ConnectorAttributes leaf;
            leaf.group = static_cast<int32_t>(connector % 3);
            leaf.scale = 0.5 + fraction();
            leaf.orient = Normalized(Quaternion{static_cast<float>(fraction()), static_cast<float>(fraction()),
                                                static_cast<float>(fraction()), 0.5F});
            const uint64_t twig = firstTwig + connector * (skeleton.branches.size() - firstTwig) / count;
            skeleton.AddConnector(leaf, skeleton.branches[twig].lastVertex->point);
        }
    }

    std::mt19937 random{4357};
    Skeleton skeleton;
    std::vector<uint64_t> points;
    std::vector<VertexAttributes> attributes;
    uint64_t written = 0; // vertices
};

} // namespace

Skeleton SyntheticSkeleton(double share)
{
    return PlantMaker().make(share);
}

Mesh SyntheticLeaf(uint64_t columns, uint64_t rows)
{
    Mesh leaf;
    for (uint64_t point = 0; point < (columns + 1) * (rows + 1); ++point) {
        const auto column = static_cast<double>(point % (columns + 1)),
                   row = static_cast<double>(point / (columns + 1));
        leaf.AddPoint({column, row, 0.1 * column * row}, {0, 0, 1});
    }
    for (uint64_t quad = 0; quad < columns * rows; ++quad) {
        const uint64_t corner = quad / columns * (columns + 1) + quad % columns;
        const float u = static_cast<float>(quad % columns), v = static_cast<float>(quad / columns);
        AddQuad(leaf, {corner, corner + 1, corner + columns + 2, corner + columns + 1},
                {{u, v}, {u + 1, v}, {u + 1, v + 1}, {u, v + 1}}, 2);
    }
    return leaf;
}

ModelVariant SyntheticPlant(double share)
{
    ModelVariant variant;
    variant.skeleton = SyntheticSkeleton(share);
    const uint64_t columns[] = {2, 4, 5}, rows[] = {4, 4, 8};
    for (int32_t group = 0; group < 3; ++group)
        variant.meshes.emplace_back(group, "", std::make_unique<Mesh>(SyntheticLeaf(columns[group], rows[group])));
    return variant;
}

} // namespace vdt::bench
