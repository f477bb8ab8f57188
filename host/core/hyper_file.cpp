// The operations of the API on the stream behind them.
#include "core/disk_file.h"
#include "core/hyper_stream.h"
#include "core/native_path.h"
#include "core/string_access.h"

namespace {

std::span<const uint8_t> bytesOf(std::string_view text)
{
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

String textOf(std::span<const uint8_t> utf8)
{
    return host::TextOf({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
}

} // namespace

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
    if (stream->mode == HyperStream::Mode::Writing) stream->patch(HyperStream::kVersionPlace, version);
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
    *value = textOf(content);
    return true;
}

Bool HyperFile::ReadFilename(Filename* value)
{
    std::span<const uint8_t> content;
    if (!stream->takeBytes(HYPERFILEVALUE_FILENAME, content)) return false;
    *value = Filename(textOf(content));
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
    return stream->putBytes(HYPERFILEVALUE_STRING, bytesOf(host::Utf8Of(value)));
}

Bool HyperFile::WriteFilename(const Filename& value)
{
    return stream->putBytes(HYPERFILEVALUE_FILENAME, bytesOf(host::Utf8Of(value.GetString())));
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
