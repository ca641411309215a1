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

// Whole vectors with a fixed number of sources (the loop over the sources unrolled, the
// pointers kept in registers), then the template for the tail.
template <ownMorphOp Op, int N>
void ownExtremeFixed_sse2(const vnx8u* const* src, vnx8u* dst, std::int64_t len, ownMorphStore store) {
  const vnx8u* p[N];
  for (int k = 0; k < N; ++k) p[k] = src[k];
  std::int64_t i = 0;
  for (; i + 32 <= len; i += 32) {
    __m128i a = ownLoad(p[0] + i), b = ownLoad(p[0] + i + 16);
    for (int k = 1; k < N; ++k) {
      a = ownExtremeV<Op>(a, ownLoad(p[k] + i));
      b = ownExtremeV<Op>(b, ownLoad(p[k] + i + 16));
    }
    ownStore(dst + i, a);
    ownStore(dst + i + 16, b);
  }
  for (; i + 16 <= len; i += 16) {
    __m128i a = ownLoad(p[0] + i);
    for (int k = 1; k < N; ++k) a = ownExtremeV<Op>(a, ownLoad(p[k] + i));
    ownStore(dst + i, a);
  }
  ownExtremeRow<Op>(src, N, dst, i, len, store);
}
template <ownMorphOp Op, int N>
void ownExtremeFixed_sse2(const vnx32f* const* src, vnx32f* dst, std::int64_t len, ownMorphStore store) {
  const vnx32f* p[N];
  for (int k = 0; k < N; ++k) p[k] = src[k];
  const bool final = store == ownMorphStore::Final;
  std::int64_t i = 0;
  for (; i + 8 <= len; i += 8) {
    __m128 a = _mm_loadu_ps(p[0] + i), b = _mm_loadu_ps(p[0] + i + 4);
    for (int k = 1; k < N; ++k) {
      a = ownExtremeV<Op>(a, _mm_loadu_ps(p[k] + i));
      b = ownExtremeV<Op>(b, _mm_loadu_ps(p[k] + i + 4));
    }
    _mm_storeu_ps(dst + i, final ? ownCanonicalNaN(a) : a);
    _mm_storeu_ps(dst + i + 4, final ? ownCanonicalNaN(b) : b);
  }
  ownExtremeRow<Op>(src, N, dst, i, len, store);
}

// Any number of sources: up to four at once into dst, then dst with up to three more
// at a time (in place: dst is the first source of the later passes).
template <ownMorphOp Op, class T>
void ownExtremeRow_sse2(const T* const* src, int n, T* dst, std::int64_t len, ownMorphStore store) {
  const int first = n < 4 ? n : 4;
  const ownMorphStore s0 = first == n ? store : ownMorphStore::Intermediate;
  switch (first) {
    case 1: ownExtremeFixed_sse2<Op, 1>(src, dst, len, s0); break;
    case 2: ownExtremeFixed_sse2<Op, 2>(src, dst, len, s0); break;
    case 3: ownExtremeFixed_sse2<Op, 3>(src, dst, len, s0); break;
    default: ownExtremeFixed_sse2<Op, 4>(src, dst, len, s0); break;
  }
  for (int k = first; k < n; k += 3) {
    const int m = n - k < 3 ? n - k : 3;
    const T* p[4] = {dst, src[k], m > 1 ? src[k + 1] : dst, m > 2 ? src[k + 2] : dst};
    const ownMorphStore sk = k + m == n ? store : ownMorphStore::Intermediate;
    switch (m) {
      case 1: ownExtremeFixed_sse2<Op, 2>(p, dst, len, sk); break;
      case 2: ownExtremeFixed_sse2<Op, 3>(p, dst, len, sk); break;
      default: ownExtremeFixed_sse2<Op, 4>(p, dst, len, sk); break;
    }
  }
}

// A padded row whose column 0 sits on a 32-byte boundary (so the stores of a fold into
// it are aligned): room for the shape's padded row plus 32 bytes; mid(base) is column 0.
template <class T>
inline std::int64_t ownAlignedRowElems(const ownRingShape& shape) {
  return ownBorderRing<T>::rowElems(shape) + 32 / static_cast<std::int64_t>(sizeof(T));
}
template <class T>
inline T* ownAlignedMid(T* base, const ownRingShape& shape) {
  const std::uintptr_t p = reinterpret_cast<std::uintptr_t>(base + static_cast<std::int64_t>(shape.padLeft) * shape.channels);
  return reinterpret_cast<T*>((p + 31) & ~static_cast<std::uintptr_t>(31));
}

