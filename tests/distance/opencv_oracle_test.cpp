// OpenCV as a second oracle where the conventions coincide: the 3x3 L2 chamfer
// distances (OpenCV sums in fixed point, so within 1e-3 of a distance), the plain
// 4- and 8-connected fills (the same pixels, the same area and box) and the count of
// 8-connected components. Built only where OpenCV is found.
#ifdef VNX_HAVE_OPENCV
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <random>
#include <vector>

#include "support.h"

namespace {

// A binary image with feature pixels (0) at the given density, the rest 1.
std::vector<vnx8u> features(int w, int h, double density, unsigned seed) {
  std::mt19937 rng(seed);
  std::bernoulli_distribution zero(density);
  std::vector<vnx8u> v(static_cast<std::size_t>(w) * h);
  for (auto& p : v) p = zero(rng) ? 0 : 1;
  return v;
}

}  // namespace

TEST(DistanceOracle, ThreeByThreeL2MatchesOpenCV) {
  const vnx32f l2[2] = {0.955f, 1.3693f};
  for (double density : {0.001, 0.02, 0.3})
    for (vnxiSize roi : {vnxiSize{97, 71}, vnxiSize{320, 240}}) {
      std::vector<vnx8u> src = features(roi.width, roi.height, density, 5);
      src[0] = 0;  // at least one feature
      std::vector<vnx32f> ours(src.size());
      ASSERT_EQ(vnxiDistanceTransform_3x3_8u32f_C1R(src.data(), roi.width, ours.data(), 4 * roi.width, roi, l2),
                vnxStatusOk);
      cv::Mat in(roi.height, roi.width, CV_8UC1, src.data()), theirs;
      cv::distanceTransform(in, theirs, cv::DIST_L2, cv::DIST_MASK_3, CV_32F);
      const cv::Mat mine(roi.height, roi.width, CV_32FC1, ours.data()), relative = cv::abs(mine - theirs) / (theirs + 1);
      EXPECT_LE(cv::norm(relative, cv::NORM_INF), 1e-3) << roi.width << "x" << roi.height << " density " << density;
    }
}

TEST(FloodFillOracle, PlainFillsPaintWhatOpenCVPaints) {
  const vnxiSize roi{200, 150};
  int size = 0;
  ASSERT_EQ(vnxiFloodFillGetSize(roi, &size), vnxStatusOk);
  std::vector<vnx8u> buffer(static_cast<std::size_t>(size));
  for (int connectivity : {4, 8})
    for (double density : {0.2, 0.45}) {
      // two values, so the seed's region is a maze of the first
      std::vector<vnx8u> img = features(roi.width, roi.height, density, 11);
      const vnxiPoint seed{roi.width / 2, roi.height / 2};
      img[static_cast<std::size_t>(seed.y) * roi.width + seed.x] = 1;
      std::vector<vnx8u> theirs = img;
      vnxiFillRegion r{};
      const vnxStatus st = connectivity == 4
                               ? vnxiFloodFill_4Con_8u_C1IR(img.data(), roi.width, roi, seed, 7, &r, buffer.data())
                               : vnxiFloodFill_8Con_8u_C1IR(img.data(), roi.width, roi, seed, 7, &r, buffer.data());
      ASSERT_EQ(st, vnxStatusOk);
      cv::Mat m(roi.height, roi.width, CV_8UC1, theirs.data());
      cv::Rect box;
      const int area = cv::floodFill(m, cv::Point(seed.x, seed.y), 7, &box, cv::Scalar(), cv::Scalar(), connectivity);
      EXPECT_EQ(img, theirs) << connectivity << "-connected, density " << density;
      EXPECT_TRUE(r.area == area && r.rect.x == box.x && r.rect.y == box.y && r.rect.width == box.width &&
                  r.rect.height == box.height);
    }
}

TEST(LabelMarkersOracle, CountsWhatOpenCVCounts) {
  const vnxiSize roi{160, 120};
  int size = 0;
  ASSERT_EQ(vnxiLabelMarkersGetBufferSize_8u_C1R(roi, &size), vnxStatusOk);
  std::vector<vnx8u> buffer(static_cast<std::size_t>(size));
  for (double density : {0.3, 0.5, 0.7}) {
    std::vector<vnx8u> markers = features(roi.width, roi.height, density, 3);
    for (auto& p : markers) p = p ? 9 : 0;
    cv::Mat labels;
    const int theirs =
        cv::connectedComponents(cv::Mat(roi.height, roi.width, CV_8UC1, markers.data()).clone(), labels, 8, CV_32S) - 1;
    int ours = -1;
    ASSERT_EQ(vnxiLabelMarkers_8u_C1IR(markers.data(), roi.width, roi, 1, 254, 0, &ours, buffer.data()), vnxStatusOk);
    EXPECT_EQ(ours, theirs) << "density " << density;
  }
}
#endif
