#include "core/settings.h"

#include "core/settings_file.h"

namespace host {

Settings::Settings()
{
    const std::filesystem::path& file = Application::current().options().settingsFile;
    std::error_code unreadable;
    if (file.empty() || !std::filesystem::exists(file, unreadable)) return;

    std::string fault;
    if (ReadSettings(file, stored, fault)) return;
    Application::current().print(fault);
    // The file is about to be replaced; whoever wants to look into the damaged one finds it beside.
    std::filesystem::copy_file(file, file.string() + ".damaged", std::filesystem::copy_options::overwrite_existing,
                               unreadable);
}

void Settings::end(Ending step)
{
    if (step != Ending::Settings) return;
    save();
    stored.clear(); // values may belong to data types that go next
}

BaseContainer* Settings::plugin(Int32 id)
{
    const auto found = stored.find(id);
    return found == stored.end() ? nullptr : &found->second;
}

void Settings::setPlugin(Int32 id, const BaseContainer& values, bool merge)
{
    BaseContainer& container = stored[id];
    if (merge)
        container.MergeContainer(values);
    else
        container = values;
}

bool Settings::save()
{
    const std::filesystem::path& file = Application::current().options().settingsFile;
    std::string fault;
    if (file.empty() || WriteSettings(file, stored, fault)) return true;
    Application::current().print(fault);
    return false;
}

} // namespace host

BaseContainer* GetWorldContainerInstance()
{
    return &host::PartOf<host::Settings>().preferences();
}

BaseContainer* GetWorldPluginData(Int32 id)
{
    return host::PartOf<host::Settings>().plugin(id);
}

Bool SetWorldPluginData(Int32 id, const BaseContainer& bc, Bool add)
{
    host::PartOf<host::Settings>().setPlugin(id, bc, add);
    return true;
}
