// Integral tables against references written from their recurrences, on guard-page
// images with canary padding; OpenCV's tables as a second oracle; check orders.
#include <cstdint>

#include "support.h"
#include "vnxcore.h"

#ifdef VNX_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using vt::Guard, vt::Image;

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }

// Dense reference tables: upright (W+1) x (H+1) or tilted (W+2) x (H+2). `prior` is
// the value the 32f tilted sum table held in column W before the call.
template <class S, class Q>
void reference(const Image<vnx8u>& src, bool tilted, S val, Q valSqr, S prior, std::vector<S>& t, std::vector<Q>& q) {
  const int w = src.width(), h = src.height(), e = tilted ? 2 : 1, n = w + e;
  t.assign(std::size_t(n) * (h + e), val);
  q.assign(t.size(), valSqr);
  for (int r = 0; r < h; ++r) {
    S* T = &t[std::size_t(r + e) * n];
    Q* QT = &q[std::size_t(r + e) * n];
    const S *P = T - n, *PP = T - 2 * n;
    const Q *QP = QT - n, *QPP = QT - 2 * n;
    auto s = [&](int x) { return unsigned(src.at(x, r)); };
    std::uint32_t run = 0;
    std::uint64_t runSq = 0;
    for (int x = 1; x <= w; ++x) {
      if (!tilted) {
        run += s(x - 1);
        runSq += s(x - 1) * s(x - 1);
        if constexpr (std::is_same<S, int>::value) T[x] = int(U(P[x]) + run); else T[x] = float(int(run)) + P[x];
        if constexpr (std::is_same<Q, int>::value) QT[x] = int(U(QP[x]) + std::uint32_t(runSq)); else QT[x] = QP[x] + double(runSq);
        continue;
      }
      const bool last = x == w;
      const unsigned s0 = s(x - 1), s1 = last ? 0u : s(x), sq = s0 * s0 + s1 * s1;
      if constexpr (std::is_same<S, int>::value)
        T[x] = int(s0 + s1 + U(P[x - 1]) + U(P[x + 1]) - U(PP[x]));
      else
        T[x] = last ? prior + float(double(s0) + P[x - 1] + P[x + 1] - PP[x])
                    : float(((double(P[x - 1]) - PP[x]) + P[x + 1]) + s0 + s1);
      if constexpr (std::is_same<Q, int>::value)
        QT[x] = int(sq + U(QP[x - 1]) - U(QPP[x]) + U(QP[x + 1]));
      else
        QT[x] = last ? ((double(sq) + QP[x - 1]) + QP[x + 1]) - QPP[x] : ((double(sq) + QP[x - 1]) - QPP[x]) + QP[x + 1];
    }
    if (tilted) T[0] = P[1], QT[0] = QP[1], T[w + 1] = P[w], QT[w + 1] = QP[w];
  }
}

// Widths 1, around one and two vectors, one crossing two 64f square chunks, and
// for the upright tables one larger than the cache (rows made in scratch, streamed
// out: the odd table width, the guard on either side and the square pads give every
// alignment of the sum rows, with the square rows on or off the sums' boundaries).
template <class S, class Q, class F>
void check(bool tilted, bool withSqr, S val, Q valSqr, F build) {
  std::vector<vnxiSize> sizes = {{1, 1}, {1, 6}, {6, 1}, {15, 3}, {16, 2}, {17, 4}, {33, 7}, {301, 5}, {33000, 2}};
  int cache = 0, e = tilted ? 2 : 1;
  vnxGetMaxCacheSizeB(&cache);
  if (!tilted) sizes.push_back({1020, int(cache / 4 * 3 / ((sizeof(S) + (withSqr ? sizeof(Q) : 0)) * 1020)) + 2});
  unsigned seed = 1;
  for (vnxiSize s : sizes)
    for (Guard g : {Guard::After, Guard::Before}) {
      Image<vnx8u> src(s.width, s.height, 1, 3, g);
      std::mt19937 rng(seed++);
      vt::fillRandom(src, rng);
      Image<S> d(s.width + e, s.height + e, 1, 8, g);
      Image<Q> q(s.width + e, s.height + e, 1, sizeof(Q) == 4 ? 12 : 8, g);
      const S prior = S(0.75);  // the 32f tilted sums add to it in column W
      d.fill([&](int x, int, int) { return x == s.width ? prior : S(-5); });
      q.fill([](int, int, int) { return 99; });
      ASSERT_EQ(vnxStatusOk, build(src, d, q));
      std::vector<S> rd; std::vector<Q> rq;
      reference(src, tilted, val, valSqr, prior, rd, rq);
      VT_EXPECT_SAME_SAMPLES(rd, d.pixels());
      if (withSqr) VT_EXPECT_SAME_SAMPLES(rq, q.pixels());
      EXPECT_TRUE(d.canaryIntact() && q.canaryIntact());
    }
}

#define VT_TABLES(call) [&](auto& s, auto& d, auto& q) { (void)q; return call; }

