// The module's own resource: its texts by number (c4d_symbols.h has the numbers' names).
#pragma once

#include "c4d.h"
#include "c4d_resource.h"

/// The plug-in's global resource, which registrations with a description use too.
inline GeResource& g_Resource = resource;

/// Empty while the resource is not initialised.
String LoadText(Int32 id);
/// The parameters take the places of "#" in the text, one after the other; what finds no place is left out. A "#"
/// within a parameter stays one.
String LoadText(Int32 id, const String& first);
String LoadText(Int32 id, const String& first, const String& second);
String LoadText(Int32 id, const String& first, const String& second, const String& third);
