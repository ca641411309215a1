// SSE2/SSE3 helpers. Kernels use these rather than raw intrinsics where a helper
// names the idea (widening, saturating abs-diff, streaming stores), so a build for
// another instruction set replaces bodies here, not in every family.
#pragma once

#include <emmintrin.h>
#include <pmmintrin.h>

#include <cstdint>

#include "own.h"

inline __m128i ownLoad(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void ownStore(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
inline __m128i ownLoad64(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }

// Stores that bypass the cache when `streaming` is set; p must then be 16-byte aligned.
inline void ownStore(void* p, __m128i v, bool streaming) {
  if (streaming)
    _mm_stream_si128(static_cast<__m128i*>(p), v);
  else
    _mm_storeu_si128(static_cast<__m128i*>(p), v);
}
inline void ownStore(float* p, __m128 v, bool streaming) {
  if (streaming)
    _mm_stream_ps(p, v);
  else
    _mm_storeu_ps(p, v);
}

// |a - b| of unsigned lanes, exact: the two saturating differences, one of them zero.
inline __m128i ownAbsDiffU8(__m128i a, __m128i b) { return _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a)); }
inline __m128i ownAbsDiffU16(__m128i a, __m128i b) {
  return _mm_or_si128(_mm_subs_epu16(a, b), _mm_subs_epu16(b, a));
}

// Clears the sign bit of four floats.
inline __m128 ownAbsPs(__m128 v) { return _mm_and_ps(v, _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff))); }

// Widening: 16 unsigned bytes to four vectors of four floats (exact).
inline void ownWiden8uTo32f(__m128i v, __m128 out[4]) {
  const __m128i z = _mm_setzero_si128();
  const __m128i lo = _mm_unpacklo_epi8(v, z), hi = _mm_unpackhi_epi8(v, z);
  out[0] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(lo, z));
  out[1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(lo, z));
  out[2] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(hi, z));
  out[3] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(hi, z));
}
// 16 signed bytes: duplicate each byte into a word and shift arithmetically to sign-extend.
inline void ownWiden8sTo32f(__m128i v, __m128 out[4]) {
  const __m128i lo = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8), hi = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
  out[0] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(lo, lo), 16));
  out[1] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(lo, lo), 16));
  out[2] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(hi, hi), 16));
  out[3] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(hi, hi), 16));
}
// Eight unsigned words to two vectors of four floats (exact: below 2^24).
inline void ownWiden16uTo32f(__m128i v, __m128 out[2]) {
  const __m128i z = _mm_setzero_si128();
  out[0] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(v, z));
  out[1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(v, z));
}

// All-ones lanes where the mask byte is nonzero, widened to 32-bit lanes:
// 16 mask bytes give four 4-lane selectors.
inline void ownMaskTo32(__m128i m, __m128 out[4]) {
  const __m128i sel8 = _mm_xor_si128(_mm_cmpeq_epi8(m, _mm_setzero_si128()), _mm_set1_epi32(-1));
  const __m128i lo = _mm_unpacklo_epi8(sel8, sel8), hi = _mm_unpackhi_epi8(sel8, sel8);
  out[0] = _mm_castsi128_ps(_mm_unpacklo_epi16(lo, lo));
  out[1] = _mm_castsi128_ps(_mm_unpackhi_epi16(lo, lo));
  out[2] = _mm_castsi128_ps(_mm_unpacklo_epi16(hi, hi));
  out[3] = _mm_castsi128_ps(_mm_unpackhi_epi16(hi, hi));
}

// Sixteen samples as four vectors of four floats, for every source type.
inline void ownLoad16f(const vnx8u* p, __m128 out[4]) { ownWiden8uTo32f(ownLoad(p), out); }
inline void ownLoad16f(const vnx8s* p, __m128 out[4]) { ownWiden8sTo32f(ownLoad(p), out); }
inline void ownLoad16f(const vnx16u* p, __m128 out[4]) {
  ownWiden16uTo32f(ownLoad(p), out);
  ownWiden16uTo32f(ownLoad(p + 8), out + 2);
}
inline void ownLoad16f(const vnx32f* p, __m128 out[4]) {
  for (int i = 0; i < 4; ++i) out[i] = _mm_loadu_ps(p + 4 * i);
}

