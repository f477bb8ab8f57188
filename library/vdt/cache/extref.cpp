// Stub variants, filled on demand from a file of their own.

#include "vdt/file/vdt_reader.h"
#include "vdt/model/model_variant.h"

#include <utility>

namespace vdt {

bool ModelVariant::expand(MessageHandler& handler, const PathMapper* mapper)
{
    const std::string path = mapper ? mapper->map(extref) : extref;
    Model model;
    if (!VdtReader(model, handler).readFile(path)) {
        handler.debug("parseVdt returned false for :\"" + path + "\" (extref: \"" + extref + "\")");
        return false;
    }
    if (model.variants.empty()) {
        handler.debug("No model read during expansion from file!");
        return false;
    }

    ModelVariant& source = model.variants.front();
    info = source.info;
    skeleton.Swap(source.skeleton);
    meshes.swap(source.meshes);
    if (!source.qualifiers.empty()) {
        qualifiers = std::move(source.qualifiers);
        defaultQualifier = source.defaultQualifier;
    }
    wasExpanded = true;
    return true;
}

} // namespace vdt
