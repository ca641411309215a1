// Row kernels of the statistics: sums, sums of squares, maxima, extrema and the
// second deviation pass over one run of samples with an optional selection.
//
// Integer kernels turn their source into unsigned lanes first (8u as is, 8s
// offset by 128 or as |s|, |s1 - s2| of either) and sum, square or compare
// those; an unselected lane becomes 0 (neutral for sums, squares and maxima).
// Integer sums are exact (64 bits, squares of 8-bit lanes in 32-bit lanes for
// one run of at most 16384 samples: 16384 * 255^2 < 2^32, or, in the kernel of
// whole unmasked byte rows, widened before a lane holds 65536 squares), so
// integer results never depend on the band count. 32f sums are kept in double
// precision. Each kernel is a template (the reference and the tail, from x0)
// and an _sse2 body over whole vectors that hands the rest to the template.
#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "simd.h"
#include "traits.h"

// ---- sources as lanes ------------------------------------------------------------
// vec(x): one vector of lanes from sample x; at(x): the same value of one sample.
// Samples are read with unaligned loads: a source may start at any byte.

// Order-preserving unsigned value: 8u and 16u as they are, 8s as s + 128.
template <class T>
struct ownPlainSrc;
template <>
struct ownPlainSrc<vnx8u> {
  using Lanes = ownLanes8;
  const vnx8u* s;
  __m128i vec(int x) const { return ownLoad(s + x); }
  unsigned at(int x) const { return s[x]; }
};
template <>
struct ownPlainSrc<vnx8s> {
  using Lanes = ownLanes8;
  const vnx8s* s;
  __m128i vec(int x) const { return ownOffsetS8(ownLoad(s + x)); }
  unsigned at(int x) const { return static_cast<unsigned>(s[x] + 128); }
};
template <>
struct ownPlainSrc<vnx16u> {
  using Lanes = ownLanes16;
  const vnx16u* s;
  __m128i vec(int x) const { return ownLoad(s + x); }
  unsigned at(int x) const { return ownLoadSample(s + x); }
};

// |s|: the unsigned types as they are; 8s as min(s, -s) read unsigned (|-128| = 128).
template <class T>
struct ownAbsSrc : ownPlainSrc<T> {};
template <>
struct ownAbsSrc<vnx8s> {
  using Lanes = ownLanes8;
  const vnx8s* s;
  __m128i vec(int x) const { return ownAbsS8(ownLoad(s + x)); }
  unsigned at(int x) const { return static_cast<unsigned>(s[x] < 0 ? -s[x] : s[x]); }
};

// |s1 - s2|: 8s through the offset values, whose differences are the same.
template <class T>
struct ownAbsDiffSrc {
  using Lanes = typename ownPlainSrc<T>::Lanes;
  const T* s1;
  const T* s2;
  __m128i vec(int x) const {
    const __m128i a = ownPlainSrc<T>{s1}.vec(x), b = ownPlainSrc<T>{s2}.vec(x);
    return sizeof(T) == 1 ? ownAbsDiffU8(a, b) : ownAbsDiffU16(a, b);
  }
  unsigned at(int x) const {
    const int d = static_cast<int>(ownLoadSample(s1 + x)) - static_cast<int>(ownLoadSample(s2 + x));
    return static_cast<unsigned>(d < 0 ? -d : d);
  }
};

// 32f: the sample, |s|, and |s1 - s2| with the difference rounded to single precision first.
template <bool Aligned = false>
struct ownPlainSrc32f {
  static constexpr bool kAligned = Aligned;
  const vnx32f* s;
  __m128 vec(int x) const { return Aligned ? ownLoadAlignedPs(s + x) : ownLoadPs(s + x); }
  float at(int x) const { return ownLoadSample(s + x); }
};
struct ownAbsSrc32f {
  static constexpr bool kAligned = false;
  const vnx32f* s;
  __m128 vec(int x) const { return ownAbsPs(ownLoadPs(s + x)); }
  float at(int x) const { return std::fabs(ownLoadSample(s + x)); }
};
struct ownAbsDiffSrc32f {
  static constexpr bool kAligned = false;
  const vnx32f* s1;
  const vnx32f* s2;
  __m128 vec(int x) const { return ownAbsDiffPs(ownLoadPs(s1 + x), ownLoadPs(s2 + x)); }
  float at(int x) const { return std::fabs(ownLoadSample(s1 + x) - ownLoadSample(s2 + x)); }
};

// The sources of each element type.
template <class T>
struct ownSrcOf {
  using Plain = ownPlainSrc<T>;
  using Abs = ownAbsSrc<T>;
  using AbsDiff = ownAbsDiffSrc<T>;
};
template <>
struct ownSrcOf<vnx32f> {
  using Plain = ownPlainSrc32f<false>;
  using Abs = ownAbsSrc32f;
  using AbsDiff = ownAbsDiffSrc32f;
};

