// One Haar stage at every masked position of a ROI: each feature adds val1 or
// val2 to the stage sum by comparing its weighted rectangle sums with
// threshold x norm; positions whose sum stays below the stage threshold are
// cleared in the mask, the others are counted.
#include <cstring>

#include "alloc.h"
#include "check.h"
#include "haar.h"
#include "parallel.h"
#include "simd.h"

namespace {

// Element offsets of the four corners of every rectangle, in storage order, for
// the table each feature reads (the tilted one in the mixed members).
struct ownHaarTable {
  const void* base;
  int elems;  // row step in elements
};

template <class W>
void ownHaarOffsets(const ownHaarState<W>& st, ownHaarTable upright, ownHaarTable tilted, bool mixed, int* off) {
  for (int i = 0; i < st.nFeatures; ++i) {
    const ownHaarFeature<W>& f = st.feature[i];
    const bool useTilted = mixed && (f.tag & 1);
    const ownHaarTable& t = useTilted ? tilted : upright;
    for (int k = 0; k < f.nRects; ++k)
      for (int c = 0; c < 4; ++c)
        *off++ = f.rect[k].corner[c][1] * t.elems + f.rect[k].corner[c][0];
  }
}

// Rectangle sums: (I[c0] - I[c1]) + (I[c3] - I[c2]), wrapping for 32s tables,
// in single precision for 32f ones.
inline vnx32s ownRectSum(const vnx32s* p, const int* o) {
  return static_cast<vnx32s>((static_cast<std::uint32_t>(p[o[0]]) - static_cast<std::uint32_t>(p[o[1]])) +
                             (static_cast<std::uint32_t>(p[o[3]]) - static_cast<std::uint32_t>(p[o[2]])));
}
inline vnx32f ownRectSum(const vnx32f* p, const int* o) { return (p[o[0]] - p[o[1]]) + (p[o[3]] - p[o[2]]); }

// The stage sum at one position. T is the table element, W the state's values;
// base[0] is the upright table at the position, base[1] the tilted one.
template <class T, class W>
W ownStageSum(const ownHaarState<W>& st, const T* const base[2], const int* off, W norm) {
  W s = 0;
  for (int i = 0; i < st.nFeatures; ++i) {
    const ownHaarFeature<W>& f = st.feature[i];
    const T* p = base[f.tag & 1];
    if constexpr (std::is_same<W, vnx32s>::value) {
      std::uint32_t sum = 0;
      for (int k = 0; k < f.nRects; ++k, off += 4)
        sum += static_cast<std::uint32_t>(ownRectSum(p, off)) * static_cast<std::uint32_t>(f.rect[k].weight);
      const bool low = static_cast<vnx32s>(sum) < static_cast<vnx32s>(static_cast<std::uint32_t>(f.threshold) *
                                                                      static_cast<std::uint32_t>(norm));
      s = static_cast<vnx32s>(static_cast<std::uint32_t>(s) + static_cast<std::uint32_t>(low ? f.val1 : f.val2));
    } else {
      float sum = 0.0f;
      for (int k = 0; k < f.nRects; ++k, off += 4) sum += static_cast<float>(ownRectSum(p, off)) * f.rect[k].weight;
      s += (sum >= f.threshold * norm) ? f.val2 : f.val1;
    }
  }
  return s;
}

// Four adjacent positions in the lanes: a corner of positions x .. x+3 is four
// consecutive table entries, so one unaligned load fetches it for all four. Lane k
// repeats the scalar operations of position x+k in their order.
inline __m128 ownRectSum4(const vnx32s* p, const int* o) {
  return _mm_cvtepi32_ps(_mm_add_epi32(_mm_sub_epi32(ownLoad(p + o[0]), ownLoad(p + o[1])),
                                       _mm_sub_epi32(ownLoad(p + o[3]), ownLoad(p + o[2]))));
}
inline __m128 ownRectSum4(const vnx32f* p, const int* o) {
  return _mm_add_ps(_mm_sub_ps(ownLoadPs(p + o[0]), ownLoadPs(p + o[1])),
                    _mm_sub_ps(ownLoadPs(p + o[3]), ownLoadPs(p + o[2])));
}

// Stage sums of four adjacent positions, or of eight (two vectors sharing the
// walk over the features, for when both groups of four hold candidates).
template <int kVectors, class T>
void ownStageSums_sse2(const ownHaarState<vnx32f>& st, const T* const base[2], const int* off, const vnx32f* norm,
                       __m128 out[kVectors]) {
  __m128 s[kVectors], n[kVectors];
  for (int v = 0; v < kVectors; ++v) s[v] = _mm_setzero_ps(), n[v] = ownLoadPs(norm + 4 * v);
  for (int i = 0; i < st.nFeatures; ++i) {
    const ownHaarFeature<vnx32f>& f = st.feature[i];
    const T* p = base[f.tag & 1];
    __m128 sum[kVectors];
    for (int v = 0; v < kVectors; ++v) sum[v] = _mm_setzero_ps();
    for (int k = 0; k < f.nRects; ++k, off += 4) {
      const __m128 weight = ownSplatPs(f.rect[k].weight);
      for (int v = 0; v < kVectors; ++v) sum[v] = _mm_add_ps(sum[v], _mm_mul_ps(ownRectSum4(p + 4 * v, off), weight));
    }
    const __m128 th = ownSplatPs(f.threshold), v1 = ownSplatPs(f.val1), v2 = ownSplatPs(f.val2);
    for (int v = 0; v < kVectors; ++v)
      s[v] = _mm_add_ps(s[v], ownSelect(_mm_cmpge_ps(sum[v], _mm_mul_ps(th, n[v])), v2, v1));
  }
  for (int v = 0; v < kVectors; ++v) out[v] = s[v];
}

// Four mask bytes as one word: zero when no position of the group is a candidate.
inline std::uint32_t ownMask4(const vnx8u* m) {
  std::uint32_t v;
  std::memcpy(&v, m, 4);
  return v;
}

// Clears a failing position, counts a passing one.
inline void ownHaarVerdict(vnx8u& mask, bool fails, int& positive) {
  if (fails)
    mask = 0;
  else
    ++positive;
}

}  // namespace

