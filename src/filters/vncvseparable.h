// Internals of the separable row and column passes, shared by the pipeline exports
// (vncvseparable.cpp), the fixed-kernel filters and the kernel tests. Each kernel is a
// trio: a scalar template that is the reference and the tail (it starts at x0), and an
// _sse2 overload that does whole vectors from x0 and hands the rest to the template.
// Columns beyond a row come from border.h (64-bit indices, any row length).
#pragma once

#include <cstdint>
#include <type_traits>

#include "border.h"
#include "simd.h"
#include "traits.h"

// Integer row and column sums: exact (divided, then saturated), or modulo 2^16 (Low).
enum class ownSum16 { Exact, Low };

constexpr int kOwnMaxSimdTaps = 16;  // longer kernels take the scalar templates

// s / d rounded to nearest, halves away from zero: the one rounding rule of every
// integer division of the linear filters (row pass divisor, 8u8s divisor, box average).
inline std::int64_t ownDivRound(std::int64_t s, int d) {
  if (d == 1) return s;
  const std::int64_t a = s < 0 ? -s : s, b = d < 0 ? -static_cast<std::int64_t>(d) : d;
  const std::int64_t q = (2 * a + b) / (2 * b);
  return ((s < 0) != (d < 0)) ? -q : q;
}

// The sum a pass accumulates a sample in: exact 64-bit integers, or single precision.
template <class S>
struct ownPassSum {
  using type = std::int64_t;
};
template <>
struct ownPassSum<vnx32f> {
  using type = float;
};

// An integer sum finished for a 16-bit row: wrapped to 16 bits (Low), divided,
// saturated; a float sum is made the library's one NaN when it is NaN.
inline vnx16s ownFinish16(std::int64_t s, int divisor, ownSum16 sum) {
  if (sum == ownSum16::Low) s = static_cast<std::int16_t>(static_cast<std::uint16_t>(s));
  return ownSaturate<vnx16s>(ownDivRound(s, divisor));
}
inline vnx32f ownFinish16(float s, int, ownSum16) { return ownCanonicalNaN(s); }

// ---- scratch sizes -------------------------------------------------------------------
// One thread's share of a pipeline query: 32 + 4 * (h + k) + S, with S the query's own
// term; the queries report the thread count times this. The fixed filters build their
// slices on the 8u16s and 32f row queries and the 16s and 32f column queries.
inline std::int64_t ownPipelineThreadBytes(vnxiSize roi, std::int64_t k, std::int64_t s) {
  return 32 + 4 * (roi.height + k) + s;
}
inline std::int64_t ownRoundUp(std::int64_t v, int m) { return (v + m - 1) / m * m; }
inline std::int64_t ownRowPass8u16sBytes(vnxiSize roi, std::int64_t k) {
  return ownPipelineThreadBytes(roi, k, 36 * k + 112);
}
inline std::int64_t ownRowPass32fBytes(vnxiSize roi, std::int64_t k) {
  return ownPipelineThreadBytes(roi, k, 64 * k + 64);
}
inline std::int64_t ownColumnPass16sBytes(vnxiSize roi, std::int64_t k) {
  return ownPipelineThreadBytes(roi, k, 12 * ownRoundUp(roi.width, 4) + 32);
}
// The float column pass needs no scratch: its query reports 32 for any size and team.
constexpr std::int64_t kOwnColumnPass32fBytes = 32;

// ---- row pass ----------------------------------------------------------------------
// A row of `width` pixels of C interleaved samples: dst[x] = sum over i of
// kern[i] * src[x - anchor + i] (per channel), products added left to right.

// Samples s0 .. n - 1 of the interior, where every tap lies inside the row: src points
// at the row's first sample and sample s reads src[s - anchor * C + i * C].
template <class S, class D, class K>
void ownRowInteriorRow(const S* src, D* dst, const K* kern, int k, int anchor, int C, std::int64_t s0,
                       std::int64_t n, int divisor, ownSum16 sum) {
  using A = typename ownPassSum<S>::type;
  for (std::int64_t s = s0; s < n; ++s) {
    const S* p = src + s - static_cast<std::int64_t>(anchor) * C;
    A acc = static_cast<A>(kern[0]) * static_cast<A>(p[0]);
    for (int i = 1; i < k; ++i) acc = acc + static_cast<A>(kern[i]) * static_cast<A>(p[static_cast<std::int64_t>(i) * C]);
    dst[s] = ownFinish16(acc, divisor, sum);
  }
}

