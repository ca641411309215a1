// Image statistics shared by the mean, extrema and norm units.
//
// Every layout (one channel, channel of interest, with or without a mask) is
// walked as runs of contiguous samples with an optional selection: one byte a
// sample, nonzero where the sample counts. One channel unmasked has no
// selection; one channel masked uses the mask row itself; C3C forms use a
// selection of three bytes a pixel with only the channel of interest set (from
// a fixed pattern, or from the mask). The row kernels below therefore see one
// shape only: n samples and a selection that may be null.
//
// Integer kernels turn their source into unsigned lanes first (8u as is, 8s
// offset by 128 or as |s|, |s1 - s2| of either) and sum, square or compare
// those; an unselected lane becomes 0 (neutral for sums, squares and maxima).
// Integer sums are exact (64 bits, squares of 8-bit lanes in 32-bit lanes for
// one run of at most 16384 samples: 16384 * 255^2 < 2^32, or, in the kernel of
// whole unmasked byte rows, widened before a lane holds 65536 squares), so
// integer results never depend on the band count. 32f sums are kept in double
// precision. Whole unmasked one-channel rows of the integer types also have
// their own extrema kernel, which reduces a row to scalars only when it beats
// the band's extreme so far.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "check.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"

// ---- layout: runs of samples with a selection ---------------------------------

constexpr int kOwnRunSamples = 16384;  // one-channel run: bounds the 32-bit lane sums
constexpr int kOwnRunPixels = 1024;    // three-channel run: 3072 samples of selection scratch

// Where the samples of one call lie and which of them count.
struct ownStatLayout {
  int width;          // pixels a row
  int channels;       // 1 or 3
  int coi;            // sample of interest within a three-sample pixel, 0-based
  const vnx8u* mask;  // null: every pixel counts
  int maskStep;
};

// Row walker of one band: row(y, run) calls run(offset, sel, n) for consecutive
// runs of n samples starting at sample `offset` of row y, with their selection.
class ownSampleRuns {
 public:
  explicit ownSampleRuns(const ownStatLayout& L) : L_(L) {
    if (L_.channels == 3 && !L_.mask) {
      std::memset(pattern_, 0, sizeof pattern_);
      for (int i = 0; i < kOwnRunPixels; ++i) pattern_[3 * i + L_.coi] = 1;
    }
  }
  const vnx8u* maskRow(int y) const { return L_.mask ? ownRow(L_.mask, L_.maskStep, y) : nullptr; }
  template <class Run>
  void row(int y, Run&& run) {
    const vnx8u* m = maskRow(y);
    if (L_.channels == 1) {
      for (int x = 0; x < L_.width; x += kOwnRunSamples)
        run(x, m ? m + x : nullptr, std::min(kOwnRunSamples, L_.width - x));
      return;
    }
    for (int x = 0; x < L_.width; x += kOwnRunPixels) {
      const int n = std::min(kOwnRunPixels, L_.width - x);
      const vnx8u* sel = pattern_;
      if (m) {
        std::memset(scratch_, 0, 3 * static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) scratch_[3 * i + L_.coi] = m[x + i];
        sel = scratch_;
      }
      run(3 * x, sel, 3 * n);
    }
  }

 private:
  ownStatLayout L_;
  alignas(16) vnx8u pattern_[3 * kOwnRunPixels];
  alignas(16) vnx8u scratch_[3 * kOwnRunPixels];
};

// Number of nonzero mask bytes in one row.
inline int ownCountRow(const vnx8u* m, int n) {
  const __m128i z = _mm_setzero_si128(), one = _mm_set1_epi8(1);
  __m128i acc = z;
  int x = 0;
  for (; x + 16 <= n; x += 16)
    acc = _mm_add_epi64(acc, _mm_sad_epu8(_mm_andnot_si128(_mm_cmpeq_epi8(ownLoad(m + x), z), one), z));
  int c = _mm_cvtsi128_si32(acc) + _mm_cvtsi128_si32(_mm_srli_si128(acc, 8));
  for (; x < n; ++x) c += m[x] != 0;
  return c;
}

// ---- integer lanes -------------------------------------------------------------

// Folds the lanes of a vector onto its first lane of LaneBytes bytes with op:
// the upper half onto the lower, then the upper quarter, down to one lane.
template <int LaneBytes, class Op>
inline unsigned ownFoldLanes(__m128i m, Op op) {
  m = op(m, _mm_srli_si128(m, 8));
  m = op(m, _mm_srli_si128(m, 4));
  if constexpr (LaneBytes < 4) m = op(m, _mm_srli_si128(m, 2));
  if constexpr (LaneBytes < 2) m = op(m, _mm_srli_si128(m, 1));
  return static_cast<unsigned>(_mm_cvtsi128_si32(m)) & ((1u << (8 * LaneBytes)) - 1);
}

