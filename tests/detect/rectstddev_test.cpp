// Rectangle deviations against the per-member formulas written here, on tables the
// builders made, with guard pages after every operand; threads; statuses.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "support.h"

namespace {

using vt::Image;

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }

struct Tables {
  Image<vnx8u> src;
  Image<int> s32, q32;
  Image<float> s32f;
  Image<double> q64;
  Tables(int w, int h, bool tilted, bool flat)
      : src(w, h), s32(w + 1 + tilted, h + 1 + tilted, 1, 4), q32(w + 1 + tilted, h + 1 + tilted, 1, 4),
        s32f(w + 1 + tilted, h + 1 + tilted, 1, 4), q64(w + 1 + tilted, h + 1 + tilted, 1, 8) {
    std::mt19937 rng(w * 31 + h);
    if (flat) src.fill([](int, int, int) { return 201; }); else vt::fillRandom(src, rng);
    const vnx8u* p = src.ptr();
    const int ps = src.step();
    (tilted ? vnxiTiltedSqrIntegral_8u32s64f_C1R : vnxiSqrIntegral_8u32s64f_C1R)(p, ps, s32.ptr(), s32.step(), q64.ptr(), q64.step(), src.size(), 0, 0);
    (tilted ? vnxiTiltedSqrIntegral_8u32f64f_C1R : vnxiSqrIntegral_8u32f64f_C1R)(p, ps, s32f.ptr(), s32f.step(), q64.ptr(), q64.step(), src.size(), 0, 0);
    (tilted ? vnxiTiltedSqrIntegral_8u32s_C1R : vnxiSqrIntegral_8u32s_C1R)(p, ps, s32.ptr(), s32.step(), q32.ptr(), q32.step(), src.size(), 0, 0);
  }
};

enum class Member { S32F, F32, Sfs };

// Entries of output (j, i) at the corners tl, tr, bl, br (tilted: A, D, C, B), the
// tilted columns counted from `c0`, where pSrc sits.
template <class T>
std::array<T, 4> corners(const Image<T>& t, vnxiRect r, bool tilted, int j, int i, int c0) {
  if (!tilted)
    return {t.at(i + r.x, j + r.y), t.at(i + r.x + r.width, j + r.y), t.at(i + r.x, j + r.y + r.height),
            t.at(i + r.x + r.width, j + r.y + r.height)};
  const int ar = j + r.x + r.y, ac = c0 + i + r.x - r.y;
  return {t.at(ac, ar), t.at(ac + r.width, ar + r.width), t.at(ac - r.height, ar + r.height),
          t.at(ac + r.width - r.height, ar + r.width + r.height)};
}

// The member's formula: integer sums wrap (their order does not matter), float
// sums follow the member's order and precision.
double reference(const Tables& t, Member m, bool tilted, vnxiRect r, int j, int i, int c0, int sf) {
  const auto s = corners(t.s32, r, tilted, j, i, c0), q = corners(t.q32, r, tilted, j, i, c0);
  const auto f = corners(t.s32f, r, tilted, j, i, c0);
  const auto d = corners(t.q64, r, tilted, j, i, c0);
  const int isum = int((U(s[0]) - U(s[1])) + (U(s[3]) - U(s[2]))), isq = int((U(q[0]) - U(q[1])) + (U(q[3]) - U(q[2])));
  const double scale = std::ldexp(1.0f, -sf);
  if (!tilted) {
    const float area = float(std::int64_t(r.width) * r.height);
    const float mean = (m == Member::F32 ? (f[0] - f[1]) + (f[3] - f[2]) : float(isum)) / area;
    if (m == Member::Sfs) return int(std::sqrt(double(std::max(float(isq) / area - mean * mean, 0.0f))) * scale + 0.5);
    const float var = (((float(d[0]) - float(d[1])) + float(d[3])) - float(d[2])) / area - mean * mean;
    return std::sqrt(var < 0 ? 0.0f : var);
  }
  const double area = 2.0 * r.width * r.height;
  const double mean = m == Member::F32 ? ((double(f[3]) - f[2]) + (double(f[0]) - f[1])) / area : double(float(isum) / float(area));
  if (m == Member::Sfs) return int(double(std::sqrt(float(std::max(double(float(isq) / float(area)) - mean * mean, 0.0)))) * scale + 0.5);
  const double var = (((d[3] - d[2]) - d[1]) + d[0]) / area - mean * mean;
  return std::sqrt(float(var < 0 ? 0.0 : var));
}

template <class D>
vnxStatus call(const Tables& t, Member m, bool tilted, int c0, D* dst, int dstStep, vnxiSize roi, vnxiRect r, int sf) {
  const double* q64 = t.q64.ptr() + c0;
  if constexpr (std::is_same<D, int>::value)
    return (tilted ? vnxiTiltedRectStdDev_32s_C1RSfs : vnxiRectStdDev_32s_C1RSfs)(t.s32.ptr() + c0, t.s32.step(), t.q32.ptr() + c0, t.q32.step(), dst, dstStep, roi, r, sf);
  else if (m == Member::F32)
    return (tilted ? vnxiTiltedRectStdDev_32f_C1R : vnxiRectStdDev_32f_C1R)(t.s32f.ptr() + c0, t.s32f.step(), q64, t.q64.step(), dst, dstStep, roi, r);
  else
    return (tilted ? vnxiTiltedRectStdDev_32s32f_C1R : vnxiRectStdDev_32s32f_C1R)(t.s32.ptr() + c0, t.s32.step(), q64, t.q64.step(), dst, dstStep, roi, r);
}

