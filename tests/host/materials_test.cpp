// What renderers need of the host: their stand-ins, networks of shaders, layers, and that all of it is kept.
#include "core/hyper_stream.h"
#include "core/node_class.h"
#include "core/scene_file.h"
#include "core/stand_in_renderers.h"
#include "core/string_access.h"
#include "customgui_layerset.h"
#include "drendersettings.h"
#include "mmaterial.h"
#include "mreflection.h"
#include "support/test_host.h"
#include "ttexture.h"
#include "view/draw_document.h"
#include "view/view.h"
#include "xbitmap.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace host::test {
namespace {

constexpr Int32 kNetwork = 1029989, kIray = 1034130;

GeData layerSet(LAYERSETMODE mode, std::initializer_list<const char*> names)
{
    AutoAlloc<LayerSet> set;
    set->SetMode(mode);
    for (const char* name : names) set->AddLayer(name);
    return GeData(CUSTOMDATATYPE_LAYERSET, *set);
}

// Documents that end with the test.
class HostMaterials : public testing::Test {
protected:
    ~HostMaterials() override
    {
        for (BaseDocument* each : documents) BaseDocument::Free(each);
        for (const NodeKind kind : {NodeKind::Material, NodeKind::Shader, NodeKind::VideoPost})
            EXPECT_EQ(CountNodes(kind), 0U) << static_cast<int>(kind);
    }

    BaseDocument* document() { return documents.emplace_back(BaseDocument::Alloc()); }
    BaseDocument* readBack(BaseDocument& written)
    {
        std::string report;
        BaseDocument* read = document();
        EXPECT_TRUE(ReadScene(SceneBytes(*CoreOf(&written), report), "file", *CoreOf(read), report)) << report;
        return read;
    }
    BaseDocument* copied(BaseDocument& original) { return documents.emplace_back(CloneDocument(original)); }

    // A material with a shader under a shader, and a network that leads to the lower one and to a second material,
    // whose parameter 9000 has a colour and a picture over it.
    static BaseMaterial* addNetwork(BaseDocument& to)
    {
        BaseMaterial *material = BaseMaterial::Alloc(Mmaterial), *other = BaseMaterial::Alloc(kIray);
        to.InsertMaterial(material);
        to.InsertMaterial(other, material);
        BaseShader *wrap = BaseShader::Alloc(Xcolor), *picture = BaseShader::Alloc(Xbitmap);
        material->InsertShader(wrap);
        picture->InsertUnder(wrap);
        picture->SetParameter(BITMAPSHADER_LAYERSET, layerSet(LAYERSETMODE_ALPHAS, {"Alpha"}), DESCFLAGS_SET_0);
        BaseContainer inputs, network;
        inputs.SetLink(1, picture);
        inputs.SetLink(2, other);
        inputs.SetString(3, "iray_force_bake");
        network.SetContainer(8, inputs);
        material->GetDataInstance()->SetContainer(kNetwork, network);

        EXPECT_TRUE(other->SetParameter(DescID(9000, 1), GeData(picture), DESCFLAGS_SET_0));
        EXPECT_TRUE(other->SetParameter(9000, GeData(Vector(1, 2, 3)), DESCFLAGS_SET_0));
        EXPECT_TRUE(other->SetParameter(DescID(9000, 1001), GeData(5.0), DESCFLAGS_SET_0)) << "a part of the vector";
        return material;
    }
    static void checkNetwork(BaseDocument& in)
    {
        BaseMaterial* material = in.GetFirstMaterial();
        ASSERT_TRUE(material && material->GetFirstShader() && material->GetFirstShader()->GetDown());
        BaseShader* picture = material->GetFirstShader()->GetDown();
        EXPECT_EQ(picture->GetDataInstance()->GetData(BITMAPSHADER_LAYERSET), layerSet(LAYERSETMODE_ALPHAS, {"Alpha"}));
        const BaseContainer inputs = material->GetDataInstance()->GetContainer(kNetwork).GetContainer(8);
        EXPECT_EQ(inputs.GetLink(1, &in, Xbase), picture);
        EXPECT_EQ(inputs.GetLink(2, &in, Mbase), material->GetNext());
        EXPECT_EQ(inputs.GetString(3), String("iray_force_bake"));

        GeData color, over, none;
        EXPECT_TRUE(material->GetNext()->GetParameter(9000, color, DESCFLAGS_GET_0));
        EXPECT_TRUE(material->GetNext()->GetParameter(DescID(9000, 1), over, DESCFLAGS_GET_0));
        EXPECT_FALSE(material->GetNext()->GetParameter(DescID(9000, 2), none, DESCFLAGS_GET_0));
        EXPECT_EQ(color.GetVector(), Vector(1, 5, 3));
        EXPECT_EQ(over.GetLink(&in, Xbase), picture);
    }

