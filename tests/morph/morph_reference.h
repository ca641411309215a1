// Morphology tests: the reference written from the contract (the extreme over the
// nonzero mask cells with clamped coordinates), the masks the tests use, and every
// exported form reached through one table.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support.h"

namespace mt {

struct Mask {
  std::string name;
  int w, h;
  std::vector<vnx8u> cells;
  vnxiPoint anchor;
  vnxiSize size() const { return {w, h}; }
};

inline Mask rect(int w, int h, vnxiPoint a) { return {"rect", w, h, std::vector<vnx8u>(std::size_t(w) * h, 1), a}; }
inline Mask fromRows(const std::string& name, std::vector<std::string> rows, vnxiPoint a) {
  Mask m{name, int(rows[0].size()), int(rows.size()), {}, a};
  for (auto& r : rows)
    for (char ch : r) m.cells.push_back(ch == '#' ? 255 : 0);
  return m;
}
inline Mask ellipse(int n) {
  Mask m{"ellipse", n, n, {}, {n / 2, n / 2}};
  const double c = (n - 1) / 2.0, r = n / 2.0;
  for (int y = 0; y < n; ++y)
    for (int x = 0; x < n; ++x) m.cells.push_back((x - c) * (x - c) + (y - c) * (y - c) <= r * r ? 7 : 0);
  return m;
}

// The masks of every path: kinds 1 and 2 at sizes on both sides of the 8u thresholds.
inline std::vector<Mask> masks() {
  return {
      rect(1, 1, {0, 0}),
      rect(3, 3, {1, 1}),
      rect(5, 5, {2, 2}),
      rect(7, 3, {0, 2}),
      rect(11, 9, {4, 7}),
      rect(20, 1, {13, 0}),
      rect(1, 13, {0, 6}),
      fromRows("cross", {"..#..", "..#..", "#####", "..#..", "..#.."}, {2, 2}),
      fromRows("ring", {"#####", "#...#", "#...#", "#...#", "#####"}, {2, 2}),
      ellipse(7),
      ellipse(11),
      fromRows("empty", {"...", "..."}, {1, 1}),
      fromRows("rectOutside", {".......", ".......", "...###.", "...###.", "......."}, {0, 0}),
      fromRows("rectFarRight", {"##.........", "##........."}, {10, 1}),
      fromRows("runsGap", {"..#..", ".....", "#####", ".....", "..###"}, {2, 2}),
      fromRows("diamond9", {"....#....", "...###...", "..#####..", ".#######.", "#########", ".#######.",
                            "..#####..", "...###...", "....#...."},
               {4, 4}),
  };
}

// 32f extremes in the library's order: NaN absorbs, -0.0 below +0.0.
inline float refMax(float a, float b, bool isMax) {
  if (std::isnan(a) || std::isnan(b)) return vt::fromBits(0xFFC00000u);
  if (a == b) return (std::signbit(a) == isMax) ? b : a;
  return (a > b) == isMax ? a : b;
}
inline vnx8u refMax(vnx8u a, vnx8u b, bool isMax) { return isMax ? std::max(a, b) : std::min(a, b); }

// dst(x, y) = extreme over cells (i, j) selected by `on` of src(clamp(x + i - ax), clamp(y + j - ay)).
template <class T, class On>
std::vector<T> reference(const std::vector<T>& src, int w, int h, int c, int mw, int mh, vnxiPoint a, On on,
                         bool isMax) {
  std::vector<T> out(src.size());
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      for (int k = 0; k < c; ++k) {
        bool any = false;
        T v{};
        for (int j = 0; j < mh; ++j)
          for (int i = 0; i < mw; ++i) {
            if (!on(i, j)) continue;
            const long long sx = std::clamp<long long>((long long)x + i - a.x, 0, w - 1);
            const long long sy = std::clamp<long long>((long long)y + j - a.y, 0, h - 1);
            const T s = src[(sy * w + sx) * c + k];
            v = any ? refMax(v, s, isMax) : s;
            any = true;
          }
        // A fold's NaN is the library's one NaN (refMax of a value with itself).
        out[(std::size_t(y) * w + x) * c + k] = any ? refMax(v, v, isMax) : src[(std::size_t(y) * w + x) * c + k];
      }
  return out;
}
template <class T>
std::vector<T> reference(const std::vector<T>& src, int w, int h, int c, const Mask& m, bool isMax) {
  return reference(src, w, h, c, m.w, m.h, m.anchor, [&](int i, int j) { return m.cells[j * m.w + i] != 0; }, isMax);
}

template <class T>
using Apply = vnxStatus (*)(const T*, int, T*, int, vnxiSize, int, vnxiMorphState*);
template <class T>
using Composite = vnxStatus (*)(const T*, int, T*, int, vnxiSize, int, vnxiMorphAdvState*);
template <class T>
using Filter = vnxStatus (*)(const T*, int, T*, int, vnxiSize, vnxiSize, vnxiPoint, vnx8u*);

// One element type and channel count: every exported member.
template <class T>
struct Form {
  const char* name;
  int c;
  vnxStatus (*getSize)(int, const vnx8u*, vnxiSize, int*);
  vnxStatus (*initAlloc)(int, const vnx8u*, vnxiSize, vnxiPoint, vnxiMorphState**);
  Apply<T> dilate, erode;
  Filter<T> filterMax, filterMin;
  vnxStatus (*maxSize)(int, vnxiSize, int*);
  vnxStatus (*minSize)(int, vnxiSize, int*);
  vnxStatus (*advGetSize)(vnxiSize, const vnx8u*, vnxiSize, int*);
  vnxStatus (*advInit)(vnxiMorphAdvState*, vnxiSize, vnx8u*, vnxiSize, vnxiPoint);
  vnxStatus (*advInitAlloc)(vnxiMorphAdvState**, vnxiSize, vnx8u*, vnxiSize, vnxiPoint);
  Composite<T> open, close, tophat, blackhat, gradient;
};

// The members of one form, by the suffix of their names.
#define MT_FORM(sfx, c)                                                                                            \
  {#sfx, c, vnxiMorphologyGetSize_##sfx, vnxiMorphologyInitAlloc_##sfx, vnxiDilateBorderReplicate_##sfx,         \
   vnxiErodeBorderReplicate_##sfx, vnxiFilterMaxBorderReplicate_##sfx, vnxiFilterMinBorderReplicate_##sfx,       \
   vnxiFilterMaxGetBufferSize_##sfx, vnxiFilterMinGetBufferSize_##sfx, vnxiMorphAdvGetSize_##sfx,                \
   vnxiMorphAdvInit_##sfx, vnxiMorphAdvInitAlloc_##sfx, vnxiMorphOpenBorder_##sfx, vnxiMorphCloseBorder_##sfx,   \
   vnxiMorphTophatBorder_##sfx, vnxiMorphBlackhatBorder_##sfx, vnxiMorphGradientBorder_##sfx}
inline std::vector<Form<vnx8u>> forms8u() { return {MT_FORM(8u_C1R, 1), MT_FORM(8u_C3R, 3), MT_FORM(8u_C4R, 4)}; }
inline std::vector<Form<vnx32f>> forms32f() { return {MT_FORM(32f_C1R, 1), MT_FORM(32f_C3R, 3), MT_FORM(32f_C4R, 4)}; }
#undef MT_FORM

// A random image under a guard page (after or before), its dense copy, and a
// destination pre-filled with a value no reference can hide behind. Floats are
// sprinkled with +-0.0, infinities and NaN (one sample in 32), so every path meets the
// total order.
template <class T>
struct Images {
  vt::Image<T> src, dst;
  std::vector<T> pixels;
  Images(int w, int h, int c, vt::Guard g, std::mt19937& rng)
      : src(w, h, c, 3 * int(sizeof(T)), g), dst(w, h, c, 5 * int(sizeof(T)), g) {
    const float specials[] = {0.0f, -0.0f, INFINITY, -INFINITY, std::nanf("")};
    src.fill([&](int, int, int) {
      const T v = vt::randomSample<T>(rng);
      return std::is_same<T, float>::value && rng() % 32 == 0 ? T(specials[rng() % 5]) : v;
    });
    dst.fill([](int, int, int) { return T(77); });
    pixels = src.pixels();
  }
};

}  // namespace mt
