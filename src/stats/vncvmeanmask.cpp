// Masked means of one channel: vnxiMean_*.
#include "stats/vncvstats.h"

namespace {
// Serial below threads * 131072 pixels.
constexpr ownBandPolicy kMeanBanding = kOwnBandsReduce;
}  // namespace

VNX_API vnxStatus vnxiMean_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                     vnxiSize roiSize, int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, kMeanBanding);
}

VNX_API vnxStatus vnxiMean_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                     vnxiSize roiSize, int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, kMeanBanding);
}
