// The call frame, the band split, the parallel runner, partial results and the
// scratch allocator.
#include <atomic>
#include <cstdint>
#include <vector>

#include "alloc.h"
#include "check.h"
#include "parallel.h"
#include "support.h"

namespace {

TEST(Version, RecordIsConstantAndNamesThisBuild) {
  const vnxLibraryVersion* v = vnxcvGetLibVersion();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v, vnxcvGetLibVersion());
  EXPECT_EQ((std::vector<int>{v->major, v->minor, v->majorBuild, v->build}), (std::vector<int>{5, 2, 108, 398}));
  EXPECT_EQ(std::memcmp(v->targetCpu, "t7\0\0", 4), 0);
  EXPECT_STREQ(v->name, "vnxcvt7-5.2.dll");
  EXPECT_STREQ(v->version, "5.2");
  EXPECT_STREQ(v->buildDate, "Jul 11 2007");
}

// One constant text per code of the status table; every other value is unknown.
TEST(StatusText, EveryCodeHasItsOwnTextAndOtherValuesAreUnknown) {
  const struct { vnxStatus code; const char* text; } table[] = {
      {0, "No error"}, {6, "Warning: the denominator of a relative norm is zero"},
      {12, "Warning: the buffer size exceeds 2147483647 bytes"}, {33, "Warning: more lines qualified than the caller can take"},
      {38, "Warning: the kernel is not symmetric; its left half was mirrored"},
      {-2, "The line walker could not be set up for the two end points"}, {-5, "A parameter is outside its allowed set or range"},
      {-6, "A size is below its minimum or too large"}, {-8, "A required pointer is null"},
      {-9, "Not enough memory for a state or work buffer"}, {-11, "A point or value is out of range"},
      {-12, "The element type is not supported"}, {-14, "A row step is smaller than its row's bytes"},
      {-33, "The mask size is neither 3x3 nor 5x5"}, {-34, "The anchor lies outside the mask"},
      {-52, "The channel of interest is not 1, 2 or 3"}, {-53, "The channel count is neither 1 nor 3"},
      {-56, "A distance metric is not positive"}, {-108, "A row step is not a multiple of the element size"},
      {-9999, "The mode is not supported"}};
  for (const auto& row : table) {
    EXPECT_STREQ(vnxcvGetStatusString(row.code), row.text) << row.code;
    EXPECT_EQ(vnxcvGetStatusString(row.code), vnxcvGetStatusString(row.code));  // constant, not rebuilt
  }
  for (vnxStatus unknown : {1, -1, -7, 7, -107, -10000, INT32_MIN, INT32_MAX})
    EXPECT_STREQ(vnxcvGetStatusString(unknown), "Unknown status code") << unknown;
}

// A thread count below one is refused and changes nothing; the queries answer plausibly.
TEST(Core, ThreadCountBelowOneIsRefusedAndQueriesAnswer) {
  vt::Threads guard(3);
  EXPECT_EQ(vnxSetNumThreads(0), vnxStatusBadArg);
  EXPECT_EQ(vnxSetNumThreads(-4), vnxStatusBadArg);
  int n = 0;
  ASSERT_EQ(vnxGetNumThreads(&n), vnxStatusOk);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(threads_omp_of_n_vnx, 3);
  EXPECT_EQ(vnxSetNumThreads(5), vnxStatusOk);
  EXPECT_EQ(threads_omp_of_n_vnx, 5);
  EXPECT_EQ(vnxGetNumThreads(nullptr), vnxStatusNullPtr);
  EXPECT_EQ(vnxGetMaxCacheSizeB(nullptr), vnxStatusNullPtr);
  int cache = 0;
  ASSERT_EQ(vnxGetMaxCacheSizeB(&cache), vnxStatusOk);
  EXPECT_GE(cache, 16 * 1024);
  EXPECT_GE(vnxGetNumCoresOnDie(), 1);
}

// ---- check order -----------------------------------------------------------

struct StepCase { const char* what; std::vector<ownStep> steps; vnxStatus expected; };

