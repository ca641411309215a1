// Pyramidal Lucas-Kanade flow: coarse level first, per level an iterative solve of
// the 2 x 2 system over a window cut with the intersecting sub-pixel copy.
//
// Patches: 8u windows are copied times 128 into 16 bits (the Sfs copy with -7); 16u
// and 32f windows are copied to floats in grey levels. Derivatives are the filters'
// Scharr gradients of a patch (3 10 3, divided by 32), so they are in the units of the
// patch per pixel and the solve gives dx, dy in pixels: 8u rounds (sum + 16) >> 5,
// floats multiply by 0.03125. 8u sums are integer products added exactly in double precision (every sum
// stays below 2^53), so their order never shows; float sums run row by row, left to
// right. The error is the RMS of the last differences: times 0.0078125 for 8u (undoing
// the 128), as it is for floats.
#include <climits>
#include <cmath>

#include "alloc.h"
#include "check.h"
#include "filters/vncvderivative.h"
#include "parallel.h"
#include "pyramids/vncvcopysubpix.h"
#include "simd.h"
#include "traits.h"

struct vnxiOptFlowPyrLKState {
  int width, height;
  int threads;   // thread count the scratch was sized for
  int typeCode;
  int reserved;
  int winWidth, winHeight;
  void* scratch;  // per thread: two patches and two derivative images of (win + 2)^2 elements
};

namespace {

template <class T>
struct ownFlowType {
  using P = vnx32f;  // patch and derivative samples
  static constexpr int shift = 0;
  static constexpr double errScale = 1.0;
};
template <>
struct ownFlowType<vnx8u> {
  using P = vnx16s;
  static constexpr int shift = 7;  // the copy's 14-bit sums to units of 1/128 grey level
  static constexpr double errScale = 0.0078125;
};

// A rectangle of window pixels, inclusive.
struct ownFlowRect {
  int x0, y0, x1, y1;
  bool empty() const { return x0 > x1 || y0 > y1; }
  bool operator!=(const ownFlowRect& o) const { return x0 != o.x0 || y0 != o.y0 || x1 != o.x1 || y1 != o.y1; }
};

// Cuts the window centred at (x, y) of a level image; the valid part shrinks by one
// pixel a side (the derivatives need the neighbours). An empty inside part (pMax
// below pMin) means the window does not meet the image.
template <class T, class P>
bool ownFlowWindow(const T* img, int step, vnxiSize roi, int side, float x, float y, P* patch, ownFlowRect* valid) {
  int lo[2], hi[2];
  using D = typename std::conditional<std::is_same<P, vnx16s>::value, vnx16u, vnx32f>::type;
  ownCopySubpixIntersect<T, D>(img, step, roi, reinterpret_cast<D*>(patch), side * static_cast<int>(sizeof(P)),
                               vnxiSize{side, side}, x, y, 14 - ownFlowType<T>::shift, lo, hi);
  *valid = {lo[0] + 1, lo[1] + 1, hi[0] - 1, hi[1] - 1};
  return lo[0] <= hi[0] && lo[1] <= hi[1];
}

struct ownFlowSums {
  double gxx, gxy, gyy, bx, by, e;
};

// Sums over one row of n pixels: d = a - b; G terms when `withG`.
inline void ownFlowRowSums(const vnx32f* a, const vnx32f* b, const vnx32f* ix, const vnx32f* iy, int n, bool withG,
                           ownFlowSums& s) {
  for (int x = 0; x < n; ++x) {
    const double d = static_cast<double>(a[x]) - b[x], gx = ix[x], gy = iy[x];
    s.bx += d * gx;
    s.by += d * gy;
    s.e += d * d;
    if (withG) {
      s.gxx += gx * gx;
      s.gxy += gx * gy;
      s.gyy += gy * gy;
    }
  }
}
// 16-bit patches: pairs of products in 32-bit lanes (|d|, |I| <= 32648: a pair stays
// below 2^31), sign-extended into 64-bit integer lanes; the window's integer sums go to
// double once at the end (exact: every sum stays below 2^53, so this is the same
// number the pixel-by-pixel double sums give).
struct ownFlowLanes {
  __m128i bx, by, e, gxx, gxy, gyy;
};
__attribute__((always_inline)) inline __m128i ownAddWidened(__m128i acc, __m128i v) {
  const __m128i sign = _mm_srai_epi32(v, 31);
  return _mm_add_epi64(acc, _mm_add_epi64(_mm_unpacklo_epi32(v, sign), _mm_unpackhi_epi32(v, sign)));
}
inline double ownLanes64Sum(__m128i v) {
  alignas(16) std::int64_t q[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(q), v);
  return static_cast<double>(q[0] + q[1]);
}
// One row of n pixels: whole vectors, the last one with the lanes past n cleared (the
// patch rows run on in memory, so the vector stays inside the scratch).
inline void ownFlowRowSums(const vnx16s* a, const vnx16s* b, const vnx16s* ix, const vnx16s* iy, int n, bool withG,
                           ownFlowLanes& s) {
  const __m128i lane = _mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7);
  for (int x = 0; x < n; x += 8) {
    const __m128i keep = _mm_cmpgt_epi16(_mm_set1_epi16(static_cast<short>(std::min(n - x, 8))), lane);
    const __m128i d = _mm_and_si128(_mm_sub_epi16(ownLoad(a + x), ownLoad(b + x)), keep);
    const __m128i gx = _mm_and_si128(ownLoad(ix + x), keep), gy = _mm_and_si128(ownLoad(iy + x), keep);
    s.bx = ownAddWidened(s.bx, _mm_madd_epi16(d, gx));
    s.by = ownAddWidened(s.by, _mm_madd_epi16(d, gy));
    s.e = ownAddWidened(s.e, _mm_madd_epi16(d, d));
    if (withG) {
      s.gxx = ownAddWidened(s.gxx, _mm_madd_epi16(gx, gx));
      s.gxy = ownAddWidened(s.gxy, _mm_madd_epi16(gx, gy));
      s.gyy = ownAddWidened(s.gyy, _mm_madd_epi16(gy, gy));
    }
  }
}
// The sums of a window of rows y0 .. y1, columns x0 .. x0 + n - 1.
template <class P>
inline void ownFlowWindowSums(const P* p1, const P* p2, const P* ix, const P* iy, int side, int x0, int y0, int y1,
                              int n, bool withG, ownFlowSums& s) {
  if constexpr (std::is_same<P, vnx16s>::value) {
    const __m128i z = _mm_setzero_si128();
    ownFlowLanes l{z, z, z, z, z, z};
    for (int y = y0; y <= y1; ++y) {
      const int o = y * side + x0;
      ownFlowRowSums(p1 + o, p2 + o, ix + o, iy + o, n, withG, l);
    }
    s = {ownLanes64Sum(l.gxx), ownLanes64Sum(l.gxy), ownLanes64Sum(l.gyy), ownLanes64Sum(l.bx), ownLanes64Sum(l.by),
         ownLanes64Sum(l.e)};
  } else {
    for (int y = y0; y <= y1; ++y) {
      const int o = y * side + x0;
      ownFlowRowSums(p1 + o, p2 + o, ix + o, iy + o, n, withG, s);
    }
  }
}

