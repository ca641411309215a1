// Means and standard deviations against a reference written from the contract:
// S = sum x, Q = sum x^2 over the selected samples, mean = S / n,
// deviation = sqrt(|Q / n - mean^2|); 32f makes a second pass around the mean
// rounded to single precision when 0.05 mean^2 > deviation^2.
#include <cmath>

#include "stats_support.h"
#include "stats/vncvmean.h"

namespace {

using st::Member;
using st::Ty;

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      ST_MEMBER(vnxiMean_8u_C1MR),         ST_MEMBER(vnxiMean_8u_C3CMR),         ST_MEMBER(vnxiMean_8s_C1MR),
      ST_MEMBER(vnxiMean_8s_C3CMR),        ST_MEMBER(vnxiMean_16u_C1MR),         ST_MEMBER(vnxiMean_16u_C3CMR),
      ST_MEMBER(vnxiMean_32f_C1MR),        ST_MEMBER(vnxiMean_32f_C3CMR),        ST_MEMBER(vnxiMean_StdDev_8u_C1R),
      ST_MEMBER(vnxiMean_StdDev_8u_C3CR),  ST_MEMBER(vnxiMean_StdDev_8u_C1MR),   ST_MEMBER(vnxiMean_StdDev_8u_C3CMR),
      ST_MEMBER(vnxiMean_StdDev_8s_C1R),   ST_MEMBER(vnxiMean_StdDev_8s_C3CR),   ST_MEMBER(vnxiMean_StdDev_8s_C1MR),
      ST_MEMBER(vnxiMean_StdDev_8s_C3CMR), ST_MEMBER(vnxiMean_StdDev_16u_C1R),   ST_MEMBER(vnxiMean_StdDev_16u_C3CR),
      ST_MEMBER(vnxiMean_StdDev_16u_C1MR), ST_MEMBER(vnxiMean_StdDev_16u_C3CMR), ST_MEMBER(vnxiMean_StdDev_32f_C1R),
      ST_MEMBER(vnxiMean_StdDev_32f_C3CR), ST_MEMBER(vnxiMean_StdDev_32f_C1MR),  ST_MEMBER(vnxiMean_StdDev_32f_C3CMR),
  };
  return m;
}

// The contract's formulas; integer sums exact, 32f sums in long double.
struct Expected {
  double mean, sd;
};
Expected reference(const Member& m, const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi) {
  long double s = 0, q = 0;
  std::int64_t n = 0;
  std::vector<double> picked;
  for (int y = 0; y < r.height; ++y)
    for (int x = 0; x < r.width; ++x)
      if (!mask || mask->on(x, y)) {
        const double v = img.at(x, y, m.channels == 3 ? coi - 1 : 0);
        picked.push_back(v);
        s += v;
        q += static_cast<long double>(v) * v;
        ++n;
      }
  if (!n) return {0.0, 0.0};
  const double dn = double(n);
  const double mean = double(s) / dn;
  double sd = std::sqrt(std::fabs(double(q) / dn - mean * mean));
  if (m.ty == Ty::F32 && 0.05 * mean * mean > sd * sd) {
    const double mf = static_cast<float>(mean);
    long double d = 0;
    for (double v : picked) d += (static_cast<long double>(v) - mf) * (static_cast<long double>(v) - mf);
    sd = std::sqrt(double(d) / dn);
  }
  return {mean, sd};
}

st::Call callOn(const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi) {
  st::Call c;
  c.src1 = img.ptr, c.step1 = img.step, c.roi = r, c.coi = coi;
  if (mask) c.mask = mask->ptr(), c.maskStep = mask->step();
  return c;
}

void expectMatches(const Member& m, const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi,
                   const std::string& what) {
  st::Call c = callOn(img, mask, r, coi);
  ASSERT_EQ(m.call(c), vnxStatusOk) << what;
  const double mean = c.d[0], sd = c.d[1];
  const bool stdDev = m.is("StdDev");
  const Expected e = reference(m, img, mask, r, coi);
  if (m.ty == Ty::F32) {
    // the reference sums exactly enough; the library's order of additions is its own
    double scale = 0;
    for (int y = 0; y < r.height; ++y)
      for (int x = 0; x < r.width; ++x) scale = std::max(scale, std::fabs(img.at(x, y, m.channels == 3 ? coi - 1 : 0)));
    EXPECT_NEAR(mean, e.mean, scale * 1e-12) << what;
    if (stdDev) {
      EXPECT_NEAR(sd, e.sd, scale * 1e-6 + 1e-300) << what;
    }
  } else {
    EXPECT_EQ(vt::bits(mean), vt::bits(e.mean)) << what << " mean " << mean << " vs " << e.mean;
    if (stdDev) {
      EXPECT_EQ(vt::bits(sd), vt::bits(e.sd)) << what << " sd " << sd << " vs " << e.sd;
    }
  }
}

