// Scenes on disk: a document with its layers, materials, objects and render settings, and all that belongs to those.
// Hooks and views are not a part of it.
//
// A scene is a HyperFile with one chunk, the document's node. The chunk of a node (level 1) holds
//
//   INT32 type, UINT64 number, INT32 depth, STRING name, INT32 bits, UINT64 node bits 0..63, UINT64 node bits 64..127,
//   CONTAINER
//   chunk 'BODY'  built-in values and geometry, with the host's level
//   chunk 'DATA'  what the plug-in wrote, with the level of its class; only for nodes of plug-ins
//   chunks 'LIST' the lists that the node owns: INT32 kind, then the chunks of their nodes
//
// Numbers are unique within the file, from 1; links name them. A list's nodes stand in the order of the tree, parents
// before children, each with its depth below the list, so that chunks nest no deeper than ownership does.
//
// Reading keeps whatever can be read. What cannot is told in the report, one line each, with the name of the file and
// the place: a node of an unknown type is left out and its children move up to its parent; a node whose plug-in refuses
// its data is left out with its children; a damaged value is left out alone.
#pragma once

#include "core/document.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace host {

/// Reads into a fresh document, which belongs to no list yet. False if this is no scene at all. `report` is told, line
/// by line, what could not be read; it stays empty if all could.
bool ReadScene(const std::filesystem::path& file, DocumentCore& document, std::string& report);
/// The same from memory; `name` is what the report calls the file.
bool ReadScene(std::span<const uint8_t> bytes, const std::string& name, DocumentCore& document, std::string& report);

/// False, with the old file as it was and the reason in `report`, if a plug-in could not write its data or the disk not
/// take the file.
bool WriteScene(const DocumentCore& document, const std::filesystem::path& file, std::string& report);
/// The same into memory. What a plug-in could not write is told in `report`.
std::vector<uint8_t> SceneBytes(const DocumentCore& document, std::string& report);

} // namespace host
