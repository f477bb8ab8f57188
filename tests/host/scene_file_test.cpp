// Scenes: what is written is read, in the right order, and whatever is wrong with a file costs no more than itself.
#include "c4d.h"
#include "core/disk_file.h"
#include "core/hyper_stream.h"
#include "core/scene_file.h"
#include "core/scene_format.h"
#include "core/string_access.h"
#include "customgui_unitscale.h"
#include "ddoc.h"
#include "fuzz/entries.h"
#include "fuzz/replay.h"
#include "oinstance.h"
#include "support/note_plugin.h"
#include "support/test_host.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace host::test {
namespace {

using Bytes = std::vector<uint8_t>;
using testing::AllOf;
using testing::HasSubstr;

// A document that ends with its scope.
struct Scene {
    Scene() : document(BaseDocument::Alloc()) {}
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene() { BaseDocument::Free(document); }

    DocumentCore& core() const { return *CoreOf(document); }
    BaseObject* add(Int32 type, const char* name, BaseObject* parent = nullptr)
    {
        BaseObject* object = BaseObject::Alloc(type);
        object->SetName(name);
        if (parent)
            CoreOf(parent)->InsertChild(*CoreOf(object), CoreOf(parent)->lastChild);
        else
            core().objects.InsertLast(*CoreOf(object));
        return object;
    }
    KeeperData& addKeeper(const char* name, const std::vector<Int32>& numbers, BaseObject* parent = nullptr)
    {
        auto& keeper = *static_cast<KeeperData*>(add(kKeeper, name, parent)->GetNodeData());
        keeper.numbers = numbers;
        return keeper;
    }
    bool read(const Bytes& bytes) { return ReadScene(bytes, "file", core(), report); }
    Bytes bytes()
    {
        Bytes written = SceneBytes(core(), report);
        EXPECT_EQ(report, "");
        return written;
    }
    // The objects, "name(children) name ...".
    std::string tree() const { return treeOf(core().objects.firstChild); }
    size_t nodeCount() const
    {
        size_t count = 0;
        VisitBelow(core(), [&count](const NodeCore&) { ++count; });
        return count;
    }

    BaseDocument* document;
    std::string report;

private:
    static std::string treeOf(const NodeCore* first)
    {
        std::string all;
        for (const NodeCore* node = first; node; node = node->next)
            all += (all.empty() ? "" : " ") + Utf8Of(node->name) +
                   (node->firstChild ? "(" + treeOf(node->firstChild) + ")" : "");
        return all;
    }
};

// A scene with something of everything.
void fill(Scene& scene)
{
    BaseDocument* document = scene.document;
    document->SetTime(BaseTime(2, 3));
    const AutoAlloc<UnitScaleData> unit;
    unit->SetUnitScale(2, DOCUMENT_UNIT_M);
    document->GetDataInstance()->SetData(DOCUMENT_DOCUNIT, GeData(CUSTOMDATATYPE_UNITSCALE, *unit));

    LayerObject* layer = LayerObject::Alloc();
    layer->SetName("trees");
    document->GetLayerObjectRoot()->InsertLast(layer);
    LayerData shown;
    shown.view = false;
    shown.color = Vector(0.5, 0.25, 1);
    layer->SetLayerData(document, shown);

    BaseMaterial* bark = BaseMaterial::Alloc(Mmaterial);
    bark->SetName("bark");
    document->InsertMaterial(bark);
    BaseShader* bitmap = BaseShader::Alloc(Xbitmap);
    bark->InsertShader(bitmap);
    bark->GetDataInstance()->SetFilename(1000, Filename("C:\\tex\\bark.png"));
    bark->GetDataInstance()->SetLink(2101, bitmap);

    BaseObject* row = scene.add(Onull, "row");
    BaseObject* instance = scene.add(Oinstance, "instance", row);
    scene.addKeeper("keeper", {3, 1, 4}, row);
    BaseObject* keeper = row->GetDownLast();
    keeper->GetDataInstance()->SetData(5, NoteOf(12, TextOf("\xC3\xA4")));
    keeper->SetLayerObject(layer);
    keeper->SetMl(MatrixMove(Vector(1, 2, 3)) * HPBToMatrix(Vector(7, 1, 0))); // more than a full turn
    keeper->SetRenderMode(MODE_OFF);
    keeper->ChangeNBit(NBIT_EHIDE, NBITCONTROL_SET);
    keeper->ChangeNBit(NBIT_OHIDE, NBITCONTROL_SET);

    PolygonObject* leaf = PolygonObject::Alloc(4, 2);
    leaf->SetName("leaf");
    for (Int32 point = 0; point < 4; ++point) leaf->GetPointW()[point] = Vector(point, point * point, -0.5);
    leaf->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    leaf->GetPolygonW()[1] = CPolygon(0, 2, 3);
    leaf->Message(MSG_UPDATE);
    UVWTag* uvw = UVWTag::Alloc(2);
    leaf->InsertTag(uvw);
    UVWTag::Set(uvw->GetDataAddressW(), 1, UVWStruct(Vector(0.5, 1, 0), Vector(1), Vector(), Vector(2)));
    NormalTag* normals = NormalTag::Alloc(2);
    leaf->InsertTag(normals);
    NormalTag::Set(normals->GetDataAddressW(), 1, NormalStruct(Vector(0, 0, -1), Vector(1, 0, 0), Vector(), Vector()));
    auto* selection = static_cast<SelectionTag*>(leaf->MakeTag(Tpolygonselection));
    selection->SetName("front");
    selection->GetBaseSelect()->Select(1);
    static_cast<TextureTag*>(leaf->MakeTag(Ttexture))->SetMaterial(bark);
    CoreOf(keeper)->InsertChild(*CoreOf(leaf), nullptr);
    instance->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, leaf); // it comes later in the file
    scene.add(Onull, "last")->SetBit(BIT_ACTIVE);
}

