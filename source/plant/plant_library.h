// What other plug-ins may ask of a plant object: its geometry, and the points and branches by which it is drawn.
//
// The record's layout and the sizes of its elements are a contract across compilers: operations are only ever added,
// behind the others. All operations take any object, and answer null or -1 for one that is no plant. They run where the
// host lets plug-ins work on objects. The host finds the record under kPlantObjectLibraryId.
#pragma once

#include "plant/c4d_draw_helper.h"

/// A point on a plant, in host units in the object's space.
struct PlantPoint {
    Vector position;
    Vector32 normal;
    Vector32 colour; // sRGB of surface points, linear of foliage points
};
static_assert(sizeof(PlantPoint) == 48 && sizeof(DrawPolylineHeader) == 16 && sizeof(DrawNode) == 72);

/// Kinds of points.
enum class PlantPoints : Int32 {
    Surface = 1, // scattered over branches and foliage alike
    Foliage = 2  // where leaves are
};

struct PlantObjectLibrary : C4DLibrary {
    /// The stored proxy of this name, else the hull of the crown. The caller's; null on failure.
    BaseObject* (*BuildNamedProxy)(BaseObject* object, const String& name);
    /// The full mesh. With `isCache` 1 it is the object's own cache and stays the host's, with 0 it is the caller's.
    BaseObject* (*BuildRenderMesh)(BaseObject* object, Int32* isCache);
    /// How many of `wanted` points there are at most. `kind` is one of PlantPoints.
    Int32 (*CountPoints)(BaseObject* object, Int32 wanted, Int32 kind);
    /// Writes at most `wanted` points and gives their number.
    Int32 (*FetchPoints)(BaseObject* object, Int32 wanted, PlantPoint* points, Int32 kind);
    /// How many nodes FetchBranches may write for as many branches; `count` is told how many headers.
    Int32 (*CountBranches)(BaseObject* object, Int32 wanted, Int32* count);
    /// Writes the thickest branches, cut short where they would need more room than CountBranches told. Gives the
    /// number of nodes; `polylineCount` is told that of headers.
    Int32 (*FetchBranches)(BaseObject* object, Int32 wanted, DrawPolylineHeader* headers, DrawNode* nodes,
                           Int32* polylineCount);
};

constexpr Int32 kPlantObjectLibraryVersion = 1000;
constexpr Int32 kPlantObjectLibrarySize = sizeof(PlantObjectLibrary);
static_assert(kPlantObjectLibrarySize == 56);

extern PlantObjectLibrary g_PlantObjectLibrary;
