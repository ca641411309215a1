// Sub-pixel copies: bilinear interpolation at a fractional offset. Integer members
// weigh the four neighbours with 14-bit weights whose rounding constant is a whole
// unit (so they sum to a little more than 16384); float members use float weights
// with the fractions raised to small floors. The optical flow cuts its windows with
// ownCopySubpixIntersect.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "own.h"

struct ownSubpixWeights {
  std::int32_t w00, w10, w01, w11;  // 14-bit: (p q + 16384) >> 14
  float f00, f10, f01, f11;         // (1 - fx)(1 - fy), fx (1 - fy), (1 - fx) fy, fx fy
};

// The fractional part of an offset in [0, 1): d - trunc(d), plus 1 when negative.
inline float ownSubpixFraction(float d) {
  const float f = d - std::trunc(d);
  return f < 0.0f ? f + 1.0f : f;
}

inline ownSubpixWeights ownSubpixWeightsOf(float fx, float fy) {
  ownSubpixWeights w;
  const std::int32_t ax = static_cast<std::int32_t>(fx * 16384.0f + 0.5f), ay = static_cast<std::int32_t>(fy * 16384.0f + 0.5f);
  // the whole-unit rounding constant: each weight comes out one above the truncated product
  w.w00 = ((16384 - ax) * (16384 - ay) + 16384) >> 14;
  w.w10 = (ax * (16384 - ay) + 16384) >> 14;
  w.w01 = ((16384 - ax) * ay + 16384) >> 14;
  w.w11 = (ax * ay + 16384) >> 14;
  const float gx = std::max(fx, 1e-6f), gy = std::max(fy, 1e-9f);  // the two floors differ on purpose
  w.f00 = (1.0f - gx) * (1.0f - gy);
  w.f10 = gx * (1.0f - gy);
  w.f01 = (1.0f - gx) * gy;
  w.f11 = gx * gy;
  return w;
}

// One interpolated sample from s00, s10 (right), s01 (below), s11. Integer outputs:
// the 14-bit sum Q rounded as (Q + 2^(shift - 1)) >> shift (shift = 14 + scale factor;
// a shift of 0 or less multiplies), saturated to the output type. Float outputs: the
// weighted sum in the order 00, 10, 01, 11.
template <class S, class D>
inline D ownSubpixSample(S s00, S s10, S s01, S s11, const ownSubpixWeights& w, int shift) {
  if constexpr (std::is_floating_point<D>::value) {
    return ((w.f00 * static_cast<float>(s00) + w.f10 * static_cast<float>(s10)) + w.f01 * static_cast<float>(s01)) +
           w.f11 * static_cast<float>(s11);
  } else {
    const std::int64_t q = std::int64_t{w.w00} * s00 + std::int64_t{w.w10} * s10 + std::int64_t{w.w01} * s01 +
                           std::int64_t{w.w11} * s11;
    std::int64_t v;
    if (shift > 40)
      v = 0;  // q < 2^34: rounds to 0
    else if (shift > 0)
      v = (q + (std::int64_t{1} << (shift - 1))) >> shift;
    else
      v = shift < -40 ? (q ? INT64_MAX : 0) : q << -shift;
    const std::int64_t hi = std::is_same<D, vnx8u>::value ? 255 : 65535;
    return static_cast<D>(v > hi ? hi : v);
  }
}

// One row of the whole-ROI copy: dst[x] from r0[x], r0[x + 1], r1[x], r1[x + 1], x in [x0, n).
template <class S, class D>
void ownCopySubpixRow(const S* r0, const S* r1, D* d, const ownSubpixWeights& w, int shift, std::int64_t x0,
                      std::int64_t n) {
  for (std::int64_t x = x0; x < n; ++x) d[x] = ownSubpixSample<S, D>(r0[x], r0[x + 1], r1[x], r1[x + 1], w, shift);
}
void ownCopySubpixRow_sse2(const vnx8u* r0, const vnx8u* r1, vnx8u* d, const ownSubpixWeights& w, std::int64_t n);
// 8u to 16u with a shift of 7 to 31: results below 2^15, so signed packs are exact.
void ownCopySubpixRow_sse2(const vnx8u* r0, const vnx8u* r1, vnx16u* d, const ownSubpixWeights& w, int shift,
                           std::int64_t n);

