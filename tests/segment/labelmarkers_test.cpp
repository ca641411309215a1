// Marker labelling against a raster-order breadth-first labelling written from the
// contract: binarised markers, labels minLabel .. maxLabel and round again, the
// count of every component; the check order.
#include <deque>
#include <string>

#include "support.h"

namespace {

int referenceLabels(std::vector<vnx8u>& px, int w, int h, int minLabel, int maxLabel, bool eight) {
  for (vnx8u& v : px) v = v ? 255 : 0;
  int label = minLabel, count = 0;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (px[std::size_t(y) * w + x] != 255) continue;
      std::deque<std::pair<int, int>> q{{x, y}};
      px[std::size_t(y) * w + x] = vnx8u(label);
      while (!q.empty()) {
        const auto [cx, cy] = q.front();
        q.pop_front();
        for (int dy = -1; dy <= 1; ++dy)
          for (int dx = -1; dx <= 1; ++dx) {
            const int nx = cx + dx, ny = cy + dy;
            if ((!dx && !dy) || (!eight && dx && dy) || nx < 0 || ny < 0 || nx >= w || ny >= h) continue;
            vnx8u& v = px[std::size_t(ny) * w + nx];
            if (v == 255) v = vnx8u(label), q.push_back({nx, ny});
          }
      }
      label = label + 1 > maxLabel ? minLabel : label + 1;
      ++count;
    }
  return count;
}

struct LabelCase {
  int w, h, density;  // one pixel in `density` is a marker (0: none)
  int minLabel, maxLabel, norm;
};

TEST(LabelMarkers, MatchesRasterOrderLabelling) {
  const LabelCase cases[] = {{1, 1, 1, 1, 254, 0},  {1, 1, 0, 1, 254, 1}, {17, 15, 2, 1, 254, 1},
                             {17, 15, 2, 1, 254, 0}, {33, 7, 3, 5, 9, 1},  {64, 48, 2, 1, 2, 0},
                             {64, 48, 4, 7, 7, 1},   {128, 96, 2, 1, 254, 1}, {200, 3, 2, 100, 101, 0}};
  int n = 0;
  for (const LabelCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.w) + "x" + std::to_string(c.h) + " norm " + std::to_string(c.norm));
    std::mt19937 rng(c.w * 13 + c.h);
    vt::Image<vnx8u> img(c.w, c.h, 1, 3, n++ % 2 ? vt::Guard::After : vt::Guard::Before);
    img.fill([&](int, int, int) { return c.density && rng() % c.density == 0 ? 1 + rng() % 255 : 0; });
    std::vector<vnx8u> want = img.pixels();
    const int wantCount = referenceLabels(want, c.w, c.h, c.minLabel, c.maxLabel, c.norm == 0);
    int size = 0, count = -1;
    ASSERT_EQ(vnxStatusOk, vnxiLabelMarkersGetBufferSize_8u_C1R(img.size(), &size));
    vt::Span<vnx8u> buf(std::size_t(size), n % 8);
    ASSERT_EQ(vnxStatusOk, vnxiLabelMarkers_8u_C1IR(img.ptr(), img.step(), img.size(), c.minLabel, c.maxLabel,
                                                    c.norm, &count, buf.data()));
    EXPECT_EQ(wantCount, count);
    VT_EXPECT_SAME_SAMPLES(want, img.pixels());
    EXPECT_TRUE(img.canaryIntact());
  }
}

TEST(LabelMarkers, StatusesInCheckOrderAndNothingWritten) {
  vt::Image<vnx8u> img(4, 4);
  img.fill([](int x, int, int) { return x; });
  std::vector<vnx8u> buf(4096);
  int count = 77;
  struct Row { const char* what; vnx8u* p; int step; vnxiSize roi; int lo, hi, norm; vnx8u* b; vnxStatus want; };
  const Row rows[] = {
      {"null marker", nullptr, 4, {4, 4}, 1, 2, 0, buf.data(), vnxStatusNullPtr},
      {"null buffer before size", img.ptr(), 4, {0, 4}, 1, 2, 0, nullptr, vnxStatusNullPtr},
      {"size before step", img.ptr(), 1, {4, 0}, 1, 2, 0, buf.data(), vnxStatusBadSize},
      {"step before labels", img.ptr(), 3, {4, 4}, 0, 2, 0, buf.data(), vnxStatusBadStep},
      {"minLabel 0", img.ptr(), 4, {4, 4}, 0, 2, 0, buf.data(), vnxStatusBadArg},
      {"maxLabel 255", img.ptr(), 4, {4, 4}, 1, 255, 0, buf.data(), vnxStatusBadArg},
      {"min above max", img.ptr(), 4, {4, 4}, 5, 4, 0, buf.data(), vnxStatusBadArg},
      {"norm 2", img.ptr(), 4, {4, 4}, 1, 2, 2, buf.data(), vnxStatusBadArg},
  };
  const auto before = img.pixels();
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    EXPECT_EQ(r.want, vnxiLabelMarkers_8u_C1IR(r.p, r.step, r.roi, r.lo, r.hi, r.norm, &count, r.b));
  }
  EXPECT_EQ(vnxStatusNullPtr, vnxiLabelMarkers_8u_C1IR(img.ptr(), 4, {4, 4}, 1, 2, 0, nullptr, buf.data()));
  EXPECT_EQ(77, count);
  VT_EXPECT_SAME_SAMPLES(before, img.pixels());
  int size = 0;
  EXPECT_EQ(vnxStatusNullPtr, vnxiLabelMarkersGetBufferSize_8u_C1R({4, 4}, nullptr));
  EXPECT_EQ(vnxStatusBadSize, vnxiLabelMarkersGetBufferSize_8u_C1R({4, 0}, &size));
}

}  // namespace
