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
// Four floats stored with every NaN lane made the library's one NaN.
inline void ownStoreCanonical(float* d, __m128 v) { _mm_storeu_ps(d, ownCanonicalNaN(v)); }
