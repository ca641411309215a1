// Canny's row kernels: gradient magnitude with the low test, and non-maximum suppression
// along the gradient direction, four pixels at a time with the tests as lane masks.
#include <algorithm>
#include <cmath>

#include "features.h"
#include "simd.h"

// 16s: |dx| + |dy| on 16 unsigned bits (|-32768| = 32768), saturated at 65535; the low
// threshold is already truncated toward zero and the test is strict.
void ownCannyMagnitudeRow(const vnx16s* dx, const vnx16s* dy, vnx16u* m, int x0, int n, int low) {
  for (int x = x0; x < n; ++x) {
    const int a = std::min(std::abs(int(dx[x])) + std::abs(int(dy[x])), 65535);
    m[x] = static_cast<vnx16u>(a > low ? a : 0);
  }
}
// 32f: |dx| + |dy| in float, kept when not less than low (a NaN sum is never kept).
void ownCannyMagnitudeRow(const vnx32f* dx, const vnx32f* dy, float* m, int x0, int n, float low) {
  for (int x = x0; x < n; ++x) {
    const float a = std::fabs(dx[x]) + std::fabs(dy[x]);
    m[x] = a >= low ? a : 0.0f;
  }
}

namespace {
// |v| of eight signed words as unsigned words: (v ^ s) - s with s the sign.
inline __m128i ownAbs16(__m128i v) {
  const __m128i s = _mm_srai_epi16(v, 15);
  return _mm_sub_epi16(_mm_xor_si128(v, s), s);
}
}  // namespace

// m > low is m >= low + 1, and m >= t is (t - m, saturated at 0) == 0; low 65535
// passes nothing.
void ownCannyMagnitudeRow_sse2(const vnx16s* dx, const vnx16s* dy, vnx16u* m, int n, int low) {
  const __m128i t = _mm_set1_epi16(static_cast<short>(low + 1)), z = _mm_setzero_si128();
  int x = 0;
  for (; low < 65535 && x + 8 <= n; x += 8) {
    const __m128i a = _mm_adds_epu16(ownAbs16(ownLoad(dx + x)), ownAbs16(ownLoad(dy + x)));
    ownStore(m + x, _mm_and_si128(a, _mm_cmpeq_epi16(_mm_subs_epu16(t, a), z)));
  }
  ownCannyMagnitudeRow(dx, dy, m, x, n, low);
}
void ownCannyMagnitudeRow_sse2(const vnx32f* dx, const vnx32f* dy, float* m, int n, float low) {
  const __m128 vlow = _mm_set1_ps(low);
  int x = 0;
  for (; x + 4 <= n; x += 4) {
    const __m128 a = _mm_add_ps(ownAbsPs(_mm_loadu_ps(dx + x)), ownAbsPs(_mm_loadu_ps(dy + x)));
    _mm_storeu_ps(m + x, _mm_and_ps(a, _mm_cmpge_ps(a, vlow)));
  }
  ownCannyMagnitudeRow(dx, dy, m, x, n, low);
}

namespace {
inline bool ownSignsDiffer(vnx16s a, vnx16s b) { return (a ^ b) < 0; }
inline bool ownSignsDiffer(vnx32f a, vnx32f b) { return std::signbit(a) != std::signbit(b); }
}  // namespace

// Nearly horizontal gradient (ay < ax * tan 22.5): m > left and m >= right; nearly
// vertical (ax * tan 67.5 < ay): m > above and m >= below; diagonal: same signs, m above
// upper-left and lower-right, differing signs, m above both lower-left and upper-right.
// The non-strict side decides plateaus: of two equal neighbours along the gradient the
// left (upper) one survives.
template <class D, class M, class T>
void ownCannySuppressRow(const D* dx, const D* dy, const M* up, const M* mid, const M* down, vnx8u* map, int x0,
                         int n, T high) {
  for (int x = x0; x < n; ++x) {
    const M m = mid[x];
    vnx8u flag = 0;
    if (m > 0) {
      const float ax = std::fabs(static_cast<float>(dx[x])), ay = std::fabs(static_cast<float>(dy[x]));
      bool keep;
      if (ay < ax * kOwnTan22)
        keep = m > mid[x - 1] && m >= mid[x + 1];
      else if (ax * kOwnTan67 < ay)
        keep = m > up[x] && m >= down[x];
      else if (!ownSignsDiffer(dx[x], dy[x]))
        keep = m > up[x - 1] && m > down[x + 1];
      else
        keep = m > std::max(down[x - 1], up[x + 1]);
      if (keep) flag = T(m) > high ? kOwnCannyEdge : kOwnCannyCandidate;
    }
    map[x] = flag;
  }
}
template void ownCannySuppressRow(const vnx16s*, const vnx16s*, const vnx16u*, const vnx16u*, const vnx16u*, vnx8u*,
                                  int, int, int);
