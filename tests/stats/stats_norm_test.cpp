// Masked norms against sums written from the contract: Inf = max |v|,
// L1 = sum |v|, L2 = sqrt(sum v^2) of v = s (Norm) or v = s1 - s2 (NormDiff),
// and the relative norm of the difference over the norm of s2.
#include <cmath>
#include <cstring>
#include <limits>

#include "stats_support.h"

namespace {

using st::Member;
using st::Ty;

// 'I', '1' or '2': the Inf, L1 or L2 norm.
char kind(const Member& m) { return m.is("_Inf_") ? 'I' : m.is("_L1_") ? '1' : '2'; }
#define MEMBER ST_MEMBER

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      MEMBER(vnxiNorm_Inf_8u_C1MR),      MEMBER(vnxiNorm_Inf_8u_C3CMR),      MEMBER(vnxiNorm_Inf_8s_C1MR),
      MEMBER(vnxiNorm_Inf_8s_C3CMR),     MEMBER(vnxiNorm_Inf_16u_C1MR),      MEMBER(vnxiNorm_Inf_16u_C3CMR),
      MEMBER(vnxiNorm_Inf_32f_C1MR),     MEMBER(vnxiNorm_Inf_32f_C3CMR),     MEMBER(vnxiNorm_L1_8u_C1MR),
      MEMBER(vnxiNorm_L1_8u_C3CMR),      MEMBER(vnxiNorm_L1_8s_C1MR),        MEMBER(vnxiNorm_L1_8s_C3CMR),
      MEMBER(vnxiNorm_L1_16u_C1MR),      MEMBER(vnxiNorm_L1_16u_C3CMR),      MEMBER(vnxiNorm_L1_32f_C1MR),
      MEMBER(vnxiNorm_L1_32f_C3CMR),     MEMBER(vnxiNorm_L2_8u_C1MR),        MEMBER(vnxiNorm_L2_8u_C3CMR),
      MEMBER(vnxiNorm_L2_8s_C1MR),       MEMBER(vnxiNorm_L2_8s_C3CMR),       MEMBER(vnxiNorm_L2_16u_C1MR),
      MEMBER(vnxiNorm_L2_16u_C3CMR),     MEMBER(vnxiNorm_L2_32f_C1MR),       MEMBER(vnxiNorm_L2_32f_C3CMR),
      MEMBER(vnxiNormDiff_Inf_8u_C1MR),  MEMBER(vnxiNormDiff_Inf_8u_C3CMR),  MEMBER(vnxiNormDiff_Inf_8s_C1MR),
      MEMBER(vnxiNormDiff_Inf_8s_C3CMR), MEMBER(vnxiNormDiff_Inf_16u_C1MR),  MEMBER(vnxiNormDiff_Inf_16u_C3CMR),
      MEMBER(vnxiNormDiff_Inf_32f_C1MR), MEMBER(vnxiNormDiff_Inf_32f_C3CMR), MEMBER(vnxiNormDiff_L1_8u_C1MR),
      MEMBER(vnxiNormDiff_L1_8u_C3CMR),  MEMBER(vnxiNormDiff_L1_8s_C1MR),    MEMBER(vnxiNormDiff_L1_8s_C3CMR),
      MEMBER(vnxiNormDiff_L1_16u_C1MR),  MEMBER(vnxiNormDiff_L1_16u_C3CMR),  MEMBER(vnxiNormDiff_L1_32f_C1MR),
      MEMBER(vnxiNormDiff_L1_32f_C3CMR), MEMBER(vnxiNormDiff_L2_8u_C1MR),    MEMBER(vnxiNormDiff_L2_8u_C3CMR),
      MEMBER(vnxiNormDiff_L2_8s_C1MR),   MEMBER(vnxiNormDiff_L2_8s_C3CMR),   MEMBER(vnxiNormDiff_L2_16u_C1MR),
      MEMBER(vnxiNormDiff_L2_16u_C3CMR), MEMBER(vnxiNormDiff_L2_32f_C1MR),   MEMBER(vnxiNormDiff_L2_32f_C3CMR),
      MEMBER(vnxiNormRel_Inf_8u_C1MR),   MEMBER(vnxiNormRel_Inf_8u_C3CMR),   MEMBER(vnxiNormRel_Inf_8s_C1MR),
      MEMBER(vnxiNormRel_Inf_8s_C3CMR),  MEMBER(vnxiNormRel_Inf_16u_C1MR),   MEMBER(vnxiNormRel_Inf_16u_C3CMR),
      MEMBER(vnxiNormRel_Inf_32f_C1MR),  MEMBER(vnxiNormRel_Inf_32f_C3CMR),  MEMBER(vnxiNormRel_L1_8u_C1MR),
      MEMBER(vnxiNormRel_L1_8u_C3CMR),   MEMBER(vnxiNormRel_L1_8s_C1MR),     MEMBER(vnxiNormRel_L1_8s_C3CMR),
      MEMBER(vnxiNormRel_L1_16u_C1MR),   MEMBER(vnxiNormRel_L1_16u_C3CMR),   MEMBER(vnxiNormRel_L1_32f_C1MR),
      MEMBER(vnxiNormRel_L1_32f_C3CMR),  MEMBER(vnxiNormRel_L2_8u_C1MR),     MEMBER(vnxiNormRel_L2_8u_C3CMR),
      MEMBER(vnxiNormRel_L2_8s_C1MR),    MEMBER(vnxiNormRel_L2_8s_C3CMR),    MEMBER(vnxiNormRel_L2_16u_C1MR),
      MEMBER(vnxiNormRel_L2_16u_C3CMR),  MEMBER(vnxiNormRel_L2_32f_C1MR),    MEMBER(vnxiNormRel_L2_32f_C3CMR)};
  return m;
}

