// Absolute differences of two images, or of an image and a constant.
#include <algorithm>
#include <cstring>

#include "check.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"

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

// One vector of 16 bytes: |a - b| lane by lane.
inline __m128i ownAbsDiffVec(__m128i a, __m128i b, vnx8u) { return ownAbsDiffU8(a, b); }
inline __m128i ownAbsDiffVec(__m128i a, __m128i b, vnx16u) { return ownAbsDiffU16(a, b); }
inline __m128i ownAbsDiffVec(__m128i a, __m128i b, vnx32f) {
  return _mm_castps_si128(ownAbsPs(_mm_sub_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b))));
}
inline __m128i ownSplat(vnx8u v) { return _mm_set1_epi8(static_cast<char>(v)); }
inline __m128i ownSplat(vnx16u v) { return _mm_set1_epi16(static_cast<short>(v)); }
inline __m128i ownSplat(vnx32f v) { return _mm_castps_si128(_mm_set1_ps(v)); }

// One row: d = |s1 - s2|, or |s1 - c| when Constant is set (s2 unused).
// The scalar template is the reference and does the pixels no whole vector
// covers. With `stream` the row first peels scalar pixels up to the first 16-byte
// aligned destination pixel and then writes with non-temporal stores; a
// destination that is not even aligned to its element size keeps ordinary stores.
// Each output is written once from inputs already read, so d may equal a source.
template <bool Constant, class T>
void ownAbsDiffRow(const T* s1, const T* s2, T c, T* d, int x0, int n) {
  for (int x = x0; x < n; ++x) d[x] = ownAbsDiff(s1[x], Constant ? c : s2[x]);
}
template <bool Constant, bool Stream, class T>
void ownAbsDiffVectors(const T* s1, const T* s2, T c, T* d, int x, int n) {
  constexpr int kLanes = 16 / sizeof(T);
  const __m128i vc = ownSplat(c);
  for (; x + 2 * kLanes <= n; x += 2 * kLanes) {
    const __m128i r0 = ownAbsDiffVec(ownLoad(s1 + x), Constant ? vc : ownLoad(s2 + x), T());
    const __m128i r1 = ownAbsDiffVec(ownLoad(s1 + x + kLanes), Constant ? vc : ownLoad(s2 + x + kLanes), T());
    ownStore(d + x, r0, Stream);
    ownStore(d + x + kLanes, r1, Stream);
  }
  for (; x + kLanes <= n; x += kLanes)
    ownStore(d + x, ownAbsDiffVec(ownLoad(s1 + x), Constant ? vc : ownLoad(s2 + x), T()), Stream);
  ownAbsDiffRow<Constant>(s1, s2, c, d, x, n);
}
template <bool Constant, class T>
void ownAbsDiffRow_sse2(const T* s1, const T* s2, T c, T* d, int n, bool stream) {
  const std::uintptr_t mis = reinterpret_cast<std::uintptr_t>(d) & 15;
  if (!stream || mis % sizeof(T) != 0) return ownAbsDiffVectors<Constant, false>(s1, s2, c, d, 0, n);
  const int peel = std::min<int>(n, static_cast<int>(((16 - mis) & 15) / sizeof(T)));
  ownAbsDiffRow<Constant>(s1, s2, c, d, 0, peel);
  ownAbsDiffVectors<Constant, true>(s1, s2, c, d, peel, n);
}

template <bool Constant, class T>
void ownAbsDiffImage(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, T c, T* pDst, int dstStep,
                     vnxiSize roi) {
  const std::int64_t bytes = std::int64_t(roi.width) * roi.height * sizeof(T) * (Constant ? 2 : 3);
  const bool stream = ownStreamOutput(bytes);
  for (int y = 0; y < roi.height; ++y)
    ownAbsDiffRow_sse2<Constant>(ownRow(pSrc1, src1Step, y), Constant ? pSrc2 : ownRow(pSrc2, src2Step, y), c,
                                 ownRow(pDst, dstStep, y), roi.width, stream);
  if (stream) _mm_sfence();  // the streamed rows are visible before the call returns
}

template <class T>
vnxStatus ownAbsDiff(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, T* pDst, int dstStep,
                     vnxiSize roi) {
  if (vnxStatus st = ownCheck({pSrc1, pSrc2, pDst}, roi,
                              {ownImg<T>(src1Step, roi.width), ownImg<T>(src2Step, roi.width),
                               ownImg<T>(dstStep, roi.width)}))
    return st;
  ownAbsDiffImage<false>(pSrc1, src1Step, pSrc2, src2Step, T(), pDst, dstStep, roi);
  return vnxStatusOk;
}

template <class T>
vnxStatus ownAbsDiffC(const T* pSrc, int srcStep, T* pDst, int dstStep, vnxiSize roi, T value) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T>(srcStep, roi.width), ownImg<T>(dstStep, roi.width)}))
    return st;
  ownAbsDiffImage<true>(pSrc, srcStep, static_cast<const T*>(nullptr), 0, value, pDst, dstStep, roi);
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
