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
// Eight 16-bit lanes to their inclusive prefix sums (exact below 2^16).
inline __m128i ownPrefix8x16(__m128i v) {
  v = _mm_add_epi16(v, _mm_slli_si128(v, 2));
  v = _mm_add_epi16(v, _mm_slli_si128(v, 4));
  return _mm_add_epi16(v, _mm_slli_si128(v, 8));
}

// Four sums: the entries above plus the running sums v, stored in the cached row and
// returned for the copy around the cache.
inline __m128i ownStoreSum(const vnx32s* above, vnx32s* out, __m128i v) {
  const __m128i r = _mm_add_epi32(ownLoad(above), v);
  ownStore(out, r);
  return r;
}
inline __m128 ownStoreSum(const vnx32f* above, vnx32f* out, __m128i v) {
  const __m128 r = _mm_add_ps(_mm_cvtepi32_ps(v), _mm_loadu_ps(above));
  _mm_storeu_ps(out, r);
  return r;
}

// Squares of four pixels held in 32-bit lanes: each lane read as the 16-bit pair
// (p, 0) gives p * p + 0 * 0.
inline __m128i ownSquares4(__m128i v) { return _mm_madd_epi16(v, v); }

// Four squares. 32s squares store the wrapping running square sum; 64f squares
// store it as (double(chunk sum) + chunk base), exact integers below 2^53, plus the
// entry above, in two pairs. In the first chunk of a row the base is 0 and the sum
// is stored as it converts.
struct ownSqrPairs {
  __m128d lo, hi;
};
template <bool kBase>
inline __m128i ownStoreSqr(const vnx32s* above, vnx32s* out, __m128i q, __m128d) {
  const __m128i r = _mm_add_epi32(ownLoad(above), q);
  ownStore(out, r);
  return r;
}
template <bool kBase>
inline ownSqrPairs ownStoreSqr(const vnx64f* above, vnx64f* out, __m128i q, __m128d base) {
  __m128d lo = _mm_cvtepi32_pd(q), hi = _mm_cvtepi32_pd(_mm_srli_si128(q, 8));
  if constexpr (kBase) lo = _mm_add_pd(lo, base), hi = _mm_add_pd(hi, base);
  lo = _mm_add_pd(_mm_loadu_pd(above), lo);
  hi = _mm_add_pd(_mm_loadu_pd(above + 2), hi);
  _mm_storeu_pd(out, lo);
  _mm_storeu_pd(out + 2, hi);
  return {lo, hi};
}

// The 64f square sum runs in 32-bit lanes in chunks of at most this many pixels
// (16384 x 255^2 < 2^31, within the signed conversion to double), each chunk
// adding to an exact double base, so every width is exact.
constexpr int kOwnSqrChunk = 16384;

// Where the square vectors of a row go around the cache: to 16-byte boundaries
// like the sums, to addresses 8 bytes past one (64f squares when the two table
// rows sit differently: each stored pair straddles two computed vectors), or
// nowhere (the square row is copied out on its own afterwards).
enum class ownSqrStream { Aligned, Shifted, Apart };

// The copy of a row's vectors that the kernel makes besides its cached row:
// none (the rows are made in the tables), or around the cache into the tables.
struct ownNoCopy {
  template <class V>
  void sum(int, V) {}
  template <class V>
  void sqr(int, V) {}
};
template <class S, class Q, ownSqrStream M>
struct ownStreamCopy {
  S* sum0;  // the table entries of the row's first vector, on a 16-byte boundary
  Q* sqr0;
  __m128d pending;  // Shifted: its upper lane is the square before the next vector
  void sum(int x, __m128i v) { ownStore(static_cast<void*>(sum0 + x), v, true); }
  void sum(int x, __m128 v) { ownStore(sum0 + x, v, true); }
  void sqr(int x, __m128i v) {
    if constexpr (M == ownSqrStream::Aligned) ownStore(static_cast<void*>(sqr0 + x), v, true);
  }
  void sqr(int x, ownSqrPairs q) {
    if constexpr (M == ownSqrStream::Aligned) {
      ownStore(sqr0 + x, q.lo, true);
      ownStore(sqr0 + x + 2, q.hi, true);
    } else if constexpr (M == ownSqrStream::Shifted) {
      ownStore(sqr0 + x - 1, ownStraddlePd(pending, q.lo), true);
      ownStore(sqr0 + x + 1, ownStraddlePd(q.lo, q.hi), true);
      pending = q.hi;
    }
  }
};

