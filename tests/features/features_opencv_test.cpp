// OpenCV as a second oracle where the two conventions coincide (built only when found).
#ifdef VNX_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

#include "support.h"

namespace {

cv::Mat scene(int w, int h) {
  cv::Mat m(h, w, CV_8UC1);
  std::mt19937 rng(6);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      double v = 128 + 70 * std::sin(x / 13.0) * std::cos(y / 9.0) + int(rng() % 9);
      if (std::abs(x - 2 * y + 40) < 2) v = 255;
      m.at<vnx8u>(y, x) = cv::saturate_cast<vnx8u>(v);
    }
  return m;
}

TEST(FeaturesOpenCV, CannyOnTheSameDerivativesWithTheL1Gradient) {
  // The same dx, dy for both (the diagonal test pairs same signs with upper-left and
  // lower-right in both). OpenCV's direction tests use fixed-point tangents, so pixels at
  // a sector boundary may differ.
  const cv::Mat img = scene(320, 240);
  cv::Mat dx, dy, edges, ours(img.size(), CV_8UC1);
  cv::Sobel(img, dx, CV_16S, 1, 0, 3, 1, 0, cv::BORDER_REPLICATE);
  cv::Sobel(img, dy, CV_16S, 0, 1, 3, 1, 0, cv::BORDER_REPLICATE);
  cv::Canny(dx, dy, edges, 40, 120, false);
  int size = 0;
  ASSERT_EQ(vnxStatusOk, vnxiCannyGetSize({img.cols, img.rows}, &size));
  std::vector<vnx8u> buf(size);
  ASSERT_EQ(vnxStatusOk, vnxiCanny_16s8u_C1R(dx.ptr<vnx16s>(), int(dx.step), dy.ptr<vnx16s>(), int(dy.step), ours.data,
                                             int(ours.step), {img.cols, img.rows}, 40, 120, buf.data()));
  const int differ = cv::countNonZero(ours != edges), total = cv::countNonZero(edges);
  EXPECT_GT(total, 1000);
  EXPECT_LT(differ, total / 50) << differ << " of " << total;
}

TEST(FeaturesOpenCV, MinEigenValIs255TimesOpenCVs) {
  // OpenCV scales each derivative by 1/(4 * 3 * 255) and sums the 3x3 box; we take the
  // mean and scale by 1/4080: ours = 255 * OpenCV's for Sobel 3, window 3.
  const cv::Mat img = scene(200, 150);
  cv::Mat cvOut, ours(img.size(), CV_32FC1);
  cv::cornerMinEigenVal(img, cvOut, 3, 3, cv::BORDER_REPLICATE);
  int size = 0;
  ASSERT_EQ(vnxStatusOk, vnxiMinEigenValGetBufferSize_8u32f_C1R({img.cols, img.rows}, 3, 3, &size));
  std::vector<vnx8u> buf(size);
  ASSERT_EQ(vnxStatusOk, vnxiMinEigenVal_8u32f_C1R(img.data, int(img.step), ours.ptr<vnx32f>(), int(ours.step),
                                                   {img.cols, img.rows}, 0, 3, 3, buf.data()));
  EXPECT_LE(cv::norm(255.0 * cvOut, ours, cv::NORM_INF), 255.0 * cv::norm(cvOut, cv::NORM_INF) * 1e-4);
}

TEST(FeaturesOpenCV, HoughLinesOfAnEdgeMap) {
  const cv::Mat img = scene(320, 240);
  cv::Mat edges;
  cv::Canny(img, edges, 60, 180, 3, false);
  std::vector<cv::Vec2f> cvLines;
  const float step = float(CV_PI / 180);
  cv::HoughLines(edges, cvLines, 1, step, 60);
  int size = 0, n = 0;
  ASSERT_EQ(vnxStatusOk, vnxiHoughLineGetSize_8u_C1R({edges.cols, edges.rows}, {1, step}, 4096, &size));
  std::vector<vnx8u> buf(size);
  std::vector<vnx32f> lines(2 * 4096);
  ASSERT_EQ(vnxStatusOk, vnxiHoughLine_8u32f_C1R(edges.data, int(edges.step), {edges.cols, edges.rows}, {1, step}, 60,
                                                 lines.data(), 4096, &n, buf.data()));
  ASSERT_GT(n, 3);
  ASSERT_EQ(int(cvLines.size()), n);
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(cvLines[i][0], lines[2 * i]) << i;
    EXPECT_NEAR(cvLines[i][1], lines[2 * i + 1], 1e-5) << i;
  }
}

TEST(FeaturesOpenCV, FastArctanAgreesWithFastAtan2WithinTheFit) {
  std::mt19937 rng(12);
  std::uniform_real_distribution<float> u(-100, 100);
  std::vector<float> y(1000), x(1000), d(1000);
  for (int i = 0; i < 1000; ++i) y[i] = u(rng), x[i] = u(rng);
  ASSERT_EQ(vnxStatusOk, vnxibFastArctan_32f(y.data(), x.data(), d.data(), 1000));
  for (int i = 0; i < 1000; ++i) {
    float diff = std::fabs(d[i] - cv::fastAtan2(y[i], x[i]));
    diff = std::min(diff, std::fabs(diff - 360.0f));
    EXPECT_LT(diff, 0.5f) << y[i] << " " << x[i];
  }
}

}  // namespace
#endif
