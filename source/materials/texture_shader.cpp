#include "materials/texture_shader.h"

#include "customgui_layerset.h"
#include "support/text.h"
#include "xbitmap.h"

#include <algorithm>

namespace {

constexpr char kCutoutMark[] = "_a";

// The layer set that the shader has, or null.
const LayerSet* layerSetIn(const GeData& value)
{
    return static_cast<const LayerSet*>(value.GetCustomDataType(CUSTOMDATATYPE_LAYERSET));
}

// Where the suffix begins, with its dot; the end if the file name has none.
size_t suffixOf(const std::string& path)
{
    const size_t dot = path.rfind('.');
    const size_t separator = path.find_last_of("/\\");
    const bool isInFolder = dot != std::string::npos && separator != std::string::npos && dot < separator;
    return isInFolder ? path.size() : std::min(dot, path.size());
}

} // namespace

Filename TextureFilename(const std::string& path)
{
    std::string hostPath = path;
    std::replace(hostPath.begin(), hostPath.end(), '/', '\\');
    return {ToHostString(hostPath)};
}

HostPtr<BaseShader> loadTextureShader(const std::string& path, Bool /*scaled*/)
{
    if (path.empty()) return nullptr;
    HostPtr<BaseShader> shader(BaseShader::Alloc(Xbitmap));
    if (shader) shader->SetParameter(BITMAPSHADER_FILENAME, GeData(TextureFilename(path)), DESCFLAGS_SET_0);
    return shader;
}

void setAlphaChannel(BaseShader& shader, Int32 mode, Int32 channel)
{
    const HostPtr<LayerSet> layers(LayerSet::Alloc());
    if (!layers) return;
    GeData present;
    shader.GetParameter(BITMAPSHADER_LAYERSET, present, DESCFLAGS_GET_0);
    if (const LayerSet* old = layerSetIn(present)) *layers = *old;

    layers->SetMode(static_cast<LAYERSETMODE>(mode));
    layers->FlushLayers();
    if (channel == kAlphaChannel) layers->AddLayer("Alpha");
    shader.SetParameter(BITMAPSHADER_LAYERSET, GeData(CUSTOMDATATYPE_LAYERSET, *layers), DESCFLAGS_SET_0);
}

std::string CutoutPath(const std::string& picture)
{
    if (picture.empty()) return {};
    std::string cutout = picture;
    cutout.insert(suffixOf(picture), kCutoutMark);
    const Bool hasPictureAlone = !GeFExist(TextureFilename(cutout)) && GeFExist(TextureFilename(picture));
    return hasPictureAlone ? picture : cutout;
}
