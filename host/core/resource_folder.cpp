#include "core/resource_folder.h"

#include "core/application.h"
#include "core/description.h"
#include "core/native_path.h"
#include "core/string_access.h"

#include <algorithm>
#include <fstream>

namespace host {
namespace {

std::string languageFolder()
{
    std::string extension = Application::running() ? Application::current().options().language : "US";
    std::ranges::transform(extension, extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return "strings_" + extension;
}

// The texts by number. Symbols that have no number are faults.
std::map<Int32, String> textsOf(const std::filesystem::path& folder, ResourceFaults& faults)
{
    const std::optional<ResourceText> symbolFile = ReadResource(folder / "c4d_symbols.h", faults);
    const std::optional<ResourceText> stringFile = ReadTranslated(folder, "c4d_strings.str", faults);
    if (!symbolFile || !stringFile) {
        faults.add(folder.string(), 0, symbolFile ? "there is no c4d_strings.str" : "there is no c4d_symbols.h");
        return {};
    }
    const SymbolTable symbols = ParseSymbols(*symbolFile, faults);
    std::map<Int32, String> texts;
    for (const StringEntry& entry : ParseStrings(*stringFile, faults).entries) {
        if (const Int32* id = symbols.find(entry.symbol)) {
            texts.insert_or_assign(*id, TextOf(entry.text));
        } else {
            faults.add(stringFile->name, entry.line, InQuotes(entry.symbol) + " has no number");
        }
    }
    return texts;
}

} // namespace

std::optional<ResourceText> ReadResource(const std::filesystem::path& file, ResourceFaults& faults)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return {};
    ResourceText text{file.string(), std::string(kLargestResource + 1, '\0')};
    std::ifstream stream(file, std::ios::binary);
    stream.read(text.content.data(), static_cast<std::streamsize>(text.content.size()));
    text.content.resize(static_cast<size_t>(stream.gcount()));
    if (text.content.size() > kLargestResource) {
        faults.add(text.name, 0, "the file is too large for a resource");
        return {};
    }
    if (stream.bad() || (text.content.empty() && !stream.eof())) {
        faults.add(text.name, 0, "the file cannot be read");
        return {};
    }
    return text;
}

std::optional<ResourceText> ReadTranslated(const std::filesystem::path& folder, const std::filesystem::path& name,
                                           ResourceFaults& faults)
{
    std::optional<ResourceText> text = ReadResource(folder / languageFolder() / name, faults);
    return text ? text : ReadResource(folder / "strings_us" / name, faults);
}

void PrintFaults(const ResourceFaults& faults)
{
    if (!Application::running()) return;
    for (const ResourceFault& fault : faults.list()) Application::current().print(ToText(fault));
}

} // namespace host

GeResource::GeResource() = default;

GeResource::~GeResource() = default;

Bool GeResource::Init()
{
    if (data) return data->loaded;
    return Init(GeGetPluginPath() + Filename("res"));
}

Bool GeResource::Init(const Filename& path, Bool)
{
    if (data) return data->loaded;
    data = std::make_unique<host::ResourceData>();
    data->folder = host::FilePath(path);
    host::ResourceFaults faults;
    data->texts = host::textsOf(data->folder, faults);
    data->loaded = !data->texts.empty();
    host::PrintFaults(faults);
    if (data->loaded && host::Application::running()) host::PartOf<host::Descriptions>().addFolder(data->folder);
    return data->loaded;
}

const String& GeResource::LoadString(Int32 id)
{
    static const String kEmpty;
    static const String kNotFound("StringNotFound");
    if (!data || !data->loaded) return kEmpty;
    const auto found = data->texts.find(id);
    return found == data->texts.end() ? kNotFound : found->second;
}

void GeResource::Free()
{
    data.reset();
}

LocalResource* GeResource::Get()
{
    return data.get();
}

Bool RegisterDescription(Int32 id, const String& idstr, LocalResource* res)
{
    if (!host::Application::running() || !idstr.Content()) return false;
    return host::PartOf<host::Descriptions>().tie(id, host::Utf8Of(idstr), res ? res->folder : std::filesystem::path());
}
