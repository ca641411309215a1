// Haar classifier states: construction from feature arrays (upright or tilted),
// release, the detection-window size and the one-time tilting of chosen features.
#include <algorithm>

#include "alloc.h"
#include "haar.h"

namespace {

enum class ownHaarShape { Upright, Tilted };

// Corners of an upright rectangle (x, y, w, h): c0 = (x+w, y+h), c1 = (x, y+h),
// c2 = (x+w, y), c3 = (x, y); of a tilted one: c3 = (x, y), c2 = (x+w, y+w),
// c1 = (x-h, y+h), c0 = (x+w-h, y+w+h).
template <class W>
void ownSetCorners(ownHaarRect<W>& r, vnxiRect in, ownHaarShape shape) {
  const int x = in.x, y = in.y, w = in.width, h = in.height;
  const int c[4][2] = {{x + w, y + h}, {x, y + h}, {x + w, y}, {x, y}};
  const int t[4][2] = {{x + w - h, y + w + h}, {x - h, y + h}, {x + w, y + w}, {x, y}};
  for (int k = 0; k < 4; ++k)
    for (int a = 0; a < 2; ++a) r.corner[k][a] = shape == ownHaarShape::Upright ? c[k][a] : t[k][a];
}

// Storage rank: two-rectangle features first, then three, then all others.
inline int ownRank(int nRects, ownHaarShape shape) {
  if (shape == ownHaarShape::Tilted) return 0;  // tilted states keep input order
  return nRects == 2 ? 0 : nRects == 3 ? 1 : 2;
}

template <class W>
vnxStatus ownHaarInitAlloc(ownHaarState<W>** ppState, const vnxiRect* pFeature, const W* pWeight,
                           const W* pThreshold, const W* pVal1, const W* pVal2, const int* pNum, int length,
                           ownHaarShape shape, bool standardWeightsApply) {
  if (!ppState || !pFeature || !pWeight || !pThreshold || !pVal1 || !pVal2 || !pNum) return vnxStatusNullPtr;
  if (length < 0) return vnxStatusBadSize;
  std::int64_t nRects = 0;
  for (int i = 0; i < length; ++i) {
    if (pNum[i] < 1) return vnxStatusBadSize;
    nRects += pNum[i];
  }
  const std::int64_t bytes = static_cast<std::int64_t>(sizeof(ownHaarState<W>)) +
                             std::int64_t{length} * static_cast<std::int64_t>(sizeof(ownHaarFeature<W>)) +
                             nRects * static_cast<std::int64_t>(sizeof(ownHaarRect<W>));
  void* block = bytes <= INT32_MAX ? ownMalloc_8u(static_cast<int>(bytes)) : nullptr;
  if (!block) return vnxStatusNoMemory;
  auto* st = static_cast<ownHaarState<W>*>(block);
  auto* feature = reinterpret_cast<ownHaarFeature<W>*>(st + 1);
  auto* rect = reinterpret_cast<ownHaarRect<W>*>(feature + length);
  *st = ownHaarState<W>{length, static_cast<int>(nRects), feature, 0, 0, 0, 0, 0, 0, 0, static_cast<int>(nRects),
                        standardWeightsApply ? 1 : 0};
  if (shape == ownHaarShape::Tilted) st->flags = kOwnHaarTilted;
  if (length > 0) {
    const vnxiRect r0 = pFeature[0];
    st->bx = r0.x;
    st->by = r0.y;
    st->bw = shape == ownHaarShape::Upright ? r0.width : r0.width - r0.height;
    st->bh = shape == ownHaarShape::Upright ? r0.height : r0.width + r0.height;
  }
  bool invalid = false;
  ownHaarRect<W>* next = rect;
  for (int rank = 0; rank < 3; ++rank) {
    int first = 0;  // index of the feature's first input rectangle
    for (int i = 0; i < length; first += pNum[i], ++i) {
      if (ownRank(pNum[i], shape) != rank) continue;
      ownHaarFeature<W>& f = *feature++;
      f = {pNum[i], next, pThreshold[i], pVal1[i], pVal2[i], i * 256 + (shape == ownHaarShape::Tilted ? 1 : 0)};
      st->nTwo += pNum[i] == 2;
      st->nTwoOrThree += pNum[i] == 2 || pNum[i] == 3;
      if (pWeight[first] != W(-1)) st->standardWeights = 0;
      for (int k = 0; k < pNum[i]; ++k, ++next) {
        const vnxiRect r = pFeature[first + k];
        invalid |= r.x < 0 || r.y < 0 || r.width < 1 || r.height < 1 ||
                   (shape == ownHaarShape::Tilted && r.x + 1 < r.height);
        ownSetCorners(*next, r, shape);
        next->weight = pWeight[first + k];
        // The far edges compare with size + minimum and then hold an edge: kept
        // as the classifier format defines it (exact while the minima stay 0).
        const int farX = next->corner[0][0], farY = next->corner[0][1];
        st->bx = std::min(st->bx, r.x);
        st->by = std::min(st->by, r.y);
        if (farX > st->bw + st->bx) st->bw = farX;
        if (farY > st->bh + st->by) st->bh = farY;
      }
    }
  }
  st->bw -= st->bx;
  st->bh -= st->by;
  if (invalid) {
    ownFree(block);
    *ppState = nullptr;
    return vnxStatusBadArg;
  }
  *ppState = st;
  return vnxStatusOk;
}

template <class W>
vnxStatus ownHaarSize(const ownHaarState<W>* st, vnxiSize* pSize) {
  if (!st || !pSize) return vnxStatusNullPtr;
  vnxiSize s{0, 0};
  const ownHaarRect<W>* r = st->nFeatures > 0 ? st->feature[0].rect : nullptr;
  for (int k = 0; k < st->nRects; ++k) {
    s.width = std::max(s.width, r[k].corner[2][0]);
    s.height = std::max(s.height, r[k].corner[1][1]);
  }
  *pSize = s;
  return vnxStatusOk;
}

// Rewrites a feature's rectangles as tilted ones from w = c0.col - c3.col and
// h = c0.row - c3.row: anchored at c3 (flag != 0) or at the lower-left corner c1.
template <class W>
void ownTiltFeature(ownHaarFeature<W>& f, int flag) {
  for (int k = 0; k < f.nRects; ++k) {
    int(&c)[4][2] = f.rect[k].corner;
    const int w = c[0][0] - c[3][0], h = c[0][1] - c[3][1];
    if (flag != 0) {
      const int x = c[3][0], y = c[3][1];
      ownSetCorners(f.rect[k], vnxiRect{x, y, w, h}, ownHaarShape::Tilted);
    } else {
      const int x = c[1][0], yb = c[1][1], y = c[3][1];
      const int t[4][2] = {{x, yb}, {x - h, y}, {x + w, yb - w}, {x + w - h, yb - w - h}};
      std::copy(&t[0][0], &t[0][0] + 8, &c[0][0]);
    }
  }
}

template <class W>
vnxStatus ownHaarTilt(const vnx8u* pMask, int flag, ownHaarState<W>* st) {
  if (!pMask || !st) return vnxStatusNullPtr;
  if (st->flags & kOwnHaarTilted) return vnxStatusBadArg;
  bool any = false;
  for (int i = 0; i < st->nFeatures; ++i) {
    if (!pMask[i]) continue;
    any = true;
    for (int k = 0; k < st->nFeatures; ++k)
      if (st->feature[k].tag / 256 == i) {
        st->feature[k].tag = 1;
        ownTiltFeature(st->feature[k], flag);
        break;
      }
  }
  if (any) st->flags |= kOwnHaarTilted;
  return vnxStatusOk;
}

template <class S>
vnxStatus ownHaarFree(S* st) {
  if (!st) return vnxStatusNullPtr;
  ownFree(st);
  return vnxStatusOk;
}

template <class S, class W>
vnxStatus ownHaarInitAllocAs(S** ppState, const vnxiRect* pFeature, const W* pWeight, const W* pThreshold,
                             const W* pVal1, const W* pVal2, const int* pNum, int length, ownHaarShape shape,
                             bool standardWeightsApply) {
  ownHaarState<W>* st = nullptr;
  const vnxStatus r = ownHaarInitAlloc(ppState ? &st : nullptr, pFeature, pWeight, pThreshold, pVal1, pVal2, pNum,
                                       length, shape, standardWeightsApply);
  if (ppState && (r == vnxStatusOk || r == vnxStatusBadArg)) *ppState = static_cast<S*>(st);
  return r;
}

}  // namespace

