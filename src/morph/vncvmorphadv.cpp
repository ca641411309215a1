// Composite morphology: opening, closing, top-hat, black-hat and gradient as fixed
// sequences of dilation and erosion with a direct and a reflected state, an
// intermediate image, and a final difference.
#include <algorithm>
#include <type_traits>

#include "check.h"
#include "morph/vncvmorph.h"

namespace {

// Five words: offsets of the direct state, the reflected state and the intermediate
// image from the start of the block, the recorded figure and a zero.
struct ownMorphAdvState {
  std::int32_t directOffset, reflectedOffset, imageOffset, recordedBytes, reserved;
};
static_assert(sizeof(ownMorphAdvState) == 20, "five words");

inline std::int64_t ownRoundUp32(std::int64_t v) { return (v + 31) / 32 * 32; }

template <class T, int C>
std::int64_t ownImageStep(int width) {
  return ownRoundUp32(static_cast<std::int64_t>(width) * C * static_cast<std::int64_t>(sizeof(T)));
}

template <class T, int C>
vnxStatus ownAdvSize(vnxiSize roi, const vnx8u* mask, vnxiSize ms, int* pSize) {
  if (roi.height < 1) return vnxStatusBadSize;
  if (!pSize) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckMorphCreate(mask, roi.width, ms, pSize)) return st;
  const std::int64_t s = ownMorphStateBytes(roi.width, mask, ms, {ms.width >> 1, ms.height >> 1}, ownTraits<T>::code, C,
                                            ownRunPath::Disabled);
  const std::int64_t bytes = ownImageStep<T, C>(roi.width) * roi.height + 2 * s + 84;
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *pSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

// Rotates the mask by half a turn in place (cell k with cell area - 1 - k); twice
// restores it.
void ownReverse(vnx8u* mask, vnxiSize ms) {
  std::reverse(mask, mask + static_cast<std::int64_t>(ms.width) * ms.height);
}

template <class T, int C>
vnxStatus ownAdvInit(void* pState, vnxiSize roi, vnx8u* mask, vnxiSize ms, vnxiPoint anchor) {
  if (roi.height < 1) return vnxStatusBadSize;
  if (!pState) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckMorphCreate(mask, roi.width, ms, anchor, pState)) return st;
  const vnxiPoint reflected{ms.width - anchor.x - 1, ms.height - anchor.y - 1};
  if (vnxStatus st = ownCheckMorphCreate(mask, roi.width, ms, reflected, pState)) return st;
  unsigned char* base = static_cast<unsigned char*>(pState);
  const std::uintptr_t origin = reinterpret_cast<std::uintptr_t>(base);
  auto next32 = [&](std::int64_t offset) {
    return static_cast<std::int32_t>(ownRoundUp32(static_cast<std::int64_t>(origin) + offset) - origin);
  };
  ownMorphAdvState h{};
  h.directOffset = static_cast<std::int32_t>(sizeof h);
  if (vnxStatus st = ownMorphCreate(roi.width, mask, ms, anchor, ownTraits<T>::code, C, ownRunPath::Disabled,
                                    base + h.directOffset))
    return st;
  const auto* direct = reinterpret_cast<const ownMorphState*>(base + h.directOffset);
  h.reflectedOffset = next32(static_cast<std::int64_t>(h.directOffset) + direct->totalBytes);
  ownReverse(mask, ms);
  const vnxStatus st = ownMorphCreate(roi.width, mask, ms, reflected, ownTraits<T>::code, C, ownRunPath::Disabled,
                                      base + h.reflectedOffset);
  ownReverse(mask, ms);
  if (st) return st;
  const auto* refl = reinterpret_cast<const ownMorphState*>(base + h.reflectedOffset);
  h.imageOffset = next32(static_cast<std::int64_t>(h.reflectedOffset) + refl->totalBytes);
  h.recordedBytes = static_cast<std::int32_t>(ownRoundUp32(static_cast<std::int64_t>(roi.width) * sizeof(T)) * roi.height);
  std::memcpy(base, &h, sizeof h);
  return vnxStatusOk;
}

