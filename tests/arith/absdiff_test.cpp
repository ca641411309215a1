// Absolute differences against a reference written from their rule, on guard-page
// images with canary padding, the streamed path of large images, and the check order.
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "support.h"

namespace {

// Sizes from one pixel to a few vectors plus a tail, a tall one and a large one.
const vnxiSize kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {15, 3}, {16, 2}, {17, 5}, {33, 7}, {51, 4}, {64, 1}, {333, 67}};

template <class T>
T refAbsDiff(T a, T b) {
  if constexpr (std::is_floating_point<T>::value)
    return std::fabs(a - b);  // the rounded difference with its sign cleared
  else
    return static_cast<T>(std::abs(int(a) - int(b)));
}

template <class T, class Call>
void checkAbsDiff(const char* name, Call call, bool withConstant) {
  std::mt19937 rng(11);
  for (vnxiSize sz : kSizes)
    for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before})
      for (double value : {-5.0, 0.0, 77.0, 255.0, 300.0, 70000.0}) {
        SCOPED_TRACE(std::string(name) + " " + std::to_string(sz.width) + "x" + std::to_string(sz.height));
        vt::Image<T> a(sz.width, sz.height, 1, 4 * sizeof(T), guard), b(sz.width, sz.height, 1, 2 * sizeof(T), guard),
            d(sz.width, sz.height, 1, 6 * sizeof(T), guard);
        vt::fillRandom(a, rng);
        vt::fillRandom(b, rng);
        d.fill([](int, int, int) { return 123; });
        // the constant as the operation must see it: clamped for the integer types
        T c;
        if constexpr (std::is_floating_point<T>::value)
          c = static_cast<T>(value);
        else
          c = static_cast<T>(std::min<double>(std::max(value, 0.0), std::numeric_limits<T>::max()));
        std::vector<T> expected;
        for (int y = 0; y < sz.height; ++y)
          for (int x = 0; x < sz.width; ++x) expected.push_back(refAbsDiff(a.at(x, y), withConstant ? c : b.at(x, y)));
        ASSERT_EQ(call(a, b, d, value), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(expected, d.pixels());
        EXPECT_TRUE(d.canaryIntact());
        if (!withConstant) break;  // the constant matters only to AbsDiffC
      }
}

TEST(AbsDiff, MatchesExactDifferences) {
  using I8 = vt::Image<vnx8u>;
  using I16 = vt::Image<vnx16u>;
  using I32 = vt::Image<vnx32f>;
  checkAbsDiff<vnx8u>("AbsDiff_8u", [](I8& a, I8& b, I8& d, double) {
    return vnxiAbsDiff_8u_C1R(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size());
  }, false);
  checkAbsDiff<vnx16u>("AbsDiff_16u", [](I16& a, I16& b, I16& d, double) {
    return vnxiAbsDiff_16u_C1R(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size());
  }, false);
  checkAbsDiff<vnx32f>("AbsDiff_32f", [](I32& a, I32& b, I32& d, double) {
    return vnxiAbsDiff_32f_C1R(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size());
  }, false);
  checkAbsDiff<vnx8u>("AbsDiffC_8u", [](I8& a, I8&, I8& d, double v) {
    return vnxiAbsDiffC_8u_C1R(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), int(v));
  }, true);
  checkAbsDiff<vnx16u>("AbsDiffC_16u", [](I16& a, I16&, I16& d, double v) {
    return vnxiAbsDiffC_16u_C1R(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), int(v));
  }, true);
  checkAbsDiff<vnx32f>("AbsDiffC_32f", [](I32& a, I32&, I32& d, double v) {
    return vnxiAbsDiffC_32f_C1R(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), float(v));
  }, true);
}

TEST(AbsDiff, FloatSignAndSpecialValues) {
  const float inf = std::numeric_limits<float>::infinity();
  // 20 pairs: the vector body takes 16, the tail 4.
  const float a[20] = {0.0f, -0.0f, inf, inf, std::nanf(""), -std::nanf(""), 1.0f, 3.0f, 1e30f, -1e-40f,
                       0.0f, -0.0f, inf, inf, std::nanf(""), -std::nanf(""), 1.0f, 3.0f, 1e30f, -1e-40f};
  const float b[20] = {-0.0f, 0.0f, inf, -inf, 1.0f, 1.0f, 1.0f, 5.0f, -1e30f, 1e-40f,
                       -0.0f, 0.0f, inf, -inf, 1.0f, 1.0f, 1.0f, 5.0f, -1e30f, 1e-40f};
  float d[20];
  ASSERT_EQ(vnxiAbsDiff_32f_C1R(a, 80, b, 80, d, 80, {20, 1}), vnxStatusOk);
  for (int i = 0; i < 20; ++i) {
    const float diff = a[i] - b[i];
    EXPECT_EQ(vt::bits(d[i]), vt::bits(diff) & 0x7fffffffu) << i;
  }
  EXPECT_EQ(vt::bits(d[0]), 0u);  // +0 - -0 is +0
}

