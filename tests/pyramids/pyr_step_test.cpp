// Gaussian pyramid steps against references written from their formulas: the
// mirror of the down step, the mirror-left repeat-right edges of the up step, the
// rounding of each type, on guard-page images with canary padding, every thread
// count (the largest size runs in bands), and the check order; OpenCV's steps as a
// second oracle where they are found.
#include <cmath>
#include <string>

#include "support.h"

#ifdef VNX_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

// Down: reflect about the edge pixel without repeating it, again while outside.
long downIndex(long i, long n) {
  while (i < 0 || i >= n) i = n == 1 ? 0 : i < 0 ? -i : 2 * (n - 1) - i;
  return i;
}
// Up: reflect on the left (p(-1) is p(1)), repeat the edge pixel on the right.
long upIndex(long i, long n) { return std::min(i < 0 ? -i : i, n - 1); }

// The taps in the order the 32f results follow (integers: any order).
template <class A>
A taps5(A a, A b, A c, A d, A e) { return ((c * 6 + (b + d) * 4) + a) + e; }
template <class A>
A tapsUp(bool odd, A a, A b, A c) { return odd ? (b + c) * 4 : (a + b * 6) + c; }

// Rows first, then columns; S * 2^-shift for 32f, floor((S + half) / 2^shift) otherwise.
template <class T>
T reference(bool up, const vt::Image<T>& s, int X, int Y, int c) {
  using A = typename std::conditional<std::is_same<T, float>::value, float, int>::type;
  auto row = [&](long y) {
    auto p = [&](long x) { return A(s.at(int(up ? upIndex(x, s.width()) : downIndex(x, s.width())), int(y), c)); };
    const long x = up ? X / 2 : 2L * X;
    return up ? tapsUp<A>(X % 2, p(x - 1), p(x), p(x + 1)) : taps5<A>(p(x - 2), p(x - 1), p(x), p(x + 1), p(x + 2));
  };
  auto r = [&](long y) { return row(up ? upIndex(y, s.height()) : downIndex(y, s.height())); };
  const long y = up ? Y / 2 : 2L * Y;
  const A S = up ? tapsUp<A>(Y % 2, r(y - 1), r(y), r(y + 1)) : taps5<A>(r(y - 2), r(y - 1), r(y), r(y + 1), r(y + 2));
  const int shift = up ? 6 : 8;
  if constexpr (std::is_same<T, float>::value) return S * (up ? 0.015625f : 0.00390625f);
  else return T(std::floor((S + (1 << (shift - 1))) / double(1 << shift)));
}

template <class T>
using Step = vnxStatus (*)(const T*, int, T*, int, vnxiSize, vnx8u*);

template <class T>
void checkStep(bool up, Step<T> step, int channels, vnxiSize roi, vt::Guard guard, std::mt19937& rng) {
  vt::Image<T> src(roi.width, roi.height, channels, 8, guard);
  vt::fillRandom(src, rng);
  if constexpr (std::is_same<T, float>::value) src.fill([&](int, int, int) { return float(rng() % 100000) / 37.0f - 1000.0f; });
  const vnxiSize d = up ? vnxiSize{2 * roi.width, 2 * roi.height} : vnxiSize{(roi.width + 1) / 2, (roi.height + 1) / 2};
  const int code = std::is_same<T, vnx8u>::value ? vnx8uCode : std::is_same<T, vnx8s>::value ? vnx8sCode : vnx32fCode;
  int bytes = 0;
  ASSERT_EQ((up ? vnxiPyrUpGetBufSize_Gauss5x5 : vnxiPyrDownGetBufSize_Gauss5x5)(roi.width, code, channels, &bytes),
            vnxStatusOk);
  vt::Span<vnx8u> buf(bytes);  // exactly the queried size, ending at a guard page
  std::vector<T> expected;
  for (int y = 0; y < d.height; ++y)
    for (int x = 0; x < d.width; ++x)
      for (int c = 0; c < channels; ++c) expected.push_back(reference(up, src, x, y, c));
#ifdef VNX_HAVE_OPENCV
  // A second oracle: OpenCV's steps take the same edges and the same 8u rounding (32f
  // adds the taps in another order).
  if (!std::is_same<T, vnx8s>::value && roi.width >= 3 && roi.height >= 3) {
    const cv::Mat s(roi.height, roi.width, CV_MAKETYPE(cv::DataType<T>::depth, channels), src.ptr(), src.step());
    cv::Mat o;
    up ? cv::pyrUp(s, o) : cv::pyrDown(s, o);
    EXPECT_LE(cv::norm(o, cv::Mat(d.height, d.width, o.type(), expected.data()), cv::NORM_INF), sizeof(T) == 4 ? 1e-3 : 0);
  }
#endif
  for (int threads : vt::threadCounts()) {
    vt::Threads t(threads);
    vt::Image<T> dst(d.width, d.height, channels, 4, guard);
    dst.fill([](int, int, int) { return 77; });
    ASSERT_EQ(step(src.ptr(), src.step(), dst.ptr(), dst.step(), roi, buf.data()), vnxStatusOk);
    VT_EXPECT_SAME_SAMPLES(expected, dst.pixels());
    EXPECT_TRUE(dst.canaryIntact());
  }
}

