#include "core/stand_in_renderers.h"
#include "drendersettings.h"
#include "geometry/selection_names.h"
#include "materials/apply_materials.h"
#include "materials/base_color.h"
#include "materials/material_twins.h"
#include "materials/renderer.h"
#include "materials/renderer_ids.h"
#include "support/plant_scene.h"
#include "support/text.h"
#include "xbitmap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace host::test {
namespace {

TEST(RendererOfAScene, IsTheEngineThatIsThereElseTheEffectThatIsHeldElseTheHosts)
{
    struct Row {
        std::vector<std::string_view> present; // renderers
        Int32 engine;
        Bool holdsEffect; // switched off
        Int32 found;
    };
    const Row rows[] = {
        {{}, RDATA_RENDERENGINE_STANDARD, false, 1},
        {{}, RDATA_RENDERENGINE_PHYSICAL, false, 1},
        {{"vray"}, kVrayEngineId, false, 2},
        {{"mia"}, kMiaEngineId, false, 3},
        {{"mia"}, kMiaSecondEngineId, false, 3},
        {{"corona"}, kCoronaEngineId, false, 4},
        {{"thea"}, kTheaEngineId, false, 5},
        {{"arnold"}, kArnoldEngineId, false, 6},
        {{"octane"}, kOctaneEngineId, false, 7},
        {{"thea", "iray"}, kVrayEngineId, false, 1}, // the engine is not there
        {{"thea"}, kTheaMaterialId, false, 1},       // a material is no engine
        {{"maxwell"}, RDATA_RENDERENGINE_STANDARD, false, 1},
        {{"maxwell"}, RDATA_RENDERENGINE_STANDARD, true, 8},
        {{"maxwell"}, kCoronaEngineId, true, 8},
        {{"maxwell", "corona"}, kCoronaEngineId, true, 4},
        {{}, RDATA_RENDERENGINE_STANDARD, true, 1}, // the effect alone, without its materials
    };
    for (const Row& row : rows) {
        TestHost host;
        for (const std::string_view name : row.present) EnterStandInRenderer(name);
        EnterVideoPostPlugin(kMaxwellEffectId, String("effect"));
        const AutoAlloc<BaseDocument> document;
        RenderData* settings = RenderData::Alloc();
        document->InsertRenderData(settings, nullptr, document->GetFirstRenderData());
        document->SetActiveRenderData(settings); // not the first
        settings->GetDataInstance()->SetInt32(RDATA_RENDERENGINE, row.engine);
        if (row.holdsEffect) {
            BaseVideoPost* effect = BaseVideoPost::Alloc(kMaxwellEffectId);
            effect->SetBit(BIT_VPDISABLED);
            settings->InsertVideoPost(effect);
        }
        EXPECT_EQ(detectRenderer(document), row.found) << row.engine << ' ' << row.present.size();
    }
    EXPECT_EQ(detectRenderer(nullptr), 1);
}

TEST(MaterialKinds, AreThereIfTheRenderersMaterialIs)
{
    TestHost host;
    const char* const names[] = {"vray", "mia", "corona", "thea", "arnold", "octane", "maxwell", "iray"};
    for (Int32 kind = 2; kind <= 9; ++kind) {
        EXPECT_FALSE(IsMaterialKindAvailable(kind));
        EnterStandInRenderer(names[kind - 2]);
        EXPECT_TRUE(IsMaterialKindAvailable(kind)) << kind;
    }
    EXPECT_TRUE(IsMaterialKindAvailable(1));
    for (const Int32 kind : {-1, 0, 10}) EXPECT_FALSE(IsMaterialKindAvailable(kind)) << kind;
}

using MaterialApplication = PlantScene;

BaseShader* bitmap(const char* file, Float blur = 0)
{
    BaseShader* shader = BaseShader::Alloc(Xbitmap);
    shader->GetDataInstance()->SetFilename(BITMAPSHADER_FILENAME, Filename(file));
    BaseShader* child = BaseShader::Alloc(Xcolor);
    child->GetDataInstance()->SetFloat(1000, blur);
    child->InsertUnder(shader);
    return shader;
}

void link(BaseList2D& owner, Int32 id, BaseShader* shader)
{
    owner.InsertShader(shader);
    owner.GetDataInstance()->SetLink(id, shader);
}

// A material with a value, a shader, a network of containers, and a link to `part`.
HostPtr<BaseMaterial> leafMaterial(BaseMaterial* part)
{
    HostPtr<BaseMaterial> material(BaseMaterial::Alloc(Mmaterial));
    material->SetName(String("leaf"));
    BaseContainer& values = *material->GetDataInstance();
    values.SetInt32(9000, 3);
    link(*material, 9001, bitmap("leaf.png"));
    BaseShader* inNetwork = bitmap("net.png");
    material->InsertShader(inNetwork);
    BaseContainer node, network;
    node.SetLink(1, inNetwork);
    node.SetFloat(2, 0.5);
    network.SetContainer(77, node);
    values.SetContainer(9002, network);
    values.SetLink(9003, part);
    values.SetLink(9004, nullptr);
    return material;
}

BaseContainer& node(BaseMaterial& material)
{
    return *material.GetDataInstance()->GetContainerInstance(9002)->GetContainerInstance(77);
}

BaseShader& shaderAt(const BaseContainer& values, Int32 id)
{
    return *static_cast<BaseShader*>(values.GetBaseLink(id)->ForceGetLink());
}

TEST(MaterialTwins, DifferIfAnythingDiffersDownToTheLastLink)
{
    PlantScene scene;
    BaseObject& object = scene.place("");
    struct Row {
        const char* what;
        Bool isTwin;
        std::function<void(BaseMaterial&, BaseContainer&)> change; // of the new material and its values
    };
    const Row rows[] = {
        {"nothing", true, [](auto&, auto&) {}},
        {"order of values", true, [](auto&, auto& v) { v.RemoveData(9000), v.SetInt32(9000, 3); }},
        {"value", false, [](auto&, auto& v) { v.SetInt32(9000, 4); }},
        {"type of value", false, [](auto&, auto& v) { v.SetFloat(9000, 3); }},
        {"more values", false, [](auto&, auto& v) { v.SetInt32(9005, 0); }},
        {"fewer values", false, [](auto&, auto& v) { v.RemoveData(9000); }},
        {"name", false, [](auto& m, auto&) { m.SetName(String("Leaf")); }},
        {"file", false, [](auto& m, auto&) { link(m, 9001, bitmap("other.png")); }},
        {"kind of shader", false, [](auto& m, auto&) { link(m, 9001, BaseShader::Alloc(Xcolor)); }},
        {"value of a shader's child", false, [](auto& m, auto&) { link(m, 9001, bitmap("leaf.png", 0.1)); }},
        {"child", false, [](auto&, auto& v) { BaseShader::Alloc(Xcolor)->InsertUnder(&shaderAt(v, 9001)); }},
        {"network value", false, [](auto& m, auto&) { node(m).SetFloat(2, 0.25); }},
        {"network shader", false, [](auto& m, auto&) { shaderAt(node(m), 1).GetDataInstance()->SetInt32(9, 9); }},
        {"no link", false, [](auto&, auto& v) { v.SetLink(9001, nullptr); }},
        {"a link", false, [](auto&, auto& v) { v.SetLink(9004, &shaderAt(v, 9001)); }},
        {"kind of target", false, [](auto& m, auto& v) { v.SetLink(9001, &m); }},
        {"part", false, [](auto&, auto& v) { v.GetBaseLink(9003)->ForceGetLink()->SetName(String("x")); }},
        {"object", false, [&object](auto&, auto& v) { v.SetLink(9001, &object); }},
    };
    const auto makePart = [] { return HostPtr<BaseMaterial>(BaseMaterial::Alloc(Mmaterial)); };
    BaseMaterial* oldPart = makePart().release();
    scene.document->InsertMaterial(oldPart);
    BaseMaterial* const old = leafMaterial(oldPart).release();
    scene.document->InsertMaterial(old, oldPart);
    scene.document->InsertMaterial(leafMaterial(oldPart).release(), old); // another one, which is not the first
    for (const Row& row : rows) {
        MaterialEntry entry;
        entry.parts.push_back(makePart());
        entry.material = leafMaterial(entry.parts.front().get());
        row.change(*entry.material, *entry.material->GetDataInstance());
        EXPECT_EQ(findTwin(*scene.document, entry), row.isTwin ? old : nullptr) << row.what;
        EXPECT_EQ(scene.said("Unsupported link type: 1028605"), row.what == std::string("object")) << row.what;
    }

    const MaterialEntry entry{.material = leafMaterial(oldPart)};
    EXPECT_EQ(findTwin(*scene.document, entry), old);
    oldPart->Remove(); // the link leads out of the document
    EXPECT_EQ(findTwin(*scene.document, entry), nullptr);
    BaseMaterial::Free(oldPart);
}

TEST(MaterialTwins, AreFoundInCirclesAndNotLookedForInBottomlessDepth)
{
    PlantScene scene;
    const auto circle = [](Int32 depth) {
        HostPtr<BaseMaterial> material(BaseMaterial::Alloc(Mmaterial));
        BaseShader* shader = bitmap("a.png");
        link(*material, 9001, shader);
        shader->GetDataInstance()->SetLink(9002, material.get());
        for (; depth > 0; --depth) {
            BaseShader* inner = BaseShader::Alloc(Xcolor);
            inner->InsertUnder(shader);
            shader = inner;
        }
        return material;
    };
    for (const Int32 depth : {0, 10, 4000}) {
        BaseMaterial* old = circle(depth).release();
        scene.document->InsertMaterial(old);
        EXPECT_EQ(findTwin(*scene.document, {.material = circle(depth)}), depth < 100 ? old : nullptr) << depth;
    }
}

TEST(MaterialApplication, PutsPartsBeforePairsTagsInOrderAndLeavesWhatIsThereAlone)
{
    PlantScene scene;
    BaseMaterial& old = scene.addMaterial(Vector());
    BaseObject& bare = scene.place("");
    BaseObject& covered = scene.place("");
    scene.addTexture(covered, old, "MAT5");
    covered.MakeTag(Tphong);
    LayerObject* layer = LayerObject::Alloc();
    scene.document->GetLayerObjectRoot()->InsertFirst(layer);
    const auto made = [](const char* name) {
        HostPtr<BaseMaterial> material(BaseMaterial::Alloc(Mmaterial));
        material->SetName(String(name));
        return material;
    };
    old.SetName(String("old"));
    const auto names = [&scene] {
        std::string text;
        for (BaseMaterial* m = scene.document->GetFirstMaterial(); m; m = m->GetNext())
            text += ToUtf8(m->GetName()) + (m->GetLayerObject(scene.document) ? "+ " : " ");
        return text;
    };
    const auto tags = [&scene](BaseObject& object) {
        std::string text;
        for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext()) {
            if (tag->GetType() != Ttexture) continue;
            text += ToUtf8(static_cast<TextureTag*>(tag)->GetMaterial()->GetName()) + "/" +
                    TextOfParameter(*tag, TEXTURETAG_RESTRICTION) + "/" +
                    std::to_string(IntegerOf(*tag, TEXTURETAG_SIDE)) + "/" +
                    std::to_string(IntegerOf(*tag, TEXTURETAG_PROJECTION)) + " ";
        }
        return text;
    };

