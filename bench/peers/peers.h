// Other libraries' conversions, as far as they were found when the project was configured.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Conversion = std::function<void(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height)>;

// What a library offers beside a row of ours, which has the name `row`. `name` is the library's, and behind a
// hyphen the method, or how its work differs: ARGB writes four bytes a pixel where ours writes three, copy
// has a second buffer where ours works in place, two-steps are two calls with a picture between them.
struct Peer {
  std::string row, name;
  Conversion conversion;
};

// Each library's file adds its own; a library that was not found has no file. One thread each.
void add_opencv(std::vector<Peer>& peers);
void add_libyuv(std::vector<Peer>& peers);
void add_swscale(std::vector<Peer>& peers);
void add_dc1394(std::vector<Peer>& peers);