// 16 unsigned 8-bit lanes a vector.
struct ownLanes8 {
  static constexpr int kPerVec = 16;
  static constexpr unsigned kTop = 255;
  static void keep(const vnx8u* sel, __m128i k[1]) { k[0] = ownMaskTo8(ownLoad(sel)); }
  // sum: 64-bit lanes (a sum of absolute differences against zero)
  static __m128i addSum(__m128i acc, __m128i v) { return _mm_add_epi64(acc, _mm_sad_epu8(v, _mm_setzero_si128())); }
  static std::uint64_t flushSum(__m128i a) { return ownSumU64(a); }
  // squares: 32-bit lanes, each gains at most 2 * 2 * 255^2 a vector
  static __m128i addSq(__m128i acc, __m128i v) {
    const __m128i z = _mm_setzero_si128();
    const __m128i lo = _mm_unpacklo_epi8(v, z), hi = _mm_unpackhi_epi8(v, z);
    return _mm_add_epi32(acc, _mm_add_epi32(_mm_madd_epi16(lo, lo), _mm_madd_epi16(hi, hi)));
  }
  static std::uint64_t flushSq(__m128i a) { return ownSumU32(a); }
  static __m128i max(__m128i a, __m128i b) { return _mm_max_epu8(a, b); }
  static __m128i min(__m128i a, __m128i b) { return _mm_min_epu8(a, b); }
  static __m128i splat(unsigned v) { return _mm_set1_epi8(static_cast<char>(v)); }
  static unsigned hmax(__m128i m) { return ownFoldLanes<1>(m, [](__m128i a, __m128i b) { return max(a, b); }); }
  static unsigned hmin(__m128i m) { return ownFoldLanes<1>(m, [](__m128i a, __m128i b) { return min(a, b); }); }
  static std::uint64_t ownSumU64(__m128i a) {
    alignas(16) std::uint64_t l[2];
    _mm_store_si128(reinterpret_cast<__m128i*>(l), a);
    return l[0] + l[1];
  }
  static std::uint64_t ownSumU32(__m128i a) {
    alignas(16) std::uint32_t l[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(l), a);
    return std::uint64_t(l[0]) + l[1] + l[2] + l[3];
  }
};

// 8 unsigned 16-bit lanes a vector.
struct ownLanes16 {
  static constexpr int kPerVec = 8;
  static constexpr unsigned kTop = 65535;
  static void keep(const vnx8u* sel, __m128i k[2]) { ownMaskTo16(ownLoad(sel), k); }
  // sum: 32-bit lanes, each gains at most 2 * 65535 a vector
  static __m128i addSum(__m128i acc, __m128i v) {
    const __m128i z = _mm_setzero_si128();
    return _mm_add_epi32(acc, _mm_add_epi32(_mm_unpacklo_epi16(v, z), _mm_unpackhi_epi16(v, z)));
  }
  static std::uint64_t flushSum(__m128i a) { return ownLanes8::ownSumU32(a); }
  // squares: 32-bit products (65535^2 < 2^32) widened into 64-bit lanes
  static __m128i addSq(__m128i acc, __m128i v) {
    const __m128i z = _mm_setzero_si128();
    const __m128i lo = _mm_mullo_epi16(v, v), hi = _mm_mulhi_epu16(v, v);
    const __m128i p0 = _mm_unpacklo_epi16(lo, hi), p1 = _mm_unpackhi_epi16(lo, hi);
    acc = _mm_add_epi64(acc, _mm_add_epi64(_mm_unpacklo_epi32(p0, z), _mm_unpackhi_epi32(p0, z)));
    return _mm_add_epi64(acc, _mm_add_epi64(_mm_unpacklo_epi32(p1, z), _mm_unpackhi_epi32(p1, z)));
  }
  static std::uint64_t flushSq(__m128i a) { return ownLanes8::ownSumU64(a); }
  // unsigned 16-bit max and min from saturating differences (SSE2 has only signed ones)
  static __m128i max(__m128i a, __m128i b) { return _mm_add_epi16(_mm_subs_epu16(a, b), b); }
  static __m128i min(__m128i a, __m128i b) { return _mm_sub_epi16(a, _mm_subs_epu16(a, b)); }
  static __m128i splat(unsigned v) { return _mm_set1_epi16(static_cast<short>(v)); }
  static unsigned hmax(__m128i m) { return ownFoldLanes<2>(m, [](__m128i a, __m128i b) { return max(a, b); }); }
  static unsigned hmin(__m128i m) { return ownFoldLanes<2>(m, [](__m128i a, __m128i b) { return min(a, b); }); }
};

// ---- sources as lanes ------------------------------------------------------------
// vec(x): one vector of lanes from sample x; at(x): the same value of one sample.

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
  __m128i vec(int x) const { return _mm_xor_si128(ownLoad(s + x), _mm_set1_epi8(-128)); }
  unsigned at(int x) const { return static_cast<unsigned>(s[x] + 128); }
};
template <>
struct ownPlainSrc<vnx16u> {
  using Lanes = ownLanes16;
  const vnx16u* s;
  __m128i vec(int x) const { return ownLoad(s + x); }
  unsigned at(int x) const { return s[x]; }
};

// |s|: the unsigned types as they are; 8s as min(s, -s) read unsigned (|-128| = 128).
template <class T>
struct ownAbsSrc : ownPlainSrc<T> {};
template <>
struct ownAbsSrc<vnx8s> {
  using Lanes = ownLanes8;
  const vnx8s* s;
  __m128i vec(int x) const {
    const __m128i v = ownLoad(s + x);
    return _mm_min_epu8(v, _mm_sub_epi8(_mm_setzero_si128(), v));
  }
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
    const int d = static_cast<int>(s1[x]) - static_cast<int>(s2[x]);
    return static_cast<unsigned>(d < 0 ? -d : d);
  }
};

// ---- integer row kernels ----------------------------------------------------------