struct ownHaarArgs {
  const void* src;
  int srcStep;
  const void* tilt;  // row 1, column 1 of the tilted table, or src
  int tiltStep;
  const void* norm;
  int normStep;
  vnx8u* mask;
  int maskStep;
  int width;
};

// Rows y0 .. y1 - 1; returns the positions that passed. Stages of 32f values run
// four positions at a time wherever one of the four is a candidate, eight when the
// next four hold one too (the windows of all of them are read, only candidates
// change), then the rest of the row one position at a time; integer stages run one
// position at a time.
template <class T, class W>
int ownHaarBand(const ownHaarState<W>& st, const ownHaarArgs& a, const int* off, W threshold, int y0, int y1) {
  int positive = 0;
  for (int y = y0; y < y1; ++y) {
    const T* up = ownRow(static_cast<const T*>(a.src), a.srcStep, y);
    const T* tilt = ownRow(static_cast<const T*>(a.tilt), a.tiltStep, y);
    const W* norm = ownRow(static_cast<const W*>(a.norm), a.normStep, y);
    vnx8u* mask = ownRow(a.mask, a.maskStep, y);
    int x = 0;
    if constexpr (std::is_same<W, vnx32f>::value) {
      const __m128 stage = ownSplatPs(threshold);
      for (; x + 4 <= a.width; x += 4) {
        const std::uint32_t here = ownMask4(mask + x), next = x + 8 <= a.width ? ownMask4(mask + x + 4) : 0;
        if (!here) continue;
        const T* base[2] = {up + x, tilt + x};
        __m128 sums[2];
        const int groups = next ? 2 : 1;
        if (next)
          ownStageSums_sse2<2>(st, base, off, norm + x, sums);
        else
          ownStageSums_sse2<1>(st, base, off, norm + x, sums);
        for (int g = 0; g < groups; ++g) {
          const int fails = _mm_movemask_ps(_mm_cmplt_ps(sums[g], stage));
          for (int k = 0; k < 4; ++k)
            if (mask[x + 4 * g + k]) ownHaarVerdict(mask[x + 4 * g + k], (fails >> k) & 1, positive);
        }
        x += 4 * (groups - 1);
      }
    }
    for (; x < a.width; ++x) {
      if (!mask[x]) continue;
      const T* base[2] = {up + x, tilt + x};
      ownHaarVerdict(mask[x], ownStageSum<T, W>(st, base, off, norm[x]) < threshold, positive);
    }
  }
  return positive;
}

