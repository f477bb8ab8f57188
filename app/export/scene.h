// A built plant as plain records, ready for any writer: meshes, the places where they stand, and materials.
//
// Everything is in metres, right-handed, Y up; v of texture coordinates runs up. Foliage is kept as one mesh a record
// and one placement a connector, so a scene takes little more memory than the trunk, however many leaves there are.
#pragma once

#include "vdt/math/matrix.h"
#include "vdt/math/quaternion.h"
#include "vdt/memory/array.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace verdanth {

struct Float3 {
    float x, y, z;

    friend bool operator==(const Float3&, const Float3&) = default;
};

inline vdt::Vector3 Widened(const Float3& v)
{
    return {v.x, v.y, v.z};
}

inline Float3 Narrowed(const vdt::Vector3& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// A point as one of its polygons sees it: polygons that agree about its texture coordinate share it.
struct SceneVertex {
    uint32_t point;
    vdt::Vector2f coordinate;
};

/// All values are finite, all normals of unit length; polygons have three corners or more, no two neighbours the same.
struct SceneMesh {
    std::string name;
    vdt::Array<Float3> points;
    vdt::Array<Float3> normals; // one a point
    vdt::Array<SceneVertex> vertices;
    vdt::Array<uint32_t> corners; // indices into vertices
    vdt::Array<uint32_t> polygonEnds;
    vdt::Array<uint32_t> polygonMaterials; // indices into Scene::materials

    uint32_t polygonStart(size_t polygon) const { return polygon ? polygonEnds[polygon - 1] : 0; }
};

/// Where a copy of a mesh stands: scaled, then turned, then moved. A negative scale mirrors.
struct Placement {
    vdt::Vector3 translation{0, 0, 0};
    vdt::Quaternion rotation; // of unit length
    double scale = 1;

    /// For row vectors, as all of the library's matrices.
    vdt::Matrix matrix() const;
};

/// One mesh and all its copies. The plant's own body stands once, at the origin.
struct SceneObject {
    SceneMesh mesh;
    std::vector<Placement> placements;
};

/// Points scattered over a plant's surface, each with the normal and the colour (sRGB) of the spot it stands for. All
/// values are finite, all normals of unit length.
struct SceneCloud {
    vdt::Array<Float3> positions;
    vdt::Array<Float3> normals;
    vdt::Array<vdt::Color3f> colors;
    double areaPerPoint = 0; // square metres

    bool isEmpty() const { return positions.empty(); }
};

/// How much of the records' looks is taken over.
enum class MaterialQuality {
    Low,    // colours alone; where there is a picture, its mean
    Medium, // pictures of colour, cut-out and relief
    High,   // also pictures of highlights, and all that shines through
};

/// How one side of a surface looks. Texture paths name files that can be read, or are empty.
struct SceneSide {
    vdt::Color3f color; // sRGB
    std::string colorTexture;
    std::string normalTexture;
    std::string bumpTexture;     // heights
    float bumpStrength = 0;      // 0 without a texture
    vdt::Color3f specularColor;  // sRGB
    std::string specularTexture; // in the colour's place
    float roughness = 1;         // 0 for a mirror to 1 for matt; 1 where there is no highlight

    /// All its texture paths, empty ones included.
    std::vector<std::string> textures() const { return {colorTexture, normalTexture, bumpTexture, specularTexture}; }
};

/// A material, and how its front looks.
struct SceneMaterial : SceneSide {
    int32_t matid = 0;
    std::string name;         // never empty
    std::string alphaTexture; // may be the colour texture, for its alpha channel
    bool twoSided = false;
    std::optional<SceneSide> back; // if it looks other than the front

    // Of the light that a thin surface does not swallow, the share that goes on behind it, and in which colour. The
    // rest comes back in the colour of the side that is lit. One-sided materials let nothing through.
    float transmission = 0;
    vdt::Color3f transmissionColor;  // sRGB
    std::string transmissionTexture; // in the colour's place

    std::string extras; // a JSON object for the reader of a file that can hold one; empty for none

    /// All its texture paths, empty ones included.
    std::vector<std::string> textures() const;
};

/// One form of the plant. Its meshes name materials by their place in the scene's list.
struct SceneLevel {
    SceneObject body;                 // trunk and branches; without polygons if there are none
    std::vector<SceneObject> foliage; // each with polygons and placements
    SceneCloud cloud;                 // if the plant is shown as points; there are no polygons then
};

struct Scene {
    std::string name; // of the plant
    std::string variant;
    std::string season;
    std::vector<SceneMaterial> materials; // those in use
    std::vector<SceneLevel> levels;       // at least one; of several, each is coarser than the one before

    const SceneLevel& finest() const { return levels.front(); }
};

/// "_LOD2"; empty for the only level.
std::string LevelSuffix(const Scene& scene, size_t level);

} // namespace verdanth
