// Vector bodies of the row pass (the interior of a row, where every tap lies inside
// it); the edges and the tails are the templates of vncvseparable.h.
#include "filters/vncvseparable.h"

namespace {

// Interior samples in 16-bit lanes, eight at a time; three- and two-tap kernels (the
// Sobel and Scharr rows without their zero tap) keep their taps in registers.
template <class S>
void ownRowInterior16(const S* src, vnx16s* dst, const vnx16s* kern, int k, int anchor, int C, std::int64_t s0,
                      std::int64_t n, int divisor, ownSum16 sum) {
  const ownTaps16 t(kern, k, anchor, C);
  std::int64_t s = s0;
  if (t.n == 3) {
    for (; s + 8 <= n; s += 8) {
      __m128i acc = ownMulAdd16(_mm_setzero_si128(), ownLoad8As16(src + s + t.off[0]), t.v[0]);
      acc = ownMulAdd16(acc, ownLoad8As16(src + s + t.off[1]), t.v[1]);
      ownStore(dst + s, ownMulAdd16(acc, ownLoad8As16(src + s + t.off[2]), t.v[2]));
    }
  } else if (t.n == 2) {
    for (; s + 8 <= n; s += 8) {
      const __m128i acc = ownMulAdd16(_mm_setzero_si128(), ownLoad8As16(src + s + t.off[0]), t.v[0]);
      ownStore(dst + s, ownMulAdd16(acc, ownLoad8As16(src + s + t.off[1]), t.v[1]));
    }
  }
  for (; s + 8 <= n; s += 8) {
    __m128i acc = _mm_setzero_si128();
    for (int j = 0; j < t.n; ++j) acc = ownMulAdd16(acc, ownLoad8As16(src + s + t.off[j]), t.v[j]);
    ownStore(dst + s, acc);
  }
  ownRowInteriorRow(src, dst, kern, k, anchor, C, s, n, divisor, sum);
}

}  // namespace

void ownRowInteriorRow_sse2(const vnx8u* src, vnx16s* dst, const vnx16s* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum) {
  ownRowInterior16(src, dst, kern, k, anchor, C, s0, n, divisor, sum);
}
void ownRowInteriorRow_sse2(const vnx16s* src, vnx16s* dst, const vnx16s* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum) {
  ownRowInterior16(src, dst, kern, k, anchor, C, s0, n, divisor, sum);
}

// Float interior, four samples at a time, the products added left to right like the
// template; NaN results made the library's one NaN once the row is stored.
void ownRowInteriorRow_sse2(const vnx32f* src, vnx32f* dst, const vnx32f* kern, int k, int anchor, int C,
                            std::int64_t s0, std::int64_t n, int divisor, ownSum16 sum) {
  __m128 kv[kOwnMaxSimdTaps];
  for (int i = 0; i < k; ++i) kv[i] = _mm_set1_ps(kern[i]);
  ownNaNWatch nan;  // NaN results settled once the vectors are stored
  const std::int64_t back = static_cast<std::int64_t>(anchor) * C;
  std::int64_t s = s0;
  if (k == 3) {
    for (; s + 4 <= n; s += 4) {
      const float* p = src + s - back;
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
      acc = ownMulAddPs(acc, kv[1], _mm_loadu_ps(p + C));
      nan.store(dst + s, ownMulAddPs(acc, kv[2], _mm_loadu_ps(p + 2 * C)));
    }
  } else if (k == 5) {
    for (; s + 4 <= n; s += 4) {
      const float* p = src + s - back;
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
      acc = ownMulAddPs(acc, kv[1], _mm_loadu_ps(p + C));
      acc = ownMulAddPs(acc, kv[2], _mm_loadu_ps(p + 2 * C));
      acc = ownMulAddPs(acc, kv[3], _mm_loadu_ps(p + 3 * C));
      nan.store(dst + s, ownMulAddPs(acc, kv[4], _mm_loadu_ps(p + 4 * C)));
    }
  }
  for (; s + 4 <= n; s += 4) {
    const float* p = src + s - back;
    __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
    for (int i = 1; i < k; ++i) acc = ownMulAddPs(acc, kv[i], _mm_loadu_ps(p + static_cast<std::int64_t>(i) * C));
    nan.store(dst + s, acc);
  }
  nan.settle(dst + s0, s - s0);
  ownRowInteriorRow(src, dst, kern, k, anchor, C, s, n, divisor, sum);
}
