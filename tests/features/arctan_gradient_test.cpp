// Fast arctangent and colour gradient against references written from their formulas.
#include <algorithm>
#include <cmath>
#include <limits>

#include "features/features.h"
#include "support.h"

namespace {

// The fit with an exact division: the library's reciprocal may differ in the last bits.
float arctanRef(float y, float x) {
  const float ax = std::fabs(x), ay = std::fabs(y);
  const float M = std::max(std::max(ax, ay), 1e-8f), m = std::min(ax, ay);
  const float r = m / M;
  float a = (-15.8131895f * r + 61.094196f) * r - 0.14050041f;
  if (ax < ay) a = 90.0f - a;
  if (x < 0) a = 180.0f - a;
  if (y < 0) a = 360.0f - a;
  return a;
}

TEST(FastArctan, DocumentedPointsGiveTheirValues) {
  struct Row { float y, x, expected; } rows[] = {
      {0, 0, -0.14050041f}, {0, 1, -0.14050041f}, {1, 0, 90.14050041f}, {0, -1, 180.14050041f},
      {-1e-30f, 1, 360.14050041f}, {-0.0f, -0.0f, -0.14050041f}, {1, 1, 45.14050041f}};
  for (const Row& r : rows) {
    float out = 0;
    ASSERT_EQ(vnxStatusOk, vnxibFastArctan_32f(&r.y, &r.x, &out, 1));
    EXPECT_NEAR(r.expected, out, 2e-5f) << r.y << " " << r.x;
  }
}

TEST(FastArctan, FollowsTheFitAndTheTailMatchesTheVectors) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> u(-1000.0f, 1000.0f);
  for (int len : {1, 2, 3, 4, 5, 7, 8, 33, 1001}) {
    vt::Span<float> y(len), x(len), d(len, 0, vt::Guard::Before);
    for (int i = 0; i < len; ++i) y[i] = u(rng), x[i] = (i % 5 == 0) ? 0.0f : u(rng);
    ASSERT_EQ(vnxStatusOk, vnxibFastArctan_32f(y.data(), x.data(), d.data(), len));
    for (int i = 0; i < len; ++i) {
      EXPECT_NEAR(arctanRef(y[i], x[i]), d[i], 1e-3f) << i;
      float one = 0;
      vnxibFastArctan_32f(&y[i], &x[i], &one, 1);  // the tail path gives the vector bits
      ASSERT_EQ(vt::bits(one), vt::bits(d[i])) << len << " " << i;
    }
  }
}

TEST(FastArctan, NaNGivesTheLibraryNaNAndStatusOrder) {
  const float y[4] = {std::numeric_limits<float>::quiet_NaN(), 1, 2, 3}, x[4] = {1, 1, 1, 1};
  float d[4] = {5, 5, 5, 5};
  EXPECT_EQ(vnxStatusNullPtr, vnxibFastArctan_32f(nullptr, x, d, 0));
  EXPECT_EQ(vnxStatusNullPtr, vnxibFastArctan_32f(y, x, nullptr, 4));
  EXPECT_EQ(vnxStatusBadSize, vnxibFastArctan_32f(y, x, d, 0));
  EXPECT_EQ(5.0f, d[0]);
  ASSERT_EQ(vnxStatusOk, vnxibFastArctan_32f(y, x, d, 4));
  EXPECT_EQ(0xFFC00000u, vt::bits(d[0]));
}

// The integer members take channel means (fixed-point reciprocals of 3), the float one sums.
template <class T>
T gradRef(T c0, T c1, T c2, int norm) {
  if constexpr (std::is_same<T, vnx32f>::value) {
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
using GradFn = vnxStatus (*)(const T*, int, T*, int, vnxiSize, int);

template <class T>
void checkGradient(GradFn<T> fn) {
  std::mt19937 rng(3);
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{17, 3}, vnxiSize{33, 7}}) {
    for (int norm = 0; norm < 3; ++norm) {
      vt::Image<T> src(roi.width, roi.height, 3, 8), dst(roi.width, roi.height, 1, 4, vt::Guard::Before);
      vt::fillRandom(src, rng);
      if (std::is_same<T, vnx32f>::value) src.fill([&](int x, int y, int c) { return float(x - 3 * y + c) * 1.25f; });
      dst.fill([](int, int, int) { return 77; });
      ASSERT_EQ(vnxStatusOk, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, norm));
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x)
          ASSERT_EQ(gradRef<T>(src.at(x, y, 0), src.at(x, y, 1), src.at(x, y, 2), norm), dst.at(x, y))
              << norm << " " << x << "," << y;
      EXPECT_TRUE(dst.canaryIntact());
      // Status order: pointers, ROI, row bytes, multiples, norm; nothing written on error.
      const int es = sizeof(T);
      EXPECT_EQ(vnxStatusNullPtr, fn(nullptr, src.step(), dst.ptr(), dst.step(), {0, 0}, norm));
      EXPECT_EQ(vnxStatusBadSize, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), {roi.width, 0}, 9));
      EXPECT_EQ(vnxStatusBadStep, fn(src.ptr(), 3 * es * roi.width - 1, dst.ptr(), dst.step(), roi, 9));
      EXPECT_EQ(vnxStatusBadStep, fn(src.ptr(), src.step(), dst.ptr(), es * roi.width - 1, roi, 9));
      if (es > 1) {
        EXPECT_EQ(vnxStatusStepNotMultiple, fn(src.ptr(), src.step() + 1, dst.ptr(), dst.step(), roi, 9));
      }
      EXPECT_EQ(vnxStatusBadArg, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, 3));
      EXPECT_EQ(vnxStatusBadArg, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, -1));
    }
  }
}

TEST(GradientColorToGray, EveryNormOfEveryTypeMatchesItsFormula) {
  checkGradient<vnx8u>(vnxiGradientColorToGray_8u_C3C1R);
  checkGradient<vnx16u>(vnxiGradientColorToGray_16u_C3C1R);
  checkGradient<vnx32f>(vnxiGradientColorToGray_32f_C3C1R);
}

TEST(GradientColorToGray, DocumentedValues) {
  const vnx8u white[3] = {255, 255, 255}, small[3] = {1, 1, 0};
  const vnx16u top[3] = {65535, 65535, 65535};
  const vnx32f f[3] = {1, -1, 1};
  vnx8u d[2] = {0, 0};
  vnx16u d16 = 0;
  vnx32f df = 0;
  ASSERT_EQ(vnxStatusOk, vnxiGradientColorToGray_8u_C3C1R(white, 3, d, 1, {1, 1}, 1));
  ASSERT_EQ(vnxStatusOk, vnxiGradientColorToGray_8u_C3C1R(small, 3, d + 1, 1, {1, 1}, 1));
  ASSERT_EQ(vnxStatusOk, vnxiGradientColorToGray_16u_C3C1R(top, 6, &d16, 2, {1, 1}, 2));
  ASSERT_EQ(vnxStatusOk, vnxiGradientColorToGray_32f_C3C1R(f, 12, &df, 4, {1, 1}, 1));
  EXPECT_EQ(255, d[0]);
  EXPECT_EQ(1, d[1]);
  EXPECT_EQ(65535, d16);
  EXPECT_EQ(3.0f, df);  // a sum, not a mean
}

}  // namespace
