// Motion-history update: marked pixels take the current time, history older
// than the duration is cleared.
#include "check.h"
#include "simd.h"

namespace {

// One pixel. The comparison h < threshold is false for NaN, so a NaN history is kept.
template <class S>
inline float ownMhiPixel(S silhouette, float h, float timestamp, float threshold) {
  if (silhouette != 0) return timestamp;  // a float -0.0 compares equal to 0, NaN unequal
  return h < threshold ? 0.0f : h;
}

template <class S>
void ownMhiRow(const S* s, float* h, int x0, int n, float timestamp, float threshold) {
  for (int x = x0; x < n; ++x) h[x] = ownMhiPixel(s[x], h[x], timestamp, threshold);
}

// Sixteen pixels a block; every history element is read and written once.
template <class S>
void ownMhiRow_sse2(const S* s, float* h, int n, float timestamp, float threshold) {
  const __m128 ts = _mm_set1_ps(timestamp), thr = _mm_set1_ps(threshold);
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 sel[4];
    ownNonzero16(s + x, sel);
    for (int i = 0; i < 4; ++i) {
      float* p = h + x + 4 * i;
      const __m128 v = _mm_loadu_ps(p);
      const __m128 kept = _mm_andnot_ps(_mm_cmplt_ps(v, thr), v);
      _mm_storeu_ps(p, ownSelect(sel[i], ts, kept));
    }
  }
  ownMhiRow(s, h, x, n, timestamp, threshold);
}

template <class S>
vnxStatus ownUpdateMotionHistory(const S* pSil, int silStep, float* pMhi, int mhiStep, vnxiSize roi,
                                 float timestamp, float duration) {
  if (vnxStatus st = ownCheck({pSil, pMhi}, roi, {ownImg<S>(silStep, roi.width), ownImg<vnx32f>(mhiStep, roi.width)}))
    return st;
  if (!(duration >= 0.0f)) return vnxStatusOutOfRange;  // negative or NaN; -0.0 passes
  const float threshold = timestamp - duration;
  for (int y = 0; y < roi.height; ++y)
    ownMhiRow_sse2(ownRow(pSil, silStep, y), ownRow(pMhi, mhiStep, y), roi.width, timestamp, threshold);
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiUpdateMotionHistory_8u32f_C1IR(const vnx8u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                     int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                     vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
VNX_API vnxStatus vnxiUpdateMotionHistory_16u32f_C1IR(const vnx16u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                      int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                      vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
VNX_API vnxStatus vnxiUpdateMotionHistory_32f_C1IR(const vnx32f* pSilhouette, int silhStep, vnx32f* pMHI,
                                                   int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                   vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
