// What the module brings into the host, and the order in which it does.
#pragma once

#include "c4d.h"

/// The sheet that all icons are cut from: "player.tif" of the resources. Null before the system start.
extern BaseBitmap* g_IconSheet;

/// Resource, data type of plant choices, icons. False if the module cannot work or its icons cannot be read.
Bool StartSystem();

/// Objects, hooks and the library for other plug-ins. Stops at the first that fails.
Bool RegisterPlugins();

void FreeIconSheet();
