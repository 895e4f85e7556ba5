// The same through the checked header.
#include <cstdio>
#include <quorvane.hpp>

int main() {
  const std::array<std::uint8_t, 4> mosaic{200, 100, 50, 25};
  std::array<std::uint8_t, 12> picture{};
  quorvane::raw8_to_bgr(picture, mosaic, {2, 2}, quorvane::Pattern::kRggb);
  std::printf("%08x %d %d %d\n", static_cast<unsigned>(quorvane::version()), picture[0], picture[1],
              picture[2]);
}