struct ownIntSums {
  std::uint64_t sum, sq;
};
enum { kOwnSum = 1, kOwnSq = 2 };

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
// 16 samples an iteration, unselected lanes zeroed; n <= kOwnRunSamples.
template <int What, class Src>
void ownSumsRow_sse2(const Src& src, const vnx8u* sel, int n, ownIntSums& acc) {
  using L = typename Src::Lanes;
  constexpr int kVecs = 16 / L::kPerVec;
  __m128i s = _mm_setzero_si128(), q = _mm_setzero_si128();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128i v[kVecs];
    for (int i = 0; i < kVecs; ++i) v[i] = src.vec(x + i * L::kPerVec);
    if (sel) {
      __m128i k[kVecs];
      L::keep(sel + x, k);
      for (int i = 0; i < kVecs; ++i) v[i] = _mm_and_si128(v[i], k[i]);
    }
    for (int i = 0; i < kVecs; ++i) {
      if (What & kOwnSum) s = L::addSum(s, v[i]);
      if (What & kOwnSq) q = L::addSq(q, v[i]);
    }
  }
  if (What & kOwnSum) acc.sum += L::flushSum(s);
  if (What & kOwnSq) acc.sq += L::flushSq(q);
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
        s_ = _mm_add_epi64(s_, _mm_add_epi64(_mm_add_epi64(sum8(v0), sum8(v1)), _mm_add_epi64(sum8(v2), sum8(v3))));
        __m128i h0, h1, h2, h3;
        const __m128i l0 = squares(v0, h0), l1 = squares(v1, h1), l2 = squares(v2, h2), l3 = squares(v3, h3);
        q0_ = _mm_add_epi32(q0_, _mm_add_epi32(_mm_add_epi32(l0, l1), _mm_add_epi32(l2, l3)));
        q1_ = _mm_add_epi32(q1_, _mm_add_epi32(_mm_add_epi32(h0, h1), _mm_add_epi32(h2, h3)));
      }
      for (; x < end; x += 16) {
        const __m128i v = src.vec(x);
        __m128i h;
        s_ = _mm_add_epi64(s_, sum8(v));
        q0_ = _mm_add_epi32(q0_, squares(v, h));
        q1_ = _mm_add_epi32(q1_, h);
      }
    }
    ownSumsRow<kOwnSum | kOwnSq>(src, nullptr, x, n, tail_);
  }

  ownIntSums total() {
    flush();
    return {tail_.sum + ownLanes8::ownSumU64(s_), tail_.sq + ownLanes8::ownSumU64(qt_)};
  }

 private:
  static __m128i sum8(__m128i v) { return _mm_sad_epu8(v, _mm_setzero_si128()); }
  // Squares of the low eight bytes, added in pairs; hi gets those of the high eight.
  static __m128i squares(__m128i v, __m128i& hi) {
    const __m128i z = _mm_setzero_si128();
    const __m128i lo = _mm_unpacklo_epi8(v, z);
    hi = _mm_unpackhi_epi8(v, z);
    hi = _mm_madd_epi16(hi, hi);
    return _mm_madd_epi16(lo, lo);
  }
  void flush() {
    const __m128i z = _mm_setzero_si128();
    qt_ = _mm_add_epi64(qt_, _mm_add_epi64(_mm_unpacklo_epi32(q0_, z), _mm_unpackhi_epi32(q0_, z)));
    qt_ = _mm_add_epi64(qt_, _mm_add_epi64(_mm_unpacklo_epi32(q1_, z), _mm_unpackhi_epi32(q1_, z)));
    q0_ = q1_ = z;
    pending_ = 0;
  }

  __m128i s_ = _mm_setzero_si128(), q0_ = _mm_setzero_si128(), q1_ = _mm_setzero_si128(), qt_ = _mm_setzero_si128();
  int pending_ = 0;  // squares in each 32-bit lane of q0_ and q1_, at most
  ownIntSums tail_{0, 0};
};

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
  constexpr int kVecs = 16 / L::kPerVec;
  __m128i a = _mm_setzero_si128();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128i k[kVecs] = {};
    if (sel) L::keep(sel + x, k);
    for (int i = 0; i < kVecs; ++i) {
      const __m128i v = src.vec(x + i * L::kPerVec);
      a = L::max(a, sel ? _mm_and_si128(v, k[i]) : v);
    }
  }
  return ownMaxRow(src, sel, x, n, std::max(m, L::hmax(a)));
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
  constexpr int kVecs = 16 / L::kPerVec;
  const __m128i ones = _mm_set1_epi32(-1);
  __m128i lo = ones, hi = _mm_setzero_si128();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128i k[kVecs] = {};
    if (sel) L::keep(sel + x, k);
    for (int i = 0; i < kVecs; ++i) {
      const __m128i v = src.vec(x + i * L::kPerVec);
      if (sel) {  // an unselected lane is the top value for the minimum and 0 for the maximum
        lo = L::min(lo, _mm_or_si128(v, _mm_xor_si128(k[i], ones)));
        hi = L::max(hi, _mm_and_si128(v, k[i]));
      } else {
        lo = L::min(lo, v);
        hi = L::max(hi, v);
      }
    }
  }
  mn = std::min(mn, L::hmin(lo));
  mx = std::max(mx, L::hmax(hi));
  ownMinMaxRow(src, sel, x, n, mn, mx);
}

