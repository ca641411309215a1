// Chamfer distance transforms: the standard masks, the two passes over the ROI
// serial or in bands, and the 8u-to-32f members.
//
// Bands. Each pass runs in bands of rows at once, every band treating its first
// rows (forward) or last rows (backward) as if they lay on the ROI's edge. A row is
// a fixed function of its source row and the `radius` rows before it in the pass,
// and the pass is monotone, so a band's rows are never below the serial ones. The
// seams are then joined in pass order on the calling thread: the band's rows are
// computed again from the rows before the seam (serial values by then), each one
// into a scratch row; a row that comes out the same is not copied, and once
// `radius` rows in a row come out the same, every later row of the band is the
// serial one as well (it is the same function of the same rows), so the join stops.
// The backward pass may recompute from a band's own values instead of the forward
// ones: min(own, serial neighbours + weights) is the serial value since the own
// value is itself a minimum over terms no smaller than the serial ones. Any split,
// any team size, the serial bits; on ordinary images a join costs a row or two, on
// an image whose distances all come from one corner it repeats the bands after it.
#include <cstring>

#include "parallel.h"
#include "vncvdistrans.h"

namespace {

template <class D>
D* ownDistRow(const ownDistImage<D>& img, int y) {
  return ownRow(img.dst, img.dstStep, y);
}

// Forward stages of row y into out, with the rows above from yTop on.
template <class D>
void ownDistForwardRow(const ownDistImage<D>& img, const ownChamfer<D>& w, int y, int yTop, D* out) {
  const ownDistNeighbours<D> nb{y - 1 >= yTop ? ownDistRow(img, y - 1) : nullptr,
                                w.radius == 2 && y - 2 >= yTop ? ownDistRow(img, y - 2) : nullptr};
  ownDistVerticalRow_sse2(ownRow(img.src, img.srcStep, y), nb, out, img.roi.width, w);
  ownDistScanForwardRow_sse2(out, img.roi.width, w.a);
}

// Backward stages of row y held in row, with the rows below up to yEnd - 1.
template <class D>
void ownDistBackwardRow(const ownDistImage<D>& img, const ownChamfer<D>& w, int y, int yEnd, D* row) {
  const ownDistNeighbours<D> nb{y + 1 < yEnd ? ownDistRow(img, y + 1) : nullptr,
                                w.radius == 2 && y + 2 < yEnd ? ownDistRow(img, y + 2) : nullptr};
  ownDistVerticalRow_sse2(nullptr, nb, row, img.roi.width, w);
  ownDistScanBackwardRow_sse2(row, img.roi.width, w.a);
}

// Joins the band y0 .. y1 - 1 to the rows above it after the forward pass.
template <class D>
void ownDistJoinForward(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1, D* scratch) {
  const std::size_t bytes = sizeof(D) * static_cast<std::size_t>(img.roi.width);
  int same = 0;
  for (int y = y0; y < y1 && same < w.radius; ++y) {
    ownDistForwardRow(img, w, y, 0, scratch);
    D* row = ownDistRow(img, y);
    if (std::memcmp(scratch, row, bytes) == 0) {
      ++same;
    } else {
      std::memcpy(row, scratch, bytes);
      same = 0;
    }
  }
}

// Joins the band y0 .. y1 - 1 to the rows below it after the backward pass.
template <class D>
void ownDistJoinBackward(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1, D* scratch) {
  const std::size_t bytes = sizeof(D) * static_cast<std::size_t>(img.roi.width);
  int same = 0;
  for (int y = y1 - 1; y >= y0 && same < w.radius; --y) {
    D* row = ownDistRow(img, y);
    std::memcpy(scratch, row, bytes);
    ownDistBackwardRow(img, w, y, img.roi.height, scratch);
    if (std::memcmp(scratch, row, bytes) == 0) {
      ++same;
    } else {
      std::memcpy(row, scratch, bytes);
      same = 0;
    }
  }
}

inline void* ownDistScratch(vnx8u*, int n) { return ownMalloc_8u(n); }
inline void* ownDistScratch(vnx16u*, int n) { return ownMalloc_16u(n); }
inline void* ownDistScratch(vnx32f*, int n) { return ownMalloc_32(n); }

}  // namespace

template <class D>
void ownDistForwardBand(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1) {
  for (int y = y0; y < y1; ++y) ownDistForwardRow(img, w, y, y0, ownDistRow(img, y));
}

template <class D>
void ownDistBackwardBand(const ownDistImage<D>& img, const ownChamfer<D>& w, int y0, int y1) {
  for (int y = y1 - 1; y >= y0; --y) ownDistBackwardRow(img, w, y, y1, ownDistRow(img, y));
}

template <class D>
vnxStatus ownDistanceTransform_omp(const ownDistImage<D>& img, const ownChamfer<D>& w, ownDistSplit split) {
  const int h = img.roi.height;
  const int n = split == ownDistSplit::Bands ? ownDistanceBandCount(img.roi) : 1;
  if (n <= 1) {
    ownDistForwardBand(img, w, 0, h);
    ownDistBackwardBand(img, w, 0, h);
    return vnxStatusOk;
  }
  ownBlock scratch(ownDistScratch(static_cast<D*>(nullptr), img.roi.width));
  if (!scratch) return vnxStatusNoMemory;
  D* row = static_cast<D*>(scratch.get());
  const ownBandSplit bands{h, n};
  ownRunBands(bands, [&](int, int y0, int y1) { ownDistForwardBand(img, w, y0, y1); });
  for (int b = 1; b < n; ++b) ownDistJoinForward(img, w, bands.begin(b), bands.end(b), row);
  ownRunBands(bands, [&](int, int y0, int y1) { ownDistBackwardBand(img, w, y0, y1); });
  for (int b = n - 2; b >= 0; --b) ownDistJoinBackward(img, w, bands.begin(b), bands.end(b), row);
  return vnxStatusOk;
}

