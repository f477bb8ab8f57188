#include "core/plain_array.h"

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace host {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kPagedFrom = LIMIT<size_t>::MAX; // so that the sanitizer sees who reads behind the end
#else
constexpr size_t kPagedFrom = size_t{1} << 17;
#endif
constexpr size_t kPageSize = 4096;
constexpr size_t kHugeFrom = size_t{8} << 20; // pages of 2 MB pay: page faults are most of the cost of large meshes

size_t wholePages(size_t bytes)
{
    return (bytes + kPageSize - 1) / kPageSize * kPageSize;
}

void preferHugePages(void* memory, size_t bytes)
{
    if (bytes >= kHugeFrom) madvise(memory, wholePages(bytes), MADV_HUGEPAGE); // where there are none: no matter
}

void* allocate(size_t bytes, bool paged)
{
    if (!paged) return std::calloc(bytes, 1);
    void* memory = mmap(nullptr, wholePages(bytes), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return nullptr;
    preferHugePages(memory, bytes);
    return memory;
}

void release(void* memory, size_t bytes, bool paged)
{
    if (paged)
        munmap(memory, wholePages(bytes));
    else
        std::free(memory);
}

} // namespace

bool ZeroedBlock::isPaged() const
{
    return byteCount >= kPagedFrom;
}

bool ZeroedBlock::resize(size_t wanted)
{
    if (wanted == byteCount) return true;
    if (!isPaged() || wanted < kPagedFrom) return moveTo(wanted, wanted >= kPagedFrom);

    // What the last page holds behind a shorter block may have been written; new pages are zero.
    if (wanted < byteCount) {
        const size_t kept = std::min(byteCount, wholePages(wanted));
        std::memset(static_cast<char*>(memory) + wanted, 0, kept - wanted);
    }
    void* moved = mremap(memory, wholePages(byteCount), wholePages(wanted), MREMAP_MAYMOVE);
    if (moved == MAP_FAILED) return false;
    if (wanted > byteCount) preferHugePages(moved, wanted);
    memory = moved;
    byteCount = wanted;
    return true;
}

bool ZeroedBlock::moveTo(size_t wanted, bool paged)
{
    void* moved = wanted > 0 ? allocate(wanted, paged) : nullptr;
    if (wanted > 0 && !moved) return false;
    if (moved && memory) std::memcpy(moved, memory, std::min(wanted, byteCount));
    if (memory) release(memory, byteCount, isPaged());
    memory = moved;
    byteCount = wanted;
    return true;
}

} // namespace host
