// Vector bodies of the column pass and of the rounded division of 16-bit sums; the
// tails are the templates of vncvseparable.h.
#include "filters/vncvseparable.h"

namespace {

// Exact sums: pairs of rows interleaved and multiplied-added into 32-bit lanes (used
// when ownColumnFitsSimd holds, so no lane can overflow), packed with saturation.
template <class D>
void ownColumnExact(const vnx16s* const* rows, const vnx16s* kern, int k, D* dst, std::int64_t x0, std::int64_t n,
                    int divisor, ownSum16 sum) {
  __m128i kk[kOwnMaxSimdTaps / 2 + 1];
  const int pairs = (k + 1) / 2;
  for (int p = 0; p < pairs; ++p) kk[p] = ownTapPair16(kern[2 * p], 2 * p + 1 < k ? kern[2 * p + 1] : 0);
  std::int64_t x = x0;
  for (; x + 8 <= n; x += 8) {
    __m128i lo = _mm_setzero_si128(), hi = _mm_setzero_si128();
    for (int p = 0; p < pairs; ++p) {
      const __m128i a = ownLoad(rows[2 * p] + x);
      const __m128i b = 2 * p + 1 < k ? ownLoad(rows[2 * p + 1] + x) : _mm_setzero_si128();
      ownMulAddPairs16(a, b, kk[p], lo, hi);
    }
    ownStorePacked(dst + x, lo, hi);
  }
  ownColumnRow(rows, kern, k, dst, x, n, divisor, sum);
}

// Sums modulo 2^16 in 16-bit lanes over the rows of non-zero taps.
void ownColumnLow(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, std::int64_t x0,
                  std::int64_t n) {
  const ownTaps16 t(kern, k, 0, 1);
  const vnx16s* r[kOwnMaxSimdTaps];
  for (int j = 0; j < t.n; ++j) r[j] = rows[t.off[j]];
  std::int64_t x = x0;
  if (t.n == 3) {
    for (; x + 8 <= n; x += 8) {
      __m128i acc = ownMulAdd16(_mm_setzero_si128(), ownLoad(r[0] + x), t.v[0]);
      acc = ownMulAdd16(acc, ownLoad(r[1] + x), t.v[1]);
      ownStore(dst + x, ownMulAdd16(acc, ownLoad(r[2] + x), t.v[2]));
    }
  } else if (t.n == 2) {
    for (; x + 8 <= n; x += 8) {
      const __m128i acc = ownMulAdd16(_mm_setzero_si128(), ownLoad(r[0] + x), t.v[0]);
      ownStore(dst + x, ownMulAdd16(acc, ownLoad(r[1] + x), t.v[1]));
    }
  }
  for (; x + 8 <= n; x += 8) {
    __m128i acc = _mm_setzero_si128();
    for (int j = 0; j < t.n; ++j) acc = ownMulAdd16(acc, ownLoad(r[j] + x), t.v[j]);
    ownStore(dst + x, acc);
  }
  ownColumnRow(rows, kern, k, dst, x, n, 1, ownSum16::Low);
}

}  // namespace

void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum) {
  if (sum == ownSum16::Low)
    ownColumnLow(rows, kern, k, dst, x0, n);
  else
    ownColumnExact(rows, kern, k, dst, x0, n, divisor, sum);
}
void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8u* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum) {
  ownColumnExact(rows, kern, k, dst, x0, n, divisor, sum);
}
void ownColumnRow_sse2(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8s* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum) {
  ownColumnExact(rows, kern, k, dst, x0, n, divisor, sum);
}

// Float sums four at a time, the products added top to bottom like the template.
void ownColumnRow_sse2(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, std::int64_t x0,
                       std::int64_t n, int divisor, ownSum16 sum) {
  __m128 kv[kOwnMaxSimdTaps];
  for (int j = 0; j < k; ++j) kv[j] = _mm_set1_ps(kern[j]);
  ownNaNWatch nan;  // NaN results settled once the vectors are stored
  std::int64_t x = x0;
  if (k == 3) {
    for (; x + 4 <= n; x += 4) {
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
      acc = ownMulAddPs(acc, kv[1], _mm_loadu_ps(rows[1] + x));
      nan.store(dst + x, ownMulAddPs(acc, kv[2], _mm_loadu_ps(rows[2] + x)));
    }
  } else if (k == 5) {
    for (; x + 4 <= n; x += 4) {
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
      acc = ownMulAddPs(acc, kv[1], _mm_loadu_ps(rows[1] + x));
      acc = ownMulAddPs(acc, kv[2], _mm_loadu_ps(rows[2] + x));
      acc = ownMulAddPs(acc, kv[3], _mm_loadu_ps(rows[3] + x));
      nan.store(dst + x, ownMulAddPs(acc, kv[4], _mm_loadu_ps(rows[4] + x)));
    }
  }
  for (; x + 4 <= n; x += 4) {
    __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
    for (int j = 1; j < k; ++j) acc = ownMulAddPs(acc, kv[j], _mm_loadu_ps(rows[j] + x));
    nan.store(dst + x, acc);
  }
  nan.settle(dst + x0, x - x0);
  ownColumnRow(rows, kern, k, dst, x, n, divisor, sum);
}

namespace {

// Rounded division of 16-bit sums in single precision. For |s| <= 2^15 the correctly
// rounded quotient never reaches a half-integer unless the exact quotient is one
// (its spacing is below 1/(2|d|)), and q + 0.5 is exact, so truncating q +- 0.5
// gives ownDivRound's result.
template <class D>
void ownDivRowFloat(const vnx16s* s, int divisor, D* dst, std::int64_t x0, std::int64_t n) {
  const __m128 dv = _mm_set1_ps(static_cast<float>(divisor));
  const __m128 half = _mm_set1_ps(0.5f), sign = _mm_set1_ps(-0.0f);
  auto quotient = [&](__m128i v32) {
    const __m128 q = _mm_div_ps(_mm_cvtepi32_ps(v32), dv);
    return _mm_cvttps_epi32(_mm_add_ps(q, _mm_or_ps(_mm_and_ps(q, sign), half)));
  };
  std::int64_t x = x0;
  for (; x + 8 <= n; x += 8) {
    __m128i lo, hi;
    ownWiden16sTo32(ownLoad(s + x), lo, hi);
    ownStorePacked(dst + x, quotient(lo), quotient(hi));
  }
  ownDivRow(s, divisor, dst, x, n);
}

}  // namespace

void ownDivRow_sse2(const vnx16s* s, int divisor, vnx8u* dst, std::int64_t x0, std::int64_t n) {
  const ownReciprocal rc(divisor);
  if (!rc.exact) return ownDivRowFloat(s, divisor, dst, x0, n);
  std::int64_t x = x0;
  for (; x + 16 <= n; x += 16) ownStorePackedU8(dst + x, rc.quotient(ownLoad(s + x)), rc.quotient(ownLoad(s + x + 8)));
  ownDivRow(s, divisor, dst, x, n);
}
void ownDivRow_sse2(const vnx16s* s, int divisor, vnx8s* dst, std::int64_t x0, std::int64_t n) {
  ownDivRowFloat(s, divisor, dst, x0, n);
}
