// Makes a static description of the texts of its three files.
#pragma once

#include "core/description.h"

class CustomDataTypeClass;

namespace host {

struct DescriptionSource {
    ResourceText layout;
    ResourceText symbols;
    ResourceText strings;
};

/// What the words of a layout may refer to outside of its own files. The defaults know nothing.
class DescriptionSurroundings {
public:
    virtual ~DescriptionSurroundings() = default;
    /// Null: there is no such description.
    virtual const StaticDescription* included(std::string_view) { return nullptr; }
    /// The type whose elements have this keyword; null if there is none.
    virtual CustomDataTypeClass* dataType(std::string_view) { return nullptr; }
    /// The GUI of this name, if there is one.
    virtual std::optional<Int32> gui(std::string_view) { return {}; }
};

/// Null if there is no layout in the text, or an included description is missing. All other faults cost no more than
/// what they stand in.
std::unique_ptr<StaticDescription> BuildDescription(const DescriptionSource& source,
                                                    DescriptionSurroundings& surroundings, ResourceFaults& faults);

} // namespace host
