// Pyramid level sizes, the pyramid record and the layer steps against references
// written from their rules: the down-size walk, level counts, kernel normalisation
// and its warning, the rate-2 window, the 8u arithmetic in units of 1/8.
#include <cmath>

#include "support.h"

namespace {

long upLo(long n, float r) { return n == 1 ? 1 : std::max(long(float(n - 1) * r) + 1, n + 1); }
long upHi(long n, float r) { return std::max(n + 1, long(float(n) * r)); }
int downDim(int n, float r) {
  long m = std::max(1L, long(float(n) / r + 0.5f));
  while (n < upLo(m, r) || n > upHi(m, r)) m += n < upLo(m, r) ? -1 : 1;
  return int(m);
}

TEST(PyramidRoi, SizesAndRanges) {
  vnxiSize d, lo, hi;
  for (float r : {1.01f, 1.5f, 2.0f, 3.7f, 10.0f}) {
    ASSERT_EQ(vnxiGetPyramidDownROI({1, 1}, &d, r), vnxStatusOk);
    EXPECT_TRUE(d.width == 1 && d.height == 1);
    ASSERT_EQ(vnxiGetPyramidUpROI({1, 1}, &lo, &hi, r), vnxStatusOk);
    EXPECT_TRUE(lo.width == 1 && hi.width == std::max(2, int(r)));
    for (int n : {2, 3, 7, 100, 479, 640, 1081}) {
      ASSERT_EQ(vnxiGetPyramidDownROI({n, n + 1}, &d, r), vnxStatusOk);
      EXPECT_TRUE(d.width == downDim(n, r) && d.height == downDim(n + 1, r)) << n << " at " << r;
      ASSERT_EQ(vnxiGetPyramidUpROI(d, &lo, &hi, r), vnxStatusOk);  // the up step can reach the source again
      EXPECT_TRUE(lo.width <= n && hi.width >= n) << n << " at " << r;
    }
  }
  EXPECT_EQ(vnxiGetPyramidDownROI({640, 480}, nullptr, 0.0f), vnxStatusNullPtr);
  EXPECT_EQ(vnxiGetPyramidDownROI({0, 480}, &d, 0.0f), vnxStatusBadSize);
  EXPECT_EQ(vnxiGetPyramidDownROI({1, 1}, &d, 1.0f), vnxStatusBadArg);
  EXPECT_EQ(vnxiGetPyramidUpROI({1, 1}, &lo, nullptr, 2.0f), vnxStatusNullPtr);
  EXPECT_EQ(vnxiGetPyramidUpROI({1, 1}, &lo, &hi, 10.01f), vnxStatusBadArg);
  ASSERT_EQ(vnxiGetPyramidUpROI({INT32_MAX, 1}, &lo, &hi, 10.0f), vnxStatusOk);
  EXPECT_EQ(hi.width, INT32_MAX);
}

TEST(Pyramid, RecordLevelsRatesAndCheckOrder) {
  vnxiPyramid* p = nullptr;
  ASSERT_EQ(vnxiPyramidInitAlloc(&p, 100, {640, 480}, 2.0f), vnxStatusOk);
  EXPECT_EQ(p->level, 10);  // 320x240 ... 2x1, 1x1
  vnxiSize s{640, 480};
  for (int k = 0; k <= p->level; ++k, s = {downDim(s.width, 2.0f), downDim(s.height, 2.0f)}) {
    EXPECT_TRUE(p->pRoi[k].width == s.width && p->pRoi[k].height == s.height) << k;
    EXPECT_TRUE(p->pRate[k] == std::pow(0.5, k) && p->pImage[k] == nullptr && p->pStep[k] == 0) << k;
  }
  EXPECT_EQ(p->pState, nullptr);
  EXPECT_EQ(vnxiPyramidFree(p), vnxStatusOk);
  ASSERT_EQ(vnxiPyramidInitAlloc(&p, 3, {640, 480}, 1.5f), vnxStatusOk);
  EXPECT_EQ(p->level, 3);
  EXPECT_EQ(vnxiPyramidFree(p), vnxStatusOk);
  EXPECT_EQ(vnxiPyramidInitAlloc(nullptr, 0, {0, 0}, 0.0f), vnxStatusNullPtr);
  EXPECT_EQ(vnxiPyramidInitAlloc(&p, 0, {0, 1}, 0.0f), vnxStatusBadSize);
  EXPECT_EQ(vnxiPyramidInitAlloc(&p, 0, {1, 1}, 2.0f), vnxStatusBadArg);
  EXPECT_EQ(vnxiPyramidInitAlloc(&p, 1, {1, 1}, 1.0f), vnxStatusBadArg);
  EXPECT_EQ(vnxiPyramidFree(nullptr), vnxStatusNullPtr);
}

// The 8u layer reference: taps to 13 bits, rows then columns in units of 1/8 with a
// mirrored image, then the rate-2 pick or the two blends, then (v + 4) >> 3.
long mirror(long i, long n) {
  while (i < 0 || i >= n) i = n == 1 ? 0 : i < 0 ? -i : 2 * (n - 1) - i;
  return i;
}
std::vector<vnx8u> layerRef(const vt::Image<vnx8u>& src, const std::vector<short>& kernel, float r, vnxiSize dst,
                            bool up) {
  const int k = int(kernel.size()), c = k / 2, w = src.width(), h = src.height();
  long s = kernel[c];
  for (int i = 0; i < c; ++i) s += 2 * kernel[i];
  std::vector<int> t(k);
  for (int i = 0; i <= c; ++i) t[i] = t[k - 1 - i] = short(long(std::trunc(16384.0 * kernel[i] / s + 0.5))) >> 1;
  // rows, then columns: (sum + 2^9) >> 10 and (sum + 2^12) >> 13, each clamped to 16 bits
  std::vector<int> rows(size_t(w) * h), inter(size_t(w) * h);
  auto pass = [&](const auto& in, std::vector<int>& outv, int dx, int dy, int shift) {
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        long a = 0;
        for (int i = 0; i < k; ++i) a += long(t[i]) * in(int(mirror(x + dx * (i - c), w)), int(mirror(y + dy * (i - c), h)));
        outv[size_t(y) * w + x] = int(std::min(32767L, std::max(-32768L, (a + (1L << (shift - 1))) >> shift)));
      }
  };
  pass([&](int x, int y) { return long(src.at(x, y)); }, rows, 1, 0, 10);
  pass([&](int x, int y) { return long(rows[size_t(y) * w + x]); }, inter, 0, 1, 13);
  auto out = [](long v) { return vnx8u(v + 4 < 8 ? 0 : std::min(255L, (v + 4) >> 3)); };
  auto blend = [](int a, int b, float f) { return int(float(a) * f + 0.5f + float(b) * (1.0f - f)); };
  std::vector<vnx8u> res;
  const bool rate2 = !up && r >= 1.99998f && r <= 2.00002f;
  for (int j = 0; j < dst.height; ++j) {
    const float y = up ? float(j) / r : float(j) * r;
    const int iy = std::min(int(y), h - 1), iy1 = std::min(iy + 1, h - 1);
    for (int i = 0; i < dst.width; ++i) {
      const float x = up ? float(i) / r : float(i) * r;
      const int ix = std::min(int(x), w - 1), ix1 = std::min(ix + 1, w - 1);
      const int a = blend(inter[size_t(iy1) * w + ix1], inter[size_t(iy) * w + ix1], y - float(iy));
      const int b = blend(inter[size_t(iy1) * w + ix], inter[size_t(iy) * w + ix], y - float(iy));
      res.push_back(out(rate2 ? inter[size_t(2 * j) * w + 2 * i] : blend(a, b, x - float(ix))));
    }
  }
  return res;
}