struct ownFlowArgs {
  const vnxiPyramid* pyr1;
  const vnxiPyramid* pyr2;
  const vnxiPoint32f* prev;
  vnxiPoint32f* next;
  vnx8u* status;
  vnx32f* error;
  int winSize, maxLev, maxIter;
  float threshold;
};

template <class T>
void ownFlowPoint(const ownFlowArgs& a, int i, typename ownFlowType<T>::P* scratch) {
  using P = typename ownFlowType<T>::P;
  const int side = a.winSize + 2, area = side * side;
  P *p1 = scratch, *p2 = scratch + area, *ix = scratch + 2 * area, *iy = scratch + 3 * area;
  const double q = a.maxLev > 1 ? 1.0 / a.pyr1->pRate[1] : 1.0;  // one level apart; 1.0 with two levels
  double e = 0.0, area2 = 0.0;
  float u = 0.0f, v = 0.0f;
  auto finish = [&](int status) {
    a.status[i] = static_cast<vnx8u>(status);
    a.error[i] = e > 0.0 ? static_cast<vnx32f>(std::sqrt(e / area2) * ownFlowType<T>::errScale) : 0.0f;
  };
  for (int lev = a.maxLev; lev >= 0; --lev) {
    const double f = a.pyr1->pRate[lev];
    if (lev == a.maxLev) {
      u = static_cast<float>(a.next[i].x * f);
      v = static_cast<float>(a.next[i].y * f);
    }
    const vnxiSize r1 = a.pyr1->pRoi[lev], r2 = a.pyr2->pRoi[lev];
    ownFlowRect valid1, valid2, rect{0, 0, -1, -1}, last{0, 0, -1, -1};
    ownFlowWindow(static_cast<const T*>(a.pyr1->pImage[lev]), a.pyr1->pStep[lev], r1, side,
                  static_cast<float>(a.prev[i].x * f), static_cast<float>(a.prev[i].y * f), p1, &valid1);
    if (!valid1.empty()) ownScharrPatch(p1, side, valid1.x0, valid1.y0, valid1.x1, valid1.y1, ix, iy);
    double pdx = r1.width + r1.height, pdy = pdx, gxx = 0, gxy = 0, gyy = 0;
    for (int it = 0; it < a.maxIter; ++it) {
      if (!ownFlowWindow(static_cast<const T*>(a.pyr2->pImage[lev]), a.pyr2->pStep[lev], r2, side, u, v, p2, &valid2))
        return finish(lev + 1);
      rect = {std::max(valid1.x0, valid2.x0), std::max(valid1.y0, valid2.y0), std::min(valid1.x1, valid2.x1),
              std::min(valid1.y1, valid2.y1)};
      if (rect.empty()) {
        a.next[i] = vnxiPoint32f{static_cast<float>(u / f), static_cast<float>(v / f)};
        return finish(lev + 1);
      }
      const bool withG = it == 0 || rect != last;
      ownFlowSums s{0, 0, 0, 0, 0, 0};
      ownFlowWindowSums(p1, p2, ix, iy, side, rect.x0, rect.y0, rect.y1, rect.x1 - rect.x0 + 1, withG, s);
      if (withG) gxx = s.gxx, gxy = s.gxy, gyy = s.gyy;
      last = rect;
      e = s.e;
      area2 = static_cast<double>(rect.x1 - rect.x0 + 1) * (rect.y1 - rect.y0 + 1);
      const double det = gxx * gyy - gxy * gxy;
      if (det < 2.220446049250313e-16) return finish(lev + 1);
      const double dx = (gyy * s.bx - gxy * s.by) / det, dy = (gxx * s.by - gxy * s.bx) / det;
      u = static_cast<float>(u + dx);
      v = static_cast<float>(v + dy);
      if (dx * dx + dy * dy < a.threshold) break;
      if (std::fabs(dx + pdx) < 0.00034526698300124393 && std::fabs(dy + pdy) < 0.00034526698300124393) {
        u = static_cast<float>(u - dx / 2);  // oscillating between two positions: take the middle
        v = static_cast<float>(v - dy / 2);
        break;
      }
      pdx = dx;
      pdy = dy;
    }
    if (lev > 0) {
      u = static_cast<float>(u * q);
      v = static_cast<float>(v * q);
    }
  }
  a.next[i] = vnxiPoint32f{u, v};
  finish(0);
}

