// Dilation and erosion with a structuring-element state, on the path the state chose:
// general masks fold each distinct column of the mask down the rows and then across
// the columns, rectangles run on the rectangular filter, run decompositions slide each
// distinct run length along every source row once and fold the mask rows, and an
// empty mask copies. Every path gives the same result.
#include <algorithm>

#include "check.h"
#include "morph/vncvmorphstrip.h"

namespace {

// Columns of a general mask grouped by the set of rows they select: pattern[i] is the
// group of column i (-1: an empty column), rep[p] a column of group p and rows[p] how
// many rows it selects. Folding each group once down the rows and then the columns
// across costs (rows of the groups) + (nonempty columns) a pixel, not the cell count.
struct ownColumnGroups {
  int* pattern;
  int* rep;
  int* rows;
  int groups = 0, columns = 0;

  ownColumnGroups(const vnx8u* mask, int mw, int mh, int* store) : pattern(store), rep(store + mw), rows(store + 2 * mw) {
    for (int i = 0; i < mw; ++i) {
      int n = 0;
      for (int j = 0; j < mh; ++j) n += mask[static_cast<std::int64_t>(j) * mw + i] != 0;
      pattern[i] = -1;
      if (n == 0) continue;
      ++columns;
      for (int p = 0; p < groups && pattern[i] < 0; ++p) {
        bool same = true;
        for (int j = 0; j < mh && same; ++j)
          same = (mask[static_cast<std::int64_t>(j) * mw + i] != 0) == (mask[static_cast<std::int64_t>(j) * mw + rep[p]] != 0);
        if (same) pattern[i] = p;
      }
      if (pattern[i] < 0) {
        rep[groups] = i;
        rows[groups] = n;
        pattern[i] = groups++;
      }
    }
  }
};

// True when the n selected cells of column i start at row `first` without a gap.
bool ownConsecutive(const vnx8u* mask, int mw, int i, int first, int n) {
  for (int j = first; j < first + n; ++j)
    if (!mask[static_cast<std::int64_t>(j) * mw + i]) return false;
  return true;
}

template <class T>
ownRingShape ownStateShape(const ownMorphState* s, int width, int channels, int reachUp, int reachDown) {
  return {width, channels, s->anchorX, s->rightExtent, reachUp, reachDown, 0, 0};
}

template <ownMorphOp Op, class T>
vnxStatus ownGeneralExtreme(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int c, const ownMorphState* s) {
  const int mw = s->maskWidth, mh = s->maskHeight;
  const vnx8u* mask = ownStateArray<vnx8u>(s, s->maskOffset);
  const std::int64_t area = static_cast<std::int64_t>(mw) * mh;
  if (std::all_of(mask, mask + area, [](vnx8u v) { return v != 0; }) &&
      ownRectStrip<Op>(src, srcStep, dst, dstStep, roi, c, {mw, mh}, {s->anchorX, s->anchorY}))
    return vnxStatusOk;
  ownBlock store(ownMalloc_32(3 * mw));
  if (!store) return vnxStatusNoMemory;
  const ownColumnGroups g(mask, mw, mh, static_cast<int*>(store.get()));
  const ownRingShape shape = ownStateShape<T>(s, roi.width, c, s->anchorY, s->bottomExtent);
  const std::int64_t rowElems = ownAlignedRowElems<T>(shape);
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * c;
  const std::int64_t bandBytes = ownCarver::bytes(2 * g.groups * rowElems * static_cast<std::int64_t>(sizeof(T))) +
                                 ownCarver::bytes((2 * g.groups + std::max(mw, mh + 1)) * static_cast<std::int64_t>(sizeof(void*)));
  const std::int64_t workBytes = std::max<std::int64_t>(static_cast<std::int64_t>(sizeof(T)) * c * mh,
                                                        2 * static_cast<std::int64_t>(mh) * s->workBytes);
  void* work = const_cast<unsigned char*>(ownStateBytes(s)) + s->workOffset;  // the state's scratch area
  // Each group of columns folds its rows straight from the source rows (clamped to the
  // ROI) into the middle of a padded row, whose padding then repeats its edge pixels
  // (folding commutes with replicating columns); the columns are then folded across.
  auto band = [&](void* block, int y0, int y1) {
    ownCarver carve(block);
    T* folded = carve.take<T>(2 * g.groups * rowElems);
    const T** line = carve.take<const T*>(2 * g.groups + std::max(mw, mh + 1));
    const T** ptrs = line + 2 * g.groups;
    for (int y = y0; y < y1;) {
      const int pair = y + 1 < y1 ? 2 : 1;  // two output rows at a time
      for (int p = 0; p < g.groups; ++p) {
        T* mid[2] = {ownAlignedMid(folded + 2 * p * rowElems, shape), ownAlignedMid(folded + (2 * p + 1) * rowElems, shape)};
        int first = -1, n = 0;
        for (int j = 0; j < mh; ++j)
          if (mask[static_cast<std::int64_t>(j) * mw + g.rep[p]]) {
            first = first < 0 ? j : first;
            ptrs[n++] = ownClampedRow(src, srcStep, std::int64_t{y} - s->anchorY + j, roi.height);
          }
        // Consecutive rows share all but their first and last row between the two outputs.
        bool done = false;
        if (pair == 2 && n >= 2 && ownConsecutive(mask, mw, g.rep[p], first, n)) {
          ptrs[n] = ownClampedRow(src, srcStep, std::int64_t{y} + 1 - s->anchorY + first + n - 1, roi.height);
          done = ownExtremePair<Op>(ptrs, n, mid[0], mid[1], len);
        }
        if (!done) {
          for (int r = 0; r < pair; ++r) {
            int k = 0;
            for (int j = 0; j < mh; ++j)
              if (mask[static_cast<std::int64_t>(j) * mw + g.rep[p]])
                ptrs[k++] = ownClampedRow(src, srcStep, std::int64_t{y} + r - s->anchorY + j, roi.height);
            ownExtremeRow_sse2<Op>(ptrs, n, mid[r], len, ownMorphStore::Intermediate);
          }
        }
        for (int r = 0; r < pair; ++r) {
          ownReplicateEdges(mid[r], roi.width, c, s->anchorX, s->rightExtent);
          line[2 * p + r] = mid[r] - static_cast<std::int64_t>(s->anchorX) * c;
        }
      }
      for (int r = 0; r < pair; ++r, ++y) {
        int n = 0;
        for (int i = 0; i < mw; ++i)
          if (g.pattern[i] >= 0) ptrs[n++] = line[2 * g.pattern[i] + r] + static_cast<std::int64_t>(i) * c;
        ownExtremeRow_sse2<Op>(ptrs, n, ownRow(dst, dstStep, y), len, ownMorphStore::Final);
      }
    }
  };
  return ownMorphBands(roi, bandBytes, work, workBytes, band);
}

template <class T>
std::int64_t ownRunsBandBytesT(int roiWidth, vnxiSize box, int anchorX, int distinct, int rows, int channels) {
  const ownRingShape shape{roiWidth, channels, anchorX, box.width - 1 - anchorX, 0, 0, 0, 0};
  const std::int64_t len = static_cast<std::int64_t>(roiWidth) * channels;
  const std::int64_t ptr = sizeof(void*);
  return ownBorderRing<T>::bytes(shape) +
         ownCarver::bytes(static_cast<std::int64_t>(box.height) * distinct * len * static_cast<std::int64_t>(sizeof(T))) +
         ownCarver::bytes(8 * static_cast<std::int64_t>(box.height)) +
         ownCarver::bytes(ownBorderRing<T>::rowElems(shape) * static_cast<std::int64_t>(sizeof(T))) +
         ownCarver::bytes(ptr * std::max(rows, 2)) + ownCarver::bytes(ptr * kOwnDirectWindow);
}

template <ownMorphOp Op, class T>
vnxStatus ownRunsExtreme(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int c, const ownMorphState* s) {
  const ownMorphRuns* rec = ownStateArray<ownMorphRuns>(s, s->runOffset);
  const std::int32_t* rowRel = ownStateArray<std::int32_t>(s, rec->rowOffset);
  const std::int32_t* index = ownStateArray<std::int32_t>(s, rec->indexOffset);
  const std::int32_t* lengths = ownStateArray<std::int32_t>(s, rec->lengthOffset);
  const std::int32_t* offsets = ownStateArray<std::int32_t>(s, rec->anchorOffset);
  const int boxH = s->maskHeight, nd = rec->distinct, nr = rec->rows;
  const ownRingShape shape = ownStateShape<T>(s, roi.width, c, 0, 0);
  const std::int64_t len = static_cast<std::int64_t>(roi.width) * c;
  const std::int64_t bandBytes = ownRunsBandBytesT<T>(roi.width, {s->maskWidth, boxH}, s->anchorX, nd, nr, c);
  void* work = const_cast<unsigned char*>(ownStateBytes(s)) + s->workOffset;
  auto band = [&](void* block, int y0, int y1) {
    ownCarver carve(block);
    ownBorderRing<T> ring(src, srcStep, roi, shape, ownBorder::Replicate, T(0),
                          carve.take<unsigned char>(ownBorderRing<T>::bytes(shape)));
    T* cache = carve.take<T>(static_cast<std::int64_t>(boxH) * nd * len);
    std::int64_t* tags = carve.take<std::int64_t>(boxH);
    T* temp = carve.take<T>(ownBorderRing<T>::rowElems(shape));
    const T** ptrs = carve.take<const T*>(std::max(nr, 2));
    const T** window = carve.take<const T*>(kOwnDirectWindow);
    std::fill(tags, tags + boxH, std::int64_t{-1});
    for (int y = y0; y < y1; ++y) {
      for (int r = 0; r < nr; ++r) {
        const std::int64_t sy = std::min<std::int64_t>(std::max<std::int64_t>(std::int64_t{y} + rowRel[r] - s->anchorY, 0),
                                                       roi.height - 1);
        const std::int64_t slot = sy % boxH;
        T* rows = cache + slot * nd * len;
        if (tags[slot] != sy) {  // the horizontal extremes of source row sy, one a run length
          const T* padded = ring.row(sy);
          for (int d = 0; d < nd; ++d)
            ownWindowRow<Op>(padded - static_cast<std::int64_t>(offsets[d]) * c, c, lengths[d], rows + d * len, len,
                             temp, window, ownMorphStore::Intermediate);
          tags[slot] = sy;
        }
        ptrs[r] = rows + index[r] * len;
      }
      ownExtremeRow_sse2<Op>(ptrs, nr, ownRow(dst, dstStep, y), len, ownMorphStore::Final);
    }
  };
  return ownMorphBands(roi, bandBytes, work, s->workBytes, band);
}

template <class T>
void ownCopyRows(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int c) {
  for (int y = 0; y < roi.height; ++y)
    std::memmove(ownRow(dst, dstStep, y), ownRow(src, srcStep, y), static_cast<std::size_t>(roi.width) * c * sizeof(T));
}

}  // namespace

