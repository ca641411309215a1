// Canny against a reference written from its definition: magnitude, the two low tests,
// suppression with the float constants by their bits, seeds and 8-connected hysteresis.
#include <cmath>
#include <cstring>
#include <vector>

#include "features/features.h"
#include "support.h"

namespace {

// The edge map by the definition: magnitudes held as doubles in a zero-bordered plane.
template <class D>
std::vector<vnx8u> cannyRef(const vt::Image<D>& dx, const vt::Image<D>& dy, float low, float high) {
  const int w = dx.width(), h = dx.height(), W = w + 2;
  const bool integer = std::is_same<D, vnx16s>::value;
  const double lowT = integer ? std::trunc(low) : low, highT = integer ? std::trunc(high) : high;
  std::vector<double> mag(std::size_t(W) * (h + 2), 0.0);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      double m = std::fabs(double(dx.at(x, y))) + std::fabs(double(dy.at(x, y)));
      if (integer) m = std::min(m, 65535.0);
      else m = double(std::fabs(float(dx.at(x, y))) + std::fabs(float(dy.at(x, y))));
      const bool pass = integer ? m > lowT : m >= lowT;
      mag[std::size_t(y + 1) * W + x + 1] = pass ? m : 0.0;
    }
  const float t22 = vt::fromBits(0x3ED413CD), t67 = vt::fromBits(0x401A827A);
  std::vector<int> state(std::size_t(W) * (h + 2), 0);  // 1 candidate, 2 seed
  auto M = [&](int x, int y) { return mag[std::size_t(y + 1) * W + x + 1]; };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const double m = M(x, y);
      if (!(m > 0)) continue;
      const float ax = std::fabs(float(dx.at(x, y))), ay = std::fabs(float(dy.at(x, y)));
      bool keep;
      if (ay < ax * t22) keep = m > M(x - 1, y) && m >= M(x + 1, y);
      else if (ax * t67 < ay) keep = m > M(x, y - 1) && m >= M(x, y + 1);
      else if (std::signbit(float(dx.at(x, y))) == std::signbit(float(dy.at(x, y))))
        keep = m > M(x - 1, y - 1) && m > M(x + 1, y + 1);
      else keep = m > M(x - 1, y + 1) && m > M(x + 1, y - 1);
      if (keep) state[std::size_t(y + 1) * W + x + 1] = m > highT ? 2 : 1;
    }
  std::vector<vnx8u> out(std::size_t(w) * h, 0);
  std::vector<std::pair<int, int>> todo;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (state[std::size_t(y + 1) * W + x + 1] == 2) out[std::size_t(y) * w + x] = 255, todo.push_back({x, y});
  while (!todo.empty()) {
    const auto [x, y] = todo.back();
    todo.pop_back();
    for (int j = -1; j <= 1; ++j)
      for (int i = -1; i <= 1; ++i) {
        const int u = x + i, v = y + j;
        if (u < 0 || v < 0 || u >= w || v >= h || !state[std::size_t(v + 1) * W + u + 1]) continue;
        if (out[std::size_t(v) * w + u]) continue;
        out[std::size_t(v) * w + u] = 255;
        todo.push_back({u, v});
      }
  }
  return out;
}

template <class D>
using CannyFn = vnxStatus (*)(const D*, int, const D*, int, vnx8u*, int, vnxiSize, vnx32f, vnx32f, vnx8u*);
CannyFn<vnx16s> canny(vnx16s) { return vnxiCanny_16s8u_C1R; }
CannyFn<vnx32f> canny(vnx32f) { return vnxiCanny_32f8u_C1R; }

// Runs the export on guard-page images with a guarded buffer of the reported size.
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

// Smooth random derivatives: ridges and plateaus, so hysteresis has chains to follow.
template <class D>
void fillDerivatives(vt::Image<D>& dx, vt::Image<D>& dy, std::mt19937& rng, int range) {
  std::uniform_int_distribution<int> u(-range, range);
  const int a = u(rng), b = u(rng);
  dx.fill([&](int x, int y, int) { return D((x * a + y * b) % (2 * range + 1) - range + u(rng) / 4); });
  dy.fill([&](int x, int y, int) { return D((y * a - x * b) % (2 * range + 1) - range + u(rng) / 4); });
}

template <class D>
void checkAgainstReference() {
  std::mt19937 rng(11);
  const vnxiSize sizes[] = {{1, 1}, {1, 17}, {17, 1}, {15, 16}, {33, 7}, {64, 64}, {301, 203}};
  for (vnxiSize s : sizes)
    for (int trial = 0; trial < 4; ++trial) {
      vt::Image<D> dx(s.width, s.height, 1, 8), dy(s.width, s.height, 1, 4, vt::Guard::Before);
      fillDerivatives(dx, dy, rng, 200);
      const float low = trial == 0 ? 0.0f : 40.5f * trial, high = low + 60.9f * (trial % 3);
      VT_EXPECT_SAME_SAMPLES(cannyRef(dx, dy, low, high), runCanny(dx, dy, low, high));
      VT_EXPECT_SAME_SAMPLES(cannyRef(dx, dy, low, high), runCanny(dx, dy, low, high, vt::Guard::Before));
    }
}

