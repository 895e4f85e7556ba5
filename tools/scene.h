// The scene of the test chart: Siemens star in a ring of hues, zone plate, colour patches, a fan of thin
// coloured lines, a sweep of hues, and grey ramps.
//
// Computed from additions, multiplications, divisions and square roots alone, whose results are the same on
// every machine; the functions of a C library's mathematics are not.
#pragma once

#include "frame.h"

namespace qvn::tool {

/// Draws the scene as a camera of that size sees it. Each pixel is the mean of a small grid of points.
SceneImage draw_scene(Size size);

/// Adds sensor noise. `strength` is the standard deviation for white, in steps of 1/255; it falls with the
/// square root of the brightness, as photons do, to a floor of a quarter. The same seed gives the same noise,
/// whatever the format or pattern.
void add_noise(SceneImage& scene, std::uint64_t seed, double strength);

}  // namespace qvn::tool
