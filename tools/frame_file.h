// Pictures by file name: which suffix makes which file.
#pragma once

#include "files.h"
#include "frame.h"

namespace qvn::tool {

/// Reads a PPM as a scene for a chart.
SceneImage read_scene(const std::string& path);

/// Whether the name (.raw, .bin) or `file_format` asks for bytes without a header, as the library writes
/// them. Throws Failure for an unknown format.
bool wants_raw_bytes(const std::string& path, const std::string& file_format);
/// `file_format` is png, tiff, ppm, pgm, or empty: then the suffix of `path` decides. Several pictures, all
/// of them or none, have a letter each before the suffix, as in frame_r.png.
std::vector<OutputFile> encode_pictures(const std::string& path, const std::string& file_format,
                                        const std::vector<Picture>& pictures, std::string_view letters = {});
void write_picture(const std::string& path, const std::string& file_format, const Picture& picture);
/// As write_picture, and raw: the frame's own bytes without a header, which is also what an unknown suffix
/// means.
void write_frame(const std::string& path, const std::string& file_format, const Frame& frame);
/// Throws the Failure of the two for a name that they would refuse, before any work is done. No letters: one
/// picture.
void check_picture_name(const std::string& path, const std::string& file_format, std::uint32_t channels,
                        std::string_view letters = {});

/// dir/frame.png and r: dir/frame_r.png.
std::string with_letter(const std::string& path, char letter);

}  // namespace qvn::tool