// Non-zero taps of a short integer kernel as 16-bit multipliers; off[] are sample
// offsets of each tap relative to the output sample.
struct ownTaps16 {
  int n = 0;
  int off[kOwnMaxSimdTaps];
  __m128i v[kOwnMaxSimdTaps];
  ownTaps16(const vnx16s* kern, int k, int anchor, int C) {
    for (int i = 0; i < k && i < kOwnMaxSimdTaps; ++i)
      if (kern[i] != 0) {
        off[n] = (i - anchor) * C;
        v[n] = _mm_set1_epi16(kern[i]);
        ++n;
      }
  }
};

// Whether 16-bit lanes give the row sums: always for Low (defined modulo 2^16), for 8u
// sources without a divisor when sum |tap| * 255 fits a signed 16-bit lane.
template <class S>
inline bool ownRowFits16(const vnx16s* kern, int k, int divisor, ownSum16 sum) {
  if (k > kOwnMaxSimdTaps || divisor != 1) return false;
  if (sum == ownSum16::Low) return true;
  if (!std::is_same<S, vnx8u>::value) return false;
  int total = 0;
  for (int i = 0; i < k; ++i) total += kern[i] < 0 ? -kern[i] : kern[i];
  return total * 255 <= 32767;
}

// Interior samples in 16-bit lanes, eight at a time (only where ownRowFits16 holds).
void ownRowInteriorRow_sse2(const vnx8u* src, vnx16s* dst, const vnx16s* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum);
void ownRowInteriorRow_sse2(const vnx16s* src, vnx16s* dst, const vnx16s* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum);
// Float interior, four samples at a time, taps added left to right like the template.
void ownRowInteriorRow_sse2(const vnx32f* src, vnx32f* dst, const vnx32f* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum);

// Pixels x0 .. x1 - 1 of a row whose taps may fall beyond it: the columns outside come
// from the border rule (value under vnxBorderConst), indices in 64 bits.
template <class S, class D, class K>
void ownRowEdgeRow(const S* src, std::int64_t width, int C, D* dst, const K* kern, int k, int anchor,
                   ownBorder rule, S value, int divisor, ownSum16 sum, std::int64_t x0, std::int64_t x1) {
  using A = typename ownPassSum<S>::type;
  for (std::int64_t x = x0; x < x1; ++x)
    for (int c = 0; c < C; ++c) {
      A acc = 0;
      for (int i = 0; i < k; ++i) {
        const std::int64_t xi = ownBorderIndex(x - anchor + i, width, rule);
        const S v = xi < 0 ? value : src[xi * C + c];
        const A p = static_cast<A>(kern[i]) * static_cast<A>(v);
        acc = i == 0 ? p : acc + p;
      }
      dst[x * C + c] = ownFinish16(acc, divisor, sum);
    }
}

// One row of the row pass: the edges through the border rule, the interior in vectors.
template <class S, class D, class K>
void ownRowPass(const S* src, int width, int C, D* dst, const K* kern, int k, int anchor, ownBorder rule, S value,
                int divisor, ownSum16 sum) {
  const std::int64_t w = width;
  const std::int64_t xa = anchor < w ? anchor : w;                       // first pixel with every tap inside
  const std::int64_t xb = w - (k - 1 - anchor) > xa ? w - (k - 1 - anchor) : xa;  // first pixel after them
  ownRowEdgeRow(src, w, C, dst, kern, k, anchor, rule, value, divisor, sum, 0, xa);
  ownRowEdgeRow(src, w, C, dst, kern, k, anchor, rule, value, divisor, sum, xb, w);
  bool simd = false;
  if constexpr (std::is_same<S, vnx32f>::value)
    simd = k <= kOwnMaxSimdTaps;
  else
    simd = ownRowFits16<S>(kern, k, divisor, sum);
  if (simd)
    ownRowInteriorRow_sse2(src, dst, kern, k, anchor, C, xa * C, xb * C, divisor, sum);
  else
    ownRowInteriorRow(src, dst, kern, k, anchor, C, xa * C, xb * C, divisor, sum);
}

