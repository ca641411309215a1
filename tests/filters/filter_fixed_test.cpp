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

// Each member as separable terms: column taps top to bottom, row taps left to right,
// read off the weights over the image (the Laplacian is two terms; SobelNegVert is the
// negation of SobelVert's result).
struct Term {
  std::vector<int> col, row;
};
std::vector<Term> terms(Member m, int k) {
  const bool five = k == 5;
  const std::vector<int> s = five ? std::vector<int>{1, 4, 6, 4, 1} : std::vector<int>{1, 2, 1};
  const std::vector<int> d = five ? std::vector<int>{-1, -2, 0, 2, 1} : std::vector<int>{-1, 0, 1};
  const std::vector<int> n = five ? std::vector<int>{1, 2, 0, -2, -1} : std::vector<int>{1, 0, -1};
  const std::vector<int> l = five ? std::vector<int>{1, 0, -2, 0, 1} : std::vector<int>{1, -2, 1};
  switch (m) {
    case Member::SobelHoriz: return {{n, s}};
    case Member::SobelVert:
    case Member::SobelNegVert: return {{s, d}};
    case Member::SobelHorizSecond: return {{l, s}};
    case Member::SobelVertSecond: return {{s, l}};
    case Member::SobelCross: return {{n, d}};
    case Member::ScharrHoriz: return {{{1, 0, -1}, {3, 10, 3}}};
    case Member::ScharrVert: return {{{3, 10, 3}, {-1, 0, 1}}};
    case Member::Laplacian: return {{l, s}, {s, l}};
    default: return {{std::vector<int>(k, 1), std::vector<int>(k, 1)}};
  }
}

struct Params {
  int mask, border, divisor;
  double bval;
};

// Integer members: the exact sum of the weights times the pixels. 32f: each term's
// rows summed left to right, then the row sums top to bottom, in single precision,
// every sum starting from its first product (so signs of zero, infinities and NaNs
// come out as the arithmetic gives them), then the terms added.
template <class S, class D>
D reference(const vt::Image<S>& src, int x, int y, Member m, const Params& p) {
  const bool scharr = m == Member::ScharrHoriz || m == Member::ScharrVert;
  const int k = p.mask == vnxMskSize5x5 && !scharr ? 5 : 3, r = k / 2;
  auto pixel = [&](int xi, int yi) {
    const bool inside = xi >= 0 && xi < src.width() && yi >= 0 && yi < src.height();
    return inside ? src.at(xi, yi)
           : p.border == vnxBorderConst
               ? S(p.bval)
               : src.at(refIndex(xi, src.width(), p.border), refIndex(yi, src.height(), p.border));
  };
  if constexpr (std::is_same<D, vnx32f>::value) {
    float total = 0;
    int t = 0;
    for (const Term& term : terms(m, k)) {
      float col = 0;
      for (int dy = 0; dy < k; ++dy) {
        float row = 0;
        for (int dx = 0; dx < k; ++dx) {
          const float prod = float(term.row[dx]) * pixel(x + dx - r, y + dy - r);
          row = dx == 0 ? prod : row + prod;
        }
        col = dy == 0 ? float(term.col[dy]) * row : col + float(term.col[dy]) * row;
      }
      total = t++ == 0 ? col : total + col;
    }
    if (m == Member::SobelNegVert) total = -total;
    if (m == Member::Lowpass) total = total * (1.0f / float(k * k));
    return vt::canonical(total);  // every NaN result is the one NaN
  } else {
    long long s = 0;
    for (const Term& term : terms(m, k))
      for (int dy = 0; dy < k; ++dy)
        for (int dx = 0; dx < k; ++dx) s += term.col[dy] * term.row[dx] * (long long)pixel(x + dx - r, y + dy - r);
    if (m == Member::SobelNegVert) s = -s;
    if constexpr (std::is_same<D, vnx16s>::value) return D(clampTo(s, -32768, 32767));
    if constexpr (std::is_same<D, vnx8s>::value) return D(clampTo(roundDiv(s, p.divisor), -128, 127));
    if constexpr (std::is_same<D, vnx8u>::value) return D(clampTo(roundDiv(s, k * k), 0, 255));
  }
}

