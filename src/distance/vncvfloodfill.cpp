// Flood fill with the plain rule (every channel equal to the seed's colour
// before the fill), 4- and 8-connected, and the work-buffer size queries of
// every fill.
#include "vncvfloodfill.h"

namespace {
vnxStatus ownFillSize(vnxiSize roi, int* size, ownFillRule rule) {
  if (vnxStatus st = ownCheckPtrs({size})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  const std::int64_t bytes = ownFloodFillBytes(roi, rule);
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *size = static_cast<int>(bytes);
  return vnxStatusOk;
}
}  // namespace

VNX_API vnxStatus vnxiFloodFillGetSize(vnxiSize roiSize, int* pBufSize) noexcept {
  return ownFillSize(roiSize, pBufSize, ownFillRule::Plain);
}

VNX_API vnxStatus vnxiFloodFillGetSize_Grad(vnxiSize roiSize, int* pBufSize) noexcept {
  return ownFillSize(roiSize, pBufSize, ownFillRule::Grad);
}

VNX_API vnxStatus vnxiFloodFill_4Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             vnx8u newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 1, ownFillRule::Plain, ownFillConn::Four>(pImage, imageStep, roiSize, seed, &newVal,
                                                                       nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_4Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             const vnx8u* pNewVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 3, ownFillRule::Plain, ownFillConn::Four>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                       nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_4Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              vnx32f newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 1, ownFillRule::Plain, ownFillConn::Four>(pImage, imageStep, roiSize, seed, &newVal,
                                                                        nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_4Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              const vnx32f* pNewVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 3, ownFillRule::Plain, ownFillConn::Four>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                        nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_8Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             vnx8u newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 1, ownFillRule::Plain, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, &newVal,
                                                                        nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_8Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             const vnx8u* pNewVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 3, ownFillRule::Plain, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                        nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_8Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              vnx32f newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 1, ownFillRule::Plain, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, &newVal,
                                                                         nullptr, nullptr, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_8Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              const vnx32f* pNewVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 3, ownFillRule::Plain, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                         nullptr, nullptr, pRegion, pBuffer);
}
