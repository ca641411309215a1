// Row and column pipeline passes against references written from their sums; the
// buffer-size formulas for several thread counts; the order of the checks.
#include <algorithm>
#include <string>
#include <type_traits>

#include "filter_reference.h"
#include "support.h"
#include "filters/vncvseparable.h"

namespace {

using vt::clampTo;
using vt::refIndex;
using vt::roundDiv;


enum class RowKind { R8u16s, R16s, RLow16s, R32f };

// One row-pass case: kernel, anchor, border, divisor on a random image, compared with
// the sum of kernel[i] * src(x - anchor + i) per channel.
template <class S, class D>
void checkRow(RowKind kind, int C, vnxiSize size, const std::vector<D>& kern, int anchor, int border, int divisor,
              unsigned seed) {
  const int k = int(kern.size());
  SCOPED_TRACE("C" + std::to_string(C) + " " + std::to_string(size.width) + "x" + std::to_string(size.height) +
               " k " + std::to_string(k) + " anchor " + std::to_string(anchor) + " border " +
               std::to_string(border) + " divisor " + std::to_string(divisor));
  std::mt19937 rng(seed);
  vt::Image<S> src(size.width, size.height, C, 5 * sizeof(S), seed % 2 ? vt::Guard::After : vt::Guard::Before);
  std::uniform_int_distribution<int> d(std::is_same<S, vnx8u>::value ? 0 : -32768,
                                       std::is_same<S, vnx8u>::value ? 255 : 32767);
  if (std::is_same<S, vnx32f>::value) d = std::uniform_int_distribution<int>(-1000, 1000);
  src.fill([&](int, int, int) { return vt::withSpecials<S>(rng, d(rng)); });
  const S bval = S(d(rng));
  vt::Image<D> dst(size.width, size.height, C, 8);
  std::vector<D*> rows;
  for (int y = 0; y < size.height; ++y) rows.push_back(dst.row(y));
  std::vector<vnx8u> buf(64);
  vnxStatus st = vnxStatusOk;
  if constexpr (std::is_same<S, vnx8u>::value)
    st = (C == 1 ? vnxiFilterRowBorderPipeline_8u16s_C1R : vnxiFilterRowBorderPipeline_8u16s_C3R)(
        src.ptr(), src.step(), rows.data(), size, kern.data(), k, anchor, border, bval, divisor, buf.data());
  if constexpr (std::is_same<S, vnx16s>::value) {
    auto f = kind == RowKind::R16s ? (C == 1 ? vnxiFilterRowBorderPipeline_16s_C1R : vnxiFilterRowBorderPipeline_16s_C3R)
                                   : (C == 1 ? vnxiFilterRowBorderPipeline_Low_16s_C1R
                                             : vnxiFilterRowBorderPipeline_Low_16s_C3R);
    st = f(src.ptr(), src.step(), rows.data(), size, kern.data(), k, anchor, border, bval, divisor, buf.data());
  }
  if constexpr (std::is_same<S, vnx32f>::value)
    st = (C == 1 ? vnxiFilterRowBorderPipeline_32f_C1R : vnxiFilterRowBorderPipeline_32f_C3R)(
        src.ptr(), src.step(), rows.data(), size, kern.data(), k, anchor, border, bval, buf.data());
  ASSERT_EQ(st, vnxStatusOk);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x)
      for (int c = 0; c < C; ++c) {
        double s = 0;  // exact: integer values
        for (int i = 0; i < k; ++i) {
          const int xi = x - anchor + i;
          const double v = xi >= 0 && xi < size.width ? double(src.at(xi, y, c))
                           : border == vnxBorderConst ? double(bval)
                                                      : double(src.at(refIndex(xi, size.width, border), y, c));
          s = i == 0 ? kern[i] * v : s + kern[i] * v;  // the first product keeps its sign of zero
        }
        long long q = kind == RowKind::R32f ? 0 : static_cast<long long>(s);
        if (kind == RowKind::RLow16s) q = static_cast<short>(static_cast<unsigned short>(q & 0xffff));
        const D want = kind == RowKind::R32f ? vt::canonical(D(s)) : D(clampTo(roundDiv(q, divisor), -32768, 32767));
        if (std::memcmp(&want, &dst.at(x, y, c), sizeof(D)) != 0) {
          ADD_FAILURE() << "at (" << x << ", " << y << ", " << c << "): expected " << +want << ", got "
                        << +dst.at(x, y, c);
          return;
        }
      }
  EXPECT_TRUE(dst.canaryIntact());
}

