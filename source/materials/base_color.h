// The colour by which a host material is known without its renderer.
#pragma once

#include "c4d.h"

/// What the material shows in views, as its parameter has it. `fallback` for kinds that are not known here, and where
/// the parameter holds something else, such as a texture.
Vector baseColorOfMaterial(BaseMaterial& material, const Vector& fallback);
