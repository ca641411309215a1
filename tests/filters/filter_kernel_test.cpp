// The vector division of the linear filters against the exact rule, every 16-bit sum,
// every tail and alignment; border indices on rows and columns longer than 2^30. (The
// row and column vector kernels run every width in the pipeline tests.)
#include "filter_reference.h"
#include "filters/vncvderivative.h"
#include "filters/vncvseparable.h"
#include "support.h"

namespace {

// Every sum, every divisor that takes the integer reciprocal for 8u results and a few
// beyond; the row starts d % 16 samples in, so the vectors meet every tail and offset.
TEST(FilterKernels, DivisionRoundsLikeTheExactRuleForEverySum) {
  std::vector<vnx16s> s(65536);
  for (int i = 0; i < 65536; ++i) s[i] = vnx16s(i - 32768);
  std::vector<vnx8s> out(65536 + 16);
  std::vector<vnx8u> outU(65536);
  std::vector<int> divisors = {1, -1, 128, 256, 1000, 65535, -65536, 2147483647, -2147483647 - 1};
  for (int d = 2; d <= 127; ++d) divisors.push_back(d);
  for (int d : divisors) {
    const int o = d & 15, n = 65536 - o;
    ownDivRow_sse2(s.data() + o, d, out.data() + (o + 5) % 16, 0, n);
    ownDivRow_sse2(s.data() + o, d, outU.data(), 0, n);
    for (int i = 0; i < n; ++i) {
      ASSERT_EQ(out[(o + 5) % 16 + i], vt::saturatedQuotient<vnx8s>(s[o + i], d)) << "sum " << s[o + i] << " divisor " << d;
      ASSERT_EQ(outU[i], vt::saturatedQuotient<vnx8u>(s[o + i], d)) << "sum " << s[o + i] << " divisor " << d;
    }
  }
}

// A row and a column longer than 2^30: the pixels beyond each end come from the line
// itself through 64-bit indices (the source starts right after a protected page and
// pages appear only where touched).
TEST(FilterKernels, EdgesOfLinesLongerThan2To30ReadOnlyTheLine) {
  if (sizeof(void*) < 8) GTEST_SKIP() << "needs a 64-bit address space";
  const std::int64_t n = (std::int64_t{1} << 30) + 8;
  vt::GuardedBytes src(std::size_t(n), 0, vt::Guard::Before), dst(std::size_t(n) * 2, 0, vt::Guard::After);
  vnx8u* in = static_cast<vnx8u*>(src.data());
  vnx16s* out = static_cast<vnx16s*>(dst.data());
  for (int i = 0; i < 4; ++i) in[i] = vnx8u(10 + i), in[n - 1 - i] = vnx8u(100 + i);
  const vnx16s kern[5] = {1, 2, 3, 4, 5};
  std::vector<vnx8u> scratch(std::size_t(ownDerivativeScratchBytes(1, 3, ownFixedOutput::To16s, ownFixedKernel::SobelHoriz)));
  for (ownBorder rule : {ownBorder::Mirror, ownBorder::MirrorR}) {
    const bool m = rule == ownBorder::Mirror;  // the row: pixels -2, -1 and w, w + 1
    ownRowEdgeRow(in, n, 1, out, kern, 5, 2, rule, vnx8u(0), 1, ownSum16::Exact, 0, 2);
    ownRowEdgeRow(in, n, 1, out, kern, 5, 2, rule, vnx8u(0), 1, ownSum16::Exact, n - 2, n);
    EXPECT_EQ(out[0], 1 * (m ? 12 : 11) + 2 * (m ? 11 : 10) + 3 * 10 + 4 * 11 + 5 * 12);
    EXPECT_EQ(out[n - 1], 1 * 102 + 2 * 101 + 3 * 100 + 4 * (m ? 101 : 100) + 5 * (m ? 102 : 101));
    // the column, SobelHoriz 3x3: 4 * (p[y - 1] - p[y + 1])
    const int h = int(n);
    ownDerivativeRows(ownFixedKernel::SobelHoriz, 3, in, 1, out, 2, {1, h}, rule, 0, 0, 1, scratch.data());
    ownDerivativeRows(ownFixedKernel::SobelHoriz, 3, in, 1, out, 2, {1, h}, rule, 0, h - 1, h, scratch.data());
    EXPECT_EQ(out[0], 4 * ((m ? 11 : 10) - 11));
    EXPECT_EQ(out[n - 1], 4 * (101 - (m ? 101 : 100)));
  }
}

}  // namespace
