// Structuring-element states of dilation and erosion: the mask is classified once
// (general, rectangle, run decomposition or empty), sized by its path and copied with
// the arrays its path needs into one block.
#include <algorithm>

#include "check.h"
#include "morph/vncvmorph.h"

namespace {

constexpr int kOwnMaxRunRows = 256;  // taller masks are general: the run arrays fit the frame
constexpr std::int64_t kOwnHeaderBytes = 80;  // 72 bytes of header, arrays from a 16-byte boundary

inline std::int64_t ownRoundUp(std::int64_t v, std::int64_t m) { return (v + m - 1) / m * m; }

// The classification of one mask and anchor, with the run record of kind 2.
struct ownMorphPlan {
  int kind = kOwnMorphGeneral;
  int boxX = 0, boxY = 0, boxW = 0, boxH = 0;  // bounding box of the nonzero cells (kinds 1, 2)
  int ax = 0, ay = 0;                          // anchor relative to the box
  int rows = 0, distinct = 0;                  // R and D
  int rowRel[kOwnMaxRunRows];                  // R row numbers, from the first non-empty row
  int rowIndex[kOwnMaxRunRows];                // R indices into the distinct lengths
  int lengths[kOwnMaxRunRows];                 // D run lengths, ascending
  int offsets[kOwnMaxRunRows];                 // D anchor offsets (anchor x minus the run start)
};

void ownClassify(const vnx8u* mask, vnxiSize ms, vnxiPoint anchor, ownRunPath runs, ownMorphPlan& p) {
  const std::int64_t area = static_cast<std::int64_t>(ms.width) * ms.height;
  if (std::all_of(mask, mask + area, [](vnx8u v) { return v == 0; })) {
    p.kind = kOwnMorphEmpty;
    p.boxW = p.boxH = 1;
    return;
  }
  if (ms.height >= kOwnMaxRunRows) return;  // general
  int violations = runs == ownRunPath::Disabled ? 1 : 0;
  int first = -1, last = -1, minStart = ms.width, maxEnd = 0;
  int starts[kOwnMaxRunRows], lens[kOwnMaxRunRows];
  bool sameRun = true;
  for (int j = 0; j < ms.height; ++j) {
    const vnx8u* row = mask + static_cast<std::int64_t>(j) * ms.width;
    int s = 0;
    while (s < ms.width && row[s] == 0) ++s;
    if (s == ms.width) continue;
    int e = s;
    while (e < ms.width && row[e] != 0) ++e;
    for (int x = e; x < ms.width; ++x)
      if (row[x] != 0) return;  // two runs in one row: general
    if (first < 0) first = j;
    last = j;
    starts[p.rows] = s;
    lens[p.rows] = e - s;
    p.rowRel[p.rows] = j;
    if (p.rows > 0 && (s != starts[0] || e - s != lens[0])) sameRun = false;
    ++p.rows;
    minStart = std::min(minStart, s);
    maxEnd = std::max(maxEnd, e);
    if (anchor.x < s || anchor.x >= e) ++violations;
  }
  if (anchor.y < first || anchor.y > last) ++violations;
  for (int r = 0; r < p.rows; ++r) p.rowRel[r] -= first;
  p.boxX = minStart;
  p.boxY = first;
  p.boxW = maxEnd - minStart;
  p.ax = anchor.x - minStart;
  p.ay = anchor.y - first;
  if (sameRun && last - first + 1 == p.rows) {  // before the violation test: any anchor
    p.kind = kOwnMorphRect;
    p.boxH = p.rows;
    p.distinct = 1;
    return;
  }
  if (violations > 0) return;
  for (int r = 0; r < p.rows; ++r) {  // distinct lengths by insertion, ascending
    const int off = anchor.x - starts[r];
    int k = 0;
    while (k < p.distinct && p.lengths[k] < lens[r]) ++k;
    if (k < p.distinct && p.lengths[k] == lens[r]) {
      if (p.offsets[k] != off) return;  // one length, two anchor offsets: general
      continue;
    }
    for (int m = p.distinct; m > k; --m) {
      p.lengths[m] = p.lengths[m - 1];
      p.offsets[m] = p.offsets[m - 1];
    }
    p.lengths[k] = lens[r];
    p.offsets[k] = off;
    ++p.distinct;
  }
  for (int r = 0; r < p.rows; ++r)
    p.rowIndex[r] = static_cast<int>(std::find(p.lengths, p.lengths + p.distinct, lens[r]) - p.lengths);
  p.kind = kOwnMorphRuns;
  p.boxH = last - first + 1;
}

// Smallest 8u mask areas that take the rectangle and run paths, by channel count;
// smaller masks of those kinds run on the general path.
int ownThreshold(int kind, int channels) {
  if (kind == kOwnMorphRect) return channels == 1 ? 13 : 35;
  return channels == 1 ? 35 : 90;
}

void ownPlan(const vnx8u* mask, vnxiSize ms, vnxiPoint anchor, int elemType, int channels, ownRunPath runs,
             ownMorphPlan& p) {
  ownClassify(mask, ms, anchor, runs, p);
  const std::int64_t area = static_cast<std::int64_t>(ms.width) * ms.height;
  if (elemType == vnx8uCode && (p.kind == kOwnMorphRect || p.kind == kOwnMorphRuns) &&
      area < ownThreshold(p.kind, channels))
    p.kind = kOwnMorphGeneral;
}

// Scratch of the general path: B = max(e c maskHeight, 2 maskHeight W), with W the
// row width (roiWidth + maskWidth) e c rounded up to 16.
std::int64_t ownGeneralRowWidth(int roiWidth, vnxiSize ms, int e, int c) {
  return ownRoundUp((static_cast<std::int64_t>(roiWidth) + ms.width) * e * c, 16);
}
std::int64_t ownGeneralWorkBytes(std::int64_t w, vnxiSize ms, int e, int c) {
  return std::max<std::int64_t>(static_cast<std::int64_t>(e) * c * ms.height, 2 * ms.height * w);
}

std::int64_t ownPlanWorkBytes(const ownMorphPlan& p, int roiWidth, int e, int c) {
  if (p.kind == kOwnMorphRect) return ownRectBandBytes(roiWidth, INT32_MAX, {p.boxW, p.boxH}, c, e);
  return ownRunsBandBytes(roiWidth, {p.boxW, p.boxH}, p.ax, p.distinct, p.rows, p.lengths[p.distinct - 1], c, e);
}

std::int64_t ownPlanBytes(const ownMorphPlan& p, int roiWidth, vnxiSize ms, int elemType, int c) {
  const int e = elemType == vnx8uCode ? 1 : 4;
  const std::int64_t area = static_cast<std::int64_t>(ms.width) * ms.height;
  const std::int64_t m = ownRoundUp(area, 16);
  switch (p.kind) {
    case kOwnMorphEmpty:
      return 80 + m;
    case kOwnMorphGeneral:
      return 96 + m + area * (e == 1 ? 16 : 32) + ownGeneralWorkBytes(ownGeneralRowWidth(roiWidth, ms, e, c), ms, e, c);
    default:
      return 128 + m + 8 * static_cast<std::int64_t>(p.rows + p.distinct) + ownPlanWorkBytes(p, roiWidth, e, c);
  }
}

// Per-cell entries of the general path: all ones and zero for 8u (8 bytes a cell), the
// largest finite float and its negation for 32f (four lanes, 16 bytes a cell).
void ownFillTables(const vnx8u* mask, std::int64_t area, int elemType, unsigned char* erode, unsigned char* dilate) {
  for (std::int64_t k = 0; k < area; ++k) {
    const bool on = mask[k] != 0;
    if (elemType == vnx8uCode) {
      std::memset(dilate + 8 * k, on ? 0xFF : 0, 8);
      std::memset(erode + 8 * k, on ? 0 : 0xFF, 8);
    } else {
      const float big = ownTraits<vnx32f>::highest, small = ownTraits<vnx32f>::lowest;
      for (int l = 0; l < 4; ++l) {
        std::memcpy(dilate + 16 * k + 4 * l, on ? &big : &small, 4);
        std::memcpy(erode + 16 * k + 4 * l, on ? &small : &big, 4);
      }
    }
  }
}

void ownFillRuns(const ownMorphPlan& p, unsigned char* base, std::int32_t at) {
  ownMorphRuns rec{p.rows, p.distinct, 0, 0, 0, 0};
  rec.rowOffset = at + static_cast<std::int32_t>(sizeof rec);
  rec.indexOffset = rec.rowOffset + 4 * p.rows;
  rec.lengthOffset = rec.indexOffset + 4 * p.rows;
  rec.anchorOffset = rec.lengthOffset + 4 * p.distinct;
  std::memcpy(base + at, &rec, sizeof rec);
  std::memcpy(base + rec.rowOffset, p.rowRel, 4 * static_cast<std::size_t>(p.rows));
  std::memcpy(base + rec.indexOffset, p.rowIndex, 4 * static_cast<std::size_t>(p.rows));
  std::memcpy(base + rec.lengthOffset, p.lengths, 4 * static_cast<std::size_t>(p.distinct));
  std::memcpy(base + rec.anchorOffset, p.offsets, 4 * static_cast<std::size_t>(p.distinct));
}

template <class T, int C>
vnxStatus ownMorphSize(int roiWidth, const vnx8u* mask, vnxiSize ms, int* pSize) {
  if (vnxStatus st = ownCheckMorphCreate(mask, roiWidth, ms, pSize)) return st;
  const std::int64_t bytes = ownMorphStateBytes(roiWidth, mask, ms, {ms.width >> 1, ms.height >> 1},
                                                ownTraits<T>::code, C, ownRunPath::Allowed);
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *pSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

template <class T, int C>
vnxStatus ownMorphInit(int roiWidth, const vnx8u* mask, vnxiSize ms, vnxiPoint anchor, void* state) {
  if (vnxStatus st = ownCheckMorphCreate(mask, roiWidth, ms, anchor, state)) return st;
  return ownMorphCreate(roiWidth, mask, ms, anchor, ownTraits<T>::code, C, ownRunPath::Allowed, state);
}

template <class T, int C>
vnxStatus ownMorphInitAlloc(int roiWidth, const vnx8u* mask, vnxiSize ms, vnxiPoint anchor, vnxiMorphState** pp) {
  if (vnxStatus st = ownCheckMorphCreate(mask, roiWidth, ms, anchor, pp)) return st;
  const std::int64_t bytes = ownMorphStateBytes(roiWidth, mask, ms, anchor, ownTraits<T>::code, C, ownRunPath::Allowed);
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  void* block = ownMalloc_8u(static_cast<int>(bytes));
  if (!block) return vnxStatusNoMemory;
  if (vnxStatus st = ownMorphCreate(roiWidth, mask, ms, anchor, ownTraits<T>::code, C, ownRunPath::Allowed, block)) {
    ownFree(block);
    return st;
  }
  *pp = static_cast<vnxiMorphState*>(block);
  return vnxStatusOk;
}

}  // namespace

std::int64_t ownMorphStateBytes(int roiWidth, const vnx8u* mask, vnxiSize maskSize, vnxiPoint anchor, int elemType,
                                int channels, ownRunPath runs) {
  ownMorphPlan p;
  ownPlan(mask, maskSize, anchor, elemType, channels, runs, p);
  return ownPlanBytes(p, roiWidth, maskSize, elemType, channels);
}

vnxStatus ownMorphCreate(int roiWidth, const vnx8u* mask, vnxiSize ms, vnxiPoint anchor, int elemType, int channels,
                         ownRunPath runs, void* state) {
  ownMorphPlan p;
  ownPlan(mask, ms, anchor, elemType, channels, runs, p);
  const std::int64_t total = ownPlanBytes(p, roiWidth, ms, elemType, channels);
  if (total > INT32_MAX) return vnxStatusBadSize;
  const int e = elemType == vnx8uCode ? 1 : 4;
  const std::int64_t area = static_cast<std::int64_t>(ms.width) * ms.height;
  const std::int64_t m = ownRoundUp(area, 16);
  unsigned char* base = static_cast<unsigned char*>(state);
  ownMorphState s{};
  s.maskOffset = static_cast<std::int32_t>(kOwnHeaderBytes);
  s.totalBytes = static_cast<std::int32_t>(total);
  s.elemType = elemType;
  s.channels = channels;
  s.maxRoiWidth = roiWidth;
  s.reserved = -1;
  s.kind = p.kind;
  std::memcpy(base + s.maskOffset, mask, static_cast<std::size_t>(area));
  if (p.kind == kOwnMorphGeneral) {
    const std::int64_t entry = e == 1 ? 8 : 16;
    s.erodeTableOffset = static_cast<std::int32_t>(kOwnHeaderBytes + m);
    s.dilateTableOffset = static_cast<std::int32_t>(s.erodeTableOffset + area * entry);
    s.workOffset = static_cast<std::int32_t>(s.dilateTableOffset + area * entry);
    s.maskWidth = ms.width;
    s.maskHeight = ms.height;
    s.anchorX = anchor.x;
    s.anchorY = anchor.y;
    s.workBytes = static_cast<std::int32_t>(ownGeneralRowWidth(roiWidth, ms, e, channels));
    ownFillTables(mask, area, elemType, base + s.erodeTableOffset, base + s.dilateTableOffset);
  } else if (p.kind == kOwnMorphEmpty) {
    s.maskWidth = s.maskHeight = 1;
    s.workOffset = static_cast<std::int32_t>(total);
  } else {
    s.runOffset = static_cast<std::int32_t>(kOwnHeaderBytes + m);
    ownFillRuns(p, base, s.runOffset);
    s.workOffset = static_cast<std::int32_t>(
        ownRoundUp(s.runOffset + static_cast<std::int64_t>(sizeof(ownMorphRuns)) + 8 * (p.rows + p.distinct), 16));
    s.maskWidth = p.boxW;
    s.maskHeight = p.boxH;
    s.anchorX = p.ax;
    s.anchorY = p.ay;
    s.workBytes = static_cast<std::int32_t>(ownPlanWorkBytes(p, roiWidth, e, channels));
  }
  s.rightExtent = s.maskWidth - s.anchorX - 1;
  s.bottomExtent = s.maskHeight - s.anchorY - 1;
  std::memcpy(base, &s, sizeof s);
  return vnxStatusOk;
}

// ---- Exports ---------------------------------------------------------------------------

VNX_API vnxStatus vnxiMorphologyGetSize_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx8u, 1>(roiWidth, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphologyGetSize_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx8u, 3>(roiWidth, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphologyGetSize_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx8u, 4>(roiWidth, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx32f, 1>(roiWidth, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx32f, 3>(roiWidth, pMask, maskSize, pSize);
}
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) noexcept {
  return ownMorphSize<vnx32f, 4>(roiWidth, pMask, maskSize, pSize);
}

VNX_API vnxStatus vnxiMorphologyInit_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                            vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx8u, 1>(roiWidth, pMask, maskSize, anchor, pState);
}
VNX_API vnxStatus vnxiMorphologyInit_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                            vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx8u, 3>(roiWidth, pMask, maskSize, anchor, pState);
}
VNX_API vnxStatus vnxiMorphologyInit_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                            vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx8u, 4>(roiWidth, pMask, maskSize, anchor, pState);
}
VNX_API vnxStatus vnxiMorphologyInit_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                             vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx32f, 1>(roiWidth, pMask, maskSize, anchor, pState);
}
VNX_API vnxStatus vnxiMorphologyInit_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                             vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx32f, 3>(roiWidth, pMask, maskSize, anchor, pState);
}
VNX_API vnxStatus vnxiMorphologyInit_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
                                             vnxiMorphState* pState) noexcept {
  return ownMorphInit<vnx32f, 4>(roiWidth, pMask, maskSize, anchor, pState);
}

VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                 vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx8u, 1>(roiWidth, pMask, maskSize, anchor, ppState);
}
VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                 vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx8u, 3>(roiWidth, pMask, maskSize, anchor, ppState);
}
VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                 vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx8u, 4>(roiWidth, pMask, maskSize, anchor, ppState);
}
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                  vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx32f, 1>(roiWidth, pMask, maskSize, anchor, ppState);
}
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                  vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx32f, 3>(roiWidth, pMask, maskSize, anchor, ppState);
}
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize,
                                                  vnxiPoint anchor, vnxiMorphState** ppState) noexcept {
  return ownMorphInitAlloc<vnx32f, 4>(roiWidth, pMask, maskSize, anchor, ppState);
}

VNX_API vnxStatus vnxiMorphologyFree(vnxiMorphState* pState) noexcept {
  if (!pState) return vnxStatusNullPtr;
  ownFree(pState);
  return vnxStatusOk;
}