template <class T>
std::int64_t ownFlowThreadBytes(int winSize) {
  const std::int64_t side = std::int64_t{winSize} + 2;
  return (4 * side * side * std::int64_t{sizeof(typename ownFlowType<T>::P)} + 16 + 31) / 32 * 32;
}

template <class T>
vnxStatus ownFlowInitAlloc(vnxiOptFlowPyrLKState** pp, vnxiSize roi, int winSize) {
  if (!pp) return vnxStatusNullPtr;
  if (roi.width < 1 || roi.height < 1 || winSize < 1) return vnxStatusBadSize;
  const int threads = ownNumThreads() < 1 ? 1 : ownNumThreads();
  const std::int64_t head = (sizeof(vnxiOptFlowPyrLKState) + 31) / 32 * 32;
  const std::int64_t bytes = head + threads * ownFlowThreadBytes<T>(winSize);
  char* block = bytes <= INT_MAX ? static_cast<char*>(ownMalloc_8u(static_cast<int>(bytes))) : nullptr;
  if (!block) return vnxStatusNoMemory;
  vnxiOptFlowPyrLKState* s = reinterpret_cast<vnxiOptFlowPyrLKState*>(block);
  *s = {roi.width, roi.height, threads, ownTraits<T>::code, 0, winSize, winSize, block + head};
  *pp = s;
  return vnxStatusOk;
}

