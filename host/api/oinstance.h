// Parameters of the instance object.
#pragma once

enum {
    INSTANCEOBJECT_LINK = 1001,          // link
    INSTANCEOBJECT_RENDERINSTANCE = 1002 // Bool
};
