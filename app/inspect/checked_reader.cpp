#include "inspect/checked_reader.h"

#include <algorithm>

namespace verdanth {

void CheckedReader::startElement(std::string_view name, const std::vector<vdt::XmlAttribute>& attributes)
{
    using vdt::Element;
    const Element element = vdt::FindElement(name);
    if (element == Element::Plant) hasPlant = true;
    if (element == Element::Model) variantHasFrames.push_back(false);
    if (element == Element::Polylines) inPolylines = true;
    if (element == Element::Connectors || element == Element::Polygons) inPolylines = false;

    const auto namesFrames = [](const vdt::XmlAttribute& a) { return a.name == "name" && a.value == "orient"; };
    if (element == Element::Attrib && inPolylines && !variantHasFrames.empty() &&
        std::any_of(attributes.begin(), attributes.end(), namesFrames))
        variantHasFrames.back() = true;

    VdtReader::startElement(name, attributes);
}

void CheckedReader::onLoss(const std::string& what)
{
    if (toldLosses.insert(what).second) findings->warn("lost", what);
}

} // namespace verdanth
