// Haar stages against a stage evaluator written here from the input arrays (its
// own storage order and corner sums), on guard-page tables; constructor, size,
// tilting and apply statuses.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>

#include "alloc.h"
#include "support.h"

namespace {

using vt::Image;

// A small cascade stage given as the constructors take it: a three-rectangle
// feature first, two two-rectangle ones, then a one- and a four-rectangle one.
struct Stage {
  std::vector<vnxiRect> rects = {{0, 0, 6, 2}, {0, 2, 6, 2}, {0, 4, 6, 2},  // 3
                                 {1, 1, 4, 4}, {2, 2, 2, 2},                // 2
                                 {0, 0, 3, 6}, {3, 0, 3, 6},                // 2
                                 {1, 3, 5, 2},                              // 1
                                 {0, 0, 2, 2}, {2, 0, 2, 2}, {0, 2, 2, 2}, {2, 2, 2, 3}};  // 4
  std::vector<int> num = {3, 2, 2, 1, 4};
  std::vector<float> weight = {-1.0f, 2.5f, -1.0f, -1.0f, 4.0f, -1.0f, 1.0f, 0.75f, -1.0f, 1.0f, 1.0f, -1.0f};
  std::vector<float> threshold = {0.3f, -0.7f, 0.1f, 3.0f, 0.05f};
  std::vector<float> val1 = {-0.6f, 0.25f, -0.4f, 0.3f, -0.2f};
  std::vector<float> val2 = {0.9f, -0.5f, 0.7f, -0.8f, 0.45f};
  template <class W>
  std::vector<W> as(const std::vector<float>& v, float scale) const {
    std::vector<W> out;
    for (float f : v) out.push_back(static_cast<W>(f * scale));
    return out;
  }
};

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }

// The stage sum of the reference: two-rectangle features, then three, then the rest.
template <class T, class W>
W refStage(const Stage& s, const std::vector<W>& wt, const std::vector<W>& th, const std::vector<W>& v1,
           const std::vector<W>& v2, const Image<T>& I, int x0, int y0, W norm) {
  std::vector<int> first(s.num.size()), order;
  std::partial_sum(s.num.begin(), s.num.end() - 1, first.begin() + 1);
  for (int pass = 0; pass < 3; ++pass)
    for (int i = 0; i < int(s.num.size()); ++i)
      if ((s.num[i] == 2) == (pass == 0) && (s.num[i] == 3) == (pass == 1)) order.push_back(i);
  W stage = 0;
  for (int i : order) {
    W f = 0;
    std::uint32_t fi = 0;
    for (int k = 0; k < s.num[i]; ++k) {
      const vnxiRect r = s.rects[first[i] + k];
      auto v = [&](int dx, int dy) { return I.at(x0 + r.x + dx, y0 + r.y + dy); };
      if constexpr (std::is_same<T, float>::value) {
        f += ((v(r.width, r.height) - v(0, r.height)) + (v(0, 0) - v(r.width, 0))) * wt[first[i] + k];
      } else {
        const int rs = int((U(v(r.width, r.height)) - U(v(0, r.height))) + (U(v(0, 0)) - U(v(r.width, 0))));
        if constexpr (std::is_same<W, float>::value) f += float(rs) * wt[first[i] + k];
        else fi += U(rs) * U(wt[first[i] + k]);
      }
    }
    if constexpr (std::is_same<W, int>::value)
      stage = int(U(stage) + U(int(fi) < int(U(th[i]) * U(norm)) ? v1[i] : v2[i]));
    else
      stage += (f >= th[i] * norm) ? v2[i] : v1[i];
  }
  return stage;
}

// Every member against the reference on tables whose last entry sits before a
// guard page, for every thread count (only the 32f member runs in bands), with a
// random mask and an all-zero one. apply takes the arguments of the plain members.
template <class T, class W, class Apply>
void checkApply(float scale, W stageThreshold, Apply apply) {
  Stage s;
  const auto wt = s.as<W>(s.weight, 1), th = s.as<W>(s.threshold, scale), v1 = s.as<W>(s.val1, scale),
             v2 = s.as<W>(s.val2, scale);
  using State = typename std::conditional<std::is_same<W, float>::value, vnxiHaarClassifier_32f,
                                          vnxiHaarClassifier_32s>::type;
  State* st = nullptr;
  if constexpr (std::is_same<W, float>::value)
    ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32f(&st, s.rects.data(), wt.data(), th.data(), v1.data(),
                                                           v2.data(), s.num.data(), int(s.num.size())));
  else
    ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32s(&st, s.rects.data(), wt.data(), th.data(), v1.data(),
                                                           v2.data(), s.num.data(), int(s.num.size())));
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{17, 5}, vnxiSize{120, 90}})
    for (bool allZeroMask : {false, true}) {
      Image<T> I(roi.width + 6, roi.height + 6, 1, 4);  // the ROI plus the 6 x 6 window
      std::mt19937 rng(roi.width);
      I.fill([&](int x, int y, int) { return T(int(rng() % 200) * (x + y) / 4) + T(x * y); });
      Image<W> norm(roi.width, roi.height, 1, 4);
      norm.fill([&](int, int, int) { return W(1 + rng() % 30); });
      Image<vnx8u> mask(roi.width, roi.height, 1, 3), expect(roi.width, roi.height);
      mask.fill([&](int, int, int) { return allZeroMask ? 0 : (rng() % 4 ? 255 : 0); });
      const std::vector<vnx8u> before = mask.pixels();
      int positive = 0;
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
          const bool in = mask.at(x, y) && refStage(s, wt, th, v1, v2, I, x, y, norm.at(x, y)) >= stageThreshold;
          expect.at(x, y) = in ? mask.at(x, y) : 0;
          positive += in;
        }
      for (int n : vt::threadCounts()) {
        vt::Threads threads(n);
        mask.fill([&](int x, int y, int) { return before[std::size_t(y) * roi.width + x]; });
        int got = -1;
        ASSERT_EQ(vnxStatusOk, apply(I.ptr(), I.step(), norm.ptr(), norm.step(), mask.ptr(), mask.step(), roi, &got,
                                     stageThreshold, st));
        EXPECT_EQ(positive, got) << n << " threads";
        VT_EXPECT_SAME_SAMPLES(expect.pixels(), mask.pixels());
        EXPECT_TRUE(mask.canaryIntact());
      }
    }
  if constexpr (std::is_same<W, float>::value) vnxiHaarClassifierFree_32f(st); else vnxiHaarClassifierFree_32s(st);
}

