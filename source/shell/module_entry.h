// The module's state between its first and its last call by the host.
#pragma once

#include "c4d.h"

/// The host's table of tables, from the first call on.
inline OperatingSystem*& g_HostTables = t_C4DOS;

/// The module's folder; null before the first call and after the last.
extern Filename* g_PluginPath;

/// The one export: an action of the host's and its three arguments.
extern "C" __attribute__((visibility("default"))) Int32 c4d_main(Int32 action, void* p1, void* p2, void* p3);
