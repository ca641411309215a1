// Masked means of one channel: vnxiMean_*.
#include "stats/vncvmean.h"

// Mean of the selected samples; 0 when none is selected. Serial below threads * 131072 pixels.
template <class T>
vnxStatus ownMean(const ownStatArgs<T>& a, vnx64f* pMean) {
  if (vnxStatus st = a.check({pMean})) return st;
  ownMeanTotals t{};
  if (vnxStatus st = ownMeanSums<kOwnSum>(a, kOwnBandsReduce, ownSum32fKernel::General, t)) return st;
  *pMean = t.count ? ownCanonicalNaN(t.sum / static_cast<double>(t.count)) : 0.0;
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiMean_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean);
}

VNX_API vnxStatus vnxiMean_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean);
}

VNX_API vnxStatus vnxiMean_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8s>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean);
}

VNX_API vnxStatus vnxiMean_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx8s>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean);
}

VNX_API vnxStatus vnxiMean_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx16u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean);
}

VNX_API vnxStatus vnxiMean_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                     vnxiSize roiSize, int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx16u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean);
}

VNX_API vnxStatus vnxiMean_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx32f>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean);
}

VNX_API vnxStatus vnxiMean_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                     vnxiSize roiSize, int coi, vnx64f* pMean) noexcept {
  return ownMean(ownStatArgs<vnx32f>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean);
}