// ---- 32f sources and kernels ------------------------------------------------------

template <bool Aligned = false>
struct ownPlainSrc32f {
  static constexpr bool kAligned = Aligned;
  const vnx32f* s;
  __m128 vec(int x) const { return Aligned ? _mm_load_ps(s + x) : _mm_loadu_ps(s + x); }
  float at(int x) const { return s[x]; }
};
struct ownAbsSrc32f {
  static constexpr bool kAligned = false;
  const vnx32f* s;
  __m128 vec(int x) const { return ownAbsPs(_mm_loadu_ps(s + x)); }
  float at(int x) const { return std::fabs(s[x]); }
};
// |s1 - s2| with the difference rounded to single precision first.
struct ownAbsDiffSrc32f {
  static constexpr bool kAligned = false;
  const vnx32f* s1;
  const vnx32f* s2;
  __m128 vec(int x) const { return ownAbsPs(_mm_sub_ps(_mm_loadu_ps(s1 + x), _mm_loadu_ps(s2 + x))); }
  float at(int x) const { return std::fabs(s1[x] - s2[x]); }
};
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

struct ownFltSums {
  double sum, sq;
};

// Four double lanes (samples x, x + 1, x + 2, x + 3 modulo 4), added as
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
  __m128d s0 = _mm_setzero_pd(), s1 = s0, q0 = s0, q1 = s0;
  for (; x + 16 <= n; x += 16) {
    __m128 k[4] = {};
    if (sel) ownMaskTo32(ownLoad(sel + x), k);
    for (int i = 0; i < 4; ++i) {
      __m128 v = src.vec(x + 4 * i);
      if (sel) v = _mm_and_ps(v, k[i]);  // +0.0 for an unselected sample, whatever it held
      const __m128d a = _mm_cvtps_pd(v), b = _mm_cvtps_pd(_mm_movehl_ps(v, v));
      if (What & kOwnSum) s0 = _mm_add_pd(s0, a), s1 = _mm_add_pd(s1, b);
      if (What & kOwnSq) q0 = _mm_add_pd(q0, _mm_mul_pd(a, a)), q1 = _mm_add_pd(q1, _mm_mul_pd(b, b));
    }
  }
  if (What & kOwnSum) acc.sum += ownHorizontalSum(s0, s1);
  if (What & kOwnSq) acc.sq += ownHorizontalSum(q0, q1);
  ownSumsRow<What>(src, sel, x, n, acc);
}

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
  const __m128d mm = _mm_set1_pd(m);
  __m128d q0 = _mm_setzero_pd(), q1 = q0;
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 k[4] = {};
    if (sel) ownMaskTo32(ownLoad(sel + x), k);
    for (int i = 0; i < 4; ++i) {
      const __m128 v = src.vec(x + 4 * i);
      __m128d a = _mm_sub_pd(_mm_cvtps_pd(v), mm), b = _mm_sub_pd(_mm_cvtps_pd(_mm_movehl_ps(v, v)), mm);
      if (sel) {  // the difference of an unselected sample becomes +0.0
        const __m128i ki = _mm_castps_si128(k[i]);
        a = _mm_and_pd(a, _mm_castsi128_pd(_mm_unpacklo_epi32(ki, ki)));
        b = _mm_and_pd(b, _mm_castsi128_pd(_mm_unpackhi_epi32(ki, ki)));
      }
      q0 = _mm_add_pd(q0, _mm_mul_pd(a, a));
      q1 = _mm_add_pd(q1, _mm_mul_pd(b, b));
    }
  }
  acc += ownHorizontalSum(q0, q1);
  ownDevRow(src, sel, x, n, m, acc);
}

template <class Src>
float ownMaxRow_sse2(const Src& src, const vnx8u* sel, int n, float m) {
  __m128 a = _mm_setzero_ps();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 k[4] = {};
    if (sel) ownMaskTo32(ownLoad(sel + x), k);
    for (int i = 0; i < 4; ++i) {
      const __m128 v = src.vec(x + 4 * i);
      a = _mm_max_ps(sel ? _mm_and_ps(v, k[i]) : v, a);  // a NaN first operand yields a
    }
  }
  return ownMaxRow(src, sel, x, n, std::max(m, ownHorizontalMax(a)));
}

template <class Src>
void ownMinMaxRow_sse2(const Src& src, const vnx8u* sel, int n, float& mn, float& mx) {
  const __m128 top = _mm_set1_ps(FLT_MAX), bottom = _mm_set1_ps(-FLT_MAX);
  __m128 lo = top, hi = bottom;
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 k[4] = {};
    if (sel) ownMaskTo32(ownLoad(sel + x), k);
    for (int i = 0; i < 4; ++i) {
      const __m128 v = src.vec(x + 4 * i);
      if (sel) {  // an unselected sample is the start value of each: never strictly better
        lo = _mm_min_ps(ownSelect(k[i], v, top), lo);
        hi = _mm_max_ps(ownSelect(k[i], v, bottom), hi);
      } else {
        lo = _mm_min_ps(v, lo);
        hi = _mm_max_ps(v, hi);
      }
    }
  }
  mn = std::min(mn, ownHorizontalMin(lo));
  mx = std::max(mx, ownHorizontalMax(hi));
  ownMinMaxRow(src, sel, x, n, mn, mx);
}

// ---- argument checks ------------------------------------------------------------

