// Haar stages against a stage evaluator written here from the input arrays (its
// own storage order and corner sums), on guard-page tables; constructor, size,
// tilting and apply statuses.
#include <cstdint>
#include <cstdlib>
#include <numeric>

#include "alloc.h"
#include "support.h"

namespace {

using vt::Image;

// A small cascade stage given as the constructors take it: a three-rectangle
// feature first, two two-rectangle ones, then a one- and a four-rectangle one.
struct Stage {
  std::vector<vnxiRect> rects = {{0, 0, 6, 2}, {0, 2, 6, 2}, {0, 4, 6, 2}, {1, 1, 4, 4}, {2, 2, 2, 2}, {0, 0, 3, 6},
                                 {3, 0, 3, 6}, {1, 3, 5, 2}, {0, 0, 2, 2}, {2, 0, 2, 2}, {0, 2, 2, 2}, {2, 2, 2, 3}};
  std::vector<int> num = {3, 2, 2, 1, 4};
  std::vector<float> weight = {-1.0f, 2.5f, -1.0f, -1.0f, 4.0f, -1.0f, 1.0f, 0.75f, -1.0f, 1.0f, 1.0f, -1.0f};
  std::vector<float> threshold = {0.3f, -0.7f, 0.1f, 3.0f, 0.05f};
  std::vector<float> val1 = {-0.6f, 0.25f, -0.4f, 0.3f, -0.2f};
  std::vector<float> val2 = {0.9f, -0.5f, 0.7f, -0.8f, 0.45f};
};

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }

// The stage sum of the reference: two-rectangle features, then three, then the rest.
// Feature `tilted` (or none: -1) was tilted at its top-left corner and reads table
// Tt one row and one column in.
template <class T, class W>
W refStage(const Stage& s, const std::vector<W>* v, const Image<T>& I, const Image<T>& Tt, int tilted, int x0, int y0, W norm) {
  const std::vector<W>&wt = v[0], &th = v[1], &v1 = v[2], &v2 = v[3];
  std::vector<int> first(s.num.size()), order;
  std::partial_sum(s.num.begin(), s.num.end() - 1, first.begin() + 1);
  for (int pass = 0; pass < 3; ++pass)
    for (int i = 0; i < int(s.num.size()); ++i)
      if ((s.num[i] == 2) == (pass == 0) && (s.num[i] == 3) == (pass == 1)) order.push_back(i);
  W stage = 0;
  for (int i : order) {
    W f = 0;
    const bool t = i == tilted;
    for (int k = first[i]; k < first[i] + s.num[i]; ++k) {
      const int x = s.rects[k].x, y = s.rects[k].y, w = s.rects[k].width, h = s.rects[k].height;
      const int cx[4] = {t ? x + w - h : x + w, t ? x - h : x, x + w, x}, cy[4] = {t ? y + w + h : y + h, y + h, t ? y + w : y, y};
      T c[4];  // the rectangle sum is (c0 - c1) + (c3 - c2)
      for (int j = 0; j < 4; ++j) c[j] = (t ? Tt : I).at(x0 + t + cx[j], y0 + t + cy[j]);
      if constexpr (std::is_same<T, float>::value)
        f += ((c[0] - c[1]) + (c[3] - c[2])) * wt[k];
      else if constexpr (std::is_same<W, float>::value)
        f += float(int((U(c[0]) - U(c[1])) + (U(c[3]) - U(c[2])))) * wt[k];
      else
        f = int(U(f) + (U(c[0]) - U(c[1]) + U(c[3]) - U(c[2])) * U(wt[k]));
    }
    if constexpr (std::is_same<W, int>::value)
      stage = int(U(stage) + U(f < int(U(th[i]) * U(norm)) ? v1[i] : v2[i]));
    else
      stage += (f >= th[i] * norm) ? v2[i] : v1[i];
  }
  return stage;
}

vnxStatus init(vnxiHaarClassifier_32f** st, const Stage& s, const std::vector<float>* v) {
  return vnxiHaarClassifierInitAlloc_32f(st, s.rects.data(), v[0].data(), v[1].data(), v[2].data(), v[3].data(), s.num.data(), int(s.num.size()));
}
vnxStatus init(vnxiHaarClassifier_32s** st, const Stage& s, const std::vector<int>* v) {
  return vnxiHaarClassifierInitAlloc_32s(st, s.rects.data(), v[0].data(), v[1].data(), v[2].data(), v[3].data(), s.num.data(), int(s.num.size()));
}
vnxStatus tilt(const vnx8u* m, vnxiHaarClassifier_32f* st) { return vnxiTiltHaarFeatures_32f(m, 1, st); }
vnxStatus tilt(const vnx8u* m, vnxiHaarClassifier_32s* st) { return vnxiTiltHaarFeatures_32s(m, 1, st); }
void release(vnxiHaarClassifier_32f* st) { vnxiHaarClassifierFree_32f(st); }
void release(vnxiHaarClassifier_32s* st) { vnxiHaarClassifierFree_32s(st); }

