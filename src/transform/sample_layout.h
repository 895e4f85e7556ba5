// The layouts of 16-bit samples that a SampleFormatBlock describes: a byte order, and a shift that brings a
// sample's top bit to bit 15.
#pragma once

#include "pixel/fetch.h"
#include "transform/targets.h"

namespace qvn {

// Kernels for each layout: by SampleFormatBlock::byteOrder, then by shift. Shift 5 has none, which callers
// see as a refusal.
template <class Kernel>
using ByLayout = std::array<std::array<ByTarget<Kernel>, 7>, 2>;

// Kernels::of<Order, Shift>() for each of them.
template <class Kernel, class Kernels, ByteOrder Order>
constexpr std::array<ByTarget<Kernel>, 7> by_shift() {
  return {Kernels::template of<Order, 0>(), Kernels::template of<Order, 1>(),
          Kernels::template of<Order, 2>(), Kernels::template of<Order, 3>(),
          Kernels::template of<Order, 4>(), {},
          Kernels::template of<Order, 6>()};
}

template <class Kernel, class Kernels>
constexpr ByLayout<Kernel> by_layout() {
  return {by_shift<Kernel, Kernels, kHostByteOrder>(), by_shift<Kernel, Kernels, ByteOrder::kBig>()};
}

// The kernels of the layout, or null. Counts of bits wrap below 0, and so are out of the table on either
// side.
template <class Kernel>
const ByTarget<Kernel>* find_layout(const ByLayout<Kernel>& kernels, const SampleFormatBlock& format) {
  if (format.alignment > 1 || format.byteOrder > 1) return nullptr;
  const uint32_t shift = format.alignment == 1 ? 16 - format.bitsPerSample : 0;
  const auto& by_shift = kernels[format.byteOrder];
  return shift < by_shift.size() ? &by_shift[shift] : nullptr;
}

// run_target for the layout's kernels.
template <class Kernel, class Run>
uint32_t run_layout(const ByLayout<Kernel>& kernels, const SampleFormatBlock& format, TransformTarget target,
                    Run&& run) {
  const ByTarget<Kernel>* found = find_layout(kernels, format);
  return found == nullptr ? QVN_E_NOT_IMPLEMENTED : run_target(*found, target, run, QVN_E_NOT_IMPLEMENTED);
}

}  // namespace qvn
