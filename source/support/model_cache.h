// The models that the module has in memory.
#pragma once

#include "vdt/cache/cache.h"

/// The module's one cache. It is never destroyed: nodes and values of the host may hold handles to the very end. Its
/// users take turns, as the host does with its evaluation and its main thread.
vdt::Cache& ModelCache();
