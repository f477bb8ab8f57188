// The two roads by which generators write meshes. Not part of the library's interface.
//
// Both writers have the same operations, so that a generator can be written once as a template over them. MeshWriter
// writes straight into a Mesh's arrays, which are grown ahead of the writing; AccessorWriter calls the virtual
// operations of any accessor. The resulting mesh is the same.
#pragma once

#include "vdt/mesh/mesh.h"

#include <algorithm>
#include <cstddef>

namespace vdt {

class AccessorWriter {
public:
    explicit AccessorWriter(MeshOutputAccessor& target) : output(target) {}

    void reserve(uint64_t /*points*/, uint64_t /*polygons*/, uint64_t /*corners*/) {}
    void makeRoom(uint64_t /*points*/, uint64_t /*polygons*/, uint64_t /*corners*/) {}
    void finish() {}

    uint64_t addPoint(const Vector3& position, const Vector3& normal) { return output.AddPoint(position, normal); }

    /// A quad with texture coordinates of its own.
    void addQuad(const uint64_t (&points)[4], const Vector2f (&uvs)[4], int32_t material)
    {
        AddQuad(output, points, uvs, material);
    }

    /// The same for 3 to 5 corners, left to the accessor in one call.
    void addPolygonFromLists(size_t count, const int32_t* points, const Vector2f* uvs, int32_t material)
    {
        uint32_t vertices[5];
        float coordinates[10];
        for (size_t corner = 0; corner < count; ++corner) {
            vertices[corner] = static_cast<uint32_t>(points[corner]);
            coordinates[2 * corner] = uvs[corner].u;
            coordinates[2 * corner + 1] = uvs[corner].v;
        }
        output.AddPolygonFromLists({vertices, count}, {coordinates, 2 * count}, material);
    }

private:
    MeshOutputAccessor& output;
};

class MeshWriter {
public:
    /// True if `mesh` is in order to be written to directly.
    static bool suits(const Mesh& mesh)
    {
        return mesh.normals.size() == mesh.positions.size() && mesh.materials.size() == mesh.polygonEnds.size() &&
               mesh.polygonCoordinates.size() == mesh.polygonVertices.size();
    }

    explicit MeshWriter(Mesh& target)
        : mesh(&target),
          pointCount(target.positions.size()),
          polygonCount(target.polygonEnds.size()),
          cornerCount(target.polygonVertices.size()),
          coordinateCount(target.coordinates.size())
    {
        usePresentRoom();
    }

    /// Memory for so many more in one piece. More may follow all the same.
    void reserve(uint64_t points, uint64_t polygons, uint64_t corners)
    {
        mesh->positions.reserve(pointCount + points);
        mesh->normals.reserve(pointCount + points);
        mesh->polygonEnds.reserve(polygonCount + polygons);
        mesh->materials.reserve(polygonCount + polygons);
        mesh->polygonVertices.reserve(cornerCount + corners);
        mesh->polygonCoordinates.reserve(cornerCount + corners);
        mesh->coordinates.reserve(coordinateCount + corners);
        usePresentRoom();
    }

    /// So many more may be written before the next call. Cheap while there is room.
    void makeRoom(uint64_t points, uint64_t polygons, uint64_t corners)
    {
        if (pointCount + points <= pointRoom && polygonCount + polygons <= polygonRoom &&
            cornerCount + corners <= cornerRoom)
            return;
        reserve(std::max(points, pointCount), std::max(polygons, polygonCount), std::max(corners, cornerCount));
    }

    /// Gives back the room that was not written to.
    void finish()
    {
        mesh->positions.resize(pointCount);
        mesh->normals.resize(pointCount);
        mesh->polygonEnds.resize(polygonCount);
        mesh->materials.resize(polygonCount);
        mesh->polygonVertices.resize(cornerCount);
        mesh->polygonCoordinates.resize(cornerCount);
        mesh->coordinates.resize(coordinateCount);
        mesh->topologyValid = false;
    }

    uint64_t addPoint(const Vector3& position, const Vector3& normal)
    {
        positions[pointCount] = position;
        normals[pointCount] = normal;
        return pointCount++;
    }

    void addQuad(const uint64_t (&points)[4], const Vector2f (&uvs)[4], int32_t material)
    {
        addCorners(4, points, uvs, material);
    }

    void addPolygonFromLists(size_t count, const int32_t* points, const Vector2f* uvs, int32_t material)
    {
        addCorners(count, points, uvs, material);
    }

private:
    // The counts go through locals: the arrays' numbers are of their type, and might be them for all that a compiler
    // knows.
    template <class Index> void addCorners(size_t count, const Index* points, const Vector2f* uvs, int32_t material)
    {
        const uint64_t firstCorner = cornerCount, firstCoordinate = coordinateCount, polygon = polygonCount;
        uint64_t* const vertex = polygonVertices + firstCorner;
        uint64_t* const coordinateIndex = polygonCoordinates + firstCorner;
        Vector2f* const coordinate = coordinates + firstCoordinate;
        polygonEnds[polygon] = firstCorner + count;
        materials[polygon] = material;
        for (size_t corner = 0; corner < count; ++corner) {
            vertex[corner] = static_cast<uint64_t>(points[corner]);
            coordinateIndex[corner] = firstCoordinate + corner;
            coordinate[corner] = uvs[corner];
        }
        cornerCount = firstCorner + count;
        coordinateCount = firstCoordinate + count;
        polygonCount = polygon + 1;
    }

    // Sizes are drawn out to the capacities: what has not been written costs nothing.
    void usePresentRoom()
    {
        pointRoom = std::min(mesh->positions.capacity(), mesh->normals.capacity());
        polygonRoom = std::min(mesh->polygonEnds.capacity(), mesh->materials.capacity());
        const uint64_t indexRoom = std::min(mesh->polygonVertices.capacity(), mesh->polygonCoordinates.capacity());
        cornerRoom = std::min(indexRoom, cornerCount + (mesh->coordinates.capacity() - coordinateCount));
        mesh->positions.resize(pointRoom);
        mesh->normals.resize(pointRoom);
        mesh->polygonEnds.resize(polygonRoom);
        mesh->materials.resize(polygonRoom);
        mesh->polygonVertices.resize(cornerRoom);
        mesh->polygonCoordinates.resize(cornerRoom);
        mesh->coordinates.resize(coordinateCount + (cornerRoom - cornerCount));
        positions = mesh->positions.data();
        normals = mesh->normals.data();
        polygonEnds = mesh->polygonEnds.data();
        materials = mesh->materials.data();
        polygonVertices = mesh->polygonVertices.data();
        polygonCoordinates = mesh->polygonCoordinates.data();
        coordinates = mesh->coordinates.data();
    }

    Mesh* mesh;
    uint64_t pointRoom, polygonRoom, cornerRoom;                     // sizes of the arrays while they are written
    uint64_t pointCount, polygonCount, cornerCount, coordinateCount; // written so far
    Vector3* positions;
    Vector3* normals;
    uint64_t* polygonEnds;
    int32_t* materials;
    uint64_t* polygonVertices;
    uint64_t* polygonCoordinates;
    Vector2f* coordinates;
};

} // namespace vdt
