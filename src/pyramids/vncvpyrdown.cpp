// Gaussian pyramid, down step: each source row summed horizontally at its even
// columns into a work row, then five work rows combined per output row; bands of
// output rows.
#include "check.h"
#include "parallel.h"
#include "pyramids/vncvpyramid.h"

namespace {

template <class T, int C>
void ownPyrDownBand(const T* src, int srcStep, vnxiSize roi, T* dst, int dstStep, int j0, int j1, void* scratch) {
  using W = typename ownPyrWork<T>::W;
  const std::int64_t dw = (roi.width >> 1) + (roi.width & 1), n = dw * C;
  ownPyrRows<W> rows(static_cast<W*>(scratch), ownPyrStride<W>(n), 5);
  auto fill = [&](std::int64_t y, W* r) {
    const T* s = ownRow(src, srcStep, static_cast<int>(ownPyrDownIndex(y, roi.height)));
    if constexpr (C == 1)
      ownPyrDownRowH_sse2(s, roi.width, r, dw);
    else
      ownPyrDownRowH(s, roi.width, C, r, 0, dw);
  };
  for (int j = j0; j < j1; ++j) {
    const W* r[5];
    for (int k = 0; k < 5; ++k) r[k] = rows.get(std::int64_t{2} * j - 2 + k, fill);
    ownPyrDownRowV_sse2(r, ownRow(dst, dstStep, j), n);
  }
}

template <class T, int C>
vnxStatus ownPyrDown_omp(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, vnx8u* buffer) {
  using W = typename ownPyrWork<T>::W;
  const vnxiSize dstRoi{(roi.width >> 1) + (roi.width & 1), (roi.height >> 1) + (roi.height & 1)};
  const std::int64_t perBand = 5 * ownPyrStride<W>(std::int64_t{dstRoi.width} * C) * std::int64_t{sizeof(W)};
  ownPyrScratch scratch(buffer, ownPyrDownBufBytes(roi.width, C), perBand, ownBandCount(dstRoi, kOwnBandsPyramid));
  ownRunBands(ownBandSplit{dstRoi.height, scratch.bands()}, [&](int b, int j0, int j1) {
    ownPyrDownBand<T, C>(src, srcStep, roi, dst, dstStep, j0, j1, scratch.slice(b));
  });
  return vnxStatusOk;
}

// Pointers, ROI, then the source step against its row bytes and the destination step
// against ((width + 1) >> 1) pixels.
template <class T, int C>
vnxStatus ownCheckPyrDown(const T* src, int srcStep, const T* dst, int dstStep, vnxiSize roi, const vnx8u* buffer) {
  if (vnxStatus st = ownCheckPtrs({src, dst, buffer})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  return ownCheckSteps(
      {ownImgWide<T, C>(srcStep, roi.width), ownImgWide<T, C>(dstStep, (roi.width >> 1) + (roi.width & 1))});
}

}  // namespace

// Buffer queries: pointer, width, channels, then the element type.
vnxStatus ownPyrBufSize(int roiWidth, int dataType, int channels, int* pBufSize, ownPyrDirection dir) {
  if (!pBufSize) return vnxStatusNullPtr;
  if (roiWidth < 1) return vnxStatusBadSize;
  if (channels != 1 && channels != 3) return vnxStatusBadChannels;
  if (dataType != vnx8uCode && dataType != vnx8sCode && dataType != vnx32fCode) return vnxStatusBadDataType;
  const std::int64_t bytes = dir == ownPyrDirection::Up ? ownPyrUpBufBytes(roiWidth, channels) : ownPyrDownBufBytes(roiWidth, channels);
  if (bytes < 0) return vnxStatusBadSize;
  *pBufSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiPyrDownGetBufSize_Gauss5x5(int roiWidth, int dataType, int channels, int* pBufSize) noexcept {
  return ownPyrBufSize(roiWidth, dataType, channels, pBufSize, ownPyrDirection::Down);
}

VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8s_C1R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx8s, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx8s, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8s_C3R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx8s, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx8s, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                               vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                               vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrDown<vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrDown_omp<vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
