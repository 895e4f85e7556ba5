// Colour correction: the library's objects from what the command line says of them, and a matrix with
// saturation of the tool's own.
#pragma once

#include <quorvane/quorvane.h>

#include <optional>
#include <quorvane/correction.hpp>

#include "frame.h"

namespace qvn::tool {

/// What the command line says; an empty text says nothing.
struct CorrectionOptions {
  std::string matrix;
  std::string matrix_fixed;
  std::string gamma;
  std::string table;

  bool any() const { return !(matrix.empty() && matrix_fixed.empty() && gamma.empty() && table.empty()); }
};

/// What a function of the library needs to know of an object.
struct CorrectionLimits {
  std::uint32_t index_bits;   // bits of the values that a table is asked for
  std::uint32_t output_bits;  // bits of a channel that comes out
  bool fixed_int8;            // takes fixed-point matrices of 8-bit sources, else those of deeper ones
  bool looks_twice = false;   // asks a table for what came out of it, too
};

/// An object for the library, and the sentence that says what it does to a picture.
class Correction {
 public:
  /// Throws Failure for texts that make no object, or one that would end the process.
  Correction(const CorrectionOptions& options, const CorrectionLimits& limits);

  const quorvane::Correction& checked() const { return *object_; }
  const ColorCorrection* object() const { return object_->object(); }
  const std::string& about() const { return about_; }

 private:
  std::optional<quorvane::Correction> object_;
  std::string about_;
};

using Matrix = quorvane::Matrix;
/// "a,b,...,i", row by row with red, green and blue as inputs. Throws Failure, which names `option`.
Matrix parse_matrix(const std::string& option, const std::string& text);

/// Applies a matrix to a colour picture, rounds, and stops at black and at `top`.
void apply_clamped(Picture& picture, const Matrix& matrix, std::uint32_t top);
/// Spreads samples of 0 to `top` over the picture's whole range.
void stretch(Picture& picture, std::uint32_t top);

/// Subtracts the black level from every sample of a mosaic, then multiplies by the gain of its colour; stops
/// at 0 and at the top. The gains are red, green and blue, or found so that the means of the three colours
/// agree and no gain is below 1. An empty text says nothing.
/// Returns the gains as --wb would tell them, every digit included; empty if there are none.
std::string balance(Frame& frame, const std::string& black, const std::string& white_balance);

}  // namespace qvn::tool
