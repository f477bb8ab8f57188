// A plant as a tree of branches that run through shared points, with foliage attachment sites (connectors) on them.
//
// A branch is a linked list of vertices; each vertex stands on a point. All vertices on one point form that point's
// ring (ring.h), all connectors on it another ring through indices. A side branch begins with a vertex on a point on
// which a vertex of its parent stands. Points, connectors and branches are addressed by index; vertices keep their
// address until they are erased, and belong to the skeleton. One thread at a time.
#pragma once

#include "vdt/math/box.h"
#include "vdt/memory/array.h"
#include "vdt/memory/index.h"
#include "vdt/skeleton/vertex_pool.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vdt {

class MeshInputAccessor;
struct ReductionParameters;
struct VariantMesh;

struct SkeletonPoint {
    SkeletonVertex* firstVertex = nullptr; // entry into the ring of vertices
    SkeletonVertex* lastVertex = nullptr;  // the member whose link leads back to firstVertex
    uint64_t firstConnector = kNone;       // entry into the ring of connectors
    uint64_t lastConnector = kNone;        // the member whose link leads back to firstConnector
    Vector3 position{};                    // model units
    Vector3 restPosition{};                // a second copy that travels along; generation never reads it
    float weight = 0;                      // 1 at the crown's centre to 0 outside; see ComputeWeights
};

struct SkeletonBranch {
    SkeletonVertex* firstVertex = nullptr; // the root end
    SkeletonVertex* lastVertex = nullptr;  // the tip
    uint64_t vertexCount = 0;
    int32_t matid = 0;
};

struct ConnectorAttributes {
    Color3f color{1, 1, 1};
    Quaternion orient{};
    double scale = 1;
    int32_t group = 0; // the foliage records that are placed here

    friend bool operator==(const ConnectorAttributes&, const ConnectorAttributes&) = default;
};

struct SkeletonConnector {
    uint64_t point = kNone;
    uint64_t nextConnector = kNone; // next in the circular ring of the point; kNone while alone
    ConnectorAttributes attributes;
};

/// How GetBounds chooses the points that it looks at.
enum class BoundsMode {
    AllPoints = 0,
    BranchPoints = 1,         // points with a vertex on them
    BranchPointsAndRadii = 2, // the same, each grown by its vertices' radii
    ConnectorPoints = 3,
};

class Skeleton {
public:
    Skeleton() = default;
    Skeleton(const Skeleton& other) { Assign(other); }
    Skeleton& operator=(const Skeleton& other)
    {
        Assign(other);
        return *this;
    }
    Skeleton(Skeleton&& other) noexcept { Swap(other); }
    Skeleton& operator=(Skeleton&& other) noexcept;
    virtual ~Skeleton() = default;

    /// Takes everything out and gives its memory back.
    void Clear();
    /// New points stand at 0 without vertex or connector. Points that go take along what is on them.
    void ResizePoints(uint64_t count);
    /// New branches have no vertices. Branches that go take their vertices along; all points stay.
    void ResizeBranches(uint64_t count);
    /// New connectors stand on no point.
    void ResizeConnectors(uint64_t count);
    /// Makes room for so many more vertices in one piece.
    void reserveVertices(uint64_t count);
    /// A deep copy. Assigning a skeleton to itself does nothing.
    Skeleton& Assign(const Skeleton& other);
    void Swap(Skeleton& other) noexcept;
    /// True if there are neither points nor branches nor connectors.
    bool isEmpty() const { return points.empty() && branches.empty() && connectors.empty(); }

    // Editing. An index out of range gives kNone or false and changes nothing; in a list it is left out.

    /// Appends a copy of the position, rest position and weight of `source`, with nothing on it. Gives its index.
    uint64_t AddPoint(const SkeletonPoint& source);
    /// The same with `position` as both positions and weight 0.
    uint64_t AddPoint(const Vector3& position);
    /// Appends a branch through the given points. kNone, with nothing changed, for fewer than two.
    uint64_t AddBranch(int32_t matid, std::span<const uint64_t> pointIndices,
                       std::span<const VertexAttributes> attributes);
    /// Puts a new vertex at `place` of the branch; behind its end, kNone included, appends it. Gives its place.
    uint64_t InsertVertex(uint64_t branch, uint64_t point, const VertexAttributes& attributes, uint64_t place);
    uint64_t VertexCount(uint64_t branch) const { return branches[branch].vertexCount; }

    /// Appends a connector to the point's ring. Gives its index.
    uint64_t AddConnector(const ConnectorAttributes& attributes, uint64_t point);
    /// Overwrites the attributes, and moves the connector to `point` if it is not there yet.
    bool SetConnector(uint64_t index, const ConnectorAttributes& attributes, uint64_t point);
    uint64_t ConnectorCount(uint64_t point) const;
    /// Unlinks and erases one connector. Other connectors' ring indices stay as they are: the caller renumbers.
    bool RemoveConnector(uint64_t index);
    /// Erases the connectors and renumbers all rings. False for an empty list.
    bool RemoveConnectors(const std::vector<uint64_t>& indices);

    /// Erases the point with its connectors and vertices, and renumbers.
    bool RemovePoint(uint64_t index);
    /// Erases the branch, and each point of it that holds neither vertex nor connector afterwards.
    bool RemoveBranch(uint64_t index);
    /// The same for a list in one pass. False for an empty list.
    bool RemoveBranches(const std::vector<uint64_t>& indices);

    /// Extends `box`, which is not reset.
    void GetBounds(Box& box, BoundsMode mode) const;

    /// All points on which branches only begin, in point order. False if there are none.
    bool FindRoots(std::vector<uint64_t>& roots) const;
    /// Carries frames continuously from the root through all branches into the vertices' `orient`. False, with the
    /// rest left as it is, where no frame leads on to a vertex.
    bool ComputeOrientations();
    /// Gives each point its weight by its distance from the crown's centre. False if no point has a position.
    bool ComputeWeights();

    // Smaller skeletons. `target` is another skeleton, and is emptied first. Vertices keep their frames and points
    // their weights; a branch of which a single vertex is left is dropped.

    /// Cuts branches by level and radius, and thins out connectors: the same ones in every run, enlarged by how much of
    /// the crown the foliage of `season` hides. Each connector gets a point of its own. Nothing to cut and to thin out
    /// makes a copy.
    void Reduce(std::span<const VariantMesh> foliage, std::string_view season, Skeleton& target,
                const ReductionParameters& parameters) const;
    /// Keeps of each branch what lies between its root and its first vertex inside the hull, that one included, and no
    /// connectors. Gives the number of vertices kept, those of dropped branches included.
    uint64_t CutAtHull(Skeleton& target, const MeshInputAccessor& hull) const;

    Array<SkeletonConnector> connectors;
    Array<SkeletonPoint> points;
    Array<SkeletonBranch> branches;

private:
    void eraseConnectors(const std::vector<bool>& doomed);
    void erasePoints(const std::vector<bool>& doomed);
    std::vector<bool> eraseBranches(const std::vector<bool>& doomed);

    VertexPool pool;
};

} // namespace vdt
