// Internals of the edges-and-features family that the kernel tests reach.
#pragma once

#include <emmintrin.h>

#include "own.h"

// Fast arctangent: four angles in degrees, and a row through the same vector code.
__m128 ownFastArctan4(__m128 y, __m128 x);
void ownFastArctanRow(const vnx32f* y, const vnx32f* x, vnx32f* dst, int len);

// Colour gradient norms, by their public codes.
enum class ownColorNorm : int { Max = 0, L1 = 1, L2 = 2 };
template <class T>
void ownGradientColorRow(const T* src, T* dst, int x0, int n, ownColorNorm norm);

// Canny. The work buffer: a candidate map of (w + 2) x (h + 2) bytes (0x80 marks a pixel
// kept by suppression above the low threshold and not yet in the output, 0x40 a pixel
// already 255 in the output: a seed, kept above the high threshold, or a candidate the
// hysteresis reached; the outer ring is never marked), an edge stack of (row, column) entries in
// map coordinates, 16-bit fields while w + 2 and h + 2 are below 65535, and a ring of
// magnitude rows of w + 6 elements (32-bit integers for 16s, floats for 32f).
constexpr vnx8u kOwnCannyCandidate = 0x80, kOwnCannyEdge = 0x40;
// tan 22.5 and tan 67.5 degrees as the suppression uses them (bits 0x3ED413CD, 0x401A827A).
constexpr float kOwnTan22 = 0x1.a8279ap-2f, kOwnTan67 = 0x1.3504f4p+1f;
std::int64_t ownCannyBufferBytes(vnxiSize roi);
bool ownCannySmallStack(vnxiSize roi);
// Magnitude rows, columns x0 .. n - 1. 32f: m = |dx| + |dy| where m >= low, 0 elsewhere.
// 16s: m = |dx| + |dy| on 16 unsigned bits, saturated; the row keeps the key
// (m - low) - 32768 where m > low, -32768 elsewhere (low from 0 to 65535: a threshold of
// -1 passes the same pixels as 0, since a zero magnitude is never a candidate). Keys keep
// the order of the magnitudes that pass and put every other one below them, so suppression
// compares eight keys at once with signed 16-bit compares, and "m > high" is "key > high
// key" with the high key (max(high, 0) - low) - 32768.
template <class D>
struct ownCannyMagnitude;  // the element of a magnitude row and its "no candidate" value
template <>
struct ownCannyMagnitude<vnx16s> {
  using type = vnx16s;
  static constexpr type kNone = -32768;
};
template <>
struct ownCannyMagnitude<vnx32f> {
  using type = vnx32f;
  static constexpr type kNone = 0.0f;
};
void ownCannyMagnitudeRow(const vnx16s* dx, const vnx16s* dy, vnx16s* m, int x0, int n, int low);
void ownCannyMagnitudeRow(const vnx32f* dx, const vnx32f* dy, float* m, int x0, int n, float low);
void ownCannyMagnitudeRow_sse2(const vnx16s* dx, const vnx16s* dy, vnx16s* m, int n, int low);
void ownCannyMagnitudeRow_sse2(const vnx32f* dx, const vnx32f* dy, float* m, int n, float low);
// One stack entry: (row, column) of the map.
template <class E>
struct ownCannyEntry {
  E row, col;
};
// Where a suppressed row's seeds go: pushed in column order on the stack from top `sp`
// as (row, column + 1); a null stack pushes nothing.
template <class E>
struct ownCannySeeds {
  ownCannyEntry<E>* stack;
  std::int64_t sp;
  E row;
};
// Sixteen output bytes from the map flags of columns x .. x + 15 (255 for the seeds,
// 0 elsewhere), the seeds pushed in column order.
template <class E>
inline void ownCannyOutput16(__m128i flags, vnx8u* dst, int x, ownCannySeeds<E>& seeds) {
  const __m128i seed = _mm_cmpeq_epi8(flags, _mm_set1_epi8(static_cast<char>(kOwnCannyEdge)));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), seed);
  if (!seeds.stack) return;
  for (unsigned bits = static_cast<unsigned>(_mm_movemask_epi8(seed)); bits; bits &= bits - 1)
    seeds.stack[seeds.sp++] = {seeds.row, static_cast<E>(x + __builtin_ctz(bits) + 1)};
}
// The same for columns x .. n - 1, one at a time.
template <class E>
inline void ownCannyOutputTail(const vnx8u* map, vnx8u* dst, int x, int n, ownCannySeeds<E>& seeds) {
  for (; x < n; ++x) {
    dst[x] = map[x] == kOwnCannyEdge ? 255 : 0;
    if (seeds.stack && dst[x]) seeds.stack[seeds.sp++] = {seeds.row, static_cast<E>(x + 1)};
  }
}
// Suppression of one row: map[x] for x0 .. n - 1 from the magnitude rows above, at and
// below (columns -1 and n readable), the derivatives and the high threshold (16s: the
// high key).
template <class D, class M, class T>
void ownCannySuppressRow(const D* dx, const D* dy, const M* up, const M* mid, const M* down, vnx8u* map, int x0,
                         int n, T high);