TEST(CheckOrder, RowBytesBeforeMultiplesWithinAGroup) {
  const int w = 10;
  const StepCase cases[] = {
      {"all fine", {ownImg<float>(40, w), ownImg<float>(44, w)}, vnxStatusOk},
      {"one short", {ownImg<float>(40, w), ownImg<float>(39, w)}, vnxStatusBadStep},
      {"misaligned then short", {ownImg<float>(42, w), ownImg<float>(36, w)}, vnxStatusBadStep},
      {"misaligned only", {ownImg<float>(40, w), ownImg<float>(42, w)}, vnxStatusStepNotMultiple},
      {"negative", {ownImg<float>(-40, w)}, vnxStatusBadStep},
      {"odd byte step is fine", {ownImg<vnx8u>(11, w), ownImg<float>(40, w)}, vnxStatusOk},
      {"three channels", {ownImg<vnx16u, 3>(59, w)}, vnxStatusBadStep},
      {"three channels odd", {ownImg<vnx16u, 3>(61, w)}, vnxStatusStepNotMultiple},
      {"huge width overflows no int", {ownImg<float>(0x7fffffff, 0x40000000)}, vnxStatusBadStep},
  };
  for (const StepCase& c : cases) EXPECT_EQ(ownCheckSteps(c.steps.data(), int(c.steps.size())), c.expected) << c.what;
}

TEST(CheckOrder, NullPointerWinsOverSizeAndSizeOverSteps) {
  int a = 0;
  EXPECT_EQ(ownCheck({&a, nullptr}, {0, 0}, {ownImg<float>(1, 0)}), vnxStatusNullPtr);
  EXPECT_EQ(ownCheck({&a}, {0, 5}, {ownImg<float>(-1, 0)}), vnxStatusBadSize);
  EXPECT_EQ(ownCheck({&a}, {5, 0}, {ownImg<float>(-1, 5)}), vnxStatusBadSize);
  EXPECT_EQ(ownCheck({&a}, {5, 1}, {ownImg<float>(19, 5)}), vnxStatusBadStep);
  EXPECT_EQ(ownCheck({&a}, {1, 1}, {ownImg<float>(4, 1)}), vnxStatusOk);
  EXPECT_EQ(ownCheckCoi(0), vnxStatusBadCoi);
  EXPECT_EQ(ownCheckCoi(4), vnxStatusBadCoi);
  EXPECT_EQ(ownCheckCoi(3), vnxStatusOk);
}

// ---- band split and runner -------------------------------------------------

// Remainder rows go to the last band; with more bands than rows all rows do.
TEST(BandSplit, RemainderRowsGoToLastBand) {
  const struct { ownBandSplit split; std::vector<int> begin, end; } rows[] = {
      {{10, 4}, {0, 2, 4, 6}, {2, 4, 6, 10}}, {{3, 5}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 3}}};
  for (const auto& r : rows)
    for (int b = 0; b < r.split.nBands; ++b)
      EXPECT_EQ(std::make_pair(r.split.begin(b), r.split.end(b)), std::make_pair(r.begin[b], r.end[b])) << r.split.height << " rows, band " << b;
}

// One row a policy and ROI: the bands it gets with 4 threads.
TEST(BandCount, PoliciesByTable) {
  vt::Threads guard(4);
  const int cores = ownSingleCoreDie() ? 1 : 4;
  const struct { const ownBandPolicy& policy; vnxiSize roi; int bands; } rows[] = {
      {kOwnBandsReduce, {512, 1023}, 1}, {kOwnBandsReduce, {512, 1024}, 4},  // 523776 < 4 * 131072
      {kOwnBandsReduce64KCoreTest, {512, 511}, 1}, {kOwnBandsReduce64KCoreTest, {512, 512}, cores},
      {kOwnBandsReduceCoreTest, {512, 1024}, cores},
      {kOwnBandsFixedFilter, {256, 511}, 1}, {kOwnBandsFixedFilter, {256, 512}, cores},  // 128 rows a band at least
      {kOwnBandsFixedFilter, {255, 4096}, 1},  // narrower than 256
      {kOwnBandsFixedScharr, {1, 512}, cores},
      {kOwnBandsFixedLaplacian, {256, 128}, cores}, {kOwnBandsFixedLaplacian, {256, 127}, 1},
      {kOwnBandsExtrema, {128, 127}, 1},            // 16256 pixels, below the whole-image cut-off
      {kOwnBandsExtrema, {128, 128}, 4},
  };
  for (const auto& r : rows)
    EXPECT_EQ(ownBandCount(r.roi, r.policy), r.bands) << r.roi.width << "x" << r.roi.height;
}

// Every band runs exactly once with its own rows, whatever team the runtime
// grants: 40 bands is more than 32 and more than any team here, and a team of two
// for six bands is smaller than requested.
TEST(BandRunner, EveryBandRunsOnceForAnyTeam) {
  for (int n : {1, 2, 3, 6, 7, 40}) {
    vt::Threads guard(n);
    if (n == 6) threads_omp_of_n_vnx = 2;
    const int height = 97;
    std::vector<std::atomic<int>> rowsSeen(height), bandRuns(n);
    ownRunBands(ownBandSplit{height, n}, [&](int b, int y0, int y1) {
      ++bandRuns[b];
      for (int y = y0; y < y1; ++y) ++rowsSeen[y];
    });
    threads_omp_of_n_vnx = n;
    for (int b = 0; b < n; ++b) EXPECT_EQ(bandRuns[b].load(), 1) << "n=" << n << " band " << b;
    for (int y = 0; y < height; ++y) EXPECT_EQ(rowsSeen[y].load(), 1) << "n=" << n << " row " << y;
  }
}

