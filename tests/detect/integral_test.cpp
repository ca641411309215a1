// Integral tables and rectangle deviations against references written from their
// recurrences, on guard-page images with canary padding, plus their check orders.
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>

#include "support.h"

namespace {

using vt::Guard;
using vt::Image;

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }

// ---- references -------------------------------------------------------------

// Plain and squared upright tables as dense (W+1) x (H+1) arrays.
template <class S, class Q>
void refIntegral(const Image<vnx8u>& src, S val, Q valSqr, std::vector<S>& d, std::vector<Q>& q) {
  const int w = src.width(), h = src.height(), n = w + 1;
  d.assign(std::size_t(n) * (h + 1), val);
  q.assign(std::size_t(n) * (h + 1), valSqr);
  for (int y = 1; y <= h; ++y) {
    std::uint32_t s = 0;
    std::uint64_t sq = 0;
    for (int x = 1; x <= w; ++x) {
      const unsigned p = src.at(x - 1, y - 1);
      s += p;
      sq += p * p;
      S& e = d[std::size_t(y) * n + x];
      const S up = d[std::size_t(y - 1) * n + x];
      if constexpr (std::is_same<S, int>::value) e = int(U(up) + s); else e = float(int(s)) + up;
      Q& f = q[std::size_t(y) * n + x];
      const Q qup = q[std::size_t(y - 1) * n + x];
      if constexpr (std::is_same<Q, int>::value) f = int(U(qup) + std::uint32_t(sq)); else f = qup + double(sq);
    }
  }
}

// Tilted tables: `prior` is the value the 32f sum table held in column W.
template <class S, class Q>
void refTilted(const Image<vnx8u>& src, S val, Q valSqr, S prior, std::vector<S>& t, std::vector<Q>& q) {
  const int w = src.width(), h = src.height(), n = w + 2;
  t.assign(std::size_t(n) * (h + 2), val);
  q.assign(std::size_t(n) * (h + 2), valSqr);
  for (int r = 0; r < h; ++r) {
    S* T = &t[std::size_t(r + 2) * n];
    const S *P = T - n, *PP = T - 2 * n;
    Q* QT = &q[std::size_t(r + 2) * n];
    const Q *QP = QT - n, *QPP = QT - 2 * n;
    auto s = [&](int x) { return unsigned(src.at(x, r)); };
    T[0] = P[1];
    QT[0] = QP[1];
    for (int x = 1; x <= w; ++x) {
      const bool last = x == w;
      const unsigned s0 = s(x - 1), s1 = last ? 0u : s(x);
      if constexpr (std::is_same<S, int>::value) {
        T[x] = int(s0 + s1 + U(P[x - 1]) + U(P[x + 1]) - U(PP[x]));
      } else if (!last) {
        T[x] = float(((double(P[x - 1]) - PP[x]) + P[x + 1]) + s0 + s1);
      } else {
        T[x] = prior + float(double(s0) + P[x - 1] + P[x + 1] - PP[x]);
      }
      const unsigned sq = s0 * s0 + s1 * s1;
      if constexpr (std::is_same<Q, int>::value)
        QT[x] = int(sq + U(QP[x - 1]) - U(QPP[x]) + U(QP[x + 1]));
      else
        QT[x] = last ? ((double(sq) + QP[x - 1]) + QP[x + 1]) - QPP[x] : ((double(sq) + QP[x - 1]) - QPP[x]) + QP[x + 1];
    }
    T[w + 1] = P[w];
    QT[w + 1] = QP[w];
  }
}

template <class T>
std::vector<T> dense(const Image<T>& img) { return img.pixels(); }

const vnxiSize kSizes[] = {{1, 1}, {1, 6}, {6, 1}, {15, 3}, {16, 2}, {17, 4}, {33, 7}, {301, 5}, {33000, 2}};  // the last crosses two 64f square chunks

