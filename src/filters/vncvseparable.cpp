// Separable row and column pipeline passes: a row pass filters each source row along x
// with a 1-D kernel and synthesises the columns beyond the ROI by a border type; a
// column pass combines kernelSize intermediate rows, given by pointers, into one row.
#include "filters/vncvseparable.h"

#include <algorithm>
#include <type_traits>

#include "check.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"

namespace {

constexpr int kOwnMaxSimdTaps = 16;   // longer kernels take the general scalar routine

template <class S>
using ownAcc = typename std::conditional<std::is_same<S, vnx32f>::value, float, std::int64_t>::type;

// One output sample of the row pass, border-aware: the reference and the edge code.
template <class S, class K>
ownAcc<S> ownRowSample(const S* src, int w, int C, int x, int c, const K* kern, int k, int anchor, int border,
                       S bval) {
  using A = ownAcc<S>;
  A s = 0;
  for (int i = 0; i < k; ++i) {
    const int xi = x - anchor + i;
    const S v = (xi >= 0 && xi < w)             ? src[xi * C + c]
                : border == vnxBorderConst ? bval
                                           : src[ownBorderIndex(xi, w, border) * C + c];
    const A p = static_cast<A>(kern[i]) * static_cast<A>(v);
    s = i == 0 ? p : s + p;
  }
  return s;
}

// Integer sums: optionally wrapped to 16 bits (Low), divided, saturated.
inline vnx16s ownRowFinish(std::int64_t s, int divisor, bool low) {
  if (low) s = static_cast<std::int16_t>(static_cast<std::uint16_t>(s));
  return ownSaturate<vnx16s>(ownDivRound(s, divisor));
}
inline vnx32f ownRowFinish(float s, int, bool) { return s; }

// Non-zero taps of a short integer kernel as 16-bit multipliers; off[] are sample
// offsets of each tap relative to the output sample.
struct ownTaps16 {
  int n = 0;
  int off[kOwnMaxSimdTaps];
  int tap[kOwnMaxSimdTaps];
  __m128i v[kOwnMaxSimdTaps];
  ownTaps16(const vnx16s* kern, int k, int anchor, int C) {
    for (int i = 0; i < k; ++i)
      if (kern[i] != 0) {
        off[n] = (i - anchor) * C;
        tap[n] = kern[i];
        v[n] = _mm_set1_epi16(kern[i]);
        ++n;
      }
  }
};

// acc + tap * v in 16-bit lanes (modulo 2^16); a multiply costs less than a branch per tap.
inline __m128i ownMacTap(__m128i acc, __m128i v, int tap, __m128i tv) {
  (void)tap;
  return _mm_add_epi16(acc, _mm_mullo_epi16(v, tv));
}
inline __m128i ownLoad8x16(const vnx8u* p) { return _mm_unpacklo_epi8(ownLoad64(p), _mm_setzero_si128()); }
inline __m128i ownLoad8x16(const vnx16s* p) { return ownLoad(p); }

// Interior samples s0 .. s1 - 1 (every tap inside the row), eight at a time in 16-bit
// lanes; returns the first sample left for the scalar tail.
template <class S>
int ownRowInterior16_sse2(const S* src, vnx16s* dst, const ownTaps16& t, int s0, int s1) {
  int s = s0;
  if (t.n == 3) {
    for (; s + 8 <= s1; s += 8) {
      __m128i acc = ownMacTap(_mm_setzero_si128(), ownLoad8x16(src + s + t.off[0]), t.tap[0], t.v[0]);
      acc = ownMacTap(acc, ownLoad8x16(src + s + t.off[1]), t.tap[1], t.v[1]);
      ownStore(dst + s, ownMacTap(acc, ownLoad8x16(src + s + t.off[2]), t.tap[2], t.v[2]));
    }
  } else if (t.n == 2) {
    for (; s + 8 <= s1; s += 8) {
      const __m128i acc = ownMacTap(_mm_setzero_si128(), ownLoad8x16(src + s + t.off[0]), t.tap[0], t.v[0]);
      ownStore(dst + s, ownMacTap(acc, ownLoad8x16(src + s + t.off[1]), t.tap[1], t.v[1]));
    }
  }
  for (; s + 8 <= s1; s += 8) {
    __m128i acc = _mm_setzero_si128();
    for (int j = 0; j < t.n; ++j) acc = ownMacTap(acc, ownLoad8x16(src + s + t.off[j]), t.tap[j], t.v[j]);
    ownStore(dst + s, acc);
  }
  return s;
}

// Float interior, four samples at a time, taps added left to right like the reference.
int ownRowInterior32f_sse2(const vnx32f* src, vnx32f* dst, const vnx32f* kern, int k, int anchor, int C, int s0,
                           int s1) {
  __m128 kv[kOwnMaxSimdTaps];
  for (int i = 0; i < k; ++i) kv[i] = _mm_set1_ps(kern[i]);
  int s = s0;
  if (k == 3) {
    for (; s + 4 <= s1; s += 4) {
      const float* p = src + s - anchor * C;
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
      acc = _mm_add_ps(acc, _mm_mul_ps(kv[1], _mm_loadu_ps(p + C)));
      _mm_storeu_ps(dst + s, _mm_add_ps(acc, _mm_mul_ps(kv[2], _mm_loadu_ps(p + 2 * C))));
    }
  } else if (k == 5) {
    for (; s + 4 <= s1; s += 4) {
      const float* p = src + s - anchor * C;
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
      acc = _mm_add_ps(acc, _mm_mul_ps(kv[1], _mm_loadu_ps(p + C)));
      acc = _mm_add_ps(acc, _mm_mul_ps(kv[2], _mm_loadu_ps(p + 2 * C)));
      acc = _mm_add_ps(acc, _mm_mul_ps(kv[3], _mm_loadu_ps(p + 3 * C)));
      _mm_storeu_ps(dst + s, _mm_add_ps(acc, _mm_mul_ps(kv[4], _mm_loadu_ps(p + 4 * C))));
    }
  }
  for (; s + 4 <= s1; s += 4) {
    const float* p = src + s - anchor * C;
    __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(p));
    for (int i = 1; i < k; ++i) acc = _mm_add_ps(acc, _mm_mul_ps(kv[i], _mm_loadu_ps(p + i * C)));
    _mm_storeu_ps(dst + s, acc);
  }
  return s;
}