using Query = vnxStatus (*)(vnxiSize, int, int*);
template <class S, class D>
using Filter = typename std::conditional<std::is_same<D, vnx8s>::value,
                                         vnxStatus (*)(const S*, int, D*, int, vnxiSize, int, int, S, int, vnx8u*),
                                         vnxStatus (*)(const S*, int, D*, int, vnxiSize, int, int, S, vnx8u*)>::type;
template <class S, class D>
struct Entry {
  Member m;
  Filter<S, D> f;
  Query q;
  const char* name() const {
    static const char* const names[] = {"SobelHoriz", "SobelVert", "SobelNegVert", "SobelHorizSecond", "SobelVertSecond",
                                        "SobelCross", "Laplacian", "ScharrHoriz", "ScharrVert", "Lowpass"};
    return names[int(m)];
  }
};

template <class S, class D>
vnxStatus run(const Entry<S, D>& e, const S* src, int srcStep, D* dst, int dstStep, vnxiSize roi, const Params& p,
              vnx8u* buf) {
  if constexpr (std::is_same<D, vnx8s>::value)
    return e.f(src, srcStep, dst, dstStep, roi, p.mask, p.border, S(p.bval), p.divisor, buf);
  else
    return e.f(src, srcStep, dst, dstStep, roi, p.mask, p.border, S(p.bval), buf);
}

// The Scharr members and queries take no mask: adapters to the table's signatures.
template <auto F>
struct NoMask;
template <class S, class D, class... R, vnxStatus (*F)(const S*, int, D*, int, vnxiSize, int, S, R...) noexcept>
struct NoMask<F> {
  static vnxStatus run(const S* s, int ss, D* d, int ds, vnxiSize roi, int, int b, S v, R... r) {
    return F(s, ss, d, ds, roi, b, v, r...);
  }
};
template <vnxStatus (*Q)(vnxiSize, int*) noexcept>
vnxStatus noMaskQuery(vnxiSize roi, int, int* p) {
  return Q(roi, p);
}

