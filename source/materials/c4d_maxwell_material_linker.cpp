#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "support/library_location.h"
#include "support/text.h"
#include "vdt/materials/maxwell_material_linker.h"

#include <algorithm>

namespace {

constexpr Int32 kLinkedFile = 1002; // Filename
constexpr Int32 kIsLinked = 2005;   // Int32
constexpr ParameterMap kNoParameters{};

std::string libraryFolder()
{
    std::string folder = ToUtf8(GetPlantLibraryPath());
    std::replace(folder.begin(), folder.end(), '\\', '/');
    return folder;
}

// The same material at another level of quality; `path` itself if no level stands in it.
std::string atOtherLevel(const std::string& path)
{
    const size_t mark = path.rfind('_');
    const size_t suffix = path.rfind(".mxm");
    if (mark == std::string::npos || suffix == std::string::npos || suffix < mark) return path;
    const std::string level = path.substr(mark + 1, suffix - mark - 1);
    return path.substr(0, mark + 1) + (level == "low" ? "medium" : "low") + ".mxm";
}

class C4dMaxwellMaterialLinker final : public C4dMaterialNameConverter, public vdt::MaxwellMaterialLinker {
public:
    explicit C4dMaxwellMaterialLinker(ColourSpace colours)
        : C4dMaterialNameConverter(kMaxwellMaterialId, kNoParameters, colours),
          MaxwellMaterialLinker(libraryFolder())
    {
    }

    // The renderer reads a file when the parameter changes. So the container, which tells nobody, gets another file
    // first.
    void linkFile(const std::string& path) override
    {
        if (!material) return;
        BaseContainer& data = *material->GetDataInstance();
        data.SetFilename(kLinkedFile, TextureFilename(atOtherLevel(path)));
        data.SetInt32(kIsLinked, 1);
        material->SetParameter(kLinkedFile, GeData(TextureFilename(path)), DESCFLAGS_SET_0);
    }
};

} // namespace

Bool ConvertToMaxwell(const Conversion& conversion)
{
    return ConvertWith(C4dMaxwellMaterialLinker(conversion.colourSpace), conversion);
}
