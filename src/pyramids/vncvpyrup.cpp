// Gaussian pyramid, up step: each source row summed horizontally into a work row of
// twice its width (even and odd columns interleaved), then three work rows give two
// output rows; bands of source rows.
#include "check.h"
#include "parallel.h"
#include "pyramids/vncvpyramid.h"

namespace {

template <class T, int C>
void ownPyrUpBand(const T* src, int srcStep, vnxiSize roi, T* dst, int dstStep, int y0, int y1, void* scratch,
                  ownStoreKind store) {
  using W = typename ownPyrWork<T>::W;
  const std::int64_t n = std::int64_t{2} * roi.width * C;
  ownPyrRows<W> rows(static_cast<W*>(scratch), ownPyrStride<W>(n), 3);
  auto fill = [&](std::int64_t y, W* r) {
    const T* s = ownRow(src, srcStep, static_cast<int>(ownPyrUpIndex(y, roi.height)));
    if constexpr (C == 1)
      ownPyrUpRowH_sse2(s, roi.width, r);
    else
      ownPyrUpRowH(s, roi.width, C, r, 0, roi.width);
  };
  for (int y = y0; y < y1; ++y) {
    const W* r[3];
    for (int k = 0; k < 3; ++k) r[k] = rows.get(std::int64_t{y} - 1 + k, fill);
    T* even = ownRow(ownRow(dst, dstStep, y), dstStep, y);  // row 2y without forming 2y in an int
    ownPyrUpRowV_sse2(r, even, ownRow(even, dstStep, 1), n, store);
  }
  if (store == ownStoreKind::Streaming) ownStreamFence();
}

// One 8-bit channel written through the cache: a work row is made once, by the step
// of the output rows just above it, and kept in a ring of three.
template <class T>
void ownPyrUpBand8(const T* src, int srcStep, vnxiSize roi, T* dst, int dstStep, int y0, int y1, void* scratch) {
  const std::int64_t stride = ownPyrStride<vnx16s>(std::int64_t{2} * roi.width);
  auto srcRow = [&](std::int64_t y) { return ownRow(src, srcStep, static_cast<int>(ownPyrUpIndex(y, roi.height))); };
  vnx16s* slot[3] = {static_cast<vnx16s*>(scratch), static_cast<vnx16s*>(scratch) + stride,
                     static_cast<vnx16s*>(scratch) + 2 * stride};
  ownPyrUpRowH_sse2(srcRow(std::int64_t{y0} - 1), roi.width, slot[0]);
  ownPyrUpRowH_sse2(srcRow(y0), roi.width, slot[1]);
  for (int y = y0; y < y1; ++y) {
    T* even = ownRow(ownRow(dst, dstStep, y), dstStep, y);  // row 2y without forming 2y in an int
    ownPyrUpStep_sse2(srcRow(std::int64_t{y} + 1), roi.width, slot[0], slot[1], slot[2], even, ownRow(even, dstStep, 1));
    vnx16s* done = slot[0];
    slot[0] = slot[1];
    slot[1] = slot[2];
    slot[2] = done;
  }
}

template <class T, int C>
vnxStatus ownPyrUp_omp(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, vnx8u* buffer) {
  using W = typename ownPyrWork<T>::W;
  const std::int64_t perBand = 3 * ownPyrStride<W>(std::int64_t{2} * roi.width * C) * std::int64_t{sizeof(W)};
  ownPyrScratch scratch(buffer, ownPyrUpBufBytes(roi.width, C), perBand, ownBandCount(roi, kOwnBandsPyramid));
  // the output is four times the source: when it cannot stay cached it is written around the cache
  const std::int64_t bytes = std::int64_t{5} * roi.width * roi.height * C * std::int64_t{sizeof(T)};
  const ownStoreKind store = ownStreamOutput(bytes) ? ownStoreKind::Streaming : ownStoreKind::Cached;
  ownRunBands(ownBandSplit{roi.height, scratch.bands()}, [&](int b, int y0, int y1) {
    if constexpr (C == 1 && sizeof(T) == 1) {
      if (store == ownStoreKind::Cached) return ownPyrUpBand8<T>(src, srcStep, roi, dst, dstStep, y0, y1, scratch.slice(b));
    }
    ownPyrUpBand<T, C>(src, srcStep, roi, dst, dstStep, y0, y1, scratch.slice(b), store);
  });
  return vnxStatusOk;
}

// Pointers, ROI, then the source step against its row bytes and the destination step
// against 2 x width pixels.
template <class T, int C>
vnxStatus ownCheckPyrUp(const T* src, int srcStep, const T* dst, int dstStep, vnxiSize roi, const vnx8u* buffer) {
  if (vnxStatus st = ownCheckPtrs({src, dst, buffer})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  return ownCheckSteps(
      {ownImgWide<T, C>(srcStep, roi.width), ownImgWide<T, C>(dstStep, std::int64_t{2} * roi.width)});
}

}  // namespace

VNX_API vnxStatus vnxiPyrUpGetBufSize_Gauss5x5(int roiWidth, int dataType, int channels, int* pBufSize) noexcept {
  return ownPyrBufSize(roiWidth, dataType, channels, pBufSize, ownPyrDirection::Up);
}

VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8s_C1R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx8s, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx8s, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8s_C3R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx8s, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx8s, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                             vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                             vnxiSize roiSize, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckPyrUp<vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer)) return st;
  return ownPyrUp_omp<vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);
}