// ---- sums and sums of squares --------------------------------------------------

// Running sum and sum of squares: exact integers, or double for 32f.
template <class A>
struct ownSums {
  A sum, sq;
};
using ownIntSums = ownSums<std::uint64_t>;
using ownFltSums = ownSums<double>;

// What a sums kernel accumulates.
enum ownSumsWhat { kOwnSum = 1, kOwnSq = 2 };

// Reference and tail: samples x0 .. n - 1, one sum after the other (for 32f also
// the short-image kernel).
template <int What, class Src, class Sums>
void ownSumsRow(const Src& src, const vnx8u* sel, int x0, int n, Sums& acc) {
  for (int x = x0; x < n; ++x)
    if (!sel || sel[x]) {
      const decltype(acc.sum) v = src.at(x);
      if (What & kOwnSum) acc.sum += v;
      if (What & kOwnSq) acc.sq += v * v;
    }
}
// One block of 16 samples from x: f(v, k) for each vector of lanes with its
// selector k (unset without a selection).
template <class Src, class F>
inline void ownLaneBlock(const Src& src, const vnx8u* sel, int x, F&& f) {
  using L = typename Src::Lanes;
  constexpr int kVecs = 16 / L::kPerVec;
  __m128i k[kVecs] = {};
  if (sel) L::keep(sel + x, k);
  for (int i = 0; i < kVecs; ++i) f(src.vec(x + i * L::kPerVec), k[i]);
}
// Integer kernels walk a run 16 samples at a time, block by block; returns the
// first sample left to the scalar tail.
template <class Src, class F>
inline int ownEachLaneVector(const Src& src, const vnx8u* sel, int n, F&& f) {
  int x = 0;
  for (; x + 16 <= n; x += 16) ownLaneBlock(src, sel, x, f);
  return x;
}
// The same two blocks an iteration, f(slot, v, k) with slot the block's parity as a
// constant, so a kernel can keep two independent accumulators. The masked sums and
// maxima use it: with one block an iteration their loop body is about one cache line,
// and its speed came to depend on where the loop landed in the library (up to 1.4x
// between builds with the same instructions); two blocks an iteration do not.
template <class Src, class F>
inline int ownEachLaneVectorPair(const Src& src, const vnx8u* sel, int n, F&& f) {
  using Slot0 = std::integral_constant<int, 0>;
  using Slot1 = std::integral_constant<int, 1>;
  int x = 0;
  for (; x + 32 <= n; x += 32) {
    ownLaneBlock(src, sel, x, [&](__m128i v, __m128i k) { f(Slot0(), v, k); });
    ownLaneBlock(src, sel, x + 16, [&](__m128i v, __m128i k) { f(Slot1(), v, k); });
  }
  if (x + 16 <= n) {
    ownLaneBlock(src, sel, x, [&](__m128i v, __m128i k) { f(Slot0(), v, k); });
    x += 16;
  }
  return x;
}

// 16 samples an iteration, unselected lanes zeroed; n <= kOwnRunSamples.
template <int What, class Src>
void ownSumsRow_sse2(const Src& src, const vnx8u* sel, int n, ownIntSums& acc) {
  using L = typename Src::Lanes;
  __m128i s[2] = {ownZeroLanes(), ownZeroLanes()}, q[2] = {ownZeroLanes(), ownZeroLanes()};
  const int x = ownEachLaneVectorPair(src, sel, n, [&](auto slot, __m128i v, __m128i k) {
    if (sel) v = ownKeepLanes(k, v);
    if (What & kOwnSum) s[slot] = L::addSum(s[slot], v);
    if (What & kOwnSq) q[slot] = L::addSq(q[slot], v);
  });
  if (What & kOwnSum) acc.sum += L::flushSum(s[0]) + L::flushSum(s[1]);
  if (What & kOwnSq) acc.sq += L::flushSq(q[0]) + L::flushSq(q[1]);
  ownSumsRow<What>(src, sel, x, n, acc);
}

// 32f kernels walk a run 16 samples at a time: f(v, k) for each vector of four
// samples with its selector k (unset without a selection); returns the first
// sample left to the scalar tail.
template <class Src, class F>
inline int ownEachVector32f(const Src& src, const vnx8u* sel, int x, int n, F&& f) {
  for (; x + 16 <= n; x += 16) {
    __m128 k[4] = {};
    if (sel) ownMaskTo32(ownLoad(sel + x), k);
    for (int i = 0; i < 4; ++i) f(src.vec(x + 4 * i), k[i]);
  }
  return x;
}

