// Tilted (45-degree) summed-area tables of 8u images, W + 2 by H + 2: rows 0 and 1
// hold the offset; each source row r gives table row r + 2 from the two rows above
// it (P = row r + 1, PP = row r), the source row s and, for the squared table, the
// same recurrence on squares:
//   T[0] = P[1]
//   T[x] = s[x-1] + s[x] + P[x-1] + P[x+1] - PP[x]     x = 1 .. W-1
//   T[W] = s[W-1] + P[W-1] + P[W+1] - PP[W]
//   T[W+1] = P[W]
// The 32f sum tables add T[W] to the value the caller left there (see the header).
#include <algorithm>

#include "check.h"
#include "integral.h"
#include "simd.h"

namespace {

// One interior entry of the sum table: 32s wraps; 32f is evaluated in double as
// ((P[x-1] - PP[x]) + P[x+1]) + s[x-1] + s[x] and rounded once.
inline vnx32s ownTiltedEntry(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t s0, std::uint32_t s1) {
  return static_cast<vnx32s>(s0 + s1 + static_cast<std::uint32_t>(pl) + static_cast<std::uint32_t>(pr) -
                             static_cast<std::uint32_t>(pp));
}
inline vnx32f ownTiltedEntry(vnx32f pl, vnx32f pp, vnx32f pr, std::uint32_t s0, std::uint32_t s1) {
  return static_cast<float>(((static_cast<double>(pl) - pp) + pr) + s0 + s1);
}
// The last column: s[W-1] + P[W-1] + P[W+1] - PP[W], assigned for 32s, rounded to
// single and added to the prior content for 32f.
inline void ownTiltedLast(vnx32s& t, vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t s0) {
  t = static_cast<vnx32s>(s0 + static_cast<std::uint32_t>(pl) + static_cast<std::uint32_t>(pr) -
                          static_cast<std::uint32_t>(pp));
}
inline void ownTiltedLast(vnx32f& t, vnx32f pl, vnx32f pp, vnx32f pr, std::uint32_t s0) {
  t += static_cast<float>(static_cast<double>(s0) + pl + pr - pp);
}

// Square entries: the integer square term first, then ((sq + P[x-1]) - PP[x]) + P[x+1]
// inside, ((sq + P[W-1]) + P[W+1]) - PP[W] in the last column; both assigned.
inline vnx64f ownTiltedSqrEntry(vnx64f pl, vnx64f pp, vnx64f pr, std::uint32_t sq) {
  return ((static_cast<double>(sq) + pl) - pp) + pr;
}
inline vnx32s ownTiltedSqrEntry(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t sq) {
  return static_cast<vnx32s>(sq + static_cast<std::uint32_t>(pl) - static_cast<std::uint32_t>(pp) +
                             static_cast<std::uint32_t>(pr));
}
inline vnx64f ownTiltedSqrLast(vnx64f pl, vnx64f pp, vnx64f pr, std::uint32_t sq) {
  return ((static_cast<double>(sq) + pl) + pr) - pp;
}
inline vnx32s ownTiltedSqrLast(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t sq) {
  return ownTiltedSqrEntry(pl, pp, pr, sq);
}

}  // namespace

// Which table of a pair a row belongs to: the sums, or the squares (the same
// recurrence on squared pixels, the two squares added as integers first).
enum class ownTiltedTable { Sums, Squares };

// Interior entries x = x0 .. w-1 of a tilted row (t, p, pp address column 0).
template <ownTiltedTable K, class S>
void ownTiltedInnerRow(const vnx8u* s, const S* p, const S* pp, S* t, int x0, int w) {
  for (int x = x0; x < w; ++x) {
    const std::uint32_t a = s[x - 1], b = s[x];
    if constexpr (K == ownTiltedTable::Sums)
      t[x] = ownTiltedEntry(p[x - 1], pp[x], p[x + 1], a, b);
    else
      t[x] = ownTiltedSqrEntry(p[x - 1], pp[x], p[x + 1], a * a + b * b);
  }
}

