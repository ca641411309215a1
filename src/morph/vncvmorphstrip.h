// Small centred structuring elements of 8u data (3x3 and 5x5 rectangles and crosses)
// in vertical strips of 32 or 64 bytes: each source row is loaded once a strip and its
// contribution (the row's fold across the rectangle, or the sample column of the
// cross's vertical bar) is kept in registers for the next KH - 1 rows, so an output
// vector costs KW loads (rectangle) or KW - 1 and one (cross), no intermediate row, and
// one store. The columns whose window reaches past the ROI's edges are folded one
// sample at a time with clamped coordinates.
#pragma once

#include <algorithm>

#include "morph/vncvmorph.h"

// Strips run down blocks of kOwnStripRows rows, so the rows one strip loads are still
// in the first-level cache when the next strip (the rest of the same cache lines)
// loads them. A block looks up its clamped source rows once, in a table.
constexpr int kOwnStripRows = 64;
constexpr int kOwnStripMaxSide = 5;

enum class ownStripShape { Rect, Cross };

// A K x K element anchored at its centre, C channels: the whole square, or (Cross) its
// centre row and column. Side, anchor and channel count are constants, so every load of
// a strip is a row pointer plus the strip's offset plus a fixed displacement.
template <ownMorphOp Op, ownStripShape S, int K, int C>
struct ownStripShapeOf {
  static constexpr int A = K / 2;                     // the anchor, row and column
  static constexpr std::int64_t xa = A * C;           // samples left of the anchor
  static constexpr int NV = K <= 3 ? 4 : 2;           // as many vectors as the registers hold
  static constexpr int SW = 16 * NV;                  // samples of a strip
  static constexpr int TileBytes = SW + 2 * A * C;    // a strip's windows, edge to edge
  // What the row at p brings to the output vector whose window starts at p: its fold
  // across the square, or the cross's vertical bar (the sample under the anchor).
  static __m128i term(const vnx8u* p) {
    if (S == ownStripShape::Cross) return ownLoad(p + xa);
    __m128i v = ownLoad(p);
#pragma GCC unroll 8
    for (int i = 1; i < K; ++i) v = ownExtremeV<Op>(v, ownLoad(p + i * C));
    return v;
  }
  // The cross's horizontal bar: the centre row's cells beside the vertical bar.
  static __m128i across(const vnx8u* p, __m128i o) {
    if (S == ownStripShape::Cross) {
#pragma GCC unroll 8
      for (int i = 0; i < K; ++i)
        if (i != A) o = ownExtremeV<Op>(o, ownLoad(p + i * C));
    }
    return o;
  }
};

// One strip: the SW output samples from column dx of rows y0 .. y1 - 1, whose windows
// start at offset u of the rows in the table (rows[j] stands for source row y0 - A + j).
// The terms of the last K - 1 rows stay in registers; two output rows a step share
// those of their K - 1 common rows.
template <ownMorphOp Op, ownStripShape S, int K, int C>
void ownStripColumns(const vnx8u* const* rows, std::int64_t u, vnx8u* dst, int dstStep, std::int64_t dx, int y0,
                     int y1) {
  using E = ownStripShapeOf<Op, S, K, C>;
  constexpr int NV = E::NV, A = E::A;
  __m128i h[NV][K];
#pragma GCC unroll 8
  for (int k = 0; k < K - 1; ++k)
#pragma GCC unroll 8
    for (int v = 0; v < NV; ++v) h[v][k + 1] = E::term(rows[k] + u + 16 * v);
  int y = y0;
  for (; y + 1 < y1; y += 2) {
    const vnx8u* const* r = rows + (y - y0);
    vnx8u* d = ownRow(dst, dstStep, y) + dx;
    const vnx8u* pa = r[K - 1] + u;
    const vnx8u* pb = r[K] + u;
    const vnx8u* c0 = r[A] + u;
    const vnx8u* c1 = r[A + 1] + u;
#pragma GCC unroll 8
    for (int v = 0; v < NV; ++v) {
      const __m128i a = E::term(pa + 16 * v), b = E::term(pb + 16 * v);
      __m128i m = a;
#pragma GCC unroll 8
      for (int k = 2; k < K; ++k) m = ownExtremeV<Op>(m, h[v][k]);
      ownStore(d + 16 * v, E::across(c0 + 16 * v, ownExtremeV<Op>(m, h[v][1])));
      ownStore(d + dstStep + 16 * v, E::across(c1 + 16 * v, ownExtremeV<Op>(m, b)));
#pragma GCC unroll 8
      for (int k = 1; k + 2 < K; ++k) h[v][k] = h[v][k + 2];
      h[v][K - 2] = a;
      h[v][K - 1] = b;
    }
  }
  if (y < y1) {  // an odd last row: its own K terms
    const vnx8u* const* r = rows + (y - y0);
    vnx8u* d = ownRow(dst, dstStep, y) + dx;
    for (int v = 0; v < NV; ++v) {
      __m128i o = E::term(r[0] + u + 16 * v);
      for (int k = 1; k < K; ++k) o = ownExtremeV<Op>(o, E::term(r[k] + u + 16 * v));
      ownStore(d + 16 * v, E::across(r[A] + u + 16 * v, o));
    }
  }
}

