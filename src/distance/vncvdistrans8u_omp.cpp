// Chamfer distance transforms to 8u, out of place and in place. In place, a row's
// source byte is read before its distance is written; a distance of a non-feature is
// at least the smallest weight (1 or more), so 0 marks the features for every later
// read, the joins of the band form included.
#include "vncvdistrans.h"

VNX_API vnxStatus vnxiDistanceTransform_3x3_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask3x3);
}

VNX_API vnxStatus vnxiDistanceTransform_5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics, ownChamferMask::Mask5x5);
}

VNX_API vnxStatus vnxiDistanceTransform_3x3_8u_C1IR(vnx8u* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                                    const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, pMetrics, ownChamferMask::Mask3x3);
}

VNX_API vnxStatus vnxiDistanceTransform_5x5_8u_C1IR(vnx8u* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                                    const vnx32s* pMetrics) noexcept {
  return ownDistanceMember(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, pMetrics, ownChamferMask::Mask5x5);
}
