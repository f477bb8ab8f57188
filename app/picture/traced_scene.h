// A scene as rays meet it. Foliage stays one mesh a record with an instance a copy; a surface that its alpha texture
// cuts away is not there for any ray.
//
// Rays live in a space of their own: the plant stands on y = 0, its middle at x = z = 0, and its box has a diagonal of
// 1. So lengths such as the smallest distance that counts are plain constants, for a seedling and for a forest giant.
#pragma once

#include "picture/texture.h"

#include <embree3/rtcore.h>
#include <memory>
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
    Light transmission; // of white light, the part that shines through; black for what is no leaf
    Light gloss;        // of a highlight
    float roughness;
};

class TracedScene {
public:
    /// `scene` is not needed afterwards. Textures that cannot be used are told.
    TracedScene(const Scene& scene, vdt::MessageHandler& messages);
    TracedScene(const TracedScene&) = delete;
    TracedScene& operator=(const TracedScene&) = delete;
    ~TracedScene();

    /// Why nothing can be traced; empty if all is well.
    const std::string& problem() const { return failure; }

    /// The first surface on the ray. False if there is none.
    bool intersect(const SceneRay& ray, Surface& surface) const;
    /// True if something keeps the light off. Leaves let some of it pass, by a chance that `seed` decides.
    bool isOccluded(const SceneRay& ray, uint32_t seed) const;

    /// Points that span the whole plant.
    const std::vector<Float3>& outline() const { return outlinePoints; }

private:
    struct Material;
    struct Piece; // the triangles of one mesh that share a material
    struct Mesh;
    struct Instance {
        const Mesh* mesh;
        Float3 axes[3]; // the copy's turn; all of them round for a mirrored one
    };

    static void rejectCutOut(const RTCFilterFunctionNArguments* arguments);
    static void letLightThrough(const RTCFilterFunctionNArguments* arguments);

    void findSpace(const Scene& scene);
    void addMaterials(const Scene& scene, vdt::MessageHandler& messages);
    std::unique_ptr<Mesh> makeMesh(const SceneMesh& source, bool isBody) const;
    void attachPieces(const Mesh& mesh, RTCScene target) const;
    void addFoliage(const SceneObject& source);
    void addCloud(const SceneCloud& cloud);
    Float3 localPoint(const vdt::Vector3& meters) const;
    void describeTriangle(const RTCHit& hit, const Float3& direction, Surface& surface) const;
    void describeDisc(const RTCHit& hit, const Float3& direction, Surface& surface) const;

    std::string failure;
    vdt::Vector3 origin{0, 0, 0}; // metres
    double scale = 1;             // from metres
    TextureStore textures;
    std::vector<Material> materials;
    std::unique_ptr<Mesh> body;
    std::vector<std::unique_ptr<Mesh>> foliage;
    std::vector<Instance> instances;
    uint32_t firstInstance = 0; // its geometry's number; the pieces of the body come before
    uint32_t discGeometry = RTC_INVALID_GEOMETRY_ID;
    std::vector<Light> discColors;
    std::vector<Float3> outlinePoints;
    RTCDevice device = nullptr;
    RTCScene root = nullptr;
};

} // namespace verdanth
