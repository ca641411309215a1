// Fixed-kernel filters with borders: every member, border type and mask size against
// a 2-D reference that lays the weights over the image, on guard-page images; the
// buffer-size formulas for several thread counts; each export's checks.
#include <cmath>
#include <string>
#include <type_traits>

#include "filter_reference.h"
#include "support.h"

namespace {

using vt::refIndex;

enum class Member { SobelHoriz, SobelVert, SobelNegVert, SobelHorizSecond, SobelVertSecond, SobelCross, Laplacian,
                    ScharrHoriz, ScharrVert, Lowpass };

// Each member as separable terms: column taps top to bottom, row taps left to right,
// read off the weights over the image (the Laplacian is two terms; SobelNegVert is the
// negation of SobelVert's result).
struct Term { std::vector<int> col, row; };
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

struct Params { int mask, border, divisor; double bval; };

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
    return vt::saturatedQuotient<D>(s, std::is_same<D, vnx8s>::value ? p.divisor : m == Member::Lowpass ? k * k : 1);
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
  const char* name;
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

// Each member of a result type t with its query, by name.
#define FIXED(m, t) {Member::m, vnxiFilter##m##Border_##t##_C1R, vnxiFilter##m##GetBufferSize_##t##_C1R, #m}
#define SCHARR(m, t) \
  {Member::m, NoMask<vnxiFilter##m##Border_##t##_C1R>::run, noMaskQuery<vnxiFilter##m##GetBufferSize_##t##_C1R>, #m}
#define DERIVATIVES(t)                                                                                       \
  FIXED(SobelHoriz, t), FIXED(SobelVert, t), FIXED(SobelNegVert, t), FIXED(SobelHorizSecond, t),             \
      FIXED(SobelVertSecond, t), FIXED(SobelCross, t), FIXED(Laplacian, t), SCHARR(ScharrHoriz, t), SCHARR(ScharrVert, t)
const Entry<vnx8u, vnx16s> k8u16s[] = {DERIVATIVES(8u16s)};
const Entry<vnx8u, vnx8s> k8u8s[] = {DERIVATIVES(8u8s)};
const Entry<vnx32f, vnx32f> k32f[] = {DERIVATIVES(32f), FIXED(Lowpass, 32f)};
const Entry<vnx8u, vnx8u> k8u[] = {FIXED(Lowpass, 8u)};

// Runs one member on a guard-page image and compares every pixel with the reference;
// the work buffer has exactly the queried size and ends right before a protected page.
// 32f sources take each kind of value in turn (NaNs of any payload and sign,
// infinities, denormals, negative zeros).
template <class S, class D>
void expectMatches(const Entry<S, D>& e, vnxiSize size, const Params& p, vt::Guard guard, unsigned seed) {
  SCOPED_TRACE(std::string(e.name) + " " + std::to_string(size.width) + "x" + std::to_string(size.height) +
               " mask " + std::to_string(p.mask) + " border " + std::to_string(p.border) + " seed " +
               std::to_string(seed));
  std::mt19937 rng(seed);
  const bool f32 = std::is_same<S, vnx32f>::value;
  vt::Image<S> src(size.width, size.height, 1, 3 * sizeof(S), guard);
  src.fill([&](int, int, int) { return vt::withSpecials<S>(rng, f32 ? int(rng() % 556) - 300 : int(rng() % 256),
                                                            vt::Values(seed % 3)); });
  vt::Image<D> dst(size.width, size.height, 1, 2 * sizeof(D), guard);
  int bytes = 0;
  ASSERT_EQ(e.q(size, p.mask, &bytes), vnxStatusOk);
  vt::Image<vnx8u> buf(bytes, 1, 1, 0, vt::Guard::After);  // the last byte before a protected page
  auto call = [&](int dstStep, vnx8u* b, const Params& q) {
    return run(e, src.ptr(), src.step(), dst.ptr(), dstStep, size, q, b);
  };
  if (size.width == 9 && p.border == 1) {  // the export and query check in the shared order; nothing is written
    const bool scharr = e.m == Member::ScharrHoriz || e.m == Member::ScharrVert;
    EXPECT_EQ(call(dst.step(), nullptr, p), vnxStatusNullPtr);
    EXPECT_EQ(call(int(9 * sizeof(D)) - 1, buf.ptr(), p), vnxStatusBadStep);
    if (sizeof(D) > 1) { EXPECT_EQ(call(dst.step() + 1, buf.ptr(), p), vnxStatusStepNotMultiple); }
    EXPECT_EQ(call(dst.step(), buf.ptr(), {p.mask, 5, p.divisor, 0}), vnxStatusBadArg);
    if (std::is_same<D, vnx8s>::value) { EXPECT_EQ(call(dst.step(), buf.ptr(), {p.mask, 1, 0, 0}), vnxStatusBadArg); }
    if (!scharr) { EXPECT_EQ(call(dst.step(), buf.ptr(), {54, 1, p.divisor, 0}), vnxStatusBadMaskSize); }
    EXPECT_EQ(dst.pixels(), std::vector<D>(dst.pixels().size()));
    EXPECT_EQ(e.q(size, p.mask, nullptr), vnxStatusNullPtr);
    EXPECT_EQ(e.q({9, 0}, p.mask, &bytes), vnxStatusBadSize);
    EXPECT_EQ(e.q(size, 3, &bytes), scharr ? vnxStatusOk : vnxStatusBadMaskSize);
  }
  ASSERT_EQ(call(dst.step(), buf.ptr(), p), vnxStatusOk);
  std::vector<D> want;
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) want.push_back(reference<S, D>(src, x, y, e.m, p));
  VT_EXPECT_SAME_SAMPLES(want, dst.pixels());
  EXPECT_TRUE(dst.canaryIntact());
}

// Small shapes serially; then sizes that take the band path (height >= threads * 128,
// width >= 256) at up to 8 bands, where the buffer of the queried size must suffice.
template <class S, class D, std::size_t N>
void everyMemberBorderMaskAndBand(const Entry<S, D> (&table)[N]) {
  const vnxiSize sizes[] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}, {17, 5}, {33, 7}, {6, 34}, {48, 3}};
  const int divisors[] = {1, 3, -4, 7, 2};
  unsigned seed = 1;
  for (const auto& e : table)
    for (int mask : {vnxMskSize3x3, vnxMskSize5x5}) {
      for (int border = 0; border <= 4; ++border)
        for (const vnxiSize& size : sizes) {
          ++seed;
          const Params p{mask, border, divisors[seed % 5], border == 0 ? double(seed * 37 % 256) : 0.0};
          expectMatches(e, size, p, seed % 2 ? vt::Guard::After : vt::Guard::Before, seed);
        }
      for (int threads : {2, 3, 7, 8}) {
        vt::Threads guard(threads);
        const Params p{mask, int(++seed % 5), divisors[seed % 5], 200.0};
        expectMatches(e, {257 + int(seed % 9), threads * 128 + int(seed % 5)}, p, vt::Guard::After, seed);
      }
    }
}

