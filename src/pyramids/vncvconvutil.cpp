// Pyramid level sizes and the pyramid record.
#include "pyramids/vncvconvutil.h"

#include <climits>
#include <cmath>

#include "alloc.h"
#include "check.h"

namespace {
int ownClampToInt(std::int64_t v) { return v > INT_MAX ? INT_MAX : static_cast<int>(v); }

// Bytes of the record and its arrays, each array aligned to 8 bytes.
std::int64_t ownPyramidBytes(int level) {
  auto al = [](std::int64_t b) { return (b + 7) / 8 * 8; };
  const std::int64_t n = std::int64_t{level} + 1;
  return al(sizeof(vnxiPyramid)) + al(n * sizeof(void*)) + al(n * sizeof(vnxiSize)) + n * 8 + al(n * sizeof(int));
}
}  // namespace

VNX_API vnxStatus vnxiGetPyramidDownROI(vnxiSize srcRoi, vnxiSize* pDstRoi, vnx32f rate) noexcept {
  if (!pDstRoi) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(srcRoi)) return st;
  if (!ownPyramidRateOk(rate)) return vnxStatusBadArg;
  *pDstRoi = ownPyramidDownSize(srcRoi, rate);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiGetPyramidUpROI(vnxiSize srcRoi, vnxiSize* pDstRoiMin, vnxiSize* pDstRoiMax,
                                      vnx32f rate) noexcept {
  if (vnxStatus st = ownCheckPtrs({pDstRoiMin, pDstRoiMax})) return st;
  if (vnxStatus st = ownCheckRoi(srcRoi)) return st;
  if (!ownPyramidRateOk(rate)) return vnxStatusBadArg;
  const ownUpRange w = ownPyramidUpRange(srcRoi.width, rate), h = ownPyramidUpRange(srcRoi.height, rate);
  *pDstRoiMin = vnxiSize{ownClampToInt(w.lo), ownClampToInt(h.lo)};
  *pDstRoiMax = vnxiSize{ownClampToInt(w.hi), ownClampToInt(h.hi)};
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiPyramidInitAlloc(vnxiPyramid** ppPyramid, int level, vnxiSize roiSize, vnx32f rate) noexcept {
  if (!ppPyramid) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(roiSize)) return st;
  if (!ownPyramidRateOk(rate) || level < 1) return vnxStatusBadArg;
  const int steps = ownPyramidLevels(roiSize, rate);
  const int L = level < steps ? level : steps;
  const std::int64_t bytes = ownPyramidBytes(L);
  void* block = bytes <= INT_MAX ? ownMalloc_8u(static_cast<int>(bytes)) : nullptr;
  if (!block) return vnxStatusNoMemory;
  const std::int64_t n = std::int64_t{L} + 1;
  char* p = static_cast<char*>(block);
  auto take = [&](std::int64_t b) {
    char* q = p;
    p += (b + 7) / 8 * 8;
    return q;
  };
  vnxiPyramid* pyr = reinterpret_cast<vnxiPyramid*>(take(sizeof(vnxiPyramid)));
  pyr->pImage = reinterpret_cast<void**>(take(n * sizeof(void*)));
  pyr->pRoi = reinterpret_cast<vnxiSize*>(take(n * sizeof(vnxiSize)));
  pyr->pRate = reinterpret_cast<vnx64f*>(take(n * 8));
  pyr->pStep = reinterpret_cast<int*>(take(n * sizeof(int)));
  pyr->pState = nullptr;
  pyr->level = L;
  vnxiSize s = roiSize;
  for (int k = 0; k <= L; ++k) {
    pyr->pImage[k] = nullptr;
    pyr->pStep[k] = 0;
    pyr->pRoi[k] = s;
    pyr->pRate[k] = std::pow(1.0 / static_cast<double>(rate), k);
    s = ownPyramidDownSize(s, rate);
  }
  *ppPyramid = pyr;
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiPyramidFree(vnxiPyramid* pPyramid) noexcept {
  if (!pPyramid) return vnxStatusNullPtr;
  ownFree(pPyramid);
  return vnxStatusOk;
}
