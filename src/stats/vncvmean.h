// Band sums of the means and deviations, shared by the masked means
// (vncvmeanmask) and the means with deviations (vncvmeansdv).
#pragma once

#include <cstdint>
#include <type_traits>

#include "parallel.h"
#include "stats/vncvstatargs.h"
#include "stats/vncvstatrows.h"

// Which serial kernel sums a 32f image (they differ in the order of the additions only).
enum class ownSum32fKernel { Short, Aligned, General };

// One channel: below 5001 pixels the short kernel; from 100000 pixels, or with a
// source or step that is not a whole number of floats, or rows that do not all
// start at the same 16-byte phase, the general kernel; otherwise the aligned one.
// Channel of interest: below 5000 pixels the short kernel; the aligned one when
// the source is 16-byte aligned and its step a multiple of four floats; else the general.
inline ownSum32fKernel ownPickSum32fKernel(vnxiSize roi, const void* src, int srcStep, int channels) noexcept {
  const std::int64_t pixels = static_cast<std::int64_t>(roi.width) * roi.height;
  const std::uintptr_t p = reinterpret_cast<std::uintptr_t>(src);
  const bool stepOf4Floats = (srcStep / 4) % 4 == 0;
  if (channels == 1) {
    if (pixels < 5001) return ownSum32fKernel::Short;
    if (pixels >= 100000 || p % 4 != 0 || !stepOf4Floats) return ownSum32fKernel::General;
    return ownSum32fKernel::Aligned;
  }
  if (pixels < 5000) return ownSum32fKernel::Short;
  return (p % 16 == 0 && stepOf4Floats) ? ownSum32fKernel::Aligned : ownSum32fKernel::General;
}

// Sums and selected-sample count of one band.
template <class T>
struct ownMeanPart {
  ownSums<typename ownStatTraits<T>::Acc> sums;
  std::int64_t count;
};

template <int What, class T>
ownMeanPart<T> ownMeanBand(const ownStatArgs<T>& a, int y0, int y1, ownSum32fKernel kernel) {
  ownMeanPart<T> p{};
  if constexpr (sizeof(T) == 1) {
    if (!a.mask && a.channels == 1) {  // every byte of every row: sums kept in registers over the band
      ownByteSums<ownPlainSrc<T>> sums;
      for (int y = y0; y < y1; ++y) sums.row(ownPlainSrc<T>{a.row(y)}, a.roi.width);
      return {sums.total(), static_cast<std::int64_t>(a.roi.width) * (y1 - y0)};
    }
  }
  ownSampleRuns runs(a.layout());
  for (int y = y0; y < y1; ++y) {
    const T* s = a.row(y);
    if (a.mask) p.count += ownCountRow(runs.maskRow(y), a.roi.width);
    runs.row(y, [&](int off, const vnx8u* sel, int n) {
      if constexpr (std::is_same<T, vnx32f>::value) {
        if (kernel == ownSum32fKernel::Short)
          ownSumsRow<What>(ownPlainSrc32f<>{s + off}, sel, 0, n, p.sums);
        else if (kernel == ownSum32fKernel::Aligned)
          ownSumsRow_sse2<What>(ownPlainSrc32f<true>{s + off}, sel, n, p.sums);
        else
          ownSumsRow_sse2<What>(ownPlainSrc32f<>{s + off}, sel, n, p.sums);
      } else {
        ownSumsRow_sse2<What>(ownPlainSrc<T>{s + off}, sel, n, p.sums);
      }
    });
  }
  if (!a.mask) p.count = static_cast<std::int64_t>(a.roi.width) * (y1 - y0);
  return p;
}

// Totals of one call: the sum and sum of squares of the samples themselves, their
// count, and the bands they were taken in.
struct ownMeanTotals {
  double sum, sq;
  std::int64_t count;
  int bands;
};

// 8s lanes hold u = s + 128: undo the offset exactly (s^2 = u^2 - 256 u + 16384).
template <class T>
inline void ownSampleTotals(const ownMeanPart<T>& p, ownMeanTotals& t) {
  if constexpr (std::is_same<T, vnx8s>::value) {
    const std::int64_t s = static_cast<std::int64_t>(p.sums.sum), n = p.count;
    t.sum = static_cast<double>(s - 128 * n);
    t.sq = static_cast<double>(static_cast<std::int64_t>(p.sums.sq) - 256 * s + 16384 * n);
  } else {
    t.sum = static_cast<double>(p.sums.sum);
    t.sq = static_cast<double>(p.sums.sq);
  }
  t.count = p.count;
}

// Sums (What: kOwnSum, kOwnSq) over the bands of a policy, combined in band order. A
// serial unmasked 32f call sums with `serialKernel`, every other one with the general kernel.
template <int What, class T>
vnxStatus ownMeanSums(const ownStatArgs<T>& a, ownBandPolicy banding, ownSum32fKernel serialKernel,
                      ownMeanTotals& totals) {
  using Part = ownMeanPart<T>;
  totals.bands = ownBandCount(a.roi, banding);
  const ownSum32fKernel kernel = (totals.bands == 1 && !a.mask) ? serialKernel : ownSum32fKernel::General;
  Part total;
  if (vnxStatus st = ownReduceBands<Part>(
          a.roi.height, totals.bands, [&](int y0, int y1) { return ownMeanBand<What>(a, y0, y1, kernel); },
          [](Part& t, const Part& p) {
            t.sums.sum += p.sums.sum;
            t.sums.sq += p.sums.sq;
            t.count += p.count;
          },
          &total))
    return st;
  ownSampleTotals(total, totals);
  return vnxStatusOk;
}
