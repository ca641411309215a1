#include "parallel.h"

int ownNumThreads() noexcept {
  int n = 1;
  vnxGetNumThreads(&n);  // its status is ignored: the value is used as written
  return n < 1 ? 1 : n;
}

int ownTeamSize() noexcept { return threads_omp_of_n_vnx; }

bool ownSingleCoreDie() noexcept { return vnxGetNumCoresOnDie() <= 1; }

int ownBandCount(vnxiSize roi, int cutoffPerThread, bool singleCoreTest) noexcept {
  const int n = ownNumThreads();
  const std::int64_t pixels = static_cast<std::int64_t>(roi.width) * roi.height;
  if (pixels < static_cast<std::int64_t>(n) * cutoffPerThread) return 1;
  if (singleCoreTest && ownSingleCoreDie()) return 1;
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
