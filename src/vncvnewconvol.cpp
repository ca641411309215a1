// Fixed-kernel filters with borders: Sobel, Scharr, Laplacian and box lowpass. Each
// is one separable term (or the sum of two) run on the pipeline passes: a ring of k
// intermediate rows filled by the row pass, then the column pass per output row.
#include <algorithm>
#include <utility>

#include "check.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"
#include "vncvseparable.h"

namespace {

// One separable term: weights left to right along x and top to bottom along y, as
// they lie over the image (the centre weight is on the output pixel).
template <class I>
struct ownTerm {
  const I* row;
  const I* col;
};

// A filter: kernel length, one or two terms, and the divisor of the result
// (8u outputs; 0 when the result is stored as summed).
template <class I>
struct ownFixed {
  int k;
  int nTerms;
  ownTerm<I> term[2];
};

// Kernel tables, integer and float, by name.
template <class I>
struct ownTables {
  static constexpr I d3[3] = {-1, 0, 1}, n3[3] = {1, 0, -1}, s3[3] = {1, 2, 1}, l3[3] = {1, -2, 1},
                     sch[3] = {3, 10, 3}, one3[3] = {1, 1, 1};
  static constexpr I d5[5] = {-1, -2, 0, 2, 1}, n5[5] = {1, 2, 0, -2, -1}, s5[5] = {1, 4, 6, 4, 1},
                     l5[5] = {1, 0, -2, 0, 1}, one5[5] = {1, 1, 1, 1, 1};
};

enum class ownKind { SobelHoriz, SobelVert, SobelNegVert, SobelHorizSecond, SobelVertSecond, SobelCross,
                     ScharrHoriz, ScharrVert, Laplacian, Lowpass };

// The weights of every member:
//   SobelHoriz        row (1 2 1)      column (1 0 -1)        5x5: (1 4 6 4 1), (1 2 0 -2 -1)
//   SobelVert         row (-1 0 1)     column (1 2 1)         5x5: (-1 -2 0 2 1), (1 4 6 4 1)
//   SobelNegVert      row (1 0 -1)     column (1 2 1)         5x5: (1 2 0 -2 -1), (1 4 6 4 1)
//   SobelHorizSecond  row (1 2 1)      column (1 -2 1)        5x5: (1 4 6 4 1), (1 0 -2 0 1)
//   SobelVertSecond   row (1 -2 1)     column (1 2 1)         5x5: (1 0 -2 0 1), (1 4 6 4 1)
//   SobelCross        row (-1 0 1)     column (1 0 -1)        5x5: (-1 -2 0 2 1), (1 2 0 -2 -1)
//   ScharrHoriz       row (3 10 3)     column (1 0 -1)
//   ScharrVert        row (-1 0 1)     column (3 10 3)
//   Laplacian         SobelHorizSecond + SobelVertSecond: 2 0 2 / 0 -8 0 / 2 0 2 for 3x3
//   Lowpass           ones, divided by k * k
template <class I>
ownFixed<I> ownFixedKernels(ownKind kind, int k) {
  using T = ownTables<I>;
  const bool five = k == 5;
  const I* d = five ? T::d5 : T::d3;
  const I* n = five ? T::n5 : T::n3;
  const I* s = five ? T::s5 : T::s3;
  const I* l = five ? T::l5 : T::l3;
  switch (kind) {
    case ownKind::SobelHoriz: return {k, 1, {{s, n}}};
    case ownKind::SobelVert: return {k, 1, {{d, s}}};
    case ownKind::SobelNegVert: return {k, 1, {{n, s}}};
    case ownKind::SobelHorizSecond: return {k, 1, {{s, l}}};
    case ownKind::SobelVertSecond: return {k, 1, {{l, s}}};
    case ownKind::SobelCross: return {k, 1, {{d, n}}};
    case ownKind::ScharrHoriz: return {3, 1, {{T::sch, T::n3}}};
    case ownKind::ScharrVert: return {3, 1, {{T::d3, T::sch}}};
    case ownKind::Laplacian: return {k, 2, {{s, l}, {l, s}}};
    default: return {k, 1, {{five ? T::one5 : T::one3, five ? T::one5 : T::one3}}};
  }
}

inline int ownMaskLength(int mask) { return mask == vnxMskSize5x5 ? 5 : 3; }
inline std::int64_t ownRoundUp(std::int64_t v, int m) { return (v + m - 1) / m * m; }

// Intermediate stride of a filter, in elements: 16 for 16-bit rows, 4 for float rows
// (16 for the float Laplacian).
inline std::int64_t ownStride(int width, bool wide, ownKind kind) {
  return ownRoundUp(width, (!wide || kind == ownKind::Laplacian) ? 16 : 4);
}

// Per-thread slice of the work buffer (bytes, before the 32 bytes of alignment slack).
std::int64_t ownSliceBytes(vnxiSize roi, int k, bool wide, ownKind kind, bool div8s) {
  const std::int64_t w = ownStride(roi.width, wide, kind);
  int r = 0, c = 0;
  if (wide) {
    vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R(roi, k, &r);
    vnxiFilterColumnPipelineGetBufferSize_32f_C1R(roi, k, &c);
  } else {
    vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R(roi, k, &r);
    vnxiFilterColumnPipelineGetBufferSize_16s_C1R(roi, k, &c);
  }
  const std::int64_t rc = static_cast<std::int64_t>(r) + c;
  if (kind == ownKind::ScharrHoriz || kind == ownKind::ScharrVert) return (wide ? 84 : 42) * w + 220 + rc;
  if (kind == ownKind::Laplacian) {
    const std::int64_t s = (wide ? 8 : 4) * w * (2 * k + 15) + 8 * (3 * k + 30) + 96 + rc;
    return div8s && k == 5 ? s + 2 * w * roi.height + 32 : s;
  }
  return (wide ? 4 : 2) * w * (2 * k + 15) + 4 * (3 * k + 30) + 64 + rc;
}

vnxStatus ownFixedSize(vnxiSize roi, int mask, int* pSize, bool wide, ownKind kind, bool div8s) {
  if (!pSize) return vnxStatusNullPtr;
  if (roi.width < 1 || roi.height < 1) return vnxStatusBadSize;
  if (mask != vnxMskSize3x3 && mask != vnxMskSize5x5) return vnxStatusBadMaskSize;
  const std::int64_t t = ownNumThreads();
  *pSize = static_cast<int>(t * (ownSliceBytes(roi, ownMaskLength(mask), wide, kind, div8s) + 32));
  return vnxStatusOk;
}

// Stores the column results of a row: the terms summed, then divided (8u, 8s),
// scaled (float box) or stored as they are.
struct ownOut {
  int divisor;   // integer outputs other than 16s
  float scale;   // float outputs; 1 = none
};
inline void ownStoreRow(vnx16s* const* t, int nTerms, vnx16s* dst, int n, ownOut) {
  for (int x = 0; x < n; ++x) dst[x] = static_cast<vnx16s>(nTerms == 2 ? t[0][x] + t[1][x] : t[0][x]);
}
template <class D>
void ownStoreDivided(vnx16s* const* t, int nTerms, D* dst, int n, ownOut o) {
  if (nTerms == 2)
    for (int x = 0; x < n; ++x) t[0][x] = static_cast<vnx16s>(t[0][x] + t[1][x]);  // bounded: fits 16 bits
  ownDivRow(t[0], o.divisor, dst, n);
}
inline void ownStoreRow(vnx16s* const* t, int nTerms, vnx8u* dst, int n, ownOut o) {
  ownStoreDivided(t, nTerms, dst, n, o);
}
inline void ownStoreRow(vnx16s* const* t, int nTerms, vnx8s* dst, int n, ownOut o) {
  ownStoreDivided(t, nTerms, dst, n, o);
}
inline void ownStoreRow(vnx32f* const* t, int nTerms, vnx32f* dst, int n, ownOut o) {
  for (int x = 0; x < n; ++x) {
    const float s = nTerms == 2 ? t[0][x] + t[1][x] : t[0][x];
    dst[x] = o.scale == 1.0f ? s : s * o.scale;
  }
}

// Column pass of one term: 16-bit sums modulo 2^16 are exact here, since every
// filter's sums are bounded by 255 * 64 * 2 < 2^15.
inline void ownColumnOf(const vnx16s* const* rows, const vnx16s* kern, int k, vnx16s* dst, int n) {
  ownColumnLow(rows, kern, k, dst, n);
}
inline void ownColumnOf(const vnx32f* const* rows, const vnx32f* kern, int k, vnx32f* dst, int n) {
  ownColumn(rows, kern, k, dst, n, 1);
}

// Rows y0 .. y1 - 1 of the output. The ring keeps the k intermediate rows of source
// rows y - k/2 .. y + k/2; rows beyond the ROI come from the border rule (a row of
// the border value for vnxBorderConst), so the source is read only inside its ROI.
template <class S, class I, class D>
void ownFixedBand(const S* src, int srcStep, D* dst, int dstStep, vnxiSize roi, const ownFixed<I>& f, int border,
                  S bval, ownOut out, void* slice, std::int64_t stride, int y0, int y1) {
  const int k = f.k, r = k / 2, w = roi.width;
  I* ring[2][5];
  I* p = static_cast<I*>(slice);
  for (int t = 0; t < f.nTerms; ++t)
    for (int i = 0; i < k; ++i, p += stride) ring[t][i] = p;
  I* tmp[2] = {p, p + stride};
  S* constRow = reinterpret_cast<S*>(p + 2 * stride);
  if (border == vnxBorderConst) std::fill(constRow, constRow + w, bval);
  const bool direct = std::is_same<D, I>::value && f.nTerms == 1 && out.scale == 1.0f;

  auto fill = [&](int j) {  // intermediate rows of source row j into their ring slots
    const S* s = (j >= 0 && j < roi.height) ? ownRow(src, srcStep, j)
                 : border == vnxBorderConst ? constRow
                                            : ownRow(src, srcStep, ownBorderIndex(j, roi.height, border));
    const int slot = (j - y0 + r) % k;
    for (int t = 0; t < f.nTerms; ++t) ownRowPass(s, w, 1, ring[t][slot], f.term[t].row, k, r, border, bval, 1, false);
  };
  for (int j = y0 - r; j < y0 + r; ++j) fill(j);
  for (int y = y0; y < y1; ++y) {
    fill(y + r);
    D* d = ownRow(dst, dstStep, y);
    for (int t = 0; t < f.nTerms; ++t) {
      const I* rows[5];
      for (int i = 0; i < k; ++i) rows[i] = ring[t][(y - r + i - y0 + r) % k];
      ownColumnOf(rows, f.term[t].col, k, direct ? reinterpret_cast<I*>(d) : tmp[t], w);
    }
    if (!direct) ownStoreRow(tmp, f.nTerms, d, w, out);
  }
}

// ---- 8u sources: columns first, in 16-bit lanes -----------------------------------
// Integer sums do not depend on the order of the two passes, so the 8u members filter
// down the columns first, straight from the source rows (the k + 1 rows of two output
// rows are read and widened once for both), then along each row of column sums. The
// k/2 column sums beyond each edge follow from the border rule: a column that stands
// for column x has the column sums of x (vnxBorderConst: the sum of the column taps
// times the border value). Every sum fits 16 bits (at most 255 * 64 * 2 < 2^15), so
// 16-bit lanes give it exactly.

// A 1-D kernel known at compile time, taps in the order they lie over the image.
template <int... K>
struct ownTaps {
  static constexpr int k = sizeof...(K);
  static constexpr int tap[sizeof...(K) > 0 ? sizeof...(K) : 1] = {K...};
  static constexpr int sum() { return (0 + ... + K); }
  static constexpr bool mirrored(int sign) {
    for (int i = 0; i < k; ++i)
      if (tap[i] != sign * tap[k - 1 - i]) return false;
    return true;
  }
  // sum of tap i times v[i], with adds and shifts for the small taps; a symmetric kernel
  // first adds the two pixels of each pair of equal taps, an antisymmetric one subtracts
  static __m128i dot(const __m128i* v) {
    if constexpr (k > 1 && (mirrored(1) || mirrored(-1)))
      return dotPairs(v, std::make_index_sequence<k / 2>());
    else
      return dotOf(v, std::make_index_sequence<k>());
  }
  template <std::size_t... I>
  static __m128i dotOf(const __m128i* v, std::index_sequence<I...>) {
    __m128i acc = _mm_setzero_si128();
    ((acc = mac<K>(acc, v[I])), ...);
    return acc;
  }
  template <std::size_t... I>
  static __m128i dotPairs(const __m128i* v, std::index_sequence<I...>) {
    __m128i acc = _mm_setzero_si128();
    if constexpr (k % 2 == 1) acc = mac<tap[k / 2]>(acc, v[k / 2]);
    ((acc = mac<tap[I]>(acc, mirrored(1) ? _mm_add_epi16(v[I], v[k - 1 - I]) : _mm_sub_epi16(v[I], v[k - 1 - I]))),
     ...);
    return acc;
  }
  template <int T>
  static __m128i mac(__m128i acc, __m128i v) {
    if constexpr (T == 0) return acc;
    else if constexpr (T == 1) return _mm_add_epi16(acc, v);
    else if constexpr (T == -1) return _mm_sub_epi16(acc, v);
    else if constexpr (T == 2) return _mm_add_epi16(acc, _mm_add_epi16(v, v));
    else if constexpr (T == -2) return _mm_sub_epi16(acc, _mm_add_epi16(v, v));
    else if constexpr (T == 4) return _mm_add_epi16(acc, _mm_slli_epi16(v, 2));
    else if constexpr (T == -8) return _mm_sub_epi16(acc, _mm_slli_epi16(v, 3));
    else return _mm_add_epi16(acc, _mm_mullo_epi16(v, _mm_set1_epi16(T)));
  }
  static int dotAlong(const vnx16s* v) {  // v[0], v[1], ...
    int s = 0;
    for (int i = 0; i < k; ++i) s += tap[i] * v[i];
    return s;
  }
  static int dotDown(const vnx8u* const* p, int x) {  // p[0][x], p[1][x], ...
    int s = 0;
    for (int i = 0; i < k; ++i) s += tap[i] * p[i][x];
    return s;
  }
};
using ownNoTaps = ownTaps<>;

// Column sums of output rows y (and y + 1 when Two) of each term, 16 columns from x,
// from the rows p[0..k].
template <bool Two, class C1, class C2>
inline void ownColumnSums8u(const vnx8u* const* p, vnx16s* const (*v)[2], int x) {
  __m128i lo[C1::k + 1], hi[C1::k + 1];
  for (int i = 0; i < (Two ? C1::k + 1 : C1::k); ++i) {
    const __m128i b = ownLoad(p[i] + x);
    lo[i] = _mm_unpacklo_epi8(b, _mm_setzero_si128());
    hi[i] = _mm_unpackhi_epi8(b, _mm_setzero_si128());
  }
  for (int i = 0; i < (Two ? 2 : 1); ++i) {
    ownStore(v[0][i] + x, C1::dot(lo + i));
    ownStore(v[0][i] + x + 8, C1::dot(hi + i));
    if constexpr (C2::k > 0) {
      ownStore(v[1][i] + x, C2::dot(lo + i));
      ownStore(v[1][i] + x + 8, C2::dot(hi + i));
    }
  }
}

// Eight row-pass sums from x over the column sums a (term 1) and b (term 2).
template <class R1, class R2>
inline __m128i ownRowSums8u(const vnx16s* a, const vnx16s* b, int x) {
  __m128i t[R1::k];
  for (int i = 0; i < R1::k; ++i) t[i] = ownLoad(a + x - R1::k / 2 + i);
  __m128i s = R1::dot(t);
  if constexpr (R2::k > 0) {
    for (int i = 0; i < R1::k; ++i) t[i] = ownLoad(b + x - R1::k / 2 + i);
    s = _mm_add_epi16(s, R2::dot(t));
  }
  return s;
}

// The k/2 column sums beyond each edge of a row of w sums.
template <class C>
void ownSumEdges(vnx16s* v, int w, int border, vnx8u bval) {
  for (int i = 1; i <= C::k / 2; ++i) {
    if (border == vnxBorderConst) {
      v[-i] = v[w - 1 + i] = static_cast<vnx16s>(C::sum() * bval);
    } else {
      v[-i] = v[ownBorderIndex(-i, w, border)];
      v[w - 1 + i] = v[ownBorderIndex(w - 1 + i, w, border)];
    }
  }
}

// Where the 16-bit sums of output row i go: straight into a 16s row, through the integer
// reciprocal into an 8u row, or into a row of sums divided afterwards (later()).
template <class D>
struct ownSink8u {
  const ownReciprocal& rc;
  vnx16s* sums[2];
  static constexpr bool wide = std::is_same<D, vnx16s>::value;
  bool later() const { return !wide && !(std::is_same<D, vnx8u>::value && rc.exact); }
  void put(D* d, int i, int x, __m128i lo, __m128i hi) const {
    if constexpr (wide) {
      ownStore(d + x, lo);
      ownStore(d + x + 8, hi);
    } else {
      if constexpr (std::is_same<D, vnx8u>::value) {
        if (rc.exact) return ownStore(d + x, _mm_packus_epi16(rc.quotient(lo), rc.quotient(hi)));
      }
      ownStore(sums[i] + x, lo);
      ownStore(sums[i] + x + 8, hi);
    }
  }
};

// Output rows y (and y + 1 when Two) from the source rows p[0..k]. From 32 columns on,
// the column sums of each 16 columns are interleaved with the output of the 16 columns
// before them, so the arithmetic overlaps the stores of the output; the first and last
// 16 columns come first, since the border rule takes the column sums beyond the edges
// from there.
template <bool Two, class D, class C1, class R1, class C2, class R2>
void ownRowPair8u(const vnx8u* const* p, vnx16s* const (*v)[2], D* const* d, int w, int border, vnx8u bval,
                  const ownSink8u<D>& sink, int divisor) {
  constexpr int nRows = Two ? 2 : 1;
  auto edges = [&] {
    for (int i = 0; i < nRows; ++i) {
      ownSumEdges<C1>(v[0][i], w, border, bval);
      if constexpr (C2::k > 0) ownSumEdges<C2>(v[1][i], w, border, bval);
    }
  };
  auto out = [&](int x) {
    for (int i = 0; i < nRows; ++i)
      sink.put(d[i], i, x, ownRowSums8u<R1, R2>(v[0][i], v[1][i], x), ownRowSums8u<R1, R2>(v[0][i], v[1][i], x + 8));
  };
  if (w >= 32) {
    ownColumnSums8u<Two, C1, C2>(p, v, 0);
    ownColumnSums8u<Two, C1, C2>(p, v, w - 16);
    edges();
    // The output of 16 columns reads the sums up to 2 columns beyond them; it runs 48
    // columns behind, so the sums it loads left the store queue an iteration ago.
    int xo = 0;
    for (int x = 16; x + 16 <= w; x += 16) {
      ownColumnSums8u<Two, C1, C2>(p, v, x);
      if (x - xo >= 48) {
        out(xo);
        xo += 16;
      }
    }
    for (; xo + 16 <= w; xo += 16) out(xo);
    if (xo < w) out(w - 16);  // rewrites the same values
  } else {  // narrow rows: the sums one by one
    for (int x = 0; x < w; ++x)
      for (int i = 0; i < nRows; ++i) {
        v[0][i][x] = static_cast<vnx16s>(C1::dotDown(p + i, x));
        if constexpr (C2::k > 0) v[1][i][x] = static_cast<vnx16s>(C2::dotDown(p + i, x));
      }
    edges();
    for (int i = 0; i < nRows; ++i)
      for (int x = 0; x < w; ++x) {
        int s = R1::dotAlong(v[0][i] + x - R1::k / 2);
        if constexpr (R2::k > 0) s += R2::dotAlong(v[1][i] + x - R1::k / 2);
        if constexpr (ownSink8u<D>::wide)
          d[i][x] = static_cast<vnx16s>(s);
        else
          sink.sums[i][x] = static_cast<vnx16s>(s);
      }
  }
  if constexpr (!ownSink8u<D>::wide) {
    if (w < 32 || sink.later())
      for (int i = 0; i < nRows; ++i) ownDivRow(sink.sums[i], divisor, d[i], w);
  }
}

template <class D>
struct ownJob8u {
  const vnx8u* src;
  int srcStep;
  D* dst;
  int dstStep;
  vnxiSize roi;
  int border;
  vnx8u bval;
  int divisor;  // 8-bit outputs: the sum is divided by it (rounded) and saturated
  std::int64_t stride;
};

// Rows y0 .. y1 - 1 of a filter of one or two separable terms (C1 x R1 + C2 x R2), two
// rows a step. Scratch: four rows of column sums with 16 elements of margin each, two
// rows of 16-bit sums for 8-bit outputs and a row of the border value.
template <class D, class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
void ownBand8u(const ownJob8u<D>& j, void* slice, int y0, int y1) {
  constexpr int k = C1::k, r = k / 2;
  const int w = j.roi.width;
  const std::int64_t len = j.stride + 32;
  vnx16s* base = static_cast<vnx16s*>(slice);
  vnx16s* v[2][2] = {{base + 16, base + len + 16}, {base + 2 * len + 16, base + 3 * len + 16}};
  const ownReciprocal rc(std::is_same<D, vnx8u>::value ? j.divisor : 0);
  const ownSink8u<D> sink{rc, {base + 4 * len + 16, base + 5 * len + 16}};
  vnx8u* constRow = reinterpret_cast<vnx8u*>(base + 6 * len);
  if (j.border == vnxBorderConst) std::fill(constRow, constRow + w, j.bval);
  auto rowAt = [&](int yy) -> const vnx8u* {
    if (yy >= 0 && yy < j.roi.height) return ownRow(j.src, j.srcStep, yy);
    return j.border == vnxBorderConst ? constRow : ownRow(j.src, j.srcStep, ownBorderIndex(yy, j.roi.height, j.border));
  };
  for (int y = y0; y < y1; y += 2) {
    const bool two = y + 1 < y1;
    const vnx8u* p[k + 1];
    for (int i = 0; i < (two ? k + 1 : k); ++i) p[i] = rowAt(y - r + i);
    D* const d[2] = {ownRow(j.dst, j.dstStep, y), two ? ownRow(j.dst, j.dstStep, y + 1) : nullptr};
    if (two)
      ownRowPair8u<true, D, C1, R1, C2, R2>(p, v, d, w, j.border, j.bval, sink, j.divisor);
    else
      ownRowPair8u<false, D, C1, R1, C2, R2>(p, v, d, w, j.border, j.bval, sink, j.divisor);
  }
}

template <class D>
using ownBand8uFn = void (*)(const ownJob8u<D>&, void*, int, int);

// The band kernel of each 8u member: column taps top to bottom, row taps left to right.
template <class D>
ownBand8uFn<D> ownPickBand8u(ownKind kind, int k) {
  using D3 = ownTaps<-1, 0, 1>;
  using N3 = ownTaps<1, 0, -1>;
  using S3 = ownTaps<1, 2, 1>;
  using L3 = ownTaps<1, -2, 1>;
  using D5 = ownTaps<-1, -2, 0, 2, 1>;
  using N5 = ownTaps<1, 2, 0, -2, -1>;
  using S5 = ownTaps<1, 4, 6, 4, 1>;
  using L5 = ownTaps<1, 0, -2, 0, 1>;
  const bool five = k == 5;
  switch (kind) {
    case ownKind::SobelHoriz: return five ? ownBand8u<D, N5, S5> : ownBand8u<D, N3, S3>;
    case ownKind::SobelVert: return five ? ownBand8u<D, S5, D5> : ownBand8u<D, S3, D3>;
    case ownKind::SobelNegVert: return five ? ownBand8u<D, S5, N5> : ownBand8u<D, S3, N3>;
    case ownKind::SobelHorizSecond: return five ? ownBand8u<D, L5, S5> : ownBand8u<D, L3, S3>;
    case ownKind::SobelVertSecond: return five ? ownBand8u<D, S5, L5> : ownBand8u<D, S3, L3>;
    case ownKind::SobelCross: return five ? ownBand8u<D, N5, D5> : ownBand8u<D, N3, D3>;
    case ownKind::ScharrHoriz: return ownBand8u<D, N3, ownTaps<3, 10, 3>>;
    case ownKind::ScharrVert: return ownBand8u<D, ownTaps<3, 10, 3>, D3>;
    // 3x3: 2 0 2 / 0 -8 0 / 2 0 2 as column (2 0 2) x row (1 0 1) plus column (0 -8 0) x row (0 1 0)
    case ownKind::Laplacian:
      return five ? ownBand8u<D, L5, S5, S5, L5> : ownBand8u<D, ownTaps<2, 0, 2>, ownTaps<1, 0, 1>, ownTaps<0, -8, 0>, ownTaps<0, 1, 0>>;
    default: return five ? ownBand8u<D, ownTaps<1, 1, 1, 1, 1>, ownTaps<1, 1, 1, 1, 1>> : ownBand8u<D, ownTaps<1, 1, 1>, ownTaps<1, 1, 1>>;
  }
}

// Rows per thread below which a member stays serial, and the least width for bands.
inline int ownBandRows(ownKind kind) { return kind == ownKind::Laplacian ? 32 : 128; }
inline int ownBandWidth(ownKind kind) {
  return (kind == ownKind::ScharrHoriz || kind == ownKind::ScharrVert) ? 1 : 256;
}

// The whole filter: checks in their order, then serial or in bands of rows, each
// band with its own slice of the work buffer.
template <class S, class D>
vnxStatus ownFixedFilter(const S* pSrc, int srcStep, D* pDst, int dstStep, vnxiSize roi, int mask, int border,
                         S bval, int divisor, const vnx8u* pBuffer, ownKind kind, bool hasDivisor) {
  constexpr bool wide = std::is_same<S, vnx32f>::value;
  using I = typename std::conditional<wide, vnx32f, vnx16s>::type;
  if (vnxStatus st = ownCheck({pSrc, pDst, pBuffer}, roi, {ownImg<S>(srcStep, roi.width), ownImg<D>(dstStep, roi.width)}))
    return st;
  if (border < vnxBorderConst || border > vnxBorderMirrorR) return vnxStatusBadArg;
  if (hasDivisor && divisor == 0) return vnxStatusBadArg;
  if (mask != vnxMskSize3x3 && mask != vnxMskSize5x5) return vnxStatusBadMaskSize;

  const int k = ownMaskLength(mask);
  const ownFixed<I> f = ownFixedKernels<I>(kind, k);
  ownOut out{hasDivisor ? divisor : 1, 1.0f};
  if (kind == ownKind::Lowpass) {
    out.divisor = k * k;
    out.scale = 1.0f / static_cast<float>(k * k);
  }
  const std::int64_t slice = ownSliceBytes(roi, f.k, wide, kind, hasDivisor) + 32;
  const std::int64_t stride = ownStride(roi.width, wide, kind);
  const int t = ownNumThreads();
  const bool bands = t > 1 && !omp_in_parallel() && !ownSingleCoreDie() &&
                     static_cast<std::int64_t>(t) * ownBandRows(kind) <= roi.height && roi.width >= ownBandWidth(kind);
  const int nBands = bands ? t : 1;
  auto sliceOf = [&](int b) {
    const std::uintptr_t base = reinterpret_cast<std::uintptr_t>(pBuffer) + static_cast<std::uintptr_t>(b * slice);
    return reinterpret_cast<void*>((base + 31) & ~static_cast<std::uintptr_t>(31));
  };
  if constexpr (!wide) {
    const ownJob8u<D> job{pSrc, srcStep, pDst, dstStep, roi, border, bval, out.divisor, stride};
    const ownBand8uFn<D> band = ownPickBand8u<D>(kind, f.k);
    ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) { band(job, sliceOf(b), y0, y1); });
  } else {
    ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) {
      ownFixedBand(pSrc, srcStep, pDst, dstStep, roi, f, border, bval, out, sliceOf(b), stride, y0, y1);
    });
  }
  return vnxStatusOk;
}

