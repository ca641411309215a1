// Row kernels of the corner measures: derivative products, box sums along and across
// rows in the lowpass filter's order, and the closed-form 2x2 eigen solutions.
#include <algorithm>
#include <cfloat>
#include <cmath>

#include "features.h"
#include "simd.h"
#include "traits.h"

template <class D>
void ownCornerProductsRow(const D* dx, const D* dy, float* xx, float* xy, float* yy, int x0, int n, int reach) {
  for (int x = x0; x < n; ++x) {
    const float a = static_cast<float>(dx[x]), b = static_cast<float>(dy[x]);
    xx[x] = a * a;
    xy[x] = a * b;
    yy[x] = b * b;
  }
  if (x0 > n || n == 0) return;
  for (int i = 1; i <= reach; ++i) {  // the replicated border of the product planes
    xx[-i] = xx[0], xy[-i] = xy[0], yy[-i] = yy[0];
    xx[n - 1 + i] = xx[n - 1], xy[n - 1 + i] = xy[n - 1], yy[n - 1 + i] = yy[n - 1];
  }
}

namespace {
inline __m128 ownLoad4f(const vnx16s* p) {
  const __m128i v = ownLoad64(p);
  return _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(v, v), 16));
}
inline __m128 ownLoad4f(const vnx32f* p) { return _mm_loadu_ps(p); }
}  // namespace

template <class D>
void ownCornerProductsRow_sse2(const D* dx, const D* dy, float* xx, float* xy, float* yy, int n, int reach) {
  int x = 0;
  for (; x + 4 <= n; x += 4) {
    const __m128 a = ownLoad4f(dx + x), b = ownLoad4f(dy + x);
    _mm_storeu_ps(xx + x, _mm_mul_ps(a, a));
    _mm_storeu_ps(xy + x, _mm_mul_ps(a, b));
    _mm_storeu_ps(yy + x, _mm_mul_ps(b, b));
  }
  ownCornerProductsRow(dx, dy, xx, xy, yy, x, n, reach);
}
template void ownCornerProductsRow(const vnx16s*, const vnx16s*, float*, float*, float*, int, int, int);
template void ownCornerProductsRow(const vnx32f*, const vnx32f*, float*, float*, float*, int, int, int);
template void ownCornerProductsRow_sse2(const vnx16s*, const vnx16s*, float*, float*, float*, int, int);
template void ownCornerProductsRow_sse2(const vnx32f*, const vnx32f*, float*, float*, float*, int, int);

void ownBoxRowSums(const float* p, float* h, int x0, int n, int window) {
  const int r = window / 2;
  for (int x = x0; x < n; ++x) {
    float s = p[x - r];
    for (int i = 1; i < window; ++i) s += p[x - r + i];
    h[x] = s;
  }
}


namespace {
inline float ownMinEigenPixel(float mxx, float mxy, float myy, float half) {
  const float a = mxx * half, b = mxy * half, c = myy * half;
  return ownCanonicalNaN((a + c) - std::sqrt((a - c) * (a - c) + 4.0f * (b * b)));
}
inline float ownBoxColumnSum(const float* const* rows, int x, int window, float scale) {
  float s = rows[0][x];
  for (int i = 1; i < window; ++i) s += rows[i][x];
  return s * scale;
}
inline __m128 ownBoxColumnSum4(const float* const* rows, int x, int window, __m128 scale) {
  __m128 s = _mm_loadu_ps(rows[0] + x);
  for (int i = 1; i < window; ++i) s = _mm_add_ps(s, _mm_loadu_ps(rows[i] + x));
  return _mm_mul_ps(s, scale);
}
inline __m128 ownMinEigen4(__m128 mxx, __m128 mxy, __m128 myy, __m128 h) {
  const __m128 a = _mm_mul_ps(mxx, h), b = _mm_mul_ps(mxy, h), c = _mm_mul_ps(myy, h);
  const __m128 d = _mm_sub_ps(a, c);
  const __m128 root = _mm_sqrt_ps(_mm_add_ps(_mm_mul_ps(d, d), _mm_mul_ps(_mm_set1_ps(4.0f), _mm_mul_ps(b, b))));
  return ownCanonicalNaN(_mm_sub_ps(_mm_add_ps(a, c), root));
}
}  // namespace

