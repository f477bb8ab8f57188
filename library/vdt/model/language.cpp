#include "vdt/model/language.h"

#include <algorithm>

namespace vdt {
namespace {

// ASCII alone: tags have no other letters, and the process's locale must not matter.
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\n\v\f\r";
    const size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

struct HostLanguage {
    std::string_view code;
    std::string_view tag;
};

constexpr HostLanguage kHostLanguages[] = {
    {"AR", "ar"},    {"CN", "zh-CN"}, {"CZ", "cs-CZ"}, {"DE", "de-DE"}, {"ES", "es-ES"}, {"FR", "fr-FR"},
    {"IT", "it-IT"}, {"JP", "ja-JP"}, {"KR", "ko"},    {"PL", "pl-PL"}, {"RU", "ru-RU"}, {"US", "en-US"},
};

} // namespace

std::string normalizeLanguage(std::string_view tag)
{
    std::string result(trimmed(tag));
    if (result.size() < 2) return {};

    std::transform(result.begin(), result.begin() + 2, result.begin(), lower);
    if (result.size() == 2) return result;
    if (result[2] != '-') return {};

    const size_t end = std::min(result.find('-', 3), result.size());
    const auto subtag = result.begin() + 3;
    const auto subtagEnd = result.begin() + static_cast<std::ptrdiff_t>(end);
    if (subtag == subtagEnd) return {};
    std::transform(subtag, subtagEnd, subtag, end == 5 ? upper : lower);
    return result;
}

std::string lookupText(const LocalizedTexts& texts, std::string_view language, std::string_view fallback,
                       std::string_view defaultText)
{
    const auto find = [&texts](std::string_view tag) {
        const auto shortForm = texts.find(normalizeLanguage(tag.substr(0, 2)));
        return shortForm != texts.end() ? shortForm : texts.find(tag);
    };
    auto found = find(language);
    if (found == texts.end() && fallback != language) found = find(fallback);
    return found != texts.end() ? found->second : std::string(defaultText);
}

std::string languageTagFromHost(std::string_view code, std::string_view defaultTag)
{
    const auto* row = std::ranges::find(kHostLanguages, code, &HostLanguage::code);
    return row == std::end(kHostLanguages) ? std::string(defaultTag) : normalizeLanguage(row->tag);
}

} // namespace vdt
