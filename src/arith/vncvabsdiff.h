// Absolute differences: the per-sample rule and the row kernels, shared by the
// exports of vncvabsdiff.cpp and the kernel tests.
#pragma once

#include <algorithm>
#include <cstring>

#include "own.h"
#include "simd.h"

// The second operand of a difference: a second image, or one constant for every pixel.
enum class ownAbsDiffOperand { Image, Constant };

// |a - b| for one sample: exact for the integer types; for float the difference
// is rounded first and then its sign bit cleared (-0 becomes +0, NaN stays NaN).
template <class T>
inline T ownAbsDiffSample(T a, T b) {
  return a > b ? static_cast<T>(a - b) : static_cast<T>(b - a);
}
template <>
inline vnx32f ownAbsDiffSample(vnx32f a, vnx32f b) {
  const vnx32f d = a - b;
  std::uint32_t u;
  std::memcpy(&u, &d, 4);
  u &= 0x7fffffffu;
  vnx32f r;
  std::memcpy(&r, &u, 4);
  return r;
}

// Pixels x0 .. n - 1 of one row: d = |s1 - s2|, or |s1 - c| for a Constant operand
// (s2 unused). The reference for the vector body and its tail.
template <ownAbsDiffOperand B, class T>
void ownAbsDiffRow(const T* s1, const T* s2, T c, T* d, int x0, int n) {
  for (int x = x0; x < n; ++x) d[x] = ownAbsDiffSample(s1[x], B == ownAbsDiffOperand::Constant ? c : s2[x]);
}

// Whole vectors from x on (two a step, then one), then the template for the rest.
// Each output is written once from inputs already read, so d may equal a source.
template <ownAbsDiffOperand B, ownStoreKind K, class T>
void ownAbsDiffVectors(const T* s1, const T* s2, T c, T* d, int x, int n) {
  constexpr int kLanes = 16 / sizeof(T);
  constexpr bool kConst = B == ownAbsDiffOperand::Constant;
  const __m128i vc = ownSplatLanes(c);
  for (; x + 2 * kLanes <= n; x += 2 * kLanes) {
    const __m128i r0 = ownAbsDiffLanes(ownLoad(s1 + x), kConst ? vc : ownLoad(s2 + x), T());
    const __m128i r1 = ownAbsDiffLanes(ownLoad(s1 + x + kLanes), kConst ? vc : ownLoad(s2 + x + kLanes), T());
    ownStoreLanes(d + x, r0, K);
    ownStoreLanes(d + x + kLanes, r1, K);
  }
  for (; x + kLanes <= n; x += kLanes)
    ownStoreLanes(d + x, ownAbsDiffLanes(ownLoad(s1 + x), kConst ? vc : ownLoad(s2 + x), T()), K);
  ownAbsDiffRow<B>(s1, s2, c, d, x, n);
}

// One row of n pixels. Streaming rows first peel scalar pixels up to the first
// 16-byte aligned destination pixel; a destination not even aligned to its
// element size keeps cached stores.
template <ownAbsDiffOperand B, class T>
void ownAbsDiffRow_sse2(const T* s1, const T* s2, T c, T* d, int n, ownStoreKind store) {
  const std::uintptr_t mis = reinterpret_cast<std::uintptr_t>(d) & 15;
  if (store == ownStoreKind::Cached || mis % sizeof(T) != 0)
    return ownAbsDiffVectors<B, ownStoreKind::Cached>(s1, s2, c, d, 0, n);
  const int peel = std::min<int>(n, static_cast<int>(((16 - mis) & 15) / sizeof(T)));
  ownAbsDiffRow<B>(s1, s2, c, d, 0, peel);
  ownAbsDiffVectors<B, ownStoreKind::Streaming>(s1, s2, c, d, peel, n);
}
