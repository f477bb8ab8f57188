// The tables in which programs for scanned trees keep the cylinders that they fitted: text, one cylinder a row.
//
// Columns are found by the names in the head line; without one they stand as in TreeQSM's lists. Commas, semicolons,
// tabs or blanks separate them. Positions are metres with z up.
#pragma once

#include "vdt/math/vector.h"
#include "vdt/messages/message_handler.h"

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace verdanth {

constexpr int64_t kNoId = -1;

struct Cylinder {
    uint64_t line = 0; // of the file, from 1
    vdt::Vector3 start{}, end{};
    double radius = 0; // above 0
    int64_t id = kNoId;
    int64_t parent = kNoId;    // an id
    int64_t extension = kNoId; // the id of the cylinder that goes on from here
    int64_t branch = kNoId;
};

/// Counts what is left out by its reason, and tells each reason once with its first line.
class LeftOutRows {
public:
    void add(const std::string& reason, uint64_t line);
    void tell(vdt::MessageHandler& messages) const;

private:
    struct Entry {
        std::string reason;
        uint64_t line;
        uint64_t count;
    };
    std::vector<Entry> entries; // in order of first appearance
};

/// The usable rows; all ids differ. None, with the error told, if the columns are not those of such a table.
std::optional<std::vector<Cylinder>> ReadCylinderTable(std::istream& stream, LeftOutRows& leftOut,
                                                       vdt::MessageHandler& messages);

} // namespace verdanth
