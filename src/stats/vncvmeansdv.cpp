// Means and population standard deviations of one channel: vnxiMean_StdDev_*.
#include "stats/vncvstats.h"

namespace {
// Unmasked forms: serial below threads * 65536 pixels and on a single-core die.
constexpr ownBandPolicy kPlainBanding = kOwnBandsReduce64KCoreTest;
// Masked forms: serial below threads * 131072 pixels.
constexpr ownBandPolicy kMaskedBanding = kOwnBandsReduce;
}  // namespace

// One channel: below 5001 pixels the short kernel; from 100000 pixels, or with a
// source or step that is not a whole number of floats, or rows that do not all
// start at the same 16-byte phase, the general kernel; otherwise the aligned one.
// Channel of interest: below 5000 pixels the short kernel; the aligned one when
// the source is 16-byte aligned and its step a multiple of four floats; else the general.
ownSum32fKernel ownPickSum32fKernel(vnxiSize roi, const void* src, int srcStep, int channels) noexcept {
  const std::int64_t pixels = static_cast<std::int64_t>(roi.width) * roi.height;
  const std::uintptr_t p = reinterpret_cast<std::uintptr_t>(src);
  const bool stepOf4Floats = (srcStep / 4) % 4 == 0;
  if (channels == 1) {
    if (pixels < 5001) return ownSum32fKernel::Short;
    if (pixels >= 100000 || p % 4 != 0 || !stepOf4Floats) return ownSum32fKernel::General;
    return ownSum32fKernel::Aligned;
  }
  if (pixels < 5000) return ownSum32fKernel::Short;
  return (p % 16 == 0 && stepOf4Floats) ? ownSum32fKernel::Aligned : ownSum32fKernel::General;
}

vnxStatus ownDeviationPass(const ownStatArgs<vnx32f>& a, int nBands, double m, double& dev) {
  return ownReduceBands<double>(
      a.roi.height, nBands,
      [&](int y0, int y1) {
        double d = 0;
        ownSampleRuns runs(a.layout());
        for (int y = y0; y < y1; ++y) {
          const vnx32f* s = a.row(y);
          runs.row(y,
                   [&](int off, const vnx8u* sel, int n) { ownDevRow_sse2(ownPlainSrc32f<>{s + off}, sel, n, m, d); });
        }
        return d;
      },
      [](double& t, double p) { t += p; }, &dev);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                         vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                         vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>{pSrc, srcStep, nullptr, 0, roiSize, 1, 1, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>{pSrc, srcStep, nullptr, 0, roiSize, 3, coi, false}, pMean, pStdDev,
                       kPlainBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 1, 1, true}, pMean, pStdDev,
                       kMaskedBanding);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>{pSrc, srcStep, pMask, maskStep, roiSize, 3, coi, true}, pMean, pStdDev,
                       kMaskedBanding);
}
