// The way in. A build against the vendor's SDK leaves this file out: the support sources there bring an entry point of
// their own, which calls the same three functions.
#include "shell/module_entry.h"

#include "support/resources.h"

Filename* g_PluginPath = nullptr;

namespace {

constexpr Int32 kOldestLevel = 16000; // hosts before lack calls that the module makes

Int32 g_InitCount = 0; // nested starts: only the outermost does something

Int32 load(OperatingSystem* tables, const Filename* file)
{
    if (g_InitCount++ > 0) return 1;

    g_HostTables = tables;
    if (!tables || tables->version < kOldestLevel || !file) return C4DPL_ERROR_VERSION;
    g_PluginPath = NewObjClear(Filename, file->GetDirectory());
    return 1;
}

Int32 unload()
{
    if (g_InitCount == 0 || --g_InitCount > 0) return 1;

    PluginEnd();
    g_Resource.Free();
    DeleteObj(g_PluginPath);
    return 1;
}

} // namespace

Int32 c4d_main(Int32 action, void* p1, void* p2, void* p3)
{
    switch (action) {
    case C4DPL_INIT_SYS: return load(static_cast<OperatingSystem*>(p1), static_cast<const Filename*>(p3));
    case C4DPL_INIT: return PluginStart() ? 1 : 0;
    case C4DPL_END: return unload();
    case C4DPL_INIT_VERSION: return C4DPL_VERSION;
    case C4DPL_MESSAGE: return PluginMessage(static_cast<Int32>(reinterpret_cast<Int>(p1)), p2) ? 1 : C4DPL_ERROR;
    default: return C4DPL_ERROR;
    }
}