template <class T>
inline ownStep ownStatImg(int step, int width, int channels) {
  return {step, static_cast<std::int64_t>(width) * channels * static_cast<int>(sizeof(T)), static_cast<int>(sizeof(T))};
}

// One source with an optional mask, one channel or a channel of interest:
// pointers, ROI, source and mask steps against row bytes, the source step's
// multiple, then coi (C3C forms only).
template <class T>
vnxStatus ownCheckStat(std::initializer_list<const void*> ptrs, vnxiSize roi, int srcStep, const vnx8u* mask,
                       int maskStep, int channels, int coi) {
  vnxStatus st = ownCheckPtrs(ptrs);
  if (!st) st = ownCheckRoi(roi);
  if (!st)
    st = mask ? ownCheckSteps({ownStatImg<T>(srcStep, roi.width, channels), ownImg<vnx8u>(maskStep, roi.width)})
              : ownCheckSteps({ownStatImg<T>(srcStep, roi.width, channels)});
  if (!st && channels == 3) st = ownCheckCoi(coi);
  return st;
}

// ---- family arguments -----------------------------------------------------------

// The operands of one statistics call; coi is 1-based as passed (ignored for C1).
template <class T>
struct ownStatArgs {
  using Elem = T;
  const T* src;
  int srcStep;
  const vnx8u* mask;  // null for the unmasked forms
  int maskStep;
  vnxiSize roi;
  int channels;
  int coi;
  bool masked;  // a masked form: the mask pointer is required
  ownStatLayout layout() const { return {roi.width, channels, channels == 3 ? coi - 1 : 0, mask, maskStep}; }
  // Row y of the source, at the first sample walked (the channel of interest sits in the selection).
  const T* row(int y) const { return ownRow(src, srcStep, y); }
};

// How a member runs its bands: serial below threads * cutoff pixels, and on a
// single-core die when the member applies that test.

// ---- means and deviations ------------------------------------------------------

// Which serial kernel sums a 32f image (they differ in the order of the additions only).
enum class ownSum32fKernel { Short, Aligned, General };
ownSum32fKernel ownPickSum32fKernel(vnxiSize roi, const void* src, int srcStep, int channels) noexcept;

template <class S>
struct ownMeanPart {
  S sums;
  std::int64_t count;
};

template <class T>
using ownSumsOf = typename std::conditional<std::is_same<T, vnx32f>::value, ownFltSums, ownIntSums>::type;

template <int What, class T>
ownMeanPart<ownSumsOf<T>> ownMeanBand(const ownStatArgs<T>& a, int y0, int y1, ownSum32fKernel kernel) {
  ownMeanPart<ownSumsOf<T>> p{};
  if constexpr (sizeof(T) == 1) {
    if (!a.mask && a.channels == 1) {  // every byte of every row: sums kept in registers over the band
      ownByteSums<ownPlainSrc<T>> sums;
      for (int y = y0; y < y1; ++y) sums.row(ownPlainSrc<T>{a.row(y)}, a.roi.width);
      return {sums.total(), static_cast<std::int64_t>(a.roi.width) * (y1 - y0)};
    }
  }
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s = a.row(y);
    if (a.mask) p.count += ownCountRow(runs.maskRow(y), a.roi.width);
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      if constexpr (std::is_same<T, vnx32f>::value) {
        if (kernel == ownSum32fKernel::Short)
          ownSumsRow<What>(ownPlainSrc32f<>{s + off}, sel, 0, n, p.sums);
        else if (kernel == ownSum32fKernel::Aligned)
          ownSumsRow_sse2<What>(ownPlainSrc32f<true>{s + off}, sel, n, p.sums);
        else
          ownSumsRow_sse2<What>(ownPlainSrc32f<>{s + off}, sel, n, p.sums);
      } else {
        ownSumsRow_sse2<What>(ownPlainSrc<T>{s + off}, sel, n, p.sums);
      }
    });
  }
  if (!a.mask) p.count = static_cast<std::int64_t>(a.roi.width) * (y1 - y0);
  return p;
}

// Sum and sum of squares of the samples themselves (8s: undo the offset of 128,
// exactly: s = u - 128, s^2 = u^2 - 256 u + 16384).
template <class T>
inline void ownMeanTotals(const ownMeanPart<ownIntSums>& p, double& sum, double& sq) {
  if (std::is_same<T, vnx8s>::value) {
    const std::int64_t s = static_cast<std::int64_t>(p.sums.sum), n = p.count;
    sum = static_cast<double>(s - 128 * n);
    sq = static_cast<double>(static_cast<std::int64_t>(p.sums.sq) - 256 * s + 16384 * n);
  } else {
    sum = static_cast<double>(p.sums.sum);
    sq = static_cast<double>(p.sums.sq);
  }
}
template <class T>
inline void ownMeanTotals(const ownMeanPart<ownFltSums>& p, double& sum, double& sq) {
  sum = p.sums.sum;
  sq = p.sums.sq;
}