template <class T, int C>
vnxStatus ownAdvInitAlloc(vnxiMorphAdvState** pp, vnxiSize roi, vnx8u* mask, vnxiSize ms, vnxiPoint anchor) {
  if (!pp) return vnxStatusNullPtr;
  int size = 0;
  (void)ownAdvSize<T, C>(roi, mask, ms, &size);  // a failed query leaves 0: the allocation then fails
  void* block = ownMalloc_8u(size);
  if (!block) return vnxStatusNoMemory;
  if (vnxStatus st = ownAdvInit<T, C>(block, roi, mask, ms, anchor)) {
    ownFree(block);
    return st;
  }
  *pp = static_cast<vnxiMorphAdvState*>(block);
  return vnxStatusOk;
}

// ---- Differences -----------------------------------------------------------------------
// 8u: a - b saturated at 0. 32f: a - b, values below 0.0 set to 0.0 (NaN and -0.0 are
// not below 0.0 and stay; NaN becomes the library's one NaN).
template <class T>
void ownDiffRow(const T* a, const T* b, T* d, std::int64_t x0, std::int64_t n) {
  for (std::int64_t i = x0; i < n; ++i) {
    if constexpr (std::is_same<T, vnx8u>::value) {
      d[i] = static_cast<vnx8u>(a[i] > b[i] ? a[i] - b[i] : 0);
    } else {
      const vnx32f v = a[i] - b[i];
      d[i] = v < 0.0f ? 0.0f : ownCanonicalNaN(v);
    }
  }
}
void ownDiffRow_sse2(const vnx8u* a, const vnx8u* b, vnx8u* d, std::int64_t n) {
  std::int64_t i = 0;
  for (; i + 16 <= n; i += 16) ownStore(d + i, _mm_subs_epu8(ownLoad(a + i), ownLoad(b + i)));
  ownDiffRow(a, b, d, i, n);
}
void ownDiffRow_sse2(const vnx32f* a, const vnx32f* b, vnx32f* d, std::int64_t n) {
  std::int64_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128 v = _mm_sub_ps(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i));
    _mm_storeu_ps(d + i, ownCanonicalNaN(_mm_andnot_ps(_mm_cmplt_ps(v, _mm_setzero_ps()), v)));
  }
  ownDiffRow(a, b, d, i, n);
}

template <class T, int C>
void ownDiffImage(const T* a, int aStep, const T* b, int bStep, T* d, int dStep, vnxiSize roi) {
  for (int y = 0; y < roi.height; ++y)
    ownDiffRow_sse2(ownRow(a, aStep, y), ownRow(b, bStep, y), ownRow(d, dStep, y), static_cast<std::int64_t>(roi.width) * C);
}

enum class ownCompositeOp { Open, Close, Tophat, Blackhat, Gradient };

