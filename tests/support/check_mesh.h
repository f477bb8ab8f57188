// The whole invariant of a mesh, to end every test with that builds one, and whole meshes compared.
#pragma once

#include "vdt/mesh/mesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace vdt::test {

/// Lists of one length where they belong together, ends that ascend, indices that exist, numbers that are numbers.
inline void CheckMesh(const Mesh& mesh)
{
    EXPECT_EQ(mesh.normals.size(), mesh.positions.size());
    EXPECT_EQ(mesh.materials.size(), mesh.polygonEnds.size());
    EXPECT_EQ(mesh.polygonCoordinates.size(), mesh.polygonVertices.size());
    EXPECT_EQ(mesh.polygonEnds.empty() ? 0 : mesh.polygonEnds.back(), mesh.polygonVertices.size());
    EXPECT_TRUE(std::is_sorted(mesh.polygonEnds.begin(), mesh.polygonEnds.end()));
    for (const uint64_t vertex : mesh.polygonVertices) ASSERT_LT(vertex, mesh.positions.size());
    for (const uint64_t coordinate : mesh.polygonCoordinates) ASSERT_LT(coordinate, mesh.coordinates.size());
    for (const Vector2f& uv : mesh.coordinates) ASSERT_TRUE(std::isfinite(uv.u) && std::isfinite(uv.v));
    for (const Array<Vector3>* vectors : {&mesh.positions, &mesh.normals})
        for (const Vector3& v : *vectors) ASSERT_TRUE(std::isfinite(Dot(v, v)));
}

/// Equal to the bit but for positions and normals, which may differ by `tolerance` of the largest coordinate and of 1.
inline void ExpectSameMesh(const Mesh& mesh, const Mesh& expected, double tolerance = 0)
{
    CheckMesh(mesh);
    EXPECT_EQ(mesh.polygonEnds, expected.polygonEnds);
    EXPECT_EQ(mesh.polygonVertices, expected.polygonVertices);
    EXPECT_EQ(mesh.polygonCoordinates, expected.polygonCoordinates);
    EXPECT_EQ(mesh.coordinates, expected.coordinates);
    EXPECT_EQ(mesh.materials, expected.materials);
    ASSERT_EQ(mesh.positions.size(), expected.positions.size());
    Box box;
    expected.GetBounds(box);
    const double extent = box.isEmpty() ? 1 : Length(box.max) + Length(box.min);
    for (size_t point = 0; point < mesh.positions.size(); ++point) {
        ASSERT_LE(Length(mesh.positions[point] - expected.positions[point]), tolerance * extent) << "point " << point;
        ASSERT_LE(Length(mesh.normals[point] - expected.normals[point]), tolerance) << "normal " << point;
    }
}

} // namespace vdt::test
