// Motion-history update and line sampling against references written from
// their rules.
#include <cmath>
#include <limits>
#include <string>

#include "support.h"

namespace {

// ---- motion history ------------------------------------------------------------

template <class S>
float refMotion(S silhouette, float h, float timestamp, float duration) {
  const float threshold = timestamp - duration;
  if (!(silhouette == 0)) return timestamp;
  if (h < threshold) return 0.0f;
  return h;
}

template <class S>
vnxStatus callMotion(const vt::Image<S>& s, vt::Image<vnx32f>& h, float ts, float dur) {
  if constexpr (std::is_same<S, vnx8u>::value)
    return vnxiUpdateMotionHistory_8u32f_C1IR(s.ptr(), s.step(), h.ptr(), h.step(), s.size(), ts, dur);
  else if constexpr (std::is_same<S, vnx16u>::value)
    return vnxiUpdateMotionHistory_16u32f_C1IR(s.ptr(), s.step(), h.ptr(), h.step(), s.size(), ts, dur);
  else
    return vnxiUpdateMotionHistory_32f_C1IR(s.ptr(), s.step(), h.ptr(), h.step(), s.size(), ts, dur);
}

template <class S>
void checkMotion() {
  std::mt19937 rng(5);
  const float nan = std::nanf("");
  const vnxiSize sizes[] = {{1, 1}, {15, 2}, {16, 3}, {17, 1}, {49, 9}, {300, 41}};
  for (vnxiSize sz : sizes)
    for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before})
      for (float dur : {0.0f, -0.0f, 3.0f, 100.0f}) {
        SCOPED_TRACE(std::to_string(sz.width) + "x" + std::to_string(sz.height) + " duration " + std::to_string(dur));
        vt::Image<S> sil(sz.width, sz.height, 1, 2 * sizeof(S), guard);
        vt::Image<vnx32f> mhi(sz.width, sz.height, 1, 12, guard);
        const float ts = 20.0f;
        // histories around the threshold (equal to it, just below and above), NaN and infinities
        const float hs[] = {ts - dur, std::nextafter(ts - dur, -1e9f), std::nextafter(ts - dur, 1e9f), 0.0f, -0.0f,
                            nan, -std::numeric_limits<float>::infinity(), ts, 7.0f, 19.5f};
        sil.fill([&](int, int, int) {
          const int r = int(rng() % 6);
          if constexpr (std::is_floating_point<S>::value) {
            const float v[] = {0.0f, -0.0f, nan, 1.0f, -2.5f, 0.0f};
            return v[r];
          } else {
            return r < 3 ? 0 : int(rng() % 200) + 1;
          }
        });
        mhi.fill([&](int, int, int) { return hs[rng() % 10]; });
        std::vector<float> expected;
        for (int y = 0; y < sz.height; ++y)
          for (int x = 0; x < sz.width; ++x) expected.push_back(refMotion(sil.at(x, y), mhi.at(x, y), ts, dur));
        ASSERT_EQ(callMotion(sil, mhi, ts, dur), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(expected, mhi.pixels());
        EXPECT_TRUE(mhi.canaryIntact());
      }
}

TEST(MotionHistory, FollowsTheRules8u) { checkMotion<vnx8u>(); }
TEST(MotionHistory, FollowsTheRules16u) { checkMotion<vnx16u>(); }
TEST(MotionHistory, FollowsTheRules32f) { checkMotion<vnx32f>(); }

TEST(MotionHistoryStatus, ChecksInOrder) {
  std::vector<vnx16u> s(64);
  std::vector<vnx32f> h(64, 5.0f);
  struct Case {
    const char* what;
    const vnx16u* s;
    int sStep;
    vnx32f* h;
    int hStep;
    vnxiSize roi;
    float dur;
    vnxStatus expected;
  } cases[] = {
      {"null history beats size", s.data(), 16, nullptr, 32, {0, 0}, 1, -8},
      {"zero height", s.data(), 16, h.data(), 32, {8, 0}, 1, -6},
      {"short silhouette", s.data(), 15, h.data(), 32, {8, 2}, 1, -14},
      {"odd silhouette, short history", s.data(), 17, h.data(), 28, {8, 2}, 1, -14},
      {"odd silhouette", s.data(), 17, h.data(), 32, {8, 2}, 1, -108},
      {"history 4w+2", s.data(), 16, h.data(), 34, {8, 2}, 1, -108},
      {"misaligned before negative duration", s.data(), 16, h.data(), 34, {8, 2}, -1, -108},
      {"negative duration", s.data(), 16, h.data(), 32, {8, 2}, -1, -11},
      {"NaN duration", s.data(), 16, h.data(), 32, {8, 2}, std::nanf(""), -11},
      {"minus zero duration", s.data(), 16, h.data(), 32, {8, 2}, -0.0f, 0},
  };
  for (const Case& c : cases) {
    std::fill(h.begin(), h.end(), 5.0f);
    EXPECT_EQ(vnxiUpdateMotionHistory_16u32f_C1IR(c.s, c.sStep, c.h, c.hStep, c.roi, 10.0f, c.dur), c.expected)
        << c.what;
    if (c.expected < 0) {
      for (float v : h) ASSERT_EQ(v, 5.0f) << c.what << ": written on error";
    }
  }
  vnx8u s8[3] = {};
  vnx32f h8[3] = {};
  EXPECT_EQ(vnxiUpdateMotionHistory_8u32f_C1IR(s8, 3, h8, 12, {3, 1}, 1, 1), vnxStatusOk);  // odd 8u step is fine
  EXPECT_EQ(vnxiUpdateMotionHistory_32f_C1IR(h8, 10, h8, 12, {2, 1}, 1, 1), vnxStatusStepNotMultiple);
}

