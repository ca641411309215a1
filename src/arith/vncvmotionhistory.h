// Motion-history update: the per-pixel rule and the row kernels, shared by the
// exports of vncvmotionhistory.cpp and the kernel tests.
#pragma once

#include "own.h"
#include "simd.h"

// One pixel. The comparison h < threshold is false for NaN, so a NaN history is kept.
template <class S>
inline float ownMhiPixel(S silhouette, float h, float timestamp, float threshold) {
  if (silhouette != 0) return timestamp;  // a float -0.0 compares equal to 0, NaN unequal
  return h < threshold ? 0.0f : h;
}

// Pixels x0 .. n - 1 of one row: the reference for the vector body and its tail.
template <class S>
void ownMhiRow(const S* s, float* h, int x0, int n, float timestamp, float threshold) {
  for (int x = x0; x < n; ++x) h[x] = ownMhiPixel(s[x], h[x], timestamp, threshold);
}

// Sixteen pixels a block; every history element is read and written once.
template <class S>
void ownMhiRow_sse2(const S* s, float* h, int n, float timestamp, float threshold) {
  const __m128 ts = ownSplatPs(timestamp), thr = ownSplatPs(threshold);
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 sel[4];
    ownNonzero16(s + x, sel);
    for (int i = 0; i < 4; ++i) {
      float* p = h + x + 4 * i;
      ownStorePs(p, ownSelect(sel[i], ts, ownClearBelowPs(ownLoadPs(p), thr)));
    }
  }
  ownMhiRow(s, h, x, n, timestamp, threshold);
}
