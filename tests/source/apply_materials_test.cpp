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
        std::string_view present; // a renderer
        Int32 engine;
        Bool holdsEffect; // switched off
        Int32 found;
    };
    const Row rows[] = {
        {"", RDATA_RENDERENGINE_PHYSICAL, false, 1},
        {"vray", kVrayEngineId, false, 2},
        {"mia", kMiaEngineId, false, 3},
        {"mia", kMiaSecondEngineId, false, 3},
        {"corona", kCoronaEngineId, true, 4},
        {"thea", kTheaEngineId, false, 5},
        {"arnold", kArnoldEngineId, false, 6},
        {"octane", kOctaneEngineId, false, 7},
        {"maxwell", RDATA_RENDERENGINE_STANDARD, true, 8},
        {"maxwell", kCoronaEngineId, true, 8}, // the engine is not there
        {"maxwell", kCoronaEngineId, false, 1},
        {"thea", kTheaMaterialId, false, 1},            // no engine
        {"iray", RDATA_RENDERENGINE_STANDARD, true, 1}, // the effect alone, without its materials
    };
    for (const Row& row : rows) {
        TestHost host;
        EXPECT_FALSE(row.found > 1 && IsMaterialKindAvailable(row.found));
        EnterStandInRenderer(row.present);
        EnterVideoPostPlugin(kMaxwellEffectId, String("effect"));
        const AutoAlloc<BaseDocument> document;
        RenderData* settings = RenderData::Alloc();
        document->InsertRenderData(settings, nullptr, document->GetFirstRenderData());
        document->SetActiveRenderData(settings); // not the first
        settings->GetDataInstance()->SetInt32(RDATA_RENDERENGINE, row.engine);
        if (row.holdsEffect) {
            settings->InsertVideoPost(BaseVideoPost::Alloc(kMaxwellEffectId));
            settings->GetFirstVideoPost()->SetBit(BIT_VPDISABLED);
        }
        EXPECT_EQ(detectRenderer(document), row.found) << row.engine << ' ' << row.present;
        EXPECT_TRUE(IsMaterialKindAvailable(row.found)) << row.present;
        EXPECT_EQ(IsMaterialKindAvailable(9), row.present == "iray");
        for (const Int32 kind : {-1, 0, 10}) EXPECT_FALSE(IsMaterialKindAvailable(kind)) << kind;
    }
    EXPECT_EQ(detectRenderer(nullptr), 1);
}

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
        {"value of a shader's child", false, [](auto& m, auto&) { link(m, 9001, bitmap("leaf.png", 0.1)); }},
        {"child", false, [](auto&, auto& v) { BaseShader::Alloc(Xcolor)->InsertUnder(&shaderAt(v, 9001)); }},
        {"network value", false, [](auto& m, auto&) { node(m).SetFloat(2, 0.25); }},
        {"shader of the network", false,
         [](auto& m, auto&) { shaderAt(node(m), 1).GetDataInstance()->SetInt32(9, 9); }},
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
            BaseShader::Alloc(Xcolor)->InsertUnder(shader);
            shader = shader->GetDown();
        }
        return material;
    };
    for (const Int32 depth : {0, 10, 4000}) {
        BaseMaterial* old = circle(depth).release();
        scene.document->InsertMaterial(old);
        EXPECT_EQ(findTwin(*scene.document, {.material = circle(depth)}), depth < 100 ? old : nullptr) << depth;
    }
}

TEST(MaterialNames, OfAPlantMayHaveItsOwnNameBefore)
{
    PlantScene scene;
    BaseObject& plant = scene.place("");
    const HostPtr<BaseObject> null(BaseObject::Alloc(Onull));
    for (BaseObject* object : {&plant, null.get()}) object->SetName(String("Object"));
    TextureTag& tag = scene.addTexture(plant, scene.addMaterial(Vector()), "");
    const struct {
        const char* restriction;
        Int32 ofPlant, ofOther;
    } rows[] = {{"MAT12", 12, 12},       {"Object::MAT-7", -7, -1}, {"Object::Object::MAT7", -1, -1},
                {"Other::MAT7", -1, -1}, {"Object::MAT7x", -1, -1}, {"Object::", -1, -1}};
    for (const auto& row : rows) {
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