namespace {

enum class ownHaarRun { Serial, Bands };

template <class T, class W>
vnxStatus ownHaarApply(const T* pSrc, int srcStep, const T* pTilt, int tiltStep, const W* pNorm, int normStep,
                       vnx8u* pMask, int maskStep, vnxiSize roi, int* pPositive, W threshold,
                       const ownHaarState<W>* st, bool mixed, ownHaarRun run) {
  if (vnxStatus s = ownCheckPtrs({pSrc, pNorm, pMask, pPositive, st})) return s;
  if (mixed && !pTilt) return vnxStatusNullPtr;
  if (vnxStatus s = ownCheckRoi(roi)) return s;
  const ownStep up = ownImg<T>(srcStep, roi.width), norm = ownImg<W>(normStep, roi.width),
                tilt = ownImg<T>(tiltStep, roi.width), mask = ownImg<vnx8u>(maskStep, roi.width);
  if (vnxStatus s = mixed ? ownCheckSteps({up, norm, tilt, mask}) : ownCheckSteps({up, norm, mask})) return s;
  // The tilted table is read from its row 1, column 1; offsets of the tilted
  // features then count in its own row step.
  const T* tiltOrigin = mixed ? ownRow(pTilt, tiltStep, 1) + 1 : pSrc;
  if (!mixed) tiltStep = srcStep;
  ownBlock offsets(st->nOffsetRects > 0 ? ownMalloc_32(4 * st->nOffsetRects) : nullptr);
  if (st->nOffsetRects > 0 && !offsets) return vnxStatusNoMemory;
  int* off = static_cast<int*>(offsets.get());
  ownHaarOffsets(*st, {pSrc, srcStep / 4}, {tiltOrigin, tiltStep / 4}, mixed, off);
  const ownHaarArgs args{pSrc, srcStep, tiltOrigin, tiltStep, pNorm, normStep, pMask, maskStep, roi.width};
  int total = 0;
  const int nBands = run == ownHaarRun::Bands ? ownBandCountPerKPixels(roi) : 1;
  if (vnxStatus s = ownReduceBands<int>(
          roi.height, nBands, [&](int y0, int y1) { return ownHaarBand<T, W>(*st, args, off, threshold, y0, y1); },
          [](int& t, int p) { t += p; }, &total))
    return s;
  *pPositive = total;
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiApplyHaarClassifier_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx32f* pNorm, int normStep,
                                                 vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                 vnx32f threshold, const vnxiHaarClassifier_32f* pState) noexcept {
  return ownHaarApply<vnx32f, vnx32f>(pSrc, srcStep, nullptr, 0, pNorm, normStep, pMask, maskStep, roiSize, pPositive,
                                      threshold, pState, false, ownHaarRun::Bands);
}
VNX_API vnxStatus vnxiApplyHaarClassifier_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx32f* pNorm,
                                                    int normStep, vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                                    int* pPositive, vnx32f threshold,
                                                    const vnxiHaarClassifier_32f* pState) noexcept {
  return ownHaarApply<vnx32s, vnx32f>(pSrc, srcStep, nullptr, 0, pNorm, normStep, pMask, maskStep, roiSize, pPositive,
                                      threshold, pState, false, ownHaarRun::Serial);
}
VNX_API vnxStatus vnxiApplyHaarClassifier_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pNorm,
                                                    int normStep, vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                                    int* pPositive, vnx32s threshold,
                                                    const vnxiHaarClassifier_32s* pState, int scaleFactor) noexcept {
  (void)scaleFactor;  // accepted and not used: the stage works in integers throughout
  return ownHaarApply<vnx32s, vnx32s>(pSrc, srcStep, nullptr, 0, pNorm, normStep, pMask, maskStep, roiSize, pPositive,
                                      threshold, pState, false, ownHaarRun::Serial);
}
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx32f* pTilt,
                                                      int tiltStep, const vnx32f* pNorm, int normStep, vnx8u* pMask,
                                                      int maskStep, vnxiSize roiSize, int* pPositive,
                                                      vnx32f threshold,
                                                      const vnxiHaarClassifier_32f* pState) noexcept {
  return ownHaarApply<vnx32f, vnx32f>(pSrc, srcStep, pTilt, tiltStep, pNorm, normStep, pMask, maskStep, roiSize,
                                      pPositive, threshold, pState, true, ownHaarRun::Serial);
}
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx32s* pTilt,
                                                         int tiltStep, const vnx32f* pNorm, int normStep,
                                                         vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                         vnx32f threshold,
                                                         const vnxiHaarClassifier_32f* pState) noexcept {
  return ownHaarApply<vnx32s, vnx32f>(pSrc, srcStep, pTilt, tiltStep, pNorm, normStep, pMask, maskStep, roiSize,
                                      pPositive, threshold, pState, true, ownHaarRun::Serial);
}
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pTilt,
                                                         int tiltStep, const vnx32s* pNorm, int normStep,
                                                         vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                         vnx32s threshold, const vnxiHaarClassifier_32s* pState,
                                                         int scaleFactor) noexcept {
  (void)scaleFactor;
  return ownHaarApply<vnx32s, vnx32s>(pSrc, srcStep, pTilt, tiltStep, pNorm, normStep, pMask, maskStep, roiSize,
                                      pPositive, threshold, pState, true, ownHaarRun::Serial);
}
