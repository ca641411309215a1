// Line sampling against a reference written from the digital-line rule, and the
// walker on lines longer than 2^30 pixels.
#include <cstdlib>

#include "geometry/vncvsampleline.h"
#include "support.h"

namespace {

// Point i of the digital line, found independently: along the longer axis (y on a
// tie) one step at a time, the other coordinate rounded from the exact line, ties
// toward the start. The minor coordinate moves once the minor travel 2 i |minor|
// exceeds the major extent by a whole step of 2 |major| (below 2^63 for any ROI).
vnxiPoint refLinePoint(vnxiPoint a, vnxiPoint b, std::int64_t i) {
  const std::int64_t dx = std::int64_t(b.x) - a.x, dy = std::int64_t(b.y) - a.y;
  const bool yMajor = std::llabs(dx) <= std::llabs(dy);
  const std::int64_t major = yMajor ? std::llabs(dy) : std::llabs(dx), minor = yMajor ? std::llabs(dx) : std::llabs(dy);
  if (major == 0) return a;
  const std::int64_t travel = 2 * i * minor;
  const std::int64_t off = travel <= major ? 0 : std::int64_t((travel - major - 1) / (2 * major)) + 1;
  const std::int64_t sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
  return yMajor ? vnxiPoint{int(a.x + sx * off), int(a.y + sy * i)} : vnxiPoint{int(a.x + sx * i), int(a.y + sy * off)};
}
std::vector<vnxiPoint> refLine(vnxiPoint a, vnxiPoint b) {
  const int n = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
  std::vector<vnxiPoint> pts;
  for (int i = 0; i <= n; ++i) pts.push_back(refLinePoint(a, b, i));
  return pts;
}

// Lines longer than 2^30 pixels: twice an extent does not fit an int. The walker,
// with x moves of 1 and y moves of 2^31, must still take the pixels of the
// reference (checked along the first 4096 samples, where a wrapped term shows).
TEST(SampleLine, WalkerStaysExactOnLinesLongerThan2To30) {
  const std::int64_t kRow = std::int64_t(1) << 31;
  const vnxiPoint lines[][2] = {{{0, 0}, {2147483646, 2147483645}},
                                {{2147483646, 5}, {0, 1073741900}},
                                {{3, 2147483000}, {1073741830, 0}}};
  for (const auto& l : lines) {
    const vnxiPoint a = l[0], b = l[1];
    ownLineWalker w = ownLineSetup(1, kRow, a, b);
    const std::int64_t n = std::max(std::llabs(std::int64_t(b.x) - a.x), std::llabs(std::int64_t(b.y) - a.y)) + 1;
    ASSERT_EQ(w.count, n);
    std::int64_t at = a.x + a.y * kRow;
    for (std::int64_t i = 0; i < 4096; ++i, at += w.advance()) {
      const vnxiPoint p = refLinePoint(a, b, i);
      ASSERT_EQ(at, p.x + p.y * kRow) << "sample " << i;
    }
  }
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
  const struct {
    const char* what;
    vnx32f* dst;
    int step, width;
    vnxiPoint a, b;
    vnxStatus expected;
  } cases[] = {
      {"null destination", nullptr, 40, 10, {0, 0}, {1, 1}, -8},
      {"zero width", out.data(), 40, 0, {0, 0}, {1, 1}, -6},
      {"short step", out.data(), 36, 10, {0, 0}, {1, 1}, -14},
      {"misaligned step beats bad point", out.data(), 42, 10, {-1, 0}, {1, 1}, -108},
      {"end x at width", out.data(), 40, 10, {0, 0}, {10, 1}, -11},
      {"start y negative", out.data(), 40, 10, {0, -1}, {1, 1}, -11},
      {"end y at height", out.data(), 40, 10, {0, 0}, {0, 6}, -11},
      {"corners", out.data(), 40, 10, {9, 5}, {0, 0}, 0},
  };
  for (const auto& c : cases) {
    std::fill(out.begin(), out.end(), -1.0f);
    EXPECT_EQ(vnxiSampleLine_32f_C1R(img.data(), c.step, {c.width, 6}, c.dst, c.a, c.b), c.expected) << c.what;
    if (c.expected < 0) {
      EXPECT_EQ(out, std::vector<vnx32f>(16, -1.0f)) << c.what;
    }
  }
}

}  // namespace