// The same with every sample whose mask byte is zero read as 0.
inline void ownLoad16fSelected(const vnx8u* p, const vnx8u* m, __m128 out[4]) {
  ownWiden8uTo32f(_mm_andnot_si128(_mm_cmpeq_epi8(ownLoad(m), _mm_setzero_si128()), ownLoad(p)), out);
}
inline void ownLoad16fSelected(const vnx8s* p, const vnx8u* m, __m128 out[4]) {
  ownWiden8sTo32f(_mm_andnot_si128(_mm_cmpeq_epi8(ownLoad(m), _mm_setzero_si128()), ownLoad(p)), out);
}
inline void ownLoad16fSelected(const vnx16u* p, const vnx8u* m, __m128 out[4]) {
  const __m128i off = _mm_cmpeq_epi8(ownLoad(m), _mm_setzero_si128());
  ownWiden16uTo32f(_mm_andnot_si128(_mm_unpacklo_epi8(off, off), ownLoad(p)), out);
  ownWiden16uTo32f(_mm_andnot_si128(_mm_unpackhi_epi8(off, off), ownLoad(p + 8)), out + 2);
}

// The complement of ownMaskTo32: all-ones lanes where the mask byte is zero, one
// operation less; ownDropPs(off, v) then keeps v where off is clear.
inline void ownMaskOffTo32(__m128i m, __m128 out[4]) {
  const __m128i off8 = _mm_cmpeq_epi8(m, _mm_setzero_si128());
  const __m128i lo = _mm_unpacklo_epi8(off8, off8), hi = _mm_unpackhi_epi8(off8, off8);
  out[0] = _mm_castsi128_ps(_mm_unpacklo_epi16(lo, lo));
  out[1] = _mm_castsi128_ps(_mm_unpackhi_epi16(lo, lo));
  out[2] = _mm_castsi128_ps(_mm_unpacklo_epi16(hi, hi));
  out[3] = _mm_castsi128_ps(_mm_unpackhi_epi16(hi, hi));
}
// v where off is clear, +0.0 where it is all-ones.
inline __m128 ownDropPs(__m128 off, __m128 v) { return _mm_andnot_ps(off, v); }

// Selectors (all-ones lanes) of sixteen samples that are nonzero; a float
// compares unequal to 0.0, so -0.0 is not selected and NaN is.
inline void ownNonzero16(const vnx8u* p, __m128 out[4]) { ownMaskTo32(ownLoad(p), out); }
inline void ownNonzero16(const vnx16u* p, __m128 out[4]) {
  const __m128i z = _mm_setzero_si128(), ones = _mm_set1_epi32(-1);
  for (int h = 0; h < 2; ++h) {
    const __m128i sel = _mm_xor_si128(_mm_cmpeq_epi16(ownLoad(p + 8 * h), z), ones);
    out[2 * h] = _mm_castsi128_ps(_mm_unpacklo_epi16(sel, sel));
    out[2 * h + 1] = _mm_castsi128_ps(_mm_unpackhi_epi16(sel, sel));
  }
}
inline void ownNonzero16(const vnx32f* p, __m128 out[4]) {
  for (int i = 0; i < 4; ++i) out[i] = _mm_cmpneq_ps(_mm_loadu_ps(p + 4 * i), _mm_setzero_ps());
}

// sel ? a : b, lane by lane.
inline __m128 ownSelect(__m128 sel, __m128 a, __m128 b) { return _mm_or_ps(_mm_and_ps(sel, a), _mm_andnot_ps(sel, b)); }

// All-ones lanes where the mask byte is nonzero: 16 mask bytes as one 8-bit
// selector, or as two 8-lane 16-bit selectors.
inline __m128i ownMaskTo8(__m128i m) {
  return _mm_xor_si128(_mm_cmpeq_epi8(m, _mm_setzero_si128()), _mm_set1_epi32(-1));
}
inline void ownMaskTo16(__m128i m, __m128i out[2]) {
  const __m128i sel8 = ownMaskTo8(m);
  out[0] = _mm_unpacklo_epi8(sel8, sel8);
  out[1] = _mm_unpackhi_epi8(sel8, sel8);
}