TEST(PyramidLayer, Down8uMatchesReferenceAtEveryRateAndThreadCount) {
  std::mt19937 rng(11);
  const std::vector<std::vector<short>> kernels = {{1, 2, 1}, {1, 4, 6, 4, 1}, {-1, 3, 9, 3, -1}, {1, 1, 1, 1, 1, 1, 1}};
  for (float r : {2.0f, 2.00001f, 2.00003f, 1.5f, 3.3f})
    for (const auto& kernel : kernels)
      for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{5, 3}, vnxiSize{37, 29}, vnxiSize{120, 90}}) {
        vt::Image<vnx8u> src(roi.width, roi.height, 1, 3);
        vt::fillRandom(src, rng);
        vnxiPyramidState* st = nullptr;
        ASSERT_EQ(vnxiPyramidLayerDownInitAlloc_8u_C1R(&st, roi, r, kernel.data(), int(kernel.size()), 2), vnxStatusOk);
        vnxiSize d;
        ASSERT_EQ(vnxiGetPyramidDownROI(roi, &d, r), vnxStatusOk);
        const std::vector<vnx8u> expected = layerRef(src, kernel, r, d, false);
        for (int threads : vt::threadCounts()) {
          vt::Threads t(threads);
          vt::Image<vnx8u> dst(d.width, d.height, 1, 2);
          ASSERT_EQ(vnxiPyramidLayerDown_8u_C1R(src.ptr(), src.step(), roi, dst.ptr(), dst.step(), d, st), vnxStatusOk);
          VT_EXPECT_SAME_SAMPLES(expected, dst.pixels());
          EXPECT_TRUE(dst.canaryIntact());
        }
        // up from the level below back to the source size
        vnxiPyramidState* us = nullptr;
        ASSERT_EQ(vnxiPyramidLayerUpInitAlloc_8u_C1R(&us, d, r, kernel.data(), int(kernel.size()), 2), vnxStatusOk);
        vt::Image<vnx8u> small(d.width, d.height, 1, 1), big(roi.width, roi.height, 1, 2);
        vt::fillRandom(small, rng);
        ASSERT_EQ(vnxiPyramidLayerUp_8u_C1R(small.ptr(), small.step(), d, big.ptr(), big.step(), roi, us), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(layerRef(small, kernel, r, roi, true), big.pixels());
        vnxiPyramidLayerUpFree_8u_C1R(us);
        vnxiPyramidLayerDownFree_8u_C1R(st);
      }
}

