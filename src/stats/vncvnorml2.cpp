// L2 norms of an image: vnxiNorm_L2_*.
#include "stats/vncvstats.h"

namespace {
// Serial below threads * 131072 pixels and on a single-core die.
constexpr ownNormMode kNormMode{kOwnBandsReduceCoreTest, false, false};
}  // namespace

VNX_API vnxStatus vnxiNorm_L2_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnxiSize roiSize, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, nullptr, 0, pNorm, kNormMode);
}

VNX_API vnxStatus vnxiNorm_L2_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                        vnxiSize roiSize, int coi, vnx64f* pNorm) noexcept {
  return ownNorm<ownNormKind::L2, ownNormOf::Image>(
      ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, nullptr, 0, pNorm, kNormMode);
}