// Whether the 16-bit lanes give the exact sums: always for Low (it is defined modulo
// 2^16), for 8u sources when sum |tap| * 255 fits a signed 16-bit lane.
template <class S>
bool ownRowFits16(const vnx16s* kern, int k, bool low) {
  if (low) return true;
  if (!std::is_same<S, vnx8u>::value) return false;
  int sum = 0;
  for (int i = 0; i < k; ++i) sum += kern[i] < 0 ? -kern[i] : kern[i];
  return sum * 255 <= 32767;
}

template <class S, class D, class K>
void ownRowPassT(const S* src, int w, int C, D* dst, const K* kern, int k, int anchor, int border, S bval,
                 int divisor, bool low) {
  // Pixels [xa, xb) have every tap inside the row; the edges go through the border rule.
  const int xa = std::min(anchor, w);
  const int xb = std::max(w - (k - 1 - anchor), xa);
  for (int x = 0; x < xa; ++x)
    for (int c = 0; c < C; ++c)
      dst[x * C + c] = ownRowFinish(ownRowSample(src, w, C, x, c, kern, k, anchor, border, bval), divisor, low);
  for (int x = xb; x < w; ++x)
    for (int c = 0; c < C; ++c)
      dst[x * C + c] = ownRowFinish(ownRowSample(src, w, C, x, c, kern, k, anchor, border, bval), divisor, low);
  int s = xa * C;
  const int s1 = xb * C;
  if (k <= kOwnMaxSimdTaps && divisor == 1) {
    if constexpr (std::is_same<S, vnx32f>::value) {
      s = ownRowInterior32f_sse2(src, dst, kern, k, anchor, C, s, s1);
    } else if (ownRowFits16<S>(kern, k, low)) {
      s = ownRowInterior16_sse2(src, dst, ownTaps16(kern, k, anchor, C), s, s1);
    }
  }
  for (; s < s1; ++s) {
    const S* p = src + s - anchor * C;
    ownAcc<S> acc = static_cast<ownAcc<S>>(kern[0]) * static_cast<ownAcc<S>>(p[0]);
    for (int i = 1; i < k; ++i) acc = acc + static_cast<ownAcc<S>>(kern[i]) * static_cast<ownAcc<S>>(p[i * C]);
    dst[s] = ownRowFinish(acc, divisor, low);
  }
}

}  // namespace