// (a0 + a1) + (b0 + b1): four double lanes of a running sum, in a fixed order.
inline double ownHorizontalSum(__m128d a, __m128d b) {
  const __m128d ab = _mm_add_pd(_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b));  // a0 + a1, b0 + b1
  return _mm_cvtsd_f64(_mm_add_sd(ab, _mm_unpackhi_pd(ab, ab)));
}
// Largest and smallest of four floats (no NaN lanes expected).
inline float ownHorizontalMax(__m128 v) {
  v = _mm_max_ps(v, _mm_movehl_ps(v, v));
  return _mm_cvtss_f32(_mm_max_ss(v, _mm_shuffle_ps(v, v, 1)));
}
inline float ownHorizontalMin(__m128 v) {
  v = _mm_min_ps(v, _mm_movehl_ps(v, v));
  return _mm_cvtss_f32(_mm_min_ss(v, _mm_shuffle_ps(v, v, 1)));
}

// Lanes that are NaN replaced by the library's one NaN (see ownCanonicalNaN).
inline __m128 ownCanonicalNaN(__m128 v) {
  return ownSelect(_mm_cmpunord_ps(v, v), _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(0xFFC00000u))), v);
}
inline __m128d ownCanonicalNaN(__m128d v) {
  const __m128d sel = _mm_cmpunord_pd(v, v);
  const __m128d nan = _mm_castsi128_pd(_mm_set1_epi64x(static_cast<long long>(0xFFF8000000000000ull)));
  return _mm_or_pd(_mm_and_pd(sel, nan), _mm_andnot_pd(sel, v));
}

// Kernels whose results are rarely NaN store them as they come and note each stored
// vector here (a compare and an or); once a row is done, only a row that held a NaN
// is passed again to make its NaNs the library's one NaN. A select on every store
// costs four operations a vector, as much as a small filter's arithmetic.
class ownNaNWatch {
 public:
  void note(__m128 v) { seen_ = _mm_or_ps(seen_, _mm_cmpunord_ps(v, v)); }
  void note(__m128 a, __m128 b) { seen_ = _mm_or_ps(seen_, _mm_cmpunord_ps(a, b)); }  // two vectors at once
  void store(float* d, __m128 v) {
    _mm_storeu_ps(d, v);
    note(v);
  }
  bool seen() const { return _mm_movemask_ps(seen_) != 0; }
  // Every NaN of d[0 .. n - 1] made the one NaN, when a noted vector held one (a
  // watch serves the rows of one kernel call; each row is settled on its own).
  void settle(float* d, std::ptrdiff_t n) {
    if (!seen()) return;
    const __m128i nan = _mm_set1_epi32(static_cast<int>(0xFFC00000u));
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      float& v = d[i];
      if (v != v) _mm_store_ss(&v, _mm_castsi128_ps(nan));
    }
  }

 private:
  __m128 seen_ = _mm_setzero_ps();
};

// ---- arith: differences, accumulators and motion history ----------------------------

// Where the vector stores of a row go: through the cache, or around it (non-temporal;
// the destination must then be 16-byte aligned, and ownStreamFence() runs before the
// call returns so the streamed rows are visible).
enum class ownStoreKind { Cached, Streaming };
template <class T>
inline void ownStoreLanes(T* p, __m128i v, ownStoreKind kind) {
  ownStore(static_cast<void*>(p), v, kind == ownStoreKind::Streaming);
}
inline void ownStreamFence() { _mm_sfence(); }

// One sample in every lane of a vector (floats as their bit patterns).
inline __m128i ownSplatLanes(vnx8u v) { return _mm_set1_epi8(static_cast<char>(v)); }
inline __m128i ownSplatLanes(vnx16u v) { return _mm_set1_epi16(static_cast<short>(v)); }
inline __m128i ownSplatLanes(vnx32f v) { return _mm_castps_si128(_mm_set1_ps(v)); }

// Four floats: load, store, broadcast.
inline __m128 ownLoadPs(const float* p) { return _mm_loadu_ps(p); }
inline void ownStorePs(float* p, __m128 v) { _mm_storeu_ps(p, v); }
inline __m128 ownSplatPs(float v) { return _mm_set1_ps(v); }
// v where sel is all-ones, +0.0 elsewhere.
inline __m128 ownKeepPs(__m128 sel, __m128 v) { return _mm_and_ps(v, sel); }
// |a - b|: the difference rounded to single precision, then its sign bit cleared.
inline __m128 ownAbsDiffPs(__m128 a, __m128 b) { return ownAbsPs(_mm_sub_ps(a, b)); }

