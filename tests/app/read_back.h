// Readers for what the exports write, apart from the writers and as strict as the formats: anything out of place is a
// test failure. All give the same record.
#pragma once

#include "vdt/math/box.h"
#include "vdt/math/matrix.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
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

struct ReadPoint {
    vdt::Vector3 position, normal, color;
};

struct ReadScene {
    std::vector<ReadPolygon> polygons;
    std::vector<ReadPoint> points;
    nlohmann::json document; // of glTF
    std::string buffer;

    vdt::Box bounds() const;
    /// Twice the sum of a material's area vectors, the same however polygons are cut, and of their lengths.
    std::pair<vdt::Vector3, double> area(const std::string& material) const;
};

/// .glb or .gltf; of several levels of detail the one that is asked for.
ReadScene ReadGltfFile(const std::string& path, size_t level = 0);
ReadScene ReadObjFile(const std::string& path);
/// Materials are called by their ids.
ReadScene ReadPlyFile(const std::string& path);

/// Finite numbers, unit normals, polygons with an area. With `facing`, their normals do not look the other way.
void CheckScene(const ReadScene& scene, bool facing = true);

} // namespace verdanth::test
