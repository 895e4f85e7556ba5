// What cameras and drivers call the source formats.
#pragma once

#include "frame_reader.h"

namespace qvn::tool {

struct CameraName {
  std::string name;
  std::string_view format;
  std::string_view pattern = {};
  std::string_view bits = {};
};

/// The names of GenICam cameras and of V4L2.
const std::vector<CameraName>& camera_names();

/// Puts the tool's format in the place of a camera's name, and the order and the bits that the name tells
/// where the command line tells none.
void resolve_camera_name(FrameOptions& options);

}  // namespace qvn::tool
