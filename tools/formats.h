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
  bool interlaced;                // lines are stored field by field
  bool has_form;                  // has a SampleForm
  std::uint32_t netpbm_channels;  // channels of a PGM (1) or PPM (3) that holds the same bytes; 0: none does
  std::uint32_t netpbm_depth;     // bits a sample in that file
  std::uint32_t group;            // pixels that share bytes; groups run on from line to line
  std::uint32_t group_bytes;
  std::vector<std::uint8_t> (*sample)(const SceneImage& scene, const Pattern& pattern, SampleForm form);
  std::string_view read_as =
      {};  // the format that its bytes are brought to on reading, if it has no conversions
  void (*repack)(std::vector<std::uint8_t>& bytes) = nullptr;  // and how
  std::uint32_t read_bits = 0;  // bits of the SampleForm that this makes, if it makes one
};

const std::vector<SourceFormat>& source_formats();
const SourceFormat& find_format(const std::string& name);
/// The format that a netpbm file without further word is taken for.
const SourceFormat& format_of_netpbm(std::uint32_t channels, std::uint32_t depth);

/// Throws Failure for a size that leaves a part of a group.
std::size_t frame_bytes(const SourceFormat& format, Size size);
/// Bits of a sample that count: of the form, if the format has one, else what its bytes hold.
std::uint32_t sample_bits(const SourceFormat& format, SampleForm form);
/// From the texts of --bits and --align, of which an empty one says nothing. Throws Failure for what is out
/// of range, and for any text if the format has no SampleForm.
SampleForm parse_form(const SourceFormat& format, const std::string& bits, const std::string& align);

}  // namespace qvn::tool
