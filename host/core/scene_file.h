// Documents in files.
#pragma once

#include "core/document.h"

#include <filesystem>
#include <string>

namespace host {

/// Fills a fresh document from a file. What cannot be read is left out and told in `fault`, which names file and place;
/// false, if nothing could be read.
bool ReadScene(const std::filesystem::path& file, DocumentCore& document, std::string& fault);

/// False, with the old file as it was and a `fault`, if the document cannot be written.
bool WriteScene(DocumentCore& document, const std::filesystem::path& file, std::string& fault);

} // namespace host
