/// Output as separate planes.
#include "reference/planes.h"
#include "every/entry.h"

namespace every {
namespace {

/// The planes have the bytes of whole groups alone.
template <std::uint32_t kPixels, std::size_t kIn, int kPlanes>
Shape shape_of(const Call& c) {
  const std::size_t groups = pixels(c) / kPixels;
  const std::size_t plane = groups * kPixels;
  return {.dst = {plane, plane, plane, kPlanes == 4 ? plane : 0}, .src = groups * kIn};
}

reference::Planes planes_of(const Buffers& b) { return {b.dst[0], b.dst[1], b.dst[2], b.dst[3]}; }

constexpr Sizes kFrame = {.width_step = 1, .least_width = 0, .height_step = 1, .least_height = 0};

template <auto library, auto reference, std::uint32_t kPixels, std::size_t kIn>
Entry three(std::string_view name) {
  return {.name = name,
          .takes = 0,
          .sizes = kFrame,
          .tight = nullptr,
          .shape = shape_of<kPixels, kIn, 3>,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(b.dst[0], b.dst[1], b.dst[2], b.src, c.width, c.height);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                reference(planes_of(b), b.src, c.width * c.height);
                return QVN_OK;
              },
          .planes = 3};
}

template <auto library, auto reference, std::uint32_t kPixels, std::size_t kIn>
Entry four(std::string_view name, NullTest null_test = NullTest::kInOrder) {
  return {.name = name,
          .takes = 0,
          .sizes = kFrame,
          .tight = nullptr,
          .shape = shape_of<kPixels, kIn, 4>,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(b.dst[0], b.dst[1], b.dst[2], b.dst[3], b.src, c.width, c.height);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                reference(planes_of(b), b.src, c.width * c.height);
                return QVN_OK;
              },
          .null_test = null_test,
          .planes = 4};
}

}  // namespace

std::vector<Entry> plane_entries() {
  return {
      three<QVN_YUV444ToRGBPlanes, reference::YUV444ToRGBPlanes, 1, 3>("QVN_YUV444ToRGBPlanes"),
      three<QVN_YUV422ToRGBPlanes, reference::YUV422ToRGBPlanes, 2, 4>("QVN_YUV422ToRGBPlanes"),
      three<QVN_YUV411ToRGBPlanes, reference::YUV411ToRGBPlanes, 4, 6>("QVN_YUV411ToRGBPlanes"),
      four<QVN_YUV444ToRGBYPlanes, reference::YUV444ToRGBYPlanes, 1, 3>("QVN_YUV444ToRGBYPlanes"),
      four<QVN_YUV422ToRGBYPlanes, reference::YUV422ToRGBYPlanes, 2, 4>("QVN_YUV422ToRGBYPlanes"),
      four<QVN_YUV411ToRGBYPlanes, reference::YUV411ToRGBYPlanes, 4, 6>("QVN_YUV411ToRGBYPlanes",
                                                                        NullTest::kNone),
      four<QVN_RGB8ToRGBYPlanes, reference::RGB8ToRGBYPlanes, 1, 3>("QVN_RGB8ToRGBYPlanes", NullTest::kRgbY),
  };
}

}  // namespace every
