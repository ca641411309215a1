// Running accumulators: a 32f image that takes a source, its square, the product
// of two sources or a weighted blend, pixel by pixel, in single precision.
#include "vncvaccum.h"

#include "check.h"

namespace {

// The step checks of the accumulators. 16u sources are checked fully (row bytes,
// then odd steps) before the mask and then the accumulator; every other source
// type is checked with the mask and accumulator as one group (row bytes of all,
// then the multiple of 4 of the float steps).
template <class S>
vnxStatus ownCheckAccSteps(const ownStep* steps, int nSources, int n) {
  if (!std::is_same<S, vnx16u>::value) return ownCheckSteps(steps, n);
  if (vnxStatus st = ownCheckSteps(steps, nSources)) return st;
  return ownCheckSteps(steps + nSources, n - nSources);  // the mask has no multiple test
}

// Checks in order, then the rows.
template <ownAccOp K, class S, ownMasking M>
vnxStatus ownAccumulate(ownAccSources<S, M> src, float* acc, int accStep, vnxiSize roi, float alpha = 0.0f) {
  constexpr bool kTwo = K == ownAccOp::Product, kMasked = M == ownMasking::ByMask;
  if (vnxStatus st = ownCheckPtrs({src.s1, kTwo ? static_cast<const void*>(src.s2) : src.s1,
                                   kMasked ? static_cast<const void*>(src.mask) : src.s1, acc}))
    return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  ownStep steps[4];
  int n = 0;
  steps[n++] = ownImg<S>(src.s1Step, roi.width);
  if (kTwo) steps[n++] = ownImg<S>(src.s2Step, roi.width);
  const int nSources = n;
  if (kMasked) steps[n++] = ownImg<vnx8u>(src.maskStep, roi.width);
  steps[n++] = ownImg<vnx32f>(accStep, roi.width);
  if (vnxStatus st = ownCheckAccSteps<S>(steps, nSources, n)) return st;
  for (int y = 0; y < roi.height; ++y)
    ownAccRow_sse2<K, M>(ownRow(src.s1, src.s1Step, y), kTwo ? ownRow(src.s2, src.s2Step, y) : nullptr,
                         kMasked ? ownRow(src.mask, src.maskStep, y) : nullptr, ownRow(acc, accStep, y), roi.width,
                         alpha);
  return vnxStatusOk;
}

constexpr ownAccOp kAdd = ownAccOp::Add, kSquare = ownAccOp::Square, kProduct = ownAccOp::Product,
                   kWeighted = ownAccOp::Weighted;

}  // namespace

// ---- Add ---------------------------------------------------------------------
VNX_API vnxStatus vnxiAdd_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                      vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                    vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}

// ---- AddSquare ---------------------------------------------------------------
VNX_API vnxStatus vnxiAddSquare_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                            vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                         vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                             vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSquare>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize);
}

// ---- AddProduct --------------------------------------------------------------
VNX_API vnxStatus vnxiAddProduct_8u32f_C1IR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                             int src2Step, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_32f_C1IR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step), pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8u32f_C1IMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step).masked(pMask, maskStep), pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step).masked(pMask, maskStep), pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                              int src2Step, const vnx8u* pMask, int maskStep, vnx32f* pSrcDst,
                                              int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step).masked(pMask, maskStep), pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_32f_C1IMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kProduct>(ownTwoSources(pSrc1, src1Step, pSrc2, src2Step).masked(pMask, maskStep), pSrcDst, srcDstStep,
                                    roiSize);
}

// ---- AddWeighted -------------------------------------------------------------
VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                              vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                               vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                               vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                            vnx32f alpha) noexcept {
  return ownAccumulate<kWeighted>(ownOneSource(pSrc, srcStep).masked(pMask, maskStep), pSrcDst, srcDstStep, roiSize, alpha);
}
