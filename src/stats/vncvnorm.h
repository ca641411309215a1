// The masked norms of an image, a difference and a relative difference
// (vncvnorminf, vncvnorml1, vncvnorml2 and their Diff and Rel units).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "parallel.h"
#include "stats/vncvstatargs.h"
#include "stats/vncvstatrows.h"

enum class ownNormKind { Inf, L1, L2 };
enum class ownNormOf { Image, Diff, Rel };  // vnxiNorm_, vnxiNormDiff_, vnxiNormRel_

// How one norm member runs: its bands, and whether its sums are exact or, for
// vnxiNormRel_L1_8u_C1MR, 32-bit signed sums that wrap above 2147483647 taken serially.
enum class ownNormSums { Exact, SerialWrap32 };
struct ownNormMode {
  ownBandPolicy banding;
  ownNormSums sums;
};
// Every norm: serial below threads * 131072 pixels and on a single-core die.
constexpr ownNormMode kOwnNormBanded{kOwnBandsReduceCoreTest, ownNormSums::Exact};
constexpr ownNormMode kOwnNormSerialWrap32{kOwnBandsReduceCoreTest, ownNormSums::SerialWrap32};

// The second source of a difference or relative norm.
template <class T>
struct ownSecondSource {
  const T* src;
  int step;
};

// Accumulated norm of a band: num for |s| or |s1 - s2|, den for |s2| (relative norms).
template <class T>
struct ownNormPart {
  using Acc = typename ownStatTraits<T>::Acc;
  Acc num, den;
};

// Adds one run of a source to a norm accumulator.
template <ownNormKind K, class Src, class Acc>
inline void ownNormRun(const Src& src, const vnx8u* sel, int n, Acc& acc) {
  if constexpr (K == ownNormKind::Inf) {
    using V = decltype(src.at(0));
    acc = ownMaxRow_sse2(src, sel, n, static_cast<V>(acc));
  } else if constexpr (K == ownNormKind::L1) {
    ownSums<Acc> s{acc, 0};
    ownSumsRow_sse2<kOwnSum>(src, sel, n, s);
    acc = s.sum;
  } else {
    ownSums<Acc> s{0, acc};
    ownSumsRow_sse2<kOwnSq>(src, sel, n, s);
    acc = s.sq;
  }
}

template <ownNormKind K, ownNormOf Of, class T>
ownNormPart<T> ownNormBand(const ownStatArgs<T>& a, ownSecondSource<T> b, int y0, int y1) {
  using Src = ownSrcOf<T>;
  ownNormPart<T> p{};
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s1 = a.row(y);
    const T* s2 = Of == ownNormOf::Image ? nullptr : ownRow(b.src, b.step, y);
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      if constexpr (Of == ownNormOf::Image) {
        ownNormRun<K>(typename Src::Abs{s1 + off}, sel, n, p.num);
      } else {
        ownNormRun<K>(typename Src::AbsDiff{s1 + off, s2 + off}, sel, n, p.num);
        if (Of == ownNormOf::Rel) ownNormRun<K>(typename Src::Abs{s2 + off}, sel, n, p.den);
      }
    });
  }
  return p;
}

// Result of a relative norm; a zero denominator gives +inf, -inf or the quiet NaN
// with the sign bit set, and the warning.
inline vnxStatus ownRelResult(double num, double den, ownNormKind kind, vnx64f* pNorm) {
  if (den != 0.0) {
    *pNorm = ownCanonicalNaN(kind == ownNormKind::L2 ? std::sqrt(num / den) : num / den);
    return vnxStatusOk;
  }
  if (num > 0)
    *pNorm = std::numeric_limits<double>::infinity();
  else if (num < 0)
    *pNorm = -std::numeric_limits<double>::infinity();
  else
    *pNorm = ownCanonicalNaN(std::numeric_limits<double>::quiet_NaN());
  return vnxStatusDivByZero;
}

// Every masked norm; b is the second source of the Diff and Rel forms.
template <ownNormKind K, ownNormOf Of, class T>
vnxStatus ownNorm(const ownStatArgs<T>& a, ownSecondSource<T> b, vnx64f* pNorm, ownNormMode mode) {
  const vnxStatus st =
      Of == ownNormOf::Image
          ? ownCheckMaskedNorm<T>(a.roi, {{a.src, a.srcStep}}, a.mask, a.maskStep, pNorm, a.channels, a.coi)
          : ownCheckMaskedNorm<T>(a.roi, {{a.src, a.srcStep}, {b.src, b.step}}, a.mask, a.maskStep, pNorm,
                                  a.channels, a.coi);
  if (st) return st;
  using Part = ownNormPart<T>;
  const int nBands = mode.sums == ownNormSums::SerialWrap32 ? 1 : ownBandCount(a.roi, mode.banding);
  Part t;
  if (vnxStatus rs = ownReduceBands<Part>(
          a.roi.height, nBands, [&](int y0, int y1) { return ownNormBand<K, Of>(a, b, y0, y1); },
          [](Part& cur, const Part& p) {
            if (K == ownNormKind::Inf) {
              cur.num = std::max(cur.num, p.num);
              cur.den = std::max(cur.den, p.den);
            } else {
              cur.num += p.num;
              cur.den += p.den;
            }
          },
          &t))
    return rs;
  double num = static_cast<double>(t.num), den = static_cast<double>(t.den);
  if (mode.sums == ownNormSums::SerialWrap32) {
    num = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(t.num)));
    den = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(t.den)));
  }
  if (Of == ownNormOf::Rel) return ownRelResult(num, den, K, pNorm);
  *pNorm = ownCanonicalNaN(K == ownNormKind::L2 ? std::sqrt(num) : num);
  return vnxStatusOk;
}
// The norm of one image.
template <ownNormKind K, class T>
vnxStatus ownNormOfImage(const ownStatArgs<T>& a, vnx64f* pNorm) {
  return ownNorm<K, ownNormOf::Image>(a, ownSecondSource<T>{nullptr, 0}, pNorm, kOwnNormBanded);
}