const Entry<vnx8u, vnx16s> k8u16s[] = {
    {Member::SobelHoriz, vnxiFilterSobelHorizBorder_8u16s_C1R, vnxiFilterSobelHorizGetBufferSize_8u16s_C1R},
    {Member::SobelVert, vnxiFilterSobelVertBorder_8u16s_C1R, vnxiFilterSobelVertGetBufferSize_8u16s_C1R},
    {Member::SobelNegVert, vnxiFilterSobelNegVertBorder_8u16s_C1R, vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R},
    {Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_8u16s_C1R, vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R},
    {Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_8u16s_C1R, vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R},
    {Member::SobelCross, vnxiFilterSobelCrossBorder_8u16s_C1R, vnxiFilterSobelCrossGetBufferSize_8u16s_C1R},
    {Member::Laplacian, vnxiFilterLaplacianBorder_8u16s_C1R, vnxiFilterLaplacianGetBufferSize_8u16s_C1R},
    {Member::ScharrHoriz, NoMask<vnxiFilterScharrHorizBorder_8u16s_C1R>::run,
     noMaskQuery<vnxiFilterScharrHorizGetBufferSize_8u16s_C1R>},
    {Member::ScharrVert, NoMask<vnxiFilterScharrVertBorder_8u16s_C1R>::run,
     noMaskQuery<vnxiFilterScharrVertGetBufferSize_8u16s_C1R>},
};
const Entry<vnx8u, vnx8s> k8u8s[] = {
    {Member::SobelHoriz, vnxiFilterSobelHorizBorder_8u8s_C1R, vnxiFilterSobelHorizGetBufferSize_8u8s_C1R},
    {Member::SobelVert, vnxiFilterSobelVertBorder_8u8s_C1R, vnxiFilterSobelVertGetBufferSize_8u8s_C1R},
    {Member::SobelNegVert, vnxiFilterSobelNegVertBorder_8u8s_C1R, vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R},
    {Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_8u8s_C1R, vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R},
    {Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_8u8s_C1R, vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R},
    {Member::SobelCross, vnxiFilterSobelCrossBorder_8u8s_C1R, vnxiFilterSobelCrossGetBufferSize_8u8s_C1R},
    {Member::Laplacian, vnxiFilterLaplacianBorder_8u8s_C1R, vnxiFilterLaplacianGetBufferSize_8u8s_C1R},
    {Member::ScharrHoriz, NoMask<vnxiFilterScharrHorizBorder_8u8s_C1R>::run,
     noMaskQuery<vnxiFilterScharrHorizGetBufferSize_8u8s_C1R>},
    {Member::ScharrVert, NoMask<vnxiFilterScharrVertBorder_8u8s_C1R>::run,
     noMaskQuery<vnxiFilterScharrVertGetBufferSize_8u8s_C1R>},
};
const Entry<vnx32f, vnx32f> k32f[] = {
    {Member::SobelHoriz, vnxiFilterSobelHorizBorder_32f_C1R, vnxiFilterSobelHorizGetBufferSize_32f_C1R},
    {Member::SobelVert, vnxiFilterSobelVertBorder_32f_C1R, vnxiFilterSobelVertGetBufferSize_32f_C1R},
    {Member::SobelNegVert, vnxiFilterSobelNegVertBorder_32f_C1R, vnxiFilterSobelNegVertGetBufferSize_32f_C1R},
    {Member::SobelHorizSecond, vnxiFilterSobelHorizSecondBorder_32f_C1R, vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R},
    {Member::SobelVertSecond, vnxiFilterSobelVertSecondBorder_32f_C1R, vnxiFilterSobelVertSecondGetBufferSize_32f_C1R},
    {Member::SobelCross, vnxiFilterSobelCrossBorder_32f_C1R, vnxiFilterSobelCrossGetBufferSize_32f_C1R},
    {Member::Laplacian, vnxiFilterLaplacianBorder_32f_C1R, vnxiFilterLaplacianGetBufferSize_32f_C1R},
    {Member::ScharrHoriz, NoMask<vnxiFilterScharrHorizBorder_32f_C1R>::run,
     noMaskQuery<vnxiFilterScharrHorizGetBufferSize_32f_C1R>},
    {Member::ScharrVert, NoMask<vnxiFilterScharrVertBorder_32f_C1R>::run,
     noMaskQuery<vnxiFilterScharrVertGetBufferSize_32f_C1R>},
    {Member::Lowpass, vnxiFilterLowpassBorder_32f_C1R, vnxiFilterLowpassGetBufferSize_32f_C1R},
};
const Entry<vnx8u, vnx8u> k8u[] = {
    {Member::Lowpass, vnxiFilterLowpassBorder_8u_C1R, vnxiFilterLowpassGetBufferSize_8u_C1R},
};

// Source values: integers, integers with NaNs of several payloads and signs and
// infinities, multiples of the smallest denormal, or negative zeros (32f only).
enum class Values { Integers, Specials, Denormals, NegativeZeros };
template <class S>
S sample(std::mt19937& rng, Values v) {
  const int i = std::is_same<S, vnx32f>::value ? int(rng() % 556) - 300 : int(rng() % 256);
  if (v == Values::Denormals) return S(std::ldexp(float(i), -149));
  if (v == Values::NegativeZeros) return S(-0.0f);
  if (v == Values::Specials && rng() % 20 == 0) {
    const std::uint32_t bits[] = {0x7FC00000u, 0xFFC00000u, 0x7F800001u, 0xFFA5A5A5u, 0x7F800000u, 0xFF800000u};
    float f;
    std::memcpy(&f, &bits[rng() % 6], 4);
    return S(f);
  }
  return S(i);
}