template void ownCannySuppressRow(const vnx32f*, const vnx32f*, const float*, const float*, const float*, vnx8u*,
                                  int, int, float);

namespace {

// Lane operations on float magnitudes held in __m128i.
inline __m128i ownLoadM(const float* p) { return _mm_castps_si128(_mm_loadu_ps(p)); }
inline __m128i ownGt(__m128i a, __m128i b, float) {
  return _mm_castps_si128(_mm_cmpgt_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b)));
}
inline __m128i ownSplatM(float v) { return _mm_castps_si128(_mm_set1_ps(v)); }
// |dx|, |dy| as floats and a mask of lanes whose signs differ.
inline void ownAxAy(const vnx32f* dx, const vnx32f* dy, __m128& ax, __m128& ay, __m128i& differ) {
  const __m128 x = _mm_loadu_ps(dx), y = _mm_loadu_ps(dy);
  ax = ownAbsPs(x);
  ay = ownAbsPs(y);
  differ = _mm_srai_epi32(_mm_castps_si128(_mm_xor_ps(x, y)), 31);
}
inline __m128i ownBlend(__m128i sel, __m128i a, __m128i b) {
  return _mm_or_si128(_mm_and_si128(sel, a), _mm_andnot_si128(sel, b));
}

// Flags of four pixels as 32-bit lanes: 0x80 kept, 0x40 kept and above high (a seed).
template <class D, class M>
inline __m128i ownSuppress4(const D* dx, const D* dy, const M* up, const M* mid, const M* down, __m128i high) {
  const M tag = 0;
  const __m128i m = ownLoadM(mid);
  __m128 ax, ay;
  __m128i differ;
  ownAxAy(dx, dy, ax, ay, differ);
  const __m128i horiz = _mm_castps_si128(_mm_cmplt_ps(ay, _mm_mul_ps(ax, _mm_set1_ps(kOwnTan22))));
  const __m128i vert = _mm_castps_si128(_mm_cmplt_ps(_mm_mul_ps(ax, _mm_set1_ps(kOwnTan67)), ay));
  const __m128i keepH = _mm_andnot_si128(ownGt(ownLoadM(mid + 1), m, tag), ownGt(m, ownLoadM(mid - 1), tag));
  const __m128i keepV = _mm_andnot_si128(ownGt(ownLoadM(down), m, tag), ownGt(m, ownLoadM(up), tag));
  const __m128i keepSame = _mm_and_si128(ownGt(m, ownLoadM(up - 1), tag), ownGt(m, ownLoadM(down + 1), tag));
  const __m128i keepDiff = _mm_and_si128(ownGt(m, ownLoadM(down - 1), tag), ownGt(m, ownLoadM(up + 1), tag));
  __m128i keep = ownBlend(horiz, keepH, ownBlend(vert, keepV, ownBlend(differ, keepDiff, keepSame)));
  keep = _mm_and_si128(keep, ownGt(m, _mm_setzero_si128(), tag));
  const __m128i seed = _mm_and_si128(keep, ownGt(m, high, tag));
  return _mm_or_si128(_mm_andnot_si128(seed, _mm_and_si128(keep, _mm_set1_epi32(kOwnCannyCandidate))),
                      _mm_and_si128(seed, _mm_set1_epi32(kOwnCannyEdge)));
}

template <class D, class M>
void ownCannySuppressVectors(const D* dx, const D* dy, const M* up, const M* mid, const M* down, vnx8u* map, int n,
                             M high) {
  const __m128i vh = ownSplatM(high);
  int x = 0;
  const __m128i z = _mm_setzero_si128();
  for (; x + 16 <= n; x += 16) {
    // Most pixels fail the low test: sixteen zero magnitudes (all bits clear, as the
    // magnitude rows never hold -0) give sixteen zero flags without the tests.
    const __m128i any = _mm_or_si128(_mm_or_si128(ownLoadM(mid + x), ownLoadM(mid + x + 4)),
                                     _mm_or_si128(ownLoadM(mid + x + 8), ownLoadM(mid + x + 12)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(any, z)) == 0xFFFF) {
      ownStore(map + x, z);
      continue;
    }
    __m128i f[4];
    for (int k = 0; k < 4; ++k) {
      const int o = x + 4 * k;
      f[k] = ownSuppress4(dx + o, dy + o, up + o, mid + o, down + o, vh);
    }
    ownStore(map + x, _mm_packus_epi16(_mm_packs_epi32(f[0], f[1]), _mm_packs_epi32(f[2], f[3])));
  }
  ownCannySuppressRow(dx, dy, up, mid, down, map, x, n, high);
}

}  // namespace

