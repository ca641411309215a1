// Chamfer distance transforms against the two raster passes written out pixel by
// pixel, on guard-page images with canary padding, at every thread count; the
// standard masks; the check order.
#include <cfloat>
#include <functional>
#include <string>

#include "support.h"

namespace {

// The two passes as the contract states them, one pixel at a time, sums formed wide
// and clamped to the far value before they are compared.
template <class D, class W>
std::vector<D> chamferReference(const vt::Image<vnx8u>& src, const W* m, bool five, double far) {
  const int w = src.width(), h = src.height();
  std::vector<double> d(std::size_t(w) * h);
  auto at = [&](int x, int y) -> double& { return d[std::size_t(y) * w + x]; };
  struct Off { int dx, dy, k; };
  std::vector<Off> causal = {{-1, 0, 0}, {0, -1, 0}, {-1, -1, 1}, {1, -1, 1}};
  if (five) causal.insert(causal.end(), {{-1, -2, 2}, {1, -2, 2}, {-2, -1, 2}, {2, -1, 2}});
  auto sum = [&](double v, int k) -> double {
    if (std::is_same<D, vnx32f>::value) return double(float(float(v) + float(m[k])));
    return std::min(v + double(m[k]), far);
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (src.at(x, y) == 0) { at(x, y) = 0; continue; }
      double v = far;
      for (const Off& o : causal) {
        const int nx = x + o.dx, ny = y + o.dy;
        if (nx >= 0 && nx < w && ny >= 0) v = std::min(v, sum(at(nx, ny), o.k));
      }
      at(x, y) = v;
    }
  for (int y = h - 1; y >= 0; --y)
    for (int x = w - 1; x >= 0; --x) {
      double v = at(x, y);
      for (const Off& o : causal) {
        const int nx = x - o.dx, ny = y - o.dy;
        if (nx >= 0 && nx < w && ny < h) v = std::min(v, sum(at(nx, ny), o.k));
      }
      at(x, y) = v;
    }
  std::vector<D> out(d.size());
  for (std::size_t i = 0; i < d.size(); ++i) out[i] = static_cast<D>(d[i]);
  return out;
}

enum class Pattern { Noise50, Noise5, Noise01, CornerTL, CornerBR, CornerTR, CornerBL, Stripes, NoZero, AllZero };

void paint(vt::Image<vnx8u>& img, Pattern p, unsigned seed) {
  std::mt19937 rng(seed);
  const int w = img.width(), h = img.height();
  img.fill([&](int x, int y, int) -> int {
    switch (p) {
      case Pattern::Noise50: return rng() % 2 ? 1 + rng() % 255 : 0;
      case Pattern::Noise5: return rng() % 20 ? 7 : 0;
      case Pattern::Noise01: return rng() % 1000 ? 200 : 0;
      case Pattern::CornerTL: return (x == 0 && y == 0) ? 0 : 1;
      case Pattern::CornerBR: return (x == w - 1 && y == h - 1) ? 0 : 255;
      case Pattern::CornerTR: return (x == w - 1 && y == 0) ? 0 : 3;
      case Pattern::CornerBL: return (x == 0 && y == h - 1) ? 0 : 9;
      case Pattern::Stripes: return (x + 2 * y) % 37 == 0 ? 0 : 1;
      case Pattern::NoZero: return 1 + (x * 7 + y) % 255;
      case Pattern::AllZero: return 0;
    }
    return 0;
  });
}

// One transform member behind one signature.
template <class D, class W>
struct Member {
  std::string name;
  bool five, inPlace;
  std::function<vnxStatus(const vnx8u*, int, D*, int, vnxiSize, const W*)> call;
};

template <class D, class W>
void expectMatchesReference(const Member<D, W>& mb, vnxiSize roi, Pattern p, const W* m, vt::Guard g, int threads) {
  SCOPED_TRACE(mb.name + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) + " pattern " +
               std::to_string(int(p)) + " threads " + std::to_string(threads) + " a " + std::to_string(m[0]) +
               " b " + std::to_string(m[1]));
  vt::Threads t(threads);
  vt::Image<vnx8u> src(roi.width, roi.height, 1, 5, g);
  paint(src, p, unsigned(roi.width * 31 + roi.height));
  const double far = std::is_same<D, vnx32f>::value ? double(FLT_MAX) : double(std::numeric_limits<D>::max());
  const std::vector<D> want = chamferReference<D>(src, m, mb.five, far);
  std::vector<D> got;
  if constexpr (std::is_same<D, vnx8u>::value) {
    if (mb.inPlace) {
      ASSERT_EQ(vnxStatusOk, mb.call(nullptr, 0, src.ptr(), src.step(), roi, m));
      VT_EXPECT_SAME_SAMPLES(want, src.pixels());
      EXPECT_TRUE(src.canaryIntact());
      return;
    }
  }
  {
    vt::Image<D> dst(roi.width, roi.height, 1, 2 * sizeof(D), g == vt::Guard::After ? vt::Guard::Before : vt::Guard::After);
    dst.fill([](int, int, int) { return 77; });
    ASSERT_EQ(vnxStatusOk, mb.call(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, m));
    got = dst.pixels();
    EXPECT_TRUE(dst.canaryIntact());
  }
  VT_EXPECT_SAME_SAMPLES(want, got);
}