TEST(Haar, EveryMemberMatchesTheStageDefinitionInStorageOrder) {
  // The mixed members, given only upright features, read pSrc alone.
  auto mixed = [](auto fn) { return [fn](auto* s, int ss, auto... a) { return fn(s, ss, s, ss, a...); }; };
  checkApply<float, float>(1.0f, 0.2f, vnxiApplyHaarClassifier_32f_C1R);
  checkApply<float, float>(1.0f, 0.2f, mixed(vnxiApplyMixedHaarClassifier_32f_C1R));
  checkApply<int, float>(1.0f, -0.1f, vnxiApplyHaarClassifier_32s32f_C1R);
  checkApply<int, float>(1.0f, 0.2f, mixed(vnxiApplyMixedHaarClassifier_32s32f_C1R));
  for (int sf : {0, 5, -3}) {  // accepted and unused
    checkApply<int, int>(100.0f, 20, [sf](auto... a) { return vnxiApplyHaarClassifier_32s_C1RSfs(a..., sf); });
    checkApply<int, int>(100.0f, 20, mixed([sf](auto... a) { return vnxiApplyMixedHaarClassifier_32s_C1RSfs(a..., sf); }));
  }
}

// Mixed members: a tilted feature reads the tilted table from its row 1, column 1.
TEST(Haar, MixedMembersReadTiltedFeaturesFromTheTiltedTable) {
  const vnxiRect r[2] = {{1, 0, 2, 1}, {0, 0, 3, 3}};
  const int num[2] = {1, 1};
  const float w[2] = {1.0f, 0.0f}, th[2] = {0.0f, 0.0f}, v1[2] = {0, 0}, v2[2] = {1, 0};
  vnxiHaarClassifier_32f* st = nullptr;
  ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32f(&st, r, w, th, v1, v2, num, 2));
  const vnx8u tiltMask[2] = {1, 0};
  ASSERT_EQ(vnxStatusOk, vnxiTiltHaarFeatures_32f(tiltMask, 1, st));
  EXPECT_EQ(vnxStatusBadArg, vnxiTiltHaarFeatures_32f(tiltMask, 1, st));  // once only
  // Tilted corners from (1, 0, 2, 1): c0 = (2, 3), c1 = (0, 1), c2 = (3, 2), c3 = (1, 0),
  // read one row and one column in from pTilt; the upright table holds zeros.
  float tilt[6][6] = {}, up[6][6] = {}, norm = 1.0f;
  tilt[1 + 1][1 + 0] = 1.0f;   // c1
  tilt[1 + 2][1 + 3] = 1.0f;   // c2
  tilt[1 + 0][1 + 1] = -2.0f;  // c3; with c0 = 5 the sum is 1 >= 0 x norm (val2 = 1), with 3 it is -1
  for (float c0 : {5.0f, 3.0f}) {
    tilt[1 + 3][1 + 2] = c0;
    vnx8u mask = 1;
    int positive = -1;
    ASSERT_EQ(vnxStatusOk, vnxiApplyMixedHaarClassifier_32f_C1R(&up[0][0], 24, &tilt[0][0], 24, &norm, 4, &mask, 1,
                                                                {1, 1}, &positive, 1.0f, st));
    EXPECT_TRUE(positive == (c0 > 4) && mask == (c0 > 4)) << c0;
  }
  vnxiHaarClassifierFree_32f(st);
}

int gAllocations = 0;
void* countingAlloc(std::size_t n) { ++gAllocations; return std::malloc(n); }

