// Frames by file name: which bytes of a file or a pipe make a frame.
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
  std::string pitch;
  std::string skip;
  bool many = false;  // one behind the other, so that a length tells nothing of the size
};

/// Reads frames that follow each other in a file or a pipe.
///
/// The format is one of the tool's names or a camera's. A headerless frame's format must be told, and its
/// size unless that can be guessed; a PGM or PPM brings both. A file is taken for the latter by its suffix
/// (pgm, ppm, pnm), or by its first bytes if no size is told. Lines may be padded and frames may have
/// something before and behind them, which is left out.
class FrameReader {
 public:
  explicit FrameReader(const FrameOptions& options);

  Frame next();
  bool at_end() { return input_.at_end(); }
  /// Throws Failure if there is more than one frame.
  void expect_end();

  /// Where the size comes from, if it was guessed: a sentence for the user.
  const std::string& guess() const { return guess_; }
  bool has_header() const { return has_header_; }

 private:
  Frame next_netpbm();
  Frame next_headerless();
  void read_skip();
  void read_size();
  void read_pitch();
  std::string expected_bytes() const;

  FrameOptions options_;
  const Pattern* pattern_;
  const SourceFormat* told_ = nullptr;
  InputStream input_;
  bool has_header_ = false;
  Size size_;
  std::string guess_;
  // Of a headerless frame: its lines, or one that holds them all; bytes of a line, to the next one's start,
  // before all of them and behind.
  std::uint64_t lines_ = 1, line_ = 0, pitch_ = 0, before_ = 0, behind_ = 0;
  std::uint64_t samples_ = 0;  // bytes of the last frame without its header
};

/// The only frame of a file. A guess goes to standard error.
Frame read_frame(const FrameOptions& options);

}  // namespace qvn::tool