TEST(MeanStdDev, EveryMemberMatchesTheFormulasOnAwkwardSizes) {
  std::mt19937 rng(11);
  for (const Member& m : members())
    for (vnxiSize r : st::awkwardSizes())
      for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) {
        const st::AnyImage img = st::randomImage(m.ty, r.width, r.height, m.channels, rng, g);
        for (st::MaskKind mk : {st::MaskKind::Empty, st::MaskKind::Full, st::MaskKind::Random}) {
          if (!m.masked && mk != st::MaskKind::Full) continue;
          const st::Mask mask = st::makeMask(mk, r.width, r.height, rng, g);
          for (int coi = 1; coi <= m.channels; ++coi)
            expectMatches(m, img, m.masked ? &mask : nullptr, r, coi,
                          std::string(m.name) + " " + std::to_string(r.width) + "x" + std::to_string(r.height) +
                              " mask " + std::to_string(int(mk)) + " coi " + std::to_string(coi));
        }
      }
}

// Sizes on both sides of the serial cut-offs (2 threads: 131072 and 262144 pixels)
// and of the 32f kernel thresholds (5000/5001 and 100000 pixels).
TEST(MeanStdDev, BothSidesOfCutoffsAndKernelThresholds) {
  vt::Threads threads(2);
  std::mt19937 rng(12);
  const vnxiSize sizes[] = {{100, 50},  {5001, 1},  {4999, 1},  {1000, 5},  {100, 1000}, {1000, 99},
                            {512, 255}, {512, 256}, {512, 511}, {512, 512}, {1023, 257}};
  for (const Member& m : members())
    for (vnxiSize r : sizes) {
      const st::AnyImage img = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
      const st::Mask mask = st::makeMask(st::MaskKind::Random, r.width, r.height, rng);
      expectMatches(m, img, m.masked ? &mask : nullptr, r, m.channels == 3 ? 2 : 1,
                    std::string(m.name) + " " + std::to_string(r.width) + "x" + std::to_string(r.height));
    }
}

TEST(MeanStdDev, Float32KernelChoiceFollowsThresholds) {
  alignas(16) static float buf[8];
  const void* a16 = buf;
  const void* a4 = buf + 1;
  const void* odd = reinterpret_cast<const char*>(buf) + 2;
  struct Case {
    vnxiSize r;
    const void* p;
    int step, channels;
    ownSum32fKernel expected;
  } cases[] = {
      {{5000, 1}, a16, 20000, 1, ownSum32fKernel::Short},       {{5001, 1}, a4, 20016, 1, ownSum32fKernel::Aligned},
      {{5001, 1}, a4, 20008, 1, ownSum32fKernel::General},      {{5001, 1}, odd, 20016, 1, ownSum32fKernel::General},
      {{99999, 1}, a16, 400000, 1, ownSum32fKernel::Aligned},   {{100000, 1}, a16, 400000, 1, ownSum32fKernel::General},
      {{4999, 1}, a16, 60000, 3, ownSum32fKernel::Short},       {{5000, 1}, a16, 60000, 3, ownSum32fKernel::Aligned},
      {{5000, 1}, a4, 60000, 3, ownSum32fKernel::General},      {{5000, 1}, a16, 60004, 3, ownSum32fKernel::General},
      {{500000, 1}, a16, 6000000, 3, ownSum32fKernel::Aligned},
  };
  for (const Case& c : cases)
    EXPECT_EQ(int(ownPickSum32fKernel(c.r, c.p, c.step, c.channels)), int(c.expected))
        << c.r.width << " ch " << c.channels;
}

TEST(MeanStdDev, ContractExamples) {
  const vnx8u two[2] = {0, 255};
  double mean = 0, sd = 0;
  ASSERT_EQ(vnxiMean_StdDev_8u_C1R(two, 2, {2, 1}, &mean, &sd), vnxStatusOk);
  EXPECT_EQ(mean, 127.5);
  EXPECT_EQ(sd, 127.5);

  // a constant 32f image: the one-pass deviation triggers the second pass, which sums zeros
  for (vnxiSize r : {vnxiSize{7, 3}, vnxiSize{300, 300}}) {
    std::vector<float> flat(std::size_t(r.width) * r.height, 1000.5f);
    sd = -1;
    ASSERT_EQ(vnxiMean_StdDev_32f_C1R(flat.data(), r.width * 4, r, &mean, &sd), vnxStatusOk);
    EXPECT_EQ(mean, 1000.5);
    EXPECT_EQ(vt::bits(sd), vt::bits(0.0));
  }
  const float one = 2.5f;
  EXPECT_EQ(vnxiMean_StdDev_32f_C1R(&one, 4, {1, 1}, nullptr, nullptr), vnxStatusOk);

  const vnx8u zeros[4] = {};
  mean = sd = -1;
  EXPECT_EQ(vnxiMean_StdDev_8u_C1MR(two, 2, zeros, 2, {2, 1}, &mean, &sd), vnxStatusOk);
  EXPECT_EQ(vt::bits(mean), vt::bits(0.0));
  EXPECT_EQ(vt::bits(sd), vt::bits(0.0));
}