Image<vnx8u>* makeSource(vnxiSize s, Guard g, unsigned seed) {
  auto* img = new Image<vnx8u>(s.width, s.height, 1, 3, g);
  std::mt19937 rng(seed);
  vt::fillRandom(*img, rng);
  return img;
}

// ---- builders ---------------------------------------------------------------

template <class S, class Q, class F>
void checkUpright(F build, bool withSqr, S val, Q valSqr) {
  unsigned seed = 1;
  for (vnxiSize s : kSizes)
    for (Guard g : {Guard::After, Guard::Before}) {
      std::unique_ptr<Image<vnx8u>> src(makeSource(s, g, seed++));
      Image<S> d(s.width + 1, s.height + 1, 1, 8, g);
      Image<Q> q(s.width + 1, s.height + 1, 1, 8, g);
      d.fill([](int, int, int) { return 77; });
      q.fill([](int, int, int) { return 99; });
      ASSERT_EQ(vnxStatusOk, build(*src, d, q));
      std::vector<S> rd;
      std::vector<Q> rq;
      refIntegral(*src, val, valSqr, rd, rq);
      VT_EXPECT_SAME_SAMPLES(rd, dense(d));
      if (withSqr) VT_EXPECT_SAME_SAMPLES(rq, dense(q));
      EXPECT_TRUE(d.canaryIntact() && q.canaryIntact());
    }
}

TEST(Integral, UprightTablesMatchTheRunningSumDefinition) {
  const int v = -2000000000;  // wraps: the 32s tables never saturate
  checkUpright<int, double>([&](auto& s, auto& d, auto&) {
    return vnxiIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 2147483000); }, false, 2147483000, 0.0);
  checkUpright<float, double>([&](auto& s, auto& d, auto&) {
    return vnxiIntegral_8u32f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 0.3f); }, false, 0.3f, 0.0);
  checkUpright<int, double>([&](auto& s, auto& d, auto& q) {
    return vnxiSqrIntegral_8u32s64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), v, 0.25);
  }, true, v, 0.25);
  checkUpright<float, double>([&](auto& s, auto& d, auto& q) {
    return vnxiSqrIntegral_8u32f64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 1e7f, -3.5);
  }, true, 1e7f, -3.5);
  checkUpright<int, int>([&](auto& s, auto& d, auto& q) {
    return vnxiSqrIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 5, 2147480000);
  }, true, 5, 2147480000);
}

template <class S, class Q, class F>
void checkTilted(F build, bool withSqr, S val, Q valSqr) {
  unsigned seed = 50;
  for (vnxiSize s : kSizes)
    for (Guard g : {Guard::After, Guard::Before}) {
      std::unique_ptr<Image<vnx8u>> src(makeSource(s, g, seed++));
      Image<S> d(s.width + 2, s.height + 2, 1, 8, g);
      Image<Q> q(s.width + 2, s.height + 2, 1, 8, g);
      const S prior = S(0.75);  // the 32f sum tables add to it in column W
      d.fill([&](int x, int, int) { return x == s.width ? prior : S(-5); });
      q.fill([](int, int, int) { return 99; });
      ASSERT_EQ(vnxStatusOk, build(*src, d, q));
      std::vector<S> rt;
      std::vector<Q> rq;
      refTilted(*src, val, valSqr, prior, rt, rq);
      VT_EXPECT_SAME_SAMPLES(rt, dense(d));
      if (withSqr) VT_EXPECT_SAME_SAMPLES(rq, dense(q));
      EXPECT_TRUE(d.canaryIntact() && q.canaryIntact());
    }
}

