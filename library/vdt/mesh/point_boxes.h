// Points gathered in small boxes, for finding the one farthest beyond a plane without asking each of them.
#pragma once

#include "vdt/math/box.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace vdt {

class PointBoxes {
public:
    /// Points of which some coordinate is not a number are left out: they are beyond no plane.
    explicit PointBoxes(std::span<const Vector3> points)
    {
        Box all;
        for (const Vector3& p : points) all.extend(p);
        const Vector3 size = all.size();
        std::vector<uint64_t> keys;
        for (uint32_t i = 0; i < points.size(); ++i) {
            const Vector3 p = points[i] - all.min;
            if (std::isnan(points[i].x) || std::isnan(points[i].y) || std::isnan(points[i].z)) continue;
            const uint64_t curve =
                spread(step(p.x, size.x)) | spread(step(p.y, size.y)) << 1 | spread(step(p.z, size.z)) << 2;
            keys.push_back(curve << 32 | i);
        }
        std::sort(keys.begin(), keys.end());

        for (size_t i = 0; i < keys.size(); ++i) {
            order.push_back(static_cast<uint32_t>(keys[i]));
            if (i % kPerBox == 0) boxes.emplace_back();
            boxes.back().extend(points[order.back()]);
        }
        for (size_t i = 0; i < boxes.size(); ++i) {
            if (i % kPerBox == 0) groups.emplace_back();
            groups.back().extend(boxes[i]);
        }
    }

    /// Calls `visit` with the index of every point p for which Dot(origin - p, normal) may exceed `reach` less `slack`,
    /// and of others near those. `visit` raises `reach` as it finds points; `slack` is to cover rounding.
    template <class Visit>
    void visitFarthest(const Vector3& normal, const Vector3& origin, const double& reach, double slack,
                       const Visit& visit) const
    {
        // The distance of the box's corner that lies farthest against the normal.
        const auto bound = [&](const Box& box) {
            return Dot(origin - Vector3{normal.x > 0 ? box.min.x : box.max.x, normal.y > 0 ? box.min.y : box.max.y,
                                        normal.z > 0 ? box.min.z : box.max.z},
                       normal);
        };
        const auto visitGroup = [&](size_t group) {
            const size_t boxEnd = std::min(boxes.size(), (group + 1) * kPerBox);
            for (size_t box = group * kPerBox; box < boxEnd; ++box) {
                if (bound(boxes[box]) <= reach - slack) continue; // but not if either is not a number
                const size_t end = std::min(order.size(), (box + 1) * kPerBox);
                for (size_t i = box * kPerBox; i < end; ++i) visit(order[i]);
            }
        };
        // The most promising group first: few others are worth a visit then.
        size_t first = 0;
        double best = 0;
        for (size_t group = 0; group < groups.size(); ++group) {
            const double distance = bound(groups[group]);
            if (distance <= best) continue;
            best = distance;
            first = group;
        }
        if (first < groups.size()) visitGroup(first);
        for (size_t group = 0; group < groups.size(); ++group)
            if (group != first && !(bound(groups[group]) <= reach - slack)) visitGroup(group);
    }

private:
    static constexpr size_t kPerBox = 16; // points in a box, boxes in a group

    // A coordinate in 1024 steps of the extent.
    static uint64_t step(double offset, double extent)
    {
        const double steps = 1023 * (offset / extent);
        return steps > 0 ? static_cast<uint64_t>(std::min(steps, 1023.0)) : 0;
    }

    // Ten bits, three apart: three of these make the place on a curve that keeps neighbours together.
    static uint64_t spread(uint64_t bits)
    {
        uint64_t result = 0;
        for (unsigned bit = 0; bit < 10; ++bit) result |= (bits >> bit & 1) << 3 * bit;
        return result;
    }

    std::vector<uint32_t> order; // along the curve
    std::vector<Box> boxes, groups;
};

} // namespace vdt
