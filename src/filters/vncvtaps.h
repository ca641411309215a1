// Compile-time tap tables of the fixed kernels (Sobel, Scharr, Laplacian, box): a 1-D
// kernel as a type, with its dot products over vectors of 16-bit integers and of
// floats, folding symmetric and antisymmetric pairs. Structuring elements, the
// 1-4-6-4-1 pyramid kernel and Canny's Sobel are the same idea.
#pragma once

#include <cstddef>
#include <utility>

#include "simd.h"

// A 1-D kernel known at compile time, taps in the order they lie over the image. The
// per-vector helpers are forced inline: a call would cost more than their arithmetic
// (and templates in a header are not inlined as readily as a unit's own functions).
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
  // sum of tap i times v[i] in 16-bit lanes, with adds and shifts for the small taps; a
  // symmetric kernel first adds the two pixels of each pair of equal taps, an
  // antisymmetric one subtracts them
  [[gnu::always_inline]] static __m128i dot(const __m128i* v) {
    if constexpr (k > 1 && (mirrored(1) || mirrored(-1)))
      return dotPairs(v, std::make_index_sequence<k / 2>());
    else
      return dotOf(v, std::make_index_sequence<k>());
  }
  template <std::size_t... I>
  [[gnu::always_inline]] static __m128i dotOf(const __m128i* v, std::index_sequence<I...>) {
    __m128i acc = _mm_setzero_si128();
    ((acc = ownMulAddTap16<K>(acc, v[I])), ...);
    return acc;
  }
  template <std::size_t... I>
  [[gnu::always_inline]] static __m128i dotPairs(const __m128i* v, std::index_sequence<I...>) {
    __m128i acc = _mm_setzero_si128();
    if constexpr (k % 2 == 1) acc = ownMulAddTap16<tap[k / 2]>(acc, v[k / 2]);
    ((acc = ownMulAddTap16<tap[I]>(acc, mirrored(1) ? _mm_add_epi16(v[I], v[k - 1 - I])
                                                     : _mm_sub_epi16(v[I], v[k - 1 - I]))),
     ...);
    return acc;
  }
  // Float sum in the order of the taps, ((t0 v0 + t1 v1) + t2 v2) ..., every product
  // formed as the reference forms it (see ownTapPs).
  [[gnu::always_inline]] static __m128 dotf(const __m128* v) { return dotfOf(v, std::make_index_sequence<k - 1>()); }
  template <std::size_t... I>
  [[gnu::always_inline]] static __m128 dotfOf(const __m128* v, std::index_sequence<I...>) {
    __m128 acc = ownTapPs<tap[0]>(v[0]);
    ((acc = ownMulAddTapPs<tap[I + 1]>(acc, v[I + 1])), ...);
    return acc;
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
