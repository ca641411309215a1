// OpenCV as a second oracle where the conventions coincide: the 3x3 L2 chamfer
// distances (OpenCV sums in fixed point, so within 1e-3 of a distance) and the plain
// 4- and 8-connected fills (the same pixels, the same area and box). Built only where
// OpenCV is found.
#ifdef VNX_HAVE_OPENCV
#include <opencv2/imgproc.hpp>

#include "support.h"

namespace {

// Two values: 0 at the given density (the features, or the walls of a maze), the rest 255.
cv::Mat binary(cv::Size size, double density, cv::RNG& rng) {
  cv::Mat noise(size, CV_32F);
  rng.fill(noise, cv::RNG::UNIFORM, 0, 1);
  return noise >= density;
}

TEST(DistanceOracle, ThreeByThreeL2MatchesOpenCV) {
  const vnx32f l2[2] = {0.955f, 1.3693f};
  cv::RNG rng(5);
  for (double density : {0.001, 0.02, 0.3})
    for (cv::Size size : {cv::Size(97, 71), cv::Size(320, 240)}) {
      cv::Mat src = binary(size, density, rng), ours(size, CV_32F), theirs;
      src.at<vnx8u>(0, 0) = 0;  // at least one feature
      ASSERT_EQ(vnxiDistanceTransform_3x3_8u32f_C1R(src.ptr(), int(src.step), ours.ptr<vnx32f>(), int(ours.step),
                                                    {size.width, size.height}, l2), vnxStatusOk);
      cv::distanceTransform(src, theirs, cv::DIST_L2, cv::DIST_MASK_3, CV_32F);
      EXPECT_LE(cv::norm(cv::abs(ours - theirs) / (theirs + 1), cv::NORM_INF), 1e-3) << size << " density " << density;
    }
}

TEST(FloodFillOracle, PlainFillsPaintWhatOpenCVPaints) {
  const vnxiSize roi{200, 150};
  const vnxiPoint seed{roi.width / 2, roi.height / 2};
  int size = 0;
  ASSERT_EQ(vnxiFloodFillGetSize(roi, &size), vnxStatusOk);
  std::vector<vnx8u> buffer(static_cast<std::size_t>(size));
  cv::RNG rng(11);
  for (int connectivity : {4, 8})
    for (double density : {0.2, 0.45}) {
      cv::Mat ours = binary({roi.width, roi.height}, density, rng), theirs;
      ours.at<vnx8u>(seed.y, seed.x) = 255;  // the seed's region is a maze
      theirs = ours.clone();
      vnxiFillRegion r{};
      const vnxStatus st = connectivity == 4
                               ? vnxiFloodFill_4Con_8u_C1IR(ours.ptr(), int(ours.step), roi, seed, 7, &r, buffer.data())
                               : vnxiFloodFill_8Con_8u_C1IR(ours.ptr(), int(ours.step), roi, seed, 7, &r, buffer.data());
      ASSERT_EQ(st, vnxStatusOk);
      cv::Rect box;
      const int area = cv::floodFill(theirs, cv::Point(seed.x, seed.y), 7, &box, cv::Scalar(), cv::Scalar(), connectivity);
      EXPECT_EQ(cv::norm(ours, theirs, cv::NORM_INF), 0) << connectivity << "-connected, density " << density;
      EXPECT_TRUE(r.area == area && cv::Rect(r.rect.x, r.rect.y, r.rect.width, r.rect.height) == box);
    }
}

}  // namespace
#endif
