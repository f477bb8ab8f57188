// Links finished material files that lie beside the models, in place of building materials.
#pragma once

#include "vdt/materials/material_converter.h"

namespace vdt {

class MaxwellMaterialLinker : public virtual MaterialConverter {
public:
    /// `libraryFolder` is the root of the plant library, with slashes.
    explicit MaxwellMaterialLinker(std::string libraryFolder) : basePath(std::move(libraryFolder)) {}

    /// The file is called after the material and the quality, and lies in the plant's folder: a material's name begins
    /// with the plant's, followed by the code of the part that it covers, such as "br" for branches.
    bool convert(const MaterialData& material, int32_t quality);

    /// `path` has slashes. The file need not exist.
    virtual void linkFile(const std::string& path) = 0;

private:
    std::string basePath;
};

} // namespace vdt
