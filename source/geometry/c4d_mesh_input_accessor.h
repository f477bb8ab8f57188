// Reads the geometry of an object tree in the host as one mesh: what is visible of it, with caches in the place of
// what they were made from.
//
// Points and polygons of all polygon objects in the tree are numbered one object after the other, in the order of the
// tree. The objects, their tags and the document's materials must stay as they are while the accessor lives.
#pragma once

#include "c4d.h"
#include "vdt/mesh/mesh_accessors.h"

#include <memory>
#include <vector>

class C4dMeshInputAccessor : public vdt::MeshInputAccessor {
public:
    struct Request {
        BaseObject* root = nullptr;
        Matrix matrix{};                        // what positions are told in the space of; mostly the root's
        std::vector<BaseMaterial*> materials{}; // that flag polygons
        Bool rendering = false;                 // visibility in the renderer counts, not that in the editor
    };

    explicit C4dMeshInputAccessor(Request request);

    uint64_t IsValid() const override { return root ? vdt::kNone : 0; }
    bool IsNull() const override { return !root; }
    std::unique_ptr<vdt::MeshInputAccessor> Clone() const override;
    std::string GetName() const override;
    void WriteTo(vdt::MeshOutputAccessor& target, const vdt::Matrix& matrixToTarget) const override;
    int32_t FindAttribute(std::string_view name, bool* known) const override;
    bool HasAttribute(int32_t id) const override;
    /// The normal of the first corner of the first polygon at the point. False where the point's object has no normals
    /// or the point no polygon. True with `value` as it was for a point beyond the end.
    bool GetPointAttribute(int32_t id, uint64_t point, vdt::Vector3& value) const override;
    uint64_t PointCount() const override;
    vdt::Vector3& GetPoint(vdt::Vector3& position, uint64_t index) const override;
    uint64_t PolygonCount() const override;
    bool GetPolygon(uint64_t index, std::vector<uint64_t>& vertices, std::vector<vdt::Vector3>& coordinates,
                    int32_t& material) const override;
    /// The material is its place in the document's list, -1 for none.
    void GetPolygonRecord(vdt::MeshPolygon& polygon, uint64_t index) const override;
    /// True if one of the materials handed in lies on the polygon.
    bool IsPolygonFlagged(uint64_t index) const override;
    void PolygonsAtPoint(std::vector<uint64_t>& polygons, uint64_t point) const override;
    void PointsAroundPoint(std::vector<uint64_t>& points, uint64_t point) const override;

private:
    // A texture tag with a material, as it lies on the polygons of one object.
    struct Texture {
        BaseMaterial* material;
        Int32 materialIndex; // in the document; -1 if it is not there
        bool everywhere;
        std::vector<const BaseSelect*> selections; // where it lies otherwise
        Float offsetU, offsetV, lengthU, lengthV;

        bool liesOn(Int32 polygon) const;
    };

    // One polygon object of the tree.
    struct InputEntry {
        PolygonObject* object;
        Matrix matrix;                 // to the root's space
        std::vector<Vector32> normals; // copied: of each polygon's first corner; empty without a normal tag
        BaseObject* textureTagOwner;   // the nearest object, this one or above, that has texture tags; may be null
        std::vector<Texture> textures;
        ConstUVWHandle uvws; // null without texture coordinates
        uint64_t pointCount, polygonCount;
        uint64_t firstPoint, firstPolygon; // in the joint numbering

        std::unique_ptr<Neighbor> neighbor;
    };

    struct Walk {
        Matrix toRoot;
        BaseObject* textureTagOwner;
        bool visible; // what an object without a mode of its own takes over
    };

    C4dMeshInputAccessor(const C4dMeshInputAccessor& other);

    void collect(BaseObject* object, Walk walk);
    void collectPolygons(PolygonObject* object, const Walk& walk);
    std::vector<Texture> texturesOn(PolygonObject* object, BaseObject* owner) const;
    const InputEntry* entryOfPoint(uint64_t point) const;
    const InputEntry* entryOfPolygon(uint64_t polygon) const;

    BaseObject* root;
    Matrix matrix;
    Bool rendering;
    std::vector<BaseMaterial*> materials;
    std::vector<InputEntry> entries;
    std::vector<BaseMaterial*> documentMaterials; // in order
};
