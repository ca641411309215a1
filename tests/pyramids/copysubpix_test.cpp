// Sub-pixel copies against a reference written from their formulas: fractions only,
// 14-bit weights with the whole-unit rounding constant, float floors, the window
// corner and its inside range, edge replication outside the source.
#include <cmath>

#include "support.h"

namespace {

struct Weights { long long w[4]; float f[4]; };  // 00, 10, 01, 11
Weights weights(float fx, float fy) {
  const long long ax = (long long)(fx * 16384.0f + 0.5f), ay = (long long)(fy * 16384.0f + 0.5f);
  const long long a[2] = {16384 - ax, ax}, b[2] = {16384 - ay, ay};
  const float gx = fx < 1e-6f ? 1e-6f : fx, gy = fy < 1e-9f ? 1e-9f : fy, g[2] = {1 - gx, gx}, h[2] = {1 - gy, gy};
  Weights r;
  for (int i = 0; i < 4; ++i) {
    r.w[i] = (a[i & 1] * b[i >> 1] + 16384) >> 14;
    r.f[i] = g[i & 1] * h[i >> 1];
  }
  return r;
}
float fraction(float d) {
  float f = d - std::trunc(d);
  return f < 0 ? f + 1 : f;
}
// shift: 14 for plain integer members, 14 + scale factor for Sfs; float outputs ignore it.
template <class D>
D sample(double s00, double s10, double s01, double s11, const Weights& w, int shift) {
  if constexpr (std::is_same<D, float>::value) {
    return ((w.f[0] * float(s00) + w.f[1] * float(s10)) + w.f[2] * float(s01)) + w.f[3] * float(s11);
  } else {
    const long long q = w.w[0] * (long long)s00 + w.w[1] * (long long)s10 + w.w[2] * (long long)s01 + w.w[3] * (long long)s11;
    long long v = shift > 0 ? (q + (1LL << (shift - 1))) >> shift : q << -shift;
    const long long hi = sizeof(D) == 1 ? 255 : 65535;
    return D(v > hi ? hi : v);
  }
}

// Random source samples (floats with fractions) and the reference window: win samples
// from the corner (ix, iy), source rows and columns clamped to the image.
template <class S>
void fillSource(vt::Image<S>& src, std::mt19937& rng) {
  vt::fillRandom(src, rng);
  if constexpr (std::is_same<S, float>::value) src.fill([&](int, int, int) { return float(rng() % 5000) / 7.0f; });
}
template <class D, class S>
std::vector<D> window(const vt::Image<S>& src, long ix, long iy, vnxiSize win, const Weights& w, int shift) {
  auto at = [&](long x, long y) {
    return src.at(int(std::min<long>(std::max<long>(x, 0), src.width() - 1)),
                  int(std::min<long>(std::max<long>(y, 0), src.height() - 1)));
  };
  std::vector<D> e;
  for (long y = iy; y < iy + win.height; ++y)
    for (long x = ix; x < ix + win.width; ++x) e.push_back(sample<D>(at(x, y), at(x + 1, y), at(x, y + 1), at(x + 1, y + 1), w, shift));
  return e;
}

template <class S, class D, class F>
void checkCopy(F fn, int shift, int sf) {
  std::mt19937 rng(3);
  // a zero offset keeps the source; -0.25 is a fraction of 0.75 and moves no column
  const float offsets[][2] = {{0, 0}, {-0.25f, 0.5f}, {3.75f, -2.125f}, {0.999f, 0.001f}, {-7.5f, -0.3f}};
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{7, 3}, vnxiSize{16, 2}, vnxiSize{33, 9}})
    for (auto o : offsets) {
      vt::Image<S> src(roi.width + 1, roi.height + 1, 1, 4);
      fillSource(src, rng);
      vt::Image<D> dst(roi.width, roi.height, 1, 4);
      ASSERT_EQ(fn(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, o[0], o[1], sf), vnxStatusOk);
      VT_EXPECT_SAME_SAMPLES(window<D>(src, 0, 0, roi, weights(fraction(o[0]), fraction(o[1])), shift), dst.pixels());
      EXPECT_TRUE(dst.canaryIntact());
    }
}

#define VT_PLAIN(fn) [](auto s, int ss, auto d, int ds, vnxiSize r, float x, float y, int) { return fn(s, ss, d, ds, r, x, y); }

TEST(CopySubpix, MatchesReferenceEveryMember) {
  checkCopy<vnx8u, vnx8u>(VT_PLAIN(vnxiCopySubpix_8u_C1R), 14, 0);
  checkCopy<vnx8u, vnx32f>(VT_PLAIN(vnxiCopySubpix_8u32f_C1R), 0, 0);
  checkCopy<vnx16u, vnx16u>(VT_PLAIN(vnxiCopySubpix_16u_C1R), 14, 0);
  checkCopy<vnx16u, vnx32f>(VT_PLAIN(vnxiCopySubpix_16u32f_C1R), 0, 0);
  checkCopy<vnx32f, vnx32f>(VT_PLAIN(vnxiCopySubpix_32f_C1R), 0, 0);
  for (int sf : {-14, -7, 0, 3})  // -14: the sum of the weighted samples itself (weights 16388 at a zero offset)
    checkCopy<vnx8u, vnx16u>(vnxiCopySubpix_8u16u_C1R_Sfs, 14 + sf, sf);
}

// The intersecting copies: the window corner, its inside range and the clamped samples.
#define VT_WINDOW(fn)                                                                                      \
  [](auto s, int ss, vnxiSize sr, auto d, int ds, vnxiSize w, vnxiPoint32f p, vnxiPoint* lo, vnxiPoint* hi, int) { \
    return fn(s, ss, sr, d, ds, w, p, lo, hi);                                                              \
  }

