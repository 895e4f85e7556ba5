// The scratch frame: one call of operator new as a function, which no compiler leaves out, so that a host
// which replaces it can count on the number of calls and their sizes.
#include "transform/interpolations.h"

#include <memory>
#include <new>

namespace qvn {

namespace {

struct FreeScratch {
  void operator()(uint8_t* scratch) const { ::operator delete(scratch); }
};
using Scratch = std::unique_ptr<uint8_t, FreeScratch>;

Scratch allocate(size_t bytes) { return Scratch(static_cast<uint8_t*>(::operator new(bytes))); }

// Null where the failure is dropped. kBox4 uses three of its four bytes a pixel.
Scratch allocate_for(ChromaFilter filter, size_t pixels) {
  if (filter == ChromaFilter::kBox4) return allocate(4 * pixels);
  try {
    return allocate(3 * pixels);
  } catch (...) {
    if (filter == ChromaFilter::kBlock8) throw 1;  // NOLINT: callers catch it
    return nullptr;
  }
}

}  // namespace

constexpr ByTarget<const InterpolationTarget*> kInterpolations = {
    &kInterpolationToY8, &kInterpolationToBgr, &kInterpolationToBgra, &kInterpolationToY8Rounded};

void run_interpolation(ChromaFilter filter, const InterpolationTarget& target, uint8_t* dst, uint8_t* src,
                       uint32_t width, uint32_t height, uint32_t pattern) {
  const Scratch scratch = allocate_for(filter, size_t{width} * height);
  if (scratch != nullptr) interpolate(filter, target, dst, scratch.get(), src, width, height, pattern);
}

}  // namespace qvn