// Runs one member on a guard-page image and compares every pixel with the reference;
// the work buffer has exactly the queried size and ends right before a protected page.
template <class S, class D>
void expectMatches(const Entry<S, D>& e, vnxiSize size, const Params& p, vt::Guard guard, unsigned seed,
                   Values values = Values::Integers) {
  SCOPED_TRACE(std::string(e.name()) + " " + std::to_string(size.width) + "x" + std::to_string(size.height) +
               " mask " + std::to_string(p.mask) + " border " + std::to_string(p.border) + " divisor " +
               std::to_string(p.divisor));
  std::mt19937 rng(seed);
  vt::Image<S> src(size.width, size.height, 1, 3 * sizeof(S), guard);
  src.fill([&](int, int, int) { return sample<S>(rng, values); });
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

// 32f sources take each kind of value in turn (NaNs of any payload and sign,
// infinities, denormals, negative zeros): the reference's bits, every NaN the one NaN.
template <class S>
Values valuesFor(unsigned seed) {
  return std::is_same<S, vnx32f>::value ? Values(seed % 4) : Values::Integers;
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
          expectMatches(e, size, p, seed % 2 ? vt::Guard::After : vt::Guard::Before, seed, valuesFor<S>(seed));
          ++seed;
        }
}

TEST(FixedFilters, EveryMemberBorderAndMaskMatchesTheWeights) {
  everyMemberBorderAndMask(k8u16s);
  everyMemberBorderAndMask(k8u8s);
  everyMemberBorderAndMask(k32f);
  everyMemberBorderAndMask(k8u);
}

// Sizes that take the band path (height >= threads * 128, width >= 256), up to 8 bands;
// the work buffer of the queried size (ending before a protected page) suffices at
// every thread count.
template <class S, class D, std::size_t N>
void bandsMatchTheWeights(const Entry<S, D> (&table)[N]) {
  unsigned seed = 99;
  for (int threads : {2, 3, 4, 7, 8}) {
    vt::Threads guard(threads);
    for (const auto& e : table)
      for (int mask : {vnxMskSize3x3, vnxMskSize5x5}) {
        const auto s = seed++;
        const Params p{mask, int(s % 5), kDivisors[s % 5], 200.0};
        expectMatches(e, {257 + int(s % 9), threads * 128 + int(s % 5)}, p, vt::Guard::After, s, valuesFor<S>(s));
      }
  }
}
TEST(FixedFilters, BandsMatchTheWeights) {
  bandsMatchTheWeights(k8u16s);
  bandsMatchTheWeights(k8u8s);
  bandsMatchTheWeights(k32f);
  bandsMatchTheWeights(k8u);
}

// ---- buffer sizes ---------------------------------------------------------------

long long roundUp(long long v, int m) { return (v + m - 1) / m * m; }

// T slices of S + 32 bytes; S takes the pipeline queries' sizes for one thread.
TEST(FixedFilters, BufferSizesFollowTheFormulaForEachThreadCount) {
  const vnxiSize sizes[] = {{1, 1}, {100, 10}, {1920, 1080}, {17, 333}};
  for (int t : {1, 2, 4}) {
    vt::Threads guard(t);
    for (const vnxiSize& s : sizes)
      for (int mask : {vnxMskSize3x3, vnxMskSize5x5}) {
        const long long k = mask == vnxMskSize5x5 ? 5 : 3, w16 = roundUp(s.width, 16), w4 = roundUp(s.width, 4);
        auto rowQ = [&](long long kk, long long perThread) { return 32 + 4 * (s.height + kk) + perThread; };
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
        for (const auto& e : k8u16s) check(e.name(), e.q, expected(e.m, 0));
        for (const auto& e : k8u8s) check(e.name(), e.q, expected(e.m, 1));
        for (const auto& e : k32f) check(e.name(), e.q, expected(e.m, 2));
        for (const auto& e : k8u) check(e.name(), e.q, expected(e.m, 0));
      }
  }
}

