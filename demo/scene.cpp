// The built-in scene: overlapping rectangles (some checkered) and disks of many
// grey levels, with soft edges, over a smoothly shaded background with a little
// fixed noise. Rectangle corners, checker crossings and junctions are what the
// corner picker finds.
#include "scene.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace vnxdemo {
namespace {

constexpr int kMargin = 8;          // lattice points beyond each frame edge: covers any motion below 8 px
constexpr double kEdgeWidth = 1.5;  // width in pixels over which a shape edge goes from 0 to full coverage

// A small deterministic generator (splitmix64), so every run draws the same scene.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  double uniform(double lo, double hi) { return lo + (hi - lo) * double(next() >> 11) * 0x1.0p-53; }

 private:
  std::uint64_t state_;
};

struct Paint {
  double coverage, grey;
};

// Texture values on the lattice points (i, j), i in [-kMargin, width + kMargin), likewise j.
class Lattice {
 public:
  Lattice(int width, int height)
      : cols_(width + 2 * kMargin), rows_(height + 2 * kMargin), v_(std::size_t(cols_) * rows_) {}
  int cols() const { return cols_; }
  int rows() const { return rows_; }
  double& at(int i, int j) { return v_[std::size_t(j + kMargin) * cols_ + (i + kMargin)]; }
  double at(int i, int j) const { return v_[std::size_t(j + kMargin) * cols_ + (i + kMargin)]; }

  // Paints over the lattice points of [x0, x1) x [y0, y1): shade(i, j) gives the coverage
  // and the grey level there, and the point moves towards that grey by the coverage.
  template <class Shade>
  void paint(double x0, double y0, double x1, double y1, Shade shade) {
    const int i0 = std::max(-kMargin, int(std::floor(x0))), i1 = std::min(cols_ - kMargin, int(std::ceil(x1)) + 1);
    const int j0 = std::max(-kMargin, int(std::floor(y0))), j1 = std::min(rows_ - kMargin, int(std::ceil(y1)) + 1);
    for (int j = j0; j < j1; ++j)
      for (int i = i0; i < i1; ++i) {
        const Paint p = shade(i, j);
        if (p.coverage > 0) at(i, j) += p.coverage * (p.grey - at(i, j));
      }
  }

  // Bilinear interpolation at (x, y), which must lie inside the lattice.
  double sample(double x, double y) const {
    const int ix = int(std::floor(x)), iy = int(std::floor(y));
    const double fx = x - ix, fy = y - iy;
    const double top = at(ix, iy) + fx * (at(ix + 1, iy) - at(ix, iy));
    const double bottom = at(ix, iy + 1) + fx * (at(ix + 1, iy + 1) - at(ix, iy + 1));
    return top + fy * (bottom - top);
  }

 private:
  int cols_, rows_;
  std::vector<double> v_;
};

// Fraction of the interval [t - w/2, t + w/2] inside [lo, hi]: a soft edge of width w.
double spanCoverage(double t, double lo, double hi) {
  const double a = std::max(t - 0.5 * kEdgeWidth, lo), b = std::min(t + 0.5 * kEdgeWidth, hi);
  return std::clamp((b - a) / kEdgeWidth, 0.0, 1.0);
}

// A square wave of period 2 cell along t (+1 on even cells, -1 on odd ones) whose
// steps are soft edges.
double softSquareWave(double t, double cell) {
  const double u = t - 2.0 * cell * std::floor(t / (2.0 * cell));  // in [0, 2 cell)
  const double d = u < cell ? std::min(u, cell - u) : -std::min(u - cell, 2.0 * cell - u);
  return std::clamp(d / (0.5 * kEdgeWidth), -1.0, 1.0);
}

Lattice buildScene(int width, int height) {
  Lattice lattice(width, height);
  Random rng(0x5EEDF00DULL);
  for (int j = -kMargin; j < height + kMargin; ++j)
    for (int i = -kMargin; i < width + kMargin; ++i) {
      const double shade = 110.0 + 35.0 * std::sin(i * 0.011) * std::cos(j * 0.015);
      const double noise = double(rng.next() % 7) - 3.0;
      lattice.at(i, j) = shade + noise;
    }
  // About one shape per 3000 pixels; sizes scale with the frame.
  const int shapes = std::max(8, width * height / 3000);
  const double scale = std::max(1.0, std::min(width, height) / 480.0);
  for (int s = 0; s < shapes; ++s) {
    const double grey = rng.uniform(15.0, 240.0);
    const double cx = rng.uniform(-20.0, width + 20.0), cy = rng.uniform(-20.0, height + 20.0);
    const std::uint64_t kind = rng.next() % 8;
    if (kind < 6) {  // three in four are rectangles, one in three of them checkered
      const double hw = rng.uniform(8.0, 55.0) * scale, hh = rng.uniform(8.0, 55.0) * scale;
      const double x0 = cx - hw, x1 = cx + hw, y0 = cy - hh, y1 = cy + hh;
      const double cell = rng.uniform(5.0, 12.0), contrast = kind < 2 ? rng.uniform(25.0, 60.0) : 0.0;
      lattice.paint(x0 - kEdgeWidth, y0 - kEdgeWidth, x1 + kEdgeWidth, y1 + kEdgeWidth, [&](int i, int j) {
        const double checker = contrast * softSquareWave(i - x0, cell) * softSquareWave(j - y0, cell);
        return Paint{spanCoverage(i, x0, x1) * spanCoverage(j, y0, y1), grey + checker};
      });
    } else {
      const double r = rng.uniform(6.0, 35.0) * scale;
      lattice.paint(cx - r - kEdgeWidth, cy - r - kEdgeWidth, cx + r + kEdgeWidth, cy + r + kEdgeWidth,
                    [&](int i, int j) {
                      const double d = std::hypot(i - cx, j - cy);
                      return Paint{std::clamp((r - d) / kEdgeWidth + 0.5, 0.0, 1.0), grey};
                    });
    }
  }
  return lattice;
}

std::uint8_t toByte(double v) { return std::uint8_t(std::clamp(std::floor(v + 0.5), 0.0, 255.0)); }

}  // namespace

void renderScenePair(int width, int height, Motion motion, Image8& first, Image8& second) {
  const Lattice lattice = buildScene(width, height);
  for (Image8* img : {&first, &second}) {
    img->width = width;
    img->height = height;
    img->channels = 1;
    img->pixels.assign(std::size_t(width) * height, 0);
  }
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const std::size_t k = std::size_t(y) * width + x;
      first.pixels[k] = toByte(lattice.at(x, y));
      second.pixels[k] = toByte(lattice.sample(x - motion.dx, y - motion.dy));
    }
}

}  // namespace vnxdemo
