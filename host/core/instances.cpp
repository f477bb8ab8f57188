#include "core/instances.h"

#include "oinstance.h"

#include <cstring>
#include <unordered_set>

namespace host {
namespace {

ObjectCore* linkedObject(const ObjectCore& instance, const DocumentCore& document)
{
    return CoreOf(instance.container.GetObjectLink(INSTANCEOBJECT_LINK, document.As<BaseDocument>()));
}

// Looks for instances below an object and in its caches, and follows them.
class CircleSearch {
public:
    CircleSearch(const ObjectCore& instance, const DocumentCore& searched) : start(instance), document(searched) {}

    bool meetsStart(const ObjectCore& object)
    {
        if (&object == &start) return true;
        if (!seen.insert(&object).second) return false;
        if (object.IsInstanceOf(Oinstance)) {
            const ObjectCore* target = linkedObject(object, document);
            if (target && meetsStart(*target)) return true;
        }
        return anyMeets(object.Cache()) || anyMeets(object.firstChild);
    }

private:
    bool anyMeets(const NodeCore* first)
    {
        for (const NodeCore* object = first; object; object = object->next) {
            if (meetsStart(static_cast<const ObjectCore&>(*object))) return true;
        }
        return false;
    }

    const ObjectCore& start;
    const DocumentCore& document;
    std::unordered_set<const ObjectCore*> seen;
};

// A number that changes with whatever the object shows in its own frame.
UInt32 shownStateOf(const ObjectCore& object)
{
    UInt32 state = static_cast<UInt32>(object.GetMarker());
    const auto mix = [&state](UInt32 value) { state = (state ^ value) * 16777619U; };
    const auto mixPart = [&mix](const ObjectCore& part) {
        // Not the count of moves, which rises with every move of something above.
        UInt32 words[sizeof(Matrix) / sizeof(UInt32)];
        std::memcpy(words, &part.Local(), sizeof words);
        for (const UInt32 word : words) mix(word);
        mix(shownStateOf(part));
    };

    mix(object.Dirty(DIRTYFLAGS_DATA | DIRTYFLAGS_CACHE));
    mix(static_cast<UInt32>(object.bits & BIT_CONTROLOBJECT));
    const NodeCore* const chains[] = {object.Cache(), object.firstChild};
    for (const NodeCore* part : chains) {
        for (; part; part = part->next) mixPart(static_cast<const ObjectCore&>(*part));
    }
    return state;
}

NodeCore* group(const String& name)
{
    NodeCore* made = AllocNode(NodeKind::Object, Onull);
    if (made) made->name = name;
    return made;
}

// What `object` shows, as an object of its own in the frame `place`; null if it shows nothing.
NodeCore* shownClone(const ObjectCore& object, const Matrix& place, std::size_t& clonesLeft)
{
    if (clonesLeft == 0) return nullptr;
    --clonesLeft;

    const auto clonePart = [&](const NodeCore& part, const Matrix& before) {
        const ObjectCore& shown = static_cast<const ObjectCore&>(part);
        return shownClone(shown, before * shown.Local(), clonesLeft);
    };
    const ObjectCore* cache = object.Cache();
    if (cache && !cache->next && !object.firstChild) return clonePart(*cache, place);

    constexpr COPYFLAGS kAlone = COPYFLAGS_CACHE_BUILD | COPYFLAGS_NO_HIERARCHY;
    const bool replaced = cache || (object.bits & BIT_CONTROLOBJECT);
    NodeCore* clone = replaced ? group(object.name) : CloneNode(object, kAlone, nullptr);
    if (!clone) return nullptr;
    static_cast<ObjectCore*>(clone)->SetLocal(place);
    const NodeCore* const chains[] = {cache, object.firstChild};
    for (const NodeCore* part : chains) {
        for (; part; part = part->next) {
            if (NodeCore* shown = clonePart(*part, Matrix())) clone->InsertChild(*shown, clone->lastChild);
        }
    }
    return clone;
}

} // namespace

ObjectCore* InstanceTarget(const ObjectCore& instance, const DocumentCore& document)
{
    if (instance.container.GetBool(INSTANCEOBJECT_RENDERINSTANCE)) return nullptr;
    ObjectCore* target = linkedObject(instance, document);
    if (!target || CircleSearch(instance, document).meetsStart(*target)) return nullptr;
    return target;
}

void UpdateInstance(ObjectCore& instance, ObjectCore* target, std::size_t& clonesLeft)
{
    if (!target) {
        instance.SetCache(nullptr);
        return;
    }
    const UInt32 state = shownStateOf(*target);
    if (instance.Cache() && state == instance.shownState) return;
    instance.SetCache(static_cast<ObjectCore*>(shownClone(*target, Matrix(), clonesLeft)));
    instance.shownState = state;
}

} // namespace host