std::vector<Member<vnx8u, vnx32s>> members8u() {
  return {{"3x3_8u", false, false, vnxiDistanceTransform_3x3_8u_C1R},
          {"5x5_8u", true, false, vnxiDistanceTransform_5x5_8u_C1R},
          {"3x3_8u_I", false, true, [](const vnx8u*, int, vnx8u* d, int s, vnxiSize r, const vnx32s* m) {
             return vnxiDistanceTransform_3x3_8u_C1IR(d, s, r, m);
           }},
          {"5x5_8u_I", true, true, [](const vnx8u*, int, vnx8u* d, int s, vnxiSize r, const vnx32s* m) {
             return vnxiDistanceTransform_5x5_8u_C1IR(d, s, r, m);
           }}};
}
std::vector<Member<vnx16u, vnx32s>> members16u() {
  return {{"3x3_16u", false, false, vnxiDistanceTransform_3x3_8u16u_C1R},
          {"5x5_16u", true, false, vnxiDistanceTransform_5x5_8u16u_C1R}};
}
std::vector<Member<vnx32f, vnx32f>> members32f() {
  return {{"3x3_32f", false, false, vnxiDistanceTransform_3x3_8u32f_C1R},
          {"5x5_32f", true, false, vnxiDistanceTransform_5x5_8u32f_C1R}};
}

const std::vector<vnxiSize> kSizes = {{1, 1}, {1, 9}, {40, 1}, {15, 16}, {17, 15}, {33, 7}, {70, 66}, {131, 97}};
const std::vector<Pattern> kPatterns = {Pattern::Noise50, Pattern::Noise5,   Pattern::Noise01,  Pattern::CornerTL,
                                        Pattern::CornerBR, Pattern::CornerTR, Pattern::CornerBL, Pattern::Stripes,
                                        Pattern::NoZero,  Pattern::AllZero};
// Standard, orthogonal-only (b = 2a, b > 2a), a > b, saturating, huge.
const std::vector<std::vector<vnx32s>> kIntMetrics = {{2, 3, 4},  {1, 2, 3},     {3, 7, 5},
                                                      {4, 2, 9},  {1, 1, 1},     {5, 7, 11},
                                                      {300, 400, 500}, {70000, 2147483647, 1}};
const std::vector<std::vector<vnx32f>> kFloatMetrics = {
    {0.955f, 1.3693f, 2.0f}, {1.0f, 1.4f, 2.1969f}, {0.1f, 0.2f, 0.3f}, {1.3f, 0.7f, 1.9f}, {1e38f, 3e38f, FLT_MAX}};

template <class D, class W>
void runTable(const std::vector<Member<D, W>>& members, const std::vector<std::vector<W>>& metrics) {
  for (const auto& mb : members)
    for (const auto& m : metrics)
      for (vnxiSize roi : kSizes)
        for (Pattern p : kPatterns) expectMatchesReference(mb, roi, p, m.data(), vt::Guard::After, 1);
}

TEST(DistanceTransform, IntegerMembersMatchTheTwoPasses) {
  runTable(members8u(), kIntMetrics);
  runTable(members16u(), kIntMetrics);
}

TEST(DistanceTransform, FloatMembersMatchTheTwoPassesBitForBit) { runTable(members32f(), kFloatMetrics); }

// Bands join their seams: every thread count gives the two passes' values on the
// images where a seam matters most (one zero in a corner, stripes, noise).
TEST(DistanceTransform, BandsGiveTheSerialDistances) {
  const std::vector<vnxiSize> sizes = {{65, 64}, {203, 150}, {640, 71}};
  const std::vector<Pattern> patterns = {Pattern::CornerTL, Pattern::CornerBR, Pattern::CornerTR,
                                         Pattern::CornerBL, Pattern::Stripes,  Pattern::Noise01, Pattern::Noise50};
  for (int threads : {2, 3, 4, 7})
    for (vnxiSize roi : sizes)
      for (Pattern p : patterns) {
        for (const auto& mb : members8u()) expectMatchesReference(mb, roi, p, kIntMetrics[0].data(), vt::Guard::Before, threads);
        for (const auto& mb : members16u()) expectMatchesReference(mb, roi, p, kIntMetrics[5].data(), vt::Guard::After, threads);
        for (const auto& mb : members32f()) expectMatchesReference(mb, roi, p, kFloatMetrics[0].data(), vt::Guard::After, threads);
      }
}

