#include "c4d_symbols.h"
#include "core/string_access.h"
#include "dvdtselection.h"
#include "lib_iconcollection.h"
#include "oplant.h"
#include "plant/plant_library.h"
#include "shell/module_entry.h"
#include "shell/registration.h"
#include "support/model_cache.h"
#include "support/plugin_ids.h"
#include "support/resources.h"
#include "support/test_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace host::test;
using host::TextOf;
using host::Utf8Of;

namespace {

std::string nameOf(Int32 id, PLUGINTYPE type)
{
    BasePlugin* plugin = FindPlugin(id, type);
    return plugin ? Utf8Of(plugin->GetName()) : "(none)";
}

TEST(LifeCycle, AStartedModuleHasBroughtInWhatItPromises)
{
    for (const char* language : {"US", "DE"}) {
        SCOPED_TRACE(language);
        ModuleHost host({.language = language});
        EXPECT_TRUE(host.console.empty()) << host.console.front();
        EXPECT_EQ(nameOf(kPlantObjectId, PLUGINTYPE_OBJECT), language == std::string("US") ? "Plant" : "Pflanze");
        EXPECT_EQ(FindPlugin(kPlantObjectId, PLUGINTYPE_OBJECT)->GetInfo(), 0x10000404);
        EXPECT_EQ(nameOf(kPlantDrawHookId, PLUGINTYPE_SCENEHOOK), "");
        EXPECT_EQ(FindPlugin(kPlantDrawHookId, PLUGINTYPE_SCENEHOOK)->GetInfo(), 0x20000000);
        EXPECT_EQ(nameOf(kSelectionDataTypeId, PLUGINTYPE_CUSTOMDATATYPE), "Verdanth Selection");

        C4DLibrary* library = nullptr;
        ASSERT_EQ(CheckLib(kPlantObjectLibraryId, 0, &library), &g_PlantObjectLibrary);
        EXPECT_EQ(library->version, 1000);
        EXPECT_EQ(library->size, 56);

        IconData icon;
        ASSERT_TRUE(GetIcon(kPlantObjectId, &icon));
        BaseBitmap* part = icon.GetClonePart();
        ASSERT_TRUE(part);
        EXPECT_EQ(part->GetBw(), 64);
        EXPECT_EQ(part->GetBh(), 64);
        BaseBitmap::Free(part);
        host.end();
        EXPECT_EQ(g_IconSheet, nullptr);
        EXPECT_EQ(g_PluginPath, nullptr);
    }
}

TEST(LifeCycle, AHostThatIsTooOldIsRefusedAndNothingIsLeftOfIt)
{
    for (const Int32 level : {15000, 15999}) {
        SCOPED_TRACE(level);
        TestHost host({.apiLevel = level});
        EXPECT_FALSE(host.modules().attach(c4d_main, ModuleFile()));
        EXPECT_TRUE(host.said("it needs a newer host than this one of level " + std::to_string(level)));
        host.modules().start();
        EXPECT_EQ(FindPlugin(kPlantObjectId, PLUGINTYPE_OBJECT), nullptr);
        c4d_main(C4DPL_END, nullptr, nullptr, nullptr); // a refused call counts
    }
    const ModuleHost host({.apiLevel = 16000});
    EXPECT_NE(FindPlugin(kPlantObjectId, PLUGINTYPE_OBJECT), nullptr);
}

TEST(LifeCycle, OnlyTheOutermostLoadAndEndDoSomething)
{
    const TestHost host;
    OperatingSystem first{.version = 18000, .Ge = nullptr}, second = first;
    Filename here("/first/verdanth.so"), there("/second/verdanth.so");
    const auto load = [](OperatingSystem* tables, Filename* file) {
        return c4d_main(C4DPL_INIT_SYS, tables, nullptr, file);
    };
    const auto end = [] { return c4d_main(C4DPL_END, nullptr, nullptr, nullptr); };
    EXPECT_EQ(end(), 1); // without a load
    EXPECT_EQ(load(&first, nullptr), C4DPL_ERROR_VERSION);
    EXPECT_EQ(load(&first, &here), 1); // nested in the refused one, so it keeps nothing
    EXPECT_EQ(g_PluginPath, nullptr);
    end();
    end();

    EXPECT_EQ(load(&first, &here), 1);
    EXPECT_EQ(load(&second, &there), 1);
    for (int ends = 0; ends < 2; ++ends) {
        ASSERT_TRUE(g_PluginPath);
        EXPECT_EQ(*g_PluginPath, Filename("/first"));
        EXPECT_EQ(g_HostTables, &first);
        end();
    }
    EXPECT_EQ(g_PluginPath, nullptr);

    EXPECT_EQ(c4d_main(C4DPL_INIT_VERSION, nullptr, nullptr, nullptr), 5);
    EXPECT_EQ(c4d_main(5, nullptr, nullptr, nullptr), C4DPL_ERROR);
    Int32 priority = 0;
    EXPECT_EQ(c4d_main(C4DPL_MESSAGE, nullptr, &priority, nullptr), 1);
    EXPECT_EQ(priority, -500);
    EXPECT_EQ(c4d_main(C4DPL_MESSAGE, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(c4d_main(C4DPL_MESSAGE, reinterpret_cast<void*>(Int{4711}), nullptr, nullptr), 1);
}

NodeData* makeNoPlant()
{
    return nullptr;
}

// Another module, which takes an id of ours: at its start the plant object, at its system start something else.
template <Bool (*Take)(), Int32 Message> Int32 otherModule(Int32 action, void* p1, void*, void*)
{
    switch (action) {
    case C4DPL_INIT_VERSION: return C4DPL_VERSION;
    case C4DPL_INIT: return Message == 0 ? Take() : 1;
    case C4DPL_MESSAGE: return Message && reinterpret_cast<Int>(p1) == Message ? Take() : 1;
    default: return 1;
    }
}

Bool takePlantObject()
{
    return RegisterObjectPlugin(kPlantObjectId, "Elder", 0, makeNoPlant, String(), nullptr, 2);
}

C4DLibrary elderLibrary;

Bool takeLibrary()
{
    return InstallLibrary(kPlantObjectLibraryId, &elderLibrary, 1000, sizeof(elderLibrary));
}

TEST(LifeCycle, AModuleOfTheFamilyThatCameFirstKeepsThePlantObject)
{
    TestHost host;
    ASSERT_TRUE(host.modules().attach(c4d_main, ModuleFile())); // loaded first, yet started later
    ASSERT_TRUE(host.modules().attach(otherModule<takePlantObject, 0>, "/elder/elder.so"));
    host.modules().start();
    EXPECT_TRUE(host.console.empty());
    EXPECT_EQ(nameOf(kPlantObjectId, PLUGINTYPE_OBJECT), "Elder");
    EXPECT_EQ(nameOf(kPlantDrawHookId, PLUGINTYPE_SCENEHOOK), "(none)");
    EXPECT_EQ(CheckLib(kPlantObjectLibraryId, 0, nullptr), &g_PlantObjectLibrary);
}

TEST(LifeCycle, AStartThatFailsPartWayKeepsWhatCameBefore)
{
    TestHost host;
    ASSERT_TRUE(host.modules().attach(otherModule<takeLibrary, C4DPL_INIT_SYS>, "/elder/elder.so"));
    ASSERT_TRUE(host.modules().attach(c4d_main, ModuleFile()));
    host.modules().start();
    EXPECT_TRUE(host.said("did not start as a whole"));
    EXPECT_EQ(nameOf(kPlantObjectId, PLUGINTYPE_OBJECT), "Plant");
    EXPECT_EQ(CheckLib(kPlantObjectLibraryId, 0, nullptr), &elderLibrary);
}

TEST(LifeCycle, WithoutItsResourcesTheModuleDoesNotStart)
{
    const vdt::test::TemporaryFolder folder;
    const auto start = [&folder] {
        TestHost host;
        EXPECT_TRUE(host.modules().attach(c4d_main, Filename(TextOf(folder.path("verdanth.so")))));
        host.modules().start();
        return FindPlugin(kPlantObjectId, PLUGINTYPE_OBJECT) != nullptr;
    };
    EXPECT_FALSE(start());
    std::filesystem::copy(Utf8Of(ModuleFile().GetDirectory().GetString()) + "/res", folder.root / "res",
                          std::filesystem::copy_options::recursive);
    EXPECT_TRUE(start());
    folder.write("res/player.tif", "no picture");
    EXPECT_FALSE(start());
    std::filesystem::remove(folder.root / "res/player.tif");
    EXPECT_FALSE(start());
}

TEST(LifeCycle, TextsTakeTheirParametersAsTheyAre)
{
    {
        const ModuleHost host;
        EXPECT_EQ(Utf8Of(LoadText(IDS_STATISTICS_MESH, "1#", "2")), "Points: 1#, polygons: 2");
        EXPECT_EQ(Utf8Of(LoadText(IDS_PLANT, "unasked")), "Plant");
    }
    const TestHost host;
    EXPECT_FALSE(LoadText(IDS_PLANT).Content());
}

TEST(LifeCycle, TheModuleAsALibraryStartsInRunAfterRun)
{
    for (int run = 0; run < 3; ++run) {
        TestHost host;
        ASSERT_TRUE(host.modules().load(VERDANTH_MODULE));
        host.modules().start();
        EXPECT_TRUE(host.console.empty()) << host.console.front();
        C4DLibrary* library = CheckLib(kPlantObjectLibraryId, 0, nullptr);
        ASSERT_TRUE(library);
        EXPECT_NE(library, &g_PlantObjectLibrary); // its own, not the one that is linked here
        BaseObject* plant = BaseObject::Alloc(kPlantObjectId);
        ASSERT_TRUE(plant);
        EXPECT_EQ(Utf8Of(plant->GetName()), "Plant");
        BaseObject::Free(plant);
    }
}

TEST(LifeCycle, AHundredRunsLeaveNothingBehind)
{
    const Filename model(VERDANTH_DOCS "/examples/seedling.vdt");
    for (int run = 0; run < 100; ++run) {
        ModuleHost host;
        BaseDocument* document = BaseDocument::Alloc();
        ASSERT_TRUE(document);
        InsertBaseDocument(document);
        BaseObject* plants[2];
        for (BaseObject*& plant : plants) {
            plant = BaseObject::Alloc(kPlantObjectId);
            ASSERT_TRUE(plant);
            document->InsertObject(plant, nullptr, nullptr);
            const DescID file = DescID(DescLevel(PLANT_SELECTION), DescLevel(VDTSELECTION_FILE));
            EXPECT_TRUE(plant->SetParameter(file, GeData(model), DESCFLAGS_SET_0));
            const GeData full(Int32{PLANT_DISPLAY_MODE_FULL});
            EXPECT_TRUE(plant->SetParameter(DescID(PLANT_DISPLAY_MODE), full, DESCFLAGS_SET_0));
        }
        EXPECT_TRUE(document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0));
        for (BaseObject* plant : plants) {
            BaseObject* cache = plant->GetCache();
            ASSERT_TRUE(cache && cache->IsInstanceOf(Opolygon));
            EXPECT_GT(static_cast<PolygonObject*>(cache)->GetPolygonCount(), 10);
        }
    }
    EXPECT_TRUE(std::ranges::all_of(ModelCache().entries, [](const vdt::CacheEntry& entry) { return !entry.model; }));
}

} // namespace