TEST(Canny, BothMembersMatchTheReference) {
  checkAgainstReference<vnx16s>();
  checkAgainstReference<vnx32f>();
}

TEST(Canny, ParallelBandsGiveTheSerialMap) {
  std::mt19937 rng(5);
  vt::Image<vnx16s> dx(700, 701), dy(700, 701);
  fillDerivatives(dx, dy, rng, 300);
  vt::Image<vnx32f> fx(700, 701), fy(700, 701);
  fx.fill([&](int x, int y, int) { return dx.at(x, y) * 0.75f; });
  fy.fill([&](int x, int y, int) { return dy.at(x, y) * 0.75f; });
  const auto ref16 = cannyRef(dx, dy, 100, 300), ref32 = cannyRef(fx, fy, 75, 225);
  for (int t : vt::threadCounts()) {
    vt::Threads threads(t);
    VT_EXPECT_SAME_SAMPLES(ref16, runCanny(dx, dy, 100, 300));
    VT_EXPECT_SAME_SAMPLES(ref32, runCanny(fx, fy, 75, 225));
  }
}

// One row of magnitudes: which pixels of a pattern come out. Along x (dy = 0) the
// pixels compete with their left and right neighbours; across (dx = 0) they compete only
// with the zeros above and below and chain along the row.
enum class Gradient { AlongRow, AcrossRow };
template <class D>
std::vector<vnx8u> row(std::vector<D> vs, float low, float high, Gradient g = Gradient::AcrossRow) {
  vt::Image<D> dx(int(vs.size()), 1), dy(int(vs.size()), 1);
  dx.fill([&](int x, int, int) { return g == Gradient::AlongRow ? vs[x] : D(0); });
  dy.fill([&](int x, int, int) { return g == Gradient::AlongRow ? D(0) : vs[x]; });
  return runCanny(dx, dy, low, high);
}

TEST(Canny, DocumentedEdgeCases) {
  using V = std::vector<vnx8u>;
  // Plateau of two equal magnitudes along the gradient: the left one survives.
  EXPECT_EQ(V({0, 255, 0, 0}), row<vnx16s>({0, 50, 50, 0}, 10, 20, Gradient::AlongRow));
  EXPECT_EQ(V({0, 255, 0, 0}), row<vnx32f>({0, 50, 50, 0}, 10, 20, Gradient::AlongRow));
  // 10.9 and 20.9 act as 10 and 20 for 16s: 21 is a seed, 11 a candidate, 10 not.
  EXPECT_EQ(V({255, 0, 0, 0}), row<vnx16s>({21, 0, 11, 0}, 10.9f, 20.9f));
  EXPECT_EQ(V({0, 0, 0, 0}), row<vnx16s>({20, 11, 11, 0}, 10.9f, 20.9f));
  EXPECT_EQ(V({255, 255, 0, 0}), row<vnx16s>({21, 11, 0, 0}, 10.9f, 20.9f));
  EXPECT_EQ(V({255, 0, 0, 0}), row<vnx16s>({21, 10, 0, 0}, 10.9f, 20.9f));
  // Magnitude equal to low: a candidate for 32f, not for 16s.
  EXPECT_EQ(V({255, 0, 0}), row<vnx16s>({30, 10, 0}, 10, 20));
  EXPECT_EQ(V({255, 255, 0}), row<vnx32f>({30, 10, 0}, 10, 20));
  // Equal thresholds: above the common value is a seed (16s: above the truncated one).
  EXPECT_EQ(V({0, 255, 0}), row<vnx16s>({0, 11, 0}, 10.5f, 10.5f));
  EXPECT_EQ(V({0, 0, 0}), row<vnx32f>({0, 10.5f, 0}, 10.5f, 10.5f));
  // 1x1: the only pixel survives against zero magnitudes beyond the ROI.
  EXPECT_EQ(V({255}), row<vnx16s>({1}, 0, 0));
  EXPECT_EQ(V({0}), row<vnx16s>({0}, 0, 0));
  // -32768, -32768 saturates at 65535: a seed for high 65534, nothing for 65535.
  vt::Image<vnx16s> sx(1, 1), sy(1, 1);
  sx.at(0, 0) = -32768, sy.at(0, 0) = -32768;
  EXPECT_EQ(V({255}), runCanny(sx, sy, 0, 65534));
  EXPECT_EQ(V({0}), runCanny(sx, sy, 0, 65535));
}

