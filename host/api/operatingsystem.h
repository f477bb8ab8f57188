// The table of tables that the host hands to a module.
#pragma once

#include "c4d_string.h"

/// The level that these headers describe.
#define API_VERSION 18000

struct C4D_General {
    void (*OpenHelpBrowser)(const String& optype, const String& main, const String& group, const String& property);
};

/// Tables are the host's, writable, and shared by all modules.
struct OperatingSystem {
    Int32 version; // the level of the running host
    C4D_General* Ge;
};

extern OperatingSystem* t_C4DOS;
#define C4DOS (*t_C4DOS)
