// Frames and pictures by file name: which bytes make a frame, and which suffix makes which file.
#pragma once

#include "files.h"
#include "frame.h"

namespace qvn::tool {

/// What the command line says about a frame; an empty text means that it says nothing.
struct FrameOptions {
  std::string path;
  std::string format;
  std::string size;
  std::string pattern;
  std::string bits;
  std::string align;
  bool many = false;  // one behind the other, so that a length tells nothing of the size
};

/// Reads frames that follow each other in a file or a pipe.
///
/// A headerless frame's format must be told, and its size unless that can be guessed; a PGM or PPM brings
/// both. A file is taken for the latter by its suffix (pgm, ppm, pnm), or by its first bytes if no size is
/// told.
class FrameReader {
 public:
  explicit FrameReader(const FrameOptions& options);

  Frame next();
  bool at_end() { return input_.at_end(); }
  /// Throws Failure if there is more than one frame.
  void expect_end();

  /// Where the size comes from, if it was guessed: a sentence for the user.
  const std::string& guess() const { return guess_; }
  /// The format of a frame as the file has it, if it was repacked.
  const SourceFormat& format_as_told(const Frame& frame) const {
    return told_ == nullptr ? *frame.format : *told_;
  }
  bool has_header() const { return has_header_; }

 private:
  Frame next_netpbm();
  Frame next_headerless();
  std::string expected_bytes() const;

  FrameOptions options_;
  const Pattern* pattern_;
  const SourceFormat* told_ = nullptr;
  InputStream input_;
  bool has_header_ = false;
  Size size_;
  std::string guess_;
  std::uint64_t samples_ = 0;  // bytes of the last frame without its header
};

/// The only frame of a file. A guess goes to standard error.
Frame read_frame(const FrameOptions& options);
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
