// Small square rectangles of 8u data (3x3, 5x5) in vertical strips of 32 bytes: each
// source row is loaded once a strip, folded along the row in registers, and the last
// KH row folds are kept in registers, so an output vector costs KW loads, no
// intermediate row and one store. The columns whose window reaches past the ROI's
// edges are folded one sample at a time with clamped coordinates.
#pragma once

#include "morph/vncvmorph.h"

// Strips run down blocks of kOwnStripRows rows, so the rows one strip loads are still
// in the first-level cache when the next strip (the other half of the same cache
// lines) loads them.
constexpr int kOwnStripRows = 64;
template <class Body>
inline void ownStripBlocks(int y0, int y1, Body&& body) {
  for (int b = y0; b < y1; b += kOwnStripRows) body(b, std::min(b + kOwnStripRows, y1));
}

// The edge columns [0, xa) and [xb, len) of rows y0 .. y1 - 1 (every column when the
// interior is narrower than a strip), through edge(y, from, to).
template <class Edge>
inline void ownStripEdges(int y0, int y1, std::int64_t xa, std::int64_t xb, std::int64_t len, int sw, Edge&& edge) {
  for (int y = y0; y < y1; ++y) {
    if (xb - xa >= sw) {
      edge(y, 0, xa);
      edge(y, xb, len);
    } else {
      edge(y, 0, len);
    }
  }
}

using ownStripBandFn = void (*)(const vnx8u*, int, vnx8u*, int, vnxiSize, int, int, int, int, int);
// A strip kernel over the bands of the ROI, each band in blocks of rows.
inline void ownRunStrips(ownStripBandFn band, const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi,
                         int c, vnxiPoint a) {
  ownRunBands(ownBandSplit{roi.height, ownBandCount(roi, kOwnBandsMorph)}, [&](int, int y0, int y1) {
    ownStripBlocks(y0, y1, [&](int b0, int b1) { band(src, srcStep, dst, dstStep, roi, c, a.x, a.y, b0, b1); });
  });
}

template <ownMorphOp Op, int KW>
inline __m128i ownRowFold(const vnx8u* p, std::int64_t c) {
  __m128i v = ownLoad(p);
  for (int i = 1; i < KW; ++i) v = ownExtremeV<Op>(v, ownLoad(p + i * c));
  return v;
}

