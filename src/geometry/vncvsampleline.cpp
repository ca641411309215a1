// Sampling along a digital straight line: the library's one line walker.
#include <cstring>

#include "check.h"
#include "vncvsampleline.h"

namespace {

template <class T, int C>
vnxStatus ownSampleLine(const T* pSrc, int srcStep, vnxiSize roi, T* pDst, vnxiPoint p1, vnxiPoint p2) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T, C>(srcStep, roi.width)})) return st;
  for (vnxiPoint p : {p1, p2})
    if (p.x < 0 || p.y < 0 || p.x >= roi.width || p.y >= roi.height) return vnxStatusOutOfRange;
  constexpr int kPixelBytes = C * static_cast<int>(sizeof(T));
  ownLineWalker w = ownLineSetup(kPixelBytes, srcStep, p1, p2);
  if (w.count < 0) return vnxStatusLineError;
  const char* at = reinterpret_cast<const char*>(ownRow(pSrc, srcStep, p1.y) + std::ptrdiff_t(p1.x) * C);
  char* out = reinterpret_cast<char*>(pDst);
  for (std::int64_t i = 0; i < w.count; ++i, out += kPixelBytes) {
    std::memcpy(out, at, kPixelBytes);
    if (i + 1 < w.count) at += static_cast<std::ptrdiff_t>(w.advance());  // the address never leaves the line
  }
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiSampleLine_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx8u* pDst,
                                        vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx8u, 1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
VNX_API vnxStatus vnxiSampleLine_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx8u* pDst,
                                        vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx8u, 3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
VNX_API vnxStatus vnxiSampleLine_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx16u* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx16u, 1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
VNX_API vnxStatus vnxiSampleLine_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx16u* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx16u, 3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
VNX_API vnxStatus vnxiSampleLine_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx32f, 1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
VNX_API vnxStatus vnxiSampleLine_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) noexcept {
  return ownSampleLine<vnx32f, 3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
