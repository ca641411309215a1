// Means and population standard deviations of one channel: vnxiMean_StdDev_*.
#include <cmath>

#include "stats/vncvmean.h"

// Unmasked forms: serial below threads * 65536 pixels and on a single-core die;
// masked forms: serial below threads * 131072 pixels.
template <class T>
constexpr ownBandPolicy ownMeanStdDevBands(const ownStatArgs<T>& a) {
  return a.form == ownMaskForm::Masked ? kOwnBandsReduce : kOwnBandsReduce64KCoreTest;
}

// Second pass of the 32f deviation over the same pixels and bands: sum of (x - m)^2.
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

// Mean and population standard deviation. Both result pointers are optional: a
// null one is not written.
template <class T>
vnxStatus ownMeanStdDev(const ownStatArgs<T>& a, vnx64f* pMean, vnx64f* pStdDev) {
  if (vnxStatus st = a.check()) return st;
  ownMeanTotals t{};
  const ownSum32fKernel serial = std::is_same<T, vnx32f>::value
                                     ? ownPickSum32fKernel(a.roi, a.src, a.srcStep, a.channels)
                                     : ownSum32fKernel::General;
  if (vnxStatus st = ownMeanSums<kOwnSum | kOwnSq>(a, ownMeanStdDevBands(a), serial, t)) return st;
  double mean = 0, sd = 0;
  if (t.count) {
    const double dn = static_cast<double>(t.count);
    mean = t.sum / dn;
    sd = std::sqrt(std::fabs(t.sq / dn - mean * mean));
  }
  if constexpr (std::is_same<T, vnx32f>::value) {
    // A deviation small against the mean lost its bits to cancellation: measure
    // again around the mean rounded to single precision.
    if (pStdDev && 0.05 * mean * mean > sd * sd) {
      double dev = 0;
      if (vnxStatus st = ownDeviationPass(a, t.bands, static_cast<double>(static_cast<float>(mean)), dev)) return st;
      sd = std::sqrt(dev / static_cast<double>(t.count));
    }
  }
  if (pMean) *pMean = ownCanonicalNaN(mean);
  if (pStdDev) *pStdDev = ownCanonicalNaN(sd);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                         vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>::plain(pSrc, srcStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>::channel(pSrc, srcStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                         vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>::plain(pSrc, srcStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>::channel(pSrc, srcStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx8s>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>::plain(pSrc, srcStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>::channel(pSrc, srcStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx16u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean,
                                          vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>::plain(pSrc, srcStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>::channel(pSrc, srcStep, roiSize, coi), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMean, pStdDev);
}

VNX_API vnxStatus vnxiMean_StdDev_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnxiSize roiSize, int coi, vnx64f* pMean, vnx64f* pStdDev) noexcept {
  return ownMeanStdDev(ownStatArgs<vnx32f>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMean, pStdDev);
}
