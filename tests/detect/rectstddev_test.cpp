// Rectangle deviations against the per-member formulas written here, on tables the
// builders made, with guard pages after every operand; threads; statuses.
#include <cmath>
#include <cstdint>

#include "support.h"

namespace {

using vt::Image;

std::uint32_t U(int v) { return static_cast<std::uint32_t>(v); }
int wrapSum(int a, int b, int c, int d) { return int((U(a) - U(b)) + (U(c) - U(d))); }  // (a - b) + (c - d)

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

// Corner values of output (j, i): a = first, b, c, d in the order each formula names.
template <class T>
T at(const Image<T>& t, int row, int col) { return t.at(col, row); }

enum class Member { S32F, F32, Sfs };

// Upright reference: TL, TR, BL, BR.
double refUpright(const Tables& t, Member m, vnxiRect r, int j, int i, int sf) {
  const int y0 = j + r.y, x0 = i + r.x, y1 = y0 + r.height, x1 = x0 + r.width;
  const float area = float(std::int64_t(r.width) * r.height);
  if (m == Member::Sfs) {
    const float mean = float(wrapSum(at(t.s32, y1, x1), at(t.s32, y0, x1), at(t.s32, y0, x0), at(t.s32, y1, x0))) / area;
    const float q = float(wrapSum(at(t.q32, y1, x1), at(t.q32, y0, x1), at(t.q32, y0, x0), at(t.q32, y1, x0)));
    const float var = std::max(q / area - mean * mean, 0.0f);
    return int(std::sqrt(double(var)) * double(std::ldexp(1.0f, -sf)) + 0.5);
  }
  const float sum = m == Member::F32 ? (at(t.s32f, y0, x0) - at(t.s32f, y0, x1)) + (at(t.s32f, y1, x1) - at(t.s32f, y1, x0))
                                     : float(wrapSum(at(t.s32, y0, x0), at(t.s32, y0, x1), at(t.s32, y1, x1), at(t.s32, y1, x0)));
  const float mean = sum / area;
  const float q = ((float(at(t.q64, y0, x0)) - float(at(t.q64, y0, x1))) + float(at(t.q64, y1, x1))) - float(at(t.q64, y1, x0));
  const float var = q / area - mean * mean;
  return std::sqrt(var < 0 ? 0.0f : var);
}

// Tilted reference: A, B, C, D with the column origin `c0` (pSrc sits there).
double refTilted(const Tables& t, Member m, vnxiRect r, int j, int i, int c0, int sf) {
  const int ar = j + r.x + r.y, ac = c0 + i + r.x - r.y;
  const int br = ar + r.width + r.height, bc = ac + r.width - r.height;
  const int cr = ar + r.height, cc = ac - r.height, dr = ar + r.width, dc = ac + r.width;
  const double area = 2.0 * r.width * r.height;
  if (m == Member::Sfs) {
    const float mean = float(wrapSum(at(t.s32, br, bc), at(t.s32, cr, cc), at(t.s32, ar, ac), at(t.s32, dr, dc))) / float(area);
    const float q = float(wrapSum(at(t.q32, br, bc), at(t.q32, cr, cc), at(t.q32, ar, ac), at(t.q32, dr, dc))) / float(area);
    const double var = std::max(double(q) - double(mean) * mean, 0.0);
    return int(double(std::sqrt(float(var))) * double(std::ldexp(1.0f, -sf)) + 0.5);
  }
  const double mean = m == Member::F32
      ? ((double(at(t.s32f, br, bc)) - at(t.s32f, cr, cc)) + (double(at(t.s32f, ar, ac)) - at(t.s32f, dr, dc))) / area
      : double(float(wrapSum(at(t.s32, br, bc), at(t.s32, cr, cc), at(t.s32, ar, ac), at(t.s32, dr, dc))) / float(area));
  const double q = ((at(t.q64, br, bc) - at(t.q64, cr, cc)) - at(t.q64, dr, dc)) + at(t.q64, ar, ac);
  const double var = q / area - mean * mean;
  return std::sqrt(float(var < 0 ? 0.0 : var));
}

template <class D>
vnxStatus call(const Tables& t, Member m, bool tilted, int c0, D* dst, int dstStep, vnxiSize roi, vnxiRect r, int sf) {
  const double* q64 = t.q64.ptr() + c0;
  if constexpr (std::is_same<D, float>::value) {
    if (m == Member::F32)
      return (tilted ? vnxiTiltedRectStdDev_32f_C1R : vnxiRectStdDev_32f_C1R)(t.s32f.ptr() + c0, t.s32f.step(), q64, t.q64.step(), dst, dstStep, roi, r);
    return (tilted ? vnxiTiltedRectStdDev_32s32f_C1R : vnxiRectStdDev_32s32f_C1R)(t.s32.ptr() + c0, t.s32.step(), q64, t.q64.step(), dst, dstStep, roi, r);
  } else {
    return (tilted ? vnxiTiltedRectStdDev_32s_C1RSfs : vnxiRectStdDev_32s_C1RSfs)(t.s32.ptr() + c0, t.s32.step(), t.q32.ptr() + c0, t.q32.step(), dst, dstStep, roi, r, sf);
  }
}

// Every rectangle on ROIs up to one of several bands, each position against the
// reference; on the banded ROI at every thread count.
template <class D>
void checkMember(Member m, bool tilted, bool flat, int sf) {
  const vnxiRect rects[] = {{0, 0, 1, 1}, {1, 2, 3, 2}, {2, 1, 5, 4}};
  for (const vnxiRect& r : rects)
    for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{7, 3}, vnxiSize{17, 5}, vnxiSize{200, 40}}) {
      const int tw = roi.width + r.x + r.width + (tilted ? r.y + r.height + 2 : 0);
      const int th = roi.height + r.y + r.height + (tilted ? r.x + r.width : 0);
      Tables t(tw, th, tilted, flat);
      const int c0 = tilted ? r.y + r.height : 0;
      for (int n : roi.height > 5 ? vt::threadCounts() : std::vector<int>{1}) {
        vt::Threads threads(n);
        Image<D> dst(roi.width, roi.height, 1, 4);
        dst.fill([](int, int, int) { return D(-3); });
        ASSERT_EQ(vnxStatusOk, call(t, m, tilted, c0, dst.ptr(), dst.step(), roi, r, sf));
        EXPECT_TRUE(dst.canaryIntact());
        for (int j = 0; j < roi.height; ++j)
          for (int i = 0; i < roi.width; ++i) {
            const D e = D(tilted ? refTilted(t, m, r, j, i, c0, sf) : refUpright(t, m, r, j, i, sf));
            ASSERT_EQ(vt::bits(float(e)), vt::bits(float(dst.at(i, j)))) << int(m) << " tilted " << tilted << " at " << i << "," << j;
            if (flat && roi.height <= 5) { EXPECT_EQ(D(0), dst.at(i, j)); }  // square sums still exact in float
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

struct RectCase { const char* what; bool nullSrc, nullSqr, nullDst; vnxiSize roi; int srcDelta, sqrDelta, dstDelta; vnxiRect rect; vnxStatus expect; };

TEST(RectStdDev, StatusesComeInTheirFixedOrderWithTheRectangleLast) {
  const vnxiRect ok{1, 1, 2, 2};
  const RectCase cases[] = {
      {"ok at exact minima", false, false, false, {4, 2}, 0, 0, 0, ok, vnxStatusOk},
      {"null sum", true, false, false, {4, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"null square", false, true, false, {0, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"null output", false, false, true, {4, 2}, 0, 0, 0, ok, vnxStatusNullPtr},
      {"zero height before steps", false, false, false, {4, 0}, -4, 0, 0, ok, vnxStatusBadSize},
      {"sum step short", false, false, false, {4, 2}, -4, 0, 0, ok, vnxStatusBadStep},
      {"square step short", false, false, false, {4, 2}, 0, -8, 0, ok, vnxStatusBadStep},
      {"output step short", false, false, false, {4, 2}, 0, 0, -1, ok, vnxStatusBadStep},
      {"short step before multiple", false, false, false, {4, 2}, 2, 0, -4, ok, vnxStatusBadStep},
      {"sum step not a multiple", false, false, false, {4, 2}, 2, 0, 0, ok, vnxStatusStepNotMultiple},
      {"square step not a multiple", false, false, false, {4, 2}, 0, 4, 0, ok, vnxStatusStepNotMultiple},
      {"multiple before rectangle", false, false, false, {4, 2}, 0, 0, 1, {1, 1, 0, 2}, vnxStatusStepNotMultiple},
      {"rect width 0", false, false, false, {4, 2}, 0, 0, 0, {1, 1, 0, 2}, vnxStatusBadSize},
      {"rect height 0", false, false, false, {4, 2}, 0, 0, 0, {1, 1, 2, 0}, vnxStatusBadSize},
      {"rect x negative", false, false, false, {4, 2}, 8, 16, 0, {-1, 1, 2, 2}, vnxStatusBadSize},
      {"rect y negative", false, false, false, {4, 2}, 0, 0, 0, {1, -1, 2, 2}, vnxStatusBadSize},
  };
  for (const RectCase& c : cases) {
    std::vector<int> s(64, 0);
    std::vector<double> q(64, 0);
    std::vector<float> d(64, -1.0f);
    const int cols = c.roi.width + c.rect.x + c.rect.width;
    const vnxStatus st = vnxiRectStdDev_32s32f_C1R(c.nullSrc ? nullptr : s.data(), 4 * cols + c.srcDelta,
                                                   c.nullSqr ? nullptr : q.data(), 8 * cols + c.sqrDelta,
                                                   c.nullDst ? nullptr : d.data(), 4 * c.roi.width + c.dstDelta, c.roi,
                                                   c.rect);
    EXPECT_EQ(c.expect, st) << c.what;
    if (st) { EXPECT_EQ(std::vector<float>(64, -1.0f), d) << c.what; }
  }
  // Tilted minima: 4 x (width + height + x + y + W - 1) for the sum, 8 x that for 64f squares.
  std::vector<int> s(64, 0);
  std::vector<double> q(64, 0);
  float d[4];
  const vnxiRect r{2, 1, 2, 1};
  const int cols = 2 + 1 + 2 + 1 + 4 - 1;
  EXPECT_EQ(vnxStatusOk, vnxiTiltedRectStdDev_32s32f_C1R(s.data() + 2, 4 * cols, q.data() + 2, 8 * cols, d, 16, {4, 1}, r));
  EXPECT_EQ(vnxStatusBadStep, vnxiTiltedRectStdDev_32s32f_C1R(s.data(), 4 * cols - 4, q.data(), 8 * cols, d, 16, {4, 1}, r));
  EXPECT_EQ(vnxStatusBadStep, vnxiTiltedRectStdDev_32s32f_C1R(s.data(), 4 * cols, q.data(), 8 * cols - 8, d, 16, {4, 1}, r));
}

}  // namespace
