// Readers for what the exports write, apart from the writers and as strict as the formats: anything out of place is a
// test failure. All give the same record.
#pragma once

#include "vdt/math/matrix.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace verdanth::test {

struct ReadCorner {
    vdt::Vector3 position, normal;
    vdt::Vector2f coordinate; // v up
};

struct ReadPolygon {
    std::string material;
    std::vector<ReadCorner> corners;
};

struct ReadScene {
    std::vector<ReadPolygon> polygons;
    nlohmann::json document; // of glTF
    std::string buffer;

    vdt::Vector3 min() const, max() const;
    /// Twice the sum of the polygons' area vectors by material: the same however polygons are cut.
    vdt::Vector3 areaVector(const std::string& material) const;
    double area(const std::string& material) const;
};

/// .glb or .gltf
ReadScene ReadGltfFile(const std::string& path);
ReadScene ReadObjFile(const std::string& path);
/// Materials are called by their ids.
ReadScene ReadPlyFile(const std::string& path);

/// Finite numbers, unit normals, polygons with an area. With `facing`, their normals do not look the other way.
void CheckScene(const ReadScene& scene, bool facing = true);

} // namespace verdanth::test