// Whole groups of four pixels, sixteen at a time while they last: the prefix sums
// of a group are independent of the groups before it and only the carries chain
// (an add and a broadcast per eight pixels, a broadcast and an add per four in
// the last groups), so the row walk is not bound by the carry's latency. Returns
// the pixels done (n rounded down to 4).
template <bool kSqr, class S, class Q, class Copy>
int ownIntegralQuads(const vnx8u* src, const S* above, S* out, const Q* sqrAbove, Q* sqr, int n, ownRunning& run,
                     Copy& copy) {
  constexpr bool kWrapSqr = sizeof(Q) == 4;
  __m128i carry = _mm_set1_epi32(static_cast<int>(run.s));
  __m128i qcarry = _mm_set1_epi32(kWrapSqr ? static_cast<int>(static_cast<std::uint32_t>(run.q)) : 0);
  __m128d base = _mm_set1_pd(static_cast<double>(run.q));
  const __m128i zero = _mm_setzero_si128(), lowWords = _mm_set1_epi32(0xFFFF);
  auto quad = [&](int x, __m128i v, auto withBase) {
    const __m128i p = ownPrefix4(v);
    copy.sum(x, ownStoreSum(above + x, out + x, _mm_add_epi32(p, carry)));
    carry = _mm_add_epi32(carry, ownLastLane(p));
    if constexpr (kSqr) {
      const __m128i q = ownPrefix4(ownSquares4(v));
      copy.sqr(x, ownStoreSqr<decltype(withBase)::value>(sqrAbove + x, sqr + x, _mm_add_epi32(q, qcarry), base));
      qcarry = _mm_add_epi32(qcarry, ownLastLane(q));
    }
  };
  // Eight pixels in 16-bit lanes: their prefix sums (at most 8 x 255) fit the
  // lanes and widen afterwards; the square sums come from pairs of squares, added
  // by the 16-bit multiply-add into 32-bit lanes.
  auto octet = [&](int x, __m128i px, auto withBase) {
    const __m128i p = ownPrefix8x16(px);
    const __m128i pHi = _mm_add_epi32(_mm_unpackhi_epi16(p, zero), carry);
    copy.sum(x, ownStoreSum(above + x, out + x, _mm_add_epi32(_mm_unpacklo_epi16(p, zero), carry)));
    copy.sum(x + 4, ownStoreSum(above + x + 4, out + x + 4, pHi));
    carry = ownLastLane(pHi);
    if constexpr (kSqr) {
      // The square sums at odd pixels are the prefix of the pair sums x0^2 + x1^2,
      // x2^2 + x3^2, ...; those at even pixels add the even square to the odd sum
      // before it. Interleaved, they are the eight running square sums.
      const __m128i pairs = ownPrefix4(_mm_madd_epi16(px, px));
      const __m128i odd = _mm_add_epi32(pairs, qcarry);
      const __m128i evenSq = _mm_madd_epi16(_mm_and_si128(px, lowWords), px);
      const __m128i even = _mm_add_epi32(_mm_add_epi32(evenSq, qcarry), _mm_slli_si128(pairs, 4));
      copy.sqr(x, ownStoreSqr<decltype(withBase)::value>(sqrAbove + x, sqr + x, _mm_unpacklo_epi32(even, odd), base));
      copy.sqr(x + 4, ownStoreSqr<decltype(withBase)::value>(sqrAbove + x + 4, sqr + x + 4,
                                                              _mm_unpackhi_epi32(even, odd), base));
      qcarry = ownLastLane(odd);
    }
  };
  auto quads = [&](int x, int end, auto withBase) {
    for (; x + 16 <= end; x += 16) {
      const __m128i b = ownLoad(src + x);
      octet(x, _mm_unpacklo_epi8(b, zero), withBase);
      octet(x + 8, _mm_unpackhi_epi8(b, zero), withBase);
    }
    for (; x + 4 <= end; x += 4)
      quad(x, _mm_unpacklo_epi16(_mm_unpacklo_epi8(ownLoad32(src + x), zero), zero), withBase);
    return x;
  };
  const int n4 = n & ~3;
  int x = 0;
  while (x < n4) {  // chunks end on multiples of 16 but the last
    const int chunkEnd = (kWrapSqr || !kSqr || n4 - x <= kOwnSqrChunk) ? n4 : x + kOwnSqrChunk;
    x = (kWrapSqr || _mm_cvtsd_f64(base) == 0.0) ? quads(x, chunkEnd, std::false_type{})
                                                   : quads(x, chunkEnd, std::true_type{});
    if (!kWrapSqr && kSqr) {
      base = _mm_add_pd(base, _mm_cvtepi32_pd(qcarry));
      qcarry = zero;
    }
  }
  run.s = static_cast<std::uint32_t>(_mm_cvtsi128_si32(carry));
  if (kSqr)
    run.q = kWrapSqr ? static_cast<std::uint32_t>(_mm_cvtsi128_si32(qcarry))
                     : static_cast<std::uint64_t>(_mm_cvtsd_f64(base));
  return x;
}

