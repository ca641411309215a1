// Layer states and steps: smooth with a caller's symmetric kernel, then resample to
// the next level down (or up) at any rate 1 < r <= 10.
//
// Smoothing runs rows first, then columns, with the image mirrored about its edge
// pixel beyond the edges (as the down step of the 5x5 pyramid). Integer types keep
// the intermediate in units of 1/8 of a grey level: taps carry 13 fraction bits, a
// row sum becomes (sum + 2^9) >> 10 and a column sum (sum + 2^12) >> 13; 8u clamps it
// to 16 bits, 16u to 32. Resampling blends two intermediate rows, then two columns, as
// trunc(a f + 0.5 + b (1 - f)); a result v becomes (v + 4) >> 3, 0 when v + 4 < 8,
// the type's maximum above it. 32f keeps floats: sums over the taps in order, blends
// a f + b (1 - f), no conversion.
#include <cfloat>
#include <climits>
#include <cmath>

#include "alloc.h"
#include "border.h"
#include "check.h"
#include "parallel.h"
#include "pyramids/vncvconvutil.h"
#include "traits.h"

enum class ownLayerDir : int { Down, Up };

struct vnxiPyramidState {
  ownLayerDir dir;
  int typeCode, channels, kerSize, mode;
  float rate;
  vnxiSize base;
  void* taps;         // kerSize floats (32f) or 16-bit fixed-point taps with 13 fraction bits
  int nSizes;         // down: the sizes successive down steps make from the base size
  vnxiSize* sizes;
};

namespace {

template <class T>
struct ownLayerType {
  using Inter = std::int32_t;
  using Tap = vnx16s;
  static constexpr std::int64_t lo = std::is_same<T, vnx8u>::value ? -32768 : INT32_MIN;
  static constexpr std::int64_t hi = std::is_same<T, vnx8u>::value ? 32767 : INT32_MAX;
};
template <>
struct ownLayerType<vnx32f> {
  using Inter = vnx32f;
  using Tap = vnx32f;
};

template <class T>
typename ownLayerType<T>::Inter ownLayerClamp(std::int64_t v) {
  return static_cast<std::int32_t>(v < ownLayerType<T>::lo ? ownLayerType<T>::lo : v > ownLayerType<T>::hi ? ownLayerType<T>::hi : v);
}

// One sum of the smoothing: taps t[0..k) over samples at(0..k); integers round with
// 2^(shift - 1) and shift.
template <class T, class At>
typename ownLayerType<T>::Inter ownLayerDot(const typename ownLayerType<T>::Tap* t, int k, int shift, At&& at) {
  if constexpr (std::is_same<T, vnx32f>::value) {
    float s = 0.0f;
    for (int i = 0; i < k; ++i) s += t[i] * at(i);
    return s;
  } else {
    std::int64_t s = 0;
    for (int i = 0; i < k; ++i) s += std::int64_t{t[i]} * at(i);
    return ownLayerClamp<T>((s + (std::int64_t{1} << (shift - 1))) >> shift);
  }
}

// trunc(a f + 0.5 + b (1 - f)) for integers, a f + b (1 - f) for floats.
template <class T>
typename ownLayerType<T>::Inter ownLayerBlend(typename ownLayerType<T>::Inter a, typename ownLayerType<T>::Inter b, float f) {
  if constexpr (std::is_same<T, vnx32f>::value)
    return a * f + b * (1.0f - f);
  else
    return static_cast<std::int32_t>(static_cast<float>(a) * f + 0.5f + static_cast<float>(b) * (1.0f - f));
}

template <class T>
T ownLayerResult(typename ownLayerType<T>::Inter v) {
  if constexpr (std::is_same<T, vnx32f>::value) {
    return v;
  } else {
    const std::int64_t r = std::int64_t{v} + 4 < 8 ? 0 : (std::int64_t{v} + 4) >> 3;
    return static_cast<T>(r > ownTraits<T>::highest ? ownTraits<T>::highest : r);
  }
}

// Position of destination index j in the intermediate: j r down, j / r up.
struct ownLayerPos {
  std::int64_t i0, i1;
  float f;
};
inline ownLayerPos ownLayerMap(std::int64_t j, float r, ownLayerDir dir, std::int64_t n) {
  const float y = dir == ownLayerDir::Down ? static_cast<float>(j) * r : static_cast<float>(j) / r;
  std::int64_t i = static_cast<std::int64_t>(y);
  if (i > n - 1) i = n - 1;
  return {i, i + 1 < n ? i + 1 : n - 1, y - static_cast<float>(i)};
}

inline bool ownLayerRate2(float r) { return r >= 1.99998f && r <= 2.00002f; }

// One band of destination rows: rows of the source smoothed horizontally (kept by
// row index), intermediate rows (kept likewise), then the blend.
template <class T, int C>
class ownLayerBand {
  using I = typename ownLayerType<T>::Inter;

