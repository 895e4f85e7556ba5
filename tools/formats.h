// The source formats: how many bytes a frame has, which netpbm file can hold it, how a chart is drawn in it.
//
// A new format is one row in formats.cpp and a function that samples a scene.
#pragma once

#include "frame.h"

namespace qvn::tool {

struct SourceFormat {
  std::string_view name;
  std::string_view about;
  bool mosaic;                    // has a Bayer pattern
  std::uint32_t netpbm_channels;  // channels of a PGM (1) or PPM (3) that holds the same bytes; 0: none does
  std::uint32_t netpbm_depth;     // bits a sample in that file
  std::size_t (*bytes)(Size size);
  std::vector<std::uint8_t> (*sample)(const SceneImage& scene, const Pattern& pattern);
};

const std::vector<SourceFormat>& source_formats();
const SourceFormat& find_format(const std::string& name);
/// The format that a netpbm file without further word is taken for.
const SourceFormat& format_of_netpbm(std::uint32_t channels, std::uint32_t depth);

}  // namespace qvn::tool
