// A plug-in of the tests' own: a data type "note" and an object "keeper", which has notes in its parameters and numbers
// beside them.
#pragma once

#include "c4d.h"

#include <vector>

namespace host::test {

constexpr Int32 kNoteType = 1999001, kNoteLevel = 3;
constexpr Int32 kKeeper = 1999002, kKeeperLevel = 7;

struct Note : iCustomDataType<Note> {
    Note() { ++alive; }
    Note(const Note& other) : iCustomDataType(other), text(other.text), number(other.number) { ++alive; }
    Note& operator=(const Note& other) = default;
    ~Note() { --alive; }

    String text;
    Int32 number = 0;
    Int32 readLevel = -1;

    static inline int alive = 0;
};

/// Writes a number and a text; a negative number makes it refuse what it reads.
class NoteType final : public CustomDataTypeClass {
public:
    Int32 GetId() override { return kNoteType; }
    CustomDataType* AllocData() override { return Note::Alloc(); }
    void FreeData(CustomDataType* data) override { delete static_cast<Note*>(data); }
    Bool CopyData(const CustomDataType* src, CustomDataType* dest, AliasTrans*) override
    {
        *static_cast<Note*>(dest) = *static_cast<const Note*>(src);
        return true;
    }
    Int32 Compare(const CustomDataType* d1, const CustomDataType* d2) override
    {
        const auto &a = *static_cast<const Note*>(d1), &b = *static_cast<const Note*>(d2);
        return a.number != b.number ? (a.number < b.number ? -1 : 1) : a.text.Compare(b.text);
    }
    Bool WriteData(const CustomDataType* d, HyperFile* hf) override
    {
        const Note& note = *static_cast<const Note*>(d);
        hf->WriteChunkEnd();       // not its to end
        hf->WriteChunkStart(1, 1); // left open
        return hf->WriteInt32(note.number) && hf->WriteString(note.text);
    }
    Bool ReadData(CustomDataType* d, HyperFile* hf, Int32 level) override
    {
        Note& note = *static_cast<Note*>(d);
        note.readLevel = level;
        Int32 id = 0;
        hf->ReadChunkEnd(); // not its to end
        return hf->ReadChunkStart(&id, &id) && hf->ReadInt32(&note.number) && note.number >= 0 &&
               hf->ReadString(&note.text);
    }
    const Char* GetResourceSym() override { return "NOTE"; }
};

/// What keepers saw while they were read, in order.
struct KeeperReading {
    Int32 level;
    Int32 parameter; // 1000 of the container
    Int32 initOnly;  // 1001, which Init sets
    Bool hadDocument;
};

class KeeperData final : public ObjectData {
public:
    static NodeData* Alloc() { return NewObjClear(KeeperData); }
    static inline std::vector<KeeperReading> readings;

    Bool Init(GeListNode* node) override
    {
        BaseContainer& container = *static_cast<BaseList2D*>(node)->GetDataInstance();
        container.SetInt32(1000, 1);
        container.SetInt32(1001, 2);
        return true;
    }
    /// The numbers; the first, if negative, makes `Read` refuse or, at -2, `Write` fail.
    Bool Write(GeListNode*, HyperFile* hf) override
    {
        Bool written = hf->WriteInt32(static_cast<Int32>(numbers.size()));
        for (const Int32 number : numbers) written = written && hf->WriteInt32(number);
        return written && (numbers.empty() || numbers[0] != -2);
    }
    Bool Read(GeListNode* node, HyperFile* hf, Int32 level) override
    {
        const BaseContainer& container = *static_cast<BaseList2D*>(node)->GetDataInstance();
        readings.push_back({level, container.GetInt32(1000), container.GetInt32(1001), node->GetDocument() != nullptr});
        Int32 count = 0, number = 0;
        if (!hf->ReadInt32(&count)) return false;
        while (count-- > 0 && hf->ReadInt32(&number)) numbers.push_back(number);
        return numbers.empty() || numbers[0] >= 0;
    }
    Bool CopyTo(NodeData* dest, GeListNode*, GeListNode*, COPYFLAGS, AliasTrans*) override
    {
        static_cast<KeeperData*>(dest)->numbers = numbers;
        return true;
    }

    std::vector<Int32> numbers;
};

inline Bool RegisterNotes()
{
    KeeperData::readings.clear();
    return RegisterCustomDataTypePlugin("Note", CUSTOMDATATYPE_INFO_LOADSAVE, NewObjClear(NoteType), kNoteLevel) &&
           RegisterObjectPlugin(kKeeper, "Keeper", OBJECT_GENERATOR, KeeperData::Alloc, String(), nullptr,
                                kKeeperLevel);
}

inline GeData NoteOf(Int32 number, const String& text)
{
    Note note;
    note.number = number;
    note.text = text;
    return GeData(kNoteType, note);
}

} // namespace host::test
