#include "core/hyper_stream.h"

#include "core/disk_file.h"
#include "core/ge_value.h"
#include "core/native_path.h"
#include "core/node_class.h"
#include "core/string_access.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <optional>

namespace host {
namespace {

constexpr std::array<uint8_t, 8> kMagic = {'H', 'O', 'S', 'T', 'F', 'I', 'L', 'E'};
constexpr UInt32 kFormatVersion = 1;
constexpr size_t kVersionPlace = 16; // of the content's version
constexpr size_t kLengthSize = sizeof(UInt64);

template <size_t Size>
using UnsignedOf =
    std::conditional_t<Size == 1, uint8_t,
                       std::conditional_t<Size == 2, uint16_t, std::conditional_t<Size == 4, uint32_t, uint64_t>>>;

// What stands between a tag and the value's end: a fixed number of bytes, and for some a length and as many more.
struct Shape {
    size_t fixed;
    bool hasLength;
};

std::optional<Shape> shapeOf(uint8_t tag)
{
    switch (tag) {
    case HYPERFILEVALUE_CHAR:
    case HYPERFILEVALUE_UCHAR:
    case HYPERFILEVALUE_BOOL: return Shape{1, false};
    case HYPERFILEVALUE_INT16:
    case HYPERFILEVALUE_UINT16: return Shape{2, false};
    case HYPERFILEVALUE_INT32:
    case HYPERFILEVALUE_UINT32:
    case HYPERFILEVALUE_FLOAT32: return Shape{4, false};
    case HYPERFILEVALUE_INT64:
    case HYPERFILEVALUE_UINT64:
    case HYPERFILEVALUE_FLOAT:
    case HYPERFILEVALUE_FLOAT64:
    case HYPERFILEVALUE_ALIASLINK: return Shape{8, false};
    case HYPERFILEVALUE_TIME: return Shape{16, false};
    case HYPERFILEVALUE_VECTOR: return Shape{24, false};
    case HYPERFILEVALUE_MATRIX: return Shape{96, false};
    case HYPERFILEVALUE_STRING:
    case HYPERFILEVALUE_FILENAME:
    case HYPERFILEVALUE_MEMORY: return Shape{0, true};
    case HYPERFILEVALUE_CONTAINER:
    case HyperStream::kGeDataTag: return Shape{4, true};
    case HYPERFILEVALUE_START: return Shape{8, true};
    default: return {};
    }
}

std::span<const uint8_t> bytesOf(std::string_view text)
{
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

String textOf(std::span<const uint8_t> utf8)
{
    return TextOf({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
}

// Where entries of a file go in a container: over the first entry of their id that was there before, else to the end.
class ContainerFiller {
public:
    explicit ContainerFiller(BaseContainer filled) : container(std::move(filled))
    {
        for (Int32 index = 0; container.GetIndexData(index); ++index)
            present.emplace(container.GetIndexId(index), index);
    }

    void add(Int32 id, const GeData& data)
    {
        const auto old = present.find(id);
        if (old == present.end()) {
            container.InsData(id, data);
            return;
        }
        *container.GetIndexData(old->second) = data;
        present.erase(old);
    }

    BaseContainer container;

private:
    std::map<Int32, Int32> present;
};

} // namespace

HyperFilePtr HyperStream::Write(Int32 ident)
{
    HyperFilePtr file(HyperFile::Alloc());
    Of(*file).startWriting(ident);
    return file;
}

HyperFilePtr HyperStream::Read(Int32 ident, std::span<const uint8_t> bytes)
{
    HyperFilePtr file(HyperFile::Alloc());
    return Of(*file).startReading(ident, bytes) ? std::move(file) : nullptr;
}

std::vector<uint8_t> HyperStream::takeBytes()
{
    mode = Mode::Closed;
    return std::move(own);
}

HyperStream::Fence::Fence(HyperFile& file)
    : stream(Of(file)),
      outerFloor(stream.floor),
      outerError(stream.error),
      outerErrorAt(stream.errorAt),
      outerFaults(stream.faults)
{
    stream.floor = stream.scopes.size();
}

HyperStream::Fence::~Fence()
{
    while (stream.scopes.size() > stream.floor) {
        if (stream.mode == Mode::Writing)
            stream.endLength();
        else
            stream.leave();
    }
    stream.floor = outerFloor;
    stream.error = outerError;
    stream.errorAt = outerErrorAt;
    stream.faults = outerFaults;
}

bool HyperStream::failAt(size_t place, FILEERROR code)
{
    ++faults;
    if (error == FILEERROR_NONE) {
        error = code;
        errorAt = place;
    }
    return false;
}

bool HyperStream::fail(FILEERROR code)
{
    return failAt(at, code);
}

bool HyperStream::canWrite()
{
    return mode == Mode::Writing || fail(FILEERROR_WRITE);
}

bool HyperStream::startReading(Int32 ident, std::span<const uint8_t> all)
{
    bytes = all;
    at = 0;
    limit = all.size();
    error = FILEERROR_NONE;
    mode = Mode::Reading;
    if (all.size() < kHeaderSize || !std::equal(kMagic.begin(), kMagic.end(), all.begin())) {
        mode = Mode::Closed;
        return fail(FILEERROR_INVALID);
    }
    at = kMagic.size();
    const auto format = getNumber<UInt32>();
    const auto kind = getNumber<Int32>();
    fileVersion = getNumber<Int32>();
    if (format == kFormatVersion && kind == ident) return true;
    mode = Mode::Closed;
    return failAt(kMagic.size(), FILEERROR_INVALID);
}

void HyperStream::startWriting(Int32 ident)
{
    mode = Mode::Writing;
    error = FILEERROR_NONE;
    own.assign(kMagic.begin(), kMagic.end());
    putNumber(kFormatVersion);
    putNumber(ident);
    putNumber(fileVersion);
    at = own.size();
}

template <class Number> void HyperStream::patch(size_t place, Number value)
{
    const auto number = std::bit_cast<UnsignedOf<sizeof(Number)>>(value);
    for (size_t byte = 0; byte < sizeof(Number); ++byte) own[place + byte] = static_cast<uint8_t>(number >> (8 * byte));
}

template <class Number> void HyperStream::putNumber(Number value)
{
    own.resize(own.size() + sizeof(Number));
    patch(own.size() - sizeof(Number), value);
}

template <class... Numbers> bool HyperStream::put(uint8_t tag, Numbers... values)
{
    if (!canWrite()) return false;
    own.push_back(tag);
    (putNumber(values), ...);
    at = own.size();
    return true;
}

bool HyperStream::putBytes(uint8_t tag, std::span<const uint8_t> content)
{
    if (!put(tag, static_cast<UInt64>(content.size()))) return false;
    own.insert(own.end(), content.begin(), content.end());
    at = own.size();
    return true;
}

void HyperStream::beginLength()
{
    scopes.push_back(own.size());
    putNumber(UInt64(0));
    at = own.size();
}

void HyperStream::endLength()
{
    const size_t place = scopes.back();
    scopes.pop_back();
    patch(place, static_cast<UInt64>(own.size() - place - kLengthSize));
}

template <class Number> Number HyperStream::getNumber()
{
    using Unsigned = UnsignedOf<sizeof(Number)>;
    uint64_t number = 0;
    for (size_t byte = 0; byte < sizeof(Number); ++byte) number |= uint64_t{bytes[at + byte]} << (8 * byte);
    at += sizeof(Number);
    return std::bit_cast<Number>(static_cast<Unsigned>(number));
}

// Whether the next value has the tag and the bytes that the tag promises.
bool HyperStream::has(uint8_t tag, size_t size)
{
    if (mode != Mode::Reading) return fail(FILEERROR_READ);
    if (at >= limit) return fail(FILEERROR_FILE_END);
    if (bytes[at] != tag) return fail(shapeOf(bytes[at]) ? FILEERROR_WRONG_VALUE : FILEERROR_UNKNOWN_VALUE);
    return limit - at - 1 >= size || fail(FILEERROR_FILE_END);
}

template <class... Numbers> bool HyperStream::take(uint8_t tag, Numbers*... values)
{
    if (!has(tag, (sizeof(Numbers) + ... + 0))) return false;
    ++at;
    ((*values = getNumber<Numbers>()), ...);
    return true;
}

bool HyperStream::takeBytes(uint8_t tag, std::span<const uint8_t>& content)
{
    const size_t start = at;
    UInt64 length = 0;
    if (!take(tag, &length)) return false;
    if (length > limit - at) {
        at = start;
        return fail(FILEERROR_FILE_END);
    }
    content = bytes.subspan(at, static_cast<size_t>(length));
    at += content.size();
    return true;
}

bool HyperStream::skip(uint8_t tag)
{
    const std::optional<Shape> shape = shapeOf(tag);
    if (!shape) return fail(FILEERROR_UNKNOWN_VALUE);
    if (!has(tag, shape->fixed + (shape->hasLength ? kLengthSize : 0))) return false;
    const size_t start = at;
    at += 1 + shape->fixed;
    const UInt64 length = shape->hasLength ? getNumber<UInt64>() : 0;
    if (length > limit - at) {
        at = start;
        return fail(FILEERROR_FILE_END);
    }
    at += static_cast<size_t>(length);
    return true;
}

// Enters a stretch of bytes, which ends no later than what encloses it.
void HyperStream::enter(UInt64 length)
{
    scopes.push_back(limit);
    if (length > limit - at)
        fail(FILEERROR_FILE_END);
    else
        limit = at + static_cast<size_t>(length);
}

void HyperStream::leave()
{
    at = limit;
    limit = scopes.back();
    scopes.pop_back();
}

UInt64 HyperStream::numberOf(const BaseLink& link) const
{
    if (!nodeNumbers) return 0;
    const auto found = nodeNumbers->find(GeValue::TargetOf(link));
    return found == nodeNumbers->end() ? 0 : found->second;
}

UInt64 HyperStream::markerFor(UInt64 number) const
{
    return firstMarker && number > 0 && number < kMostNodes ? firstMarker + number : 0;
}

bool HyperStream::putGeData(const GeData& value)
{
    if (!put(kGeDataTag, value.GetType())) return false;
    beginLength();
    const bool complete = putGeContent(value);
    endLength();
    return complete;
}

bool HyperStream::putGeContent(const GeData& value)
{
    switch (value.GetType()) {
    case DA_NIL:
    case DA_VOID: return true;
    case DA_LONG: return facade->WriteInt32(value.GetInt32());
    case DA_LLONG: return facade->WriteInt64(value.GetInt64());
    case DA_REAL: return facade->WriteFloat(value.GetFloat());
    case DA_TIME: return facade->WriteTime(value.GetTime());
    case DA_VECTOR: return facade->WriteVector(value.GetVector());
    case DA_MATRIX: return facade->WriteMatrix(value.GetMatrix());
    case DA_STRING: return facade->WriteString(value.GetString());
    case DA_FILENAME: return facade->WriteFilename(value.GetFilename());
    case DA_CONTAINER: return putContainer(*value.GetContainer());
    case DA_ALIASLINK: return put(HYPERFILEVALUE_ALIASLINK, numberOf(*value.GetBaseLink()));
    default: break;
    }
    return putCustomData(value) || fail(FILEERROR_WRITE);
}

bool HyperStream::putCustomData(const GeData& value)
{
    const Int32 type = value.GetType();
    CustomDataTypeClass* registered = FindCustomDataType(type);
    if (!registered || !facade->WriteInt32(CustomDataDiskLevel(type))) return false;
    const Fence fence(*facade);
    return registered->WriteData(value.GetCustomDataType(type), facade);
}

bool HyperStream::putContainer(const BaseContainer& value)
{
    if (depth >= kDeepest) return fail(FILEERROR_INVALID);
    if (!put(HYPERFILEVALUE_CONTAINER, value.GetId())) return false;
    beginLength();
    ++depth;
    bool complete = true;
    for (Int32 index = 0; const GeData* data = value.GetIndexData(index); ++index) {
        putNumber(value.GetIndexId(index));
        complete &= putGeData(*data);
    }
    --depth;
    endLength();
    return complete;
}

HyperStream::Taken HyperStream::takeGeData(GeData& value)
{
    const size_t start = at;
    Int32 type = DA_NIL;
    UInt64 length = 0;
    if (!take(kGeDataTag, &type, &length)) return Taken::Nothing;
    enter(length);
    GeData read;
    const bool whole = takeGeContent(type, read) || failAt(start, FILEERROR_UNKNOWN_VALUE);
    leave();
    if (!whole) return Taken::LeftOut;
    value = std::move(read);
    return Taken::Whole;
}

bool HyperStream::takeGeContent(Int32 type, GeData& value)
{
    const auto read = [&value](auto& file, auto reader, auto held) {
        if (!(file.*reader)(&held)) return false;
        value = GeData(held);
        return true;
    };
    switch (type) {
    case DA_NIL:
    case DA_VOID: return true;
    case DA_LONG: return read(*facade, &HyperFile::ReadInt32, Int32());
    case DA_REAL: return read(*facade, &HyperFile::ReadFloat, Float());
    case DA_TIME: return read(*facade, &HyperFile::ReadTime, BaseTime());
    case DA_VECTOR: return read(*facade, &HyperFile::ReadVector, Vector());
    case DA_MATRIX: return read(*facade, &HyperFile::ReadMatrix, Matrix());
    case DA_STRING: return read(*facade, &HyperFile::ReadString, String());
    case DA_FILENAME: return read(*facade, &HyperFile::ReadFilename, Filename());
    case DA_LLONG: {
        Int64 number = 0;
        const bool whole = take(HYPERFILEVALUE_INT64, &number);
        value.SetInt64(number);
        return whole;
    }
    case DA_CONTAINER: {
        value.SetDefault(DA_CONTAINER);
        takeContainer(*value.GetContainer(), true); // as far as it can be read
        return true;
    }
    case DA_ALIASLINK: {
        UInt64 number = 0;
        const bool whole = take(HYPERFILEVALUE_ALIASLINK, &number);
        value = GeValue::LinkTo(markerFor(number));
        return whole;
    }
    default: return takeCustomData(type, value);
    }
}

bool HyperStream::takeCustomData(Int32 type, GeData& value)
{
    CustomDataTypeClass* registered = FindCustomDataType(type);
    Int32 level = 0;
    if (!registered || !take(HYPERFILEVALUE_INT32, &level)) return false;
    value.SetDefault(type);
    CustomDataType* custom = value.GetCustomDataType(type);
    const Fence fence(*facade);
    return custom && registered->ReadData(custom, facade, level);
}

bool HyperStream::takeContainer(BaseContainer& value, bool flush)
{
    if (depth >= kDeepest) return fail(FILEERROR_INVALID);
    Int32 id = 0;
    UInt64 length = 0;
    if (!take(HYPERFILEVALUE_CONTAINER, &id, &length)) return false;

    ContainerFiller filler(flush ? BaseContainer() : value);
    const size_t faultsBefore = faults; // those of inner containers count too
    enter(length);
    ++depth;
    while (more()) {
        const size_t start = at;
        GeData data;
        Taken taken = Taken::Nothing;
        Int32 entry = 0;
        if (limit - at < sizeof(entry)) {
            failAt(start, FILEERROR_FILE_END);
        } else {
            entry = getNumber<Int32>();
            taken = takeGeData(data);
        }
        if (taken == Taken::Whole) filler.add(entry, data);
        if (taken == Taken::Nothing) break; // nobody knows where the next entry begins
    }
    --depth;
    leave();
    filler.container.SetId(id);
    value = std::move(filler.container);
    return faults == faultsBefore;
}

} // namespace host

using host::HyperStream;

HyperFile::HyperFile() : stream(std::make_unique<HyperStream>())
{
    stream->facade = this;
}

HyperFile::~HyperFile() = default;

HyperFile* HyperFile::Alloc()
{
    return new HyperFile;
}

void HyperFile::Free(HyperFile*& file)
{
    delete file;
    file = nullptr;
}

Bool HyperFile::Open(Int32 ident, const Filename& name, FILEOPEN mode, FILEDIALOG)
{
    if (stream->mode != HyperStream::Mode::Closed) return stream->fail(FILEERROR_INVALID);
    stream->error = FILEERROR_NONE;
    if (mode == FILEOPEN_WRITE) {
        stream->path = host::FilePath(name);
        stream->startWriting(ident);
        return true;
    }
    auto content = host::LoadFile(host::FilePath(name));
    if (!content) return stream->fail(FILEERROR_OPEN);
    stream->own = std::move(*content);
    return stream->startReading(ident, stream->own);
}

Bool HyperFile::Close()
{
    const HyperStream::Mode mode = stream->mode;
    if (mode == HyperStream::Mode::Closed) return stream->fail(FILEERROR_CLOSE);
    stream->mode = HyperStream::Mode::Closed;
    if (mode == HyperStream::Mode::Reading || stream->path.empty()) return true;

    if (!stream->scopes.empty()) return stream->fail(FILEERROR_CHUNK_NUMBER);
    return host::SaveFile(stream->path, stream->own) || stream->fail(FILEERROR_WRITE);
}

FILEERROR HyperFile::GetError() const
{
    return stream->error;
}

void HyperFile::SetError(FILEERROR error)
{
    stream->forgetError();
    if (error != FILEERROR_NONE) stream->fail(error);
}

Int32 HyperFile::GetFileVersion() const
{
    return stream->fileVersion;
}

void HyperFile::SetFileVersion(Int32 version)
{
    stream->fileVersion = version;
    if (stream->mode == HyperStream::Mode::Writing) stream->patch(host::kVersionPlace, version);
}

BaseDocument* HyperFile::GetDocument() const
{
    return stream->document;
}

Bool HyperFile::ReadUChar(UChar* value)
{
    return stream->take(HYPERFILEVALUE_UCHAR, value);
}

Bool HyperFile::ReadInt32(Int32* value)
{
    return stream->take(HYPERFILEVALUE_INT32, value);
}

Bool HyperFile::ReadUInt32(UInt32* value)
{
    return stream->take(HYPERFILEVALUE_UINT32, value);
}

Bool HyperFile::ReadInt64(Int64* value)
{
    return stream->take(HYPERFILEVALUE_INT64, value);
}

Bool HyperFile::ReadUInt64(UInt64* value)
{
    return stream->take(HYPERFILEVALUE_UINT64, value);
}

Bool HyperFile::ReadFloat(Float* value)
{
    return stream->take(HYPERFILEVALUE_FLOAT, value);
}

Bool HyperFile::ReadFloat32(Float32* value)
{
    return stream->take(HYPERFILEVALUE_FLOAT32, value);
}

Bool HyperFile::ReadBool(Bool* value)
{
    UChar byte = 0;
    if (!stream->take(HYPERFILEVALUE_BOOL, &byte)) return false;
    *value = byte != 0;
    return true;
}

Bool HyperFile::ReadTime(BaseTime* value)
{
    Float numerator = 0, denominator = 1;
    if (!stream->take(HYPERFILEVALUE_TIME, &numerator, &denominator)) return false;
    *value = BaseTime(numerator, denominator);
    return true;
}

Bool HyperFile::ReadVector(Vector* value)
{
    return stream->take(HYPERFILEVALUE_VECTOR, &value->x, &value->y, &value->z);
}

Bool HyperFile::ReadMatrix(Matrix* value)
{
    Matrix& m = *value;
    return stream->take(HYPERFILEVALUE_MATRIX, &m.off.x, &m.off.y, &m.off.z, &m.v1.x, &m.v1.y, &m.v1.z, &m.v2.x,
                        &m.v2.y, &m.v2.z, &m.v3.x, &m.v3.y, &m.v3.z);
}

Bool HyperFile::ReadString(String* value)
{
    std::span<const uint8_t> content;
    if (!stream->takeBytes(HYPERFILEVALUE_STRING, content)) return false;
    *value = host::textOf(content);
    return true;
}

Bool HyperFile::ReadFilename(Filename* value)
{
    std::span<const uint8_t> content;
    if (!stream->takeBytes(HYPERFILEVALUE_FILENAME, content)) return false;
    *value = Filename(host::textOf(content));
    return true;
}

Bool HyperFile::ReadGeData(GeData* value)
{
    return stream->takeGeData(*value) == HyperStream::Taken::Whole;
}

Bool HyperFile::ReadContainer(BaseContainer* value, Bool flush)
{
    return stream->takeContainer(*value, flush != 0);
}

Bool HyperFile::ReadMemory(void** data, Int* size)
{
    std::span<const uint8_t> content;
    const size_t start = stream->at;
    if (!stream->takeBytes(HYPERFILEVALUE_MEMORY, content)) return false;
    const auto length = static_cast<Int>(content.size());
    Char* copy = NewMem(Char, length);
    if (!copy) return stream->failAt(start, FILEERROR_OUTOFMEMORY);
    CopyMem(content.data(), copy, length);
    *data = copy;
    *size = length;
    return true;
}

Bool HyperFile::WriteUChar(UChar value)
{
    return stream->put(HYPERFILEVALUE_UCHAR, value);
}

Bool HyperFile::WriteInt32(Int32 value)
{
    return stream->put(HYPERFILEVALUE_INT32, value);
}

Bool HyperFile::WriteUInt32(UInt32 value)
{
    return stream->put(HYPERFILEVALUE_UINT32, value);
}

Bool HyperFile::WriteInt64(Int64 value)
{
    return stream->put(HYPERFILEVALUE_INT64, value);
}

Bool HyperFile::WriteUInt64(UInt64 value)
{
    return stream->put(HYPERFILEVALUE_UINT64, value);
}

Bool HyperFile::WriteFloat(Float value)
{
    return stream->put(HYPERFILEVALUE_FLOAT, value);
}

Bool HyperFile::WriteFloat32(Float32 value)
{
    return stream->put(HYPERFILEVALUE_FLOAT32, value);
}

Bool HyperFile::WriteBool(Bool value)
{
    return stream->put(HYPERFILEVALUE_BOOL, static_cast<UChar>(value ? 1 : 0));
}

Bool HyperFile::WriteTime(const BaseTime& value)
{
    return stream->put(HYPERFILEVALUE_TIME, value.GetNumerator(), value.GetDenominator());
}

Bool HyperFile::WriteVector(const Vector& value)
{
    return stream->put(HYPERFILEVALUE_VECTOR, value.x, value.y, value.z);
}

Bool HyperFile::WriteMatrix(const Matrix& m)
{
    return stream->put(HYPERFILEVALUE_MATRIX, m.off.x, m.off.y, m.off.z, m.v1.x, m.v1.y, m.v1.z, m.v2.x, m.v2.y, m.v2.z,
                       m.v3.x, m.v3.y, m.v3.z);
}

Bool HyperFile::WriteString(const String& value)
{
    return stream->putBytes(HYPERFILEVALUE_STRING, host::bytesOf(host::Utf8Of(value)));
}

Bool HyperFile::WriteFilename(const Filename& value)
{
    return stream->putBytes(HYPERFILEVALUE_FILENAME, host::bytesOf(host::Utf8Of(value.GetString())));
}

Bool HyperFile::WriteGeData(const GeData& value)
{
    return stream->putGeData(value);
}

Bool HyperFile::WriteContainer(const BaseContainer& value)
{
    return stream->putContainer(value);
}

Bool HyperFile::WriteMemory(const void* data, Int size)
{
    if (size < 0 || (size > 0 && !data)) return stream->fail(FILEERROR_INVALID);
    return stream->putBytes(HYPERFILEVALUE_MEMORY, {static_cast<const uint8_t*>(data), static_cast<size_t>(size)});
}

Bool HyperFile::WriteChunkStart(Int32 id, Int32 level)
{
    if (!stream->put(HYPERFILEVALUE_START, id, level)) return false;
    stream->beginLength();
    return true;
}

Bool HyperFile::WriteChunkEnd()
{
    if (!stream->canWrite()) return false;
    if (stream->scopes.size() <= stream->floor) return stream->fail(FILEERROR_CHUNK_NUMBER);
    stream->endLength();
    return true;
}

Bool HyperFile::ReadChunkStart(Int32* id, Int32* level)
{
    UInt64 length = 0;
    if (!stream->take(HYPERFILEVALUE_START, id, level, &length)) return false;
    stream->enter(length);
    return true;
}

Bool HyperFile::ReadChunkEnd()
{
    if (stream->mode != HyperStream::Mode::Reading || stream->scopes.size() <= stream->floor)
        return stream->fail(FILEERROR_CHUNK_NUMBER);
    stream->leave();
    return true;
}

Bool HyperFile::SkipToEndChunk()
{
    if (stream->mode != HyperStream::Mode::Reading) return stream->fail(FILEERROR_READ);
    stream->at = stream->limit;
    return true;
}

Bool HyperFile::ReadValueHeader(HYPERFILEVALUE* type)
{
    if (stream->mode != HyperStream::Mode::Reading) return stream->fail(FILEERROR_READ);
    if (stream->more()) {
        *type = static_cast<HYPERFILEVALUE>(stream->bytes[stream->at]);
        return true;
    }
    *type = stream->scopes.empty() ? HYPERFILEVALUE_NONE : HYPERFILEVALUE_STOP;
    return !stream->scopes.empty();
}

Bool HyperFile::SkipValue(HYPERFILEVALUE type)
{
    return stream->skip(static_cast<uint8_t>(type));
}
