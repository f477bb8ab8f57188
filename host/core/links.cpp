// Weak links between nodes, and how they follow when nodes are copied together.
#include "core/document.h"
#include "core/node.h"

#include <map>
#include <set>

/// What was copied into what, and the copied links that wait for the end of the copying.
struct AliasTrans::Pairs {
    std::map<UInt64, UInt64> copies; // markers
    std::set<BaseLink*> links;
};

namespace host {

void NodeCore::NoteCopy(AliasTrans* translation, Marker from, Marker to)
{
    if (translation) translation->pairs->copies[from] = to;
}

void NodeCore::AwaitTranslation(BaseLink& link, AliasTrans* translation)
{
    ForgetLink(link);
    if (!translation || !link.marker) return;
    translation->pairs->links.insert(&link);
    link.waiting = translation;
}

void NodeCore::ForgetLink(BaseLink& link)
{
    if (link.waiting) link.waiting->pairs->links.erase(&link);
    link.waiting = nullptr;
}

void NodeCore::ForgetLinks(AliasTrans& translation)
{
    for (BaseLink* link : translation.pairs->links) link->waiting = nullptr;
    translation.pairs->links.clear();
}

void NodeCore::Translate(AliasTrans& translation, bool keepOldTargets)
{
    for (BaseLink* link : translation.pairs->links) {
        const auto copy = translation.pairs->copies.find(link->marker);
        if (copy != translation.pairs->copies.end())
            link->marker = copy->second;
        else if (!keepOldTargets)
            link->marker = 0;
    }
    ForgetLinks(translation);
}

} // namespace host

AliasTrans::AliasTrans() : pairs(std::make_unique<Pairs>())
{
}

AliasTrans::~AliasTrans()
{
    host::NodeCore::ForgetLinks(*this);
}

AliasTrans* AliasTrans::Alloc()
{
    return new AliasTrans;
}

void AliasTrans::Free(AliasTrans*& trans)
{
    delete trans;
    trans = nullptr;
}

Bool AliasTrans::Init(BaseDocument*)
{
    pairs->copies.clear();
    return true;
}

void AliasTrans::Translate(Bool connect_oldgoals)
{
    host::NodeCore::Translate(*this, connect_oldgoals);
}

BaseLink::BaseLink(const BaseLink& other) : marker(other.marker)
{
}

BaseLink& BaseLink::operator=(const BaseLink& other)
{
    host::NodeCore::ForgetLink(*this);
    marker = other.marker;
    return *this;
}

BaseLink::~BaseLink()
{
    host::NodeCore::ForgetLink(*this);
}

BaseLink* BaseLink::Alloc()
{
    return new BaseLink;
}

void BaseLink::Free(BaseLink*& link)
{
    delete link;
    link = nullptr;
}

void BaseLink::SetLink(C4DAtomGoal* target)
{
    host::NodeCore::ForgetLink(*this);
    marker = target ? host::CoreOf(target)->GetMarker() : 0;
}

BaseList2D* BaseLink::GetLink(const BaseDocument* doc, Int32 instanceof) const
{
    const host::NodeCore* target = host::FindNode(marker);
    if (!target || (doc && target->Document() != host::CoreOf(doc))) return nullptr;
    return instanceof &&!target->IsInstanceOf(instanceof) ? nullptr : target->As<>();
}

BaseList2D* BaseLink::ForceGetLink() const
{
    return GetLink(nullptr);
}

Bool BaseLink::CopyTo(BaseLink* destination, COPYFLAGS, AliasTrans* trans) const
{
    *destination = *this;
    host::NodeCore::AwaitTranslation(*destination, trans);
    return true;
}

BaseLink* BaseLink::GetClone(COPYFLAGS flags, AliasTrans* trans) const
{
    BaseLink* clone = Alloc();
    CopyTo(clone, flags, trans);
    return clone;
}
