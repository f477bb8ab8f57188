// Model files by name: the one spelling under which they are cached, and the search for files that have moved.
#pragma once

#include "c4d.h"
#include "vdt/model/path_mapper.h"

#include <string>

/// The key of a model in the cache: UTF-8 with backslashes. Two spellings would be read and kept twice.
std::string ModelPath(const Filename& file);

/// Finds a file that is not where its model says, for instance after a library was copied: one folder up, then by the
/// host's texture search for the active document. What is not found keeps its path.
class ModelPathMapper final : public vdt::PathMapper {
public:
    std::string map(std::string_view path) const override;
};