template <int What, class T>
vnxStatus ownMeanSums(const ownStatArgs<T>& a, ownBandPolicy banding, double& sum, double& sq, std::int64_t& count,
                      int& nBands) {
  using Part = ownMeanPart<ownSumsOf<T>>;
  nBands = ownBandCount(a.roi, banding);
  const ownSum32fKernel kernel =
      (nBands == 1 && !a.mask) ? ownPickSum32fKernel(a.roi, a.src, a.srcStep, a.channels) : ownSum32fKernel::General;
  Part total;
  if (vnxStatus st = ownReduceBands<Part>(
          a.roi.height, nBands, [&](int y0, int y1) { return ownMeanBand<What>(a, y0, y1, kernel); },
          [](Part& t, const Part& p) {
            t.sums.sum += p.sums.sum;
            t.sums.sq += p.sums.sq;
            t.count += p.count;
          },
          &total))
    return st;
  ownMeanTotals<T>(total, sum, sq);
  count = total.count;
  return vnxStatusOk;
}

// Mean of the selected samples: vnxiMean_*.
template <class T>
vnxStatus ownMean(const ownStatArgs<T>& a, vnx64f* pMean, ownBandPolicy banding) {
  if (vnxStatus st = ownCheckStat<T>({a.src, a.mask, pMean}, a.roi, a.srcStep, a.mask, a.maskStep, a.channels, a.coi))
    return st;
  double sum = 0, sq = 0;
  std::int64_t n = 0;
  int bands = 1;
  if (vnxStatus st = ownMeanSums<kOwnSum>(a, banding, sum, sq, n, bands)) return st;
  *pMean = n ? sum / static_cast<double>(n) : 0.0;
  return vnxStatusOk;
}

// Second pass of the 32f deviation over the same pixels and bands.
vnxStatus ownDeviationPass(const ownStatArgs<vnx32f>& a, int nBands, double m, double& dev);

// Mean and population standard deviation: vnxiMean_StdDev_*. Both result pointers are optional.
template <class T>
vnxStatus ownMeanStdDev(const ownStatArgs<T>& a, vnx64f* pMean, vnx64f* pStdDev, ownBandPolicy banding) {
  vnxStatus st = a.masked ? ownCheckStat<T>({a.src, a.mask}, a.roi, a.srcStep, a.mask, a.maskStep, a.channels, a.coi)
                          : ownCheckStat<T>({a.src}, a.roi, a.srcStep, nullptr, 0, a.channels, a.coi);
  if (st) return st;
  double sum = 0, sq = 0;
  std::int64_t n = 0;
  int bands = 1;
  if ((st = ownMeanSums<kOwnSum | kOwnSq>(a, banding, sum, sq, n, bands))) return st;
  double mean = 0, sd = 0;
  if (n) {
    const double dn = static_cast<double>(n);
    mean = sum / dn;
    sd = std::sqrt(std::fabs(sq / dn - mean * mean));
  }
  if constexpr (std::is_same<T, vnx32f>::value) {
    // A deviation small against the mean lost its bits to cancellation: measure
    // again around the mean rounded to single precision.
    if (pStdDev && 0.05 * mean * mean > sd * sd) {
      double dev = 0;
      if ((st = ownDeviationPass(a, bands, static_cast<double>(static_cast<float>(mean)), dev))) return st;
      sd = std::sqrt(dev / static_cast<double>(n));
    }
  }
  if (pMean) *pMean = mean;
  if (pStdDev) *pStdDev = sd;
  return vnxStatusOk;
}

// ---- extrema with locations --------------------------------------------------------

// Comparable value of a sample: unsigned lanes for the integer types, float for 32f.
template <class T>
using ownExtVal = typename std::conditional<std::is_same<T, vnx32f>::value, float, unsigned>::type;

template <class T>
struct ownExtremaPart {
  ownExtVal<T> mn, mx;
  int mnRow, mxRow;
  bool any;  // some pixel selected
};

template <class T>
constexpr ownExtVal<T> ownExtTop() {
  if constexpr (std::is_same<T, vnx32f>::value)
    return FLT_MAX;
  else
    return ownPlainSrc<T>::Lanes::kTop;
}
template <class T>
constexpr ownExtVal<T> ownExtBottom() {
  if constexpr (std::is_same<T, vnx32f>::value)
    return -FLT_MAX;
  else
    return 0;
}

template <class T>
ownExtremaPart<T> ownExtremaBand(const ownStatArgs<T>& a, int y0, int y1) {
  ownExtremaPart<T> p{ownExtTop<T>(), ownExtBottom<T>(), 0, 0, !a.mask};
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s = a.row(y);
    if (a.mask && !p.any) p.any = ownCountRow(runs.maskRow(y), a.roi.width) > 0;
    ownExtVal<T> mn = ownExtTop<T>(), mx = ownExtBottom<T>();
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      ownMinMaxRow_sse2(typename ownSrcOf<T>::Plain{s + off}, sel, n, mn, mx);
    });
    // only a strictly better row moves a location: the first row holding each extreme stays
    if (mn < p.mn) p.mn = mn, p.mnRow = y;
    if (mx > p.mx) p.mx = mx, p.mxRow = y;
  }
  return p;
}

