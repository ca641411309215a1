// 32f statistics on special values: NaN of any payload and sign, infinities, -0 and
// denormals. Every result has the same bits at 1, 2, 3, 4 and 7 threads, and a NaN
// result is the library's one NaN. Samples are otherwise multiples of 1/256, so the
// finite sums are exact in any order of the additions and may be compared by bits.
#include <cmath>
#include <cstring>
#include <limits>

#include "stats_support.h"

namespace {

const std::uint64_t kNaN64 = 0xFFF8000000000000ull;
const std::uint32_t kNaN32 = 0xFFC00000u;

// One 32f member, called on (a, b, mask) with coi 2; its results as bit patterns.
using Call = std::function<vnxStatus(const vnx32f*, const vnx32f*, int, const vnx8u*, int, vnxiSize,
                                     std::vector<std::uint64_t>&)>;
struct Member {
  const char* name;
  Call call;
};

template <class F>
Member norm1(const char* n, F f) {  // vnxiNorm_*_C1MR
  return {n, [f](const vnx32f* a, const vnx32f*, int s, const vnx8u* m, int ms, vnxiSize r, auto& out) {
            double v = 0;
            const vnxStatus st = f(a, s, m, ms, r, &v);
            out.push_back(vt::bits(v));
            return st;
          }};
}
template <class F>
Member norm2(const char* n, F f) {  // vnxiNormDiff_*_C1MR, vnxiNormRel_*_C1MR
  return {n, [f](const vnx32f* a, const vnx32f* b, int s, const vnx8u* m, int ms, vnxiSize r, auto& out) {
            double v = 0;
            const vnxStatus st = f(a, s, b, s, m, ms, r, &v);
            out.push_back(vt::bits(v));
            return st;
          }};
}
template <class F>
Member norm2C3(const char* n, F f) {  // vnxiNormDiff_*_C3CMR on a three-channel view of the same rows
  return {n, [f](const vnx32f* a, const vnx32f* b, int s, const vnx8u* m, int ms, vnxiSize r, auto& out) {
            double v = 0;
            const vnxStatus st = f(a, s, b, s, m, ms, {r.width / 3, r.height}, 2, &v);
            out.push_back(vt::bits(v));
            return st;
          }};
}
#define NORM1(fn) norm1(#fn, fn)
#define NORM2(fn) norm2(#fn, fn)

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      {"vnxiMean_32f_C1MR",
       [](const vnx32f* a, const vnx32f*, int s, const vnx8u* k, int ks, vnxiSize r, auto& out) {
         double v = 0;
         const vnxStatus st = vnxiMean_32f_C1MR(a, s, k, ks, r, &v);
         out.push_back(vt::bits(v));
         return st;
       }},
      {"vnxiMean_StdDev_32f_C1R",
       [](const vnx32f* a, const vnx32f*, int s, const vnx8u*, int, vnxiSize r, auto& out) {
         double v = 0, d = 0;
         const vnxStatus st = vnxiMean_StdDev_32f_C1R(a, s, r, &v, &d);
         out.insert(out.end(), {vt::bits(v), vt::bits(d)});
         return st;
       }},
      {"vnxiMean_StdDev_32f_C3CMR",
       [](const vnx32f* a, const vnx32f*, int s, const vnx8u* k, int ks, vnxiSize r, auto& out) {
         double v = 0, d = 0;
         const vnxStatus st = vnxiMean_StdDev_32f_C3CMR(a, s, k, ks, {r.width / 3, r.height}, 2, &v, &d);
         out.insert(out.end(), {vt::bits(v), vt::bits(d)});
         return st;
       }},
      {"vnxiMinMaxIndx_32f_C1MR",
       [](const vnx32f* a, const vnx32f*, int s, const vnx8u* k, int ks, vnxiSize r, auto& out) {
         float mn = 0, mx = 0;
         vnxiPoint p{}, q{};
         const vnxStatus st = vnxiMinMaxIndx_32f_C1MR(a, s, k, ks, r, &mn, &mx, &p, &q);
         out.insert(out.end(), {vt::bits(mn), vt::bits(mx), std::uint64_t(p.x), std::uint64_t(p.y),
                                std::uint64_t(q.x), std::uint64_t(q.y)});
         return st;
       }},
      NORM1(vnxiNorm_Inf_32f_C1MR),     NORM1(vnxiNorm_L1_32f_C1MR),      NORM1(vnxiNorm_L2_32f_C1MR),
      NORM2(vnxiNormDiff_Inf_32f_C1MR), NORM2(vnxiNormDiff_L1_32f_C1MR),  NORM2(vnxiNormDiff_L2_32f_C1MR),
      NORM2(vnxiNormRel_Inf_32f_C1MR),  NORM2(vnxiNormRel_L1_32f_C1MR),   NORM2(vnxiNormRel_L2_32f_C1MR),
      norm2C3("vnxiNormDiff_L2_32f_C3CMR", vnxiNormDiff_L2_32f_C3CMR),
  };
  return m;
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
        std::vector<std::uint64_t> got;
        const vnxStatus s = m.call(a.ptr(), b.ptr(), a.step(), mask.ptr(), mask.step(), r, got);
        EXPECT_GE(s, 0) << m.name;
        if (first.empty()) {
          first = got, firstStatus = s;
          for (std::uint64_t v : got) {
            const bool nan32 = (v >> 32) == 0 && (v & 0x7F800000u) == 0x7F800000u && (v & 0x7FFFFFu);
            const bool nan64 = (v & 0x7FF0000000000000ull) == 0x7FF0000000000000ull && (v & 0xFFFFFFFFFFFFFull);
            EXPECT_TRUE(!nan32 || v == kNaN32) << m.name << " plant " << int(plant) << ": " << std::hex << v;
            EXPECT_TRUE(!nan64 || v == kNaN64) << m.name << " plant " << int(plant) << ": " << std::hex << v;
          }
        }
        EXPECT_EQ(s, firstStatus) << m.name << " threads " << n;
        EXPECT_EQ(got, first) << m.name << " plant " << int(plant) << " threads " << n;
      }
      // sums over a NaN (or over both infinities) are NaN; maxima skip NaN samples
      if (plant == Plant::NaNs && std::string(m.name).find("_L2_32f_C1MR") != std::string::npos) {
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
