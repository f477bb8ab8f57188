// The road from the host into a module.
#pragma once

#include "ge_sys_math.h"

#define C4DPL_INIT_SYS 1 // p1: OperatingSystem*, p3: Filename* of the module's file; also the message of system start
#define C4DPL_INIT 2
#define C4DPL_END 3
#define C4DPL_INIT_VERSION 4
#define C4DPL_MESSAGE 6 // p1: the message's id, p2: its data

#define C4DPL_VERSION 5
#define C4DPL_ERROR (-1)
#define C4DPL_ERROR_TYPE (-2)
#define C4DPL_ERROR_VERSION (-3)
#define C4DPL_ERROR_OS (-4)
#define C4DPL_ERROR_MEM (-5)

#define C4DMSG_PRIORITY 0 // Int32*: write the priority; the higher, the earlier
#define C4DPL_STARTACTIVITY 1000
#define C4DPL_ENDACTIVITY 1001
#define C4DPL_COMMANDLINEARGS 1002
#define C4DPL_BUILDMENU 1001188
#define C4DPL_ENDPROGRAM 1001084
#define C4DPL_PROGRAM_STARTED 450000215

/// Data of C4DPL_COMMANDLINEARGS.
struct C4DPL_CommandLineArgs {
    Int32 argc;
    Char** argv;
};

#define C4DPL_INIT_PRIORITY_PLUGINS 0
#define SetPluginPriority(data, i) (*static_cast<Int32*>(data) = (i))

Bool PluginStart();
void PluginEnd();
Bool PluginMessage(Int32 id, void* data);
