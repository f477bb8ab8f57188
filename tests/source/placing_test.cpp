#include "c4d_symbols.h"
#include "core/stand_in_renderers.h"
#include "materials/material_factory.h"
#include "mmaterial.h"
#include "placing/placing.h"
#include "placing/placing_library.h"
#include "support/failing_class.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/resources.h"
#include "support/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace host::test {
namespace {

// Without labels; the leaf has a back of its own.
constexpr const char* kBeech =
    "<verdanth version=\"1.2\"><plant name=\"Fagus\"><materials><material matid=\"1\" name=\"bark\"><diffuse "
    "texture=\"bark.png\"/></material><material matid=\"7\" name=\"leaf\"><diffuse color=\"0.5 1 0\"/><back><diffuse "
    "color=\"0 0.5 0\"/></back></material></materials><model name=\"young\"/></plant></verdanth>";

struct PlacingScene : PlantScene {
    Bool apply(Int32 kind = 1, Int32 quality = 0, LayerObject* layer = nullptr)
    {
        auto* library = static_cast<PlantPlacingLibrary*>(CheckLib(kPlantPlacingLibraryId, 0, nullptr));
        return library->ApplyModelToSelection(document, ToFilename(path), kind, quality, layer);
    }

    BaseObject& placeActive()
    {
        BaseObject& plant = place("");
        document->SetActiveObject(&plant, SELECTION_ADD);
        return plant;
    }

    // Materials of before the application have a star.
    std::string label(BaseMaterial* material)
    {
        return !material ? "none" : ToUtf8(material->GetName()) + (std::ranges::count(old, material) ? "*" : "");
    }
    std::string materials()
    {
        std::string text;
        for (BaseMaterial* m = document->GetFirstMaterial(); m; m = m->GetNext())
            text += label(m) + (m->GetLayerObject(document) ? "+ " : " ");
        return text;
    }
    std::string tags(BaseObject& plant)
    {
        std::string text;
        for (int i = 0; BaseTag* tag = plant.GetTag(Ttexture, i); ++i) {
            text += label(static_cast<TextureTag*>(tag)->GetMaterial()) + "/" +
                    TextOfParameter(*tag, TEXTURETAG_RESTRICTION);
            for (const Int32 id : {TEXTURETAG_SIDE, TEXTURETAG_PROJECTION})
                text += "/" + std::to_string(IntegerOf(*tag, id));
            text += " ";
        }
        return text;
    }
    // All that an application may touch.
    std::string state()
    {
        std::string text = materials();
        for (BaseObject* plant = document->GetFirstObject(); plant; plant = plant->GetNext())
            text += "| " + ToUtf8(plant->GetName()) + " " + ToUtf8(SelectionOf(*plant).file) +
                    (plant->GetBit(BIT_ACTIVE) ? " active " : " ") + tags(*plant);
        return text;
    }

