// Pyramidal Lucas-Kanade flow: a known sub-pixel motion of a smooth texture, identical
// images, uniform windows, windows outside the image, the level factor with two
// levels, thread counts and the check order.
#include <cmath>

#include "support.h"

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
    levels[0].resize(size_t(w) * h);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) levels[0][size_t(y) * w + x] = T(uniform ? 90 : std::lround(texture(x - sx, y - sy)));
    for (int k = 0; k <= rec->level; ++k) {
      if (k > 0) {
        levels[k].resize(size_t(rec->pRoi[k].width) * rec->pRoi[k].height);
        vnxiPyramidState* st = nullptr;
        const int s = int(sizeof(T));
        if constexpr (std::is_same<T, float>::value) {
          const float ker[5] = {1, 4, 6, 4, 1};
          EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_32f_C1R(&st, rec->pRoi[k - 1], 2.0f, ker, 5, 2), vnxStatusOk);
          EXPECT_EQ(vnxiPyramidLayerDown_32f_C1R(levels[k - 1].data(), rec->pRoi[k - 1].width * s, rec->pRoi[k - 1],
                                                 levels[k].data(), rec->pRoi[k].width * s, rec->pRoi[k], st), vnxStatusOk);
        } else {
          const short ker[5] = {1, 4, 6, 4, 1};
          if constexpr (std::is_same<T, vnx8u>::value) {
            EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_8u_C1R(&st, rec->pRoi[k - 1], 2.0f, ker, 5, 2), vnxStatusOk);
            EXPECT_EQ(vnxiPyramidLayerDown_8u_C1R(levels[k - 1].data(), rec->pRoi[k - 1].width, rec->pRoi[k - 1],
                                                  levels[k].data(), rec->pRoi[k].width, rec->pRoi[k], st), vnxStatusOk);
          } else {
            EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C1R(&st, rec->pRoi[k - 1], 2.0f, ker, 5, 2), vnxStatusOk);
            EXPECT_EQ(vnxiPyramidLayerDown_16u_C1R(levels[k - 1].data(), rec->pRoi[k - 1].width * s, rec->pRoi[k - 1],
                                                   levels[k].data(), rec->pRoi[k].width * s, rec->pRoi[k], st), vnxStatusOk);
          }
        }
        vnxiPyramidLayerDownFree_8u_C1R(st);
      }
      rec->pImage[k] = levels[k].data();
      rec->pStep[k] = rec->pRoi[k].width * int(sizeof(T));
    }
  }
  ~Pyr() { vnxiPyramidFree(rec); }
};

template <class T>
using FlowFn = vnxStatus (*)(const vnxiPyramid*, const vnxiPyramid*, const vnxiPoint32f*, vnxiPoint32f*, vnx8u*,
                             vnx32f*, int, int, int, int, vnx32f, vnxiOptFlowPyrLKState*);
template <class T>
using InitFn = vnxStatus (*)(vnxiOptFlowPyrLKState**, vnxiSize, int, int);

struct Result {
  std::vector<vnxiPoint32f> next;
  std::vector<vnx8u> status;
  std::vector<vnx32f> error;
};

