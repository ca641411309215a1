// Every statistics export against a reference written from the contract, over the
// selected samples of the channel of interest:
// - means and deviations: S = sum x, Q = sum x^2, mean = S / n, sd = sqrt(|Q / n - mean^2|);
//   32f makes a second pass around the mean rounded to single precision when 0.05 mean^2 > sd^2;
// - extrema: the first sample strictly below (above) the running value, starting from the
//   type's greatest (least) value, in raster order;
// - norms of v = s or v = s1 - s2 (32f: the difference rounded to single precision):
//   Inf = max |v|, L1 = sum |v|, L2 = sqrt(sum v^2); relative: over the norm of s2.
// Integer results are exact, so the same bits at every band count; 32f results repeat.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "stats/vncvmean.h"
#include "stats_support.h"

namespace {

using st::Member;
using st::Ty;

const std::vector<Member>& meansAndExtrema() {
  static const std::vector<Member> m = {
      ST_MEMBER(vnxiMean_8u_C1MR),           ST_MEMBER(vnxiMean_8u_C3CMR),          ST_MEMBER(vnxiMean_8s_C1MR),
      ST_MEMBER(vnxiMean_8s_C3CMR),          ST_MEMBER(vnxiMean_16u_C1MR),          ST_MEMBER(vnxiMean_16u_C3CMR),
      ST_MEMBER(vnxiMean_32f_C1MR),          ST_MEMBER(vnxiMean_32f_C3CMR),         ST_MEMBER(vnxiMean_StdDev_8u_C1R),
      ST_MEMBER(vnxiMean_StdDev_8u_C3CR),    ST_MEMBER(vnxiMean_StdDev_8u_C1MR),    ST_MEMBER(vnxiMean_StdDev_8u_C3CMR),
      ST_MEMBER(vnxiMean_StdDev_8s_C1R),     ST_MEMBER(vnxiMean_StdDev_8s_C3CR),    ST_MEMBER(vnxiMean_StdDev_8s_C1MR),
      ST_MEMBER(vnxiMean_StdDev_8s_C3CMR),   ST_MEMBER(vnxiMean_StdDev_16u_C1R),    ST_MEMBER(vnxiMean_StdDev_16u_C3CR),
      ST_MEMBER(vnxiMean_StdDev_16u_C1MR),   ST_MEMBER(vnxiMean_StdDev_16u_C3CMR),  ST_MEMBER(vnxiMean_StdDev_32f_C1R),
      ST_MEMBER(vnxiMean_StdDev_32f_C3CR),   ST_MEMBER(vnxiMean_StdDev_32f_C1MR),   ST_MEMBER(vnxiMean_StdDev_32f_C3CMR),
      ST_MEMBER(vnxiMinMaxIndx_8u_C1R),      ST_MEMBER(vnxiMinMaxIndx_8u_C3CR),     ST_MEMBER(vnxiMinMaxIndx_8u_C1MR),
      ST_MEMBER(vnxiMinMaxIndx_8u_C3CMR),    ST_MEMBER(vnxiMinMaxIndx_8s_C1R),      ST_MEMBER(vnxiMinMaxIndx_8s_C3CR),
      ST_MEMBER(vnxiMinMaxIndx_8s_C1MR),     ST_MEMBER(vnxiMinMaxIndx_8s_C3CMR),    ST_MEMBER(vnxiMinMaxIndx_16u_C1R),
      ST_MEMBER(vnxiMinMaxIndx_16u_C3CR),    ST_MEMBER(vnxiMinMaxIndx_16u_C1MR),    ST_MEMBER(vnxiMinMaxIndx_16u_C3CMR),
      ST_MEMBER(vnxiMinMaxIndx_32f_C1R),     ST_MEMBER(vnxiMinMaxIndx_32f_C3CR),    ST_MEMBER(vnxiMinMaxIndx_32f_C1MR),
      ST_MEMBER(vnxiMinMaxIndx_32f_C3CMR),
  };
  return m;
}
#define M ST_MEMBER
const std::vector<Member>& norms() {
  static const std::vector<Member> m = {
      M(vnxiNorm_Inf_8u_C1MR),      M(vnxiNorm_Inf_8u_C3CMR),      M(vnxiNorm_Inf_8s_C1MR),      M(vnxiNorm_Inf_8s_C3CMR),
      M(vnxiNorm_Inf_16u_C1MR),     M(vnxiNorm_Inf_16u_C3CMR),     M(vnxiNorm_Inf_32f_C1MR),     M(vnxiNorm_Inf_32f_C3CMR),
      M(vnxiNorm_L1_8u_C1MR),       M(vnxiNorm_L1_8u_C3CMR),       M(vnxiNorm_L1_8s_C1MR),       M(vnxiNorm_L1_8s_C3CMR),
      M(vnxiNorm_L1_16u_C1MR),      M(vnxiNorm_L1_16u_C3CMR),      M(vnxiNorm_L1_32f_C1MR),      M(vnxiNorm_L1_32f_C3CMR),
      M(vnxiNorm_L2_8u_C1MR),       M(vnxiNorm_L2_8u_C3CMR),       M(vnxiNorm_L2_8s_C1MR),       M(vnxiNorm_L2_8s_C3CMR),
      M(vnxiNorm_L2_16u_C1MR),      M(vnxiNorm_L2_16u_C3CMR),      M(vnxiNorm_L2_32f_C1MR),      M(vnxiNorm_L2_32f_C3CMR),
      M(vnxiNormDiff_Inf_8u_C1MR),  M(vnxiNormDiff_Inf_8u_C3CMR),  M(vnxiNormDiff_Inf_8s_C1MR),  M(vnxiNormDiff_Inf_8s_C3CMR),
      M(vnxiNormDiff_Inf_16u_C1MR), M(vnxiNormDiff_Inf_16u_C3CMR), M(vnxiNormDiff_Inf_32f_C1MR), M(vnxiNormDiff_Inf_32f_C3CMR),
      M(vnxiNormDiff_L1_8u_C1MR),   M(vnxiNormDiff_L1_8u_C3CMR),   M(vnxiNormDiff_L1_8s_C1MR),   M(vnxiNormDiff_L1_8s_C3CMR),
      M(vnxiNormDiff_L1_16u_C1MR),  M(vnxiNormDiff_L1_16u_C3CMR),  M(vnxiNormDiff_L1_32f_C1MR),  M(vnxiNormDiff_L1_32f_C3CMR),
      M(vnxiNormDiff_L2_8u_C1MR),   M(vnxiNormDiff_L2_8u_C3CMR),   M(vnxiNormDiff_L2_8s_C1MR),   M(vnxiNormDiff_L2_8s_C3CMR),
      M(vnxiNormDiff_L2_16u_C1MR),  M(vnxiNormDiff_L2_16u_C3CMR),  M(vnxiNormDiff_L2_32f_C1MR),  M(vnxiNormDiff_L2_32f_C3CMR),
      M(vnxiNormRel_Inf_8u_C1MR),   M(vnxiNormRel_Inf_8u_C3CMR),   M(vnxiNormRel_Inf_8s_C1MR),   M(vnxiNormRel_Inf_8s_C3CMR),
      M(vnxiNormRel_Inf_16u_C1MR),  M(vnxiNormRel_Inf_16u_C3CMR),  M(vnxiNormRel_Inf_32f_C1MR),  M(vnxiNormRel_Inf_32f_C3CMR),
      M(vnxiNormRel_L1_8u_C1MR),    M(vnxiNormRel_L1_8u_C3CMR),    M(vnxiNormRel_L1_8s_C1MR),    M(vnxiNormRel_L1_8s_C3CMR),
      M(vnxiNormRel_L1_16u_C1MR),   M(vnxiNormRel_L1_16u_C3CMR),   M(vnxiNormRel_L1_32f_C1MR),   M(vnxiNormRel_L1_32f_C3CMR),
      M(vnxiNormRel_L2_8u_C1MR),    M(vnxiNormRel_L2_8u_C3CMR),    M(vnxiNormRel_L2_8s_C1MR),    M(vnxiNormRel_L2_8s_C3CMR),
      M(vnxiNormRel_L2_16u_C1MR),   M(vnxiNormRel_L2_16u_C3CMR),   M(vnxiNormRel_L2_32f_C1MR),   M(vnxiNormRel_L2_32f_C3CMR)};
  return m;
}
#undef M
std::vector<Member> allMembers() {
  std::vector<Member> all = meansAndExtrema();
  all.insert(all.end(), norms().begin(), norms().end());
  return all;
}

bool isExtrema(const Member& m) { return m.is("MinMax"); }
bool isNorm(const Member& m) { return m.is("Norm"); }
const std::uint64_t kNaN64 = 0xFFF8000000000000ull;

// What a call reports: the status, two values (mean and deviation, minimum and
// maximum, or the norm) and the two locations of the extrema.
struct Outcome {
  vnxStatus status;
  double v[2];
  vnxiPoint p[2];
  double scale;  // the largest |sample|: the tolerance of 32f sums scales with it
};

Outcome reference(const Member& m, const st::AnyImage& a, const st::AnyImage& b, const st::Mask* mask, vnxiSize r,
                  int coi) {
  const int c = m.channels == 3 ? coi - 1 : 0;
  Outcome o{vnxStatusOk, {0, 0}, {{0, 0}, {0, 0}}, 0};
  const double top = m.ty == Ty::U8 ? 255 : m.ty == Ty::S8 ? 127 : m.ty == Ty::U16 ? 65535 : 3.4028234663852886e38;
  const double bottom = m.ty == Ty::S8 ? -128 : m.ty == Ty::F32 ? -top : 0;
  double mn = top, mx = bottom;
  long double s = 0, q = 0, num = 0, den = 0;
  std::vector<double> picked;
  for (int y = 0; y < r.height; ++y)
    for (int x = 0; x < r.width; ++x) {
      o.scale = std::max(o.scale, std::fabs(a.at(x, y, c)));
      if (mask && !mask->on(x, y)) continue;
      double v = a.at(x, y, c);
      picked.push_back(v);
      s += v, q += static_cast<long double>(v) * v;
      if (v < mn) mn = v, o.p[0] = {x, y};
      if (v > mx) mx = v, o.p[1] = {x, y};
      const double w = m.sources == 2 ? b.at(x, y, c) : 0;
      if (m.sources == 2) v = m.ty == Ty::F32 ? double(float(v) - float(w)) : v - w;
      if (m.is("_Inf_"))
        num = std::max<long double>(num, std::fabs(v)), den = std::max<long double>(den, std::fabs(w));
      else if (m.is("_L1_"))
        num += std::fabs(v), den += std::fabs(w);
      else
        num += static_cast<long double>(v) * v, den += static_cast<long double>(w) * w;
    }
  const double n = double(picked.size());
  const bool l2 = m.is("_L2_");
  if (isExtrema(m)) {
    if (n) o.v[0] = float(mn), o.v[1] = float(mx);
    return o;
  }
  o.p[0] = o.p[1] = {0, 0};
  if (isNorm(m) && !m.is("NormRel")) {
    o.v[0] = l2 ? std::sqrt(double(num)) : double(num);
  } else if (isNorm(m)) {
    if (m.name == "vnxiNormRel_L1_8u_C1MR") {  // 32-bit signed sums that wrap
      num = std::int32_t(std::uint32_t(std::uint64_t(num)));
      den = std::int32_t(std::uint32_t(std::uint64_t(den)));
    }
    if (den == 0) {
      o.status = vnxStatusDivByZero;
      std::memcpy(&o.v[0], &kNaN64, 8);
      if (num != 0) o.v[0] = num > 0 ? HUGE_VAL : -HUGE_VAL;
    } else {
      o.v[0] = l2 ? std::sqrt(double(num) / double(den)) : double(num) / double(den);
    }
  } else if (n) {
    const double mean = double(s) / n;
    double sd = std::sqrt(std::fabs(double(q) / n - mean * mean));
    if (m.ty == Ty::F32 && 0.05 * mean * mean > sd * sd) {
      const double mf = static_cast<float>(mean);
      long double d = 0;
      for (double v : picked) d += (static_cast<long double>(v) - mf) * (static_cast<long double>(v) - mf);
      sd = std::sqrt(double(d) / n);
    }
    o.v[0] = mean, o.v[1] = m.is("StdDev") ? sd : 0;
  }
  return o;
}

Outcome run(const Member& m, const st::AnyImage& a, const st::AnyImage& b, const st::Mask* mask, vnxiSize r, int coi) {
  st::Call c = st::callOn(a, b, mask, r, coi);
  const vnxStatus s = m.call(c);
  if (isExtrema(m)) return {s, {c.f[0], c.f[1]}, {c.p[0], c.p[1]}, 0};
  return {s, {c.d[0], m.is("StdDev") ? c.d[1] : 0}, {{0, 0}, {0, 0}}, 0};
}

// Integer results and extrema to the bit; 32f sums within a bound on the order of
// the additions, which is the library's own.
void expectOutcome(const Member& m, const Outcome& e, const Outcome& g, const std::string& what) {
  ASSERT_EQ(g.status, e.status) << what;
  for (int k = 0; k < 2; ++k) {
    const bool approx = m.ty == Ty::F32 && !isExtrema(m) && !m.is("_Inf_") && std::isfinite(e.v[k]);
    const double tol = isNorm(m) ? std::fabs(e.v[k]) * 1e-12 : k == 0 ? e.scale * 1e-12 : e.scale * 1e-6 + 1e-300;
    if (approx)
      EXPECT_NEAR(g.v[k], e.v[k], tol) << what << " result " << k;
    else
      EXPECT_EQ(vt::bits(g.v[k]), vt::bits(e.v[k])) << what << " result " << k << ": " << g.v[k] << " vs " << e.v[k];
    EXPECT_TRUE(g.p[k].x == e.p[k].x && g.p[k].y == e.p[k].y)
        << what << " location " << k << ": " << g.p[k].x << "," << g.p[k].y << " vs " << e.p[k].x << "," << e.p[k].y;
  }
}

// Random samples, or (extrema) four values only, so extremes repeat across rows and bands.
st::AnyImage source(const Member& m, vnxiSize r, std::mt19937& rng, vt::Guard g, bool fewValues) {
  if (!fewValues) return st::randomImage(m.ty, r.width, r.height, m.channels, rng, g);
  const double lo = m.ty == Ty::S8 ? -128 : m.ty == Ty::F32 ? -2.5 : 0;
  const double stride = m.ty == Ty::U16 ? 21845 : m.ty == Ty::F32 ? 1 : 85;
  return st::imageOf(m.ty, r.width, r.height, m.channels, g, [&](int, int, int) { return lo + stride * (rng() % 4); });
}

std::string describe(const Member& m, vnxiSize r, const char* more, int value) {
  return m.name + " " + std::to_string(r.width) + "x" + std::to_string(r.height) + more + std::to_string(value);
}

TEST(Statistics, EveryMemberMatchesTheReferenceOnAwkwardSizes) {
  std::mt19937 rng(11);
  for (const Member& m : allMembers())
    for (vnxiSize r : st::awkwardSizes())
      for (vt::Guard g : {vt::Guard::After, vt::Guard::Before})
        for (bool few : {false, true}) {
          if (few && !isExtrema(m)) continue;
          const st::AnyImage a = source(m, r, rng, g, few), b = st::randomImage(m.ty, r.width, r.height, m.channels, rng, g);
          for (st::MaskKind mk : {st::MaskKind::Empty, st::MaskKind::Full, st::MaskKind::Random}) {
            if (!m.masked && mk != st::MaskKind::Full) continue;
            const st::Mask mask = st::makeMask(mk, r.width, r.height, rng, g);
            const st::Mask* mp = m.masked ? &mask : nullptr;
            for (int coi = 1; coi <= m.channels; ++coi)
              expectOutcome(m, reference(m, a, b, mp, r, coi), run(m, a, b, mp, r, coi),
                            describe(m, r, " mask ", int(mk)) + " coi " + std::to_string(coi));
          }
        }
}

// Both sides of the cut-offs (2 threads: 131072 and 262144 pixels; extrema: 16384) and
// of the 32f kernel thresholds (5000 pixels); at every thread count and 40 bands (a
// tall 8u image of 5.2 million pixels): the reference, and the same bits again.
TEST(Statistics, BandsKeepTheReferenceAndRunsRepeat) {
  std::mt19937 rng(12);
  for (const Member& m : allMembers()) {
    const bool tall = m.ty == Ty::U8 && m.channels == 1;
    for (vnxiSize r : {vnxiSize{4999, 1}, vnxiSize{5001, 1}, vnxiSize{128, 127}, vnxiSize{128, 128}, vnxiSize{512, 255},
                       vnxiSize{512, 256}, vnxiSize{512, 511}, vnxiSize{512, 512}, vnxiSize{7, 5000},
                       tall ? vnxiSize{64, 82000} : vnxiSize{600, 1000}}) {
      const st::AnyImage a = source(m, r, rng, vt::Guard::After, isExtrema(m));
      const st::AnyImage b = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
      const st::Mask mask = st::makeMask(st::MaskKind::Random, r.width, r.height, rng);
      const st::Mask* mp = m.masked ? &mask : nullptr;
      const int coi = m.channels == 3 ? 2 : 1;
      const Outcome e = reference(m, a, b, mp, r, coi);
      for (int n : {1, 2, 3, 7, 40}) {
        vt::Threads threads(n);
        const Outcome first = run(m, a, b, mp, r, coi), again = run(m, a, b, mp, r, coi);
        expectOutcome(m, e, first, describe(m, r, " threads ", n));
        EXPECT_EQ(vt::bits(first.v[0]), vt::bits(again.v[0])) << describe(m, r, " repeated, threads ", n);
        EXPECT_EQ(vt::bits(first.v[1]), vt::bits(again.v[1])) << describe(m, r, " repeated, threads ", n);
      }
    }
  }
}

// The statuses of the norms: pointers, ROI, the source steps (row bytes, then multiples),
// only then the mask step, then coi.
std::vector<st::StatusCase> normStatusCases(const Member& m) {
  const int eb = st::elemBytes(m.ty), rb = 5 * m.channels * eb;
  const vnxStatus coiStatus = m.channels == 3 ? vnxStatusBadCoi : vnxStatusOk;
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
      {"coi INT_MIN", [](st::Call& c) { c.coi = std::numeric_limits<int>::min(); }, coiStatus},
  };
  if (m.sources == 2) {
    cases.push_back({"null second source", [](st::Call& c) { c.src2 = nullptr; }, vnxStatusNullPtr});
    cases.push_back({"short second step", [=](st::Call& c) { c.step2 = rb - 1; }, vnxStatusBadStep});
    cases.push_back(
        {"misaligned first, short second", [=](st::Call& c) { c.step1 = rb + 1, c.step2 = rb - eb; }, vnxStatusBadStep});
  }
  return cases;
}

