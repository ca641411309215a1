// Hough lines against a whole-accumulator reference written from the definition.
#include <algorithm>
#include <cmath>
#include <vector>

#include "support.h"

namespace {

// Whole accumulator, peaks in theta-then-rho order, stable sort by votes; the lines as
// (rho, theta) pairs.
std::vector<float> houghRef(const vt::Image<vnx8u>& img, vnxiHoughDelta d, int threshold, int maxLines, bool* tooMany) {
  const int w = img.width(), h = img.height();
  const int nRho = int(float(2 * (w + h) + 1) / d.rho);
  const int nTheta = std::max(1, int(3.141592653589793 / double(d.theta)));
  std::vector<float> c(nTheta), s(nTheta);
  float th = 0;
  for (int t = 0; t < nTheta; ++t, th += d.theta) {
    c[t] = float(std::cos(double(th))) * (1.0f / d.rho);
    s[t] = float(std::sin(double(th))) * (1.0f / d.rho);
  }
  const int half = (nRho - 1) / 2;
  std::vector<int> acc(std::size_t(nTheta + 2) * (nRho + 2), 0);
  auto A = [&](int t, int r) -> int& { return acc[std::size_t(t + 1) * (nRho + 2) + r + 1]; };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (img.at(x, y))
        for (int t = 0; t < nTheta; ++t) {
          const float v = float(x) * c[t] + float(y) * s[t];
          ++A(t, int(std::nearbyint(v)) + half);
        }
  struct Peak { int votes, t, r; };
  std::vector<Peak> peaks;
  for (int t = 0; t < nTheta; ++t)
    for (int r = 0; r < nRho; ++r) {
      const int v = A(t, r);
      if (v > threshold && v > A(t, r - 1) && v >= A(t, r + 1) && v > A(t - 1, r) && v >= A(t + 1, r))
        peaks.push_back({v, t, r});
    }
  std::stable_sort(peaks.begin(), peaks.end(), [](const Peak& a, const Peak& b) { return a.votes > b.votes; });
  *tooMany = int(peaks.size()) > maxLines;
  std::vector<float> out;
  for (int i = 0; i < std::min<int>(maxLines, int(peaks.size())); ++i)
    out.insert(out.end(), {float(peaks[i].r - half) * d.rho, float(peaks[i].t) * d.theta});
  return out;
}

TEST(HoughLine, MatchesTheReference) {
  std::mt19937 rng(9);
  struct Case { vnxiSize roi; vnxiHoughDelta d; int threshold, maxLines, density; } cases[] = {
      {{1, 1}, {1, 0.1f}, 1, 4, 1},           {{40, 30}, {1, 3.14159265f / 180}, 4, 20, 12},
      {{97, 61}, {2.5f, 0.05f}, 3, 7, 30},     {{64, 64}, {0.7f, 0.02f}, 5, 200, 8},
      {{33, 7}, {1, 0.3f}, 1, 1000, 4},        {{200, 150}, {1, 3.14159265f / 180}, 20, 50, 60},
      {{40, 30}, {0.0005f, 0.3f}, 1, 50, 3},  // 2^18 rho cells and more: clamped indexes
      {{6, 6}, {1, 3.14159265f}, 1, 3, 3},     // the float nearest pi: one theta row
      {{10, 5}, {15, 0.7f}, 1, 2, 2},          // delta.rho = w + h, the largest accepted
  };
  std::size_t total = 0;
  for (const Case& c : cases) {
    vt::Image<vnx8u> img(c.roi.width, c.roi.height, 1, 5, c.roi.height % 2 ? vt::Guard::After : vt::Guard::Before);
    img.fill([&](int x, int y, int) { return (rng() % c.density == 0) || (x == 2 * y % c.roi.width) ? 1 + rng() % 255 : 0; });
    bool tooMany = false;
    const auto ref = houghRef(img, c.d, c.threshold, c.maxLines, &tooMany);
    int size = 0, n = -1;
    ASSERT_EQ(vnxStatusOk, vnxiHoughLineGetSize_8u_C1R(img.size(), c.d, c.maxLines, &size));
    vt::Span<vnx8u> buf(size);  // the reported size, before a guard page
    vt::Span<vnx32f> lines(2 * std::size_t(c.maxLines));
    EXPECT_EQ(tooMany ? vnxStatusTooManyLines : vnxStatusOk,
              vnxiHoughLine_8u32f_C1R(img.ptr(), img.step(), img.size(), c.d, c.threshold, lines.data(), c.maxLines, &n, buf.data()));
    VT_EXPECT_SAME_SAMPLES(ref, std::vector<float>(lines.data(), lines.data() + 2 * n));
    total += ref.size() / 2;
  }
  EXPECT_GT(total, 50u);
}

TEST(HoughLine, BufferSizeOverflowWarningAndStatuses) {
  int size = 0;
  // A huge ROI: the 32-bit sum wraps and the wrapped size comes with the warning.
  ASSERT_EQ(vnxStatusSizeOverflow, vnxiHoughLineGetSize_8u_C1R({27000, 27000}, {1, 0.01f}, 10, &size));
  const std::uint32_t wrapped = 16u * 10 + 4u * (4u * 108001 + 16) + 8u * 314 + (4u * 27000 + 48) * 27000u + 200;
  EXPECT_TRUE(size < 0 && size == int(wrapped)) << size;
  size = 7;
  EXPECT_EQ(vnxStatusNullPtr, vnxiHoughLineGetSize_8u_C1R({0, 0}, {0, 0}, 1, nullptr));
  EXPECT_EQ(vnxStatusBadSize, vnxiHoughLineGetSize_8u_C1R({0, 5}, {0, 0}, 1, &size));
  EXPECT_EQ(vnxStatusBadArg, vnxiHoughLineGetSize_8u_C1R({5, 5}, {1, -0.0f}, 1, &size));
  EXPECT_EQ(7, size);
}

TEST(HoughLine, StatusOrder) {
  vt::Image<vnx8u> img(8, 8);
  std::vector<vnx8u> buf(1 << 16);
  float lines[8] = {};
  int n = -3;
  const vnx8u* p = img.ptr();
  struct Row { const char* what; const vnx8u* src; int step; vnxiSize roi; vnxiHoughDelta d; int thr, max; int* cnt; vnxStatus want; } rows[] = {
      {"null source before size", nullptr, 0, {0, 0}, {0, 0}, 0, 4, &n, -8}, {"null count", p, 8, {8, 8}, {1, 1}, 1, 4, nullptr, -8},
      {"step before size", p, 0, {0, 8}, {0, 0}, 0, 4, &n, -14},             {"width", p, 1, {0, 8}, {0, 0}, 0, 4, &n, -6},
      {"maxLines before delta", p, 8, {8, 8}, {0, 0}, 0, 0, &n, -6},        {"rho step 0", p, 8, {8, 8}, {0, 1}, 1, 4, &n, -5},
      {"rho step above w + h", p, 8, {8, 8}, {std::nextafter(16.0f, 17.0f), 1}, 1, 4, &n, -5},
      {"theta step above pi", p, 8, {8, 8}, {1, 3.2f}, 1, 4, &n, -5},     {"threshold 0", p, 8, {8, 8}, {1, 1}, 0, 4, &n, -5},
      {"too many rho cells", p, 8, {8, 8}, {1e-30f, 1}, 1, 4, &n, -5}};
  vt::expectStatuses(rows, {{lines, sizeof lines}, {&n, sizeof n}}, [&](const Row& r) {
    return vnxiHoughLine_8u32f_C1R(r.src, r.step, r.roi, r.d, r.thr, lines, r.max, r.cnt, buf.data());
  });
}

}  // namespace
