#include "core/description_builder.h"
#include "core/unicode.h"
#include "fuzz/entries.h"

#include <algorithm>
#include <array>

namespace vdt::test {
namespace {

using namespace host;

// What layouts may include.
class OneParent final : public DescriptionSurroundings {
public:
    OneParent()
    {
        ResourceFaults faults;
        parent = BuildDescription({{"", "CONTAINER Obase { GROUP G { BOOL A { } LONG B { CYCLE { } } GROUP { } } }"},
                                   {"", "enum { G = 802, A = 900, B };"},
                                   {}},
                                  *this, faults);
    }
    const StaticDescription* included(std::string_view name) override { return name == "Obase" ? &*parent : nullptr; }

private:
    std::unique_ptr<StaticDescription> parent;
};

// An input holds the texts of all three files, with a line "%%" between them: symbols, layout, strings.
std::array<std::string, 3> partsOf(std::string_view input)
{
    constexpr std::string_view kMark = "\n%%\n";
    std::array<std::string, 3> parts;
    for (std::string& part : parts) {
        const size_t end = std::min(input.find(kMark), input.size());
        part = input.substr(0, end);
        input.remove_prefix(std::min(end + kMark.size(), input.size()));
    }
    return parts;
}

std::string faultComplaint(const ResourceFaults& faults, const std::array<std::string, 3>& parts)
{
    std::ptrdiff_t lineCount = 1;
    for (const std::string& part : parts) {
        const auto isEnd = [](char c) { return c == '\n' || c == '\r'; };
        lineCount = std::max<std::ptrdiff_t>(lineCount, 1 + std::ranges::count_if(part, isEnd));
    }
    for (const ResourceFault& fault : faults.list()) {
        if (fault.line < 1 || fault.line > lineCount) return "a fault is told outside of the text";
    }
    return faults.list().size() > ResourceFaults::kMostFaults + 1 ? "too many faults are told" : "";
}

std::string descriptionComplaint(const StaticDescription& description)
{
    const DescriptionData& data = description.data;
    if (data.places.size() != data.parameters.size()) return "an id stands twice";
    for (const DescribedParameter& parameter : data.parameters) {
        if (data.find(parameter.id[0].id) != &parameter) return "a parameter is not found under its id";
        size_t depth = 0;
        for (const DescribedParameter* at = &parameter; at->group.GetDepth() > 0; ++depth) {
            at = data.find(at->group[0].id);
            if (!at || at->id[0].dtype != DTYPE_GROUP) return "a group is none";
            if (depth > data.parameters.size()) return "a group stands in itself";
        }
        const GeData* least = parameter.container.GetDataPointer(DESC_MIN);
        const GeData* most = parameter.container.GetDataPointer(DESC_MAX);
        if (least && most && least->GetFloat() > most->GetFloat()) return "the least is above the greatest";
        if (description.defaultOf(parameter.id[0].id).GetType() == DA_VOID) return "a default has no type";
    }
    return {};
}

} // namespace

std::string FuzzResource(std::string_view input)
{
    const std::array<std::string, 3> parts = partsOf(input);
    ResourceFaults faults;
    for (const StringEntry& entry : ParseStrings({"", parts[2]}, faults).entries) {
        if (ToUtf8(FromUtf8(entry.text)) != entry.text) return "a text is no UTF-8";
    }
    if (std::string complaint = faultComplaint(faults, parts); !complaint.empty()) return complaint;

    OneParent surroundings;
    ResourceFaults all;
    const auto description = BuildDescription({{"", parts[1]}, {"", parts[0]}, {"", parts[2]}}, surroundings, all);
    if (std::string complaint = faultComplaint(all, parts); !complaint.empty()) return complaint;
    return description ? descriptionComplaint(*description) : "";
}

} // namespace vdt::test
