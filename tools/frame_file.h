// Frames and pictures by file name: which bytes make a frame, and which suffix makes which file.
#pragma once

#include "frame.h"

namespace qvn::tool {

/// What the command line says about a frame; an empty text means that it says nothing.
struct FrameOptions {
  std::string path;
  std::string format;
  std::string size;
  std::string pattern = "rggb";
};

/// Reads a headerless frame, whose format and size must be told, or a PGM or PPM, which brings both. A file
/// is taken for the latter by its suffix (pgm, ppm, pnm), or by its first bytes if no size is told.
Frame read_frame(const FrameOptions& options);
/// Reads a PPM as a scene for a chart.
SceneImage read_scene(const std::string& path);

/// `file_format` is png, ppm, pgm, or empty: then the suffix of `path` decides.
void write_picture(const std::string& path, const std::string& file_format, const Picture& picture);
/// The same, and raw: the frame's own bytes without a header, which is also what an unknown suffix means.
void write_frame(const std::string& path, const std::string& file_format, const Frame& frame);
/// Throws the Failure of write_picture for a name that it would refuse, before any work is done.
void check_picture_name(const std::string& path, const std::string& file_format, std::uint32_t channels);

}  // namespace qvn::tool
