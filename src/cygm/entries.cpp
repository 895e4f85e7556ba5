// The exported functions of the CYGM room. None of them swaps codes 1 and 2 of its phase.
#include "cygm/binned.h"
#include "cygm/full_2x2.h"
#include "cygm/full_3x3.h"
#include "cygm/mono.h"
#include "frame/call_frame.h"

using namespace qvn;

namespace {

constexpr uint32_t kBgr = 1;  // the target that the plain conversions make

// The pointers are tested before the target: `convert` runs where the target has a recipe.
template <class Recipe, class Convert>
uint32_t run_transform(const char* name, const Recipe* recipe, uint8_t* dst, const uint8_t* src,
                       uint32_t width, uint32_t height, Convert convert) {
  return run_entry(name, {dst, src}, [&]() -> uint32_t {
    if (recipe == nullptr) return QVN_E_NOT_IMPLEMENTED;
    convert(*recipe, dst, src, width, height);
    return QVN_OK;
  });
}

}  // namespace

uint32_t QVN_IRaw8CYGMToBGR_Bin(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  return run_transform(__func__, binned_recipe(kBgr), dst, src, width, height, convert_binned);
}

uint32_t QVN_IRaw8CYGMToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                            uint32_t /*phase*/) {
  return run_entry(__func__, {dst, src}, [&] { convert_2x2_to_bgr(dst, src, width, height); });
}

uint32_t QVN_IRaw8CYGMToBGR_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                uint32_t /*phase*/) {
  return run_transform(__func__, full_3x3_recipe(kBgr), dst, src, width, height, convert_3x3);
}

uint32_t QVN_IRaw8CYGMToMono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                             uint32_t phase) {
  return run_entry(__func__, {dst, src}, [&] { convert_to_mono(dst, src, width, height, phase); });
}

uint32_t QVN_IRaw8CYGMImageTransform_Bin(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                         TransformTarget target) {
  return run_transform(__func__, binned_recipe(target), dst, src, width, height, convert_binned);
}

uint32_t QVN_IRaw8CYGMImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                     TransformTarget target, uint32_t /*phase*/) {
  return run_transform(__func__, transform_2x2_recipe(target), dst, src, width, height, transform_2x2);
}

uint32_t QVN_IRaw8CYGMImageTransform_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                         TransformTarget target, uint32_t /*phase*/) {
  return run_transform(__func__, full_3x3_recipe(target), dst, src, width, height, convert_3x3);
}
