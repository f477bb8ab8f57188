// What is registered.
#pragma once

#include "c4d_baselist.h"

#define PLUGINFLAG_REFRESHALWAYS (1 << 25)
#define PLUGINFLAG_HIDEPLUGINMENU (1 << 28)
#define PLUGINFLAG_HIDE (1 << 29)
#define PLUGINFLAG_SMALLNODE (1 << 30)

enum PLUGINTYPE {
    PLUGINTYPE_ANY = 0,
    PLUGINTYPE_SHADER = 1,
    PLUGINTYPE_MATERIAL = 2,
    PLUGINTYPE_COMMAND = 4,
    PLUGINTYPE_OBJECT = 5,
    PLUGINTYPE_TAG = 6,
    PLUGINTYPE_VIDEOPOST = 8,
    PLUGINTYPE_SCENEHOOK = 10,
    PLUGINTYPE_NODE = 11,
    PLUGINTYPE_LIBRARY = 12,
    PLUGINTYPE_SCENELOADER = 15,
    PLUGINTYPE_COREMESSAGE = 17,
    PLUGINTYPE_CUSTOMGUI = 18,
    PLUGINTYPE_CUSTOMDATATYPE = 19
} ENUM_END_LIST(PLUGINTYPE);

class BasePlugin : public BaseList2D {
public:
    BasePlugin* GetNext();
    BasePlugin* GetPred();
    Int32 GetID() const;
    Int32 GetInfo() const;
    PLUGINTYPE GetPluginType() const;
    Filename GetFilename(); // of the module

protected:
    using BaseList2D::BaseList2D;
};

/// Null if it is not registered.
BasePlugin* FindPlugin(Int32 id, PLUGINTYPE type);