// ---- column pass -------------------------------------------------------------------
// One row of n samples: sum over j of kern[j] * rows[j][x], products added top to bottom.

// Exact integer sums, divided and saturated to D; Low: the sum modulo 2^16; float sums
// in single precision.
template <class D>
void ownColumnRow(const vnx16s* const* rows, const vnx16s* kern, int k, D* dst, std::int64_t x0, std::int64_t n,
                  int divisor, ownSum16 sum) {
  for (std::int64_t x = x0; x < n; ++x) {
    std::int64_t s = 0;
    for (int j = 0; j < k; ++j) s += static_cast<std::int64_t>(kern[j]) * rows[j][x];
    if (sum == ownSum16::Low)
      dst[x] = static_cast<D>(static_cast<std::int16_t>(static_cast<std::uint16_t>(s)));
    else
      dst[x] = ownSaturate<D>(ownDivRound(s, divisor));
  }
}
inline void ownColumnRow(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, std::int64_t x0,
                         std::int64_t n, int, ownSum16) {
  for (std::int64_t x = x0; x < n; ++x) {
    float s = kern[0] * rows[0][x];
    for (int j = 1; j < k; ++j) s = s + kern[j] * rows[j][x];
    dst[x] = ownCanonicalNaN(s);
  }
}

// Whether the vector column kernel applies: Low sums in 16-bit lanes, exact sums in
// 32-bit lanes when sum |tap| * 32768 < 2^31 (no lane can overflow) and no divisor.
inline bool ownColumnFitsSimd(const vnx16s* kern, int k, int divisor, ownSum16 sum) {
  if (k > kOwnMaxSimdTaps) return false;
  if (sum == ownSum16::Low) return true;
  std::int64_t bound = 0;
  for (int j = 0; j < k; ++j) bound += kern[j] < 0 ? -kern[j] : kern[j];
  return divisor == 1 && bound < 65536;
}
inline bool ownColumnFitsSimd(const vnx32f*, int k, int, ownSum16) { return k <= kOwnMaxSimdTaps; }

void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum);
void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8u* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum);
void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8s* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum);
void ownColumnRow_sse2(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum);

// One row of the column pass: vectors where they apply, the template otherwise.
template <class K, class D>
void ownColumnPass(const K* const* rows, const K* kern, int k, D* dst, std::int64_t n, int divisor, ownSum16 sum) {
  if (ownColumnFitsSimd(kern, k, divisor, sum))
    ownColumnRow_sse2(rows, kern, k, dst, 0, n, divisor, sum);
  else
    ownColumnRow(rows, kern, k, dst, 0, n, divisor, sum);
}

// ---- rounded division of 16-bit sums ----------------------------------------------

// dst[x] = s[x] / divisor rounded by ownDivRound and saturated, x from x0.
template <class D>
void ownDivRow(const vnx16s* s, int divisor, D* dst, std::int64_t x0, std::int64_t n) {
  for (std::int64_t x = x0; x < n; ++x) dst[x] = ownSaturate<D>(ownDivRound(s[x], divisor));
}

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

// Rounded division of 16-bit sums in vectors (the integer reciprocal for 8u where it
// is exact, single precision otherwise), then the template for the rest.
void ownDivRow_sse2(const vnx16s* s, int divisor, vnx8u* dst, std::int64_t x0, std::int64_t n);
void ownDivRow_sse2(const vnx16s* s, int divisor, vnx8s* dst, std::int64_t x0, std::int64_t n);
template <class D>
inline void ownDivRow(const vnx16s* s, int divisor, D* dst, int n) {
  ownDivRow_sse2(s, divisor, dst, 0, n);
}
