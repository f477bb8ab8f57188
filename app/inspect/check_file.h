// Everything that check knows to look for in a model file and the files that it refers to.
#pragma once

#include "inspect/finding.h"

#include <string>
#include <vector>

namespace verdanth {

struct CheckReport {
    std::string file;
    std::vector<Finding> findings; // in the order of looking; empty for a clean file

    /// An exit status: kSuccess, kFindings or kFailure.
    int status() const;
};

/// Checks the model file at `path`, its textures and the files of its variants. Stops early on cancelling.
CheckReport CheckModelFile(const std::string& path, vdt::MessageHandler& messages);

} // namespace verdanth
