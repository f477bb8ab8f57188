// An ordered list of values under ids. Ids need not be unique; who asks for one gets the first entry.
#pragma once

#include "c4d_gedata.h"

#include <vector>

class BaseMaterial;
class BaseObject;
class DescID;
enum COPYFLAGS : Int32;

class BaseContainer {
public:
    BaseContainer() = default;
    explicit BaseContainer(Int32 containerId) : id(containerId) {}
    BaseContainer(const BaseContainer& other) : id(other.id), entries(other.entries) {}
    BaseContainer(BaseContainer&& other) noexcept : id(other.id), entries(std::move(other.entries)) {}
    // An assignment is one more change of this container: its count never falls.
    BaseContainer& operator=(const BaseContainer& other);
    BaseContainer& operator=(BaseContainer&& other) noexcept;

    Int32 GetId() const { return id; }
    void SetId(Int32 containerId) { id = containerId; }

    void FlushAll();
    Bool RemoveData(Int32 entry);
    Bool RemoveIndex(Int32 index);
    Int32 FindIndex(Int32 entry, GeData** data = nullptr) const; // NOTOK if there is none
    Int32 GetIndexId(Int32 index) const;                         // NOTOK past the end
    GeData* GetIndexData(Int32 index) const;                     // null past the end

    GeData* InsData(Int32 entry, const GeData& data); // appends
    GeData* SetData(Int32 entry, const GeData& data); // overwrites or appends
    const GeData& GetData(Int32 entry) const;         // nil if there is none
    const GeData* GetDataPointer(Int32 entry) const;
    Int32 GetType(Int32 entry) const;

    Bool GetBool(Int32 entry, Bool preset = false) const;
    Int32 GetInt32(Int32 entry, Int32 preset = 0) const;
    Int64 GetInt64(Int32 entry, Int64 preset = 0) const;
    Float GetFloat(Int32 entry, Float preset = 0.0) const;
    Vector GetVector(Int32 entry, const Vector& preset = Vector()) const;
    String GetString(Int32 entry, const String& preset = String()) const;
    Filename GetFilename(Int32 entry, const Filename& preset = Filename()) const;
    BaseTime GetTime(Int32 entry, const BaseTime& preset = BaseTime()) const;
    void* GetVoid(Int32 entry, void* preset = nullptr) const;
    BaseContainer GetContainer(Int32 entry) const; // a copy; empty if there is none
    BaseContainer* GetContainerInstance(Int32 entry);
    const BaseContainer* GetContainerInstance(Int32 entry) const;
    const CustomDataType* GetCustomDataType(Int32 entry, Int32 datatype) const;
    BaseLink* GetBaseLink(Int32 entry) const;
    BaseList2D* GetLink(Int32 entry, const BaseDocument* doc, Int32 instanceof = 0) const;
    BaseObject* GetObjectLink(Int32 entry, const BaseDocument* doc) const;
    BaseMaterial* GetMaterialLink(Int32 entry, const BaseDocument* doc) const;

    void SetBool(Int32 entry, Bool value);
    void SetInt32(Int32 entry, Int32 value);
    void SetInt64(Int32 entry, Int64 value);
    void SetFloat(Int32 entry, Float value);
    void SetVector(Int32 entry, const Vector& value);
    void SetString(Int32 entry, const String& value);
    void SetFilename(Int32 entry, const Filename& value);
    void SetTime(Int32 entry, const BaseTime& value);
    void SetVoid(Int32 entry, void* value);
    void SetContainer(Int32 entry, const BaseContainer& value);
    void SetLink(Int32 entry, C4DAtomGoal* target);

    void MergeContainer(const BaseContainer& source);
    BaseContainer* GetClone(COPYFLAGS flags, AliasTrans* trans) const; // the caller's
    Bool CopyTo(BaseContainer* destination, COPYFLAGS flags, AliasTrans* trans) const;
    /// Counts changes of this container's own entries.
    UInt32 GetDirty() const { return changes; }

    friend Bool operator==(const BaseContainer& a, const BaseContainer& b);
    friend Bool operator!=(const BaseContainer& a, const BaseContainer& b) { return !(a == b); }

private:
    struct Entry {
        Int32 id;
        GeData data;
    };

    Int32 id = 0;
    std::vector<Entry> entries;
    UInt32 changes = 0;
};

/// Steps over a container that does not change meanwhile.
class BrowseContainer {
public:
    explicit BrowseContainer(const BaseContainer* container) : browsed(container) {}

    void Reset() { next = 0; }
    Bool GetNext(Int32* entry, GeData** data);

private:
    const BaseContainer* browsed;
    Int32 next = 0;
};
