// Absolute differences of two images, or of an image and a constant.
#include "vncvabsdiff.h"

#include "check.h"
#include "parallel.h"
#include "traits.h"

namespace {

// Every row of the ROI. Images larger than most of the cache write around it.
template <ownAbsDiffOperand B, class T>
void ownAbsDiffImage(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, T c, T* pDst, int dstStep,
                     vnxiSize roi) {
  constexpr bool kConst = B == ownAbsDiffOperand::Constant;
  const std::int64_t bytes = std::int64_t(roi.width) * roi.height * sizeof(T) * (kConst ? 2 : 3);
  const ownStoreKind store = ownStreamOutput(bytes) ? ownStoreKind::Streaming : ownStoreKind::Cached;
  for (int y = 0; y < roi.height; ++y)
    ownAbsDiffRow_sse2<B>(ownRow(pSrc1, src1Step, y), kConst ? pSrc2 : ownRow(pSrc2, src2Step, y), c,
                          ownRow(pDst, dstStep, y), roi.width, store);
  if (store == ownStoreKind::Streaming) ownStreamFence();
}

// The two-image form: pointers, ROI, then the three steps as one group.
template <class T>
vnxStatus ownAbsDiff_C1R(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, T* pDst, int dstStep,
                         vnxiSize roi) {
  if (vnxStatus st = ownCheck({pSrc1, pSrc2, pDst}, roi,
                              {ownImg<T>(src1Step, roi.width), ownImg<T>(src2Step, roi.width),
                               ownImg<T>(dstStep, roi.width)}))
    return st;
  ownAbsDiffImage<ownAbsDiffOperand::Image>(pSrc1, src1Step, pSrc2, src2Step, T(), pDst, dstStep, roi);
  return vnxStatusOk;
}

// The constant form; the constant itself is never checked.
template <class T>
vnxStatus ownAbsDiffC_C1R(const T* pSrc, int srcStep, T* pDst, int dstStep, vnxiSize roi, T value) {
  if (vnxStatus st = ownCheck({pSrc, pDst}, roi, {ownImg<T>(srcStep, roi.width), ownImg<T>(dstStep, roi.width)}))
    return st;
  ownAbsDiffImage<ownAbsDiffOperand::Constant>(pSrc, srcStep, static_cast<const T*>(nullptr), 0, value, pDst,
                                               dstStep, roi);
  return vnxStatusOk;
}

// The integer constants are clamped to the type's range, never rejected.
template <class T>
T ownClampValue(int v) {
  return v < 0 ? T(0) : v > ownTraits<T>::highest ? ownTraits<T>::highest : static_cast<T>(v);
}

}  // namespace

VNX_API vnxStatus vnxiAbsDiff_8u_C1R(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                     vnx8u* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff_C1R(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiff_16u_C1R(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                      vnx16u* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff_C1R(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiff_32f_C1R(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                      vnx32f* pDst, int dstStep, vnxiSize roiSize) noexcept {
  return ownAbsDiff_C1R(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
}
VNX_API vnxStatus vnxiAbsDiffC_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep, vnxiSize roiSize,
                                      int value) noexcept {
  return ownAbsDiffC_C1R(pSrc, srcStep, pDst, dstStep, roiSize, ownClampValue<vnx8u>(value));
}
VNX_API vnxStatus vnxiAbsDiffC_16u_C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                       vnxiSize roiSize, int value) noexcept {
  return ownAbsDiffC_C1R(pSrc, srcStep, pDst, dstStep, roiSize, ownClampValue<vnx16u>(value));
}
VNX_API vnxStatus vnxiAbsDiffC_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                       vnxiSize roiSize, vnx32f value) noexcept {
  return ownAbsDiffC_C1R(pSrc, srcStep, pDst, dstStep, roiSize, value);
}
