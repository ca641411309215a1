#include "tracker.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>

namespace vnxdemo {
namespace {

constexpr int kSobelKernel = 0;           // MinEigenVal derivative kernel: 0 Sobel, 1 Scharr
constexpr int kAperture = 3;              // 3x3 derivatives
constexpr int kAverageWindow = 5;         // products averaged over 5x5
constexpr int kLinearInterpolation = 2;   // the layer steps' only resampling mode
constexpr vnx16s kGauss5[] = {1, 4, 6, 4, 1};

struct PyramidFree {
  void operator()(vnxiPyramid* p) const { require(vnxiPyramidFree(p), "vnxiPyramidFree"); }
};
struct LayerDownFree {
  void operator()(vnxiPyramidState* p) const {
    require(vnxiPyramidLayerDownFree_8u_C1R(p), "vnxiPyramidLayerDownFree_8u_C1R");
  }
};
struct FlowFree {
  void operator()(vnxiOptFlowPyrLKState* p) const {
    require(vnxiOpticalFlowPyrLKFree_8u_C1R(p), "vnxiOpticalFlowPyrLKFree_8u_C1R");
  }
};

// A pyramid record of an 8u frame with the images of its levels. Level 0 is the
// frame itself; each level above is the layer-down step of the one below.
class GrayPyramid {
 public:
  GrayPyramid(const Image8& base, const TrackOptions& options, const vnxiPyramidState* layerDown) {
    vnxiPyramid* record = nullptr;
    require(vnxiPyramidInitAlloc(&record, options.levels, vnxiSize{base.width, base.height}, options.rate),
            "vnxiPyramidInitAlloc");
    record_.reset(record);
    images_.resize(std::size_t(record->level) + 1);
    // The record lists non-const images; the flow only reads them.
    record->pImage[0] = const_cast<std::uint8_t*>(base.pixels.data());
    record->pStep[0] = base.step();
    for (int k = 1; k <= record->level; ++k) {
      const vnxiSize below = record->pRoi[k - 1], size = record->pRoi[k];
      images_[k].assign(std::size_t(size.width) * size.height, 0);
      record->pImage[k] = images_[k].data();
      record->pStep[k] = size.width;
      require(vnxiPyramidLayerDown_8u_C1R(static_cast<const vnx8u*>(record->pImage[k - 1]), record->pStep[k - 1],
                                          below, images_[k].data(), record->pStep[k], size, layerDown),
              "vnxiPyramidLayerDown_8u_C1R");
    }
  }
  const vnxiPyramid* record() const { return record_.get(); }
  int levels() const { return record_->level; }

 private:
  std::unique_ptr<vnxiPyramid, PyramidFree> record_;
  std::vector<std::vector<vnx8u>> images_;  // levels 1..L (level 0 is the caller's frame)
};

// The strongest corners of `frame`: local maxima of the smaller eigenvalue that reach
// `quality` times the largest one, strongest first, each at least minDistance from
// every stronger one kept, at most maxCorners. Pixels closer to the border than half
// a window are skipped: their windows would be mostly outside the frame.
std::vector<vnxiPoint32f> pickCorners(const Image8& frame, const TrackOptions& options) {
  const int w = frame.width, h = frame.height;
  const vnxiSize roi{w, h};
  int bufferSize = 0;
  require(vnxiMinEigenValGetBufferSize_8u32f_C1R(roi, kAperture, kAverageWindow, &bufferSize),
          "vnxiMinEigenValGetBufferSize_8u32f_C1R");
  std::vector<vnx8u> buffer(static_cast<std::size_t>(bufferSize));
  std::vector<vnx32f> eig(std::size_t(w) * h);
  require(vnxiMinEigenVal_8u32f_C1R(frame.pixels.data(), frame.step(), eig.data(), w * int(sizeof(vnx32f)), roi,
                                    kSobelKernel, kAperture, kAverageWindow, buffer.data()),
          "vnxiMinEigenVal_8u32f_C1R");

  const float strongest = *std::max_element(eig.begin(), eig.end());
  if (!(strongest > 0)) return {};
  const float floor = options.quality * strongest;
  const int margin = std::max(1, options.winSize / 2);
  auto at = [&](int x, int y) { return eig[std::size_t(y) * w + x]; };
  struct Candidate {
    float strength;
    int x, y;
  };
  std::vector<Candidate> candidates;
  for (int y = margin; y < h - margin; ++y)
    for (int x = margin; x < w - margin; ++x) {
      const float v = at(x, y);
      if (v < floor) continue;
      // A maximum of its 3x3 neighbourhood; on a plateau the first pixel in raster order wins.
      const bool peak = v > at(x - 1, y - 1) && v > at(x, y - 1) && v > at(x + 1, y - 1) && v > at(x - 1, y) &&
                        v >= at(x + 1, y) && v >= at(x - 1, y + 1) && v >= at(x, y + 1) && v >= at(x + 1, y + 1);
      if (peak) candidates.push_back({v, x, y});
    }
  // Strongest first; equal strengths in raster order, so the choice never depends on the sort.
  std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    if (a.strength != b.strength) return a.strength > b.strength;
    return a.y != b.y ? a.y < b.y : a.x < b.x;
  });