VNX_API vnxStatus vnxiHaarClassifierInitAlloc_32f(vnxiHaarClassifier_32f** ppState, const vnxiRect* pFeature,
                                                 const vnx32f* pWeight, const vnx32f* pThreshold, const vnx32f* pVal1,
                                                 const vnx32f* pVal2, const int* pNum, int length) noexcept {
  return ownHaarInitAllocAs(ppState, pFeature, pWeight, pThreshold, pVal1, pVal2, pNum, length,
                            ownHaarShape::Upright, true);
}
VNX_API vnxStatus vnxiHaarClassifierInitAlloc_32s(vnxiHaarClassifier_32s** ppState, const vnxiRect* pFeature,
                                                 const vnx32s* pWeight, const vnx32s* pThreshold, const vnx32s* pVal1,
                                                 const vnx32s* pVal2, const int* pNum, int length) noexcept {
  return ownHaarInitAllocAs(ppState, pFeature, pWeight, pThreshold, pVal1, pVal2, pNum, length,
                            ownHaarShape::Upright, false);
}
VNX_API vnxStatus vnxiTiltedHaarClassifierInitAlloc_32f(vnxiHaarClassifier_32f** ppState, const vnxiRect* pFeature,
                                                       const vnx32f* pWeight, const vnx32f* pThreshold,
                                                       const vnx32f* pVal1, const vnx32f* pVal2, const int* pNum,
                                                       int length) noexcept {
  return ownHaarInitAllocAs(ppState, pFeature, pWeight, pThreshold, pVal1, pVal2, pNum, length, ownHaarShape::Tilted,
                            false);
}
VNX_API vnxStatus vnxiTiltedHaarClassifierInitAlloc_32s(vnxiHaarClassifier_32s** ppState, const vnxiRect* pFeature,
                                                       const vnx32s* pWeight, const vnx32s* pThreshold,
                                                       const vnx32s* pVal1, const vnx32s* pVal2, const int* pNum,
                                                       int length) noexcept {
  return ownHaarInitAllocAs(ppState, pFeature, pWeight, pThreshold, pVal1, pVal2, pNum, length, ownHaarShape::Tilted,
                            false);
}

