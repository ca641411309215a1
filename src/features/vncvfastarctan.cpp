// Fast arctangent in degrees over the full circle: a quadratic fit of atan on 0..45
// degrees folded into the eight octants by three strict sign and size tests.
#include "check.h"
#include "features.h"
#include "simd.h"

// Four angles: the reciprocal of M comes from the approximate reciprocal refined by one
// Newton step, rcp' = rcp * (2 - M * rcp), so r = m / M may differ from a division in
// its last bits. The octant folds use strict compares: -0.0 counts as non-negative.
__m128 ownFastArctan4(__m128 y, __m128 x) {
  const __m128 ax = ownAbsPs(x), ay = ownAbsPs(y), zero = _mm_setzero_ps();
  const __m128 bigM = _mm_max_ps(_mm_max_ps(ax, ay), _mm_set1_ps(1e-8f));
  const __m128 small = _mm_min_ps(ax, ay);
  __m128 rcp = _mm_rcp_ps(bigM);
  rcp = _mm_mul_ps(rcp, _mm_sub_ps(_mm_set1_ps(2.0f), _mm_mul_ps(bigM, rcp)));
  const __m128 r = _mm_mul_ps(small, rcp);
  __m128 a = _mm_add_ps(_mm_mul_ps(_mm_set1_ps(-15.8131895f), r), _mm_set1_ps(61.094196f));
  a = _mm_sub_ps(_mm_mul_ps(a, r), _mm_set1_ps(0.14050041f));
  a = ownSelect(_mm_cmplt_ps(ax, ay), _mm_sub_ps(_mm_set1_ps(90.0f), a), a);
  a = ownSelect(_mm_cmplt_ps(x, zero), _mm_sub_ps(_mm_set1_ps(180.0f), a), a);
  a = ownSelect(_mm_cmplt_ps(y, zero), _mm_sub_ps(_mm_set1_ps(360.0f), a), a);
  return ownCanonicalNaN(a);
}

// Whole vectors of four, then the last len mod 4 elements through a scratch filled
// with 1.0, so every element goes through the same vector code.
void ownFastArctanRow(const vnx32f* y, const vnx32f* x, vnx32f* dst, int len) {
  int i = 0;
  for (; i + 4 <= len; i += 4) _mm_storeu_ps(dst + i, ownFastArctan4(_mm_loadu_ps(y + i), _mm_loadu_ps(x + i)));
  if (i == len) return;
  alignas(16) float sy[4] = {1.0f, 1.0f, 1.0f, 1.0f}, sx[4] = {1.0f, 1.0f, 1.0f, 1.0f}, sd[4];
  for (int k = 0; i + k < len; ++k) {
    sy[k] = y[i + k];
    sx[k] = x[i + k];
  }
  _mm_store_ps(sd, ownFastArctan4(_mm_load_ps(sy), _mm_load_ps(sx)));
  for (int k = 0; i + k < len; ++k) dst[i + k] = sd[k];
}

VNX_API vnxStatus vnxibFastArctan_32f(const vnx32f* pSrcY, const vnx32f* pSrcX, vnx32f* pDst, int len) noexcept {
  if (vnxStatus st = ownCheckPtrs({pSrcY, pSrcX, pDst})) return st;
  if (len < 1) return vnxStatusBadSize;
  ownFastArctanRow(pSrcY, pSrcX, pDst, len);
  return vnxStatusOk;
}
