// Reference pieces of the linear-filter tests, written from the contract: the pixel
// that stands for a position beyond a line, the rounded division and saturation, and
// sample values with the float specials.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>

#include "support.h"

namespace vt {

// Position of the pixel that stands for i on a line of n, by repeated reflection.
inline int refIndex(int i, int n, int border) {
  switch (border) {
    case vnxBorderReplicate: return std::min(std::max(i, 0), n - 1);
    case vnxBorderWrap: return ((i % n) + n) % n;
    case vnxBorderMirror:
      if (n == 1) return 0;
      while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
      return i;
    default:
      while (i < 0 || i >= n) i = i < 0 ? -i - 1 : 2 * n - 1 - i;
      return i;
  }
}

// s / d to nearest, halves away from zero.
inline long long roundDiv(long long s, long long d) {
  const long long a = std::llabs(s), b = std::llabs(d), q = (2 * a + b) / (2 * b);
  return (s < 0) != (d < 0) ? -q : q;
}
inline long long clampTo(long long v, long long lo, long long hi) { return std::min(std::max(v, lo), hi); }

// An exact integer sum as an integer result of type D: divided to nearest, saturated.
template <class D>
D saturatedQuotient(long long s, long long divisor) {
  return D(clampTo(roundDiv(s, divisor), std::numeric_limits<D>::min(), std::numeric_limits<D>::max()));
}

// The one NaN of the library for a NaN result, other values as they are.
inline float canonical(float v) { return v == v ? v : fromBits(0xFFC00000u); }

// Float sample kinds: integers now and then replaced by a NaN of some payload and sign
// or an infinity; multiples of the smallest denormal; negative zeros. Other types take v.
enum class Values { Specials, Denormals, NegativeZeros };
template <class T>
inline T withSpecials(std::mt19937& rng, int v, Values kind = Values::Specials) {
  if (!std::is_same<T, float>::value) return T(v);
  if (kind != Values::Specials) return T(kind == Values::Denormals ? std::ldexp(float(v), -149) : -0.0f);
  if (rng() % 24 != 0) return T(v);
  const unsigned bits[] = {0x7FC00000u, 0xFFC00000u, 0x7F800001u, 0xFFA5A5A5u, 0x7F800000u, 0xFF800000u};
  float f;
  std::memcpy(&f, &bits[rng() % 6], 4);
  return T(f);
}

}  // namespace vt
