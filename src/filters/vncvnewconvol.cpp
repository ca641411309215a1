// Fixed-kernel filters with borders: Sobel, Scharr, Laplacian and box lowpass. Each
// is one separable term (or the sum of two), run in bands of rows with one slice of
// the work buffer each: 32f rows, then columns over a ring of k + 1 filtered rows (the
// order of the float sums); 8u columns, then rows, in 16-bit lanes (exact either way).
#include <algorithm>
#include <utility>

#include "check.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"
#include "filters/vncvseparable.h"

namespace {

enum class ownKind { SobelHoriz, SobelVert, SobelNegVert, SobelHorizSecond, SobelVertSecond, SobelCross,
                     ScharrHoriz, ScharrVert, Laplacian, Lowpass };

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

// ---- 8u sources: columns first, in 16-bit lanes -----------------------------------
// Integer sums do not depend on the order of the two passes, so the 8u members filter
// down the columns first, straight from the source rows (the k + 1 rows of two output
// rows are read and widened once for both), then along each row of column sums. The
// k/2 column sums beyond each edge follow from the border rule: a column that stands
// for column x has the column sums of x (vnxBorderConst: the sum of the column taps
// times the border value). Every sum fits 16 bits (at most 255 * 64 * 2 < 2^15), so
// 16-bit lanes give it exactly.

// A 1-D kernel known at compile time, taps in the order they lie over the image. The
// per-vector helpers of the filters are forced inline: a call would cost more than
// their arithmetic.
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
  [[gnu::always_inline]] static __m128i dot(const __m128i* v) {
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
  // Float sum in the order of the taps, ((t0 v0 + t1 v1) + t2 v2) ..., every product
  // formed as the reference forms it, except where another form gives the same bits
  // for every input: 1 * v is v, 2 * v is v + v, acc + (-1 * v) is acc - v and
  // acc + (-2 * v) is acc - (v + v). A zero tap keeps its product (0 * inf is NaN).
  [[gnu::always_inline]] static __m128 dotf(const __m128* v) { return dotfOf(v, std::make_index_sequence<k - 1>()); }
  template <std::size_t... I>
  static __m128 dotfOf(const __m128* v, std::index_sequence<I...>) {
    __m128 acc = firstf<tap[0]>(v[0]);
    ((acc = macf<tap[I + 1]>(acc, v[I + 1])), ...);
    return acc;
  }
  template <int T>
  static __m128 firstf(__m128 v) {
    if constexpr (T == 1) return v;
    else if constexpr (T == 2) return _mm_add_ps(v, v);
    else return _mm_mul_ps(_mm_set1_ps(static_cast<float>(T)), v);
  }
  template <int T>
  static __m128 macf(__m128 acc, __m128 v) {
    if constexpr (T == 1) return _mm_add_ps(acc, v);
    else if constexpr (T == -1) return _mm_sub_ps(acc, v);
    else if constexpr (T == 2) return _mm_add_ps(acc, _mm_add_ps(v, v));
    else if constexpr (T == -2) return _mm_sub_ps(acc, _mm_add_ps(v, v));
    else return _mm_add_ps(acc, _mm_mul_ps(_mm_set1_ps(static_cast<float>(T)), v));
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
[[gnu::always_inline]] inline void ownColumnSums8u(const vnx8u* const* p, vnx16s* const (*v)[2], int x) {
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
[[gnu::always_inline]] inline __m128i ownRowSums8u(const vnx16s* a, const vnx16s* b, int x) {
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

// ---- 32f sources: rows, then columns, in the order of the weights ------------------
// Each source row is filtered along x into a ring of k + 1 rows, straight from the
// source inside and through a few padded pixels (the k/2 outside pixels from the border
// rule) at the two edges; two output rows a step combine k + 1 ring rows. Every vector
// is whole: the edge vectors and the output's last vector overlap the inner ones (rows
// narrower than 8 + 2 * (k/2) go through one padded row).

struct ownJob32f {
  const vnx32f* src;
  int srcStep;
  vnx32f* dst;
  int dstStep;
  vnxiSize roi;
  int border;
  vnx32f bval;
  float scale;  // Lowpass: 1 / (k * k); 1 otherwise (not applied)
  std::int64_t stride;
};

// Four row-pass results from p[x - r ..] of each term into a[x], b[x].
template <class R1, class R2>
[[gnu::always_inline]] inline void ownRowVector32f(const float* p, float* a, float* b, int x) {
  __m128 v[R1::k];
  for (int i = 0; i < R1::k; ++i) v[i] = _mm_loadu_ps(p + x - R1::k / 2 + i);
  _mm_storeu_ps(a + x, R1::dotf(v));
  if constexpr (R2::k > 0) _mm_storeu_ps(b + x, R2::dotf(v));
}

// Output rows from the ring rows rows[t][0 ..] of each term: row i from rows i .. i + k - 1.
// The last one or two ring rows (the new ones) are filtered along x in the same loop
// from their source rows src[i] where every tap lies inside the row (their edges and
// rows without a source pointer are in the ring already), so reading the source
// overlaps writing the output.
template <bool Two, bool Scaled, class C1, class R1, class C2, class R2>
void ownColumns32f(float* const (*rows)[C1::k + 1], const float* const* src, float* const* d, int w,
                   __m128 scale) {
  constexpr int nNew = Two ? 2 : 1, r = R1::k / 2;
  auto at = [&](int x, float* const* to, int xo) {
    if (x >= r && x + 4 + r <= w)
      for (int i = 0; i < nNew; ++i)
        if (src[i]) ownRowVector32f<R1, R2>(src[i], rows[0][C1::k - 1 + i], rows[1][C1::k - 1 + i], x);
    __m128 v1[C1::k + 1], v2[C1::k + 1];
    for (int i = 0; i < (Two ? C1::k + 1 : C1::k); ++i) {
      v1[i] = _mm_loadu_ps(rows[0][i] + x);
      if constexpr (C2::k > 0) v2[i] = _mm_loadu_ps(rows[1][i] + x);
    }
    for (int i = 0; i < (Two ? 2 : 1); ++i) {
      __m128 s = C1::dotf(v1 + i);
      if constexpr (C2::k > 0) s = _mm_add_ps(s, C2::dotf(v2 + i));
      if constexpr (Scaled) s = _mm_mul_ps(s, scale);
      _mm_storeu_ps(to[i] + xo, s);
    }
  };
  if (w >= 4) {
    int x = 0;
    for (; x + 4 <= w; x += 4) at(x, d, x);
    if (x < w) at(w - 4, d, w - 4);  // rewrites the same values
  } else {
    float tmp[2][4];
    float* const to[2] = {tmp[0], tmp[1]};
    at(0, to, 0);
    for (int i = 0; i < (Two ? 2 : 1); ++i) std::copy(tmp[i], tmp[i] + w, d[i]);
  }
}

template <class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
void ownBand32f(const ownJob32f& j, void* slice, int y0, int y1) {
  constexpr int k = C1::k, r = k / 2, nTerms = C2::k > 0 ? 2 : 1;
  const int w = j.roi.width, h = j.roi.height;
  const std::int64_t len = j.stride;
  float* ring[2][k + 1] = {};
  float* q = static_cast<float*>(slice);
  for (int t = 0; t < nTerms; ++t)
    for (int i = 0; i <= k; ++i, q += len) ring[t][i] = q;
  float* pad = q;  // narrow rows: pad[r + x] is pixel x, zeros after the row
  std::fill(pad, pad + len + 16, 0.0f);
  const bool narrow = w < 8 + 2 * r;

  // Source row yy along x into its ring slot; with interior false only the edges of
  // a row read from the source, whose pointer is returned (null when the row is done).
  auto rowPass = [&](int yy, bool interior) -> const float* {
    const bool outside = yy < 0 || yy >= h;
    const vnx32f* s = outside && j.border == vnxBorderConst
                          ? nullptr
                          : ownRow(j.src, j.srcStep, outside ? ownBorderIndex(yy, h, j.border) : yy);
    auto pixel = [&](int xi) {
      return !s ? j.bval : xi >= 0 && xi < w ? s[xi] : j.border == vnxBorderConst ? j.bval : s[ownBorderIndex(xi, w, j.border)];
    };
    const int slot = (yy - y0 + r) % (k + 1);
    float* a = ring[0][slot];
    float* b = ring[1][slot];
    if (narrow) {
      for (int x = -r; x < w + r; ++x) pad[r + x] = pixel(x);
      for (int x = 0; x < w; x += 4) ownRowVector32f<R1, R2>(pad + r, a, b, x);
      return nullptr;
    }
    float e[2][8 + 2 * r];  // pixels -r .. 7 + r and w - 8 - r .. w - 1 + r
    for (int i = 0; i < 8 + 2 * r; ++i) {
      e[0][i] = pixel(i - r);
      e[1][i] = pixel(w - 8 - r + i);
    }
    if (!s) {  // a row of the border value
      for (int x = 0; x < w; x += 4) ownRowVector32f<R1, R2>(e[0] + r - std::min(x, w - 4), a, b, std::min(x, w - 4));
      return nullptr;
    }
    ownRowVector32f<R1, R2>(e[0] + r, a, b, 0);
    ownRowVector32f<R1, R2>(e[1] + r - (w - 8), a, b, w - 8);
    ownRowVector32f<R1, R2>(e[1] + r - (w - 8), a, b, w - 4);
    if (!interior) return s;
    for (int x = r; x + 4 + r <= w; x += 4) ownRowVector32f<R1, R2>(s, a, b, x);  // up to w - 5 at least
    return nullptr;
  };

  const bool scaled = j.scale != 1.0f;
  const __m128 scale = _mm_set1_ps(j.scale);
  for (int yy = y0 - r; yy < y0 + r; ++yy) rowPass(yy, true);
  for (int y = y0; y < y1; y += 2) {
    const bool two = y + 1 < y1;
    const float* src[2] = {rowPass(y + r, false), two ? rowPass(y + r + 1, false) : nullptr};
    float* rows[2][k + 1] = {};
    for (int t = 0; t < nTerms; ++t)
      for (int i = 0; i < (two ? k + 1 : k); ++i) rows[t][i] = ring[t][(y - r + i - y0 + r) % (k + 1)];
    float* const d[2] = {ownRow(j.dst, j.dstStep, y), two ? ownRow(j.dst, j.dstStep, y + 1) : nullptr};
    if (two)
      scaled ? ownColumns32f<true, true, C1, R1, C2, R2>(rows, src, d, w, scale)
             : ownColumns32f<true, false, C1, R1, C2, R2>(rows, src, d, w, scale);
    else
      scaled ? ownColumns32f<false, true, C1, R1, C2, R2>(rows, src, d, w, scale)
             : ownColumns32f<false, false, C1, R1, C2, R2>(rows, src, d, w, scale);
  }
}

using ownBand32fFn = void (*)(const ownJob32f&, void*, int, int);

template <class D>
using ownBand8uFn = void (*)(const ownJob8u<D>&, void*, int, int);
template <class D>
struct ownMake8u {
  template <class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
  static constexpr ownBand8uFn<D> band = ownBand8u<D, C1, R1, C2, R2>;
};
struct ownMake32f {
  template <class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
  static constexpr ownBand32fFn band = ownBand32f<C1, R1, C2, R2>;
};

// The band kernel of each member, column taps top to bottom, row taps left to right:
//   SobelHoriz        column (1 0 -1)      row (1 2 1)      5x5: (1 2 0 -2 -1), (1 4 6 4 1)
//   SobelVert         column (1 2 1)       row (-1 0 1)     5x5: (1 4 6 4 1), (-1 -2 0 2 1)
//   SobelNegVert      column (1 2 1)       row (1 0 -1)     5x5: (1 4 6 4 1), (1 2 0 -2 -1)
//   SobelHorizSecond  column (1 -2 1)      row (1 2 1)      5x5: (1 0 -2 0 1), (1 4 6 4 1)
//   SobelVertSecond   column (1 2 1)       row (1 -2 1)     5x5: (1 4 6 4 1), (1 0 -2 0 1)
//   SobelCross        column (1 0 -1)      row (-1 0 1)     5x5: (1 2 0 -2 -1), (-1 -2 0 2 1)
//   ScharrHoriz       column (1 0 -1)      row (3 10 3)
//   ScharrVert        column (3 10 3)      row (-1 0 1)
//   Laplacian         SobelHorizSecond + SobelVertSecond: 2 0 2 / 0 -8 0 / 2 0 2 for 3x3,
//                     which the 8u members take as column (2 0 2) x row (1 0 1) plus
//                     column (0 -8 0) x row (0 1 0) (one row pass instead of two)
//   Lowpass           ones
template <class M>
auto ownPickBand(ownKind kind, int k) {
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
    case ownKind::SobelHoriz: return five ? M::template band<N5, S5> : M::template band<N3, S3>;
    case ownKind::SobelVert: return five ? M::template band<S5, D5> : M::template band<S3, D3>;
    case ownKind::SobelNegVert: return five ? M::template band<S5, N5> : M::template band<S3, N3>;
    case ownKind::SobelHorizSecond: return five ? M::template band<L5, S5> : M::template band<L3, S3>;
    case ownKind::SobelVertSecond: return five ? M::template band<S5, L5> : M::template band<S3, L3>;
    case ownKind::SobelCross: return five ? M::template band<N5, D5> : M::template band<N3, D3>;
    case ownKind::ScharrHoriz: return M::template band<N3, ownTaps<3, 10, 3>>;
    case ownKind::ScharrVert: return M::template band<ownTaps<3, 10, 3>, D3>;
    case ownKind::Laplacian:
      if (five) return M::template band<L5, S5, S5, L5>;
      if constexpr (std::is_same<M, ownMake32f>::value)
        return M::template band<L3, S3, S3, L3>;
      else
        return M::template band<ownTaps<2, 0, 2>, ownTaps<1, 0, 1>, ownTaps<0, -8, 0>, ownTaps<0, 1, 0>>;
    default:
      return five ? M::template band<ownTaps<1, 1, 1, 1, 1>, ownTaps<1, 1, 1, 1, 1>>
                  : M::template band<ownTaps<1, 1, 1>, ownTaps<1, 1, 1>>;
  }
}

// Band rule of a member: the Laplacian pays for bands from fewer rows, the Scharr
// filters from any width.
inline const ownBandPolicy& ownFixedBands(ownKind kind) {
  if (kind == ownKind::Laplacian) return kOwnBandsFixedLaplacian;
  if (kind == ownKind::ScharrHoriz || kind == ownKind::ScharrVert) return kOwnBandsFixedScharr;
  return kOwnBandsFixedFilter;
}

// The whole filter: checks in their order, then serial or in bands of rows, each
// band with its own slice of the work buffer.
template <class S, class D>
vnxStatus ownFixedFilter(const S* pSrc, int srcStep, D* pDst, int dstStep, vnxiSize roi, int mask, int border,
                         S bval, int divisor, const vnx8u* pBuffer, ownKind kind, bool hasDivisor) {
  constexpr bool wide = std::is_same<S, vnx32f>::value;
  if (vnxStatus st = ownCheck({pSrc, pDst, pBuffer}, roi, {ownImg<S>(srcStep, roi.width), ownImg<D>(dstStep, roi.width)}))
    return st;
  if (border < vnxBorderConst || border > vnxBorderMirrorR) return vnxStatusBadArg;
  if (hasDivisor && divisor == 0) return vnxStatusBadArg;
  if (mask != vnxMskSize3x3 && mask != vnxMskSize5x5) return vnxStatusBadMaskSize;

  const int k = ownMaskLength(mask);
  const bool box = kind == ownKind::Lowpass;
  const std::int64_t slice = ownSliceBytes(roi, k, wide, kind, hasDivisor) + 32;
  const std::int64_t stride = ownStride(roi.width, wide, kind);
  const int nBands = ownBandCount(roi, ownFixedBands(kind));
  auto sliceOf = [&](int b) {
    const std::uintptr_t base = reinterpret_cast<std::uintptr_t>(pBuffer) + static_cast<std::uintptr_t>(b * slice);
    return reinterpret_cast<void*>((base + 31) & ~static_cast<std::uintptr_t>(31));
  };
  if constexpr (!wide) {
    const ownJob8u<D> job{pSrc, srcStep, pDst, dstStep, roi, border, bval, box ? k * k : divisor, stride};
    const ownBand8uFn<D> band = ownPickBand<ownMake8u<D>>(kind, k);
    ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) { band(job, sliceOf(b), y0, y1); });
  } else {
    const ownJob32f job{pSrc, srcStep, pDst, dstStep, roi, border, bval,
                        box ? 1.0f / static_cast<float>(k * k) : 1.0f, stride};
    const ownBand32fFn band = ownPickBand<ownMake32f>(kind, k);
    ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) { band(job, sliceOf(b), y0, y1); });
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
