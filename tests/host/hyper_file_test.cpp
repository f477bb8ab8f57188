// Typed chunk files in memory and on disk.
#include "c4d.h"
#include "core/disk_file.h"
#include "core/hyper_stream.h"
#include "core/string_access.h"
#include "support/note_plugin.h"
#include "support/test_host.h"

#include <gmock/gmock.h>

#include <functional>
#include <random>

namespace host::test {
namespace {

constexpr Int32 kIdent = 4711;

struct HyperFiles : testing::Test {
    HyperFiles() { RegisterNotes(); }
    TestHost host;
};

using Bytes = std::vector<uint8_t>;

Bytes written(const std::function<void(HyperFile&)>& write)
{
    const HyperFilePtr file = HyperStream::Write(kIdent);
    write(*file);
    EXPECT_EQ(file->GetError(), FILEERROR_NONE);
    return HyperStream::Of(*file).takeBytes();
}

// A type of values: how one is written and read back, which gives whether it is the same.
struct ValueKind {
    const char* name;
    std::function<Bool(HyperFile&)> write;
    std::function<Bool(HyperFile&)> read; // false: no value of this kind
    std::function<bool()> isSame;
};

template <class Value, class Write, class Read> ValueKind kindOf(const char* name, Value value, Write write, Read read)
{
    const auto got = std::make_shared<Value>();
    return {name, [=](HyperFile& file) { return (file.*write)(value); },
            [=](HyperFile& file) { return (file.*read)(got.get()); }, [=] { return *got == value; }};
}

std::vector<ValueKind> valueKinds()
{
    BaseContainer container(9);
    container.SetData(1, NoteOf(3, "three"));
    container.InsData(1, GeData(Int64(-1) << 40, LLONGVALUE));
    container.SetContainer(-5, container);
    container.SetTime(6, BaseTime(1, 3));
    const String text(U"\u00E4\0b\U0001F333", 4);
    const Matrix matrix(Vector(1, 2, 3), Vector(0.1, 0, 0), Vector(0, -0.0, 1e-300), Vector(7, 8, 9));
    std::vector<ValueKind> kinds = {
        kindOf("uchar", UChar(200), &HyperFile::WriteUChar, &HyperFile::ReadUChar),
        kindOf("int32", Int32(-70000), &HyperFile::WriteInt32, &HyperFile::ReadInt32),
        kindOf("uint32", UInt32(0x89ABCDEF), &HyperFile::WriteUInt32, &HyperFile::ReadUInt32),
        kindOf("int64", LIMIT<Int64>::MIN, &HyperFile::WriteInt64, &HyperFile::ReadInt64),
        kindOf("uint64", ~UInt64(1), &HyperFile::WriteUInt64, &HyperFile::ReadUInt64),
        kindOf("float", -1.0 / 3, &HyperFile::WriteFloat, &HyperFile::ReadFloat),
        kindOf("float32", 0.1f, &HyperFile::WriteFloat32, &HyperFile::ReadFloat32),
        kindOf("bool", Bool(true), &HyperFile::WriteBool, &HyperFile::ReadBool),
        kindOf("time", BaseTime(7, 30), &HyperFile::WriteTime, &HyperFile::ReadTime),
        kindOf("vector", Vector(1, -2, 3e300), &HyperFile::WriteVector, &HyperFile::ReadVector),
        kindOf("matrix", matrix, &HyperFile::WriteMatrix, &HyperFile::ReadMatrix),
        kindOf("string", text, &HyperFile::WriteString, &HyperFile::ReadString),
        kindOf("filename", Filename("C:\\plants\\oak.vdt"), &HyperFile::WriteFilename, &HyperFile::ReadFilename),
        kindOf("data", GeData(matrix), &HyperFile::WriteGeData, &HyperFile::ReadGeData),
    };
    const auto got = std::make_shared<BaseContainer>();
    kinds.push_back({"container", [=](HyperFile& file) { return file.WriteContainer(container); },
                     [=](HyperFile& file) { return file.ReadContainer(got.get(), true); },
                     [=] { return *got == container; }});
    const auto memory = std::make_shared<std::string>();
    kinds.push_back({"memory", [](HyperFile& file) { return file.WriteMemory("a\0b", 3); },
                     [=](HyperFile& file) {
                         void* data = nullptr;
                         Int size = 0;
                         if (!file.ReadMemory(&data, &size)) return Bool(false);
                         memory->assign(static_cast<Char*>(data), static_cast<size_t>(size));
                         DeleteMem(data);
                         return Bool(true);
                     },
                     [=] { return *memory == std::string("a\0b", 3); }});
    return kinds;
}

TEST_F(HyperFiles, GiveEveryTypeBackAndOnlyAsWhatItWasWritten)
{
    const std::vector<ValueKind> kinds = valueKinds();
    const Bytes bytes = written([&](HyperFile& file) {
        for (const ValueKind& kind : kinds) EXPECT_TRUE(kind.write(file)) << kind.name;
    });
    const HyperFilePtr file = HyperStream::Read(kIdent, bytes);
    ASSERT_TRUE(file);
    for (const ValueKind& kind : kinds) {
        const size_t place = HyperStream::Of(*file).position();
        for (const ValueKind& other : kinds) {
            if (&other == &kind) continue;
            EXPECT_FALSE(other.read(*file)) << other.name << " for " << kind.name;
            EXPECT_EQ(file->GetError(), FILEERROR_WRONG_VALUE);
            EXPECT_EQ(HyperStream::Of(*file).errorPosition(), place);
            EXPECT_EQ(HyperStream::Of(*file).position(), place);
            file->SetError(FILEERROR_NONE);
        }
        EXPECT_TRUE(kind.read(*file)) << kind.name;
        EXPECT_TRUE(kind.isSame()) << kind.name;
    }
    Int32 number = 5;
    EXPECT_FALSE(file->ReadInt32(&number));
    EXPECT_EQ(number, 5);
    EXPECT_EQ(file->GetError(), FILEERROR_FILE_END);
    EXPECT_EQ(HyperStream::Of(*file).errorPosition(), bytes.size());
}

TEST_F(HyperFiles, MayBeReadShortAndSkipped)
{
    const Bytes bytes = written([](HyperFile& file) {
        file.WriteChunkStart(1, 10);
        for (const ValueKind& kind : valueKinds()) kind.write(file);
        file.WriteChunkStart(2, 20);
        file.WriteInt32(22);
        file.WriteChunkEnd();
        file.WriteChunkEnd();
        file.WriteChunkStart(3, 30);
        file.WriteInt32(33);
        file.WriteChunkEnd();
    });
    const HyperFilePtr file = HyperStream::Read(kIdent, bytes);
    Int32 id = 0, level = 0, number = 0;
    UChar first = 0;
    HYPERFILEVALUE type = HYPERFILEVALUE_NONE;
    ASSERT_TRUE(file->ReadChunkStart(&id, &level));
    EXPECT_TRUE(id == 1 && level == 10 && file->ReadUChar(&first));
    size_t skipped = 0;
    for (; file->ReadValueHeader(&type) && type != HYPERFILEVALUE_START; ++skipped) ASSERT_TRUE(file->SkipValue(type));
    EXPECT_EQ(skipped, valueKinds().size() - 1);
    EXPECT_FALSE(file->SkipValue(HYPERFILEVALUE_INT32)); // a chunk is next
    file->SetError(FILEERROR_NONE);
    ASSERT_TRUE(file->ReadChunkStart(&id, &level));
    EXPECT_TRUE(file->SkipToEndChunk() && file->ReadValueHeader(&type) && type == HYPERFILEVALUE_STOP);
    EXPECT_FALSE(file->ReadInt32(&number)); // it ends with its chunk, though the file goes on
    EXPECT_TRUE(file->ReadChunkEnd() && file->ReadChunkEnd());
    EXPECT_FALSE(file->ReadChunkEnd());
    EXPECT_TRUE(file->ReadChunkStart(&id, &level) && id == 3 && level == 30 && file->ReadInt32(&number) &&
                number == 33);
    EXPECT_TRUE(file->ReadChunkEnd());
    EXPECT_FALSE(file->ReadValueHeader(&type));
    EXPECT_EQ(type, HYPERFILEVALUE_NONE);
}

TEST_F(HyperFiles, ReadContainersOverWhatIsThere)
{
    BaseContainer stored(5);
    stored.SetInt32(1, 10);
    stored.SetData(2, NoteOf(-1, "refused when it is read"));
    stored.InsData(1, GeData(11));
    stored.SetInt32(3, 30);
    stored.SetVoid(4, &stored);
    const Bytes bytes = written([&](HyperFile& file) { file.WriteContainer(stored); });

    BaseContainer present;
    present.SetInt32(3, 3);
    present.SetString(2, "stays");
    present.SetInt32(9, 9);
    const HyperFilePtr file = HyperStream::Read(kIdent, bytes);
    EXPECT_FALSE(file->ReadContainer(&present, false));
    EXPECT_EQ(file->GetError(), FILEERROR_UNKNOWN_VALUE);

    BaseContainer expected(5);
    expected.SetInt32(3, 30);
    expected.SetString(2, "stays");
    expected.SetInt32(9, 9);
    expected.InsData(1, GeData(10));
    expected.InsData(1, GeData(11));
    expected.InsData(4, GeData()); // an address means nothing in a file
    EXPECT_EQ(present, expected);
}

TEST_F(HyperFiles, GiveDataOfPluginsTheirLevelAndKeepThemWithinTheirPart)
{
    Bytes bytes = written([&](HyperFile& file) {
        file.WriteGeData(NoteOf(4, "four"));
        file.WriteInt32(44);
    });
    // The level stands behind the header, the data's tag, type and length, and the tag of its own.
    bytes[HyperStream::kHeaderSize + 1 + 4 + 8 + 1] = 2;
    const HyperFilePtr file = HyperStream::Read(kIdent, bytes);
    GeData data;
    ASSERT_TRUE(file->ReadGeData(&data));
    const Note& note = *static_cast<Note*>(data.GetCustomDataType(kNoteType));
    EXPECT_EQ(note.readLevel, 2);
    EXPECT_EQ(note.text, String("four"));
    Int32 number = 0;
    EXPECT_TRUE(file->ReadInt32(&number) && number == 44);

    // Without its type the value is left out, what follows is not. Values end before their types do.
    data = GeData();
    host.end();
    TestHost other;
    const HyperFilePtr again = HyperStream::Read(kIdent, bytes);
    GeData kept(7);
    EXPECT_FALSE(again->ReadGeData(&kept));
    EXPECT_EQ(kept, GeData(7));
    EXPECT_TRUE(again->ReadInt32(&number));
}

TEST_F(HyperFiles, BoundTheDepthOfContainers)
{
    BaseContainer deep;
    for (Int32 level = 0; level < 200; ++level) {
        BaseContainer around(level);
        around.SetContainer(1, deep);
        deep = around;
    }
    const HyperFilePtr writing = HyperStream::Write(kIdent);
    EXPECT_FALSE(writing->WriteContainer(deep));
    const Bytes bytes = HyperStream::Of(*writing).takeBytes();
    const HyperFilePtr file = HyperStream::Read(kIdent, bytes);
    BaseContainer read;
    file->ReadContainer(&read, true);
    Int32 depth = 0;
    for (const BaseContainer* level = &read; level; level = level->GetContainerInstance(1)) ++depth;
    EXPECT_EQ(depth, HyperStream::kDeepest + 1);
}

// Reads whatever comes; gives how many values there were.
size_t readAll(HyperFile& file, const std::vector<ValueKind>& kinds)
{
    size_t count = 0;
    Int32 id = 0;
    for (HYPERFILEVALUE type; file.ReadValueHeader(&type); ++count) {
        if (type == HYPERFILEVALUE_STOP) {
            file.ReadChunkEnd();
            continue;
        }
        const bool read = std::ranges::any_of(kinds, [&](const ValueKind& kind) { return kind.read(file); });
        if (!read && !file.ReadChunkStart(&id, &id) && !file.SkipValue(type)) break;
    }
    return count;
}

TEST_F(HyperFiles, SurviveAnyBytes)
{
    const std::vector<ValueKind> kinds = valueKinds();
    const Bytes bytes = written([&](HyperFile& file) {
        file.WriteChunkStart(1, 10);
        for (const ValueKind& kind : kinds) kind.write(file);
        file.WriteChunkEnd();
        for (const ValueKind& kind : kinds) kind.write(file);
    });
    size_t most = 0;
    for (size_t length = 0; length <= bytes.size(); ++length) {
        const auto prefix = std::make_unique<uint8_t[]>(length);
        std::copy_n(bytes.begin(), length, prefix.get());
        const HyperFilePtr file = HyperStream::Read(kIdent, {prefix.get(), length});
        EXPECT_EQ(file != nullptr, length >= HyperStream::kHeaderSize);
        if (!file) continue;
        const size_t count = readAll(*file, kinds);
        EXPECT_GE(count + 1, most); // a chunk's end may stand where its last value was cut
        most = std::max(most, count);
    }
    EXPECT_EQ(most, 2 * kinds.size() + 2);

    std::mt19937 random(4);
    for (int round = 0; round < 4000; ++round) {
        Bytes damaged = bytes;
        for (int fault = 0; fault < 1 + round % 3; ++fault)
            damaged[HyperStream::kHeaderSize + random() % (bytes.size() - HyperStream::kHeaderSize)] =
                static_cast<uint8_t>(random() % 2 ? random() : 0xFF);
        const HyperFilePtr file = HyperStream::Read(kIdent, damaged);
        EXPECT_LE(readAll(*file, kinds), damaged.size());
        EXPECT_LE(HyperStream::Of(*file).errorPosition(), damaged.size());
    }
}

TEST_F(HyperFiles, OnDiskReplaceTheOldOneWholeOrNotAtAll)
{
    const Filename name(TextOf(host.folder.path("values")));
    const auto save = [&](const Filename& target, Int32 number) {
        const AutoAlloc<HyperFile> file;
        file->SetFileVersion(number);
        return file->Open(kIdent, target, FILEOPEN_WRITE, FILEDIALOG_NONE) && file->WriteInt32(number) && file->Close();
    };
    const auto load = [&](const Filename& source, Int32 ident, FILEERROR error) {
        const AutoAlloc<HyperFile> file;
        Int32 number = 0;
        const Bool opened = file->Open(ident, source, FILEOPEN_READ, FILEDIALOG_NONE);
        EXPECT_EQ(file->GetError(), error);
        EXPECT_EQ(opened, opened && file->ReadInt32(&number) && file->GetFileVersion() == number && file->Close());
        return number;
    };
    EXPECT_TRUE(save(name, 1) && save(name, 2));
    EXPECT_EQ(load(name, kIdent, FILEERROR_NONE), 2);
    EXPECT_EQ(load(name, kIdent + 1, FILEERROR_INVALID), 0);
    EXPECT_EQ(load(name + Filename("none"), kIdent, FILEERROR_OPEN), 0);
    EXPECT_EQ(load(name.GetDirectory(), kIdent, FILEERROR_OPEN), 0);

    std::filesystem::create_symlink("values", host.folder.root / "link");
    EXPECT_TRUE(save(name.GetDirectory() + Filename("link"), 3));
    EXPECT_TRUE(std::filesystem::is_symlink(host.folder.root / "link"));
    EXPECT_EQ(load(name, kIdent, FILEERROR_NONE), 3);

    const AutoAlloc<HyperFile> open;
    EXPECT_TRUE(open->Open(kIdent, name, FILEOPEN_WRITE, FILEDIALOG_NONE) && open->WriteChunkStart(1, 1));
    EXPECT_FALSE(open->Close()); // a chunk is open
    EXPECT_FALSE(save(name + Filename("none"), 4));
    EXPECT_FALSE(save(name.GetDirectory(), 4));
    std::filesystem::permissions(host.folder.root / "values", std::filesystem::perms::owner_read);
    EXPECT_FALSE(save(name, 4));
    EXPECT_EQ(load(name, kIdent, FILEERROR_NONE), 3);
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(host.folder.root)) ++files;
    EXPECT_EQ(files, 2u); // nothing is left beside
}

} // namespace
} // namespace host::test
