// What a conversion makes: host materials that no document owns yet.
#pragma once

#include "support/host_ptr.h"
#include "ttexture.h"

#include <vector>

struct MaterialEntry {
    HostPtr<BaseMaterial> material;
    Int32 matid = 0;
    Int32 side = TEXTURETAG_SIDE_FRONTANDBACK; // of the surface that it is for

    // Materials that `material` links, as a two-sided one links its sides. They go into a document before it, since a
    // link to a material that stands in no document is lost.
    std::vector<HostPtr<BaseMaterial>> parts;
};

using MaterialEntries = std::vector<MaterialEntry>;
