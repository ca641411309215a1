// Borders: the one mechanism every bordered operation uses (filters, morphology,
// pyramids, edges, corners). A band keeps a small ring of padded scratch rows; each
// scratch row holds one source row of the ROI with the columns beyond its edges
// synthesised by the border rule, and rows above and below the ROI are synthesised the
// same way. Inner kernels then run whole vectors over scratch rows with no edge cases,
// never form a pointer outside an array, and the caller's image is read only inside
// its ROI. All index arithmetic is in 64 bits: a row or column may be longer than 2^30.
#pragma once

#include <cstdint>
#include <cstring>

#include "own.h"

// The five border rules, by their public codes.
enum class ownBorder : int {
  Const = vnxBorderConst,          // the caller's border value
  Replicate = vnxBorderReplicate,  // nearest edge pixel
  Wrap = vnxBorderWrap,            // periodic
  Mirror = vnxBorderMirror,        // reflection without repeating the edge pixel
  MirrorR = vnxBorderMirrorR,      // reflection repeating it
};

// True for a code of one of the five rules.
inline bool ownIsBorder(int code) { return code >= vnxBorderConst && code <= vnxBorderMirrorR; }

// Index in [0, n) of the sample that stands for position i of a line of n samples, or
// -1 under the constant rule (the caller's value stands there). Reflections repeat for
// lines shorter than the reach: Mirror has period 2n - 2 (a line of one sample mirrors to
// itself), MirrorR period 2n, Wrap period n. 2n cannot overflow 64 bits for n < 2^62.
inline std::int64_t ownBorderIndex(std::int64_t i, std::int64_t n, ownBorder rule) {
  if (i >= 0 && i < n) return i;
  switch (rule) {
    case ownBorder::Const:
      return -1;
    case ownBorder::Replicate:
      return i < 0 ? 0 : n - 1;
    case ownBorder::Wrap: {
      const std::int64_t m = i % n;
      return m < 0 ? m + n : m;
    }
    case ownBorder::Mirror: {
      if (n == 1) return 0;
      const std::int64_t p = 2 * n - 2;
      std::int64_t m = i % p;
      if (m < 0) m += p;
      return m < n ? m : p - m;
    }
    case ownBorder::MirrorR:
    default: {
      const std::int64_t p = 2 * n;
      std::int64_t m = i % p;
      if (m < 0) m += p;
      return m < n ? m : p - 1 - m;
    }
  }
}

// One padded row: padLeft pixels, the `width` pixels of src, padRight pixels, each of
// `channels` interleaved samples, written from dst[0]. Only src[0 .. width * channels)
// is read.
template <class T>
void ownBorderRow(const T* src, std::int64_t width, int channels, std::int64_t padLeft, std::int64_t padRight,
                  ownBorder rule, T value, T* dst) {
  const std::int64_t c = channels;
  std::memcpy(dst + padLeft * c, src, static_cast<std::size_t>(width * c) * sizeof(T));
  auto edge = [&](std::int64_t x0, std::int64_t x1) {  // positions x0 .. x1 - 1 relative to the ROI
    for (std::int64_t x = x0; x < x1; ++x) {
      const std::int64_t s = ownBorderIndex(x, width, rule);
      T* d = dst + (x + padLeft) * c;
      for (std::int64_t k = 0; k < c; ++k) d[k] = s < 0 ? value : src[s * c + k];
    }
  };
  edge(-padLeft, 0);
  edge(width, width + padRight);
}

// The shape of a ring: the ROI's width and channels, the columns synthesised on each
// side, the rows reached above and below an output row, and how many more rows the ring
// keeps (a kernel that makes two output rows a step keeps one more). Each scratch row
// is followed by `slackElems` zeroed elements, so a vector kernel may read a whole
// vector past the last synthesised column.
struct ownRingShape {
  std::int64_t width;
  int channels;
  int padLeft, padRight;
  int reachUp, reachDown;
  int extraRows;
  int slackElems;
};

