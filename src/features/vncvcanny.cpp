// Canny edge detector on precomputed derivatives: magnitude with the low test,
// non-maximum suppression into a candidate map, seeds in raster order and last-in-
// first-out hysteresis over 8-connected candidates, all in parallel bands of rows; the
// edges that cross from band to band are continued on the calling thread.
#include <algorithm>
#include <cstring>

#include "check.h"
#include "features.h"
#include "parallel.h"
#include "simd.h"

bool ownCannySmallStack(vnxiSize roi) { return roi.width + 2 < 65535 && roi.height + 2 < 65535; }

// 5 or 9 bytes a pixel of the enlarged ROI (map and stack), four magnitude rows of
// w + 6 elements (16 * width + 96) and 64 bytes of alignment slack.
std::int64_t ownCannyBufferBytes(vnxiSize roi) {
  const std::int64_t cells = std::int64_t(roi.width + 2) * (roi.height + 2);
  return (ownCannySmallStack(roi) ? 5 : 9) * cells + 16 * std::int64_t(roi.width) + 160;
}

namespace {

inline char* ownAlign16(void* p) {
  return reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(p) + 15) & ~std::uintptr_t{15});
}

// Where the parts of the work buffer lie. Each part starts on a 16-byte boundary; the
// three alignments cost at most 45 of the 64 bytes of slack.
struct ownCannyLayout {
  vnx8u* map;
  char* stack;
  std::int64_t stackBytes;
  char* ring;
  std::int64_t mapStride;
  explicit ownCannyLayout(vnx8u* buffer, vnxiSize roi) {
    mapStride = roi.width + 2;
    const std::int64_t cells = mapStride * (roi.height + 2);
    map = reinterpret_cast<vnx8u*>(ownAlign16(buffer));
    stack = ownAlign16(map + cells);
    stackBytes = cells * (ownCannySmallStack(roi) ? 4 : 8);
    ring = ownAlign16(stack + stackBytes);
  }
};

// Bytes of one band's ring of three magnitude rows: columns -4 .. width + 1.
inline std::int64_t ownCannyRingBytes(int width) { return 3 * (std::int64_t(width) + 6) * 4; }

// Output row from map row r (255 for the seeds, 0 elsewhere) with the row's seeds pushed
// in order; returns the new top.
template <class E>
std::int64_t ownCannySeedRow(const ownCannyLayout& lay, int width, int r, vnx8u* d, ownCannyEntry<E>* stack,
                             std::int64_t sp) {
  const vnx8u* m = lay.map + r * lay.mapStride + 1;
  ownCannySeeds<E> seeds{stack, sp, static_cast<E>(r)};
  int x = 0;
  for (; x + 16 <= width; x += 16) ownCannyOutput16(ownLoad(m + x), d, x, seeds);
  ownCannyOutputTail(m, d, x, width, seeds);
  return seeds.sp;
}

// Rows y0 .. y1 - 1 of the map and the output: the band computes magnitudes of rows
// y0 - 1 .. y1 ("no candidate" beyond the ROI, columns beyond it too) into its ring,
// suppresses row by row, writing each output row and pushing its seeds in raster order.
// The ring may lie at the end of the band's stack, from entry ringEntry on: a row whose
// seeds could reach it pushes nothing, and its seeds and those of every row after it are
// pushed from the map once the ring is no longer needed. Returns the stack top.
template <class E, class D, class M>
std::int64_t ownCannySuppressBand(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep,
                                  vnxiSize roi, M low, M high, const ownCannyLayout& lay, char* ring,
                                  std::int64_t ringEntry, ownCannyEntry<E>* stack, int y0, int y1) {
  using R = typename ownCannyMagnitude<D>::type;
  constexpr R kNone = ownCannyMagnitude<D>::kNone;
  const std::int64_t stride = std::int64_t(roi.width) + 6;
  R* rows[3];
  for (int k = 0; k < 3; ++k) {
    R* r = reinterpret_cast<R*>(ring) + k * stride;
    std::fill(r, r + stride, kNone);
    rows[k] = r + 4;  // column 0; four columns to the left keep the row aligned
  }
  auto slot = [&](int y) { return rows[(y + 3) % 3]; };
  auto magnitude = [&](int y) {
    R* m = slot(y);
    if (y < 0 || y >= roi.height)
      std::fill(m, m + roi.width, kNone);
    else
      ownCannyMagnitudeRow_sse2(ownRow(pDx, dxStep, y), ownRow(pDy, dyStep, y), m, roi.width, low);
  };
  magnitude(y0 - 1);
  magnitude(y0);
  ownCannySeeds<E> seeds{stack, 0, 0};
  int waiting = y1;  // the first row whose seeds wait for the ring to go
  for (int y = y0; y < y1; ++y) {
    magnitude(y + 1);
    vnx8u* mapRow = lay.map + (y + 1) * lay.mapStride + 1;
    mapRow[-1] = 0;
    mapRow[roi.width] = 0;
    if (waiting == y1 && seeds.sp + roi.width > ringEntry) waiting = y, seeds.stack = nullptr;
    seeds.row = static_cast<E>(y + 1);
    ownCannySuppressRow_sse2(ownRow(pDx, dxStep, y), ownRow(pDy, dyStep, y), slot(y - 1), slot(y), slot(y + 1),
                             mapRow, ownRow(pDst, dstStep, y), roi.width, high, seeds);
  }
  std::int64_t sp = seeds.sp;
  for (int y = waiting; y < y1; ++y) sp = ownCannySeedRow(lay, roi.width, y + 1, ownRow(pDst, dstStep, y), stack, sp);
  return sp;
}

