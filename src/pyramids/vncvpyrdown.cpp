// Gaussian pyramid, down step, in bands of output rows. One 8-bit channel sums the
// columns of up to four output rows at a time, then each row along its columns with
// decimation. 32f and three channels sum each source row horizontally at its even
// columns into a work row, then five work rows per output row (one 32f channel: two
// output rows a step, the work rows of the four new source rows in registers), the
// order the 32f results follow.
#include <utility>

#include "check.h"
#include "parallel.h"
#include "pyramids/vncvpyramid.h"

namespace {

// One 8-bit channel: the column sums of `rows` output rows (up to four) a sweep from
// the 2 rows + 3 source rows 2j - 2 onwards (a band's last rows take two or one a sweep).
// The band's scratch holds the column-sum rows, each with a sample of margin on both
// sides: eight of them, or four for a row narrower than one vector.
constexpr int kOwnPyrDownSweep = 4;
inline int ownPyrDownSweep8(int width) { return width >= 16 ? kOwnPyrDownSweep : 2; }
inline std::int64_t ownPyrDownBand8Bytes(int width) {
  const std::int64_t n = (width >> 1) + (width & 1);
  return 16 + ownPyrDownSweep8(width) * ownPyrStride<vnx16s>(n + 2) * 2 * std::int64_t{sizeof(vnx16s)};
}
template <class T>
void ownPyrDownBand8(const T* src, int srcStep, vnxiSize roi, T* dst, int dstStep, int j0, int j1, void* scratch) {
  const std::int64_t n = (roi.width >> 1) + (roi.width & 1), stride = ownPyrStride<vnx16s>(n + 2);
  const int sweep = ownPyrDownSweep8(roi.width);
  vnx16s* base = static_cast<vnx16s*>(scratch) + 8;  // rows start 16-byte aligned after an 8-sample lead
  vnx16s *ev[kOwnPyrDownSweep], *od[kOwnPyrDownSweep];
  for (int q = 0; q < sweep; ++q) ev[q] = base + 2 * q * stride, od[q] = base + (2 * q + 1) * stride;
  for (int j = j0; j < j1;) {
    const int rows = j + sweep <= j1 ? sweep : (j + 2 <= j1 ? 2 : 1);
    const T* s[2 * kOwnPyrDownSweep + 3];
    for (int r = 0; r < 2 * rows + 3; ++r)
      s[r] = ownRow(src, srcStep, static_cast<int>(ownPyrDownIndex(std::int64_t{2} * j - 2 + r, roi.height)));
    ownPyrDownCols_sse2(s, rows, roi.width, ev, od);
    for (int q = 0; q < rows; ++q, ++j) {
      ownPyrDownMargins(ev[q], od[q], roi.width);
      ownPyrDownDecimate_sse2(ev[q], od[q], ownRow(dst, dstStep, j), n);
    }
  }
}

// One 32f channel: two output rows a step over six work rows, three carried from the
// pair before (source rows 2j - 2 .. 2j) and three made by the pair; an odd last row
// of the band takes its two new work rows on their own.
void ownPyrDownBand32f(const vnx32f* src, int srcStep, vnxiSize roi, vnx32f* dst, int dstStep, int j0, int j1, void* scratch) {
  using W = vnx32f;
  const std::int64_t n = (roi.width >> 1) + (roi.width & 1), stride = ownPyrStride<W>(n);
  auto srcRow = [&](std::int64_t y) { return ownRow(src, srcStep, static_cast<int>(ownPyrDownIndex(y, roi.height))); };
  W* slot[6];
  for (int k = 0; k < 6; ++k) slot[k] = static_cast<W*>(scratch) + k * stride;
  W** old = slot;
  W** fresh = slot + 3;
  for (int k = 0; k < 3; ++k) ownPyrDownRowH_sse2(srcRow(std::int64_t{2} * j0 - 2 + k), roi.width, old[k], n);
  int j = j0;
  for (; j + 1 < j1; j += 2) {
    const std::int64_t y = std::int64_t{2} * j;
    const vnx32f* s[4] = {srcRow(y + 1), srcRow(y + 2), srcRow(y + 3), srcRow(y + 4)};
    ownPyrDownPair_sse2(s, roi.width, old, fresh, ownRow(dst, dstStep, j), ownRow(dst, dstStep, j + 1), n);
    std::swap(old, fresh);
  }
  if (j < j1) {
    ownPyrDownRowH_sse2(srcRow(std::int64_t{2} * j + 1), roi.width, fresh[0], n);
    ownPyrDownRowH_sse2(srcRow(std::int64_t{2} * j + 2), roi.width, fresh[1], n);
    const W* r[5] = {old[0], old[1], old[2], fresh[0], fresh[1]};
    ownPyrDownRowV_sse2(r, ownRow(dst, dstStep, j), n);
  }
}

// Three channels: each output row from five work rows kept by source row.
template <class T>
void ownPyrDownBand3(const T* src, int srcStep, vnxiSize roi, T* dst, int dstStep, int j0, int j1, void* scratch) {
  using W = typename ownPyrWork<T>::W;
  const std::int64_t dw = (roi.width >> 1) + (roi.width & 1), n = dw * 3;
  ownPyrRows<W> rows(static_cast<W*>(scratch), ownPyrStride<W>(n), 5);
  auto fill = [&](std::int64_t y, W* r) {
    ownPyrDownRowH(ownRow(src, srcStep, static_cast<int>(ownPyrDownIndex(y, roi.height))), roi.width, 3, r, 0, dw);
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
  constexpr bool kColumnsFirst = C == 1 && sizeof(T) == 1;
  const vnxiSize dstRoi{(roi.width >> 1) + (roi.width & 1), (roi.height >> 1) + (roi.height & 1)};
  const std::int64_t perBand = kColumnsFirst ? ownPyrDownBand8Bytes(roi.width)
                                             : (C == 1 ? 6 : 5) * ownPyrStride<W>(std::int64_t{dstRoi.width} * C) * std::int64_t{sizeof(W)};
  ownPyrScratch scratch(buffer, ownPyrDownBufBytes(roi.width, C), perBand, ownBandCount(dstRoi, kOwnBandsPyramid));
  ownRunBands(ownBandSplit{dstRoi.height, scratch.bands()}, [&](int b, int j0, int j1) {
    if constexpr (kColumnsFirst)
      ownPyrDownBand8<T>(src, srcStep, roi, dst, dstStep, j0, j1, scratch.slice(b));
    else if constexpr (C == 1)
      ownPyrDownBand32f(src, srcStep, roi, dst, dstStep, j0, j1, scratch.slice(b));
    else
      ownPyrDownBand3<T>(src, srcStep, roi, dst, dstStep, j0, j1, scratch.slice(b));
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
