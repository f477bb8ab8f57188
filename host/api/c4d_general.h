// The host at large: console, status bar, message boxes, events, settings, languages, paths.
#pragma once

#include "c4d_basecontainer.h"

enum GEMB {
    GEMB_OK = 0x0000,
    GEMB_OKCANCEL = 0x0001,
    GEMB_ABORTRETRYIGNORE = 0x0002,
    GEMB_YESNOCANCEL = 0x0003,
    GEMB_YESNO = 0x0004,
    GEMB_RETRYCANCEL = 0x0005,
    GEMB_ICONSTOP = 0x0010,
    GEMB_ICONQUESTION = 0x0020,
    GEMB_ICONEXCLAMATION = 0x0030,
    GEMB_ICONASTERISK = 0x0040,
    GEMB_MULTILINE = 0x0080,
    GEMB_FORCEDIALOG = 0x8000
};
ENUM_END_FLAGS(GEMB)

enum GEMB_R {
    GEMB_R_UNDEFINED = 0,
    GEMB_R_OK = 1,
    GEMB_R_CANCEL = 2,
    GEMB_R_ABORT = 3,
    GEMB_R_RETRY = 4,
    GEMB_R_IGNORE = 5,
    GEMB_R_YES = 6,
    GEMB_R_NO = 7
} ENUM_END_LIST(GEMB_R);

#define WPREF_CENTER 1002 // Bool: new objects in the centre of the view

// Any thread.
void GePrint(const String& str);
void StatusSetText(const String& str);
void StatusSetBar(Int32 percent);
void StatusClear();

// The main thread.
GEMB_R GeOutString(const String& str, GEMB flags);
void MessageDialog(const String& str);
void StopAllThreads();

/// Posts a core message. Any thread.
void SpecialEventAdd(Int32 messageid, UInt p1 = 0, UInt p2 = 0);

/// The language at `index`: "US", "DE", ... False past the end.
Bool GeGetLanguage(Int32 index, String* extension, String* name, Bool* default_language);

/// The host's own; null if nothing is stored under the id.
BaseContainer* GetWorldPluginData(Int32 id);
/// With `add` the entries are merged into what is stored.
Bool SetWorldPluginData(Int32 id, const BaseContainer& bc, Bool add = true);
BaseContainer* GetWorldContainerInstance();

const Filename GeGetPluginPath(); // the folder of the module that asks

Int32 GetC4DVersion();
