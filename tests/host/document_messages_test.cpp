#include "core/document_messages.h"
#include "core/documents.h"
#include "core/native_path.h"
#include "core/string_access.h"
#include "support/test_host.h"
#include "test_plugins.h"

#include <gmock/gmock.h>

namespace host::test {
namespace {

using testing::ElementsAre;

constexpr SCENEFILTER kAll = SCENEFILTER_OBJECTS | SCENEFILTER_MATERIALS;

class DocumentMessagesTest : public testing::Test {
protected:
    DocumentMessagesTest()
    {
        RegisterTestPlugins();
        document = BaseDocument::Alloc();
        InsertBaseDocument(document);
        SetActiveDocument(document);
        plant = Add(*document, kGenerator, "plant");
        Journal::take();
    }
    ~DocumentMessagesTest() override
    {
        host.end();
        EXPECT_EQ(Generator::alive, 0);
    }

    Filename file(const char* name) const { return Filename(TextOf(host.folder.path(name))); }
    void setFile(BaseObject* object, const std::string& name)
    {
        object->GetDataInstance()->SetFilename(kFileParameter, Filename(TextOf(name)));
    }

    TestHost host{{.userInterface = true}};
    BaseDocument* document;
    BaseObject* plant;
};

TEST_F(DocumentMessagesTest, GoToTheDocumentsNodesOfAllKindsOnce)
{
    Add(*document, Onull, "null", plant);
    plant->MakeTag(Ttexture);
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    material->InsertShader(BaseShader::Alloc(Xbitmap));
    document->InsertMaterial(material);
    document->GetLayerObjectRoot()->InsertLast(LayerObject::Alloc());
    document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0);
    ASSERT_TRUE(plant->GetCache());

