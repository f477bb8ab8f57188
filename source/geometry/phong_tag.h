// Shading across polygons.
#pragma once

#include "c4d.h"

/// Gives `object` a new Phong tag in place of the one that it has: without an angle limit, `angle` noted all the same;
/// whether edges break is kept. False if a tag cannot be made, or if the present one has no parameters.
Bool SetPhong(BaseObject* object, Float angle);
