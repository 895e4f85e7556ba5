// A checked call of an Entry: sizes, lengths and selectors first, then the library, in bands where the caller
// wants several, through scratch lines where buffers are padded.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "quorvane/entry.hpp"

namespace quorvane {

/// Runs job(0) to job(jobs - 1), in any order and on any threads, and returns when all of them have.
using Executor = std::function<void(std::size_t jobs, const std::function<void(std::size_t)>& job)>;

/// One std::thread a job, beside the caller's own.
inline void run_on_threads(std::size_t jobs, const std::function<void(std::size_t)>& job) {
  std::vector<std::thread> threads;
  threads.reserve(jobs);
  std::size_t next = 1;
  try {
    for (; next < jobs; ++next) {
      threads.emplace_back(job, next);
    }
  } catch (const std::exception&) {
    // No more threads: what is left is done here.
  }
  job(0);
  for (; next < jobs; ++next) {
    job(next);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

struct Options {
  /// Sets every fourth byte of a BGRA picture to 255; else the library leaves what is there.
  bool opaque = false;
  /// Into so many bands a frame is cut where its function permits; the bytes are those of one call.
  std::size_t bands = 1;
  /// Runs the bands; empty: run_on_threads.
  Executor executor{};
};

namespace detail {

/// Brings a line of samples to the order that the library reads.
using Repack = void (*)(std::uint8_t* bytes, std::size_t count);

using Scratch = std::unique_ptr<std::uint8_t[]>;
inline Scratch scratch(std::size_t bytes) { return Scratch(new std::uint8_t[bytes]); }

inline std::string found(const std::string& expected, std::uint64_t found) {
  return "expected " + expected + ", found " + std::to_string(found);
}

/// One call, after its checks.
class Call {
 public:
  Call(const Entry& entry, const Arguments& arguments, const Options& options, Size size, Repack repack)
      : entry_(entry),
        arguments_(arguments),
        options_(options),
        size_(size),
        repack_(repack),
        pixel_bytes_(entry.pixel_bytes != 0 ? entry.pixel_bytes : bytes_of(arguments.target)) {}

  /// Tests everything and takes the buffers.
  Result<void> prepare(const std::array<Destination, 4>& dst, const Source& src) {
    if (Result<void> checked = check_selectors(); !checked) {
      return checked;
    }
    if (Result<void> checked = check_size(); !checked) {
      return checked;
    }
    source_line_ = size_.width / entry_.source.group * entry_.source.bytes;
    line_ = std::size_t{size_.width} * pixel_bytes_;
    if (Result<void> checked = check_source(src); !checked) {
      return checked;
    }
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      if (Result<void> checked = check_destination(dst[plane], plane); !checked) {
        return checked;
      }
    }
    return check_overlap();
  }

  /// Works on a copy of the source from now on.
  void copy_source() {
    copy_ = scratch(std::size_t{source_line_} * size_.height);
    for (std::size_t line = 0; line < size_.height; ++line) {
      std::memcpy(copy_.get() + line * source_line_, src_ + line * source_pitch_, source_line_);
    }
    src_ = copy_.get();
    source_pitch_ = source_line_;
    tight_ = repack_ == nullptr && pitches_[0] == line_;
  }

  std::uint32_t run() {
    if (source_bytes_ == 0) {
      make_opaque(dst_[0], count_of(size_));
      return QVN_OK;  // not even one group of pixels
    }
    const std::uint64_t units = flat() ? size_.pixels() : size_.height;
    const std::uint32_t step = flat() ? kRunStep : 1;
    const auto jobs = static_cast<std::size_t>(bands(units));
    // Every band has at least one step, and of lines kLeastLines.
    const auto cut = [&](std::uint64_t i) {
      return static_cast<std::uint32_t>(i == jobs ? units : units * i / jobs / step * step);
    };
    if (jobs == 1) {
      return band(0, cut(1));
    }
    std::vector<std::uint32_t> statuses(jobs, QVN_OK);
    std::exception_ptr thrown;
    std::mutex guard;
    const auto job = [&](std::size_t i) {
      try {
        statuses[i] = band(cut(i), cut(i + 1));
      } catch (...) {
        const std::lock_guard<std::mutex> lock(guard);
        thrown = std::current_exception();
      }
    };
    if (options_.executor) {
      options_.executor(jobs, job);
    } else {
      run_on_threads(jobs, job);
    }
    if (thrown) {
      std::rethrow_exception(thrown);
    }
    const auto refused = std::find_if(statuses.begin(), statuses.end(), [](auto s) { return s != QVN_OK; });
    return refused == statuses.end() ? QVN_OK : *refused;
  }

 private:
  // Cut lines are counted in units: lines, or pixels of a run without padding.
  static constexpr std::uint32_t kLeastLines = 4;
  /// Groups of every format, and whole words of every pixel.
  static constexpr std::uint32_t kRunStep = 64;
  /// Scratch of a strip of padded lines stays in the caches next to the processor.
  static constexpr std::size_t kStripBytes = std::size_t{1} << 15;
  static constexpr std::uint32_t kLeastStrip = 16;

  /// Scratch lines that the strips of a band have in common.
  struct ScratchLines {
    std::uint8_t* of(std::size_t wanted) {
      if (wanted > size) {
        bytes = scratch(wanted);
        size = wanted;
      }
      return bytes.get();
    }
    Scratch bytes;
    std::size_t size = 0;
  };
  struct Workspace {
    ScratchLines source;
    std::array<ScratchLines, 4> dst;
  };

  /// Whether lines up to `to` hold bytes that the function does not write: fourth bytes, parts of a last line
  /// or of lines without an inner column, and whatever the interpolations and fields leave.
  bool leaves_bytes(std::uint32_t to) const {
    const bool fourth = entry_.pixel_bytes == 0 && arguments_.target == Target::kBgra && !options_.opaque;
    return fourth || to == size_.height || size_.width < 4 || !can_be_cut();
  }

  bool tight() const { return tight_; }
  bool flat() const { return entry_.lines == Lines::kRun && tight(); }
  bool can_be_cut() const { return entry_.lines != Lines::kNotCut; }

  Failure refuse(Cause cause, std::uint32_t status, const std::string& text) const {
    return refusal(cause, status, entry_.name, text);
  }

  Result<void> check_selectors() const {
    const auto target = static_cast<std::uint32_t>(arguments_.target);
    if (entry_.pixel_bytes == 0 && (target > 7 || (entry_.targets >> target & 1) == 0)) {
      return refuse(Cause::kArgument, QVN_E_NOT_IMPLEMENTED, found("a target that it offers", target));
    }
    if (static_cast<std::uint32_t>(arguments_.pattern) > 3) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("one of four patterns", static_cast<std::uint32_t>(arguments_.pattern)));
    }
    if (arguments_.shift.bits > 16) {
      return refuse(Cause::kArgument, QVN_E_PARAM6, found("a shift of 0 to 16", arguments_.shift.bits));
    }
    if (options_.opaque && (entry_.pixel_bytes != 0 || arguments_.target != Target::kBgra)) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED, "expected target BGRA for an opaque picture");
    }
    return check_correction();
  }

  /// A table that is too short would end the process.
  Result<void> check_correction() const {
    if (arguments_.correction == nullptr) {
      return {};
    }
    const CorrectionRule& rule = entry_.correction;
    const std::uint32_t kind = arguments_.correction->kind();
    const bool served =
        rule.index_bits != 0 && (kind == CcMatrixFloat || kind == CcGamma || kind == CcGammaMatrix ||
                                 kind == rule.fixed_kind || kind == rule.table_kind);
    if (!served) {
      return refuse(Cause::kArgument, QVN_E_FAIL, found("a kind of correction that it serves", kind));
    }
    if (kind != rule.table_kind) {
      return {};
    }
    const std::size_t entries = arguments_.correction->table_bytes() / rule.entry_bytes;
    const std::uint32_t shift = arguments_.shift.bits > 8 ? rule.index_bits : arguments_.shift.bits;
    const std::size_t wanted = std::size_t{1} << (rule.index_bits - shift);
    if (entries < wanted) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("a table of " + std::to_string(wanted) + " entries", entries));
    }
    if (rule.looks_again && arguments_.correction->largest() >= entries) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("a table of levels below its length, " + std::to_string(entries),
                          arguments_.correction->largest()));
    }
    return {};
  }

  Result<void> check_size() const {
    const SizeRule& rule = entry_.size;
    const auto fail = [&](const std::string& expected) {
      return refuse(Cause::kSize, QVN_E_UNCLASSIFIED,
                    "expected " + expected + ", found " + std::to_string(size_.width) + "x" +
                        std::to_string(size_.height));
    };
    if (size_.width < rule.least.width || size_.height < rule.least.height) {
      return fail("a frame of at least " + std::to_string(rule.least.width) + "x" +
                  std::to_string(rule.least.height));
    }
    if (size_.width % rule.width_step != 0) {
      return fail("a width that is a multiple of " + std::to_string(rule.width_step));
    }
    if (size_.height % rule.height_step != 0) {
      return fail("a height that is a multiple of " + std::to_string(rule.height_step));
    }
    if (size_.pixels() < rule.least_pixels) {
      return fail("at least " + std::to_string(rule.least_pixels) + " pixels");
    }
    if (size_.pixels() > kMaxPixels) {
      return fail("at most " + std::to_string(kMaxPixels) + " pixels");
    }
    if (size_.pixels() % rule.pixels_step != 0) {
      return fail("a number of pixels that is a multiple of " + std::to_string(rule.pixels_step));
    }
    return {};
  }

  /// Bytes of a buffer whose lines may be padded; sets `pitch`.
  Result<std::size_t> extent(const char* what, Cause cause, std::size_t told, std::size_t line,
                             bool whole_lines, std::size_t tight_bytes, std::size_t size,
                             std::size_t& pitch) const {
    pitch = told == 0 ? line : told;
    if (size_.pixels() == 0) {
      return std::size_t{0};
    }
    std::size_t wanted = tight_bytes;
    if (pitch != line && size_.height > 1) {
      if (pitch < line) {
        return refuse(
            Cause::kPitch, QVN_E_UNCLASSIFIED,
            found("lines of the " + std::string(what) + " at least " + std::to_string(line) + " bytes apart",
                  pitch));
      }
      if (!whole_lines) {
        return refuse(Cause::kPitch, QVN_E_UNCLASSIFIED,
                      found("padded lines of whole groups of pixels", size_.width));
      }
      const std::size_t before = size_.height - 1;
      if (size < line || (size - line) / before < pitch) {  // the product might wrap
        return refuse(cause, QVN_E_UNCLASSIFIED,
                      found("a " + std::string(what) + " of " + std::to_string(size_.height) + " lines, " +
                                std::to_string(pitch) + " bytes apart",
                            size));
      }
      wanted = before * pitch + line;
    } else {
      pitch = line;
    }
    if (size < wanted) {
      return refuse(cause, QVN_E_UNCLASSIFIED,
                    found("a " + std::string(what) + " of " + std::to_string(wanted) + " bytes", size));
    }
    return wanted;
  }

  Result<void> check_source(const Source& src) {
    // A mosaic's lines begin with a group of their own, those of a run do not.
    const auto bytes = static_cast<std::size_t>(
        entry_.lines == Lines::kRun ? size_.pixels() / entry_.source.group * entry_.source.bytes
                                    : std::uint64_t{source_line_} * size_.height);
    Result<std::size_t> wanted =
        extent("source", Cause::kSource, src.pitch(), source_line_, size_.width % entry_.source.group == 0,
               bytes, src.size(), source_pitch_);
    if (!wanted) {
      return wanted.failure();
    }
    src_ = src.data();
    source_bytes_ = wanted.value();
    tight_ = source_pitch_ == source_line_ && repack_ == nullptr;
    return {};
  }

  Result<void> check_destination(const Destination& dst, std::size_t plane) {
    const bool uyvy = entry_.pixel_bytes == 0 && arguments_.target == Target::kUyvy;
    // The last pixel of an odd count gets a first luma and both chroma bytes.
    const auto bytes =
        static_cast<std::size_t>(size_.pixels() * pixel_bytes_ + (uyvy ? size_.pixels() % 2 : 0));
    Result<std::size_t> wanted = extent("destination", Cause::kDestination, dst.pitch(), line_,
                                        !uyvy || size_.width % 2 == 0, bytes, dst.size(), pitches_[plane]);
    if (!wanted) {
      return wanted.failure();
    }
    dst_[plane] = dst.data();
    bytes_[plane] = wanted.value();
    tight_ = tight_ && pitches_[plane] == line_;
    if (!tight_ && size_.width % entry_.source.group != 0) {
      return refuse(Cause::kPitch, QVN_E_UNCLASSIFIED,
                    found("padded lines of whole groups of pixels", size_.width));
    }
    return {};
  }

  static bool overlap(const std::uint8_t* a, std::size_t a_bytes, const std::uint8_t* b,
                      std::size_t b_bytes) {
    const std::less<> before;
    return a_bytes != 0 && b_bytes != 0 && before(a, b + b_bytes) && before(b, a + a_bytes);
  }

  Result<void> check_overlap() {
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      for (std::size_t other = 0; other < plane; ++other) {
        if (overlap(dst_[plane], bytes_[plane], dst_[other], bytes_[other])) {
          return refuse(Cause::kOverlap, QVN_E_UNCLASSIFIED, "expected planes that do not overlap");
        }
      }
      if (!overlap(dst_[plane], bytes_[plane], src_, source_bytes_)) {
        continue;
      }
      const bool fits = pixel_bytes_ * entry_.source.group <= entry_.source.bytes;
      in_place_ = entry_.in_place && fits && dst_[plane] == src_ && (tight_ || pitches_[0] == source_pitch_);
      if (!in_place_) {
        return refuse(Cause::kOverlap, QVN_E_UNCLASSIFIED,
                      entry_.in_place && fits ? "expected buffers that are equal or do not overlap"
                                              : "expected buffers that do not overlap");
      }
    }
    return {};
  }

  std::uint64_t bands(std::uint64_t units) const {
    // In place, a picture of shorter pixels lands on what another band has yet to read.
    const bool shrinks = flat() && in_place_ && pixel_bytes_ * entry_.source.group != entry_.source.bytes;
    if (!can_be_cut() || shrinks) {
      return 1;
    }
    const std::uint64_t most = std::max<std::uint64_t>(units / (flat() ? kRunStep : kLeastLines), 1);
    return std::clamp<std::uint64_t>(options_.bands, 1, most);
  }

  /// Units `from` to `to` - 1 of the picture.
  std::uint32_t band(std::uint32_t from, std::uint32_t to) const {
    if (flat()) {
      return pixels(from, to);
    }
    if (!can_be_cut()) {
      Workspace space;
      return tight() ? direct(0, size_.height) : window(0, size_.height, space);
    }
    if (tight()) {
      return lines(from, to);
    }
    const auto fit = static_cast<std::uint32_t>(kStripBytes / std::max(line_, std::size_t{source_line_}));
    const std::uint32_t strip = std::max(fit / 8 * 8, kLeastStrip);
    Workspace space;
    while (to - from > strip + kLeastLines) {
      if (const std::uint32_t status = window(from, from + strip, space); status != QVN_OK) {
        return status;
      }
      from += strip;
    }
    return window(from, to, space);
  }

  std::uint8_t* source_at(std::size_t offset) const { return const_cast<std::uint8_t*>(src_) + offset; }

  Arguments arguments_from(std::uint32_t line) const {
    Arguments moved = arguments_;
    moved.pattern = from_line(moved.pattern, line);
    return moved;
  }

  void make_opaque(std::uint8_t* pixels, std::size_t count) const {
    if (options_.opaque) {
      for (std::size_t i = 0; i < count; ++i) {
        pixels[4 * i + 3] = 255;
      }
    }
  }

  std::uint32_t pixels(std::uint32_t from, std::uint32_t to) const {
    Buffers buffers{{}, source_at(std::size_t{from} / entry_.source.group * entry_.source.bytes)};
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      buffers.dst[plane] = dst_[plane] + std::size_t{from} * pixel_bytes_;
    }
    const bool whole = to - from == size_.pixels();
    const std::uint32_t status = entry_.run(buffers, whole ? size_ : Size{to - from, 1}, arguments_);
    if (status == QVN_OK) {
      make_opaque(buffers.dst[0], to - from);
    }
    return status;
  }

  /// Lines of buffers without padding, as a frame of their own.
  std::uint32_t direct(std::uint32_t from, std::uint32_t to) const {
    const Buffers buffers{{dst_[0] + from * line_}, source_at(std::size_t{from} * source_line_)};
    const std::uint32_t status = entry_.run(buffers, {size_.width, to - from}, arguments_from(from));
    if (status == QVN_OK) {
      make_opaque(buffers.dst[0], std::size_t{size_.width} * (to - from));
    }
    return status;
  }

  /// The same as part of the whole frame. As a frame of its own, a band's outer lines would be copies of
  /// their neighbours: these are made apart, from the lines that they need, and put in afterwards.
  std::uint32_t lines(std::uint32_t from, std::uint32_t to) const {
    const bool first = entry_.lines == Lines::kThree && from != 0;
    const bool last = to != size_.height;
    Scratch above;
    Scratch below;
    if (first) {
      above = scratch(line_ * 3);
      if (const std::uint32_t status = outer_line(above.get(), from); status != QVN_OK) {
        return status;
      }
    }
    if (last) {
      below = scratch(line_ * 3);
      if (const std::uint32_t status = outer_line(below.get(), to - 1); status != QVN_OK) {
        return status;
      }
    }
    if (const std::uint32_t status = direct(from, to); status != QVN_OK) {
      return status;
    }
    const std::size_t own = entry_.lines == Lines::kThree ? line_ : 0;
    if (first) {
      std::memcpy(dst_[0] + from * line_, above.get() + own, line_);
    }
    if (last) {
      std::memcpy(dst_[0] + (to - 1) * line_, below.get() + own, line_);
    }
    return QVN_OK;
  }

  /// An inner line of the picture in scratch lines: the first of two, or the second of three.
  std::uint32_t outer_line(std::uint8_t* scratch_lines, std::uint32_t line) const {
    const std::uint32_t before = entry_.lines == Lines::kThree ? 1 : 0;
    const std::uint32_t height = 2 + before;
    std::uint8_t* const own = scratch_lines + before * line_;
    std::memset(scratch_lines, 0, height * line_);
    std::memcpy(own, dst_[0] + line * line_, line_);  // bytes that the function leaves alone
    const Buffers buffers{{scratch_lines}, source_at(std::size_t{line - before} * source_line_)};
    const std::uint32_t status = entry_.run(buffers, {size_.width, height}, arguments_from(line - before));
    if (status == QVN_OK) {
      make_opaque(own, size_.width);
    }
    return status;
  }

  /// Lines `from` to `to` - 1 by way of tight scratch lines, with the neighbours that they need.
  std::uint32_t window(std::uint32_t from, std::uint32_t to, Workspace& space) const {
    const bool reaches_up = entry_.lines == Lines::kThree && from != 0;
    const bool reaches_down =
        (entry_.lines == Lines::kTwo || entry_.lines == Lines::kThree) && to != size_.height;
    const std::uint32_t begin = from - (reaches_up ? 1 : 0);
    const std::uint32_t height = to + (reaches_down ? 1 : 0) - begin;
    const std::uint32_t own = to - from;
    Buffers buffers{};
    // Whoever overwrites the source gets its own lines back at the end.
    const bool gathers = source_pitch_ != source_line_ || repack_ != nullptr;
    if (gathers) {
      std::uint8_t* const source = space.source.of(std::size_t{height} * source_line_);
      for (std::uint32_t line = 0; line < height; ++line) {
        std::memcpy(source + std::size_t{line} * source_line_,
                    src_ + std::size_t{begin + line} * source_pitch_, source_line_);
      }
      if (repack_ != nullptr) {
        repack_(source, std::size_t{height} * source_line_);
      }
      buffers.src = source;
    } else {
      buffers.src = source_at(std::size_t{begin} * source_line_);
    }

    const auto in_its_place = [&](std::size_t plane) { return pitches_[plane] == line_ && height == own; };
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      if (in_its_place(plane)) {
        buffers.dst[plane] = dst_[plane] + from * line_;
        continue;
      }
      buffers.dst[plane] = space.dst[plane].of(height * line_);
      for (std::uint32_t line = 0; leaves_bytes(to) && line < own; ++line) {
        std::memcpy(buffers.dst[plane] + (from - begin + line) * line_,
                    dst_[plane] + (from + line) * pitches_[plane], line_);
      }
    }

    const std::uint32_t status = entry_.run(buffers, {size_.width, height}, arguments_from(begin));
    if (status != QVN_OK) {
      return status;
    }
    make_opaque(buffers.dst[0] + (from - begin) * line_, std::size_t{size_.width} * own);
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      for (std::uint32_t line = 0; !in_its_place(plane) && line < own; ++line) {
        std::memcpy(dst_[plane] + (from + line) * pitches_[plane],
                    buffers.dst[plane] + (from - begin + line) * line_, line_);
      }
    }
    if (entry_.overwrites_source && gathers) {
      for (std::uint32_t line = 0; line < height; ++line) {
        std::memcpy(source_at(line * source_pitch_), buffers.src + std::size_t{line} * source_line_,
                    source_line_);
      }
    }
    return QVN_OK;
  }

  const Entry& entry_;
  const Arguments& arguments_;
  const Options& options_;
  Size size_;
  Repack repack_;
  std::uint32_t pixel_bytes_;
  std::uint32_t source_line_ = 0;
  std::size_t line_ = 0;
  const std::uint8_t* src_ = nullptr;
  Scratch copy_;
  std::size_t source_pitch_ = 0;
  std::size_t source_bytes_ = 0;
  std::array<std::uint8_t*, 4> dst_{};
  std::array<std::size_t, 4> pitches_{};
  std::array<std::size_t, 4> bytes_{};
  bool tight_ = true;
  bool in_place_ = false;
};