namespace {

// Sixteen pixel pairs (s[x-1], s[x]) from a = s + x - 1: the lanes of a and b = a + 1
// widened to 16 bits, low and high eight.
struct ownPairs16 {
  __m128i a[2], b[2];
  explicit ownPairs16(const vnx8u* p) {
    const __m128i z = _mm_setzero_si128(), va = ownLoad(p), vb = ownLoad(p + 1);
    a[0] = _mm_unpacklo_epi8(va, z), a[1] = _mm_unpackhi_epi8(va, z);
    b[0] = _mm_unpacklo_epi8(vb, z), b[1] = _mm_unpackhi_epi8(vb, z);
  }
  // Lanes 4k .. 4k+3 of a + b, or of a^2 + b^2 (the pairs (a, b) multiplied and
  // added by the 16-bit multiply-add), as 32-bit integers.
  __m128i sum(int k) const {
    const __m128i v = _mm_add_epi16(a[k >> 1], b[k >> 1]);
    return (k & 1) ? _mm_unpackhi_epi16(v, _mm_setzero_si128()) : _mm_unpacklo_epi16(v, _mm_setzero_si128());
  }
  __m128i squares(int k) const {
    const __m128i v = (k & 1) ? _mm_unpackhi_epi16(a[k >> 1], b[k >> 1]) : _mm_unpacklo_epi16(a[k >> 1], b[k >> 1]);
    return _mm_madd_epi16(v, v);
  }
  __m128i first(int k) const { return ownWiden16To32(a[k >> 1], k & 1); }
  __m128i second(int k) const { return ownWiden16To32(b[k >> 1], k & 1); }
  static __m128i ownWiden16To32(__m128i v, int high) {
    return high ? _mm_unpackhi_epi16(v, _mm_setzero_si128()) : _mm_unpacklo_epi16(v, _mm_setzero_si128());
  }
};

// Four entries x .. x+3 from 32-bit lanes of pair sums (or squares).
inline void ownTiltedStore4(const vnx32s* p, const vnx32s* pp, vnx32s* t, int x, const ownPairs16& v, int k) {
  const __m128i e = _mm_add_epi32(_mm_add_epi32(v.sum(k), ownLoad(p + x - 1)), ownLoad(p + x + 1));
  ownStore(t + x, _mm_sub_epi32(e, ownLoad(pp + x)));
}
// ((P[x-1] - PP[x]) + P[x+1]) + s[x-1] + s[x] in double, two lanes at a time, rounded once.
inline __m128 ownTiltedHalf32f(const vnx32f* p, const vnx32f* pp, int x, __m128i s0, __m128i s1) {
  const __m128d l = _mm_cvtps_pd(_mm_castsi128_ps(ownLoad64(p + x - 1)));
  const __m128d r = _mm_cvtps_pd(_mm_castsi128_ps(ownLoad64(p + x + 1)));
  const __m128d u = _mm_cvtps_pd(_mm_castsi128_ps(ownLoad64(pp + x)));
  const __m128d e = _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_sub_pd(l, u), r), _mm_cvtepi32_pd(s0)), _mm_cvtepi32_pd(s1));
  return _mm_cvtpd_ps(e);
}
inline void ownTiltedStore4(const vnx32f* p, const vnx32f* pp, vnx32f* t, int x, const ownPairs16& v, int k) {
  const __m128i s0 = v.first(k), s1 = v.second(k);
  const __m128 lo = ownTiltedHalf32f(p, pp, x, s0, s1);
  const __m128 hi = ownTiltedHalf32f(p, pp, x + 2, _mm_srli_si128(s0, 8), _mm_srli_si128(s1, 8));
  _mm_storeu_ps(t + x, _mm_movelh_ps(lo, hi));
}
inline void ownTiltedSqrStore4(const vnx32s* p, const vnx32s* pp, vnx32s* t, int x, const ownPairs16& v, int k) {
  const __m128i e = _mm_add_epi32(_mm_sub_epi32(_mm_add_epi32(v.squares(k), ownLoad(p + x - 1)), ownLoad(pp + x)),
                                  ownLoad(p + x + 1));
  ownStore(t + x, e);
}
// ((sq + QP[x-1]) - QPP[x]) + QP[x+1] in double, two lanes at a time.
inline void ownTiltedSqrStore4(const vnx64f* p, const vnx64f* pp, vnx64f* t, int x, const ownPairs16& v, int k) {
  const __m128i sq = v.squares(k);
  for (int h = 0; h < 2; ++h, x += 2) {
    const __m128d q = _mm_cvtepi32_pd(h ? _mm_srli_si128(sq, 8) : sq);
    const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_add_pd(q, _mm_loadu_pd(p + x - 1)), _mm_loadu_pd(pp + x)),
                                 _mm_loadu_pd(p + x + 1));
    _mm_storeu_pd(t + x, e);
  }
}

}  // namespace

