#include "materials/renderer.h"

#include "drendersettings.h"
#include "materials/material_factory.h"
#include "materials/renderer_ids.h"

#include <algorithm>
#include <iterator>

namespace {

// The host's own engines are in no row.
struct Engine {
    Int32 id;
    Renderer renderer;
};
constexpr Engine kEngines[] = {
    {kVrayEngineId, Renderer::Vray},     {kMiaEngineId, Renderer::Mia},   {kMiaSecondEngineId, Renderer::Mia},
    {kCoronaEngineId, Renderer::Corona}, {kTheaEngineId, Renderer::Thea}, {kArnoldEngineId, Renderer::Arnold},
    {kOctaneEngineId, Renderer::Octane},
};

// By whose material plug-in a renderer is known to be there.
struct MaterialKind {
    Renderer renderer;
    Int32 id;
};
constexpr MaterialKind kMaterialKinds[] = {
    {Renderer::Vray, kVrayMaterialId},       {Renderer::Mia, kMiaMaterialId},
    {Renderer::Corona, kCoronaMaterialId},   {Renderer::Thea, kTheaMaterialId},
    {Renderer::Arnold, kArnoldMaterialId},   {Renderer::Octane, kOctaneMaterialId},
    {Renderer::Maxwell, kMaxwellMaterialId}, {Renderer::Iray, kIrayMaterialId},
};

Bool hasVideoPost(RenderData& settings, Int32 id)
{
    for (BaseVideoPost* post = settings.GetFirstVideoPost(); post; post = post->GetNext())
        if (post->GetType() == id) return true;
    return false;
}

Renderer rendererOf(RenderData& settings)
{
    const BaseContainer* container = settings.GetDataInstance();
    const Int32 chosen = container ? container->GetInt32(RDATA_RENDERENGINE) : RDATA_RENDERENGINE_STANDARD;
    const auto* engine = std::ranges::find(kEngines, chosen, &Engine::id);
    if (engine != std::end(kEngines) && FindPlugin(chosen, PLUGINTYPE_VIDEOPOST)) return engine->renderer;
    const Bool hasMaxwell = IsMaterialKindAvailable(static_cast<Int32>(Renderer::Maxwell));
    return hasMaxwell && hasVideoPost(settings, kMaxwellEffectId) ? Renderer::Maxwell : Renderer::Standard;
}

} // namespace

Int32 detectRenderer(BaseDocument* document)
{
    RenderData* settings = document ? document->GetActiveRenderData() : nullptr;
    return static_cast<Int32>(settings ? rendererOf(*settings) : Renderer::Standard);
}

Bool IsMaterialKindAvailable(Int32 kind)
{
    if (kind == static_cast<Int32>(Renderer::Standard)) return true;
    const auto* found = std::ranges::find(kMaterialKinds, static_cast<Renderer>(kind), &MaterialKind::renderer);
    return found != std::end(kMaterialKinds) && FindPlugin(found->id, PLUGINTYPE_MATERIAL);
}
