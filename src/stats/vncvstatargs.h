// The operands of one statistics call and how its rows are walked.
//
// Every layout (one channel, channel of interest, with or without a mask) is
// walked as runs of contiguous samples with an optional selection: one byte a
// sample, nonzero where the sample counts. One channel unmasked has no
// selection; one channel masked uses the mask row itself; C3C forms use a
// selection of three bytes a pixel with only the channel of interest set (from
// a fixed pattern, or from the mask). The row kernels therefore see one shape
// only: n samples and a selection that may be null.
#pragma once

#include <algorithm>
#include <cstring>

#include "check.h"
#include "simd.h"

constexpr int kOwnRunSamples = 16384;  // one-channel run: bounds the 32-bit lane sums
constexpr int kOwnRunPixels = 1024;    // three-channel run: 3072 samples of selection scratch

// Where the samples of one call lie and which of them count.
struct ownStatLayout {
  int width;          // pixels a row
  int channels;       // 1 or 3
  int coi;            // sample of interest within a three-sample pixel, 0-based
  const vnx8u* mask;  // null: every pixel counts
  int maskStep;
};

// The operands of one statistics call, built by name: plain (one channel),
// channel (channel of interest), masked, maskedChannel. coi is 1-based as passed
// and is read only after the checks have accepted it.
template <class T>
struct ownStatArgs {
  using Elem = T;
  const T* src;
  int srcStep;
  const vnx8u* mask;  // null for the unmasked forms
  int maskStep;
  vnxiSize roi;
  int channels;
  int coi;
  ownMaskForm form;  // a masked form requires its mask pointer

  static ownStatArgs plain(const T* src, int step, vnxiSize roi) {
    return {src, step, nullptr, 0, roi, 1, 1, ownMaskForm::Unmasked};
  }
  static ownStatArgs channel(const T* src, int step, vnxiSize roi, int coi) {
    return {src, step, nullptr, 0, roi, 3, coi, ownMaskForm::Unmasked};
  }
  static ownStatArgs masked(const T* src, int step, const vnx8u* mask, int maskStep, vnxiSize roi) {
    return {src, step, mask, maskStep, roi, 1, 1, ownMaskForm::Masked};
  }
  static ownStatArgs maskedChannel(const T* src, int step, const vnx8u* mask, int maskStep, vnxiSize roi, int coi) {
    return {src, step, mask, maskStep, roi, 3, coi, ownMaskForm::Masked};
  }

  // The checks of the means, deviations and extrema, with the result pointers the operation requires.
  vnxStatus check(std::initializer_list<const void*> results = {}) const {
    return ownCheckStat<T>(roi, src, srcStep, form, mask, maskStep, channels, coi, results);
  }
  // Sample of interest within a pixel, 0-based; 0 for one channel (never coi - 1 of an unchecked coi).
  int sampleOfInterest() const { return channels == 3 && coi >= 1 && coi <= 3 ? coi - 1 : 0; }
  ownStatLayout layout() const { return {roi.width, channels, sampleOfInterest(), mask, maskStep}; }
  // Row y of the source, at the first sample walked (the channel of interest sits in the selection).
  const T* row(int y) const { return ownRow(src, srcStep, y); }
};

// Row walker of one band: row(y, run) calls run(offset, sel, n) for consecutive
// runs of n samples starting at sample `offset` of row y, with their selection.
class ownSampleRuns {
 public:
  explicit ownSampleRuns(const ownStatLayout& L) : L_(L) {
    if (L_.channels == 3 && !L_.mask) {
      std::memset(pattern_, 0, sizeof pattern_);
      for (int i = 0; i < kOwnRunPixels; ++i) pattern_[3 * i + L_.coi] = 1;
    }
  }
  const vnx8u* maskRow(int y) const { return L_.mask ? ownRow(L_.mask, L_.maskStep, y) : nullptr; }
  template <class Run>
  void row(int y, Run&& run) {
    const vnx8u* m = maskRow(y);
    if (L_.channels == 1) {
      for (int x = 0; x < L_.width; x += kOwnRunSamples)
        run(x, m ? m + x : nullptr, std::min(kOwnRunSamples, L_.width - x));
      return;
    }
    for (int x = 0; x < L_.width; x += kOwnRunPixels) {
      const int n = std::min(kOwnRunPixels, L_.width - x);
      const vnx8u* sel = pattern_;
      if (m) {
        std::memset(scratch_, 0, 3 * static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) scratch_[3 * i + L_.coi] = m[x + i];
        sel = scratch_;
      }
      run(3 * x, sel, 3 * n);
    }
  }

 private:
  ownStatLayout L_;
  alignas(16) vnx8u pattern_[3 * kOwnRunPixels];
  alignas(16) vnx8u scratch_[3 * kOwnRunPixels];
};

// Number of nonzero mask bytes in one row.
inline int ownCountRow(const vnx8u* m, int n) {
  __m128i acc = ownZeroLanes();
  int x = 0;
  for (; x + 16 <= n; x += 16) acc = ownAddU64(acc, ownCountNonzeroBytes(ownLoad(m + x)));
  int c = static_cast<int>(ownSumLanesU64(acc));
  for (; x < n; ++x) c += m[x] != 0;
  return c;
}