TEST(Haar, ConstructorRefusesBadFeaturesInItsFixedOrder) {
  Stage s;
  auto* sentinel = reinterpret_cast<vnxiHaarClassifier_32f*>(&s);
  vnxiHaarClassifier_32f* st = sentinel;
  auto init = [&](const vnxiRect* r, const float* w, const int* num, int len) {
    return vnxiHaarClassifierInitAlloc_32f(&st, r, w, s.threshold.data(), s.val1.data(), s.val2.data(), num, len);
  };
  std::vector<int> num = s.num;
  num[3] = 0;
  std::vector<vnxiRect> rects = s.rects;
  rects[7].width = 0;
  ownSetHeap(countingAlloc, std::free);
  gAllocations = 0;
  EXPECT_EQ(vnxStatusBadSize, init(s.rects.data(), s.weight.data(), num.data(), 5));     // before allocating
  EXPECT_EQ(vnxStatusBadSize, init(s.rects.data(), s.weight.data(), s.num.data(), -1));
  EXPECT_EQ(vnxStatusNullPtr, init(s.rects.data(), nullptr, num.data(), -1));
  EXPECT_TRUE(gAllocations == 0 && st == sentinel);
  ownSetHeap(nullptr, nullptr);
  EXPECT_EQ(vnxStatusBadArg, init(rects.data(), s.weight.data(), s.num.data(), 5));
  EXPECT_EQ(nullptr, st);
  const vnxiRect t[1] = {{1, 0, 2, 3}};  // tilted: also x + 1 < height
  const int one[1] = {1};
  st = sentinel;
  EXPECT_EQ(vnxStatusBadArg, vnxiTiltedHaarClassifierInitAlloc_32f(&st, t, s.weight.data(), s.weight.data(), s.weight.data(), s.weight.data(), one, 1));
  EXPECT_EQ(nullptr, st);
  EXPECT_EQ(vnxStatusNullPtr, vnxiHaarClassifierFree_32f(nullptr));
}

TEST(Haar, WindowSizeIsTheFarthestCorner) {
  // Width: the largest x + w; height: the largest y + h, whatever the first rectangle.
  const vnxiRect r[5] = {{3, 4, 2, 2}, {1, 1, 1, 1}, {2, 2, 5, 1}, {0, 6, 1, 1}, {4, 0, 1, 3}};
  const int num[3] = {1, 2, 2};
  const float w[5] = {-1, -1, 1, -1, 1}, z[3] = {0, 0, 0};
  vnxiHaarClassifier_32f* st = nullptr;
  vnxiSize size{-1, -1};
  ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32f(&st, r, w, z, z, z, num, 3));
  ASSERT_EQ(vnxStatusOk, vnxiGetHaarClassifierSize_32f(st, &size));
  EXPECT_TRUE(size.width == 7 && size.height == 7) << size.width << "x" << size.height;
  vnxiHaarClassifierFree_32f(st);
}

TEST(Haar, ApplyStatusesComeInTheirFixedOrder) {
  Stage s;
  vnxiHaarClassifier_32f* st = nullptr;
  ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32f(&st, s.rects.data(), s.weight.data(), s.threshold.data(),
                                                         s.val1.data(), s.val2.data(), s.num.data(), 5));
  std::vector<float> I(400, 0.0f), n(400, 1.0f);
  std::vector<vnx8u> m(400, 7);
  const struct { const char* what; bool nullTilt; vnxiSize roi; int src, tilt, norm, mask; vnxStatus expect; } cases[] = {
      {"ok", false, {4, 2}, 40, 40, 16, 4, vnxStatusOk},
      {"null tilt before size", true, {0, 2}, 40, 40, 16, 4, vnxStatusNullPtr},
      {"zero width", false, {0, 2}, 1, 40, 16, 4, vnxStatusBadSize},
      {"norm step short", false, {4, 2}, 40, 40, 15, 4, vnxStatusBadStep},
      {"tilt step short", false, {4, 2}, 40, 12, 16, 4, vnxStatusBadStep},
      {"mask step short after a multiple fault", false, {4, 2}, 42, 40, 16, 3, vnxStatusBadStep},
      {"source step not a multiple", false, {4, 2}, 42, 40, 16, 4, vnxStatusStepNotMultiple},
      {"tilt step not a multiple", false, {4, 2}, 40, 41, 16, 4, vnxStatusStepNotMultiple},
  };
  for (const auto& c : cases) {
    std::vector<vnx8u> mm = m;
    int pos = -5;
    const vnxStatus r = vnxiApplyMixedHaarClassifier_32f_C1R(I.data(), c.src, c.nullTilt ? nullptr : I.data(), c.tilt,
                                                             n.data(), c.norm, mm.data(), c.mask, c.roi, &pos, 0.0f, st);
    EXPECT_EQ(c.expect, r) << c.what;
    if (r) { EXPECT_TRUE(m == mm && pos == -5) << c.what; }
  }
  int pos = -5;
  EXPECT_EQ(vnxStatusNullPtr, vnxiApplyHaarClassifier_32f_C1R(I.data(), 40, n.data(), 16, m.data(), 4, {4, 2}, &pos,
                                                              0.0f, nullptr));
  vnxiHaarClassifierFree_32f(st);
}

}  // namespace
