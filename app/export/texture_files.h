// The texture files of an export that keeps its textures outside: where they stand, seen from the main file.
#pragma once

#include "export/scene.h"
#include "files/output_files.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace verdanth {

class TextureFiles {
public:
    /// For an export of `materials` to `mainPath`. No copy gets the name of one of their textures' own files.
    TextureFiles(const std::string& mainPath, const std::vector<SceneMaterial>& materials, OutputFiles& files);

    /// The relative path, with slashes, under which the main file finds the texture. A texture in the main file's
    /// folder or below stays where it is; others are copied into a folder beside the main file. Empty, with `problem`
    /// told, if it cannot be read.
    std::string place(const std::string& texture, std::string& problem);

    /// The same for a new texture with the given content, named like `name`.
    std::string placeNew(const std::string& name, const std::vector<uint8_t>& content);

private:
    std::string newName(const std::string& name);

    OutputFiles* outputFiles;
    std::vector<std::string> sources;
    std::string baseFolder;    // of the main file, absolute
    std::string textureFolder; // name of the folder for copies, inside it
    std::map<std::string, std::string> placed;
    std::set<std::string> usedNames; // folded: some systems do not tell case apart
};

/// `path` as a URI reference: what may not stand there is written as %XX.
std::string UriOf(const std::string& path);

} // namespace verdanth