struct Scenes : testing::Test {
    Scenes() { RegisterNotes(); }
    TestHost host;
};

TEST_F(Scenes, AreReadAsTheyWereWritten)
{
    Scene scene, other;
    fill(scene);
    const Bytes bytes = scene.bytes();
    ASSERT_TRUE(other.read(bytes));
    EXPECT_EQ(other.report, "");
    EXPECT_EQ(other.bytes(), bytes);

    EXPECT_EQ(other.tree(), "row(instance keeper(leaf)) last");
    EXPECT_EQ(other.nodeCount(), scene.nodeCount()); // render settings and views of the fresh document come once
    EXPECT_EQ(other.document->GetTime(), BaseTime(2, 3));
    EXPECT_EQ(*other.document->GetDataInstance(), *scene.document->GetDataInstance());

    // Links lead to the nodes of their own document.
    const auto* leaf = static_cast<PolygonObject*>(other.document->SearchObject("leaf"));
    const BaseContainer& instance = *other.document->SearchObject("instance")->GetDataInstance();
    EXPECT_EQ(instance.GetLink(INSTANCEOBJECT_LINK, other.document), leaf);
    EXPECT_EQ(instance.GetLink(INSTANCEOBJECT_LINK, scene.document), nullptr);
    BaseMaterial* bark = other.document->GetFirstMaterial();
    EXPECT_EQ(bark->GetDataInstance()->GetLink(2101, other.document), bark->GetFirstShader());
    auto* keeper = other.document->SearchObject("keeper");
    EXPECT_EQ(keeper->GetMg(), scene.document->SearchObject("keeper")->GetMg());
    const LayerData* layer = keeper->GetLayerData(other.document);
    ASSERT_TRUE(layer);
    EXPECT_TRUE(!layer->view && layer->color == Vector(0.5, 0.25, 1));
    EXPECT_EQ(static_cast<KeeperData*>(keeper->GetNodeData())->numbers, (std::vector<Int32>{3, 1, 4}));
    EXPECT_TRUE(keeper->GetNBit(NBIT_EHIDE) && keeper->GetNBit(NBIT_OHIDE) && !keeper->GetNBit(NBIT_REF));
    const auto* note = keeper->GetDataInstance()->GetCustomDataType(5, kNoteType);
    EXPECT_EQ(static_cast<const Note*>(note)->readLevel, kNoteLevel);
}

