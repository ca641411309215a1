// Infinity norms of an image and of a difference: vnxiNorm_Inf_*, vnxiNormDiff_Inf_*.
#include "stats/vncvnorm.h"

VNX_API vnxStatus vnxiNorm_Inf_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx8u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx8u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx8s>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx8s>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx16u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx16u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx32f>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pNorm);
}

VNX_API vnxStatus vnxiNorm_Inf_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNormOfImage<ownNormKind::Inf>(ownStatArgs<vnx32f>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pNorm);
}

VNX_API vnxStatus vnxiNormDiff_Inf_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx8u>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx8u>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx8s>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx8s>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                            vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx16u>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                             vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx16u>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                            vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx32f>::masked(pSrc1, src1Step, pMask, maskStep, roiSize), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}

VNX_API vnxStatus vnxiNormDiff_Inf_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                             vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::Inf, ownNormOf::Diff>(
      ownStatArgs<vnx32f>::maskedChannel(pSrc1, src1Step, pMask, maskStep, roiSize, coi), {pSrc2, src2Step}, pNorm, kOwnNormBanded);
}
