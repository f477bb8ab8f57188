// What the fuzzers ask of every mesh.
#pragma once

#include "vdt/mesh/mesh.h"

#include <string>

namespace vdt::test {

inline std::string MeshComplaint(const Mesh& mesh)
{
    for (const uint64_t point : mesh.polygonVertices)
        if (point >= mesh.PointCount()) return "a mesh refers to a missing point";
    for (const uint64_t coordinate : mesh.polygonCoordinates)
        if (coordinate >= mesh.coordinates.size()) return "a mesh refers to a missing texture coordinate";
    return {};
}

} // namespace vdt::test