// |a - b| over 16 bytes of lanes of T (float lanes carried as bit patterns).
inline __m128i ownAbsDiffLanes(__m128i a, __m128i b, vnx8u) { return ownAbsDiffU8(a, b); }
inline __m128i ownAbsDiffLanes(__m128i a, __m128i b, vnx16u) { return ownAbsDiffU16(a, b); }
inline __m128i ownAbsDiffLanes(__m128i a, __m128i b, vnx32f) {
  return _mm_castps_si128(ownAbsDiffPs(_mm_castsi128_ps(a), _mm_castsi128_ps(b)));
}

// The accumulator steps, each operation rounded to single precision: acc + t, a * b,
// and the blend acc + (s - acc) * w in exactly this order (difference, product, sum).
inline __m128 ownAddTermPs(__m128 acc, __m128 t) { return _mm_add_ps(acc, t); }
inline __m128 ownMulPs(__m128 a, __m128 b) { return _mm_mul_ps(a, b); }
inline __m128 ownBlendPs(__m128 acc, __m128 s, __m128 w) { return _mm_add_ps(acc, _mm_mul_ps(_mm_sub_ps(s, acc), w)); }
// v with the lanes below t cleared to +0.0; a NaN lane is not below t and is kept.
inline __m128 ownClearBelowPs(__m128 v, __m128 t) { return _mm_andnot_ps(_mm_cmplt_ps(v, t), v); }

// ---- statistics: lane types, lane folds, widening sums, selects -------------------
#include <cstring>

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
// Totals of two 64-bit and of four 32-bit unsigned lanes.
inline std::uint64_t ownSumLanesU64(__m128i a) {
  alignas(16) std::uint64_t l[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(l), a);
  return l[0] + l[1];
}
inline std::uint64_t ownSumLanesU32(__m128i a) {
  alignas(16) std::uint32_t l[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(l), a);
  return std::uint64_t(l[0]) + l[1] + l[2] + l[3];
}
// Four unsigned 32-bit lanes added into two 64-bit lanes of acc.
inline __m128i ownAddWidenedU32(__m128i acc, __m128i v) {
  const __m128i z = _mm_setzero_si128();
  return _mm_add_epi64(acc, _mm_add_epi64(_mm_unpacklo_epi32(v, z), _mm_unpackhi_epi32(v, z)));
}
// Sums of the low and of the high eight unsigned bytes, in two 64-bit lanes.
inline __m128i ownSumBytes(__m128i v) { return _mm_sad_epu8(v, _mm_setzero_si128()); }
// Squares of the low eight unsigned bytes added in pairs (four 32-bit lanes); hi gets
// those of the high eight.
inline __m128i ownSquarePairsU8(__m128i v, __m128i& hi) {
  const __m128i z = _mm_setzero_si128();
  const __m128i lo = _mm_unpacklo_epi8(v, z);
  hi = _mm_unpackhi_epi8(v, z);
  hi = _mm_madd_epi16(hi, hi);
  return _mm_madd_epi16(lo, lo);
}
// Number of nonzero bytes among 16, in two 64-bit lanes.
inline __m128i ownCountNonzeroBytes(__m128i m) { return ownSumBytes(_mm_and_si128(ownMaskTo8(m), _mm_set1_epi8(1))); }
// True when every byte of a equals the one of b.
inline bool ownSameBytes(__m128i a, __m128i b) { return _mm_movemask_epi8(_mm_cmpeq_epi8(a, b)) == 0xffff; }
// Signed bytes as order-preserving unsigned ones (s + 128), and |s| read unsigned (|-128| = 128).
inline __m128i ownOffsetS8(__m128i v) { return _mm_xor_si128(v, _mm_set1_epi8(-128)); }
inline __m128i ownAbsS8(__m128i v) { return _mm_min_epu8(v, _mm_sub_epi8(_mm_setzero_si128(), v)); }
// Empty running sums and extremes: zero lanes (integer, float, double) and all-ones lanes.
inline __m128i ownZeroLanes() { return _mm_setzero_si128(); }
inline __m128 ownZeroPs() { return _mm_setzero_ps(); }
inline __m128d ownZeroPd() { return _mm_setzero_pd(); }
inline __m128i ownOnesLanes() { return _mm_set1_epi32(-1); }
// Lane-wise sums of 64-bit and of 32-bit unsigned lanes (modulo 2^64, 2^32).
inline __m128i ownAddU64(__m128i a, __m128i b) { return _mm_add_epi64(a, b); }
inline __m128i ownAddU32(__m128i a, __m128i b) { return _mm_add_epi32(a, b); }
// v where the selector k is all-ones, and 0 (or all-ones: the top of unsigned lanes) elsewhere.
inline __m128i ownKeepLanes(__m128i k, __m128i v) { return _mm_and_si128(v, k); }
inline __m128i ownKeepOrTop(__m128i k, __m128i v) { return _mm_or_si128(v, _mm_xor_si128(k, ownOnesLanes())); }
// Two doubles: broadcast and lane-wise difference.
inline __m128d ownSplatPd(double v) { return _mm_set1_pd(v); }
inline __m128d ownSubPd(__m128d a, __m128d b) { return _mm_sub_pd(a, b); }

