// What a plant library offers: one record a plant, as a JSON document that the readable table is made from.
#pragma once

#include <nlohmann/json.hpp>

#include <ostream>
#include <string>

namespace verdanth {

class Console;

struct LibraryQuestion {
    std::string folder;
    std::string language; // a tag; common names in it, else in English
    std::string filter;   // a part of the common or botanical name, whatever the case; empty for all
};

struct LibraryAnswer {
    nlohmann::ordered_json facts;
    int status = 0; // an exit status: that of the worst plant listed
};

/// Reads the main file of each plant, and the file of a variant only where its size is told nowhere else. Stops early
/// on cancelling.
LibraryAnswer DescribeLibrary(const LibraryQuestion& question, Console& console);

/// The same document for a reader at a terminal.
void PrintLibraryFacts(const nlohmann::ordered_json& facts, std::ostream& out);

} // namespace verdanth
