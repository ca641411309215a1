// Row kernels of the Gaussian pyramid steps (1 4 6 4 1 in each direction).
// The steps sum a source row horizontally into a work row first and then combine
// work rows vertically, element by element (one 8-bit channel down: columns first,
// see ownPyrDownColsRow). Work rows hold 16-bit sums for the
// 8-bit types (down: at most 16 x 255 = 4080 a row, 256 x 255 = 65280 in total, which
// wraps harmlessly in 16-bit lanes before the unsigned shift; up: at most 8 x 255 a
// row and 64 x 255 in total) and floats for 32f.
#pragma once

#include <cstdint>

#include "alloc.h"
#include "border.h"
#include "simd.h"

template <class T>
struct ownPyrWork {
  using W = vnx16s;  // one work sample
  using Acc = int;   // arithmetic of one sum
};
template <>
struct ownPyrWork<vnx32f> {
  using W = vnx32f;
  using Acc = vnx32f;
};

// The edges of the two steps as index rules. Down: mirrored without repeating the
// edge pixel on both sides, again while the index is still outside. Up: mirrored on
// the left and top, the edge pixel repeated on the right and bottom.
inline std::int64_t ownPyrDownIndex(std::int64_t i, std::int64_t n) { return ownBorderIndex(i, n, ownBorder::Mirror); }
inline std::int64_t ownPyrUpIndex(std::int64_t i, std::int64_t n) {
  return ownBorderIndex(i, n, i < 0 ? ownBorder::Mirror : ownBorder::Replicate);
}

// ((6 c + 4 (b + d)) + a) + e: the five taps in the order the 32f results follow.
template <class A>
inline A ownPyrTaps5(A a, A b, A c, A d, A e) {
  return ((c * 6 + (b + d) * 4) + a) + e;
}
// (a + 6 b) + c and 4 (b + c): the even and odd taps of the up step.
template <class A>
inline A ownPyrTapsEven(A a, A b, A c) {
  return (a + b * 6) + c;
}
template <class A>
inline A ownPyrTapsOdd(A b, A c) {
  return (b + c) * 4;
}

// Result conversion: integers add half the weight and shift arithmetically (the floor
// for 8s; an 8u down sum needs the unsigned shift of its 16-bit lanes, here in int);
// 32f multiplies by the exact reciprocal of the weight.
template <class T>
inline T ownPyrResult(int s, int shift) {
  return static_cast<T>((s + (1 << (shift - 1))) >> shift);
}
template <class T>
inline T ownPyrResult(vnx32f s, int shift) {
  return s * (shift == 8 ? 0.00390625f : 0.015625f);
}

// ---- down ----------------------------------------------------------------------

// Horizontal sum of the down step at output column i, channel c, of a source row of
// `width` pixels (the row is read only inside [0, width)).
template <class T>
typename ownPyrWork<T>::Acc ownPyrDownAt(const T* s, std::int64_t width, int ch, int c, std::int64_t i) {
  using A = typename ownPyrWork<T>::Acc;
  const std::int64_t x = 2 * i;
  auto p = [&](int k) {
    const std::int64_t col = (x >= 2 && x + 2 < width) ? x + k - 2 : ownPyrDownIndex(x + k - 2, width);
    return static_cast<A>(s[col * ch + c]);
  };
  return ownPyrTaps5<A>(p(0), p(1), p(2), p(3), p(4));
}
// Work row of the down step: h[i] for output columns i0 .. n - 1.
template <class T>
void ownPyrDownRowH(const T* s, std::int64_t width, int ch, typename ownPyrWork<T>::W* h, std::int64_t i0,
                    std::int64_t n) {
  for (std::int64_t i = i0; i < n; ++i)
    for (int c = 0; c < ch; ++c)
      h[i * ch + c] = static_cast<typename ownPyrWork<T>::W>(ownPyrDownAt(s, width, ch, c, i));
}

// Output row of the down step from five work rows r[0..4], samples k0 .. n - 1.
template <class T>
void ownPyrDownRowV(const typename ownPyrWork<T>::W* const* r, T* d, std::int64_t k0, std::int64_t n) {
  using A = typename ownPyrWork<T>::Acc;
  for (std::int64_t k = k0; k < n; ++k) {
    d[k] = ownPyrResult<T>(ownPyrTaps5<A>(r[0][k], r[1][k], r[2][k], r[3][k], r[4][k]), 8);
  }
}

