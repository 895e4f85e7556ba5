// Which function serves a call: the checked header's table, read for sources that may be words of either
// order.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "failures.h"

namespace quorvane::python {

/// What is asked of a conversion.
struct Wish {
  std::string_view source;
  std::optional<std::string_view> method;
  std::optional<std::string_view> target;
  bool correction = false;
  bool shift = false;
  bool form = false;  ///< samples of less than 16 bits
};

/// The header's rows, and the functions of plain big-endian grey, which it leaves to those with a form.
const std::vector<Way>& table();

/// Words whose order their array tells: "raw16", "y16".
bool is_any_order(std::string_view source);

/// The format of a source; of one in any order, that of the order told.
const Format& format_of(std::string_view source, bool little);

/// The first row that does what is asked for. Sources of little-endian words are served by the functions for
/// big-endian ones as well, with their bytes swapped on the way.
const Way& choose(const Wish& wish);

}  // namespace quorvane::python
