#include "core/network.h"
#include "dvdtselection.h"
#include "lib_net.h"
#include "selection/models_being_read.h"
#include "selection/selection_data_type.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::test {
namespace {

using testing::ElementsAre;

class Selection : public testing::Test {
protected:
    static VerdanthSelectionData chosen(const std::string& path)
    {
        VerdanthSelectionData selection;
        selection.file = ToFilename(path);
        return selection;
    }

    static std::vector<std::string> labels(const VerdanthSelectionData& selection)
    {
        std::vector<std::string> texts;
        for (const PlantChoice& plant : selection.plants) texts.push_back(ToUtf8(plant.label));
        for (const QualifierChoice& qualifier : selection.qualifiers) texts.push_back(ToUtf8(qualifier.label));
        return texts;
    }

    void setLibrary(const std::string& path)
    {
        BaseContainer settings;
        settings.SetFilename(kSettingLibraryFolder, ToFilename(path));
        SetWorldPluginData(kPlantBrowserId, settings);
    }

    PlantScene scene;
    std::string oak = scene.writeOak();
};

TEST_F(Selection, UpdateFillsListsAndFallsBackToTheModelsDefaults)
{
    VerdanthSelectionData selection = chosen(oak);
    selection.plantName = "gone";
    selection.qualifierName = "gone";
    ASSERT_TRUE(selection.Update(nullptr));
    EXPECT_EQ(ToUtf8(selection.speciesName), "Quercus");
    EXPECT_EQ(ToUtf8(selection.label), "Oak");
    EXPECT_THAT(labels(selection), ElementsAre("Young", "Model 1", "Model 2", "In winter", "spring"));
    EXPECT_EQ(ToUtf8(selection.plantName), "adult");
    EXPECT_EQ(ToUtf8(selection.qualifierName), "spring");
    EXPECT_EQ(selection.GetPlantIndex(), 1);
    EXPECT_EQ(selection.GetQualifierIndex(), 1);
    EXPECT_THAT(ToUtf8(selection.plants[1].file), testing::HasSubstr("oak_adult.vdt"));
    EXPECT_EQ(selection.plants[0].file, selection.file);

    selection.SetPlantIndex(0);
    EXPECT_EQ(ToUtf8(selection.plantName), "young");
    EXPECT_THAT(labels(selection), testing::Contains("In winter")) << "lists are made by Update alone";
    selection.SetQualifierIndex(0);
    ASSERT_TRUE(selection.Update(nullptr));
    EXPECT_EQ(ToUtf8(selection.qualifierName), "autumn") << "young has no winter; its default";
    for (const Int32 outside : {-1, 3, 1000}) {
        selection.SetPlantIndex(outside);
        EXPECT_FALSE(selection.plantName.Content());
        EXPECT_EQ(selection.GetPlantIndex(), 2) << "the variant without a name";
    }
}

TEST_F(Selection, WhatCannotBeFoundKeepsTheChosenNames)
{
    const std::string bad[] = {scene.folder.path("nothing.vdt"), scene.folder.write("notes.txt", "no plant"),
                               scene.folder.write("a.b.vdt", OakText())};
    for (const std::string& path : bad) {
        SCOPED_TRACE(path);
        VerdanthSelectionData selection = chosen(oak);
        selection.Update(nullptr);
        selection.file = ToFilename(path);
        EXPECT_FALSE(selection.Update(nullptr));
        EXPECT_TRUE(selection.plants.empty() && selection.qualifiers.empty() && !selection.label.Content());
        EXPECT_EQ(ToUtf8(selection.plantName) + ToUtf8(selection.qualifierName), "adultspring");
        EXPECT_EQ(selection.GetPlantIndex(), -1);
        selection.file = ToFilename(oak);
        EXPECT_TRUE(selection.Update(nullptr));
        EXPECT_EQ(selection.GetPlantIndex(), 1);
    }

    VerdanthSelectionData unreadable = chosen(scene.folder.write("broken.vdt", "<verdanth"));
    unreadable.plantName = "old";
    EXPECT_TRUE(unreadable.Update(nullptr)) << "the file is there";
    EXPECT_EQ(ToUtf8(unreadable.plantName), "old");

    VerdanthSelectionData empty = chosen("");
    empty.plantName = "old";
    EXPECT_FALSE(empty.Update(scene.document));
    EXPECT_FALSE(empty.plantName.Content());
}

TEST_F(Selection, EntriesOfOneNameAreToldApartByTheirIndex)
{
    const std::string twins = scene.folder.write(
        "twins.vdt", "<verdanth version=\"1.2\"><plant><model/><model name=\"x\"/><model name=\"x\"><qualifiers>"
                     "<qualifier id=\"0\"/><qualifier id=\"1\"/></qualifiers></model><model/></plant></verdanth>");
    VerdanthSelectionData selection = chosen(twins);
    selection.Update(nullptr);
    for (const Int32 index : {2, 3, 1, 0}) {
        selection.SetPlantIndex(index);
        EXPECT_TRUE(selection.Update(nullptr));
        EXPECT_EQ(selection.GetPlantIndex(), index);
    }
    selection.SetPlantIndex(2);
    selection.Update(nullptr);
    selection.SetQualifierIndex(1);
    selection.Update(nullptr);
    EXPECT_EQ(selection.GetQualifierIndex(), 1);
    const VerdanthSelectionData copy = selection;
    EXPECT_EQ(copy.GetPlantIndex(), 2);
    selection.plantIndex = 17;
    EXPECT_EQ(selection.GetPlantIndex(), 1) << "the first of the name";
}

TEST(SelectionPath, IsRelativeUnlessItNamesARootOrADrive)
{
    struct Row {
        const char* path;
        bool relative;
    };
    const Row rows[] = {{"", true},          {"a", true},      {"oak.vdt", true},  {"..\\oak.vdt", true},
                        {"/oak.vdt", false}, {"C:\\o", false}, {"z:/o", false},    {"C:", true},
                        {"C:o", true},       {"1:\\o", true},  {"\\\\s\\o", true}, {"\\o", true}};
    for (const Row& row : rows) EXPECT_EQ(IsRelativePath(Filename(String(row.path))) != 0, row.relative) << row.path;
}

TEST_F(Selection, PathsAreResolvedBesideTheDocumentThenInTheLibraryThenByName)
{
    const auto& root = scene.folder;
    scene.document->SetDocumentPath(ToFilename(root.path("scene")));
    const auto resolved = [&](const std::string& file, bool search = true) {
        return ToUtf8(chosen(file).ResolvePath(scene.document, search));
    };
    const auto sameFile = [](const std::string& a, const std::string& b) {
        std::string text = a;
        std::replace(text.begin(), text.end(), '\\', '/');
        return std::filesystem::exists(text) && std::filesystem::equivalent(text, b);
    };

    const std::string beside = root.write("scene/oak.vdt", OakText());
    EXPECT_TRUE(sameFile(resolved("oak.vdt"), beside));
    EXPECT_TRUE(sameFile(resolved("oak.vdt", false), beside));
    EXPECT_TRUE(sameFile(resolved("C:\\old place\\oak.vdt"), beside)) << "by its name in the document's folder";
    EXPECT_EQ(resolved("C:\\old place\\oak.vdt", false), "C:\\old place\\oak.vdt");

    const std::string inLibrary = root.write("library/oak/oak.vdt", OakText());
    setLibrary(root.path("library"));
    EXPECT_TRUE(sameFile(resolved("C:/old place/oak.vdt"), inLibrary)) << "the library comes first";
    EXPECT_TRUE(sameFile(resolved("oak.vdt"), beside)) << "a file that is there stays";
    const std::string compressed = root.write("library/elm/elm.vdt.gz", "");
    EXPECT_TRUE(sameFile(resolved("plants\\elm.vdt.gz"), compressed));
    EXPECT_EQ(resolved(""), "");
    Filename found;
    for (const char* unnamed : {"", "folder\\", ".vdt"}) EXPECT_FALSE(FindInLibrary(unnamed, found)) << unnamed;

    // Without a folder there is no place beside the document.
    scene.document->SetDocumentPath(Filename());
    EXPECT_EQ(resolved("ash.vdt"), "ash.vdt");
    EXPECT_EQ(ToUtf8(chosen("ash.vdt").ResolvePath(nullptr, true)), "ash.vdt");
}

TEST_F(Selection, ComparesByFileAndIndices)
{
    VerdanthSelectionDataType type;
    VerdanthSelectionData a = chosen(oak);
    a.Update(nullptr);
    VerdanthSelectionData b = a;
    EXPECT_EQ(type.Compare(&a, &b), 0);
    b.label = "other";
    b.plants[1].name = b.plantName = "renamed";
    EXPECT_EQ(type.Compare(&a, &b), 0) << "names do not count";
    b.SetPlantIndex(2);
    EXPECT_EQ(type.Compare(&a, &b), -1);
    EXPECT_EQ(type.Compare(&b, &a), 1);
    b = a;
    b.SetQualifierIndex(0);
    EXPECT_EQ(type.Compare(&a, &b), 1);
    EXPECT_EQ(type.Compare(&b, &a), -1);
    b.file = Filename("elsewhere.vdt");
    EXPECT_EQ(type.Compare(&a, &b), -1);
    EXPECT_EQ(type.Compare(&b, &a), -1) << "files have no order";
}

TEST_F(Selection, ItsPartsAreParametersOfTheirOwn)
{
    BaseObject& plant = scene.place("");
    const auto part = [](Int32 id) { return DescID(DescLevel(PLANT_SELECTION), DescLevel(id)); };
    EXPECT_TRUE(plant.SetParameter(part(VDTSELECTION_FILE), ToFilename(oak), DESCFLAGS_SET_0));
    const auto indices = [&] {
        GeData variant, qualifier;
        EXPECT_TRUE(plant.GetParameter(part(VDTSELECTION_VARIANT), variant, DESCFLAGS_GET_0));
        EXPECT_TRUE(plant.GetParameter(part(VDTSELECTION_QUALIFIER), qualifier, DESCFLAGS_GET_0));
        return std::pair(variant.GetInt32(), qualifier.GetInt32());
    };
    EXPECT_EQ(indices(), std::pair(1, 1));
    EXPECT_EQ(IntegerOf(plant, PLANT_VARIANT), 1) << "the object follows";
    EXPECT_TRUE(plant.SetParameter(part(VDTSELECTION_QUALIFIER), GeData(0), DESCFLAGS_SET_0));
    EXPECT_EQ(indices(), std::pair(1, 0));
    EXPECT_TRUE(plant.SetParameter(part(VDTSELECTION_VARIANT), GeData(-1), DESCFLAGS_SET_0));
    EXPECT_EQ(indices(), std::pair(1, 0));
    GeData file;
    EXPECT_TRUE(plant.GetParameter(part(VDTSELECTION_FILE), file, DESCFLAGS_GET_0));
    EXPECT_EQ(file.GetFilename(), ToFilename(oak));

    DESCFLAGS_GET flags = DESCFLAGS_GET_0;
    VerdanthSelectionData selection;
    VerdanthSelectionDataType().GetParameter(&selection, DescID(77), file, flags);
    EXPECT_FALSE(flags & DESCFLAGS_GET_PARAM_GET);
}

// A farm's server, where files are kept under the same names.
class FileServer final : public NetRenderService {
public:
    explicit FileServer(const std::string& path) : stands(path) {}
    bool fetch(const Filename&, Filename& here) override
    {
        here = ToFilename(stands);
        return true;
    }