void ownRowPass(const vnx8u* src, int width, int C, vnx16s* dst, const vnx16s* kern, int k, int anchor, int border,
                vnx8u bval, int divisor, bool low) {
  ownRowPassT(src, width, C, dst, kern, k, anchor, border, bval, divisor, low);
}
void ownRowPass(const vnx16s* src, int width, int C, vnx16s* dst, const vnx16s* kern, int k, int anchor,
                int border, vnx16s bval, int divisor, bool low) {
  ownRowPassT(src, width, C, dst, kern, k, anchor, border, bval, divisor, low);
}
void ownRowPass(const vnx32f* src, int width, int C, vnx32f* dst, const vnx32f* kern, int k, int anchor,
                int border, vnx32f bval, int, bool) {
  ownRowPassT(src, width, C, dst, kern, k, anchor, border, bval, 1, false);
}

// ---- column passes -------------------------------------------------------------

void ownColumnLow(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n) {
  int x = 0;
  if (k <= kOwnMaxSimdTaps) {
    const ownTaps16 t(kern, k, 0, 1);
    const vnx16s* r[kOwnMaxSimdTaps];
    for (int j = 0; j < t.n; ++j) r[j] = rows[t.off[j]];
    if (t.n == 3) {
      for (; x + 8 <= n; x += 8) {
        __m128i acc = ownMacTap(_mm_setzero_si128(), ownLoad(r[0] + x), t.tap[0], t.v[0]);
        acc = ownMacTap(acc, ownLoad(r[1] + x), t.tap[1], t.v[1]);
        ownStore(dst + x, ownMacTap(acc, ownLoad(r[2] + x), t.tap[2], t.v[2]));
      }
    } else if (t.n == 2) {
      for (; x + 8 <= n; x += 8) {
        const __m128i acc = ownMacTap(_mm_setzero_si128(), ownLoad(r[0] + x), t.tap[0], t.v[0]);
        ownStore(dst + x, ownMacTap(acc, ownLoad(r[1] + x), t.tap[1], t.v[1]));
      }
    }
    for (; x + 8 <= n; x += 8) {
      __m128i acc = _mm_setzero_si128();
      for (int j = 0; j < t.n; ++j) acc = ownMacTap(acc, ownLoad(r[j] + x), t.tap[j], t.v[j]);
      ownStore(dst + x, acc);
    }
  }
  for (; x < n; ++x) {
    std::int64_t s = 0;
    for (int j = 0; j < k; ++j) s += static_cast<std::int64_t>(kern[j]) * rows[j][x];
    dst[x] = static_cast<vnx16s>(static_cast<std::uint16_t>(s));
  }
}

namespace {

// Eight 32-bit sums packed with saturation to the destination type.
inline void ownStorePacked(vnx16s* d, __m128i lo, __m128i hi) { ownStore(d, _mm_packs_epi32(lo, hi)); }
inline void ownStorePacked(vnx8s* d, __m128i lo, __m128i hi) {
  const __m128i w = _mm_packs_epi32(lo, hi);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(d), _mm_packs_epi16(w, w));
}
inline void ownStorePacked(vnx8u* d, __m128i lo, __m128i hi) {
  const __m128i w = _mm_packs_epi32(lo, hi);  // saturating to 16 bits keeps the order around 0..255
  _mm_storel_epi64(reinterpret_cast<__m128i*>(d), _mm_packus_epi16(w, w));
}

