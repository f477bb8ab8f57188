// Plant objects of the module, made and read as any other program would: by the ids of their parameters.
#pragma once

#include "c4d.h"
#include "vdt/mesh/mesh_accessors.h"
#include "vdt/skeleton/reduce.h"

#include <string>

namespace verdanth {

constexpr Int32 kPlantObject = 1028605; // the type of plant objects
constexpr Int32 kSelectionFile = 1001;  // the part of PLANT_SELECTION that names the model file
constexpr int32_t kNoMaterial = -1;

/// What a viewport shows of a plant; the values of its display parameter.
enum class PlantDisplay { Proxy = 0, Box = 1, Cloud = 2, Full = 3 };

/// What a plant object is told. Lengths are in the model's unit.
struct PlantSettings {
    std::string file;
    uint64_t variant = 0;
    uint64_t qualifier = 0; // position among the variant's; beyond the end for none
    int32_t subdivisionLevel = 1;
    bool uniform = false;
    vdt::ReductionParameters reduction{};
    PlantDisplay display = PlantDisplay::Full;
};

/// A new plant object at the end of the document's list, the document's own. `modelUnit` is how many of the document's
/// units one of the model's is. Null if the host cannot make one or the module refuses a setting.
BaseObject* AddPlant(BaseDocument& document, const PlantSettings& settings, double modelUnit);

/// Tells a plant what of it is built, leaving its file and look alone. False if the module refuses.
bool SetDetail(BaseObject& plant, const PlantSettings& settings, double modelUnit);

/// Builds what has changed in the document, as a viewport would ask for it.
bool Evaluate(BaseDocument& document);

/// The number behind the last "MAT" of a selection's name. False if it names no material.
bool MaterialIdOf(const std::string& name, int32_t& id);

/// What the host made of the object: null if nothing, or nothing with polygons.
PolygonObject* BuiltMesh(BaseObject& object);

/// Writes a polygon object through `matrix` (of the host's world) to `output`, turned into the library's right-handed
/// world: points, texture coordinates, normals and, by the selections "MAT" n, material ids. Polygons outside of all
/// such selections get `kNoMaterial`. Polygons that look away from their normals, as mirrored leaves do, are turned
/// round.
void WriteMesh(PolygonObject& mesh, const Matrix& matrix, vdt::MeshOutputAccessor& output);

} // namespace verdanth
