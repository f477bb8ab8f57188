// Every message that a plant object answers, as the host sends it and with nothing in it.

#include "core/assets.h"
#include "core/document_messages.h"
#include "core/documents.h"
#include "selection/models_being_read.h"
#include "support/model_cache.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "tphong.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace host::test {
namespace {

namespace fs = std::filesystem;

class PlantMessages : public testing::Test {
protected:
    struct Shown {
        Int32 variant, qualifier;
        std::string plantName, qualifierName;

        bool operator==(const Shown&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Shown& shown)
        {
            return out << shown.variant << " " << shown.qualifier << " " << shown.plantName << " "
                       << shown.qualifierName;
        }
    };

    static Shown shown(BaseObject& plant)
    {
        const VerdanthSelectionData selection = SelectionOf(plant);
        return {IntegerOf(plant, PLANT_VARIANT), IntegerOf(plant, PLANT_QUALIFIER), ToUtf8(selection.plantName),
                ToUtf8(selection.qualifierName)};
    }

    void imported(BaseObject& plant, bool mayAsk = true)
    {
        DocumentImported data;
        data.doc = scene.document;
        data.gui_allowed = mayAsk;
        EXPECT_TRUE(plant.Message(MSG_MULTI_DOCUMENTIMPORTED, &data));
    }

    void tell(BaseObject& plant, Int32 subtype)
    {
        DocumentInfoData data;
        data.type = subtype;
        data.doc = scene.document;
        EXPECT_TRUE(plant.Message(MSG_DOCUMENTINFO, &data));
    }

    BaseDocument* saveAndOpen(const std::string& name)
    {
        const Filename file = ToFilename(scene.folder.path(name));
        EXPECT_TRUE(SaveScene(*scene.document, file));
        return OpenDocument(file);
    }