    BaseObject* const objects[] = {&bare, &covered};
    for (const Bool overwrite : {false, true}) {
        MaterialEntries entries(3);
        entries[0] = {.material = made("a"), .matid = 4, .side = TEXTURETAG_SIDE_BACK};
        entries[1] = {.material = made("pair"), .matid = -1};
        entries[1].parts.push_back(made("front"));
        entries[1].parts.push_back(made("back"));
        entries[2] = {.material = made("unused"), .matid = 6};
        BaseMaterial* const existing[] = {nullptr, nullptr, &old};
        const std::vector<BaseMaterial*> inserted =
            applyMaterials(*scene.document, entries,
                           {.objects = objects, .existing = existing, .overwrite = overwrite, .layer = layer});
        EXPECT_EQ(inserted.size(), 4u);
        EXPECT_EQ(names(),
                  overwrite ? "a+ front+ back+ pair+ a+ front+ back+ pair+ old " : "a+ front+ back+ pair+ old ");
        EXPECT_TRUE(entries[2].material && !entries[1].material);
        EXPECT_EQ(tags(bare), "a/MAT4/2/6 pair/MAT-1/0/6 old/MAT6/0/6 ");
        EXPECT_EQ(tags(covered), overwrite ? tags(bare) : "old/MAT5/0/0 ");
        EXPECT_TRUE(covered.GetTag(Tphong));
    }
}