TEST(Integral, EveryBuilderFollowsItsRecurrenceWithOffsetsAndWrapping) {
  const int big = 2147483000, neg = -2000000000;  // the 32s tables wrap, never saturate
  check<int, double>(false, false, big, 0.0, VT_TABLES(vnxiIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), big)));
  check<float, double>(false, false, 0.3f, 0.0, VT_TABLES(vnxiIntegral_8u32f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 0.3f)));
  check<int, double>(false, true, neg, 0.25, VT_TABLES(vnxiSqrIntegral_8u32s64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), neg, 0.25)));
  check<float, double>(false, true, 1e7f, -3.5, VT_TABLES(vnxiSqrIntegral_8u32f64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 1e7f, -3.5)));
  check<int, int>(false, true, 5, big, VT_TABLES(vnxiSqrIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 5, big)));
  check<int, double>(true, false, big, 0.0, VT_TABLES(vnxiTiltedIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), big)));
  check<float, double>(true, false, 0.1f, 0.0, VT_TABLES(vnxiTiltedIntegral_8u32f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), s.size(), 0.1f)));
  check<int, double>(true, true, -7, 0.5, VT_TABLES(vnxiTiltedSqrIntegral_8u32s64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), -7, 0.5)));
  check<float, double>(true, true, 3.3f, 1e-3, VT_TABLES(vnxiTiltedSqrIntegral_8u32f64f_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 3.3f, 1e-3)));
  check<int, int>(true, true, 1, neg, VT_TABLES(vnxiTiltedSqrIntegral_8u32s_C1R(s.ptr(), s.step(), d.ptr(), d.step(), q.ptr(), q.step(), s.size(), 1, neg)));
}

#ifdef VNX_HAVE_OPENCV
// cv::integral keeps the same upright tables with zero offsets. Its tilted table is
// no twin of ours: there the nearest source row adds one pixel (then 3, 5, ...),
// here two (then 4, 6, ...), and the edges follow other rules.
TEST(Integral, UprightTablesAgreeWithOpenCV) {
  for (vnxiSize s : {vnxiSize{1, 1}, vnxiSize{37, 19}, vnxiSize{640, 480}}) {
    cv::Mat src(s.height, s.width, CV_8UC1), sum(s.height + 1, s.width + 1, CV_32S), sqr(sum.size(), CV_64F), cvSum, cvSqr;
    cv::randu(src, 0, 256);
    ASSERT_EQ(vnxStatusOk, vnxiSqrIntegral_8u32s64f_C1R(src.data, int(src.step), sum.ptr<int>(), int(sum.step), sqr.ptr<double>(), int(sqr.step), s, 0, 0.0));
    cv::integral(src, cvSum, cvSqr, CV_32S, CV_64F);
    EXPECT_TRUE(cv::norm(sum, cvSum, cv::NORM_INF) == 0 && cv::norm(sqr, cvSqr, cv::NORM_INF) == 0) << s.width;
  }
}
#endif

// Table steps relative to their minima; `nulls` lists the null operands (1 source,
// 2 sum table, 4 square table).
struct BuildCase { const char* what; int nulls; vnxiSize roi; int srcStep, dstDelta, sqrDelta; vnxStatus want; };

TEST(Integral, BuilderStatusesComeInTheirFixedOrder) {
  const BuildCase cases[] = {
      {"ok at exact minima", 0, {5, 3}, 5, 0, 0, vnxStatusOk},
      {"odd source step is fine", 0, {5, 3}, 7, 0, 0, vnxStatusOk},
      {"null source", 1, {5, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"null table", 2, {5, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"null square before size", 4, {0, 3}, 5, 0, 0, vnxStatusNullPtr},
      {"zero height before steps", 0, {5, 0}, 0, -1, 0, vnxStatusBadSize},
      {"source step below W", 0, {5, 3}, 4, 0, 0, vnxStatusBadStep},
      {"table step one byte short", 0, {5, 3}, 5, -1, 0, vnxStatusBadStep},
      {"square step short before multiple", 0, {5, 3}, 5, 2, -8, vnxStatusBadStep},
      {"table step not a multiple", 0, {5, 3}, 5, 2, 0, vnxStatusStepNotMultiple},
      {"square step not a multiple", 0, {5, 3}, 5, 0, 4, vnxStatusStepNotMultiple},
  };
  std::vector<vnx8u> src(64, 1);
  std::vector<int> d(256, -1);
  std::vector<double> q(256, -1.0);
  for (int tilted = 0; tilted < 2; ++tilted)
    vt::expectStatuses(cases, {{d.data(), 1024}, {q.data(), 2048}}, [&](const BuildCase& c) {
      const int cols = 5 + 1 + tilted;
      return (tilted ? vnxiTiltedSqrIntegral_8u32s64f_C1R : vnxiSqrIntegral_8u32s64f_C1R)(
          c.nulls & 1 ? nullptr : src.data(), c.srcStep, c.nulls & 2 ? nullptr : d.data(), 4 * cols + c.dstDelta,
          c.nulls & 4 ? nullptr : q.data(), 8 * cols + c.sqrDelta, c.roi, 3, 4.0);
    });
}

}  // namespace