// Integer results are exact: the same bits for every band count, more than 32 bands too.
// 32f results are the same bits on repeated runs with one thread count.
TEST(MeanStdDev, BandsDoNotChangeIntegerResultsAndRunsRepeat) {
  std::mt19937 rng(13);
  for (const Member& m : members()) {
    // 5.2 million pixels give 40 bands to any member; the others get 2 to 7 bands
    const vnxiSize r = m.ty == Ty::U8 && m.channels == 1 ? vnxiSize{64, 82000} : vnxiSize{600, 1000};
    const st::AnyImage img = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Random, r.width, r.height, rng);
    std::vector<std::pair<double, double>> got;
    for (int n : {1, 2, 3, 7, 40}) {
      vt::Threads threads(n);
      for (int rep = 0; rep < 2; ++rep) {
        st::Call c = callOn(img, &mask, r, 3);
        ASSERT_EQ(m.call(c), vnxStatusOk);
        const double a = c.d[0], b = c.d[1];
        got.push_back({a, b});
      }
      EXPECT_EQ(vt::bits(got[got.size() - 2].first), vt::bits(got.back().first)) << m.name << " n=" << n;
      EXPECT_EQ(vt::bits(got[got.size() - 2].second), vt::bits(got.back().second)) << m.name << " n=" << n;
    }
    if (m.ty != Ty::F32)
      for (auto& g : got) {
        EXPECT_EQ(vt::bits(g.first), vt::bits(got[0].first)) << m.name;
        EXPECT_EQ(vt::bits(g.second), vt::bits(got[0].second)) << m.name;
      }
  }
}

// The byte kernel keeps squares in 32-bit lanes across rows: rows of 255 (the
// largest square) that run the lanes past the point where they are widened, in
// one long row and in many short ones, still give the exact totals; 8s rows go
// through the same lanes offset by 128.
TEST(MeanStdDev, ByteSumsWidenSquareLanesBeforeTheyWrap) {
  const int flushBytes = 16 * (ownByteSums<ownPlainSrc<vnx8u>>::kSquaresPerLane / 2);
  struct Case {
    int width, rows;
  } cases[] = {{3 * flushBytes + 37, 1}, {flushBytes - 16, 2}, {flushBytes + 16, 1}, {1920, 700}, {1931, 600}};
  for (const Case& c : cases) {
    const std::vector<vnx8u> u(c.width, 255);
    const std::vector<vnx8s> s(c.width, 127);
    ownByteSums<ownPlainSrc<vnx8u>> su;
    ownByteSums<ownPlainSrc<vnx8s>> ss;
    for (int y = 0; y < c.rows; ++y) {
      su.row(ownPlainSrc<vnx8u>{u.data()}, c.width);
      ss.row(ownPlainSrc<vnx8s>{s.data()}, c.width);
    }
    const std::uint64_t n = std::uint64_t(c.width) * c.rows;
    for (const ownIntSums& t : {su.total(), ss.total()}) {
      EXPECT_EQ(t.sum, n * 255) << c.width << "x" << c.rows;
      EXPECT_EQ(t.sq, n * 255 * 255) << c.width << "x" << c.rows;
    }
  }
}

// Statuses in their order; nothing is written on an error.
TEST(MeanStdDev, StatusesInOrderForEveryMember) {
  std::mt19937 rng(14);
  for (const Member& m : members()) {
    const st::AnyImage img = st::randomImage(m.ty, 5, 3, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Full, 5, 3, rng);
    std::vector<st::StatusCase> cases = st::statStatusCases(m);
    if (!m.is("StdDev")) cases.push_back({"null mean", [](st::Call& c) { c.wanted = 0; }, vnxStatusNullPtr});
    st::expectStatuses(m, callOn(img, m.masked ? &mask : nullptr, {5, 3}, 1), cases);
  }
}

}  // namespace