// 16 unsigned 8-bit lanes a vector.
struct ownLanes8 {
  static constexpr int kPerVec = 16;
  static constexpr unsigned kTop = 255;
  static void keep(const vnx8u* sel, __m128i k[1]) { k[0] = ownMaskTo8(ownLoad(sel)); }
  // sum: 64-bit lanes (a sum of absolute differences against zero)
  static __m128i addSum(__m128i acc, __m128i v) { return _mm_add_epi64(acc, ownSumBytes(v)); }
  static std::uint64_t flushSum(__m128i a) { return ownSumLanesU64(a); }
  // squares: 32-bit lanes, each gains at most 2 * 2 * 255^2 a vector
  static __m128i addSq(__m128i acc, __m128i v) {
    __m128i hi;
    const __m128i lo = ownSquarePairsU8(v, hi);
    return _mm_add_epi32(acc, _mm_add_epi32(lo, hi));
  }
  static std::uint64_t flushSq(__m128i a) { return ownSumLanesU32(a); }
  static __m128i max(__m128i a, __m128i b) { return _mm_max_epu8(a, b); }
  static __m128i min(__m128i a, __m128i b) { return _mm_min_epu8(a, b); }
  static __m128i splat(unsigned v) { return _mm_set1_epi8(static_cast<char>(v)); }
  static unsigned hmax(__m128i m) { return ownFoldLanes<1>(m, [](__m128i a, __m128i b) { return max(a, b); }); }
  static unsigned hmin(__m128i m) { return ownFoldLanes<1>(m, [](__m128i a, __m128i b) { return min(a, b); }); }
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
  static std::uint64_t flushSum(__m128i a) { return ownSumLanesU32(a); }
  // squares: 32-bit products (65535^2 < 2^32) widened into 64-bit lanes
  static __m128i addSq(__m128i acc, __m128i v) {
    const __m128i lo = _mm_mullo_epi16(v, v), hi = _mm_mulhi_epu16(v, v);
    return ownAddWidenedU32(ownAddWidenedU32(acc, _mm_unpacklo_epi16(lo, hi)), _mm_unpackhi_epi16(lo, hi));
  }
  static std::uint64_t flushSq(__m128i a) { return ownSumLanesU64(a); }
  // unsigned 16-bit max and min from saturating differences (SSE2 has only signed ones)
  static __m128i max(__m128i a, __m128i b) { return _mm_add_epi16(_mm_subs_epu16(a, b), b); }
  static __m128i min(__m128i a, __m128i b) { return _mm_sub_epi16(a, _mm_subs_epu16(a, b)); }
  static __m128i splat(unsigned v) { return _mm_set1_epi16(static_cast<short>(v)); }
  static unsigned hmax(__m128i m) { return ownFoldLanes<2>(m, [](__m128i a, __m128i b) { return max(a, b); }); }
  static unsigned hmin(__m128i m) { return ownFoldLanes<2>(m, [](__m128i a, __m128i b) { return min(a, b); }); }
};

