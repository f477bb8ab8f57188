#include "vdt/cache/cache.h"

#include "vdt/file/vdt_reader.h"

#include <algorithm>
#include <utility>

namespace vdt {
namespace {

void freeSlot(CacheEntry& entry)
{
    entry.path.clear();
    entry.model.reset();
    entry.refCounts.clear();
}

// Brings back the geometry of a variant that stands complete in its file and was dropped while another variant kept
// the slot: reads the file once more and takes what stands at the same position.
bool reload(ModelVariant& variant, uint64_t position, const std::string& path, MessageHandler& handler)
{
    Model model;
    if (!VdtReader(model, handler).readFile(path) || position >= model.variants.size()) return false;
    ModelVariant& source = model.variants[position];
    variant.skeleton.Swap(source.skeleton);
    variant.meshes.swap(source.meshes);
    variant.geometryDropped = false;
    return true;
}

} // namespace

ModelHandle::ModelHandle(const ModelHandle& other) : cache(other.cache), slot(other.slot), variant(other.variant)
{
    addReference();
}

ModelHandle& ModelHandle::operator=(const ModelHandle& other)
{
    if (this == &other) return *this;
    // The other handle holds a reference of its own, so a model that both show stays.
    release();
    cache = other.cache;
    slot = other.slot;
    variant = other.variant;
    addReference();
    return *this;
}

ModelHandle::~ModelHandle()
{
    release();
}

void ModelHandle::addReference() const
{
    if (cache && slot != kNone && variant != kNone) ++cache->entries[slot].refCounts[variant];
}

void ModelHandle::release()
{
    if (!cache) return;
    CacheEntry& entry = cache->entries[slot];
    if (--entry.refCounts[variant] == 0) {
        entry.model->variants[variant].releaseGeometry();
        if (std::ranges::all_of(entry.refCounts, [](uint64_t count) { return count == 0; })) freeSlot(entry);
    }
    cache = nullptr;
    slot = variant = kNone;
}

Model* ModelHandle::model() const
{
    if (!cache || slot >= cache->entries.size()) return nullptr;
    return cache->entries[slot].model.get();
}

ModelVariant* ModelHandle::variantData(MessageHandler& handler, bool ensureLoaded) const
{
    Model* owner = model();
    if (!owner || variant >= owner->variants.size()) return nullptr;
    if (ensureLoaded && !cache->ensureVariantLoaded(slot, variant, handler)) return nullptr;
    return &owner->variants[variant];
}

ModelHandle Cache::acquire(const std::string& path, MessageHandler& handler, uint64_t variant)
{
    const auto handleOn = [this, variant](uint64_t slot) {
        CacheEntry& entry = entries[slot];
        ModelHandle handle;
        handle.cache = this;
        handle.slot = slot;
        handle.variant = variant < entry.model->variants.size() ? variant : entry.model->defaultVariant;
        ++entry.refCounts[handle.variant];
        return handle;
    };
    const auto found =
        std::ranges::find_if(entries, [&path](const CacheEntry& entry) { return entry.model && entry.path == path; });
    if (found != entries.end()) return handleOn(static_cast<uint64_t>(found - entries.begin()));
    if (path.empty()) return {};

    const auto free = std::ranges::find_if(entries, [](const CacheEntry& entry) { return !entry.model; });
    const auto slot = static_cast<uint64_t>(free - entries.begin());
    if (free == entries.end()) entries.emplace_back();
    entries[slot].model = std::make_unique<Model>();
    const Model& model = *entries[slot].model;

    const bool read = VdtReader(*entries[slot].model, handler).readFile(path);
    const uint64_t count = model.variants.size();
    if (!read || (variant >= count && model.defaultVariant >= count)) {
        freeSlot(entries[slot]);
        return {};
    }
    entries[slot].path = path;
    entries[slot].refCounts.assign(count, 0);
    return handleOn(slot);
}

bool Cache::ensureVariantLoaded(uint64_t slot, uint64_t variant, MessageHandler& handler)
{
    if (slot >= entries.size() || !entries[slot].model) return false;
    std::vector<ModelVariant>& variants = entries[slot].model->variants;
    if (variant >= variants.size()) return false;

    ModelVariant& wanted = variants[variant];
    if (wanted.hasGeometry()) return true;
    if (wanted.extref.empty()) return reload(wanted, variant, entries[slot].path, handler);
    return wanted.expand(handler, pathMapper) && wanted.skeleton.ComputeWeights() &&
           wanted.skeleton.ComputeOrientations();
}

} // namespace vdt
