// Level sizes of pyramids of any rate 1 < r <= 10, shared by the pyramid record and
// the layer states.
#pragma once

#include <cstdint>

#include "own.h"

// Up range of one dimension n: minimum 1 if n = 1, else max(trunc((n - 1) r) + 1, n + 1);
// maximum max(n + 1, trunc(n r)); products in single precision as the rate is given.
struct ownUpRange {
  std::int64_t lo, hi;
};
inline ownUpRange ownPyramidUpRange(std::int64_t n, float r) {
  const std::int64_t a = static_cast<std::int64_t>(static_cast<float>(n - 1) * r) + 1;
  const std::int64_t b = static_cast<std::int64_t>(static_cast<float>(n) * r);
  return {n == 1 ? 1 : (a > n + 1 ? a : n + 1), b > n + 1 ? b : n + 1};
}

// Down size of one dimension: m = trunc(n / r + 0.5), at least 1, then moved by one
// until n lies in the up range of m. The up ranges of successive m tile the integers
// (the maximum of m and the minimum of m + 1 come from the same product), so the walk
// ends, next to where it started.
inline int ownPyramidDownDim(int n, float r) {
  std::int64_t m = static_cast<std::int64_t>(static_cast<float>(n) / r + 0.5f);
  if (m < 1) m = 1;
  for (;;) {
    const ownUpRange u = ownPyramidUpRange(m, r);
    if (n < u.lo && m > 1)
      --m;
    else if (n > u.hi)
      ++m;
    else
      return static_cast<int>(m);
  }
}
inline vnxiSize ownPyramidDownSize(vnxiSize s, float r) {
  return {ownPyramidDownDim(s.width, r), ownPyramidDownDim(s.height, r)};
}

// Rates a pyramid accepts: 1 < r <= 10.
inline bool ownPyramidRateOk(float r) { return r > 1.0f && r <= 10.0f; }

// Down steps from a size until both dimensions are 1.
inline int ownPyramidLevels(vnxiSize s, float r) {
  int n = 0;
  while (s.width > 1 || s.height > 1) {
    s = ownPyramidDownSize(s, r);
    ++n;
  }
  return n;
}