TEST(Canny, SuppressionConstantsAreTheirBits) {
  // ay just below and at ax * tan22.5 switches the direction from horizontal to diagonal.
  const float t22 = vt::fromBits(0x3ED413CD);
  EXPECT_EQ(t22, kOwnTan22);
  EXPECT_EQ(vt::fromBits(0x401A827A), kOwnTan67);
  vt::Image<vnx32f> dx(3, 3), dy(3, 3);
  const float ay = 1000.0f * t22;
  dx.fill([](int, int, int) { return 0.0f; });
  dy.fill([](int, int, int) { return 0.0f; });
  dx.at(1, 1) = 1000.0f, dy.at(1, 1) = ay;          // diagonal: horizontal twins do not matter
  dx.at(0, 1) = 1000.0f + ay;                        // an equal left neighbour
  EXPECT_EQ(255, runCanny(dx, dy, 1, 1)[4]);
  dy.at(1, 1) = std::nextafter(ay, 0.0f);           // now horizontal: m > left fails
  dx.at(0, 1) = 1000.0f + dy.at(1, 1);
  EXPECT_EQ(0, runCanny(dx, dy, 1, 1)[4]);
}

TEST(Canny, BufferSizesAndStatusOrder) {
  int size = -1;
  ASSERT_EQ(vnxStatusOk, vnxiCannyGetSize({65532, 1}, &size));
  EXPECT_EQ(5 * 65534 * 3 + 16 * 65532 + 160, size);
  ASSERT_EQ(vnxStatusOk, vnxiCannyGetSize({65533, 1}, &size));
  EXPECT_EQ(9 * 65535 * 3 + 16 * 65533 + 160, size);
  ASSERT_EQ(vnxStatusOk, vnxiCannyGetSize({1, 65533}, &size));
  EXPECT_EQ(9 * 3 * 65535 + 16 + 160, size);
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
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x) ASSERT_EQ(9, dst.at(x, y));
}

TEST(CannyKernels, VectorRowsMatchTheirTemplates) {
  std::mt19937 rng(2);
  vt::forKernelShapes(16, [&](int w, int off, vt::Guard g) {
    vt::Span<vnx16s> dx(w, off, g), dy(w, off, g);
    vt::Span<vnx32f> fx(w, off, g), fy(w, off, g);
    std::vector<int> up(w + 2), mid(w + 2), down(w + 2);
    std::vector<float> fup(w + 2), fmid(w + 2), fdown(w + 2);
    std::uniform_int_distribution<int> u(-32768, 32767), small(0, 3);
    for (int x = 0; x < w; ++x) {
      dx[x] = vnx16s(x % 7 == 0 ? -32768 : u(rng) >> small(rng) * 5);
      dy[x] = vnx16s(u(rng) >> small(rng) * 5);
      fx[x] = dx[x] * 0.5f, fy[x] = x % 5 ? dy[x] * 0.5f : -0.0f;
    }
    for (int x = 0; x < w + 2; ++x) {
      up[x] = small(rng) * 100, mid[x] = small(rng) * 100, down[x] = small(rng) * 100;
      fup[x] = up[x], fmid[x] = mid[x], fdown[x] = down[x];
    }
    std::vector<int> m1(w + 1, -1), m2(w + 1, -1);
    ownCannyMagnitudeRow(dx.data(), dy.data(), m1.data(), 0, w, 300);
    ownCannyMagnitudeRow_sse2(dx.data(), dy.data(), m2.data(), w, 300);
    ASSERT_EQ(m1, m2);
    std::vector<float> f1(w + 1, -1), f2(w + 1, -1);
    ownCannyMagnitudeRow(fx.data(), fy.data(), f1.data(), 0, w, 300.0f);
    ownCannyMagnitudeRow_sse2(fx.data(), fy.data(), f2.data(), w, 300.0f);
    VT_EXPECT_SAME_SAMPLES(f1, f2);
    std::vector<vnx8u> a(w + 1, 1), b(w + 1, 1);
    ownCannySuppressRow(dx.data(), dy.data(), up.data() + 1, mid.data() + 1, down.data() + 1, a.data(), 0, w, 150);
    ownCannySuppressRow_sse2(dx.data(), dy.data(), up.data() + 1, mid.data() + 1, down.data() + 1, b.data(), w, 150);
    ASSERT_EQ(a, b) << w;
    ownCannySuppressRow(fx.data(), fy.data(), fup.data() + 1, fmid.data() + 1, fdown.data() + 1, a.data(), 0, w,
                        150.0f);
    ownCannySuppressRow_sse2(fx.data(), fy.data(), fup.data() + 1, fmid.data() + 1, fdown.data() + 1, b.data(), w,
                             150.0f);
    ASSERT_EQ(a, b) << w;
  });
}

}  // namespace
