// Canny against a reference written from its definition: magnitude, the two low tests,
// suppression with the float constants by their bits, seeds and 8-connected hysteresis.
#include <cmath>
#include <tuple>
#include <vector>

#include "features/features.h"
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
    for (int v = y - 1; v <= y + 1; ++v)
      for (int u = x - 1; u <= x + 1; ++u) {
        const std::size_t i = std::size_t(v) * w + u;
        if (u < 0 || v < 0 || u >= w || v >= h || !cand[i] || out[i]) continue;
        out[i] = 255;
        todo.push_back({u, v});
      }
  }
  return out;
}

template <class D>
using CannyFn = vnxStatus (*)(const D*, int, const D*, int, vnx8u*, int, vnxiSize, vnx32f, vnx32f, vnx8u*);
CannyFn<vnx16s> canny(vnx16s) { return vnxiCanny_16s8u_C1R; }
CannyFn<vnx32f> canny(vnx32f) { return vnxiCanny_32f8u_C1R; }

// The export on guard-page images with a guarded buffer of the reported size.
template <class D>
std::vector<vnx8u> runCanny(const vt::Image<D>& dx, const vt::Image<D>& dy, float low, float high,
                            vt::Guard guard = vt::Guard::After) {
  int size = 0;
  EXPECT_EQ(vnxStatusOk, vnxiCannyGetSize(dx.size(), &size));
  vt::Span<vnx8u> buf(size, 0, guard);
  vt::Image<vnx8u> dst(dx.width(), dx.height(), 1, 3, guard);
  dst.fill([](int, int, int) { return 7; });
  EXPECT_EQ(vnxStatusOk, canny(D())(dx.ptr(), dx.step(), dy.ptr(), dy.step(), dst.ptr(), dst.step(), dx.size(), low,
                                    high, buf.data()));
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

template <class D>
void checkAgainstReference() {
  std::mt19937 rng(11);
  for (vnxiSize s : {vnxiSize{1, 1}, {1, 17}, {17, 1}, {15, 16}, {33, 7}, {64, 64}, {301, 203}})
    for (auto [range, low, high] : {std::tuple{200, 0.0f, 0.0f}, {200, 40.5f, 101.4f}, {200, 81.0f, 81.0f},
                                    {40000, 2000.5f, 30000.9f}}) {  // 40000: saturated sums
      vt::Image<D> dx(s.width, s.height, 1, 8), dy(s.width, s.height, 1, 4, vt::Guard::Before);
      fillDerivatives(dx, dy, rng, range);
      const auto ref = cannyRef(dx, dy, low, high);
      VT_EXPECT_SAME_SAMPLES(ref, runCanny(dx, dy, low, high));
      VT_EXPECT_SAME_SAMPLES(ref, runCanny(dx, dy, low, high, vt::Guard::Before));
    }
}

TEST(Canny, BothMembersMatchTheReference) {
  checkAgainstReference<vnx16s>();
  checkAgainstReference<vnx32f>();
}

TEST(Canny, ParallelBandsGiveTheSerialMap) {
  std::mt19937 rng(5);
  vt::Image<vnx16s> dx(700, 701), dy(700, 701);
  vt::Image<vnx32f> fx(700, 701), fy(700, 701);
  fillDerivatives(dx, dy, rng, 300);
  fillDerivatives(fx, fy, rng, 300);
  const auto ref16 = cannyRef(dx, dy, 100, 300), ref32 = cannyRef(fx, fy, 75, 225);
  for (int t : vt::threadCounts()) {
    vt::Threads threads(t);
    VT_EXPECT_SAME_SAMPLES(ref16, runCanny(dx, dy, 100, 300));
    VT_EXPECT_SAME_SAMPLES(ref32, runCanny(fx, fy, 75, 225));
  }
}

// One row of magnitudes. Along x (dy = 0) the pixels compete with their left and right
// neighbours; across (dx = 0) only with the zeros above and below, and chain along the
// row; Both sets dx = dy.
enum class Gradient { AlongRow, AcrossRow, Both };
template <class D>
std::vector<vnx8u> row(std::vector<D> vs, float low, float high, Gradient g = Gradient::AcrossRow) {
  vt::Image<D> dx(int(vs.size()), 1), dy(int(vs.size()), 1);
  dx.fill([&](int x, int, int) { return g == Gradient::AcrossRow ? D(0) : vs[x]; });
  dy.fill([&](int x, int, int) { return g == Gradient::AlongRow ? D(0) : vs[x]; });
  return runCanny(dx, dy, low, high);
}

TEST(Canny, DocumentedEdgeCases) {
  using V = std::vector<vnx8u>;
  struct Case { V expected, got; } cases[] = {
      // A plateau of two equal magnitudes along the gradient: the left one survives.
      {{0, 255, 0, 0}, row<vnx16s>({0, 50, 50, 0}, 10, 20, Gradient::AlongRow)},
      {{0, 255, 0, 0}, row<vnx32f>({0, 50, 50, 0}, 10, 20, Gradient::AlongRow)},
      // 10.9 and 20.9 act as 10 and 20 for 16s: 21 is a seed, 11 a candidate, 10 not.
      {{255, 0, 0, 0}, row<vnx16s>({21, 0, 11, 0}, 10.9f, 20.9f)},
      {{0, 0, 0, 0}, row<vnx16s>({20, 11, 11, 0}, 10.9f, 20.9f)},
      {{255, 255, 0, 0}, row<vnx16s>({21, 11, 0, 0}, 10.9f, 20.9f)},
      {{255, 0, 0, 0}, row<vnx16s>({21, 10, 0, 0}, 10.9f, 20.9f)},
      // A magnitude equal to low: a candidate for 32f, not for 16s.
      {{255, 0, 0}, row<vnx16s>({30, 10, 0}, 10, 20)},
      {{255, 255, 0}, row<vnx32f>({30, 10, 0}, 10, 20)},
      // Equal thresholds: above the common value is a seed (16s: above the truncated one).
      {{0, 255, 0}, row<vnx16s>({0, 11, 0}, 10.5f, 10.5f)},
      {{0, 0, 0}, row<vnx32f>({0, 10.5f, 0}, 10.5f, 10.5f)},
      // 1x1: the only pixel survives against zero magnitudes beyond the ROI.
      {{255}, row<vnx16s>({1}, 0, 0)},
      {{0}, row<vnx16s>({0}, 0, 0)},
      // -32768 and -32768 saturate at 65535: a seed for high 65534, nothing for 65535.
      {{255}, row<vnx16s>({-32768}, 0, 65534, Gradient::Both)},
      {{0}, row<vnx16s>({-32768}, 0, 65535, Gradient::Both)},
  };
  for (const Case& c : cases) EXPECT_EQ(c.expected, c.got);
}

TEST(Canny, SuppressionConstantsAreTheirBits) {
  // ay at and just below ax * tan22.5 switches the direction from diagonal to horizontal.
  const float t22 = vt::fromBits(0x3ED413CD), ay = 1000.0f * t22;
  EXPECT_EQ(t22, kOwnTan22);
  EXPECT_EQ(vt::fromBits(0x401A827A), kOwnTan67);
  vt::Image<vnx32f> dx(3, 3), dy(3, 3);
  for (float y : {ay, std::nextafter(ay, 0.0f)}) {
    dx.fill([](int, int, int) { return 0.0f; });
    dy.fill([](int, int, int) { return 0.0f; });
    dx.at(1, 1) = 1000.0f, dy.at(1, 1) = y;
    dx.at(0, 1) = 1000.0f + y;  // an equal left neighbour counts only in the horizontal case
    EXPECT_EQ(y == ay ? 255 : 0, runCanny(dx, dy, 1, 1)[4]);
  }
}

TEST(Canny, BufferSizesAndStatusOrder) {
  int size = -1;
  struct Size { vnxiSize roi; int expected; } sizes[] = {
      {{65532, 1}, 5 * 65534 * 3 + 16 * 65532 + 160},  // 16-bit stack entries
      {{65533, 1}, 9 * 65535 * 3 + 16 * 65533 + 160},  // 32-bit ones
      {{1, 65533}, 9 * 3 * 65535 + 16 + 160}};
  for (const Size& s : sizes) {
    ASSERT_EQ(vnxStatusOk, vnxiCannyGetSize(s.roi, &size));
    EXPECT_EQ(s.expected, size);
  }
  size = -1;
  EXPECT_EQ(vnxStatusBadSize, vnxiCannyGetSize({30000, 30000}, &size));
  EXPECT_EQ(vnxStatusBadSize, vnxiCannyGetSize({0, 5}, &size));
  EXPECT_EQ(vnxStatusNullPtr, vnxiCannyGetSize({0, 5}, nullptr));
  EXPECT_EQ(-1, size);

  vt::Image<vnx16s> dx(8, 4), dy(8, 4);
  vt::Image<vnx8u> dst(8, 4);
  dst.fill([](int, int, int) { return 9; });
  std::vector<vnx8u> buf(4096);
  const int s = dx.step(), d = dst.step();
  struct Row { vnxStatus st; const vnx16s* a; int as; const vnx16s* b; int bs; vnx8u* o; int os; vnxiSize roi;
               float lo, hi; vnx8u* buf; } rows[] = {
      {vnxStatusNullPtr, nullptr, s, dy.ptr(), s, dst.ptr(), d, {0, 4}, -1, 0, buf.data()},
      {vnxStatusNullPtr, dx.ptr(), s, dy.ptr(), s, dst.ptr(), d, {8, 4}, 1, 2, nullptr},
      {vnxStatusBadSize, dx.ptr(), s, dy.ptr(), 1, dst.ptr(), d, {0, 4}, -1, 0, buf.data()},
      {vnxStatusBadSize, dx.ptr(), s, dy.ptr(), 1, dst.ptr(), d, {8, -1}, -1, 0, buf.data()},
      {vnxStatusBadStep, dx.ptr(), 15, dy.ptr(), s, dst.ptr(), d, {8, 4}, -1, 0, buf.data()},
      {vnxStatusBadStep, dx.ptr(), 17, dy.ptr(), s, dst.ptr(), 7, {8, 4}, -1, 0, buf.data()},
      {vnxStatusStepNotMultiple, dx.ptr(), s, dy.ptr(), 17, dst.ptr(), d, {8, 4}, -1, 0, buf.data()},
      {vnxStatusBadArg, dx.ptr(), s, dy.ptr(), s, dst.ptr(), d, {8, 4}, -1, 0, buf.data()},
      {vnxStatusBadArg, dx.ptr(), s, dy.ptr(), s, dst.ptr(), d, {8, 4}, 5, 4.5f, buf.data()},
  };
  for (const Row& r : rows)
    EXPECT_EQ(r.st, vnxiCanny_16s8u_C1R(r.a, r.as, r.b, r.bs, r.o, r.os, r.roi, r.lo, r.hi, r.buf));
  vt::Image<vnx32f> fx(8, 4);
  EXPECT_EQ(vnxStatusStepNotMultiple,
            vnxiCanny_32f8u_C1R(fx.ptr(), fx.step() + 2, fx.ptr(), fx.step(), dst.ptr(), d, {8, 4}, 1, 2, buf.data()));
  EXPECT_EQ(std::vector<vnx8u>(32, 9), dst.pixels());
}

}  // namespace