void ownBoxColumnSums(const float* const* rows, float* m, int x0, int n, int window, float scale) {
  for (int x = x0; x < n; ++x) m[x] = ownBoxColumnSum(rows, x, window, scale);
}
void ownBoxColumnSums_sse2(const float* const* rows, float* m, int n, int window, float scale) {
  const __m128 vs = _mm_set1_ps(scale);
  int x = 0;
  for (; x + 4 <= n; x += 4) _mm_storeu_ps(m + x, ownBoxColumnSum4(rows, x, window, vs));
  ownBoxColumnSums(rows, m, x, n, window, scale);
}

void ownMinEigenColumns(const float* const* xx, const float* const* xy, const float* const* yy, float* dst, int x0,
                        int n, int window, float boxScale, float half) {
  for (int x = x0; x < n; ++x)
    dst[x] = ownMinEigenPixel(ownBoxColumnSum(xx, x, window, boxScale), ownBoxColumnSum(xy, x, window, boxScale),
                              ownBoxColumnSum(yy, x, window, boxScale), half);
}
namespace {
// The window as a constant, so the sums unroll.
template <int W>
int ownMinEigenColumnVectors(const float* const* xx, const float* const* xy, const float* const* yy, float* dst,
                             int n, float boxScale, float half) {
  const __m128 bs = _mm_set1_ps(boxScale), h = _mm_set1_ps(half);
  int x = 0;
  for (; x + 4 <= n; x += 4)
    _mm_storeu_ps(dst + x, ownMinEigen4(ownBoxColumnSum4(xx, x, W, bs), ownBoxColumnSum4(xy, x, W, bs),
                                        ownBoxColumnSum4(yy, x, W, bs), h));
  return x;
}
template <int W>
int ownBoxRowVectors(const float* p, float* h, int n) {
  constexpr int r = W / 2;
  int x = 0;
  for (; x + 4 <= n; x += 4) {
    __m128 s = _mm_loadu_ps(p + x - r);
    for (int i = 1; i < W; ++i) s = _mm_add_ps(s, _mm_loadu_ps(p + x - r + i));
    _mm_storeu_ps(h + x, s);
  }
  return x;
}
}  // namespace

void ownBoxRowSums_sse2(const float* p, float* h, int n, int window) {
  const int x = window == 3 ? ownBoxRowVectors<3>(p, h, n) : ownBoxRowVectors<5>(p, h, n);
  ownBoxRowSums(p, h, x, n, window);
}

void ownMinEigenColumns_sse2(const float* const* xx, const float* const* xy, const float* const* yy, float* dst,
                             int n, int window, float boxScale, float half) {
  const int x = window == 3 ? ownMinEigenColumnVectors<3>(xx, xy, yy, dst, n, boxScale, half)
                            : ownMinEigenColumnVectors<5>(xx, xy, yy, dst, n, boxScale, half);
  ownMinEigenColumns(xx, xy, yy, dst, x, n, window, boxScale, half);
}
// p = s * Mxx, q = s * Mxy, r = s * Myy; t = 0.01 * max(p, r); ill-conditioned (min(p, r)
// < t or p * r - q * q < t) gives six zeros, nearly diagonal (|q| < t) the axes, else the
// vectors (g, l1 - p) and (g, l2 - p) with g = q * sign, over their lengths (at least
// the float epsilon).
void ownEigenValsVecsRow(const float* mxx, const float* mxy, const float* myy, float* dst, int x0, int n, float s,
                         float sign) {
  for (int x = x0; x < n; ++x) {
    const float p = s * mxx[x], q = s * mxy[x], r = s * myy[x];
    const float t = 0.01f * std::max(p, r);
    const float d = std::sqrt(4.0f * q * q + (p - r) * (p - r));
    const float l1 = (p + r + d) * 0.5f, l2 = (p + r - d) * 0.5f;
    float* o = dst + 6 * std::int64_t(x);
    if (std::min(p, r) < t || p * r - q * q < t) {
      std::fill(o, o + 6, 0.0f);
    } else if (std::fabs(q) < t) {
      o[0] = l1, o[1] = l2, o[2] = 1.0f, o[3] = 0.0f, o[4] = 0.0f, o[5] = 1.0f;
    } else {
      const float g = q * sign;
      o[0] = l1, o[1] = l2;
      const float u1 = l1 - p, u2 = l2 - p;
      const float n1 = std::max(std::sqrt(g * g + u1 * u1), FLT_EPSILON);
      const float n2 = std::max(std::sqrt(g * g + u2 * u2), FLT_EPSILON);
      o[2] = g / n1, o[3] = u1 / n1, o[4] = g / n2, o[5] = u2 / n2;
    }
    for (int i = 0; i < 6; ++i) o[i] = ownCanonicalNaN(o[i]);
  }
}
