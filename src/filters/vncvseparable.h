// Internals of the separable row and column passes, shared with the fixed-kernel
// filters of vncvnewconvol.cpp and with the kernel tests.
#pragma once

#include <cstdint>

#include "simd.h"

#include "own.h"

// Index of the pixel that stands for position i of a line of n pixels under a border
// type other than vnxBorderConst. Reflections repeat for lines shorter than the reach:
// Mirror has period 2n - 2 (a line of one pixel mirrors to itself), MirrorR period 2n,
// Wrap period n.
inline int ownBorderIndex(int i, int n, int border) {
  if (i >= 0 && i < n) return i;
  switch (border) {
    case vnxBorderReplicate:
      return i < 0 ? 0 : n - 1;
    case vnxBorderWrap: {
      const int m = i % n;
      return m < 0 ? m + n : m;
    }
    case vnxBorderMirror: {
      if (n == 1) return 0;
      const int p = 2 * n - 2;
      int m = i % p;
      if (m < 0) m += p;
      return m < n ? m : p - m;
    }
    default: {  // vnxBorderMirrorR
      const int p = 2 * n;
      int m = i % p;
      if (m < 0) m += p;
      return m < n ? m : p - 1 - m;
    }
  }
}

// s / d rounded to nearest, halves away from zero: the one rounding rule of every
// integer division of the linear filters (row pass divisor, 8u8s divisor, box average).
inline std::int64_t ownDivRound(std::int64_t s, int d) {
  if (d == 1) return s;
  const std::int64_t a = s < 0 ? -s : s, b = d < 0 ? -static_cast<std::int64_t>(d) : d;
  const std::int64_t q = (2 * a + b) / (2 * b);
  return ((s < 0) != (d < 0)) ? -q : q;
}

// Row pass of one row of `width` pixels of C interleaved samples:
// dst[x] = sum over i of kern[i] * src[x - anchor + i], columns outside the row taken
// by the border type (bval for vnxBorderConst). Integer sums are exact (low: taken
// modulo 2^16 as a signed 16-bit value), then divided by ownDivRound and saturated.
void ownRowPass(const vnx8u* src, int width, int C, vnx16s* dst, const vnx16s* kern, int k, int anchor,
                int border, vnx8u bval, int divisor, bool low);
void ownRowPass(const vnx16s* src, int width, int C, vnx16s* dst, const vnx16s* kern, int k, int anchor,
                int border, vnx16s bval, int divisor, bool low);
// Float: the products are added left to right in single precision.
void ownRowPass(const vnx32f* src, int width, int C, vnx32f* dst, const vnx32f* kern, int k, int anchor,
                int border, vnx32f bval, int divisor, bool low);

// Column pass of one row of n samples: sum over j of kern[j] * rows[j][x].
// Low: the sum modulo 2^16 (exact whenever it fits 16 bits).
void ownColumnLow(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n);
// Exact sum, saturated; for 8u/8s divided by ownDivRound first.
void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n, int divisor);
void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8u* dst, int n, int divisor);
void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8s* dst, int n, int divisor);
// Float: the products are added top to bottom in single precision.
void ownColumn(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, int n, int divisor);

// 8u results of a divisor d in 2..127 without a division (exact is false for the few
// divisors without such a reciprocal). A sum s clamped to 0..256d (outside that range
// the result saturates to 0 or 255 anyway) gives the rounded quotient
// floor((2s + d) / 2d), with 2s + d <= 513d < 2^16, as the high half of (2s + d) * m
// shifted right, where m = ceil(2^L / 2d) is exact for every such numerator when
// numerator * (m * 2d - 2^L) < 2^L.
struct ownReciprocal {
  bool exact = false;
  __m128i m, d, hi, shift;
  explicit ownReciprocal(int divisor) {
    if (divisor < 2 || divisor > 127) return;
    const std::int64_t d2 = 2 * static_cast<std::int64_t>(divisor), nMax = 513 * static_cast<std::int64_t>(divisor);
    for (int l = 16; l < 32 && !exact; ++l) {
      const std::int64_t m2 = ((std::int64_t{1} << l) + d2 - 1) / d2;
      if (m2 < 65536 && nMax * (m2 * d2 - (std::int64_t{1} << l)) < (std::int64_t{1} << l)) {
        exact = true;
        m = _mm_set1_epi16(static_cast<short>(m2));
        d = _mm_set1_epi16(static_cast<short>(divisor));
        hi = _mm_set1_epi16(static_cast<short>(256 * divisor));
        shift = _mm_cvtsi32_si128(l - 16);
      }
    }
  }
  // eight rounded quotients of 16-bit sums, 0..256 (pack with unsigned saturation)
  __m128i quotient(__m128i s) const {
    s = _mm_min_epi16(_mm_max_epi16(s, _mm_setzero_si128()), hi);
    return _mm_srl_epi16(_mm_mulhi_epu16(_mm_add_epi16(_mm_add_epi16(s, s), d), m), shift);
  }
};

// Rounded division of 16-bit sums, saturated to the destination (ownDivRound).
void ownDivRow(const vnx16s* s, int divisor, vnx8u* dst, int n);
void ownDivRow(const vnx16s* s, int divisor, vnx8s* dst, int n);