  // Kept corners binned in cells of minDistance: a new one only looks at the 3x3 cells around it.
  const int cell = std::max(1, options.minDistance);
  const int cols = w / cell + 1, rows = h / cell + 1;
  std::vector<std::vector<vnxiPoint32f>> grid(std::size_t(cols) * rows);
  std::vector<vnxiPoint32f> corners;
  const float minDist2 = float(options.minDistance) * float(options.minDistance);
  for (const Candidate& c : candidates) {
    if (int(corners.size()) == options.maxCorners) break;
    const int cx = c.x / cell, cy = c.y / cell;
    bool clear = true;
    for (int gy = std::max(0, cy - 1); clear && gy <= std::min(rows - 1, cy + 1); ++gy)
      for (int gx = std::max(0, cx - 1); clear && gx <= std::min(cols - 1, cx + 1); ++gx)
        for (const vnxiPoint32f& p : grid[std::size_t(gy) * cols + gx]) {
          const float dx = p.x - float(c.x), dy = p.y - float(c.y);
          if (dx * dx + dy * dy < minDist2) {
            clear = false;
            break;
          }
        }
    if (!clear) continue;
    const vnxiPoint32f p{float(c.x), float(c.y)};
    grid[std::size_t(cy) * cols + cx].push_back(p);
    corners.push_back(p);
  }
  return corners;
}

}  // namespace

void require(vnxStatus status, const char* call) {
  if (status == vnxStatusOk) return;
  std::fprintf(stderr, "vnxdemo: %s failed: %s (status %d)\n", call, vnxcvGetStatusString(status), int(status));
  std::exit(EXIT_FAILURE);
}

TrackResult trackFeatures(const Image8& first, const Image8& second, const TrackOptions& options) {
  const vnxiSize roi{first.width, first.height};
  TrackResult result;

  // One layer-down state serves both pyramids: it is built for the base size and
  // knows the size of every level below it.
  vnxiPyramidState* layer = nullptr;
  require(vnxiPyramidLayerDownInitAlloc_8u_C1R(&layer, roi, options.rate, kGauss5, int(std::size(kGauss5)),
                                               kLinearInterpolation),
          "vnxiPyramidLayerDownInitAlloc_8u_C1R");
  const std::unique_ptr<vnxiPyramidState, LayerDownFree> layerOwner(layer);
  const GrayPyramid pyr1(first, options, layer), pyr2(second, options, layer);
  result.levelSizes.assign(pyr1.record()->pRoi, pyr1.record()->pRoi + pyr1.levels() + 1);

  result.prev = pickCorners(first, options);
  const int n = int(result.prev.size());
  if (n == 0) return result;

  vnxiOptFlowPyrLKState* flow = nullptr;
  require(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&flow, roi, options.winSize, 0), "vnxiOpticalFlowPyrLKInitAlloc_8u_C1R");
  const std::unique_ptr<vnxiOptFlowPyrLKState, FlowFree> flowOwner(flow);
  // The coarsest level used still holds a whole window: on a smaller level every
  // window is mostly outside the image and its points are lost there. With exactly
  // two levels the flow carries the level-1 estimate to level 0 unscaled, so a
  // two-level pyramid is tracked on the base level alone.
  result.maxLev = std::min(pyr1.levels(), pyr2.levels());
  while (result.maxLev > 0 && (result.levelSizes[std::size_t(result.maxLev)].width < options.winSize ||
                               result.levelSizes[std::size_t(result.maxLev)].height < options.winSize))
    --result.maxLev;
  if (result.maxLev == 1) result.maxLev = 0;
  result.next = result.prev;  // no prior guess: start where the corners were
  result.status.assign(std::size_t(n), 0);
  result.error.assign(std::size_t(n), 0.0f);
  require(vnxiOpticalFlowPyrLK_8u_C1R(pyr1.record(), pyr2.record(), result.prev.data(), result.next.data(),
                                      result.status.data(), result.error.data(), n, options.winSize, result.maxLev,
                                      options.maxIter, options.threshold, flow),
          "vnxiOpticalFlowPyrLK_8u_C1R");
  return result;
}

}  // namespace vnxdemo