VNX_API vnxStatus vnxiHaarClassifierFree_32f(vnxiHaarClassifier_32f* pState) noexcept { return ownHaarFree(pState); }
VNX_API vnxStatus vnxiHaarClassifierFree_32s(vnxiHaarClassifier_32s* pState) noexcept { return ownHaarFree(pState); }

VNX_API vnxStatus vnxiGetHaarClassifierSize_32f(const vnxiHaarClassifier_32f* pState, vnxiSize* pSize) noexcept {
  return ownHaarSize<vnx32f>(pState, pSize);
}
VNX_API vnxStatus vnxiGetHaarClassifierSize_32s(const vnxiHaarClassifier_32s* pState, vnxiSize* pSize) noexcept {
  return ownHaarSize<vnx32s>(pState, pSize);
}

VNX_API vnxStatus vnxiTiltHaarFeatures_32f(const vnx8u* pMask, int flag, vnxiHaarClassifier_32f* pState) noexcept {
  return ownHaarTilt<vnx32f>(pMask, flag, pState);
}
VNX_API vnxStatus vnxiTiltHaarFeatures_32s(const vnx8u* pMask, int flag, vnxiHaarClassifier_32s* pState) noexcept {
  return ownHaarTilt<vnx32s>(pMask, flag, pState);
}
