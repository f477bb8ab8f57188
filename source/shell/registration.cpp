#include "shell/registration.h"

#include "c4d_symbols.h"
#include "lib_iconcollection.h"
#include "placing/placing_library.h"
#include "plant/plant_library.h"
#include "plant/plant_object.h"
#include "selection/selection_data_type.h"
#include "support/plugin_ids.h"
#include "support/resources.h"
#include "viewport/plant_draw_hook.h"

BaseBitmap* g_IconSheet = nullptr;

namespace {

constexpr Int32 kLibraryVersion = 1000;
constexpr Int32 kPlantDiskLevel = 2;
constexpr Int32 kLevelOfLargeIcons = 15000; // hosts before take icons of half the size

/// A square of the icon sheet.
struct IconCut {
    Int32 x, y, size; // 0: no icon
};

struct Registration {
    Int32 id;
    IconCut icon;
    bool oncePerFamily; // left out if another module of the family has brought the plant object
    Bool (*enter)(Int32 id, BaseBitmap* icon);
};

Bool enterPlantObject(Int32 id, BaseBitmap* icon)
{
    return RegisterObjectPlugin(id, LoadText(IDS_PLANT),
                                PLUGINFLAG_HIDEPLUGINMENU | OBJECT_USECACHECOLOR | OBJECT_GENERATOR,
                                PlantObjectPlayer::Alloc, "Oplant", icon, kPlantDiskLevel);
}

Bool enterPlantDrawHook(Int32 id, BaseBitmap*)
{
    return RegisterSceneHookPlugin(id, String(), PLUGINFLAG_HIDE, PlantDrawSceneHook::Alloc,
                                   EXECUTIONPRIORITY_GENERATOR, 0);
}

Bool installPlantObjectLibrary(Int32 id, BaseBitmap*)
{
    return InstallLibrary(id, &g_PlantObjectLibrary, kLibraryVersion, sizeof(g_PlantObjectLibrary));
}

Bool installPlantPlacingLibrary(Int32 id, BaseBitmap*)
{
    return InstallLibrary(id, &g_PlantPlacingLibrary, kPlantPlacingLibraryVersion, sizeof(g_PlantPlacingLibrary));
}

// In the order in which the host learns of them.
constexpr Registration kRegistrations[] = {
    {kPlantObjectId, {64, 0, 64}, true, enterPlantObject},
    {kPlantDrawHookId, {0, 0, 0}, true, enterPlantDrawHook},
    {kPlantObjectLibraryId, {0, 0, 0}, false, installPlantObjectLibrary},
    {kPlantPlacingLibraryId, {0, 0, 0}, false, installPlantPlacingLibrary},
};

// Enters the icon under the id and gives a copy for the registration; null if there is none.
BaseBitmap* cutIcon(Int32 id, const IconCut& cut)
{
    if (!g_IconSheet || cut.size == 0) return nullptr;

    const Int32 part = GetC4DVersion() < kLevelOfLargeIcons ? 2 : 1;
    const Int32 size = cut.size / part;
    IconData icon;
    // A copy, as the sheet goes before the host's icons do.
    if (!RegisterIcon(id, g_IconSheet, cut.x / part, cut.y / part, size, size, ICONFLAG_COPY)) return nullptr;
    return GetIcon(id, &icon) ? icon.GetClonePart() : nullptr;
}

Bool enter(const Registration& registration)
{
    BaseBitmap* icon = cutIcon(registration.id, registration.icon);
    const Bool entered = registration.enter(registration.id, icon);
    BaseBitmap::Free(icon);
    return entered;
}

Bool registerSelectionDataType()
{
    if (!RegisterDescription(kSelectionDataTypeId, "Dvdtselection", g_Resource.Get())) return false;

    CustomDataTypeClass* type = NewObjClear(VerdanthSelectionDataType);
    if (!type) return false;
    if (RegisterCustomDataTypePlugin("Verdanth Selection", CUSTOMDATATYPE_INFO_HASSUBDESCRIPTION, type, 0)) return true;
    DeleteObj(type);
    return false;
}

} // namespace

Bool StartSystem()
{
    if (!g_Resource.Init() || !registerSelectionDataType()) return false;

    g_IconSheet = BaseBitmap::Alloc();
    if (!g_IconSheet) return true;
    return g_IconSheet->Init(GeGetPluginPath() + Filename("res") + Filename("player.tif")) == IMAGERESULT_OK;
}

Bool RegisterPlugins()
{
    const bool familyIsThere = FindPlugin(kPlantObjectId, PLUGINTYPE_OBJECT);
    for (const Registration& registration : kRegistrations) {
        if (registration.oncePerFamily && familyIsThere) continue;
        if (!enter(registration)) return false;
    }
    return true;
}

void FreeIconSheet()
{
    BaseBitmap::Free(g_IconSheet);
}
