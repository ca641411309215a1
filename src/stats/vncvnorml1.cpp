// L1 norms of an image: vnxiNorm_L1_*.
#include "stats/vncvnorm.h"

VNX_API vnxStatus vnxiNorm_L1_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx8u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx8u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx8s>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx8s>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx16u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx16u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx32f>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_L1_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::L1>(ownStatArgs<vnx32f>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}
