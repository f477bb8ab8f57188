#include "host/host_session.h"

#include "console/console.h"
#include "core/application.h"
#include "ddoc.h"
#include "lookup/species.h"
#include "module/modules.h"

#include <cstdlib>
#include <filesystem>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

// Where the module keeps what it knows of its library, and the folder in it.
constexpr Int32 kLibrarySettings = 1029678;
constexpr Int32 kLibraryFolder = 1003;

fs::path modulePath()
{
    if (const char* named = std::getenv("VERDANTH_MODULE"); named && *named) return named;
    const fs::path program = ProgramFolder();
    for (const fs::path& candidate :
         {program / "module/verdanth.so", program / "../module/verdanth.so", program / "../lib/verdanth/verdanth.so"}) {
        std::error_code ignored;
        if (fs::exists(candidate, ignored)) return candidate.lexically_normal();
    }
    return program / "module/verdanth.so";
}

} // namespace

HostSession::HostSession() = default;
HostSession::~HostSession() = default;

bool HostSession::start(const std::string& library, Console& console)
{
    host::ApplicationOptions options;
    options.console = [&console](std::string_view line) { console.message(line); };
    application = std::make_unique<host::Application>(std::move(options));
    host::Modules& modules = application->part<host::Modules>();
    if (!modules.load(modulePath())) {
        console.error("the plant module cannot be used");
        return false;
    }
    const std::string folder = FindLibrary(library);
    if (!folder.empty()) {
        BaseContainer settings;
        settings.SetFilename(kLibraryFolder, Filename(HostText(folder)));
        SetWorldPluginData(kLibrarySettings, settings);
    }
    modules.start();
    return true;
}

OwnDocument::OwnDocument(DOCUMENT_UNIT unit) : document(BaseDocument::Alloc())
{
    AutoAlloc<UnitScaleData> scale;
    if (!document || !scale) return;
    scale->SetUnitScale(1, unit);
    document->SetParameter(DOCUMENT_DOCUNIT, GeData(CUSTOMDATATYPE_UNITSCALE, *scale), DESCFLAGS_SET_0);
}

OwnDocument::~OwnDocument()
{
    BaseDocument::Free(document);
}

String HostText(const std::string& text)
{
    return String(text.c_str(), STRINGENCODING_UTF8);
}

std::string Utf8Text(const String& text)
{
    std::string result(static_cast<size_t>(text.GetCStringLen(STRINGENCODING_UTF8)) + 1, '\0');
    text.GetCString(result.data(), static_cast<Int>(result.size()), STRINGENCODING_UTF8);
    result.pop_back();
    return result;
}

} // namespace verdanth