template vnxStatus ownDistanceTransform_omp(const ownDistImage<vnx8u>&, const ownChamfer<vnx8u>&, ownDistSplit);
template vnxStatus ownDistanceTransform_omp(const ownDistImage<vnx16u>&, const ownChamfer<vnx16u>&, ownDistSplit);
template vnxStatus ownDistanceTransform_omp(const ownDistImage<vnx32f>&, const ownChamfer<vnx32f>&, ownDistSplit);
template void ownDistForwardBand(const ownDistImage<vnx8u>&, const ownChamfer<vnx8u>&, int, int);
template void ownDistForwardBand(const ownDistImage<vnx16u>&, const ownChamfer<vnx16u>&, int, int);
template void ownDistForwardBand(const ownDistImage<vnx32f>&, const ownChamfer<vnx32f>&, int, int);
template void ownDistBackwardBand(const ownDistImage<vnx8u>&, const ownChamfer<vnx8u>&, int, int);
template void ownDistBackwardBand(const ownDistImage<vnx16u>&, const ownChamfer<vnx16u>&, int, int);
template void ownDistBackwardBand(const ownDistImage<vnx32f>&, const ownChamfer<vnx32f>&, int, int);

// Integer weights clamped to the far value; 3x3 with b >= 2a leaves the diagonals out.
template <class D>
static ownChamfer<D> ownChamferOfInt(const vnx32s* m, ownChamferMask mask) {
  const D far = ownDistanceFar<D>();
  auto clamp = [&](vnx32s v) { return static_cast<D>(v < far ? v : far); };
  const bool is3x3 = mask == ownChamferMask::Mask3x3;
  return {far, clamp(m[0]), clamp(m[1]), is3x3 ? D(0) : clamp(m[2]), is3x3 ? 1 : 2,
          is3x3 && static_cast<long long>(m[1]) >= 2ll * m[0]};
}
template <>
ownChamfer<vnx8u> ownChamferOf<vnx8u, vnx32s>(const vnx32s* m, ownChamferMask mask) {
  return ownChamferOfInt<vnx8u>(m, mask);
}
template <>
ownChamfer<vnx16u> ownChamferOf<vnx16u, vnx32s>(const vnx32s* m, ownChamferMask mask) {
  return ownChamferOfInt<vnx16u>(m, mask);
}
template <>
ownChamfer<vnx32f> ownChamferOf<vnx32f, vnx32f>(const vnx32f* m, ownChamferMask mask) {
  const bool is3x3 = mask == ownChamferMask::Mask3x3;
  return {FLT_MAX, m[0], m[1], is3x3 ? 0.0f : m[2], is3x3 ? 1 : 2, false};
}

// ---- The standard masks ----------------------------------------------------------

namespace {
// Rows by kerSize x 10 + norm: infinity, L1, L2 for 3x3, then for 5x5.
constexpr vnx32s kOwnMask32s[2][3][3] = {{{1, 1, 0}, {1, 2, 0}, {2, 3, 0}}, {{1, 1, 2}, {1, 2, 3}, {5, 7, 11}}};
constexpr vnx32f kOwnMask32f[2][3][3] = {{{1.0f, 1.0f, 0.0f}, {1.0f, 2.0f, 0.0f}, {0.955f, 1.3693f, 0.0f}},
                                         {{1.0f, 1.0f, 2.0f}, {1.0f, 2.0f, 3.0f}, {1.0f, 1.4f, 2.1969f}}};

template <class W>
vnxStatus ownGetMask(int kerSize, int norm, W* metrics, const W (&table)[2][3][3]) {
  if (vnxStatus st = ownCheckPtrs({metrics})) return st;
  if (kerSize != 3 && kerSize != 5) return vnxStatusBadSize;
  if (norm < 0 || norm > 2) return vnxStatusBadArg;
  const int k = kerSize == 3 ? 0 : 1;
  for (int i = 0; i < kerSize / 2 + 1; ++i) metrics[i] = table[k][norm][i];
  return vnxStatusOk;
}
}  // namespace

VNX_API vnxStatus vnxiGetDistanceTransformMask_32s(int kerSize, int norm, vnx32s* pMetrics) noexcept {
  return ownGetMask(kerSize, norm, pMetrics, kOwnMask32s);
}

VNX_API vnxStatus vnxiGetDistanceTransformMask_32f(int kerSize, int norm, vnx32f* pMetrics) noexcept {
  return ownGetMask(kerSize, norm, pMetrics, kOwnMask32f);
}

VNX_API vnxStatus vnxiGetDistanceTransformMask(int maskType, vnx32f* pMetrics) noexcept {
  return ownGetMask(maskType / 10, maskType % 10, pMetrics, kOwnMask32f);
}

// ---- 8u to 32f -------------------------------------------------------------------

VNX_API vnxStatus vnxiDistanceTransform_3x3_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32f* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask3x3);
}

VNX_API vnxStatus vnxiDistanceTransform_5x5_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32f* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask5x5);
}