    TestHost host;
    std::vector<BaseDocument*> documents;
};

TEST_F(HostMaterials, NetworksOfShadersHoldTogetherWhereverTheyGo)
{
    EnterStandInRenderer("iray");
    BaseDocument& scene = *document();
    BaseMaterial* material = addNetwork(scene);
    for (BaseDocument* each : {&scene, copied(scene), readBack(scene), readBack(*copied(scene))}) checkNetwork(*each);

    // Two of one kind look alike, although their links lead elsewhere; not if something else differs deep inside.
    BaseMaterial* twin = addNetwork(*document());
    EXPECT_TRUE(material->Compare(twin));
    twin->GetDataInstance()->GetContainerInstance(kNetwork)->GetContainerInstance(8)->SetString(3, "other");
    EXPECT_FALSE(material->Compare(twin));

    scene.AddUndo(UNDOTYPE_CHANGE, material);
    BaseShader* wrap = material->GetFirstShader();
    BaseShader::Free(wrap);
    material->SetData(BaseContainer(), false);
    EXPECT_TRUE(scene.DoUndo());
    checkNetwork(scene);
    scene.AddUndo(UNDOTYPE_DELETE, material);
    BaseMaterial::Free(material);
    EXPECT_TRUE(scene.DoUndo());
    checkNetwork(scene);
}

TEST_F(HostMaterials, ALayerSetIsItsModeAndTheLayersInTheirOrder)
{
    using Names = std::initializer_list<const char*>;
    std::vector<GeData> sets = {layerSet(LAYERSETMODE_LAYERS, {}), layerSet(LAYERSETMODE_DISABLED, {"a"})};
    for (const Names& names : {Names{}, {""}, {"Alpha"}, {"a", "b"}, {"b", "a", "b"}})
        sets.push_back(layerSet(LAYERSETMODE_ALPHAS, names));
    for (const GeData& set : sets)
        for (const GeData& other : sets) EXPECT_EQ(GeData(set) == other, &other == &set);
    auto* value = static_cast<LayerSet*>(sets.back().GetCustomDataType(CUSTOMDATATYPE_LAYERSET));
    EXPECT_EQ(value->GetName(), String("b, a")) << "a layer is chosen once";

    // Files may have numbers that no set has, or promise more than there is.
    for (const auto& [mode, count] : {std::pair<Int32, Int32>{5, 0}, {-1, 0}, {2, 2}, {2, 0x7fffffff}}) {
        const HyperFilePtr written = HyperStream::Write(1);
        written->WriteInt32(mode);
        written->WriteInt32(count);
        written->WriteString("layer");
        const std::vector<uint8_t> bytes = HyperStream::Of(*written).takeBytes();
        CustomDataTypeClass* type = FindCustomDataType(CUSTOMDATATYPE_LAYERSET);
        EXPECT_FALSE(type->ReadData(value, HyperStream::Read(1, bytes).get(), 0)) << mode << ' ' << count;
    }
}

TEST_F(HostMaterials, ReflectanceLayersStayWithTheirMaterial)
{
    BaseDocument& scene = *document();
    auto* material = static_cast<Material*>(BaseMaterial::Alloc(Mmaterial));
    scene.InsertMaterial(material);
    ReflectionLayer* lower = material->AddReflectionLayer();
    const Int32 color = lower->GetDataID() + REFLECTION_LAYER_COLOR_COLOR;
    material->SetParameter(color, GeData(Vector(1, 2, 3)), DESCFLAGS_SET_0);
    scene.AddUndo(UNDOTYPE_CHANGE, material);
    const Int32 upper = material->AddReflectionLayer()->GetDataID();
    EXPECT_EQ(material->GetReflectionLayerIndex(0), lower) << "lent for good";
    EXPECT_GT(std::abs(upper - lower->GetDataID()), REFLECTION_LAYER_COLOR_TEXTURE) << "each has its own values";

    for (BaseDocument* each : {copied(scene), readBack(scene)}) {
        auto* kept = static_cast<Material*>(each->GetFirstMaterial());
        ASSERT_EQ(kept->GetReflectionLayerCount(), 2);
        EXPECT_EQ(kept->GetReflectionLayerIndex(2), nullptr);
        EXPECT_EQ(kept->GetReflectionLayerIndex(0)->GetDataID(), lower->GetDataID());
        EXPECT_EQ(kept->GetReflectionLayerIndex(1)->GetDataID(), upper);
        EXPECT_EQ(kept->GetDataInstance()->GetVector(color), Vector(1, 2, 3));
        EXPECT_TRUE(kept->Compare(material));
    }
    scene.DoUndo();
    EXPECT_EQ(material->GetReflectionLayerCount(), 1);
    EXPECT_NE(material->AddReflectionLayer(), lower);
    for (int i = 0; material->AddReflectionLayer(); ++i) ASSERT_LT(i, 1000) << "there is an end of layers";
    material->GetDataInstance()->SetInt32(REFLECTION_LAYERS, 5);
    EXPECT_EQ(material->GetReflectionLayerCount(), 0) << "no list of layers";
}

TEST_F(HostMaterials, ARendererIsThereOnceItIsEntered)
{
    EXPECT_FALSE(EnterStandInRenderer("none") || FindStandInRenderer("none"));
    for (const StandInRenderer& renderer : StandInRenderers()) {
        SCOPED_TRACE(renderer.name);
        BaseDocument& scene = *document();
        const size_t count = renderer.materials.size() + renderer.videoPosts.size() + renderer.shaders.size();
        const auto there = [&] {
            size_t found = 0;
            for (const StandInMaterial& each : renderer.materials)
                found += FindPlugin(each.id, PLUGINTYPE_MATERIAL) != nullptr;
            for (const Int32 id : renderer.videoPosts) found += FindPlugin(id, PLUGINTYPE_VIDEOPOST) != nullptr;
            for (const Int32 id : renderer.shaders) found += FindPlugin(id, PLUGINTYPE_SHADER) != nullptr;
            return found;
        };
        EXPECT_EQ(there(), 0U);
        EXPECT_EQ(UseRenderer(scene, renderer), renderer.videoPosts.empty());
        EXPECT_TRUE(EnterStandInRenderer(renderer.name) && EnterStandInRenderer(renderer.name));
        EXPECT_EQ(there(), count);

        EXPECT_TRUE(UseRenderer(scene, renderer) && UseRenderer(scene, renderer));
        const bool isEngine = !renderer.videoPosts.empty() && !renderer.isEffect;
        const Int32 engine = isEngine ? renderer.videoPosts.front() : RDATA_RENDERENGINE_STANDARD;
        if (renderer.isEffect) scene.GetActiveRenderData()->GetFirstVideoPost()->SetBit(BIT_VPDISABLED);
        for (BaseDocument* each : {&scene, copied(scene), readBack(scene)}) {
            RenderData* settings = each->GetActiveRenderData();
            EXPECT_EQ(settings->GetDataInstance()->GetInt32(RDATA_RENDERENGINE), engine);
            BaseVideoPost* post = settings->GetFirstVideoPost();
            ASSERT_EQ(post != nullptr, renderer.isEffect);
            if (!post) continue;
            EXPECT_TRUE(post->GetType() == renderer.videoPosts.front() && post->GetBit(BIT_VPDISABLED));
            EXPECT_EQ(post->GetNext(), nullptr) << "one is enough";
        }
    }
}

TEST_F(HostMaterials, ViewsShowTheColorOfAnyRenderersMaterial)
{
    EnterStandInRenderer("vray");
    BaseDocument& scene = *document();
    PolygonObject* object = PolygonObject::Alloc(4, 1);
    *object->GetPolygonW() = CPolygon(0, 1, 2, 3);
    scene.InsertObject(object, nullptr, nullptr);
    const auto cover = [&](Int32 type, Int32 id, const GeData& value, Int32 side = TEXTURETAG_SIDE_FRONTANDBACK) {
        BaseMaterial* material = BaseMaterial::Alloc(type);
        scene.InsertMaterial(material);
        material->SetParameter(id, value, DESCFLAGS_SET_0);
        auto* tag = static_cast<TextureTag*>(object->MakeTag(Ttexture, object->GetLastTag()));
        tag->SetMaterial(material);
        tag->SetParameter(TEXTURETAG_SIDE, GeData(side), DESCFLAGS_SET_0);
        return material;
    };
    DrawList list;
    const auto shown = [&] {
        EXPECT_TRUE(DrawDocument(scene, *CoreOf(scene.GetActiveBaseDraw()), nullptr, list));
        const auto mesh = std::ranges::find(list.batches, DrawKind::Mesh, &DrawBatch::kind);
        return mesh == list.batches.end() ? -1 : static_cast<int>(mesh->color[0] * 100 + 0.5F);
    };
    BaseMaterial* front = cover(1020295, 3000, GeData(Vector(0.2, 0, 0)), TEXTURETAG_SIDE_FRONT);
    EXPECT_EQ(shown(), 20);
    cover(Mmaterial, MATERIAL_COLOR_COLOR, GeData(Vector(0.3, 0, 0)), TEXTURETAG_SIDE_BACK);
    cover(1020295, 2100, GeData(Vector(0.4, 0, 0)));
    EXPECT_EQ(shown(), 20) << "what only the back shows, and what has no colour, cover nothing";
    cover(Mmaterial, MATERIAL_COLOR_COLOR, GeData(Vector(0.5, 0, 0)));
    EXPECT_EQ(shown(), 50);
    BaseMaterial* pair = cover(1026701, 2100, GeData(front));
    EXPECT_EQ(shown(), 20) << "that of its front";
    pair->SetParameter(2100, GeData(pair), DESCFLAGS_SET_0);
    EXPECT_EQ(shown(), 50) << "one that is made of itself has none";
}

} // namespace
} // namespace host::test