// A ring of padded scratch rows over one source image. row(y) returns the scratch row
// that stands for row y of the ROI (y may lie up to reachUp above and reachDown below
// the ROI), pointing at the sample of column 0: columns -padLeft .. width + padRight - 1
// are valid. A row is synthesised when first asked for and kept until a row that shares
// its slot is asked for, so a band walking down its rows loads each source row once.
// Rows come from a block of bytes() bytes that the caller owns (a slice of a work
// buffer, or ownMalloc_8u); the ring aligns each row to 32 bytes itself.
template <class T>
class ownBorderRing {
 public:
  static std::int64_t rowElems(const ownRingShape& s) {
    const std::int64_t n = (s.padLeft + s.width + s.padRight) * s.channels + s.slackElems;
    const std::int64_t per = 32 / static_cast<std::int64_t>(sizeof(T));
    return (n + per - 1) / per * per;
  }
  static int ringRows(const ownRingShape& s) { return s.reachUp + s.reachDown + 1 + s.extraRows; }
  // Bytes of the block a ring needs: its rows, their tags and 32 bytes of alignment slack.
  static std::int64_t bytes(const ownRingShape& s) {
    return rowElems(s) * static_cast<std::int64_t>(sizeof(T)) * ringRows(s) +
           static_cast<std::int64_t>(sizeof(std::int64_t)) * ringRows(s) + 32;
  }

  ownBorderRing(const T* src, int srcStep, vnxiSize roi, const ownRingShape& shape, ownBorder rule, T value,
                void* block)
      : src_(src), step_(srcStep), height_(roi.height), shape_(shape), rule_(rule), value_(value),
        stride_(rowElems(shape)), rows_(ringRows(shape)) {
    const std::uintptr_t a = (reinterpret_cast<std::uintptr_t>(block) + 31) & ~static_cast<std::uintptr_t>(31);
    data_ = reinterpret_cast<T*>(a);
    tags_ = reinterpret_cast<std::int64_t*>(data_ + stride_ * rows_);
    const std::int64_t used = (shape.padLeft + shape.width + shape.padRight) * shape.channels;
    for (int r = 0; r < rows_; ++r) {
      tags_[r] = kEmpty;
      std::memset(data_ + r * stride_ + used, 0, static_cast<std::size_t>(stride_ - used) * sizeof(T));
    }
  }

  // Scratch row standing for ROI row y, at the sample of column 0.
  const T* row(std::int64_t y) {
    const int slot = static_cast<int>(((y % rows_) + rows_) % rows_);
    T* r = data_ + slot * stride_;
    if (tags_[slot] != y) {
      fill(y, r);
      tags_[slot] = y;
    }
    return r + static_cast<std::int64_t>(shape_.padLeft) * shape_.channels;
  }

  std::int64_t width() const { return shape_.width; }

 private:
  static constexpr std::int64_t kEmpty = INT64_MIN;

  void fill(std::int64_t y, T* r) const {
    const std::int64_t sy = ownBorderIndex(y, height_, rule_);
    const std::int64_t n = (shape_.padLeft + shape_.width + shape_.padRight) * shape_.channels;
    if (sy < 0) {
      for (std::int64_t i = 0; i < n; ++i) r[i] = value_;
      return;
    }
    const T* s = reinterpret_cast<const T*>(reinterpret_cast<const char*>(src_) + static_cast<std::ptrdiff_t>(step_) * sy);
    ownBorderRow(s, shape_.width, shape_.channels, shape_.padLeft, shape_.padRight, rule_, value_, r);
  }

  const T* src_;
  int step_;
  std::int64_t height_;
  ownRingShape shape_;
  ownBorder rule_;
  T value_;
  std::int64_t stride_;
  int rows_;
  T* data_ = nullptr;
  std::int64_t* tags_ = nullptr;
};
