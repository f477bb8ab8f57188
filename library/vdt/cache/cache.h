// The single place where model files are kept in memory: each file is read once, however many handles show it, and
// goes when the last handle to its last variant goes.
//
// There are no locks: a cache and its handles belong to one thread at a time. A cache outlives its handles.
#pragma once

#include "vdt/memory/index.h"
#include "vdt/model/model.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vdt {

class Cache;

/// A counted reference to one variant of a cached model; the null handle refers to nothing. While a handle lives the
/// model and its variants stay where they are.
class ModelHandle {
public:
    ModelHandle() = default;
    ModelHandle(const ModelHandle& other);
    ModelHandle& operator=(const ModelHandle& other);
    ~ModelHandle();

    /// Gives the reference back; the handle is null afterwards.
    void release();

    /// Null for the null handle.
    Model* model() const;
    /// The variant, read from its own file first if `ensureLoaded` asks for its geometry and it is not there yet.
    /// Null for the null handle, and if that reading fails.
    ModelVariant* variantData(MessageHandler& handler, bool ensureLoaded) const;

    Cache* cache = nullptr;
    uint64_t slot = kNone;    // index into the cache's entries
    uint64_t variant = kNone; // index into the model's variants

private:
    void addReference() const;
};

/// One slot. Free while `model` is null; its path and counts are then empty.
struct CacheEntry {
    std::string path; // as the caller gave it: the key
    std::unique_ptr<Model> model;
    std::vector<uint64_t> refCounts; // one a variant
};

class Cache {
public:
    /// `mapper` finds files that have moved, for the expansion of stub variants; may be null, and outlives the cache.
    explicit Cache(const PathMapper* mapper) : pathMapper(mapper) {}
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;
    virtual ~Cache() = default;

    /// A handle to the model in the file at `path`, read on first demand. A variant at or beyond the model's count
    /// means its default variant. The null handle if the file cannot be read or has no variants.
    ModelHandle acquire(const std::string& path, MessageHandler& handler, uint64_t variant);

    /// Makes sure that the variant's geometry is in memory, with frames and weights if it came from a file of its own.
    bool ensureVariantLoaded(uint64_t slot, uint64_t variant, MessageHandler& handler);

    std::vector<CacheEntry> entries; // never shrinks: a slot's index stays valid
    const PathMapper* pathMapper;
    NullMessageHandler nullHandler; // for callers that have no handler of their own
};

} // namespace vdt