// Images larger than three quarters of the largest cache take the non-temporal
// path, whose rows start with scalar pixels up to an aligned destination: every
// misalignment of the destination must give the same pixels.
template <class T, class Call>
void checkLargeAbsDiff(Call call) {
  int cache = 0;
  vnxGetMaxCacheSizeB(&cache);
  const int w = 1021, h = int(std::int64_t(cache) / (3 * w * sizeof(T))) + 2;
  vt::Image<T> a(w, h, 1, 0), b(w, h, 1, 0), d(w + 4, h, 1, 0);
  a.fill([](int x, int y, int) { return ((x * 37 + y * 11) % 251) * (sizeof(T) == 4 ? 0.37 : 1.0); });
  b.fill([](int x, int y, int) { return ((x * 13 + y * 7) % 241) * (sizeof(T) == 4 ? 0.61 : 1.0); });
  for (int shift : {0, 1, 3}) {
    T* dst = d.ptr() + shift;  // destination rows shifted by whole elements
    ASSERT_EQ(call(a.ptr(), a.step(), b.ptr(), b.step(), dst, d.step(), vnxiSize{w, h}), vnxStatusOk);
    for (int y = 0; y < h; y += 7)
      for (int x = 0; x < w; ++x)
        ASSERT_EQ(vt::bits(float(refAbsDiff(a.at(x, y), b.at(x, y)))), vt::bits(float(d.at(x + shift, y))))
            << "shift " << shift << " at " << x << "," << y;
  }
}

TEST(AbsDiff, LargeImagesStreamTheirOutputWithTheSamePixels) {
  checkLargeAbsDiff<vnx8u>(vnxiAbsDiff_8u_C1R);
  checkLargeAbsDiff<vnx16u>(vnxiAbsDiff_16u_C1R);
  checkLargeAbsDiff<vnx32f>(vnxiAbsDiff_32f_C1R);
}

TEST(AbsDiffStatus, RowBytesOfAllStepsBeforeAnyMultiple) {
  std::vector<vnx32f> buf(64);
  const vnx32f* p = buf.data();
  struct Case {
    int s1, s2, d;
    vnxStatus expected;
  } cases[] = {{32, 32, 32, 0}, {31, 32, 32, -14}, {32, 32, 34, -108}, {34, 32, 31, -14}, {32, 36, 30, -14}};
  for (const Case& c : cases) {
    EXPECT_EQ(vnxiAbsDiff_32f_C1R(p, c.s1, p, c.s2, buf.data(), c.d, {8, 2}), c.expected);
  }
  const vnx16u* q = reinterpret_cast<const vnx16u*>(p);
  vnx16u* qd = reinterpret_cast<vnx16u*>(buf.data());
  struct Case16 {
    int s1, s2, d;
    vnxStatus expected;
  } cases16[] = {{16, 16, 16, 0}, {15, 16, 16, -14}, {16, 16, 17, -108}, {17, 16, 15, -14}, {16, 18, 14, -14}};
  for (const Case16& c : cases16) EXPECT_EQ(vnxiAbsDiff_16u_C1R(q, c.s1, q, c.s2, qd, c.d, {8, 2}), c.expected);
  EXPECT_EQ(vnxiAbsDiff_8u_C1R(nullptr, 1, nullptr, 1, nullptr, 1, {0, 0}), vnxStatusNullPtr);
  EXPECT_EQ(vnxiAbsDiffC_8u_C1R(reinterpret_cast<const vnx8u*>(p), 8, reinterpret_cast<vnx8u*>(buf.data()), 7,
                                {8, 1}, 3),
            vnxStatusBadStep);
  EXPECT_EQ(vnxiAbsDiffC_32f_C1R(p, 32, buf.data(), 32, {8, 0}, 1.0f), vnxStatusBadSize);
}

}  // namespace