// One-channel integer rows without a mask: each row runs through vector minima and
// maxima only (64 bytes a step, two running values of each), and is reduced to
// scalars only when some lane is strictly beyond the band's extreme so far, which
// after the first rows is rare; equal values never move the recorded row.
template <class T>
ownExtremaPart<T> ownPlainExtremaBand(const ownStatArgs<T>& a, int y0, int y1) {
  using Src = ownPlainSrc<T>;
  using L = typename Src::Lanes;
  constexpr int kStep = 4 * L::kPerVec;
  const int w = a.roi.width;
  ownExtremaPart<T> p{L::kTop, 0, 0, 0, true};
  __m128i curMin = L::splat(p.mn), curMax = L::splat(p.mx);
  for (int y = y0; y < y1; ++y) {
    const Src src{a.row(y)};
    __m128i lo0 = L::splat(L::kTop), lo1 = lo0, hi0 = _mm_setzero_si128(), hi1 = hi0;
    int x = 0;
    for (; x + kStep <= w; x += kStep) {
      const __m128i v0 = src.vec(x), v1 = src.vec(x + L::kPerVec);
      const __m128i v2 = src.vec(x + 2 * L::kPerVec), v3 = src.vec(x + 3 * L::kPerVec);
      lo0 = L::min(lo0, L::min(v0, v1));
      lo1 = L::min(lo1, L::min(v2, v3));
      hi0 = L::max(hi0, L::max(v0, v1));
      hi1 = L::max(hi1, L::max(v2, v3));
    }
    for (; x + L::kPerVec <= w; x += L::kPerVec) {
      const __m128i v = src.vec(x);
      lo0 = L::min(lo0, v);
      hi0 = L::max(hi0, v);
    }
    lo0 = L::min(lo0, lo1);
    hi0 = L::max(hi0, hi1);
    unsigned tailMin = L::kTop, tailMax = 0;
    ownMinMaxRow(src, nullptr, x, w, tailMin, tailMax);
    // a lane below the minimum so far leaves min(lane, minimum) unequal to the minimum
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(L::min(lo0, curMin), curMin)) != 0xffff || tailMin < p.mn) {
      const unsigned m = std::min(L::hmin(lo0), tailMin);
      if (m < p.mn) p.mn = m, p.mnRow = y, curMin = L::splat(m);
    }
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(L::max(hi0, curMax), curMax)) != 0xffff || tailMax > p.mx) {
      const unsigned m = std::max(L::hmax(hi0), tailMax);
      if (m > p.mx) p.mx = m, p.mxRow = y, curMax = L::splat(m);
    }
  }
  return p;
}

// Column of the first selected sample equal to v in row y; 0 when there is none.
template <class T>
int ownFindColumn(const ownStatArgs<T>& a, int y, ownExtVal<T> v) {
  const typename ownSrcOf<T>::Plain src{a.row(y) + (a.channels == 3 ? a.coi - 1 : 0)};
  const vnx8u* m = a.mask ? ownRow(a.mask, a.maskStep, y) : nullptr;
  for (int x = 0; x < a.roi.width; ++x)
    if ((!m || m[x]) && src.at(x * a.channels) == v) return x;
  return 0;
}

template <class T>
inline vnx32f ownExtValue(ownExtVal<T> v) {
  if constexpr (std::is_same<T, vnx8s>::value)
    return static_cast<vnx32f>(static_cast<int>(v) - 128);
  else
    return static_cast<vnx32f>(v);
}

constexpr int kOwnExtremaSerialPixels = 16384;

// vnxiMinMaxIndx_*: the four result pointers are required but not checked.
template <class T>
vnxStatus ownMinMaxIndx(const ownStatArgs<T>& a, vnx32f* pMin, vnx32f* pMax, vnxiPoint* pMinIndex,
                        vnxiPoint* pMaxIndex) {
  vnxStatus st = a.masked ? ownCheckStat<T>({a.src, a.mask}, a.roi, a.srcStep, a.mask, a.maskStep, a.channels, a.coi)
                          : ownCheckStat<T>({a.src}, a.roi, a.srcStep, nullptr, 0, a.channels, a.coi);
  if (st) return st;
  const std::int64_t pixels = static_cast<std::int64_t>(a.roi.width) * a.roi.height;
  const int nBands = pixels < kOwnExtremaSerialPixels ? 1 : ownNumThreads();
  ownExtremaPart<T> t;
  // band order decides ties: a later band's minimum is taken unless it is >= the
  // current one (a NaN is taken), its maximum only when strictly greater
  if ((st = ownReduceBands<ownExtremaPart<T>>(
           a.roi.height, nBands,
           [&](int y0, int y1) {
             if constexpr (!std::is_same<T, vnx32f>::value)
               if (!a.mask && a.channels == 1) return ownPlainExtremaBand(a, y0, y1);
             return ownExtremaBand(a, y0, y1);
           },
           [](ownExtremaPart<T>& cur, const ownExtremaPart<T>& p) {
             if (!(p.mn >= cur.mn)) cur.mn = p.mn, cur.mnRow = p.mnRow;
             if (p.mx > cur.mx) cur.mx = p.mx, cur.mxRow = p.mxRow;
             cur.any = cur.any || p.any;
           },
           &t)))
    return st;
  if (!t.any) {
    *pMin = *pMax = 0.0f;
    *pMinIndex = *pMaxIndex = vnxiPoint{0, 0};
    return vnxStatusOk;
  }
  *pMin = ownExtValue<T>(t.mn);
  *pMax = ownExtValue<T>(t.mx);
  *pMinIndex = vnxiPoint{ownFindColumn(a, t.mnRow, t.mn), t.mnRow};
  *pMaxIndex = vnxiPoint{ownFindColumn(a, t.mxRow, t.mx), t.mxRow};
  return vnxStatusOk;
}

// ---- norms -----------------------------------------------------------------------

enum class ownNormKind { Inf, L1, L2 };
enum class ownNormOf { Image, Diff, Rel };  // vnxiNorm_, vnxiNormDiff_, vnxiNormRel_