    std::vector<NodeKind> kinds;
    const NodeCore* cache = CoreOf(plant->GetCache());
    for (const NodeCore* node : NodesOf(*CoreOf(document))) {
        EXPECT_NE(node, cache);
        if (node->Kind() != NodeKind::View) kinds.push_back(node->Kind());
    }
    EXPECT_THAT(kinds, ElementsAre(NodeKind::Document, NodeKind::Layer, NodeKind::Material, NodeKind::Shader,
                                   NodeKind::Object, NodeKind::Tag, NodeKind::Object, NodeKind::RenderData,
                                   NodeKind::SceneHook, NodeKind::SceneHook));
}

TEST_F(DocumentMessagesTest, AnAnswerMayFreeAndMakeNodes)
{
    Add(*document, kGenerator, "second");
    Add(*document, kGenerator, "third");
    Generator::Of(plant).onMessage = [this](Int32 type, void*) {
        if (type != MSG_MULTI_SETNEWMARKERS) return;
        BaseObject* second = document->SearchObject(String("second"));
        second->Remove();
        BaseObject::Free(second);
        Add(*document, kGenerator, "fourth");
    };
    Journal::take();
    SendToNodes(*CoreOf(document), MSG_MULTI_SETNEWMARKERS, nullptr);
    std::vector<std::string> told = Journal::take();
    std::erase_if(told, [](const std::string& line) { return !line.ends_with(": 200000161"); });
    EXPECT_THAT(told, ElementsAre("plant: 200000161", "third: 200000161", "hook: 200000161", "early hook: 200000161"));
}

TEST_F(DocumentMessagesTest, SavingAndOpeningTellEachNodeInOrder)
{
    plant->GetDataInstance()->SetInt32(kParameter, 8);
    document->SetChanged();
    Generator::Of(plant).onMessage = [this](Int32 type, void* data) {
        if (type != MSG_DOCUMENTINFO) return;
        const auto& info = *static_cast<DocumentInfoData*>(data);
        const bool before = info.type == MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE;
        EXPECT_EQ(info.doc, document);
        EXPECT_EQ(info.doc->GetDocumentPath().Content(), !before) << "the old path until it is written";
        if (before) plant->SetParameter(DescID(4711), GeData(Int32(5)), DESCFLAGS_SET_0);
        if (before) document->SetChanged();
    };
    ASSERT_TRUE(SaveScene(*document, file("scene.vds")));
    EXPECT_THAT(Journal::take("plant: 1001078"),
                ElementsAre("plant: 1001078/1004 file=scene.vds gui", "plant: 1001078/1005 file=scene.vds gui"));
    EXPECT_FALSE(document->GetChanged());
    EXPECT_EQ(Utf8Of(document->GetDocumentName().GetString()), "scene.vds");
    EXPECT_EQ(Utf8Of(document->GetDocumentPath().GetString()), host.folder.root.string());

    BaseDocument* opened = OpenDocument(file("scene.vds"));
    ASSERT_TRUE(opened);
    EXPECT_EQ(GetActiveDocument(), opened);
    EXPECT_THAT(Journal::take("plant"),
                ElementsAre("plant: 13 gui", "plant: 1001078/1001 file=scene.vds gui", "plant: 1001078/1000 gui"));
    EXPECT_EQ(opened->GetFirstObject()->GetDataInstance()->GetInt32(kParameter), 8);
    EXPECT_EQ(opened->GetFirstObject()->GetDataInstance()->GetInt32(4711), 5);
    EXPECT_FALSE(opened->GetChanged());
    EXPECT_TRUE(opened->FindSceneHook(kHook));
    EXPECT_TRUE(opened->GetActiveRenderData());
    EXPECT_EQ(opened->GetActiveRenderData()->GetNext(), nullptr) << "that of the file, not a second one";

    BaseDocument* withoutObjects = LoadDocument(file("scene.vds"), SCENEFILTER_MATERIALS, nullptr);
    ASSERT_TRUE(withoutObjects);
    EXPECT_EQ(withoutObjects->GetFirstObject(), nullptr);
    EXPECT_EQ(GetActiveDocument(), opened);
    BaseDocument::Free(withoutObjects);
}

TEST_F(DocumentMessagesTest, WhatCannotBeReadOrWrittenChangesNothingAndIsTold)
{
    host.folder.write("broken.vds", "no scene");
    EXPECT_EQ(OpenDocument(file("broken.vds")), nullptr);
    EXPECT_TRUE(host.said("broken.vds"));
    EXPECT_EQ(OpenDocument(file("missing.vds")), nullptr);
    EXPECT_TRUE(host.said("missing.vds"));
    EXPECT_FALSE(MergeScene(*document, file("broken.vds"), kAll));
    EXPECT_EQ(GetActiveDocument(), document);
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant");

    EXPECT_FALSE(SaveScene(*document, file("no_such_folder/scene.vds")));
    EXPECT_TRUE(host.said("no_such_folder"));
    EXPECT_TRUE(document->GetChanged());
    EXPECT_FALSE(document->GetDocumentPath().Content());
    EXPECT_THAT(Journal::take("plant: 1001078/1005"), ElementsAre());
}

TEST_F(DocumentMessagesTest, MergingMovesAllInOneStepAndTellsOldAndNew)
{
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    document->InsertMaterial(material);
    static_cast<TextureTag*>(plant->MakeTag(Ttexture))->SetMaterial(material);
    Add(*document, Onull, "below", plant);
    document->SetActiveObject(plant);
    ASSERT_TRUE(SaveScene(*document, file("scene.vds")));
    Journal::take();

    ASSERT_TRUE(MergeScene(*document, file("scene.vds"), kAll | SCENEFILTER_DIALOGSALLOWED));
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant .1(below .1) plant(below)");
    const std::vector<std::string> told = Journal::take("plant");
    EXPECT_THAT(told,
                ElementsAre("plant: 1001078/1003 file=scene.vds gui", "plant: 13 gui",
                            "plant .1: 1001078/1002 file=scene.vds gui", "plant: 1001078/1002 file=scene.vds gui"));
    BaseObject* merged = document->GetFirstObject();
    EXPECT_EQ(document->GetActiveObject(), plant) << "what comes is not active";
    BaseMaterial* comeAlong = static_cast<TextureTag*>(merged->GetTag(Ttexture))->GetMaterial();
    EXPECT_EQ(comeAlong, document->GetFirstMaterial());
    EXPECT_NE(comeAlong, material);

    EXPECT_TRUE(document->DoUndo());
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant(below)");
    EXPECT_EQ(document->GetFirstMaterial(), material);
    EXPECT_FALSE(document->DoUndo());
    EXPECT_TRUE(MergeScene(*document, file("scene.vds"), SCENEFILTER_OBJECTS | SCENEFILTER_NOUNDO));
    EXPECT_FALSE(document->DoUndo());
    EXPECT_EQ(document->GetFirstMaterial(), material);
}

TEST_F(DocumentMessagesTest, ANodeMayRefuseAMergeOrTurnItIntoOpening)
{
    ASSERT_TRUE(SaveScene(*document, file("scene.vds")));
    MergeAnswer answer = MergeAnswer::Cancel;
    Generator::Of(plant).onMessage = [&](Int32 type, void* data) {
        if (type != MSG_DOCUMENTINFO) return;
        auto& info = *static_cast<DocumentInfoData*>(data);
        if (info.type == MSG_DOCUMENTINFO_TYPE_BEFOREMERGE) *static_cast<MergeAnswer*>(info.data) = answer;
    };
    EXPECT_FALSE(MergeScene(*document, file("scene.vds"), kAll));
    answer = MergeAnswer::NewScene;
    EXPECT_TRUE(MergeScene(*document, file("scene.vds"), kAll));
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant");
    EXPECT_NE(GetActiveDocument(), document);
}

TEST_F(DocumentMessagesTest, AProjectHoldsItsFilesBeforeNodesAreToldToForgetWhereTheyWere)
{
    setFile(plant, host.folder.write("models/oak.vdt", "a model"));
    BaseObject* textured = Add(*document, kGenerator, "textured");
    setFile(textured, host.folder.write("pictures/bark.png", "a picture"));
    setFile(Add(*document, kGenerator, "again"), host.folder.path("models/oak.vdt"));
    setFile(Add(*document, kGenerator, "missing"), "nowhere.vdt");
    setFile(Add(*document, kGenerator, "other"), host.folder.write("others/oak.vdt", "another model"));
    setFile(Add(*document, kGenerator, "twin"), host.folder.write("twins/oak.vdt", "a model"));
    Add(*document, kGenerator, "empty");

    bool copied = false;
    Generator::Of(plant).onMessage = [&](Int32 type, void*) {
        if (type != MSG_MULTI_CLEARSUGGESTEDFOLDER) return;
        Filename found;
        copied = GenerateTexturePath(document->GetDocumentPath(), Filename("oak.vdt"), Filename(), &found);
        EXPECT_EQ(Utf8Of(found.GetString()), host.folder.path("project/oak.vdt"));
        setFile(plant, "oak.vdt");
    };
    Journal::take();
    ProjectReport report;
    ASSERT_TRUE(SaveProject(*document, file("project/scene.vds"), report));
    EXPECT_TRUE(copied);
    EXPECT_EQ(host.folder.read("project/oak.vdt"), "a model");
    EXPECT_EQ(host.folder.read("project/tex/bark.png"), "a picture");
    EXPECT_THAT(report.copied,
                ElementsAre(file("project/oak.vdt"), file("project/tex/bark.png"), file("project/oak.vdt")));
    EXPECT_THAT(report.missing, ElementsAre(Filename("nowhere.vdt")));
    EXPECT_THAT(report.failed, ElementsAre(file("others/oak.vdt"))) << "its place was taken by another model";

    const std::vector<std::string> told = Journal::take();
    std::vector<std::string> ofPlant;
    for (const std::string& line : told) {
        if (line.starts_with("plant")) ofPlant.push_back(line);
    }
    EXPECT_THAT(ofPlant, ElementsAre("plant: 1001078/1006 file=scene.vds gui", "plant: 112004", "plant: 200000040",
                                     "plant: 1001078/1004 file=scene.vds gui", "plant: 1001078/1005 file=scene.vds gui",
                                     "plant: 1001078/1007 file=scene.vds gui"));
    EXPECT_EQ(std::ranges::count(told, "hook: 1001078/1020 file=bark.png gui"), 1);
    EXPECT_FALSE(document->GetChanged());

    BaseDocument* opened = OpenDocument(file("project/scene.vds"));
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->GetFirstObject()->GetDataInstance()->GetFilename(kFileParameter), Filename("oak.vdt"));
}