// Pops the top entry and visits upper-left, upper, upper-right, left, right, lower-left,
// lower, lower-right: a candidate not yet in the output becomes 255 and is pushed. Its
// map byte turns from candidate to edge, so each pixel is pushed once and the stack
// never holds more entries than the map has pixels. Only map rows rLo .. rHi are
// visited: a band grows its edges inside its own rows.
template <class E>
void ownCannyGrow(const ownCannyLayout& lay, ownCannyEntry<E>* stack, std::int64_t sp, int rLo, int rHi, vnx8u* pDst,
                  int dstStep) {
  const std::int64_t s = lay.mapStride;
  const std::int64_t offs[8] = {-s - 1, -s, -s + 1, -1, 1, s - 1, s, s + 1};
  const int dys[8] = {-1, -1, -1, 0, 0, 1, 1, 1}, dxs[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
  while (sp > 0) {
    const ownCannyEntry<E> e = stack[--sp];
    vnx8u* p = lay.map + e.row * s + e.col;
    const bool inner = int(e.row) > rLo && int(e.row) < rHi;
    for (int k = 0; k < 8; ++k) {
      const int r = int(e.row) + dys[k], c = int(e.col) + dxs[k];
      if (!inner && (r < rLo || r > rHi)) continue;  // another band's row: not even read
      if (!(p[offs[k]] & kOwnCannyCandidate)) continue;
      p[offs[k]] = kOwnCannyEdge;
      ownRow(pDst, dstStep, r - 1)[c - 1] = 255;
      stack[sp++] = {static_cast<E>(r), static_cast<E>(c)};
    }
  }
}

// Where two bands meet (ROI rows y - 1 and y): every edge pixel on one side pushes its
// candidates on the other side, which the bands could not reach; the pushed pixels then
// grow over the whole map.
template <class E>
std::int64_t ownCannySeam(const ownCannyLayout& lay, int width, int y, vnx8u* pDst, int dstStep,
                          ownCannyEntry<E>* stack, std::int64_t sp) {
  const __m128i edge = _mm_set1_epi8(static_cast<char>(kOwnCannyEdge));
  for (int side = 0; side < 2; ++side) {
    const int from = side == 0 ? y : y + 1, to = side == 0 ? y + 1 : y;  // map rows
    const vnx8u* a = lay.map + from * lay.mapStride;
    vnx8u* b = lay.map + to * lay.mapStride;
    for (int c = 1; c <= width; ++c) {
      if (c + 16 <= width + 1 && !_mm_movemask_epi8(_mm_cmpeq_epi8(ownLoad(a + c), edge))) {
        c += 15;  // sixteen bytes without an edge pixel
        continue;
      }
      if (a[c] != kOwnCannyEdge) continue;
      for (int d = c - 1; d <= c + 1; ++d) {
        if (!(b[d] & kOwnCannyCandidate)) continue;
        b[d] = kOwnCannyEdge;
        ownRow(pDst, dstStep, to - 1)[d - 1] = 255;
        stack[sp++] = {static_cast<E>(to), static_cast<E>(d)};
      }
    }
  }
  return sp;
}

// Where a band keeps its ring of magnitude rows: after the stack (a serial run), or at
// the end of the band's own part of the stack (bands running at once).
enum class ownCannyRing { AfterStack, EndOfBandStack };

// A band: suppression of its rows with its seeds in raster order, grown inside its
// rows, on its own part of the stack (the entries of its map rows: a band pushes each of
// its pixels at most once).
template <class E, class D, class M>
void ownCannyBand(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep, vnxiSize roi, M low,
                  M high, const ownCannyLayout& lay, ownCannyRing where, int y0, int y1) {
  ownCannyEntry<E>* stack = reinterpret_cast<ownCannyEntry<E>*>(lay.stack) + y0 * lay.mapStride;
  std::int64_t ringEntry = INT64_MAX;
  char* ring = lay.ring;
  if (where == ownCannyRing::EndOfBandStack) {
    const std::int64_t entries = (y1 - y0) * lay.mapStride, e = sizeof(ownCannyEntry<E>);
    ringEntry = entries - (ownCannyRingBytes(roi.width) + e - 1) / e;
    ring = reinterpret_cast<char*>(stack + ringEntry);
  }
  const std::int64_t sp = ownCannySuppressBand(pDx, dxStep, pDy, dyStep, pDst, dstStep, roi, low, high, lay, ring,
                                               ringEntry, stack, y0, y1);
  ownCannyGrow(lay, stack, sp, y0 + 1, y1, pDst, dstStep);
}

// The edge map is the set of candidates 8-connected to a seed, whatever order they are
// found in, and no stack can overflow (each pixel is pushed once): the bands grow their
// own seeds, then the seams continue the edges that cross from one band to the next.
template <class E, class D, class M>
void ownCannyRun(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep, vnxiSize roi, M low,
                 M high, const ownCannyLayout& lay) {
  int nBands = ownBandCount(roi, kOwnBandsCanny);
  if (nBands > 1 &&
      (roi.height / nBands) * lay.mapStride * std::int64_t(sizeof(ownCannyEntry<E>)) < 2 * ownCannyRingBytes(roi.width))
    nBands = 1;  // a band's stack must hold its ring
  const ownBandSplit split{roi.height, nBands};
  const ownCannyRing where = nBands > 1 ? ownCannyRing::EndOfBandStack : ownCannyRing::AfterStack;
  ownRunBands(split, [&](int, int y0, int y1) {
    ownCannyBand<E>(pDx, dxStep, pDy, dyStep, pDst, dstStep, roi, low, high, lay, where, y0, y1);
  });
  ownCannyEntry<E>* stack = reinterpret_cast<ownCannyEntry<E>*>(lay.stack);
  for (int b = 1; b < nBands; ++b) {
    const int y = split.begin(b);
    if (y <= 0 || y >= roi.height) continue;
    ownCannyGrow(lay, stack, ownCannySeam(lay, roi.width, y, pDst, dstStep, stack, 0), 1, roi.height, pDst, dstStep);
  }
}

template <class D, class M>
void ownCanny(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep, vnxiSize roi, M low,
              M high, vnx8u* pBuffer) {
  const ownCannyLayout lay(pBuffer, roi);
  std::memset(lay.map, 0, static_cast<std::size_t>(lay.mapStride));
  std::memset(lay.map + (roi.height + 1) * lay.mapStride, 0, static_cast<std::size_t>(lay.mapStride));
  if (ownCannySmallStack(roi))
    ownCannyRun<std::uint16_t>(pDx, dxStep, pDy, dyStep, pDst, dstStep, roi, low, high, lay);
  else
    ownCannyRun<std::uint32_t>(pDx, dxStep, pDy, dyStep, pDst, dstStep, roi, low, high, lay);
}

// A float threshold as the 16s member compares it: truncated toward zero; one at or
// above 65535 (or NaN) passes nothing, since magnitudes never exceed 65535, and one at
// or below -1 passes every magnitude, as -1 does (magnitudes are never negative).
inline int ownTruncThreshold(float t) {
  if (!(t < 65535.0f)) return 65535;
  return t > -1.0f ? static_cast<int>(t) : -1;
}

// The 16s thresholds as its magnitude rows use them: low from 0 (a zero magnitude is never
// a candidate, so -1 passes the same pixels as 0) and high as a key, not below low (a NaN
// low passes nothing, whatever high is).
struct ownCannyKeys {
  int low, highKey;
};
inline ownCannyKeys ownCannyKeys16s(float lowThresh, float highThresh) {
  const int low = std::max(ownTruncThreshold(lowThresh), 0);
  return {low, std::max(ownTruncThreshold(highThresh), low) - low - 32768};
}

template <class D>
vnxStatus ownCheckCanny(const D* pDx, int dxStep, const D* pDy, int dyStep, const vnx8u* pDst, int dstStep,
                        vnxiSize roi, float low, float high, const vnx8u* pBuffer) {
  if (vnxStatus st = ownCheck({pDx, pDy, pDst, pBuffer}, roi,
                              {ownImg<D>(dxStep, roi.width), ownImg<D>(dyStep, roi.width),
                               ownImg<vnx8u>(dstStep, roi.width)}))
    return st;
  return (low < 0 || high < low) ? vnxStatusBadArg : vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiCannyGetSize(vnxiSize roiSize, int* pBufferSize) noexcept {
  if (!pBufferSize) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(roiSize)) return st;
  const std::int64_t bytes = ownCannyBufferBytes(roiSize);
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *pBufferSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiCanny_16s8u_C1R(const vnx16s* pSrcDx, int srcDxStep, const vnx16s* pSrcDy, int srcDyStep,
                                      vnx8u* pDstEdges, int dstEdgeStep, vnxiSize roiSize, vnx32f lowThresh,
                                      vnx32f highThresh, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, lowThresh,
                                   highThresh, pBuffer))
    return st;
  const ownCannyKeys keys = ownCannyKeys16s(lowThresh, highThresh);
  ownCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, keys.low, keys.highKey, pBuffer);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiCanny_32f8u_C1R(const vnx32f* pSrcDx, int srcDxStep, const vnx32f* pSrcDy, int srcDyStep,
                                      vnx8u* pDstEdges, int dstEdgeStep, vnxiSize roiSize, vnx32f lowThresh,
                                      vnx32f highThresh, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, lowThresh,
                                   highThresh, pBuffer))
    return st;
  ownCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, lowThresh, highThresh, pBuffer);
  return vnxStatusOk;
}
