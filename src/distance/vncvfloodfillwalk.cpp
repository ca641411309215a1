// The scan-line walk of every flood fill (see vncvfloodfill.h), its work-buffer
// layout and the span scans of the plain 8u rule in 16-byte vectors.
#include <climits>

#include "simd.h"
#include "vncvfloodfill.h"

namespace {

// The span steps run a few times a span: inlined into the walk, no call per span.
#define OWN_FILL_INLINE __attribute__((always_inline)) inline

constexpr std::int64_t kOwnEntryBytes = static_cast<std::int64_t>(sizeof(ownFillEntry));
static_assert(sizeof(ownFillEntry) == 24, "six 32-bit fields");

inline vnx8u* ownAlign8(vnx8u* p) {
  return reinterpret_cast<vnx8u*>((reinterpret_cast<std::uintptr_t>(p) + 7) & ~std::uintptr_t(7));
}

// Lanes of 16 bytes inside [lo, hi]: both saturating differences zero.
inline int ownInRangeMask(__m128i v, __m128i lo, __m128i hi) {
  const __m128i z = _mm_setzero_si128();
  return _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(_mm_subs_epu8(v, hi), z), _mm_cmpeq_epi8(_mm_subs_epu8(lo, v), z)));
}

// First x in [x, end) whose byte is (In) or is not (!In) inside [lo, hi], else end.
template <bool In>
inline int ownFindRight8u(const vnx8u* row, int x, int end, vnx8u lo, vnx8u hi) {
  const __m128i vl = _mm_set1_epi8(static_cast<char>(lo)), vh = _mm_set1_epi8(static_cast<char>(hi));
  for (; x + 16 <= end; x += 16) {
    const int m = ownInRangeMask(ownLoad(row + x), vl, vh) ^ (In ? 0 : 0xFFFF);
    if (m) return x + __builtin_ctz(static_cast<unsigned>(m));
  }
  for (; x < end; ++x)
    if ((lo <= row[x] && row[x] <= hi) == In) return x;
  return end;
}

// Last x in [begin, x] whose byte is outside [lo, hi], else begin - 1.
inline int ownFindLeftOut8u(const vnx8u* row, int x, int begin, vnx8u lo, vnx8u hi) {
  const __m128i vl = _mm_set1_epi8(static_cast<char>(lo)), vh = _mm_set1_epi8(static_cast<char>(hi));
  for (; x - 15 >= begin; x -= 16) {
    const int m = ownInRangeMask(ownLoad(row + x - 15), vl, vh) ^ 0xFFFF;
    if (m) return x - 15 + (31 - __builtin_clz(static_cast<unsigned>(m)));
  }
  for (; x >= begin; --x)
    if (!(lo <= row[x] && row[x] <= hi)) return x;
  return begin - 1;
}

}  // namespace

int ownFindByte8u(const vnx8u* row, int x, int end, vnx8u v) { return ownFindRight8u<true>(row, x, end, v, v); }

std::int64_t ownFloodFillMapBytes(vnxiSize roi, ownFillRule rule) {
  const std::int64_t w = roi.width, h = roi.height;
  if (rule == ownFillRule::Grad) return (w + 2) * (h + 2);
  return ((w * h + 7) / 8 + 7) / 8 * 8;  // bits, rounded up to whole 8-byte words
}

std::int64_t ownFloodFillBytes(vnxiSize roi, ownFillRule rule) {
  const std::int64_t w = roi.width, h = roi.height;
  const std::int64_t stack = (24 * h * w) / 4 + 32;
  return rule == ownFillRule::Grad ? (w + 2) * (h + 2) + stack : stack;
}

template <class T, int C, ownFillRule R, ownFillConn K>
ownFloodFiller<T, C, R, K>::ownFloodFiller(T* image, int step, vnxiSize roi, vnx8u* buffer,
                                           const ownFillColours<T, C>& colours)
    : image_(image), step_(step), w_(roi.width), h_(roi.height), c_(colours) {
  // The reported size minus the alignment slack and the map is the stack.
  vnx8u* base = ownAlign8(buffer);
  const std::int64_t slack = base - buffer;
  const std::int64_t mapBytes = ownFloodFillMapBytes(roi, R);
  map_ = base;
  mapStride_ = R == ownFillRule::Grad ? static_cast<std::ptrdiff_t>(w_) + 2 : static_cast<std::ptrdiff_t>(w_);
  stack_ = reinterpret_cast<ownFillEntry*>(base + (R == ownFillRule::Grad ? (mapBytes + 7) / 8 * 8 : mapBytes));
  const std::int64_t used = slack + (reinterpret_cast<vnx8u*>(stack_) - base);
  const std::int64_t left = ownFloodFillBytes(roi, R) - used;
  cap_ = left > 0 ? left / kOwnEntryBytes : 0;
  paintedFails_ = R != ownFillRule::Grad && !intrinsic(c_.fill);
}