// Output rows y0 .. y1 - 1 of the KW x KH rectangle with its cell (ax, ay) on the pixel
// (0 <= ax < KW, 0 <= ay < KH), c channels.
template <ownMorphOp Op, int KW, int KH>
void ownRectStripBand(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, int ax, int ay,
                      int y0, int y1) {
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * c;
  const std::int64_t xa = static_cast<std::int64_t>(ax) * c, xb = len - static_cast<std::int64_t>(KW - 1 - ax) * c;
  auto clampedRow = [&](std::int64_t y) { return ownClampedRow(src, srcStep, y, roi.height); };
  constexpr int NV = KH <= 3 ? 4 : 2, SW = 16 * NV;  // as many vectors as the registers hold
  if (xb - xa >= SW) {
    for (std::int64_t x = xa;; x += SW) {
      if (x > xb - SW) x = xb - SW;  // the last strip overlaps the one before: outputs only
      const std::int64_t off = x - xa;
      __m128i h[NV][KH];
      for (int k = 0; k < KH - 1; ++k) {
        const vnx8u* r = clampedRow(std::int64_t{y0} - ay + k) + off;
        for (int v = 0; v < NV; ++v) h[v][k + 1] = ownRowFold<Op, KW>(r + 16 * v, c);
      }
      int y = y0;
      // Two output rows a step share the folds of their KH - 1 common rows.
      for (; y + 1 < y1; y += 2) {
        const vnx8u* ra = clampedRow(std::int64_t{y} - ay + KH - 1) + off;
        const vnx8u* rb = clampedRow(std::int64_t{y} - ay + KH) + off;
        vnx8u* d0 = ownRow(dst, dstStep, y) + x;
        vnx8u* d1 = ownRow(dst, dstStep, y + 1) + x;
        for (int v = 0; v < NV; ++v) {
          const __m128i a = ownRowFold<Op, KW>(ra + 16 * v, c), b = ownRowFold<Op, KW>(rb + 16 * v, c);
          __m128i m = a;
          for (int k = 2; k < KH; ++k) m = ownExtremeV<Op>(m, h[v][k]);
          ownStore(d0 + 16 * v, ownExtremeV<Op>(m, h[v][1]));
          ownStore(d1 + 16 * v, ownExtremeV<Op>(m, b));
          for (int k = 1; k + 2 < KH; ++k) h[v][k] = h[v][k + 2];
          h[v][KH - 2] = a;
          h[v][KH - 1] = b;
        }
      }
      if (y < y1) {
        const vnx8u* r = clampedRow(std::int64_t{y} - ay + KH - 1) + off;
        vnx8u* d = ownRow(dst, dstStep, y) + x;
        for (int v = 0; v < NV; ++v) {
          __m128i o = ownRowFold<Op, KW>(r + 16 * v, c);
          for (int k = 1; k < KH; ++k) o = ownExtremeV<Op>(o, h[v][k]);
          ownStore(d + 16 * v, o);
        }
      }
      if (x == xb - SW) break;
    }
  }
  // Edge columns (all columns of a narrow ROI): clamped coordinates, one sample at a time.
  auto edge = [&](int y, std::int64_t from, std::int64_t to) {
    vnx8u* d = ownRow(dst, dstStep, y);
    for (std::int64_t e = from; e < to; ++e) {
      const std::int64_t px = e / c, k = e % c;
      vnx8u v = clampedRow(std::int64_t{y} - ay)[std::max<std::int64_t>(px - ax, 0) * c + k];
      for (int j = 0; j < KH; ++j) {
        const vnx8u* r = clampedRow(std::int64_t{y} - ay + j);
        for (int i = 0; i < KW; ++i)
          v = ownExtreme<Op>(v, r[std::min<std::int64_t>(std::max<std::int64_t>(px + i - ax, 0), roi.width - 1) * c + k]);
      }
      d[e] = v;
    }
  };
  ownStripEdges(y0, y1, xa, xb, len, SW, edge);
}

// The strip kernel for a full KW x KH rectangle of 8u data with the anchor inside it;
// false (nothing done) for other shapes.
template <ownMorphOp Op>
bool ownRectStrip(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, vnxiSize mask,
                  vnxiPoint a) {
  if (a.x < 0 || a.x >= mask.width || a.y < 0 || a.y >= mask.height) return false;
  ownStripBandFn band = nullptr;
  if (mask.width == 3 && mask.height == 3) band = ownRectStripBand<Op, 3, 3>;
  if (mask.width == 5 && mask.height == 5) band = ownRectStripBand<Op, 5, 5>;
  if (!band) return false;
  ownRunStrips(band, src, srcStep, dst, dstStep, roi, c, a);
  return true;
}
template <ownMorphOp Op>
bool ownRectStrip(const vnx32f*, int, vnx32f*, int, vnxiSize, int, vnxiSize, vnxiPoint) {
  return false;
}

