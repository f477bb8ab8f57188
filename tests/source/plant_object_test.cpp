#include "customgui_unitscale.h"
#include "plant/plant_object.h"
#include "selection/models_being_read.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::test {
namespace {

class PlantObject : public testing::Test {
protected:
    static std::vector<std::string> cycle(BaseObject& plant, Int32 parameter)
    {
        AutoAlloc<Description> description;
        EXPECT_TRUE(plant.GetDescription(description, DESCFLAGS_DESC_0));
        const BaseContainer* item = description->GetParameterI(DescLevel(parameter, DTYPE_LONG, 0), nullptr);
        const BaseContainer* entries = item ? item->GetContainerInstance(DESC_CYCLE) : nullptr;
        std::vector<std::string> texts;
        for (Int32 i = 0; entries && entries->GetIndexId(i) != NOTOK; ++i)
            texts.push_back(std::to_string(entries->GetIndexId(i)) + ":" +
                            ToUtf8(entries->GetIndexData(i)->GetString()));
        return texts;
    }

    static std::vector<Int32> enabled(BaseObject& plant)
    {
        std::vector<Int32> ids;
        for (const PlantParameter& parameter : PlantParameters())
            if (plant.GetEnabling(parameter.id, GeData(), DESCFLAGS_ENABLE_0, nullptr)) ids.push_back(parameter.id);
        return ids;
    }

    static uint64_t references(const BasePlantObject& plant)
    {
        const vdt::ModelHandle& model = plant.model;
        return model.cache ? model.cache->entries[model.slot].refCounts[model.variant] : 0;
    }

    // As if the host had read these from a scene file of that level.
    static void read(BaseObject& plant, Int32 level) { DataOf(plant).Read(&plant, nullptr, level); }

    PlantScene scene;
    std::string oak = scene.writeOak();
};

TEST_F(PlantObject, ParametersAreEnabledByTheirRules)
{
    using testing::Contains;
    using testing::Not;

    BaseObject& plant = scene.place("");
    EXPECT_THAT(enabled(plant), Not(Contains(PLANT_VARIANT)));
    EXPECT_THAT(enabled(plant), Not(Contains(PLANT_QUALIFIER)));
    Choose(plant, oak);
    EXPECT_THAT(enabled(plant), Contains(PLANT_VARIANT));
    EXPECT_THAT(enabled(plant), Not(Contains(PLANT_QUALIFIER))) << "no file is read to find out";
    cycle(plant, PLANT_QUALIFIER);
    EXPECT_THAT(enabled(plant), Contains(PLANT_QUALIFIER));
    Set(plant, PLANT_VARIANT, 2);
    EXPECT_THAT(enabled(plant), Not(Contains(PLANT_QUALIFIER))) << "no seasons";

    // Each row changes one parameter of a plant and tells what it switches on or off.
    struct Row {
        Int32 changed, value;
        std::vector<Int32> on, off;
    };
    const std::vector<Int32> geometry = {PLANT_FOLIAGE_THINNING, PLANT_LIMIT_LEVEL,      PLANT_LIMIT_RADIUS,
                                         PLANT_FOLIAGE_AMOUNT,   PLANT_SUBDIVISION_MODE, PLANT_SUBDIVISION_LEVEL,
                                         PLANT_DISPLAY_MODE};
    const std::vector<Int32> cloud = {PLANT_CLOUD_OPTION_A, PLANT_CLOUD_SHADING, PLANT_CLOUD_OPTION_B};
    const Row rows[] = {{PLANT_LIMIT_LEVEL, 1, {PLANT_MAX_LEVEL}, {PLANT_MIN_RADIUS}},
                        {PLANT_LIMIT_RADIUS, 1, {PLANT_MAX_LEVEL, PLANT_MIN_RADIUS}, {}},
                        {PLANT_PROXY_ONLY, 1, {PLANT_PROXY_ONLY}, {PLANT_MAX_LEVEL, PLANT_MIN_RADIUS}},
                        {PLANT_PROXY_ONLY, 1, {}, geometry},
                        {PLANT_DISPLAY_MODE, 2, cloud, geometry}, // also under a proxy
                        {PLANT_PROXY_ONLY, 0, geometry, {}},
                        {PLANT_DISPLAY_MODE, 3, {PLANT_MAX_LEVEL}, cloud},
                        {PLANT_LIMIT_LEVEL, 0, {PLANT_MIN_RADIUS}, {PLANT_MAX_LEVEL}},
                        {PLANT_USE_DOCUMENT_UNITS, 0, {PLANT_UNITS}, {}},
                        {PLANT_USE_DOCUMENT_UNITS,
                         1,
                         {PLANT_SELECTION, PLANT_LEGACY_FILE, PLANT_STATISTICS, PLANT_USE_DOCUMENT_UNITS},
                         {PLANT_UNITS}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.changed) + " = " + std::to_string(row.value));
        Set(plant, row.changed, row.value);
        EXPECT_THAT(enabled(plant), testing::IsSupersetOf(row.on));
        for (const Int32 off : row.off) EXPECT_THAT(enabled(plant), Not(Contains(off)));
    }
    EXPECT_TRUE(plant.GetEnabling(12345, GeData(), DESCFLAGS_ENABLE_0, nullptr)) << "others' parameters";
}

