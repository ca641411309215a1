// Row and column pipeline passes against references written from their sums, serial
// and in bands; the buffer-size formulas for several thread counts; sizes beyond an
// int; each export's checks.
#include <string>
#include <type_traits>

#include "filter_reference.h"
#include "support.h"

namespace {

// An exact sum as the pass stores it: floats as they are (every NaN the one NaN), Low
// kinds modulo 16 bits before the division, integers divided to nearest and saturated.
template <class D>
D stored(double s, bool low, int divisor) {
  if constexpr (std::is_same<D, vnx32f>::value) {
    return vt::canonical(D(s));
  } else {
    const long long q = static_cast<long long>(s);
    return vt::saturatedQuotient<D>(low ? static_cast<short>(static_cast<unsigned short>(q & 0xffff)) : q, divisor);
  }
}

template <class S, class D>
using RowFn = vnxStatus (*)(const S*, int, D**, vnxiSize, const D*, int, int, int, S, int, vnx8u*);
template <class S, class D>
struct RowPass { RowFn<S, D> c1, c3; bool low; int tapRange; };
// The 32f row pass takes no divisor: an adapter to the table's signature.
template <vnxStatus (*F)(const vnx32f*, int, vnx32f**, vnxiSize, const vnx32f*, int, int, int, vnx32f, vnx8u*) noexcept>
vnxStatus noDivisor(const vnx32f* s, int ss, vnx32f** d, vnxiSize r, const vnx32f* k, int n, int a, int b, vnx32f v,
                    int, vnx8u* buf) {
  return F(s, ss, d, r, k, n, a, b, v, buf);
}

// Sizes of the pass tests: every width up to three vectors of the widest kind and
// more, so the vector kernels run every tail at several row offsets; one image wide
// and tall enough to run in bands.
std::vector<vnxiSize> passSizes(int maxWidth) {
  std::vector<vnxiSize> sizes;
  for (int w = 1; w <= maxWidth; ++w) sizes.push_back({w, 1 + w % 4});
  sizes.push_back({400, 260});
  return sizes;
}
const int kDivisors[] = {1, 2, -3, 1000, 1, 4};

// Every kernel size, anchor, border and divisor on random images: the sum of
// kernel[i] * src(x - anchor + i) per channel; the widest image also in bands.
template <class S, class D>
void everyRowCase(const RowPass<S, D>& pass) {
  unsigned seed = 7;
  std::mt19937 rng(3);
  const bool u8 = std::is_same<S, vnx8u>::value, f32 = std::is_same<S, vnx32f>::value;
  std::uniform_int_distribution<int> d(u8 ? 0 : f32 ? -1000 : -32768, u8 ? 255 : f32 ? 1000 : 32767);
  std::uniform_int_distribution<int> taps(-pass.tapRange, pass.tapRange);
  for (int C : {1, 3})
    for (int k : {1, 2, 3, 4, 5, 7})
      for (const vnxiSize size : passSizes(27)) {
        if (size.width * size.height > 10000 && k != 3 && k != 5) continue;
        ++seed;
        std::vector<D> kern(k);
        for (D& v : kern) v = D(taps(rng));
        const int anchor = int(seed % k), border = int(seed % 5);
        const int divisor = f32 ? 1 : kDivisors[(k + C) % 6];  // 1 for some k at every width: the vector path
        SCOPED_TRACE(testing::Message() << "C" << C << " " << size.width << "x" << size.height << " k " << k
                                        << " anchor " << anchor << " border " << border << " divisor " << divisor);
        vt::Image<S> src(size.width, size.height, C, 5 * sizeof(S), seed % 2 ? vt::Guard::After : vt::Guard::Before);
        src.fill([&](int, int, int) { return vt::withSpecials<S>(rng, d(rng)); });
        const S bval = S(d(rng));
        std::vector<D> want;
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < size.width; ++x)
            for (int c = 0; c < C; ++c) {
              double s = 0;  // exact: integer values
              for (int i = 0; i < k; ++i) {
                const int xi = x - anchor + i;
                const double v = xi >= 0 && xi < size.width ? double(src.at(xi, y, c))
                                 : border == vnxBorderConst ? double(bval)
                                                            : double(src.at(vt::refIndex(xi, size.width, border), y, c));
                s = i == 0 ? kern[i] * v : s + kern[i] * v;  // the first product keeps its sign of zero
              }
              want.push_back(stored<D>(s, pass.low, divisor));
            }
        const RowFn<S, D> f = C == 1 ? pass.c1 : pass.c3;
        std::vector<vnx8u> buf(64);
        auto call = [&](const vt::Image<D>& dst, int step, int a, int dv, bool nullRow) {
          std::vector<D*> rows;
          for (int y = 0; y < size.height; ++y) rows.push_back(dst.row(y));
          if (nullRow) rows.back() = nullptr;
          return f(src.ptr(), step, rows.data(), size, kern.data(), k, a, border, bval, dv, buf.data());
        };
        if (size.width == 9) {  // the export checks in the shared order; nothing is written on an error
          const vt::Image<D> dst(size.width, size.height, C);
          EXPECT_EQ(call(dst, src.step(), k, divisor, false), vnxStatusBadAnchor);
          EXPECT_EQ(call(dst, size.width * C * int(sizeof(S)) - 1, anchor, divisor, false), vnxStatusBadStep);
          if (sizeof(S) > 1) { EXPECT_EQ(call(dst, src.step() + 1, anchor, divisor, false), vnxStatusStepNotMultiple); }
          if (!f32) { EXPECT_EQ(call(dst, src.step(), anchor, 0, false), vnxStatusBadArg); }
          EXPECT_EQ(call(dst, src.step(), anchor, divisor, true), vnxStatusNullPtr);
          EXPECT_EQ(dst.pixels(), std::vector<D>(dst.pixels().size()));
        }
        for (int threads : vt::threadCounts()) {
          if (threads > 1 && size.width < 400) break;
          vt::Threads guard(threads);
          vt::Image<D> dst(size.width, size.height, C, 8);
          ASSERT_EQ(call(dst, src.step(), anchor, divisor, false), vnxStatusOk);
          VT_EXPECT_SAME_SAMPLES(want, dst.pixels());
          EXPECT_TRUE(dst.canaryIntact());
        }
      }
}

