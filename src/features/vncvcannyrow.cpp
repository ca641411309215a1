// Canny's row kernels: gradient magnitude with the low test, and non-maximum suppression
// along the gradient direction, eight (16s) or four (32f) pixels at a time with the tests
// as lane masks; suppression also writes the output row's seeds and pushes them.
#include <algorithm>
#include <cmath>

#include "features.h"
#include "simd.h"

// 16s: |dx| + |dy| on 16 unsigned bits (|-32768| = 32768), saturated at 65535, kept as
// its key (m - low) - 32768 when m > low (low already truncated toward zero, 0 .. 65535).
void ownCannyMagnitudeRow(const vnx16s* dx, const vnx16s* dy, vnx16s* m, int x0, int n, int low) {
  for (int x = x0; x < n; ++x) {
    const int a = std::min(std::abs(int(dx[x])) + std::abs(int(dy[x])), 65535);
    m[x] = static_cast<vnx16s>((a > low ? a - low : 0) - 32768);
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
// |v| of eight signed words as unsigned words: max(v, -v), where -(-32768) wraps to
// -32768, which is 32768 unsigned.
inline __m128i ownAbs16(__m128i v) { return _mm_max_epi16(v, _mm_sub_epi16(_mm_setzero_si128(), v)); }
}  // namespace

// The key is (a - low, saturated at 0) with its top bit flipped: a - low > 0 exactly when
// a > low.
void ownCannyMagnitudeRow_sse2(const vnx16s* dx, const vnx16s* dy, vnx16s* m, int n, int low) {
  const __m128i t = _mm_set1_epi16(static_cast<short>(low)), bias = _mm_set1_epi16(-32768);
  int x = 0;
#pragma GCC unroll 2
  for (; x + 8 <= n; x += 8) {
    const __m128i a = _mm_adds_epu16(ownAbs16(ownLoad(dx + x)), ownAbs16(ownLoad(dy + x)));
    ownStore(m + x, _mm_xor_si128(_mm_subs_epu16(a, t), bias));
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
    if (m > ownCannyMagnitude<D>::kNone) {
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
template void ownCannySuppressRow(const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*, vnx8u*,
                                  int, int, int);
template void ownCannySuppressRow(const vnx32f*, const vnx32f*, const float*, const float*, const float*, vnx8u*,
                                  int, int, float);

namespace {

inline __m128i ownBlend(__m128i sel, __m128i a, __m128i b) {
  return _mm_or_si128(_mm_and_si128(sel, a), _mm_andnot_si128(sel, b));
}
// The direction tests pick one of the four keep masks: nearly horizontal, nearly
// vertical, else the diagonal of the signs (the two axis tests never hold together).
inline __m128i ownKeep(__m128i horiz, __m128i vert, __m128i differ, __m128i keepH, __m128i keepV, __m128i keepSame,
                       __m128i keepDiff) {
  return ownBlend(horiz, keepH, ownBlend(vert, keepV, ownBlend(differ, keepDiff, keepSame)));
}
// Flags of kept pixels in the low byte of each lane (`lowByte` masks it: 16- or 32-bit
// lanes): 0x80 a candidate, 0x40 a seed (above high); 0 where not kept. Every keep test
// has a strict "m >" against a neighbour that is at least the "no candidate" value, so a
// pixel without a candidate magnitude is never kept.
inline __m128i ownFlags(__m128i keep, __m128i aboveHigh, __m128i lowByte) {
  const __m128i both = _mm_and_si128(_mm_set1_epi8(static_cast<char>(kOwnCannyCandidate | kOwnCannyEdge)), lowByte);
  const __m128i cand = _mm_and_si128(_mm_set1_epi8(static_cast<char>(kOwnCannyCandidate)), lowByte);
  return _mm_and_si128(keep, _mm_xor_si128(_mm_and_si128(aboveHigh, both), cand));
}

// Flags of four pixels as 32-bit lanes, from float magnitudes.
inline __m128i ownSuppress4(const vnx32f* dx, const vnx32f* dy, const float* up, const float* mid, const float* down,
                            __m128 high) {
  auto gt = [](const float* a, const float* b) { return _mm_castps_si128(_mm_cmpgt_ps(_mm_loadu_ps(a), _mm_loadu_ps(b))); };
  const __m128 x = _mm_loadu_ps(dx), y = _mm_loadu_ps(dy), ax = ownAbsPs(x), ay = ownAbsPs(y);
  const __m128i horiz = _mm_castps_si128(_mm_cmplt_ps(ay, _mm_mul_ps(ax, _mm_set1_ps(kOwnTan22))));
  const __m128i vert = _mm_castps_si128(_mm_cmplt_ps(_mm_mul_ps(ax, _mm_set1_ps(kOwnTan67)), ay));
  const __m128i differ = _mm_srai_epi32(_mm_castps_si128(_mm_xor_ps(x, y)), 31);
  const __m128i keep = ownKeep(horiz, vert, differ, _mm_andnot_si128(gt(mid + 1, mid), gt(mid, mid - 1)),
                               _mm_andnot_si128(gt(down, mid), gt(mid, up)),
                               _mm_and_si128(gt(mid, up - 1), gt(mid, down + 1)),
                               _mm_and_si128(gt(mid, down - 1), gt(mid, up + 1)));
  return ownFlags(keep, _mm_castps_si128(_mm_cmpgt_ps(_mm_loadu_ps(mid), high)), _mm_set1_epi32(0xFF));
}

// Direction masks of eight pixels from |dx| and |dy| as unsigned words.
struct ownDirections {
  __m128i horiz, vert;
};
// The float tests: ay < ax * tan 22.5, ax * tan 67.5 < ay.
inline __m128 ownWidenLo(__m128i v) { return _mm_cvtepi32_ps(_mm_unpacklo_epi16(v, _mm_setzero_si128())); }
inline __m128 ownWidenHi(__m128i v) { return _mm_cvtepi32_ps(_mm_unpackhi_epi16(v, _mm_setzero_si128())); }
inline __m128i ownLess8(__m128 alo, __m128 ahi, __m128 blo, __m128 bhi) {
  return _mm_packs_epi32(_mm_castps_si128(_mm_cmplt_ps(alo, blo)), _mm_castps_si128(_mm_cmplt_ps(ahi, bhi)));
}
inline ownDirections ownDirectionsFloat(__m128i ua, __m128i ub) {
  const __m128 axl = ownWidenLo(ua), axh = ownWidenHi(ua), ayl = ownWidenLo(ub), ayh = ownWidenHi(ub);
  const __m128 t22 = _mm_set1_ps(kOwnTan22), t67 = _mm_set1_ps(kOwnTan67);
  return {ownLess8(ayl, ayh, _mm_mul_ps(axl, t22), _mm_mul_ps(axh, t22)),
          ownLess8(_mm_mul_ps(axl, t67), _mm_mul_ps(axh, t67), ayl, ayh)};
}
// The same tests in 16-bit integers while every ax is at most 1392 (3x3 Sobel derivatives
// of 8-bit images stay below 1021): with q = (ax * 27146) >> 16, ay < ax * tan 22.5 is
// ay <= q and ax * tan 67.5 < ay is ay > 2 * ax + q, for every ax from 1 to 1392 and
// every ay (checked for each such ax when this unit compiles). At ax = 0 the first gives
// "horizontal" for ay = 0, where the float test does not; dx = dy = 0 has no magnitude,
// so that pixel is never kept either way.
constexpr int kOwnCannyFixedMaxAx = 1392, kOwnCannyTanQ16 = 27146;
constexpr bool ownFixedDirectionsHold() {
  for (int ax = 1; ax <= kOwnCannyFixedMaxAx; ++ax) {
    const int q = (ax * kOwnCannyTanQ16) >> 16;
    const float p22 = float(ax) * kOwnTan22, p67 = float(ax) * kOwnTan67;
    // Both tests are monotone in ay: checking each side of the boundary suffices.
    if (!(float(q) < p22) || float(q + 1) < p22) return false;
    if (!(p67 < float(2 * ax + q + 1)) || p67 < float(2 * ax + q)) return false;
  }
  return true;
}
static_assert(ownFixedDirectionsHold(), "the integer direction tests must equal the float ones");
inline ownDirections ownDirectionsFixed(__m128i ua, __m128i ub) {
  const __m128i q = _mm_mulhi_epu16(ua, _mm_set1_epi16(static_cast<short>(kOwnCannyTanQ16))), z = _mm_setzero_si128();
  const __m128i notVert = _mm_cmpeq_epi16(_mm_subs_epu16(ub, _mm_add_epi16(_mm_add_epi16(ua, ua), q)), z);
  return {_mm_cmpeq_epi16(_mm_subs_epu16(ub, q), z), _mm_xor_si128(notVert, _mm_set1_epi16(-1))};
}

// Flags of eight pixels as 16-bit lanes, from magnitude keys, the derivatives (for their
// signs) and the direction masks.
inline __m128i ownSuppress8(__m128i a, __m128i b, ownDirections dir, const vnx16s* up, const vnx16s* mid,
                            const vnx16s* down, __m128i high) {
  const __m128i differ = _mm_srai_epi16(_mm_xor_si128(a, b), 15);
  const __m128i m = ownLoad(mid);
  auto gt = [&m](const vnx16s* p) { return _mm_cmpgt_epi16(m, ownLoad(p)); };
  auto ge = [&m](const vnx16s* p) { return _mm_cmpgt_epi16(ownLoad(p), m); };  // negated: p > m
  auto gtBoth = [&m](const vnx16s* p, const vnx16s* q) {
    return _mm_cmpgt_epi16(m, _mm_max_epi16(ownLoad(p), ownLoad(q)));
  };
  const __m128i keep = ownKeep(dir.horiz, dir.vert, differ, _mm_andnot_si128(ge(mid + 1), gt(mid - 1)),
                               _mm_andnot_si128(ge(down), gt(up)), gtBoth(up - 1, down + 1), gtBoth(down - 1, up + 1));
  return ownFlags(keep, _mm_cmpgt_epi16(m, high), _mm_set1_epi16(0xFF));
}

}  // namespace

namespace {

// Sixteen flags into the map, their seeds into the output row (255) and onto the stack.
template <class E>
inline void ownEmit16(__m128i flags, vnx8u* map, vnx8u* dst, int x, ownCannySeeds<E>& seeds) {
  ownStore(map + x, flags);
  ownCannyOutput16(flags, dst, x, seeds);
}
// The last columns from the reference, then their output bytes and seeds.
template <class E, class D, class M, class T>
void ownSuppressTail(const D* dx, const D* dy, const M* up, const M* mid, const M* down, vnx8u* map, vnx8u* dst,
                     int x, int n, T high, ownCannySeeds<E>& seeds) {
  ownCannySuppressRow(dx, dy, up, mid, down, map, x, n, high);
  ownCannyOutputTail(map, dst, x, n, seeds);
}

}  // namespace

// Most pixels fail the low test: sixteen "no candidate" magnitudes give sixteen zero
// flags without the tests.
template <class E>
void ownCannySuppressRow_sse2(const vnx16s* dx, const vnx16s* dy, const vnx16s* up, const vnx16s* mid,
                              const vnx16s* down, vnx8u* map, vnx8u* dst, int n, int high, ownCannySeeds<E>& seeds) {
  const __m128i vh = _mm_set1_epi16(static_cast<short>(high)), none = _mm_set1_epi16(-32768);
  const __m128i z = _mm_setzero_si128(), fixedMax = _mm_set1_epi16(kOwnCannyFixedMaxAx);
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_max_epi16(ownLoad(mid + x), ownLoad(mid + x + 8)), none)) == 0xFFFF) {
      ownStore(map + x, z);
      ownStore(dst + x, z);
      continue;
    }
    __m128i f[2];
    for (int h = 0; h < 2; ++h) {  // each half alone, as often only one has candidates
      const int o = x + 8 * h;
      f[h] = z;
      if (_mm_movemask_epi8(_mm_cmpeq_epi16(ownLoad(mid + o), none)) == 0xFFFF) continue;
      const __m128i a = ownLoad(dx + o), b = ownLoad(dy + o), ua = ownAbs16(a), ub = ownAbs16(b);
      const bool fixed = _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_subs_epu16(ua, fixedMax), z)) == 0xFFFF;
      const ownDirections dir = fixed ? ownDirectionsFixed(ua, ub) : ownDirectionsFloat(ua, ub);
      f[h] = ownSuppress8(a, b, dir, up + o, mid + o, down + o, vh);
    }
    ownEmit16(_mm_packus_epi16(f[0], f[1]), map, dst, x, seeds);
  }
  ownSuppressTail(dx, dy, up, mid, down, map, dst, x, n, high, seeds);
}
// Float magnitudes never hold -0, so sixteen zero magnitudes have all bits clear.
template <class E>
void ownCannySuppressRow_sse2(const vnx32f* dx, const vnx32f* dy, const float* up, const float* mid,
                              const float* down, vnx8u* map, vnx8u* dst, int n, float high, ownCannySeeds<E>& seeds) {
  const __m128 vh = _mm_set1_ps(high);
  const __m128i z = _mm_setzero_si128();
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    const __m128i any = _mm_or_si128(_mm_or_si128(ownLoad(mid + x), ownLoad(mid + x + 4)),
                                     _mm_or_si128(ownLoad(mid + x + 8), ownLoad(mid + x + 12)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(any, z)) == 0xFFFF) {
      ownStore(map + x, z);
      ownStore(dst + x, z);
      continue;
    }
    __m128i f[4];
    for (int k = 0; k < 4; ++k) {
      const int o = x + 4 * k;
      f[k] = ownSuppress4(dx + o, dy + o, up + o, mid + o, down + o, vh);
    }
    ownEmit16(_mm_packus_epi16(_mm_packs_epi32(f[0], f[1]), _mm_packs_epi32(f[2], f[3])), map, dst, x, seeds);
  }
  ownSuppressTail(dx, dy, up, mid, down, map, dst, x, n, high, seeds);
}

template void ownCannySuppressRow_sse2(const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*,
                                       vnx8u*, vnx8u*, int, int, ownCannySeeds<std::uint16_t>&);
template void ownCannySuppressRow_sse2(const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*, const vnx16s*,
                                       vnx8u*, vnx8u*, int, int, ownCannySeeds<std::uint32_t>&);
template void ownCannySuppressRow_sse2(const vnx32f*, const vnx32f*, const float*, const float*, const float*, vnx8u*,
                                       vnx8u*, int, float, ownCannySeeds<std::uint16_t>&);
template void ownCannySuppressRow_sse2(const vnx32f*, const vnx32f*, const float*, const float*, const float*, vnx8u*,
                                       vnx8u*, int, float, ownCannySeeds<std::uint32_t>&);
