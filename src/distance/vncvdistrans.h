// Chamfer distance transforms: weights, row kernels and the band driver shared by
// the 8u, 16u and 32f units.
//
// Each raster pass over a row runs in two stages:
//   1. the vertical stage: every pixel takes the minimum of its far value and the
//      neighbours on the rows already done (forward: above; backward: below) plus
//      their weights; the forward stage writes 0 at features;
//   2. the in-row scan: d[x] = min(d[x], d[x -/+ 1] + a), left to right forward,
//      right to left backward.
// This is the per-pixel order of the two passes: the in-row neighbour is the only
// one a pixel shares with its own row, and the minimum is taken over the same terms.
// Integer sums are formed in int and compared with values that are never above the
// far value, which is the same as clamping each sum to the far value first. Float
// sums are rounded once each, like the passes, and are compared with values no
// larger than the largest float, so an infinite sum never wins.
#pragma once

#include <cfloat>
#include <type_traits>

#include "check.h"
#include "traits.h"

enum class ownChamferMask { Mask3x3, Mask5x5 };

// Weights of one call. Integer weights are clamped to the far value first: a larger
// weight gives the far value in every sum it enters, exactly as the clamp would.
template <class D>
struct ownChamfer {
  D far;
  D a, b, c;    // c only for 5x5
  int radius;   // 1 for 3x3, 2 for 5x5
  bool orthogonalOnly;  // 3x3 integer weights with b >= 2a: the diagonals never win
};

template <class D>
constexpr D ownDistanceFar() {
  return std::is_same<D, vnx32f>::value ? static_cast<D>(FLT_MAX) : static_cast<D>(ownTraits<D>::highest);
}

// One distance image: the source decides features (0), the destination gets distances.
// For the in-place form both point to the same rows.
template <class D>
struct ownDistImage {
  const vnx8u* src;
  int srcStep;
  D* dst;
  int dstStep;
  vnxiSize roi;
};

// Rows available above (forward) or below (backward) a row: null where the row lies
// outside the ROI or on the other side of a band edge not yet joined.
template <class D>
struct ownDistNeighbours {
  const D* near;  // distance 1
  const D* far2;  // distance 2 (5x5 only)
};

inline int ownDistSum(int v, int w) { return v + w; }
inline float ownDistSum(float v, float w) { return v + w; }
template <class D>
using ownDistAcc = typename std::conditional<std::is_same<D, vnx32f>::value, float, int>::type;

// Vertical stage, pixels x0 .. n - 1 of a row of `width`: the reference and the tail.
// Forward: out[x] = src[x] == 0 ? 0 : min(far, neighbours above + weights).
// Backward (src null): out[x] = min(out[x], neighbours below + weights).
template <class D>
void ownDistVerticalRow(const vnx8u* src, ownDistNeighbours<D> nb, D* out, int x0, int n, int width,
                        const ownChamfer<D>& w) {
  using A = ownDistAcc<D>;
  for (int x = x0; x < n; ++x) {
    A m = src ? static_cast<A>(w.far) : static_cast<A>(out[x]);
    auto take = [&m](A v) { m = v < m ? v : m; };
    if (nb.near) {
      take(ownDistSum(static_cast<A>(nb.near[x]), static_cast<A>(w.a)));
      if (!w.orthogonalOnly) {
        if (x > 0) take(ownDistSum(static_cast<A>(nb.near[x - 1]), static_cast<A>(w.b)));
        if (x + 1 < width) take(ownDistSum(static_cast<A>(nb.near[x + 1]), static_cast<A>(w.b)));
      }
      if (w.radius == 2) {
        if (x > 1) take(ownDistSum(static_cast<A>(nb.near[x - 2]), static_cast<A>(w.c)));
        if (x + 2 < width) take(ownDistSum(static_cast<A>(nb.near[x + 2]), static_cast<A>(w.c)));
      }
    }
    if (w.radius == 2 && nb.far2) {
      if (x > 0) take(ownDistSum(static_cast<A>(nb.far2[x - 1]), static_cast<A>(w.c)));
      if (x + 1 < width) take(ownDistSum(static_cast<A>(nb.far2[x + 1]), static_cast<A>(w.c)));
    }
    out[x] = (src && src[x] == 0) ? D(0) : static_cast<D>(m);
  }
}

// In-row scans over d[0 .. n - 1]: the reference. The vector bodies call them on a
// shifted row for the pixels they leave (the first pixel then is final already).
template <class D>
void ownDistScanForwardRow(D* d, int n, D a) {
  using A = ownDistAcc<D>;
  for (int x = 1; x < n; ++x) {
    const A v = ownDistSum(static_cast<A>(d[x - 1]), static_cast<A>(a));
    if (v < static_cast<A>(d[x])) d[x] = static_cast<D>(v);
  }
}
template <class D>
void ownDistScanBackwardRow(D* d, int n, D a) {
  using A = ownDistAcc<D>;
  for (int x = n - 2; x >= 0; --x) {
    const A v = ownDistSum(static_cast<A>(d[x + 1]), static_cast<A>(a));
    if (v < static_cast<A>(d[x])) d[x] = static_cast<D>(v);
  }
}