TEST(RowPipeline, MatchesTheSumsSeriallyAndInBands) {
  everyRowCase<vnx8u, vnx16s>({vnxiFilterRowBorderPipeline_8u16s_C1R, vnxiFilterRowBorderPipeline_8u16s_C3R, false, 20});
  // sums beyond 16 bits, saturated
  everyRowCase<vnx8u, vnx16s>({vnxiFilterRowBorderPipeline_8u16s_C1R, vnxiFilterRowBorderPipeline_8u16s_C3R, false, 3000});
  everyRowCase<vnx16s, vnx16s>({vnxiFilterRowBorderPipeline_16s_C1R, vnxiFilterRowBorderPipeline_16s_C3R, false, 5});
  everyRowCase<vnx16s, vnx16s>(
      {vnxiFilterRowBorderPipeline_Low_16s_C1R, vnxiFilterRowBorderPipeline_Low_16s_C3R, true, 9});  // modulo 16 bits
  everyRowCase<vnx32f, vnx32f>(
      {noDivisor<vnxiFilterRowBorderPipeline_32f_C1R>, noDivisor<vnxiFilterRowBorderPipeline_32f_C3R>, false, 9});
}

// ---- column pass -------------------------------------------------------------

template <class K, class D>
using ColumnFn = vnxStatus (*)(const K* const*, D*, int, vnxiSize, const K*, int, int, vnx8u*);
template <class K, class D>
struct ColumnPass { ColumnFn<K, D> c1, c3; bool low; int tapRange; };
template <vnxStatus (*F)(const vnx16s* const*, vnx16s*, int, vnxiSize, const vnx16s*, int, vnx8u*) noexcept>
vnxStatus noDivisor(const vnx16s* const* s, vnx16s* d, int ds, vnxiSize r, const vnx16s* k, int n, int, vnx8u* b) {
  return F(s, d, ds, r, k, n, b);
}
template <vnxStatus (*F)(const vnx32f* const*, vnx32f*, int, vnxiSize, const vnx32f*, int, vnx8u*) noexcept>
vnxStatus noDivisor(const vnx32f* const* s, vnx32f* d, int ds, vnxiSize r, const vnx32f* k, int n, int, vnx8u* b) {
  return F(s, d, ds, r, k, n, b);
}

template <class K, class D>
void everyColumnCase(const ColumnPass<K, D>& pass) {
  std::mt19937 rng(17);
  const bool f32 = std::is_same<K, vnx32f>::value;
  std::uniform_int_distribution<int> d(f32 ? -2000 : -32768, f32 ? 2000 : 32767), taps(-pass.tapRange, pass.tapRange);
  for (int C : {1, 3})
    for (int k : {1, 2, 3, 4, 5, 6})
      for (vnxiSize size : passSizes(51)) {
        const int n = size.width * C, nRows = size.height + k - 1;
        vt::Image<K> in(n, nRows, 1, 0, vt::Guard::After);
        in.fill([&](int, int, int) { return vt::withSpecials<K>(rng, d(rng)); });
        std::vector<const K*> rows;
        for (int i = 0; i < nRows; ++i) rows.push_back(in.row(i));
        std::vector<K> kern(k);
        for (K& v : kern) v = K(taps(rng));
        const bool div = std::is_same<D, vnx8u>::value || std::is_same<D, vnx8s>::value;
        const int divisor = div ? kDivisors[(k + C) % 6] : 1;  // 1 for some k at every width: the vector path
        std::vector<D> want;
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < n; ++x) {
            double s = 0;
            for (int j = 0; j < k; ++j) s = j == 0 ? double(kern[j]) * in.at(x, y) : s + double(kern[j]) * in.at(x, y + j);
            want.push_back(stored<D>(s, pass.low, divisor));
          }
        vt::Image<D> out(size.width, size.height, C, 4, vt::Guard::Before);
        std::vector<vnx8u> buf(32);
        auto call = [&](D* dst, int step, int dv, vnx8u* b) {
          return (C == 1 ? pass.c1 : pass.c3)(rows.data(), dst, step, size, kern.data(), k, dv, b);
        };
        if (size.width == 9) {  // the export checks in the shared order; nothing is written on an error
          const int bytes = size.width * C * int(sizeof(D));
          EXPECT_EQ(call(nullptr, out.step(), divisor, buf.data()), vnxStatusNullPtr);
          EXPECT_EQ(call(out.ptr(), bytes - 1, divisor, nullptr), vnxStatusBadStep);
          if (sizeof(D) > 1) { EXPECT_EQ(call(out.ptr(), bytes + 1, divisor, nullptr), vnxStatusStepNotMultiple); }
          EXPECT_EQ(call(out.ptr(), out.step(), 0, nullptr), vnxStatusNullPtr);
          if (div) { EXPECT_EQ(call(out.ptr(), out.step(), 0, buf.data()), vnxStatusBadArg); }
          EXPECT_EQ(out.pixels(), std::vector<D>(out.pixels().size()));
        }
        ASSERT_EQ(call(out.ptr(), out.step(), divisor, buf.data()), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(want, out.pixels());
        EXPECT_TRUE(out.canaryIntact());
      }
}

