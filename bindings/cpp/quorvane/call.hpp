// A checked call of an Entry: the tests of checks.hpp first, then the library, in bands where the caller
// wants several, through scratch lines where buffers are padded.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "quorvane/checks.hpp"

namespace quorvane {
namespace detail {

/// What becomes of pixels of the picture as soon as they are there.
using Finish = std::function<void(std::uint8_t* pixels, std::size_t count)>;

/// What is done beside the library's function.
struct Steps {
  Steps(Repack before = nullptr, const Finish* after = nullptr)  // NOLINT(google-explicit-constructor)
      : repack(before), finish(after) {}
  Repack repack;
  const Finish* finish;
};

using Scratch = std::unique_ptr<std::uint8_t[]>;
inline Scratch scratch(std::size_t bytes) { return Scratch(new std::uint8_t[bytes]); }

/// One call, after its checks.
class Call : public CheckedCall {
 public:
  Call(const Entry& entry, const Arguments& arguments, const Options& options, Size size, const Steps& steps)
      : CheckedCall(entry, arguments, options, size, steps.repack), finish_(steps.finish) {}

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
      finish(dst_[0], count_of(size_));
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
  /// What is gone over a second time is still in the cache behind that one.
  static constexpr std::size_t kFinishedBytes = std::size_t{1} << 18;

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
    Workspace space;
    if (!can_be_cut()) {
      return tight() ? direct(0, size_.height) : window(0, size_.height, space);
    }
    const auto part = [&](std::uint32_t begin, std::uint32_t end) {
      return flat() ? pixels(begin, end) : tight() ? lines(begin, end) : window(begin, end, space);
    };
    for (const std::uint32_t strip = strip_units(); to - from > strip + kLeastLines; from += strip) {
      if (const std::uint32_t status = part(from, from + strip); status != QVN_OK) {
        return status;
      }
    }
    return part(from, to);
  }

  /// How much of a band is worked on at a time.
  std::uint32_t strip_units() const {
    if (tight() && !finishes()) {
      return flat() ? count_of(size_) : size_.height;
    }
    if (flat()) {
      return static_cast<std::uint32_t>(kFinishedBytes / pixel_bytes_ / kRunStep * kRunStep);
    }
    const std::size_t fit =
        tight() ? kFinishedBytes / line_ : kStripBytes / std::max(line_, std::size_t{source_line_});
    return std::max(static_cast<std::uint32_t>(fit / 8 * 8), kLeastStrip);
  }

  std::uint8_t* source_at(std::size_t offset) const { return const_cast<std::uint8_t*>(src_) + offset; }

  Arguments arguments_from(std::uint32_t line) const {
    Arguments moved = arguments_;
    moved.pattern = from_line(moved.pattern, line);
    return moved;
  }

  bool finishes() const { return options_.opaque || finish_ != nullptr; }

  void finish(std::uint8_t* pixels, std::size_t count) const {
    if (options_.opaque) {
      constexpr std::array<std::uint8_t, 4> kFourth{0, 0, 0, 255};
      const auto fourth = std::bit_cast<std::uint32_t>(kFourth);
      for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        pixel |= fourth;
        std::memcpy(pixels + 4 * i, &pixel, 4);
      }
    }
    if (finish_ != nullptr) {
      (*finish_)(pixels, count);
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
      finish(buffers.dst[0], to - from);
    }
    return status;
  }

  /// Lines of buffers without padding, as a frame of their own.
  std::uint32_t direct(std::uint32_t from, std::uint32_t to) const {
    const Buffers buffers{{dst_[0] + from * line_}, source_at(std::size_t{from} * source_line_)};
    const std::uint32_t status = entry_.run(buffers, {size_.width, to - from}, arguments_from(from));
    if (status == QVN_OK) {
      finish(buffers.dst[0], std::size_t{size_.width} * (to - from));
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
      finish(own, size_.width);
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
    finish(buffers.dst[0] + (from - begin) * line_, std::size_t{size_.width} * own);
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

  const Finish* finish_;
  Scratch copy_;
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
                         const detail::Steps& steps = {}) {
  detail::Call prepared(entry, arguments, options, size, steps);
  if (Result<void> checked = prepared.prepare(dst, src); !checked) {
    return checked;
  }
  return detail::guarded(entry.name, [&] { return prepared.run(); });
}

/// The same from a copy of the source where the Entry overwrites it.
inline Result<void> call_keeping_source(const Entry& entry, const std::array<Destination, 4>& dst,
                                        const Source& src, Size size, const Arguments& arguments,
                                        const Options& options = {}, const detail::Steps& steps = {}) {
  const bool copy = entry.overwrites_source;
  detail::Call prepared(entry, arguments, options, size, steps);
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
