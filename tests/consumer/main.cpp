// Opens a plant, builds its mesh and prints what it found.
#include "vdt/cache/cache.h"
#include "vdt/generate/plant_mesh.h"

#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) return 2;

    vdt::NullMessageHandler messages;
    vdt::Cache cache(nullptr);
    const vdt::ModelHandle plant = cache.acquire(argv[1], messages, vdt::kNone); // kNone: the default variant
    const vdt::ModelVariant* variant = plant.variantData(messages, true);
    if (!variant) return 1;

    vdt::Mesh mesh;
    vdt::BuildPlantMesh(*variant, {.season = "summer"}, mesh, messages);

    std::cout << plant.model()->name << ", " << variant->name << ": " << variant->skeleton.branches.size()
              << " branches, " << variant->skeleton.connectors.size() << " connectors, " << mesh.PointCount()
              << " points, " << mesh.PolygonCount() << " polygons\n";
    return 0;
}
