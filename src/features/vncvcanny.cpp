// Canny edge detector on precomputed derivatives: magnitude with the low test,
// non-maximum suppression into a candidate map (in parallel bands), seeds in raster
// order, then last-in-first-out hysteresis over 8-connected candidates.
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

// One stack entry: (row, column) of the map.
template <class E>
struct ownEdgeEntry {
  E row, col;
};

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

// Rows y0 .. y1 - 1 of the map: the band computes magnitudes of rows y0 - 1 .. y1 (0
// beyond the ROI, columns beyond it are 0 too) into its ring and suppresses row by row.
// Output row from its map row: 255 for the seeds, 0 elsewhere.
void ownCannySeedRow(const vnx8u* map, vnx8u* d, int n) {
  const __m128i seed = _mm_set1_epi8(static_cast<char>(kOwnCannySeed));
  int x = 0;
  for (; x + 16 <= n; x += 16) ownStore(d + x, _mm_cmpeq_epi8(ownLoad(map + x), seed));
  for (; x < n; ++x) d[x] = map[x] == kOwnCannySeed ? 255 : 0;
}

template <class D, class M>
void ownCannyBand(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep, vnxiSize roi, M low,
                  M high, const ownCannyLayout& lay, char* ring, int y0, int y1) {
  const std::int64_t stride = std::int64_t(roi.width) + 6;
  M* rows[3];
  for (int k = 0; k < 3; ++k) {
    M* r = reinterpret_cast<M*>(ring) + k * stride;
    std::fill(r, r + stride, M(0));
    rows[k] = r + 4;  // column 0; four zero columns to the left keep the row aligned
  }
  auto slot = [&](int y) { return rows[(y + 3) % 3]; };
  auto magnitude = [&](int y) {
    M* m = slot(y);
    if (y < 0 || y >= roi.height)
      std::fill(m, m + roi.width, M(0));
    else
      ownCannyMagnitudeRow_sse2(ownRow(pDx, dxStep, y), ownRow(pDy, dyStep, y), m, roi.width, low);
  };
  magnitude(y0 - 1);
  magnitude(y0);
  for (int y = y0; y < y1; ++y) {
    magnitude(y + 1);
    vnx8u* mapRow = lay.map + (y + 1) * lay.mapStride + 1;
    mapRow[-1] = 0;
    mapRow[roi.width] = 0;
    ownCannySuppressRow_sse2(ownRow(pDx, dxStep, y), ownRow(pDy, dyStep, y), slot(y - 1), slot(y), slot(y + 1),
                             mapRow, roi.width, high);
    ownCannySeedRow(mapRow, ownRow(pDst, dstStep, y), roi.width);
  }
}

// Seeds in raster order (their output bytes are 255 already, every other output byte 0).
template <class E>
std::int64_t ownCannySeeds(const ownCannyLayout& lay, vnxiSize roi) {
  ownEdgeEntry<E>* stack = reinterpret_cast<ownEdgeEntry<E>*>(lay.stack);
  std::int64_t sp = 0;
  const __m128i seedBit = _mm_set1_epi8(static_cast<char>(kOwnCannySeed));
  for (int y = 0; y < roi.height; ++y) {
    const vnx8u* m = lay.map + (y + 1) * lay.mapStride + 1;
    auto push = [&](int x) { stack[sp++] = {static_cast<E>(y + 1), static_cast<E>(x + 1)}; };
    int x = 0;
    for (; x + 16 <= roi.width; x += 16)
      for (unsigned bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(ownLoad(m + x), seedBit))); bits;
           bits &= bits - 1)
        push(x + __builtin_ctz(bits));
    for (; x < roi.width; ++x)
      if (m[x] == kOwnCannySeed) push(x);
  }
  return sp;
}

// Pops the top entry and visits upper-left, upper, upper-right, left, right, lower-left,
// lower, lower-right: a candidate not yet in the output becomes 255 and is pushed.
// Clearing its candidate flag stands for "output still 0" (seeds never had it), so each
// pixel is pushed once.
template <class E>
void ownCannyHysteresis(const ownCannyLayout& lay, std::int64_t sp, vnx8u* pDst, int dstStep) {
  ownEdgeEntry<E>* stack = reinterpret_cast<ownEdgeEntry<E>*>(lay.stack);
  const std::int64_t s = lay.mapStride;
  const std::int64_t offs[8] = {-s - 1, -s, -s + 1, -1, 1, s - 1, s, s + 1};
  const int dys[8] = {-1, -1, -1, 0, 0, 1, 1, 1}, dxs[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
  while (sp > 0) {
    const ownEdgeEntry<E> e = stack[--sp];
    vnx8u* p = lay.map + e.row * s + e.col;
    for (int k = 0; k < 8; ++k) {
      if (!(p[offs[k]] & kOwnCannyCandidate)) continue;
      p[offs[k]] = 0;
      const int r = int(e.row) + dys[k], c = int(e.col) + dxs[k];
      ownRow(pDst, dstStep, r - 1)[c - 1] = 255;
      stack[sp++] = {static_cast<E>(r), static_cast<E>(c)};
    }
  }
}

template <class D, class M>
void ownCanny(const D* pDx, int dxStep, const D* pDy, int dyStep, vnx8u* pDst, int dstStep, vnxiSize roi, M low,
              M high, vnx8u* pBuffer) {
  const ownCannyLayout lay(pBuffer, roi);
  std::memset(lay.map, 0, static_cast<std::size_t>(lay.mapStride));
  std::memset(lay.map + (roi.height + 1) * lay.mapStride, 0, static_cast<std::size_t>(lay.mapStride));
  // Parallel bands keep their rings in the stack, which is empty until the seeds.
  const std::int64_t ringBytes = (ownCannyRingBytes(roi.width) + 15) / 16 * 16;
  int nBands = ownBandCount(roi, kOwnBandsCanny);
  if (nBands > 1 && nBands * ringBytes > lay.stackBytes) nBands = 1;
  ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) {
    char* ring = nBands > 1 ? lay.stack + b * ringBytes : lay.ring;
    ownCannyBand(pDx, dxStep, pDy, dyStep, pDst, dstStep, roi, low, high, lay, ring, y0, y1);
  });
  if (ownCannySmallStack(roi))
    ownCannyHysteresis<std::uint16_t>(lay, ownCannySeeds<std::uint16_t>(lay, roi), pDst, dstStep);
  else
    ownCannyHysteresis<std::uint32_t>(lay, ownCannySeeds<std::uint32_t>(lay, roi), pDst, dstStep);
}

// A float threshold as the 16s member compares it: truncated toward zero; one at or
// above 65535 (or NaN) passes nothing, since magnitudes never exceed 65535, and one at
// or below -1 passes every magnitude, as -1 does (magnitudes are never negative).
inline int ownTruncThreshold(float t) {
  if (!(t < 65535.0f)) return 65535;
  return t > -1.0f ? static_cast<int>(t) : -1;
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
  ownCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, ownTruncThreshold(lowThresh),
           ownTruncThreshold(highThresh), pBuffer);
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
