// Pyramidal Lucas-Kanade flow: a known sub-pixel motion of a smooth texture, identical
// images, uniform windows, windows outside the image, the level factor with two
// levels, thread counts and the check order; OpenCV's flow as a second oracle.
#include <cmath>

#include "filters/vncvderivative.h"
#include "support.h"
#ifdef VNX_HAVE_OPENCV
#include <opencv2/video/tracking.hpp>
#endif

namespace {

double texture(double x, double y) {
  return 128 + 50 * std::sin(x * 0.31 + y * 0.12) + 40 * std::cos(y * 0.27 - x * 0.07) + 20 * std::sin(0.05 * x * y / 9);
}

// A rate-2 pyramid whose levels are made with the layer down step and the 1 4 6 4 1 kernel.
template <class T>
struct Pyr {
  vnxiPyramid* rec = nullptr;
  std::vector<std::vector<T>> levels;
  Pyr(int w, int h, int maxLev, double sx, double sy, bool uniform = false) {
    EXPECT_EQ(vnxiPyramidInitAlloc(&rec, maxLev, {w, h}, 2.0f), vnxStatusOk);
    levels.resize(rec->level + 1);
    for (int k = 0; k <= rec->level; ++k) {
      const vnxiSize s = rec->pRoi[k];
      levels[k].resize(size_t(s.width) * s.height);
      rec->pImage[k] = levels[k].data();
      rec->pStep[k] = s.width * int(sizeof(T));
      for (int y = 0; k == 0 && y < h; ++y)
        for (int x = 0; x < w; ++x) levels[0][size_t(y) * w + x] = T(uniform ? 90 : std::lround(texture(x - sx, y - sy)));
      if (k == 0) continue;
      if constexpr (std::is_same<T, vnx8u>::value) down<vnx16s>(k, vnxiPyramidLayerDownInitAlloc_8u_C1R, vnxiPyramidLayerDown_8u_C1R);
      if constexpr (std::is_same<T, vnx16u>::value) down<vnx16s>(k, vnxiPyramidLayerDownInitAlloc_16u_C1R, vnxiPyramidLayerDown_16u_C1R);
      if constexpr (std::is_same<T, vnx32f>::value) down<float>(k, vnxiPyramidLayerDownInitAlloc_32f_C1R, vnxiPyramidLayerDown_32f_C1R);
    }
  }
  template <class K, class Init, class Down>
  void down(int k, Init init, Down fn) {
    const K ker[5] = {1, 4, 6, 4, 1};
    vnxiPyramidState* st = nullptr;
    ASSERT_EQ(init(&st, rec->pRoi[k - 1], 2.0f, ker, 5, 2), vnxStatusOk);
    EXPECT_EQ(fn(levels[k - 1].data(), rec->pStep[k - 1], rec->pRoi[k - 1], levels[k].data(), rec->pStep[k], rec->pRoi[k], st),
              vnxStatusOk);
    vnxiPyramidLayerDownFree_8u_C1R(st);
  }
  ~Pyr() { vnxiPyramidFree(rec); }
};

struct Result { std::vector<vnxiPoint32f> next; std::vector<vnx8u> status; std::vector<vnx32f> error; };

template <class T, class Init, class Flow>
Result track(Init init, Flow flow, const Pyr<T>& a, const Pyr<T>& b, const std::vector<vnxiPoint32f>& pts,
             int maxLev, int win = 11, int threads = 1, const std::vector<vnxiPoint32f>& start = {}) {
  vt::Threads t(threads);
  vnxiOptFlowPyrLKState* st = nullptr;
  EXPECT_EQ(init(&st, a.rec->pRoi[0], win, 0), vnxStatusOk);
  Result r{start.empty() ? pts : start, std::vector<vnx8u>(pts.size(), 99), std::vector<vnx32f>(pts.size(), -1.0f)};
  EXPECT_EQ(flow(a.rec, b.rec, pts.data(), r.next.data(), r.status.data(), r.error.data(), int(pts.size()), win,
                 maxLev, 30, 1e-4f, st),
            vnxStatusOk);
  vnxiOpticalFlowPyrLKFree_8u_C1R(st);
  return r;
}

std::vector<vnxiPoint32f> grid() {
  std::vector<vnxiPoint32f> p;
  for (int y = 20; y < 100; y += 9)
    for (int x = 20; x < 140; x += 11) p.push_back({float(x) + 0.25f, float(y) - 0.4f});
  return p;
}

template <class T, class Init, class Flow>
void checkKnownMotion(Init init, Flow flow) {
  const double sx = 2.3, sy = -1.6;
  Pyr<T> a(160, 120, 2, 0, 0), b(160, 120, 2, sx, sy), a2(160, 120, 2, 0, 0);
  const auto pts = grid();
  for (int win : {11, 21}) {
    const Result r = track(init, flow, a, b, pts, 2, win);
    int tracked = 0;
    for (size_t i = 0; i < pts.size(); ++i) {
      if (r.status[i] != 0) continue;
      ++tracked;
      EXPECT_NEAR(r.next[i].x, pts[i].x + sx, 0.1) << i;
      EXPECT_NEAR(r.next[i].y, pts[i].y + sy, 0.1) << i;
    }
    EXPECT_GE(tracked, int(pts.size()) * 9 / 10);
    // thread counts change nothing; identical images: every point converges at once, nothing moves, no error
    for (int n : vt::threadCounts()) {
      const Result m = track(init, flow, a, b, pts, 2, win, n), same = track(init, flow, a, a2, pts, 2, win, n);
      for (size_t i = 0; i < pts.size(); ++i) {
        EXPECT_TRUE(m.status[i] == r.status[i] && vt::bits(m.next[i].x) == vt::bits(r.next[i].x) &&
                    vt::bits(m.next[i].y) == vt::bits(r.next[i].y) && vt::bits(m.error[i]) == vt::bits(r.error[i]))
            << "point " << i << " threads " << n;
        EXPECT_TRUE(same.status[i] == 0 && vt::bits(same.next[i].x) == vt::bits(pts[i].x) &&
                    vt::bits(same.next[i].y) == vt::bits(pts[i].y) && same.error[i] == 0.0f)
            << "point " << i << " threads " << n;
      }
    }
  }
}

TEST(OpticalFlow, TracksAKnownMotionEveryType) {
  checkKnownMotion<vnx8u>(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R);
  checkKnownMotion<vnx16u>(vnxiOpticalFlowPyrLKInitAlloc_16u_C1R, vnxiOpticalFlowPyrLK_16u_C1R);
  checkKnownMotion<vnx32f>(vnxiOpticalFlowPyrLKInitAlloc_32f_C1R, vnxiOpticalFlowPyrLK_32f_C1R);
}

#ifdef VNX_HAVE_OPENCV
// A second oracle: OpenCV's flow, with the same Scharr derivatives and bilinear windows,
// tracks the grid to within a tenth of a pixel of ours (its own pyramids round a little
// differently).
TEST(OpticalFlow, TracksTheSamePointsAsOpenCV) {
  Pyr<vnx8u> a(160, 120, 2, 0, 0), b(160, 120, 2, 2.3, -1.6);
  const auto pts = grid();
  const Result r = track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, a, b, pts, 2, 21);
  std::vector<cv::Point2f> prev, next;
  for (const vnxiPoint32f& p : pts) prev.push_back({p.x, p.y});
  std::vector<uchar> status;
  std::vector<float> err;
  cv::calcOpticalFlowPyrLK(cv::Mat(120, 160, CV_8UC1, a.levels[0].data()), cv::Mat(120, 160, CV_8UC1, b.levels[0].data()),
                           prev, next, status, err, {21, 21}, 2,
                           cv::TermCriteria(cv::TermCriteria::COUNT | cv::TermCriteria::EPS, 30, 0.01));
  int both = 0;
  for (size_t i = 0; i < pts.size(); ++i)
    if (r.status[i] == 0 && status[i]) {
      ++both;
      EXPECT_NEAR(r.next[i].x, next[i].x, 0.1) << i;
      EXPECT_NEAR(r.next[i].y, next[i].y, 0.1) << i;
    }
  EXPECT_GE(both, int(pts.size()) * 9 / 10);
}
#endif