// Every rectangle on ROIs up to one of several bands, each position against the
// reference; on the banded ROI at every thread count. Flat images give exactly 0.
template <class D>
void checkMember(Member m, bool tilted, bool flat, int sf) {
  for (const vnxiRect& r : {vnxiRect{0, 0, 1, 1}, vnxiRect{1, 2, 3, 2}, vnxiRect{2, 1, 5, 4}})
    for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{7, 3}, vnxiSize{17, 5}, vnxiSize{200, 40}}) {
      Tables t(roi.width + r.x + r.width + (tilted ? r.y + r.height + 2 : 0),
               roi.height + r.y + r.height + (tilted ? r.x + r.width : 0), tilted, flat);
      const int c0 = tilted ? r.y + r.height : 0;
      for (int n : roi.height > 5 ? vt::threadCounts() : std::vector<int>{1}) {
        vt::Threads threads(n);
        Image<D> dst(roi.width, roi.height, 1, 4);
        dst.fill([](int, int, int) { return D(-3); });
        ASSERT_EQ(vnxStatusOk, call(t, m, tilted, c0, dst.ptr(), dst.step(), roi, r, sf));
        EXPECT_TRUE(dst.canaryIntact());
        for (int j = 0; j < roi.height; ++j)
          for (int i = 0; i < roi.width; ++i) {
            const D e = D(flat && roi.height <= 5 ? 0 : reference(t, m, tilted, r, j, i, c0, sf));
            ASSERT_EQ(vt::bits(float(e)), vt::bits(float(dst.at(i, j)))) << int(m) << " tilted " << tilted << " at " << i << "," << j;
          }
      }
    }
}

TEST(RectStdDev, EveryMemberMatchesItsOwnPrecisionRulesAtEveryThreadCount) {
  for (bool tilted : {false, true})
    for (bool flat : {false, true}) {
      checkMember<float>(Member::S32F, tilted, flat, 0);
      checkMember<float>(Member::F32, tilted, flat, 0);
      for (int sf : {0, 1, -2, 3}) checkMember<int>(Member::Sfs, tilted, flat, sf);
    }
}

// Steps relative to their minima; `nulls`: 1 sum, 2 square, 4 output table.
struct RectCase { const char* what; int nulls; vnxiSize roi; int srcDelta, sqrDelta, dstDelta; vnxiRect rect; vnxStatus want; };

TEST(RectStdDev, StatusesComeInTheirFixedOrderWithTheRectangleLast) {
  const vnxiRect ok{1, 1, 2, 2};
  const RectCase cases[] = {
      {"ok at exact minima", 0, {4, 2}, 0, 0, 0, ok, vnxStatusOk},
      {"null sum", 1, {4, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"null square before size", 2, {0, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"null output", 4, {4, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"sum step short", 0, {4, 2}, -4, 0, 0, ok, vnxStatusBadStep},
      {"square step short", 0, {4, 2}, 0, -8, 0, ok, vnxStatusBadStep},
      {"output step short", 0, {4, 2}, 0, 0, -1, ok, vnxStatusBadStep},
      {"sum step not a multiple", 0, {4, 2}, 2, 0, 0, ok, vnxStatusStepNotMultiple},
      {"square step not a multiple", 0, {4, 2}, 0, 4, 0, ok, vnxStatusStepNotMultiple},
      {"multiple before rectangle", 0, {4, 2}, 0, 0, 1, {1, 1, 0, 2}, vnxStatusStepNotMultiple},
      {"rect width 0", 0, {4, 2}, 0, 0, 0, {1, 1, 0, 2}, vnxStatusBadSize},
      {"rect height 0", 0, {4, 2}, 0, 0, 0, {1, 1, 2, 0}, vnxStatusBadSize},
      {"rect x negative", 0, {4, 2}, 8, 16, 0, {-1, 1, 2, 2}, vnxStatusBadSize},
      {"rect y negative", 0, {4, 2}, 0, 0, 0, {1, -1, 2, 2}, vnxStatusBadSize},
  };
  std::vector<int> s(64, 0);
  std::vector<double> q(64, 0);
  std::vector<float> d(64, -1.0f);
  vt::expectStatuses(cases, {{d.data(), 256}}, [&](const RectCase& c) {
    const int cols = c.roi.width + c.rect.x + c.rect.width;
    return vnxiRectStdDev_32s32f_C1R(c.nulls & 1 ? nullptr : s.data(), 4 * cols + c.srcDelta, c.nulls & 2 ? nullptr : q.data(),
                                     8 * cols + c.sqrDelta, c.nulls & 4 ? nullptr : d.data(), 4 * c.roi.width + c.dstDelta, c.roi, c.rect);
  });
  // Tilted minima: 4 x (width + height + x + y + W - 1) for the sum, 8 x that for 64f squares.
  const vnxiRect r{2, 1, 2, 1};
  const int cols = 2 + 1 + 2 + 1 + 4 - 1;
  EXPECT_EQ(vnxStatusOk, vnxiTiltedRectStdDev_32s32f_C1R(s.data() + 2, 4 * cols, q.data() + 2, 8 * cols, d.data(), 16, {4, 1}, r));
  EXPECT_EQ(vnxStatusBadStep, vnxiTiltedRectStdDev_32s32f_C1R(s.data(), 4 * cols - 4, q.data(), 8 * cols, d.data(), 16, {4, 1}, r));
  EXPECT_EQ(vnxStatusBadStep, vnxiTiltedRectStdDev_32s32f_C1R(s.data(), 4 * cols, q.data(), 8 * cols - 8, d.data(), 16, {4, 1}, r));
}

}  // namespace
