// Distance transforms, flood fill and marker labelling beside cv::distanceTransform,
// cv::floodFill and cv::connectedComponents, 1920x1080.
#include <cmath>
#include <cstdio>
#include <cstdlib>
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

// A large region of zeros with one obstacle pixel in 50; a ramp with noise for the
// range fills; markers with one pixel in three set.
std::vector<vnx8u> plane(int kind) {
  std::mt19937 rng(11 + kind);
  std::vector<vnx8u> v(kPixels);
  for (std::int64_t i = 0; i < kPixels; ++i) {
    const int x = int(i % kWidth), y = int(i / kWidth);
    v[i] = kind == 0 ? (rng() % 50 == 0 ? 255 : 0) : kind == 1 ? vnx8u((x / 8 + y / 8 + rng() % 3) % 64) : (rng() % 3 == 0);
  }
  return v;
}

struct Planes {
  std::vector<vnx8u> src = features();
  std::vector<vnx32f> d32 = std::vector<vnx32f>(kPixels);
  std::vector<vnx8u> region = plane(0), ramp = plane(1), markers = plane(2), work = std::vector<vnx8u>(kPixels);
  std::vector<vnx8u> buf = std::vector<vnx8u>(std::size_t(kPixels) * 8 + 64);
  std::vector<int> labels = std::vector<int>(kPixels);
} f;