// ---- Crosses ------------------------------------------------------------------------
// A KW x KH cross (the centre row and column of the box, anchored at the centre) of 8u
// data is the extreme of a vertical bar of KH rows and a horizontal bar of KW columns:
// the bar rows are loaded once a strip and kept in registers down the strip, the
// centre row is folded across with KW - 1 more loads; no intermediate row.
template <ownMorphOp Op, int KW, int KH>
void ownCrossStripBand(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, int ax, int ay,
                       int y0, int y1) {
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * c;
  const std::int64_t xa = static_cast<std::int64_t>(ax) * c, xb = len - static_cast<std::int64_t>(KW - 1 - ax) * c;
  auto clampedRow = [&](std::int64_t y) { return ownClampedRow(src, srcStep, y, roi.height); };
  constexpr int NV = KH <= 3 ? 4 : 2, SW = 16 * NV;
  if (xb - xa >= SW) {
    for (std::int64_t x = xa;; x += SW) {
      if (x > xb - SW) x = xb - SW;
      const std::int64_t off = x - xa;
      __m128i v[NV][KH];
      for (int k = 0; k < KH - 1; ++k) {
        const vnx8u* r = clampedRow(std::int64_t{y0} - ay + k) + x;
        for (int i = 0; i < NV; ++i) v[i][k + 1] = ownLoad(r + 16 * i);
      }
      // The centre row's other KW - 1 cells across (the centre column brings the centre).
      auto across = [&](const vnx8u* row, __m128i o) {
        for (int i = 0; i < KW; ++i)
          if (i != KW / 2) o = ownExtremeV<Op>(o, ownLoad(row + i * c));
        return o;
      };
      int y = y0;
      // Two output rows a step share the KH - 1 common rows of their columns.
      for (; y + 1 < y1; y += 2) {
        const vnx8u* ra = clampedRow(std::int64_t{y} - ay + KH - 1) + x;
        const vnx8u* rb = clampedRow(std::int64_t{y} - ay + KH) + x;
        const vnx8u* m0 = clampedRow(y) + off;
        const vnx8u* m1 = clampedRow(std::int64_t{y} + 1) + off;
        vnx8u* d0 = ownRow(dst, dstStep, y) + x;
        vnx8u* d1 = ownRow(dst, dstStep, y + 1) + x;
        for (int i = 0; i < NV; ++i) {
          const __m128i a = ownLoad(ra + 16 * i), b = ownLoad(rb + 16 * i);
          __m128i m = a;
          for (int k = 2; k < KH; ++k) m = ownExtremeV<Op>(m, v[i][k]);
          ownStore(d0 + 16 * i, across(m0 + 16 * i, ownExtremeV<Op>(m, v[i][1])));
          ownStore(d1 + 16 * i, across(m1 + 16 * i, ownExtremeV<Op>(m, b)));
          for (int k = 1; k + 2 < KH; ++k) v[i][k] = v[i][k + 2];
          v[i][KH - 2] = a;
          v[i][KH - 1] = b;
        }
      }
      if (y < y1) {
        const vnx8u* r = clampedRow(std::int64_t{y} - ay + KH - 1) + x;
        const vnx8u* m0 = clampedRow(y) + off;
        vnx8u* d = ownRow(dst, dstStep, y) + x;
        for (int i = 0; i < NV; ++i) {
          __m128i o = ownLoad(r + 16 * i);
          for (int k = 1; k < KH; ++k) o = ownExtremeV<Op>(o, v[i][k]);
          ownStore(d + 16 * i, across(m0 + 16 * i, o));
        }
      }
      if (x == xb - SW) break;
    }
  }
  auto edge = [&](int y, std::int64_t from, std::int64_t to) {
    vnx8u* d = ownRow(dst, dstStep, y);
    const vnx8u* centre = clampedRow(y);
    for (std::int64_t e = from; e < to; ++e) {
      const std::int64_t px = e / c, k = e % c;
      vnx8u v = centre[e];
      for (int j = 0; j < KH; ++j) v = ownExtreme<Op>(v, clampedRow(std::int64_t{y} - ay + j)[e]);
      for (int i = 0; i < KW; ++i)
        v = ownExtreme<Op>(v, centre[std::min<std::int64_t>(std::max<std::int64_t>(px + i - ax, 0), roi.width - 1) * c + k]);
      d[e] = v;
    }
  };
  ownStripEdges(y0, y1, xa, xb, len, SW, edge);
}

// The cross kernel for a 3x3 or 5x5 mask of 8u data whose nonzero cells are exactly
// the centre row and column, anchored at the centre; false (nothing done) otherwise.
template <ownMorphOp Op>
bool ownCrossStrip(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, const vnx8u* mask,
                   vnxiSize m, vnxiPoint a) {
  if (a.x != m.width / 2 || a.y != m.height / 2) return false;
  for (int j = 0; j < m.height; ++j)
    for (int i = 0; i < m.width; ++i)
      if ((mask[static_cast<std::int64_t>(j) * m.width + i] != 0) != (i == a.x || j == a.y)) return false;
  ownStripBandFn band = nullptr;
  if (m.width == 3 && m.height == 3) band = ownCrossStripBand<Op, 3, 3>;
  if (m.width == 5 && m.height == 5) band = ownCrossStripBand<Op, 5, 5>;
  if (!band) return false;
  ownRunStrips(band, src, srcStep, dst, dstStep, roi, c, a);
  return true;
}
template <ownMorphOp Op>
bool ownCrossStrip(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const vnx8u*, vnxiSize, vnxiPoint) {
  return false;
}
