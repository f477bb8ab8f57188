// Plants by name: the folders of a plant library, and which of them a user may have meant.
//
// A plant lives in a folder of its own name, <library>/<Name>/<Name>.vdt.gz or .vdt.
#pragma once

#include "vdt/messages/message_handler.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace verdanth {

struct Species {
    std::string name; // the folder's
    std::string file;
};

/// What a request for a plant led to: a file, or the reason why there is none.
struct FoundPlant {
    std::string file;
    std::string problem; // empty if there is a file
};

/// Where the program stands; empty if that cannot be told.
std::filesystem::path ProgramFolder();

/// The plants of the library at `folder`, by name. Folders without a model file of their name are passed over.
std::vector<Species> ScanLibrary(const std::string& folder);

/// The library to use: `requested` if it is not empty, else what the environment names in VERDANTH_PLANTS, else
/// "plants" beside the program, else the installed share folder. Empty if there is none.
std::string FindLibrary(const std::string& requested);

/// The file that `request` means: a file's path, else a plant of the library by its folder's name, botanical name or
/// a label in any language. Case and the difference between "_" and " " do not count. The problem of an unknown name
/// lists names like it. Reads model files only where no folder has the name.
FoundPlant FindPlant(const std::string& request, const std::string& libraryFolder, vdt::MessageHandler& messages);

/// Letters of the Latin alphabet in lower case, "_" as " ". For comparing names.
std::string FoldName(std::string_view name);

/// The `candidates` that are most like `request`, best first; those with nothing in common are left out.
std::vector<std::string> NearNames(std::string_view request, const std::vector<std::string>& candidates);

} // namespace verdanth