TEST_F(Scenes, GiveANodeItsParametersBeforeItsOwnDataAndBothBeforeADocument)
{
    Scene scene, other;
    BaseContainer& container = *scene.add(kKeeper, "keeper")->GetDataInstance();
    container.SetInt32(1000, 10);
    container.RemoveData(1001);
    ASSERT_TRUE(other.read(scene.bytes()));
    ASSERT_EQ(KeeperData::readings.size(), 1u);
    const KeeperReading& seen = KeeperData::readings[0];
    EXPECT_EQ(seen.level, kKeeperLevel);
    EXPECT_EQ(seen.parameter, 10);
    EXPECT_EQ(seen.initOnly, 2); // what the file lacks is as it was made
    EXPECT_FALSE(seen.hadDocument);
}

// The bytes of a number as it stands in files.
Bytes stored(Int32 value)
{
    Bytes bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(value >> shift));
    return bytes;
}

// Replaces the first `from` behind the first place of `after`.
void replace(Bytes& bytes, Int32 from, Int32 to, std::string_view after)
{
    const auto start = std::search(bytes.begin(), bytes.end(), after.begin(), after.end());
    const Bytes old = stored(from);
    const auto found = std::search(start, bytes.end(), old.begin(), old.end());
    ASSERT_NE(found, bytes.end());
    std::ranges::copy(stored(to), found);
}

TEST_F(Scenes, LoseOfWhatNobodyKnowsOnlyThat)
{
    Scene scene, unknown, refused;
    fill(scene);
    scene.add(Onull, "after", scene.document->SearchObject("row"));
    Bytes bytes = scene.bytes();
    replace(bytes, kKeeper, 7654321, "row");
    ASSERT_TRUE(unknown.read(bytes));
    EXPECT_EQ(unknown.tree(), "row(instance leaf after) last");
    EXPECT_THAT(unknown.report, AllOf(HasSubstr("file: \"keeper\""), HasSubstr("7654321"), HasSubstr("at byte")));
    EXPECT_EQ(std::ranges::count(unknown.report, '\n'), 0);
    EXPECT_EQ(unknown.document->GetFirstMaterial()->GetName(), String("bark"));

    static_cast<KeeperData*>(scene.document->SearchObject("keeper")->GetNodeData())->numbers[0] = -1;
    ASSERT_TRUE(refused.read(scene.bytes()));
    EXPECT_EQ(refused.tree(), "row(instance after) last");
    EXPECT_THAT(refused.report, AllOf(HasSubstr("\"keeper\""), HasSubstr("refuses")));
    const BaseContainer& instance = *refused.document->SearchObject("instance")->GetDataInstance();
    EXPECT_EQ(instance.GetLink(INSTANCEOBJECT_LINK, refused.document), nullptr);
}

TEST_F(Scenes, AreNoDeeperThanTheirReadersBear)
{
    Scene scene, other;
    BaseObject* parent = nullptr;
    for (int depth = 0; depth < 600; ++depth) parent = scene.add(Onull, "n", parent);
    ASSERT_TRUE(other.read(scene.bytes()));
    EXPECT_EQ(other.nodeCount(), scene.nodeCount());
    size_t deepest = 0;
    for (const NodeCore* node = other.core().objects.firstChild; node; node = node->firstChild) ++deepest;
    EXPECT_EQ(deepest, 256u);
    EXPECT_EQ(std::ranges::count(other.report, '\n'), 50); // and so many more
}

