#include "core/node_class.h"
#include "core/stand_in_renderers.h"
#include "core/string_access.h"
#include "customgui_unitscale.h"
#include "support/probe_object.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

namespace host::test {
namespace {

class CountedType final : public CustomDataTypeClass {
public:
    CountedType(Int32 typeId, int& liveCount) : id(typeId), living(liveCount) { ++living; }
    ~CountedType() override { --living; }
    Int32 GetId() override { return id; }
    CustomDataType* AllocData() override { return new CustomDataType; }
    void FreeData(CustomDataType* data) override { delete data; }
    Bool CopyData(const CustomDataType*, CustomDataType*, AliasTrans*) override { return true; }
    Int32 Compare(const CustomDataType*, const CustomDataType*) override { return 0; }
    Bool WriteData(const CustomDataType*, HyperFile*) override { return true; }
    Bool ReadData(CustomDataType*, HyperFile*, Int32) override { return true; }
    const Char* GetResourceSym() override { return id == 1900031 ? "COUNTED" : nullptr; }

private:
    Int32 id;
    int& living;
};

TEST(Registry, AnIdIsTakenOncePerTypeOfPlugin)
{
    for (int round = 0; round < 3; ++round) { // nothing is left of the application before
        ProbeRecord::Fresh();
        TestHost host;
        int living = 0;
        constexpr Int32 id = 1900031;
        EXPECT_EQ(FindPlugin(id, PLUGINTYPE_ANY), nullptr);
        RegisterProbe();
        EXPECT_FALSE(RegisterObjectPlugin(kProbeObject, "Twice", 0, Probe::Alloc, "", nullptr, 0));
        EXPECT_FALSE(RegisterObjectPlugin(Opolygon, "Built in", 0, Probe::Alloc, "", nullptr, 0));
        EXPECT_FALSE(RegisterObjectPlugin(1900032, "No allocator", 0, nullptr, "", nullptr, 0));
        EXPECT_TRUE(RegisterObjectPlugin(id, "One", 0, Probe::Alloc, "", nullptr, 0));
        EXPECT_TRUE(
            RegisterSceneHookPlugin(id, "One hook", PLUGINFLAG_HIDE, Probe::Alloc, EXECUTIONPRIORITY_GENERATOR, 0));
        EXPECT_FALSE(RegisterSceneHookPlugin(id, "Twice", 0, Probe::Alloc, 0, 0));

        auto* first = new CountedType(id, living);
        EXPECT_TRUE(RegisterCustomDataTypePlugin("One type", 0, first, 3));
        auto* second = new CountedType(id, living);
        EXPECT_FALSE(RegisterCustomDataTypePlugin("Twice", 0, second, 0));
        delete second; // a refused one stays the caller's
        EXPECT_FALSE(RegisterCustomDataTypePlugin("None", 0, nullptr, 0));
        EXPECT_EQ(FindCustomDataType(id), first);
        EXPECT_EQ(CustomDataDiskLevel(id), 3);
        EXPECT_EQ(FindCustomDataType(1900033), nullptr);
        EXPECT_EQ(Registrations::Current()->FindCustomData("COUNTED")->type, first);
        EXPECT_EQ(Registrations::Current()->FindCustomData("OTHER"), nullptr);
        EXPECT_NE(FindCustomDataType(CUSTOMDATATYPE_UNITSCALE), nullptr);

        for (const PLUGINTYPE type : {PLUGINTYPE_OBJECT, PLUGINTYPE_SCENEHOOK, PLUGINTYPE_CUSTOMDATATYPE}) {
            BasePlugin* plugin = FindPlugin(id, type);
            ASSERT_TRUE(plugin);
            EXPECT_EQ(plugin->GetID(), id);
            EXPECT_EQ(plugin->GetPluginType(), type);
        }
        EXPECT_EQ(FindPlugin(id, PLUGINTYPE_SCENEHOOK)->GetInfo(), PLUGINFLAG_HIDE);
        EXPECT_EQ(FindPlugin(id, PLUGINTYPE_MATERIAL), nullptr);
        EXPECT_EQ(FindPlugin(Onull, PLUGINTYPE_OBJECT)->GetPluginType(), PLUGINTYPE_OBJECT);

        host.end();
        EXPECT_EQ(living, 0) << "the host deletes what it took over, once";
        EXPECT_FALSE(RegisterCustomDataTypePlugin("Nobody there", 0, nullptr, 0));
        EXPECT_EQ(BaseObject::Alloc(Onull), nullptr);
        EXPECT_EQ(FindPlugin(id, PLUGINTYPE_OBJECT), nullptr);
    }
}

TEST(Registry, ForeignTypesOfNodesAreThereOnlyIfRegistered)
{
    TestHost host;
    constexpr Int32 id = 1029525;
    EXPECT_EQ(BaseMaterial::Alloc(id), nullptr);
    EXPECT_EQ(BaseShader::Alloc(id), nullptr);
    EXPECT_EQ(BaseVideoPost::Alloc(id), nullptr);
    ASSERT_TRUE(EnterMaterialPlugin({id, 0}, "Material") && EnterShaderPlugin(id, "Shader") &&
                EnterVideoPostPlugin(id, "Post"));
    EXPECT_FALSE(EnterVideoPostPlugin(id, "Post"));

    BaseMaterial* material = BaseMaterial::Alloc(id);
    BaseShader* shader = BaseShader::Alloc(id);
    RenderData* settings = RenderData::Alloc();
    ASSERT_TRUE(material && shader && settings);
    BaseVideoPost* later = BaseVideoPost::Alloc(id);
    settings->InsertVideoPost(later);
    settings->InsertVideoPost(BaseVideoPost::Alloc(id));
    EXPECT_EQ(settings->GetFirstVideoPost()->GetNext(), later);
    EXPECT_TRUE(material->IsInstanceOf(Mbase) && shader->IsInstanceOf(Xbase) && later->IsInstanceOf(VPbase));
    EXPECT_FALSE(material->IsInstanceOf(Mmaterial) || shader->IsInstanceOf(Mbase));
    auto* clone = static_cast<RenderData*>(settings->GetClone(COPYFLAGS_0, nullptr));
    EXPECT_NE(clone->GetFirstVideoPost()->GetNext(), nullptr);

    // A material without a description keeps what it is told.
    GeData value;
    EXPECT_TRUE(material->SetParameter(11, GeData(shader), DESCFLAGS_SET_0));
    EXPECT_TRUE(material->GetParameter(11, value, DESCFLAGS_GET_0));
    EXPECT_EQ(value.GetLink(nullptr, Xbase), shader);
    BaseShader::Free(shader);
    EXPECT_EQ(value.GetLink(nullptr), nullptr);
    BaseMaterial::Free(material);
    RenderData::Free(clone);
    RenderData::Free(settings);
}

TEST(Registry, LibrariesAreFoundByThoseWhoFitTheirSize)
{
    struct Library : C4DLibrary {
        int (*call)();
        int (*newer)();
    };
    TestHost host;
    Library library{};
    constexpr Int32 id = 1900040;
    C4DLibrary* store = nullptr;
    EXPECT_EQ(CheckLib(id, 0, &store), nullptr);
    EXPECT_TRUE(InstallLibrary(id, &library, 12, sizeof(Library) - sizeof(library.newer)));
    EXPECT_FALSE(InstallLibrary(id, &library, 13, sizeof(Library)));
    EXPECT_EQ(library.version, 12);
    EXPECT_EQ(CheckLib(id, sizeof(C4DLibrary), &store), &library);
    EXPECT_EQ(store, &library);
    EXPECT_EQ(CheckLib(id, 1000, nullptr), nullptr);
    EXPECT_EQ(CheckLib(1, 0, &store), &library) << "a filled store is not asked again";
    EXPECT_TRUE(FindPlugin(id, PLUGINTYPE_LIBRARY));

    int record = 0;
    EXPECT_TRUE(GeRegistryAdd(id, REGISTRYTYPE_DESCRIPTION, &record));
    EXPECT_FALSE(GeRegistryAdd(id, REGISTRYTYPE_DESCRIPTION, &record));
    ::Registry* entry = GeRegistryFind(id, REGISTRYTYPE_DESCRIPTION);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->GetData(), &record);
    EXPECT_EQ(entry->GetSubID(), id);
    EXPECT_EQ(entry->GetMainID(), REGISTRYTYPE_DESCRIPTION);
    EXPECT_EQ(entry->GetPred()->GetData(), &library);
    EXPECT_TRUE(GeRegistryRemove(id, REGISTRYTYPE_DESCRIPTION));
    EXPECT_FALSE(GeRegistryRemove(id, REGISTRYTYPE_DESCRIPTION));
}

TEST(Registry, AnObjectOfAPluginMayHavePolygons)
{
    ProbeRecord::Fresh();
    TestHost host;
    RegisterProbe("", OBJECT_POLYGONOBJECT);
    BaseObject* object = BaseObject::Alloc(kProbeObject);
    ASSERT_TRUE(object && object->IsInstanceOf(Opolygon) && object->IsInstanceOf(Opoint) &&
                object->IsInstanceOf(Obase));
    EXPECT_TRUE(static_cast<PolygonObject*>(object)->ResizeObject(4, 2));
    auto* clone = static_cast<PolygonObject*>(object->GetClone(COPYFLAGS_0, nullptr));
    EXPECT_EQ(clone->GetPolygonCount(), 2);
    BaseList2D* freed[] = {object, clone};
    for (BaseList2D* each : freed) BaseList2D::Free(each);
    EXPECT_TRUE(ProbeRecord::Fresh().living.empty());
}

} // namespace
} // namespace host::test
