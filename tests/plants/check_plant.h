// What holds for the wood of every plant that the grower makes.
#pragma once

#include "vdt/model/model_variant.h"

#include <gtest/gtest.h>

#include <map>

namespace vdt::test {

/// One tree of the grower: whole, rooted at the origin, above the ground, thinning towards its tips, with bark that is
/// not stretched and frames that follow the branches.
/// `barkTurns` gives for each material how many turns around a branch its pictures are long.
testing::AssertionResult CheckPlant(const Skeleton& skeleton, const std::map<int32_t, int>& barkTurns);

} // namespace vdt::test
