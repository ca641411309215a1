// Sampling along a digital straight line: the library's one line walker.
#include <cstring>

#include "check.h"

namespace {

// Integer walker: the error term starts at the major extent; each step takes
// twice the minor extent off it and, when it goes negative, gives back twice the
// major extent and moves one step along the minor axis as well.
struct ownLineWalker {
  std::ptrdiff_t majorStep, minorStep;
  int error, majorIncrement, minorDecrement, count;
};

ownLineWalker ownLineSetup(int step, int pixelBytes, vnxiPoint p1, vnxiPoint p2) {
  const int dx = p2.x - p1.x, dy = p2.y - p1.y;
  const int adx = dx < 0 ? -dx : dx, ady = dy < 0 ? -dy : dy;
  const std::ptrdiff_t xStep = dx < 0 ? -pixelBytes : pixelBytes;
  const std::ptrdiff_t yStep = dy < 0 ? -static_cast<std::ptrdiff_t>(step) : step;
  if (adx <= ady)  // a tie makes y the major axis
    return {yStep, xStep, ady, 2 * ady, 2 * adx, ady + 1};
  return {xStep, yStep, adx, 2 * adx, 2 * ady, adx + 1};
}

template <class T, int C>
vnxStatus ownSampleLine(const T* pSrc, int srcStep, vnxiSize roi, T* pDst, vnxiPoint p1, vnxiPoint p2) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T, C>(srcStep, roi.width)})) return st;
  for (vnxiPoint p : {p1, p2})
    if (p.x < 0 || p.y < 0 || p.x >= roi.width || p.y >= roi.height) return vnxStatusOutOfRange;
  constexpr int kPixelBytes = C * static_cast<int>(sizeof(T));
  ownLineWalker w = ownLineSetup(srcStep, kPixelBytes, p1, p2);
  if (w.count < 0) return vnxStatusLineError;
  const char* at = reinterpret_cast<const char*>(ownRow(pSrc, srcStep, p1.y) + std::ptrdiff_t(p1.x) * C);
  char* out = reinterpret_cast<char*>(pDst);
  for (int i = 0; i < w.count; ++i, out += kPixelBytes) {
    std::memcpy(out, at, kPixelBytes);
    if (i + 1 == w.count) break;  // the address never leaves the line
    w.error -= w.minorDecrement;
    if (w.error < 0) {
      w.error += w.majorIncrement;
      at += w.minorStep;
    }
    at += w.majorStep;
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