// Sizes that do not fit an int are refused and nothing is written; the largest that
// fits is reported.
TEST(FixedFilters, QueriesRefuseSizesBeyondAnInt) {
  vt::Threads guard(1);
  struct Case {
    Query q;
    vnxiSize roi;
    int mask;
  };
  const Case cases[] = {
      {vnxiFilterSobelHorizGetBufferSize_8u16s_C1R, {79536432, 1}, 33},  // 4294967928 bytes
      {vnxiFilterLaplacianGetBufferSize_8u8s_C1R, {65536, 65536}, 55},   // 8597799860 bytes
      {k32f[8].q, {30000000, 1}, 33},                                     // Scharr 32f: 84 w + ...
      {vnxiFilterLowpassGetBufferSize_32f_C1R, {2147483647, 1}, 55},
  };
  for (const Case& c : cases) {
    int v = 12345;
    EXPECT_EQ(c.q(c.roi, c.mask, &v), vnxStatusBadSize) << c.roi.width << "x" << c.roi.height;
    EXPECT_EQ(v, 12345);
  }
  int v = 0;
  EXPECT_EQ(vnxiFilterSobelHorizGetBufferSize_8u16s_C1R({39768192, 1}, 33, &v), vnxStatusOk);
  EXPECT_EQ(v, 54 * 39768192 + 568 + 32);
}

// ---- statuses: each export calls its check (the orders are in filter_check_test) ----

template <class S, class D, std::size_t N>
void eachExportChecks(const Entry<S, D> (&table)[N]) {
  for (const auto& e : table) {
    vt::Image<S> src(8, 4, 1, 16);
    vt::Image<D> dst(8, 4, 1, 16);
    dst.fill([](int, int, int) { return 7; });
    const std::vector<D> before = dst.pixels();
    std::vector<vnx8u> buf(1 << 16);
    const bool scharr = e.m == Member::ScharrHoriz || e.m == Member::ScharrVert;
    const bool div = std::is_same<D, vnx8s>::value;
    struct Case {
      vnx8u* buf;
      int dstStepDelta, mask, border, divisor;
      vnxStatus want;
    };
    const Case cases[] = {
        {nullptr, 0, 33, 1, 1, vnxStatusNullPtr},
        {buf.data(), -int(sizeof(D)), 33, 1, 1, vnxStatusBadStep},
        {buf.data(), sizeof(D) > 1 ? 1 : 0, 33, 5, 1, sizeof(D) > 1 ? vnxStatusStepNotMultiple : vnxStatusBadArg},
        {buf.data(), 0, 3, 1, 0, div ? vnxStatusBadArg : scharr ? vnxStatusOk : vnxStatusBadMaskSize},
        {buf.data(), 0, 54, 1, 1, scharr ? vnxStatusOk : vnxStatusBadMaskSize},
    };
    for (const Case& c : cases) {
      const Params p{c.mask, c.border, c.divisor, 0};
      const vnxStatus st = run(e, src.ptr(), src.step(), dst.ptr(), 8 * int(sizeof(D)) + c.dstStepDelta, {8, 4}, p, c.buf);
      EXPECT_EQ(st, c.want) << e.name() << " mask " << c.mask << " border " << c.border;
      if (st != vnxStatusOk) VT_EXPECT_SAME_SAMPLES(before, dst.pixels());
    }
  }
}
TEST(FixedFilters, EachExportChecksInTheSharedOrder) {
  eachExportChecks(k8u16s);
  eachExportChecks(k8u8s);
  eachExportChecks(k32f);
  eachExportChecks(k8u);
}

TEST(FixedFilters, EachQueryChecksInTheSharedOrder) {
  for (Query q : {k8u16s[0].q, k8u8s[6].q, k32f[9].q, k8u[0].q, k8u16s[7].q}) {
    const bool scharr = q == k8u16s[7].q;  // no mask argument
    int v = 3;
    EXPECT_EQ(q({5, 5}, 33, nullptr), vnxStatusNullPtr);
    EXPECT_EQ(q({5, 0}, 33, &v), vnxStatusBadSize);
    EXPECT_EQ(q({5, 5}, 3, &v), scharr ? vnxStatusOk : vnxStatusBadMaskSize);
  }
}

}  // namespace
