// The core library: thread count and processor facts. The thread count is the
// only setting of the whole library; the processor facts are read once, since
// they cannot change while the process runs.
#include "vnxcore.h"

#include <unistd.h>

#include <cstdio>
#include <set>
#include <utility>

namespace {

constexpr vnxStatus kOk = 0;
constexpr vnxStatus kBadArg = -5;
constexpr vnxStatus kNullPtr = -8;

int ownOnlineProcessors() {
  long n = sysconf(_SC_NPROCESSORS_ONLN);
  return n >= 1 ? static_cast<int>(n) : 1;
}

int ownNumThreads = ownOnlineProcessors();

// Reads one integer from a sysfs file; -1 when it cannot.
long ownReadSysfsLong(const char* path) {
  FILE* f = std::fopen(path, "r");
  if (!f) return -1;
  long v = -1;
  char unit = 0;
  int got = std::fscanf(f, "%ld%c", &v, &unit);
  std::fclose(f);
  if (got < 1) return -1;
  if (got == 2 && (unit == 'K' || unit == 'k')) v *= 1024;
  if (got == 2 && (unit == 'M' || unit == 'm')) v *= 1024 * 1024;
  return v;
}

int ownLargestCache() {
  long best = 0;
#ifdef _SC_LEVEL1_DCACHE_SIZE
  const int names[] = {_SC_LEVEL1_DCACHE_SIZE, _SC_LEVEL2_CACHE_SIZE, _SC_LEVEL3_CACHE_SIZE,
                       _SC_LEVEL4_CACHE_SIZE};
  for (int name : names) {
    long v = sysconf(name);
    if (v > best) best = v;
  }
#endif
  // Some kernels leave sysconf at zero; the sysfs cache descriptions are the next source.
  for (int i = 0; best == 0 && i < 8; ++i) {
    char path[96];
    std::snprintf(path, sizeof path, "/sys/devices/system/cpu/cpu0/cache/index%d/size", i);
    long v = ownReadSysfsLong(path);
    if (v > best) best = v;
  }
  if (best <= 0) best = 1 << 20;  // nothing known: assume a modest 1 MiB cache
  return best > 0x7fffffffL ? 0x7fffffff : static_cast<int>(best);
}

int ownCoresOnDie() {
  // Distinct core ids that share cpu0's package; hyper-threads of one core count once.
  long pkg0 = ownReadSysfsLong("/sys/devices/system/cpu/cpu0/topology/physical_package_id");
  std::set<long> cores;
  for (int cpu = 0; cpu < 4096; ++cpu) {
    char path[96];
    std::snprintf(path, sizeof path, "/sys/devices/system/cpu/cpu%d/topology/core_id", cpu);
    long core = ownReadSysfsLong(path);
    if (core < 0) break;
    std::snprintf(path, sizeof path, "/sys/devices/system/cpu/cpu%d/topology/physical_package_id", cpu);
    if (ownReadSysfsLong(path) == pkg0) cores.insert(core);
  }
  return cores.empty() ? ownOnlineProcessors() : static_cast<int>(cores.size());
}

}  // namespace

extern "C" {

VNXCORE_API int threads_omp_of_n_vnx = ownNumThreads;

VNXCORE_API vnxStatus vnxGetNumThreads(int* pNumThreads) noexcept {
  if (!pNumThreads) return kNullPtr;
  *pNumThreads = ownNumThreads;
  return kOk;
}

VNXCORE_API vnxStatus vnxSetNumThreads(int numThreads) noexcept {
  if (numThreads < 1) return kBadArg;
  ownNumThreads = numThreads;
  threads_omp_of_n_vnx = numThreads;
  return kOk;
}

VNXCORE_API vnxStatus vnxGetMaxCacheSizeB(int* pSizeByte) noexcept {
  if (!pSizeByte) return kNullPtr;
  static const int size = ownLargestCache();
  *pSizeByte = size;
  return kOk;
}

VNXCORE_API int vnxGetNumCoresOnDie(void) noexcept {
  static const int cores = ownCoresOnDie();
  return cores;
}

}  // extern "C"
