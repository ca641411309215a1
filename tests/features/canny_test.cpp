// Canny against a reference written from its definition: magnitude, the two low tests,
// suppression with the float constants by their bits, seeds and 8-connected hysteresis.
#include <cmath>
#include <tuple>
#include <vector>

#include "support.h"

namespace {

// The edge map by the definition, magnitudes as doubles, 0 beyond the ROI.
template <class D>
std::vector<vnx8u> cannyRef(const vt::Image<D>& dx, const vt::Image<D>& dy, float low, float high) {
  const int w = dx.width(), h = dx.height();
  const bool integer = std::is_same<D, vnx16s>::value;
  const double lowT = integer ? std::trunc(low) : low, highT = integer ? std::trunc(high) : high;
  auto M = [&](int x, int y) {
    if (x < 0 || y < 0 || x >= w || y >= h) return 0.0;
    const float fx = float(dx.at(x, y)), fy = float(dy.at(x, y));
    const double m = integer ? std::min(65535.0, std::fabs(double(fx)) + std::fabs(double(fy)))
                             : double(std::fabs(fx) + std::fabs(fy));
    return (integer ? m > lowT : m >= lowT) ? m : 0.0;
  };
  const float t22 = vt::fromBits(0x3ED413CD), t67 = vt::fromBits(0x401A827A);
  std::vector<vnx8u> out(std::size_t(w) * h, 0), cand(out.size(), 0);
  std::vector<std::pair<int, int>> todo;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const double m = M(x, y);
      const float fx = float(dx.at(x, y)), fy = float(dy.at(x, y)), ax = std::fabs(fx), ay = std::fabs(fy);
      bool keep;
      if (ay < ax * t22) keep = m > M(x - 1, y) && m >= M(x + 1, y);
      else if (ax * t67 < ay) keep = m > M(x, y - 1) && m >= M(x, y + 1);
      else if (std::signbit(fx) == std::signbit(fy)) keep = m > M(x - 1, y - 1) && m > M(x + 1, y + 1);
      else keep = m > M(x - 1, y + 1) && m > M(x + 1, y - 1);
      if (!(m > 0) || !keep) continue;
      cand[std::size_t(y) * w + x] = 1;
      if (m > highT) out[std::size_t(y) * w + x] = 255, todo.push_back({x, y});
    }
  while (!todo.empty()) {
    const auto [x, y] = todo.back();
    todo.pop_back();
    for (int i = 0; i < 9; ++i) {
      const int u = x - 1 + i % 3, v = y - 1 + i / 3;
      const std::size_t at = std::size_t(v) * w + u;
      if (u >= 0 && v >= 0 && u < w && v < h && cand[at] && !out[at]) out[at] = 255, todo.push_back({u, v});
    }
  }
  return out;
}

// The export on guard-page images with a guarded buffer of the reported size.
template <class D>
std::vector<vnx8u> runCanny(const vt::Image<D>& dx, const vt::Image<D>& dy, float low, float high,
                            vt::Guard guard = vt::Guard::After) {
  int size = 0;
  EXPECT_EQ(vnxStatusOk, vnxiCannyGetSize(dx.size(), &size));
  vt::Span<vnx8u> buf(size, 0, guard);
  vt::Image<vnx8u> dst(dx.width(), dx.height(), 1, 3, guard);
  dst.fill([](int, int, int) { return 7; });
  const auto fn = [] { if constexpr (std::is_same<D, vnx16s>::value) return vnxiCanny_16s8u_C1R; else return vnxiCanny_32f8u_C1R; }();
  EXPECT_EQ(vnxStatusOk, fn(dx.ptr(), dx.step(), dy.ptr(), dy.step(), dst.ptr(), dst.step(), dx.size(), low, high, buf.data()));
  EXPECT_TRUE(dst.canaryIntact());
  return dst.pixels();
}

// Smooth random derivatives (ridges and plateaus, so hysteresis has chains to follow),
// saturated to the 16-bit range; 32f takes three quarters of them.
template <class D>
void fillDerivatives(vt::Image<D>& dx, vt::Image<D>& dy, std::mt19937& rng, int range) {
  std::uniform_int_distribution<int> u(-range, range);
  const int a = u(rng) | 1, b = u(rng);
  const float k = std::is_same<D, vnx16s>::value ? 1.0f : 0.75f;
  auto v = [&](int t) { return D(k * std::min(32767, std::max(-32768, t % (2 * range + 1) - range + u(rng) / 4))); };
  dx.fill([&](int x, int y, int) { return v(x * a + y * b); });
  dy.fill([&](int x, int y, int) { return v(y * a - x * b); });
}

// Shapes from 1x1 to one of several bands (32 rows and 64K pixels a thread), the
// thresholds fractional, equal, zero, with seeds so rare that edges must be continued
// across the band seams, and above the saturated sums; both guard sides and, on the
// banded shape, every thread count against the same reference.
template <class D>
void checkAgainstReference() {
  std::mt19937 rng(11);
  for (vnxiSize s : {vnxiSize{1, 1}, {1, 17}, {17, 1}, {15, 16}, {33, 7}, {301, 203}, {700, 701}})
    for (auto [range, low, high] : {std::tuple{200, 0.0f, 0.0f}, {200, 40.5f, 101.4f}, {200, 81.0f, 81.0f},
                                    {200, 20.0f, 380.0f}, {40000, 2000.5f, 30000.9f}}) {  // 40000: saturated sums
      if (s.height > 300 && range > 200) continue;
      vt::Image<D> dx(s.width, s.height, 1, 8), dy(s.width, s.height, 1, 4, vt::Guard::Before);
      fillDerivatives(dx, dy, rng, range);
      const auto ref = cannyRef(dx, dy, low, high);
      for (int t : s.height > 300 ? vt::threadCounts() : std::vector<int>{1, 2}) {
        vt::Threads threads(t);  // small shapes run serially; the second run puts the guard before them
        VT_EXPECT_SAME_SAMPLES(ref, runCanny(dx, dy, low, high, t % 2 ? vt::Guard::After : vt::Guard::Before));
      }
    }
}