// ---- line sampling -------------------------------------------------------------

// Points of the digital line, found independently: along the longer axis (y on a
// tie) one step at a time, the other coordinate rounded from the exact line,
// with ties going toward the start. Equivalent to the integer walker.
std::vector<vnxiPoint> refLine(vnxiPoint a, vnxiPoint b) {
  const int dx = b.x - a.x, dy = b.y - a.y;
  const int n = std::max(std::abs(dx), std::abs(dy));
  std::vector<vnxiPoint> pts;
  const bool yMajor = std::abs(dx) <= std::abs(dy);
  for (int i = 0; i <= n; ++i) {
    if (n == 0) {
      pts.push_back(a);
      break;
    }
    // minor offset = floor((i * |minor| * 2 + |major| - 1) / (2 * |major|)) ... written as the walker's
    // invariant: the minor coordinate moves once the accumulated minor travel exceeds half a step.
    const int major = yMajor ? std::abs(dy) : std::abs(dx), minor = yMajor ? std::abs(dx) : std::abs(dy);
    const long num = 2L * i * minor;  // minor travel in half-steps times major
    const int off = num <= major ? 0 : int((num - major - 1) / (2L * major)) + 1;
    const int sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
    pts.push_back(yMajor ? vnxiPoint{a.x + sx * off, a.y + sy * i} : vnxiPoint{a.x + sx * i, a.y + sy * off});
  }
  return pts;
}

TEST(SampleLine, WalkerTakesTheDocumentedPixels) {
  // x major from (0,0) to (4,2): (0,0) (1,0) (2,1) (3,1) (4,2)
  const auto pts = refLine({0, 0}, {4, 2});
  const vnxiPoint want[] = {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}};
  ASSERT_EQ(pts.size(), 5u);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(pts[i].x == want[i].x && pts[i].y == want[i].y) << i;
}

template <class T, int C, class F>
void checkSampleLine(F fn, const char* name) {
  std::mt19937 rng(3);
  for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before}) {
    vt::Image<T> img(23, 17, C, 2 * sizeof(T), guard);
    img.fill([](int x, int y, int c) { return (x * 7 + y * 31 + c * 3) % 251; });
    for (int trial = 0; trial < 300; ++trial) {
      vnxiPoint a{int(rng() % 23), int(rng() % 17)}, b{int(rng() % 23), int(rng() % 17)};
      if (trial == 0) a = b = {22, 16};
      if (trial == 1) a = {3, 3}, b = {0, 0};
      const auto pts = refLine(a, b);
      std::vector<T> out(pts.size() * C + 4, T(99)), expected(out);
      for (std::size_t i = 0; i < pts.size(); ++i)
        for (int c = 0; c < C; ++c) expected[i * C + c] = img.at(pts[i].x, pts[i].y, c);
      ASSERT_EQ(fn(img.ptr(), img.step(), img.size(), out.data(), a, b), vnxStatusOk) << name;
      VT_EXPECT_SAME_SAMPLES(expected, out);
    }
  }
}

TEST(SampleLine, EveryMemberCopiesTheLineInOrder) {
  checkSampleLine<vnx8u, 1>(vnxiSampleLine_8u_C1R, "8u_C1R");
  checkSampleLine<vnx8u, 3>(vnxiSampleLine_8u_C3R, "8u_C3R");
  checkSampleLine<vnx16u, 1>(vnxiSampleLine_16u_C1R, "16u_C1R");
  checkSampleLine<vnx16u, 3>(vnxiSampleLine_16u_C3R, "16u_C3R");
  checkSampleLine<vnx32f, 1>(vnxiSampleLine_32f_C1R, "32f_C1R");
  checkSampleLine<vnx32f, 3>(vnxiSampleLine_32f_C3R, "32f_C3R");
}

TEST(SampleLineStatus, ChecksInOrder) {
  std::vector<vnx32f> img(60), out(16, -1.0f);
  struct Case {
    const char* what;
    const vnx32f* src;
    int step;
    vnxiSize roi;
    vnx32f* dst;
    vnxiPoint a, b;
    vnxStatus expected;
  } cases[] = {
      {"null destination", img.data(), 40, {10, 6}, nullptr, {0, 0}, {1, 1}, -8},
      {"zero width", img.data(), 40, {0, 6}, out.data(), {0, 0}, {1, 1}, -6},
      {"short step", img.data(), 36, {10, 6}, out.data(), {0, 0}, {1, 1}, -14},
      {"misaligned step beats bad point", img.data(), 42, {10, 6}, out.data(), {-1, 0}, {1, 1}, -108},
      {"end x at width", img.data(), 40, {10, 6}, out.data(), {0, 0}, {10, 1}, -11},
      {"start y negative", img.data(), 40, {10, 6}, out.data(), {0, -1}, {1, 1}, -11},
      {"end y at height", img.data(), 40, {10, 6}, out.data(), {0, 0}, {0, 6}, -11},
      {"corners", img.data(), 40, {10, 6}, out.data(), {9, 5}, {0, 0}, 0},
  };
  for (const Case& c : cases) {
    std::fill(out.begin(), out.end(), -1.0f);
    EXPECT_EQ(vnxiSampleLine_32f_C1R(c.src, c.step, c.roi, c.dst, c.a, c.b), c.expected) << c.what;
    if (c.expected < 0) {
      for (float v : out) ASSERT_EQ(v, -1.0f) << c.what;
    }
  }
}

}  // namespace
