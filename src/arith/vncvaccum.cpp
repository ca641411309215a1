// Running accumulators: a 32f image that takes a source, its square, the product
// of two sources or a weighted blend, pixel by pixel, in single precision.
#include <type_traits>

#include "check.h"
#include "simd.h"

namespace {

enum class ownAcc { Add, Square, Product, Weighted };

// One pixel, the reference for the vector bodies and their tail. Masked forms
// keep the addition and zero the term (Add, Square, Product) or the weight
// (Weighted): an unselected -0.0 becomes +0.0, an unselected infinity under
// Weighted becomes NaN, both as the formulas say.
template <ownAcc K, bool Masked>
inline float ownAccPixel(float acc, float a, float b, bool sel, float alpha) {
  if constexpr (K == ownAcc::Weighted) {
    return acc + (a - acc) * ((Masked && !sel) ? 0.0f : alpha);
  } else {
    const float term = K == ownAcc::Add ? a : K == ownAcc::Square ? a * a : a * b;
    return acc + ((Masked && !sel) ? 0.0f : term);
  }
}

// The same, four lanes at a time; and-ing with a zero selector gives +0.0 exactly.
template <ownAcc K, bool Masked>
inline __m128 ownAccPixel(__m128 acc, __m128 a, __m128 b, __m128 sel, __m128 alpha) {
  if constexpr (K == ownAcc::Weighted) {
    return _mm_add_ps(acc, _mm_mul_ps(_mm_sub_ps(a, acc), Masked ? _mm_and_ps(alpha, sel) : alpha));
  } else {
    const __m128 term = K == ownAcc::Add ? a : K == ownAcc::Square ? _mm_mul_ps(a, a) : _mm_mul_ps(a, b);
    return _mm_add_ps(acc, Masked ? _mm_and_ps(term, sel) : term);
  }
}

// Pixels x0 .. n - 1 of one row. s2 is read only by Product, m only when Masked.
template <ownAcc K, bool Masked, class S>
void ownAccRow(const S* s1, const S* s2, const vnx8u* m, float* acc, int x0, int n, float alpha) {
  for (int x = x0; x < n; ++x)
    acc[x] = ownAccPixel<K, Masked>(acc[x], static_cast<float>(s1[x]),
                                    K == ownAcc::Product ? static_cast<float>(s2[x]) : 0.0f, Masked && m[x] != 0,
                                    alpha);
}

// Blocks of sixteen pixels, then the template for the rest. Each accumulator
// element is read and written once, so no block overlaps another.
template <ownAcc K, bool Masked, class S>
void ownAccRow_sse2(const S* s1, const S* s2, const vnx8u* m, float* acc, int n, float alpha) {
  // Masked Add, Square and Product of integer sources clear the unselected samples
  // before widening: a zero sample gives the term +0.0, exactly what the formula
  // adds there, and no per-lane selector is needed. Weighted and 32f sources select.
  constexpr bool kPremask = Masked && K != ownAcc::Weighted && !std::is_same<S, vnx32f>::value;
  constexpr bool kSelect = Masked && !kPremask;
  const __m128 va = _mm_set1_ps(alpha);
  int x = 0;
  for (; x + 16 <= n; x += 16) {
    __m128 a[4], b[4], sel[4];
    if constexpr (kPremask) {
      ownLoad16fSelected(s1 + x, m + x, a);
      if constexpr (K == ownAcc::Product) ownLoad16fSelected(s2 + x, m + x, b);
    } else {
      ownLoad16f(s1 + x, a);
      if constexpr (K == ownAcc::Product) ownLoad16f(s2 + x, b);
    }
    if constexpr (kSelect) ownNonzero16(m + x, sel);
    // All loads before the first store: the stores cannot alias what is still to be read.
    __m128 v[4];
    for (int i = 0; i < 4; ++i) v[i] = _mm_loadu_ps(acc + x + 4 * i);
    for (int i = 0; i < 4; ++i)
      v[i] = ownAccPixel<K, kSelect>(v[i], a[i], K == ownAcc::Product ? b[i] : a[i], kSelect ? sel[i] : a[i], va);
    for (int i = 0; i < 4; ++i) _mm_storeu_ps(acc + x + 4 * i, v[i]);
  }
  ownAccRow<K, Masked>(s1, s2, m, acc, x, n, alpha);
}

// Checks in order, then the rows. 16u sources are checked fully (row bytes, then
// odd steps) before the mask and then the accumulator; every other source type is
// checked with the mask and accumulator as one group (row bytes of all, then the
// multiple of 4 of the float steps).
template <ownAcc K, bool Masked, class S>
vnxStatus ownAccumulate(const S* s1, int s1Step, const S* s2, int s2Step, const vnx8u* m, int mStep, float* acc,
                        int accStep, vnxiSize roi, float alpha = 0.0f) {
  constexpr bool kTwo = K == ownAcc::Product;
  const void* ptrs[4] = {s1, kTwo ? static_cast<const void*>(s2) : s1, Masked ? static_cast<const void*>(m) : s1,
                         acc};
  for (const void* p : ptrs)
    if (!p) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  ownStep steps[4];
  int nSrc = 0, n = 0;
  steps[n++] = ownImg<S>(s1Step, roi.width);
  if (kTwo) steps[n++] = ownImg<S>(s2Step, roi.width);
  nSrc = n;
  if (Masked) steps[n++] = ownImg<vnx8u>(mStep, roi.width);
  steps[n++] = ownImg<vnx32f>(accStep, roi.width);
  if constexpr (std::is_same<S, vnx16u>::value) {
    if (vnxStatus st = ownCheckSteps(steps, nSrc)) return st;
    if (vnxStatus st = ownCheckSteps(steps + nSrc, n - nSrc - 1)) return st;
    if (vnxStatus st = ownCheckSteps(steps + n - 1, 1)) return st;
  } else {
    if (vnxStatus st = ownCheckSteps(steps, n)) return st;
  }
  for (int y = 0; y < roi.height; ++y)
    ownAccRow_sse2<K, Masked>(ownRow(s1, s1Step, y), kTwo ? ownRow(s2, s2Step, y) : nullptr,
                              Masked ? ownRow(m, mStep, y) : nullptr, ownRow(acc, accStep, y), roi.width, alpha);
  return vnxStatusOk;
}

constexpr ownAcc kAdd = ownAcc::Add, kSq = ownAcc::Square, kProd = ownAcc::Product, kW = ownAcc::Weighted;

}  // namespace

