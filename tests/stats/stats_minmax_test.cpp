// Extrema with locations against a raster scan written from the contract: the
// first selected sample strictly below (above) the running value, starting from
// the type's greatest (least) value, in raster order.
#include "stats_support.h"

namespace {

using st::Member;
using st::Ty;

struct Result {
  float mn, mx;
  vnxiPoint pmn, pmx;
};

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      ST_MEMBER(vnxiMinMaxIndx_8u_C1R),   ST_MEMBER(vnxiMinMaxIndx_8u_C3CR),   ST_MEMBER(vnxiMinMaxIndx_8u_C1MR),
      ST_MEMBER(vnxiMinMaxIndx_8u_C3CMR), ST_MEMBER(vnxiMinMaxIndx_8s_C1R),    ST_MEMBER(vnxiMinMaxIndx_8s_C3CR),
      ST_MEMBER(vnxiMinMaxIndx_8s_C1MR),  ST_MEMBER(vnxiMinMaxIndx_8s_C3CMR),  ST_MEMBER(vnxiMinMaxIndx_16u_C1R),
      ST_MEMBER(vnxiMinMaxIndx_16u_C3CR), ST_MEMBER(vnxiMinMaxIndx_16u_C1MR),  ST_MEMBER(vnxiMinMaxIndx_16u_C3CMR),
      ST_MEMBER(vnxiMinMaxIndx_32f_C1R),  ST_MEMBER(vnxiMinMaxIndx_32f_C3CR),  ST_MEMBER(vnxiMinMaxIndx_32f_C1MR),
      ST_MEMBER(vnxiMinMaxIndx_32f_C3CMR),
  };
  return m;
}

st::Call callOn(const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi) {
  st::Call c;
  c.src1 = img.ptr, c.step1 = img.step, c.roi = r, c.coi = coi;
  if (mask) c.mask = mask->ptr(), c.maskStep = mask->step();
  return c;
}
Result resultOf(const st::Call& c) { return {c.f[0], c.f[1], c.p[0], c.p[1]}; }

double top(Ty t) { return t == Ty::U8 ? 255 : t == Ty::S8 ? 127 : t == Ty::U16 ? 65535 : 3.4028234663852886e38; }
double bottom(Ty t) { return t == Ty::U8 || t == Ty::U16 ? 0 : t == Ty::S8 ? -128 : -3.4028234663852886e38; }

Result reference(const Member& m, const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi) {
  double mn = top(m.ty), mx = bottom(m.ty);
  vnxiPoint pmn{0, 0}, pmx{0, 0};
  bool any = false;
  for (int y = 0; y < r.height; ++y)
    for (int x = 0; x < r.width; ++x)
      if (!mask || mask->on(x, y)) {
        any = true;
        const double v = img.at(x, y, m.channels == 3 ? coi - 1 : 0);
        if (v < mn) mn = v, pmn = {x, y};
        if (v > mx) mx = v, pmx = {x, y};
      }
  if (!any) return {0, 0, {0, 0}, {0, 0}};
  return {float(mn), float(mx), pmn, pmx};
}

void expectMatches(const Member& m, const st::AnyImage& img, const st::Mask* mask, vnxiSize r, int coi,
                   const std::string& what) {
  st::Call c = callOn(img, mask, r, coi);
  ASSERT_EQ(m.call(c), vnxStatusOk) << what;
  const Result got = resultOf(c);
  const Result e = reference(m, img, mask, r, coi);
  EXPECT_EQ(vt::bits(got.mn), vt::bits(e.mn)) << what;
  EXPECT_EQ(vt::bits(got.mx), vt::bits(e.mx)) << what;
  EXPECT_TRUE(got.pmn.x == e.pmn.x && got.pmn.y == e.pmn.y)
      << what << " min at " << got.pmn.x << "," << got.pmn.y << " expected " << e.pmn.x << "," << e.pmn.y;
  EXPECT_TRUE(got.pmx.x == e.pmx.x && got.pmx.y == e.pmx.y)
      << what << " max at " << got.pmx.x << "," << got.pmx.y << " expected " << e.pmx.x << "," << e.pmx.y;
}

