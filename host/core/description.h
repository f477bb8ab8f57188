// Descriptions: which parameters a type of node has, of which types, in which groups, with which limits and texts.
//
// A static description is what the resource files of a type say. It is read once, at its first use, and stays as it is
// until the application ends; what plug-ins edit are copies of its parameters (the API's Description). The host's own
// types are described in the same format, by texts that are part of the program.
#pragma once

#include "core/application.h"
#include "core/resource_parser.h"
#include "lib_description.h"

#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {

// What shows a parameter, by the words of resource files. These numbers are the host's own and never leave it; those of
// plug-ins' GUIs are large.
enum DescriptionGui {
    kGuiDefault = 0,
    kGuiRealSlider = 101,
    kGuiRealSliderOnly,
    kGuiLongSlider,
    kGuiCycle,
    kGuiCycleButton,
    kGuiMultiString,
    kGuiSubDescription
};

struct DescribedParameter {
    DescID id;               // its first level has the data type
    DescID group;            // that it stands in; empty at the top
    BaseContainer container; // of DESC_ keys; DESC_IDENT has the symbol
};

/// Parameters and groups in the order of the files. Pointers to them stay valid while others are added.
struct DescriptionData {
    std::deque<DescribedParameter> parameters;
    std::unordered_map<Int32, size_t> places; // by the first level of the id
    std::optional<DescID> single;             // set while one parameter alone is asked for

    static DescriptionData& Of(Description& description) { return *description.data; }

    const DescribedParameter* find(Int32 id) const;
    DescribedParameter* find(Int32 id);
    /// The one that has the id already, or a new one at the end.
    DescribedParameter& enter(const DescID& id);
};

class StaticDescription {
public:
    std::string name; // as its file says
    String title;     // for people
    DescriptionData data;
    SymbolTable symbols; // those of included descriptions among them

    /// Null if there is no such parameter.
    const DescribedParameter* find(Int32 id) const { return data.find(id); }
    /// The data type of a parameter; DTYPE_NONE if there is none.
    Int32 typeOf(Int32 id) const;
    /// What a parameter is before anybody sets it: what the file says, else zero or empty of its type; nil for what
    /// holds no value.
    GeData defaultOf(Int32 id) const;
};

/// The value that stands for nothing in a data type: 0, an empty text, a custom type's fresh value.
GeData EmptyValue(Int32 dataType);

/// By the type of node or data. Null if nobody described it, or what describes it cannot be read.
const StaticDescription* FindDescription(Int32 type);
/// By the name of the resource.
const StaticDescription* FindDescription(std::string_view name);

/// The descriptions of one application. Any thread.
class Descriptions final : public ApplicationPart {
public:
    /// Adds a folder "res" to those that are searched, behind the others.
    void addFolder(const std::filesystem::path& folder);
    /// False if the id is taken. The folder may be empty: then all are searched.
    bool tie(Int32 id, std::string_view name, const std::filesystem::path& folder);

    const StaticDescription* find(Int32 type);
    const StaticDescription* find(std::string_view name, const std::filesystem::path& firstFolder = {});

private:
    struct Tie {
        std::string name;
        std::filesystem::path folder;
    };

    const StaticDescription* findAnew(Int32 type);
    std::unique_ptr<StaticDescription> load(std::string_view name, const std::filesystem::path& firstFolder);

    std::recursive_mutex lock; // a description includes others
    std::vector<std::filesystem::path> folders;
    std::map<Int32, Tie> ties;
    std::unordered_map<Int32, const StaticDescription*> byType;                   // those that were found
    std::map<std::string, std::unique_ptr<StaticDescription>, std::less<>> known; // null: cannot be read
    std::vector<std::string> underWay; // descriptions that wait for what they include
};

} // namespace host