// Every iteration starts again from the same image, for both libraries.
void restore(const std::vector<vnx8u>& from) { std::memcpy(f.work.data(), from.data(), std::size_t(kPixels)); }
const vnxiPoint kSeed{kWidth / 2, kHeight / 2};

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
cv::Mat work() { return cv::Mat(kHeight, kWidth, CV_8UC1, f.work.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const vnx32f kL2_3x3[2] = {0.955f, 1.3693f};
const vnx32f kL2_5x5[3] = {1.0f, 1.4f, 2.1969f};

#ifdef VNX_HAVE_OPENCV
// OpenCV as a second oracle where the conventions coincide: the 3x3 L2 chamfer
// (its fixed-point sums agree to about 1e-4 of a distance), the plain 4-connected
// fill (the same pixels) and the count of 8-connected components. A mismatch stops
// the benchmark before it times anything.
bool crossCheck() {
  std::vector<vnx32f> ours(kPixels), theirs(kPixels);
  vnxiDistanceTransform_3x3_8u32f_C1R(f.src.data(), kWidth, ours.data(), 4 * kWidth, kRoi, kL2_3x3);
  cv::Mat t = m32(theirs);
  cv::distanceTransform(m8(f.src), t, cv::DIST_L2, cv::DIST_MASK_3, CV_32F);
  for (std::int64_t i = 0; i < kPixels; ++i)
    if (std::fabs(ours[i] - theirs[i]) > 1e-3f * (1.0f + theirs[i])) {
      std::fprintf(stderr, "distance transform differs from OpenCV at %lld\n", static_cast<long long>(i));
      std::abort();
    }
  std::vector<vnx8u> a = f.region, b = f.region;
  vnxiFillRegion r;
  vnxiFloodFill_4Con_8u_C1IR(a.data(), kWidth, kRoi, kSeed, 7, &r, f.buf.data());
  cv::Mat bm(kHeight, kWidth, CV_8UC1, b.data());
  cv::Rect rect;
  const int area = cv::floodFill(bm, cv::Point(kSeed.x, kSeed.y), 7, &rect, cv::Scalar(), cv::Scalar(), 4);
  if (a != b || area != int(r.area) || rect.x != r.rect.x || rect.width != r.rect.width) {
    std::fprintf(stderr, "flood fill differs from OpenCV\n");
    std::abort();
  }
  std::vector<vnx8u> m = f.markers;
  int count = 0;
  vnxiLabelMarkers_8u_C1IR(m.data(), kWidth, kRoi, 1, 254, 0, &count, f.buf.data());
  cv::Mat labels;
  const int n = cv::connectedComponents(cv::Mat(kHeight, kWidth, CV_8UC1, f.markers.data()), labels, 8, CV_32S);
  if (count != n - 1) {
    std::fprintf(stderr, "marker count %d, OpenCV %d\n", count, n - 1);
    std::abort();
  }
  return true;
}
const bool crossChecked = crossCheck();
#endif

const bool registered[] = {
    registerPair(
        "DistanceTransform3x3_L2_8u32f", 5 * kPixels,
        [] { vnxiDistanceTransform_3x3_8u32f_C1R(f.src.data(), kWidth, f.d32.data(), 4 * kWidth, kRoi, kL2_3x3); },
        VB_CV(cv::Mat d = m32(f.d32); cv::distanceTransform(m8(f.src), d, cv::DIST_L2, cv::DIST_MASK_3, CV_32F))),
    registerPair(
        "DistanceTransform5x5_L2_8u32f", 5 * kPixels,
        [] { vnxiDistanceTransform_5x5_8u32f_C1R(f.src.data(), kWidth, f.d32.data(), 4 * kWidth, kRoi, kL2_5x5); },
        VB_CV(cv::Mat d = m32(f.d32); cv::distanceTransform(m8(f.src), d, cv::DIST_L2, cv::DIST_MASK_5, CV_32F))),
    registerPair(
        "FloodFill4Con_8u_plain", kPixels,
        [] {
          restore(f.region);
          vnxiFillRegion r;
          vnxiFloodFill_4Con_8u_C1IR(f.work.data(), kWidth, kRoi, kSeed, 7, &r, f.buf.data());
        },
        VB_CV(restore(f.region); cv::Mat w = work(); cv::floodFill(w, cv::Point(kSeed.x, kSeed.y), 7, nullptr,
                                                                   cv::Scalar(), cv::Scalar(), 4))),
    registerPair(
        "FloodFill8Con_8u_plain", kPixels,
        [] {
          restore(f.region);
          vnxiFillRegion r;
          vnxiFloodFill_8Con_8u_C1IR(f.work.data(), kWidth, kRoi, kSeed, 7, &r, f.buf.data());
        },
        VB_CV(restore(f.region); cv::Mat w = work(); cv::floodFill(w, cv::Point(kSeed.x, kSeed.y), 7, nullptr,
                                                                   cv::Scalar(), cv::Scalar(), 8))),
    registerPair(
        "FloodFillRange4Con_8u", kPixels,
        [] {
          restore(f.ramp);
          vnxiFillRegion r;
          vnxiFloodFill_Range4Con_8u_C1IR(f.work.data(), kWidth, kRoi, kSeed, 200, 40, 40, &r, f.buf.data());
        },
        VB_CV(restore(f.ramp); cv::Mat w = work();
              cv::floodFill(w, cv::Point(kSeed.x, kSeed.y), 200, nullptr, 40, 40, 4 | cv::FLOODFILL_FIXED_RANGE))),
    registerPair(
        "FloodFillRange8Con_8u", kPixels,
        [] {
          restore(f.ramp);
          vnxiFillRegion r;
          vnxiFloodFill_Range8Con_8u_C1IR(f.work.data(), kWidth, kRoi, kSeed, 200, 40, 40, &r, f.buf.data());
        },
        VB_CV(restore(f.ramp); cv::Mat w = work();
              cv::floodFill(w, cv::Point(kSeed.x, kSeed.y), 200, nullptr, 40, 40, 8 | cv::FLOODFILL_FIXED_RANGE))),
    registerPair(
        "LabelMarkers8Con_vs_connectedComponents", kPixels,
        [] {
          restore(f.markers);
          int n = 0;
          vnxiLabelMarkers_8u_C1IR(f.work.data(), kWidth, kRoi, 1, 254, 0, &n, f.buf.data());
        },
        VB_CV(restore(f.markers); cv::Mat l(kHeight, kWidth, CV_32S, f.labels.data());
              cv::connectedComponents(work(), l, 8, CV_32S))),
};

}  // namespace