// Every member against the reference on tables whose last entry sits before a
// guard page, for every thread count (only the 32f member runs in bands), with a
// random mask and an all-zero one. The mixed members get feature 3 tilted (once
// only) and a tilted table of their own. apply takes the arguments of the mixed
// members (the plain ones drop the tilted table).
template <class T, class W, class Apply>
void checkApply(bool mixed, float scale, W stageThreshold, Apply apply) {
  Stage s;
  auto as = [](const std::vector<float>& f, float k) { std::vector<W> o; for (float x : f) o.push_back(W(x * k)); return o; };
  const std::vector<W> v[4] = {as(s.weight, 1), as(s.threshold, scale), as(s.val1, scale), as(s.val2, scale)};
  typename std::conditional<std::is_same<W, float>::value, vnxiHaarClassifier_32f, vnxiHaarClassifier_32s>::type* st = nullptr;
  ASSERT_EQ(vnxStatusOk, init(&st, s, v));
  const vnx8u tiltMask[5] = {0, 0, 0, 1, 0};
  if (mixed) { EXPECT_TRUE(tilt(tiltMask, st) == vnxStatusOk && tilt(tiltMask, st) == vnxStatusBadArg); }
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{17, 5}, vnxiSize{120, 90}})
    for (bool allZeroMask : {false, true}) {
      Image<T> I(roi.width + 6, roi.height + 6, 1, 4), Tt(roi.width + 7, roi.height + 11, 1, 4);  // the ROI plus the windows
      std::mt19937 rng(roi.width);
      I.fill([&](int x, int y, int) { return T(int(rng() % 200) * (x + y) / 4) + T(x * y); });
      Tt.fill([&](int x, int y, int) { return T(int(rng() % 300) * (x + 2 * y) / 4); });
      Image<W> norm(roi.width, roi.height, 1, 4);
      norm.fill([&](int, int, int) { return W(1 + rng() % 30); });
      Image<vnx8u> mask(roi.width, roi.height, 1, 3);
      std::vector<vnx8u> before, expect;
      int positive = 0;
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
          before.push_back(allZeroMask ? 0 : (rng() % 4 ? 255 : 0));
          expect.push_back(before.back() && refStage(s, v, I, Tt, mixed ? 3 : -1, x, y, norm.at(x, y)) >= stageThreshold ? 255 : 0);
          positive += expect.back() != 0;
        }
      for (int threads : vt::threadCounts()) {
        vt::Threads guard(threads);
        mask.fill([&](int x, int y, int) { return before[std::size_t(y) * roi.width + x]; });
        int got = -1;
        ASSERT_EQ(vnxStatusOk, apply(I.ptr(), I.step(), Tt.ptr(), Tt.step(), norm.ptr(), norm.step(), mask.ptr(), mask.step(), roi, &got, stageThreshold, st));
        EXPECT_EQ(positive, got) << threads << " threads";
        VT_EXPECT_SAME_SAMPLES(expect, mask.pixels());
        EXPECT_TRUE(mask.canaryIntact());
      }
    }
  release(st);
}

TEST(Haar, EveryMemberMatchesTheStageDefinitionInStorageOrder) {
  auto plain = [](auto fn) { return [fn](auto* s, int ss, auto*, int, auto... a) { return fn(s, ss, a...); }; };
  checkApply<float, float>(false, 1.0f, 0.2f, plain(vnxiApplyHaarClassifier_32f_C1R));
  checkApply<float, float>(true, 1.0f, 0.2f, vnxiApplyMixedHaarClassifier_32f_C1R);
  checkApply<int, float>(false, 1.0f, -0.1f, plain(vnxiApplyHaarClassifier_32s32f_C1R));
  checkApply<int, float>(true, 1.0f, 0.2f, vnxiApplyMixedHaarClassifier_32s32f_C1R);
  for (int sf : {0, 5, -3}) {  // accepted and unused
    checkApply<int, int>(false, 100.0f, 20, plain([sf](auto... a) { return vnxiApplyHaarClassifier_32s_C1RSfs(a..., sf); }));
    checkApply<int, int>(true, 100.0f, 20, [sf](auto... a) { return vnxiApplyMixedHaarClassifier_32s_C1RSfs(a..., sf); });
  }
}

int gAllocations = 0;
void* countingAlloc(std::size_t n) { ++gAllocations; return std::malloc(n); }

