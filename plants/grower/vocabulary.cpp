#include "grower/vocabulary.h"

namespace grower {

vdt::LocalizedTexts AgeLabels(const std::string& age)
{
    if (age == "young")
        return {{"en", "Young"}, {"de", "Jung"},    {"fr", "Jeune"},
                {"es", "Joven"}, {"it", "Giovane"}, {"ja", "\u82e5\u6728"}};
    if (age == "medium")
        return {{"en", "Medium"},  {"de", "Mittel"}, {"fr", "Moyen"},
                {"es", "Mediano"}, {"it", "Medio"},  {"ja", "\u4e2d\u6728"}};
    if (age == "adult")
        return {{"en", "Adult"},  {"de", "Ausgewachsen"}, {"fr", "Adulte"},
                {"es", "Adulto"}, {"it", "Adulto"},       {"ja", "\u6210\u6728"}};
    return {};
}

const std::vector<vdt::Qualifier>& Seasons()
{
    static const std::vector<vdt::Qualifier> seasons{
        {1,
         "spring",
         {{"en", "Spring"},
          {"de", "Fr\u00fchling"},
          {"fr", "Printemps"},
          {"es", "Primavera"},
          {"it", "Primavera"},
          {"ja", "\u6625"}}},
        {2,
         "summer",
         {{"en", "Summer"},
          {"de", "Sommer"},
          {"fr", "\u00c9t\u00e9"},
          {"es", "Verano"},
          {"it", "Estate"},
          {"ja", "\u590f"}}},
        {3,
         "autumn",
         {{"en", "Autumn"},
          {"de", "Herbst"},
          {"fr", "Automne"},
          {"es", "Oto\u00f1o"},
          {"it", "Autunno"},
          {"ja", "\u79cb"}}},
        {4,
         "winter",
         {{"en", "Winter"},
          {"de", "Winter"},
          {"fr", "Hiver"},
          {"es", "Invierno"},
          {"it", "Inverno"},
          {"ja", "\u51ac"}}},
    };
    return seasons;
}

} // namespace grower
