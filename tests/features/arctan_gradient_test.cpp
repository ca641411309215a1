// Fast arctangent and colour gradient against references written from their formulas;
// the float data holds NaNs, infinities, -0 and denormals.
#include <algorithm>
#include <cmath>
#include <limits>

#include "support.h"

namespace {

// The fit with an exact division: the library's reciprocal may differ in the last bits.
float arctanRef(float y, float x) {
  const float ax = std::fabs(x), ay = std::fabs(y);
  const float M = std::max(std::max(ax, ay), 1e-8f), m = std::min(ax, ay);
  float a = (-15.8131895f * (m / M) + 61.094196f) * (m / M) - 0.14050041f;
  if (ax < ay) a = 90.0f - a;
  if (x < 0) a = 180.0f - a;
  if (y < 0) a = 360.0f - a;
  return a;
}

// Every length mod 4, with the unwrapped points (0, 0), (-1e-30, 1), (-0, -0) and a NaN
// among random ones; each element alone (the tail path) gives the bits of the vector run.
TEST(FastArctan, FollowsTheFitAndTheTailMatchesTheVectors) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> u(-1000.0f, 1000.0f);
  const float nan = std::numeric_limits<float>::quiet_NaN(), special[][2] = {{0, 0}, {-1e-30f, 1}, {-0.0f, -0.0f}, {nan, 1}, {1, 0}};
  for (int len : {1, 2, 3, 4, 5, 7, 8, 33, 1001}) {
    vt::Span<float> y(len), x(len), d(len, 0, vt::Guard::Before);
    for (int i = 0; i < len; ++i) y[i] = u(rng), x[i] = (i % 5 == 0) ? 0.0f : u(rng);
    for (int i = 0; i < std::min(len, 5); ++i) y[i] = special[(i + len) % 5][0], x[i] = special[(i + len) % 5][1];
    ASSERT_EQ(vnxStatusOk, vnxibFastArctan_32f(y.data(), x.data(), d.data(), len));
    for (int i = 0; i < len; ++i) {
      EXPECT_TRUE(std::isnan(y[i]) ? vt::bits(d[i]) == 0xFFC00000u : std::fabs(arctanRef(y[i], x[i]) - d[i]) <= 1e-3f)
          << y[i] << " " << x[i] << " " << d[i];
      float one = 0;
      vnxibFastArctan_32f(&y[i], &x[i], &one, 1);
      ASSERT_EQ(vt::bits(one), vt::bits(d[i])) << len << " " << i;
    }
  }
  float y[1] = {1}, d[1] = {5};
  EXPECT_EQ(vnxStatusNullPtr, vnxibFastArctan_32f(nullptr, y, d, 0));  // pointers before the length
  EXPECT_EQ(vnxStatusNullPtr, vnxibFastArctan_32f(y, y, nullptr, 1));
  EXPECT_EQ(vnxStatusBadSize, vnxibFastArctan_32f(y, y, d, 0));
  EXPECT_EQ(5.0f, d[0]);
}

// The integer members take channel means (fixed-point reciprocals of 3), the float one sums.
template <class T>
T gradRef(T c0, T c1, T c2, int norm) {
  if constexpr (std::is_same<T, vnx32f>::value) {
    if (std::isnan(c0) || std::isnan(c1) || std::isnan(c2)) return vt::fromBits(0xFFC00000);
    if (norm == 0) return std::max({std::fabs(c0), std::fabs(c1), std::fabs(c2)});
    if (norm == 1) return (std::fabs(c0) + std::fabs(c1)) + std::fabs(c2);
    return std::sqrt((c0 * c0 + c1 * c1) + c2 * c2);
  } else {
    const long long s = c0 + c1 + c2, q = 1LL * c0 * c0 + 1LL * c1 * c1 + 1LL * c2 * c2;
    if (norm == 0) return std::max({c0, c1, c2});
    if (norm == 1) return T(sizeof(T) == 1 ? (s * 1365 + 2048) >> 12 : (s * 5461 + 8192) >> 14);
    return T(std::min(65535.0, std::floor(std::sqrt(double(float(q) / 3.0f)) + 0.5)));
  }
}

template <class T>
void checkGradient(vnxStatus (*fn)(const T*, int, T*, int, vnxiSize, int)) {
  std::mt19937 rng(3);
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{17, 3}, vnxiSize{33, 7}})
    for (int norm = 0; norm < 3; ++norm) {
      vt::Image<T> src(roi.width, roi.height, 3, 8), dst(roi.width, roi.height, 1, 4, vt::Guard::Before);
      src.fill([&](int, int, int c) { return c == 2 && roi.width == 1 ? std::numeric_limits<T>::max() : vt::randomSampleOrSpecial<T>(rng); });
      dst.fill([](int, int, int) { return 77; });
      ASSERT_EQ(vnxStatusOk, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, norm));
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x)
          ASSERT_EQ(vt::bits(float(gradRef<T>(src.at(x, y, 0), src.at(x, y, 1), src.at(x, y, 2), norm))), vt::bits(float(dst.at(x, y))))
              << norm << " " << x << "," << y;
      EXPECT_TRUE(dst.canaryIntact());
      // Pointers, ROI, row bytes, multiples, norm; nothing written on error.
      const int es = sizeof(T), ss = src.step(), ds = dst.step();
      struct Row { const char* what; const T* s; int ss, ds; vnxiSize roi; int norm; vnxStatus want; } rows[] = {
          {"null before size", nullptr, ss, ds, {0, 0}, 9, -8}, {"height", src.ptr(), ss, ds, {roi.width, 0}, 9, -6},
          {"short source", src.ptr(), 3 * es * roi.width - 1, ds, roi, 9, -14}, {"short destination", src.ptr(), ss, es * roi.width - 1, roi, 9, -14},
          {"multiples before the norm", src.ptr(), ss + 1, ds, roi, 3, es > 1 ? -108 : -5},
          {"norm 3", src.ptr(), ss, ds, roi, 3, -5}, {"norm -1", src.ptr(), ss, ds, roi, -1, -5}};
      vt::expectStatuses(rows, {{dst.ptr(), std::size_t(ds) * roi.height}},
                         [&](const Row& r) { return fn(r.s, r.ss, dst.ptr(), r.ds, r.roi, r.norm); });
    }
}

TEST(GradientColorToGray, EveryNormOfEveryTypeMatchesItsFormula) {
  checkGradient<vnx8u>(vnxiGradientColorToGray_8u_C3C1R);
  checkGradient<vnx16u>(vnxiGradientColorToGray_16u_C3C1R);
  checkGradient<vnx32f>(vnxiGradientColorToGray_32f_C3C1R);
}

}  // namespace
