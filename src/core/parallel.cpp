#include "parallel.h"

int ownNumThreads() noexcept {
  int n = 1;
  vnxGetNumThreads(&n);  // its status is ignored: the value is used as written
  return n < 1 ? 1 : n;
}

int ownTeamSize() noexcept { return threads_omp_of_n_vnx; }

bool ownSingleCoreDie() noexcept { return vnxGetNumCoresOnDie() <= 1; }

int ownBandCount(vnxiSize roi, const ownBandPolicy& policy) noexcept {
  const int n = ownNumThreads();
  if (n <= 1) return 1;
  const std::int64_t pixels = static_cast<std::int64_t>(roi.width) * roi.height;
  if (pixels < policy.minPixels) return 1;
  if (pixels < static_cast<std::int64_t>(n) * policy.pixelsPerThread) return 1;
  if (static_cast<std::int64_t>(roi.height) < static_cast<std::int64_t>(n) * policy.rowsPerBand) return 1;
  if (roi.width < policy.minWidth) return 1;
  if (policy.coreTest == ownCoreTest::SerialOnSingleCore && ownSingleCoreDie()) return 1;
  return n;
}

bool ownFitsCache(vnxiSize roi, int bytesPerPixel) noexcept {
  int cache = 0;
  vnxGetMaxCacheSizeB(&cache);
  return static_cast<std::int64_t>(roi.width) * roi.height * bytesPerPixel < cache;
}

bool ownStreamOutput(std::int64_t bytesTouched) noexcept {
  int cache = 0;
  vnxGetMaxCacheSizeB(&cache);
  return bytesTouched > static_cast<std::int64_t>(cache) / 4 * 3;
}
