// Flood fill with the Range rule: every channel within [seed - minDelta, seed +
// maxDelta], the bounds taken once from the seed before the fill (8u clamped).
#include "vncvfloodfill.h"

VNX_API vnxStatus vnxiFloodFill_Range4Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 1, ownFillRule::Range, ownFillConn::Four>(pImage, imageStep, roiSize, seed, &newVal,
                                                                       &minDelta, &maxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range4Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 3, ownFillRule::Range, ownFillConn::Four>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                       pMinDelta, pMaxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range4Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                   vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 1, ownFillRule::Range, ownFillConn::Four>(pImage, imageStep, roiSize, seed, &newVal,
                                                                        &minDelta, &maxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range4Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                   const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                   vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 3, ownFillRule::Range, ownFillConn::Four>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                        pMinDelta, pMaxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range8Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 1, ownFillRule::Range, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, &newVal,
                                                                        &minDelta, &maxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range8Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx8u, 3, ownFillRule::Range, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                        pMinDelta, pMaxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range8Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                   vnxiFillRegion* pRegion, vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 1, ownFillRule::Range, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, &newVal,
                                                                         &minDelta, &maxDelta, pRegion, pBuffer);
}

VNX_API vnxStatus vnxiFloodFill_Range8Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                   const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                   vnx8u* pBuffer) noexcept {
  return ownFloodFill<vnx32f, 3, ownFillRule::Range, ownFillConn::Eight>(pImage, imageStep, roiSize, seed, pNewVal,
                                                                         pMinDelta, pMaxDelta, pRegion, pBuffer);
}
