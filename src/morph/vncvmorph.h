// Morphology internals shared by the rectangular minimum and maximum filters, the
// dilation and erosion states and the composite operations: the extreme of two
// samples, the row kernel that folds many rows into one, the sliding window along a
// row, the state record, and the band frame with its scratch blocks.
#pragma once

#include <cstdint>
#include <cstring>

#include "alloc.h"
#include "border.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"

// Dilation takes the maximum over the structuring element, erosion the minimum.
enum class ownMorphOp { Max, Min };

// Where a row kernel writes: an intermediate row keeps whatever NaN pattern the fold
// made, a final (destination) row gets the library's one NaN.
enum class ownMorphStore { Intermediate, Final };

// ---- The extreme of two samples ------------------------------------------------
// 8u: the plain maximum or minimum. 32f: a total order in which -0.0 < +0.0 and a NaN
// absorbs everything (the fold of a window holding a NaN is NaN), so the result does
// not depend on the order in which a path visits the cells: max(a, b) and max(b, a)
// are combined by AND (min: OR), which gives +0.0 (-0.0) for a pair of zeros and the
// larger (smaller) value otherwise; unordered lanes become all ones.
template <ownMorphOp Op>
inline vnx8u ownExtreme(vnx8u a, vnx8u b) {
  return Op == ownMorphOp::Max ? (a > b ? a : b) : (a < b ? a : b);
}
template <ownMorphOp Op>
inline vnx32f ownExtreme(vnx32f a, vnx32f b) {
  std::uint32_t ua, ub, r;
  std::memcpy(&ua, &a, 4);
  std::memcpy(&ub, &b, 4);
  if (a != a || b != b)
    r = 0xFFFFFFFFu;
  else if (a == b)
    r = Op == ownMorphOp::Max ? (ua & ub) : (ua | ub);
  else
    r = (Op == ownMorphOp::Max) == (a > b) ? ua : ub;
  vnx32f v;
  std::memcpy(&v, &r, 4);
  return v;
}

template <ownMorphOp Op>
inline __m128i ownExtremeV(__m128i a, __m128i b) {
  return Op == ownMorphOp::Max ? _mm_max_epu8(a, b) : _mm_min_epu8(a, b);
}
template <ownMorphOp Op>
inline __m128 ownExtremeV(__m128 a, __m128 b) {
  const __m128 nan = _mm_cmpunord_ps(a, b);
  const __m128 r = Op == ownMorphOp::Max ? _mm_and_ps(_mm_max_ps(a, b), _mm_max_ps(b, a))
                                         : _mm_or_ps(_mm_min_ps(a, b), _mm_min_ps(b, a));
  return _mm_or_ps(r, nan);
}

inline vnx8u ownMorphFinal(vnx8u v) { return v; }
inline vnx32f ownMorphFinal(vnx32f v) { return ownCanonicalNaN(v); }

// ---- Fold of n rows into one ------------------------------------------------------
// dst[i] = src[0][i] op src[1][i] op ... op src[n - 1][i] for i in [x0, len), n >= 1.
// The sources are rows, or one row at several offsets (a window along the row).
// Safe in place when dst is src[0] and every other source lies at or after it.
template <ownMorphOp Op, class T>
void ownExtremeRow(const T* const* src, int n, T* dst, std::int64_t x0, std::int64_t len, ownMorphStore store) {
  for (std::int64_t i = x0; i < len; ++i) {
    T v = src[0][i];
    for (int k = 1; k < n; ++k) v = ownExtreme<Op>(v, src[k][i]);
    dst[i] = store == ownMorphStore::Final ? ownMorphFinal(v) : v;
  }
}