template <class S, class Q>
void ownIntegralRowBody_sse2(const vnx8u* src, const S* above, S* out, const Q* sqrAbove, Q* sqr, int n,
                             ownRunning& run) {
  ownNoCopy none;
  const int x = sqr ? ownIntegralQuads<true>(src, above, out, sqrAbove, sqr, n, run, none)
                    : ownIntegralQuads<false>(src, above, out, sqrAbove, sqr, n, run, none);
  ownIntegralRow(src, above, out, sqrAbove, sqr, x, n, run);
}

// Copies n elements to dst around the cache: single elements up to the first
// 16-byte boundary, whole 16-byte blocks streamed, single elements after them.
template <class T>
void ownStreamRow(T* dst, const T* src, int n) {
  constexpr int kLanes = 16 / sizeof(T);
  const int head = ownElementsTo16(dst, n);
  std::copy_n(src, head, dst);
  int x = head;
  for (; x + kLanes <= n; x += kLanes) ownStore(static_cast<void*>(dst + x), ownLoad(src + x), true);  // the bits as they are
  std::copy(src + x, src + n, dst + x);
}

// Where the rows are made: in the tables (each row reads the one above it, just
// written and still cached), or, for tables larger than the cache, in one cached
// scratch row a table that every row updates in place while its whole vectors are
// also written around the cache into the tables (sparing the read of every table
// line before it is written); the few entries before the first 16-byte boundary
// and after the last vector are copied from the scratch rows. The results are the
// same.
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

  // One source row: the scratch rows updated, table rows `out` and `sqrOut`
  // (column 0) written, their whole vectors around the cache.
  void row(const vnx8u* src, S* out, Q* sqrOut, int w, S val, Q valSqr) {
    ownRunning run{0, 0};
    out[0] = val;
    const int head = ownElementsTo16(++out, w);
    ownIntegralRow(src, sum, sum, sqr, sqr, 0, head, run);
    int end = head;
    auto quads = [&](auto mode, auto withSqr) {
      Q* const q = decltype(withSqr)::value ? sqr + head : nullptr;
      ownStreamCopy<S, Q, decltype(mode)::value> copy{out + head, q ? sqrOut + head : nullptr,
                                                      _mm_set1_pd(static_cast<double>(q && head ? q[-1] : valSqr))};
      end += ownIntegralQuads<decltype(withSqr)::value>(src + head, sum + head, sum + head, q, q, w - head, run, copy);
    };
    // the pixels after the last whole group, then the sum entries no vector took out
    auto finishSums = [&] {
      ownIntegralRow(src, sum, sum, sqr, sqr, end, w, run);
      std::copy_n(sum, head, out);
      std::copy(sum + end, sum + w, out + end);
    };
    using Apart = std::integral_constant<ownSqrStream, ownSqrStream::Apart>;
    if (!sqrOut) {
      quads(Apart{}, std::false_type{});
      return finishSums();
    }
    // Apart when no vector goes out
    const ownSqrStream mode = w - head >= 4 ? sqrMode(sqrOut + 1 + head) : ownSqrStream::Apart;
    if (mode != ownSqrStream::Shifted || head) sqrOut[0] = valSqr;  // else the first pair holds it
    ++sqrOut;
    if (mode == ownSqrStream::Aligned) quads(std::integral_constant<ownSqrStream, ownSqrStream::Aligned>{}, std::true_type{});
    if constexpr (sizeof(Q) == 8)
      if (mode == ownSqrStream::Shifted) quads(std::integral_constant<ownSqrStream, ownSqrStream::Shifted>{}, std::true_type{});
    if (mode == ownSqrStream::Apart) quads(Apart{}, std::true_type{});
    finishSums();
    if (mode == ownSqrStream::Apart) return ownStreamRow(sqrOut, sqr, w);
    // Shifted: the pairs went one entry earlier, the last computed square is still pending.
    const int lag = mode == ownSqrStream::Shifted ? 1 : 0;
    std::copy_n(sqr, std::max(head - lag, 0), sqrOut);
    std::copy(sqr + end - lag, sqr + w, sqrOut + end - lag);
  }
  // How the squares of the row's first vector go out: 64f squares at a 16-byte
  // boundary or 8 bytes past one (the pending square then starts as the entry
  // before: the offset in column 0 or the last single entry); 32s squares only
  // when they sit like the sums.
  static ownSqrStream sqrMode(const Q* first) {
    const std::uintptr_t a = reinterpret_cast<std::uintptr_t>(first) & 15;
    if (a == 0) return ownSqrStream::Aligned;
    if (sizeof(Q) == 4 || a != 8) return ownSqrStream::Apart;
    return ownSqrStream::Shifted;
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
    const vnx8u* src = ownRow(pSrc, srcStep, y - 1);
    if (scratch.sum) {
      scratch.row(src, out, sqr, w, val, valSqr);
    } else {
      out[0] = val;
      if (sqr) sqr[0] = valSqr;
      ownRunning run{0, 0};
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
