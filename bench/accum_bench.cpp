// Absolute differences and running accumulators beside cv::absdiff,
// cv::accumulate and cv::accumulateWeighted, 1920x1080, with and without a mask.
#include "bench_common.h"

#ifdef VNX_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using namespace vb;

struct Frames {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), b = randomPlane<vnx8u>(kWidth, kHeight, 2),
                     d = std::vector<vnx8u>(std::size_t(kWidth) * kHeight), mask = randomMask(kWidth, kHeight, 3);
  std::vector<vnx32f> acc = randomPlane<vnx32f>(kWidth, kHeight, 4);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 5), fb = randomPlane<vnx32f>(kWidth, kHeight, 6);
};
Frames& frames() {
  static Frames f;
  return f;
}
const vnxiSize kRoi{kWidth, kHeight};

void vnxAbsDiff8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st) vnxiAbsDiff_8u_C1R(f.a.data(), kWidth, f.b.data(), kWidth, f.d.data(), kWidth, kRoi);
  setBytes(st, 3LL * kWidth * kHeight);
}
void vnxAbsDiff32f(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st)
    vnxiAbsDiff_32f_C1R(f.fa.data(), 4 * kWidth, f.fb.data(), 4 * kWidth, f.acc.data(), 4 * kWidth, kRoi);
  setBytes(st, 12LL * kWidth * kHeight);
}
void vnxAdd8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st) vnxiAdd_8u32f_C1IR(f.a.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi);
  setBytes(st, 9LL * kWidth * kHeight);
}
void vnxAddMasked8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st) vnxiAdd_8u32f_C1IMR(f.a.data(), kWidth, f.mask.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi);
  setBytes(st, 10LL * kWidth * kHeight);
}
void vnxAddWeighted8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st) vnxiAddWeighted_8u32f_C1IR(f.a.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi, 0.05f);
  setBytes(st, 9LL * kWidth * kHeight);
}
void vnxAddWeightedMasked8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  for (auto _ : st)
    vnxiAddWeighted_8u32f_C1IMR(f.a.data(), kWidth, f.mask.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi, 0.05f);
  setBytes(st, 10LL * kWidth * kHeight);
}
VB_CASE(vnxAbsDiff8u, "vnx:AbsDiff_8u");
VB_CASE(vnxAbsDiff32f, "vnx:AbsDiff_32f");
VB_CASE(vnxAdd8u, "vnx:Add_8u32f");
VB_CASE(vnxAddMasked8u, "vnx:Add_8u32f_masked");
VB_CASE(vnxAddWeighted8u, "vnx:AddWeighted_8u32f");
VB_CASE(vnxAddWeightedMasked8u, "vnx:AddWeighted_8u32f_masked");

#ifdef VNX_HAVE_OPENCV
cv::Mat wrap8u(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat wrap32f(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }

void cvAbsDiff8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap8u(f.a), b = wrap8u(f.b), d = wrap8u(f.d);
  for (auto _ : st) cv::absdiff(a, b, d);
  setBytes(st, 3LL * kWidth * kHeight);
}
void cvAbsDiff32f(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap32f(f.fa), b = wrap32f(f.fb), d = wrap32f(f.acc);
  for (auto _ : st) cv::absdiff(a, b, d);
  setBytes(st, 12LL * kWidth * kHeight);
}
void cvAdd8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap8u(f.a), acc = wrap32f(f.acc);
  for (auto _ : st) cv::accumulate(a, acc);
  setBytes(st, 9LL * kWidth * kHeight);
}
void cvAddMasked8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap8u(f.a), m = wrap8u(f.mask), acc = wrap32f(f.acc);
  for (auto _ : st) cv::accumulate(a, acc, m);
  setBytes(st, 10LL * kWidth * kHeight);
}
void cvAddWeighted8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap8u(f.a), acc = wrap32f(f.acc);
  for (auto _ : st) cv::accumulateWeighted(a, acc, 0.05);
  setBytes(st, 9LL * kWidth * kHeight);
}
void cvAddWeightedMasked8u(benchmark::State& st) {
  setThreads(int(st.range(0)));
  Frames& f = frames();
  cv::Mat a = wrap8u(f.a), m = wrap8u(f.mask), acc = wrap32f(f.acc);
  for (auto _ : st) cv::accumulateWeighted(a, acc, 0.05, m);
  setBytes(st, 10LL * kWidth * kHeight);
}
VB_CASE(cvAbsDiff8u, "cv:AbsDiff_8u");
VB_CASE(cvAbsDiff32f, "cv:AbsDiff_32f");
VB_CASE(cvAdd8u, "cv:Add_8u32f");
VB_CASE(cvAddMasked8u, "cv:Add_8u32f_masked");
VB_CASE(cvAddWeighted8u, "cv:AddWeighted_8u32f");
VB_CASE(cvAddWeightedMasked8u, "cv:AddWeighted_8u32f_masked");
#endif

}  // namespace
