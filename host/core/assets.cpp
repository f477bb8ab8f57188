#include "core/assets.h"

#include "core/application.h"
#include "core/document_messages.h"
#include "core/native_path.h"
#include "core/string_access.h"

#include <algorithm>
#include <iterator>

bool RootTextureString::Add(const Asset& asset)
{
    const std::string path = host::NativePath(asset.file);
    const auto samePath = [&](const Asset& known) { return host::NativePath(known.file) == path; };
    if (std::ranges::any_of(assets, samePath)) return false;
    assets.push_back(asset);
    return true;
}

namespace host {
namespace {

constexpr const char* kPictureSuffixes[] = {"png", "jpg", "jpeg", "tif", "tiff", "bmp", "tga", "psd", "psb",
                                            "exr", "hdr", "iff",  "gif", "b3d",  "dds", "dpx", "rla", "rpf"};

void add(std::vector<Filename>& places, const Filename& folder, const Filename& name, bool absolute)
{
    if (!folder.Content()) return;
    if (!absolute) places.push_back(folder + name);
    places.push_back(folder + name.GetFile());
}

// Where the file may stand, the likeliest first.
std::vector<Filename> placesOf(const Filename& name, const Filename& documentPath, const Filename& suggested)
{
    std::vector<Filename> places;
    const bool absolute = FilePath(name).is_absolute();
    if (absolute) places.push_back(name);
    add(places, suggested, name, absolute);
    add(places, documentPath, name, absolute);
    if (documentPath.Content()) add(places, documentPath + Filename("tex"), name, absolute);
    for (const std::filesystem::path& folder : Application::current().options().texturePaths) {
        add(places, Filename(TextOf(folder.string())), name, absolute);
    }
    return places;
}

} // namespace

std::vector<RootTextureString::Asset> CollectAssets(BaseDocument& document, ASSETDATA_FLAG flags)
{
    StopAllThreads();
    RootTextureString collected;
    AssetData request;
    request.doc = &document;
    request.rs = &collected;
    request.flags = flags;

    std::vector<Marker> asked;
    for (const NodeCore* node : NodesOf(*CoreOf(&document))) {
        if (node->Kind() != NodeKind::Material || !node->data) asked.push_back(node->GetMarker());
    }
    for (const Marker marker : asked) {
        if (NodeCore* node = FindNode(marker)) SendTo(*node, MSG_GETALLASSETS, &request);
    }
    return collected.Assets();
}

bool IsPicture(const Filename& file)
{
    return std::ranges::any_of(kPictureSuffixes, [&](const char* suffix) { return file.CheckSuffix(String(suffix)); });
}

} // namespace host

Bool AssetData::Add(const Filename& fn, BaseList2D* bl, Bool netRequestOnDemand)
{
    if (!rs || !fn.Content()) return false;
    const host::NodeCore* owner = host::CoreOf(bl);
    rs->Add({fn, owner ? owner->GetMarker() : 0, netRequestOnDemand != 0});
    return true;
}

Bool GenerateTexturePath(const Filename& docpath, const Filename& srcname, const Filename& suggestedfolder,
                         Filename* dstname, NetRenderService*, BaseThread* bt)
{
    if (!srcname.Content()) return false;
    for (const Filename& place : host::placesOf(srcname, docpath, suggestedfolder)) {
        if (bt && bt->TestBreak()) return false;
        if (!GeFExist(place)) continue;
        if (dstname) *dstname = place;
        return true;
    }
    return false;
}
