// Integral tables beside cv::integral, 1920x1080: the sum with the squared sum
// (32s + 64f), the three tables (sum, squared sum, tilted sum). The deviation under
// a 22x22 rectangle at every position, from the 32f tables, beside OpenCV's way to
// the same map (box and squared-box means of the image, then the root of their
// difference).
#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};
constexpr int kW1 = kWidth + 1, kW2 = kWidth + 2;

struct Tables {
  std::vector<vnx8u> src = randomPlane<vnx8u>(kWidth, kHeight, 1);
  std::vector<vnx32s> sum = std::vector<vnx32s>(std::size_t(kW1) * (kHeight + 1));
  std::vector<vnx64f> sqr = std::vector<vnx64f>(std::size_t(kW1) * (kHeight + 1));
  std::vector<vnx32s> tilted = std::vector<vnx32s>(std::size_t(kW2) * (kHeight + 2));
  std::vector<vnx32f> sumf = std::vector<vnx32f>(std::size_t(kW1) * (kHeight + 1));
  std::vector<vnx32f> dev = std::vector<vnx32f>(std::size_t(kWidth) * kHeight);
  Tables() {
    vnxiSqrIntegral_8u32f64f_C1R(src.data(), kWidth, sumf.data(), 4 * kW1, sqr.data(), 8 * kW1, kRoi, 0.0f, 0.0);
  }
} t;

constexpr int kRect = 22;
const vnxiSize kDevRoi{kWidth - kRect, kHeight - kRect};

#ifdef VNX_HAVE_OPENCV
cv::Mat src8() { return cv::Mat(kHeight, kWidth, CV_8UC1, t.src.data()); }
cv::Mat cvSum = cv::Mat(kHeight + 1, kW1, CV_32SC1), cvSqr = cv::Mat(kHeight + 1, kW1, CV_64FC1),
        cvTilted = cv::Mat(kHeight + 1, kW1, CV_32SC1);
cv::Mat cvMean, cvSqMean, cvDev;
void cvDeviation() {
  const cv::Mat roi = src8()(cv::Rect(0, 0, kDevRoi.width, kDevRoi.height));  // one output a pixel
  cv::boxFilter(roi, cvMean, CV_32F, cv::Size(kRect, kRect), cv::Point(0, 0), true, cv::BORDER_CONSTANT);
  cv::sqrBoxFilter(roi, cvSqMean, CV_32F, cv::Size(kRect, kRect), cv::Point(0, 0), true, cv::BORDER_CONSTANT);
  cv::sqrt(cvSqMean - cvMean.mul(cvMean), cvDev);
}
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const bool registered[] = {
    registerPair(
        "Integral_8u32s", 5 * kPixels,
        [] { vnxiIntegral_8u32s_C1R(t.src.data(), kWidth, t.sum.data(), 4 * kW1, kRoi, 0); },
        VB_CV(cv::integral(src8(), cvSum, CV_32S))),
    registerPair(
        "SqrIntegral_8u32s64f", 13 * kPixels,
        [] {
          vnxiSqrIntegral_8u32s64f_C1R(t.src.data(), kWidth, t.sum.data(), 4 * kW1, t.sqr.data(), 8 * kW1, kRoi, 0,
                                       0.0);
        },
        VB_CV(cv::integral(src8(), cvSum, cvSqr, CV_32S, CV_64F))),
    registerPair(
        "IntegralThreeTables_8u32s64f", 17 * kPixels,
        [] {
          vnxiSqrIntegral_8u32s64f_C1R(t.src.data(), kWidth, t.sum.data(), 4 * kW1, t.sqr.data(), 8 * kW1, kRoi, 0,
                                       0.0);
          vnxiTiltedIntegral_8u32s_C1R(t.src.data(), kWidth, t.tilted.data(), 4 * kW2, kRoi, 0);
        },
        VB_CV(cv::integral(src8(), cvSum, cvSqr, cvTilted, CV_32S, CV_64F))),
    registerPair(
        "RectStdDev_32f_22x22", 4 * std::int64_t(kDevRoi.width) * kDevRoi.height,
        [] {
          vnxiRectStdDev_32f_C1R(t.sumf.data(), 4 * kW1, t.sqr.data(), 8 * kW1, t.dev.data(), 4 * kWidth, kDevRoi,
                                 {0, 0, kRect, kRect});
        },
        VB_CV(cvDeviation())),
};

}  // namespace
