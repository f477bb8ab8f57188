// Small skeletons for tests: trees with all that a walk can meet, the same for the same seed.
#pragma once

#include "vdt/skeleton/skeleton.h"

#include <random>

namespace vdt::test {

inline VertexAttributes Attributes(double radius, float texV = 0, const Quaternion& orient = {})
{
    VertexAttributes attributes;
    attributes.radius = radius;
    attributes.tex_v = texV;
    attributes.orient = orient;
    return attributes;
}

/// One branch through the positions, all of one radius, with v counting up.
inline uint64_t AddBranchThrough(Skeleton& skeleton, std::span<const Vector3> positions, double radius = 1,
                                 int32_t matid = 0)
{
    std::vector<uint64_t> points;
    std::vector<VertexAttributes> attributes;
    for (const Vector3& position : positions) {
        attributes.push_back(Attributes(radius, static_cast<float>(points.size())));
        points.push_back(skeleton.AddPoint(position));
    }
    return skeleton.AddBranch(matid, points, attributes);
}

/// Branches that begin on points of others, their tips too; bends of all kinds; radii of 0 now and then; frames that
/// are not quite turns.
inline Skeleton RandomTree(uint32_t seed)
{
    std::mt19937 random(seed);
    const auto unit = [&random] { return static_cast<double>(random() % 2001) / 1000 - 1; };
    const auto attributes = [&] {
        const double radius = random() % 9 ? 0.1 + 0.1 * static_cast<double>(random() % 10) : 0;
        const Quaternion orient{static_cast<float>(unit()), static_cast<float>(unit()), static_cast<float>(unit()),
                                static_cast<float>(unit())};
        return Attributes(radius, static_cast<float>(unit()), random() % 2 ? Normalized(orient) : orient);
    };
    Skeleton skeleton;
    const uint32_t branchCount = 1 + random() % 8;
    for (uint32_t branch = 0; branch < branchCount; ++branch) {
        const uint64_t pointCount = skeleton.points.size();
        std::vector<uint64_t> points = {branch == 0 ? skeleton.AddPoint(Vector3{0, 0, 0})
                                                    : 1 + random() % (pointCount - 1)};
        Vector3 position = skeleton.points[points[0]].position;
        for (uint32_t vertex = random() % 5 + 1; vertex > 0; --vertex) {
            // Straight on, by a right angle, back the same way, not at all, or anywhere.
            const Vector3 steps[] = {{0, 0, 1}, {1, 0, 0}, {0, 0, -1}, {0, 0, 0}, {unit(), unit(), unit()}};
            position += steps[random() % 5];
            points.push_back(skeleton.AddPoint(position));
        }
        std::vector<VertexAttributes> all;
        for (size_t vertex = 0; vertex < points.size(); ++vertex) all.push_back(attributes());
        skeleton.AddBranch(static_cast<int32_t>(branch), points, all);
    }
    return skeleton;
}

} // namespace vdt::test
