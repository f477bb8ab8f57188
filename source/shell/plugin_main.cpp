// What the module does when the host starts it, talks to it and ends it.
#include "c4d.h"
#include "selection/models_being_read.h"
#include "shell/registration.h"

Bool PluginStart()
{
    return RegisterPlugins();
}

void PluginEnd()
{
    ModelsBeingRead::ReleaseAll();
    FreeIconSheet();
}

Bool PluginMessage(Int32 id, void* data)
{
    switch (id) {
    case C4DMSG_PRIORITY:
        // After the ordinary plug-ins: one of the family that is among them goes first.
        if (data) SetPluginPriority(data, C4DPL_INIT_PRIORITY_PLUGINS - 500);
        return true;
    case C4DPL_INIT_SYS: return StartSystem();
    default: return true;
    }
}
