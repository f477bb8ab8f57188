// The attributes of one element, asked for by name.
#pragma once

#include "vdt/file/number_list.h"
#include "vdt/file/simple_xml.h"
#include "vdt/math/vector.h"

#include <string>
#include <string_view>
#include <vector>

namespace vdt {

/// Knows which attributes nobody asked for. Of an attribute given twice the last one counts.
class ElementAttributes {
public:
    explicit ElementAttributes(const std::vector<XmlAttribute>& all) : attributes(&all), asked(all.size(), false) {}

    /// Null if there is none.
    const std::string* find(std::string_view name) const
    {
        const std::string* found = nullptr;
        for (size_t i = 0; i < attributes->size(); ++i) {
            if ((*attributes)[i].name != name) continue;
            found = &(*attributes)[i].value;
            asked[i] = true;
        }
        return found;
    }

    /// Fills `value` if the attribute is there; a number that cannot be parsed is 0.
    void read(std::string_view name, std::string& value) const
    {
        if (const std::string* text = find(name)) value = *text;
    }
    void read(std::string_view name, double& value) const
    {
        if (const std::string* text = find(name)) value = ParseDouble(*text).value;
    }
    void read(std::string_view name, float& value) const
    {
        if (const std::string* text = find(name)) value = static_cast<float>(ParseDouble(*text).value);
    }
    void read(std::string_view name, int32_t& value) const
    {
        if (const std::string* text = find(name)) value = ParseInteger32(*text).value;
    }
    /// Up to three numbers; stops at the first word that is none.
    void read(std::string_view name, Color3f& value) const
    {
        const std::string* text = find(name);
        if (!text) return;
        std::string_view rest = *text;
        for (float* component : {&value.r, &value.g, &value.b}) {
            const ParsedNumber<double> number = ParseDouble(rest);
            if (number.length == 0) return;
            *component = static_cast<float>(number.value);
            rest.remove_prefix(number.length);
            if (!rest.empty() && !IsSpace(rest.front())) return;
        }
    }

    /// Calls `report` with each attribute name that was not asked for.
    template <class Report> void forEachUnasked(Report report) const
    {
        for (size_t i = 0; i < attributes->size(); ++i)
            if (!asked[i]) report((*attributes)[i].name);
    }

private:
    const std::vector<XmlAttribute>* attributes;
    mutable std::vector<bool> asked;
};

} // namespace vdt