// How one norm member runs: its banding and, for vnxiNormRel_L1_8u_C1MR, the
// 32-bit signed sums that wrap above 2147483647.
struct ownNormMode {
  ownBandPolicy banding;
  bool serialOnly;
  bool wrap32;
};

// Accumulated norm of a band: num for |s| or |s1 - s2|, den for |s2| (relative norms).
template <class T>
struct ownNormPart {
  using Acc = typename std::conditional<std::is_same<T, vnx32f>::value, double, std::uint64_t>::type;
  Acc num, den;
};

// Adds one run of a source to a norm accumulator.
template <ownNormKind K, class Src, class Acc>
inline void ownNormRun(const Src& src, const vnx8u* sel, int n, Acc& acc) {
  using Sums = typename std::conditional<std::is_same<Acc, double>::value, ownFltSums, ownIntSums>::type;
  if constexpr (K == ownNormKind::Inf) {
    using V = typename std::conditional<std::is_same<Acc, double>::value, float, unsigned>::type;
    acc = ownMaxRow_sse2(src, sel, n, static_cast<V>(acc));
  } else if constexpr (K == ownNormKind::L1) {
    Sums s{acc, 0};
    ownSumsRow_sse2<kOwnSum>(src, sel, n, s);
    acc = s.sum;
  } else {
    Sums s{0, acc};
    ownSumsRow_sse2<kOwnSq>(src, sel, n, s);
    acc = s.sq;
  }
}

template <ownNormKind K, ownNormOf Of, class T>
ownNormPart<T> ownNormBand(const ownStatArgs<T>& a, const T* src2, int src2Step, int y0, int y1) {
  using Src = ownSrcOf<T>;
  ownNormPart<T> p{};
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s1 = a.row(y);
    const T* s2 = Of == ownNormOf::Image ? nullptr : ownRow(src2, src2Step, y);
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      if constexpr (Of == ownNormOf::Image) {
        ownNormRun<K>(typename Src::Abs{s1 + off}, sel, n, p.num);
      } else {
        ownNormRun<K>(typename Src::AbsDiff{s1 + off, s2 + off}, sel, n, p.num);
        if (Of == ownNormOf::Rel) ownNormRun<K>(typename Src::Abs{s2 + off}, sel, n, p.den);
      }
    });
  }
  return p;
}

// Result of a relative norm; a zero denominator gives +inf, -inf or the quiet NaN
// with the sign bit set, and the warning.
inline vnxStatus ownRelResult(double num, double den, bool root, vnx64f* pNorm) {
  if (den != 0.0) {
    *pNorm = root ? std::sqrt(num / den) : num / den;
    return vnxStatusOk;
  }
  if (num > 0) {
    *pNorm = std::numeric_limits<double>::infinity();
  } else if (num < 0) {
    *pNorm = -std::numeric_limits<double>::infinity();
  } else {
    const std::uint64_t bits = 0xFFF8000000000000ull;
    std::memcpy(pNorm, &bits, sizeof bits);
  }
  return vnxStatusDivByZero;
}

// Every masked norm. src2 is null for vnxiNorm_*.
template <ownNormKind K, ownNormOf Of, class T>
vnxStatus ownNorm(const ownStatArgs<T>& a, const typename ownStatArgs<T>::Elem* src2, int src2Step, vnx64f* pNorm,
                  ownNormMode mode) {
  const ownStatLayout L = a.layout();
  const int w = a.roi.width;
  vnxStatus st =
      Of == ownNormOf::Image ? ownCheckPtrs({a.src, a.mask, pNorm}) : ownCheckPtrs({a.src, src2, a.mask, pNorm});
  if (!st) st = ownCheckRoi(a.roi);
  if (!st) {  // the source steps, both tests, before the mask step
    const ownStep s1 = ownStatImg<T>(a.srcStep, w, L.channels), s2 = ownStatImg<T>(src2Step, w, L.channels);
    const ownStep m = ownImg<vnx8u>(a.maskStep, w);
    st = Of == ownNormOf::Image ? ownCheckSourcesThenMask({s1}, m) : ownCheckSourcesThenMask({s1, s2}, m);
  }
  if (!st && L.channels == 3) st = ownCheckCoi(a.coi);
  if (st) return st;

  using Part = ownNormPart<T>;
  const int nBands = mode.serialOnly ? 1 : ownBandCount(a.roi, mode.banding);
  Part t;
  if ((st = ownReduceBands<Part>(
           a.roi.height, nBands, [&](int y0, int y1) { return ownNormBand<K, Of>(a, src2, src2Step, y0, y1); },
           [](Part& cur, const Part& p) {
             if (K == ownNormKind::Inf) {
               cur.num = std::max(cur.num, p.num);
               cur.den = std::max(cur.den, p.den);
             } else {
               cur.num += p.num;
               cur.den += p.den;
             }
           },
           &t)))
    return st;
  double num = static_cast<double>(t.num), den = static_cast<double>(t.den);
  if (mode.wrap32) {
    num = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(t.num)));
    den = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(t.den)));
  }
  if (Of == ownNormOf::Rel) return ownRelResult(num, den, K == ownNormKind::L2, pNorm);
  *pNorm = K == ownNormKind::L2 ? std::sqrt(num) : num;
  return vnxStatusOk;
}