const std::uint64_t kSignedNaN = 0xFFF8000000000000ull;

// The contract's result: numerator over |s| or |s1 - s2| (32f: the difference rounded
// to single precision), denominator over |s2|; a zero denominator gives inf or NaN.
double reference(const Member& m, const st::AnyImage& a, const st::AnyImage& b, const st::Mask& mask, vnxiSize r,
                 int coi, vnxStatus* status) {
  long double num = 0, den = 0;
  const int c = m.channels == 3 ? coi - 1 : 0;
  for (int y = 0; y < r.height; ++y)
    for (int x = 0; x < r.width; ++x) {
      if (!mask.on(x, y)) continue;
      double v = a.at(x, y, c);
      if (m.sources == 2) v = m.ty == Ty::F32 ? double(float(v) - float(b.at(x, y, c))) : v - b.at(x, y, c);
      const double w = m.sources == 2 ? b.at(x, y, c) : 0;
      switch (kind(m)) {
        case 'I':
          num = std::max<long double>(num, std::fabs(v)), den = std::max<long double>(den, std::fabs(w));
          break;
        case '1':
          num += std::fabs(v), den += std::fabs(w);
          break;
        default:
          num += static_cast<long double>(v) * v, den += static_cast<long double>(w) * w;
          break;
      }
    }
  *status = vnxStatusOk;
  if (!m.is("NormRel")) return kind(m) == '2' ? std::sqrt(double(num)) : double(num);
  if (m.name == "vnxiNormRel_L1_8u_C1MR") {  // 32-bit signed sums that wrap
    num = std::int32_t(std::uint32_t(std::uint64_t(num)));
    den = std::int32_t(std::uint32_t(std::uint64_t(den)));
  }
  if (den == 0) {
    *status = vnxStatusDivByZero;
    if (num > 0) return std::numeric_limits<double>::infinity();
    if (num < 0) return -std::numeric_limits<double>::infinity();
    double nan;
    std::memcpy(&nan, &kSignedNaN, 8);
    return nan;
  }
  return kind(m) == '2' ? std::sqrt(double(num) / double(den)) : double(num) / double(den);
}

st::Call callOn(const st::AnyImage& a, const st::AnyImage& b, const st::Mask& mask, vnxiSize r, int coi) {
  st::Call c;
  c.src1 = a.ptr, c.step1 = a.step, c.src2 = b.ptr, c.step2 = b.step, c.roi = r, c.coi = coi;
  c.mask = mask.ptr(), c.maskStep = mask.step();
  return c;
}

