// 32f statistics on special values: NaN of any payload and sign, infinities, -0 and
// denormals. Every result has the same bits at 1, 2, 3, 4 and 7 threads, and a NaN
// result is the library's one NaN. Samples are otherwise multiples of 1/256, so the
// finite sums are exact in any order of the additions and may be compared by bits.
#include <cmath>
#include <cstring>
#include <limits>

#include "stats_support.h"

namespace {

double fromBits64(std::uint64_t u) {
  double v;
  std::memcpy(&v, &u, 8);
  return v;
}
const std::uint64_t kNaN64 = 0xFFF8000000000000ull;
const std::uint32_t kNaN32 = 0xFFC00000u;

using st::Member;

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      ST_MEMBER(vnxiMean_32f_C1MR),          ST_MEMBER(vnxiMean_StdDev_32f_C1R),    ST_MEMBER(vnxiMean_StdDev_32f_C3CMR),
      ST_MEMBER(vnxiMinMaxIndx_32f_C1MR),    ST_MEMBER(vnxiNorm_Inf_32f_C1MR),      ST_MEMBER(vnxiNorm_L1_32f_C1MR),
      ST_MEMBER(vnxiNorm_L2_32f_C1MR),       ST_MEMBER(vnxiNormDiff_Inf_32f_C1MR),  ST_MEMBER(vnxiNormDiff_L1_32f_C1MR),
      ST_MEMBER(vnxiNormDiff_L2_32f_C1MR),   ST_MEMBER(vnxiNormRel_Inf_32f_C1MR),   ST_MEMBER(vnxiNormRel_L1_32f_C1MR),
      ST_MEMBER(vnxiNormRel_L2_32f_C1MR),    ST_MEMBER(vnxiNormDiff_L2_32f_C3CMR),
  };
  return m;
}

// Every result of a call as bit patterns (a three-channel member sees the rows as
// pixels of three samples and measures the second).
std::vector<std::uint64_t> results(const Member& m, const vt::Image<vnx32f>& a, const vt::Image<vnx32f>& b,
                                   const vt::Image<vnx8u>& mask, vnxStatus* status) {
  st::Call c;
  c.src1 = a.ptr(), c.step1 = a.step(), c.src2 = b.ptr(), c.step2 = b.step(), c.mask = mask.ptr();
  c.maskStep = mask.step(), c.roi = {a.width() / m.channels, a.height()}, c.coi = 2;
  *status = m.call(c);
  return {vt::bits(c.d[0]), vt::bits(c.d[1]), vt::bits(c.f[0]), vt::bits(c.f[1]), std::uint64_t(c.p[0].x),
          std::uint64_t(c.p[0].y), std::uint64_t(c.p[1].x), std::uint64_t(c.p[1].y)};
}

// Which special values a variant plants among the multiples of 1/256.
enum class Plant { NaNs, Infinities, PlusInfinity, ZerosAndDenormals };

float planted(Plant p, std::mt19937& rng) {
  switch (p) {
    case Plant::NaNs: {  // quiet and signalling, either sign, any payload
      const std::uint32_t payload = 1 + rng() % 0x3FFFFF, quiet = rng() % 2 ? 0x400000 : 0, sign = rng() % 2;
      return vt::fromBits((sign << 31) | 0x7F800000u | quiet | payload);
    }
    case Plant::Infinities:
      return rng() % 2 ? std::numeric_limits<float>::infinity() : -std::numeric_limits<float>::infinity();
    case Plant::PlusInfinity:
      return std::numeric_limits<float>::infinity();
    default:
      return rng() % 2 ? -0.0f : vt::fromBits(std::uint32_t(rng() % 0x7FFFFF + 1) | (rng() % 2 ? 0x80000000u : 0));
  }
}

// 1026 x 900 samples: banded at every thread count up to 7 (7 * 131072 = 917504).
TEST(StatsSpecialValues, SameBitsAtEveryThreadCountAndOneNaN) {
  const vnxiSize r{1026, 900};
  std::mt19937 rng(51);
  for (Plant plant : {Plant::NaNs, Plant::Infinities, Plant::PlusInfinity, Plant::ZerosAndDenormals}) {
    vt::Image<vnx32f> a(r.width, r.height), b(r.width, r.height);
    vt::Image<vnx8u> mask(r.width, r.height);
    a.fill([&](int, int, int) { return rng() % 4096 ? float(int(rng() % 4001) - 2000) / 256 : planted(plant, rng); });
    b.fill([&](int, int, int) { return float(int(rng() % 4001) - 2000) / 256; });
    mask.fill([&](int, int, int) { return rng() % 5 ? 1 : 0; });
    for (const Member& m : members()) {
      std::vector<std::uint64_t> first;
      vnxStatus firstStatus = vnxStatusOk;
      for (int n : vt::threadCounts()) {
        vt::Threads threads(n);
        vnxStatus s;
        const std::vector<std::uint64_t> got = results(m, a, b, mask, &s);
        EXPECT_GE(s, 0) << m.name;
        if (first.empty()) {
          first = got, firstStatus = s;
          for (int k = 0; k < 4; ++k) {  // the double results, then the float ones
            const std::uint64_t v = got[k];
            const bool nan = k < 2 ? std::isnan(fromBits64(v)) : std::isnan(vt::fromBits(std::uint32_t(v)));
            EXPECT_TRUE(!nan || v == (k < 2 ? kNaN64 : kNaN32)) << m.name << " plant " << int(plant) << ": " << std::hex << v;
          }
        }
        EXPECT_EQ(s, firstStatus) << m.name << " threads " << n;
        EXPECT_EQ(got, first) << m.name << " plant " << int(plant) << " threads " << n;
      }
      // sums over a NaN (or over both infinities) are NaN; maxima skip NaN samples
      if (plant == Plant::NaNs && m.is("_L2_32f_C1MR")) {
        EXPECT_EQ(first[0], kNaN64) << m.name;
      }
    }
  }
}

// A source that starts at any byte: the samples are read with unaligned loads,
// and the result is the one of an aligned copy (every order of these sums is exact).
TEST(StatsSpecialValues, MeanStdDevOfUnalignedFloatSources) {
  std::mt19937 rng(52);
  for (vnxiSize r : {vnxiSize{7, 3}, vnxiSize{5003, 1}, vnxiSize{300, 400}}) {
    const std::size_t n = std::size_t(r.width) * r.height;
    std::vector<float> v(n);
    for (float& f : v) f = float(int(rng() % 4001) - 2000) / 256;
    std::vector<unsigned char> raw(n * 4 + 3);
    for (int off = 1; off < 4; ++off) {
      std::memcpy(raw.data() + off, v.data(), n * 4);
      double m1 = 0, s1 = 0, m2 = 1, s2 = 1;
      ASSERT_EQ(vnxiMean_StdDev_32f_C1R(v.data(), r.width * 4, r, &m1, &s1), vnxStatusOk);
      ASSERT_EQ(vnxiMean_StdDev_32f_C1R(reinterpret_cast<const float*>(raw.data() + off), r.width * 4, r, &m2, &s2),
                vnxStatusOk);
      EXPECT_EQ(vt::bits(m1), vt::bits(m2)) << r.width << " offset " << off;
      EXPECT_EQ(vt::bits(s1), vt::bits(s2)) << r.width << " offset " << off;
    }
  }
}

}  // namespace