    PlantScene scene;
    std::string oak = scene.writeOak();
};

TEST_F(PlantMessages, WithoutDataOrOfOtherKindsChangeNothing)
{
    BaseObject& plant = scene.place(oak, 0, 1);
    const Shown before = shown(plant);
    for (const Int32 type : {MSG_MULTI_DOCUMENTIMPORTED, MSG_DESCRIPTION_POSTSETPARAMETER, MSG_GETALLASSETS,
                             MSG_DOCUMENTINFO, MSG_UPDATE, MSG_DESCRIPTION_COMMAND, 4711})
        EXPECT_TRUE(plant.Message(type, nullptr)) << type;
    DescriptionPostSetValue nothingSet;
    EXPECT_TRUE(plant.Message(MSG_DESCRIPTION_POSTSETPARAMETER, &nothingSet));
    for (const Int32 subtype : {MSG_DOCUMENTINFO_TYPE_SETACTIVE, MSG_DOCUMENTINFO_TYPE_SAVE_AFTER, 0})
        tell(plant, subtype);
    EXPECT_EQ(shown(plant), before);
    EXPECT_TRUE(scene.dialogs.messages.empty());
    EXPECT_FALSE(plant.GetDataInstance()->GetDataPointer(PLANT_LEGACY_FILE));
}

TEST_F(PlantMessages, FromTheMenuAPlantGetsAPhongTag)
{
    BaseObject& plant = scene.place("");
    plant.MakeTag(Tphong)->GetDataInstance()->SetBool(PHONGTAG_PHONG_USEEDGES, false);
    EXPECT_TRUE(plant.Message(MSG_MENUPREPARE, nullptr));
    BaseTag* tag = plant.GetTag(Tphong);
    ASSERT_TRUE(tag);
    EXPECT_FALSE(plant.GetTag(Tphong, 1));
    EXPECT_FALSE(tag->GetDataInstance()->GetBool(PHONGTAG_PHONG_USEEDGES, true)) << "kept";
    EXPECT_EQ(tag->GetDataInstance()->GetFloat(PHONGTAG_PHONG_ANGLE, 7), 0);
}

TEST_F(PlantMessages, AMissingFileIsAskedForAndChecked)
{
    struct Row {
        const char* chosen; // null: cancelled
        bool accepted;
    };
    // By the last suffix in any case, or by the end of the path as it is written.
    const Row rows[] = {{"found/oak.vdt", true},     {"found/OAK.VDT", true},  {"found/oak.vdt.gz", true},
                        {"found/oak.VDT.GZ", false}, {"found/oak.txt", false}, {"vdt.gz", true},
                        {"found/oak", false},        {nullptr, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.chosen ? row.chosen : "cancelled");
        BaseObject& plant = scene.place(oak, 0, 1);
        fs::rename(scene.folder.path("oak"), scene.folder.path("away"));
        plant.Message(MSG_DOCUMENTINFO, nullptr);
        scene.dialogs.messages.clear();
        scene.dialogs.answers = {GEMB_R_YES};
        std::optional<std::string> answer;
        if (row.chosen) answer = scene.folder.write(row.chosen, OakText());
        scene.dialogs.files = {answer};
        imported(plant);
        ASSERT_EQ(scene.dialogs.messages.size(), row.chosen && !row.accepted ? 2u : 1u);
        EXPECT_THAT(scene.dialogs.messages[0].text, testing::HasSubstr(oak));
        EXPECT_EQ(scene.dialogs.messages[0].flags, GEMB_YESNO | GEMB_ICONQUESTION);
        const VerdanthSelectionData selection = SelectionOf(plant);
        if (row.accepted) {
            EXPECT_EQ(ToUtf8(selection.file), *answer);
            EXPECT_EQ(ToUtf8(selection.plantName), "young");
        } else if (row.chosen) {
            EXPECT_THAT(scene.dialogs.messages[1].text, testing::HasSubstr(*answer));
            EXPECT_EQ(scene.dialogs.messages[1].flags, GEMB_OK | GEMB_ICONEXCLAMATION);
            EXPECT_FALSE(selection.file.Content() || selection.plantName.Content());
        } else {
            EXPECT_EQ(ToUtf8(selection.file), oak);
        }
        fs::rename(scene.folder.path("away"), scene.folder.path("oak"));
    }
}

TEST_F(PlantMessages, NobodyIsAskedForWhatIsThereOrWithoutLeave)
{
    BaseObject& plant = scene.place(oak);
    BaseObject& unchosen = scene.place("");
    BaseObject& lost = scene.place(scene.folder.path("gone.vdt"));
    imported(plant);
    imported(unchosen);
    imported(lost, false);
    EXPECT_TRUE(scene.dialogs.messages.empty());
    scene.dialogs.answers = {GEMB_R_NO};
    imported(lost);
    EXPECT_EQ(scene.dialogs.messages.size(), 1u);
    EXPECT_TRUE(scene.dialogs.fileQuestions.empty());
    EXPECT_EQ(ToUtf8(SelectionOf(lost).file), scene.folder.path("gone.vdt"));
}

TEST_F(PlantMessages, SettingTheSelectionOrAnIndexMovesTheOther)
{
    BaseObject& plant = scene.place("");
    EXPECT_FALSE(DataOf(plant).model.model());
    Choose(plant, oak);
    EXPECT_EQ(shown(plant), (Shown{1, 1, "adult", "spring"}));
    EXPECT_EQ(DataOf(plant).model.variant, 1u);

    Set(plant, PLANT_QUALIFIER, 0);
    EXPECT_EQ(shown(plant), (Shown{1, 0, "adult", "winter"}));
    Set(plant, PLANT_VARIANT, 0);
    EXPECT_EQ(shown(plant), (Shown{0, 1, "young", "autumn"})) << "young knows no winter";
    EXPECT_EQ(DataOf(plant).model.variant, 0u);

    // The chosen names survive a change of species.
    Choose(plant, scene.folder.write("elm.vdt", "<verdanth version=\"1.2\"><plant><model/><model name=\"young\">"
                                                "<qualifiers><qualifier id=\"0\" name=\"spring\"/><qualifier id=\"1\" "
                                                "name=\"autumn\"/></qualifiers></model></plant></verdanth>"));
    EXPECT_EQ(shown(plant), (Shown{1, 1, "young", "autumn"}));

    plant.GetDataInstance()->SetInt32(PLANT_VARIANT, -1);
    const DescID id(PLANT_VARIANT);
    DescriptionPostSetValue set;
    set.descid = &id;
    plant.Message(MSG_DESCRIPTION_POSTSETPARAMETER, &set);
    EXPECT_EQ(ToUtf8(SelectionOf(plant).plantName), "young") << "-1 chooses nothing";

    BaseObject& other = scene.place(scene.folder.write("oak/plan.txt", OakText()));
    EXPECT_FALSE(DataOf(other).model.model()) << "not by that name";
}

TEST_F(PlantMessages, FilesThatTheSceneNeedsAreReported)
{
    const auto report = [this](ASSETDATA_FLAG flags) {
        std::vector<std::string> files;
        for (const RootTextureString::Asset& asset : CollectAssets(*scene.document, flags))
            files.push_back(ToUtf8(asset.file));
        return files;
    };
    scene.place("");
    EXPECT_TRUE(report(ASSETDATA_FLAG_0).empty());
    scene.place(oak);
    std::string stub = scene.folder.path("oak/oak_adult.vdt");
    std::replace(stub.begin(), stub.end(), '/', '\\');
    EXPECT_THAT(report(ASSETDATA_FLAG_0), testing::ElementsAre(oak, stub));
    EXPECT_TRUE(report(ASSETDATA_FLAG_NET).empty());
    const std::string lost = scene.folder.path("lost.vdt");
    scene.place(lost);
    EXPECT_THAT(report(ASSETDATA_FLAG_TEXTURESONLY), testing::ElementsAre(oak, stub, lost)) << "missing ones too";
}

TEST_F(PlantMessages, StrippingKeepsTheNameAndTheChoice)
{
    BaseObject& plant = scene.place(oak, 0, 1);
    scene.document->SetDocumentPath(ToFilename(scene.folder.path("oak")));
    EXPECT_TRUE(plant.Message(MSG_MULTI_CLEARSUGGESTEDFOLDER, nullptr));
    EXPECT_EQ(ToUtf8(SelectionOf(plant).file), "oak.vdt");
    EXPECT_EQ(shown(plant), (Shown{0, 1, "young", "autumn"}));
    EXPECT_TRUE(DataOf(plant).model.model());

    // Nor does it forget the choice while the file is not in place yet.
    scene.document->SetDocumentPath(ToFilename(scene.folder.path("elsewhere")));
    EXPECT_TRUE(plant.Message(MSG_MULTI_CLEARSUGGESTEDFOLDER, nullptr));
    EXPECT_EQ(shown(plant), (Shown{0, 1, "young", "autumn"}));
    BaseObject& unchosen = scene.place("");
    EXPECT_TRUE(unchosen.Message(MSG_MULTI_CLEARSUGGESTEDFOLDER, nullptr));
    EXPECT_FALSE(SelectionOf(unchosen).file.Content());
}

TEST_F(PlantMessages, BeforeSavingOlderVersionsAreToldTheChoice)
{
    scene.document->SetDocumentPath(ToFilename(scene.folder.path("oak")));
    BaseObject& plant = scene.place("oak.vdt", 0, 1);
    tell(plant, MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE);
    EXPECT_TRUE(fs::equivalent(oak, TextOfParameter(plant, PLANT_LEGACY_FILE)));
    BaseObject& unchosen = scene.place("");
    tell(unchosen, MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE);
    EXPECT_EQ(TextOfParameter(unchosen, PLANT_LEGACY_FILE), "");

    const UInt32 count = plant.GetDirty(DIRTYFLAGS_DATA);
    tell(plant, MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE);
    EXPECT_EQ(plant.GetDirty(DIRTYFLAGS_DATA), count) << "saving twice changes nothing";
}

TEST_F(PlantMessages, LoadingGivesTheOldReferenceBack)
{
    BaseObject& plant = scene.place(oak, 0);
    scene.evaluate();
    vdt::ModelHandle& model = DataOf(plant).model;
    const uint64_t slot = model.slot;
    for (const Int32 subtype : {MSG_DOCUMENTINFO_TYPE_LOAD, MSG_DOCUMENTINFO_TYPE_MERGE}) tell(plant, subtype);
    EXPECT_EQ(ModelCache().entries[slot].refCounts, (std::vector<uint64_t>{1, 0, 0}));
    fs::remove(oak);
    tell(plant, MSG_DOCUMENTINFO_TYPE_LOAD);
    EXPECT_FALSE(model.model());
    EXPECT_FALSE(ModelCache().entries[slot].model);
    EXPECT_EQ(shown(plant), (Shown{0, 0, "young", "summer"}));
}

TEST_F(PlantMessages, ASceneFindsVariantAndSeasonAgainAfterItsFileWasAway)
{
    scene.place(oak, 0, 0);
    scene.place(oak, 2);
    BaseDocument* opened = saveAndOpen("first.scene");
    ASSERT_TRUE(opened);
    EXPECT_EQ(shown(*opened->GetFirstObject()), (Shown{0, 0, "young", "summer"}));
    EXPECT_EQ(shown(*opened->GetFirstObject()->GetNext()).variant, 2) << "a variant without a name";

    // Nobody shows the models when the scene is opened without them.
    KillDocument(opened);
    KillDocument(scene.document);
    fs::rename(scene.folder.path("oak"), scene.folder.path("away"));
    scene.document = OpenDocument(ToFilename(scene.folder.path("first.scene")));
    ASSERT_TRUE(scene.document);
    EXPECT_FALSE(DataOf(*scene.document->GetFirstObject()).model.model());
    EXPECT_EQ(shown(*scene.document->GetFirstObject()), (Shown{0, 0, "young", "summer"}));
    ASSERT_TRUE(SaveScene(*scene.document, ToFilename(scene.folder.path("second.scene"))));
    fs::rename(scene.folder.path("away"), scene.folder.path("oak"));
    opened = OpenDocument(ToFilename(scene.folder.path("second.scene")));
    ASSERT_TRUE(opened);
    EXPECT_EQ(shown(*opened->GetFirstObject()), (Shown{0, 0, "young", "summer"}));
    EXPECT_EQ(shown(*opened->GetFirstObject()->GetNext()).variant, 2);
    EXPECT_EQ(ModelsBeingRead::Count(), 0u);
}

TEST_F(PlantMessages, AForestIsOpenedWithOneReadAModel)
{
    const std::string beech = scene.writeOak("beech");
    for (int i = 0; i < 200; ++i) scene.place(i % 2 ? oak : beech, i % 3, i % 2);
    ASSERT_TRUE(SaveScene(*scene.document, ToFilename(scene.folder.path("forest.scene"))));
    KillDocument(scene.document);
    OpenedFiles oaks(scene.folder.path("oak")), beeches(scene.folder.path("beech"));
    BaseDocument* forest = OpenDocument(ToFilename(scene.folder.path("forest.scene")));
    ASSERT_TRUE(forest);
    EXPECT_EQ(oaks.count("oak.vdt"), 1);
    EXPECT_EQ(beeches.count("oak.vdt"), 1);
    EXPECT_EQ(ModelsBeingRead::Count(), 0u);
    BaseObject* plant = forest->GetFirstObject();
    for (int i = 0; i < 200; ++i, plant = plant->GetNext()) {
        ASSERT_EQ(DataOf(*plant).model.variant, static_cast<uint64_t>(i % 3));
        EXPECT_EQ(IntegerOf(*plant, PLANT_QUALIFIER), i % 2) << i;
    }
}

} // namespace
} // namespace host::test
