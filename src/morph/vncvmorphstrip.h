// Small square rectangles of 8u data (3x3, 5x5) in vertical strips of 32 bytes: each
// source row is loaded once a strip, folded along the row in registers, and the last
// KH row folds are kept in registers, so an output vector costs KW loads, no
// intermediate row and one store. The columns whose window reaches past the ROI's
// edges are folded one sample at a time with clamped coordinates.
#pragma once

#include "morph/vncvmorph.h"



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
      for (int y = y0; y < y1; ++y) {
        const vnx8u* r = clampedRow(std::int64_t{y} - ay + KH - 1) + off;
        vnx8u* d = ownRow(dst, dstStep, y) + x;
        for (int v = 0; v < NV; ++v) {
          for (int k = 0; k < KH - 1; ++k) h[v][k] = h[v][k + 1];
          h[v][KH - 1] = ownRowFold<Op, KW>(r + 16 * v, c);
          __m128i o = h[v][0];
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
  for (int y = y0; y < y1; ++y) {
    if (xb - xa >= SW) {
      edge(y, 0, xa);
      edge(y, xb, len);
    } else {
      edge(y, 0, len);
    }
  }
}

// The strip kernel for a full KW x KH rectangle of 8u data with the anchor inside it;
// false (nothing done) for other shapes.
template <ownMorphOp Op>
bool ownRectStrip(const vnx8u* src, int srcStep, vnx8u* dst, int dstStep, vnxiSize roi, int c, vnxiSize mask,
                  vnxiPoint a) {
  if (a.x < 0 || a.x >= mask.width || a.y < 0 || a.y >= mask.height) return false;
  void (*band)(const vnx8u*, int, vnx8u*, int, vnxiSize, int, int, int, int, int) = nullptr;
  if (mask.width == 3 && mask.height == 3) band = ownRectStripBand<Op, 3, 3>;
  if (mask.width == 5 && mask.height == 5) band = ownRectStripBand<Op, 5, 5>;
  if (!band) return false;
  ownRunBands(ownBandSplit{roi.height, ownBandCount(roi, kOwnBandsMorph)},
              [&](int, int y0, int y1) { band(src, srcStep, dst, dstStep, roi, c, a.x, a.y, y0, y1); });
  return true;
}
template <ownMorphOp Op>
bool ownRectStrip(const vnx32f*, int, vnx32f*, int, vnxiSize, int, vnxiSize, vnxiPoint) {
  return false;
}