// Statuses in their order; nothing is written on an error.
TEST(Statistics, StatusesInOrderForEveryMember) {
  std::mt19937 rng(14);
  for (const Member& m : allMembers()) {
    const st::AnyImage a = st::randomImage(m.ty, 5, 3, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Full, 5, 3, rng);
    const st::Call valid = st::callOn(a, a, m.masked ? &mask : nullptr, {5, 3}, 1);
    std::vector<st::StatusCase> cases = isNorm(m) ? normStatusCases(m) : st::statStatusCases(m);
    if (m.is("vnxiMean_") && !m.is("StdDev"))
      cases.push_back({"null mean", [](st::Call& c) { c.wanted = 0; }, vnxStatusNullPtr});
    st::Call probe = valid;
    const vnxStatus validStatus = m.call(probe);  // NormRel of an image and itself may warn
    for (st::StatusCase& k : cases)
      if (k.expected == vnxStatusOk) k.expected = validStatus;
    st::expectStatuses(m, valid, cases);
  }
}

// The four result pointers of the extrema are not checked: a null one is not written
// and the others get what a call with all four gets. The deviation calls take null results.
TEST(Statistics, NullResultPointersAreNotWanted) {
  std::mt19937 rng(23);
  for (const Member& m : meansAndExtrema()) {
    if (!isExtrema(m)) continue;
    const st::AnyImage img = st::randomImage(m.ty, 33, 7, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Random, 33, 7, rng);
    st::Call all = st::callOn(img, img, m.masked ? &mask : nullptr, {33, 7}, 2);
    ASSERT_EQ(m.call(all), vnxStatusOk);
    for (unsigned wanted = 0; wanted < 15; ++wanted) {
      st::Call c = st::callOn(img, img, m.masked ? &mask : nullptr, {33, 7}, 2);
      c.wanted = wanted;
      EXPECT_EQ(m.call(c), vnxStatusOk) << m.name;
      for (int k = 0; k < 2; ++k) {
        EXPECT_EQ(c.f[k], wanted >> k & 1 ? all.f[k] : -7) << m.name << " " << wanted;
        const vnxiPoint e = wanted >> (k + 2) & 1 ? all.p[k] : vnxiPoint{-7, -7};
        EXPECT_TRUE(c.p[k].x == e.x && c.p[k].y == e.y) << m.name << " " << wanted;
      }
    }
  }
  const float one = 2.5f;
  EXPECT_EQ(vnxiMean_StdDev_32f_C1R(&one, 4, {1, 1}, nullptr, nullptr), vnxStatusOk);
}

