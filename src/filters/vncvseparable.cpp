// Separable row and column pipeline passes: a row pass filters each source row along x
// with a 1-D kernel and synthesises the columns beyond the ROI by a border type; a
// column pass combines kernelSize intermediate rows, given by pointers, into one row.
// The exports check their arguments and run the row kernels of vncvseparable.h.
#include "filters/vncvseparable.h"

#include "check.h"
#include "parallel.h"

namespace {

// Row pass: the checks of ownCheckRowPass, then bands of rows when the ROI is large.
template <int C, class S, class D, class K>
vnxStatus ownRowPipeline(const S* pSrc, int srcStep, D* const* ppDst, vnxiSize roi, const K* pKernel, int k,
                         int anchor, int border, S bval, int divisor, const vnx8u* pBuffer, ownSum16 sum) {
  if (vnxStatus st = ownCheckRowPass({pSrc, ppDst, pKernel, pBuffer}, roi, k, anchor, ownImg<S, C>(srcStep, roi.width),
                                     border, divisor, ppDst, roi.height))
    return st;
  const ownBorder rule = static_cast<ownBorder>(border);
  ownRunBands(ownBandSplit{roi.height, ownBandCount(roi, kOwnBandsRowPass)}, [&](int, int y0, int y1) {
    for (int y = y0; y < y1; ++y)
      ownRowPass(ownRow(pSrc, srcStep, y), roi.width, C, ppDst[y], pKernel, k, anchor, rule, bval, divisor, sum);
  });
  return vnxStatusOk;
}

// Column pass: the checks of ownCheckColumnPass, then one row at a time.
template <int C, class D, class K>
vnxStatus ownColumnPipeline(const K* const* ppSrc, D* pDst, int dstStep, vnxiSize roi, const K* pKernel, int k,
                            int divisor, const vnx8u* pBuffer, ownSum16 sum) {
  const std::int64_t nRows = ppSrc && roi.height > 0 && k > 0 ? std::int64_t{roi.height} + k - 1 : 0;
  if (vnxStatus st = ownCheckColumnPass({ppSrc, pDst, pKernel}, roi, k, ownImg<D, C>(dstStep, roi.width), pBuffer, ppSrc,
                                        nRows, divisor))
    return st;
  const std::int64_t n = std::int64_t{roi.width} * C;
  for (int y = 0; y < roi.height; ++y) ownColumnPass(ppSrc + y, pKernel, k, ownRow(pDst, dstStep, y), n, divisor, sum);
  return vnxStatusOk;
}

// Size queries: T * (32 + 4 * (h + k) + S) with S from the query's own formula, in 64
// bits; a size beyond a signed 32-bit int is refused (vnxStatusBadSize).
template <class PerThread>
vnxStatus ownPipelineSize(vnxiSize roi, int k, int* pSize, PerThread&& perThread) {
  if (vnxStatus st = ownCheckPipelineQuery(pSize, roi, k)) return st;
  return ownReportSize(ownNumThreads() * perThread(roi, std::int64_t{k}), pSize);
}
inline auto ownPerThread(std::int64_t a, std::int64_t b) {  // S = a * k + b
  return [=](vnxiSize roi, std::int64_t k) { return ownPipelineThreadBytes(roi, k, a * k + b); };
}
inline auto ownPerThreadColumn(std::int64_t a, int multiple) {  // S = a * (w rounded up) + 32
  return [=](vnxiSize roi, std::int64_t k) {
    return ownPipelineThreadBytes(roi, k, a * ownRoundUp(roi.width, multiple) + 32);
  };
}

}  // namespace

VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C3R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Low);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue,
                           divisor, pBuffer, ownSum16::Low);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<1>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue, 1,
                           pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) noexcept {
  return ownRowPipeline<3>(pSrc, srcStep, ppDst, roiSize, pKernel, kernelSize, xAnchor, borderType, borderValue, 1,
                           pBuffer, ownSum16::Exact);
}

VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C1R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C3R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C1R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C3R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, divisor, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Low);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Low);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C1R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<1>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Exact);
}
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C3R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) noexcept {
  return ownColumnPipeline<3>(ppSrc, pDst, dstStep, roiSize, pKernel, kernelSize, 1, pBuffer, ownSum16::Exact);
}

VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownRowPass8u16sBytes);
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(60, 112));
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(48, 80));
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(40, 64));
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(24, 64));
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(208, 64));
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownRowPass32fBytes);
}
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize, ownPerThread(192, 32));
}

VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         ownColumnPass16sBytes);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         ownPerThreadColumn(36, 4));
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C1R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C3R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C1R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_16s_C3R(roiSize, kernelSize, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         ownPerThreadColumn(12, 8));
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) noexcept {
  return ownPipelineSize(roiSize, kernelSize, pBufferSize,
                         ownPerThreadColumn(36, 8));
}
// One query for both channel forms: the float column pass needs no scratch of its own.
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  if (vnxStatus st = ownCheckPipelineQuery(pBufferSize, roiSize, kernelSize)) return st;
  return ownReportSize(kOwnColumnPass32fBytes, pBufferSize);
}
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) noexcept {
  return vnxiFilterColumnPipelineGetBufferSize_32f_C1R(roiSize, kernelSize, pBufferSize);
}
