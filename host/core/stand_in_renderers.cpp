#include "core/stand_in_renderers.h"

#include "c4d_nodedata.h"
#include "core/material.h"
#include "core/node_class.h"
#include "core/parameters.h"
#include "core/string_access.h"
#include "drendersettings.h"
#include "mmaterial.h"

#include <algorithm>

namespace host {
namespace {

constexpr StandInMaterial kVrayMaterials[] = {{1020295, 3000}, {1026701, 2100}}; // the second: of a front and a back
constexpr StandInMaterial kMiaMaterials[] = {{1024953, 2001}};
constexpr StandInMaterial kCoronaMaterials[] = {{1032100, 4300}};
constexpr StandInMaterial kTheaMaterials[] = {{1027842, 27001}};
constexpr StandInMaterial kArnoldMaterials[] = {{1033991, MATERIAL_COLOR_COLOR}};
constexpr StandInMaterial kOctaneMaterials[] = {{1029501, 2515}, {1029622, 1271}}; // the second: a mix of two
constexpr StandInMaterial kMaxwellMaterials[] = {{1021237, MATERIAL_COLOR_COLOR}};
constexpr StandInMaterial kIrayMaterials[] = {{1034130, 9000}};

constexpr Int32 kVrayPosts[] = {1019782};
constexpr Int32 kMiaPosts[] = {1024946, 1025688};
constexpr Int32 kCoronaPosts[] = {1030480};
constexpr Int32 kTheaPosts[] = {1027844};
constexpr Int32 kArnoldPosts[] = {1029988};
constexpr Int32 kOctanePosts[] = {1029525};
constexpr Int32 kMaxwellPosts[] = {1009988};

constexpr Int32 kTheaShaders[] = {1034346};
constexpr Int32 kOctaneShaders[] = {1029508};

constexpr StandInRenderer kRenderers[] = {
    {.name = "standard"},
    {.name = "vray", .materials = kVrayMaterials, .videoPosts = kVrayPosts},
    {.name = "mia", .materials = kMiaMaterials, .videoPosts = kMiaPosts},
    {.name = "corona", .materials = kCoronaMaterials, .videoPosts = kCoronaPosts},
    {.name = "thea", .materials = kTheaMaterials, .videoPosts = kTheaPosts, .shaders = kTheaShaders},
    {.name = "arnold", .materials = kArnoldMaterials, .videoPosts = kArnoldPosts},
    {.name = "octane", .materials = kOctaneMaterials, .videoPosts = kOctanePosts, .shaders = kOctaneShaders},
    {.name = "maxwell", .materials = kMaxwellMaterials, .videoPosts = kMaxwellPosts, .isEffect = true},
    {.name = "iray", .materials = kIrayMaterials},
};

// Serves the second level of ids; all else is the host's.
class StandInData final : public NodeData {
public:
    static NodeData* Alloc() { return NewObjClear(StandInData); }

    Bool GetDParameter(GeListNode* owner, const DescID& id, GeData& t_data, DESCFLAGS_GET& flags) override
    {
        const BaseContainer& container = CoreOf(owner)->container;
        if (!isOwn(container, id)) return true;
        const BaseContainer* levels = container.GetContainerInstance(kSecondLevels);
        const BaseContainer* level = levels ? levels->GetContainerInstance(id[0].id) : nullptr;
        const GeData* stored = level ? level->GetDataPointer(id[1].id) : nullptr;
        if (!stored) return true;
        t_data = *stored;
        flags |= DESCFLAGS_GET_PARAM_GET;
        return true;
    }

    Bool SetDParameter(GeListNode* owner, const DescID& id, const GeData& t_data, DESCFLAGS_SET& flags) override
    {
        BaseContainer& container = CoreOf(owner)->container;
        if (!isOwn(container, id)) return true;
        BaseContainer levels = container.GetContainer(kSecondLevels);
        BaseContainer level = levels.GetContainer(id[0].id);
        level.SetData(id[1].id, t_data);
        levels.SetContainer(id[0].id, level);
        container.SetContainer(kSecondLevels, levels);
        flags |= DESCFLAGS_SET_PARAM_SET;
        return true;
    }

private:
    // The host knows the parts of these itself.
    static bool isOwn(const BaseContainer& container, const DescID& id)
    {
        if (id.GetDepth() != 2) return false;
        const Int32 type = container.GetType(id[0].id);
        if (type == DA_VECTOR) return id[1].id < kVectorX || id[1].id > kVectorZ;
        return type != DA_CONTAINER && type < DA_CUSTOMDATATYPE;
    }
};

bool enter(const NodeClass& nodeClass)
{
    Registrations* registry = Registrations::Current();
    return registry && registry->EnterClass(nodeClass);
}

} // namespace

std::span<const StandInRenderer> StandInRenderers()
{
    return kRenderers;
}

const StandInRenderer* FindStandInRenderer(std::string_view name)
{
    const auto* found = std::ranges::find(kRenderers, name, &StandInRenderer::name);
    return found == std::end(kRenderers) ? nullptr : found;
}

bool EnterStandInRenderer(std::string_view name)
{
    const StandInRenderer* renderer = FindStandInRenderer(name);
    if (!renderer || !Registrations::Current()) return false;
    const String title = TextOf(name);
    for (const StandInMaterial& material : renderer->materials) EnterMaterialPlugin(material, title);
    for (const Int32 post : renderer->videoPosts) EnterVideoPostPlugin(post, title);
    for (const Int32 shader : renderer->shaders) EnterShaderPlugin(shader, title);
    return true;
}

bool EnterMaterialPlugin(const StandInMaterial& material, const String& name)
{
    return enter({.id = material.id,
                  .kind = NodeKind::Material,
                  .make = MakeCore<MaterialCore>,
                  .name = name,
                  .allocator = StandInData::Alloc,
                  .shownColor = material.color});
}

bool EnterShaderPlugin(Int32 id, const String& name)
{
    return enter({.id = id, .kind = NodeKind::Shader, .make = MakeCore<ShaderCore>, .name = name});
}

bool EnterVideoPostPlugin(Int32 id, const String& name)
{
    return enter({.id = id, .kind = NodeKind::VideoPost, .make = MakeCore<VideoPostCore>, .name = name});
}

bool UseRenderer(BaseDocument& document, const StandInRenderer& renderer)
{
    if (renderer.videoPosts.empty()) return true;
    const Int32 post = renderer.videoPosts.front();
    RenderData* settings = document.GetActiveRenderData();
    if (!settings || !FindPlugin(post, PLUGINTYPE_VIDEOPOST)) return false;
    if (!renderer.isEffect) {
        settings->GetDataInstance()->SetInt32(RDATA_RENDERENGINE, post);
        return true;
    }
    for (BaseVideoPost* present = settings->GetFirstVideoPost(); present; present = present->GetNext())
        if (present->GetType() == post) return true;
    settings->InsertVideoPost(BaseVideoPost::Alloc(post));
    return true;
}

} // namespace host
