// Quorvane for C++: checked calls of the functions of quorvane.h.
//
// Header-only, C++20, on top of the C functions and the standard library alone. Buffers are spans or other
// contiguous ranges; their lengths, the sizes and the selectors are tested before the library is called,
// lines may be padded on both sides, and a refusal is an exception or a Result. A call on buffers without
// padding costs what the C function costs.
//
//     #include <quorvane.hpp>
//
//     std::vector<std::uint8_t> picture(3 * 1920 * 1080);
//     quorvane::raw8_to_bgr(picture, mosaic, {1920, 1080}, quorvane::Pattern::kRggb);
//
// What each conversion does stands in quorvane.h, beside the function that it is named after.
#pragma once

#if __cplusplus < 202002L && (!defined(_MSVC_LANG) || _MSVC_LANG < 202002L)
#error "quorvane.hpp needs C++20, such as -std=c++20"
#endif

#include "quorvane/conversions.hpp"  // IWYU pragma: export
#include "quorvane/convert.hpp"      // IWYU pragma: export
#include "quorvane/utilities.hpp"    // IWYU pragma: export
