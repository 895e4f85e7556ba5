/// Caps of Bayer mosaics: their order and depth by the field `format`, and by `bpp` and `depth` where a
/// source writes these.
#pragma once

#include <string>

#include "converter.h"

namespace quorvane::gst {

/// How samples lie in the frames, where caps do not tell it.
enum class Samples { kAsCapsSay, k8, k12Packed, k12p, k12Csi2, k16Little, k16Big };

/// "rggb", "rggb10le", ... of all orders, depths and byte orders. Sources of GStreamer 1.22 write 8 bits
/// only, those of later versions 10 to 16.
const std::vector<std::string>& mosaic_names();

/// Nothing: not fixed, or not known. `bits` are those of 16-bit samples where the caps do not tell them.
std::optional<Input> mosaic_of(const GstStructure* fields, Samples samples, std::uint32_t bits);

}  // namespace quorvane::gst
