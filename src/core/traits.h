// Element traits: bytes, limits and the accumulator each type sums into.
#pragma once

#include <cfloat>
#include <cstdint>
#include <cstring>

#include "own.h"

template <class T>
struct ownTraits;

template <>
struct ownTraits<vnx8u> {
  static constexpr int code = vnx8uCode;
  static constexpr vnx8u lowest = 0, highest = 255;
  using Sum = std::uint32_t;  // 255 * 2^23 < 2^31: switch to 64 bits from 2^23 pixels
};
template <>
struct ownTraits<vnx8s> {
  static constexpr int code = vnx8sCode;
  static constexpr vnx8s lowest = -128, highest = 127;
  using Sum = std::int64_t;
};
template <>
struct ownTraits<vnx16u> {
  static constexpr int code = vnx16uCode;
  static constexpr vnx16u lowest = 0, highest = 65535;
  using Sum = std::int64_t;
};
template <>
struct ownTraits<vnx16s> {
  static constexpr vnx16s lowest = -32768, highest = 32767;
  using Sum = std::int64_t;
};
template <>
struct ownTraits<vnx32f> {
  static constexpr int code = vnx32fCode;
  static constexpr vnx32f lowest = -FLT_MAX, highest = FLT_MAX;
  using Sum = double;
};

// Saturating conversion of a wider integer to T.
template <class T, class W>
inline T ownSaturate(W v) {
  return v < static_cast<W>(ownTraits<T>::lowest)    ? ownTraits<T>::lowest
         : v > static_cast<W>(ownTraits<T>::highest) ? ownTraits<T>::highest
                                                     : static_cast<T>(v);
}

// The one NaN of the library: every float or double result that is NaN is the
// processor's default NaN, sign bit set, quiet bit set, zero payload (0xFFC00000,
// 0xFFF8000000000000). Which operand's payload SSE would keep depends on the
// order the compiler gives a commutative add, so results are made canonical.
inline float ownCanonicalNaN(float v) {
  if (v == v) return v;
  const std::uint32_t u = 0xFFC00000u;
  float f;
  std::memcpy(&f, &u, 4);
  return f;
}
inline double ownCanonicalNaN(double v) {
  if (v == v) return v;
  const std::uint64_t u = 0xFFF8000000000000ull;
  double d;
  std::memcpy(&d, &u, 8);
  return d;
}

// ---- statistics ------------------------------------------------------------------
// What a sample of T becomes in the statistics kernels: Acc holds exact integer sums
// (64 bits) or double sums of 32f samples; Extreme is the comparable value of a
// sample in extrema and infinity norms (integers as order-preserving unsigned lanes).
template <class T>
struct ownStatTraits {
  using Acc = std::uint64_t;
  using Extreme = unsigned;
};
template <>
struct ownStatTraits<vnx32f> {
  using Acc = double;
  using Extreme = float;
};