const vnxiSize kRowSizes[] = {{1, 1}, {1, 3}, {2, 1}, {5, 2}, {19, 3}, {40, 2}, {300, 260}};

template <class S, class D>
void everyRowCase(RowKind kind, int tapRange) {
  unsigned seed = 7;
  std::mt19937 rng(3);
  for (int C : {1, 3})
    for (int k : {1, 2, 3, 4, 5, 7})
      for (const vnxiSize& size : kRowSizes) {
        if (size.width * size.height > 10000 && k != 3 && k != 5) continue;
        std::vector<D> kern(k);
        std::uniform_int_distribution<int> t(-tapRange, tapRange);
        for (D& v : kern) v = D(t(rng));
        const int divisor = kind == RowKind::R32f ? 1 : std::vector<int>{1, 1, 2, -3, 4, 1000}[seed % 6];
        checkRow<S, D>(kind, C, size, kern, int(seed % k), int(seed % 5), divisor, seed);
        ++seed;
      }
}

TEST(RowPipeline, MatchesTheSums) {
  everyRowCase<vnx8u, vnx16s>(RowKind::R8u16s, 20);   // the 16-bit lane path
  everyRowCase<vnx8u, vnx16s>(RowKind::R8u16s, 3000);  // sums beyond 16 bits, saturated
  everyRowCase<vnx16s, vnx16s>(RowKind::R16s, 5);
  everyRowCase<vnx16s, vnx16s>(RowKind::RLow16s, 9);   // modulo 16 bits
  everyRowCase<vnx32f, vnx32f>(RowKind::R32f, 9);
}

TEST(RowPipeline, BandsGiveTheSerialRows) {
  vnxiSize size{400, 200};
  std::vector<vnx16s> kern{1, -2, 5, 3, -1};
  for (int threads : {2, 4}) {
    vt::Threads guard(threads);
    checkRow<vnx8u, vnx16s>(RowKind::R8u16s, 1, size, kern, 2, vnxBorderMirror, 1, 11);
  }
}

// ---- column pass -------------------------------------------------------------

template <class D, class K>
vnxStatus runColumn(int which, int C, const K* const* rows, D* dst, int step, vnxiSize size, const K* kern, int k,
                    int divisor, vnx8u* buf) {
  if constexpr (std::is_same<K, vnx32f>::value)
    return (C == 1 ? vnxiFilterColumnPipeline_32f_C1R : vnxiFilterColumnPipeline_32f_C3R)(rows, dst, step, size,
                                                                                          kern, k, buf);
  else if constexpr (std::is_same<D, vnx8u>::value)
    return (C == 1 ? vnxiFilterColumnPipeline_16s8u_C1R : vnxiFilterColumnPipeline_16s8u_C3R)(rows, dst, step, size,
                                                                                              kern, k, divisor, buf);
  else if constexpr (std::is_same<D, vnx8s>::value)
    return (C == 1 ? vnxiFilterColumnPipeline_16s8s_C1R : vnxiFilterColumnPipeline_16s8s_C3R)(rows, dst, step, size,
                                                                                              kern, k, divisor, buf);
  else if (which == 1)
    return (C == 1 ? vnxiFilterColumnPipeline_Low_16s_C1R : vnxiFilterColumnPipeline_Low_16s_C3R)(rows, dst, step,
                                                                                                  size, kern, k, buf);
  else
    return (C == 1 ? vnxiFilterColumnPipeline_16s_C1R : vnxiFilterColumnPipeline_16s_C3R)(rows, dst, step, size,
                                                                                          kern, k, buf);
}

