// Absolute differences of two images, or of an image and a constant.
#include "check.h"
#include "simd.h"
#include "traits.h"

#include <cstring>

namespace {

// |a - b| for one sample: exact for the integer types; for float the difference
// is rounded first and then its sign bit cleared (-0 becomes +0, NaN stays NaN).
template <class T>
inline T ownAbsDiff(T a, T b) {
  return a > b ? static_cast<T>(a - b) : static_cast<T>(b - a);
}
template <>
inline vnx32f ownAbsDiff(vnx32f a, vnx32f b) {
  const vnx32f d = a - b;
  std::uint32_t u;
  std::memcpy(&u, &d, 4);
  u &= 0x7fffffffu;
  vnx32f r;
  std::memcpy(&r, &u, 4);
  return r;
}

// Reference and tail: pixels x0 .. n - 1 of one row.
template <class T>
void ownAbsDiffRow(const T* s1, const T* s2, T* d, int x0, int n) {
  for (int x = x0; x < n; ++x) d[x] = ownAbsDiff(s1[x], s2[x]);
}
template <class T>
void ownAbsDiffCRow(const T* s, T v, T* d, int x0, int n) {
  for (int x = x0; x < n; ++x) d[x] = ownAbsDiff(s[x], v);
}

// Vector bodies: whole vectors of 16 bytes, the rest by the template.
// Each output is written once from inputs already read, so dst may alias a source.
void ownAbsDiffRow_sse2(const vnx8u* s1, const vnx8u* s2, vnx8u* d, int n) {
  int x = 0;
  for (; x + 32 <= n; x += 32) {
    const __m128i a0 = ownLoad(s1 + x), b0 = ownLoad(s2 + x);
    const __m128i a1 = ownLoad(s1 + x + 16), b1 = ownLoad(s2 + x + 16);
    ownStore(d + x, ownAbsDiffU8(a0, b0));
    ownStore(d + x + 16, ownAbsDiffU8(a1, b1));
  }
  for (; x + 16 <= n; x += 16) ownStore(d + x, ownAbsDiffU8(ownLoad(s1 + x), ownLoad(s2 + x)));
  ownAbsDiffRow(s1, s2, d, x, n);
}
void ownAbsDiffRow_sse2(const vnx16u* s1, const vnx16u* s2, vnx16u* d, int n) {
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    const __m128i r0 = ownAbsDiffU16(ownLoad(s1 + x), ownLoad(s2 + x));
    const __m128i r1 = ownAbsDiffU16(ownLoad(s1 + x + 8), ownLoad(s2 + x + 8));
    ownStore(d + x, r0);
    ownStore(d + x + 8, r1);
  }
  for (; x + 8 <= n; x += 8) ownStore(d + x, ownAbsDiffU16(ownLoad(s1 + x), ownLoad(s2 + x)));
  ownAbsDiffRow(s1, s2, d, x, n);
}
void ownAbsDiffRow_sse2(const vnx32f* s1, const vnx32f* s2, vnx32f* d, int n) {
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 r[4];
    for (int i = 0; i < 4; ++i) r[i] = ownAbsPs(_mm_sub_ps(_mm_loadu_ps(s1 + x + 4 * i), _mm_loadu_ps(s2 + x + 4 * i)));
    for (int i = 0; i < 4; ++i) _mm_storeu_ps(d + x + 4 * i, r[i]);
  }
  for (; x + 4 <= n; x += 4) _mm_storeu_ps(d + x, ownAbsPs(_mm_sub_ps(_mm_loadu_ps(s1 + x), _mm_loadu_ps(s2 + x))));
  ownAbsDiffRow(s1, s2, d, x, n);
}
void ownAbsDiffCRow_sse2(const vnx8u* s, vnx8u v, vnx8u* d, int n) {
  const __m128i vv = _mm_set1_epi8(static_cast<char>(v));
  int x = 0;
  for (; x + 16 <= n; x += 16) ownStore(d + x, ownAbsDiffU8(ownLoad(s + x), vv));
  ownAbsDiffCRow(s, v, d, x, n);
}
void ownAbsDiffCRow_sse2(const vnx16u* s, vnx16u v, vnx16u* d, int n) {
  const __m128i vv = _mm_set1_epi16(static_cast<short>(v));
  int x = 0;
  for (; x + 8 <= n; x += 8) ownStore(d + x, ownAbsDiffU16(ownLoad(s + x), vv));
  ownAbsDiffCRow(s, v, d, x, n);
}
void ownAbsDiffCRow_sse2(const vnx32f* s, vnx32f v, vnx32f* d, int n) {
  const __m128 vv = _mm_set1_ps(v);
  int x = 0;
  for (; x + 4 <= n; x += 4) _mm_storeu_ps(d + x, ownAbsPs(_mm_sub_ps(_mm_loadu_ps(s + x), vv)));
  ownAbsDiffCRow(s, v, d, x, n);
}

template <class T>
vnxStatus ownAbsDiff(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, T* pDst, int dstStep,
                     vnxiSize roi) {
  if (vnxStatus st = ownCheck({pSrc1, pSrc2, pDst}, roi,
                              {ownImg<T>(src1Step, roi.width), ownImg<T>(src2Step, roi.width),
                               ownImg<T>(dstStep, roi.width)}))
    return st;
  for (int y = 0; y < roi.height; ++y)
    ownAbsDiffRow_sse2(ownRow(pSrc1, src1Step, y), ownRow(pSrc2, src2Step, y), ownRow(pDst, dstStep, y),
                       roi.width);
  return vnxStatusOk;
}

template <class T>
vnxStatus ownAbsDiffC(const T* pSrc, int srcStep, T* pDst, int dstStep, vnxiSize roi, T value) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T>(srcStep, roi.width), ownImg<T>(dstStep, roi.width)}))
    return st;
  for (int y = 0; y < roi.height; ++y)
    ownAbsDiffCRow_sse2(ownRow(pSrc, srcStep, y), value, ownRow(pDst, dstStep, y), roi.width);
  return vnxStatusOk;
}

// The integer constants are clamped to the type's range, never rejected.
template <class T>
T ownClampValue(int v) {
  return v < 0 ? T(0) : v > ownTraits<T>::highest ? ownTraits<T>::highest : static_cast<T>(v);
}

}  // namespace

VNX_API vnxStatus vnxiAbsDiff_8u_C1R(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                     vnx8u* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiff_16u_C1R(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                      vnx16u* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiff_32f_C1R(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                      vnx32f* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiffC_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep, vnxiSize roiSize,
                                      int value) noexcept {
  return ownAbsDiffC(pSrc, srcStep, pDst, dstStep, roiSize, ownClampValue<vnx8u>(value));
}
VNX_API vnxStatus vnxiAbsDiffC_16u_C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                       vnxiSize roiSize, int value) noexcept {
  return ownAbsDiffC(pSrc, srcStep, pDst, dstStep, roiSize, ownClampValue<vnx16u>(value));
}
VNX_API vnxStatus vnxiAbsDiffC_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                       vnxiSize roiSize, vnx32f value) noexcept {
  return ownAbsDiffC(pSrc, srcStep, pDst, dstStep, roiSize, value);
}
