// Fixed-kernel filters with borders: Sobel, Scharr, Laplacian and box lowpass. Each
// is one separable term (or the sum of two), run in bands of rows with one slice of
// the work buffer each; the band bodies are in vncvderivative.h.
#include <type_traits>

#include "check.h"
#include "filters/vncvderivative.h"
#include "filters/vncvseparable.h"

namespace {

// One thread's slice of the work buffer (bytes, before its 32 bytes of alignment
// slack), from the pipeline queries' per-thread sizes R and C for kernel length k:
//   Sobel, Lowpass   16-bit: 2 W16 (2k + 15) + 4 (3k + 30) + 64 + R + C;  32f: W4 for W16, 4 for 2
//   Scharr           16-bit: 42 W16 + 220 + R + C;  32f: 84 W4 + 220 + R + C
//   Laplacian        16-bit: 4 W16 (2k + 15) + 8 (3k + 30) + 96 + R + C (8s 5x5: + 2 W16 h + 32);
//                    32f: 8 W16 (2k + 15) + ...
std::int64_t ownFixedSliceBytes(vnxiSize roi, int k, ownFixedMember m) {
  const bool wide = m.output == ownFixedOutput::To32f;
  const std::int64_t w = ownFixedStride(roi.width, m.output, m.kernel);
  const std::int64_t rc = wide ? ownRowPass32fBytes(roi, k) + kOwnColumnPass32fBytes
                               : ownRowPass8u16sBytes(roi, k) + ownColumnPass16sBytes(roi, k);
  if (ownIsScharr(m.kernel)) return (wide ? 84 : 42) * w + 220 + rc;
  if (m.kernel == ownFixedKernel::Laplacian) {
    const std::int64_t s = (wide ? 8 : 4) * w * (2 * k + 15) + 8 * (3 * k + 30) + 96 + rc;
    return m.output == ownFixedOutput::To8s && k == 5 ? s + 2 * w * roi.height + 32 : s;
  }
  return (wide ? 4 : 2) * w * (2 * k + 15) + 4 * (3 * k + 30) + 64 + rc;
}

// The query of a member: T slices of S + 32 bytes, in 64 bits.
vnxStatus ownFixedSize(vnxiSize roi, int mask, int* pSize, ownFixedMember m) {
  if (vnxStatus st = ownCheckFixedQuery(pSize, roi, mask)) return st;
  return ownReportSize(ownNumThreads() * (ownFixedSliceBytes(roi, ownMaskLength(mask), m) + 32), pSize);
}

template <class D>
constexpr ownFixedOutput ownOutputOf() {
  return std::is_same<D, vnx16s>::value  ? ownFixedOutput::To16s
         : std::is_same<D, vnx8s>::value ? ownFixedOutput::To8s
         : std::is_same<D, vnx8u>::value ? ownFixedOutput::To8u
                                         : ownFixedOutput::To32f;
}

// The whole filter: checks in their order, then serial or in bands of rows, each band
// with its own slice of the work buffer.
template <class S, class D>
vnxStatus ownFixedFilter(const S* pSrc, int srcStep, D* pDst, int dstStep, vnxiSize roi, int mask, int border,
                         S bval, ownDivisorArg divisor, vnx8u* pBuffer, ownFixedKernel kernel) {
  if (vnxStatus st = ownCheckFixedFilter({pSrc, pDst, pBuffer}, roi,
                                         {ownImg<S>(srcStep, roi.width), ownImg<D>(dstStep, roi.width)}, border,
                                         divisor, mask))
    return st;
  constexpr ownFixedOutput out = ownOutputOf<D>();
  const int k = ownMaskLength(mask);
  const ownBorder rule = static_cast<ownBorder>(border);
  const std::int64_t slice = ownFixedSliceBytes(roi, k, {kernel, out}) + 32;
  const std::int64_t stride = ownFixedStride(roi.width, out, kernel);
  const ownBandSplit split{roi.height, ownBandCount(roi, ownFixedBands(kernel))};
  if constexpr (out == ownFixedOutput::To32f) {
    const ownJob32f job{pSrc, srcStep, pDst, dstStep, roi, rule, bval, ownFixedScale32f(kernel, k), stride};
    ownRunBands(split, [&](int b, int y0, int y1) { ownFixedRows(kernel, k, job, pBuffer + b * slice, y0, y1); });
  } else {
    const int div = kernel == ownFixedKernel::Lowpass ? k * k : divisor.value;
    const ownJob8u<D> job{pSrc, srcStep, pDst, dstStep, roi, rule, bval, div, stride};
    ownRunBands(split, [&](int b, int y0, int y1) { ownFixedRows(kernel, k, job, pBuffer + b * slice, y0, y1); });
  }
  return vnxStatusOk;
}

template <class S, class D>
vnxStatus ownFixedFilter(const S* pSrc, int srcStep, D* pDst, int dstStep, vnxiSize roi, int mask, int border,
                         S bval, vnx8u* pBuffer, ownFixedKernel kernel) {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roi, mask, border, bval, ownDivisorArg::none(), pBuffer,
                        kernel);
}

}  // namespace

VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelHoriz);
}
VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelHoriz);
}
VNX_API vnxStatus vnxiFilterSobelHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelHoriz);
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHoriz, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHoriz, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHoriz, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelVert);
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelVert);
}
VNX_API vnxStatus vnxiFilterSobelVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelVert);
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVert, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVert, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVert, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                         vnxiSize roiSize, int mask, int borderType,
                                                         vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelNegVert);
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                        vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                        int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelNegVert);
}
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelNegVert);
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelNegVert, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                               int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelNegVert, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelNegVert, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst,
                                                             int dstStep, vnxiSize roiSize, int mask, int borderType,
                                                             vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelHorizSecond);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelHorizSecond);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx32f borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelHorizSecond);
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                    int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHorizSecond, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHorizSecond, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelHorizSecond, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelVertSecond);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx8u borderValue, int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelVertSecond);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                          vnxiSize roiSize, int mask, int borderType,
                                                          vnx32f borderValue, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelVertSecond);
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVertSecond, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVertSecond, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                 int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelVertSecond, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelCross);
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::SobelCross);
}
VNX_API vnxStatus vnxiFilterSobelCrossBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::SobelCross);
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelCross, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelCross, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::SobelCross, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::Laplacian);
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::Laplacian);
}
VNX_API vnxStatus vnxiFilterLaplacianBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::Laplacian);
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::Laplacian, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::Laplacian, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::Laplacian, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                        vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                        vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownFixedKernel::ScharrHoriz);
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::ScharrHoriz);
}
VNX_API vnxStatus vnxiFilterScharrHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownFixedKernel::ScharrHoriz);
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrHoriz, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrHoriz, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrHoriz, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownFixedKernel::ScharrVert);
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, ownDivisorArg::of(divisor),
                        pBuffer, ownFixedKernel::ScharrVert);
}
VNX_API vnxStatus vnxiFilterScharrVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, vnxMskSize3x3, borderType, borderValue, pBuffer,
                        ownFixedKernel::ScharrVert);
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrVert, ownFixedOutput::To16s});
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrVert, ownFixedOutput::To8s});
}
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, vnxMskSize3x3, pBufferSize, {ownFixedKernel::ScharrVert, ownFixedOutput::To32f});
}
VNX_API vnxStatus vnxiFilterLowpassBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                 vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                 vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::Lowpass);
}
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_8u_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::Lowpass, ownFixedOutput::To8u});
}
VNX_API vnxStatus vnxiFilterLowpassBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                  vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                  vnx8u* pBuffer) noexcept {
  return ownFixedFilter(pSrc, srcStep, pDst, dstStep, roiSize, mask, borderType, borderValue, pBuffer,
                        ownFixedKernel::Lowpass);
}
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) noexcept {
  return ownFixedSize(roiSize, mask, pBufferSize, {ownFixedKernel::Lowpass, ownFixedOutput::To32f});
}
