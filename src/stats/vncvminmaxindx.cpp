// Extrema of one channel with the locations of their first occurrences: vnxiMinMaxIndx_*.
#include "stats/vncvstats.h"

VNX_API vnxStatus vnxiMinMaxIndx_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                        vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMinVal, pMaxVal, pMinIndex,
                       pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                          vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                        vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMinVal, pMaxVal, pMinIndex,
                       pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                          vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                           vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                           vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}
