// Language tags and the choice of a text in the user's language.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vdt {

/// From normalised language tag to text.
using LocalizedTexts = std::map<std::string, std::string, std::less<>>;

/// "DE" becomes "de", " de-de " becomes "de-DE"; what does not look like a tag becomes empty.
std::string normalizeLanguage(std::string_view tag);

/// The text for `language`, else the one for `fallback`, else `defaultText`. The two letters of a language are tried
/// before the whole tag, so that "de" answers a request for "de-AT".
std::string lookupText(const LocalizedTexts& texts, std::string_view language, std::string_view fallback,
                       std::string_view defaultText);

/// The tag for a host's two-letter code in capitals, such as "JP" for Japanese; `defaultTag` for an unknown code.
std::string languageTagFromHost(std::string_view code, std::string_view defaultTag);

} // namespace vdt
