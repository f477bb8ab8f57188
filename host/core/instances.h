// Instance objects: they show what another object of the document shows.
//
// A plain instance has clones of the other's geometry as its cache; a render instance has none, whoever draws it draws
// the other's cache in the instance's frame. An instance of itself, of something above it or in a circle of instances
// shows nothing.
#pragma once

#include "core/document.h"
#include "core/object.h"

namespace host {

/// Instances of groups of instances grow exponentially; a pass ends them after so many clones.
constexpr std::size_t kMostInstanceClones = 1000000;

/// The object that the instance shows; null if it shows nothing.
ObjectCore* InstanceTarget(const ObjectCore& instance, const DocumentCore& document);

/// Brings the cache of an instance up to date; the target has been evaluated. Each clone lowers `clonesLeft`.
void UpdateInstance(ObjectCore& instance, ObjectCore* target, std::size_t& clonesLeft);

} // namespace host