TEST(DistanceTransform, StatusesInCheckOrderAndNothingWritten) {
  vt::Image<vnx8u> src(8, 4);
  vt::Image<vnx32f> dst(8, 4);
  dst.fill([](int, int, int) { return 5; });
  const vnx32f good[2] = {1, 1}, zero[2] = {0, 1}, nan[2] = {1, std::numeric_limits<float>::quiet_NaN()};
  const vnxiSize roi{8, 4};
  struct Row { const char* what; const vnx8u* s; int ss; vnx32f* d; int ds; vnxiSize r; const vnx32f* m; vnxStatus want; };
  const Row rows[] = {
      {"null source", nullptr, 8, dst.ptr(), 32, roi, good, vnxStatusNullPtr},
      {"null metrics and bad size", src.ptr(), 8, dst.ptr(), 32, {0, 4}, nullptr, vnxStatusNullPtr},
      {"zero width", src.ptr(), 8, dst.ptr(), 32, {0, 4}, good, vnxStatusBadSize},
      {"bad size before bad step", src.ptr(), 1, dst.ptr(), 32, {8, 0}, good, vnxStatusBadSize},
      {"source step", src.ptr(), 7, dst.ptr(), 32, roi, good, vnxStatusBadStep},
      {"destination step below row", src.ptr(), 8, dst.ptr(), 31, roi, good, vnxStatusBadStep},
      {"row bytes before multiple", src.ptr(), 7, dst.ptr(), 34, roi, good, vnxStatusBadStep},
      {"destination step odd", src.ptr(), 8, dst.ptr(), 34, roi, good, vnxStatusStepNotMultiple},
      {"step before metric", src.ptr(), 8, dst.ptr(), 34, roi, zero, vnxStatusStepNotMultiple},
      {"metric {0, 1}", src.ptr(), 8, dst.ptr(), 32, roi, zero, vnxStatusBadMetric},
      {"NaN metric", src.ptr(), 8, dst.ptr(), 32, roi, nan, vnxStatusBadMetric},
  };
  const auto before = dst.pixels();
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    EXPECT_EQ(r.want, vnxiDistanceTransform_3x3_8u32f_C1R(r.s, r.ss, r.d, r.ds, r.r, r.m));
  }
  VT_EXPECT_SAME_SAMPLES(before, dst.pixels());
  const vnx32s c0[3] = {1, 1, 0}, ab[2] = {0, 1};
  vt::Image<vnx16u> d16(8, 4);
  EXPECT_EQ(vnxStatusBadMetric, vnxiDistanceTransform_5x5_8u16u_C1R(src.ptr(), 8, d16.ptr(), 16, roi, c0));
  EXPECT_EQ(vnxStatusStepNotMultiple, vnxiDistanceTransform_3x3_8u16u_C1R(src.ptr(), 8, d16.ptr(), 17, roi, ab));
  EXPECT_EQ(vnxStatusBadMetric, vnxiDistanceTransform_3x3_8u_C1IR(src.ptr(), 8, roi, ab));
  EXPECT_EQ(vnxStatusNullPtr, vnxiDistanceTransform_3x3_8u_C1IR(nullptr, 8, roi, ab));
}

TEST(DistanceTransformMask, StandardWeightsAndChecks) {
  struct Row { int ker, norm; vnxStatus want; std::vector<vnx32s> s; std::vector<float> f; };
  const Row rows[] = {
      {3, 0, vnxStatusOk, {1, 1}, {1.0f, 1.0f}},          {3, 1, vnxStatusOk, {1, 2}, {1.0f, 2.0f}},
      {3, 2, vnxStatusOk, {2, 3}, {0.955f, 1.3693f}},     {5, 0, vnxStatusOk, {1, 1, 2}, {1.0f, 1.0f, 2.0f}},
      {5, 1, vnxStatusOk, {1, 2, 3}, {1.0f, 2.0f, 3.0f}}, {5, 2, vnxStatusOk, {5, 7, 11}, {1.0f, 1.4f, 2.1969f}},
      {4, 2, vnxStatusBadSize, {}, {}},                   {3, 3, vnxStatusBadArg, {}, {}},
      {4, 7, vnxStatusBadSize, {}, {}},                   {5, 3, vnxStatusBadArg, {}, {}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(std::to_string(r.ker) + "/" + std::to_string(r.norm));
    vnx32s s[4] = {-1, -1, -1, -1};
    vnx32f f[4] = {-1, -1, -1, -1}, g[4] = {-1, -1, -1, -1};
    EXPECT_EQ(r.want, vnxiGetDistanceTransformMask_32s(r.ker, r.norm, s));
    EXPECT_EQ(r.want, vnxiGetDistanceTransformMask_32f(r.ker, r.norm, f));
    EXPECT_EQ(r.want, vnxiGetDistanceTransformMask(r.ker * 10 + r.norm, g));
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(i < r.s.size() ? r.s[i] : -1, s[i]);
      EXPECT_EQ(i < r.f.size() ? vt::bits(r.f[i]) : vt::bits(-1.0f), vt::bits(f[i]));
      EXPECT_EQ(vt::bits(f[i]), vt::bits(g[i]));
    }
  }
  EXPECT_EQ(vnxStatusNullPtr, vnxiGetDistanceTransformMask_32s(4, 9, nullptr));
  EXPECT_EQ(vnxStatusNullPtr, vnxiGetDistanceTransformMask(99, nullptr));
}

}  // namespace