// 32f: four double lanes (samples x, x + 1, x + 2, x + 3 modulo 4), added as
// (lane 0 + lane 1) + (lane 2 + lane 3) at the end of the run, then the tail.
// An aligned source first takes single samples up to a 16-byte boundary.
template <int What, class Src>
void ownSumsRow_sse2(const Src& src, const vnx8u* sel, int n, ownFltSums& acc) {
  int x = 0;
  if constexpr (Src::kAligned) {
    x = static_cast<int>(((16 - (reinterpret_cast<std::uintptr_t>(src.s) & 15)) & 15) / 4);
    x = std::min(x, n);
    ownSumsRow<What>(src, sel, 0, x, acc);
  }
  __m128d s0 = ownZeroPd(), s1 = s0, q0 = s0, q1 = s0;
  x = ownEachVector32f(src, sel, x, n, [&](__m128 v, __m128 k) {
    if (sel) v = ownKeepPs(k, v);  // +0.0 for an unselected sample, whatever it held
    __m128d a, b;
    ownWidenPs(v, a, b);
    if (What & kOwnSum) ownAddPs(s0, s1, a, b);
    if (What & kOwnSq) ownAddSquaresPd(q0, q1, a, b);
  });
  if (What & kOwnSum) acc.sum += ownHorizontalSum(s0, s1);
  if (What & kOwnSq) acc.sq += ownHorizontalSum(q0, q1);
  ownSumsRow<What>(src, sel, x, n, acc);
}

// Sum and sum of squares of every sample of many one-channel 8-bit rows. The
// running sums stay in registers from row to row, so a row costs no reduction:
// sums of eight bytes in 64-bit lanes (a sum of absolute differences against
// zero), squares in two sets of 32-bit lanes (bytes widened to words and squared
// in pairs), each lane gaining two squares per 16 bytes. Before a lane can hold
// more than kSquaresPerLane squares (65536 * 255^2 < 2^32) the square lanes are
// widened into 64-bit totals. 64 bytes a step with independent running sums hide
// the latency; the last whole vectors one at a time, then single samples.
template <class Src>
class ownByteSums {
  static_assert(Src::Lanes::kPerVec == 16, "one byte a sample");

 public:
  static constexpr int kSquaresPerLane = 65536;

  void row(const Src& src, int n) {
    int x = 0;
    while (n - x >= 16) {
      if (pending_ >= kSquaresPerLane) flush();
      const int vecs = std::min((n - x) / 16, (kSquaresPerLane - pending_) / 2);
      const int end = x + 16 * vecs;
      pending_ += 2 * vecs;
      for (; x + 64 <= end; x += 64) {
        const __m128i v0 = src.vec(x), v1 = src.vec(x + 16), v2 = src.vec(x + 32), v3 = src.vec(x + 48);
        s_ = ownAddU64(s_, ownAddU64(ownAddU64(ownSumBytes(v0), ownSumBytes(v1)),
                                     ownAddU64(ownSumBytes(v2), ownSumBytes(v3))));
        __m128i h0, h1, h2, h3;
        const __m128i l0 = ownSquarePairsU8(v0, h0), l1 = ownSquarePairsU8(v1, h1);
        const __m128i l2 = ownSquarePairsU8(v2, h2), l3 = ownSquarePairsU8(v3, h3);
        q0_ = ownAddU32(q0_, ownAddU32(ownAddU32(l0, l1), ownAddU32(l2, l3)));
        q1_ = ownAddU32(q1_, ownAddU32(ownAddU32(h0, h1), ownAddU32(h2, h3)));
      }
      for (; x < end; x += 16) {
        const __m128i v = src.vec(x);
        __m128i h;
        s_ = ownAddU64(s_, ownSumBytes(v));
        q0_ = ownAddU32(q0_, ownSquarePairsU8(v, h));
        q1_ = ownAddU32(q1_, h);
      }
    }
    ownSumsRow<kOwnSum | kOwnSq>(src, nullptr, x, n, tail_);
  }

  ownIntSums total() {
    flush();
    return {tail_.sum + ownSumLanesU64(s_), tail_.sq + ownSumLanesU64(qt_)};
  }

 private:
  void flush() {
    qt_ = ownAddWidenedU32(ownAddWidenedU32(qt_, q0_), q1_);
    q0_ = q1_ = ownZeroLanes();
    pending_ = 0;
  }

  __m128i s_ = ownZeroLanes(), q0_ = ownZeroLanes(), q1_ = ownZeroLanes(), qt_ = ownZeroLanes();
  int pending_ = 0;  // squares in each 32-bit lane of q0_ and q1_, at most
  ownIntSums tail_{0, 0};
};

