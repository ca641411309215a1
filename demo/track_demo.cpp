// Feature tracking with vnxcv: builds Gaussian pyramids of two frames, picks the
// strongest well-separated corners of the first with MinEigenVal, tracks them into
// the second with pyramidal Lucas-Kanade flow, prints how many were tracked, and
// writes the first frame in grey with every track drawn: a ring at the corner and a
// line to its new position (green, the new position yellow; lost corners red).
//
//   vnxdemo [tracks.png]                   built-in frames moved by a known motion:
//                                          also prints the mean error against it
//   vnxdemo first.png second.png [out.png] the user's frames (any PNG, taken as grey)
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "pngio.h"
#include "scene.h"
#include "tracker.h"
#include "vnxcv.h"

namespace {

using vnxdemo::Image8;

constexpr int kSceneWidth = 640, kSceneHeight = 480;
constexpr vnxdemo::Motion kSceneMotion{5.3, -3.7};

struct Rgb {
  std::uint8_t r, g, b;
};
constexpr Rgb kTrackColour{40, 230, 40}, kHeadColour{255, 230, 0}, kLostColour{255, 40, 40};

void plot(Image8& img, int x, int y, Rgb c) {
  if (x < 0 || y < 0 || x >= img.width || y >= img.height) return;
  std::uint8_t* p = &img.pixels[std::size_t(y) * img.step() + std::size_t(x) * 3];
  p[0] = c.r;
  p[1] = c.g;
  p[2] = c.b;
}

// A line through the pixel centres nearest to the points, from a to b.
void drawLine(Image8& img, vnxiPoint32f a, vnxiPoint32f b, Rgb c) {
  const float dx = b.x - a.x, dy = b.y - a.y;
  const int n = int(std::ceil(std::max(std::fabs(dx), std::fabs(dy)))) + 1;
  for (int i = 0; i <= n; ++i) {
    const float t = float(i) / float(n);
    plot(img, int(std::lround(a.x + t * dx)), int(std::lround(a.y + t * dy)), c);
  }
}

// A small ring of radius 3 around the pixel nearest to p.
void drawRing(Image8& img, vnxiPoint32f p, Rgb c) {
  static constexpr int kRing[][2] = {{-1, -3}, {0, -3}, {1, -3}, {2, -2}, {3, -1}, {3, 0}, {3, 1}, {2, 2},
                                     {1, 3},   {0, 3},  {-1, 3}, {-2, 2}, {-3, 1}, {-3, 0}, {-3, -1}, {-2, -2}};
  const int x = int(std::lround(p.x)), y = int(std::lround(p.y));
  for (const auto& d : kRing) plot(img, x + d[0], y + d[1], c);
}

// The grey frame, dimmed a little so the tracks stand out, with the tracks drawn.
Image8 drawTracks(const Image8& frame, const vnxdemo::TrackResult& tracks) {
  Image8 out;
  out.width = frame.width;
  out.height = frame.height;
  out.channels = 3;
  out.pixels.resize(std::size_t(out.step()) * out.height);
  for (std::size_t i = 0; i < frame.pixels.size(); ++i)
    for (int c = 0; c < 3; ++c) out.pixels[3 * i + c] = std::uint8_t(32 + frame.pixels[i] * 3 / 4);
  for (std::size_t i = 0; i < tracks.prev.size(); ++i) {
    if (tracks.status[i] != 0) {
      drawRing(out, tracks.prev[i], kLostColour);
      continue;
    }
    drawRing(out, tracks.prev[i], kTrackColour);
    drawLine(out, tracks.prev[i], tracks.next[i], kTrackColour);
    plot(out, int(std::lround(tracks.next[i].x)), int(std::lround(tracks.next[i].y)), kHeadColour);
  }
  return out;
}

int usage(const char* argv0) {
  std::fprintf(stderr,
               "usage: %s [tracks.png]                     track corners between built-in frames\n"
               "       %s first.png second.png [out.png]  track corners between two frames of yours\n",
               argv0, argv0);
  return EXIT_FAILURE;
}

void loadGray(const char* path, Image8& img) {
  std::string error;
  if (!vnxdemo::readGrayPng(path, img, error)) {
    std::fprintf(stderr, "vnxdemo: cannot read %s: %s\n", path, error.c_str());
    std::exit(EXIT_FAILURE);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 4 || (argc > 1 && std::string(argv[1]).rfind("-", 0) == 0)) return usage(argv[0]);
  const bool builtIn = argc <= 2;
  const char* out = builtIn ? (argc == 2 ? argv[1] : "tracks.png") : (argc == 4 ? argv[3] : "tracks.png");
  const vnxLibraryVersion* v = vnxcvGetLibVersion();

  Image8 first, second;
  if (builtIn) {
    vnxdemo::renderScenePair(kSceneWidth, kSceneHeight, kSceneMotion, first, second);
    std::printf("vnxcv %s (%s, target %s): feature tracking between built-in %dx%d frames moved by (%.2f, %.2f) px\n",
                v->version, v->name, v->targetCpu, kSceneWidth, kSceneHeight, kSceneMotion.dx, kSceneMotion.dy);
  } else {
    loadGray(argv[1], first);
    loadGray(argv[2], second);
    if (first.width != second.width || first.height != second.height) {
      std::fprintf(stderr, "vnxdemo: %s is %dx%d but %s is %dx%d: the frames must have one size\n", argv[1],
                   first.width, first.height, argv[2], second.width, second.height);
      return EXIT_FAILURE;
    }
    std::printf("vnxcv %s (%s, target %s): feature tracking from %s to %s (%dx%d)\n", v->version, v->name,
                v->targetCpu, argv[1], argv[2], first.width, first.height);
  }

  const vnxdemo::TrackOptions options;
  const vnxdemo::TrackResult tracks = vnxdemo::trackFeatures(first, second, options);
  std::printf("pyramids: %d levels of rate %.0f:", int(tracks.levelSizes.size()), options.rate);
  for (const vnxiSize& s : tracks.levelSizes) std::printf(" %dx%d", s.width, s.height);
  std::printf("\ncorners: %d picked on level 0 by MinEigenVal, at least %d px apart\n", int(tracks.prev.size()),
              options.minDistance);
  if (tracks.prev.empty()) {
    std::fprintf(stderr, "vnxdemo: no corners to track in %s\n", builtIn ? "the built-in frame" : argv[1]);
    return EXIT_FAILURE;
  }

  int tracked = 0;
  double sumError = 0, maxError = 0, sumDx = 0, sumDy = 0;
  for (std::size_t i = 0; i < tracks.prev.size(); ++i) {
    if (tracks.status[i] != 0) continue;
    ++tracked;
    const double dx = double(tracks.next[i].x) - tracks.prev[i].x, dy = double(tracks.next[i].y) - tracks.prev[i].y;
    sumDx += dx;
    sumDy += dy;
    const double e = std::hypot(dx - kSceneMotion.dx, dy - kSceneMotion.dy);
    sumError += e;
    maxError = std::max(maxError, e);
  }
  std::printf("tracked: %d of %d corners (%dx%d windows, levels %d to 0)\n", tracked, int(tracks.prev.size()),
              options.winSize, options.winSize, tracks.maxLev);
  if (tracked > 0) {
    std::printf("mean motion of the tracked corners: (%.3f, %.3f) px\n", sumDx / tracked, sumDy / tracked);
    if (builtIn)
      std::printf("mean error against the known motion: %.4f px (largest %.4f px)\n", sumError / tracked, maxError);
  }

  std::string error;
  if (!vnxdemo::writePng(out, drawTracks(first, tracks), error)) {
    std::fprintf(stderr, "vnxdemo: cannot write %s: %s\n", out, error.c_str());
    return EXIT_FAILURE;
  }
  std::printf("tracks written to %s\n", out);
  return EXIT_SUCCESS;
}
