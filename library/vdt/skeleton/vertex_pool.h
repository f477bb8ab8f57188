// The vertices of one skeleton, allocated in blocks.
//
// A plant has hundreds of thousands of vertices. In blocks they cost a tenth of what single allocations cost, stand
// in memory in the order in which a file names them, and go all at once. Addresses stay valid until a vertex is
// given back. The blocks in a row number all vertices ever handed out; a vertex's number is its slot.
#pragma once

#include "vdt/math/quaternion.h"
#include "vdt/math/vector.h"

#include <cstdint>
#include <vector>

namespace vdt {

struct VertexAttributes {
    double radius = 1; // model units
    float tex_v = 0;   // the texture's v along the branch
    Color3f color{1, 1, 1};
    Quaternion orient{}; // the frame: z along the branch

    friend bool operator==(const VertexAttributes&, const VertexAttributes&) = default;
};

/// One vertex of one branch.
struct SkeletonVertex {
    SkeletonVertex* next = nullptr; // towards the tip
    SkeletonVertex* prev = nullptr; // towards the root; null on a branch's first vertex
    SkeletonVertex* ring = nullptr; // the next vertex on the same point; null while alone there
    uint64_t branch = 0;
    uint64_t point = 0;
    VertexAttributes attributes;
};

class VertexPool {
public:
    VertexPool() = default;
    VertexPool(const VertexPool&) = delete;
    VertexPool& operator=(const VertexPool&) = delete;
    ~VertexPool() = default;

    /// A vertex with the given values.
    SkeletonVertex* allocate(const SkeletonVertex& values)
    {
        if (freeList) return reuse(values);
        if (blocks.empty() || blocks.back().size() == blocks.back().capacity()) reserve(1);
        return &blocks.back().emplace_back(values);
    }
    /// Takes back a vertex that came from this pool and is no longer linked anywhere.
    void release(SkeletonVertex* vertex);
    /// Makes sure that the next `count` vertices need no more than one block.
    void reserve(uint64_t count);
    void swap(VertexPool& other) noexcept;

    /// Becomes a copy of `other`, slot by slot, whose vertices link to each other as the originals do.
    void assign(const VertexPool& other);
    /// The copy that assign() made of a vertex of `original`; null for null.
    SkeletonVertex* copyOf(const SkeletonVertex* vertex, const VertexPool& original);

private:
    using Block = std::vector<SkeletonVertex>; // never grows beyond its first capacity, so that addresses stay valid

    SkeletonVertex* reuse(const SkeletonVertex& values);
    uint64_t slotCount() const;
    uint64_t slotOf(const SkeletonVertex* vertex) const;

    std::vector<Block> blocks;
    SkeletonVertex* freeList = nullptr; // given back, linked through `next`
};

} // namespace vdt
