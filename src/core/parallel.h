// The parallel band frame. Every parallel operation:
//   1. asks ownBandCount how many bands its ROI gets (1 means serial: the ROI is
//      below the per-thread cut-off, or the die has one core where the operation
//      applies that test);
//   2. runs a plain serial band function of (band, y0, y1) over every band with
//      ownRunBands: rows t * (h / n) .. (t + 1) * (h / n) - 1, the last band also
//      taking the remainder rows;
//   3. for reductions, keeps one partial result a band and combines them on the
//      calling thread in band order 0, 1, ..., n - 1 (ownReduceBands), so the bits
//      never depend on scheduling.
// The split is fixed before the team forks and a team member t works through bands
// t, t + teamSize, ...: a smaller team than requested still covers every band with
// the same split. Inside an active parallel region, or with a team of one, the
// calling thread runs the bands itself, in order.
#pragma once

#include <omp.h>

#include <new>
#include <type_traits>

#include "alloc.h"

// Threads (bands) requested by the core library right now.
int ownNumThreads() noexcept;
// True when the die has a single core: operations that apply this test stay serial.
bool ownSingleCoreDie() noexcept;
// Team size requested for every region (mirrors the core library's variable).
int ownTeamSize() noexcept;

constexpr int kOwnCutoff128K = 1 << 17;  // pixels per thread below which a region stays serial
constexpr int kOwnCutoff64K = 1 << 16;

// Bands for an ROI: 1 when width * height < threads * cutoffPerThread, or when
// singleCoreTest is set and the die has one core; the thread count otherwise.
int ownBandCount(vnxiSize roi, int cutoffPerThread, bool singleCoreTest) noexcept;

// Rows of each band: the first n - 1 bands have height / n rows, the last band
// takes the remainder rows as well.
struct ownBandSplit {
  int height;
  int nBands;
  int begin(int band) const noexcept { return band * (height / nBands); }
  int end(int band) const noexcept { return band == nBands - 1 ? height : (band + 1) * (height / nBands); }
};

// Runs body(band, y0, y1) once for every band.
template <class Body>
void ownRunBands(ownBandSplit split, Body&& body) {
  const int team = ownTeamSize();
  if (split.nBands <= 1 || team <= 1 || omp_in_parallel()) {
    for (int b = 0; b < split.nBands; ++b) body(b, split.begin(b), split.end(b));
    return;
  }
#pragma omp parallel num_threads(team)
  {
    const int t = omp_get_thread_num();
    const int granted = omp_get_num_threads();
    for (int b = t; b < split.nBands; b += granted) body(b, split.begin(b), split.end(b));
  }
}

// Per-band partial results: up to 32 in the caller's frame, more from the scratch
// allocator. Check it before forking: a failed allocation means vnxStatusNoMemory.
template <class P>
class ownPartials {
  static_assert(std::is_trivially_copyable<P>::value && std::is_trivially_destructible<P>::value,
                "partials are plain records");

 public:
  explicit ownPartials(int n) noexcept
      : heap_(n > kLocal ? ownMalloc_64(static_cast<int>((sizeof(P) * n + 7) / 8)) : nullptr),
        data_(n > kLocal ? static_cast<P*>(heap_.get()) : reinterpret_cast<P*>(local_)) {}
  explicit operator bool() const noexcept { return data_ != nullptr; }
  P& operator[](int i) noexcept { return data_[i]; }

 private:
  static constexpr int kLocal = 32;
  alignas(P) unsigned char local_[kLocal * sizeof(P)];
  ownBlock heap_;
  P* data_;
};

// Reduction over bands: part = bandFn(y0, y1) for every band, then
// total = part[0], combine(total, part[1]), ..., combine(total, part[n - 1]).
template <class P, class BandFn, class Combine>
vnxStatus ownReduceBands(int height, int nBands, BandFn&& bandFn, Combine&& combine, P* total) {
  ownPartials<P> parts(nBands);
  if (!parts) return vnxStatusNoMemory;
  ownRunBands(ownBandSplit{height, nBands}, [&](int b, int y0, int y1) { parts[b] = bandFn(y0, y1); });
  *total = parts[0];
  for (int b = 1; b < nBands; ++b) combine(*total, parts[b]);
  return vnxStatusOk;
}

// Cache decision of the operations that write whole images: true when
// width * height * bytesPerPixel is below the largest cache (ordinary stores);
// false means the data will not stay cached and kernels use non-temporal stores.
bool ownFitsCache(vnxiSize roi, int bytesPerPixel) noexcept;

// Store decision of the streaming per-pixel operations: true when the bytes an
// operation reads and writes exceed three quarters of the largest cache. Such an
// output would not stay cached anyway (the cache is shared with the inputs and
// everything else), so it is written with non-temporal stores, which also spare
// the read-for-ownership of every destination line. The results are the same.
bool ownStreamOutput(std::int64_t bytesTouched) noexcept;
