// Motion detection on built-in synthetic frames: a textured square moves over a
// noisy background. Each frame updates a running-average background, takes the
// difference against it, marks the moving pixels into a motion-history image and
// samples that history along a line across the path. The last history image is
// written as a PNG.
//
//   vnxmotion [output.png]
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "pngio.h"
#include "vnxcv.h"

namespace {

constexpr int kW = 320, kH = 240, kFrames = 24, kSide = 40;
constexpr float kAlpha = 0.05f, kDuration = 6.0f, kThreshold = 40.0f;

// Deterministic noise so every run prints the same numbers.
std::uint32_t hashNoise(std::uint32_t x) {
  x ^= x >> 16;
  x *= 0x7feb352dU;
  x ^= x >> 15;
  x *= 0x846ca68bU;
  return x ^ (x >> 16);
}

// Frame t: a smooth background with sensor noise, and a checkered square whose
// top-left corner moves 8 pixels right and 4 down each frame.
void renderFrame(int t, std::vector<vnx8u>& frame, bool withObject = true) {
  const int ox = 20 + 8 * t, oy = 40 + 4 * t;
  for (int y = 0; y < kH; ++y)
    for (int x = 0; x < kW; ++x) {
      int v = 60 + (x + y) / 8 + int(hashNoise(std::uint32_t(t * kW * kH + y * kW + x)) % 9) - 4;
      if (withObject && x >= ox && x < ox + kSide && y >= oy && y < oy + kSide) v = (((x - ox) / 5 + (y - oy) / 5) & 1) ? 230 : 170;
      frame[std::size_t(y) * kW + x] = static_cast<vnx8u>(v);
    }
}

#define CHECK(call)                                                     \
  do {                                                                  \
    const vnxStatus st_ = (call);                                       \
    if (st_ != vnxStatusOk) {                                           \
      std::fprintf(stderr, "%s failed with status %d\n", #call, st_);   \
      return 1;                                                         \
    }                                                                   \
  } while (0)

}  // namespace

int main(int argc, char** argv) {
  const char* out = argc > 1 ? argv[1] : "motion_history.png";
  const vnxLibraryVersion* v = vnxcvGetLibVersion();
  std::printf("vnxcv %s (%s, target %s): motion detection on %d synthetic %dx%d frames\n", v->version, v->name,
              v->targetCpu, kFrames, kW, kH);

  const vnxiSize roi{kW, kH};
  const int step8 = kW, step32 = kW * 4;
  std::vector<vnx8u> frame(std::size_t(kW) * kH), silhouette(frame.size());
  std::vector<vnx32f> background(frame.size(), 0.0f), frameF(frame.size()), diff(frame.size()),
      history(frame.size(), 0.0f);

  renderFrame(0, frame, false);  // the empty scene seeds the background
  CHECK(vnxiAdd_8u32f_C1IR(frame.data(), step8, background.data(), step32, roi));  // 0 + frame: exact

  // The line crosses the object's diagonal path from the lower left to the upper right.
  const vnxiPoint lineStart{20, kH - 1}, lineEnd{kW - 1, 20};
  const int lineCount = std::max(std::abs(lineEnd.x - lineStart.x), std::abs(lineEnd.y - lineStart.y)) + 1;
  std::vector<vnx32f> line(lineCount);

  std::printf("frame  moving  mean|diff|  line: marked  newest\n");
  for (int t = 1; t < kFrames; ++t) {
    renderFrame(t, frame);
    // The frame as floats (0 + frame), its distance to the background, and the update.
    std::fill(frameF.begin(), frameF.end(), 0.0f);
    CHECK(vnxiAdd_8u32f_C1IR(frame.data(), step8, frameF.data(), step32, roi));
    CHECK(vnxiAbsDiff_32f_C1R(frameF.data(), step32, background.data(), step32, diff.data(), step32, roi));
    CHECK(vnxiAddWeighted_8u32f_C1IR(frame.data(), step8, background.data(), step32, roi, kAlpha));

    int moving = 0;
    double sum = 0;
    for (std::size_t i = 0; i < diff.size(); ++i) {
      silhouette[i] = diff[i] > kThreshold ? 255 : 0;
      moving += silhouette[i] != 0;
      sum += diff[i];
    }
    CHECK(vnxiUpdateMotionHistory_8u32f_C1IR(silhouette.data(), step8, history.data(), step32, roi, float(t),
                                             kDuration));
    CHECK(vnxiSampleLine_32f_C1R(history.data(), step32, roi, line.data(), lineStart, lineEnd));
    int marked = 0;
    float newest = 0;
    for (float h : line) {
      marked += h > 0;
      newest = std::max(newest, h);
    }
    std::printf("%5d  %6d  %10.2f  %12d  %6.0f\n", t, moving, sum / double(diff.size()), marked, newest);
  }

  // Recent motion bright, older motion darker, none black.
  const float now = float(kFrames - 1);
  vnxdemo::Image8 gray;
  gray.width = kW;
  gray.height = kH;
  gray.pixels.resize(history.size());
  for (std::size_t i = 0; i < history.size(); ++i)
    gray.pixels[i] = history[i] > 0 ? vnx8u(255.0f * (history[i] - (now - kDuration)) / kDuration) : 0;
  std::string error;
  if (!vnxdemo::writePng(out, gray, error)) {
    std::fprintf(stderr, "could not write %s: %s\n", out, error.c_str());
    return 1;
  }
  std::printf("motion-history image written to %s\n", out);
  return 0;
}
