// Relative L1 norms: vnxiNormRel_L1_*.
#include "stats/vncvnorm.h"

VNX_API vnxStatus vnxiNormRel_L1_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                         const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx8u>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormSerialWrap32);
}

VNX_API vnxStatus vnxiNormRel_L1_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                          const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                          vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx8u>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                         const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx8s>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                          const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                          vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx8s>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                          const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx16u>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx16u>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                          const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx32f>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormRel_L1_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L1, ownNormOf::Rel>(
      ownStatArgs<vnx32f>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}