/// The library's allocation failures leave it as exceptions, of the standard library's or an integer.
template <class Action>
Result<void> guarded(std::string_view entry, Action action) {
  try {
    return result_of(entry, action());
  } catch (const std::bad_alloc&) {
    return refusal(Cause::kMemory, QVN_E_OUT_OF_MEMORY, entry, status_text(QVN_E_OUT_OF_MEMORY));
  } catch (int) {
    return refusal(Cause::kMemory, QVN_E_OUT_OF_MEMORY, entry, status_text(QVN_E_OUT_OF_MEMORY));
  }
}

}  // namespace detail

/// The checked call that all functions of this header come to. `src` of an Entry that overwrites its source
/// is overwritten; see call_keeping_source.
inline Result<void> call(const Entry& entry, const std::array<Destination, 4>& dst, const Source& src,
                         Size size, const Arguments& arguments, const Options& options = {},
                         detail::Repack repack = nullptr) {
  detail::Call prepared(entry, arguments, options, size, repack);
  if (Result<void> checked = prepared.prepare(dst, src); !checked) {
    return checked;
  }
  return detail::guarded(entry.name, [&] { return prepared.run(); });
}

/// The same from a copy of the source where the Entry overwrites it.
inline Result<void> call_keeping_source(const Entry& entry, const std::array<Destination, 4>& dst,
                                        const Source& src, Size size, const Arguments& arguments,
                                        const Options& options = {}, detail::Repack repack = nullptr) {
  const bool copy = entry.overwrites_source;
  detail::Call prepared(entry, arguments, options, size, repack);
  if (Result<void> checked = prepared.prepare(dst, src); !checked) {
    return checked;
  }
  return detail::guarded(entry.name, [&] {
    if (copy) {
      prepared.copy_source();
    }
    return prepared.run();
  });
}

}  // namespace quorvane
