// Words that all species share, in the languages of the plant library.
#pragma once

#include "vdt/model/model_variant.h"

#include <array>

namespace grower {

/// The languages in which every text of the library stands.
constexpr std::array<const char*, 6> kLanguages{"de", "en", "es", "fr", "it", "ja"};

/// "young", "medium" and "adult"; empty for another age.
vdt::LocalizedTexts AgeLabels(const std::string& age);

/// Spring, summer, autumn and winter, with ids from 1.
const std::vector<vdt::Qualifier>& Seasons();

/// Their positions.
enum SeasonPosition : uint64_t { kSpring, kSummer, kAutumn, kWinter };

} // namespace grower
