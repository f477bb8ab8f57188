// One foliage record: a small mesh (a leaf, a twig with leaves, a flower) that connectors of its group place.
#pragma once

#include "vdt/mesh/mesh.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vdt {

struct VariantMesh {
    int32_t group = 0;     // matches the connectors' group
    std::string qualifier; // the season that shows it; empty for all
    std::unique_ptr<Mesh> mesh;

    VariantMesh() = default;
    VariantMesh(int32_t meshGroup, std::string season, std::unique_ptr<Mesh> source)
        : group(meshGroup),
          qualifier(std::move(season)),
          mesh(std::move(source))
    {
    }
    VariantMesh(const VariantMesh& other)
        : group(other.group),
          qualifier(other.qualifier),
          mesh(other.mesh ? std::make_unique<Mesh>(*other.mesh) : nullptr)
    {
    }
    VariantMesh& operator=(const VariantMesh& other) { return *this = VariantMesh(other); }
    VariantMesh(VariantMesh&&) noexcept = default;
    VariantMesh& operator=(VariantMesh&&) noexcept = default;
    ~VariantMesh() = default;

    /// True if the record is to be placed in `season`.
    bool appliesTo(std::string_view season) const { return qualifier.empty() || qualifier == season; }
};

} // namespace vdt
