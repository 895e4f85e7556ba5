// The rules that tell headerless frames from netpbm files, and what of a headerless one are its samples.
#include "frame_reader.h"

#include <algorithm>

#include "camera_names.h"
#include "failure.h"
#include "formats.h"
#include "netpbm.h"
#include "numbers.h"
#include "process.h"
#include "size_guess.h"

namespace qvn::tool {
namespace {

bool is_netpbm_suffix(const std::string& suffix) {
  return suffix == "pgm" || suffix == "ppm" || suffix == "pnm";
}

std::string sample_form(std::uint32_t channels, std::uint32_t depth) {
  return std::string(channels == 1 ? "a PGM" : "a PPM") + " of " + std::to_string(depth) + "-bit samples";
}

/// What the command line says, before the file is opened.
FrameOptions checked(FrameOptions options) {
  resolve_camera_name(options);
  if (!options.size.empty()) {
    static_cast<void>(parse_size(options.size));
  }
  if (!options.format.empty()) {
    static_cast<void>(parse_form(find_format(options.format), options.bits, options.align));
  }
  return options;
}

std::string hint_of(const InputStream& input, const FrameOptions& options) {
  const std::string fitting = options.size.empty() && input.length() ? what_fits(*input.length()) : "";
  return fitting.empty() ? "" : "; it could be " + fitting;
}

}  // namespace

FrameReader::FrameReader(const FrameOptions& options)
    : options_(checked(options)), pattern_(&find_pattern(options_.pattern)), input_(options_.path) {
  told_ = options_.format.empty() ? nullptr : &find_format(options_.format);
  size_ = options_.size.empty() ? Size{} : parse_size(options_.size);
  has_header_ = is_netpbm_suffix(suffix_of(options_.path)) ||
                (options_.size.empty() && looks_like_netpbm(input_.peek(3)));
  if (has_header_) {
    if (!options_.pitch.empty() || !options_.skip.empty()) {
      throw Failure(input_.name() +
                    " says itself where its samples lie: expected neither --pitch nor --skip");
    }
    return;
  }
  if (told_ == nullptr) {
    throw Failure(
        input_.name() + " has no header: expected " +
        (options.size.empty() ? "--from with a format and --size WIDTHxHEIGHT" : "--from with a format") +
        ", found none" + hint_of(input_, options));
  }
  read_skip();
  read_size();
  read_pitch();
}

/// Bytes before and behind a frame.
void FrameReader::read_skip() {
  constexpr std::int64_t kMost = std::int64_t{1} << 30;
  const std::size_t comma = options_.skip.find(',');
  const auto number = [](const std::string& text) {
    return static_cast<std::uint64_t>(parse_whole("--skip", text, 0, kMost));
  };
  if (!options_.skip.empty()) {
    before_ = number(options_.skip.substr(0, comma));
  }
  if (comma != std::string::npos) {
    behind_ = number(options_.skip.substr(comma + 1));
  }
}

void FrameReader::read_size() {
  if (!options_.size.empty()) {
    return;
  }
  const bool one = input_.length() && !options_.many && options_.pitch.empty();
  const std::uint64_t around = before_ + behind_;
  const std::uint64_t length = one && *input_.length() > around ? *input_.length() - around : 0;
  const auto guess = length == 0 ? std::nullopt : guess_size(options_.path, length, *told_);
  if (!guess) {
    throw Failure(input_.name() + " has no header: expected --size WIDTHxHEIGHT, found none" +
                  (one ? "; no size in its name and no usual size of " + std::string(told_->name) + " has " +
                             std::to_string(length) + " bytes"
                       : ""));
  }
  size_ = guess->size;
  guess_ = input_.name() + " is taken for " + to_text(size_) + ", " + guess->reason + "; --size says it";
}

/// Groups of pixels run on from line to line unless lines are padded.
void FrameReader::read_pitch() {
  if (options_.pitch.empty()) {
    lines_ = 1;
    line_ = pitch_ = frame_bytes(*told_, size_);
    return;
  }
  constexpr std::int64_t kMost = std::int64_t{1} << 30;
  lines_ = size_.height;
  line_ = frame_bytes(*told_, {size_.width, 1});
  pitch_ = static_cast<std::uint64_t>(
      parse_whole("--pitch", options_.pitch, static_cast<std::int64_t>(line_), kMost));
}

Frame FrameReader::next_netpbm() {
  NetpbmFile file = read_netpbm(input_);
  Picture& picture = file.picture;
  const SourceFormat& format = told_ == nullptr ? format_of_netpbm(picture.channels, picture.depth) : *told_;
  if (format.netpbm_channels != picture.channels || format.netpbm_depth != picture.depth) {
    throw Failure(input_.name() + ": expected " +
                  (format.netpbm_channels == 0 ? "a headerless file"
                                               : sample_form(format.netpbm_channels, format.netpbm_depth)) +
                  " for " + std::string(format.name) + ", found " +
                  sample_form(picture.channels, picture.depth));
  }
  if (!options_.size.empty() && size_ != picture.size) {
    throw Failure(input_.name() + ": expected " + options_.size + " as --size says, found " +
                  to_text(picture.size));
  }
  if (file.spread && !(options_.bits.empty() && options_.align.empty())) {
    throw Failure(input_.name() + " says itself how its samples lie: expected neither --bits nor --align");
  }
  Frame frame;
  frame.format = &format;
  frame.size = picture.size;
  frame.bytes = std::move(picture.bytes);
  samples_ = frame.bytes.size();
  return frame;
}

Frame FrameReader::next_headerless() {
  const std::uint64_t start = input_.consumed();
  samples_ = before_ + (lines_ - 1) * pitch_ + line_ + behind_;
  Frame frame;
  frame.format = told_;
  frame.size = size_;
  bool whole = input_.skip(before_) == before_;
  for (std::uint64_t line = 0; whole && line < lines_; ++line) {
    std::vector<std::uint8_t> bytes = input_.read(line_);
    whole = bytes.size() == line_;
    if (lines_ == 1) {
      frame.bytes = std::move(bytes);
    } else {
      frame.bytes.insert(frame.bytes.end(), bytes.begin(), bytes.end());
    }
    // Behind the last line drivers may leave the padding out.
    const std::uint64_t padding = whole ? input_.skip(pitch_ - line_) : 0;
    samples_ += line + 1 == lines_ ? padding : 0;
  }
  whole = whole && input_.skip(behind_) == behind_;
  if (!whole) {
    throw Failure(input_.name() + " is too short: " + expected_bytes() + ", found " +
                  std::to_string(input_.consumed() - start));
  }
  return frame;
}

std::string FrameReader::expected_bytes() const {
  std::string text = "expected " + std::to_string(samples_) + " bytes for " + std::string(told_->name) +
                     " at " + to_text(size_);
  if (!options_.pitch.empty()) {
    text += " with lines of " + std::to_string(pitch_);
  }
  if (before_ + behind_ != 0) {
    text += ", " + std::to_string(before_) + " before and " + std::to_string(behind_) + " behind";
  }
  return text;
}

void FrameReader::expect_end() {
  if (input_.at_end()) {
    return;
  }
  std::string found = "more";
  if (input_.length() && *input_.length() > input_.consumed()) {
    found = std::to_string(samples_ + *input_.length() - input_.consumed());
  }
  throw Failure(
      input_.name() + " is too long: " +
      (has_header_ ? "expected " + std::to_string(samples_) + " bytes of samples" : expected_bytes()) +
      ", found " + found);
}

Frame read_frame(const FrameOptions& options) {
  FrameReader reader(options);
  if (!reader.guess().empty()) {
    say(reader.guess());
  }
  Frame frame = reader.next();
  reader.expect_end();
  return frame;
}

Frame FrameReader::next() {
  Frame frame = has_header_ ? next_netpbm() : next_headerless();
  frame.pattern = pattern_;
  frame.form = parse_form(*frame.format, options_.bits, options_.align);
  frame.form_told = !options_.bits.empty() || !options_.align.empty();
  if (frame.format->repack != nullptr) {
    frame.format->repack(frame.bytes);
    if (frame.format->read_bits != 0) {
      frame.form = {frame.format->read_bits, true};
      frame.form_told = true;
    }
    frame.in_file = frame.format;
    frame.format = &find_format(std::string(frame.format->read_as));
  }
  return frame;
}

}  // namespace qvn::tool
