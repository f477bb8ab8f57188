// What can be wrong with a variant's geometry although every number was read.
#pragma once

#include "inspect/finding.h"
#include "vdt/model/model.h"

#include <string>

namespace verdanth {

/// A loaded variant. `title` names it in the texts. `framesStored` tells whether the file gave its branches frames.
struct CheckedVariant {
    const vdt::ModelVariant& variant;
    std::string title;
    bool framesStored;
};

/// Branches that no walk visits, points on one another, frames, numbers that are none, the bound, and foliage that
/// nothing places or nothing shows.
void CheckVariant(const CheckedVariant& checked, FindingList& findings);

/// Material ids of branches and meshes for which `model` has no material.
void CheckMaterialIds(const CheckedVariant& checked, const vdt::Model& model, FindingList& findings);

} // namespace verdanth
