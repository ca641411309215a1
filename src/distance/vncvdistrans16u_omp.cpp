// Chamfer distance transforms to 16u (far value 65535).
#include "vncvdistrans.h"

VNX_API vnxStatus vnxiDistanceTransform_3x3_8u16u_C1R(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask3x3);
}

VNX_API vnxStatus vnxiDistanceTransform_5x5_8u16u_C1R(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask5x5);
}