// A constant 32f image: the one-pass deviation triggers the second pass, which sums zeros.
TEST(Statistics, ConstantFloatImageHasZeroDeviation) {
  for (vnxiSize r : {vnxiSize{7, 3}, vnxiSize{300, 300}}) {
    std::vector<float> flat(std::size_t(r.width) * r.height, 1000.5f);
    double mean = 0, sd = -1;
    ASSERT_EQ(vnxiMean_StdDev_32f_C1R(flat.data(), r.width * 4, r, &mean, &sd), vnxStatusOk);
    EXPECT_EQ(mean, 1000.5);
    EXPECT_EQ(vt::bits(sd), vt::bits(0.0));
  }
}

TEST(Statistics, Float32KernelChoiceFollowsThresholds) {
  alignas(16) static float buf[8];
  const void *a16 = buf, *a4 = buf + 1, *odd = reinterpret_cast<const char*>(buf) + 2;
  const auto S = ownSum32fKernel::Short, A = ownSum32fKernel::Aligned, G = ownSum32fKernel::General;
  const struct {
    vnxiSize r;
    const void* p;
    int step, channels;
    ownSum32fKernel expected;
  } cases[] = {
      {{5000, 1}, a16, 20000, 1, S},   {{5001, 1}, a4, 20016, 1, A},     {{5001, 1}, a4, 20008, 1, G},
      {{5001, 1}, odd, 20016, 1, G},   {{99999, 1}, a16, 400000, 1, A},  {{100000, 1}, a16, 400000, 1, G},
      {{4999, 1}, a16, 60000, 3, S},   {{5000, 1}, a16, 60000, 3, A},    {{5000, 1}, a4, 60000, 3, G},
      {{5000, 1}, a16, 60004, 3, G},   {{500000, 1}, a16, 6000000, 3, A},
  };
  for (const auto& c : cases)
    EXPECT_EQ(int(ownPickSum32fKernel(c.r, c.p, c.step, c.channels)), int(c.expected)) << c.r.width << " " << c.channels;
}

