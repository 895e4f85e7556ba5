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
  std::string bits;
  std::string align;
};

/// Reads a headerless frame, whose format and size must be told, or a PGM or PPM, which brings both. A file
/// is taken for the latter by its suffix (pgm, ppm, pnm), or by its first bytes if no size is told.
Frame read_frame(const FrameOptions& options);
/// Reads a PPM as a scene for a chart.
SceneImage read_scene(const std::string& path);

/// Whether the name (.raw, .bin) or `file_format` asks for bytes without a header, as the library writes
/// them. Throws Failure for an unknown format.
bool wants_raw_bytes(const std::string& path, const std::string& file_format);
/// `file_format` is png, ppm, pgm, or empty: then the suffix of `path` decides.
void write_picture(const std::string& path, const std::string& file_format, const Picture& picture);
/// Several pictures, all of them or none: each has its letter before the suffix, as in frame_r.png.
void write_pictures(const std::string& path, const std::string& file_format,
                    const std::vector<Picture>& pictures, std::string_view letters);
/// As write_picture, and raw: the frame's own bytes without a header, which is also what an unknown suffix
/// means.
void write_frame(const std::string& path, const std::string& file_format, const Frame& frame);
/// Throws the Failure of the two for a name that they would refuse, before any work is done. No letters: one
/// picture.
void check_picture_name(const std::string& path, const std::string& file_format, std::uint32_t channels,
                        std::string_view letters = {});

}  // namespace qvn::tool
