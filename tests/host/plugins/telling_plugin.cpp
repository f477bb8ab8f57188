// A plug-in that tells the console what the host does with it.
#include "c4d.h"

namespace {

// Named by what it was told, so that a second run of the host can be told from the first.
Filename* file = nullptr;

void tell(const String& what, Int32 number)
{
    GePrint(what + " " + String::IntToString(number));
}

} // namespace

/// Asks for the plug-in's folder while the host is not within a call to it.
extern "C" __attribute__((visibility("default"))) void tellHome()
{
    GePrint(GeGetPluginPath() == file->GetDirectory() ? "at home" : "abroad");
}

extern "C" __attribute__((visibility("default"))) Int32 c4d_main(Int32 action, void* p1, void* p2, void* p3)
{
    switch (action) {
    case C4DPL_INIT_VERSION: return C4DPL_VERSION;
    case C4DPL_INIT_SYS:
        file = NewObjClear(Filename, *static_cast<Filename*>(p3));
        tell("host of level", static_cast<OperatingSystem*>(p1)->version);
        return 1;
    case C4DPL_INIT:
        tell(GeGetPluginPath() == file->GetDirectory() ? "start at home" : "start abroad", action);
        return 1;
    case C4DPL_MESSAGE:
        tell(p2 ? "message with data" : "message", static_cast<Int32>(reinterpret_cast<Int>(p1)));
        return 1;
    case C4DPL_END:
        tell("end", action);
        DeleteObj(file);
        return 1;
    default: return C4DPL_ERROR;
    }
}
