// Rectangular maximum and minimum filters with replicated borders: each band folds the
// mask rows of every output row into one padded row (down the columns), then slides
// the mask width along it (directly for narrow windows, by doubling spans for wide
// ones). Rectangles of dilation and erosion run here too.
#include <algorithm>

#include "check.h"
#include "morph/vncvmorphstrip.h"

namespace {

// The reach of a window of `length` cells whose cell `anchor` lies on the output
// position, in a line of n samples: offsets lo .. hi from the output position. Under
// the replicate rule an offset beyond n - 1 (or below -(n - 1)) reads the same edge
// sample as n - 1 (-(n - 1)) from every position of the line, so the reach is clamped
// there: an anchor far outside the rectangle costs no more than one at its edge.
struct ownReach {
  std::int64_t lo, hi;
  std::int64_t length() const { return hi - lo + 1; }
  int before() const { return static_cast<int>(std::max<std::int64_t>(0, -lo)); }
  int after() const { return static_cast<int>(std::max<std::int64_t>(0, hi)); }
};
ownReach ownClampedReach(int length, int anchor, std::int64_t n) {
  const std::int64_t lim = n - 1;
  const std::int64_t lo = -static_cast<std::int64_t>(anchor), hi = static_cast<std::int64_t>(length) - 1 - anchor;
  return {std::min(std::max(lo, -lim), lim), std::min(std::max(hi, -lim), lim)};
}

struct ownRectPlan {
  ownReach cols, rows;
  ownRingShape shape;
  std::int64_t paddedElems;

