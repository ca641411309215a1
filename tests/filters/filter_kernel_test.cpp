// The vector kernels of the linear filters against their scalar templates, bit for bit,
// on every kernel shape (widths, offsets, guard pages); border indices on rows and
// columns longer than 2^30.
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <type_traits>

#include "filter_reference.h"
#include "filters/vncvderivative.h"
#include "filters/vncvseparable.h"
#include "support.h"

namespace {

template <class T>
T kernelSample(std::mt19937& rng) {
  if constexpr (std::is_same<T, vnx32f>::value) {
    const float specials[] = {std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::infinity(), -0.0f, 1e-40f};
    return rng() % 16 == 0 ? specials[rng() % 5] : std::ldexp(float(int(rng() % 4001) - 2000), -int(rng() % 8));
  } else {
    return T(rng());
  }
}

template <class T, class U>
bool sameBits(const T* a, const U& b, int n) {
  return n == 0 || std::memcmp(a, b.data(), n * sizeof(T)) == 0;
}

// Row interior: src holds n samples plus (k - 1) * C around them, read from src + anchor * C.
template <class S, class D>
void rowInteriorMatches(const std::vector<D>& kern, int C, ownSum16 sum, int divisor) {
  const int k = int(kern.size()), anchor = k / 2;
  std::mt19937 rng(k * 7 + C);
  vt::forKernelShapes(16 / int(sizeof(D)), [&](int n, int off, vt::Guard g) {
    vt::Span<S> src(n + (k - 1) * C, off, g);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = kernelSample<S>(rng);
    vt::Span<D> got(n, off, g);
    std::vector<D> want(n + 1);
    ownRowInteriorRow_sse2(src.data() + anchor * C, got.data(), kern.data(), k, anchor, C, 0, n, divisor, sum);
    ownRowInteriorRow(src.data() + anchor * C, want.data(), kern.data(), k, anchor, C, 0, n, divisor, sum);
    ASSERT_TRUE(sameBits(got.data(), want, n)) << "width " << n << " offset " << off << " k " << k << " C" << C;
  });
}

TEST(FilterKernels, RowInteriorVectorsMatchTheTemplate) {
  rowInteriorMatches<vnx8u, vnx16s>({1, 2, 1}, 1, ownSum16::Exact, 1);
  rowInteriorMatches<vnx8u, vnx16s>({-1, 0, 1}, 3, ownSum16::Exact, 1);
  rowInteriorMatches<vnx8u, vnx16s>({1, 4, 6, 4, 1}, 1, ownSum16::Exact, 1);
  rowInteriorMatches<vnx16s, vnx16s>({3, -7, 2, 5}, 1, ownSum16::Low, 1);
  rowInteriorMatches<vnx16s, vnx16s>({3, 10, 3}, 3, ownSum16::Low, 1);
  rowInteriorMatches<vnx32f, vnx32f>({1, 2, 1}, 1, ownSum16::Exact, 1);
  rowInteriorMatches<vnx32f, vnx32f>({-1, -2, 0, 2, 1}, 3, ownSum16::Exact, 1);
  rowInteriorMatches<vnx32f, vnx32f>({0.5f, -3, 0, 1, 2, 7, -1}, 1, ownSum16::Exact, 1);
}

// Column kernels: k rows of n samples, each on its own guarded pages.
template <class K, class D>
void columnMatches(const std::vector<K>& kern, ownSum16 sum, int divisor) {
  const int k = int(kern.size());
  std::mt19937 rng(k * 13 + int(sizeof(D)));
  vt::forKernelShapes(std::is_same<K, vnx32f>::value ? 4 : 8, [&](int n, int off, vt::Guard g) {
    std::vector<std::unique_ptr<vt::Span<K>>> spans;
    std::vector<const K*> rows;
    for (int j = 0; j < k; ++j) {
      spans.emplace_back(new vt::Span<K>(n, (off + 4 * j) % 16, g));
      for (int x = 0; x < n; ++x) (*spans.back())[x] = kernelSample<K>(rng);
      rows.push_back(spans.back()->data());
    }
    vt::Span<D> got(n, off, g);
    std::vector<D> want(n + 1);
    ownColumnRow_sse2(rows.data(), kern.data(), k, got.data(), 0, n, divisor, sum);
    ownColumnRow(rows.data(), kern.data(), k, want.data(), 0, n, divisor, sum);
    ASSERT_TRUE(sameBits(got.data(), want, n)) << "width " << n << " offset " << off << " k " << k;
  });
}

TEST(FilterKernels, ColumnVectorsMatchTheTemplate) {
  columnMatches<vnx16s, vnx16s>({1, 2, 1}, ownSum16::Exact, 1);
  columnMatches<vnx16s, vnx16s>({-1, -2, 0, 2, 1}, ownSum16::Exact, 1);
  columnMatches<vnx16s, vnx8u>({3, 10, 3}, ownSum16::Exact, 1);
  columnMatches<vnx16s, vnx8s>({1, 0, -2, 0, 1}, ownSum16::Exact, 1);
  columnMatches<vnx16s, vnx16s>({9, -2, 0, 31000}, ownSum16::Low, 1);
  columnMatches<vnx16s, vnx16s>({1, 0, -1}, ownSum16::Low, 1);
  columnMatches<vnx32f, vnx32f>({1, 2, 1}, ownSum16::Exact, 1);
  columnMatches<vnx32f, vnx32f>({1, 4, 6, 4, 1}, ownSum16::Exact, 1);
  columnMatches<vnx32f, vnx32f>({0.25f, -1, 3, 0}, ownSum16::Exact, 1);
}

TEST(FilterKernels, DivisionVectorsMatchTheTemplate) {
  std::mt19937 rng(3);
  for (int divisor : {9, 25, 128, -3}) {
    vt::forKernelShapes(16, [&](int n, int off, vt::Guard g) {
      vt::Span<vnx16s> s(n, off, g);
      for (int x = 0; x < n; ++x) s[x] = vnx16s(rng());
      vt::Span<vnx8u> gotU(n, off, g);
      vt::Span<vnx8s> gotS(n, (off + 5) % 16, g);
      std::vector<vnx8u> wantU(n + 1);
      std::vector<vnx8s> wantS(n + 1);
      ownDivRow_sse2(s.data(), divisor, gotU.data(), 0, n);
      ownDivRow(s.data(), divisor, wantU.data(), std::int64_t{0}, n);
      ownDivRow_sse2(s.data(), divisor, gotS.data(), 0, n);
      ownDivRow(s.data(), divisor, wantS.data(), std::int64_t{0}, n);
      ASSERT_TRUE(sameBits(gotU.data(), wantU, n) && sameBits(gotS.data(), wantS, n)) << divisor << " width " << n;
    });
  }
}

// The vector division of 16-bit sums against the exact rule, every sum, every divisor
// that takes the integer reciprocal for 8u results and a few beyond.
TEST(FilterKernels, DivisionRoundsLikeTheExactRuleForEverySum) {
  std::vector<vnx16s> s(65536);
  for (int i = 0; i < 65536; ++i) s[i] = vnx16s(i - 32768);
  std::vector<vnx8s> out(65536);
  std::vector<vnx8u> outU(65536);
  std::vector<int> divisors = {1, -1, 128, 256, 1000, 65535, -65536, 2147483647, -2147483647 - 1};
  for (int d = 2; d <= 127; ++d) divisors.push_back(d);
  for (int d : divisors) {
    ownDivRow_sse2(s.data(), d, out.data(), 0, 65536);
    ownDivRow_sse2(s.data(), d, outU.data(), 0, 65536);
    for (int i = 0; i < 65536; ++i) {
      ASSERT_EQ(out[i], vt::clampTo(vt::roundDiv(s[i], d), -128, 127)) << "sum " << s[i] << " divisor " << d;
      ASSERT_EQ(outU[i], vt::clampTo(vt::roundDiv(s[i], d), 0, 255)) << "sum " << s[i] << " divisor " << d;
    }
  }
}

// ---- lines longer than 2^30 ------------------------------------------------------

constexpr std::int64_t kLong = (std::int64_t{1} << 30) + 8;

TEST(FilterKernels, RowPassEdgesOfARowLongerThan2To30ReadOnlyTheRow) {
  if (sizeof(void*) < 8) GTEST_SKIP() << "needs a 64-bit address space";
  // Pages appear only where touched; the source starts right after a protected page.
  vt::GuardedBytes src(std::size_t(kLong), 0, vt::Guard::Before), dst(std::size_t(kLong) * 2, 0, vt::Guard::After);
  vnx8u* in = static_cast<vnx8u*>(src.data());
  for (int i = 0; i < 4; ++i) in[i] = vnx8u(10 + i), in[kLong - 1 - i] = vnx8u(100 + i);
  const vnx16s kern[5] = {1, 2, 3, 4, 5};
  vnx16s* out = static_cast<vnx16s*>(dst.data());
  for (ownBorder rule : {ownBorder::Mirror, ownBorder::MirrorR}) {
    ownRowEdgeRow(in, kLong, 1, out, kern, 5, 2, rule, vnx8u(0), 1, ownSum16::Exact, 0, 2);
    ownRowEdgeRow(in, kLong, 1, out, kern, 5, 2, rule, vnx8u(0), 1, ownSum16::Exact, kLong - 2, kLong);
    const bool m = rule == ownBorder::Mirror;  // pixels -2, -1 and w, w + 1
    EXPECT_EQ(out[0], 1 * (m ? 12 : 11) + 2 * (m ? 11 : 10) + 3 * 10 + 4 * 11 + 5 * 12);
    EXPECT_EQ(out[kLong - 1], 1 * 102 + 2 * 101 + 3 * 100 + 4 * (m ? 101 : 100) + 5 * (m ? 102 : 101));
  }
}

TEST(FilterKernels, SobelOfAColumnLongerThan2To30ReadsOnlyTheImage) {
  if (sizeof(void*) < 8) GTEST_SKIP() << "needs a 64-bit address space";
  // Pages appear only where touched; the source starts right after a protected page.
  vt::GuardedBytes src(std::size_t(kLong), 0, vt::Guard::Before), dst(std::size_t(kLong) * 2, 0, vt::Guard::After);
  vnx8u* in = static_cast<vnx8u*>(src.data());
  const int h = int(kLong);
  for (int i = 0; i < 3; ++i) in[i] = vnx8u(10 * i), in[h - 1 - i] = vnx8u(200 - 20 * i);
  std::vector<vnx8u> scratch(std::size_t(ownDerivativeScratchBytes(1, 3, ownFixedOutput::To16s, ownFixedKernel::SobelHoriz)));
  vnx16s* out = static_cast<vnx16s*>(dst.data());
  // SobelHoriz 3x3 on one column: 4 * (p[y - 1] - p[y + 1]).
  for (ownBorder rule : {ownBorder::Mirror, ownBorder::MirrorR}) {
    ownDerivativeRows(ownFixedKernel::SobelHoriz, 3, in, 1, out, 2, {1, h}, rule, 0, 0, 1, scratch.data());
    ownDerivativeRows(ownFixedKernel::SobelHoriz, 3, in, 1, out, 2, {1, h}, rule, 0, h - 1, h,
                      scratch.data());
    const bool m = rule == ownBorder::Mirror;
    EXPECT_EQ(out[0], 4 * ((m ? 10 : 0) - 10));
    EXPECT_EQ(out[h - 1], 4 * (180 - (m ? 180 : 200)));
  }
}

}  // namespace
