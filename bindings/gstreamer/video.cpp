#include "video.h"

#include <algorithm>
#include <array>

namespace quorvane::gst {
namespace {

constexpr bool kLittleEndian = G_BYTE_ORDER == G_LITTLE_ENDIAN;

// The library's 16-bit words are the host's. GStreamer has no picture of three words a pixel: the nearest has
// a fourth. Its BGR16 is another thing, five and six bits a channel. The library's 4:2:2 is BT.601 whatever
// the size.
constexpr std::array kOutputs{
    Output{GST_VIDEO_FORMAT_BGR, "BGR", "bgr"},
    Output{GST_VIDEO_FORMAT_BGRx, "BGRx", "bgra"},
    Output{GST_VIDEO_FORMAT_BGRA, "BGRA", "bgra", true},
    Output{GST_VIDEO_FORMAT_GRAY8, "GRAY8", "y8"},
    Output{GST_VIDEO_FORMAT_UYVY, "UYVY", "uyvy", false, "bt601"},
    Output{kLittleEndian ? GST_VIDEO_FORMAT_GRAY16_LE : GST_VIDEO_FORMAT_GRAY16_BE,
           kLittleEndian ? "GRAY16_LE" : "GRAY16_BE", "y16"},
    Output{kLittleEndian ? GST_VIDEO_FORMAT_BGRA64_LE : GST_VIDEO_FORMAT_BGRA64_BE,
           kLittleEndian ? "BGRA64_LE" : "BGRA64_BE", "bgr16"},
};

}  // namespace

std::span<const Output> outputs() { return kOutputs; }

const Output* find_output(GstVideoFormat format) {
  const auto* const row = std::find_if(kOutputs.begin(), kOutputs.end(),
                                       [&](const Output& output) { return output.format == format; });
  return row == kOutputs.end() ? nullptr : row;
}

MappedBuffer::MappedBuffer(GstBuffer* buffer) : buffer_(buffer) {
  if (gst_buffer_map(buffer, &map_, GST_MAP_READ) == FALSE) {
    throw Failure("cannot map a frame to read it");
  }
}

MappedBuffer::~MappedBuffer() { gst_buffer_unmap(buffer_, &map_); }

MappedPicture::MappedPicture(GstBuffer* buffer, const GstVideoInfo& info) {
  if (gst_video_frame_map(&frame_, &info, buffer, GST_MAP_WRITE) == FALSE) {
    throw Failure("cannot map a picture to write it");
  }
}

MappedPicture::~MappedPicture() { gst_video_frame_unmap(&frame_); }

Destination MappedPicture::destination() {
  auto* const data = static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, 0));
  const GstMapInfo& map = frame_.map[0];
  return {data, map.size - static_cast<std::size_t>(data - map.data),
          static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, 0))};
}

void set_formats(GstStructure* fields, const std::vector<const char*>& names) {
  if (names.size() == 1) {
    gst_structure_set(fields, "format", G_TYPE_STRING, names.front(), nullptr);
    return;
  }
  GValue list = G_VALUE_INIT;
  g_value_init(&list, GST_TYPE_LIST);
  for (const char* const name : names) {
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_STRING);
    g_value_set_static_string(&value, name);
    gst_value_list_append_and_take_value(&list, &value);
  }
  gst_structure_take_value(fields, "format", &list);
}

void offer_pool(GstQuery* allocation) {
  GstCaps* caps = nullptr;
  gst_query_parse_allocation(allocation, &caps, nullptr);
  GstVideoInfo info;
  if (gst_query_get_n_allocation_pools(allocation) != 0 || caps == nullptr ||
      gst_video_info_from_caps(&info, caps) == FALSE) {
    return;
  }
  GstBufferPool* const pool = gst_video_buffer_pool_new();
  gst_query_add_allocation_pool(allocation, pool, static_cast<guint>(info.size), 0, 0);
  gst_object_unref(pool);
}

}  // namespace quorvane::gst