TEST(PyramidLayer, AsymmetricKernelWarnsAndIsMirrored) {
  std::mt19937 rng(2);
  vt::Image<vnx32f> src(33, 17);
  src.fill([&](int, int, int) { return float(rng() % 1000) / 3.0f; });
  const vnx32f bad[5] = {1, 4, 6, 5, 1}, good[5] = {1, 4, 6, 4, 1};
  vnxiPyramidState *a = nullptr, *b = nullptr;
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_32f_C1R(&a, src.size(), 2.0f, bad, 5, 2), vnxStatusSymKernelExpected);
  ASSERT_EQ(vnxiPyramidLayerDownInitAlloc_32f_C1R(&b, src.size(), 2.0f, good, 5, 2), vnxStatusOk);
  vt::Image<vnx32f> da(17, 9), db(17, 9);
  ASSERT_EQ(vnxiPyramidLayerDown_32f_C1R(src.ptr(), src.step(), src.size(), da.ptr(), da.step(), {17, 9}, a), vnxStatusOk);
  ASSERT_EQ(vnxiPyramidLayerDown_32f_C1R(src.ptr(), src.step(), src.size(), db.ptr(), db.step(), {17, 9}, b), vnxStatusOk);
  VT_EXPECT_SAME_SAMPLES(db.pixels(), da.pixels());
  for (vnxiPyramidState* s : {a, b}) EXPECT_EQ(vnxiPyramidLayerDownFree_32f_C1R(s), vnxStatusOk);
}

TEST(PyramidLayer, CheckOrder) {
  const vnx16s k[3] = {1, 2, 1};
  vnxiPyramidState* s = nullptr;
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {0, 0}, 0.0f, nullptr, 2, 1), vnxStatusNullPtr);
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {0, 4}, 0.0f, k, 2, 1), vnxStatusBadSize);
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {4, 4}, 0.0f, k, 2, 1), vnxStatusBadArg);
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {4, 4}, 2.0f, k, 2, 2), vnxStatusBadArg);
  EXPECT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {4, 4}, 11.0f, k, 3, 2), vnxStatusBadArg);
  EXPECT_EQ(s, nullptr);
  ASSERT_EQ(vnxiPyramidLayerDownInitAlloc_16u_C3R(&s, {8, 8}, 2.0f, k, 3, 2), vnxStatusOk);
  vnx16u src[8 * 8 * 3] = {}, dst[8 * 8 * 3];
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 48, {8, 8}, dst, 24, {4, 4}, nullptr), vnxStatusNullPtr);
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 48, {8, 0}, dst, 0, {4, 4}, s), vnxStatusBadSize);
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 47, {8, 8}, dst, 24, {4, 4}, s), vnxStatusBadStep);
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 48, {8, 8}, dst, 23, {4, 4}, s), vnxStatusBadStep);
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 48, {8, 8}, dst, 48, {5, 4}, s), vnxStatusBadSize);
  EXPECT_EQ(vnxiPyramidLayerUp_16u_C3R(src, 48, {4, 4}, dst, 48, {8, 8}, s), vnxStatusBadArg);  // a down state
  EXPECT_EQ(vnxiPyramidLayerDown_16u_C3R(src, 48, {8, 8}, dst, 24, {4, 4}, s), vnxStatusOk);
  EXPECT_EQ(vnxiPyramidLayerDownFree_16u_C3R(s), vnxStatusOk);
  EXPECT_EQ(vnxiPyramidLayerUpFree_8u_C1R(nullptr), vnxStatusNullPtr);
  ASSERT_EQ(vnxiPyramidLayerUpInitAlloc_16u_C3R(&s, {4, 4}, 2.0f, k, 3, 2), vnxStatusOk);
  EXPECT_EQ(vnxiPyramidLayerUp_16u_C3R(src, 24, {4, 4}, dst, 54, {9, 8}, s), vnxStatusBadSize);
  EXPECT_EQ(vnxiPyramidLayerUp_16u_C3R(src, 24, {4, 4}, dst, 48, {8, 8}, s), vnxStatusOk);
  EXPECT_EQ(vnxiPyramidLayerUpFree_16u_C3R(s), vnxStatusOk);
}

}  // namespace
