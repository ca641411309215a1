// Extrema with locations against a raster scan written from the contract: the
// first selected sample strictly below (above) the running value, starting from
// the type's greatest (least) value, in raster order.
#include "stats_support.h"

namespace {

using st::Ty;

struct Result {
  float mn, mx;
  vnxiPoint pmn, pmx;
};
struct Member {
  const char* name;
  Ty ty;
  int channels;
  bool masked;
  std::function<vnxStatus(const void*, int, const vnx8u*, int, vnxiSize, int, Result*)> call;
  // the same with the results each passed only where want[i] is set (else null)
  std::function<vnxStatus(const void*, int, const vnx8u*, int, vnxiSize, int, Result*, const bool*)> some;
};

// Results passed through a mask of wanted pointers: o's fields, or null.
inline vnx32f* want(const bool* w, int i, vnx32f* p) { return w[i] ? p : nullptr; }
inline vnxiPoint* want(const bool* w, int i, vnxiPoint* p) { return w[i] ? p : nullptr; }
#define VT_RESULTS want(w, 0, &o->mn), want(w, 1, &o->mx), want(w, 2, &o->pmn), want(w, 3, &o->pmx)

template <class T>
Member adapt(const char* n, vnxStatus (*f)(const T*, int, vnxiSize, vnx32f*, vnx32f*, vnxiPoint*, vnxiPoint*)) {
  auto some = [f](const void* s, int ss, const vnx8u*, int, vnxiSize r, int, Result* o, const bool* w) {
    return f(static_cast<const T*>(s), ss, r, VT_RESULTS);
  };
  return {n, st::tyOf<T>(), 1, false, nullptr, some};
}
template <class T>
Member adapt(const char* n, vnxStatus (*f)(const T*, int, vnxiSize, int, vnx32f*, vnx32f*, vnxiPoint*, vnxiPoint*)) {
  auto some = [f](const void* s, int ss, const vnx8u*, int, vnxiSize r, int c, Result* o, const bool* w) {
    return f(static_cast<const T*>(s), ss, r, c, VT_RESULTS);
  };
  return {n, st::tyOf<T>(), 3, false, nullptr, some};
}
template <class T>
Member adapt(const char* n,
             vnxStatus (*f)(const T*, int, const vnx8u*, int, vnxiSize, vnx32f*, vnx32f*, vnxiPoint*, vnxiPoint*)) {
  auto some = [f](const void* s, int ss, const vnx8u* m, int ms, vnxiSize r, int, Result* o, const bool* w) {
    return f(static_cast<const T*>(s), ss, m, ms, r, VT_RESULTS);
  };
  return {n, st::tyOf<T>(), 1, true, nullptr, some};
}
template <class T>
Member adapt(const char* n, vnxStatus (*f)(const T*, int, const vnx8u*, int, vnxiSize, int, vnx32f*, vnx32f*,
                                           vnxiPoint*, vnxiPoint*)) {
  auto some = [f](const void* s, int ss, const vnx8u* m, int ms, vnxiSize r, int c, Result* o, const bool* w) {
    return f(static_cast<const T*>(s), ss, m, ms, r, c, VT_RESULTS);
  };
  return {n, st::tyOf<T>(), 3, true, nullptr, some};
}
#undef VT_RESULTS
// Every result wanted.
Member withAll(Member m) {
  auto some = m.some;
  m.call = [some](const void* s, int ss, const vnx8u* k, int ks, vnxiSize r, int c, Result* o) {
    static const bool all[4] = {true, true, true, true};
    return some(s, ss, k, ks, r, c, o, all);
  };
  return m;
}
#define MEMBER(fn) withAll(adapt(#fn, fn))

const std::vector<Member>& members() {
  static const std::vector<Member> m = {
      MEMBER(vnxiMinMaxIndx_8u_C1R),    MEMBER(vnxiMinMaxIndx_8u_C3CR),  MEMBER(vnxiMinMaxIndx_8u_C1MR),
      MEMBER(vnxiMinMaxIndx_8u_C3CMR),  MEMBER(vnxiMinMaxIndx_8s_C1R),   MEMBER(vnxiMinMaxIndx_8s_C3CR),
      MEMBER(vnxiMinMaxIndx_8s_C1MR),   MEMBER(vnxiMinMaxIndx_8s_C3CMR), MEMBER(vnxiMinMaxIndx_16u_C1R),
      MEMBER(vnxiMinMaxIndx_16u_C3CR),  MEMBER(vnxiMinMaxIndx_16u_C1MR), MEMBER(vnxiMinMaxIndx_16u_C3CMR),
      MEMBER(vnxiMinMaxIndx_32f_C1R),   MEMBER(vnxiMinMaxIndx_32f_C3CR), MEMBER(vnxiMinMaxIndx_32f_C1MR),
      MEMBER(vnxiMinMaxIndx_32f_C3CMR),
  };
  return m;
}

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
  Result got{-1, -1, {-1, -1}, {-1, -1}};
  ASSERT_EQ(m.call(img.ptr, img.step, mask ? mask->ptr() : nullptr, mask ? mask->step() : 0, r, coi, &got), vnxStatusOk)
      << what;
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
            switch (m.ty) {
              case Ty::U8:
                img = st::makeImage<vnx8u>(r.width, r.height, m.channels, vt::Guard::Before,
                                           [&](int, int, int) { return vnx8u(lo + 85 * d(rng)); });
                break;
              case Ty::S8:
                img = st::makeImage<vnx8s>(r.width, r.height, m.channels, vt::Guard::Before,
                                           [&](int, int, int) { return vnx8s(lo + 85 * d(rng)); });
                break;
              case Ty::U16:
                img = st::makeImage<vnx16u>(r.width, r.height, m.channels, vt::Guard::Before,
                                            [&](int, int, int) { return vnx16u(lo + 21845 * d(rng)); });
                break;
              case Ty::F32:
                img = st::makeImage<vnx32f>(r.width, r.height, m.channels, vt::Guard::Before,
                                            [&](int, int, int) { return vnx32f(lo + d(rng)); });
                break;
            }
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
    Result all{};
    ASSERT_EQ(m.call(img.ptr, img.step, mask.ptr(), mask.step(), {33, 7}, 2, &all), vnxStatusOk);
    for (int bitsWanted = 0; bitsWanted < 15; ++bitsWanted) {
      const bool w[4] = {bool(bitsWanted & 1), bool(bitsWanted & 2), bool(bitsWanted & 4), bool(bitsWanted & 8)};
      Result r{-3, -3, {-3, -3}, {-3, -3}};
      EXPECT_EQ(m.some(img.ptr, img.step, mask.ptr(), mask.step(), {33, 7}, 2, &r, w), vnxStatusOk) << m.name;
      EXPECT_EQ(r.mn, w[0] ? all.mn : -3) << m.name << " " << bitsWanted;
      EXPECT_EQ(r.mx, w[1] ? all.mx : -3) << m.name << " " << bitsWanted;
      EXPECT_EQ(r.pmn.x + 100 * r.pmn.y, w[2] ? all.pmn.x + 100 * all.pmn.y : -303) << m.name << " " << bitsWanted;
      EXPECT_EQ(r.pmx.x + 100 * r.pmx.y, w[3] ? all.pmx.x + 100 * all.pmx.y : -303) << m.name << " " << bitsWanted;
    }
  }
}

