// Extrema of one channel with the locations of their first occurrences: vnxiMinMaxIndx_*.
#include "stats/vncvextrema.h"

#include "parallel.h"

// Column of the first selected sample equal to v in row y; 0 when there is none.
template <class T>
int ownFindColumn(const ownStatArgs<T>& a, int y, ownExtVal<T> v) {
  const typename ownSrcOf<T>::Plain src{a.row(y) + a.sampleOfInterest()};
  const vnx8u* m = a.mask ? ownRow(a.mask, a.maskStep, y) : nullptr;
  for (int x = 0; x < a.roi.width; ++x)
    if ((!m || m[x]) && src.at(x * a.channels) == v) return x;
  return 0;
}

template <class T>
inline vnx32f ownExtValue(ownExtVal<T> v) {
  if constexpr (std::is_same<T, vnx8s>::value)
    return static_cast<vnx32f>(static_cast<int>(v) - 128);
  else
    return ownCanonicalNaN(static_cast<vnx32f>(v));
}

// Stores a result the caller asked for: the four result pointers are not checked,
// and a null one means that result is not wanted.
template <class V>
inline void ownStoreWanted(V* p, V v) {
  if (p) *p = v;
}

template <class T>
vnxStatus ownMinMaxIndx(const ownStatArgs<T>& a, vnx32f* pMin, vnx32f* pMax, vnxiPoint* pMinIndex,
                        vnxiPoint* pMaxIndex) {
  if (vnxStatus st = a.check()) return st;
  const int nBands = ownBandCount(a.roi, kOwnBandsExtrema);
  ownExtremaPart<T> t;
  // band order decides ties: a later band's minimum is taken unless it is >= the
  // current one (a NaN is taken), its maximum only when strictly greater
  if (vnxStatus st = ownReduceBands<ownExtremaPart<T>>(
          a.roi.height, nBands,
          [&](int y0, int y1) {
            if constexpr (!std::is_same<T, vnx32f>::value)
              if (!a.mask && a.channels == 1) return ownPlainExtremaBand(a, y0, y1);
            return ownExtremaBand(a, y0, y1);
          },
          [](ownExtremaPart<T>& cur, const ownExtremaPart<T>& p) {
            if (!(p.mn >= cur.mn)) cur.mn = p.mn, cur.mnRow = p.mnRow;
            if (p.mx > cur.mx) cur.mx = p.mx, cur.mxRow = p.mxRow;
            cur.any = cur.any || p.any;
          },
          &t))
    return st;
  if (!t.any) {
    ownStoreWanted(pMin, 0.0f);
    ownStoreWanted(pMax, 0.0f);
    ownStoreWanted(pMinIndex, vnxiPoint{0, 0});
    ownStoreWanted(pMaxIndex, vnxiPoint{0, 0});
    return vnxStatusOk;
  }
  ownStoreWanted(pMin, ownExtValue<T>(t.mn));
  ownStoreWanted(pMax, ownExtValue<T>(t.mx));
  // a location nobody wants is not searched for
  if (pMinIndex) *pMinIndex = vnxiPoint{ownFindColumn(a, t.mnRow, t.mn), t.mnRow};
  if (pMaxIndex) *pMaxIndex = vnxiPoint{ownFindColumn(a, t.mxRow, t.mx), t.mxRow};
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                        vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>::plain(pSrc, srcStep, roiSize), pMinVal, pMaxVal, pMinIndex,
                       pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>::channel(pSrc, srcStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                          vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                        vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>::plain(pSrc, srcStep, roiSize), pMinVal, pMaxVal, pMinIndex,
                       pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>::channel(pSrc, srcStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                         vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                          vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx8s>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>::plain(pSrc, srcStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>::channel(pSrc, srcStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                           vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx16u>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>::plain(pSrc, srcStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>::channel(pSrc, srcStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>::masked(pSrc, srcStep, pMask, maskStep, roiSize), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}

VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                           vnxiSize roiSize, int coi, vnx32f* pMinVal, vnx32f* pMaxVal,
                                           vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) noexcept {
  return ownMinMaxIndx(ownStatArgs<vnx32f>::maskedChannel(pSrc, srcStep, pMask, maskStep, roiSize, coi), pMinVal, pMaxVal,
                       pMinIndex, pMaxIndex);
}