TEST(TextureSearch, LooksInTheSuggestedFolderThenAroundTheDocumentThenInThePreferences)
{
    const vdt::test::TemporaryFolder folder;
    TestHost host({.texturePaths = {folder.root / "preferences"}});
    const auto place = [&](const char* name) { return Filename(TextOf(folder.path(name))); };
    for (const char* name : {"preferences/all.png", "document/all.png", "document/tex/all.png", "suggested/all.png",
                             "document/tex/tex.png", "preferences/sub/deep.png", "preferences/flat.png"}) {
        folder.write(name, "x");
    }
    struct Row {
        const char* name;
        const char* suggested;
        const char* found;
    };
    const Row rows[] = {{"all.png", "suggested", "suggested/all.png"},
                        {"all.png", "", "document/all.png"},
                        {"tex.png", "suggested", "document/tex/tex.png"},
                        {"sub/deep.png", "", "preferences/sub/deep.png"},
                        {"sub\\deep.png", "", "preferences/sub/deep.png"},
                        {"C:\\pictures\\flat.png", "", "preferences/flat.png"},
                        {"/elsewhere/flat.png", "", "preferences/flat.png"},
                        {"none.png", "", nullptr},
                        {"", "", nullptr}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Filename found("unchanged");
        const Filename suggested = *row.suggested ? place(row.suggested) : Filename();
        const bool any = GenerateTexturePath(place("document"), Filename(row.name), suggested, &found);
        EXPECT_EQ(any, row.found != nullptr);
        const std::string expected = row.found ? folder.path(row.found) : "unchanged";
        EXPECT_EQ(NativePath(found), expected);
    }
    const std::string absolute = folder.path("suggested/all.png");
    EXPECT_TRUE(GenerateTexturePath(Filename(), Filename(TextOf(absolute)), Filename(), nullptr));
}

} // namespace
} // namespace host::test