TEST(OpticalFlow, LostPointsAndLevelFactor) {
  Pyr<vnx8u> flat1(160, 120, 2, 0, 0, true), flat2(160, 120, 2, 0, 0, true), a(160, 120, 2, 0, 0), b(160, 120, 2, 0, 0);
  const std::vector<vnxiPoint32f> pts = {{60.5f, 60.5f}};
  auto run = [&](const Pyr<vnx8u>& p, const Pyr<vnx8u>& q, int maxLev, const std::vector<vnxiPoint32f>& start = {}) {
    return track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, p, q, pts, maxLev, 11, 1, start);
  };
  // a uniform window has no gradient: lost at the coarsest level
  EXPECT_EQ(run(flat1, flat2, 2).status[0], 3);
  EXPECT_EQ(run(flat1, flat2, 0).status[0], 1);
  // maxLev = 0 tracks on the base level only
  const Result r0 = run(a, b, 0);
  EXPECT_TRUE(r0.status[0] == 0 && r0.next[0].x == 60.5f);
  // with two levels the level-1 estimate (30.25, 30.25) reaches level 0 unscaled, 30 pixels off
  const Result r1 = run(a, b, 1);
  EXPECT_FALSE(r1.status[0] == 0 && std::fabs(r1.next[0].x - 60.5f) < 1.0f);
  // a second window wholly outside the image: lost at the coarsest level, pNext kept, no error
  const Result out = run(a, b, 2, {{-500.0f, 30.0f}});
  EXPECT_TRUE(out.status[0] == 3 && out.next[0].x == -500.0f && out.error[0] == 0.0f);
}

