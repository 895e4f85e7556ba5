// Runs of mono and RGB pixels, as rows of n pixels, each with its plain form beside it.
//
// A row reads and writes its n pixels and nothing else. dst and src are disjoint or the same pointer; the
// same only where a pixel of dst is no longer than one of src.
#pragma once

#include "convert/sample_cut.h"

namespace qvn {

void rgb8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n);
void rgb8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);

// (0.72 * G + 0.21 * R) + 0.07 * B in doubles.
void rgb8_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n);
void rgb8_to_y8(uint8_t* dst, const uint8_t* src, size_t n);

void y8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n);
void y8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);

void y16_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);
void y16_to_bgr(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);

void y16_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);
void y16_to_y8(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);

}  // namespace qvn