template <class T, int C, ownFillRule R, ownFillConn K>
void ownFloodFiller<T, C, R, K>::clearMap() {
  std::memset(map_, 0, static_cast<std::size_t>(ownFloodFillMapBytes({w_, h_}, R)));
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE bool ownFloodFiller<T, C, R, K>::taken(int x, int y) const {
  if constexpr (R == ownFillRule::Grad) {
    return map_[(y + 1) * mapStride_ + x + 1] != 0;
  } else {
    const std::int64_t i = static_cast<std::int64_t>(y) * w_ + x;
    return (map_[i >> 3] >> (i & 7)) & 1;
  }
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE void ownFloodFiller<T, C, R, K>::take(int y, int l, int r) {
  if constexpr (R == ownFillRule::Grad) {
    std::memset(map_ + (y + 1) * mapStride_ + l + 1, 1, static_cast<std::size_t>(r - l + 1));
  } else {
    std::int64_t i = static_cast<std::int64_t>(y) * w_ + l;
    const std::int64_t e = static_cast<std::int64_t>(y) * w_ + r + 1;
    for (; i < e && (i & 7); ++i) map_[i >> 3] |= static_cast<vnx8u>(1u << (i & 7));
    if (e - i >= 8) {
      std::memset(map_ + (i >> 3), 0xFF, static_cast<std::size_t>((e - i) >> 3));
      i += (e - i) & ~std::int64_t(7);
    }
    for (; i < e; ++i) map_[i >> 3] |= static_cast<vnx8u>(1u << (i & 7));
    T* p = row(y) + static_cast<std::ptrdiff_t>(l) * C;  // plain and Range paint at once
    if constexpr (C == 1 && sizeof(T) == 1) {
      std::memset(p, c_.fill[0], static_cast<std::size_t>(r - l + 1));
    } else {
      for (int x = l; x <= r; ++x, p += C)
        for (int k = 0; k < C; ++k) p[k] = c_.fill[k];
    }
  }
  area_ += r - l + 1;
  minX_ = l < minX_ ? l : minX_;
  maxX_ = r > maxX_ ? r : maxX_;
  minY_ = y < minY_ ? y : minY_;
  maxY_ = y > maxY_ ? y : maxY_;
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE bool ownFloodFiller<T, C, R, K>::intrinsic(const T* p) const {
  for (int k = 0; k < C; ++k)
    if (!(c_.lo[k] <= p[k] && p[k] <= c_.hi[k])) return false;  // plain: lo = hi = the seed's colour
  return true;
}

// 8u: p + minDelta - q, unsigned, not above minDelta + maxDelta; 32f: the two
// bounds.
template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE bool ownFloodFiller<T, C, R, K>::gradPasses(const T* q, const T* p) const {
  for (int k = 0; k < C; ++k) {
    if constexpr (sizeof(T) == 1) {
      const unsigned v = static_cast<unsigned>(p[k]) + c_.minDelta[k] - q[k];
      if (v > static_cast<unsigned>(c_.minDelta[k]) + c_.maxDelta[k]) return false;
    } else {
      if (!(q[k] - c_.minDelta[k] <= p[k] && p[k] <= q[k] + c_.maxDelta[k])) return false;
    }
  }
  return true;
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE bool ownFloodFiller<T, C, R, K>::passesFromRow(int x, int y, int qy, int ql, int qr) const {
  if constexpr (R == ownFillRule::Grad) {
    if (taken(x, y)) return false;
    const T* p = px(x, y);
    const int a = K == ownFillConn::Eight ? (x - 1 > ql ? x - 1 : ql) : x;
    const int b = K == ownFillConn::Eight ? (x + 1 < qr ? x + 1 : qr) : x;
    for (int qx = a; qx <= b; ++qx)
      if (gradPasses(px(qx, qy), p)) return true;
    return false;
  } else {
    (void)qy, (void)ql, (void)qr;
    if (!paintedFails_ && taken(x, y)) return false;
    return intrinsic(px(x, y));
  }
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE bool ownFloodFiller<T, C, R, K>::passesFromNeighbour(int x, int y, int nx, int ny) const {
  if constexpr (R == ownFillRule::Grad) return !taken(x, y) && gradPasses(px(nx, ny), px(x, y));
  (void)nx, (void)ny;
  if (!paintedFails_ && taken(x, y)) return false;
  return intrinsic(px(x, y));
}

// The span of row y through the passing pixel x: left and right while the next
// pixel passes against the one before it.
template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE void ownFloodFiller<T, C, R, K>::extend(int y, int x, int* l, int* r) const {
  if (kByteRows && paintedFails_) {
    const vnx8u* rw = reinterpret_cast<const vnx8u*>(row(y));
    const vnx8u lo = static_cast<vnx8u>(c_.lo[0]), hi = static_cast<vnx8u>(c_.hi[0]);
    *l = ownFindLeftOut8u(rw, x, 0, lo, hi) + 1;
    *r = ownFindRight8u<false>(rw, x, w_, lo, hi) - 1;
  } else {
    int a = x, b = x;
    while (a > 0 && passesFromNeighbour(a - 1, y, a, y)) --a;
    while (b + 1 < w_ && passesFromNeighbour(b + 1, y, b, y)) ++b;
    *l = a;
    *r = b;
  }
}

template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE void ownFloodFiller<T, C, R, K>::push(const ownFillEntry& e) {
  if (top_ < cap_) {
    stack_[top_++] = e;
  } else {
    dropped_ = true;  // its span is taken; the rescan finds what lies beyond it
  }
}

// Searches row y over columns a .. b for spans touching the span [ql, qr] of
// row qy; each is taken and pushed with direction d.
template <class T, int C, ownFillRule R, ownFillConn K>
OWN_FILL_INLINE void ownFloodFiller<T, C, R, K>::search(int y, int a, int b, int qy, int ql, int qr, int d) {
  int x = a;
  while (x <= b) {
    if (kByteRows && paintedFails_) {
      x = ownFindRight8u<true>(reinterpret_cast<const vnx8u*>(row(y)), x, b + 1, static_cast<vnx8u>(c_.lo[0]),
                               static_cast<vnx8u>(c_.hi[0]));
      if (x > b) break;
    } else if (!passesFromRow(x, y, qy, ql, qr)) {
      ++x;
      continue;
    }
    int l, r;
    extend(y, x, &l, &r);
    take(y, l, r);
    push({y, l, r, ql, qr, d});
    x = r + 1;
  }
}

template <class T, int C, ownFillRule R, ownFillConn K>
void ownFloodFiller<T, C, R, K>::drain() {
  const int k = K == ownFillConn::Eight ? 1 : 0;
  while (top_ > 0) {
    const ownFillEntry e = stack_[--top_];
    const int a = e.xl - k < 0 ? 0 : e.xl - k;
    const int b = e.xr + k > w_ - 1 ? w_ - 1 : e.xr + k;
    const int ahead = e.y - e.d, back = e.y + e.d;
    if (ahead >= 0 && ahead < h_) search(ahead, a, b, e.y, e.xl, e.xr, e.d);
    if (back >= 0 && back < h_) {
      search(back, a, (e.pl - 1 < b ? e.pl - 1 : b), e.y, e.xl, e.xr, -e.d);
      search(back, (e.pr + 1 > a ? e.pr + 1 : a), b, e.y, e.xl, e.xr, -e.d);
    }
  }
}

// After a walk that dropped entries: every untaken pixel in the box around the
// region that passes against a taken neighbour starts a walk of its own.
template <class T, int C, ownFillRule R, ownFillConn K>
void ownFloodFiller<T, C, R, K>::rescan() {
  const int y0 = minY_ > 0 ? minY_ - 1 : 0, y1 = maxY_ + 1 < h_ ? maxY_ + 1 : h_ - 1;
  const int x0 = minX_ > 0 ? minX_ - 1 : 0, x1 = maxX_ + 1 < w_ ? maxX_ + 1 : w_ - 1;
  const int k = K == ownFillConn::Eight ? 1 : 0;
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x) {
      if (taken(x, y)) continue;
      bool reached = false;
      for (int dy = -1; dy <= 1 && !reached; ++dy)
        for (int dx = -1; dx <= 1 && !reached; ++dx) {
          const int nx = x + dx, ny = y + dy;
          if ((dx == 0 && dy == 0) || (k == 0 && dx != 0 && dy != 0)) continue;
          if (nx < 0 || nx >= w_ || ny < 0 || ny >= h_ || !taken(nx, ny)) continue;
          reached = passesFromNeighbour(x, y, nx, ny);
        }
      if (!reached) continue;
      int l, r;
      extend(y, x, &l, &r);
      take(y, l, r);
      push({y, l, r, r + 1, r, y == h_ - 1 ? -1 : 1});
      drain();
      x = r;
    }
}

template <class T, int C, ownFillRule R, ownFillConn K>
void ownFloodFiller<T, C, R, K>::paintRegion() {
  for (int y = minY_; y <= maxY_; ++y) {
    T* p = row(y) + static_cast<std::ptrdiff_t>(minX_) * C;
    for (int x = minX_; x <= maxX_; ++x, p += C)
      if (taken(x, y))
        for (int k = 0; k < C; ++k) p[k] = c_.fill[k];
  }
}

template <class T, int C, ownFillRule R, ownFillConn K>
vnxiFillRegion ownFloodFiller<T, C, R, K>::run(vnxiPoint seed) {
  minX_ = maxX_ = seed.x;
  minY_ = maxY_ = seed.y;
  area_ = 0;
  top_ = 0;
  dropped_ = false;
  // The seed is painted whatever it is (a NaN seed equals nothing, itself
  // included); its span grows by the neighbour tests.
  int l, r;
  extend(seed.y, seed.x, &l, &r);
  take(seed.y, l, r);
  if (h_ > 1) push({seed.y, l, r, r + 1, r, seed.y == h_ - 1 ? -1 : 1});
  drain();
  while (dropped_) {
    dropped_ = false;
    rescan();
  }
  if constexpr (R == ownFillRule::Grad) paintRegion();
  vnxiFillRegion region;
  region.area = area_;
  for (int k = 0; k < 3; ++k) region.value[k] = k < C ? static_cast<double>(c_.fill[k]) : 0.0;
  region.rect = {minX_, minY_, maxX_ - minX_ + 1, maxY_ - minY_ + 1};
  // Leave the map clear for the next fill (marker labelling runs many): only
  // the box holds taken pixels, so whole bytes over its rows can be cleared.
  for (int y = minY_; y <= maxY_; ++y) {
    if constexpr (R == ownFillRule::Grad) {
      std::memset(map_ + (y + 1) * mapStride_ + minX_ + 1, 0, static_cast<std::size_t>(maxX_ - minX_ + 1));
    } else {
      const std::int64_t i = static_cast<std::int64_t>(y) * w_;
      const std::int64_t b0 = (i + minX_) >> 3, b1 = (i + maxX_) >> 3;
      std::memset(map_ + b0, 0, static_cast<std::size_t>(b1 - b0 + 1));
    }
  }
  return region;
}

template <class T, int C, ownFillRule R, ownFillConn K>
vnxStatus ownFloodFill(T* image, int step, vnxiSize roi, vnxiPoint seed, const T* newVal, const T* minDelta,
                       const T* maxDelta, vnxiFillRegion* region, vnx8u* buffer) {
  const bool plain = R == ownFillRule::Plain;  // no delta pointers to test
  if (vnxStatus st =
          ownCheckFloodFill<T>({image, region, buffer, newVal, plain ? image : minDelta, plain ? image : maxDelta},
                               step, roi, seed, minDelta, maxDelta, plain ? 0 : C))
    return st;
  const T* s = ownRow(image, step, seed.y) + static_cast<std::ptrdiff_t>(seed.x) * C;
  bool same = true;
  for (int k = 0; k < C; ++k) same = same && s[k] == newVal[k];
  if (same) return vnxStatusOk;  // nothing painted, the record untouched
  ownFillColours<T, C> c{};
  for (int k = 0; k < C; ++k) {
    c.seed[k] = s[k];
    c.fill[k] = newVal[k];
    if (R != ownFillRule::Plain) {
      c.minDelta[k] = minDelta[k];
      c.maxDelta[k] = maxDelta[k];
    }
    if constexpr (R == ownFillRule::Plain) {
      c.lo[k] = c.hi[k] = s[k];
    } else if constexpr (R == ownFillRule::Range) {
      if constexpr (sizeof(T) == 1) {  // clamped to 0 .. 255
        const int lo = s[k] - minDelta[k], hi = s[k] + maxDelta[k];
        c.lo[k] = static_cast<T>(lo < 0 ? 0 : lo);
        c.hi[k] = static_cast<T>(hi > 255 ? 255 : hi);
      } else {
        c.lo[k] = s[k] - minDelta[k];
        c.hi[k] = s[k] + maxDelta[k];
      }
    }
  }
  ownFloodFiller<T, C, R, K> filler(image, step, roi, buffer, c);
  filler.clearMap();
  *region = filler.run(seed);
  return vnxStatusOk;
}

#define OWN_FILL_INSTANCES(T, C)                                                            \
  template class ownFloodFiller<T, C, ownFillRule::Plain, ownFillConn::Four>;               \
  template class ownFloodFiller<T, C, ownFillRule::Plain, ownFillConn::Eight>;              \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Plain, ownFillConn::Four>(             \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*); \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Plain, ownFillConn::Eight>(            \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*); \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Range, ownFillConn::Four>(             \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*); \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Range, ownFillConn::Eight>(            \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*); \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Grad, ownFillConn::Four>(              \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*); \
  template vnxStatus ownFloodFill<T, C, ownFillRule::Grad, ownFillConn::Eight>(             \
      T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*);
OWN_FILL_INSTANCES(vnx8u, 1)
OWN_FILL_INSTANCES(vnx8u, 3)
OWN_FILL_INSTANCES(vnx32f, 1)
OWN_FILL_INSTANCES(vnx32f, 3)
