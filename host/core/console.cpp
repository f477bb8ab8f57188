#include "core/console.h"

#include "core/string_access.h"

#include <algorithm>

namespace host {
namespace {

template <class Change> void changeStatus(Change change)
{
    Application::current().runOnMain([change] {
        StatusBar& bar = PartOf<StatusBar>();
        change(bar);
        if (bar.onChange) bar.onChange();
    });
}

} // namespace
} // namespace host

void GePrint(const String& str)
{
    host::Application::current().print(host::Utf8Of(str));
}

void StatusClear()
{
    host::changeStatus([](host::StatusBar& bar) {
        bar.text.clear();
        bar.percent = host::StatusBar::kNoBar;
    });
}

void StatusSetText(const String& str)
{
    host::changeStatus([text = host::Utf8Of(str)](host::StatusBar& bar) { bar.text = text; });
}

void StatusSetBar(Int32 p)
{
    host::changeStatus([p](host::StatusBar& bar) { bar.percent = std::clamp(p, 0, 100); });
}
