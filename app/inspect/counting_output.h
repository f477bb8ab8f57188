// A mesh output that counts and measures what is written instead of keeping it.
#pragma once

#include "vdt/mesh/mesh.h"
#include "vdt/messages/message_handler.h"

namespace verdanth {

class CountingOutput final : public vdt::MeshOutputAccessor {
public:
    explicit CountingOutput(vdt::MessageHandler& handler) : messages(&handler) {}

    bool SetName(std::string_view) override { return true; }
    uint64_t AddPoint(const vdt::Vector3& position, const vdt::Vector3&) override
    {
        bound.extend(position);
        return points++;
    }
    uint64_t AddUV(float, float) override { return coordinates++; }
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t>, int32_t) override
    {
        ++polygons;
        corners += vertices.size();
        return true;
    }

    /// Counts no more copies once the user cancels: a few lines of a file may ask for billions of leaves.
    void AppendMesh(const vdt::MeshInputAccessor& source, const vdt::Matrix& matrix) override
    {
        if (!messages->isCancelled()) MeshOutputAccessor::AppendMesh(source, matrix);
    }

    /// What the library's own mesh takes for as much, without slack.
    uint64_t bytes() const
    {
        constexpr uint64_t kPoint = 2 * sizeof(vdt::Vector3);             // position and normal
        constexpr uint64_t kCorner = 2 * sizeof(uint64_t);                // point and coordinate
        constexpr uint64_t kPolygon = sizeof(uint64_t) + sizeof(int32_t); // end and material
        return points * kPoint + coordinates * sizeof(vdt::Vector2f) + corners * kCorner + polygons * kPolygon;
    }

    uint64_t points = 0;
    uint64_t coordinates = 0;
    uint64_t polygons = 0;
    uint64_t corners = 0;
    vdt::Box bound; // model units

private:
    vdt::MessageHandler* messages;
};

} // namespace verdanth