// ---- Add ---------------------------------------------------------------------
VNX_API vnxStatus vnxiAdd_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                      vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAdd_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                    vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kAdd, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}

// ---- AddSquare ---------------------------------------------------------------
VNX_API vnxStatus vnxiAddSquare_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                            vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                         vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                             vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddSquare_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kSq, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize);
}

// ---- AddProduct --------------------------------------------------------------
VNX_API vnxStatus vnxiAddProduct_8u32f_C1IR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                             int src2Step, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_32f_C1IR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst, srcDstStep, roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8u32f_C1IMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                              int src2Step, const vnx8u* pMask, int maskStep, vnx32f* pSrcDst,
                                              int srcDstStep, vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, srcDstStep,
                                    roiSize);
}
VNX_API vnxStatus vnxiAddProduct_32f_C1IMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) noexcept {
  return ownAccumulate<kProd, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, srcDstStep,
                                    roiSize);
}

// ---- AddWeighted -------------------------------------------------------------
VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kW, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kW, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                              vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kW, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize, vnx32f alpha) noexcept {
  return ownAccumulate<kW, false>(pSrc, srcStep, pSrc, 0, nullptr, 0, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) noexcept {
  return ownAccumulate<kW, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) noexcept {
  return ownAccumulate<kW, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                               vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                               vnx32f alpha) noexcept {
  return ownAccumulate<kW, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize, alpha);
}
VNX_API vnxStatus vnxiAddWeighted_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                            vnx32f alpha) noexcept {
  return ownAccumulate<kW, true>(pSrc, srcStep, pSrc, 0, pMask, maskStep, pSrcDst, srcDstStep, roiSize, alpha);
}
