// The rows of the transform room: every entry with every target that it offers.
#include "entry_rows.h"

#include <array>
#include <string>
#include <type_traits>
#include <utility>

#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = kTwelfths;

struct Target {
  const char* name;
  uint32_t bytes_written;
};

constexpr std::array<Target, 8> kTargets = {{{"Y8", kByte},
                                             {"BGR", 3 * kByte},
                                             {"BGRA", 4 * kByte},
                                             {"Y8Rounded", kByte},
                                             {"YUV422", 2 * kByte},
                                             {"Y16", 2 * kByte},
                                             {"Y16Rounded", 2 * kByte},
                                             {"BGR16", 6 * kByte}}};

// Samples of 12 bits at the bottom of words in the host's order, and whole big-endian and host words.
constexpr SampleFormatBlock kTwelveBits = {0, 1, 12, 0, 0}, kBigEndian = {0, 0, 0, 1, 0},
                            kWholeWords = {0, 0, 0, 0, 0};

template <auto entry, uint32_t target, const SampleFormatBlock& format>
void call(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  using Count = uint32_t;
  using Entry = decltype(entry);
  if constexpr (std::is_invocable_v<Entry, uint8_t*, uint8_t*, Count, TransformTarget>) {
    entry(dst, src, width * height, target);
  } else if constexpr (std::is_invocable_v<Entry, uint8_t*, uint8_t*, Count, TransformTarget,
                                           const SampleFormatBlock*>) {
    entry(dst, src, width * height, target, &format);
  } else if constexpr (std::is_invocable_v<Entry, uint8_t*, uint8_t*, uint32_t, uint32_t, TransformTarget,
                                           const SampleFormatBlock*>) {
    entry(dst, src, width, height, target, &format);
  } else {
    entry(dst, src, width, height, target, 0);
  }
}

template <auto entry, const SampleFormatBlock& format, uint32_t... targets>
void add_formatted(std::vector<EntryRow>& rows, const char* name, uint32_t bytes_read) {
  const auto add_target = [&](Target target, auto* called) {
    rows.push_back({std::string(name) + "_" + target.name, bytes_read, target.bytes_written, called});
  };
  (add_target(kTargets[targets], call<entry, targets, format>), ...);
}

template <auto entry, uint32_t... targets>
void add(std::vector<EntryRow>& rows, const char* name, uint32_t bytes_read) {
  add_formatted<entry, kTwelveBits, targets...>(rows, name, bytes_read);
}

std::vector<EntryRow> make_rows() {
  std::vector<EntryRow> rows;
  constexpr uint32_t kPacked12 = kByte + kByte / 2;
  add<QVN_RGB8ImageTransform, 0, 1, 2, 3>(rows, "RGB8ImageTransform", 3 * kByte);
  add<QVN_RGBA8ImageTransform, 0, 1, 2, 3>(rows, "RGBA8ImageTransform", 4 * kByte);
  add<QVN_YUV444ImageTransform, 0, 1, 2, 3>(rows, "YUV444ImageTransform", 3 * kByte);
  add<QVN_YUV422ImageTransform, 0, 1, 2, 3>(rows, "YUV422ImageTransform", 2 * kByte);
  add<QVN_YUV411ImageTransform, 0, 1, 2, 3>(rows, "YUV411ImageTransform", kPacked12);
  add<QVN_Y8ImageTransform, 0, 1, 2, 3, 4>(rows, "Y8ImageTransform", kByte);
  add<QVN_Y16ImageTransform, 0, 1, 2, 3>(rows, "Y16ImageTransform", 2 * kByte);
  add<QVN_Y16ImageTransformEx, 0, 1, 2, 3, 5, 6, 7>(rows, "Y16ImageTransformEx", 2 * kByte);
  add_formatted<QVN_Y16ImageTransformEx, kBigEndian, 0, 1, 2, 5, 7>(rows, "Y16ImageTransformEx_be",
                                                                    2 * kByte);
  add_formatted<QVN_Y16ImageTransformEx, kWholeWords, 0, 1, 5>(rows, "Y16ImageTransformEx_top", 2 * kByte);
  add<QVN_Y12ImageTransform, 0, 1, 2, 3>(rows, "Y12ImageTransform", kPacked12);
  add<QVN_Raw8ImageTransform, 0, 1, 2, 3, 4>(rows, "Raw8ImageTransform", kByte);
  add<QVN_Raw8ImageTransform_3x3, 0, 1, 2, 3>(rows, "Raw8ImageTransform_3x3", kByte);
  add<QVN_Raw8ImageTransform_IntYUV422, 0, 1, 2, 3>(rows, "Raw8ImageTransform_IntYUV422", kByte);
  add<QVN_Raw8ImageTransform_IntLCAA, 0, 1, 2, 3>(rows, "Raw8ImageTransform_IntLCAA", kByte);
  add<QVN_Raw8ImageTransform_IntLCAAV, 0, 1, 2, 3>(rows, "Raw8ImageTransform_IntLCAAV", kByte);
  add<QVN_Raw12ImageTransform, 0, 1, 2, 3>(rows, "Raw12ImageTransform", kPacked12);
  add<QVN_Raw16ImageTransform, 0, 1, 2, 3>(rows, "Raw16ImageTransform", 2 * kByte);
  add<QVN_Raw16ImageTransformEx, 0, 1, 2, 3, 5, 6, 7>(rows, "Raw16ImageTransformEx", 2 * kByte);
  add_formatted<QVN_Raw16ImageTransformEx, kBigEndian, 0, 1, 2, 5, 7>(rows, "Raw16ImageTransformEx_be",
                                                                      2 * kByte);
  add_formatted<QVN_Raw16ImageTransformEx, kWholeWords, 1, 7>(rows, "Raw16ImageTransformEx_top", 2 * kByte);
  return rows;
}

}  // namespace

const std::vector<EntryRow>& transform_rows() {
  static const std::vector<EntryRow> rows = make_rows();
  return rows;
}
