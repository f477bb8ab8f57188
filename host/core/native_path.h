// From the names of files that users and plug-ins know to paths that this system opens.
//
// Names may come from other systems: a drive and backslashes ("D:\plants\oak.vdt"). A name keeps its text wherever it
// is kept or shown; it is turned into a path here, at the moment of opening, and nowhere else.
#pragma once

#include "c4d_file.h"

#include <filesystem>
#include <string>

namespace host {

/// UTF-8, with slashes. A drive means the folder that the application's options have for it; without one it stays in
/// the path as it stands.
std::string NativePath(const Filename& name);
std::filesystem::path FilePath(const Filename& name);

} // namespace host
