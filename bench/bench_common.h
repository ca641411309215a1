// Shared set-up of the benchmarks. Each case is registered twice under one name,
// "vnx:<case>" and "cv:<case>", with the thread count as its argument, so
// bench/ratios.py can pair them and quote OpenCV's median over ours.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>
#include <random>
#include <vector>

#include "vnxcv.h"

#ifdef VNX_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace vb {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

// Both libraries get the same thread count for the whole case.
inline void setThreads(int n) {
  vnxSetNumThreads(n);
#ifdef VNX_HAVE_OPENCV
  cv::setNumThreads(n);
#endif
}

// A dense plane of random samples (floats in [0, 255)), the same for a given seed.
template <class T>
std::vector<T> randomPlane(int w, int h, unsigned seed, int channels = 1) {
  std::mt19937 rng(seed);
  std::vector<T> v(std::size_t(w) * h * channels);
  std::uniform_int_distribution<int> d(0, 255);
  for (T& x : v) x = static_cast<T>(d(rng));
  return v;
}

// A random mask with about half of the pixels selected.
inline std::vector<vnx8u> randomMask(int w, int h, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<vnx8u> v(std::size_t(w) * h);
  for (vnx8u& x : v) x = (rng() & 1) ? 255 : 0;
  return v;
}

inline void setBytes(benchmark::State& state, std::int64_t bytesPerIteration) {
  state.SetBytesProcessed(state.iterations() * bytesPerIteration);
}

}  // namespace vb

// Registers one case for both libraries: "vnx:<name>" runs ours, "cv:<name>" the
// OpenCV twin (when OpenCV is there), each with 1 and 2 threads, reporting
// bytesPerIteration as throughput. Call it from a static initialiser.
namespace vb {
inline bool registerPair(const std::string& name, std::int64_t bytesPerIteration, std::function<void()> ours,
                         std::function<void()> twin) {
  auto run = [bytesPerIteration](benchmark::State& st, const std::function<void()>& fn) {
    setThreads(int(st.range(0)));
    for (auto _ : st) fn();
    setBytes(st, bytesPerIteration);
  };
  benchmark::RegisterBenchmark(("vnx:" + name).c_str(), run, ours)->Arg(1)->Arg(2)->ArgName("threads")->UseRealTime();
#ifdef VNX_HAVE_OPENCV
  benchmark::RegisterBenchmark(("cv:" + name).c_str(), run, twin)->Arg(1)->Arg(2)->ArgName("threads")->UseRealTime();
#else
  (void)twin;
#endif
  return true;
}
}  // namespace vb

// Registers a pair of functions taking (benchmark::State&) with thread counts 1 and 2.
#define VB_CASE(fn, name) BENCHMARK(fn)->Name(name)->Arg(1)->Arg(2)->ArgName("threads")->UseRealTime()