// Sixteen interior entries a step (x + 15 <= w - 1: every read stays in the rows),
// then the template for the rest. Each lane repeats the scalar operations.
template <ownTiltedTable K, class S>
void ownTiltedInnerRow_sse2(const vnx8u* s, const S* p, const S* pp, S* t, int w) {
  int x = 1;
  for (; x + 16 <= w; x += 16) {
    const ownPairs16 v(s + x - 1);
    for (int k = 0; k < 4; ++k) {
      if constexpr (K == ownTiltedTable::Sums)
        ownTiltedStore4(p, pp, t, x + 4 * k, v, k);
      else
        ownTiltedSqrStore4(p, pp, t, x + 4 * k, v, k);
    }
  }
  ownTiltedInnerRow<K>(s, p, pp, t, x, w);
}

// One table row from the two above it (t, p, pp address column 0).
template <ownTiltedTable K, class S>
void ownTiltedRow(const vnx8u* s, const S* p, const S* pp, S* t, int w) {
  const std::uint32_t last = s[w - 1];
  t[0] = p[1];
  ownTiltedInnerRow_sse2<K>(s, p, pp, t, w);
  if constexpr (K == ownTiltedTable::Sums)
    ownTiltedLast(t[w], p[w - 1], pp[w], p[w + 1], last);
  else
    t[w] = ownTiltedSqrLast(p[w - 1], pp[w], p[w + 1], last * last);
  t[w + 1] = p[w];
}

namespace {

template <class S, class Q>
void ownTiltedImage(const vnx8u* pSrc, int srcStep, S* pDst, int dstStep, Q* pSqr, int sqrStep, vnxiSize roi,
                    S val, Q valSqr) {
  const int w = roi.width;
  for (int y = 0; y < 2; ++y) {
    std::fill_n(ownRow(pDst, dstStep, y), w + 2, val);
    if (pSqr) std::fill_n(ownRow(pSqr, sqrStep, y), w + 2, valSqr);
  }
  for (int r = 0; r < roi.height; ++r) {
    const vnx8u* s = ownRow(pSrc, srcStep, r);
    ownTiltedRow<ownTiltedTable::Sums>(s, ownRow(pDst, dstStep, r + 1), ownRow(pDst, dstStep, r),
                                       ownRow(pDst, dstStep, r + 2), w);
    if (pSqr)
      ownTiltedRow<ownTiltedTable::Squares>(s, ownRow(pSqr, sqrStep, r + 1), ownRow(pSqr, sqrStep, r),
                                            ownRow(pSqr, sqrStep, r + 2), w);
  }
}

}  // namespace

VNX_API vnxStatus vnxiTiltedIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32s val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 2))
    return st;
  ownTiltedImage<vnx32s, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedIntegral_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32f val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 2))
    return st;
  ownTiltedImage<vnx32f, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s64f_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                    vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32f64f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32f val,
                                                    vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                 vnx32s* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                 vnx32s valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}
