// The words that layouts of descriptions are written in, and what they stand for.
#pragma once

#include "lib_description.h"

#include <optional>
#include <string_view>

namespace host {

/// How the numbers behind MIN, DEFAULT and so on are kept.
enum class ValueForm { None, Bool, Integer, Real, Vector, Time, Text };

struct ElementType {
    std::string_view keyword;
    Int32 dataType;
    ValueForm form;
};

/// What stands behind a flag.
enum class FlagForm {
    Switch,       // nothing: true
    Amount,       // a value of the element's own form
    Integer,      // a number or a symbol
    MaybeInteger, // the same, or nothing: 1
    Ignored       // anything; means nothing here
};

struct Flag {
    std::string_view keyword;
    Int32 key; // in the parameter's container
    FlagForm form;
};

// Null, or nothing, if there is no such word.
const ElementType* FindElementType(std::string_view keyword);
const Flag* FindFlag(std::string_view keyword);
std::optional<Int32> FindUnit(std::string_view word);
std::optional<Int32> FindAnimation(std::string_view word);
std::optional<Int32> FindGui(std::string_view word);
/// The number of a type of node that links accept, by the name that people write: "Obase".
std::optional<Int32> FindNodeType(std::string_view word);

} // namespace host
