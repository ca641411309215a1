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