TEST(Canny, BothMembersMatchTheReferenceAtEveryThreadCount) {
  checkAgainstReference<vnx16s>();
  checkAgainstReference<vnx32f>();
}

// Crafted rows of sixteen (one vector), the rows beyond the ROI 0 and pixels 2.. 0:
// pixel 1, of magnitude m, beside a seed (or beside 0) survives suppression and joins
// the seed when it passes the low test: 16s keeps m > the truncated threshold, 32f keeps
// m >= the threshold; alone it is an edge when m > high (16s: truncated). Then ay at and
// just below ax * tan22.5 (the constant by its bits) switches the direction from diagonal
// to horizontal, where an equal left neighbour counts.
TEST(Canny, ThresholdTestsAndTheDirectionConstant) {
  const float ay = 1000.0f * vt::fromBits(0x3ED413CD), below = std::nextafter(ay, 0.0f);
  struct { float low, high, dx0, dy0, dx1, dy1; int want16s, want32f; } cases[] = {
      {10, 100, 0, 200, 0, 10, 0, 255}, {10.9f, 100, 0, 200, 0, 11, 255, 255}, {10.9f, 100, 0, 200, 0, 10, 0, 0},
      {5, 10, 0, 0, 0, 10, 0, 0},       {5, 10.9f, 0, 0, 0, 11, 255, 255},     {1, 1, 1000 + ay, 0, 1000, ay, 0, 255},
      {1, 1, 1000 + below, 0, 1000, below, 0, 0}};
  for (const auto& c : cases) {
    auto run = [&c](auto zero) {
      vt::Image<decltype(zero)> dx(16, 1), dy(16, 1);
      dx.fill([&](int x, int, int) { return x > 1 ? 0 : x ? c.dx1 : c.dx0; });
      dy.fill([&](int x, int, int) { return x > 1 ? 0 : x ? c.dy1 : c.dy0; });
      return int(runCanny(dx, dy, c.low, c.high)[1]);
    };
    EXPECT_EQ(c.want16s, run(vnx16s())) << c.low << " " << c.high << " " << c.dy1;
    EXPECT_EQ(c.want32f, run(vnx32f())) << c.low << " " << c.high << " " << c.dy1;
  }
}

TEST(Canny, BufferSizesAndStatusOrder) {
  int size = -1;
  for (auto [roi, expected] : {std::pair{vnxiSize{65532, 1}, 5 * 65534 * 3 + 16 * 65532 + 160},  // 16-bit stack entries
                               {{65533, 1}, 9 * 65535 * 3 + 16 * 65533 + 160}, {{1, 65533}, 9 * 3 * 65535 + 16 + 160}})
    EXPECT_TRUE(vnxiCannyGetSize(roi, &size) == vnxStatusOk && size == expected) << roi.width << " " << size;
  size = -1;
  for (vnxiSize roi : {vnxiSize{30000, 30000}, {0, 5}}) EXPECT_EQ(vnxStatusBadSize, vnxiCannyGetSize(roi, &size));
  EXPECT_EQ(vnxStatusNullPtr, vnxiCannyGetSize({0, 5}, nullptr));
  EXPECT_EQ(-1, size);

  std::vector<vnx16s> d(32);
  std::vector<vnx8u> dst(32, 9), buf(4096);
  struct Row { const char* what; const vnx16s* a; int as, bs, os; vnxiSize roi; float lo, hi; vnx8u* buf; vnxStatus want; } rows[] = {
      {"null dx before size", nullptr, 16, 16, 8, {0, 4}, -1, 0, buf.data(), -8}, {"null buffer", d.data(), 16, 16, 8, {8, 4}, 1, 2, nullptr, -8},
      {"width before step", d.data(), 16, 1, 8, {0, 4}, -1, 0, buf.data(), -6},   {"height", d.data(), 16, 1, 8, {8, -1}, -1, 0, buf.data(), -6},
      {"short dx", d.data(), 15, 16, 8, {8, 4}, -1, 0, buf.data(), -14},          {"odd dx, short dst", d.data(), 17, 16, 7, {8, 4}, -1, 0, buf.data(), -14},
      {"odd dy before low", d.data(), 16, 17, 8, {8, 4}, -1, 0, buf.data(), -108}, {"low below 0", d.data(), 16, 16, 8, {8, 4}, -1, 0, buf.data(), -5},
      {"high below low", d.data(), 16, 16, 8, {8, 4}, 5, 4.5f, buf.data(), -5}};
  vt::expectStatuses(rows, {{dst.data(), 32}}, [&](const Row& r) {
    return vnxiCanny_16s8u_C1R(r.a, r.as, d.data(), r.bs, dst.data(), r.os, r.roi, r.lo, r.hi, r.buf);
  });
  std::vector<vnx32f> f(32);
  EXPECT_EQ(vnxStatusStepNotMultiple, vnxiCanny_32f8u_C1R(f.data(), 34, f.data(), 32, dst.data(), 8, {8, 4}, 1, 2, buf.data()));
}

}  // namespace