// The byte kernel keeps squares in 32-bit lanes across rows: rows of 255 (the largest
// square) that run the lanes past the point where they are widened, in one long row and
// in many short ones, still give the exact totals; 8s rows go through the same lanes.
TEST(Statistics, ByteSumsWidenSquareLanesBeforeTheyWrap) {
  const int flush = 16 * (ownByteSums<ownPlainSrc<vnx8u>>::kSquaresPerLane / 2);
  for (vnxiSize c : {vnxiSize{3 * flush + 37, 1}, vnxiSize{flush - 16, 2}, vnxiSize{flush + 16, 1}, vnxiSize{1931, 600}}) {
    const std::vector<vnx8u> u(c.width, 255);
    const std::vector<vnx8s> s(c.width, 127);
    ownByteSums<ownPlainSrc<vnx8u>> su;
    ownByteSums<ownPlainSrc<vnx8s>> ss;
    for (int y = 0; y < c.height; ++y) su.row(ownPlainSrc<vnx8u>{u.data()}, c.width), ss.row(ownPlainSrc<vnx8s>{s.data()}, c.width);
    const std::uint64_t n = std::uint64_t(c.width) * c.height;
    for (const ownIntSums& t : {su.total(), ss.total()})
      EXPECT_TRUE(t.sum == n * 255 && t.sq == n * 255 * 255) << c.width << "x" << c.height;
  }
}

