// A scene as rays meet it. A surface that its alpha texture cuts away is not there for any ray.
//
// Rays live in a space of their own: the plant stands on y = 0, its middle at x = z = 0, and its box has a diagonal of
// 1. So lengths such as the smallest distance that counts are plain constants, for a seedling and for a forest giant.
//
// Copies of foliage overlap so much that rays find their way through the triangles of all copies three times as fast
// as through instances of one mesh. So copies are made as long as memory allows; beyond that they become instances.
#pragma once

#include "picture/texture.h"
#include "vdt/memory/index.h"

#include <embree3/rtcore.h>

#include <memory>
#include <span>
#include <vector>

namespace verdanth {

struct SceneRay {
    Float3 origin;
    Float3 direction; // of unit length
    float farthest = 1e30F;
};

/// What a ray has met.
struct Surface {
    Float3 position;
    Float3 flatNormal;  // of the triangle, to the side from which the ray came
    Float3 normal;      // the same rounded, and with the texture's relief
    Light reflection;   // of white light, the part that comes back
    Light transmission; // of white light, the part that shines through; black for what is not thin
    Light gloss;        // of a highlight
    float roughness;
};

class TracedScene {
public:
    static constexpr size_t kBundle = 16;
    static constexpr uint64_t kMostCopiedTriangles = 4'000'000; // they take about 120 bytes each

    /// Of the scene's levels, the finest. `scene` is not needed afterwards. Textures that cannot be used are told.
    /// Copies of foliage of more than `copyBudget` triangles are instances.
    TracedScene(const Scene& scene, vdt::MessageHandler& messages, uint64_t copyBudget = kMostCopiedTriangles);
    TracedScene(const TracedScene&) = delete;
    TracedScene& operator=(const TracedScene&) = delete;
    ~TracedScene();

    /// Why nothing can be traced; empty if all is well.
    const std::string& problem() const { return failure; }

    /// The first surface on the ray. False if there is none.
    bool intersect(const SceneRay& ray, Surface& surface) const;
    /// The same for up to kBundle rays that run nearly alike, which goes faster. Bit i of the result tells whether ray
    /// i has met a surface.
    uint32_t intersectBundle(std::span<const SceneRay> rays, std::span<Surface> surfaces) const;
    /// True if something keeps the light off. Thin surfaces let some of it pass, by a chance that `seed` decides.
    bool isOccluded(const SceneRay& ray, uint32_t seed) const;

    /// Points that span the whole plant.
    const std::vector<Float3>& outline() const { return outlinePoints; }

private:
    struct Side;
    struct Material;
    struct Piece; // the triangles of one mesh that share a material
    struct Mesh;

    // How a copy is turned: its axes, or minus them for a mirrored one.
    struct Turn {
        Float3 axes[3];

        Float3 operator()(const Float3& v) const { return axes[0] * v.x + axes[1] * v.y + axes[2] * v.z; }
    };

    // What stands behind the number of one of the root's geometries: a piece of the body, all copies of a piece of
    // foliage one after another, or an instance of a whole mesh.
    struct Part {
        const Mesh* mesh;
        size_t piece;
        size_t firstTurn; // kNone for the body
    };

    static void rejectCutOut(const RTCFilterFunctionNArguments* arguments);
    static void letLightThrough(const RTCFilterFunctionNArguments* arguments);

    void findSpace(const SceneLevel& plant);
    void addMaterials(const Scene& scene, vdt::MessageHandler& messages);
    Side sideOf(const SceneSide& source);
    std::unique_ptr<Mesh> makeMesh(const SceneMesh& source, bool isBody) const;
    void attachPiece(const Piece& piece, const vdt::Array<Float3>& positions, RTCScene target, size_t number) const;
    void addFoliage(const SceneObject& source, uint64_t& copyBudget);
    void addCopies(const Mesh& mesh, std::span<const Placement> placements, size_t firstTurn);
    void addInstances(Mesh& mesh, std::span<const Placement> placements, size_t firstTurn);
    void addCloud(const SceneCloud& cloud);
    Float3 localPoint(const vdt::Vector3& meters) const;
    void describe(const RTCHit& hit, const SceneRay& ray, float distance, Surface& surface) const;
    void describeTriangle(const RTCHit& hit, const Float3& direction, Surface& surface) const;
    void describeLook(const Material& material, const Side& side, const vdt::Vector2f& coordinate,
                      Surface& surface) const;
    void describeDisc(const RTCHit& hit, const Float3& direction, Surface& surface) const;

    std::string failure;
    vdt::Vector3 origin{0, 0, 0}; // metres
    double scale = 1;             // from metres
    TextureStore textures;
    std::vector<Material> materials;
    std::unique_ptr<Mesh> body;
    std::vector<std::unique_ptr<Mesh>> foliage;
    std::vector<Turn> turns; // of all copies
    std::vector<Part> parts; // by their geometry's number
    uint32_t discGeometry = RTC_INVALID_GEOMETRY_ID;
    std::vector<Light> discColors;
    std::vector<Float3> outlinePoints;
    RTCDevice device = nullptr;
    RTCScene root = nullptr;
};

} // namespace verdanth
