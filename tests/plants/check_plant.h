// What holds for the wood of every plant that the grower makes.
#pragma once

#include "vdt/model/model_variant.h"

#include <gtest/gtest.h>

namespace vdt::test {

/// One tree of the grower: whole, rooted at the origin, above the ground, thinning towards its tips, with bark that is
/// not stretched and frames that follow the branches.
testing::AssertionResult CheckPlant(const Skeleton& skeleton);

} // namespace vdt::test