// Output rows y0 .. y1 - 1 (at most kOwnStripRows) of the element. Strips cover the
// columns whose windows stay inside the ROI; the first and last strip of the row run
// over tiles, the rows' ends with A replicated pixels beside them, so the edge columns
// take the same vector path. A ROI narrower than a strip and its windows is folded one
// sample at a time with clamped coordinates.
template <ownMorphOp Op, ownStripShape S, int K, int C>
void ownStripBlock(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int y0, int y1) {
  using E = ownStripShapeOf<Op, S, K, C>;
  constexpr int A = E::A, SW = E::SW, TB = E::TileBytes;
  constexpr std::int64_t xa = E::xa;
  constexpr int kRows = kOwnStripRows + kOwnStripMaxSide;
  static_assert(K <= kOwnStripMaxSide, "the row table holds the block and the element's rows");
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * C;
  const int n = y1 - y0 + K - 1;  // source rows of the block
  const vnx8u* rows[kRows];       // rows[j]: source row y0 - A + j, clamped
  for (int j = 0; j < n; ++j) rows[j] = ownClampedRow(src, srcStep, std::int64_t{y0} - A + j, roi.height);
  if (len - 2 * xa >= SW) {
    const std::int64_t last = len - 2 * xa - SW;  // offset of the last strip's windows
    for (std::int64_t u = 0;; u += SW) {
      if (u > last) u = last;  // the last strip overlaps the one before: outputs only
      ownStripColumns<Op, S, K, C>(rows, u, dst, dstStep, xa + u, y0, y1);
      if (u == last) break;
    }
    alignas(16) vnx8u tile[2][kRows][TB];
    const vnx8u* left[kRows];
    const vnx8u* right[kRows];
    for (int j = 0; j < n; ++j) {
      for (int q = 0; q < A; ++q) {
        std::memcpy(tile[0][j] + q * C, rows[j], C);
        std::memcpy(tile[1][j] + TB - (q + 1) * C, rows[j] + len - C, C);
      }
      std::memcpy(tile[0][j] + xa, rows[j], TB - xa);
      std::memcpy(tile[1][j], rows[j] + len - (TB - xa), TB - xa);
      left[j] = tile[0][j];
      right[j] = tile[1][j];
    }
    ownStripColumns<Op, S, K, C>(left, 0, dst, dstStep, 0, y0, y1);
    ownStripColumns<Op, S, K, C>(right, 0, dst, dstStep, len - SW, y0, y1);
    return;
  }
  for (int y = y0; y < y1; ++y) {
    const vnx8u* const* r = rows + (y - y0);
    vnx8u* out = ownRow(dst, dstStep, y);
    for (std::int64_t e = 0; e < len; ++e) {
      const std::int64_t px = e / C, k = e % C;
      vnx8u v = r[A][e];
      for (int j = 0; j < K; ++j)
        for (int i = 0; i < K; ++i)
          if (S == ownStripShape::Rect || i == A || j == A)
            v = ownExtreme<Op>(v, r[j][std::min<std::int64_t>(std::max<std::int64_t>(px + i - A, 0), roi.width - 1) * C + k]);
      out[e] = v;
    }
  }
}

using ownStripBlockFn = void (*)(const vnx8u*, int, vnx8u*, int, vnxiSize, int, int);
// A strip kernel over the bands of the ROI, each band in blocks of rows.
inline void ownRunStrips(ownStripBlockFn block, const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi) {
  ownRunBands(ownBandSplit{roi.height, ownBandCount(roi, kOwnBandsMorph)}, [&](int, int y0, int y1) {
    for (int b = y0; b < y1; b += kOwnStripRows)
      block(src, srcStep, dst, dstStep, roi, b, std::min(b + kOwnStripRows, y1));
  });
}

// The block kernel of a 3x3 or 5x5 element of that shape and channel count, or null.
template <ownMorphOp Op, ownStripShape S, int K>
ownStripBlockFn ownStripForChannels(int c) {
  switch (c) {
    case 1: return ownStripBlock<Op, S, K, 1>;
    case 3: return ownStripBlock<Op, S, K, 3>;
    case 4: return ownStripBlock<Op, S, K, 4>;
    default: return nullptr;
  }
}
template <ownMorphOp Op, ownStripShape S>
ownStripBlockFn ownStripFor(vnxiSize mask, vnxiPoint a, int c) {
  if (a.x != mask.width / 2 || a.y != mask.height / 2) return nullptr;
  if (mask.width == 3 && mask.height == 3) return ownStripForChannels<Op, S, 3>(c);
  if (mask.width == 5 && mask.height == 5) return ownStripForChannels<Op, S, 5>(c);
  return nullptr;
}

// The strip kernel for a full 3x3 or 5x5 rectangle of 8u data anchored at its centre;
// false (nothing done) for other shapes.
template <ownMorphOp Op>
bool ownRectStrip(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, vnxiSize mask,
                  vnxiPoint a) {
  const ownStripBlockFn block = ownStripFor<Op, ownStripShape::Rect>(mask, a, c);
  if (!block) return false;
  ownRunStrips(block, src, srcStep, dst, dstStep, roi);
  return true;
}
template <ownMorphOp Op>
bool ownRectStrip(const vnx32f*, int, vnx32f*, int, vnxiSize, int, vnxiSize, vnxiPoint) {
  return false;
}

// The cross kernel for a 3x3 or 5x5 mask of 8u data whose nonzero cells are exactly
// the centre row and column, anchored at the centre; false (nothing done) otherwise.
template <ownMorphOp Op>
bool ownCrossStrip(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, const vnx8u* mask,
                   vnxiSize m, vnxiPoint a) {
  const ownStripBlockFn block = ownStripFor<Op, ownStripShape::Cross>(m, a, c);
  if (!block) return false;
  for (int j = 0; j < m.height; ++j)
    for (int i = 0; i < m.width; ++i)
      if ((mask[static_cast<std::int64_t>(j) * m.width + i] != 0) != (i == a.x || j == a.y)) return false;
  ownRunStrips(block, src, srcStep, dst, dstStep, roi);
  return true;
}
template <ownMorphOp Op>
bool ownCrossStrip(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const vnx8u*, vnxiSize, vnxiPoint) {
  return false;
}