TEST_F(PlantObject, TheDescriptionListsWhatTheModelOffers)
{
    BaseObject& plant = scene.place("");
    EXPECT_TRUE(cycle(plant, PLANT_VARIANT).empty() && cycle(plant, PLANT_QUALIFIER).empty());
    EXPECT_EQ(cycle(plant, PLANT_DISPLAY_MODE).size(), 4u) << "loaded all the same";

    Choose(plant, oak);
    EXPECT_THAT(cycle(plant, PLANT_VARIANT), testing::ElementsAre("0:Young", "1:Model 1", "2:Model 2"));
    EXPECT_THAT(cycle(plant, PLANT_QUALIFIER), testing::ElementsAre("0:In winter", "1:spring"));
    Set(plant, PLANT_VARIANT, 2);
    EXPECT_TRUE(cycle(plant, PLANT_QUALIFIER).empty());
    EXPECT_EQ(DataOf(plant).model.variant, 2u);

    AutoAlloc<Description> description;
    DESCFLAGS_DESC flags = DESCFLAGS_DESC_0;
    EXPECT_FALSE(DataOf(plant).GetDDescription(&plant, description, flags)) << "the flag counts";
    EXPECT_TRUE(flags & DESCFLAGS_DESC_LOADED);
    Choose(plant, scene.folder.path("gone.vdt"));
    EXPECT_TRUE(cycle(plant, PLANT_VARIANT).empty());
}

TEST_F(PlantObject, ItsDimensionIsTheBoundInModelUnits)
{
    BaseObject& plant = scene.place("");
    Vector center(1), half(1);
    DataOf(plant).GetDimension(&plant, &center, &half);
    EXPECT_TRUE(center.IsZero() && half.IsZero());

    OpenedFiles opened(scene.folder.path("oak"));
    Choose(plant, scene.folder.write("oak/own.vdt", // qualifiers in the main file: no need for the stub's own
                                     "<verdanth version=\"1.2\"><plant unit=\"meters\"><model extref=\"oak_adult.vdt\">"
                                     "<qualifiers><qualifier id=\"0\"/></qualifiers><bound>-5 0 -6 7 40 8</bound>"
                                     "</model></plant></verdanth>"));
    DataOf(plant).GetDimension(&plant, &center, &half);
    EXPECT_EQ(half, Vector(6, 20, -7)) << "with the sign that scenes know";
    EXPECT_EQ(center, Vector(1, 20, -1));
    DataOf(plant).GetDimension(&plant, nullptr, nullptr);
    EXPECT_EQ(opened.count("oak_adult.vdt"), 0);
}

TEST_F(PlantObject, CopiesShareTheModelAndDrawNothingYet)
{
    BaseObject& plant = scene.place(oak, 0);
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    scene.evaluate();
    ASSERT_FALSE(DataOf(plant).drawHelper.points.empty());
    OpenedFiles opened(scene.folder.path("oak"));
    const uint64_t before = references(DataOf(plant));
    {
        BaseObject* copy = static_cast<BaseObject*>(plant.GetClone(COPYFLAGS_0, nullptr));
        ASSERT_TRUE(copy);
        EXPECT_EQ(references(DataOf(plant)), before + 1);
        EXPECT_EQ(DataOf(*copy).builtMode, PLANT_DISPLAY_MODE_CLOUD);
        EXPECT_TRUE(DataOf(*copy).drawHelper.points.empty() && DataOf(*copy).materialDirty.empty());
        scene.document->InsertObject(copy, nullptr, nullptr);
        scene.evaluate();
        EXPECT_EQ(DataOf(*copy).drawHelper.points.size(), DataOf(plant).drawHelper.points.size());
        copy->Remove();
        BaseObject::Free(copy);
    }
    EXPECT_EQ(references(DataOf(plant)), before);
    EXPECT_EQ(opened.count("oak.vdt"), 0);
}