 public:
  static std::int64_t bytes(int width, int k) {
    return (std::int64_t{k} + 3) * width * C * std::int64_t{sizeof(I)} + (std::int64_t{k} + 2) * 8 + std::int64_t{k} * 8;
  }
  ownLayerBand(const vnxiPyramidState& s, const T* src, int srcStep, vnxiSize roi, void* block)
      : st_(s), src_(src), step_(srcStep), roi_(roi), n_(std::int64_t{roi.width} * C),
        taps_(static_cast<const typename ownLayerType<T>::Tap*>(s.taps)) {
    tags_ = static_cast<std::int64_t*>(block);
    for (int i = 0; i < s.kerSize + 2; ++i) tags_[i] = INT64_MIN;
    ptrs_ = reinterpret_cast<const I**>(tags_ + s.kerSize + 2);
    rows_ = reinterpret_cast<I*>(tags_ + 2 * s.kerSize + 2);
  }

  void run(T* dst, int dstStep, vnxiSize dstRoi, int j0, int j1) {
    I* blend = rows_ + (std::int64_t{st_.kerSize} + 2) * n_;
    for (int j = j0; j < j1; ++j) {
      T* d = ownRow(dst, dstStep, j);
      if (st_.dir == ownLayerDir::Down && ownLayerRate2(st_.rate)) {  // every second sample
        const I* r = inter(std::int64_t{2} * j);
        for (std::int64_t i = 0; i < dstRoi.width; ++i)
          for (int c = 0; c < C; ++c) d[i * C + c] = ownLayerResult<T>(r[2 * i * C + c]);
        continue;
      }
      const ownLayerPos py = ownLayerMap(j, st_.rate, st_.dir, roi_.height);
      const I* a = inter(py.i1);
      const I* b = inter(py.i0);
      for (std::int64_t k = 0; k < n_; ++k) blend[k] = ownLayerBlend<T>(a[k], b[k], py.f);
      for (std::int64_t i = 0; i < dstRoi.width; ++i) {
        const ownLayerPos px = ownLayerMap(i, st_.rate, st_.dir, roi_.width);
        for (int c = 0; c < C; ++c)
          d[i * C + c] = ownLayerResult<T>(ownLayerBlend<T>(blend[px.i1 * C + c], blend[px.i0 * C + c], px.f));
      }
    }
  }

 private:
  // Source row y (rows mirrored beyond the edges) smoothed horizontally, kerSize slots.
  const I* smoothedRow(std::int64_t y) {
    const int k = st_.kerSize, slot = static_cast<int>(((y % k) + k) % k);
    I* r = rows_ + slot * n_;
    if (tags_[slot] == y) return r;
    const T* s = ownRow(src_, step_, static_cast<int>(ownBorderIndex(y, roi_.height, ownBorder::Mirror)));
    const int c0 = k / 2;
    for (std::int64_t x = 0; x < roi_.width; ++x)
      for (int c = 0; c < C; ++c)
        r[x * C + c] = ownLayerDot<T>(taps_, k, 10, [&](int i) {
          return s[ownBorderIndex(x + i - c0, roi_.width, ownBorder::Mirror) * C + c];
        });
    tags_[slot] = y;
    return r;
  }
  // Intermediate row y (two slots after the smoothed rows): the column sums over the
  // kerSize smoothed rows around y, which sit in distinct slots.
  const I* inter(std::int64_t y) {
    const int k = st_.kerSize, slot = k + static_cast<int>(y & 1);
    I* r = rows_ + slot * n_;
    if (tags_[slot] == y) return r;
    for (int i = 0; i < k; ++i) ptrs_[i] = smoothedRow(y + i - k / 2);
    for (std::int64_t x = 0; x < n_; ++x) r[x] = ownLayerDot<T>(taps_, k, 13, [&](int i) { return ptrs_[i][x]; });
    tags_[slot] = y;
    return r;
  }