namespace {

// Eight 16-bit magnitudes, biased by 0x8000 so that signed compares order them.
inline __m128i ownLoadBiased(const vnx16u* p) { return _mm_xor_si128(ownLoad(p), _mm_set1_epi16(-32768)); }
inline __m128 ownWidenLo(__m128i v) { return _mm_cvtepi32_ps(_mm_unpacklo_epi16(v, _mm_setzero_si128())); }
inline __m128 ownWidenHi(__m128i v) { return _mm_cvtepi32_ps(_mm_unpackhi_epi16(v, _mm_setzero_si128())); }
inline __m128i ownLess8(__m128 alo, __m128 ahi, __m128 blo, __m128 bhi) {
  return _mm_packs_epi32(_mm_castps_si128(_mm_cmplt_ps(alo, blo)), _mm_castps_si128(_mm_cmplt_ps(ahi, bhi)));
}

// Flags of eight pixels as 16-bit lanes, the tests of ownSuppress4 on 16-bit magnitudes;
// the direction tests still take |dx| and |dy| as floats.
inline __m128i ownSuppress8(const vnx16s* dx, const vnx16s* dy, const vnx16u* up, const vnx16u* mid,
                            const vnx16u* down, __m128i high) {
  const __m128i m = ownLoadBiased(mid), a = ownLoad(dx), b = ownLoad(dy);
  const __m128i ua = ownAbs16(a), ub = ownAbs16(b);
  const __m128 axl = ownWidenLo(ua), axh = ownWidenHi(ua), ayl = ownWidenLo(ub), ayh = ownWidenHi(ub);
  const __m128 t22 = _mm_set1_ps(kOwnTan22), t67 = _mm_set1_ps(kOwnTan67);
  const __m128i horiz = ownLess8(ayl, ayh, _mm_mul_ps(axl, t22), _mm_mul_ps(axh, t22));
  const __m128i vert = ownLess8(_mm_mul_ps(axl, t67), _mm_mul_ps(axh, t67), ayl, ayh);
  const __m128i differ = _mm_srai_epi16(_mm_xor_si128(a, b), 15);
  auto gt = [](__m128i x, __m128i y) { return _mm_cmpgt_epi16(x, y); };
  const __m128i keepH = _mm_andnot_si128(gt(ownLoadBiased(mid + 1), m), gt(m, ownLoadBiased(mid - 1)));
  const __m128i keepV = _mm_andnot_si128(gt(ownLoadBiased(down), m), gt(m, ownLoadBiased(up)));
  const __m128i keepSame = _mm_and_si128(gt(m, ownLoadBiased(up - 1)), gt(m, ownLoadBiased(down + 1)));
  const __m128i keepDiff = _mm_and_si128(gt(m, ownLoadBiased(down - 1)), gt(m, ownLoadBiased(up + 1)));
  __m128i keep = ownBlend(horiz, keepH, ownBlend(vert, keepV, ownBlend(differ, keepDiff, keepSame)));
  keep = _mm_and_si128(keep, gt(m, _mm_set1_epi16(-32768)));  // m > 0
  const __m128i seed = _mm_and_si128(keep, gt(m, high));
  return _mm_or_si128(_mm_andnot_si128(seed, _mm_and_si128(keep, _mm_set1_epi16(kOwnCannyCandidate))),
                      _mm_and_si128(seed, _mm_set1_epi16(kOwnCannyEdge)));
}

}  // namespace

// A high threshold of -1 keeps the same seeds as 0, since kept pixels have m > 0.
void ownCannySuppressRow_sse2(const vnx16s* dx, const vnx16s* dy, const vnx16u* up, const vnx16u* mid,
                              const vnx16u* down, vnx8u* map, int n, int high) {
  const __m128i vh = _mm_set1_epi16(static_cast<short>(std::max(high, 0) ^ 0x8000));
  const __m128i z = _mm_setzero_si128();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    // Most pixels fail the low test: sixteen zero magnitudes give sixteen zero flags.
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_or_si128(ownLoad(mid + x), ownLoad(mid + x + 8)), z)) == 0xFFFF) {
      ownStore(map + x, z);
      continue;
    }
    ownStore(map + x, _mm_packus_epi16(ownSuppress8(dx + x, dy + x, up + x, mid + x, down + x, vh),
                                       ownSuppress8(dx + x + 8, dy + x + 8, up + x + 8, mid + x + 8, down + x + 8, vh)));
  }
  ownCannySuppressRow(dx, dy, up, mid, down, map, x, n, high);
}
void ownCannySuppressRow_sse2(const vnx32f* dx, const vnx32f* dy, const float* up, const float* mid,
                              const float* down, vnx8u* map, int n, float high) {
  ownCannySuppressVectors(dx, dy, up, mid, down, map, n, high);
}