// Four floats from a 16-byte boundary (ownLoadPs above loads from anywhere), and
// one sample from any address (a source may start at an odd byte).
inline __m128 ownLoadAlignedPs(const float* p) { return _mm_load_ps(p); }
template <class T>
inline T ownLoadSample(const T* p) {
  T v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
// Four floats widened to double, added into two running double pairs (s0: lanes 0, 1; s1: lanes 2, 3),
// and their squares into q0, q1.
inline void ownWidenPs(__m128 v, __m128d& lo, __m128d& hi) {
  lo = _mm_cvtps_pd(v);
  hi = _mm_cvtps_pd(_mm_movehl_ps(v, v));
}
inline void ownAddPs(__m128d& s0, __m128d& s1, __m128d a, __m128d b) {
  s0 = _mm_add_pd(s0, a);
  s1 = _mm_add_pd(s1, b);
}
inline void ownAddSquaresPd(__m128d& q0, __m128d& q1, __m128d a, __m128d b) {
  q0 = _mm_add_pd(q0, _mm_mul_pd(a, a));
  q1 = _mm_add_pd(q1, _mm_mul_pd(b, b));
}
// Four-lane float selector as two double selectors; sel ? v : +0.0 for doubles.
inline void ownWidenSelector(__m128 sel, __m128d& lo, __m128d& hi) {
  const __m128i k = _mm_castps_si128(sel);
  lo = _mm_castsi128_pd(_mm_unpacklo_epi32(k, k));
  hi = _mm_castsi128_pd(_mm_unpackhi_epi32(k, k));
}
inline __m128d ownKeepPd(__m128d sel, __m128d v) { return _mm_and_pd(v, sel); }
// Lane-wise max(v, acc) and min(v, acc): a NaN lane of v leaves acc as it was.
inline __m128 ownMaxSkipNaN(__m128 v, __m128 acc) { return _mm_max_ps(v, acc); }
inline __m128 ownMinSkipNaN(__m128 v, __m128 acc) { return _mm_min_ps(v, acc); }

// ---- filters: widening loads, tap multiply-adds, saturating packed stores -----------

// Sixteen unsigned bytes widened to two vectors of eight 16-bit lanes.
inline void ownWiden8uTo16(__m128i v, __m128i& lo, __m128i& hi) {
  lo = _mm_unpacklo_epi8(v, _mm_setzero_si128());
  hi = _mm_unpackhi_epi8(v, _mm_setzero_si128());
}
// Eight samples as eight 16-bit lanes: bytes widened, 16-bit samples as they are.
inline __m128i ownLoad8As16(const vnx8u* p) { return _mm_unpacklo_epi8(ownLoad64(p), _mm_setzero_si128()); }
inline __m128i ownLoad8As16(const vnx16s* p) { return ownLoad(p); }
// Eight signed 16-bit lanes sign-extended to two vectors of four 32-bit lanes.
inline void ownWiden16sTo32(__m128i v, __m128i& lo, __m128i& hi) {
  lo = _mm_srai_epi32(_mm_unpacklo_epi16(v, v), 16);
  hi = _mm_srai_epi32(_mm_unpackhi_epi16(v, v), 16);
}

// acc + tap * v in 16-bit lanes (modulo 2^16), tap broadcast in tapv.
inline __m128i ownMulAdd16(__m128i acc, __m128i v, __m128i tapv) { return _mm_add_epi16(acc, _mm_mullo_epi16(v, tapv)); }
// The same for a tap known at compile time: adds and shifts for the small taps.
template <int T>
inline __m128i ownMulAddTap16(__m128i acc, __m128i v) {
  if constexpr (T == 0) return acc;
  else if constexpr (T == 1) return _mm_add_epi16(acc, v);
  else if constexpr (T == -1) return _mm_sub_epi16(acc, v);
  else if constexpr (T == 2) return _mm_add_epi16(acc, _mm_add_epi16(v, v));
  else if constexpr (T == -2) return _mm_sub_epi16(acc, _mm_add_epi16(v, v));
  else if constexpr (T == 4) return _mm_add_epi16(acc, _mm_slli_epi16(v, 2));
  else if constexpr (T == -8) return _mm_sub_epi16(acc, _mm_slli_epi16(v, 3));
  else return _mm_add_epi16(acc, _mm_mullo_epi16(v, _mm_set1_epi16(T)));
}
// Pairs a and b of 16-bit lanes interleaved and multiplied-added by the two taps packed
// in each 32-bit lane of taps2 (low tap for a): acc + ta * a + tb * b in 32-bit lanes.
inline void ownMulAddPairs16(__m128i a, __m128i b, __m128i taps2, __m128i& lo, __m128i& hi) {
  lo = _mm_add_epi32(lo, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), taps2));
  hi = _mm_add_epi32(hi, _mm_madd_epi16(_mm_unpackhi_epi16(a, b), taps2));
}
inline __m128i ownTapPair16(int ta, int tb) {
  return _mm_set1_epi32(static_cast<int>((static_cast<std::uint32_t>(static_cast<std::uint16_t>(tb)) << 16) |
                                         static_cast<std::uint16_t>(ta)));
}

