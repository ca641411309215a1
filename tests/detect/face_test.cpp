// The face-detection example against the cascade detector of OpenCV on a packaged
// photograph: the same cascade, scale step 1.1 and grouping of three neighbours give
// the same faces, each box overlapping its twin by at least half. Skipped where
// OpenCV's detector, the cascade or the photograph is missing.
#include <gtest/gtest.h>

#include <fstream>

#include "../../examples/face/face_detector.h"

#ifdef VNX_HAVE_OPENCV_OBJDETECT
#include <opencv2/imgcodecs.hpp>
#include <opencv2/objdetect.hpp>
#endif

namespace {

const char* const kCascade = "/usr/share/opencv4/haarcascades/haarcascade_frontalface_default.xml";
const char* const kPhoto = "/usr/share/doc/opencv-doc/examples/data/messi5.jpg";

TEST(FaceExample, FindsTheFacesOpenCVFindsOnThePackagedPhotograph) {
#ifndef VNX_HAVE_OPENCV_OBJDETECT
  GTEST_SKIP() << "OpenCV's object detection module is not available";
#else
  if (!std::ifstream(kCascade) || !std::ifstream(kPhoto)) GTEST_SKIP() << "opencv-data or opencv-doc not installed";
  const cv::Mat photo = cv::imread(kPhoto, cv::IMREAD_GRAYSCALE);
  ASSERT_FALSE(photo.empty());
  cv::CascadeClassifier theirs(kCascade);
  std::vector<cv::Rect> expect;
  theirs.detectMultiScale(photo, expect, 1.1, 3);
  vnxface::Cascade cascade;
  ASSERT_TRUE(vnxface::readCascade(kCascade, cascade) && !expect.empty());
  vnxface::Detector ours(cascade);
  const std::vector<vnxface::Box> got = ours.detect(photo.data, int(photo.step), {photo.cols, photo.rows}, 1.1, 3);
  EXPECT_EQ(expect.size(), got.size());
  for (const cv::Rect& r : expect) {
    double best = 0.0;
    for (const vnxface::Box& b : got) {  // intersection over union
      const cv::Rect o(b.x, b.y, b.width, b.height), i = o & r;
      best = std::max(best, double(i.area()) / (o.area() + r.area() - i.area()));
    }
    EXPECT_GE(best, 0.5) << "face at " << r.x << "," << r.y << " size " << r.width;
  }
#endif
}

}  // namespace