TEST(OpticalFlow, CheckOrder) {
  Pyr<vnx8u> a(40, 30, 1, 0, 0);
  vnxiOptFlowPyrLKState* st = nullptr;
  EXPECT_EQ(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(nullptr, {0, 0}, 0, 0), vnxStatusNullPtr);
  EXPECT_EQ(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, {40, 0}, 5, 0), vnxStatusBadSize);
  EXPECT_EQ(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, {40, 30}, 0, 0), vnxStatusBadSize);
  ASSERT_EQ(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, {40, 30}, 5, 0), vnxStatusOk);
  vnxiPoint32f p = {10, 10}, n = {10, 10};
  vnx8u s = 77;
  vnx32f e = 5;
  struct Row { const char* what; const vnxiPyramid* pyr; vnx8u* status; int num, win, lev, iter; float thr; vnxStatus want; } rows[] = {
      {"null pyramid before count", nullptr, &s, 0, 0, -1, 0, -1, -8}, {"null status", a.rec, nullptr, 1, 5, 0, 1, 0, -8},
      {"count before window", a.rec, &s, 0, 5, -1, 0, -1, -6},        {"window 0", a.rec, &s, 1, 0, -1, 0, -1, -6},
      {"window above the state's", a.rec, &s, 1, 7, -1, 0, -1, -6},    {"level -1", a.rec, &s, 1, 5, -1, 1, 0, -5},
      {"no iterations", a.rec, &s, 1, 5, 0, 0, 0, -5},                 {"threshold below 0", a.rec, &s, 1, 5, 0, 1, -0.5f, -5},
      {"level above the pyramid's", a.rec, &s, 1, 5, 2, 1, 0, -5},    {"valid", a.rec, &s, 1, 5, 1, 1, 0, 0}};
  vt::expectStatuses(rows, {{&s, 1}, {&n, sizeof n}, {&e, sizeof e}}, [&](const Row& r) {
    return vnxiOpticalFlowPyrLK_8u_C1R(r.pyr, a.rec, &p, &n, r.status, &e, r.num, r.win, r.lev, r.iter, r.thr, st);
  });
  EXPECT_EQ(vnxiOpticalFlowPyrLK_16u_C1R(a.rec, a.rec, &p, &n, &s, &e, 1, 5, 0, 1, 0, st), vnxStatusBadArg);  // an 8u state
  EXPECT_EQ(vnxiOpticalFlowPyrLKFree_32f_C1R(st), vnxStatusOk);
  EXPECT_EQ(vnxiOpticalFlowPyrLKFree_16u_C1R(nullptr), vnxStatusNullPtr);
}

// The patch derivatives the flow takes from the filters, vectors against a plain
// reference: 16s patches round (s + 16) >> 5, floats multiply by 1/32 after the taps
// in their order, at every rectangle width from 1 to three vectors.
template <class P>
void checkScharrPatch(std::mt19937& rng) {
  const int side = 30;
  std::vector<P> p(side * side), dx(side * side, P(-7)), dy = dx, ex = dx, ey = dx;
  for (P& v : p) v = std::is_same<P, float>::value ? P(float(rng() % 100000) / 9.0f) : P(rng() % 32641);
  for (int x1 = 1; x1 < side - 1; ++x1) {
    ownScharrPatch(p.data(), side, 1, 2, x1, side - 3, dx.data(), dy.data());
    for (int y = 2; y <= side - 3; ++y)
      for (int x = 1; x <= x1; ++x) {
        using A = typename std::conditional<std::is_same<P, float>::value, float, int>::type;
        auto at = [&](int ox, int oy) { return A(p[(y + oy) * side + x + ox]); };
        const A gx = 3 * (at(1, -1) - at(-1, -1)) + 10 * (at(1, 0) - at(-1, 0)) + 3 * (at(1, 1) - at(-1, 1));
        const A gy = 3 * (at(-1, 1) - at(-1, -1)) + 10 * (at(0, 1) - at(0, -1)) + 3 * (at(1, 1) - at(1, -1));
        ex[y * side + x] = std::is_same<P, float>::value ? P(gx * 0.03125f) : P(std::floor((gx + 16) / 32.0));
        ey[y * side + x] = std::is_same<P, float>::value ? P(gy * 0.03125f) : P(std::floor((gy + 16) / 32.0));
      }
    VT_EXPECT_SAME_SAMPLES(ex, dx);
    VT_EXPECT_SAME_SAMPLES(ey, dy);
  }
}

TEST(OpticalFlow, ScharrPatchMatchesReference) {
  std::mt19937 rng(9);
  checkScharrPatch<vnx16s>(rng);
  checkScharrPatch<vnx32f>(rng);
}

}  // namespace