// A zero denominator warns: inf over a positive numerator, the one NaN over zero.
// 8.6 million differences of 255 sum past 2^31 in the 32-bit signed sum of the 8u
// relative L1 norm, which wraps negative: -inf over a zero second image.
TEST(Statistics, RelativeNormsWarnOnZeroDenominatorAndWrapIn32Bits) {
  const vnx8u one[2] = {3, 0}, zero[2] = {0, 0}, sel[2] = {1, 1}, none[2] = {0, 0};
  double v = 0;
  EXPECT_EQ(vnxiNormRel_L2_8u_C1MR(one, 2, zero, 2, sel, 2, {2, 1}, &v), vnxStatusDivByZero);
  EXPECT_EQ(v, HUGE_VAL);
  EXPECT_EQ(vnxiNormRel_L2_8u_C1MR(one, 2, zero, 2, none, 2, {2, 1}, &v), vnxStatusDivByZero);
  EXPECT_EQ(vt::bits(v), kNaN64);
  const vnxiSize r{4096, 2100};
  std::vector<vnx8u> a(std::size_t(r.width) * r.height, 255), b(a.size(), 0), mask(a.size(), 1);
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v), vnxStatusDivByZero);
  EXPECT_EQ(v, -HUGE_VAL);
  b.assign(a.size(), 1);  // 255 * 8601600 wraps to -2101559296, 8601600 stays positive
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v), vnxStatusOk);
  EXPECT_EQ(v, double(std::int32_t(std::uint32_t(254ull * 8601600))) / 8601600.0);
}

}  // namespace