// Exact sums: pairs of rows interleaved and multiplied-added into 32-bit lanes. Used
// when sum |tap| * 32768 < 2^31, so no lane can overflow, and without a divisor.
template <class D>
void ownColumnT(const vnx16s* const* rows, const vnx16s* kern, int k, D* dst, int n, int divisor) {
  int x = 0;
  std::int64_t bound = 0;
  for (int j = 0; j < k; ++j) bound += kern[j] < 0 ? -kern[j] : kern[j];
  if (divisor == 1 && k <= kOwnMaxSimdTaps && bound < 65536) {
    __m128i kk[kOwnMaxSimdTaps / 2 + 1];
    const int pairs = (k + 1) / 2;
    for (int p = 0; p < pairs; ++p) {
      const int hiTap = 2 * p + 1 < k ? kern[2 * p + 1] : 0;
      kk[p] = _mm_set1_epi32(static_cast<int>((static_cast<std::uint32_t>(static_cast<std::uint16_t>(hiTap)) << 16) |
                                              static_cast<std::uint16_t>(kern[2 * p])));
    }
    for (; x + 8 <= n; x += 8) {
      __m128i lo = _mm_setzero_si128(), hi = _mm_setzero_si128();
      for (int p = 0; p < pairs; ++p) {
        const __m128i a = ownLoad(rows[2 * p] + x);
        const __m128i b = 2 * p + 1 < k ? ownLoad(rows[2 * p + 1] + x) : _mm_setzero_si128();
        lo = _mm_add_epi32(lo, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), kk[p]));
        hi = _mm_add_epi32(hi, _mm_madd_epi16(_mm_unpackhi_epi16(a, b), kk[p]));
      }
      ownStorePacked(dst + x, lo, hi);
    }
  }
  for (; x < n; ++x) {
    std::int64_t s = 0;
    for (int j = 0; j < k; ++j) s += static_cast<std::int64_t>(kern[j]) * rows[j][x];
    dst[x] = ownSaturate<D>(ownDivRound(s, divisor));
  }
}

}  // namespace

void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n, int divisor) {
  ownColumnT(rows, kern, k, dst, n, divisor);
}
void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8u* dst, int n, int divisor) {
  ownColumnT(rows, kern, k, dst, n, divisor);
}
void ownColumn(const vnx16s* const* rows, const vnx16s* kern, int k, vnx8s* dst, int n, int divisor) {
  ownColumnT(rows, kern, k, dst, n, divisor);
}

void ownColumn(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, int n, int) {
  int x = 0;
  if (k <= kOwnMaxSimdTaps) {
    __m128 kv[kOwnMaxSimdTaps];
    for (int j = 0; j < k; ++j) kv[j] = _mm_set1_ps(kern[j]);
    if (k == 3) {
      for (; x + 4 <= n; x += 4) {
        __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
        acc = _mm_add_ps(acc, _mm_mul_ps(kv[1], _mm_loadu_ps(rows[1] + x)));
        _mm_storeu_ps(dst + x, _mm_add_ps(acc, _mm_mul_ps(kv[2], _mm_loadu_ps(rows[2] + x))));
      }
    } else if (k == 5) {
      for (; x + 4 <= n; x += 4) {
        __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
        acc = _mm_add_ps(acc, _mm_mul_ps(kv[1], _mm_loadu_ps(rows[1] + x)));
        acc = _mm_add_ps(acc, _mm_mul_ps(kv[2], _mm_loadu_ps(rows[2] + x)));
        acc = _mm_add_ps(acc, _mm_mul_ps(kv[3], _mm_loadu_ps(rows[3] + x)));
        _mm_storeu_ps(dst + x, _mm_add_ps(acc, _mm_mul_ps(kv[4], _mm_loadu_ps(rows[4] + x))));
      }
    }
    for (; x + 4 <= n; x += 4) {
      __m128 acc = _mm_mul_ps(kv[0], _mm_loadu_ps(rows[0] + x));
      for (int j = 1; j < k; ++j) acc = _mm_add_ps(acc, _mm_mul_ps(kv[j], _mm_loadu_ps(rows[j] + x)));
      _mm_storeu_ps(dst + x, acc);
    }
  }
  for (; x < n; ++x) {
    float s = kern[0] * rows[0][x];
    for (int j = 1; j < k; ++j) s = s + kern[j] * rows[j][x];
    dst[x] = s;
  }
}

