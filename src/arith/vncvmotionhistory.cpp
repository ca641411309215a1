// Motion-history update: marked pixels take the current time, history older
// than the duration is cleared.
#include "vncvmotionhistory.h"

#include "check.h"

namespace {

template <class S>
vnxStatus ownUpdateMotionHistory(const S* pSil, int silStep, float* pMhi, int mhiStep, vnxiSize roi,
                                 float timestamp, float duration) {
  if (vnxStatus st = ownCheck({pSil, pMhi}, roi, {ownImg<S>(silStep, roi.width), ownImg<vnx32f>(mhiStep, roi.width)}))
    return st;
  if (!(duration >= 0.0f)) return vnxStatusOutOfRange;  // negative or NaN; -0.0 passes
  const float threshold = timestamp - duration;
  for (int y = 0; y < roi.height; ++y)
    ownMhiRow_sse2(ownRow(pSil, silStep, y), ownRow(pMhi, mhiStep, y), roi.width, timestamp, threshold);
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiUpdateMotionHistory_8u32f_C1IR(const vnx8u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                     int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                     vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
VNX_API vnxStatus vnxiUpdateMotionHistory_16u32f_C1IR(const vnx16u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                      int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                      vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
VNX_API vnxStatus vnxiUpdateMotionHistory_32f_C1IR(const vnx32f* pSilhouette, int silhStep, vnx32f* pMHI,
                                                   int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                   vnx32f duration) noexcept {
  return ownUpdateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, duration);
}