template <class S, class D>
vnxStatus ownFixedFilter(const S* pSrc, int srcStep, D* pDst, int dstStep, vnxiSize roi, int mask, int border,
                         S bval, const vnx8u* pBuffer, ownKind kind) {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roi, mask, border, bval, 1, pBuffer, kind, false);
}

}  // namespace

VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelHoriz);
}
VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelHoriz, true);
}
VNX_API vnxStatus vnxiFilterSobelHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelHoriz);
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelHoriz, false);
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelHoriz, true);
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelHoriz, false);
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelVert);
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelVert, true);
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelVert);
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelVert, false);
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelVert, true);
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelVert, false);
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                         vnxiSize roiSize, int mask, int borderType,
                                                         vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelNegVert);
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                        vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                        int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelNegVert, true);
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelNegVert);
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelNegVert, false);
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                               int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelNegVert, true);
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelNegVert, false);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst,
                                                             int dstStep, vnxiSize roiSize, int mask, int borderType,
                                                             vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelHorizSecond);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelHorizSecond, true);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx32f borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelHorizSecond);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                    int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelHorizSecond, false);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelHorizSecond, true);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelHorizSecond, false);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelVertSecond);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx8u borderValue, int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelVertSecond, true);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                          vnxiSize roiSize, int mask, int borderType,
                                                          vnx32f borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelVertSecond);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelVertSecond, false);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelVertSecond, true);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                 int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelVertSecond, false);
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelCross);
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::SobelCross, true);
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::SobelCross);
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelCross, false);
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::SobelCross, true);
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::SobelCross, false);
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::Laplacian);
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, divisor, pBuffer,
                        ownKind::Laplacian, true);
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::Laplacian);
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::Laplacian, false);
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::Laplacian, true);
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::Laplacian, false);
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                        vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                        vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownKind::ScharrHoriz);
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, divisor, pBuffer,
                        ownKind::ScharrHoriz, true);
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownKind::ScharrHoriz);
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, false, ownKind::ScharrHoriz, false);
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, false, ownKind::ScharrHoriz, true);
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, true, ownKind::ScharrHoriz, false);
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownKind::ScharrVert);
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, divisor, pBuffer,
                        ownKind::ScharrVert, true);
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownKind::ScharrVert);
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, false, ownKind::ScharrVert, false);
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, false, ownKind::ScharrVert, true);
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, true, ownKind::ScharrVert, false);
}
VNX_API vnxStatus vnxiFilterLowpassBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                 vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                 vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::Lowpass);
}
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_8u_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, false, ownKind::Lowpass, false);
}
VNX_API vnxStatus vnxiFilterLowpassBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                  vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                  vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownKind::Lowpass);
}
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, true, ownKind::Lowpass, false);
}