template <class T>
Result track(InitFn<T> init, FlowFn<T> flow, const Pyr<T>& a, const Pyr<T>& b, const std::vector<vnxiPoint32f>& pts,
             int maxLev, int win = 11, int threads = 1) {
  vt::Threads t(threads);
  vnxiOptFlowPyrLKState* st = nullptr;
  EXPECT_EQ(init(&st, a.rec->pRoi[0], win, 0), vnxStatusOk);
  Result r{pts, std::vector<vnx8u>(pts.size(), 99), std::vector<vnx32f>(pts.size(), -1.0f)};
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

template <class T>
void checkKnownMotion(InitFn<T> init, FlowFn<T> flow) {
  const double sx = 2.3, sy = -1.6;
  Pyr<T> a(160, 120, 2, 0, 0), b(160, 120, 2, sx, sy), a2(160, 120, 2, 0, 0);
  const auto pts = grid();
  const Result r = track(init, flow, a, b, pts, 2);
  int tracked = 0;
  for (size_t i = 0; i < pts.size(); ++i) {
    if (r.status[i] != 0) continue;
    ++tracked;
    EXPECT_NEAR(r.next[i].x, pts[i].x + sx, 0.1) << i;
    EXPECT_NEAR(r.next[i].y, pts[i].y + sy, 0.1) << i;
  }
  EXPECT_GE(tracked, int(pts.size()) * 9 / 10);
  // identical images: every point converges at once, nothing moves, no error
  const Result same = track(init, flow, a, a2, pts, 2);
  for (size_t i = 0; i < pts.size(); ++i) {
    EXPECT_EQ(same.status[i], 0);
    EXPECT_EQ(vt::bits(same.next[i].x), vt::bits(pts[i].x));
    EXPECT_EQ(vt::bits(same.next[i].y), vt::bits(pts[i].y));
    EXPECT_EQ(same.error[i], 0.0f);
  }
  // thread counts change nothing
  for (int n : vt::threadCounts()) {
    const Result m = track(init, flow, a, b, pts, 2, 11, n);
    for (size_t i = 0; i < pts.size(); ++i) {
      EXPECT_EQ(m.status[i], r.status[i]);
      EXPECT_EQ(vt::bits(m.next[i].x), vt::bits(r.next[i].x));
      EXPECT_EQ(vt::bits(m.error[i]), vt::bits(r.error[i]));
    }
  }
}

TEST(OpticalFlow, TracksAKnownMotionEveryType) {
  checkKnownMotion<vnx8u>(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R);
  checkKnownMotion<vnx16u>(vnxiOpticalFlowPyrLKInitAlloc_16u_C1R, vnxiOpticalFlowPyrLK_16u_C1R);
  checkKnownMotion<vnx32f>(vnxiOpticalFlowPyrLKInitAlloc_32f_C1R, vnxiOpticalFlowPyrLK_32f_C1R);
}

TEST(OpticalFlow, LostPointsAndLevelFactor) {
  Pyr<vnx8u> flat1(160, 120, 2, 0, 0, true), flat2(160, 120, 2, 0, 0, true), a(160, 120, 2, 0, 0), b(160, 120, 2, 0, 0);
  const std::vector<vnxiPoint32f> pts = {{60.5f, 60.5f}};
  // a uniform window has no gradient: lost at the coarsest level
  EXPECT_EQ(track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, flat1, flat2, pts, 2).status[0], 3);
  EXPECT_EQ(track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, flat1, flat2, pts, 0).status[0], 1);
  // maxLev = 0 tracks on the base level only
  Result r0 = track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, a, b, pts, 0);
  EXPECT_EQ(r0.status[0], 0);
  EXPECT_EQ(r0.next[0].x, 60.5f);
  // with two levels the level-1 estimate (30.25, 30.25) reaches level 0 unscaled, 30 pixels off
  Result r1 = track(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R, vnxiOpticalFlowPyrLK_8u_C1R, a, b, pts, 1);
  EXPECT_FALSE(r1.status[0] == 0 && std::fabs(r1.next[0].x - 60.5f) < 1.0f);
  // a second window wholly outside the image: lost at the coarsest level, pNext kept
  vnxiOptFlowPyrLKState* st = nullptr;
  ASSERT_EQ(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, {160, 120}, 11, 0), vnxStatusOk);
  vnxiPoint32f next = {-500.0f, 30.0f};
  vnx8u status = 0;
  vnx32f err = -1;
  ASSERT_EQ(vnxiOpticalFlowPyrLK_8u_C1R(a.rec, b.rec, pts.data(), &next, &status, &err, 1, 11, 2, 10, 0.01f, st), vnxStatusOk);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(next.x, -500.0f);
  EXPECT_EQ(err, 0.0f);
  EXPECT_EQ(vnxiOpticalFlowPyrLKFree_8u_C1R(st), vnxStatusOk);
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
  struct Row { const vnxiPyramid* pyr; vnx8u* status; int num, win, lev, iter; float thr; vnxStatus st; } rows[] = {
      {nullptr, &s, 0, 0, -1, 0, -1, vnxStatusNullPtr}, {a.rec, nullptr, 1, 5, 0, 1, 0, vnxStatusNullPtr},
      {a.rec, &s, 0, 5, -1, 0, -1, vnxStatusBadSize},  {a.rec, &s, 1, 0, -1, 0, -1, vnxStatusBadSize},
      {a.rec, &s, 1, 7, -1, 0, -1, vnxStatusBadSize},  {a.rec, &s, 1, 5, -1, 1, 0, vnxStatusBadArg},
      {a.rec, &s, 1, 5, 0, 0, 0, vnxStatusBadArg},     {a.rec, &s, 1, 5, 0, 1, -0.5f, vnxStatusBadArg},
      {a.rec, &s, 1, 5, 2, 1, 0, vnxStatusBadArg},     {a.rec, &s, 1, 5, 1, 1, 0, vnxStatusOk}};
  for (const Row& r : rows) {
    s = 77;
    EXPECT_EQ(vnxiOpticalFlowPyrLK_8u_C1R(r.pyr, a.rec, &p, &n, r.status, &e, r.num, r.win, r.lev, r.iter, r.thr, st), r.st);
    if (r.st < 0) {
      EXPECT_EQ(s, 77);
    }
  }
  EXPECT_EQ(vnxiOpticalFlowPyrLK_16u_C1R(a.rec, a.rec, &p, &n, &s, &e, 1, 5, 0, 1, 0, st), vnxStatusBadArg);  // an 8u state
  EXPECT_EQ(vnxiOpticalFlowPyrLKFree_32f_C1R(st), vnxStatusOk);
  EXPECT_EQ(vnxiOpticalFlowPyrLKFree_16u_C1R(nullptr), vnxStatusNullPtr);
}

}  // namespace
