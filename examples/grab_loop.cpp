// A camera's loop: one thread takes frames from the camera, others convert them, and a bounded queue between
// them keeps a slow converter from filling the memory. Frames that find the queue full are dropped and
// counted, as a camera would drop them. The camera here is a made-up one; take its grab() for that of a
// driver.
//
//     grab_loop [FRAMES]
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <mutex>
#include <optional>
#include <quorvane.hpp>
#include <thread>
#include <vector>

namespace {

constexpr quorvane::Size kSize{640, 480};
constexpr std::size_t kConverters = 2;
constexpr std::size_t kQueueLength = 4;

struct Frame {
  std::uint32_t number = 0;
  std::vector<std::uint8_t> mosaic;
};

/// Every pixel of frame n is as bright as n.
class FakeCamera {
 public:
  Frame grab() {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const std::uint32_t number = next_++;
    return {number, std::vector<std::uint8_t>(kSize.pixels(), static_cast<std::uint8_t>(number))};
  }

 private:
  std::uint32_t next_ = 0;
};

class BoundedQueue {
 public:
  /// False: the queue is full.
  bool offer(Frame&& frame) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (frames_.size() == kQueueLength) {
      return false;
    }
    frames_.push_back(std::move(frame));
    changed_.notify_one();
    return true;
  }

  /// Waits; nothing: there will be no more.
  std::optional<Frame> take() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return closed_ || !frames_.empty(); });
    if (frames_.empty()) {
      return std::nullopt;
    }
    Frame frame = std::move(frames_.front());
    frames_.pop_front();
    return frame;
  }

  void close() {
    const std::lock_guard<std::mutex> lock(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Frame> frames_;
  bool closed_ = false;
};

struct Tally {
  std::uint32_t good = 0;
  std::uint32_t bad = 0;
};

/// Each converter has a picture of its own; the library's functions share nothing.
void convert_frames(BoundedQueue& queue, Tally& tally) {
  std::vector<std::uint8_t> picture(3 * kSize.pixels());
  while (const std::optional<Frame> frame = queue.take()) {
    quorvane::raw8_to_bgr(picture, frame->mosaic, kSize, quorvane::Pattern::kRggb);
    const bool right =
        picture.front() == static_cast<std::uint8_t>(frame->number) && picture.back() == picture.front();
    ++(right ? tally.good : tally.bad);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned long frames = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100;
  FakeCamera camera;
  BoundedQueue queue;
  std::vector<Tally> tallies(kConverters);
  std::vector<std::thread> converters;
  for (Tally& tally : tallies) {
    converters.emplace_back(convert_frames, std::ref(queue), std::ref(tally));
  }

  unsigned long dropped = 0;
  for (unsigned long i = 0; i < frames; ++i) {
    dropped += queue.offer(camera.grab()) ? 0 : 1;
  }
  queue.close();
  unsigned long converted = 0;
  unsigned long wrong = 0;
  for (std::size_t i = 0; i < kConverters; ++i) {
    converters[i].join();
    converted += tallies[i].good;
    wrong += tallies[i].bad;
  }
  std::cout << converted << " converted, " << dropped << " dropped, " << wrong << " wrong\n";
  return wrong == 0 && converted + dropped == frames ? 0 : 1;
}
