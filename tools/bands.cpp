// The cutting itself is the checked C++ header's; here is what it needs to be told.
#include "bands.h"

#include <array>
#include <bit>
#include <quorvane.hpp>

#include "failure.h"

namespace qvn::tool {
namespace {

/// By the conversion's names, which are the header's own, or by the function's where those have no row.
const quorvane::Entry* find_entry(const Conversion& conversion, bool corrected) {
  if (auto way = quorvane::find_way(conversion.format, conversion.method, conversion.target)) {
    return corrected ? way.value()->corrected : way.value()->entry;
  }
  const std::array<const quorvane::Entry*, 3> others{&quorvane::y16_to_y8, &quorvane::y16_to_bgr,
                                                     &quorvane::y16_to_y8_mmx};
  for (const quorvane::Entry* const entry : others) {
    if (entry->name == conversion.entry) {
      return entry;
    }
  }
  return nullptr;
}

}  // namespace

bool can_be_cut(const Conversion& conversion, bool corrected) {
  const quorvane::Entry* const found = find_entry(conversion, corrected);
  return found != nullptr && found->lines != quorvane::Lines::kNotCut;
}

void run_in_bands(const Conversion& conversion, std::vector<std::uint8_t>& dst, Frame& frame,
                  TransformTarget target, std::uint32_t shift, const Correction* correction,
                  std::uint32_t threads) {
  const quorvane::Entry& found = *find_entry(conversion, correction != nullptr);
  quorvane::Arguments arguments;
  arguments.set(static_cast<quorvane::Pattern>(frame.pattern->code));
  arguments.set(static_cast<quorvane::Target>(target));
  arguments.set(quorvane::Shift{shift});
  arguments.set(quorvane::SampleForm{
      frame.form.bits, frame.form.low ? quorvane::Alignment::kLowBit : quorvane::Alignment::kTopBit,
      frame.format->name.ends_with("le") ? quorvane::ByteOrder::kHost : quorvane::ByteOrder::kBigEndian});
  arguments.set(correction == nullptr ? nullptr : &correction->checked());
  std::array<quorvane::Destination, 4> planes;
  const std::size_t length = dst.size() / found.planes;
  for (std::size_t i = 0; i < found.planes; ++i) {
    planes.at(i) = quorvane::Destination(dst.data() + i * length, length, 0);
  }
  quorvane::Options options;
  options.bands = threads;
  const auto result =
      quorvane::call(found, planes, frame.bytes, {frame.size.width, frame.size.height}, arguments, options);
  if (!result) {
    throw Failure(result.failure().message);
  }
}

}  // namespace qvn::tool
