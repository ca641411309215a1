// The face-detection example beside OpenCV's cascade detector on the packaged
// photograph (messi5.jpg) with the packaged frontal-face cascade: scale step 1.1,
// groups of more than three hits. Registered only where both files and OpenCV's
// detector are there.
#include "../bench_common.h"

#ifdef VNX_HAVE_OPENCV_OBJDETECT
#include <fstream>
#include <memory>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/objdetect.hpp>

#include "../../examples/face/face_detector.h"

namespace {

const char* kCascade = "/usr/share/opencv4/haarcascades/haarcascade_frontalface_default.xml";
const char* kPhoto = "/usr/share/doc/opencv-doc/examples/data/messi5.jpg";

struct Faces {
  cv::Mat photo = cv::imread(kPhoto, cv::IMREAD_GRAYSCALE);
  vnxface::Cascade cascade;
  std::unique_ptr<vnxface::Detector> ours;
  cv::CascadeClassifier theirs{kCascade};
  std::vector<cv::Rect> found;
};

Faces* faces() {
  static Faces* f = [] {
    if (!std::ifstream(kCascade) || !std::ifstream(kPhoto)) return static_cast<Faces*>(nullptr);
    auto* p = new Faces;
    if (p->photo.empty() || !vnxface::readCascade(kCascade, p->cascade)) return static_cast<Faces*>(nullptr);
    p->ours = std::make_unique<vnxface::Detector>(p->cascade);
    return p;
  }();
  return f;
}

const bool registered = faces() != nullptr &&
    vb::registerPair(
        "FaceDetect_messi5", std::int64_t(faces()->photo.total()),
        [] {
          Faces& f = *faces();
          benchmark::DoNotOptimize(f.ours->detect(f.photo.data, int(f.photo.step), {f.photo.cols, f.photo.rows}, 1.1, 3));
        },
        [] {
          Faces& f = *faces();
          f.theirs.detectMultiScale(f.photo, f.found, 1.1, 3);
        });

}  // namespace
#endif