TEST(ColumnPipeline, MatchesTheSumsAndRoundedQuotients) {
  const ColumnPass<vnx16s, vnx16s> exact{noDivisor<vnxiFilterColumnPipeline_16s_C1R>,
                                         noDivisor<vnxiFilterColumnPipeline_16s_C3R>, false, 3};
  everyColumnCase(exact);
  everyColumnCase(ColumnPass<vnx16s, vnx16s>{exact.c1, exact.c3, false, 30000});
  everyColumnCase(ColumnPass<vnx16s, vnx16s>{noDivisor<vnxiFilterColumnPipeline_Low_16s_C1R>,
                                             noDivisor<vnxiFilterColumnPipeline_Low_16s_C3R>, true, 7});
  everyColumnCase(
      ColumnPass<vnx16s, vnx8u>{vnxiFilterColumnPipeline_16s8u_C1R, vnxiFilterColumnPipeline_16s8u_C3R, false, 4});
  everyColumnCase(
      ColumnPass<vnx16s, vnx8s>{vnxiFilterColumnPipeline_16s8s_C1R, vnxiFilterColumnPipeline_16s8s_C3R, false, 4});
  everyColumnCase(ColumnPass<vnx32f, vnx32f>{noDivisor<vnxiFilterColumnPipeline_32f_C1R>,
                                             noDivisor<vnxiFilterColumnPipeline_32f_C3R>, false, 9});
}

// ---- sizes and statuses ----------------------------------------------------------

TEST(Pipeline, BufferSizesFollowTheFormulaForEachThreadCount) {
  using Q = vnxStatus (*)(vnxiSize, int, int*);
  struct Row { Q q; long long a, b; int roundTo; };  // S = a * k + b; column: a * roundUp(w, roundTo) + b
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
        for (Q q : {vnxiFilterColumnPipelineGetBufferSize_32f_C1R, vnxiFilterColumnPipelineGetBufferSize_32f_C3R}) {
          int got = -1;
          EXPECT_EQ(q(s, k, &got), vnxStatusOk);
          EXPECT_EQ(got, 32);
        }
      }
    for (const Row& r : rows) EXPECT_EQ(r.q({0, 0}, 0, nullptr), vnxStatusNullPtr);  // the shared query check
  }
}

// Sizes beyond an int are refused with nothing written; the largest that fits is reported.
TEST(Pipeline, QueriesRefuseSizesBeyondAnInt) {
  vt::Threads guard(1);
  int v = 77;
  const vnxStatus refused[] = {
      vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R({1, 600000000}, 3, &v),
      vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R({1, 1}, 20000000, &v),
      vnxiFilterColumnPipelineGetBufferSize_16s_C3R({60000000, 1}, 3, &v),
      vnxiFilterSobelHorizGetBufferSize_8u16s_C1R({79536432, 1}, 33, &v),  // 4294967928 bytes
      vnxiFilterLaplacianGetBufferSize_8u8s_C1R({65536, 65536}, 55, &v),   // 8597799860 bytes
      vnxiFilterScharrVertGetBufferSize_32f_C1R({30000000, 1}, &v),        // 84 w + ...
      vnxiFilterLowpassGetBufferSize_32f_C1R({2147483647, 1}, 55, &v),
  };
  for (std::size_t i = 0; i < sizeof refused / sizeof *refused; ++i) EXPECT_EQ(refused[i], vnxStatusBadSize) << i;
  EXPECT_EQ(v, 77);
  {
    vt::Threads eight(8);  // 8 x 300000000 bytes: fine for one thread, not for eight
    EXPECT_EQ(vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R({1, 75000000}, 3, &v), vnxStatusBadSize);
    EXPECT_EQ(v, 77);
  }
  EXPECT_EQ(vnxiFilterSobelHorizGetBufferSize_8u16s_C1R({39768192, 1}, 33, &v), vnxStatusOk);
  EXPECT_EQ(v, 54 * 39768192 + 568 + 32);
}

}  // namespace