void ownPyrDownRowH_sse2(const vnx32f* s, std::int64_t width, vnx32f* h, std::int64_t n);
// Output rows j and j + 1 of a one-channel 32f down step, n samples each, from the work
// rows of source rows 2j - 2 .. 2j (old[0..2]) and the source rows 2j + 1 .. 2j + 4
// (src[0..3]); the work rows of source rows 2j + 2 .. 2j + 4 go to fresh[0..2] for the
// next pair.
void ownPyrDownPair_sse2(const vnx32f* const* src, std::int64_t width, const vnx32f* const* old, vnx32f* const* fresh,
                         vnx32f* d0, vnx32f* d1, std::int64_t n);
void ownPyrDownRowV_sse2(const vnx16s* const* r, vnx8u* d, std::int64_t n);
void ownPyrDownRowV_sse2(const vnx16s* const* r, vnx8s* d, std::int64_t n);
void ownPyrDownRowV_sse2(const vnx32f* const* r, vnx32f* d, std::int64_t n);

// One 8-bit channel, columns first (integer sums are exact in any order): the 1 4 6 4 1
// sums down the columns of five source rows s[0..4], split by column parity, ev[k] of
// column 2k and od[k] of column 2k + 1; then along the row with decimation,
//   d[k] = ev[k - 1] + 4 od[k - 1] + 6 ev[k] + 4 od[k] + ev[k + 1].
// The column sums keep one sample of margin on each side (ev[-1], od[-1], ev[n], and
// od[n - 1] for an odd width), which ownPyrDownMargins fills under the mirror rule.
template <class T>
void ownPyrDownColsRow(const T* const* s, std::int64_t width, vnx16s* ev, vnx16s* od, std::int64_t c0) {
  for (std::int64_t c = c0; c < width; ++c)
    ((c & 1) ? od : ev)[c >> 1] = static_cast<vnx16s>(ownPyrTaps5<int>(s[0][c], s[1][c], s[2][c], s[3][c], s[4][c]));
}
inline void ownPyrDownMargins(vnx16s* ev, vnx16s* od, std::int64_t width) {
  auto at = [&](std::int64_t c) {
    c = ownPyrDownIndex(c, width);
    return (c & 1) ? od[c >> 1] : ev[c >> 1];
  };
  const std::int64_t n = (width + 1) >> 1;
  ev[-1] = at(-2);
  od[-1] = at(-1);
  ev[n] = at(2 * n);
  if (width & 1) od[n - 1] = at(width);
}
template <class T>
void ownPyrDownDecimateRow(const vnx16s* ev, const vnx16s* od, T* d, std::int64_t k0, std::int64_t n) {
  for (std::int64_t k = k0; k < n; ++k)
    d[k] = ownPyrResult<T>(ownPyrTaps5<int>(ev[k - 1], od[k - 1], ev[k], od[k], ev[k + 1]), 8);
}
// Column sums of `outRows` (1, 2 or 4) output rows from source rows s[0 .. 2 outRows + 2]:
// output row q takes s[2q .. 2q + 4] into ev[q], od[q].
void ownPyrDownCols_sse2(const vnx8u* const* s, int outRows, std::int64_t width, vnx16s* const* ev, vnx16s* const* od);
void ownPyrDownCols_sse2(const vnx8s* const* s, int outRows, std::int64_t width, vnx16s* const* ev, vnx16s* const* od);
void ownPyrDownDecimate_sse2(const vnx16s* ev, const vnx16s* od, vnx8u* d, std::int64_t n);
void ownPyrDownDecimate_sse2(const vnx16s* ev, const vnx16s* od, vnx8s* d, std::int64_t n);

// ---- up ------------------------------------------------------------------------

// Work row of the up step: output columns 2 x0 .. 2 x1 - 1 of a source row of `width` pixels.
template <class T>
void ownPyrUpRowH(const T* s, std::int64_t width, int ch, typename ownPyrWork<T>::W* h, std::int64_t x0,
                  std::int64_t x1) {
  using A = typename ownPyrWork<T>::Acc;
  using W = typename ownPyrWork<T>::W;
  for (std::int64_t x = x0; x < x1; ++x) {
    const std::int64_t l = ownPyrUpIndex(x - 1, width), r = ownPyrUpIndex(x + 1, width);
    for (int c = 0; c < ch; ++c) {
      const A a = static_cast<A>(s[l * ch + c]), b = static_cast<A>(s[x * ch + c]), e = static_cast<A>(s[r * ch + c]);
      h[2 * x * ch + c] = static_cast<W>(ownPyrTapsEven<A>(a, b, e));
      h[(2 * x + 1) * ch + c] = static_cast<W>(ownPyrTapsOdd<A>(b, e));
    }
  }
}

