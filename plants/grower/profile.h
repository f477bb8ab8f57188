// Curves given by a few points: the outline of a crown, the half width of a leaf, the radius of an acorn.
#pragma once

#include <algorithm>
#include <vector>

namespace grower {

struct ProfilePoint {
    double at;
    double value;
};

/// Points in ascending order of `at`.
using Profile = std::vector<ProfilePoint>;

/// The value at `at`, smoothed between the points; 0 outside of them.
inline double ProfileValue(const Profile& profile, double at)
{
    if (profile.empty() || at < profile.front().at || at > profile.back().at) return 0;
    const auto above = std::upper_bound(profile.begin(), profile.end(), at,
                                        [](double wanted, const ProfilePoint& point) { return wanted < point.at; });
    if (above == profile.begin()) return profile.front().value;
    if (above == profile.end()) return profile.back().value;

    // Catmull-Rom through the neighbours, so that few points give a round outline.
    const auto low = above - 1;
    const double width = above->at - low->at;
    const double t = (at - low->at) / width;
    const auto slopeAt = [&](auto point) {
        const auto before = point == profile.begin() ? point : point - 1;
        const auto after = point + 1 == profile.end() ? point : point + 1;
        return after->at > before->at ? (after->value - before->value) / (after->at - before->at) : 0.0;
    };
    const double rise = above->value - low->value;
    const double slopeLow = slopeAt(low) * width;
    const double slopeHigh = slopeAt(above) * width;
    const double value =
        low->value + t * (slopeLow + t * (3 * rise - 2 * slopeLow - slopeHigh + t * (slopeLow + slopeHigh - 2 * rise)));
    return std::max(value, 0.0);
}

} // namespace grower