void expectMatches(const Member& m, const st::AnyImage& a, const st::AnyImage& b, const st::Mask& mask, vnxiSize r,
                   int coi, const std::string& what) {
  double got = -5;
  vnxStatus expected;
  const double e = reference(m, a, b, mask, r, coi, &expected);
  st::Call c = callOn(a, b, mask, r, coi);
  ASSERT_EQ(m.call(c), expected) << what;
  got = c.d[0];
  if (m.ty == Ty::F32 && std::isfinite(e) && kind(m) != 'I')
    EXPECT_NEAR(got, e, std::fabs(e) * 1e-12) << what;
  else
    EXPECT_EQ(vt::bits(got), vt::bits(e)) << what << ": " << got << " vs " << e;
}

TEST(Norm, EveryMemberMatchesTheSumsOnAwkwardSizes) {
  std::mt19937 rng(31);
  std::vector<vnxiSize> sizes = st::awkwardSizes();
  for (const Member& m : members())
    for (vnxiSize r : sizes)
      for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) {
        const st::AnyImage a = st::randomImage(m.ty, r.width, r.height, m.channels, rng, g);
        const st::AnyImage b = st::randomImage(m.ty, r.width, r.height, m.channels, rng, g);
        for (st::MaskKind mk : {st::MaskKind::Empty, st::MaskKind::Full, st::MaskKind::Random}) {
          const st::Mask mask = st::makeMask(mk, r.width, r.height, rng, g);
          for (int coi = 1; coi <= m.channels; ++coi)
            expectMatches(m, a, b, mask, r, coi,
                          m.name + " " + std::to_string(r.width) + "x" + std::to_string(r.height) + " mask " +
                              std::to_string(int(mk)) + " coi " + std::to_string(coi));
        }
      }
}

// Both sides of the cut-off with 2 threads (262144 pixels), repeated runs the same
// bits, integer results the same for every band count, 40 bands on a tall image.
TEST(Norm, BandsDoNotChangeIntegerResultsAndRunsRepeat) {
  std::mt19937 rng(32);
  for (const Member& m : members()) {
    const bool tall = m.ty == Ty::U8 && m.channels == 1;
    const vnxiSize r = tall ? vnxiSize{64, 82000} : vnxiSize{512, 513};
    const st::AnyImage a = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
    const st::AnyImage b = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Random, r.width, r.height, rng);
    expectMatches(m, a, b, mask, r, m.channels, m.name + " large");
    std::vector<double> got;
    for (int n : tall ? std::vector<int>{1, 2, 40} : std::vector<int>{1, 2, 3, 7}) {
      vt::Threads threads(n);
      for (int rep = 0; rep < 2; ++rep) {
        st::Call c = callOn(a, b, mask, r, m.channels);
        m.call(c);
        got.push_back(c.d[0]);
      }
      EXPECT_EQ(vt::bits(got[got.size() - 2]), vt::bits(got.back())) << m.name << " threads " << n;
    }
    if (m.ty != Ty::F32) {
      for (double g : got) EXPECT_EQ(vt::bits(g), vt::bits(got[0])) << m.name;
    }
  }
  vt::Threads threads(2);
  for (vnxiSize r : {vnxiSize{512, 255}, vnxiSize{512, 256}}) {
    const st::AnyImage a = st::randomImage(Ty::F32, r.width, r.height, 1, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Random, r.width, r.height, rng);
    expectMatches(members()[14], a, a, mask, r, 1, "32f L1 at the cut-off");
  }
}