namespace {

inline void ownStoreRounded(vnx8s* d, __m128i lo, __m128i hi) { ownStorePacked(d, lo, hi); }
inline void ownStoreRounded(vnx8u* d, __m128i lo, __m128i hi) { ownStorePacked(d, lo, hi); }

// Rounded division of 16-bit sums in single precision. For |s| <= 2^15 the correctly
// rounded quotient never reaches a half-integer unless the exact quotient is one
// (its spacing is below 1/(2|d|)), and q + 0.5 is exact, so truncating q +- 0.5
// gives ownDivRound's result.
template <class D>
void ownDivRowT(const vnx16s* s, int divisor, D* dst, int n) {
  const __m128 dv = _mm_set1_ps(static_cast<float>(divisor));
  const __m128 half = _mm_set1_ps(0.5f), sign = _mm_set1_ps(-0.0f);
  auto quotient = [&](__m128i v32) {
    const __m128 q = _mm_div_ps(_mm_cvtepi32_ps(v32), dv);
    return _mm_cvttps_epi32(_mm_add_ps(q, _mm_or_ps(_mm_and_ps(q, sign), half)));
  };
  int x = 0;
  for (; x + 8 <= n; x += 8) {
    const __m128i v = ownLoad(s + x);
    const __m128i lo = _mm_srai_epi32(_mm_unpacklo_epi16(v, v), 16);
    const __m128i hi = _mm_srai_epi32(_mm_unpackhi_epi16(v, v), 16);
    ownStoreRounded(dst + x, quotient(lo), quotient(hi));
  }
  for (; x < n; ++x) dst[x] = ownSaturate<D>(ownDivRound(s[x], divisor));
}

void ownDivRowReciprocal(const vnx16s* s, const ownReciprocal& rc, int divisor, vnx8u* dst, int n) {
  int x = 0;
  for (; x + 16 <= n; x += 16)
    ownStore(dst + x, _mm_packus_epi16(rc.quotient(ownLoad(s + x)), rc.quotient(ownLoad(s + x + 8))));
  for (; x < n; ++x) dst[x] = ownSaturate<vnx8u>(ownDivRound(s[x], divisor));
}

}  // namespace

void ownDivRow(const vnx16s* s, int divisor, vnx8u* dst, int n) {
  const ownReciprocal rc(divisor);
  if (rc.exact)
    ownDivRowReciprocal(s, rc, divisor, dst, n);
  else
    ownDivRowT(s, divisor, dst, n);
}
void ownDivRow(const vnx16s* s, int divisor, vnx8s* dst, int n) { ownDivRowT(s, divisor, dst, n); }

// ---- exported passes -------------------------------------------------------------

