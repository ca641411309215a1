// Distance transforms, flood fill and marker labelling beside cv::distanceTransform,
// cv::floodFill and cv::connectedComponents, 1920x1080.
#include <cstring>

#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

// A binary image with about one zero in 64 pixels, in small clusters.
std::vector<vnx8u> features() {
  std::mt19937 rng(7);
  std::vector<vnx8u> v(kPixels, 255);
  for (std::int64_t i = 0; i < kPixels / 256; ++i) {
    const std::int64_t p = rng() % kPixels;
    for (int k = 0; k < 4 && p + k < kPixels; ++k) v[p + k] = 0;
  }
  return v;
}

struct Planes {
  std::vector<vnx8u> src = features();
  std::vector<vnx32f> d32 = std::vector<vnx32f>(kPixels);
} f;

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const vnx32f kL2_3x3[2] = {0.955f, 1.3693f};
const vnx32f kL2_5x5[3] = {1.0f, 1.4f, 2.1969f};

const bool registered[] = {
    registerPair(
        "DistanceTransform3x3_L2_8u32f", 5 * kPixels,
        [] { vnxiDistanceTransform_3x3_8u32f_C1R(f.src.data(), kWidth, f.d32.data(), 4 * kWidth, kRoi, kL2_3x3); },
        VB_CV(cv::Mat d = m32(f.d32); cv::distanceTransform(m8(f.src), d, cv::DIST_L2, cv::DIST_MASK_3, CV_32F))),
    registerPair(
        "DistanceTransform5x5_L2_8u32f", 5 * kPixels,
        [] { vnxiDistanceTransform_5x5_8u32f_C1R(f.src.data(), kWidth, f.d32.data(), 4 * kWidth, kRoi, kL2_5x5); },
        VB_CV(cv::Mat d = m32(f.d32); cv::distanceTransform(m8(f.src), d, cv::DIST_L2, cv::DIST_MASK_5, CV_32F))),
};

}  // namespace
