// What check finds: one record a loss or doubt.
#pragma once

#include "vdt/messages/message_handler.h"

#include <string>
#include <string_view>
#include <vector>

namespace verdanth {

struct Finding {
    bool unusable = false; // true: no plant can be had from the file
    std::string file;      // the model file that has the fault
    std::string kind;      // one word, stable: see docs/command_line.md
    std::string text;
};

/// The findings about one file.
class FindingList {
public:
    FindingList(std::vector<Finding>& allFindings, std::string modelFile)
        : findings(&allFindings),
          file(std::move(modelFile))
    {
    }
    void warn(std::string_view kind, std::string text) { add(false, kind, std::move(text)); }
    void fail(std::string_view kind, std::string text) { add(true, kind, std::move(text)); }

private:
    void add(bool unusable, std::string_view kind, std::string text)
    {
        findings->push_back({unusable, file, std::string(kind), std::move(text)});
    }

    std::vector<Finding>* findings;
    std::string file;
};

} // namespace verdanth