// Whole vectors of 16 bytes, two at a time, then the template for the tail.
template <ownMorphOp Op>
void ownExtremeRow_sse2(const vnx8u* const* src, int n, vnx8u* dst, std::int64_t len, ownMorphStore store) {
  std::int64_t i = 0;
  for (; i + 32 <= len; i += 32) {
    __m128i a = ownLoad(src[0] + i), b = ownLoad(src[0] + i + 16);
    for (int k = 1; k < n; ++k) {
      a = ownExtremeV<Op>(a, ownLoad(src[k] + i));
      b = ownExtremeV<Op>(b, ownLoad(src[k] + i + 16));
    }
    ownStore(dst + i, a);
    ownStore(dst + i + 16, b);
  }
  for (; i + 16 <= len; i += 16) {
    __m128i a = ownLoad(src[0] + i);
    for (int k = 1; k < n; ++k) a = ownExtremeV<Op>(a, ownLoad(src[k] + i));
    ownStore(dst + i, a);
  }
  ownExtremeRow<Op>(src, n, dst, i, len, store);
}
template <ownMorphOp Op>
void ownExtremeRow_sse2(const vnx32f* const* src, int n, vnx32f* dst, std::int64_t len, ownMorphStore store) {
  std::int64_t i = 0;
  const bool final = store == ownMorphStore::Final;
  for (; i + 8 <= len; i += 8) {
    __m128 a = _mm_loadu_ps(src[0] + i), b = _mm_loadu_ps(src[0] + i + 4);
    for (int k = 1; k < n; ++k) {
      a = ownExtremeV<Op>(a, _mm_loadu_ps(src[k] + i));
      b = ownExtremeV<Op>(b, _mm_loadu_ps(src[k] + i + 4));
    }
    _mm_storeu_ps(dst + i, final ? ownCanonicalNaN(a) : a);
    _mm_storeu_ps(dst + i + 4, final ? ownCanonicalNaN(b) : b);
  }
  ownExtremeRow<Op>(src, n, dst, i, len, store);
}

// ---- Sliding window along a row ---------------------------------------------------
// dst[x] = op over the k pixels src[x], src[x + c], ..., src[x + (k - 1) c] (element
// offsets, c interleaved channels), for the len elements of dst. Up to kOwnDirectWindow
// pixels the window is folded directly; wider windows double the span of a running
// extreme in `temp` (len + (k - 1) c elements) until it covers half the window, then
// fold the two halves: log2(k) passes a row instead of k.
constexpr int kOwnDirectWindow = 8;

template <ownMorphOp Op, class T>
void ownWindowRow(const T* src, int c, int k, T* dst, std::int64_t len, T* temp, const T** ptrs,
                  ownMorphStore store) {
  if (k <= kOwnDirectWindow) {
    for (int i = 0; i < k; ++i) ptrs[i] = src + static_cast<std::int64_t>(i) * c;
    ownExtremeRow_sse2<Op>(ptrs, k, dst, len, store);
    return;
  }
  std::int64_t span = 2;
  ptrs[0] = src;
  ptrs[1] = src + c;
  ownExtremeRow_sse2<Op>(ptrs, 2, temp, len + (k - 2) * static_cast<std::int64_t>(c), ownMorphStore::Intermediate);
  for (; 2 * span <= k; span *= 2) {  // temp[j] covers pixels j .. j + span - 1 (forward, so safe in place)
    ptrs[0] = temp;
    ptrs[1] = temp + span * c;
    ownExtremeRow_sse2<Op>(ptrs, 2, temp, len + (k - 2 * span) * c, ownMorphStore::Intermediate);
  }
  ptrs[0] = temp;
  ptrs[1] = temp + (k - span) * c;
  ownExtremeRow_sse2<Op>(ptrs, 2, dst, len, store);
}

// ---- The state record ------------------------------------------------------------
// 18 words of 32 bits on both builds. The five references to the arrays of the block
// are byte offsets from the start of the state rather than pointers, so the header is
// 72 bytes on x86-64 as on i686, the sizes of the size table hold on both, and a state
// may be moved with memcpy.
struct ownMorphState {
  std::int32_t maskOffset;        // working copy of the (reduced) mask
  std::int32_t erodeTableOffset;  // per-cell erosion entries (general path), else 0
  std::int32_t dilateTableOffset; // per-cell dilation entries (general path), else 0
  std::int32_t workOffset;        // scratch of the first band
  std::int32_t runOffset;         // run record (run path), else 0
  std::int32_t maskWidth, maskHeight;
  std::int32_t anchorX, anchorY;
  std::int32_t rightExtent, bottomExtent;
  std::int32_t workBytes;
  std::int32_t totalBytes;
  std::int32_t elemType;
  std::int32_t channels;
  std::int32_t maxRoiWidth;
  std::int32_t reserved;
  std::int32_t kind;
};
static_assert(sizeof(ownMorphState) == 72, "18 words");

// Path kinds stored in the state.
enum ownMorphKind : int { kOwnMorphGeneral = 0, kOwnMorphRect = 1, kOwnMorphRuns = 2, kOwnMorphEmpty = 3 };

// Run record: R non-empty mask rows, D distinct run lengths, and four arrays.
struct ownMorphRuns {
  std::int32_t rows, distinct;
  std::int32_t rowOffset, indexOffset, lengthOffset, anchorOffset;  // byte offsets from the state
};

