// Chamfer distance transforms against the two raster passes written out pixel by
// pixel, on guard-page images with canary padding (a source guarded on one side, its
// destination on the other), at every thread count and every width up to three
// vectors + 3, which runs each row stage's vector body and tail; the standard masks;
// the check order.
#include <cfloat>
#include <functional>
#include <string>

#include "support.h"

namespace {

// The two passes as the contract states them, one pixel at a time, sums formed wide
// and clamped to the far value before they are compared. The backward pass takes the
// mirrored neighbours; a feature starts at 0 and stays there.
template <class D, class W>
std::vector<D> chamferReference(const vt::Image<vnx8u>& src, const W* m, bool five, double far) {
  const int w = src.width(), h = src.height();
  std::vector<double> d(std::size_t(w) * h);
  struct Off { int dx, dy, k; };
  std::vector<Off> causal = {{-1, 0, 0}, {0, -1, 0}, {-1, -1, 1}, {1, -1, 1}};
  if (five) causal.insert(causal.end(), {{-1, -2, 2}, {1, -2, 2}, {-2, -1, 2}, {2, -1, 2}});
  auto sum = [&](double v, int k) {  // 32f: in single precision; integers: clamped
    return std::is_same<D, vnx32f>::value ? double(float(float(v) + float(m[k]))) : std::min(v + double(m[k]), far);
  };
  for (int s : {1, -1})
    for (int i = 0; i < w * h; ++i) {
      const int y = s > 0 ? i / w : h - 1 - i / w, x = s > 0 ? i % w : w - 1 - i % w;
      double& v = d[std::size_t(y) * w + x];
      if (s > 0) v = src.at(x, y) == 0 ? 0 : far;
      for (const Off& o : causal) {
        const int nx = x + s * o.dx, ny = y + s * o.dy;
        if (nx >= 0 && nx < w && ny >= 0 && ny < h) v = std::min(v, sum(d[std::size_t(ny) * w + nx], o.k));
      }
    }
  return std::vector<D>(d.begin(), d.end());
}

// Sources: 0-2 noise with a zero in 2, 20 or 1000 pixels; 3-6 one zero in a corner (top
// left, bottom right, top right, bottom left), where a seam matters most; 7 stripes; 8
// no zero; 9 all zero. Every pixel that is not a feature holds some value from 1 to 255.
void paint(vt::Image<vnx8u>& img, int p, unsigned seed) {
  std::mt19937 rng(seed);
  const int w = img.width(), h = img.height();
  img.fill([&](int x, int y, int) -> int {
    const int any = 1 + int(x * 7 + y + rng() % 3) % 255;
    if (p < 3) return rng() % (p == 0 ? 2 : p == 1 ? 20 : 1000) ? any : 0;
    if (p < 7) return x == (p == 4 || p == 5 ? w - 1 : 0) && y == (p == 4 || p == 6 ? h - 1 : 0) ? 0 : any;
    return p == 7 ? ((x + 2 * y) % 37 ? any : 0) : p == 8 ? any : 0;
  });
}

// One transform member behind one signature; an in-place member transforms the destination.
template <class D, class W>
struct Member { std::string name; bool five, inPlace; std::function<vnxStatus(const vnx8u*, int, D*, int, vnxiSize, const W*)> call; };
template <vnxStatus (*F)(vnx8u*, int, vnxiSize, const vnx32s*)>
vnxStatus inPlace(const vnx8u*, int, vnx8u* d, int s, vnxiSize r, const vnx32s* m) { return F(d, s, r, m); }

template <class D, class W>
void expectMatchesReference(const Member<D, W>& mb, vnxiSize roi, int p, const W* m, vt::Guard g, int threads) {
  SCOPED_TRACE(testing::Message() << mb.name << " " << roi.width << "x" << roi.height << " pattern " << p << " threads "
                                  << threads << " a " << m[0] << " b " << m[1]);
  vt::Threads t(threads);
  vt::Image<vnx8u> src(roi.width, roi.height, 1, 5, g);
  paint(src, p, unsigned(roi.width * 31 + roi.height));
  const std::vector<D> want = chamferReference<D>(src, m, mb.five, double(std::numeric_limits<D>::max()));
  // The destination is guarded on the other side; an in-place member gets a copy of the source in it.
  vt::Image<D> dst(roi.width, roi.height, 1, 2 * sizeof(D), g == vt::Guard::After ? vt::Guard::Before : vt::Guard::After);
  dst.fill([&](int x, int y, int) { return mb.inPlace ? src.at(x, y) : 77; });
  ASSERT_EQ(vnxStatusOk, mb.call(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, m));
  VT_EXPECT_SAME_SAMPLES(want, dst.pixels());
  EXPECT_TRUE(dst.canaryIntact());
}

// Every size (every width among them) and source serially, with the guard page on
// either side; the band sizes at 2, 3, 4 and 7 threads, where the reference is the serial result.
template <class D, class W>
void runMembers(const std::vector<Member<D, W>>& members, const std::vector<std::vector<W>>& metrics, int bandMetric) {
  const vt::Guard after = vt::Guard::After, before = vt::Guard::Before;
  std::vector<vnxiSize> sizes = {{1, 1}, {1, 9}, {40, 1}, {15, 16}, {17, 15}, {33, 7}, {70, 66}, {131, 97}};
  for (int w = 1; w <= 51; ++w) sizes.push_back({w, 5});
  for (const auto& mb : members) {
    for (const auto& m : metrics)
      for (vnxiSize roi : sizes)
        for (int p = 0; p < 10; ++p) expectMatchesReference(mb, roi, p, m.data(), (p + roi.width) % 2 ? after : before, 1);
    for (int threads : {2, 3, 4, 7})
      for (vnxiSize roi : {vnxiSize{65, 64}, vnxiSize{203, 150}, vnxiSize{640, 71}})
        for (int p : {0, 2, 3, 4, 5, 6, 7})
          expectMatchesReference(mb, roi, p, metrics[bandMetric].data(), threads % 2 ? after : before, threads);
  }
}

// Standard, orthogonal-only (b = 2a, b > 2a), a > b, saturating, huge.
TEST(DistanceTransform, EveryMemberMatchesTheTwoPassesSerialAndInBands) {
  const std::vector<std::vector<vnx32s>> ints = {{2, 3, 4}, {1, 2, 3}, {3, 7, 5},       {4, 2, 9},
                                                 {1, 1, 1}, {5, 7, 11}, {300, 400, 500}, {70000, 2147483647, 1}};
  runMembers<vnx8u, vnx32s>({{"3x3_8u", false, false, vnxiDistanceTransform_3x3_8u_C1R},
                             {"5x5_8u", true, false, vnxiDistanceTransform_5x5_8u_C1R},
                             {"3x3_8u_I", false, true, inPlace<vnxiDistanceTransform_3x3_8u_C1IR>},
                             {"5x5_8u_I", true, true, inPlace<vnxiDistanceTransform_5x5_8u_C1IR>}},
                            ints, 0);
  runMembers<vnx16u, vnx32s>({{"3x3_16u", false, false, vnxiDistanceTransform_3x3_8u16u_C1R},
                              {"5x5_16u", true, false, vnxiDistanceTransform_5x5_8u16u_C1R}},
                             ints, 5);
  runMembers<vnx32f, vnx32f>({{"3x3_32f", false, false, vnxiDistanceTransform_3x3_8u32f_C1R},
                              {"5x5_32f", true, false, vnxiDistanceTransform_5x5_8u32f_C1R}},
                             {{0.955f, 1.3693f, 2.0f}, {1.0f, 1.4f, 2.1969f}, {0.1f, 0.2f, 0.3f}, {1.3f, 0.7f, 1.9f},
                              {1e38f, 3e38f, FLT_MAX}},
                             0);
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
  vt::expectStatuses(rows, {{dst.ptr(), 8 * 4 * 4}},
                     [](const Row& r) { return vnxiDistanceTransform_3x3_8u32f_C1R(r.s, r.ss, r.d, r.ds, r.r, r.m); });
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
    vnx32s s[4] = {-1, -1, -1, -1};
    vnx32f f[4] = {-1, -1, -1, -1}, g[4] = {-1, -1, -1, -1};
    EXPECT_TRUE(r.want == vnxiGetDistanceTransformMask_32s(r.ker, r.norm, s) &&
                r.want == vnxiGetDistanceTransformMask_32f(r.ker, r.norm, f) &&
                r.want == vnxiGetDistanceTransformMask(r.ker * 10 + r.norm, g)) << r.ker << "/" << r.norm;
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_TRUE(s[i] == (i < r.s.size() ? r.s[i] : -1) && vt::bits(f[i]) == vt::bits(i < r.f.size() ? r.f[i] : -1.0f) &&
                  vt::bits(f[i]) == vt::bits(g[i])) << r.ker << "/" << r.norm << " weight " << i;
  }
  EXPECT_EQ(vnxStatusNullPtr, vnxiGetDistanceTransformMask_32s(4, 9, nullptr));
  EXPECT_EQ(vnxStatusNullPtr, vnxiGetDistanceTransformMask(99, nullptr));
}

}  // namespace
