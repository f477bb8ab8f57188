#include "c4d_basecontainer.h"
#include "c4d_baselist.h"
#include "c4d_basematerial.h"
#include "c4d_baseobject.h"

#include <algorithm>

namespace {

Bool isNumber(const GeData* data)
{
    if (!data) return false;
    const Int32 type = data->GetType();
    return type == DA_LONG || type == DA_LLONG || type == DA_REAL;
}

Bool hasType(const GeData* data, Int32 type)
{
    return data && data->GetType() == type;
}

} // namespace

BaseContainer& BaseContainer::operator=(const BaseContainer& other)
{
    // By way of a copy: `other` may be a part of this container.
    return *this = BaseContainer(other);
}

BaseContainer& BaseContainer::operator=(BaseContainer&& other) noexcept
{
    id = other.id;
    const std::vector<Entry> old = std::exchange(entries, std::move(other.entries));
    ++changes;
    return *this;
}

void BaseContainer::FlushAll()
{
    entries.clear();
    ++changes;
}

Bool BaseContainer::RemoveData(Int32 entry)
{
    return RemoveIndex(FindIndex(entry));
}

Bool BaseContainer::RemoveIndex(Int32 index)
{
    if (!GetIndexData(index)) return false;
    entries.erase(entries.begin() + index);
    ++changes;
    return true;
}

Int32 BaseContainer::FindIndex(Int32 entry, GeData** data) const
{
    const auto found = std::ranges::find(entries, entry, &Entry::id);
    if (found == entries.end()) return NOTOK;
    const auto index = static_cast<Int32>(found - entries.begin());
    if (data) *data = GetIndexData(index);
    return index;
}

Int32 BaseContainer::GetIndexId(Int32 index) const
{
    return GetIndexData(index) ? entries[static_cast<size_t>(index)].id : NOTOK;
}

GeData* BaseContainer::GetIndexData(Int32 index) const
{
    if (index < 0 || static_cast<size_t>(index) >= entries.size()) return nullptr;
    // The API lets callers edit entries through a container that they only read.
    return const_cast<GeData*>(&entries[static_cast<size_t>(index)].data);
}

GeData* BaseContainer::InsData(Int32 entry, const GeData& data)
{
    Entry added{entry, data}; // before the list grows: `data` may stand in it
    ++changes;
    return &entries.emplace_back(std::move(added)).data;
}

GeData* BaseContainer::SetData(Int32 entry, const GeData& data)
{
    GeData* present = nullptr;
    if (FindIndex(entry, &present) == NOTOK) return InsData(entry, data);
    *present = data;
    ++changes;
    return present;
}

const GeData& BaseContainer::GetData(Int32 entry) const
{
    static const GeData nil;
    const GeData* data = GetDataPointer(entry);
    return data ? *data : nil;
}

const GeData* BaseContainer::GetDataPointer(Int32 entry) const
{
    const auto found = std::ranges::find(entries, entry, &Entry::id);
    return found == entries.end() ? nullptr : &found->data;
}

Int32 BaseContainer::GetType(Int32 entry) const
{
    return GetData(entry).GetType();
}

Bool BaseContainer::GetBool(Int32 entry, Bool preset) const
{
    const GeData* data = GetDataPointer(entry);
    return isNumber(data) ? data->GetBool() : preset;
}

Int32 BaseContainer::GetInt32(Int32 entry, Int32 preset) const
{
    const GeData* data = GetDataPointer(entry);
    return isNumber(data) ? data->GetInt32() : preset;
}

Int64 BaseContainer::GetInt64(Int32 entry, Int64 preset) const
{
    const GeData* data = GetDataPointer(entry);
    return isNumber(data) ? data->GetInt64() : preset;
}

Float BaseContainer::GetFloat(Int32 entry, Float preset) const
{
    const GeData* data = GetDataPointer(entry);
    return isNumber(data) ? data->GetFloat() : preset;
}

Vector BaseContainer::GetVector(Int32 entry, const Vector& preset) const
{
    const GeData* data = GetDataPointer(entry);
    return hasType(data, DA_VECTOR) ? data->GetVector() : preset;
}

String BaseContainer::GetString(Int32 entry, const String& preset) const
{
    const GeData* data = GetDataPointer(entry);
    return hasType(data, DA_STRING) ? data->GetString() : preset;
}