TEST_F(Scenes, CutAnywhereKeepWhatStandsBeforeTheCut)
{
    Scene scene;
    fill(scene);
    const Bytes bytes = scene.bytes();
    size_t most = 0, read = 0;
    for (size_t length = 0; length < bytes.size(); length += 1 + length / 200) {
        const auto prefix = std::make_unique<uint8_t[]>(length);
        std::copy_n(bytes.begin(), length, prefix.get());
        Scene other;
        const size_t fresh = other.nodeCount();
        const bool isScene = ReadScene({prefix.get(), length}, "file", other.core(), other.report);
        EXPECT_NE(other.report, "") << length;
        const size_t count = other.nodeCount();
        EXPECT_TRUE(isScene || count == fresh);
        // While the cut runs through the keeper's own data, it is refused.
        EXPECT_GE(count + 1, most);
        most = std::max(most, count);
        read += isScene;
        other.report.clear();
        Scene again;
        EXPECT_TRUE(again.read(other.bytes())); // what was kept is a scene
        EXPECT_EQ(again.tree(), other.tree());
    }
    EXPECT_GE(read, 100u);
    EXPECT_EQ(most, scene.nodeCount());
}

TEST_F(Scenes, SurviveDamageAndWhatIsLeftCanBeSavedAgain)
{
    Scene scene;
    fill(scene);
    const Bytes bytes = scene.bytes();
    std::mt19937 random(5);
    size_t kept = 0;
    constexpr int kRounds = 500;
    for (int round = 0; round < kRounds; ++round) {
        Bytes damaged = bytes;
        for (int fault = 0; fault < 1 + round % 4; ++fault)
            damaged[random() % bytes.size()] = static_cast<uint8_t>(random() % 2 ? random() : 0xFF);
        Scene other, again;
        if (!other.read(damaged)) continue;
        ++kept;
        std::string ignored;
        EXPECT_TRUE(again.read(SceneBytes(other.core(), ignored)));
        EXPECT_LE(other.nodeCount(), scene.nodeCount());
    }
    EXPECT_GT(kept, kRounds * 9u / 10);
}

TEST_F(Scenes, OfTheCorpusKeepTheirPromises)
{
    vdt::test::ReplayCorpus("scene", vdt::test::FuzzScene);
}

TEST_F(Scenes, ThatCannotBeSavedLeaveTheOldFile)
{
    Scene scene, other;
    fill(scene);
    const std::filesystem::path path = host.folder.root / "scene";
    ASSERT_TRUE(WriteScene(scene.core(), path, scene.report)) << scene.report;
    const auto old = LoadFile(path);
    scene.addKeeper("broken", {-2});
    EXPECT_FALSE(WriteScene(scene.core(), path, scene.report));
    EXPECT_THAT(scene.report, AllOf(HasSubstr("scene"), HasSubstr("\"broken\"")));
    EXPECT_EQ(LoadFile(path), old);
    EXPECT_FALSE(WriteScene(other.core(), host.folder.root / "none" / "scene", other.report));
    EXPECT_THAT(other.report, HasSubstr("none"));
    ASSERT_TRUE(ReadScene(path, other.core(), other.report));
    EXPECT_EQ(other.tree(), "row(instance keeper(leaf)) last");
    EXPECT_FALSE(ReadScene(host.folder.root, other.core(), other.report));
}

TEST_F(Scenes, OfForeignKindAreRefusedAndUnknownPartsSkipped)
{
    Scene scene;
    for (const char* text : {"", "HOSTFILE", "no scene at all, but long enough for a header"}) {
        Bytes bytes(text, text + strlen(text));
        EXPECT_FALSE(scene.read(bytes)) << text;
        EXPECT_THAT(scene.report, HasSubstr("file: "));
    }
    // A later writer may add chunks to nodes and values to the ends of chunks.
    fill(scene);
    Bytes bytes = scene.bytes();
    constexpr Int32 kNewChunk = 0x4e455721;
    replace(bytes, kBodyChunk, kNewChunk, "last");
    replace(bytes, kListChunk, kNewChunk, "leaf");
    Scene other;
    ASSERT_TRUE(other.read(bytes));
    EXPECT_EQ(other.report, "");
    EXPECT_EQ(other.tree(), "row(instance keeper(leaf)) last");
    EXPECT_EQ(other.document->SearchObject("leaf")->GetFirstTag(), nullptr);
}

} // namespace
} // namespace host::test