template <class T>
void checkAllSizes(bool up, Step<T> c1, Step<T> c3) {
  std::mt19937 rng(7);
  const vnxiSize sizes[] = {{1, 1}, {2, 2}, {1, 9}, {9, 1}, {2, 5}, {3, 3}, {15, 15}, {16, 16}, {17, 17},
                            {33, 7}, {40, 2}, {67, 23}, {301, 64}, {901, 893}};
  for (vnxiSize s : sizes)
    for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) {
      SCOPED_TRACE(std::to_string(s.width) + "x" + std::to_string(s.height));
      checkStep(up, c1, 1, s, g, rng);
      if (s.width < 900) checkStep(up, c3, 3, s, g, rng);
    }
}

TEST(PyrStep, DownAndUpMatchReferenceEverySize) {
  checkAllSizes<vnx8u>(false, vnxiPyrDown_Gauss5x5_8u_C1R, vnxiPyrDown_Gauss5x5_8u_C3R);
  checkAllSizes<vnx8s>(false, vnxiPyrDown_Gauss5x5_8s_C1R, vnxiPyrDown_Gauss5x5_8s_C3R);
  checkAllSizes<vnx32f>(false, vnxiPyrDown_Gauss5x5_32f_C1R, vnxiPyrDown_Gauss5x5_32f_C3R);
  checkAllSizes<vnx8u>(true, vnxiPyrUp_Gauss5x5_8u_C1R, vnxiPyrUp_Gauss5x5_8u_C3R);
  checkAllSizes<vnx8s>(true, vnxiPyrUp_Gauss5x5_8s_C1R, vnxiPyrUp_Gauss5x5_8s_C3R);
  checkAllSizes<vnx32f>(true, vnxiPyrUp_Gauss5x5_32f_C1R, vnxiPyrUp_Gauss5x5_32f_C3R);
}

TEST(PyrStep, BufferQueryCheckOrder) {
  int n = 5;
  struct Row { int width, type, channels; int* out; vnxStatus st; } rows[] = {
      {0, 1, 1, nullptr, vnxStatusNullPtr}, {0, 99, 2, &n, vnxStatusBadSize}, {1, 99, 2, &n, vnxStatusBadChannels},
      {1, 5, 1, &n, vnxStatusBadDataType}, {1, 13, 4, &n, vnxStatusBadChannels}, {INT32_MAX, 1, 3, &n, vnxStatusBadSize}};
  for (const Row& r : rows) {
    EXPECT_EQ(vnxiPyrDownGetBufSize_Gauss5x5(r.width, r.type, r.channels, r.out), r.st);
    EXPECT_EQ(vnxiPyrUpGetBufSize_Gauss5x5(r.width, r.type, r.channels, r.out), r.st);
  }
  EXPECT_EQ(n, 5);
  ASSERT_EQ(vnxiPyrDownGetBufSize_Gauss5x5(5, 3, 3, &n), vnxStatusOk);
  EXPECT_EQ(n, 6 * 64 + 32);  // R = 60 rounded up to 64
  ASSERT_EQ(vnxiPyrUpGetBufSize_Gauss5x5(5, 13, 1, &n), vnxStatusOk);
  EXPECT_EQ(n, 3 * 48 + 32);  // R' = 40 rounded up to 48
}

TEST(PyrStep, StepCheckOrderLeavesDestinationUnchanged) {
  vnx32f src[64] = {}, dst[256];
  vnx8u buf[1024];
  const vnx32f* s = src;
  for (bool up : {false, true}) {
    struct Row { const char* what; const vnx32f* s; vnx8u* b; vnxiSize roi; int ss, ds; vnxStatus want; } rows[] = {
        {"null source before size", nullptr, buf, {0, 0}, 0, 0, -8}, {"null buffer", s, nullptr, {4, 4}, 16, 16, -8},
        {"width before steps", s, buf, {0, 4}, -1, -1, -6},          {"height", s, buf, {4, -1}, 16, 32, -6},
        {"short source", s, buf, {4, 4}, 15, 32, -14},               {"short destination", s, buf, {4, 4}, 16, 7, -14},
        {"destination of 2 * 3 up, 2 down", s, buf, {3, 4}, 12, 8, up ? -14 : 0},
        {"odd source", s, buf, {3, 4}, 13, 25, -108},                 {"odd destination", s, buf, {3, 4}, 12, 26, -108},
        {"valid", s, buf, {3, 4}, 12, 24, 0}};
    vt::expectStatuses(rows, {{dst, sizeof dst}}, [&](const Row& r) {
      return (up ? vnxiPyrUp_Gauss5x5_32f_C1R : vnxiPyrDown_Gauss5x5_32f_C1R)(r.s, r.ss, dst, r.ds, r.roi, r.b);
    });
  }
}

}  // namespace