template <ownCompositeOp K, class T, int C>
vnxStatus ownComposite(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int borderType, const void* state) {
  if (vnxStatus st = ownCheckMorphApply<T, C>(src, srcStep, dst, dstStep, roi, borderType, state)) return st;
  const auto* h = static_cast<const ownMorphAdvState*>(state);
  unsigned char* base = const_cast<unsigned char*>(ownStateBytes(state));
  const void* direct = base + h->directOffset;
  const void* refl = base + h->reflectedOffset;
  const auto* ds = static_cast<const ownMorphState*>(direct);
  const std::int64_t step = ownImageStep<T, C>(roi.width);
  if (roi.width > ds->maxRoiWidth || roi.height * step < h->recordedBytes) return vnxStatusBadSize;
  // The state's image holds T x creation height bytes; an ROI taller than that (the size
  // test lets one pass) gets an image of its own for this call.
  const std::int64_t stateStep = ownImageStep<T, C>(ds->maxRoiWidth);
  const std::int64_t rowFigure = ownRoundUp32(static_cast<std::int64_t>(ds->maxRoiWidth) * sizeof(T));
  const std::int64_t capacity = stateStep * (h->recordedBytes / rowFigure);
  const std::int64_t need = step * roi.height;
  ownBlock own(need > capacity && need <= INT32_MAX ? ownMalloc_8u(static_cast<int>(need)) : nullptr);
  if (need > capacity && !own) return vnxStatusNoMemory;
  T* tmp = reinterpret_cast<T*>(own ? static_cast<unsigned char*>(own.get()) : base + h->imageOffset);
  const int ts = static_cast<int>(step);
  constexpr auto D = ownMorphOp::Max;
  constexpr auto E = ownMorphOp::Min;
  vnxStatus st = vnxStatusOk;
  switch (K) {
    case ownCompositeOp::Open:
      if ((st = ownMorphApply<E, T, C>(src, srcStep, tmp, ts, roi, borderType, direct))) return st;
      return ownMorphApply<D, T, C>(tmp, ts, dst, dstStep, roi, borderType, refl);
    case ownCompositeOp::Close:
      if ((st = ownMorphApply<D, T, C>(src, srcStep, tmp, ts, roi, borderType, direct))) return st;
      return ownMorphApply<E, T, C>(tmp, ts, dst, dstStep, roi, borderType, refl);
    case ownCompositeOp::Tophat:
      if ((st = ownMorphApply<E, T, C>(src, srcStep, dst, dstStep, roi, borderType, direct))) return st;
      if ((st = ownMorphApply<D, T, C>(dst, dstStep, tmp, ts, roi, borderType, refl))) return st;
      ownDiffImage<T, C>(src, srcStep, tmp, ts, dst, dstStep, roi);
      return vnxStatusOk;
    case ownCompositeOp::Blackhat:
      if ((st = ownMorphApply<D, T, C>(src, srcStep, dst, dstStep, roi, borderType, direct))) return st;
      if ((st = ownMorphApply<E, T, C>(dst, dstStep, tmp, ts, roi, borderType, refl))) return st;
      ownDiffImage<T, C>(tmp, ts, src, srcStep, dst, dstStep, roi);
      return vnxStatusOk;
    default:
      if ((st = ownMorphApply<D, T, C>(src, srcStep, dst, dstStep, roi, borderType, direct))) return st;
      if ((st = ownMorphApply<E, T, C>(src, srcStep, tmp, ts, roi, borderType, direct))) return st;
      ownDiffImage<T, C>(dst, dstStep, tmp, ts, dst, dstStep, roi);
      return vnxStatusOk;
  }
}

}  // namespace

// ---- Exports ---------------------------------------------------------------------------

VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C1R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx8u, 1>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C3R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx8u, 3>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C4R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx8u, 4>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C1R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx32f, 1>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C3R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx32f, 3>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C4R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize,
                                            int* pSize) noexcept {
  return ownAdvSize<vnx32f, 4>(roiSize, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphAdvInit_8u_C1R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx8u, 1>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInit_8u_C3R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx8u, 3>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInit_8u_C4R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx8u, 4>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInit_32f_C1R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx32f, 1>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInit_32f_C3R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx32f, 3>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInit_32f_C4R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask,
                                         vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInit<vnx32f, 4>(pState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C1R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx8u, 1>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C3R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx8u, 3>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C4R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx8u, 4>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C1R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx32f, 1>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C3R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx32f, 3>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C4R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
                                              vnxiSize maskSize, vnxiPoint anchor) noexcept {
  return ownAdvInitAlloc<vnx32f, 4>(ppState, roiSize, pMask, maskSize, anchor);
}
VNX_API vnxStatus vnxiMorphAdvFree(vnxiMorphAdvState* pState) noexcept {
  return vnxiMorphologyFree(reinterpret_cast<vnxiMorphState*>(pState));
}
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Open, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Close, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Tophat, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Blackhat, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) noexcept {
  return ownComposite<ownCompositeOp::Gradient, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
