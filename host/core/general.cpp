// Small questions to the host: which release, language, folder and time it is.
#include "core/application.h"
#include "core/string_access.h"

#include <iterator>

namespace {

struct Language {
    const char* extension;
    const char* name;
};

constexpr Language kLanguages[] = {
    {"US", "English"},  {"DE", "German"},  {"FR", "French"}, {"IT", "Italian"}, {"ES", "Spanish"},
    {"JP", "Japanese"}, {"CN", "Chinese"}, {"KR", "Korean"}, {"CZ", "Czech"},   {"PL", "Polish"},
};

} // namespace

Int32 GetC4DVersion()
{
    return host::Application::current().options().apiLevel;
}

Bool GeGetLanguage(Int32 index, String* extension, String* name, Bool* default_language)
{
    if (index < 0 || static_cast<size_t>(index) >= std::size(kLanguages)) return false;
    const Language& language = kLanguages[index];
    if (extension) *extension = String(language.extension);
    if (name) *name = String(language.name);
    if (default_language) *default_language = host::Application::current().options().language == language.extension;
    return true;
}