TEST(Norm, RelativeNormWarnsOnZeroDenominator) {
  const vnx8u one[2] = {3, 0}, zero[2] = {0, 0}, sel[2] = {1, 1}, none[2] = {0, 0};
  double v = 0;
  EXPECT_EQ(vnxiNormRel_L2_8u_C1MR(one, 2, zero, 2, sel, 2, {2, 1}, &v), vnxStatusDivByZero);
  EXPECT_EQ(v, std::numeric_limits<double>::infinity());
  EXPECT_EQ(vnxiNormRel_L2_8u_C1MR(one, 2, zero, 2, none, 2, {2, 1}, &v), vnxStatusDivByZero);
  EXPECT_EQ(vt::bits(v), kSignedNaN);
  const float zf = 0;
  EXPECT_EQ(vnxiNorm_L2_32f_C1MR(&zf, 4, none, 1, {1, 1}, &v), vnxStatusOk);
  EXPECT_EQ(vt::bits(v), vt::bits(0.0));
}

// 8.6 million differences of 255 sum past 2^31: the 32-bit signed sum wraps negative,
// so with a zero second image the result is -inf.
TEST(Norm, RelativeL1Of8uWrapsIn32Bits) {
  const vnxiSize r{4096, 2100};
  std::vector<vnx8u> a(std::size_t(r.width) * r.height, 255), b(a.size(), 0), mask(a.size(), 1);
  double v = 0;
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v),
            vnxStatusDivByZero);
  EXPECT_EQ(v, -std::numeric_limits<double>::infinity());
  b.assign(a.size(), 1);  // 255 * 8601600 wraps to -2101559296, 8601600 stays positive
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v), vnxStatusOk);
  EXPECT_EQ(v, double(std::int32_t(std::uint32_t(254ull * 8601600))) / 8601600.0);
}

// Pointers, ROI, the source steps (row bytes, then multiples), only then the mask step, then coi.
TEST(Norm, StatusesInOrderForEveryMember) {
  std::mt19937 rng(33);
  for (const Member& m : members()) {
    const int eb = st::elemBytes(m.ty), rb = 5 * m.channels * eb;
    const vnxStatus coiStatus = m.channels == 3 ? vnxStatusBadCoi : vnxStatusOk;
    const st::AnyImage a = st::randomImage(m.ty, 5, 3, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Full, 5, 3, rng);
    std::vector<st::StatusCase> cases = {
        {"null source, zero width", [](st::Call& c) { c.src1 = nullptr, c.roi.width = 0; }, vnxStatusNullPtr},
        {"null mask", [](st::Call& c) { c.mask = nullptr; }, vnxStatusNullPtr},
        {"null result", [](st::Call& c) { c.wanted = 0, c.roi.width = 0; }, vnxStatusNullPtr},
        {"zero width", [](st::Call& c) { c.roi.width = 0; }, vnxStatusBadSize},
        {"short source step", [=](st::Call& c) { c.step1 = rb - eb, c.coi = 0; }, vnxStatusBadStep},
        {"short mask step", [](st::Call& c) { c.maskStep = 4, c.coi = 0; }, vnxStatusBadStep},
        {"misaligned source, short mask step", [=](st::Call& c) { c.step1 = rb + 1, c.maskStep = 4, c.coi = 0; },
         eb > 1 ? vnxStatusStepNotMultiple : vnxStatusBadStep},
        {"bad coi", [](st::Call& c) { c.coi = 0; }, coiStatus},
        {"coi 4", [](st::Call& c) { c.coi = 4; }, coiStatus},
        {"coi INT_MIN", [](st::Call& c) { c.coi = std::numeric_limits<int>::min(); }, coiStatus},
    };
    if (m.sources == 2) {
      cases.push_back({"null second source", [](st::Call& c) { c.src2 = nullptr; }, vnxStatusNullPtr});
      cases.push_back({"short second step", [=](st::Call& c) { c.step2 = rb - 1; }, vnxStatusBadStep});
      cases.push_back(
          {"misaligned first, short second", [=](st::Call& c) { c.step1 = rb + 1, c.step2 = rb - eb; }, vnxStatusBadStep});
    }
    st::Call valid = callOn(a, a, mask, {5, 3}, 1);
    const vnxStatus validStatus = m.call(valid);  // NormRel of an image and itself may warn
    for (st::StatusCase& k : cases)
      if (k.expected == vnxStatusOk) k.expected = validStatus;
    st::expectStatuses(m, callOn(a, a, mask, {5, 3}, 1), cases);
  }
}

}  // namespace
