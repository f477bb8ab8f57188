// Reads the three kinds of text that a plug-in's resources are made of into plain records.
//
//   name.h    enum { PARAMETER = 1000, ENTRY, ... };         the numbers behind the symbols
//   name.str  STRINGTABLE Name { SYMBOL "text"; ... }        the texts of one language
//   name.res  CONTAINER Name { GROUP ID { LONG ID { } } }    the layout of a description
//
// Lines may end in CR, LF or both; comments are those of C++; texts are ASCII with \uHHHH, or UTF-8. Whatever the
// bytes are, all that can be read is kept, and each fault is told with its place.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct ResourceFault {
    std::string file;
    int line; // from 1; 0 for the file as a whole
    std::string text;
};

/// What went wrong in reading, in the order of reading. Long lists are cut and say so.
class ResourceFaults {
public:
    void add(std::string_view file, int line, std::string_view text);

    const std::vector<ResourceFault>& list() const { return faults; }
    bool empty() const { return faults.empty(); }

    static constexpr size_t kMostFaults = 100;

private:
    std::vector<ResourceFault> faults;
};

/// The fault as one line for people: "oplant.res:12: ...".
std::string ToText(const ResourceFault& fault);

/// The beginning of a text between quotes, as faults name what they found.
std::string InQuotes(std::string_view text);

/// Text from a resource file, and the name by which its faults are told.
struct ResourceText {
    std::string name;
    std::string content;
};

struct SymbolTable {
    std::map<std::string, int32_t, std::less<>> values;
    std::vector<std::string> inOrder; // of the files

    const int32_t* find(std::string_view symbol) const;
    /// Adds what `other` has and this lacks.
    void merge(const SymbolTable& other);
};

struct StringEntry {
    std::string symbol;
    std::string text;      // UTF-8
    std::string shortText; // empty: none of its own
    int line;
};

struct StringTable {
    std::string name; // empty for a plug-in's general texts
    std::vector<StringEntry> entries;
};

/// What stands behind a statement's keyword.
struct ResourceValue {
    enum class Kind { Word, Number, Text };

    Kind kind;
    std::string text; // as it stands in the file; of a Text, what it says, UTF-8
    double number = 0;
};

/// `KEYWORD value value;` or `KEYWORD value { statements }`. An entry of a cycle is one too: its keyword is the
/// symbol, or the number, and `icon` what stands behind the tilde.
struct ResourceStatement {
    std::string keyword;
    std::vector<ResourceValue> values;
    std::string icon;
    std::vector<ResourceStatement> children;
    bool hasBlock = false;
    int line = 0;
};

struct ResourceLayout {
    std::string kind; // CONTAINER
    std::string name;
    std::vector<ResourceStatement> statements;
};

SymbolTable ParseSymbols(const ResourceText& source, ResourceFaults& faults);
StringTable ParseStrings(const ResourceText& source, ResourceFaults& faults);
ResourceLayout ParseLayout(const ResourceText& source, ResourceFaults& faults);

/// A whole number of 32 bits, decimal or hexadecimal, as files write it. Hexadecimal ones may use the sign's bit.
bool ParseInteger(std::string_view text, int32_t& value);

} // namespace host
