// Absolute differences and running accumulators beside cv::absdiff,
// cv::accumulate and cv::accumulateWeighted, 1920x1080, with and without a mask.
#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Frames {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), b = randomPlane<vnx8u>(kWidth, kHeight, 2),
                     d = std::vector<vnx8u>(kPixels), mask = randomMask(kWidth, kHeight, 3);
  std::vector<vnx32f> acc = randomPlane<vnx32f>(kWidth, kHeight, 4), fa = randomPlane<vnx32f>(kWidth, kHeight, 5),
                      fb = randomPlane<vnx32f>(kWidth, kHeight, 6);
} f;

// The weighted accumulators take frames a and b in turn, as a video would give
// them: a constant frame would let every accumulator under a zero pixel decay
// into subnormal numbers over thousands of iterations and time those instead.
const vnx8u* nextFrame() {
  static bool odd = false;
  odd = !odd;
  return odd ? f.a.data() : f.b.data();
}

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m8(const vnx8u* p) { return cv::Mat(kHeight, kWidth, CV_8UC1, const_cast<vnx8u*>(p)); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const bool registered[] = {
    registerPair(
        "AbsDiff_8u", 3 * kPixels,
        [] { vnxiAbsDiff_8u_C1R(f.a.data(), kWidth, f.b.data(), kWidth, f.d.data(), kWidth, kRoi); },
        VB_CV(cv::Mat d = m8(f.d); cv::absdiff(m8(f.a), m8(f.b), d))),
    registerPair(
        "AbsDiff_32f", 12 * kPixels,
        [] { vnxiAbsDiff_32f_C1R(f.fa.data(), 4 * kWidth, f.fb.data(), 4 * kWidth, f.acc.data(), 4 * kWidth, kRoi); },
        VB_CV(cv::Mat d = m32(f.acc); cv::absdiff(m32(f.fa), m32(f.fb), d))),
    registerPair(
        "Add_8u32f", 9 * kPixels, [] { vnxiAdd_8u32f_C1IR(f.a.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi); },
        VB_CV(cv::Mat acc = m32(f.acc); cv::accumulate(m8(f.a), acc))),
    registerPair(
        "Add_8u32f_masked", 10 * kPixels,
        [] { vnxiAdd_8u32f_C1IMR(f.a.data(), kWidth, f.mask.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi); },
        VB_CV(cv::Mat acc = m32(f.acc); cv::accumulate(m8(f.a), acc, m8(f.mask)))),
    registerPair(
        "AddWeighted_8u32f", 9 * kPixels,
        [] { vnxiAddWeighted_8u32f_C1IR(nextFrame(), kWidth, f.acc.data(), 4 * kWidth, kRoi, 0.05f); },
        VB_CV(cv::Mat acc = m32(f.acc); cv::accumulateWeighted(m8(nextFrame()), acc, 0.05))),
    registerPair(
        "AddWeighted_8u32f_masked", 10 * kPixels,
        [] {
          vnxiAddWeighted_8u32f_C1IMR(nextFrame(), kWidth, f.mask.data(), kWidth, f.acc.data(), 4 * kWidth, kRoi,
                                      0.05f);
        },
        VB_CV(cv::Mat acc = m32(f.acc); cv::accumulateWeighted(m8(nextFrame()), acc, 0.05, m8(f.mask)))),
};

}  // namespace
