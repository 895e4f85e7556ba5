// Our entries beside other libraries' conversions of the same kind, in one process and in turn, one thread
// each, the same input. The peers' pixels are not ours, since their formulas differ: this compares the work,
// not the bytes.
//
//   peers_bench [WORD]     rows whose name holds WORD
#include <quorvane/quorvane.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "peers/peers.h"
#include "timing.h"

namespace {

struct Row {
  const char* name;
  Conversion ours;
  std::vector<Peer> peers;
};

std::vector<Row> all_rows() {
  const auto frame = [](auto entry) {
    return [entry](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
      entry(dst, src, width, height, 0);
    };
  };
  const auto run = [](auto entry) {
    return [entry](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
      entry(dst, src, width * height);
    };
  };
  const auto split = [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
    const size_t plane = size_t{width} * height;
    QVN_RGB8ToRGBYPlanes(dst, dst + plane, dst + 2 * plane, nullptr, src, width, height);
  };
  const auto stretch = [](uint32_t element, uint32_t method) {
    return [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
      const auto length = static_cast<int32_t>(width);
      QVN_ResampleScanlines(dst, src, length / 4 * 5, length, static_cast<int32_t>(height), 4, 5, element,
                            method);
    };
  };
  const auto mirror = [](uint32_t code) {
    return [=](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
      QVN_Flip(dst, width, height, 1, code);
    };
  };
  return {
      {"Raw8ToBGR", frame(QVN_Raw8ToBGR), bayer_peers()},
      {"Raw8ToBGR_3x3", frame(QVN_Raw8ToBGR_3x3), bayer_peers()},
      {"Raw8ToBGR_IntYUV422", frame(QVN_Raw8ToBGR_IntYUV422), bayer_peers()},
      {"Raw8ToBGR_IntLCAA", frame(QVN_Raw8ToBGR_IntLCAA), bayer_peers()},
      {"Raw8ToBGR_IntLCAAV", frame(QVN_Raw8ToBGR_IntLCAAV), bayer_peers()},
      {"YUV444ToBGR", run(QVN_YUV444ToBGR), yuv444_peers()},
      {"YUV422ToBGR", run(QVN_YUV422ToBGR), yuv422_peers()},
      {"YUV411ToBGR", run(QVN_YUV411ToBGR), yuv411_peers()},
      {"RGB8ToBGR", run(QVN_RGB8ToBGR), swap_peers()},
      {"RGB8ToY8", run(QVN_RGB8ToY8), grey_peers()},
      {"Y8ToBGR", run(QVN_Y8ToBGR), grey_to_colour_peers()},
      {"Y16ToY8", run(QVN_Y16ToY8), mono16_peers()},
      {"RGB8ToRGBYPlanes, no Y", split, split_peers()},
      {"Resample mono nearest", stretch(1, 0), stretch_peers(false, false)},
      {"Resample mono linear", stretch(1, 1), stretch_peers(false, true)},
      {"Resample RGB nearest", stretch(3, 0), stretch_peers(true, false)},
      {"Resample RGB linear", stretch(3, 1), stretch_peers(true, true)},
      {"Flip mono", mirror(0), mirror_peers(false)},
      {"Flip RGB", mirror(4), mirror_peers(true)},
  };
}

// Medians of calls that take turns, the copy of the same frame last.
void print_row(const Row& row, Size size) {
  const size_t pixels = size_t{size.width} * size.height;
  std::vector<uint8_t> dst(6 * pixels), src = noise(3 * pixels);
  std::vector<const Conversion*> conversions = {&row.ours};
  for (const Peer& peer : row.peers) conversions.push_back(&peer.conversion);
  std::vector<std::vector<double>> times(conversions.size());
  const int rounds = pixels > 4'000'000 ? 15 : pixels > 1'000'000 ? 40 : 150;
  for (int round = 0; round < rounds; ++round) {
    for (size_t i = 0; i < conversions.size(); ++i) {
      times[i].push_back(
          seconds([&] { (*conversions[i])(dst.data(), src.data(), size.width, size.height); }));
    }
  }
  const double scale = 1e9 / static_cast<double>(pixels), ours = median(times[0]);
  double fastest = 0;
  std::printf("%-24s %4ux%-4u  ours %.3f", row.name, size.width, size.height, scale * ours);
  for (size_t i = 0; i < row.peers.size(); ++i) {
    const double time = median(times[i + 1]);
    if (fastest == 0 || time < fastest) fastest = time;
    std::printf("  %s %.3f", row.peers[i].name, scale * time);
  }
  if (fastest > 0) std::printf("  ours/fastest %.2f", ours / fastest);
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  const char* word = argc > 1 ? argv[1] : "";
  prepare_peers();
  std::printf("nanoseconds a pixel, one thread\n");
  for (const Row& row : all_rows()) {
    if (std::strstr(row.name, word) == nullptr) continue;
    for (const Size size : kSizes) print_row(row, size);
  }
  return 0;
}
