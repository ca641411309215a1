// Colour gradient to gray: one channel from three by the maximum, L1 or L2 norm. The
// integer members take channel means (fixed-point reciprocals of 3), the float member
// plain sums; the difference is deliberate.
#include <algorithm>
#include <cmath>

#include "check.h"
#include "features.h"
#include "traits.h"

namespace {

// (c0 + c1 + c2) / 3 rounded by a fixed-point reciprocal: 1365 / 4096 for 8u,
// 5461 / 16384 for 16u (3 * 65535 * 5461 + 8192 < 2^31).
inline vnx8u ownMean3(vnx8u c0, vnx8u c1, vnx8u c2) { return static_cast<vnx8u>(((c0 + c1 + c2) * 1365 + 2048) >> 12); }
inline vnx16u ownMean3(vnx16u c0, vnx16u c1, vnx16u c2) {
  return static_cast<vnx16u>(((c0 + c1 + c2) * 5461 + 8192) >> 14);
}
// Root of the mean of squares rounded to nearest: the sum (exact in 64 bits) taken to
// float, divided by 3.0 in float, the root taken in double, then floor(root + 0.5).
template <class T>
inline T ownRootMeanSquare3(T c0, T c1, T c2) {
  const std::int64_t s = std::int64_t(c0) * c0 + std::int64_t(c1) * c1 + std::int64_t(c2) * c2;
  const float mean = static_cast<float>(s) / 3.0f;
  const double r = std::floor(std::sqrt(static_cast<double>(mean)) + 0.5);
  return static_cast<T>(std::min(r, static_cast<double>(ownTraits<T>::highest)));
}

}  // namespace

template <class T>
void ownGradientColorRow(const T* s, T* d, int x0, int n, ownColorNorm norm) {
  for (int x = x0; x < n; ++x) {
    const T c0 = s[3 * x], c1 = s[3 * x + 1], c2 = s[3 * x + 2];
    switch (norm) {
      case ownColorNorm::Max: d[x] = std::max(std::max(c0, c1), c2); break;
      case ownColorNorm::L1: d[x] = ownMean3(c0, c1, c2); break;
      case ownColorNorm::L2: d[x] = ownRootMeanSquare3(c0, c1, c2); break;
    }
  }
}
// Float: |c| by the sign bit, sums in the order (c0 + c1) + c2, no division by 3; a NaN
// in any channel gives the library's NaN (the maximum included).
template <>
void ownGradientColorRow(const vnx32f* s, vnx32f* d, int x0, int n, ownColorNorm norm) {
  for (int x = x0; x < n; ++x) {
    const float c0 = s[3 * x], c1 = s[3 * x + 1], c2 = s[3 * x + 2];
    const float a0 = std::fabs(c0), a1 = std::fabs(c1), a2 = std::fabs(c2);
    float r;
    switch (norm) {
      case ownColorNorm::Max: r = (a0 != a0 || a1 != a1 || a2 != a2) ? a0 + a1 + a2 : std::max(std::max(a0, a1), a2); break;
      case ownColorNorm::L1: r = (a0 + a1) + a2; break;
      default: r = std::sqrt((c0 * c0 + c1 * c1) + c2 * c2); break;
    }
    d[x] = ownCanonicalNaN(r);
  }
}
template void ownGradientColorRow(const vnx8u*, vnx8u*, int, int, ownColorNorm);
template void ownGradientColorRow(const vnx16u*, vnx16u*, int, int, ownColorNorm);

namespace {

template <class T>
vnxStatus ownGradientColorToGray(const T* pSrc, int srcStep, T* pDst, int dstStep, vnxiSize roi, int norm) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T, 3>(srcStep, roi.width), ownImg<T>(dstStep, roi.width)}))
    return st;
  if (norm < 0 || norm > 2) return vnxStatusBadArg;
  for (int y = 0; y < roi.height; ++y)
    ownGradientColorRow(ownRow(pSrc, srcStep, y), ownRow(pDst, dstStep, y), 0, roi.width,
                        static_cast<ownColorNorm>(norm));
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiGradientColorToGray_8u_C3C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, int norm) noexcept {
  return ownGradientColorToGray(pSrc, srcStep, pDst, dstStep, roiSize, norm);
}
VNX_API vnxStatus vnxiGradientColorToGray_16u_C3C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                    vnxiSize roiSize, int norm) noexcept {
  return ownGradientColorToGray(pSrc, srcStep, pDst, dstStep, roiSize, norm);
}
VNX_API vnxStatus vnxiGradientColorToGray_32f_C3C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int norm) noexcept {
  return ownGradientColorToGray(pSrc, srcStep, pDst, dstStep, roiSize, norm);
}
