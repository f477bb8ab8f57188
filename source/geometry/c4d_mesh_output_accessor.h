// Writes generated meshes straight into a polygon object of the host.
//
// Nobody knows beforehand how much will come, so the object's arrays grow by doubling and are cut to size when the
// object is taken. Each material gets a selection tag that marks its polygons. What goes wrong shows in the results;
// a generator goes on, and the object holds what could be written.
#pragma once

#include "c4d.h"
#include "vdt/mesh/mesh_accessors.h"

#include <map>
#include <vector>

class NgonBase;

class C4dMeshOutputAccessor : public vdt::MeshOutputAccessor {
public:
    /// `scale`: host units for one of the model's. `withNormals`: the object gets a normal tag.
    C4dMeshOutputAccessor(Bool withNormals, Float scale);
    C4dMeshOutputAccessor(const C4dMeshOutputAccessor&) = delete;
    C4dMeshOutputAccessor& operator=(const C4dMeshOutputAccessor&) = delete;
    ~C4dMeshOutputAccessor() override;

    /// Begins a new object with all its tags but those of materials. Only for an accessor that nothing was written to
    /// since its object was taken. False without memory.
    bool Reset(Bool withNormals, Float newScale);

    /// What the names of the selection tags made from here on begin with, see selection_names.h.
    void SetPrefix(const String& newPrefix) { prefix = newPrefix; }

    /// Ends the object, which is the caller's then. Null if there is none. The accessor holds nothing afterwards.
    PolygonObject* TakeObject();

    bool SetName(std::string_view name) override;
    uint64_t AddPoint(const vdt::Vector3& position, const vdt::Vector3& normal) override;
    uint64_t AddUV(float u, float v) override;
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices,
                    int32_t material) override;

private:
    // A triangle or quad in model order, by what its corners take from the lists.
    struct Piece {
        size_t cornerCount;
        Int32 points[4];
        uint64_t coordinates[4];
        uint64_t normals[4];
    };

    bool refersToWhatIsThere(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices) const;
    bool addLargePolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices,
                         int32_t material);
    bool write(const Piece& piece, BaseSelect& selection);
    BaseSelect* selectionOf(Int32 material);
    bool resize(Int32 newPointRoom, Int32 newPolygonRoom);
    void fetchAddresses();
    void clear();

    PolygonObject* object = nullptr; // owned
    Float scale = 1;
    Int32 pointCount = 0, polygonCount = 0; // written so far
    NgonBase* ngons = nullptr;
    UVWTag* uvwTag = nullptr;
    NormalTag* normalTag = nullptr; // null without normals

    // The object's arrays. They move whenever the object is resized.
    Int32 pointRoom = 0, polygonRoom = 0;
    Vector* points = nullptr;
    CPolygon* polygons = nullptr;
    UVWHandle uvwHandle = nullptr;
    NormalHandle normalHandle = nullptr;

    std::map<Int32, SelectionTag*> materialTags;
    Int32 lastMaterial = 0;
    BaseSelect* lastSelection = nullptr; // of `lastMaterial`; null before the first polygon

    std::vector<vdt::Vector2f> coordinates;
    std::vector<Vector32> normals; // one a point, in the host's world and of unit length or zero; empty without normals
    String prefix;
};
