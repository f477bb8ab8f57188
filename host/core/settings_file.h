// The file of settings: containers by id. The same typed file that scenes are made of, with one chunk per container.
#pragma once

#include "c4d_basecontainer.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>

namespace host {

/// Adds what can be read to `settings`. False if anything could not; `fault` names file and place then.
bool ReadSettings(const std::filesystem::path& file, std::map<Int32, BaseContainer>& settings, std::string& fault);
/// The same from memory; `name` is what the fault calls the file.
bool ReadSettings(std::span<const uint8_t> bytes, const std::string& name, std::map<Int32, BaseContainer>& settings,
                  std::string& fault);

/// False, with the old file as it was, if the new one cannot be written.
bool WriteSettings(const std::filesystem::path& file, const std::map<Int32, BaseContainer>& settings,
                   std::string& fault);

} // namespace host
