// Names of files, folders' content, and the typed chunk file that scenes are made of.
#pragma once

#include "c4d_basetime.h"
#include "c4d_string.h"
#include "ge_math.h"

#include <memory>

class BaseContainer;
class BaseDocument;
class GeData;

namespace host {
class HyperStream;
struct FolderListing;
} // namespace host

enum FILESELECTTYPE {
    FILESELECTTYPE_ANYTHING = 0,
    FILESELECTTYPE_IMAGES = 1,
    FILESELECTTYPE_SCENES = 2,
    FILESELECTTYPE_COFFEE = 3,
    FILESELECTTYPE_BODYPAINT = 4
} ENUM_END_LIST(FILESELECTTYPE);

enum FILESELECT { FILESELECT_LOAD = 0, FILESELECT_SAVE = 1, FILESELECT_DIRECTORY = 2 } ENUM_END_LIST(FILESELECT);

enum FILEERROR {
    FILEERROR_NONE = 0,
    FILEERROR_OPEN = -1,
    FILEERROR_CLOSE = -2,
    FILEERROR_READ = -3,
    FILEERROR_WRITE = -4,
    FILEERROR_SEEK = -5,
    FILEERROR_INVALID = -6,
    FILEERROR_OUTOFMEMORY = -7,
    FILEERROR_USERBREAK = -8,
    FILEERROR_WRONG_VALUE = -100,
    FILEERROR_CHUNK_NUMBER = -102,
    FILEERROR_VALUE_NO_CHUNK = -103,
    FILEERROR_FILE_END = -104,
    FILEERROR_UNKNOWN_VALUE = -105
} ENUM_END_LIST(FILEERROR);

enum FILEOPEN { FILEOPEN_READ = 1, FILEOPEN_WRITE = 2 } ENUM_END_LIST(FILEOPEN);
enum FILEDIALOG { FILEDIALOG_NONE = 0, FILEDIALOG_ANY = 1, FILEDIALOG_IGNOREOPEN = 2 } ENUM_END_LIST(FILEDIALOG);

/// A path, a folder or nothing. Keeps the text that it was given, with slashes or backslashes; either separates.
class Filename {
public:
    Filename() = default;
    Filename(const Char* path) : text(path) {}
    Filename(const String& path) : text(path) {}

    Bool Content() const { return text.Content(); }
    String GetString() const { return text; }
    void SetString(const String& path) { text = path; }
    void CopyTo(Filename* destination) const { *destination = *this; }

    Filename GetFile() const; // the last part, with its suffix
    String GetFileString() const;
    Filename GetDirectory() const; // all before it, without a separator at the end
    void SetFile(const Filename& file);
    void SetDirectory(const Filename& directory);

    String GetSuffix() const; // behind the last dot; empty if there is none
    void SetSuffix(const String& suffix);
    Bool CheckSuffix(const String& suffix) const; // without regard to case
    void ClearSuffix();                           // one suffix, of at most seven characters
    void ClearSuffixComplete();                   // one suffix, however long

    /// Asks the user. False, with nothing changed, if the user cancels.
    Bool FileSelect(FILESELECTTYPE type, FILESELECT flags, const String& title, const String& force_suffix = String());

    Filename& operator+=(const Filename& part);
    friend Filename operator+(const Filename& folder, const Filename& part);
    friend Bool operator==(const Filename& a, const Filename& b) { return a.text == b.text; }
    friend Bool operator!=(const Filename& a, const Filename& b) { return a.text != b.text; }

private:
    String text;
};

Bool GeFExist(const Filename& name, Bool isdir = false);

#define BROWSEFILES_CALCSIZE 1
#define BROWSEFILES_SUPPRESSCACHING 2

/// Walks over a folder's entries, sorted by name.
class BrowseFiles {
public:
    static BrowseFiles* Alloc();
    static void Free(BrowseFiles*& browse);

    void Init(const Filename& directory, Int32 flags);
    Bool GetNext();
    Filename GetFilename(); // the bare name
    Bool IsDir();

private:
    BrowseFiles();
    ~BrowseFiles();

    std::unique_ptr<host::FolderListing> listing;
};