TEST(MinMaxIndx, StatusesInOrderForEveryMember) {
  std::mt19937 rng(22);
  for (const Member& m : members()) {
    const int eb = m.ty == Ty::U8 || m.ty == Ty::S8 ? 1 : m.ty == Ty::U16 ? 2 : 4, w = 5;
    const int rowBytes = w * m.channels * eb;
    const st::AnyImage img = st::randomImage(m.ty, w, 3, m.channels, rng);
    const st::Mask mask = st::makeMask(st::MaskKind::Full, w, 3, rng);
    const vnx8u* mp = mask.ptr();
    const bool c3 = m.channels == 3;
    struct Case {
      const char* what;
      const void* src;
      int step;
      const vnx8u* mask;
      int maskStep;
      vnxiSize r;
      int coi;
      vnxStatus expected;
    };
    std::vector<Case> cases = {
        {"null source, zero width", nullptr, rowBytes, mp, w, {0, 3}, 1, vnxStatusNullPtr},
        {"zero height", img.ptr, rowBytes, mp, w, {w, 0}, 1, vnxStatusBadSize},
        {"short step", img.ptr, rowBytes - eb, mp, w, {w, 3}, 0, vnxStatusBadStep},
        {"misaligned step",
         img.ptr,
         rowBytes + 1,
         mp,
         w,
         {w, 3},
         0,
         eb > 1 ? vnxStatusStepNotMultiple
         : c3   ? vnxStatusBadCoi
                : vnxStatusOk},
        {"coi 4", img.ptr, rowBytes, mp, w, {w, 3}, 4, c3 ? vnxStatusBadCoi : vnxStatusOk},
    };
    if (m.masked) {
      cases.push_back({"null mask", img.ptr, rowBytes, nullptr, w, {w, 3}, 1, vnxStatusNullPtr});
      cases.push_back({"short mask step, misaligned", img.ptr, rowBytes + 1, mp, w - 1, {w, 3}, 1, vnxStatusBadStep});
    }
    for (const Case& c : cases) {
      Result r{-3, -3, {-3, -3}, {-3, -3}};
      const vnxStatus s = m.call(c.src, c.step, c.mask, c.maskStep, c.r, c.coi, &r);
      EXPECT_EQ(s, c.expected) << m.name << ": " << c.what;
      if (s < 0) {
        EXPECT_TRUE(r.mn == -3 && r.mx == -3 && r.pmn.x == -3 && r.pmx.y == -3) << m.name << ": " << c.what;
      }
    }
  }
}

}  // namespace