namespace {

// Row pass: pointers, height, width, kernel size, anchor, source step, border type,
// divisor, then the destination row pointers; bands of rows when the ROI is large.
template <int C, class S, class D, class K>
vnxStatus ownRowPipeline(const S* pSrc, int srcStep, D* const* ppDst, vnxiSize roi, const K* pKernel, int k,
                         int anchor, int border, S bval, int divisor, const vnx8u* pBuffer, bool low) {
  if (vnxStatus st = ownCheckPtrs({pSrc, ppDst, pKernel, pBuffer})) return st;
  if (roi.height < 1 || roi.width < 1 || k < 1) return vnxStatusBadSize;
  if (anchor < 0 || anchor >= k) return vnxStatusBadAnchor;
  if (vnxStatus st = ownCheckSteps({ownImg<S, C>(srcStep, roi.width)})) return st;
  if (border < vnxBorderConst || border > vnxBorderMirrorR) return vnxStatusBadArg;
  if (divisor == 0) return vnxStatusBadArg;
  for (int y = 0; y < roi.height; ++y)
    if (!ppDst[y]) return vnxStatusNullPtr;
  ownRunBands(ownBandSplit{roi.height, ownBandCount(roi, kOwnBandsRowPass)}, [&](int, int y0, int y1) {
    for (int y = y0; y < y1; ++y)
      ownRowPass(ownRow(pSrc, srcStep, y), roi.width, C, ppDst[y], pKernel, k, anchor, border, bval, divisor, low);
  });
  return vnxStatusOk;
}

// Column pass: pointers, height, width, kernel size, destination step, work buffer,
// the height + kernelSize - 1 row pointers, then the divisor.
template <int C, class D, class K, class Run>
vnxStatus ownColumnPipeline(const K* const* ppSrc, D* pDst, int dstStep, vnxiSize roi, const K* pKernel, int k,
                            int divisor, const vnx8u* pBuffer, Run&& run) {
  if (vnxStatus st = ownCheckPtrs({ppSrc, pDst, pKernel})) return st;
  if (roi.height < 1 || roi.width < 1 || k < 1) return vnxStatusBadSize;
  if (vnxStatus st = ownCheckSteps({ownImg<D, C>(dstStep, roi.width)})) return st;
  if (!pBuffer) return vnxStatusNullPtr;
  for (int i = 0; i < roi.height + k - 1; ++i)
    if (!ppSrc[i]) return vnxStatusNullPtr;
  if (divisor == 0) return vnxStatusBadArg;
  for (int y = 0; y < roi.height; ++y) run(ppSrc + y, pKernel, k, ownRow(pDst, dstStep, y), roi.width * C, divisor);
  return vnxStatusOk;
}

inline std::int64_t ownRoundUp(std::int64_t v, int m) { return (v + m - 1) / m * m; }

// Size queries: T * (32 + 4 * (h + k) + S) with S from the query's own formula.
template <class PerThread>
vnxStatus ownPipelineSize(vnxiSize roi, int k, int* pSize, PerThread&& perThread) {
  if (!pSize) return vnxStatusNullPtr;
  if (roi.width < 1 || roi.height < 1 || k < 1) return vnxStatusBadSize;
  const std::int64_t t = ownNumThreads();
  *pSize = static_cast<int>(t * (32 + 4 * (static_cast<std::int64_t>(roi.height) + k) + perThread(k, roi.width)));
  return vnxStatusOk;
}

auto ownRunColumn = [](auto rows, auto kern, int k, auto dst, int n, int divisor) {
  ownColumn(rows, kern, k, dst, n, divisor);
};
auto ownRunColumnLow = [](const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n, int) {
  ownColumnLow(rows, kern, k, dst, n);
};

}  // namespace

VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, false);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C3R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, false);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, false);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, false);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, true);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, true);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue, 1,
                           pBuffer, false);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue, 1,
                           pBuffer, false);
}

VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C1R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C3R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C1R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C3R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumnLow);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumnLow);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C1R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumn);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C3R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownRunColumn);
}

VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 36 * k + 112; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 60 * k + 112; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 48 * k + 80; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 40 * k + 64; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 24 * k + 64; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 208 * k + 64; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 64 * k + 64; });
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, [](std::int64_t k, int) { return 192 * k + 32; });
}

VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         [](std::int64_t, int w) { return 12 * ownRoundUp(w, 4) + 32; });
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         [](std::int64_t, int w) { return 36 * ownRoundUp(w, 4) + 32; });
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C1R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C3R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C1R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C3R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         [](std::int64_t, int w) { return 12 * ownRoundUp(w, 8) + 32; });
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         [](std::int64_t, int w) { return 36 * ownRoundUp(w, 8) + 32; });
}
// One query for both channel forms: the float column pass needs no scratch of its own.
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  if (!pBufferSize) return vnxStatusNullPtr;
  if (roiSize.width < 1 || roiSize.height < 1 || kernelSize < 1) return vnxStatusBadSize;
  *pBufferSize = 32;
  return vnxStatusOk;
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_32f_C1R(roiSize, kernelSize, pBufferSize);
}