// Inside a parallel region the band count (and so a reduction's grouping) is
// unchanged, and every band runs on the calling thread.
TEST(BandRunner, InsideAParallelRegionKeepsTheCountAndRunsOnTheCallingThread) {
  vt::Threads guard(4);
  std::vector<int> owner(4, -1);
  int inside = 0;
#pragma omp parallel num_threads(2)
  {
#pragma omp master
    {
      inside = ownBandCount({512, 1024}, kOwnBandsReduce);
      const int me = omp_get_thread_num();
      if (omp_in_parallel()) ownRunBands(ownBandSplit{8, 4}, [&](int b, int, int) { owner[b] = omp_get_thread_num() == me; });
    }
  }
  EXPECT_EQ(inside, 4);
  if (owner[0] < 0) GTEST_SKIP() << "the runtime gave no active region";
  for (int b = 0; b < 4; ++b) EXPECT_EQ(owner[b], 1);
}

// Partials are combined in band order: a non-associative combine shows any other order.
TEST(Reduce, PartialsCombineInBandOrder) {
  for (int n : {1, 3, 32, 33, 40}) {
    vt::Threads guard(n);
    // unsigned: the combine wraps modulo 2^64 past a dozen bands instead of overflowing
    std::uint64_t total = 0;
    ASSERT_EQ(ownReduceBands<std::uint64_t>(
                  200, n, [](int y0, int y1) { return std::uint64_t(y0) * 1000 + y1; },
                  [](std::uint64_t& acc, std::uint64_t p) { acc = acc * 31 + p; }, &total),
              vnxStatusOk);
    const ownBandSplit s{200, n};
    std::uint64_t expected = std::uint64_t(s.begin(0)) * 1000 + s.end(0);
    for (int b = 1; b < n; ++b) expected = expected * 31 + (std::uint64_t(s.begin(b)) * 1000 + s.end(b));
    EXPECT_EQ(total, expected) << n;
  }
}

void* failingAlloc(std::size_t) { return nullptr; }

TEST(Reduce, MoreThan32BandsWithoutMemoryReportsNoMemory) {
  ownSetHeap(failingAlloc, nullptr);
  double total = -1;
  auto one = [](int, int) { return 1.0; };
  auto add = [](double& a, double b) { a += b; };
  const vnxStatus st = ownReduceBands<double>(100, 33, one, add, &total), small = ownReduceBands<double>(100, 32, one, add, &total);
  ownSetHeap(nullptr, nullptr);
  EXPECT_EQ(st, vnxStatusNoMemory);
  EXPECT_EQ(small, vnxStatusOk);
  EXPECT_EQ(total, 32.0);
}

// ---- scratch allocator -----------------------------------------------------

std::size_t lastRequest = 0;
void* recordingAlloc(std::size_t n) {
  lastRequest = n;
  return std::malloc(n);
}

// Blocks are 32-byte aligned and ask the heap for the request plus 36 bytes; counts
// below one and a failing heap give null.
TEST(Alloc, BlocksAreAlignedAndSizedAsRequestedPlus36) {
  ownSetHeap(recordingAlloc, nullptr);
  const struct { void* (*fn)(int); int n; std::size_t bytes; } cases[] = {
      {ownMalloc_8u, 1, 37}, {ownMalloc_8u, 100, 136}, {ownMalloc_16u, 7, 50}, {ownMalloc_32, 5, 56}, {ownMalloc_64, 3, 60},
      {ownMalloc_8u, 0, 0},  {ownMalloc_16u, -1, 0},   {ownMalloc_32, 0, 0},   {ownMalloc_64, -5, 0}};
  for (const auto& c : cases) {
    void* p = c.fn(c.n);
    ASSERT_EQ(p != nullptr, c.bytes > 0) << c.n;
    if (!p) continue;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 32, 0u);
    EXPECT_EQ(lastRequest, c.bytes);
    std::memset(p, 0xEE, c.bytes - 36);  // the whole request is usable
    ownFree(p);
  }
  ownFree(nullptr);
  ownSetHeap(failingAlloc, nullptr);
  EXPECT_EQ(ownMalloc_8u(16), nullptr);
  ownSetHeap(nullptr, nullptr);
}

}  // namespace
