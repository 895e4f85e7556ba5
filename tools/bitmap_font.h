// A small built-in font for the labels of contact sheets: letters, digits and a few signs, five by seven
// dots.
#pragma once

#include "frame.h"

namespace qvn::tool {

inline constexpr std::uint32_t kGlyphWidth = 5;
inline constexpr std::uint32_t kGlyphHeight = 7;

/// Writes `text` into an 8-bit RGB picture, each dot a square of `scale` pixels, with a column between the
/// glyphs. What reaches beyond the picture is cut; characters without a glyph come out as a blank.
void draw_text(Picture& picture, std::uint32_t left, std::uint32_t top, std::uint32_t scale,
               std::string_view text, std::uint8_t brightness);

/// How wide that will be.
std::uint32_t text_width(std::string_view text, std::uint32_t scale);

}  // namespace qvn::tool