TEST(MaterialNames, OfAPlantMayHaveItsOwnNameBefore)
{
    PlantScene scene;
    BaseObject& plant = scene.place("");
    BaseObject* null = BaseObject::Alloc(Onull);
    scene.document->InsertObject(null, nullptr, nullptr);
    plant.SetName(String("Object"));
    null->SetName(String("Object"));
    TextureTag& tag = scene.addTexture(plant, scene.addMaterial(Vector()), "");
    struct Row {
        const char* restriction;
        Int32 ofPlant, ofOther;
    };
    const Row rows[] = {{"MAT12", 12, 12}, {"Object::MAT7", 7, -1},   {"Object::Object::MAT7", -1, -1},
                        {"MAT-7", -7, -7}, {"Other::MAT7", -1, -1},   {"ObjectMAT7", -1, -1},
                        {"MAT", -1, -1},   {"MAT 7", -1, -1},         {"MAT7x", -1, -1},
                        {"mat7", -1, -1},  {"MAT2147483648", -1, -1}, {"Leaf", -1, -1},
                        {"", -1, -1},      {"Object::", -1, -1}};
    for (const Row& row : rows) {
        Set(tag, TEXTURETAG_RESTRICTION, GeData(String(row.restriction)));
        EXPECT_EQ(matidFromMaterialName(plant, tag), row.ofPlant) << row.restriction;
        EXPECT_EQ(matidFromMaterialName(*null, tag), row.ofOther) << row.restriction;
    }
}

TEST(BaseColours, AreReadOfEachKindUnlessTheParameterHoldsSomethingElse)
{
    PlantScene scene;
    for (const StandInRenderer& renderer : StandInRenderers()) EnterStandInRenderer(renderer.name);
    const std::pair<Int32, Int32> rows[] = {{Mmaterial, 2100}, {1020295, 3000}, {1024953, 2001}, {1027842, 27001},
                                            {1032100, 4300},   {1034130, 9000}, {1029501, 0}};
    for (const auto& [type, parameter] : rows) {
        const HostPtr<BaseMaterial> material(BaseMaterial::Alloc(type));
        material->GetDataInstance()->RemoveData(parameter);
        if (parameter) material->GetDataInstance()->SetVector(parameter, Vector(1, 2, 3));
        EXPECT_EQ(baseColorOfMaterial(*material, Vector(9)), parameter ? Vector(1, 2, 3) : Vector(9)) << type;
        material->GetDataInstance()->SetLink(parameter, material.get());
        EXPECT_EQ(baseColorOfMaterial(*material, Vector(9)), Vector(9)) << type;
    }
}

} // namespace
} // namespace host::test
