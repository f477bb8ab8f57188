// Coarse stand-ins for a plant, for views in which its real geometry would cost too much.
#pragma once

#include "vdt/mesh/mesh_accessors.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model_variant.h"

#include <string_view>
#include <vector>

namespace vdt {

/// The first stored proxy with this qualifier; null if there is none. Proxies need no geometry to be loaded.
const Mesh* FindProxy(const ModelVariant& variant, std::string_view qualifier);

/// Writes the hull of all connectors of an expanded variant, and the branches on the way there. With fewer than four
/// connectors there is no hull to speak of; the branches are the trunk and those on it then.
void BuildHullMesh(const ModelVariant& variant, std::string_view season, MeshOutputAccessor& output,
                   MessageHandler& messages);

/// How far the soft ball around each connector reaches, in model units, and the sum of balls at which the skin is.
struct BlobOptions {
    double radius = 150;
    double threshold = 50;
};

/// Writes a smooth skin around all connectors of an expanded variant, behind the trunk and the branches on it.
void BuildBlobMesh(const ModelVariant& variant, std::string_view season, const BlobOptions& options,
                   MeshOutputAccessor& output, MessageHandler& messages);

/// The positions of all connectors that stand on a point.
std::vector<Vector3> ConnectorPositions(const Skeleton& skeleton);

} // namespace vdt