// The row kernel a pair of types runs: SSE2 where there is one.
template <class S, class D>
inline void ownCopySubpixRowAny(const S* r0, const S* r1, D* d, const ownSubpixWeights& w, int shift, std::int64_t n) {
  if constexpr (std::is_same<S, vnx8u>::value && std::is_same<D, vnx8u>::value) {
    ownCopySubpixRow_sse2(r0, r1, d, w, n);
  } else if constexpr (std::is_same<S, vnx8u>::value && std::is_same<D, vnx16u>::value) {
    if (shift >= 7 && shift <= 31)
      ownCopySubpixRow_sse2(r0, r1, d, w, shift, n);
    else
      ownCopySubpixRow<S, D>(r0, r1, d, w, shift, 0, n);
  } else {
    ownCopySubpixRow<S, D>(r0, r1, d, w, shift, 0, n);
  }
}

// Window corner and inside range of the intersecting copy along one direction: window
// size n, corner position x0, source size len.
struct ownSubpixSpan {
  std::int64_t i;  // integer corner: trunc(n + x0) - n
  float f;         // x0 - i
  int lo, hi;      // pMin, pMax of this direction
};
inline ownSubpixSpan ownSubpixSpanOf(int n, float x0, int len) {
  // positions far outside only need to stay far outside: clamp before converting
  float c = x0;
  if (!(c == c) || c > 1.0e9f) c = 1.0e9f;
  if (c < -1.0e9f) c = -1.0e9f;
  ownSubpixSpan s;
  s.i = static_cast<std::int64_t>(std::trunc(static_cast<float>(n) + c)) - n;
  s.f = c - static_cast<float>(s.i);
  if (!(s.f >= 0.0f)) s.f = 0.0f;  // far from the image single precision loses the fraction: keep it in [0, 1]
  if (s.f > 1.0f) s.f = 1.0f;
  s.lo = static_cast<int>(std::min<std::int64_t>(std::max<std::int64_t>(0, -s.i), n));
  s.hi = s.i + n - 1 > std::int64_t{len} - 2 ? static_cast<int>(std::max<std::int64_t>(std::int64_t{len} - s.i - 2, -1)) : n - 1;
  if (s.i >= len) {
    s.lo = 0;
    s.hi = -1;
  }
  return s;
}

// The intersecting copy: window dstRoi centred at (px, py) of the source extended by
// edge replication; writes pMin/pMax (x, y pairs).
template <class S, class D>
void ownCopySubpixIntersect(const S* src, int srcStep, vnxiSize srcRoi, D* dst, int dstStep, vnxiSize dstRoi,
                            float px, float py, int shift, int* pMin, int* pMax) {
  const ownSubpixSpan sx = ownSubpixSpanOf(dstRoi.width, px - (dstRoi.width - 1) * 0.5f, srcRoi.width);
  const ownSubpixSpan sy = ownSubpixSpanOf(dstRoi.height, py - (dstRoi.height - 1) * 0.5f, srcRoi.height);
  const ownSubpixWeights w = ownSubpixWeightsOf(sx.f, sy.f);
  auto clampTo = [](std::int64_t v, int len) { return v < 0 ? 0 : v >= len ? std::int64_t{len} - 1 : v; };
  // window columns whose two source columns are both inside run through the row kernel
  const std::int64_t xa = std::min<std::int64_t>(std::max<std::int64_t>(0, -sx.i), dstRoi.width);
  const std::int64_t xb = std::max<std::int64_t>(std::min<std::int64_t>(dstRoi.width, std::int64_t{srcRoi.width} - 1 - sx.i), xa);
  for (int y = 0; y < dstRoi.height; ++y) {
    const S* r0 = ownRow(src, srcStep, static_cast<int>(clampTo(sy.i + y, srcRoi.height)));
    const S* r1 = ownRow(src, srcStep, static_cast<int>(clampTo(sy.i + y + 1, srcRoi.height)));
    D* d = ownRow(dst, dstStep, y);
    auto edge = [&](std::int64_t x0, std::int64_t x1) {
      for (std::int64_t x = x0; x < x1; ++x) {
        const std::int64_t c0 = clampTo(sx.i + x, srcRoi.width), c1 = clampTo(sx.i + x + 1, srcRoi.width);
        d[x] = ownSubpixSample<S, D>(r0[c0], r0[c1], r1[c0], r1[c1], w, shift);
      }
    };
    edge(0, xa);
    if (xb > xa) ownCopySubpixRowAny<S, D>(r0 + sx.i + xa, r1 + sx.i + xa, d + xa, w, shift, xb - xa);
    edge(xb, dstRoi.width);
  }
  pMin[0] = sx.lo;
  pMin[1] = sy.lo;
  pMax[0] = sx.hi;
  pMax[1] = sy.hi;
}

