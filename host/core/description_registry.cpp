#include "core/base_descriptions.h"
#include "core/description_builder.h"
#include "core/node_class.h"
#include "core/resource_folder.h"
#include "core/string_access.h"

#include <algorithm>

namespace host {
namespace {

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

// A name of a resource is no path: it stays within its folder.
bool isFileName(std::string_view name)
{
    return !name.empty() && name.find_first_of("/\\:") == std::string_view::npos && name.front() != '.';
}

ResourceText baseText(const BaseDescription& base, std::string_view suffix, std::string_view content)
{
    return {std::string(base.name) + std::string(suffix), std::string(content)};
}

DescriptionSource sourceOf(const BaseDescription& base)
{
    const bool inGerman = lowerCase(Application::current().options().language) == "de";
    return {baseText(base, ".res", base.layout), baseText(base, ".h", base.symbols),
            baseText(base, ".str", inGerman ? base.german : base.english)};
}

// The files under exactly this name. Nothing if there is no layout.
std::optional<DescriptionSource> readSource(const std::filesystem::path& folder, const std::string& name,
                                            ResourceFaults& faults)
{
    const std::filesystem::path place = std::filesystem::path("description") / name;
    std::optional<ResourceText> layout = ReadResource(folder / place += ".res", faults);
    if (!layout) return {};
    DescriptionSource source{std::move(*layout), {}, {}};
    if (auto symbols = ReadResource(folder / place += ".h", faults)) {
        source.symbols = std::move(*symbols);
    } else {
        faults.add(source.layout.name, 0, "there is no " + name + ".h beside it");
    }
    if (auto strings = ReadTranslated(folder, std::filesystem::path(place) += ".str", faults)) {
        source.strings = std::move(*strings);
    } else {
        faults.add(source.layout.name, 0, "there is no " + name + ".str for it");
    }
    return source;
}

// Words are looked up among the descriptions and data types that the running application knows.
class RegisteredSurroundings final : public DescriptionSurroundings {
public:
    RegisteredSurroundings(Descriptions& all, const std::filesystem::path& place) : descriptions(all), folder(place) {}

    const StaticDescription* included(std::string_view name) override { return descriptions.find(name, folder); }
    CustomDataTypeClass* dataType(std::string_view keyword) override
    {
        const Registrations* registry = Registrations::Current();
        const CustomDataClass* found = registry ? registry->FindCustomData(keyword) : nullptr;
        return found ? found->type : nullptr;
    }

private:
    Descriptions& descriptions;
    const std::filesystem::path& folder;
};

// The host's own types of a kind that have no description of their own are described by their base.
std::string_view baseNameOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::Object: return "Obase";
    case NodeKind::Tag: return "Tbase";
    case NodeKind::Material: return "Mbase";
    case NodeKind::Shader: return "Xbase";
    case NodeKind::SceneLoader: return "Fbase";
    default: return "Obaselist";
    }
}

} // namespace

void Descriptions::addFolder(const std::filesystem::path& folder)
{
    const std::lock_guard guard(lock);
    if (std::ranges::find(folders, folder) != folders.end()) return;
    folders.push_back(folder);
    std::erase_if(known, [](const auto& entry) { return !entry.second; }); // what was missing may be there now
}

bool Descriptions::tie(Int32 id, std::string_view name, const std::filesystem::path& folder)
{
    const std::lock_guard guard(lock);
    return ties.try_emplace(id, Tie{std::string(name), folder}).second;
}

const StaticDescription* Descriptions::find(Int32 type)
{
    const std::lock_guard guard(lock);
    if (const auto found = byType.find(type); found != byType.end()) return found->second;
    const StaticDescription* description = findAnew(type);
    if (description) byType.emplace(type, description);
    return description;
}

const StaticDescription* Descriptions::findAnew(Int32 type)
{
    if (const auto tied = ties.find(type); tied != ties.end()) return find(tied->second.name, tied->second.folder);

    const Registrations* registry = Registrations::Current();
    const NodeClass* nodeClass = registry ? registry->FindClass(type) : nullptr;
    if (nodeClass && nodeClass->description.Content()) return find(Utf8Of(nodeClass->description));
    const std::string_view own = BaseDescriptionName(type);
    if (!own.empty()) return find(own);
    return nodeClass ? find(baseNameOf(nodeClass->kind)) : nullptr;
}

const StaticDescription* Descriptions::find(std::string_view name, const std::filesystem::path& firstFolder)
{
    const std::lock_guard guard(lock);
    if (const auto found = known.find(name); found != known.end()) return found->second.get();
    if (!isFileName(name) || std::ranges::find(underWay, name) != underWay.end()) return nullptr;
    underWay.emplace_back(name);
    std::unique_ptr<StaticDescription> description = load(name, firstFolder);
    underWay.pop_back();
    return (known[std::string(name)] = std::move(description)).get();
}

std::unique_ptr<StaticDescription> Descriptions::load(std::string_view name, const std::filesystem::path& firstFolder)
{
    ResourceFaults faults;
    std::optional<DescriptionSource> source;
    const BaseDescription* base = FindBaseDescription(name);
    if (base) source = sourceOf(*base);
    std::vector<std::filesystem::path> places = folders;
    if (!firstFolder.empty()) places.insert(places.begin(), firstFolder);
    for (const std::filesystem::path& folder : places) {
        if (!source) source = readSource(folder, std::string(name), faults);
        if (!source) source = readSource(folder, lowerCase(name), faults);
    }

    std::unique_ptr<StaticDescription> description;
    if (source) {
        RegisteredSurroundings surroundings(*this, firstFolder);
        description = BuildDescription(*source, surroundings, faults);
    } else {
        faults.add(name, 0, "there is no description of this name");
    }
    PrintFaults(faults);
    return description;
}

const StaticDescription* FindDescription(Int32 type)
{
    return Application::running() ? PartOf<Descriptions>().find(type) : nullptr;
}

const StaticDescription* FindDescription(std::string_view name)
{
    return Application::running() ? PartOf<Descriptions>().find(name) : nullptr;
}

} // namespace host