    std::string stands;
};

TEST_F(Selection, IsReadBackFromAFileAndFetchedFromAServerIfNeedBe)
{
    VerdanthSelectionDataType type;
    const auto throughFile = [&](const VerdanthSelectionData& written) {
        const Filename name = ToFilename(scene.folder.path("selection"));
        AutoAlloc<HyperFile> file;
        EXPECT_TRUE(file->Open(1, name, FILEOPEN_WRITE, FILEDIALOG_NONE) && type.WriteData(&written, file) &&
                    file->Close());
        VerdanthSelectionData read;
        EXPECT_TRUE(file->Open(1, name, FILEOPEN_READ, FILEDIALOG_NONE) && type.ReadData(&read, file, 0));
        file->Close();
        return read;
    };
    VerdanthSelectionData selection = chosen(oak);
    selection.Update(nullptr);
    selection.SetQualifierIndex(0);
    const VerdanthSelectionData same = throughFile(selection);
    EXPECT_EQ(type.Compare(&same, &selection), 0);
    EXPECT_EQ(labels(same), labels(selection));

    selection.file = Filename("S:\\farm\\oak.vdt");
    EXPECT_EQ(throughFile(selection).file, selection.file);
    EXPECT_EQ(ToUtf8(throughFile(selection).qualifierName), "winter");
    FileServer server(oak);
    host::PartOf<host::Network>().service = &server;
    const VerdanthSelectionData fetched = throughFile(selection);
    EXPECT_EQ(fetched.file, ToFilename(oak));
    EXPECT_EQ(fetched.GetQualifierIndex(), 0);
    ModelsBeingRead::ReleaseAll();
}

TEST_F(Selection, AStubWithoutQualifiersIsNotReadTwice)
{
    const std::string stub = "<verdanth version=\"1.2\"><model><skeleton><points>0 0 0 0 1 0</points><polylines>"
                             "<nvertices>2</nvertices><vertices>0 1</vertices></polylines></skeleton></model>"
                             "</verdanth>";
    scene.folder.write("bare/stub.vdt", stub);
    const std::string bare = scene.folder.write(
        "bare/bare.vdt", "<verdanth version=\"1.2\"><plant><model/><model name=\"s\" extref=\"stub.vdt\"/></plant>"
                         "</verdanth>");
    OpenedFiles opened(scene.folder.path("bare"));
    vdt::NullMessageHandler silent;
    BaseObject& shown = scene.place(bare, 0);
    opened.count("");
    VerdanthSelectionData selection = chosen(bare);
    selection.plantName = "s";
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(selection.Update(nullptr));
    EXPECT_EQ(opened.count("stub.vdt"), 1);
    EXPECT_TRUE(DataOf(shown).model.model()->variants[1].skeleton.isEmpty()) << "nobody shows it";
}

} // namespace
} // namespace host::test