std::int64_t ownRunsBandBytes(int roiWidth, vnxiSize box, int anchorX, int distinct, int rows, int maxLength,
                              int channels, int elemBytes) {
  (void)maxLength;  // the doubling row is one padded row whatever the length
  return elemBytes == 1 ? ownRunsBandBytesT<vnx8u>(roiWidth, box, anchorX, distinct, rows, channels)
                        : ownRunsBandBytesT<vnx32f>(roiWidth, box, anchorX, distinct, rows, channels);
}

template <ownMorphOp Op, class T, int C>
vnxStatus ownMorphApply(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int borderType,
                        const void* state) {
  if (vnxStatus st = ownCheckMorphApply<T, C>(src, srcStep, dst, dstStep, roi, borderType, state)) return st;
  const ownMorphState* s = static_cast<const ownMorphState*>(state);
  if (roi.width > s->maxRoiWidth) return vnxStatusBadSize;
  if ((s->kind == kOwnMorphRuns || s->kind == kOwnMorphGeneral) &&
      ownCrossStrip<Op>(src, srcStep, dst, dstStep, roi, C, ownStateArray<vnx8u>(s, s->maskOffset),
                        {s->maskWidth, s->maskHeight}, {s->anchorX, s->anchorY}))
    return vnxStatusOk;
  switch (s->kind) {
    case kOwnMorphEmpty:
      ownCopyRows(src, srcStep, dst, dstStep, roi, C);
      return vnxStatusOk;
    case kOwnMorphRect:
      return ownRectExtreme<Op, T>(src, srcStep, dst, dstStep, roi, C, {s->maskWidth, s->maskHeight},
                                   {s->anchorX, s->anchorY},
                                   const_cast<unsigned char*>(ownStateBytes(s)) + s->workOffset, s->workBytes);
    case kOwnMorphRuns:
      return ownRunsExtreme<Op, T>(src, srcStep, dst, dstStep, roi, C, s);
    default:
      return ownGeneralExtreme<Op, T>(src, srcStep, dst, dstStep, roi, C, s);
  }
}

template vnxStatus ownMorphApply<ownMorphOp::Max, vnx8u, 1>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Max, vnx8u, 3>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Max, vnx8u, 4>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx8u, 1>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx8u, 3>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx8u, 4>(const vnx8u*, int, vnx8u*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Max, vnx32f, 1>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Max, vnx32f, 3>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Max, vnx32f, 4>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx32f, 1>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx32f, 3>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);
template vnxStatus ownMorphApply<ownMorphOp::Min, vnx32f, 4>(const vnx32f*, int, vnx32f*, int, vnxiSize, int, const void*);

// ---- Exports ---------------------------------------------------------------------------

VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Max, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                  vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                  vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                  vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, int borderType, vnxiMorphState* pState) noexcept {
  return ownMorphApply<ownMorphOp::Min, vnx32f, 4>(pSrc, srcStep, pDst, dstStep, roiSize, borderType, pState);
}
