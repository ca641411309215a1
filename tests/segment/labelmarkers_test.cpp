// Marker labelling against a raster-order breadth-first labelling written from the
// contract: binarised markers, labels minLabel .. maxLabel and round again, the
// count of every component; the check order; OpenCV's count of 8-connected
// components as a second oracle where OpenCV is found.
#include <string>

#include "support.h"
#ifdef VNX_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

// Unlabelled marker pixels are 255; neighbours d = 0..8 of a 3x3 block, the even
// ones (corners and centre) left out under the four-neighbour norm.
int referenceLabels(std::vector<vnx8u>& px, int w, int h, int minLabel, int maxLabel, bool eight) {
  for (vnx8u& v : px) v = v ? 255 : 0;
  int label = minLabel, count = 0;
  for (int start = 0; start < w * h; ++start) {
    if (px[start] != 255) continue;
    std::vector<int> queue{start};
    px[start] = vnx8u(label);
    for (std::size_t k = 0; k < queue.size(); ++k)
      for (int d = 0; d < 9; ++d) {
        const int x = queue[k] % w + d % 3 - 1, y = queue[k] / w + d / 3 - 1;
        if (x < 0 || y < 0 || x >= w || y >= h || (!eight && d % 2 == 0) || px[y * w + x] != 255) continue;
        px[y * w + x] = vnx8u(label), queue.push_back(y * w + x);
      }
    label = label == maxLabel ? minLabel : label + 1, ++count;
  }
  return count;
}

// Width, height, one pixel in `density` a marker (0: none), labels, norm.
TEST(LabelMarkers, MatchesRasterOrderLabelling) {
  const int cases[][6] = {{1, 1, 1, 1, 254, 0}, {1, 1, 0, 1, 254, 1}, {17, 15, 2, 1, 254, 1}, {17, 15, 2, 1, 254, 0},
                          {33, 7, 3, 5, 9, 1},  {64, 48, 2, 1, 2, 0}, {64, 48, 4, 7, 7, 1},    {128, 96, 2, 1, 254, 1},
                          {200, 3, 2, 100, 101, 0}};
  int n = 0, size = 0, count = -1;
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c[0]) + "x" + std::to_string(c[1]) + " norm " + std::to_string(c[5]));
    std::mt19937 rng(c[0] * 13 + c[1]);
    vt::Image<vnx8u> img(c[0], c[1], 1, 3, n++ % 2 ? vt::Guard::After : vt::Guard::Before);
    img.fill([&](int, int, int) { return c[2] && rng() % c[2] == 0 ? 1 + rng() % 255 : 0; });
    std::vector<vnx8u> want = img.pixels();
    const int wantCount = referenceLabels(want, c[0], c[1], c[3], c[4], c[5] == 0);
    ASSERT_EQ(vnxStatusOk, vnxiLabelMarkersGetBufferSize_8u_C1R(img.size(), &size));
    vt::Span<vnx8u> buf(std::size_t(size), n % 8);
    ASSERT_EQ(vnxStatusOk, vnxiLabelMarkers_8u_C1IR(img.ptr(), img.step(), img.size(), c[3], c[4], c[5], &count, buf.data()));
    EXPECT_EQ(wantCount, count);
    VT_EXPECT_SAME_SAMPLES(want, img.pixels());
    EXPECT_TRUE(img.canaryIntact());
  }
}

// A 4x4 image; one fault (or a pair) a row; the markers and the count keep their values.
TEST(LabelMarkers, StatusesInCheckOrderAndNothingWritten) {
  vt::Image<vnx8u> img(4, 4);
  img.fill([](int x, int, int) { return x; });
  std::vector<vnx8u> buf(4096);
  int count = 77, size = 0;
  struct Row { const char* what; vnx8u *p, *b; int* n; int step; vnxiSize roi; int lo, hi, norm; vnxStatus want; };
  const Row rows[] = {{"null marker", nullptr, buf.data(), &count, 4, {4, 4}, 1, 2, 0, -8}, {"null buffer before size", img.ptr(), nullptr, &count, 4, {0, 4}, 1, 2, 0, -8},
      {"null count", img.ptr(), buf.data(), nullptr, 4, {4, 4}, 1, 2, 0, -8}, {"size before step", img.ptr(), buf.data(), &count, 1, {4, 0}, 1, 2, 0, -6},
      {"step before labels", img.ptr(), buf.data(), &count, 3, {4, 4}, 0, 2, 0, -14}, {"minLabel 0", img.ptr(), buf.data(), &count, 4, {4, 4}, 0, 2, 0, -5},
      {"maxLabel 255", img.ptr(), buf.data(), &count, 4, {4, 4}, 1, 255, 0, -5}, {"min above max", img.ptr(), buf.data(), &count, 4, {4, 4}, 5, 4, 0, -5},
      {"norm 2", img.ptr(), buf.data(), &count, 4, {4, 4}, 1, 2, 2, -5}};
  vt::expectStatuses(rows, {{img.ptr(), 16}, {&count, sizeof count}},
                     [&](const Row& r) { return vnxiLabelMarkers_8u_C1IR(r.p, r.step, r.roi, r.lo, r.hi, r.norm, r.n, r.b); });
  EXPECT_EQ(vnxStatusNullPtr, vnxiLabelMarkersGetBufferSize_8u_C1R({4, 4}, nullptr));
  EXPECT_EQ(vnxStatusBadSize, vnxiLabelMarkersGetBufferSize_8u_C1R({4, 0}, &size));
}

#ifdef VNX_HAVE_OPENCV
TEST(LabelMarkersOracle, CountsWhatOpenCVCounts) {
  const vnxiSize roi{160, 120};
  int size = 0;
  ASSERT_EQ(vnxiLabelMarkersGetBufferSize_8u_C1R(roi, &size), vnxStatusOk);
  std::vector<vnx8u> buffer(static_cast<std::size_t>(size)), markers(std::size_t(roi.width) * roi.height);
  std::mt19937 rng(3);
  for (double density : {0.3, 0.5, 0.7}) {
    std::bernoulli_distribution zero(density);
    for (auto& p : markers) p = zero(rng) ? 0 : 9;
    cv::Mat labels;
    const int theirs =
        cv::connectedComponents(cv::Mat(roi.height, roi.width, CV_8UC1, markers.data()).clone(), labels, 8, CV_32S) - 1;
    int ours = -1;
    ASSERT_EQ(vnxiLabelMarkers_8u_C1IR(markers.data(), roi.width, roi, 1, 254, 0, &ours, buffer.data()), vnxStatusOk);
    EXPECT_EQ(ours, theirs) << "density " << density;
  }
}
#endif

}  // namespace
