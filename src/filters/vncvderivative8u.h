// Body of the fixed kernels over 8u sources (see vncvderivative.h): columns first,
// then rows, in 16-bit lanes.
#pragma once

#include <algorithm>
#include <type_traits>

#include "border.h"
#include "filters/vncvseparable.h"
#include "filters/vncvtaps.h"
#include "own.h"

// Integer sums do not depend on the order of the two passes, so the 8u members filter
// down the columns first, straight from the source rows (the k + 1 rows of two output
// rows are read and widened once for both), then along each row of column sums. The
// k/2 column sums beyond each edge follow from the border rule: a column that stands
// for column x has the column sums of x (vnxBorderConst: the sum of the column taps
// times the border value). Every sum fits 16 bits (at most 255 * 64 * 2 < 2^15), so
// 16-bit lanes give it exactly.

// Column sums of output rows y (and y + 1 when Two) of each term, 16 columns from x,
// from the rows p[0..k].
template <bool Two, class C1, class C2>
[[gnu::always_inline]] inline void ownColumnSums8u(const vnx8u* const* p, vnx16s* const (*v)[2], int x) {
  __m128i lo[C1::k + 1], hi[C1::k + 1];
  for (int i = 0; i < (Two ? C1::k + 1 : C1::k); ++i) {
    ownWiden8uTo16(ownLoad(p[i] + x), lo[i], hi[i]);
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
  // one pointer for the taps (int offsets x - k/2 + i would each be widened apart)
  const vnx16s* at = a + x - R1::k / 2;
  __m128i t[R1::k];
  for (int i = 0; i < R1::k; ++i) t[i] = ownLoad(at + i);
  __m128i s = R1::dot(t);
  if constexpr (R2::k > 0) {
    const vnx16s* bt = b + x - R1::k / 2;
    for (int i = 0; i < R1::k; ++i) t[i] = ownLoad(bt + i);
    s = _mm_add_epi16(s, R2::dot(t));
  }
  return s;
}

// The k/2 column sums beyond each edge of a row of w sums.
template <class C>
void ownSumEdges(vnx16s* v, int w, ownBorder rule, vnx8u bval) {
  for (int i = 1; i <= C::k / 2; ++i) {
    if (rule == ownBorder::Const) {
      v[-i] = v[w - 1 + i] = static_cast<vnx16s>(C::sum() * bval);
    } else {
      v[-i] = v[ownBorderIndex(-i, w, rule)];
      v[w - 1 + i] = v[ownBorderIndex(std::int64_t{w} - 1 + i, w, rule)];
    }
  }
}

// Where the 16-bit sums of output row i go: straight into a 16s row, through the integer
// reciprocal into an 8u row, or into a row of sums divided afterwards (later()).
template <class D>
struct ownSink8u {
  ownReciprocal rc;  // a copy: 8-bit stores may alias anything the kernel reads through a reference
  vnx16s* sums[2];
  static constexpr bool wide = std::is_same<D, vnx16s>::value;
  bool later() const { return !wide && !(std::is_same<D, vnx8u>::value && rc.exact); }
  [[gnu::always_inline]] void put(D* d, int i, int x, __m128i lo, __m128i hi) const {
    if constexpr (wide) {
      ownStore(d + x, lo);
      ownStore(d + x + 8, hi);
    } else {
      if constexpr (std::is_same<D, vnx8u>::value) {
        if (rc.exact) return ownStorePackedU8(d + x, rc.quotient(lo), rc.quotient(hi));
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
void ownRowPair8u(const vnx8u* const* srcRows, vnx16s* const (*sumRows)[2], D* const* outRows, int w, ownBorder rule,
                  vnx8u bval, const ownSink8u<D>& sinkArg, int divisor) {
  constexpr int nRows = Two ? 2 : 1;
  // The row pointers in locals: the stores below cannot then change them, so they stay
  // in registers instead of being reloaded for every vector.
  const vnx8u* p[C1::k + 1];
  for (int i = 0; i < (Two ? C1::k + 1 : C1::k); ++i) p[i] = srcRows[i];
  vnx16s* const v[2][2] = {{sumRows[0][0], sumRows[0][1]}, {sumRows[1][0], sumRows[1][1]}};
  D* const d[2] = {outRows[0], Two ? outRows[1] : nullptr};
  const ownSink8u<D> sink = sinkArg;
  auto edges = [&] {
    for (int i = 0; i < nRows; ++i) {
      ownSumEdges<C1>(v[0][i], w, rule, bval);
      if constexpr (C2::k > 0) ownSumEdges<C2>(v[1][i], w, rule, bval);
    }
  };
  auto out = [&](int x) __attribute__((always_inline)) {  // sixteen columns
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
  ownBorder rule;
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
  if (j.rule == ownBorder::Const) std::fill(constRow, constRow + w, j.bval);
  auto rowAt = [&](int yy) -> const vnx8u* {  // a row of the ROI, or the one the border rule names
    const std::int64_t sy = ownBorderIndex(yy, j.roi.height, j.rule);
    return sy < 0 ? constRow : ownRow(j.src, j.srcStep, static_cast<int>(sy));
  };
  for (int y = y0; y < y1; y += 2) {
    const bool two = y + 1 < y1;
    const vnx8u* p[k + 1];
    for (int i = 0; i < (two ? k + 1 : k); ++i) p[i] = rowAt(y - r + i);
    D* const d[2] = {ownRow(j.dst, j.dstStep, y), two ? ownRow(j.dst, j.dstStep, y + 1) : nullptr};
    if (two)
      ownRowPair8u<true, D, C1, R1, C2, R2>(p, v, d, w, j.rule, j.bval, sink, j.divisor);
    else
      ownRowPair8u<false, D, C1, R1, C2, R2>(p, v, d, w, j.rule, j.bval, sink, j.divisor);
  }
}