  ownRectPlan(int width, int height, vnxiSize mask, vnxiPoint anchor, int channels)
      : cols(ownClampedReach(mask.width, anchor.x, width)), rows(ownClampedReach(mask.height, anchor.y, height)) {
    shape = {width, channels, cols.before(), cols.after(), rows.before(), rows.after(), 0, 0};
    paddedElems = (static_cast<std::int64_t>(shape.padLeft) + width + shape.padRight) * channels;
  }
  template <class T>
  std::int64_t bandBytes() const {
    const std::int64_t row = ownAlignedRowElems<T>(shape) * static_cast<std::int64_t>(sizeof(T));
    const std::int64_t ptrs = std::max<std::int64_t>({rows.length(), cols.length(), 2});
    return 3 * ownCarver::bytes(row) + ownCarver::bytes((ptrs + 1) * static_cast<std::int64_t>(sizeof(void*)));
  }
};

template <ownMorphOp Op, class T, int C>
vnxStatus ownFilterExtreme(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, vnxiSize mask,
                           vnxiPoint anchor, vnx8u* buffer) {
  if (vnxStatus st = ownCheck({src, dst, buffer}, roi, {ownImg<T, C>(srcStep, roi.width), ownImg<T, C>(dstStep, roi.width)}))
    return st;
  if (mask.width < 1 || mask.height < 1) return vnxStatusBadSize;
  // The buffer holds what the query reported for this width and mask; the band frame
  // checks the first band fits it and takes a block of its own otherwise.
  const std::int64_t bufferBytes = ownRectBandBytes(roi.width, INT32_MAX, mask, C, sizeof(T));
  return ownRectExtreme<Op, T>(src, srcStep, dst, dstStep, roi, C, mask, anchor, buffer, bufferBytes);
}

template <class T, int C>
vnxStatus ownFilterExtremeSize(int roiWidth, vnxiSize mask, int* pSize) {
  if (!pSize) return vnxStatusNullPtr;
  if (roiWidth < 1 || mask.width < 1 || mask.height < 1) return vnxStatusBadSize;
  const std::int64_t bytes = ownRectBandBytes(roiWidth, INT32_MAX, mask, C, sizeof(T));
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *pSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

}  // namespace

std::int64_t ownRectBandBytes(int roiWidth, int height, vnxiSize maskSize, int channels, int elemBytes) {
  const ownRectPlan plan(roiWidth, height, maskSize, {maskSize.width / 2, maskSize.height / 2}, channels);
  return elemBytes == 1 ? plan.bandBytes<vnx8u>() : plan.bandBytes<vnx32f>();
}

template <ownMorphOp Op, class T>
vnxStatus ownRectExtreme(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int channels,
                         vnxiSize maskSize, vnxiPoint anchor, void* buffer, std::int64_t bufferBytes) {
  const ownRectPlan plan(roi.width, roi.height, maskSize, anchor, channels);
  if (ownRectStrip<Op>(src, srcStep, dst, dstStep, roi, channels, {int(plan.cols.length()), int(plan.rows.length())},
                       {int(-plan.cols.lo), int(-plan.rows.lo)}))
    return vnxStatusOk;
  const int kh = static_cast<int>(plan.rows.length()), kw = static_cast<int>(plan.cols.length());
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * channels;
  // The mask rows are folded straight from the source rows (clamped to the ROI) into
  // the middle of a padded row; folding commutes with replicating columns, so the
  // padding then repeats the folded row's first and last pixel.
  auto band = [&](void* block, int y0, int y1) {
    ownCarver carve(block);
    const std::int64_t rowElems = ownAlignedRowElems<T>(plan.shape);
    T* mid[2] = {ownAlignedMid(carve.take<T>(rowElems), plan.shape), ownAlignedMid(carve.take<T>(rowElems), plan.shape)};
    T* temp = carve.take<T>(rowElems);
    const T** ptrs = carve.take<const T*>(std::max(std::max(kh + 1, kw), 2));
    for (int y = y0; y < y1;) {
      // Two rows at a time where the fold shares its middle rows, one otherwise.
      for (int j = 0; j <= kh; ++j) ptrs[j] = ownClampedRow(src, srcStep, std::int64_t{y} + plan.rows.lo + j, roi.height);
      const int pair = y + 1 < y1 && ownExtremePair<Op>(ptrs, kh, mid[0], mid[1], len) ? 2 : 1;
      if (pair == 1) ownExtremeRow_sse2<Op>(ptrs, kh, mid[0], len, ownMorphStore::Intermediate);
      for (int r = 0; r < pair; ++r, ++y) {
        ownReplicateEdges(mid[r], roi.width, channels, plan.shape.padLeft, plan.shape.padRight);
        ownWindowRow<Op>(mid[r] + plan.cols.lo * channels, channels, kw, ownRow(dst, dstStep, y), len, temp, ptrs,
                         ownMorphStore::Final);
      }
    }
  };
  return ownMorphBands(roi, plan.bandBytes<T>(), buffer, bufferBytes, band);
}

template vnxStatus ownRectExtreme<ownMorphOp::Max, vnx8u>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, vnxiSize,
                                                          vnxiPoint, void*, std::int64_t);
template vnxStatus ownRectExtreme<ownMorphOp::Min, vnx8u>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, vnxiSize,
                                                          vnxiPoint, void*, std::int64_t);
template vnxStatus ownRectExtreme<ownMorphOp::Max, vnx32f>(const vnx32f*, int, vnx32f*, int, vnxiSize, int,
                                                           vnxiSize, vnxiPoint, void*, std::int64_t);
template vnxStatus ownRectExtreme<ownMorphOp::Min, vnx32f>(const vnx32f*, int, vnx32f*, int, vnxiSize, int,
                                                           vnxiSize, vnxiPoint, void*, std::int64_t);

// ---- Exports ---------------------------------------------------------------------------

VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Max, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                      vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                      vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor,
                                                       vnx8u* pBuffer) noexcept {
  return ownFilterExtreme<ownMorphOp::Min, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, pBuffer);
}

VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 1>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 3>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 4>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 1>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 3>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 4>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 1>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 3>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx8u, 4>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 1>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 3>(roiWidth, maskSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) noexcept {
  return ownFilterExtremeSize<vnx32f, 4>(roiWidth, maskSize, pBufferSize);
}
