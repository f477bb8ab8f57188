#include "vdt/skeleton/vertex_pool.h"

#include "vdt/memory/assert.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace vdt {
namespace {

constexpr uint64_t kSmallestBlock = 64; // vertices

bool holds(const std::vector<SkeletonVertex>& block, const SkeletonVertex* vertex)
{
    const SkeletonVertex* begin = block.data();
    return std::greater_equal<>()(vertex, begin) && std::less<>()(vertex, begin + block.size());
}

} // namespace

void VertexPool::release(SkeletonVertex* vertex)
{
    *vertex = {};
    vertex->next = std::exchange(freeList, vertex);
}

void VertexPool::reserve(uint64_t count)
{
    if (!blocks.empty() && blocks.back().capacity() - blocks.back().size() >= count) return;

    // Each block holds as much as all before it, so there are few of them and slotOf() is quick.
    Block block;
    block.reserve(std::max({count, slotCount(), kSmallestBlock}));
    blocks.push_back(std::move(block));
}

void VertexPool::swap(VertexPool& other) noexcept
{
    blocks.swap(other.blocks);
    std::swap(freeList, other.freeList);
}

void VertexPool::assign(const VertexPool& other)
{
    VDT_ASSERT(this != &other);
    blocks.clear();
    freeList = nullptr;
    if (other.blocks.empty()) return;

    Block& copies = blocks.emplace_back();
    copies.reserve(other.slotCount());
    for (const Block& block : other.blocks) copies.insert(copies.end(), block.begin(), block.end());
    for (SkeletonVertex& copy : copies) {
        copy.next = copyOf(copy.next, other);
        copy.prev = copyOf(copy.prev, other);
        copy.ring = copyOf(copy.ring, other);
    }
    freeList = copyOf(other.freeList, other);
}

SkeletonVertex* VertexPool::copyOf(const SkeletonVertex* vertex, const VertexPool& original)
{
    return vertex ? blocks.front().data() + original.slotOf(vertex) : nullptr;
}

SkeletonVertex* VertexPool::reuse(const SkeletonVertex& values)
{
    SkeletonVertex* const vertex = std::exchange(freeList, freeList->next);
    *vertex = values;
    return vertex;
}

uint64_t VertexPool::slotCount() const
{
    uint64_t count = 0;
    for (const Block& block : blocks) count += block.size();
    return count;
}

uint64_t VertexPool::slotOf(const SkeletonVertex* vertex) const
{
    uint64_t firstSlot = 0;
    for (const Block& block : blocks) {
        if (holds(block, vertex)) return firstSlot + static_cast<uint64_t>(vertex - block.data());
        firstSlot += block.size();
    }
    VDT_ASSERT(!"the vertex came from another pool");
    return 0;
}

} // namespace vdt
