// Pyramid steps and pyramidal flow beside cv::pyrDown, cv::pyrUp and
// cv::buildOpticalFlowPyramid + cv::calcOpticalFlowPyrLK, 1920x1080.
#include "../bench_common.h"

#ifdef VNX_HAVE_OPENCV
#include <opencv2/video/tracking.hpp>
#endif

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Planes {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), d8 = std::vector<vnx8u>(4 * kPixels);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 2), d32 = std::vector<vnx32f>(kPixels);
  std::vector<vnx8u> buf = std::vector<vnx8u>(1 << 20);
} f;

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v, int w = kWidth, int h = kHeight) { return cv::Mat(h, w, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v, int w = kWidth, int h = kHeight) { return cv::Mat(h, w, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const bool registered[] = {
    registerPair(
        "PyrDown_8u", kPixels * 5 / 4,
        [] { vnxiPyrDown_Gauss5x5_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth / 2, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8, kWidth / 2, kHeight / 2); cv::pyrDown(m8(f.a), d))),
    registerPair(
        "PyrDown_32f", kPixels * 5,
        [] { vnxiPyrDown_Gauss5x5_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 2 * kWidth, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32, kWidth / 2, kHeight / 2); cv::pyrDown(m32(f.fa), d))),
    registerPair(
        "PyrUp_8u", kPixels * 5,
        [] { vnxiPyrUp_Gauss5x5_8u_C1R(f.a.data(), kWidth, f.d8.data(), 2 * kWidth, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8, 2 * kWidth, 2 * kHeight); cv::pyrUp(m8(f.a), d))),
};

}  // namespace
