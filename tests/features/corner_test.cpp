// Corner measures against their composition: the derivative filters, products in float,
// the 32f lowpass on each product plane, then the closed forms written from the contract.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <vector>

#include "support.h"

namespace {

enum class Out { Min, Vecs };

template <class S>
std::vector<float> cornerRef(const vt::Image<S>& src, int kern, int ap, int win, Out out) {
  const int w = src.width(), h = src.height();
  const vnxiSize roi = src.size();
  constexpr bool is8u = std::is_same<S, vnx8u>::value;
  static std::vector<vnx8u> scratch(16 << 20);
  vnx8u* sb = scratch.data();
  const int m = 11 * ap;
  // dx from the vertical-edge filter, dy from the horizontal-edge one, replicated border;
  // an 8u source as floats (the 8u16s filters give the same integers).
  std::vector<float> f(std::size_t(w) * h), dx(f.size()), dy(f.size());
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) f[std::size_t(y) * w + x] = src.at(x, y);
  for (bool vert : {true, false})
    kern ? (vert ? vnxiFilterScharrVertBorder_32f_C1R : vnxiFilterScharrHorizBorder_32f_C1R)(f.data(), 4 * w, (vert ? dx : dy).data(), 4 * w, roi, 1, 0, sb)
         : (vert ? vnxiFilterSobelVertBorder_32f_C1R : vnxiFilterSobelHorizBorder_32f_C1R)(f.data(), 4 * w, (vert ? dx : dy).data(), 4 * w, roi, m, 1, 0, sb);
  std::vector<float> pr[3], mean[3];
  for (int k = 0; k < 3; ++k) pr[k].resize(dx.size()), mean[k].resize(dx.size());
  for (std::size_t i = 0; i < dx.size(); ++i) pr[0][i] = dx[i] * dx[i], pr[1][i] = dx[i] * dy[i], pr[2][i] = dy[i] * dy[i];
  for (int k = 0; k < 3; ++k)
    EXPECT_EQ(vnxStatusOk, vnxiFilterLowpassBorder_32f_C1R(pr[k].data(), 4 * w, mean[k].data(), 4 * w, roi, 11 * win, 1,
                                                            0, sb));
  float s = is8u ? (ap == 3 ? 1.0f / 4080 : 1.0f / 65280) : (ap == 3 ? 1.0f / 16 : 1.0f / 256);
  if (kern == 1) s *= vt::fromBits(0x3F1CCCCD);
  std::vector<float> res;
  for (std::size_t i = 0; i < dx.size(); ++i) {
    if (out == Out::Min) {
      const float hs = s / 2, a = mean[0][i] * hs, b = mean[1][i] * hs, c = mean[2][i] * hs;
      res.push_back((a + c) - std::sqrt((a - c) * (a - c) + 4.0f * (b * b)));
      continue;
    }
    const float p = s * mean[0][i], q = s * mean[1][i], r = s * mean[2][i];
    const float t = 0.01f * std::max(p, r), d = std::sqrt(4 * q * q + (p - r) * (p - r));
    const float l1 = (p + r + d) * 0.5f, l2 = (p + r - d) * 0.5f;
    float o[6] = {};
    if (std::min(p, r) < t || p * r - q * q < t) {
    } else if (std::fabs(q) < t) {
      o[0] = l1, o[1] = l2, o[2] = 1, o[5] = 1;
    } else {
      const float g = kern == 1 ? q : -q;
      const float n1 = std::max(std::sqrt(g * g + (l1 - p) * (l1 - p)), FLT_EPSILON);  // a NaN stays
      const float n2 = std::max(std::sqrt(g * g + (l2 - p) * (l2 - p)), FLT_EPSILON);
      o[0] = l1, o[1] = l2, o[2] = g / n1, o[3] = (l1 - p) / n1, o[4] = g / n2, o[5] = (l2 - p) / n2;
    }
    res.insert(res.end(), o, o + 6);
  }
  return res;
}

template <class S>
using CornerFn = vnxStatus (*)(const S*, int, vnx32f*, int, vnxiSize, int, int, int, vnx8u*);

// A member on a guard-page source and destination, with a guarded buffer of the reported size.
template <class S>
std::vector<float> runCorner(CornerFn<S> fn, const vt::Image<S>& src, int kern, int ap, int win, Out out) {
  int size = 0;  // the two members of a type share their size; one query of each type
  const auto query = std::is_same<S, vnx8u>::value ? vnxiMinEigenValGetBufferSize_8u32f_C1R : vnxiEigenValsVecsGetBufferSize_32f_C1R;
  EXPECT_EQ(vnxStatusOk, query(src.size(), ap, win, &size));
  vt::Span<vnx8u> buf(size);
  vt::Image<vnx32f> dst(src.width(), src.height(), out == Out::Min ? 1 : 6, 4, vt::Guard::Before);
  dst.fill([](int, int, int) { return -5.0f; });
  EXPECT_EQ(vnxStatusOk, fn(src.ptr(), src.step(), dst.ptr(), dst.step(), src.size(), kern, ap, win, buf.data()));
  EXPECT_TRUE(dst.canaryIntact());
  return dst.pixels();
}

