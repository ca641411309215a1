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

// When a family runs in bands: one named policy a family, passed by name.
enum class ownCoreTest { Ignore, SerialOnSingleCore };
struct ownBandPolicy {
  std::int64_t pixelsPerThread;  // width * height below threads * this: serial (0: no pixel test)
  int rowsPerBand;               // fewer than this many rows a band: serial (1: no row test)
  int minWidth;                  // a narrower ROI stays serial (1: no width test)
  ownCoreTest coreTest;          // a die with one core keeps the operation serial
  std::int64_t minPixels = 0;    // width * height below this: serial, whatever the thread count
};

// Reductions: 128K pixels a thread (the masked means and extrema; the norms add the
// single-core test), 64K for the plain 8u mean and deviation.
constexpr ownBandPolicy kOwnBandsReduce{std::int64_t{1} << 17, 1, 1, ownCoreTest::Ignore};
constexpr ownBandPolicy kOwnBandsReduceCoreTest{std::int64_t{1} << 17, 1, 1, ownCoreTest::SerialOnSingleCore};
// Extrema with locations: a whole-image cut-off of 16384 pixels, one band a thread above it.
constexpr ownBandPolicy kOwnBandsExtrema{0, 1, 1, ownCoreTest::Ignore, std::int64_t{1} << 14};
constexpr ownBandPolicy kOwnBandsReduce64KCoreTest{std::int64_t{1} << 16, 1, 1, ownCoreTest::SerialOnSingleCore};
// Row pass of the separable pipeline: rows are independent, 32K pixels a thread pay a fork.
constexpr ownBandPolicy kOwnBandsRowPass{std::int64_t{1} << 15, 1, 1, ownCoreTest::Ignore};
// Fixed-kernel filters: each band refills its border ring, so bands need enough rows
// and a wide enough ROI to pay for the rows they synthesise twice.
constexpr ownBandPolicy kOwnBandsFixedFilter{0, 128, 256, ownCoreTest::SerialOnSingleCore};
constexpr ownBandPolicy kOwnBandsFixedLaplacian{0, 32, 256, ownCoreTest::SerialOnSingleCore};
constexpr ownBandPolicy kOwnBandsFixedScharr{0, 128, 1, ownCoreTest::SerialOnSingleCore};

// Bands for an ROI under a policy: 1 (serial) when the ROI is below the policy's pixel,
// row or width test, or when the die has one core and the policy tests it; the thread
// count otherwise. Inside an active parallel region the count stays the same (a
// reduction keeps its grouping) and ownRunBands runs the bands on the calling thread.
int ownBandCount(vnxiSize roi, const ownBandPolicy& policy) noexcept;

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

// ---- Distance transforms (distance) ----------------------------------------------
// The chamfer passes run in bands from two threads on for ROIs at least 65 wide and
// 64 high (integer weights also need a <= b; the caller tests that). Bands meet at
// seams that are repaired after each pass, so any band split gives the serial bits.
constexpr ownBandPolicy kOwnBandsDistance{0, 1, 65, ownCoreTest::Ignore};
constexpr int kOwnDistanceMinHeight = 64;
inline int ownDistanceBandCount(vnxiSize roi) noexcept {
  return roi.height < kOwnDistanceMinHeight ? 1 : ownBandCount(roi, kOwnBandsDistance);
}

// Edges and features. Canny's magnitude and suppression: each band recomputes the one
// magnitude row above and below it, so bands need rows enough to pay for two extra rows
// and the fork; 64K pixels a thread.
constexpr ownBandPolicy kOwnBandsCanny{std::int64_t{1} << 16, 32, 1, ownCoreTest::Ignore};
// Corner measures: each band refills a derivative ring and box sums of its own.
constexpr ownBandPolicy kOwnBandsCorners{std::int64_t{1} << 16, 32, 1, ownCoreTest::Ignore};


// ---- Morphology (dilation, erosion, rectangular minimum and maximum) ----------------
// Each band refills its own ring of source rows, so a band needs enough rows and the
// ROI enough pixels to pay for the fork and the rows synthesised twice.
constexpr ownBandPolicy kOwnBandsMorph{std::int64_t{1} << 14, 16, 1, ownCoreTest::Ignore};


// ---- Pyramids ----
// Pyramid steps and layer resampling: each band makes its own first work rows (two to
// four source rows again), so a band needs a few dozen rows to pay for them.
constexpr ownBandPolicy kOwnBandsPyramid{std::int64_t{1} << 16, 16, 1, ownCoreTest::SerialOnSingleCore};
// Optical flow: chunks of features; a feature costs as much as thousands of pixels.
constexpr ownBandPolicy kOwnBandsFlowFeatures{8, 1, 1, ownCoreTest::SerialOnSingleCore};

// Object detection (rectangle deviation of 32f tables, the 32f Haar stage): one
// thread for every 1024 pixels at most, n = min(threads, (W x H) >> 10); serial
// when n is below 2, otherwise at most 32 bands.
inline int ownBandCountPerKPixels(vnxiSize roi) noexcept {
  const std::int64_t byPixels = (static_cast<std::int64_t>(roi.width) * roi.height) >> 10;
  const std::int64_t n = byPixels < ownNumThreads() ? byPixels : ownNumThreads();
  if (n < 2) return 1;
  return n > 32 ? 32 : static_cast<int>(n);
}
