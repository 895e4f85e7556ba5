// The contact sheet: one frame by every conversion that its format has, side by side, with names and enlarged
// crops. Each plane has a cell of its own.
#pragma once

#include "frame.h"

namespace qvn::tool {

struct SheetOptions {
  std::string crop;              // "X,Y": the middle of the enlarged part; empty is where most happens
  std::string zoom = "8";        // how many times the crop is enlarged
  std::string show = "methods";  // each method; patterns: a mosaic in all four orders, by the first method;
                                 // all: every function in all four orders
};

/// Conversions that cannot take the frame's size are left out; throws Failure if none is left.
Picture make_sheet(const Frame& frame, const SheetOptions& options);

}  // namespace qvn::tool
