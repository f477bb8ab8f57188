// A plant's geometry as an object of the host: which of the four displays is due, whether the last one still holds, and
// the building of each.
#pragma once

#include "plant/plant_object.h"
#include "vdt/messages/message_handler.h"

#include <string>
#include <string_view>

class C4dMeshOutputAccessor;

/// What one evaluation is to show.
struct PlantDisplay {
    Int32 proxyOnly = 0;
    Int32 viewMode = 0; // what the viewport shows
    Int32 mode = 0;     // what is built: renders get the full mesh or the proxy
    Bool rendering = false;
};

/// False if the object's parameters cannot be read.
Bool ReadDisplay(BaseObject& object, BUILDFLAGS flags, PlantDisplay& display);

/// True if the last build does not do. Notes flags and level of detail.
Bool NeedsBuild(BasePlantObject& plant, BaseObject& object, HierarchyHelp& help, const PlantDisplay& display);

/// One building of one plant. Has a handle of its own: the object's may be replaced meanwhile.
struct PlantBuild {
    BasePlantObject& plant;
    BaseObject& object;
    vdt::ModelHandle model;
    Float scale; // host units for one of the model's
    C4dMeshOutputAccessor& output;
    vdt::MessageHandler& messages;
};

// Each writes into `output`. False if the variant, or its geometry where that is needed, cannot be read.

/// Branches and foliage, reduced and subdivided as the object's parameters say.
Bool BuildFull(const PlantBuild& build);
/// The first stored proxy of this name, else the hull of the crown and the branches on the way there. With too few
/// leaves for a hull the name is also the season in which the branches are reduced.
Bool BuildProxy(const PlantBuild& build, std::string_view name);
/// The corners of the bound; the plant itself goes to the draw helper. False without a document too.
Bool BuildCloud(const PlantBuild& build);
/// The corners of the bound, without loading geometry.
Bool BuildBox(const PlantBuild& build);

/// The variant with its geometry, silently loaded if need be; null if that fails.
const vdt::ModelVariant* ReadyVariant(const vdt::ModelHandle& model);

/// The name of the qualifier that the object chooses; empty if the variant does not have it.
std::string SeasonOf(BaseObject& object, const vdt::ModelVariant& variant);
