// Where the plant library is, which files are models, and in which language their texts are shown.
//
// Nothing is remembered: folder and language are asked for anew at each call.
#pragma once

#include "c4d.h"
#include "vdt/model/language.h"

#include <string>

/// The folder with one sub-folder a species: the user's choice, else the installer's. May be empty.
Filename GetPlantLibraryPath();

/// Where the installer put the library, in UTF-8; empty if nothing tells.
std::string GetRegistryPlantPath();

/// All suffixes of the name in lower case, joined: "vdt.gz".
String GetFullSuffix(const Filename& file);
/// By the name alone. A base name with a dot in it is none.
Bool IsModelFile(const Filename& file);

struct HostLanguage {
    String suffix; // "US", "DE", ...
    String name;
};
HostLanguage GetHostLanguage();

/// The text in the host's language, else in American English, else the empty text.
String GetLocalizedText(const vdt::LocalizedTexts& texts);
