// Renderers that are not there: stand-ins for the plug-ins by which they would enter materials, shaders and effects.
//
// A stand-in keeps what it is told, in its container, and draws like a standard material: in views, with its colour
// alone. A value and a link under one id, the link at a second level, are both kept.
#pragma once

#include "c4d_basedocument.h"

#include <span>
#include <string_view>

namespace host {

struct StandInMaterial {
    Int32 id;
    const char* name;
    Int32 color; // the parameter that views show: a colour, or a link to the material whose colour it is
};

/// The plug-ins of one renderer.
struct StandInRenderer {
    const char* name;
    std::span<const StandInMaterial> materials;
    std::span<const Int32> videoPosts; // the first is the engine that render settings name
    std::span<const Int32> shaders;
    bool isEffect = false; // render settings keep it in the list of their video posts, beside an engine
};

/// "standard", the host's own renderer with nothing to enter, and those that stand in.
std::span<const StandInRenderer> StandInRenderers();
/// Null if there is none of the name.
const StandInRenderer* FindStandInRenderer(std::string_view name);
/// Enters all that the renderer has and that is not there yet. False if there is no renderer of the name.
bool EnterStandInRenderer(std::string_view name);
/// Makes it the renderer of the active render settings. Nothing changes for one without a video post. False if the
/// renderer was not entered.
bool UseRenderer(BaseDocument& document, const StandInRenderer& renderer);

} // namespace host
