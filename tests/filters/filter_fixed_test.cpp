// Fixed-kernel filters with borders: every member, border type and mask size against
// a 2-D reference that lays the weights over the image, on guard-page images; the
// buffer-size formulas for several thread counts; the order of the checks.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>

#include "filter_reference.h"
#include "support.h"

namespace {

using vt::clampTo;
using vt::refIndex;
using vt::roundDiv;

enum class Member { SobelHoriz, SobelVert, SobelNegVert, SobelHorizSecond, SobelVertSecond, SobelCross, Laplacian,
                    ScharrHoriz, ScharrVert, Lowpass };

// Weights over the image, row by row (y downward), k x k.
std::vector<int> outer(const std::vector<int>& col, const std::vector<int>& row) {
  std::vector<int> w;
  for (int c : col)
    for (int r : row) w.push_back(c * r);
  return w;
}
std::vector<int> weights(Member m, int k) {
  const bool five = k == 5;
  switch (m) {
    case Member::SobelHoriz:
      return five ? outer({1, 2, 0, -2, -1}, {1, 4, 6, 4, 1}) : std::vector<int>{1, 2, 1, 0, 0, 0, -1, -2, -1};
    case Member::SobelVert:
      return five ? outer({1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}) : std::vector<int>{-1, 0, 1, -2, 0, 2, -1, 0, 1};
    case Member::SobelNegVert: {
      std::vector<int> w = weights(Member::SobelVert, k);
      for (int& v : w) v = -v;
      return w;
    }
    case Member::SobelHorizSecond:
      return five ? outer({1, 0, -2, 0, 1}, {1, 4, 6, 4, 1}) : std::vector<int>{1, 2, 1, -2, -4, -2, 1, 2, 1};
    case Member::SobelVertSecond:
      return five ? outer({1, 4, 6, 4, 1}, {1, 0, -2, 0, 1}) : std::vector<int>{1, -2, 1, 2, -4, 2, 1, -2, 1};
    case Member::SobelCross:
      return five ? outer({1, 2, 0, -2, -1}, {-1, -2, 0, 2, 1}) : std::vector<int>{-1, 0, 1, 0, 0, 0, 1, 0, -1};
    case Member::ScharrHoriz: return {3, 10, 3, 0, 0, 0, -3, -10, -3};
    case Member::ScharrVert: return {-3, 0, 3, -10, 0, 10, -3, 0, 3};
    case Member::Laplacian: {
      std::vector<int> a = weights(Member::SobelHorizSecond, k), b = weights(Member::SobelVertSecond, k);
      for (std::size_t i = 0; i < a.size(); ++i) a[i] += b[i];
      return a;
    }
    default: return std::vector<int>(k * k, 1);
  }
}


struct Params {
  int mask, border, divisor;
  double bval;
};

template <class S, class D>
D reference(const vt::Image<S>& src, int x, int y, Member m, const Params& p) {
  const bool scharr = m == Member::ScharrHoriz || m == Member::ScharrVert;
  const int k = p.mask == vnxMskSize5x5 && !scharr ? 5 : 3, r = k / 2;
  const std::vector<int> w = weights(m, k);
  double sum = 0;  // integer-valued: exact in double
  for (int dy = 0; dy < k; ++dy)
    for (int dx = 0; dx < k; ++dx) {
      const int xi = x + dx - r, yi = y + dy - r;
      const bool inside = xi >= 0 && xi < src.width() && yi >= 0 && yi < src.height();
      const double v = inside ? double(src.at(xi, yi))
                       : p.border == vnxBorderConst
                           ? p.bval
                           : double(src.at(refIndex(xi, src.width(), p.border), refIndex(yi, src.height(), p.border)));
      sum += w[dy * k + dx] * v;
    }
  const long long s = static_cast<long long>(sum);
  if constexpr (std::is_same<D, vnx16s>::value) return D(clampTo(s, -32768, 32767));
  if constexpr (std::is_same<D, vnx8s>::value) return D(clampTo(roundDiv(s, p.divisor), -128, 127));
  if constexpr (std::is_same<D, vnx8u>::value) return D(clampTo(roundDiv(s, k * k), 0, 255));
  if constexpr (std::is_same<D, vnx32f>::value)
    return m == Member::Lowpass ? float(sum) * (1.0f / float(k * k)) : float(sum);
}

using Query = vnxStatus (*)(vnxiSize, int, int*);
template <class S, class D>
using Filter = typename std::conditional<std::is_same<D, vnx8s>::value,
                                         vnxStatus (*)(const S*, int, D*, int, vnxiSize, int, int, S, int, vnx8u*),
                                         vnxStatus (*)(const S*, int, D*, int, vnxiSize, int, int, S, vnx8u*)>::type;
template <class S, class D>
struct Entry {
  const char* name;
  Member m;
  Filter<S, D> f;
  Query q;
};

template <class S, class D>
vnxStatus run(const Entry<S, D>& e, const S* src, int srcStep, D* dst, int dstStep, vnxiSize roi, const Params& p,
              vnx8u* buf) {
  if constexpr (std::is_same<D, vnx8s>::value)
    return e.f(src, srcStep, dst, dstStep, roi, p.mask, p.border, S(p.bval), p.divisor, buf);
  else
    return e.f(src, srcStep, dst, dstStep, roi, p.mask, p.border, S(p.bval), buf);
}

const Entry<vnx8u, vnx16s> k8u16s[] = {
    {"SobelHoriz", Member::SobelHoriz, vnxiFilterSobelHorizBorder_8u16s_C1R,
     vnxiFilterSobelHorizGetBufferSize_8u16s_C1R},
    {"SobelVert", Member::SobelVert, vnxiFilterSobelVertBorder_8u16s_C1R,
     vnxiFilterSobelVertGetBufferSize_8u16s_C1R},
    {"SobelNegVert", Member::SobelNegVert, vnxiFilterSobelNegVertBorder_8u16s_C1R,
     vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R},
    {"SobelHorizSecond", Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_8u16s_C1R,
     vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R},
    {"SobelVertSecond", Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_8u16s_C1R,
     vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R},
    {"SobelCross", Member::SobelCross, vnxiFilterSobelCrossBorder_8u16s_C1R,
     vnxiFilterSobelCrossGetBufferSize_8u16s_C1R},
    {"Laplacian", Member::Laplacian, vnxiFilterLaplacianBorder_8u16s_C1R,
     vnxiFilterLaplacianGetBufferSize_8u16s_C1R},
    {"ScharrHoriz", Member::ScharrHoriz, [](const vnx8u* s, int ss, vnx16s* d, int ds, vnxiSize r, int, int b, vnx8u v, vnx8u* p) { return vnxiFilterScharrHorizBorder_8u16s_C1R(s, ss, d, ds, r, b, v, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrHorizGetBufferSize_8u16s_C1R(r, p); }},
    {"ScharrVert", Member::ScharrVert, [](const vnx8u* s, int ss, vnx16s* d, int ds, vnxiSize r, int, int b, vnx8u v, vnx8u* p) { return vnxiFilterScharrVertBorder_8u16s_C1R(s, ss, d, ds, r, b, v, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrVertGetBufferSize_8u16s_C1R(r, p); }},
};
const Entry<vnx8u, vnx8s> k8u8s[] = {
    {"SobelHoriz", Member::SobelHoriz, vnxiFilterSobelHorizBorder_8u8s_C1R,
     vnxiFilterSobelHorizGetBufferSize_8u8s_C1R},
    {"SobelVert", Member::SobelVert, vnxiFilterSobelVertBorder_8u8s_C1R,
     vnxiFilterSobelVertGetBufferSize_8u8s_C1R},
    {"SobelNegVert", Member::SobelNegVert, vnxiFilterSobelNegVertBorder_8u8s_C1R,
     vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R},
    {"SobelHorizSecond", Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_8u8s_C1R,
     vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R},
    {"SobelVertSecond", Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_8u8s_C1R,
     vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R},
    {"SobelCross", Member::SobelCross, vnxiFilterSobelCrossBorder_8u8s_C1R,
     vnxiFilterSobelCrossGetBufferSize_8u8s_C1R},
    {"Laplacian", Member::Laplacian, vnxiFilterLaplacianBorder_8u8s_C1R,
     vnxiFilterLaplacianGetBufferSize_8u8s_C1R},
    {"ScharrHoriz", Member::ScharrHoriz, [](const vnx8u* s, int ss, vnx8s* d, int ds, vnxiSize r, int, int b, vnx8u v, int dv, vnx8u* p) { return vnxiFilterScharrHorizBorder_8u8s_C1R(s, ss, d, ds, r, b, v, dv, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrHorizGetBufferSize_8u8s_C1R(r, p); }},
    {"ScharrVert", Member::ScharrVert, [](const vnx8u* s, int ss, vnx8s* d, int ds, vnxiSize r, int, int b, vnx8u v, int dv, vnx8u* p) { return vnxiFilterScharrVertBorder_8u8s_C1R(s, ss, d, ds, r, b, v, dv, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrVertGetBufferSize_8u8s_C1R(r, p); }},
};
const Entry<vnx32f, vnx32f> k32f[] = {
    {"SobelHoriz", Member::SobelHoriz, vnxiFilterSobelHorizBorder_32f_C1R,
     vnxiFilterSobelHorizGetBufferSize_32f_C1R},
    {"SobelVert", Member::SobelVert, vnxiFilterSobelVertBorder_32f_C1R,
     vnxiFilterSobelVertGetBufferSize_32f_C1R},
    {"SobelNegVert", Member::SobelNegVert, vnxiFilterSobelNegVertBorder_32f_C1R,
     vnxiFilterSobelNegVertGetBufferSize_32f_C1R},
    {"SobelHorizSecond", Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_32f_C1R,
     vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R},
    {"SobelVertSecond", Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_32f_C1R,
     vnxiFilterSobelVertSecondGetBufferSize_32f_C1R},
    {"SobelCross", Member::SobelCross, vnxiFilterSobelCrossBorder_32f_C1R,
     vnxiFilterSobelCrossGetBufferSize_32f_C1R},
    {"Laplacian", Member::Laplacian, vnxiFilterLaplacianBorder_32f_C1R,
     vnxiFilterLaplacianGetBufferSize_32f_C1R},
    {"ScharrHoriz", Member::ScharrHoriz, [](const vnx32f* s, int ss, vnx32f* d, int ds, vnxiSize r, int, int b, vnx32f v, vnx8u* p) { return vnxiFilterScharrHorizBorder_32f_C1R(s, ss, d, ds, r, b, v, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrHorizGetBufferSize_32f_C1R(r, p); }},
    {"ScharrVert", Member::ScharrVert, [](const vnx32f* s, int ss, vnx32f* d, int ds, vnxiSize r, int, int b, vnx32f v, vnx8u* p) { return vnxiFilterScharrVertBorder_32f_C1R(s, ss, d, ds, r, b, v, p); },
     [](vnxiSize r, int, int* p) { return vnxiFilterScharrVertGetBufferSize_32f_C1R(r, p); }},
    {"Lowpass", Member::Lowpass, vnxiFilterLowpassBorder_32f_C1R,
     vnxiFilterLowpassGetBufferSize_32f_C1R},
};
const Entry<vnx8u, vnx8u> k8u[] = {
    {"Lowpass", Member::Lowpass, vnxiFilterLowpassBorder_8u_C1R,
     vnxiFilterLowpassGetBufferSize_8u_C1R},
};

// Runs one member on a guard-page image and compares every pixel with the reference.
template <class S, class D>
void expectMatches(const Entry<S, D>& e, vnxiSize size, const Params& p, vt::Guard guard, unsigned seed) {
  SCOPED_TRACE(std::string(e.name) + " " + std::to_string(size.width) + "x" + std::to_string(size.height) +
               " mask " + std::to_string(p.mask) + " border " + std::to_string(p.border) + " divisor " +
               std::to_string(p.divisor));
  std::mt19937 rng(seed);
  vt::Image<S> src(size.width, size.height, 1, 3 * sizeof(S), guard);
  std::uniform_int_distribution<int> d(std::is_same<S, vnx32f>::value ? -300 : 0, 255);
  src.fill([&](int, int, int) { return d(rng); });
  vt::Image<D> dst(size.width, size.height, 1, 2 * sizeof(D), guard);
  dst.fill([](int x, int y, int) { return (x * 7 + y * 3) % 50 + 3; });
  int bytes = 0;
  ASSERT_EQ(e.q(size, p.mask, &bytes), vnxStatusOk);
  vt::Image<vnx8u> buf(bytes, 1, 1, 0, vt::Guard::After);  // the last byte before a protected page
  ASSERT_EQ(run(e, src.ptr(), src.step(), dst.ptr(), dst.step(), size, p, buf.ptr()), vnxStatusOk);
  int bad = 0;
  for (int y = 0; y < size.height && bad < 3; ++y)
    for (int x = 0; x < size.width && bad < 3; ++x) {
      const D want = reference<S, D>(src, x, y, e.m, p);
      if (std::memcmp(&want, &dst.at(x, y), sizeof(D)) != 0) {
        ADD_FAILURE() << "at (" << x << ", " << y << "): expected " << +want << ", got " << +dst.at(x, y);
        ++bad;
      }
    }
  EXPECT_TRUE(dst.canaryIntact());
}

const vnxiSize kSmallSizes[] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}, {17, 5}, {33, 7}, {6, 34}, {48, 3}};
const int kDivisors[] = {1, 3, -4, 7, 2};

template <class S, class D, std::size_t N>
void everyMemberBorderAndMask(const Entry<S, D> (&table)[N]) {
  unsigned seed = 1;
  for (const auto& e : table)
    for (int mask : {vnxMskSize3x3, vnxMskSize5x5})
      for (int border = 0; border <= 4; ++border)
        for (const vnxiSize& size : kSmallSizes) {
          const Params p{mask, border, kDivisors[seed % 5], border == 0 ? double(seed * 37 % 256) : 0.0};
          expectMatches(e, size, p, seed % 2 ? vt::Guard::After : vt::Guard::Before, seed);
          ++seed;
        }
}

TEST(FixedFilters, EveryMemberBorderAndMaskMatchesTheWeights_8u16s) { everyMemberBorderAndMask(k8u16s); }
TEST(FixedFilters, EveryMemberBorderAndMaskMatchesTheWeights_8u8s) { everyMemberBorderAndMask(k8u8s); }
TEST(FixedFilters, EveryMemberBorderAndMaskMatchesTheWeights_32f) { everyMemberBorderAndMask(k32f); }
TEST(FixedFilters, EveryMemberBorderAndMaskMatchesTheWeights_8u) { everyMemberBorderAndMask(k8u); }

// Sizes that take the band path for 2 and 4 threads (height >= threads * 128, width >= 256).
template <class S, class D, std::size_t N>
void bandsMatchTheWeights(const Entry<S, D> (&table)[N]) {
  unsigned seed = 99;
  for (int threads : {2, 3}) {
    vt::Threads guard(threads);
    for (const auto& e : table)
      for (int mask : {vnxMskSize3x3, vnxMskSize5x5}) {
        const int border = int(seed % 5);
        const Params p{mask, border, kDivisors[seed % 5], 200.0};
        expectMatches(e, {257 + int(seed % 9), threads * 128 + int(seed % 5)}, p, vt::Guard::After, seed);
        ++seed;
      }
  }
}
TEST(FixedFilters, BandsMatchTheWeights_8u16s) { bandsMatchTheWeights(k8u16s); }
TEST(FixedFilters, BandsMatchTheWeights_8u8s) { bandsMatchTheWeights(k8u8s); }
TEST(FixedFilters, BandsMatchTheWeights_32f) { bandsMatchTheWeights(k32f); }
TEST(FixedFilters, BandsMatchTheWeights_8u) { bandsMatchTheWeights(k8u); }

TEST(FixedFilters, FractionalFloatsStayCloseToTheWeights) {
  std::mt19937 rng(5);
  vt::Image<vnx32f> src(40, 9, 1, 0);
  src.fill([&](int x, int y, int) { return std::ldexp(float(int(rng() % 2001) - 1000), -7) + x * 0.01f - y; });
  vt::Image<vnx32f> dst(40, 9);
  for (const auto& e : k32f) {
    int bytes = 0;
    ASSERT_EQ(e.q(src.size(), vnxMskSize5x5, &bytes), vnxStatusOk);
    std::vector<vnx8u> buf(bytes);
    const Params p{vnxMskSize5x5, vnxBorderMirror, 1, 0};
    ASSERT_EQ(run(e, src.ptr(), src.step(), dst.ptr(), dst.step(), src.size(), p, buf.data()), vnxStatusOk);
    for (int y = 0; y < 9; ++y)
      for (int x = 0; x < 40; ++x) {
        // double reference of the same weights; float sums stay within a few ulps of 64 * max
        const int k = e.m == Member::ScharrHoriz || e.m == Member::ScharrVert ? 3 : 5, r = k / 2;
        const std::vector<int> w = weights(e.m, k);
        double sum = 0;
        for (int dy = 0; dy < k; ++dy)
          for (int dx = 0; dx < k; ++dx)
            sum += w[dy * k + dx] * double(src.at(refIndex(x + dx - r, 40, 3), refIndex(y + dy - r, 9, 3)));
        if (e.m == Member::Lowpass) sum /= k * k;
        ASSERT_NEAR(dst.at(x, y), sum, 1e-4 * 64 * 12) << e.name << " at " << x << ", " << y;
      }
  }
}

// ---- buffer sizes ---------------------------------------------------------------

long long roundUp(long long v, int m) { return (v + m - 1) / m * m; }

TEST(FixedFilters, BufferSizesFollowTheFormulaForEachThreadCount) {
  const vnxiSize sizes[] = {{1, 1}, {100, 10}, {1920, 1080}, {17, 333}};
  for (int t : {1, 2, 4}) {
    vt::Threads guard(t);
    for (const vnxiSize& s : sizes)
      for (int mask : {vnxMskSize3x3, vnxMskSize5x5}) {
        const long long k = mask == vnxMskSize5x5 ? 5 : 3, w16 = roundUp(s.width, 16), w4 = roundUp(s.width, 4);
        auto rowQ = [&](long long kk, long long perThread) { return t * (32 + 4 * (s.height + kk) + perThread); };
        const long long r8 = rowQ(k, 36 * k + 112), c16 = rowQ(k, 12 * w4 + 32), r32 = rowQ(k, 64 * k + 64);
        const long long r8s = rowQ(3, 36 * 3 + 112), c16s = rowQ(3, 12 * w4 + 32), r32s = rowQ(3, 64 * 3 + 64);
        const long long sobel8 = 2 * w16 * (2 * k + 15) + 4 * (3 * k + 30) + 64 + r8 + c16;
        const long long sobel32 = 4 * w4 * (2 * k + 15) + 4 * (3 * k + 30) + 64 + r32 + 32;
        const long long lap = 4 * w16 * (2 * k + 15) + 8 * (3 * k + 30) + 96 + r8 + c16;
        const long long lap8s = lap + (k == 5 ? 2 * w16 * s.height + 32 : 0);
        const long long lap32 = 8 * w16 * (2 * k + 15) + 8 * (3 * k + 30) + 96 + r32 + 32;
        const long long sch8 = 42 * w16 + 220 + r8s + c16s, sch32 = 84 * w4 + 220 + r32s + 32;
        auto expected = [&](Member m, int kind) {  // kind: 0 8u16s, 1 8u8s, 2 32f
          if (m == Member::Laplacian) return t * (32 + (kind == 2 ? lap32 : kind == 1 ? lap8s : lap));
          if (m == Member::ScharrHoriz || m == Member::ScharrVert) return t * (32 + (kind == 2 ? sch32 : sch8));
          return t * (32 + (kind == 2 ? sobel32 : sobel8));
        };
        auto check = [&](const char* name, Query q, long long want) {
          int got = -1;
          ASSERT_EQ(q(s, mask, &got), vnxStatusOk) << name;
          if (std::string(name).rfind("Scharr", 0) == 0 && mask == vnxMskSize5x5) return;  // no mask: 3x3 only
          EXPECT_EQ(got, want) << name << " threads " << t << " " << s.width << "x" << s.height << " mask " << mask;
        };
        for (const auto& e : k8u16s) check(e.name, e.q, expected(e.m, 0));
        for (const auto& e : k8u8s) check(e.name, e.q, expected(e.m, 1));
        for (const auto& e : k32f) check(e.name, e.q, expected(e.m, 2));
        for (const auto& e : k8u) check(e.name, e.q, expected(e.m, 0));
      }
  }
}

TEST(FixedFilters, QueryChecksResultPointerThenSizeThenMask) {
  for (const auto& e : k8u16s) {
    int v = 0;
    EXPECT_EQ(e.q({0, 0}, 3, nullptr), vnxStatusNullPtr) << e.name;
    EXPECT_EQ(e.q({0, 5}, 3, &v), vnxStatusBadSize) << e.name;
    EXPECT_EQ(e.q({5, 0}, 33, &v), vnxStatusBadSize) << e.name;
    if (e.m != Member::ScharrHoriz && e.m != Member::ScharrVert) {
      EXPECT_EQ(e.q({5, 5}, 3, &v), vnxStatusBadMaskSize) << e.name;
    }
  }
  int v = 0;
  EXPECT_EQ(vnxiFilterLowpassGetBufferSize_32f_C1R({5, 5}, 3, &v), vnxStatusBadMaskSize);
  EXPECT_EQ(vnxiFilterLaplacianGetBufferSize_8u8s_C1R({5, 5}, 54, &v), vnxStatusBadMaskSize);
}

// ---- statuses -------------------------------------------------------------------

struct StatusCase {
  const char* what;
  bool nullSrc, nullDst, nullBuf;
  vnxiSize roi;
  int srcStepDelta, dstStepDelta, mask, border, divisor;
  vnxStatus expected;
};
const StatusCase kStatusCases[] = {
    {"fine", false, false, false, {8, 4}, 0, 0, 33, 1, 1, vnxStatusOk},
    {"null source", true, false, false, {8, 4}, 0, 0, 33, 1, 1, vnxStatusNullPtr},
    {"null destination", false, true, false, {8, 4}, 0, 0, 33, 1, 1, vnxStatusNullPtr},
    {"null buffer wins over size", false, false, true, {0, 4}, 0, 0, 33, 1, 1, vnxStatusNullPtr},
    {"zero width", false, false, false, {0, 4}, 0, 0, 3, 9, 0, vnxStatusBadSize},
    {"zero height wins over steps", false, false, false, {8, 0}, -100, 0, 33, 1, 1, vnxStatusBadSize},
    {"short source step", false, false, false, {8, 4}, -1, 0, 3, 9, 0, vnxStatusBadStep},
    {"short destination step", false, false, false, {8, 4}, 0, -1, 33, 1, 1, vnxStatusBadStep},
    {"border 5 wins over divisor and mask", false, false, false, {8, 4}, 0, 0, 3, 5, 0, vnxStatusBadArg},
    {"border -1", false, false, false, {8, 4}, 0, 0, 33, -1, 1, vnxStatusBadArg},
    {"mask 3", false, false, false, {8, 4}, 0, 0, 3, 1, 1, vnxStatusBadMaskSize},
};

template <class S, class D, std::size_t N>
void statusesInOrder(const Entry<S, D> (&table)[N], int misalign) {
  for (const auto& e : table)
    for (const StatusCase& c : kStatusCases) {
      vt::Image<S> src(8, 4, 1, 16);
      vt::Image<D> dst(8, 4, 1, 16);
      dst.fill([](int, int, int) { return 7; });
      const std::vector<D> before = dst.pixels();
      std::vector<vnx8u> buf(1 << 16);
      const Params p{c.mask, c.border, c.divisor, 0};
      const bool scharr = e.m == Member::ScharrHoriz || e.m == Member::ScharrVert;
      vnxStatus want = c.expected;
      if (scharr && want == vnxStatusBadMaskSize) want = vnxStatusOk;
      if (!std::is_same<D, vnx8s>::value && c.divisor == 0 && want == vnxStatusBadArg && c.border >= 0 &&
          c.border <= 4)
        want = scharr ? vnxStatusOk : vnxStatusBadMaskSize;
      const vnxStatus st = run(e, c.nullSrc ? nullptr : src.ptr(), src.step() + c.srcStepDelta * 17,
                               c.nullDst ? nullptr : dst.ptr(), dst.step() + c.dstStepDelta * 17, c.roi, p,
                               c.nullBuf ? nullptr : buf.data());
      EXPECT_EQ(st, want) << e.name << ": " << c.what;
      if (st != vnxStatusOk) VT_EXPECT_SAME_SAMPLES(before, dst.pixels());
    }
  // Step multiples come after all row-byte tests.
  for (const auto& e : table) {
    vt::Image<S> src(8, 4, 1, 16);
    vt::Image<D> dst(8, 4, 1, 16);
    std::vector<vnx8u> buf(1 << 16);
    const Params p{33, 1, 1, 0};
    if (misalign) {
      EXPECT_EQ(run(e, src.ptr(), src.step() + misalign, dst.ptr(), dst.step() - 64, src.size(), p, buf.data()),
                vnxStatusBadStep)
          << e.name;
      EXPECT_EQ(run(e, src.ptr(), src.step(), dst.ptr(), dst.step() + 1, src.size(), p, buf.data()),
                vnxStatusStepNotMultiple)
          << e.name;
    }
  }
}
TEST(FixedFilters, StatusesInTheirOrder_8u16s) { statusesInOrder(k8u16s, 0); }
TEST(FixedFilters, StatusesInTheirOrder_8u8s) { statusesInOrder(k8u8s, 0); }
TEST(FixedFilters, StatusesInTheirOrder_32f) { statusesInOrder(k32f, 2); }
TEST(FixedFilters, StatusesInTheirOrder_8u) { statusesInOrder(k8u, 0); }

TEST(FixedFilters, OddDestinationStepOf16sIsNotAMultiple) {
  vt::Image<vnx8u> src(8, 4, 1, 16);
  vt::Image<vnx16s> dst(8, 4, 1, 16);
  std::vector<vnx8u> buf(1 << 16);
  EXPECT_EQ(vnxiFilterSobelVertBorder_8u16s_C1R(src.ptr(), src.step(), dst.ptr(), dst.step() + 1, {8, 4}, 33, 1, 0,
                                                buf.data()),
            vnxStatusStepNotMultiple);
  EXPECT_EQ(vnxiFilterSobelVertBorder_8u16s_C1R(src.ptr(), 7, dst.ptr(), dst.step() + 1, {8, 4}, 33, 1, 0, buf.data()),
            vnxStatusBadStep);
}

TEST(FixedFilters, ZeroDivisorIsRefusedBeforeTheMask) {
  vt::Image<vnx8u> src(8, 4);
  vt::Image<vnx8s> dst(8, 4);
  std::vector<vnx8u> buf(1 << 16);
  EXPECT_EQ(vnxiFilterSobelCrossBorder_8u8s_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), {8, 4}, 3, 1, 0, 0,
                                                buf.data()),
            vnxStatusBadArg);
  EXPECT_EQ(vnxiFilterScharrVertBorder_8u8s_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), {8, 4}, 1, 0, 0,
                                                buf.data()),
            vnxStatusBadArg);
}

}  // namespace
