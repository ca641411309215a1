// Upright summed-area tables of 8u images: the integral (32s or 32f) and, in the
// same pass, the squared integral (64f or 32s). Every entry carries the offset
// once: row 0 and column 0 hold it, and each row adds its running sum to the row
// above.
#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "check.h"
#include "integral.h"
#include "parallel.h"
#include "simd.h"

namespace {

// Four 32-bit lanes to their inclusive prefix sums.
inline __m128i ownPrefix4(__m128i v) {
  v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
  return _mm_add_epi32(v, _mm_slli_si128(v, 8));
}
inline __m128i ownLastLane(__m128i v) { return _mm_shuffle_epi32(v, 0xFF); }

inline void ownStoreSum(const vnx32s* above, vnx32s* out, __m128i v) {
  ownStore(out, _mm_add_epi32(ownLoad(above), v));
}
inline void ownStoreSum(const vnx32f* above, vnx32f* out, __m128i v) {
  _mm_storeu_ps(out, _mm_add_ps(_mm_cvtepi32_ps(v), _mm_loadu_ps(above)));
}

// Squares of four pixels held in 32-bit lanes: each lane read as the 16-bit pair
// (p, 0) gives p * p + 0 * 0.
inline __m128i ownSquares4(__m128i v) { return _mm_madd_epi16(v, v); }

// 32s squares store the wrapping running square sum; 64f squares store it as
// (double(chunk sum) + chunk base), exact integers below 2^53, plus the entry above.
// In the first chunk of a row the base is 0 and the sum is stored as it converts.
template <bool kBase>
inline void ownStoreSqr(const vnx32s* above, vnx32s* out, __m128i q, __m128d) {
  ownStore(out, _mm_add_epi32(ownLoad(above), q));
}
template <bool kBase>
inline void ownStoreSqr(const vnx64f* above, vnx64f* out, __m128i q, __m128d base) {
  __m128d lo = _mm_cvtepi32_pd(q), hi = _mm_cvtepi32_pd(_mm_srli_si128(q, 8));
  if constexpr (kBase) lo = _mm_add_pd(lo, base), hi = _mm_add_pd(hi, base);
  _mm_storeu_pd(out, _mm_add_pd(_mm_loadu_pd(above), lo));
  _mm_storeu_pd(out + 2, _mm_add_pd(_mm_loadu_pd(above + 2), hi));
}

// The 64f square sum runs in 32-bit chunks of at most this many pixels
// (16384 x 255^2 < 2^31), each chunk adding to an exact double base.
constexpr int kOwnSqrChunk = 16384;

// Blocks of sixteen pixels: the four prefix sums of a block are independent and
// only the carries chain (one add per four pixels: the last prefix lane is
// broadcast off the chain), so the row walk is not bound by the carry's latency.
template <class S, class Q>
void ownIntegralRowBody_sse2(const vnx8u* src, const S* above, S* out, const Q* sqrAbove, Q* sqr, int n,
                             ownRunning& run) {
  constexpr bool kWrapSqr = sizeof(Q) == 4;
  __m128i carry = _mm_set1_epi32(static_cast<int>(run.s));
  __m128i qcarry = _mm_set1_epi32(kWrapSqr ? static_cast<int>(static_cast<std::uint32_t>(run.q)) : 0);
  __m128d base = _mm_set1_pd(static_cast<double>(run.q));
  const __m128i zero = _mm_setzero_si128();
  auto block = [&](int x, auto withBase) {
    const __m128i b = ownLoad(src + x);
    const __m128i lo = _mm_unpacklo_epi8(b, zero), hi = _mm_unpackhi_epi8(b, zero);
    const __m128i v[4] = {_mm_unpacklo_epi16(lo, zero), _mm_unpackhi_epi16(lo, zero), _mm_unpacklo_epi16(hi, zero),
                          _mm_unpackhi_epi16(hi, zero)};
    for (int k = 0; k < 4; ++k) {
      const __m128i p = ownPrefix4(v[k]);
      ownStoreSum(above + x + 4 * k, out + x + 4 * k, _mm_add_epi32(p, carry));
      carry = _mm_add_epi32(carry, ownLastLane(p));
      if (sqr) {
        const __m128i q = ownPrefix4(ownSquares4(v[k]));
        ownStoreSqr<decltype(withBase)::value>(sqrAbove + x + 4 * k, sqr + x + 4 * k, _mm_add_epi32(q, qcarry), base);
        qcarry = _mm_add_epi32(qcarry, ownLastLane(q));
      }
    }
  };
  int x = 0;
  while (x + 16 <= n) {
    const int chunkEnd = (kWrapSqr || !sqr || n - x <= kOwnSqrChunk) ? n : x + kOwnSqrChunk;
    if (kWrapSqr || _mm_cvtsd_f64(base) == 0.0)
      for (; x + 16 <= chunkEnd; x += 16) block(x, std::false_type{});
    else
      for (; x + 16 <= chunkEnd; x += 16) block(x, std::true_type{});
    if (!kWrapSqr && sqr) {
      base = _mm_add_pd(base, _mm_cvtepi32_pd(qcarry));
      qcarry = zero;
    }
  }
  run.s = static_cast<std::uint32_t>(_mm_cvtsi128_si32(carry));
  if (sqr)
    run.q = kWrapSqr ? static_cast<std::uint32_t>(_mm_cvtsi128_si32(qcarry))
                     : static_cast<std::uint64_t>(_mm_cvtsd_f64(base));
  ownIntegralRow(src, above, out, sqrAbove, sqr, x, n, run);
}

// Copies n elements to dst around the cache: single elements up to the first
// 16-byte boundary, whole 16-byte blocks streamed, single elements after them.
template <class T>
void ownStreamRow(T* dst, const T* src, int n) {
  constexpr int kLanes = 16 / sizeof(T);
  int x = 0;
  for (; x < n && (reinterpret_cast<std::uintptr_t>(dst + x) & 15) != 0; ++x) dst[x] = src[x];
  for (; x + kLanes <= n; x += kLanes) ownStore(static_cast<void*>(dst + x), ownLoad(src + x), true);  // the bits as they are
  for (; x < n; ++x) dst[x] = src[x];
}

// Where the rows are made: in the tables (each row reads the one above it, just
// written and still cached), or, for tables larger than the cache, in one cached
// scratch row a table that every row updates in place and that is then copied out
// around the cache, which spares reading every table line before writing it. The
// results are the same.
template <class S, class Q>
struct ownIntegralRows {
  ownBlock block;  // the square row, then the sum row
  Q* sqr;
  S* sum;
  ownIntegralRows(vnxiSize roi, bool withSqr)
      : block(allocate(roi, withSqr)),
        sqr(block && withSqr ? static_cast<Q*>(block.get()) : nullptr),
        sum(block ? reinterpret_cast<S*>(static_cast<char*>(block.get()) + (withSqr ? roi.width * sizeof(Q) : 0))
                  : nullptr) {}
  static void* allocate(vnxiSize roi, bool withSqr) {
    const std::int64_t rowBytes =
        std::int64_t{roi.width} * static_cast<std::int64_t>(sizeof(S) + (withSqr ? sizeof(Q) : 0)) + 16;
    if (rowBytes > INT32_MAX || !ownStreamOutput(rowBytes * (std::int64_t{roi.height} + 1))) return nullptr;
    return ownMalloc_64(static_cast<int>((rowBytes + 7) / 8));  // no block: the rows are made in the tables
  }
};

// Fills the first table row, then walks the source rows. Rows of the square
// table are written only when pSqr is given.
template <class S, class Q>
void ownIntegralImage(const vnx8u* pSrc, int srcStep, S* pDst, int dstStep, Q* pSqr, int sqrStep, vnxiSize roi,
                      S val, Q valSqr) {
  const int w = roi.width;
  std::fill_n(pDst, w + 1, val);
  if (pSqr) std::fill_n(pSqr, w + 1, valSqr);
  ownIntegralRows<S, Q> scratch(roi, pSqr != nullptr);
  if (scratch.sum) {
    std::fill_n(scratch.sum, w, val);
    if (scratch.sqr) std::fill_n(scratch.sqr, w, valSqr);
  }
  for (int y = 1; y <= roi.height; ++y) {
    S* out = ownRow(pDst, dstStep, y);
    Q* sqr = pSqr ? ownRow(pSqr, sqrStep, y) : nullptr;
    out[0] = val;
    if (sqr) sqr[0] = valSqr;
    ownRunning run{0, 0};
    const vnx8u* src = ownRow(pSrc, srcStep, y - 1);
    if (scratch.sum) {
      ownIntegralRow_sse2(src, scratch.sum, scratch.sum, scratch.sqr, scratch.sqr, w, run);
      ownStreamRow(out + 1, scratch.sum, w);
      if (sqr) ownStreamRow(sqr + 1, scratch.sqr, w);
    } else {
      const S* above = ownRow(pDst, dstStep, y - 1);
      const Q* sqrAbove = pSqr ? ownRow(pSqr, sqrStep, y - 1) : nullptr;
      ownIntegralRow_sse2(src, above + 1, out + 1, sqrAbove ? sqrAbove + 1 : nullptr, sqr ? sqr + 1 : nullptr, w, run);
    }
  }
  if (scratch.sum) ownStreamFence();
}

}  // namespace