template <class S, class D, class F>
void checkWindow(F fn, vnxiSize srcRoi, vnxiSize win, float px, float py, int shift, std::mt19937& rng) {
  vt::Image<S> src(srcRoi.width, srcRoi.height, 1, 4, vt::Guard::Before);
  fillSource(src, rng);
  const float x0 = px - (win.width - 1) * 0.5f, y0 = py - (win.height - 1) * 0.5f;
  const long ix = long(std::trunc(float(win.width) + x0)) - win.width, iy = long(std::trunc(float(win.height) + y0)) - win.height;
  const std::vector<D> expected = window<D>(src, ix, iy, win, weights(x0 - float(ix), y0 - float(iy)), shift);
  auto range = [](long i, int n, int len, int& lo, int& hi) {
    lo = int(std::min<long>(std::max<long>(0, -i), n));
    hi = i + n - 1 > len - 2 ? int(len - i - 2) : n - 1;
    if (i >= len) lo = 0, hi = -1;
  };
  vnxiPoint lo, hi;
  range(ix, win.width, srcRoi.width, lo.x, hi.x);
  range(iy, win.height, srcRoi.height, lo.y, hi.y);
  vt::Image<D> dst(win.width, win.height, 1, 4);
  vnxiPoint pMin{-9, -9}, pMax{-9, -9};
  ASSERT_EQ(fn(src.ptr(), src.step(), srcRoi, dst.ptr(), dst.step(), win, {px, py}, &pMin, &pMax, shift - 14),
            vnxStatusOk);
  EXPECT_TRUE(pMin.x == lo.x && pMin.y == lo.y && pMax.x == hi.x && pMax.y == hi.y)
      << pMin.x << "," << pMin.y << " " << pMax.x << "," << pMax.y;
  VT_EXPECT_SAME_SAMPLES(expected, dst.pixels());
  EXPECT_TRUE(dst.canaryIntact());
}

TEST(CopySubpixIntersect, MatchesReferenceInsideAtEdgesAndOutside) {
  std::mt19937 rng(5);
  const float points[][2] = {{10.3f, 7.6f}, {0.2f, 0.9f}, {-3.5f, 2.0f}, {25.7f, 14.2f}, {-40.0f, -40.0f},
                             {60.0f, 3.0f}, {5.0f, 100.0f}, {19.99f, 0.0f}, {-0.25f, -0.75f}, {1.0f, 2.0f}};
  for (vnxiSize win : {vnxiSize{1, 1}, vnxiSize{7, 7}, vnxiSize{23, 23}, vnxiSize{4, 9}})
    for (auto p : points) {
      SCOPED_TRACE(testing::Message() << win.width << "x" << win.height << " at " << p[0] << "," << p[1]);
      checkWindow<vnx8u, vnx16u>(vnxiCopySubpixIntersect_8u16u_C1R_Sfs, {21, 15}, win, p[0], p[1], 7, rng);
      checkWindow<vnx8u, vnx8u>(VT_WINDOW(vnxiCopySubpixIntersect_8u_C1R), {21, 15}, win, p[0], p[1], 14, rng);
      checkWindow<vnx8u, vnx32f>(VT_WINDOW(vnxiCopySubpixIntersect_8u32f_C1R), {21, 15}, win, p[0], p[1], 0, rng);
      checkWindow<vnx16u, vnx16u>(VT_WINDOW(vnxiCopySubpixIntersect_16u_C1R), {21, 15}, win, p[0], p[1], 14, rng);
      checkWindow<vnx16u, vnx32f>(VT_WINDOW(vnxiCopySubpixIntersect_16u32f_C1R), {21, 15}, win, p[0], p[1], 0, rng);
      checkWindow<vnx32f, vnx32f>(VT_WINDOW(vnxiCopySubpixIntersect_32f_C1R), {1, 1}, win, p[0], p[1], 0, rng);
      checkWindow<vnx32f, vnx32f>(VT_WINDOW(vnxiCopySubpixIntersect_32f_C1R), {21, 15}, win, p[0], p[1], 0, rng);
    }
}

TEST(CopySubpix, CheckOrder) {
  vnx8u s[64] = {};
  vnx16u d[64] = {7};
  vnxiPoint lo, hi;
  for (bool inter : {false, true}) {
    struct Row { const char* what; const vnx8u* s; vnxiPoint* lo; vnxiSize src, win; int ss, ds; vnxStatus want; } rows[] = {
        {"null source", nullptr, nullptr, {0, 0}, {0, 0}, 0, 0, -8},
        {"null corner (window only) before size", s, nullptr, {0, 0}, {0, 0}, 0, 0, inter ? -8 : -6},
        {"source width", s, &lo, {0, 2}, {2, 2}, 0, 0, -6},
        {"window height (window only) before steps", s, &lo, {2, 2}, {2, 0}, 0, 0, inter ? -6 : -14},
        {"short source", s, &lo, {2, 2}, {2, 2}, 2, 3, -14},  {"short destination", s, &lo, {2, 2}, {2, 2}, 3, 3, -14},
        {"odd destination", s, &lo, {2, 2}, {2, 2}, 3, 5, -108}, {"valid", s, &lo, {2, 2}, {2, 2}, 3, 4, 0}};
    vt::expectStatuses(rows, {{d, sizeof d}}, [&](const Row& r) {
      return inter ? vnxiCopySubpixIntersect_8u16u_C1R_Sfs(r.s, r.ss, r.src, d, r.ds, r.win, {0.5f, 0.5f}, r.lo, &hi, 0)
                   : vnxiCopySubpix_8u16u_C1R_Sfs(r.s, r.ss, d, r.ds, r.src, 0.5f, 0.5f, 0);
    });
  }
}

}  // namespace
