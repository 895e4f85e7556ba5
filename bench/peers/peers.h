// Other libraries' conversions, as far as they were found when the project was configured.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

using Conversion = std::function<void(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height)>;

struct Peer {
  const char* name;
  Conversion conversion;
};

void prepare_peers();  // one thread each

std::vector<Peer> bayer_peers();
std::vector<Peer> yuv444_peers();
std::vector<Peer> yuv422_peers();
std::vector<Peer> yuv411_peers();
std::vector<Peer> swap_peers();
std::vector<Peer> grey_peers();
std::vector<Peer> grey_to_colour_peers();
std::vector<Peer> mono16_peers();
std::vector<Peer> split_peers();
std::vector<Peer> stretch_peers(bool rgb, bool linear);  // lines to five quarters of their length
std::vector<Peer> mirror_peers(bool rgb);                // lines reversed