template <class T>
vnxStatus ownFlow_omp(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2, const vnxiPoint32f* pPrev,
                      vnxiPoint32f* pNext, vnx8u* pStatus, vnx32f* pError, int numFeat, int winSize, int maxLev,
                      int maxIter, float threshold, vnxiOptFlowPyrLKState* s) {
  if (vnxStatus st = ownCheckPtrs({pPyr1, pPyr2, s, pPrev, pNext, pStatus, pError})) return st;
  if (numFeat < 1 || winSize < 1 || winSize != s->winWidth) return vnxStatusBadSize;
  if (maxLev < 0 || maxIter < 1) return vnxStatusBadArg;
  if (!(threshold >= 0.0f)) return vnxStatusBadArg;
  // beyond the listed checks: the records must hold maxLev levels with images, the state this type
  if (maxLev > pPyr1->level || maxLev > pPyr2->level || s->typeCode != ownTraits<T>::code) return vnxStatusBadArg;
  for (int lev = 0; lev <= maxLev; ++lev) {
    if (!pPyr1->pImage[lev] || !pPyr2->pImage[lev]) return vnxStatusNullPtr;
    if (vnxStatus st = ownCheckSteps({ownImg<T>(pPyr1->pStep[lev], pPyr1->pRoi[lev].width),
                                      ownImg<T>(pPyr2->pStep[lev], pPyr2->pRoi[lev].width)}))
      return st;
  }
  for (int i = 0; i < numFeat; ++i) pStatus[i] = static_cast<vnx8u>(maxLev + 1);
  const ownFlowArgs args{pPyr1, pPyr2, pPrev, pNext, pStatus, pError, winSize, maxLev, maxIter, threshold};
  // Features count as rows of one pixel each: the policy's row test then asks for one
  // feature a chunk at least, its pixel test for eight a thread.
  int chunks = ownBandCount(vnxiSize{1, numFeat}, kOwnBandsFlowFeatures);
  chunks = std::min(std::min(chunks, s->threads), numFeat);
  using P = typename ownFlowType<T>::P;
  ownRunBands(ownBandSplit{numFeat, chunks}, [&](int b, int i0, int i1) {
    P* scratch = reinterpret_cast<P*>(static_cast<char*>(s->scratch) + b * ownFlowThreadBytes<T>(winSize));
    for (int i = i0; i < i1; ++i) ownFlowPoint<T>(args, i, scratch);
  });
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                       int winSize, int hint) noexcept {
  (void)hint;
  return ownFlowInitAlloc<vnx8u>(ppState, roiSize, winSize);
}
VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_16u_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                        int winSize, int hint) noexcept {
  (void)hint;
  return ownFlowInitAlloc<vnx16u>(ppState, roiSize, winSize);
}
VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_32f_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                        int winSize, int hint) noexcept {
  (void)hint;
  return ownFlowInitAlloc<vnx32f>(ppState, roiSize, winSize);
}

VNX_API vnxStatus vnxiOpticalFlowPyrLK_8u_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                              const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                              vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                              vnx32f threshold, vnxiOptFlowPyrLKState* pState) noexcept {
  return ownFlow_omp<vnx8u>(pPyr1, pPyr2, pPrev, pNext, pStatus, pError, numFeat, winSize, maxLev, maxIter,
                            threshold, pState);
}
VNX_API vnxStatus vnxiOpticalFlowPyrLK_16u_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                               const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                               vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                               vnx32f threshold, vnxiOptFlowPyrLKState* pState) noexcept {
  return ownFlow_omp<vnx16u>(pPyr1, pPyr2, pPrev, pNext, pStatus, pError, numFeat, winSize, maxLev, maxIter,
                             threshold, pState);
}
VNX_API vnxStatus vnxiOpticalFlowPyrLK_32f_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                               const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                               vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                               vnx32f threshold, vnxiOptFlowPyrLKState* pState) noexcept {
  return ownFlow_omp<vnx32f>(pPyr1, pPyr2, pPrev, pNext, pStatus, pError, numFeat, winSize, maxLev, maxIter,
                             threshold, pState);
}

namespace {
vnxStatus ownFlowFree(vnxiOptFlowPyrLKState* s) {
  if (!s) return vnxStatusNullPtr;
  ownFree(s);
  return vnxStatusOk;
}
}  // namespace

VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_8u_C1R(vnxiOptFlowPyrLKState* pState) noexcept { return ownFlowFree(pState); }
VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_16u_C1R(vnxiOptFlowPyrLKState* pState) noexcept { return ownFlowFree(pState); }
VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_32f_C1R(vnxiOptFlowPyrLKState* pState) noexcept { return ownFlowFree(pState); }