// The same over the whole row, which also writes the output row (255 for the seeds, 0
// elsewhere) and pushes the seeds.
template <class E>
void ownCannySuppressRow_sse2(const vnx16s* dx, const vnx16s* dy, const vnx16s* up, const vnx16s* mid,
                              const vnx16s* down, vnx8u* map, vnx8u* dst, int n, int high, ownCannySeeds<E>& seeds);
template <class E>
void ownCannySuppressRow_sse2(const vnx32f* dx, const vnx32f* dy, const float* up, const float* mid,
                              const float* down, vnx8u* map, vnx8u* dst, int n, float high, ownCannySeeds<E>& seeds);

// Hough lines. Gathered points: x | y << ownHoughShift(width) for every non-zero pixel,
// in raster order. Votes of a theta row: the rho index of every point, rounded to
// nearest (ties to even) from float(x) * cos + float(y) * sin (each product in float),
// plus `offset`, clamped to the row's counters 0 .. nCounters - 1 (the ring row starts
// two counters before rho index 0) unless no index can leave them.
int ownHoughShift(int width);
struct ownHoughTheta {
  float cosT;         // cos(theta) / rhoStep
  float sinT;         // sin(theta) / rhoStep
  std::int32_t* acc;  // the ring row's counters
};
// Two theta rows at once; InRange leaves the clamp out.
enum class ownHoughIndex { Clamped, InRange };
template <ownHoughIndex kIndex>
void ownHoughVotePair_sse2(const std::uint32_t* points, int n, int shift, const ownHoughTheta& a,
                           const ownHoughTheta& b, int offset, int nCounters);
// Derived counts: nRho = (2 * (w + h) + 1) / rhoStep in float, nTheta = pi / thetaStep in
// double, both truncated; a count past the int range is INT32_MIN (the processor's
// out-of-range conversion), which the size query wraps as 32-bit arithmetic.
std::int32_t ownHoughRhoCount(vnxiSize roi, float rhoStep);
std::int32_t ownHoughThetaCount(float thetaStep);

// Corner measures. Row kernels of the fused pass: products of the derivatives, box sums
// along x (taps summed left to right), box sums down the rows (top to bottom) times the
// box scale, then the eigen solution per pixel.
// Products of columns 0 .. n - 1 into xx, xy, yy, each padded by `reach` replicated
// columns on both sides (xx[-reach] .. xx[n - 1 + reach]).
template <class D>
void ownCornerProductsRow(const D* dx, const D* dy, float* xx, float* xy, float* yy, int x0, int n, int reach);
template <class D>
void ownCornerProductsRow_sse2(const D* dx, const D* dy, float* xx, float* xy, float* yy, int n, int reach);
// h[x] = ((p[x - r] + p[x - r + 1]) + ...) + p[x + r] for a window of 2r + 1.
void ownBoxRowSums(const float* p, float* h, int x0, int n, int window);
void ownBoxRowSums_sse2(const float* p, float* h, int n, int window);
// m[x] = (((rows[0][x] + rows[1][x]) + ...) + rows[window - 1][x]) * scale.
void ownBoxColumnSums(const float* const* rows, float* m, int x0, int n, int window, float scale);
void ownBoxColumnSums_sse2(const float* const* rows, float* m, int n, int window, float scale);
// The box means and the smaller eigenvalue in one pass over the rows of box sums, the
// half scale h = s / 2 applied first: a = mxx * h, b = mxy * h, c = myy * h,
// l2 = (a + c) - sqrt((a - c) * (a - c) + 4 * (b * b)).
void ownMinEigenColumns(const float* const* xx, const float* const* xy, const float* const* yy, float* dst, int x0,
                        int n, int window, float boxScale, float half);
void ownMinEigenColumns_sse2(const float* const* xx, const float* const* xy, const float* const* yy, float* dst,
                             int n, int window, float boxScale, float half);
// l1, l2 and the two unit eigenvectors per pixel (six floats), scale s, vector sign g.
void ownEigenValsVecsRow(const float* mxx, const float* mxy, const float* myy, float* dst, int x0, int n, float s,
                         float sign);
