// Drawing of the chart's scene. Coordinates are pixels of the frame; what should look alike at every size is
// placed by fractions of the frame, what tests the sampling is measured in pixels.
#include "scene.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qvn::tool {
namespace {

struct Colour {
  double r, g, b;
};

constexpr Colour grey(double value) { return {value, value, value}; }

constexpr Colour mix(Colour a, Colour b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

/// Cosine of a full turn's fraction. Eight terms of the series over a quarter turn: good to 1e-9.
double cos_turns(double turns) {
  double t = turns - std::floor(turns);
  t = std::min(t, 1.0 - t);
  const bool mirrored = t > 0.25;
  const double angle = (mirrored ? 0.5 - t : t) * 6.283185307179586;
  const double square = angle * angle;
  double term = 1.0;
  double sum = 1.0;
  for (int n = 1; n < 8; ++n) {
    term *= -square / ((2.0 * n - 1.0) * (2.0 * n));
    sum += term;
  }
  return mirrored ? -sum : sum;
}

/// Direction of (x, y) as a fraction of a turn, 0 to 1, from the x axis towards y. A polynomial over an
/// eighth of a turn, good to 2e-6 turns: a thousandth of a pixel in the largest star.
double direction_turns(double x, double y) {
  const double ax = std::abs(x);
  const double ay = std::abs(y);
  if (ax + ay == 0.0) {
    return 0.0;
  }
  const double t = std::min(ax, ay) / std::max(ax, ay);
  const double s = t * t;
  const double radians =
      t * (0.9998660 + s * (-0.3302995 + s * (0.1801410 + s * (-0.0851330 + s * 0.0208351))));
  double turns = radians / 6.283185307179586;
  turns = ay > ax ? 0.25 - turns : turns;
  turns = x < 0.0 ? 0.5 - turns : turns;
  return y < 0.0 ? 1.0 - turns : turns;
}

/// Full colours around the wheel: 0 is red, 1/3 green, 2/3 blue.
Colour hue(double turns) {
  const auto channel = [&](double offset) {
    const double t = turns + offset - std::floor(turns + offset);
    return std::clamp(std::abs(t * 6.0 - 3.0) - 1.0, 0.0, 1.0);
  };
  return {channel(0.0), channel(2.0 / 3.0), channel(1.0 / 3.0)};
}

struct Box {
  double left, top, width, height;

  bool holds(double x, double y) const {
    return x >= left && y >= top && x < left + width && y < top + height;
  }
};

constexpr Colour kPaper = grey(0.93);
constexpr Colour kInk = grey(0.06);

constexpr std::array<Colour, 16> kPatches{{
    {0.86, 0.16, 0.15},
    {0.93, 0.49, 0.13},
    {0.96, 0.82, 0.18},
    {0.62, 0.80, 0.22},
    {0.16, 0.60, 0.27},
    {0.10, 0.60, 0.55},
    {0.20, 0.74, 0.86},
    {0.22, 0.47, 0.84},
    {0.17, 0.22, 0.66},
    {0.45, 0.25, 0.68},
    {0.80, 0.25, 0.66},
    {0.90, 0.45, 0.55},
    {0.95, 0.78, 0.66},
    {0.47, 0.31, 0.24},
    {0.34, 0.43, 0.22},
    {0.60, 0.74, 0.88},
}};

constexpr std::array<Colour, 7> kThreads{{
    {0.95, 0.95, 0.95},
    {0.95, 0.15, 0.12},
    {0.98, 0.80, 0.15},
    {0.20, 0.85, 0.30},
    {0.20, 0.85, 0.92},
    {0.25, 0.40, 0.98},
    {0.95, 0.25, 0.85},
}};

/// 36 spokes inside a ring of hues.
Colour star(const Box& box, double x, double y, Colour behind) {
  const double dx = x - (box.left + box.width / 2);
  const double dy = y - (box.top + box.height / 2);
  const double radius = std::min(box.width, box.height) / 2;
  const double distance = std::sqrt(dx * dx + dy * dy) / radius;
  if (distance >= 1.0) {
    return behind;
  }
  const double turns = direction_turns(dx, dy);
  if (distance >= 0.90) {
    return hue(turns);
  }
  if (distance >= 0.86) {
    return kInk;
  }
  return cos_turns(turns * 36.0) > 0.0 ? kPaper : kInk;
}

/// Rings whose frequency grows from 0 in the middle to 0.45 lines a pixel at the rim: finer than any demosaic
/// follows.
Colour zone_plate(const Box& box, double x, double y, Colour behind) {
  const double dx = x - (box.left + box.width / 2);
  const double dy = y - (box.top + box.height / 2);
  const double radius = std::min(box.width, box.height) / 2;
  const double square = dx * dx + dy * dy;
  if (square >= radius * radius) {
    return behind;
  }
  return grey(0.5 + 0.43 * cos_turns(0.225 * square / radius));
}

Colour patches(const Box& box, double x, double y, Colour behind) {
  const double u = (x - box.left) / box.width * 4.0;
  const double v = (y - box.top) / box.height * 4.0;
  const double column = std::floor(u);
  const double line = std::floor(v);
  constexpr double kGap = 0.04;
  if (std::abs(u - column - 0.5) > 0.5 - kGap || std::abs(v - line - 0.5) > 0.5 - kGap) {
    return behind;
  }
  return kPatches[static_cast<std::size_t>(line) * 4 + static_cast<std::size_t>(column)];
}

/// Threads a pixel and a half wide that meet below the middle of the panel.
Colour fan(const Box& box, double x, double y) {
  constexpr double kRays = 180.0;
  const double dx = x - (box.left + box.width / 2);
  const double dy = box.top + box.height * 1.05 - y;
  const double position = direction_turns(dx, dy) * kRays;
  const double ray = std::floor(position + 0.5);
  const double distance = std::sqrt(dx * dx + dy * dy);
  const double aside = std::abs(position - ray) / kRays * 6.283185307179586 * distance;
  const double near = std::clamp(distance / (box.height * 0.25), 0.0, 1.0);
  if (aside > 0.75) {
    return kInk;
  }
  return mix(kInk, kThreads[static_cast<std::size_t>(ray) % kThreads.size()], near);
}

/// Hues from left to right, from white through the full colour to black downwards.
Colour sweep(const Box& box, double x, double y) {
  const Colour full = hue((x - box.left) / box.width);
  const double v = (y - box.top) / box.height * 2.0;
  return v < 1.0 ? mix(grey(1.0), full, v) : mix(full, grey(0.0), v - 1.0);
}

Colour ramps(const Box& box, double x, double y) {
  const double u = (x - box.left) / box.width;
  constexpr double kSteps = 16.0;
  return grey(y < box.top + box.height / 2 ? u : std::floor((1.0 - u) * kSteps) / (kSteps - 1.0));
}

/// Where the panels lie: three above, two in the middle, the ramps below.
struct Layout {
  explicit Layout(Size size) : width(size.width), height(size.height) {
    const double gap = std::min(width, height) * 0.04;
    const double third = (width - 4 * gap) / 3;
    const double rest = height - 4 * gap;
    const double top = rest * 0.52;
    const double middle = rest * 0.27;
    star = {gap, gap, third, top};
    plate = {2 * gap + third, gap, third, top};
    colours = {3 * gap + 2 * third, gap, third, top};
    threads = {gap, 2 * gap + top, 2 * third + gap, middle};
    hues = {3 * gap + 2 * third, 2 * gap + top, third, middle};
    greys = {gap, 3 * gap + top + middle, width - 2 * gap, rest - top - middle};
  }

  Colour at(double x, double y) const {
    const Colour behind = grey(0.34 - 0.14 * y / height);
    if (star.holds(x, y)) {
      return tool::star(star, x, y, behind);
    }
    if (plate.holds(x, y)) {
      return zone_plate(plate, x, y, behind);
    }
    if (colours.holds(x, y)) {
      return patches(colours, x, y, behind);
    }
    if (threads.holds(x, y)) {
      return fan(threads, x, y);
    }
    if (hues.holds(x, y)) {
      return sweep(hues, x, y);
    }
    if (greys.holds(x, y)) {
      return ramps(greys, x, y);
    }
    return behind;
  }

  double width, height;
  Box star{}, plate{}, colours{}, threads{}, hues{}, greys{};
};

/// A generator of one step: mixes a counter until every bit depends on all of its bits.
std::uint64_t scramble(std::uint64_t value) {
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
  return value ^ (value >> 31);
}

/// Sum of four 16-bit numbers, shifted and scaled to mean 0 and variance 1: near enough to a bell, and exact.
double bell(std::uint64_t bits) {
  double sum = 0.0;
  for (int part = 0; part < 4; ++part) {
    sum += static_cast<double>(bits >> (16 * part) & 0xFFFF);
  }
  return (sum / 65535.0 - 2.0) * 1.7320508075688772;
}

}  // namespace

SceneImage draw_scene(Size size) {
  constexpr int kGrid = 4;
  const Layout layout(size);
  SceneImage scene{size, {}};
  scene.rgb.reserve(size.pixels() * 3);
  for (std::uint32_t y = 0; y < size.height; ++y) {
    for (std::uint32_t x = 0; x < size.width; ++x) {
      Colour sum{0.0, 0.0, 0.0};
      for (int point = 0; point < kGrid * kGrid; ++point) {
        const int down = point / kGrid;
        const int across = point % kGrid;
        const Colour colour = layout.at(x + (across + 0.5) / kGrid, y + (down + 0.5) / kGrid);
        sum = {sum.r + colour.r, sum.g + colour.g, sum.b + colour.b};
      }
      for (const double channel : {sum.r, sum.g, sum.b}) {
        scene.rgb.push_back(static_cast<float>(channel / (kGrid * kGrid)));
      }
    }
  }
  return scene;
}

void add_noise(SceneImage& scene, std::uint64_t seed, double strength) {
  const std::uint64_t start = scramble(seed + 0x9E3779B97F4A7C15U);
  for (std::size_t i = 0; i < scene.rgb.size(); ++i) {
    const double value = static_cast<double>(scene.rgb[i]);
    const double spread = std::max(0.25, std::sqrt(value)) * strength / 255.0;
    const double draw = bell(scramble(start + (i + 1) * 0x9E3779B97F4A7C15U));
    scene.rgb[i] = static_cast<float>(value + spread * draw);
  }
}

}  // namespace qvn::tool