    std::string path = folder.write("beech.vdt", kBeech);
    std::vector<BaseMaterial*> old;
};

// Undoes and redoes the only step there is.
void expectOneStep(PlacingScene& scene, const std::string& before)
{
    const std::string after = scene.state();
    EXPECT_TRUE(scene.document->DoUndo());
    EXPECT_EQ(scene.state(), before);
    EXPECT_FALSE(scene.document->DoUndo());
    EXPECT_TRUE(scene.document->DoRedo());
    EXPECT_EQ(scene.state(), after);
    EXPECT_TRUE(scene.document->DoUndo());
    EXPECT_EQ(scene.state(), before);
    scene.document->FlushUndoBuffer();
    EXPECT_EQ(CountNodes(NodeKind::Material), scene.old.size());
}

TEST(AppliedModel, ReplacesTagsAndTakesKnownMaterialsAsTheUserAnswers)
{
    struct Row {
        const char* plants; // T with a texture tag, U without
        Bool hasTwin;       // of the leaf
        const char* answers;
        const char* materials;
        std::vector<const char*> tags; // one a plant
    };
    const char *fresh = "bark/MAT1/0/6 leaf/MAT7/0/6 ", *reused = "bark/MAT1/0/6 leaf*/MAT7/0/6 ",
               *kept = "old*/MAT1/0/0 ";
    const Row rows[] = {
        {"U", false, "", "bark leaf old* ", {fresh}},
        {"U", true, "Y", "bark old* leaf* ", {reused}},
        {"U", true, "N", "bark leaf old* leaf* ", {fresh}},
        {"T", false, "Y", "bark leaf old* ", {fresh}},
        {"T", false, "N", "old* ", {kept}},
        {"T", true, "YY", "bark old* leaf* ", {reused}},
        {"T", true, "YN", "bark leaf old* leaf* ", {fresh}},
        {"T", true, "N", "old* leaf* ", {kept}},
        {"TU", false, "Y", "bark leaf old* ", {fresh, fresh}},
        {"UT", false, "N", "bark leaf old* ", {fresh, kept}},
        {"TU", true, "YY", "bark old* leaf* ", {reused, reused}},
        {"TU", true, "YN", "bark leaf old* leaf* ", {fresh, fresh}},
        {"TUT", true, "NY", "bark old* leaf* ", {kept, reused, kept}},
        {"TU", true, "NN", "bark leaf old* leaf* ", {kept, fresh}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.plants << row.hasTwin << row.answers);
        PlacingScene scene;
        scene.old = {&scene.addMaterial(Vector())};
        scene.old[0]->SetName(String("old"));
        std::vector<BaseObject*> plants;
        std::string tagged; // names as they are when the question comes
        for (const char* plant = row.plants; *plant; ++plant) {
            plants.push_back(&scene.placeActive());
            if (*plant == 'T') scene.addTexture(*plants.back(), *scene.old[0], "MAT1"), tagged += "\nFagus";
        }
        if (row.hasTwin) {
            vdt::NullMessageHandler silent;
            const auto handle = ModelCache().acquire(ModelPath(ToFilename(scene.path)), silent, 0);
            MaterialEntries entries;
            ASSERT_TRUE(convertMaterials(handle.model()->materials, entries, ColourSpace::Srgb, 1, 0, 0, nullptr));
            scene.old.push_back(entries[1].material.release());
            scene.document->InsertMaterial(scene.old[1], scene.old[0]);
        }
        for (const char* answer = row.answers; *answer; ++answer)
            scene.dialogs.answers.push_back(*answer == 'Y' ? GEMB_R_YES : GEMB_R_NO);
        const std::string before = scene.state();

        EXPECT_TRUE(scene.apply());
        EXPECT_EQ(scene.materials(), row.materials);
        for (size_t i = 0; i < plants.size(); ++i) EXPECT_EQ(scene.tags(*plants[i]), row.tags[i]);
        std::vector<std::string> asked, expected;
        for (const auto& message : scene.dialogs.messages) asked.push_back(message.text);
        if (!tagged.empty()) expected.push_back(ToUtf8(LoadText(IDS_REPLACE_TEXTURE_TAGS, ToHostString(tagged))));
        if (expected.size() < std::string(row.answers).size())
            expected.push_back(ToUtf8(LoadText(IDS_REUSE_MATERIALS, String("\nleaf"))));
        EXPECT_EQ(asked, expected);
        expectOneStep(scene, before);
    }
}

TEST(AppliedModel, NamesThePlantsAndKeepsTheVariantThatTheNewModelHasToo)
{
    PlacingScene scene;
    BaseObject& plant = scene.placeActive();
    Choose(plant, scene.writeOak());
    Set(plant, PLANT_VARIANT, 0);
    EXPECT_TRUE(scene.apply());
    EXPECT_EQ(ToUtf8(plant.GetName()), "Fagus"); // it has no label
    EXPECT_EQ(ToUtf8(SelectionOf(plant).plantName), "young");
    EXPECT_EQ(DataOf(plant).model.model()->name, "Fagus");
    scene.dialogs.answers = {GEMB_R_YES};
    scene.path = scene.writeOak();
    EXPECT_TRUE(scene.apply());
    EXPECT_EQ(ToUtf8(plant.GetName()), "Oak");
    EXPECT_EQ(scene.tags(plant), "bark/MAT1/0/6 leaf/MAT2/0/6 ");

    BaseObject* null = BaseObject::Alloc(Onull);
    scene.document->InsertObject(null, nullptr, nullptr);
    const vdt::Model model;
    EXPECT_FALSE(SetModelOnObject(nullptr, ToFilename(scene.path), model));
    EXPECT_FALSE(SetModelOnObject(null, ToFilename(scene.path), model));
    EXPECT_FALSE(SetModelOnObject(&plant, ToFilename(scene.path + "x"), model));
    EXPECT_EQ(ToUtf8(plant.GetName()), "Oak");
}

TEST(AppliedModel, MeasuresReliefInTheUnitOfTheScene)
{
    PlacingScene scene;
    scene.path = scene.folder.write(
        "cork.vdt", "<verdanth version=\"1.2\"><plant unit=\"meters\" name=\"Quercus suber\"><materials><material "
                    "matid=\"1\" name=\"cork\"><displacement texture=\"cork.png\" height=\"0.25\"/></material>"
                    "</materials><model name=\"young\"/></plant></verdanth>");
    scene.placeActive();
    ASSERT_TRUE(scene.apply(1, 2));
    GeData height;
    ASSERT_TRUE(
        scene.document->GetFirstMaterial()->GetParameter(MATERIAL_DISPLACEMENT_HEIGHT, height, DESCFLAGS_GET_0));
    EXPECT_DOUBLE_EQ(height.GetFloat(), 25); // centimetres
}

TEST(AppliedModel, GivesBothSidesOfALeafTheirOwnTagOrOneOfAPairOnTheLayer)
{
    const struct {
        Int32 kind;
        const char *materials, *tags;
    } rows[] = {
        {1, "bark+ leaf_fr+ leaf_ba+ ", "bark/MAT1/0/6 leaf_fr/MAT7/1/6 leaf_ba/MAT7/2/6 "},
        {0, "bark_fr+ leaf_fr+ leaf_ba+ leaf+ ", "bark_fr/MAT1/0/6 leaf/MAT7/0/6 "}, // what the scene renders with
    };
    for (const auto& row : rows) {
        PlacingScene scene;
        EnterStandInRenderer("vray");
        ASSERT_TRUE(UseRenderer(*scene.document, *FindStandInRenderer("vray")));
        LayerObject* layer = LayerObject::Alloc();
        scene.document->GetLayerObjectRoot()->InsertLast(layer);
        BaseObject& plant = scene.placeActive();
        const std::string before = scene.state();
        EXPECT_TRUE(scene.apply(row.kind, 2, layer));
        EXPECT_EQ(scene.materials(), row.materials);
        EXPECT_EQ(scene.tags(plant), row.tags);

        // Once more: all of it is known, parts and all.
        const std::string once = scene.state();
        scene.dialogs.answers = {GEMB_R_YES, GEMB_R_YES};
        EXPECT_TRUE(scene.apply(row.kind, 2));
        EXPECT_EQ(scene.state(), once);
        EXPECT_TRUE(scene.document->DoUndo());
        expectOneStep(scene, before);
    }
}

TEST(AppliedModel, ChangesPlantsAloneWhereMaterialsCannotBeMade)
{
    for (const Int32 kind : {-1, 10, static_cast<Int32>(Renderer::Corona), 1}) {
        PlacingScene scene;
        scene.placeActive();
        const std::string before = scene.state();
        const FailingClass failing(NodeKind::Material, Mmaterial, 2);
        EXPECT_TRUE(scene.apply(kind));
        EXPECT_EQ(scene.state(), "| Fagus " + scene.path + " active ") << kind;
        EXPECT_EQ(CountNodes(NodeKind::Material), 0u);
        EXPECT_EQ(CountNodes(NodeKind::Shader), 0u);
        expectOneStep(scene, before);
    }
}

TEST(AppliedModel, LeavesNothingBehindWhereItCannotBeApplied)
{
    PlacingScene scene;
    BaseObject& plant = scene.place("");
    BaseObject* null = BaseObject::Alloc(Onull);
    scene.document->InsertObject(null, nullptr, nullptr);
    const auto expectRefusal = [&](const char* why) {
        const std::string before = ToUtf8(plant.GetName());
        EXPECT_FALSE(scene.apply()) << why;
        EXPECT_EQ(ToUtf8(plant.GetName()), before) << why;
        EXPECT_FALSE(scene.document->DoUndo()) << why;
    };

    EXPECT_FALSE(AllActiveObjectsArePlants(nullptr));
    expectRefusal("nothing is active");
    scene.document->SetActiveObject(&plant);
    EXPECT_TRUE(AllActiveObjectsArePlants(nullptr));
    scene.document->SetActiveObject(null, SELECTION_ADD);
    EXPECT_FALSE(AllActiveObjectsArePlants(scene.document));
    expectRefusal("one is no plant");
    scene.document->SetActiveObject(&plant);
    scene.path = scene.folder.write("empty.vdt", "nonsense");
    expectRefusal("no model");
    scene.path += "x";
    expectRefusal("no file");
    EXPECT_FALSE(g_PlantPlacingLibrary.ApplyModelToSelection(nullptr, ToFilename(scene.path), 1, 0, nullptr));

    // No step is open: two renames are two steps.
    for (const char* name : {"first", "second"}) {
        scene.document->StartUndo();
        scene.document->AddUndo(UNDOTYPE_CHANGE_SMALL, &plant);
        plant.SetName(String(name));
        scene.document->EndUndo();
    }
    EXPECT_TRUE(scene.document->DoUndo());
    EXPECT_EQ(ToUtf8(plant.GetName()), "first");
}

} // namespace
} // namespace host::test