  const vnxiPyramidState& st_;
  const T* src_;
  int step_;
  vnxiSize roi_;
  std::int64_t n_;
  const typename ownLayerType<T>::Tap* taps_;
  std::int64_t* tags_;
  const I** ptrs_;
  I* rows_;
};

}  // namespace

namespace {

template <class T>
using ownTapOf = typename ownLayerType<T>::Tap;

// Taps 0..c of the caller's kernel normalised and mirrored into the state's kerSize
// taps; true when the right half differed from the mirrored left half.
template <class T>
bool ownLayerTaps(const ownTapOf<T>* k, int kerSize, ownTapOf<T>* t) {
  const int c = kerSize / 2;
  bool mirrored = true;
  for (int i = 1; i <= c; ++i) mirrored = mirrored && k[c - i] == k[c + i];
  if constexpr (std::is_same<T, vnx32f>::value) {
    float half = 0.0f;
    for (int i = 0; i < c; ++i) half += k[i];
    const float s = k[c] + 2.0f * half;
    for (int i = 0; i <= c; ++i) t[i] = std::fabs(s) > FLT_EPSILON ? k[i] / s : k[i];  // a zero sum: taps as given
  } else {
    std::int64_t s = k[c];
    for (int i = 0; i < c; ++i) s += 2 * std::int64_t{k[i]};
    for (int i = 0; i <= c; ++i) {
      // 14 fraction bits kept in 16, then halved: 13 fraction bits; a zero sum keeps the taps
      const double v = s == 0 ? 2.0 * k[i] : std::trunc(16384.0 * k[i] / static_cast<double>(s) + 0.5);
      const std::int64_t q = static_cast<std::int64_t>(std::fmin(std::fmax(v, -2147483648.0), 2147483647.0));
      t[i] = static_cast<vnx16s>(static_cast<vnx16s>(static_cast<std::uint16_t>(q & 0xFFFF)) >> 1);
    }
  }
  for (int i = 0; i < c; ++i) t[kerSize - 1 - i] = t[i];
  return !mirrored;
}

template <class T, int C>
vnxStatus ownLayerInitAlloc(vnxiPyramidState** pp, vnxiSize roi, float rate, const ownTapOf<T>* kernel, int kerSize,
                            int mode, ownLayerDir dir) {
  if (vnxStatus st = ownCheckPtrs({pp, kernel})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  if (mode != 2) return vnxStatusBadArg;
  if (!ownPyramidRateOk(rate) || kerSize < 3 || kerSize % 2 == 0) return vnxStatusBadArg;
  const int nSizes = dir == ownLayerDir::Down ? ownPyramidLevels(roi, rate) + 1 : 0;
  auto al = [](std::int64_t b) { return (b + 7) / 8 * 8; };
  const std::int64_t tapBytes = al(std::int64_t{kerSize} * std::int64_t{sizeof(ownTapOf<T>)});
  const std::int64_t bytes = al(sizeof(vnxiPyramidState)) + tapBytes + std::int64_t{nSizes} * std::int64_t{sizeof(vnxiSize)};
  char* block = bytes <= INT_MAX ? static_cast<char*>(ownMalloc_8u(static_cast<int>(bytes))) : nullptr;
  if (!block) return vnxStatusNoMemory;
  vnxiPyramidState* s = reinterpret_cast<vnxiPyramidState*>(block);
  *s = vnxiPyramidState{dir, ownTraits<T>::code, C, kerSize, mode, rate, roi,
                        block + al(sizeof(vnxiPyramidState)), nSizes, nullptr};
  s->sizes = reinterpret_cast<vnxiSize*>(block + al(sizeof(vnxiPyramidState)) + tapBytes);
  vnxiSize z = roi;
  for (int i = 0; i < nSizes; ++i, z = ownPyramidDownSize(z, rate)) s->sizes[i] = z;
  const bool asymmetric = ownLayerTaps<T>(kernel, kerSize, static_cast<ownTapOf<T>*>(s->taps));
  *pp = s;
  return asymmetric ? vnxStatusSymKernelExpected : vnxStatusOk;
}

// The destination a down step expects: the next entry of the state's size table when
// the source height is there, the down size of the source otherwise.
vnxiSize ownLayerDownExpected(const vnxiPyramidState& s, vnxiSize src) {
  for (int i = 0; i + 1 < s.nSizes; ++i)
    if (s.sizes[i].height == src.height) return s.sizes[i + 1];
  return ownPyramidDownSize(src, s.rate);
}

template <class T, int C>
vnxStatus ownLayerStep(const T* src, int srcStep, vnxiSize srcRoi, T* dst, int dstStep, vnxiSize dstRoi,
                       const vnxiPyramidState* s, ownLayerDir dir) {
  if (vnxStatus st = ownCheckPtrs({src, dst, s})) return st;
  if (vnxStatus st = ownCheckRoi(srcRoi)) return st;
  if (vnxStatus st = ownCheckSteps({ownImgWide<T, C>(srcStep, srcRoi.width), ownImgWide<T, C>(dstStep, dstRoi.width)}))
    return st;
  if (!ownPyramidRateOk(s->rate) || s->dir != dir || s->typeCode != ownTraits<T>::code || s->channels != C)
    return vnxStatusBadArg;
  if (dir == ownLayerDir::Down) {
    const vnxiSize e = ownLayerDownExpected(*s, srcRoi);
    if (dstRoi.width != e.width || dstRoi.height != e.height) return vnxStatusBadSize;
  } else {
    const ownUpRange w = ownPyramidUpRange(srcRoi.width, s->rate), h = ownPyramidUpRange(srcRoi.height, s->rate);
    if (dstRoi.width < w.lo || dstRoi.width > w.hi || dstRoi.height < h.lo || dstRoi.height > h.hi)
      return vnxStatusBadSize;
  }
  // the work area of this call: one slice a band, fewer bands when the allocator refuses
  const std::int64_t per = (ownLayerBand<T, C>::bytes(srcRoi.width, s->kerSize) + 31) / 32 * 32;
  auto take = [](std::int64_t b) { return b <= INT_MAX ? ownMalloc_8u(static_cast<int>(b)) : nullptr; };
  int bands = ownBandCount(dstRoi, kOwnBandsPyramid);
  void* raw = take(per * bands);
  if (!raw && bands > 1) raw = take(per * (bands = 1));
  ownBlock work(raw);
  if (!work) return vnxStatusNoMemory;
  ownRunBands(ownBandSplit{dstRoi.height, bands}, [&](int b, int j0, int j1) {
    ownLayerBand<T, C> band(*s, src, srcStep, srcRoi, static_cast<char*>(work.get()) + b * per);
    band.run(dst, dstStep, dstRoi, j0, j1);
  });
  return vnxStatusOk;
}

vnxStatus ownLayerFree(vnxiPyramidState* s) {
  if (!s) return vnxStatusNullPtr;
  ownFree(s);
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_8u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx8u, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx8u, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_8u_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_8u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx8u, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx8u, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_8u_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_16u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx16u, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx16u, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_16u_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_16u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx16u, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx16u, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_16u_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_32f_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx32f, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx32f, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_32f_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_32f_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx32f, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDown_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx32f, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Down);
}
VNX_API vnxStatus vnxiPyramidLayerDownFree_32f_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_8u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx8u, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx8u, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_8u_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_8u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx8u, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx8u, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_8u_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_16u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx16u, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx16u, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_16u_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_16u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx16u, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx16u, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_16u_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_32f_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx32f, 1>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx32f, 1>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_32f_C1R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }

VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_32f_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) noexcept {
  return ownLayerInitAlloc<vnx32f, 3>(ppState, srcRoi, rate, pKernel, kerSize, mode, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUp_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) noexcept {
  return ownLayerStep<vnx32f, 3>(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, pState, ownLayerDir::Up);
}
VNX_API vnxStatus vnxiPyramidLayerUpFree_32f_C3R(vnxiPyramidState* pState) noexcept { return ownLayerFree(pState); }