TEST_F(PlantObject, ScenesOfTheFirstVersionFindTheirPlant)
{
    // Without a document's folder the file is found once the scene has been read.
    for (const bool relative : {false, true}) {
        SCOPED_TRACE(relative);
        scene.document->SetDocumentPath(ToFilename(scene.folder.path(relative ? "oak" : "")));
        BaseObject& plant = scene.place("");
        BaseContainer& container = *plant.GetDataInstance();
        container.SetFilename(PLANT_LEGACY_FILE, relative ? Filename("oak.vdt") : ToFilename(oak));
        container.SetInt32(PLANT_VARIANT, 0);
        container.SetInt32(PLANT_QUALIFIER, 1);
        read(plant, 0);
        EXPECT_FALSE(DataOf(plant).model.model());
        EXPECT_EQ(SelectionOf(plant).GetPlantIndex(), relative ? -1 : 0);

        DocumentInfoData loaded;
        loaded.type = MSG_DOCUMENTINFO_TYPE_LOAD;
        loaded.doc = scene.document;
        plant.Message(MSG_DOCUMENTINFO, &loaded);
        EXPECT_EQ(SelectionOf(plant).GetPlantIndex(), 0);
        EXPECT_EQ(SelectionOf(plant).GetQualifierIndex(), 1);
        EXPECT_EQ(IntegerOf(plant, PLANT_QUALIFIER), 1);
        EXPECT_EQ(DataOf(plant).model.variant, 0u);
        EXPECT_EQ(ModelsBeingRead::Count(), 0u);
    }
}

TEST_F(PlantObject, LaterScenesTellOlderVersions)
{
    for (const Int32 level : {1, 2, 3}) {
        SCOPED_TRACE(level);
        BaseObject& plant = scene.place(oak, 0, 1);
        BaseContainer& container = *plant.GetDataInstance();
        container.SetInt32(PLANT_VARIANT, 7);
        container.SetInt32(PLANT_QUALIFIER, 7);
        read(plant, level);
        EXPECT_EQ(container.GetInt32(PLANT_VARIANT), level == 1 ? 0 : 7);
        EXPECT_EQ(container.GetInt32(PLANT_QUALIFIER), level == 1 ? 1 : 7);
        EXPECT_EQ(container.GetFilename(PLANT_LEGACY_FILE), level == 1 ? ToFilename(oak) : Filename());
    }
    BaseObject& lost = scene.place(scene.folder.path("gone.vdt"));
    lost.GetDataInstance()->SetInt32(PLANT_VARIANT, 2);
    read(lost, 1);
    EXPECT_EQ(IntegerOf(lost, PLANT_VARIANT), 2) << "what is unknown is not written";
}

TEST_F(PlantObject, RefreshingTakesTheModelsDefaults)
{
    BaseObject& plant = scene.place("");
    EXPECT_FALSE(DataOf(plant).RefreshFromSelection(plant)) << "no model";
    Choose(plant, oak);
    Set(plant, PLANT_VARIANT, 0);
    Set(plant, PLANT_QUALIFIER, 0);
    EXPECT_TRUE(DataOf(plant).RefreshFromSelection(plant));
    EXPECT_EQ(IntegerOf(plant, PLANT_VARIANT), 1);
    EXPECT_EQ(IntegerOf(plant, PLANT_QUALIFIER), 1);
    EXPECT_EQ(DataOf(plant).model.variant, 1u);
    EXPECT_EQ(ToUtf8(SelectionOf(plant).plantName), "adult");
    EXPECT_EQ(SelectionOf(plant).GetQualifierIndex(), 1);
}

} // namespace
} // namespace host::test