// Random images, and images of few values so that extremes repeat in many rows and bands.
TEST(MinMaxIndx, EveryMemberFindsFirstOccurrences) {
  std::mt19937 rng(21);
  std::vector<vnxiSize> sizes = st::awkwardSizes();
  sizes.push_back({128, 127});  // 16256 pixels: serial
  sizes.push_back({128, 128});  // bands
  sizes.push_back({7, 5000});
  for (int n : {1, 2, 3, 40}) {
    vt::Threads threads(n);
    for (const Member& m : members())
      for (vnxiSize r : sizes)
        for (bool fewValues : {false, true}) {
          st::AnyImage img = st::randomImage(m.ty, r.width, r.height, m.channels, rng);
          if (fewValues) {
            std::uniform_int_distribution<int> d(0, 3);
            const double lo = m.ty == Ty::S8 ? -128 : m.ty == Ty::F32 ? -2.5 : 0;
            const double stride = m.ty == Ty::U16 ? 21845 : m.ty == Ty::F32 ? 1 : 85;
            img = st::imageOf(m.ty, r.width, r.height, m.channels, vt::Guard::Before,
                              [&](int, int, int) { return lo + stride * d(rng); });
          }
          for (st::MaskKind mk : {st::MaskKind::Empty, st::MaskKind::Full, st::MaskKind::Random}) {
            if (!m.masked && mk != st::MaskKind::Full) continue;
            const st::Mask mask = st::makeMask(mk, r.width, r.height, rng);
            for (int coi = 1; coi <= m.channels; ++coi)
              expectMatches(m, img, m.masked ? &mask : nullptr, r, coi,
                            std::string(m.name) + " " + std::to_string(r.width) + "x" + std::to_string(r.height) +
                                " threads " + std::to_string(n) + " mask " + std::to_string(int(mk)));
          }
        }
  }
}

TEST(MinMaxIndx, ContractExamples) {
  // minimum at (5, 2) and at (1, 3): the earlier row wins
  vt::Image<vnx8u> img(8, 5);
  img.fill([](int x, int y, int) { return (x == 5 && y == 2) || (x == 1 && y == 3) ? 1 : 9; });
  img.at(6, 4) = 20;
  img.at(2, 4) = 20;
  Result r{};
  ASSERT_EQ(vnxiMinMaxIndx_8u_C1R(img.ptr(), img.step(), img.size(), &r.mn, &r.mx, &r.pmn, &r.pmx), vnxStatusOk);
  EXPECT_EQ(r.mn, 1.0f);
  EXPECT_EQ(r.pmn.x, 5);
  EXPECT_EQ(r.pmn.y, 2);
  EXPECT_EQ(r.mx, 20.0f);
  EXPECT_EQ(r.pmx.x, 2);
  EXPECT_EQ(r.pmx.y, 4);
  // a constant image: both at (0, 0)
  img.fill([](int, int, int) { return 255; });
  ASSERT_EQ(vnxiMinMaxIndx_8u_C1R(img.ptr(), img.step(), img.size(), &r.mn, &r.mx, &r.pmn, &r.pmx), vnxStatusOk);
  EXPECT_TRUE(r.mn == 255 && r.mx == 255 && r.pmn.x == 0 && r.pmn.y == 0 && r.pmx.x == 0 && r.pmx.y == 0);
}

// The four result pointers are not checked: a null one is not written and the
// others get what a call with all four gets.
TEST(MinMaxIndx, NullResultPointersAreNotWanted) {
  std::mt19937 rng(23);
  for (const Member& m : members()) {
    const st::AnyImage img = st::randomImage(m.ty, 33, 7, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Random, 33, 7, rng);
    st::Call all = callOn(img, m.masked ? &mask : nullptr, {33, 7}, 2);
    ASSERT_EQ(m.call(all), vnxStatusOk);
    for (unsigned wanted = 0; wanted < 15; ++wanted) {
      st::Call c = callOn(img, m.masked ? &mask : nullptr, {33, 7}, 2);
      c.wanted = wanted;
      EXPECT_EQ(m.call(c), vnxStatusOk) << m.name;
      for (int k = 0; k < 2; ++k) {
        EXPECT_EQ(c.f[k], wanted >> k & 1 ? all.f[k] : -7) << m.name << " " << wanted;
        const vnxiPoint e = wanted >> (k + 2) & 1 ? all.p[k] : vnxiPoint{-7, -7};
        EXPECT_TRUE(c.p[k].x == e.x && c.p[k].y == e.y) << m.name << " " << wanted;
      }
    }
  }
}

TEST(MinMaxIndx, StatusesInOrderForEveryMember) {
  std::mt19937 rng(22);
  for (const Member& m : members()) {
    const st::AnyImage img = st::randomImage(m.ty, 5, 3, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Full, 5, 3, rng);
    st::expectStatuses(m, callOn(img, m.masked ? &mask : nullptr, {5, 3}, 1), st::statStatusCases(m));
  }
}

}  // namespace