void ownIntegralRow_sse2(const vnx8u* src, const vnx32s* above, vnx32s* out, const vnx64f* sqrAbove, vnx64f* sqr,
                         int n, ownRunning& run) {
  ownIntegralRowBody_sse2(src, above, out, sqrAbove, sqr, n, run);
}
void ownIntegralRow_sse2(const vnx8u* src, const vnx32f* above, vnx32f* out, const vnx64f* sqrAbove, vnx64f* sqr,
                         int n, ownRunning& run) {
  ownIntegralRowBody_sse2(src, above, out, sqrAbove, sqr, n, run);
}
void ownIntegralRow_sse2(const vnx8u* src, const vnx32s* above, vnx32s* out, const vnx32s* sqrAbove, vnx32s* sqr,
                         int n, ownRunning& run) {
  ownIntegralRowBody_sse2(src, above, out, sqrAbove, sqr, n, run);
}

VNX_API vnxStatus vnxiIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                        vnxiSize roiSize, vnx32s val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 1))
    return st;
  ownIntegralImage<vnx32s, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiIntegral_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                        vnxiSize roiSize, vnx32f val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 1))
    return st;
  ownIntegralImage<vnx32f, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiSqrIntegral_8u32s64f_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                              vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                              vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 1))
    return st;
  ownIntegralImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiSqrIntegral_8u32f64f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32f val,
                                              vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 1))
    return st;
  ownIntegralImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiSqrIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep, vnx32s* pSqr,
                                           int sqrStep, vnxiSize roiSize, vnx32s val, vnx32s valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 1))
    return st;
  ownIntegralImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}
