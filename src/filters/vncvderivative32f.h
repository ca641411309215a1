// Body of the fixed kernels over 32f sources (see vncvderivative.h): rows, then
// columns, in the order of the weights.
#pragma once

#include <algorithm>
#include <type_traits>

#include "border.h"
#include "filters/vncvtaps.h"
#include "own.h"

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
  ownBorder rule;
  vnx32f bval;
  float scale;  // ownFixedScale32f: 1 / (k * k), -1, or 1 (not applied)
  std::int64_t stride;
};

// Four row-pass results of each term into a[x], b[x]; `at` points at the pixel under
// output x (in the source row or in a padded copy) and at[-r .. 3 + r] is read.
template <class R1, class R2>
[[gnu::always_inline]] inline void ownRowVector32f(const float* at, float* a, float* b, int x) {
  __m128 v[R1::k];
  for (int i = 0; i < R1::k; ++i) v[i] = _mm_loadu_ps(at - R1::k / 2 + i);
  _mm_storeu_ps(a + x, R1::dotf(v));
  if constexpr (R2::k > 0) _mm_storeu_ps(b + x, R2::dotf(v));
}

// Output rows from the ring rows rows[t][0 ..] of each term: row i from rows i .. i + k - 1.
// The last one or two ring rows (the new ones) are filtered along x in the same loop
// from their source rows src[i] where every tap lies inside the row (their edges and
// rows without a source pointer are in the ring already), so reading the source
// overlaps writing the output.
template <bool Two, bool Scaled, class C1, class R1, class C2, class R2>
void ownColumns32f(float* const (*ringRows)[C1::k + 1], const float* const* newRows, float* const* outRows, int w,
                   __m128 scale) {
  constexpr int nNew = Two ? 2 : 1, r = R1::k / 2;
  // The row pointers in locals: the float stores below cannot then change them, so
  // they stay in registers instead of being reloaded for every vector.
  float* rows[2][C1::k + 1];
  for (int t = 0; t < 2; ++t)
    for (int i = 0; i <= C1::k; ++i) rows[t][i] = ringRows[t][i];
  const float* const src[2] = {newRows[0], Two ? newRows[1] : nullptr};
  float* const d[2] = {outRows[0], Two ? outRows[1] : nullptr};
  ownNaNWatch nan;  // the output rows' NaNs are settled once they are written
  // The new rows' row pass of four columns; with Checked set, rows whose pass is done
  // already (no source pointer) skip it.
  auto rowPass = [&](auto checked, int x) __attribute__((always_inline)) {
    for (int i = 0; i < nNew; ++i)
      if (!decltype(checked)::value || src[i])
        ownRowVector32f<R1, R2>(src[i] + x, rows[0][C1::k - 1 + i], rows[1][C1::k - 1 + i], x);
  };
  const std::true_type pass, checked;
  const std::false_type skip, unchecked;
  // Four columns; with Pass set, first the new rows' row pass of the same columns.
  auto at = [&](auto withPass, int x, float* const* to, int xo) __attribute__((always_inline)) {
    if constexpr (decltype(withPass)::value) rowPass(unchecked, x);
    __m128 v1[C1::k + 1], v2[C1::k + 1];
    for (int i = 0; i < (Two ? C1::k + 1 : C1::k); ++i) {
      v1[i] = _mm_loadu_ps(rows[0][i] + x);
      if constexpr (C2::k > 0) v2[i] = _mm_loadu_ps(rows[1][i] + x);
    }
    __m128 s[2];
    for (int i = 0; i < nNew; ++i) {
      s[i] = C1::dotf(v1 + i);
      if constexpr (C2::k > 0) s[i] = _mm_add_ps(s[i], C2::dotf(v2 + i));
      if constexpr (Scaled) s[i] = _mm_mul_ps(s[i], scale);
      _mm_storeu_ps(to[i] + xo, s[i]);
    }
    nan.note(s[0], s[nNew - 1]);
  };
  if (w >= 4) {
    // The row pass runs where every tap lies inside the row: from x = 4 (x >= r) while
    // x + 4 + r <= w. Rows whose pass is done already (no source pointer) skip it.
    int x = 0;
    const bool all = src[0] && (!Two || src[1]);
    if (all) {
      at(skip, 0, d, 0);
      for (x = 4; x + 4 + r <= w; x += 4) at(pass, x, d, x);
    } else {
      for (; x + 4 <= w; x += 4) {
        if (x >= r && x + 4 + r <= w) rowPass(checked, x);
        at(skip, x, d, x);
      }
    }
    for (; x + 4 <= w; x += 4) at(skip, x, d, x);
    if (x < w) at(skip, w - 4, d, w - 4);  // rewrites the same values
  } else {
    float tmp[2][4];
    float* const to[2] = {tmp[0], tmp[1]};
    at(skip, 0, to, 0);
    for (int i = 0; i < (Two ? 2 : 1); ++i) std::copy(tmp[i], tmp[i] + w, d[i]);
  }
  for (int i = 0; i < nNew; ++i) nan.settle(d[i], w);
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
    const std::int64_t sy = ownBorderIndex(yy, h, j.rule);  // -1: a row of the border value
    const vnx32f* s = sy < 0 ? nullptr : ownRow(j.src, j.srcStep, static_cast<int>(sy));
    auto pixel = [&](int xi) {
      const std::int64_t sx = s ? ownBorderIndex(xi, w, j.rule) : -1;
      return sx < 0 ? j.bval : s[sx];
    };
    const int slot = (yy - y0 + r) % (k + 1);
    float* a = ring[0][slot];
    float* b = ring[1][slot];
    if (narrow) {
      if (s)
        ownBorderRow(s, w, 1, r, r, j.rule, j.bval, pad);
      else
        std::fill(pad, pad + w + 2 * r, j.bval);
      for (int x = 0; x < w; x += 4) ownRowVector32f<R1, R2>(pad + r + x, a, b, x);
      return nullptr;
    }
    float e[2][8 + 2 * r];  // pixels -r .. 7 + r and w - 8 - r .. w - 1 + r
    for (int i = 0; i < 8 + 2 * r; ++i) {
      e[0][i] = pixel(i - r);
      e[1][i] = pixel(w - 8 - r + i);
    }
    if (!s) {  // a row of the border value
      for (int x = 0; x < w; x += 4) ownRowVector32f<R1, R2>(e[0] + r, a, b, std::min(x, w - 4));
      return nullptr;
    }
    ownRowVector32f<R1, R2>(e[0] + r, a, b, 0);
    ownRowVector32f<R1, R2>(e[1] + r, a, b, w - 8);
    ownRowVector32f<R1, R2>(e[1] + r + 4, a, b, w - 4);
    if (!interior) return s;
    for (int x = r; x + 4 + r <= w; x += 4) ownRowVector32f<R1, R2>(s + x, a, b, x);  // up to w - 5 at least
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
