// The geometry elements of a model file.
#pragma once

#include "vdt/file/xml_output.h"
#include "vdt/mesh/mesh.h"
#include "vdt/skeleton/skeleton.h"

#include <string_view>

namespace vdt {

/// The `skeleton` element; nothing for an empty skeleton.
void WriteSkeleton(XmlOutput& xml, const Skeleton& skeleton);

/// A `mesh` element.
void WriteMesh(XmlOutput& xml, const Mesh& mesh, int32_t group, std::string_view qualifier);

} // namespace vdt