TEST(Haar, ConstructorRefusesBadFeaturesInItsFixedOrderAndSizesTheWindow) {
  Stage s;
  auto* sentinel = reinterpret_cast<vnxiHaarClassifier_32f*>(&s);
  vnxiHaarClassifier_32f* st = sentinel;
  auto init = [&](const vnxiRect* r, const float* w, const int* num, int len) {
    return vnxiHaarClassifierInitAlloc_32f(&st, r, w, s.threshold.data(), s.val1.data(), s.val2.data(), num, len);
  };
  std::vector<int> num = s.num;
  num[3] = 0;
  ownSetHeap(countingAlloc, std::free);
  EXPECT_EQ(vnxStatusBadSize, init(s.rects.data(), s.weight.data(), num.data(), 5));  // before allocating
  EXPECT_EQ(vnxStatusBadSize, init(s.rects.data(), s.weight.data(), s.num.data(), -1));
  EXPECT_EQ(vnxStatusNullPtr, init(s.rects.data(), nullptr, num.data(), -1));
  EXPECT_TRUE(gAllocations == 0 && st == sentinel);
  ownSetHeap(nullptr, nullptr);
  s.rects[7].width = 0;
  EXPECT_EQ(vnxStatusBadArg, init(s.rects.data(), s.weight.data(), s.num.data(), 5));
  EXPECT_EQ(nullptr, st);
  const vnxiRect t[1] = {{1, 0, 2, 3}};  // tilted: also x + 1 < height
  st = sentinel;
  EXPECT_EQ(vnxStatusBadArg, vnxiTiltedHaarClassifierInitAlloc_32f(&st, t, s.weight.data(), s.weight.data(), s.weight.data(), s.weight.data(), &s.num[3], 1));
  EXPECT_EQ(nullptr, st);
  EXPECT_EQ(vnxStatusNullPtr, vnxiHaarClassifierFree_32f(nullptr));
  // The window: the largest x + w and the largest y + h, whatever the first rectangle.
  const vnxiRect r[5] = {{3, 4, 2, 2}, {1, 1, 1, 1}, {2, 2, 5, 1}, {0, 6, 1, 1}, {4, 0, 1, 3}};
  const int n3[3] = {1, 2, 2};
  vnxiSize size{-1, -1};
  ASSERT_EQ(vnxStatusOk, init(r, s.weight.data(), n3, 3));
  ASSERT_EQ(vnxStatusOk, vnxiGetHaarClassifierSize_32f(st, &size));
  EXPECT_TRUE(size.width == 7 && size.height == 7) << size.width << "x" << size.height;
  vnxiHaarClassifierFree_32f(st);
}

// Steps in bytes; `nullTilt` drops the tilted table.
struct ApplyCase { const char* what; bool nullTilt; vnxiSize roi; int src, tilt, norm, mask; vnxStatus want; };

TEST(Haar, ApplyStatusesComeInTheirFixedOrder) {
  Stage s;
  vnxiHaarClassifier_32f* st = nullptr;
  ASSERT_EQ(vnxStatusOk, vnxiHaarClassifierInitAlloc_32f(&st, s.rects.data(), s.weight.data(), s.threshold.data(), s.val1.data(), s.val2.data(), s.num.data(), 5));
  std::vector<float> I(400, 0.0f), n(400, 1.0f);
  std::vector<vnx8u> m(400, 7);
  int pos = -5;
  const ApplyCase cases[] = {
      {"ok", false, {4, 2}, 40, 40, 16, 4, vnxStatusOk},
      {"null tilt before size", true, {0, 2}, 40, 40, 16, 4, vnxStatusNullPtr},
      {"zero width", false, {0, 2}, 1, 40, 16, 4, vnxStatusBadSize},
      {"norm step short", false, {4, 2}, 40, 40, 15, 4, vnxStatusBadStep},
      {"tilt step short", false, {4, 2}, 40, 12, 16, 4, vnxStatusBadStep},
      {"mask step short after a multiple fault", false, {4, 2}, 42, 40, 16, 3, vnxStatusBadStep},
      {"source step not a multiple", false, {4, 2}, 42, 40, 16, 4, vnxStatusStepNotMultiple},
      {"tilt step not a multiple", false, {4, 2}, 40, 41, 16, 4, vnxStatusStepNotMultiple},
  };
  vt::expectStatuses(cases, {{m.data(), m.size()}, {&pos, sizeof pos}}, [&](const ApplyCase& c) {
    return vnxiApplyMixedHaarClassifier_32f_C1R(I.data(), c.src, c.nullTilt ? nullptr : I.data(), c.tilt, n.data(), c.norm, m.data(), c.mask, c.roi, &pos, 0.0f, st);
  });
  EXPECT_EQ(vnxStatusNullPtr, vnxiApplyHaarClassifier_32f_C1R(I.data(), 40, n.data(), 16, m.data(), 4, {4, 2}, &pos, 0.0f, nullptr));
  vnxiHaarClassifierFree_32f(st);
}

}  // namespace
