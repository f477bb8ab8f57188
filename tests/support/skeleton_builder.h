// Skeletons for tests: made by hand, made at random, told as text, and checked as a whole.
#pragma once

#include "vdt/skeleton/skeleton.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

namespace vdt::test {

/// Numbers that are the same on every machine, as the standard's own distributions are not.
class Dice {
public:
    explicit Dice(uint32_t seed) : state(seed * 2654435761u + 12345u) {}

    uint32_t below(uint32_t count);
    double real(double from, double to);
    Vector3 position(double reach) { return {real(-reach, reach), real(-reach, reach), real(-reach, reach)}; }

private:
    uint64_t state;
};

/// `SkeletonBuilder().trunk(5).side(2, 3).take()`: a trunk of five vertices with a branch of three on its vertex 2.
class SkeletonBuilder {
public:
    /// A branch straight up, one unit between its points, from a root of its own.
    SkeletonBuilder& trunk(uint64_t vertexCount);
    /// A branch that begins on vertex `place` of `parent` and leads away from it, each to another side.
    SkeletonBuilder& side(uint64_t place, uint64_t vertexCount, uint64_t parent = 0);
    /// A branch through points that are there already.
    SkeletonBuilder& through(std::initializer_list<uint64_t> points);
    /// A branch through points of its own, all of one radius, with v counting up.
    SkeletonBuilder& along(std::span<const Vector3> positions, double radius = 1, int32_t matid = 0);
    SkeletonBuilder& point(const Vector3& position);
    SkeletonBuilder& connector(uint64_t point, int32_t group = 0);
    SkeletonBuilder& radius(uint64_t branch, uint64_t place, double value);
    Skeleton take() { return std::move(skeleton); }

private:
    SkeletonBuilder& straight(uint64_t point, uint64_t vertexCount, const Vector3& step);

    Skeleton skeleton;
};

SkeletonVertex& VertexAt(const Skeleton& skeleton, uint64_t branch, uint64_t place);

/// A tree with side branches on inner vertices and tips, of one vertex or more, dead now and then; bends of all kinds;
/// frames that are not quite turns; connectors; and a bare point.
Skeleton RandomTree(uint32_t seed, uint64_t branchCount);
/// Branches through any points, each point as often as it happens: circles, crossings, repetitions.
Skeleton RandomTangle(uint32_t seed, uint64_t branchCount);

/// Whether all links, rings, counts and indices agree with each other.
testing::AssertionResult CheckSkeleton(const Skeleton& skeleton);

/// Branches as lists of points, then what stands on each point in ring order, as in
/// "0: 0 1 2\n1: 1 3\npoint 0: 0.0\npoint 1: 0.1 1.0, connectors 0 2\n..". Vertices are told as branch.place.
std::string Outline(const Skeleton& skeleton);

/// The outline and all attributes to the bit.
std::string Everything(const Skeleton& skeleton);

} // namespace vdt::test
