// One variant of a plant: an age or shape with a skeleton and foliage of its own.
//
// A variant is complete, with its geometry in the main file, or a stub that names another file in `extref`. A stub
// is expanded on first demand and becomes a stub again when its geometry is released.
#pragma once

#include "vdt/mesh/variant_mesh.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/language.h"
#include "vdt/model/path_mapper.h"
#include "vdt/skeleton/skeleton.h"

namespace vdt {

/// Who wrote a file, when and from what.
struct FileInfo {
    std::string creator;
    std::string user;
    std::string timestamp;
    std::string source;

    friend bool operator==(const FileInfo&, const FileInfo&) = default;
};

/// A season, or whatever else foliage may depend on.
struct Qualifier {
    int64_t id = 0;
    std::string name;
    LocalizedTexts labels;

    friend bool operator==(const Qualifier&, const Qualifier&) = default;
};

/// A light stand-in for a whole variant.
struct ProxyMesh {
    std::string qualifier;
    Mesh mesh;
};

struct ModelVariant {
    FileInfo info;      // of an extref target, or of a file without a plant
    std::string extref; // the file with the geometry, absolute after reading; empty if the variant is complete
    std::string name;   // "young", "medium", "adult" for plants of an age
    Box bound;          // model units; as stored, empty if the file gave none
    LocalizedTexts labels;
    Skeleton skeleton;
    std::vector<VariantMesh> meshes;
    std::vector<Qualifier> qualifiers;
    uint64_t defaultQualifier = 0; // position in `qualifiers`
    std::vector<ProxyMesh> proxies;

    /// True once releaseGeometry() has taken geometry that no extref can bring back.
    bool geometryDropped = false;
    /// True once expand() has succeeded.
    bool wasExpanded = false;

    /// True if skeleton and meshes are in memory.
    bool hasGeometry() const { return extref.empty() ? !geometryDropped : !skeleton.isEmpty(); }
    /// False for a stub whose own file may list qualifiers that the main file does not.
    bool qualifiersKnown() const { return extref.empty() || wasExpanded || !qualifiers.empty(); }

    /// Reads the geometry of a stub: the first variant of the file that `extref`, through the mapper if there is one,
    /// names. Takes over its skeleton, meshes, file info and, if it has some, its qualifiers. False, with the reason
    /// told through `debug`, if there is no such file or no variant in it. Does not compute frames or weights.
    bool expand(MessageHandler& handler, const PathMapper* mapper);

    /// Drops skeleton and meshes. Bound, labels, qualifiers and proxies stay.
    void releaseGeometry();

    /// The box of the skeleton and its foliage; of a stub that is not expanded, the stored bound.
    Box computeBound() const;

    /// Back to an empty variant.
    void reset();

    /// Maps `extref` if it is relative.
    void mapExtref(const PathMapper& mapper);
};

} // namespace vdt
