// The checked C++ header: buffers that know their length, padded lines, bands on threads, and errors that say
// what was expected and what was found.
#include <iostream>
#include <quorvane.hpp>
#include <vector>

int main() {
  using quorvane::Pattern;
  using quorvane::Target;
  const quorvane::Size size{640, 480};

  // A driver's buffer: 12 bits a sample, two samples in three bytes, each line padded to 1024 bytes.
  constexpr std::size_t kPitch = 1024;
  const std::vector<std::uint8_t> frame(kPitch * size.height, 0x80);

  // BGR by name, on two threads.
  std::vector<std::uint8_t> picture(3 * size.pixels());
  quorvane::raw12_to_bgr(picture, quorvane::Source(frame, kPitch), size, Pattern::kGrbg, {.bands = 2});

  // The same by the table of conversions; BGRA with an opaque fourth byte, from samples in another packing.
  const std::vector<std::uint8_t> bgra = [&] {
    std::vector<std::uint8_t> made(4 * size.pixels());
    quorvane::convert(made, quorvane::Source(frame, kPitch), {.format = "raw12p", .size = size},
                      {.target = "bgra", .options = {.opaque = true}});
    return made;
  }();

  // A matrix of the library's between window and picture, from a frame with 8 bits a sample.
  const quorvane::Correction softer =
      quorvane::Correction::matrix({0.75F, 0.25F, 0, 0.125F, 0.75F, 0.125F, 0, 0.25F, 0.75F});
  quorvane::raw8_to_bgr_cc(picture, frame, size, Pattern::kRggb, &softer);

  // Without exceptions: a buffer that lacks a byte.
  picture.pop_back();
  const quorvane::Result<void> result =
      quorvane::raw8_transform.attempt(picture, frame, size, Target::kBgr, Pattern::kRggb);
  if (result) {
    return 1;
  }
  std::cout << "opaque: " << int{bgra.back()} << '\n' << result.failure().message << '\n';
  return 0;
}