template <class K, class D>
void everyColumnCase(int which, int tapRange) {
  std::mt19937 rng(17);
  unsigned seed = 0;
  for (int C : {1, 3})
    for (int k : {1, 2, 3, 4, 5, 6})
      for (vnxiSize size : {vnxiSize{1, 1}, vnxiSize{7, 1}, vnxiSize{1, 6}, vnxiSize{17, 4}, vnxiSize{64, 3}}) {
        const int n = size.width * C, nRows = size.height + k - 1;
        vt::Image<K> in(n, nRows, 1, 0, vt::Guard::After);
        std::uniform_int_distribution<int> d(std::is_same<K, vnx32f>::value ? -2000 : -32768,
                                             std::is_same<K, vnx32f>::value ? 2000 : 32767);
        in.fill([&](int, int, int) { return vt::withSpecials<K>(rng, d(rng)); });
        std::vector<const K*> rows;
        for (int i = 0; i < nRows; ++i) rows.push_back(in.row(i));
        std::vector<K> kern(k);
        std::uniform_int_distribution<int> t(-tapRange, tapRange);
        for (K& v : kern) v = K(t(rng));
        const int divisor = std::vector<int>{1, 2, -3, 255, 1, 4096}[seed++ % 6];
        vt::Image<D> out(size.width, size.height, C, 4, vt::Guard::Before);
        std::vector<vnx8u> buf(32);
        ASSERT_EQ(runColumn(which, C, rows.data(), out.ptr(), out.step(), size, kern.data(), k, divisor, buf.data()),
                  vnxStatusOk);
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < n; ++x) {
            double s = 0;
            for (int j = 0; j < k; ++j) s = j == 0 ? double(kern[j]) * in.at(x, y) : s + double(kern[j]) * in.at(x, y + j);
            const long long q = std::is_same<K, vnx32f>::value ? 0 : static_cast<long long>(s);
            D want;
            if constexpr (std::is_same<D, vnx32f>::value) want = vt::canonical(D(s));
            else if constexpr (std::is_same<D, vnx8u>::value) want = D(clampTo(roundDiv(q, divisor), 0, 255));
            else if constexpr (std::is_same<D, vnx8s>::value) want = D(clampTo(roundDiv(q, divisor), -128, 127));
            else want = which == 1 ? D(static_cast<unsigned short>(q & 0xffff)) : D(clampTo(q, -32768, 32767));
            ASSERT_EQ(0, std::memcmp(&want, &out.row(y)[x], sizeof(D)))
                << "C" << C << " k " << k << " at " << x << ", " << y << ": expected " << +want << ", got "
                << +out.row(y)[x];
          }
        EXPECT_TRUE(out.canaryIntact());
      }
}

TEST(ColumnPipeline, MatchesTheSumsAndRoundedQuotients) {
  everyColumnCase<vnx16s, vnx16s>(0, 3);
  everyColumnCase<vnx16s, vnx16s>(0, 30000);
  everyColumnCase<vnx16s, vnx16s>(1, 7);  // modulo 16 bits
  everyColumnCase<vnx16s, vnx8u>(0, 4);
  everyColumnCase<vnx16s, vnx8s>(0, 4);
  everyColumnCase<vnx32f, vnx32f>(0, 9);
}

// ---- sizes and statuses ----------------------------------------------------------

TEST(Pipeline, BufferSizesFollowTheFormulaForEachThreadCount) {
  using Q = vnxStatus (*)(vnxiSize, int, int*);
  struct Row {
    Q q;
    long long a, b;  // S = a * k + b
    int roundTo;     // column: S = a * roundUp(w, roundTo) + b
  };
  const Row rows[] = {
      {vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R, 36, 112, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C3R, 60, 112, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R, 48, 80, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_16s_C3R, 40, 64, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C1R, 24, 64, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R, 208, 64, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R, 64, 64, 0},
      {vnxiFilterRowBorderPipelineGetBufferSize_32f_C3R, 192, 32, 0},
      {vnxiFilterColumnPipelineGetBufferSize_16s_C1R, 12, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_16s8u_C1R, 12, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_16s8s_C1R, 12, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_16s_C3R, 36, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_16s8u_C3R, 36, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_16s8s_C3R, 36, 32, 4},
      {vnxiFilterColumnPipelineGetBufferSize_Low_16s_C1R, 12, 32, 8},
      {vnxiFilterColumnPipelineGetBufferSize_Low_16s_C3R, 36, 32, 8},
  };
  for (int t : {1, 2, 4}) {
    vt::Threads guard(t);
    for (vnxiSize s : {vnxiSize{100, 10}, vnxiSize{1, 1}, vnxiSize{33, 7}})
      for (int k : {1, 3, 5, 9}) {
        for (const Row& r : rows) {
          const long long w = r.roundTo ? (s.width + r.roundTo - 1) / r.roundTo * r.roundTo : 0;
          const long long per = r.roundTo ? r.a * w + r.b : r.a * k + r.b;
          int got = -1;
          ASSERT_EQ(r.q(s, k, &got), vnxStatusOk);
          EXPECT_EQ(got, t * (32 + 4 * (s.height + k) + per));
        }
        int got = -1;
        EXPECT_EQ(vnxiFilterColumnPipelineGetBufferSize_32f_C1R(s, k, &got), vnxStatusOk);
        EXPECT_EQ(got, 32);
        EXPECT_EQ(vnxiFilterColumnPipelineGetBufferSize_32f_C3R(s, k, &got), vnxStatusOk);
        EXPECT_EQ(got, 32);
      }
    for (const Row& r : rows) EXPECT_EQ(r.q({0, 0}, 0, nullptr), vnxStatusNullPtr);  // the shared query check
  }
  vt::Threads guard(4);
  int v = 0;
  ASSERT_EQ(vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R({100, 10}, 3, &v), vnxStatusOk);
  EXPECT_EQ(v, 1232);
}

