/// Pictures and buffers as GStreamer has them: the video formats that conversions end in, and mapped memory
/// that is given back when its owner ends.
#pragma once

#include <gst/video/video.h>

#include <quorvane.hpp>
#include <span>
#include <string_view>

namespace quorvane::gst {

/// What the header's calls throw, for what only a pipeline can have wrong.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A video format that pictures are offered in.
struct Output {
  GstVideoFormat format;
  const char* name;                   ///< in caps
  std::string_view target;            ///< in the table of conversions
  bool opaque = false;                ///< its fourth channel counts, and is full
  const char* colorimetry = nullptr;  ///< where the format's usual one would be wrong
};

/// In the order in which they are offered.
std::span<const Output> outputs();
const Output* find_output(GstVideoFormat format);

class MappedBuffer {
 public:
  explicit MappedBuffer(GstBuffer* buffer);
  ~MappedBuffer();
  MappedBuffer(const MappedBuffer&) = delete;
  MappedBuffer& operator=(const MappedBuffer&) = delete;

  const std::uint8_t* data() const { return map_.data; }
  std::size_t size() const { return map_.size; }

 private:
  GstBuffer* buffer_;
  GstMapInfo map_{};
};

/// A picture to be written: its only plane.
class MappedPicture {
 public:
  MappedPicture(GstBuffer* buffer, const GstVideoInfo& info);
  ~MappedPicture();
  MappedPicture(const MappedPicture&) = delete;
  MappedPicture& operator=(const MappedPicture&) = delete;

  Destination destination();

 private:
  GstVideoFrame frame_{};
};

/// The field `format` of caps as a list of these, or as the only one of them.
void set_formats(GstStructure* fields, const std::vector<const char*>& names);

/// Where nobody downstream offers a pool, makes one: frames of recycled memory are not paged in again.
void offer_pool(GstQuery* allocation);

}  // namespace quorvane::gst