enum HYPERFILEVALUE {
    HYPERFILEVALUE_NONE = 0,
    HYPERFILEVALUE_START = 1,
    HYPERFILEVALUE_STOP = 2,
    HYPERFILEVALUE_CSTOP = 3,
    HYPERFILEVALUE_CHAR = 11,
    HYPERFILEVALUE_UCHAR = 12,
    HYPERFILEVALUE_INT16 = 13,
    HYPERFILEVALUE_UINT16 = 14,
    HYPERFILEVALUE_INT32 = 15,
    HYPERFILEVALUE_UINT32 = 16,
    HYPERFILEVALUE_INT64 = 17,
    HYPERFILEVALUE_UINT64 = 18,
    HYPERFILEVALUE_FLOAT = 19,
    HYPERFILEVALUE_FLOAT64 = 20,
    HYPERFILEVALUE_BOOL = 21,
    HYPERFILEVALUE_TIME = 22,
    HYPERFILEVALUE_VECTOR = 23,
    HYPERFILEVALUE_VECTOR64 = 24,
    HYPERFILEVALUE_MATRIX = 25,
    HYPERFILEVALUE_MATRIX64 = 26,
    HYPERFILEVALUE_VECTOR32 = 27,
    HYPERFILEVALUE_MATRIX32 = 28,
    HYPERFILEVALUE_FLOAT32 = 29,
    HYPERFILEVALUE_MEMORY = 128,
    HYPERFILEVALUE_IMAGE = 129,
    HYPERFILEVALUE_STRING = 130,
    HYPERFILEVALUE_FILENAME = 131,
    HYPERFILEVALUE_CONTAINER = 132,
    HYPERFILEVALUE_ALIASLINK = 138,
    HYPERFILEVALUE_LMEMORY = 139,
    HYPERFILEVALUE_ARRAY = 140,
    HYPERFILEVALUE_UUID = 141
} ENUM_END_LIST(HYPERFILEVALUE);

/// A file of typed values in nested chunks, read in the order in which it was written. All operations are false on an
/// error and where the next value is of another type. In the callbacks of nodes and data types the file is the host's;
/// who reads fewer values than were written loses nothing, the host goes on behind the chunk.
class HyperFile {
public:
    static HyperFile* Alloc();
    static void Free(HyperFile*& file);

    Bool Open(Int32 ident, const Filename& name, FILEOPEN mode, FILEDIALOG error_dialog);
    Bool Close();
    FILEERROR GetError() const;
    void SetError(FILEERROR error);
    Int32 GetFileVersion() const;
    void SetFileVersion(Int32 version);
    BaseDocument* GetDocument() const;

    Bool ReadUChar(UChar* value);
    Bool ReadInt32(Int32* value);
    Bool ReadUInt32(UInt32* value);
    Bool ReadInt64(Int64* value);
    Bool ReadUInt64(UInt64* value);
    Bool ReadFloat(Float* value);
    Bool ReadFloat32(Float32* value);
    Bool ReadBool(Bool* value);
    Bool ReadTime(BaseTime* value);
    Bool ReadVector(Vector* value);
    Bool ReadMatrix(Matrix* value);
    Bool ReadString(String* value);
    Bool ReadFilename(Filename* value);
    Bool ReadGeData(GeData* value);
    Bool ReadContainer(BaseContainer* value, Bool flush);
    Bool ReadMemory(void** data, Int* size); // the caller's, freed with DeleteMem

    Bool WriteUChar(UChar value);
    Bool WriteInt32(Int32 value);
    Bool WriteUInt32(UInt32 value);
    Bool WriteInt64(Int64 value);
    Bool WriteUInt64(UInt64 value);
    Bool WriteFloat(Float value);
    Bool WriteFloat32(Float32 value);
    Bool WriteBool(Bool value);
    Bool WriteTime(const BaseTime& value);
    Bool WriteVector(const Vector& value);
    Bool WriteMatrix(const Matrix& value);
    Bool WriteString(const String& value);
    Bool WriteFilename(const Filename& value);
    Bool WriteGeData(const GeData& value);
    Bool WriteContainer(const BaseContainer& value);
    Bool WriteMemory(const void* data, Int size);

    Bool WriteChunkStart(Int32 id, Int32 level);
    Bool WriteChunkEnd();
    Bool ReadChunkStart(Int32* id, Int32* level);
    Bool ReadChunkEnd();
    Bool SkipToEndChunk();
    Bool ReadValueHeader(HYPERFILEVALUE* type);
    Bool SkipValue(HYPERFILEVALUE type);

private:
    friend class host::HyperStream;
    HyperFile();
    ~HyperFile();

    std::unique_ptr<host::HyperStream> stream;
};
