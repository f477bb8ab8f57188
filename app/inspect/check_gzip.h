// Whether a compressed file is whole.
#pragma once

#include "inspect/finding.h"

#include <string>

namespace verdanth {

/// Inflates the whole of `path` and compares length and checksum with the trailer. Reports nothing for a plain file.
void CheckGzip(const std::string& path, FindingList& findings, vdt::MessageHandler& messages);

} // namespace verdanth
