// The numbers in scene files.
#pragma once

#include "core/document.h"
#include "core/material.h"
#include "core/object.h"

namespace host {

constexpr Int32 kSceneFile = 0x53434e31; // the kind of file
constexpr Int32 kSceneLevel = 1;         // of the chunks of nodes and lists

constexpr Int32 kNodeChunk = 0x4e4f4445;
constexpr Int32 kBodyChunk = 0x424f4459;
constexpr Int32 kDataChunk = 0x44415441;
constexpr Int32 kListChunk = 0x4c495354;

/// A list of a node that stands in files: what its nodes are, and whether they form trees.
struct StoredList {
    Int32 id; // in files; never changes
    NodeKind kind;
    bool hasTrees;
    ListCore* (*of)(NodeCore& owner); // null if the owner has no such list
};

inline DocumentCore* AsDocument(NodeCore& node)
{
    return node.Kind() == NodeKind::Document ? static_cast<DocumentCore*>(&node) : nullptr;
}

/// In the order in which they are written. Materials come before the objects that show them.
constexpr StoredList kStoredLists[] = {
    {1, NodeKind::Layer, true,
     [](NodeCore& owner) { return AsDocument(owner) ? &AsDocument(owner)->layers : nullptr; }},
    {2, NodeKind::Material, false,
     [](NodeCore& owner) { return AsDocument(owner) ? &AsDocument(owner)->materials : nullptr; }},
    {3, NodeKind::Object, true,
     [](NodeCore& owner) { return AsDocument(owner) ? &AsDocument(owner)->objects : nullptr; }},
    {4, NodeKind::RenderData, true,
     [](NodeCore& owner) { return AsDocument(owner) ? &AsDocument(owner)->renderSettings : nullptr; }},
    {5, NodeKind::Tag, false,
     [](NodeCore& owner) {
         return owner.Kind() == NodeKind::Object ? &static_cast<ObjectCore&>(owner).tags : nullptr;
     }},
    {6, NodeKind::Shader, true, [](NodeCore& owner) { return &owner.Shaders(); }},
    {7, NodeKind::VideoPost, false,
     [](NodeCore& owner) {
         return owner.Kind() == NodeKind::RenderData ? &static_cast<RenderDataCore&>(owner).videoPosts : nullptr;
     }},
};

/// Marks of the moment, which mean nothing in a file.
constexpr Int32 kBitsNotStored = BIT_CONTROLOBJECT | BIT_HIGHLIGHT;

} // namespace host
