#include "core/application.h"
#include "lib_iconcollection.h"

#include <map>

namespace host {
namespace {

struct BitmapEnd {
    void operator()(BaseBitmap* bitmap) const { BaseBitmap::Free(bitmap); }
};

struct Icon {
    IconData part;
    std::unique_ptr<BaseBitmap, BitmapEnd> own; // the picture, if the registry made a copy
};

class Icons final : public ApplicationPart {
public:
    std::map<Int32, Icon> byId;
};

} // namespace
} // namespace host

Bool RegisterIcon(Int32 id, BaseBitmap* bmp, Int32 x, Int32 y, Int32 w, Int32 h, ICONFLAG flags)
{
    if (!bmp || !host::Application::running()) return false;
    const Int32 width = w == -1 ? bmp->GetBw() : w;
    const Int32 height = h == -1 ? bmp->GetBh() : h;
    const bool isInside =
        x >= 0 && y >= 0 && width > 0 && height > 0 && width <= bmp->GetBw() - x && height <= bmp->GetBh() - y;
    if (!isInside) return false;

    std::map<Int32, host::Icon>& icons = host::PartOf<host::Icons>().byId;
    if (icons.contains(id) && !(flags & ICONFLAG_OVERWRITE)) return true; // the first one stays
    host::Icon icon{IconData(bmp, x, y, width, height), {}};
    if (flags & ICONFLAG_COPY) {
        icon.own.reset(bmp->GetClonePart(x, y, width, height));
        icon.part = IconData(icon.own.get(), 0, 0, width, height);
    }
    icons.insert_or_assign(id, std::move(icon));
    return true;
}

Bool GetIcon(Int32 id, IconData* data)
{
    if (!host::Application::running()) return false;
    const std::map<Int32, host::Icon>& icons = host::PartOf<host::Icons>().byId;
    const auto found = icons.find(id);
    if (found == icons.end()) return false;
    if (data) *data = found->second.part;
    return true;
}