// The two output rows of the up step from work rows r[0..2] (source rows y-1, y, y+1).
template <class T>
void ownPyrUpRowV(const typename ownPyrWork<T>::W* const* r, T* even, T* odd, std::int64_t k0, std::int64_t n) {
  using A = typename ownPyrWork<T>::Acc;
  for (std::int64_t k = k0; k < n; ++k) {
    even[k] = ownPyrResult<T>(ownPyrTapsEven<A>(r[0][k], r[1][k], r[2][k]), 6);
    odd[k] = ownPyrResult<T>(ownPyrTapsOdd<A>(r[1][k], r[2][k]), 6);
  }
}

void ownPyrUpRowH_sse2(const vnx8u* s, std::int64_t width, vnx16s* h);
void ownPyrUpRowH_sse2(const vnx8s* s, std::int64_t width, vnx16s* h);
void ownPyrUpRowH_sse2(const vnx32f* s, std::int64_t width, vnx32f* h);
// 8-bit rows take streaming stores when both rows are 16-byte aligned and n is a
// whole number of vectors (otherwise cached); the caller fences.
void ownPyrUpRowV_sse2(const vnx16s* const* r, vnx8u* even, vnx8u* odd, std::int64_t n, ownStoreKind kind);
void ownPyrUpRowV_sse2(const vnx16s* const* r, vnx8s* even, vnx8s* odd, std::int64_t n, ownStoreKind kind);
void ownPyrUpRowV_sse2(const vnx32f* const* r, vnx32f* even, vnx32f* odd, std::int64_t n, ownStoreKind kind);

// Output rows 2y and 2y + 1 of a one-channel 8-bit up step from the work rows of source
// rows y - 1 and y (above, at) and source row y + 1 (s), whose work row goes to below.
void ownPyrUpStep_sse2(const vnx8u* s, std::int64_t width, const vnx16s* above, const vnx16s* at, vnx16s* below,
                       vnx8u* even, vnx8u* odd);
void ownPyrUpStep_sse2(const vnx8s* s, std::int64_t width, const vnx16s* above, const vnx16s* at, vnx16s* below,
                       vnx8s* even, vnx8s* odd);

// ---- work rows -----------------------------------------------------------------

// A few work rows kept by source row index (slot y mod slots), so a band walking
// down its output rows makes each work row once.
template <class W>
class ownPyrRows {
 public:
  ownPyrRows(W* base, std::int64_t stride, int slots) : base_(base), stride_(stride), slots_(slots) {
    for (int i = 0; i < slots; ++i) tags_[i] = INT64_MIN;
  }
  template <class Fill>
  const W* get(std::int64_t y, Fill&& fill) {
    const int slot = static_cast<int>(((y % slots_) + slots_) % slots_);
    W* r = base_ + slot * stride_;
    if (tags_[slot] != y) {
      fill(y, r);
      tags_[slot] = y;
    }
    return r;
  }

 private:
  W* base_;
  std::int64_t stride_;
  int slots_;
  std::int64_t tags_[6];
};

// Elements of one work row of n samples: a whole number of 16-byte vectors.
template <class W>
inline std::int64_t ownPyrStride(std::int64_t n) {
  const std::int64_t per = 16 / static_cast<std::int64_t>(sizeof(W));
  return (n + per - 1) / per * per;
}

// Scratch of the bands of one step: band b's rows at slice(b). Bands take their
// slices from the caller's buffer (aligned up to 32 bytes) while it holds them and
// the rest from the scratch allocator; when that fails the step keeps the bands the
// buffer holds.
class ownPyrScratch {
 public:
  ownPyrScratch(vnx8u* buffer, std::int64_t bufferBytes, std::int64_t perBand, int wanted);
  ~ownPyrScratch() { ownFree(extra_); }
  ownPyrScratch(const ownPyrScratch&) = delete;
  ownPyrScratch& operator=(const ownPyrScratch&) = delete;
  int bands() const { return bands_; }
  void* slice(int band) const;

 private:
  vnx8u* buf_;
  std::int64_t perBand_;
  int inBuffer_;
  int bands_;
  void* extra_ = nullptr;
};

// Buffer bytes of the two steps: 6 R + 32 down, 3 R' + 32 up (R = 4 w ch, R' = 8 w ch, both
// rounded up to 16); -1 when that does not fit an int.
std::int64_t ownPyrDownBufBytes(int width, int channels);
std::int64_t ownPyrUpBufBytes(int width, int channels);

// The buffer queries of both steps: pointer, width, channels, then the element type.
enum class ownPyrDirection { Down, Up };
vnxStatus ownPyrBufSize(int roiWidth, int dataType, int channels, int* pBufSize, ownPyrDirection dir);
