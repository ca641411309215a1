// Band kernels of the extrema with locations (vncvminmaxindx): each band reports
// its smallest and largest selected values and the first row holding each.
#pragma once

#include <algorithm>
#include <cfloat>
#include <type_traits>

#include "stats/vncvstatargs.h"
#include "stats/vncvstatrows.h"

template <class T>
using ownExtVal = typename ownStatTraits<T>::Extreme;

template <class T>
struct ownExtremaPart {
  ownExtVal<T> mn, mx;
  int mnRow, mxRow;
  bool any;  // some pixel selected
};

// Start values: the type's greatest and least values (8s as offset lanes).
template <class T>
constexpr ownExtVal<T> ownExtTop() {
  if constexpr (std::is_same<T, vnx32f>::value)
    return FLT_MAX;
  else
    return ownPlainSrc<T>::Lanes::kTop;
}
template <class T>
constexpr ownExtVal<T> ownExtBottom() {
  if constexpr (std::is_same<T, vnx32f>::value)
    return -FLT_MAX;
  else
    return 0;
}

// Any layout: each row's extrema through the row kernel; only a strictly better
// row moves a location, so the first row holding each extreme stays.
template <class T>
ownExtremaPart<T> ownExtremaBand(const ownStatArgs<T>& a, int y0, int y1) {
  ownExtremaPart<T> p{ownExtTop<T>(), ownExtBottom<T>(), 0, 0, !a.mask};
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s = a.row(y);
    if (a.mask && !p.any) p.any = ownCountRow(runs.maskRow(y), a.roi.width) > 0;
    ownExtVal<T> mn = ownExtTop<T>(), mx = ownExtBottom<T>();
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      ownMinMaxRow_sse2(typename ownSrcOf<T>::Plain{s + off}, sel, n, mn, mx);
    });
    if (mn < p.mn) p.mn = mn, p.mnRow = y;
    if (mx > p.mx) p.mx = mx, p.mxRow = y;
  }
  return p;
}

// One-channel integer rows without a mask: each row runs through vector minima and
// maxima only (64 bytes a step, two running values of each), and is reduced to
// scalars only when some lane is strictly beyond the band's extreme so far, which
// after the first rows is rare; equal values never move the recorded row.
template <class T>
ownExtremaPart<T> ownPlainExtremaBand(const ownStatArgs<T>& a, int y0, int y1) {
  using Src = ownPlainSrc<T>;
  using L = typename Src::Lanes;
  constexpr int kStep = 4 * L::kPerVec;
  const int w = a.roi.width;
  ownExtremaPart<T> p{L::kTop, 0, 0, 0, true};
  __m128i curMin = L::splat(p.mn), curMax = L::splat(p.mx);
  for (int y = y0; y < y1; ++y) {
    const Src src{a.row(y)};
    __m128i lo0 = L::splat(L::kTop), lo1 = lo0, hi0 = ownZeroLanes(), hi1 = hi0;
    int x = 0;
    for (; x + kStep <= w; x += kStep) {
      const __m128i v0 = src.vec(x), v1 = src.vec(x + L::kPerVec);
      const __m128i v2 = src.vec(x + 2 * L::kPerVec), v3 = src.vec(x + 3 * L::kPerVec);
      lo0 = L::min(lo0, L::min(v0, v1));
      lo1 = L::min(lo1, L::min(v2, v3));
      hi0 = L::max(hi0, L::max(v0, v1));
      hi1 = L::max(hi1, L::max(v2, v3));
    }
    for (; x + L::kPerVec <= w; x += L::kPerVec) {
      const __m128i v = src.vec(x);
      lo0 = L::min(lo0, v);
      hi0 = L::max(hi0, v);
    }
    lo0 = L::min(lo0, lo1);
    hi0 = L::max(hi0, hi1);
    unsigned tailMin = L::kTop, tailMax = 0;
    ownMinMaxRow(src, nullptr, x, w, tailMin, tailMax);
    // a lane below the minimum so far leaves min(lane, minimum) unequal to the minimum
    if (!ownSameBytes(L::min(lo0, curMin), curMin) || tailMin < p.mn) {
      const unsigned m = std::min(L::hmin(lo0), tailMin);
      if (m < p.mn) p.mn = m, p.mnRow = y, curMin = L::splat(m);
    }
    if (!ownSameBytes(L::max(hi0, curMax), curMax) || tailMax > p.mx) {
      const unsigned m = std::max(L::hmax(hi0), tailMax);
      if (m > p.mx) p.mx = m, p.mxRow = y, curMax = L::splat(m);
    }
  }
  return p;
}
