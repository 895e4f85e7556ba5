// A frame in bands, one for each thread, where the function's rule permits; the bytes are those of one call.
#pragma once

#include "conversions.h"

namespace qvn::tool {

/// Whether the function's frames can be cut. Filters and fields that span the frame cannot.
bool can_be_cut(const Conversion& conversion, bool corrected);

/// Runs it in so many bands. `dst` has room for the whole picture, its planes one behind the other. Throws
/// Failure with the function's own refusal.
void run_in_bands(const Conversion& conversion, std::vector<std::uint8_t>& dst, Frame& frame,
                  TransformTarget target, std::uint32_t shift, const Correction* correction,
                  std::uint32_t threads);

}  // namespace qvn::tool