TEST(Integral, TiltedTablesFollowTheRecurrenceAndAccumulateColumnWIn32f) {
  checkTilted<int, double>([&](auto& s, auto& d, auto&) {
    return vnxiTiltedIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 2147480000); }, false, 2147480000, 0.0);
  checkTilted<float, double>([&](auto& s, auto& d, auto&) {
    return vnxiTiltedIntegral_8u32f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 0.1f); }, false, 0.1f, 0.0);
  checkTilted<int, double>([&](auto& s, auto& d, auto& q) {
    return vnxiTiltedSqrIntegral_8u32s64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), -7, 0.5);
  }, true, -7, 0.5);
  checkTilted<float, double>([&](auto& s, auto& d, auto& q) {
    return vnxiTiltedSqrIntegral_8u32f64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 3.3f, 1e-3);
  }, true, 3.3f, 1e-3);
  checkTilted<int, int>([&](auto& s, auto& d, auto& q) {
    return vnxiTiltedSqrIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 1, -9);
  }, true, 1, -9);
}

TEST(Integral, TiltedWidthOneUsesOnlyTheBoundaryRules) {
  const vnx8u src[3] = {10, 20, 30};
  int t[5][3];
  ASSERT_EQ(vnxStatusOk, vnxiTiltedIntegral_8u32s_C1R(src, 1, &t[0][0], 12, {1, 3}, 0));
  const int expect[5][3] = {{0, 0, 0}, {0, 0, 0}, {0, 10, 0}, {10, 20, 10}, {20, 40, 20}};
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 3; ++x) EXPECT_EQ(expect[y][x], t[y][x]) << y << "," << x;
}

// ---- statuses ---------------------------------------------------------------

struct BuildCase {
  const char* what;
  bool nullSrc, nullDst, nullSqr;
  vnxiSize roi;
  int srcStep, dstDelta, sqrDelta;  // table steps relative to their minima
  vnxStatus expect;
};

TEST(Integral, BuilderStatusesComeInTheirFixedOrder) {
  const BuildCase cases[] = {
      {"ok at exact minima", false, false, false, {5, 3}, 5, 0, 0, vnxStatusOk},
      {"null source", true, false, false, {5, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"null square before size", false, false, true, {0, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"null table", false, true, false, {5, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"zero width before step", false, false, false, {0, 3}, 0, -1, 0, vnxStatusBadSize},
      {"zero height", false, false, false, {5, 0}, 5, 0, 0, vnxStatusBadSize},
      {"source step below W", false, false, false, {5, 3}, 4, 0, 0, vnxStatusBadStep},
      {"table step one byte short", false, false, false, {5, 3}, 5, -1, 0, vnxStatusBadStep},
      {"square step short before multiple", false, false, false, {5, 3}, 5, 2, -8, vnxStatusBadStep},
      {"table step not a multiple", false, false, false, {5, 3}, 5, 2, 0, vnxStatusStepNotMultiple},
      {"square step not a multiple", false, false, false, {5, 3}, 5, 0, 4, vnxStatusStepNotMultiple},
      {"odd source step is fine", false, false, false, {5, 3}, 7, 0, 0, vnxStatusOk},
  };
  for (const BuildCase& c : cases)
    for (int tilted = 0; tilted < 2; ++tilted) {
      const int cols = 5 + 1 + tilted;
      std::vector<vnx8u> src(64, 1);
      std::vector<int> d(256, -1);
      std::vector<double> q(256, -1.0);
      const int dStep = 4 * cols + c.dstDelta, qStep = 8 * cols + c.sqrDelta;
      const vnx8u* s = c.nullSrc ? nullptr : src.data();
      int* pd = c.nullDst ? nullptr : d.data();
      double* pq = c.nullSqr ? nullptr : q.data();
      const vnxStatus st = tilted ? vnxiTiltedSqrIntegral_8u32s64f_C1R(s, c.srcStep, pd, dStep, pq, qStep, c.roi, 3, 4.0)
                                  : vnxiSqrIntegral_8u32s64f_C1R(s, c.srcStep, pd, dStep, pq, qStep, c.roi, 3, 4.0);
      EXPECT_EQ(c.expect, st) << c.what << (tilted ? " (tilted)" : "");
      if (st != vnxStatusOk) {
        EXPECT_EQ(std::vector<int>(256, -1), d) << c.what;
        EXPECT_EQ(std::vector<double>(256, -1.0), q) << c.what;
      }
    }
}

}  // namespace