// acc + k * v in single precision, the product rounded first (no fused multiply-add).
inline __m128 ownMulAddPs(__m128 acc, __m128 k, __m128 v) { return _mm_add_ps(acc, _mm_mul_ps(k, v)); }
// Tap times v, and acc plus tap times v, for a tap known at compile time, in forms that
// give the bits of the plain product for every input: 1 * v is v, 2 * v is v + v,
// acc + (-1 * v) is acc - v and acc + (-2 * v) is acc - (v + v). A zero tap keeps its
// product (0 * inf is NaN).
template <int T>
inline __m128 ownTapPs(__m128 v) {
  if constexpr (T == 1) return v;
  else if constexpr (T == 2) return _mm_add_ps(v, v);
  else return _mm_mul_ps(_mm_set1_ps(static_cast<float>(T)), v);
}
template <int T>
inline __m128 ownMulAddTapPs(__m128 acc, __m128 v) {
  if constexpr (T == 1) return _mm_add_ps(acc, v);
  else if constexpr (T == -1) return _mm_sub_ps(acc, v);
  else if constexpr (T == 2) return _mm_add_ps(acc, _mm_add_ps(v, v));
  else if constexpr (T == -2) return _mm_sub_ps(acc, _mm_add_ps(v, v));
  else return ownMulAddPs(acc, _mm_set1_ps(static_cast<float>(T)), v);
}

// Eight 32-bit sums packed with saturation to the destination type and stored.
inline void ownStorePacked(vnx16s* d, __m128i lo, __m128i hi) { ownStore(d, _mm_packs_epi32(lo, hi)); }
inline void ownStorePacked(vnx8s* d, __m128i lo, __m128i hi) {
  const __m128i w = _mm_packs_epi32(lo, hi);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(d), _mm_packs_epi16(w, w));
}
inline void ownStorePacked(vnx8u* d, __m128i lo, __m128i hi) {
  const __m128i w = _mm_packs_epi32(lo, hi);  // saturating to 16 bits keeps the order around 0..255
  _mm_storel_epi64(reinterpret_cast<__m128i*>(d), _mm_packus_epi16(w, w));
}
// Sixteen 16-bit lanes packed with unsigned saturation to bytes and stored.
inline void ownStorePackedU8(vnx8u* d, __m128i lo, __m128i hi) { ownStore(d, _mm_packus_epi16(lo, hi)); }

// ---- detect: integral tables ----------------------------------------------------

// Four bytes from any address into the low lane.
inline __m128i ownLoad32(const void* p) {
  int v;
  std::memcpy(&v, p, 4);
  return _mm_cvtsi32_si128(v);
}
// Two doubles stored, around the cache when `streaming` is set (p then 16-byte aligned).
inline void ownStore(double* p, __m128d v, bool streaming) {
  if (streaming)
    _mm_stream_pd(p, v);
  else
    _mm_storeu_pd(p, v);
}
// The upper lane of a and the lower lane of b: the pair that straddles two vectors.
inline __m128d ownStraddlePd(__m128d a, __m128d b) { return _mm_shuffle_pd(a, b, 1); }
// Elements of T from p to the first 16-byte boundary, at most n (n when p is not
// aligned to its element, so no boundary falls between elements).
template <class T>
inline int ownElementsTo16(const T* p, int n) {
  const std::uintptr_t a = reinterpret_cast<std::uintptr_t>(p);
  if (a % sizeof(T) != 0) return n;
  const int k = static_cast<int>(((16 - (a & 15)) & 15) / sizeof(T));
  return k < n ? k : n;
}