// Sizes beyond an int are refused with nothing written.
TEST(Pipeline, QueriesRefuseSizesBeyondAnInt) {
  vt::Threads guard(1);
  int v = 77;
  EXPECT_EQ(vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R({1, 600000000}, 3, &v), vnxStatusBadSize);
  EXPECT_EQ(vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R({1, 1}, 20000000, &v), vnxStatusBadSize);
  EXPECT_EQ(vnxiFilterColumnPipelineGetBufferSize_16s_C3R({60000000, 1}, 3, &v), vnxStatusBadSize);
  EXPECT_EQ(v, 77);
  vt::Threads eight(8);  // 8 x 300000000 bytes: fine for one thread, not for eight
  EXPECT_EQ(vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R({1, 75000000}, 3, &v), vnxStatusBadSize);
  EXPECT_EQ(v, 77);
}

// Each export calls its check (the orders are in filter_check_test); nothing is written
// on an error.
TEST(Pipeline, EachExportChecksInTheSharedOrder) {
  vt::Image<vnx16s> src(8, 3, 1, 16);
  vt::Image<vnx16s> dst(8, 3, 1, 16);
  dst.fill([](int, int, int) { return 9; });
  vnx16s* rows[3] = {dst.row(0), dst.row(1), dst.row(2)};
  const vnx16s kern[3] = {1, 2, 1};
  vnx8u buf[64];
  vt::Image<vnx8u> src8(8, 3, 1, 16);
  EXPECT_EQ(vnxiFilterRowBorderPipeline_8u16s_C1R(src8.ptr(), 8, rows, {8, 3}, kern, 3, 3, 1, 0, 1, buf),
            vnxStatusBadAnchor);
  EXPECT_EQ(vnxiFilterRowBorderPipeline_8u16s_C1R(src8.ptr(), 7, rows, {8, 3}, kern, 3, 2, 1, 0, 1, buf),
            vnxStatusBadStep);
  EXPECT_EQ(vnxiFilterRowBorderPipeline_16s_C3R(src.ptr(), 47, rows, {8, 3}, kern, 3, 1, 1, 0, 1, buf),
            vnxStatusBadStep);
  EXPECT_EQ(vnxiFilterRowBorderPipeline_Low_16s_C1R(src.ptr(), src.step(), rows, {8, 3}, kern, 3, 1, 1, 0, 0, buf),
            vnxStatusBadArg);
  const vnx32f kf[3] = {1, 2, 1};
  vt::Image<vnx32f> f(8, 3, 1, 16);
  vnx32f* frows[3] = {f.row(0), nullptr, f.row(2)};
  EXPECT_EQ(vnxiFilterRowBorderPipeline_32f_C1R(f.ptr(), f.step(), frows, {8, 3}, kf, 3, 1, 1, 0, buf),
            vnxStatusNullPtr);
  const vnx32f* in[5] = {f.row(0), f.row(1), f.row(2), f.row(0), nullptr};
  EXPECT_EQ(vnxiFilterColumnPipeline_32f_C1R(in, f.ptr(), 28, {8, 3}, kf, 3, nullptr), vnxStatusBadStep);
  EXPECT_EQ(vnxiFilterColumnPipeline_32f_C3R(in, f.ptr(), f.step(), {2, 3}, kf, 3, buf), vnxStatusNullPtr);
  const vnx16s* in16[5] = {rows[0], rows[1], rows[2], rows[0], rows[1]};
  vt::Image<vnx8s> out8(8, 3);
  EXPECT_EQ(vnxiFilterColumnPipeline_16s8s_C1R(in16, out8.ptr(), 8, {8, 3}, kern, 3, 0, buf), vnxStatusBadArg);
  EXPECT_EQ(vnxiFilterColumnPipeline_16s8u_C3R(in16, nullptr, 8, {8, 3}, kern, 3, 1, buf), vnxStatusNullPtr);
  EXPECT_EQ(vnxiFilterColumnPipeline_Low_16s_C1R(in16, dst.ptr(), dst.step() + 1, {8, 3}, kern, 3, buf),
            vnxStatusStepNotMultiple);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 8; ++x) ASSERT_EQ(dst.at(x, y), 9);
}

}  // namespace
