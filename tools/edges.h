// The pixels that a function has no window for, and what --edges fill puts there.
#pragma once

#include <optional>
#include <string_view>

#include "frame.h"

namespace qvn::tool {

/// Columns and lines that a function leaves black, copied or untouched.
struct Edges {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t right = 0;
  std::uint32_t bottom = 0;
  // One more column at the right, of which red and blue are exchanged, in the orders grbg and bggr.
  bool swaps_before_last = false;
  // The last pixels of each half of the frame.
  std::uint32_t half_end = 0;
};

/// Nothing if the function has none.
std::optional<Edges> edges_of(std::string_view entry);

/// Gives each of these pixels the bytes of the nearest one that the function computed, or each group of two
/// pixels where they share bytes. Throws Failure if no computed pixel is left.
void fill_edges(std::vector<std::uint8_t>& bytes, Size size, std::uint32_t pixel_bytes, bool in_pairs,
                const Edges& edges, const Pattern& pattern);

}  // namespace qvn::tool