// Every kernel, aperture and window on small shapes; on one of several bands (64K pixels
// and 32 rows a thread) two of them at every thread count, against the same reference.
template <class S>
void checkMembers(CornerFn<S> minFn, CornerFn<S> vecFn) {
  std::mt19937 rng(21);
  for (vnxiSize s : {vnxiSize{1, 1}, {2, 7}, {17, 3}, {33, 7}, {64, 40}, {480, 1000}})
    for (auto [kern, ap] : {std::pair{0, 3}, {0, 5}, {1, 3}})
      for (int win : {3, 5}) {
        const bool big = s.height > 100;
        if (big && ap + win != 6 + 2 * kern) continue;  // (Sobel 3, window 3) and (Scharr, window 5)
        vt::Image<S> src(s.width, s.height, 1, 4);
        src.fill([&](int x, int y, int) { return ((x / 4 + y / 3) % 2) * 200 + int(rng() % 40); });
        const auto refMin = cornerRef(src, kern, ap, win, Out::Min), refVecs = cornerRef(src, kern, ap, win, Out::Vecs);
        for (int t : big ? std::vector<int>{1, 2, 3, 7} : std::vector<int>{1}) {
          vt::Threads threads(t);
          VT_EXPECT_SAME_SAMPLES(refMin, runCorner(minFn, src, kern, ap, win, Out::Min));
          VT_EXPECT_SAME_SAMPLES(refVecs, runCorner(vecFn, src, kern, ap, win, Out::Vecs));
        }
      }
}

TEST(CornerEigen, AllMembersEqualTheirCompositionAtEveryThreadCount) {
  checkMembers<vnx8u>(vnxiMinEigenVal_8u32f_C1R, vnxiEigenValsVecs_8u32f_C1R);
  checkMembers<vnx32f>(vnxiMinEigenVal_32f_C1R, vnxiEigenValsVecs_32f_C1R);
}

TEST(CornerEigen, StatusOrderAndSizes) {
  vt::Image<vnx8u> src(8, 8);
  vt::Image<vnx32f> dst(8, 8);
  std::vector<vnx8u> buf(1 << 20);
  vnx8u* b = buf.data();
  struct Row { const char* what; int ss, ds; vnxiSize roi; int kern, ap, win; vnx8u* b; bool vecs; vnxStatus want; } rows[] = {
      {"null buffer before size", 8, 32, {0, 8}, 0, 3, 3, nullptr, false, -8}, {"height before kernel", 8, 32, {8, 0}, 9, 3, 3, b, false, -6},
      {"short source", 7, 33, {8, 8}, 9, 3, 3, b, false, -14},  {"short destination", 8, 31, {8, 8}, 9, 3, 3, b, false, -14},
      {"odd destination before kernel", 8, 34, {8, 8}, 9, 3, 3, b, false, -108}, {"kernel", 8, 32, {8, 8}, 2, 4, 4, b, false, -5},
      {"Scharr aperture 5", 8, 32, {8, 8}, 1, 5, 3, b, false, -6}, {"aperture 7", 8, 32, {8, 8}, 0, 7, 3, b, false, -6},
      {"window 4", 8, 32, {8, 8}, 0, 5, 4, b, false, -6},        {"short vectors destination", 8, 32, {8, 8}, 0, 3, 3, b, true, -14}};
  vt::expectStatuses(rows, {{dst.ptr(), std::size_t(dst.step()) * 8}}, [&](const Row& r) {
    return (r.vecs ? vnxiEigenValsVecs_8u32f_C1R : vnxiMinEigenVal_8u32f_C1R)(src.ptr(), r.ss, dst.ptr(), r.ds, r.roi, r.kern, r.ap, r.win, r.b);
  });
  int size = -1, a = 0, v = 0;
  const struct { vnxiSize roi; int ap, win; } bad[] = {{{0, 1}, 3, 3}, {{4, 4}, 4, 3}, {{4, 4}, 3, 7}, {{40000, 40000}, 3, 3}};
  EXPECT_EQ(vnxStatusNullPtr, vnxiMinEigenValGetBufferSize_8u32f_C1R({0, 0}, 3, 3, nullptr));
  for (const auto& r : bad) EXPECT_EQ(vnxStatusBadSize, vnxiMinEigenValGetBufferSize_32f_C1R(r.roi, r.ap, r.win, &size));
  EXPECT_EQ(-1, size);
  vnxiMinEigenValGetBufferSize_8u32f_C1R({100, 10}, 5, 3, &a);
  vnxiEigenValsVecsGetBufferSize_8u32f_C1R({100, 10}, 5, 3, &v);
  EXPECT_EQ(a, v);  // the tests run both 8u members on the first
}

}  // namespace
