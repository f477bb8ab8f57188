// Renderers that are not there: stand-ins for the plug-ins by which they would enter materials, shaders and effects.
//
// A stand-in keeps what it is told, in its container, and draws like a standard material: views show its colour. A
// material keeps two things under one id, where a renderer takes a value and has the picture that goes over it at a
// second level of the id.
#pragma once

#include "c4d_basedocument.h"

#include <span>
#include <string_view>

namespace host {

struct StandInMaterial {
    Int32 id;
    Int32 color; // the parameter that views show: a colour, or a link to the material whose colour it is
};

/// The plug-ins of one renderer.
struct StandInRenderer {
    std::string_view name;
    std::span<const StandInMaterial> materials = {};
    std::span<const Int32> videoPosts = {}; // the first is the engine that render settings name
    std::span<const Int32> shaders = {};
    bool isEffect = false; // render settings keep it in the list of their video posts, beside an engine
};

/// "standard", the host's own renderer with nothing to enter, and those that stand in.
std::span<const StandInRenderer> StandInRenderers();
/// Null if there is none of the name.
const StandInRenderer* FindStandInRenderer(std::string_view name);
/// Enters all that the renderer has and that is not there yet. False if there is no renderer of the name.
bool EnterStandInRenderer(std::string_view name);
/// What it is made of, one by one. False if the id is taken.
bool EnterMaterialPlugin(const StandInMaterial& material, const String& name);
bool EnterShaderPlugin(Int32 id, const String& name);
bool EnterVideoPostPlugin(Int32 id, const String& name);
/// Where a material's container has what was told at second levels: a container by the ids of the first level, each of
/// them a container of values by the ids of the second.
constexpr Int32 kSecondLevels = 100;

/// Makes it the renderer of the active render settings. Nothing changes for one without a video post. False if the
/// renderer was not entered.
bool UseRenderer(BaseDocument& document, const StandInRenderer& renderer);

} // namespace host