// Second pass of the 32f deviation: sum of (x - m)^2 in double precision.
template <class Src>
void ownDevRow(const Src& src, const vnx8u* sel, int x0, int n, double m, double& acc) {
  for (int x = x0; x < n; ++x)
    if (!sel || sel[x]) {
      const double d = static_cast<double>(src.at(x)) - m;
      acc += d * d;
    }
}
template <class Src>
void ownDevRow_sse2(const Src& src, const vnx8u* sel, int n, double m, double& acc) {
  const __m128d mm = ownSplatPd(m);
  __m128d q0 = ownZeroPd(), q1 = q0;
  const int x = ownEachVector32f(src, sel, 0, n, [&](__m128 v, __m128 k) {
    __m128d a, b;
    ownWidenPs(v, a, b);
    a = ownSubPd(a, mm);
    b = ownSubPd(b, mm);
    if (sel) {  // the difference of an unselected sample becomes +0.0
      __m128d ka, kb;
      ownWidenSelector(k, ka, kb);
      a = ownKeepPd(ka, a);
      b = ownKeepPd(kb, b);
    }
    ownAddSquaresPd(q0, q1, a, b);
  });
  acc += ownHorizontalSum(q0, q1);
  ownDevRow(src, sel, x, n, m, acc);
}

// ---- maxima and extrema ------------------------------------------------------------

// Largest selected value, at least m (32f: NaN samples are skipped).
template <class Src, class V>
V ownMaxRow(const Src& src, const vnx8u* sel, int x0, int n, V m) {
  for (int x = x0; x < n; ++x)
    if ((!sel || sel[x]) && src.at(x) > m) m = src.at(x);
  return m;
}
template <class Src>
unsigned ownMaxRow_sse2(const Src& src, const vnx8u* sel, int n, unsigned m) {
  using L = typename Src::Lanes;
  __m128i a[2] = {ownZeroLanes(), ownZeroLanes()};
  const int x = ownEachLaneVectorPair(
      src, sel, n, [&](auto slot, __m128i v, __m128i k) { a[slot] = L::max(a[slot], sel ? ownKeepLanes(k, v) : v); });
  return ownMaxRow(src, sel, x, n, std::max(m, L::hmax(L::max(a[0], a[1]))));
}
template <class Src>
float ownMaxRow_sse2(const Src& src, const vnx8u* sel, int n, float m) {
  __m128 a = ownZeroPs();
  const int x =
      ownEachVector32f(src, sel, 0, n, [&](__m128 v, __m128 k) { a = ownMaxSkipNaN(sel ? ownKeepPs(k, v) : v, a); });
  return ownMaxRow(src, sel, x, n, std::max(m, ownHorizontalMax(a)));
}

// Smallest and largest selected values; mn, mx are updated (32f: NaN samples are skipped).
template <class Src, class V>
void ownMinMaxRow(const Src& src, const vnx8u* sel, int x0, int n, V& mn, V& mx) {
  for (int x = x0; x < n; ++x)
    if (!sel || sel[x]) {
      const V v = src.at(x);
      if (v < mn) mn = v;
      if (v > mx) mx = v;
    }
}
template <class Src>
void ownMinMaxRow_sse2(const Src& src, const vnx8u* sel, int n, unsigned& mn, unsigned& mx) {
  using L = typename Src::Lanes;
  __m128i lo = ownOnesLanes(), hi = ownZeroLanes();
  const int x = ownEachLaneVector(src, sel, n, [&](__m128i v, __m128i k) {
    if (sel) {  // an unselected lane is the top value for the minimum and 0 for the maximum
      lo = L::min(lo, ownKeepOrTop(k, v));
      hi = L::max(hi, ownKeepLanes(k, v));
    } else {
      lo = L::min(lo, v);
      hi = L::max(hi, v);
    }
  });
  mn = std::min(mn, L::hmin(lo));
  mx = std::max(mx, L::hmax(hi));
  ownMinMaxRow(src, sel, x, n, mn, mx);
}
template <class Src>
void ownMinMaxRow_sse2(const Src& src, const vnx8u* sel, int n, float& mn, float& mx) {
  const __m128 top = ownSplatPs(FLT_MAX), bottom = ownSplatPs(-FLT_MAX);
  __m128 lo = top, hi = bottom;
  const int x = ownEachVector32f(src, sel, 0, n, [&](__m128 v, __m128 k) {
    if (sel) {  // an unselected sample is the start value of each: never strictly better
      lo = ownMinSkipNaN(ownSelect(k, v, top), lo);
      hi = ownMaxSkipNaN(ownSelect(k, v, bottom), hi);
    } else {
      lo = ownMinSkipNaN(v, lo);
      hi = ownMaxSkipNaN(v, hi);
    }
  });
  mn = std::min(mn, ownHorizontalMin(lo));
  mx = std::max(mx, ownHorizontalMax(hi));
  ownMinMaxRow(src, sel, x, n, mn, mx);
}