// Two consecutive output rows of a fold over M + 1 consecutive rows: rows[1 .. M - 1]
// are shared, out0 adds rows[0] and out1 rows[M]. M + 1 loads for two rows instead of 2M.
template <ownMorphOp Op, int M, class T>
void ownExtremePairRow(const T* const* rows, T* out0, T* out1, std::int64_t x0, std::int64_t len) {
  for (std::int64_t i = x0; i < len; ++i) {
    T c = rows[1][i];
    for (int k = 2; k < M; ++k) c = ownExtreme<Op>(c, rows[k][i]);
    out0[i] = ownExtreme<Op>(rows[0][i], c);
    out1[i] = ownExtreme<Op>(c, rows[M][i]);
  }
}
template <ownMorphOp Op, int M>
void ownExtremePair_sse2(const vnx8u* const* rows, vnx8u* out0, vnx8u* out1, std::int64_t len) {
  const vnx8u* p[M + 1];
  for (int k = 0; k <= M; ++k) p[k] = rows[k];
  std::int64_t i = 0;
  for (; i + 16 <= len; i += 16) {
    __m128i c = ownLoad(p[1] + i);
    for (int k = 2; k < M; ++k) c = ownExtremeV<Op>(c, ownLoad(p[k] + i));
    ownStore(out0 + i, ownExtremeV<Op>(ownLoad(p[0] + i), c));
    ownStore(out1 + i, ownExtremeV<Op>(c, ownLoad(p[M] + i)));
  }
  ownExtremePairRow<Op, M>(rows, out0, out1, i, len);
}
template <ownMorphOp Op, int M>
void ownExtremePair_sse2(const vnx32f* const* rows, vnx32f* out0, vnx32f* out1, std::int64_t len) {
  const vnx32f* p[M + 1];
  for (int k = 0; k <= M; ++k) p[k] = rows[k];
  std::int64_t i = 0;
  for (; i + 4 <= len; i += 4) {
    __m128 c = _mm_loadu_ps(p[1] + i);
    for (int k = 2; k < M; ++k) c = ownExtremeV<Op>(c, _mm_loadu_ps(p[k] + i));
    _mm_storeu_ps(out0 + i, ownExtremeV<Op>(_mm_loadu_ps(p[0] + i), c));
    _mm_storeu_ps(out1 + i, ownExtremeV<Op>(c, _mm_loadu_ps(p[M] + i)));
  }
  ownExtremePairRow<Op, M>(rows, out0, out1, i, len);
}
// Folds of m rows (2 to 5) for two consecutive output rows from the m + 1 rows
// rows[0 .. m]; false (nothing done) for other heights.
template <ownMorphOp Op, class T>
bool ownExtremePair(const T* const* rows, int m, T* out0, T* out1, std::int64_t len) {
  switch (m) {
    case 2: ownExtremePair_sse2<Op, 2>(rows, out0, out1, len); return true;
    case 3: ownExtremePair_sse2<Op, 3>(rows, out0, out1, len); return true;
    case 4: ownExtremePair_sse2<Op, 4>(rows, out0, out1, len); return true;
    case 5: ownExtremePair_sse2<Op, 5>(rows, out0, out1, len); return true;
    default: return false;
  }
}

// Rows above and below the ROI repeat its first and last row.
template <class T>
inline const T* ownClampedRow(const T* src, int step, std::int64_t y, int height) {
  return ownRow(src, step, static_cast<int>(ownBorderIndex(y, height, ownBorder::Replicate)));
}

// Columns left and right of a row of `width` pixels (at row[0]) repeat its first and
// last pixel: padLeft pixels before it, padRight after it.
template <class T>
void ownReplicateEdges(T* row, std::int64_t width, int c, std::int64_t padLeft, std::int64_t padRight) {
  for (std::int64_t x = 1; x <= padLeft; ++x)
    for (int k = 0; k < c; ++k) row[-x * c + k] = row[k];
  T* last = row + (width - 1) * c;
  for (std::int64_t x = 1; x <= padRight; ++x)
    for (int k = 0; k < c; ++k) last[x * c + k] = last[k];
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