TEST(FixedFilters, EveryMemberBorderMaskAndBandMatchesTheWeights) {
  everyMemberBorderMaskAndBand(k8u16s);
  everyMemberBorderMaskAndBand(k8u8s);
  everyMemberBorderMaskAndBand(k32f);
  everyMemberBorderMaskAndBand(k8u);
}

// T slices of S + 32 bytes; S takes the pipeline queries' sizes for one thread (the
// 32f column query reports 32). Scharr takes no mask: 3x3 only.
TEST(FixedFilters, BufferSizesFollowTheFormulaForEachThreadCount) {
  auto up = [](long long v, int m) { return (v + m - 1) / m * m; };
  for (int t : {1, 2, 4}) {
    vt::Threads guard(t);
    for (const vnxiSize& s : {vnxiSize{1, 1}, vnxiSize{100, 10}, vnxiSize{1920, 1080}, vnxiSize{17, 333}})
      for (const long long k : {3, 5}) {
        const long long w16 = up(s.width, 16), w4 = up(s.width, 4), row = 32 + 4 * (s.height + k);
        auto check = [&](const auto& table, bool f32, bool div8s) {
          const long long rc = f32 ? row + 64 * k + 64 + 32 : 2 * row + 36 * k + 112 + 12 * w4 + 32;
          for (const auto& e : table) {
            const bool scharr = e.m == Member::ScharrHoriz || e.m == Member::ScharrVert;
            long long want = (f32 ? 4 * w4 : 2 * w16) * (2 * k + 15) + 4 * (3 * k + 30) + 64 + rc;
            if (scharr) want = (f32 ? 84 * w4 : 42 * w16) + 220 + rc;
            if (e.m == Member::Laplacian)
              want = (f32 ? 8 : 4) * w16 * (2 * k + 15) + 8 * (3 * k + 30) + 96 + rc +
                     (div8s && k == 5 ? 2 * w16 * s.height + 32 : 0);
            int got = -1;
            ASSERT_EQ(e.q(s, k == 5 ? vnxMskSize5x5 : vnxMskSize3x3, &got), vnxStatusOk);
            if (!scharr || k == 3) { EXPECT_EQ(got, t * (32 + want)) << e.name << " " << s.width << "x" << s.height << " k " << k; }
          }
        };
        check(k8u16s, false, false), check(k8u8s, false, true), check(k32f, true, false), check(k8u, false, false);
      }
  }
}

}  // namespace