inline const unsigned char* ownStateBytes(const void* s) { return static_cast<const unsigned char*>(s); }
template <class T>
inline const T* ownStateArray(const ownMorphState* s, std::int32_t offset) {
  return reinterpret_cast<const T*>(ownStateBytes(s) + offset);
}

// ---- Band frame -------------------------------------------------------------------
// Dilation, erosion and the rectangular filters: each band reads the source rows it
// needs through its own border ring, so bands need some rows to pay for the rows they
// synthesise twice.
// Each band gets a scratch block: the first band the caller's (the state's work buffer
// or the filter's buffer) when it is large enough, the others (and the first when it
// is not) a block from the scratch allocator. All blocks are taken before any row is
// written, so a failed allocation returns vnxStatusNoMemory with nothing written.
template <class Body>
vnxStatus ownMorphBands(vnxiSize roi, std::int64_t bandBytes, void* given, std::int64_t givenBytes, Body&& body) {
  const int n = ownBandCount(roi, kOwnBandsMorph);
  if (bandBytes > INT32_MAX) return vnxStatusNoMemory;
  void* local[32];
  ownBlock table(n > 32 ? ownMalloc_64(n) : nullptr);
  if (n > 32 && !table) return vnxStatusNoMemory;
  void** blocks = n > 32 ? static_cast<void**>(table.get()) : local;
  vnxStatus st = vnxStatusOk;
  int taken = 0;
  for (; taken < n; ++taken) {
    if (taken == 0 && given && bandBytes <= givenBytes) {
      blocks[0] = nullptr;  // the caller's block: not ours to free
      continue;
    }
    blocks[taken] = ownMalloc_8u(static_cast<int>(bandBytes));
    if (!blocks[taken]) {
      st = vnxStatusNoMemory;
      break;
    }
  }
  if (st == vnxStatusOk)
    ownRunBands(ownBandSplit{roi.height, n},
                [&](int b, int y0, int y1) { body(blocks[b] ? blocks[b] : given, y0, y1); });
  for (int b = 0; b < taken; ++b) ownFree(blocks[b]);
  return st;
}

// Carves consecutive 32-byte aligned pieces from a scratch block.
class ownCarver {
 public:
  explicit ownCarver(void* block) : p_(reinterpret_cast<std::uintptr_t>(block)) {}
  template <class T>
  T* take(std::int64_t count) {
    p_ = (p_ + 31) & ~static_cast<std::uintptr_t>(31);
    T* r = reinterpret_cast<T*>(p_);
    p_ += static_cast<std::uintptr_t>(count) * sizeof(T);
    return r;
  }
  // Bytes the same pieces need from a block of unknown alignment.
  static std::int64_t bytes(std::int64_t pieceBytes) { return pieceBytes + 32; }

 private:
  std::uintptr_t p_;
};

// ---- The rectangular filter ----------------------------------------------------------
// The extreme over a maskSize rectangle whose cell `anchor` lies on the output pixel
// (any anchor, inside the rectangle or not), with replicated borders, for T with c
// channels. `buffer` serves the first band when it holds bandBytes.
std::int64_t ownRectBandBytes(int roiWidth, int height, vnxiSize maskSize, int channels, int elemBytes);
template <ownMorphOp Op, class T>
vnxStatus ownRectExtreme(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int channels,
                         vnxiSize maskSize, vnxiPoint anchor, void* buffer, std::int64_t bufferBytes);

// Scratch of one band of the run path for a box of that size, its anchor x, D distinct
// run lengths (the longest maxLength) and R mask rows.
std::int64_t ownRunsBandBytes(int roiWidth, vnxiSize box, int anchorX, int distinct, int rows, int maxLength,
                              int channels, int elemBytes);

// ---- Dilation and erosion with a state ----------------------------------------------
template <ownMorphOp Op, class T, int C>
vnxStatus ownMorphApply(const T* src, int srcStep, T* dst, int dstStep, vnxiSize roi, int borderType,
                        const void* state);

// Classification and creation (the composite states build theirs with the run path
// disabled: the anchor-violation count starts at 1).
enum class ownRunPath { Allowed, Disabled };
std::int64_t ownMorphStateBytes(int roiWidth, const vnx8u* mask, vnxiSize maskSize, vnxiPoint anchor, int elemType,
                                int channels, ownRunPath runs);
vnxStatus ownMorphCreate(int roiWidth, const vnx8u* mask, vnxiSize maskSize, vnxiPoint anchor, int elemType,
                         int channels, ownRunPath runs, void* state);
