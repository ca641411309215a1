// Gaussian pyramid steps against references written from their formulas: the
// mirror of the down step, the mirror-left repeat-right edges of the up step, the
// rounding of each type, on guard-page images with canary padding, every thread
// count, and the check order.
#include <cmath>
#include <string>

#include "support.h"

namespace {

// Down: reflect about the edge pixel without repeating it, again while outside.
long downIndex(long i, long n) {
  while (i < 0 || i >= n) {
    if (n == 1) return 0;
    i = i < 0 ? -i : 2 * (n - 1) - i;
  }
  return i;
}
// Up: reflect on the left (p(-1) is p(1)), repeat the edge pixel on the right.
long upIndex(long i, long n) {
  if (i < 0) i = -i;
  return i >= n ? n - 1 : i;
}

template <class T>
using Step = vnxStatus (*)(const T*, int, T*, int, vnxiSize, vnx8u*);

// The reference sums as the contract orders them: rows first, then columns.
template <class T>
T downRef(const vt::Image<T>& s, int i, int j, int c) {
  auto row = [&](long y) {
    auto p = [&](int k) { return s.at(int(downIndex(2L * i + k, s.width())), int(y), c); };
    if constexpr (std::is_same<T, float>::value)
      return ((p(0) * 6.0f + (p(-1) + p(1)) * 4.0f) + p(-2)) + p(2);
    else
      return p(-2) + 4 * p(-1) + 6 * p(0) + 4 * p(1) + p(2);
  };
  auto r = [&](int k) { return row(downIndex(2L * j + k, s.height())); };
  if constexpr (std::is_same<T, float>::value) {
    return (((r(0) * 6.0f + (r(-1) + r(1)) * 4.0f) + r(-2)) + r(2)) * 0.00390625f;
  } else {
    const int S = r(-2) + 4 * r(-1) + 6 * r(0) + 4 * r(1) + r(2);
    return T(std::floor((S + 128) / 256.0));
  }
}

template <class T>
T upRef(const vt::Image<T>& s, int X, int Y, int c) {
  auto row = [&](long y) {
    const long x = X / 2;
    auto p = [&](int k) { return s.at(int(upIndex(x + k, s.width())), int(y), c); };
    if constexpr (std::is_same<T, float>::value)
      return X % 2 ? (p(0) + p(1)) * 4.0f : (p(-1) + p(0) * 6.0f) + p(1);
    else
      return X % 2 ? 4 * (p(0) + p(1)) : p(-1) + 6 * p(0) + p(1);
  };
  const long y = Y / 2;
  auto r = [&](int k) { return row(upIndex(y + k, s.height())); };
  if constexpr (std::is_same<T, float>::value) {
    return (Y % 2 ? (r(0) + r(1)) * 4.0f : (r(-1) + r(0) * 6.0f) + r(1)) * 0.015625f;
  } else {
    const int S = Y % 2 ? 4 * (r(0) + r(1)) : r(-1) + 6 * r(0) + r(1);
    return T(std::floor((S + 32) / 64.0));
  }
}

template <class T>
int typeCode() {
  return std::is_same<T, vnx8u>::value ? vnx8uCode : std::is_same<T, vnx8s>::value ? vnx8sCode : vnx32fCode;
}

enum class Dir { Down, Up };

template <class T>
void checkStep(Dir dir, Step<T> step, int channels, vnxiSize roi, vt::Guard guard, std::mt19937& rng) {
  vt::Image<T> src(roi.width, roi.height, channels, 8, guard);
  vt::fillRandom(src, rng);
  if constexpr (std::is_same<T, float>::value) src.fill([&](int, int, int) { return float(rng() % 100000) / 37.0f - 1000.0f; });
  const vnxiSize d = dir == Dir::Down ? vnxiSize{(roi.width + 1) / 2, (roi.height + 1) / 2}
                                      : vnxiSize{2 * roi.width, 2 * roi.height};
  int bytes = 0;
  ASSERT_EQ(dir == Dir::Down ? vnxiPyrDownGetBufSize_Gauss5x5(roi.width, typeCode<T>(), channels, &bytes)
                             : vnxiPyrUpGetBufSize_Gauss5x5(roi.width, typeCode<T>(), channels, &bytes),
            vnxStatusOk);
  vt::Span<vnx8u> buf(bytes);  // exactly the queried size, ending at a guard page
  std::vector<T> expected;
  for (int y = 0; y < d.height; ++y)
    for (int x = 0; x < d.width; ++x)
      for (int c = 0; c < channels; ++c)
        expected.push_back(dir == Dir::Down ? downRef(src, x, y, c) : upRef(src, x, y, c));
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
void checkAllSizes(Dir dir, Step<T> c1, Step<T> c3) {
  std::mt19937 rng(7);
  const vnxiSize sizes[] = {{1, 1}, {2, 2}, {1, 9}, {9, 1}, {2, 5}, {3, 3}, {15, 15}, {16, 16},
                            {17, 17}, {33, 7}, {40, 2}, {67, 23}, {301, 64}};
  for (vnxiSize s : sizes)
    for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) {
      SCOPED_TRACE(std::to_string(s.width) + "x" + std::to_string(s.height));
      checkStep(dir, c1, 1, s, g, rng);
      checkStep(dir, c3, 3, s, g, rng);
    }
}

TEST(PyrStep, DownMatchesReferenceEverySize) {
  checkAllSizes<vnx8u>(Dir::Down, vnxiPyrDown_Gauss5x5_8u_C1R, vnxiPyrDown_Gauss5x5_8u_C3R);
  checkAllSizes<vnx8s>(Dir::Down, vnxiPyrDown_Gauss5x5_8s_C1R, vnxiPyrDown_Gauss5x5_8s_C3R);
  checkAllSizes<vnx32f>(Dir::Down, vnxiPyrDown_Gauss5x5_32f_C1R, vnxiPyrDown_Gauss5x5_32f_C3R);
}

TEST(PyrStep, UpMatchesReferenceEverySize) {
  checkAllSizes<vnx8u>(Dir::Up, vnxiPyrUp_Gauss5x5_8u_C1R, vnxiPyrUp_Gauss5x5_8u_C3R);
  checkAllSizes<vnx8s>(Dir::Up, vnxiPyrUp_Gauss5x5_8s_C1R, vnxiPyrUp_Gauss5x5_8s_C3R);
  checkAllSizes<vnx32f>(Dir::Up, vnxiPyrUp_Gauss5x5_32f_C1R, vnxiPyrUp_Gauss5x5_32f_C3R);
}

// The worked examples: edge weights, half-up rounding, floors, asymmetric up edges.
TEST(PyrStep, WorkedEdgeExamples) {
  vnx8u buf[4096];
  // A width of 2 weighs its columns 8, 8; 2 x 2 gives the rounded mean (127.5 -> 128).
  const vnx8u two[4] = {127, 128, 127, 128};
  vnx8u out[4] = {};
  ASSERT_EQ(vnxiPyrDown_Gauss5x5_8u_C1R(two, 2, out, 1, {2, 2}, buf), vnxStatusOk);
  EXPECT_EQ(out[0], 128);
  // First column 6 p0 + 8 p1 + 2 p2; last even column of an even width p(x-2) + 4p(x-1) + 7p(x) + 4p(x+1).
  const vnx8s row[4] = {-16, 0, 0, 64};  // one row: the rows weigh 16 in total
  vnx8s o8[2] = {};
  ASSERT_EQ(vnxiPyrDown_Gauss5x5_8s_C1R(row, 4, o8, 2, {4, 1}, buf), vnxStatusOk);
  EXPECT_EQ(o8[0], vnx8s(std::floor((16.0 * -96 + 16 * 2 * 0 + 128) / 256)));  // -6 exactly
  EXPECT_EQ(o8[1], vnx8s(std::floor((16.0 * (-16 + 4 * 0 + 7 * 0 + 4 * 64) + 128) / 256)));
  // Up of a ramp 0 64 128: left mirrors, right repeats.
  const vnx8u ramp[3] = {0, 64, 128};
  vnx8u up[2][6] = {};
  ASSERT_EQ(vnxiPyrUp_Gauss5x5_8u_C1R(ramp, 3, &up[0][0], 6, {3, 1}, buf), vnxStatusOk);
  EXPECT_EQ(up[0][0], (8 * (6 * 0 + 2 * 64) + 32) >> 6);
  EXPECT_EQ(up[0][1], (8 * 4 * (0 + 64) + 32) >> 6);
  EXPECT_EQ(up[0][4], (8 * (64 + 7 * 128) + 32) >> 6);
  EXPECT_EQ(up[0][5], 128);
  EXPECT_EQ(up[1][4], up[0][4]);
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
  struct Row { const vnx32f* s; vnx32f* d; vnx8u* b; vnxiSize roi; int ss, ds; vnxStatus down, up; } rows[] = {
      {nullptr, dst, buf, {0, 0}, 0, 0, vnxStatusNullPtr, vnxStatusNullPtr},
      {s, dst, nullptr, {4, 4}, 16, 16, vnxStatusNullPtr, vnxStatusNullPtr},
      {s, dst, buf, {0, 4}, -1, -1, vnxStatusBadSize, vnxStatusBadSize},
      {s, dst, buf, {4, -1}, 16, 32, vnxStatusBadSize, vnxStatusBadSize},
      {s, dst, buf, {4, 4}, 15, 32, vnxStatusBadStep, vnxStatusBadStep},
      {s, dst, buf, {4, 4}, 16, 7, vnxStatusBadStep, vnxStatusBadStep},
      {s, dst, buf, {3, 4}, 12, 8, vnxStatusOk, vnxStatusBadStep},
      {s, dst, buf, {3, 4}, 13, 25, vnxStatusStepNotMultiple, vnxStatusStepNotMultiple},
      {s, dst, buf, {3, 4}, 12, 26, vnxStatusStepNotMultiple, vnxStatusStepNotMultiple},
      {s, dst, buf, {3, 4}, 12, 24, vnxStatusOk, vnxStatusOk},
  };
  for (const Row& r : rows) {
    for (vnx32f& v : dst) v = 9.0f;
    EXPECT_EQ(vnxiPyrDown_Gauss5x5_32f_C1R(r.s, r.ss, r.d, r.ds, r.roi, r.b), r.down);
    if (r.down < 0) {
      EXPECT_EQ(dst[0], 9.0f);
    }
    for (vnx32f& v : dst) v = 9.0f;
    EXPECT_EQ(vnxiPyrUp_Gauss5x5_32f_C1R(r.s, r.ss, r.d, r.ds, r.roi, r.b), r.up);
    if (r.up < 0) {
      EXPECT_EQ(dst[0], 9.0f);
    }
  }
}

}  // namespace
