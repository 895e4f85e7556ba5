/// Frames through an element and nothing else: the time that qvndemosaic takes for a frame beside bayer2rgb,
/// from and to memory, one thread. Both get the same frame again and again and give their pictures back at
/// once. Rounds of both take turns, and the best of each counts, since other work on the machine can only
/// make a round slower.
///
///     throughput [SECONDS]          with GST_PLUGIN_PATH at the plugin
#include <gst/check/gstharness.h>
#include <gst/gst.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Size {
  int width;
  int height;
};

class Element {
 public:
  Element(const std::string& launch, const std::string& picture, Size size)
      : name_(launch + " to " + picture), harness_(gst_harness_new_parse(launch.c_str())) {
    const std::string sizes =
        ",width=" + std::to_string(size.width) + ",height=" + std::to_string(size.height) + ",framerate=30/1";
    gst_harness_set_src_caps_str(harness_.get(), ("video/x-bayer,format=rggb" + sizes).c_str());
    gst_harness_set_sink_caps_str(harness_.get(), ("video/x-raw,format=" + picture + sizes).c_str());
    gst_harness_play(harness_.get());
    const auto bytes = static_cast<gsize>(size.width) * static_cast<gsize>(size.height);
    frame_.reset(gst_buffer_new_allocate(nullptr, bytes, nullptr));
    gst_buffer_memset(frame_.get(), 0, 0x5A, bytes);
  }

  const std::string& name() const { return name_; }
  double best() const { return best_; }

  /// For about so many seconds.
  void run(double seconds) {
    push(3);
    int frames = 1;
    double took = 0;
    do {
      frames *= 2;
      const Clock::time_point start = Clock::now();
      push(frames);
      took = std::chrono::duration<double>(Clock::now() - start).count();
      best_ = std::min(best_, took / frames);
    } while (took < seconds / 2);
  }

 private:
  void push(int frames) {
    for (int i = 0; i < frames; ++i) {
      GstBuffer* const picture = gst_harness_push_and_pull(harness_.get(), gst_buffer_ref(frame_.get()));
      if (picture == nullptr) {
        std::cerr << name_ << ": no picture\n";
        std::exit(1);
      }
      gst_buffer_unref(picture);
    }
  }

  struct TearDown {
    void operator()(GstHarness* harness) const { gst_harness_teardown(harness); }
  };
  struct Unref {
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
  };

  std::string name_;
  std::unique_ptr<GstHarness, TearDown> harness_;
  std::unique_ptr<GstBuffer, Unref> frame_;
  double best_ = 1e9;
};

}  // namespace

int main(int argc, char** argv) {
  gst_init(nullptr, nullptr);
  const double seconds = argc > 1 ? std::strtod(argv[1], nullptr) : 4;
  constexpr int kRounds = 4;
  for (const Size size : {Size{640, 480}, Size{1920, 1080}, Size{4096, 3072}}) {
    std::vector<std::unique_ptr<Element>> elements;
    for (const auto& [launch, picture] : std::vector<std::pair<std::string, std::string>>{
             {"bayer2rgb", "BGRx"},
             {"qvndemosaic", "BGRx"},
             {"qvndemosaic method=3x3", "BGRx"},
             {"qvndemosaic", "BGRA"},
             {"qvndemosaic", "BGR"},
             {"qvndemosaic matrix=1.5,-0.3,-0.2,-0.2,1.4,-0.2,0,-0.5,1.5", "BGR"}}) {
      elements.push_back(std::make_unique<Element>(launch, picture, size));
    }
    const double round = seconds / 3 / kRounds / static_cast<double>(elements.size());
    for (int i = 0; i < kRounds; ++i) {
      for (const auto& element : elements) {
        element->run(round);
      }
    }
    std::cout << size.width << 'x' << size.height << '\n';
    for (const auto& element : elements) {
      std::cout << "  " << std::fixed << std::setprecision(3) << element->best() * 1e3 << " ms  "
                << std::setw(7) << std::setprecision(0) << 1 / element->best() << " frames/s  "
                << std::setprecision(2) << elements.front()->best() / element->best() << " x  "
                << element->name() << '\n';
    }
  }
  return 0;
}
