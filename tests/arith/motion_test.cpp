// Motion-history update against a reference written from its rules.
#include <cmath>
#include <limits>
#include <string>

#include "support.h"

namespace {

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

}  // namespace
