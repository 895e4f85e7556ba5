/// Group by group, and the RGB form pass by pass.
#include "reference/planes.h"

#include <cstddef>

#include "reference/yuv_tables.h"

namespace reference {
namespace {

void put_by_plane_tables(Planes& planes, std::uint8_t y, std::uint8_t u, std::uint8_t v) {
  const YuvTables& tables = yuv_tables();
  *planes.r++ = tables.PlaneRTable[std::size_t{y} * 256 + v];
  *planes.g++ = tables.PlaneGTable[std::size_t{y} * 256 + tables.PlaneGDeltaTable[std::size_t{u} * 256 + v]];
  *planes.b++ = tables.PlaneBTable[std::size_t{y} * 256 + u];
}

void put_by_packed_offsets(Planes& planes, std::uint8_t y, std::uint8_t u, std::uint8_t v) {
  const std::uint32_t from_u = yuv_tables().UTable[u];
  const std::uint32_t from_v = yuv_tables().VTable[v];
  *planes.r++ = clamp_to_byte(y + high_half(from_v));
  *planes.g++ = clamp_to_byte(y + low_half(from_u) + low_half(from_v));
  *planes.b++ = clamp_to_byte(y + high_half(from_u));
}

void yuv444(Planes planes, const std::uint8_t* src, std::uint32_t count, bool with_luma) {
  for (std::uint32_t group = 0; group < count; ++group, src += 3) {
    put_by_plane_tables(planes, src[1], src[0], src[2]);
    if (with_luma && planes.y != nullptr) *planes.y++ = src[1];
  }
}

void yuv422(Planes planes, const std::uint8_t* src, std::uint32_t count, bool with_luma) {
  for (std::uint32_t group = 0; group < count >> 1; ++group, src += 4) {
    for (int k : {1, 3}) {
      put_by_packed_offsets(planes, src[k], src[0], src[2]);
      if (with_luma) *planes.y++ = src[k];
    }
  }
}

void yuv411(Planes planes, const std::uint8_t* src, std::uint32_t count, bool with_luma) {
  for (std::uint32_t group = 0; group < count >> 2; ++group, src += 6) {
    for (int k : {1, 2, 4, 5}) {
      put_by_plane_tables(planes, src[k], src[0], src[3]);
      if (with_luma && planes.y != nullptr) *planes.y++ = src[k];
    }
  }
}

}  // namespace

void YUV444ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv444(planes, src, count, false);
}

void YUV422ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv422(planes, src, count, false);
}

void YUV411ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv411(planes, src, count, false);
}

void YUV444ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv444(planes, src, count, true);
}

void YUV422ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv422(planes, src, count, true);
}

void YUV411ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  yuv411(planes, src, count, true);
}

void RGB8ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i) planes.r[i] = src[std::size_t{3} * i];
  for (std::uint32_t i = 0; i < count; ++i) planes.g[i] = src[std::size_t{3} * i + 1];
  for (std::uint32_t i = 0; i < count; ++i) planes.b[i] = src[std::size_t{3} * i + 2];
  if (planes.y == nullptr) return;
  for (std::uint32_t i = 0; i < count; ++i) {
    const float red = planes.r[i];
    const float green = planes.g[i];
    const float blue = planes.b[i];
    const float sum = (red * 0.299F + green * 0.587F) + blue * 0.114F;
    planes.y[i] = static_cast<std::uint8_t>(static_cast<std::int32_t>(sum));
  }
}

}  // namespace reference