// Vector bodies (vncvdistransrow.cpp): whole vectors, then the templates above.
void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx8u> nb, vnx8u* out, int width,
                             const ownChamfer<vnx8u>& w);
void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx16u> nb, vnx16u* out, int width,
                             const ownChamfer<vnx16u>& w);
void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx32f> nb, vnx32f* out, int width,
                             const ownChamfer<vnx32f>& w);
void ownDistScanForwardRow_sse2(vnx8u* d, int n, vnx8u a);
void ownDistScanForwardRow_sse2(vnx16u* d, int n, vnx16u a);
void ownDistScanForwardRow_sse2(vnx32f* d, int n, vnx32f a);
void ownDistScanBackwardRow_sse2(vnx8u* d, int n, vnx8u a);
void ownDistScanBackwardRow_sse2(vnx16u* d, int n, vnx16u a);
void ownDistScanBackwardRow_sse2(vnx32f* d, int n, vnx32f a);

// The two passes over the whole ROI, serial or in bands with repaired seams
// (vncvdistransform_omp.cpp). vnxStatusNoMemory when the seam row cannot be had.
// Serial: the integer members whose weights have a > b never run in bands.
enum class ownDistSplit { Bands, Serial };
template <class D>
vnxStatus ownDistanceTransform_omp(const ownDistImage<D>& img, const ownChamfer<D>& w, ownDistSplit split);

// Forward and backward pass over rows y0 .. y1 - 1 with nothing joined beyond the
// band's edges; the serial transform is both passes over 0 .. height.
template <class D>
void ownDistForwardBand(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1);
template <class D>
void ownDistBackwardBand(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1);

// Weights from the caller's metrics (already checked positive).
// Defined for (8u, 32s), (16u, 32s) and (32f, 32f).
template <class D, class W>
ownChamfer<D> ownChamferOf(const W* metrics, ownChamferMask mask);
template <>
ownChamfer<vnx8u> ownChamferOf<vnx8u, vnx32s>(const vnx32s* metrics, ownChamferMask mask);
template <>
ownChamfer<vnx16u> ownChamferOf<vnx16u, vnx32s>(const vnx32s* metrics, ownChamferMask mask);
template <>
ownChamfer<vnx32f> ownChamferOf<vnx32f, vnx32f>(const vnx32f* metrics, ownChamferMask mask);

// Metrics check, the last of the transform checks: a, b (and c for 5x5) positive.
// A float weight that is not above zero, NaN included, is a bad metric.
template <class W>
inline vnxStatus ownCheckMetrics(const W* metrics, ownChamferMask mask) {
  const int n = mask == ownChamferMask::Mask3x3 ? 2 : 3;
  for (int i = 0; i < n; ++i)
    if (!(metrics[i] > W(0))) return vnxStatusBadMetric;
  return vnxStatusOk;
}


// The transform checks in order: pointers, ROI, the source and destination steps
// against their row bytes, the destination step's multiple, then the metrics.
// The in-place form passes its one image as both.
template <class D, class W>
inline vnxStatus ownCheckDistance(const vnx8u* src, int srcStep, const D* dst, int dstStep, vnxiSize roi,
                                  const W* metrics, ownChamferMask mask) {
  if (vnxStatus st = ownCheck({src, dst, metrics}, roi,
                              {ownImg<vnx8u>(srcStep, roi.width), ownImg<D>(dstStep, roi.width)}))
    return st;
  return ownCheckMetrics(metrics, mask);
}

// Integer members run in bands only when a <= b; the 32f members by size alone.
inline ownDistSplit ownDistSplitFor(const vnx32s* metrics) {
  return metrics[0] <= metrics[1] ? ownDistSplit::Bands : ownDistSplit::Serial;
}
inline ownDistSplit ownDistSplitFor(const vnx32f*) { return ownDistSplit::Bands; }

// One transform member: its checks, then the two passes.
template <class D, class W>
vnxStatus ownDistanceMember(const vnx8u* src, int srcStep, D* dst, int dstStep, vnxiSize roi, const W* metrics,
                            ownChamferMask mask) {
  if (vnxStatus st = ownCheckDistance(src, srcStep, dst, dstStep, roi, metrics, mask)) return st;
  return ownDistanceTransform_omp(ownDistImage<D>{src, srcStep, dst, dstStep, roi}, ownChamferOf<D>(metrics, mask),
                                  ownDistSplitFor(metrics));
}