Filename BaseContainer::GetFilename(Int32 entry, const Filename& preset) const
{
    const GeData* data = GetDataPointer(entry);
    return hasType(data, DA_FILENAME) ? data->GetFilename() : preset;
}

BaseTime BaseContainer::GetTime(Int32 entry, const BaseTime& preset) const
{
    const GeData* data = GetDataPointer(entry);
    return hasType(data, DA_TIME) ? data->GetTime() : preset;
}

void* BaseContainer::GetVoid(Int32 entry, void* preset) const
{
    const GeData* data = GetDataPointer(entry);
    return hasType(data, DA_VOID) ? data->GetVoid() : preset;
}

BaseContainer BaseContainer::GetContainer(Int32 entry) const
{
    const BaseContainer* stored = GetContainerInstance(entry);
    return stored ? *stored : BaseContainer();
}

BaseContainer* BaseContainer::GetContainerInstance(Int32 entry)
{
    return GetData(entry).GetContainer();
}

const BaseContainer* BaseContainer::GetContainerInstance(Int32 entry) const
{
    return GetData(entry).GetContainer();
}

const CustomDataType* BaseContainer::GetCustomDataType(Int32 entry, Int32 datatype) const
{
    return GetData(entry).GetCustomDataType(datatype);
}

BaseLink* BaseContainer::GetBaseLink(Int32 entry) const
{
    return GetData(entry).GetBaseLink();
}

BaseList2D* BaseContainer::GetLink(Int32 entry, const BaseDocument* doc, Int32 instanceof) const
{
    return GetData(entry).GetLink(doc, instanceof);
}

BaseObject* BaseContainer::GetObjectLink(Int32 entry, const BaseDocument* doc) const
{
    return static_cast<BaseObject*>(GetLink(entry, doc, Obase));
}

BaseMaterial* BaseContainer::GetMaterialLink(Int32 entry, const BaseDocument* doc) const
{
    return static_cast<BaseMaterial*>(GetLink(entry, doc, Mbase));
}

void BaseContainer::SetBool(Int32 entry, Bool value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetInt32(Int32 entry, Int32 value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetInt64(Int32 entry, Int64 value)
{
    SetData(entry, GeData(value, LLONGVALUE));
}

void BaseContainer::SetFloat(Int32 entry, Float value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetVector(Int32 entry, const Vector& value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetString(Int32 entry, const String& value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetFilename(Int32 entry, const Filename& value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetTime(Int32 entry, const BaseTime& value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetVoid(Int32 entry, void* value)
{
    SetData(entry, GeData(value, VOIDVALUE));
}

void BaseContainer::SetContainer(Int32 entry, const BaseContainer& value)
{
    SetData(entry, GeData(value));
}

void BaseContainer::SetLink(Int32 entry, C4DAtomGoal* target)
{
    GeData* data = SetData(entry, GeData(static_cast<BaseList2D*>(nullptr)));
    data->GetBaseLink()->SetLink(target);
}

void BaseContainer::MergeContainer(const BaseContainer& source)
{
    if (&source == this) return;
    for (const Entry& entry : source.entries) SetData(entry.id, entry.data);
}

BaseContainer* BaseContainer::GetClone(COPYFLAGS flags, AliasTrans* trans) const
{
    auto* clone = NewObjClear(BaseContainer);
    if (clone && !CopyTo(clone, flags, trans)) DeleteObj(clone);
    return clone;
}

Bool BaseContainer::CopyTo(BaseContainer* destination, COPYFLAGS, AliasTrans* trans) const
{
    if (destination == this) return true;
    std::vector<Entry> copies(entries.size());
    Bool complete = true;
    for (size_t index = 0; index < entries.size(); ++index) {
        copies[index].id = entries[index].id;
        if (!entries[index].data.CopyData(&copies[index].data, trans)) complete = false;
    }
    destination->id = id;
    destination->entries = std::move(copies);
    ++destination->changes;
    return complete;
}

Bool operator==(const BaseContainer& a, const BaseContainer& b)
{
    return a.id == b.id && std::ranges::equal(a.entries, b.entries, [](const auto& mine, const auto& others) {
               return mine.id == others.id && mine.data == others.data;
           });
}

Bool BrowseContainer::GetNext(Int32* entry, GeData** data)
{
    GeData* current = browsed ? browsed->GetIndexData(next) : nullptr;
    if (!current) return false;
    if (entry) *entry = browsed->GetIndexId(next);
    if (data) *data = current;
    ++next;
    return true;
}
