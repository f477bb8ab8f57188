#include "fuzz/complaints.h"
#include "fuzz/entries.h"
#include "vdt/file/vdt_reader.h"
#include "vdt/file/vdt_writer.h"
#include "vdt/generate/plant_mesh.h"

#include <sstream>

namespace vdt::test {
namespace {

Model read(const std::string& text)
{
    Model model;
    NullMessageHandler messages;
    VdtReader reader(model, messages);
    std::istringstream stream(text);
    reader.parse(stream, text.size());
    return model;
}

// The model as text; empty if it holds something that the format cannot tell.
std::string written(const Model& model)
{
    NullMessageHandler messages;
    std::ostringstream stream;
    return VdtWriter(model, messages).write(stream) ? stream.str() : "";
}

std::string variantComplaint(const ModelVariant& variant)
{
    const Skeleton& skeleton = variant.skeleton;
    for (const SkeletonConnector& connector : skeleton.connectors)
        if (connector.point >= skeleton.points.size()) return "a connector refers to a missing point";
    for (const SkeletonBranch& branch : skeleton.branches)
        for (const SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next)
            if (vertex->point >= skeleton.points.size()) return "a vertex refers to a missing point";
    for (const VariantMesh& record : variant.meshes)
        if (const std::string complaint = MeshComplaint(*record.mesh); !complaint.empty()) return complaint;

    // A few kilobytes may rightly ask for a million leaves; that is no news.
    size_t leafCorners = 0;
    for (const VariantMesh& record : variant.meshes) leafCorners += record.mesh->polygonVertices.size();
    const bool foliage = leafCorners * skeleton.connectors.size() < 100000;

    NullMessageHandler messages;
    Mesh plant;
    if (foliage)
        BuildPlantMesh(variant, {.season = "summer"}, plant, messages);
    else
        BuildBranchMesh(skeleton, variant.meshes, 1, false, plant, messages);
    return MeshComplaint(plant);
}

} // namespace

std::string FuzzModelReader(std::string_view input)
{
    const Model model = read(std::string(input));
    if (!model.variants.empty() && model.defaultVariant >= model.variants.size())
        return "the default variant is missing";
    for (const ModelVariant& variant : model.variants)
        if (const std::string complaint = variantComplaint(variant); !complaint.empty()) return complaint;

    const std::string first = written(model);
    if (!first.empty() && written(read(first)) != first) return "written, read and written again it differs";
    return {};
}

} // namespace vdt::test
