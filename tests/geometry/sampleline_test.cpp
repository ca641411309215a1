// Line sampling against a reference written from the digital-line rule, the walker
// on lines longer than 2^30 pixels, and the check order.
#include <cstdlib>

#include "geometry/vncvsampleline.h"
#include "support.h"

namespace {

// Point i of the digital line, found independently: along the longer axis (y on a
// tie) one step at a time, the other coordinate rounded from the exact line, ties
// toward the start: it moves once the minor travel 2 i |minor| exceeds the major
// extent by a whole step of 2 |major| (below 2^63 for any ROI).
vnxiPoint refLinePoint(vnxiPoint a, vnxiPoint b, std::int64_t i) {
  const std::int64_t dx = std::int64_t(b.x) - a.x, dy = std::int64_t(b.y) - a.y, sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
  const bool yMajor = std::llabs(dx) <= std::llabs(dy);
  const std::int64_t major = std::max(std::llabs(dx), std::llabs(dy)), minor = std::min(std::llabs(dx), std::llabs(dy));
  const std::int64_t travel = 2 * i * minor, off = travel <= major ? 0 : (travel - major - 1) / (2 * major) + 1;
  return yMajor ? vnxiPoint{int(a.x + sx * off), int(a.y + sy * i)} : vnxiPoint{int(a.x + sx * i), int(a.y + sy * off)};
}

// Twice an extent does not fit an int: with x moves of 1 and y moves of 2^31 the
// walker must still take the reference's pixels (the first 4096, where a wrapped term shows).
TEST(SampleLine, WalkerStaysExactOnLinesLongerThan2To30) {
  const std::int64_t kRow = std::int64_t(1) << 31;
  const vnxiPoint lines[][2] = {{{0, 0}, {2147483646, 2147483645}}, {{2147483646, 5}, {0, 1073741900}}, {{3, 2147483000}, {1073741830, 0}}};
  for (const auto& l : lines) {
    ownLineWalker w = ownLineSetup(1, kRow, l[0], l[1]);
    ASSERT_EQ(w.count, std::max(std::llabs(std::int64_t(l[1].x) - l[0].x), std::llabs(std::int64_t(l[1].y) - l[0].y)) + 1);
    std::int64_t at = l[0].x + l[0].y * kRow;
    for (std::int64_t i = 0; i < 4096; ++i, at += w.advance())
      ASSERT_EQ(at, refLinePoint(l[0], l[1], i).x + refLinePoint(l[0], l[1], i).y * kRow) << "sample " << i;
  }
}

// Random lines (the first a single pixel at the far corner) on guard-page images;
// the destination past the line keeps its values.
template <class T, int C>
void checkSampleLine(vnxStatus (*fn)(const T*, int, vnxiSize, T*, vnxiPoint, vnxiPoint) noexcept) {
  std::mt19937 rng(3);
  for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before}) {
    vt::Image<T> img(23, 17, C, 2 * sizeof(T), guard);
    img.fill([](int x, int y, int c) { return (x * 7 + y * 31 + c * 3) % 251; });
    for (int trial = 0; trial < 300; ++trial) {
      const vnxiPoint a = trial ? vnxiPoint{int(rng() % 23), int(rng() % 17)} : vnxiPoint{22, 16};
      const vnxiPoint b = trial ? vnxiPoint{int(rng() % 23), int(rng() % 17)} : a;
      const int n = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y)) + 1;
      std::vector<T> out(n * C + 4, T(99)), expected(out);
      for (int i = 0; i < n * C; ++i) expected[i] = img.at(refLinePoint(a, b, i / C).x, refLinePoint(a, b, i / C).y, i % C);
      ASSERT_EQ(fn(img.ptr(), img.step(), img.size(), out.data(), a, b), vnxStatusOk);
      VT_EXPECT_SAME_SAMPLES(expected, out);
    }
  }
}

TEST(SampleLine, EveryMemberCopiesTheLineInOrder) {
  checkSampleLine<vnx8u, 1>(vnxiSampleLine_8u_C1R);
  checkSampleLine<vnx8u, 3>(vnxiSampleLine_8u_C3R);
  checkSampleLine<vnx16u, 1>(vnxiSampleLine_16u_C1R);
  checkSampleLine<vnx16u, 3>(vnxiSampleLine_16u_C3R);
  checkSampleLine<vnx32f, 1>(vnxiSampleLine_32f_C1R);
  checkSampleLine<vnx32f, 3>(vnxiSampleLine_32f_C3R);
}

// A 10x6 32f image; one fault (or a pair) a row.
TEST(SampleLine, ChecksInOrder) {
  std::vector<vnx32f> img(60), out(16, -1.0f);
  struct Row { const char* what; vnx32f* dst; int step, width; vnxiPoint a, b; vnxStatus want; };
  const Row rows[] = {{"null destination", nullptr, 40, 10, {0, 0}, {1, 1}, -8}, {"zero width", out.data(), 40, 0, {0, 0}, {1, 1}, -6},
                      {"short step", out.data(), 36, 10, {0, 0}, {1, 1}, -14}, {"misaligned step beats bad point", out.data(), 42, 10, {-1, 0}, {1, 1}, -108},
                      {"end x at width", out.data(), 40, 10, {0, 0}, {10, 1}, -11}, {"start y negative", out.data(), 40, 10, {0, -1}, {1, 1}, -11},
                      {"end y at height", out.data(), 40, 10, {0, 0}, {0, 6}, -11}, {"corners", out.data(), 40, 10, {9, 5}, {0, 0}, 0}};
  vt::expectStatuses(rows, {{out.data(), 64}}, [&](const Row& r) { return vnxiSampleLine_32f_C1R(img.data(), r.step, {r.width, 6}, r.dst, r.a, r.b); });
}

}  // namespace
