// Row kernels of the summed-area tables, shared by the builders and reachable
// from the kernel tests. A table row y holds the offset in column 0 and, in
// columns 1..W, the entry above plus the running sum of source row y - 1.
#pragma once

#include <cstdint>

#include "check.h"

// A table operand for the step checks: element T, of element T with `columns` entries a row.
template <class T>
ownStep ownTable(int step, std::int64_t columns) {
  return {step, columns * static_cast<std::int64_t>(sizeof(T)), static_cast<int>(sizeof(T))};
}


// Table arithmetic: 32s tables wrap, 32f tables add float(s) to the entry above
// (s is an exact integer, so only the vertical accumulation rounds), 64f squares
// add an exact integer square sum to the entry above.
inline vnx32s ownTableAdd(vnx32s above, std::uint32_t s) {
  return static_cast<vnx32s>(static_cast<std::uint32_t>(above) + s);
}
inline vnx32f ownTableAdd(vnx32f above, std::uint32_t s) {
  return static_cast<float>(static_cast<vnx32s>(s)) + above;
}
inline vnx64f ownTableAdd(vnx64f above, std::uint64_t q) { return above + static_cast<double>(q); }

// Running sums of one row: the sum wraps at 32 bits (it is exact below 8.4M
// pixels); the square sum of the 64f member is exact in 64 bits, that of the
// 32s member wraps at 32 bits.
struct ownRunning {
  std::uint32_t s;
  std::uint64_t q;
};

// Columns x0 .. n - 1 of source row `src`: out[x] = above[x] + running sums
// (out and above point at column 1 of their table rows). Q is void-free: with
// sqr == nullptr only the sum table is written.
template <class S, class Q>
inline void ownIntegralRow(const vnx8u* src, const S* above, S* out, const Q* sqrAbove, Q* sqr, int x0, int n,
                           ownRunning& run) {
  for (int x = x0; x < n; ++x) {
    run.s += src[x];
    out[x] = ownTableAdd(above[x], run.s);
    if (sqr) {
      run.q += static_cast<std::uint32_t>(src[x]) * src[x];
      if constexpr (sizeof(Q) == 4)
        sqr[x] = ownTableAdd(sqrAbove[x], static_cast<std::uint32_t>(run.q));
      else
        sqr[x] = ownTableAdd(sqrAbove[x], run.q);
    }
  }
}

// Whole blocks of sixteen pixels with the prefix sums held in registers, then the
// template for the rest.
void ownIntegralRow_sse2(const vnx8u* src, const vnx32s* above, vnx32s* out, const vnx64f* sqrAbove, vnx64f* sqr,
                         int n, ownRunning& run);
void ownIntegralRow_sse2(const vnx8u* src, const vnx32f* above, vnx32f* out, const vnx64f* sqrAbove, vnx64f* sqr,
                         int n, ownRunning& run);
void ownIntegralRow_sse2(const vnx8u* src, const vnx32s* above, vnx32s* out, const vnx32s* sqrAbove, vnx32s* sqr,
                         int n, ownRunning& run);

// Builder checks: pointers, ROI, then the source step against W and the table
// steps against `extra` + W columns (row bytes first, then multiples).
template <class S>
vnxStatus ownCheckBuilder(const vnx8u* pSrc, int srcStep, const S* pDst, int dstStep, vnxiSize roi, int extra) {
  return ownCheck({pSrc, pDst}, roi,
                  {ownImg<vnx8u>(srcStep, roi.width), ownTable<S>(dstStep, std::int64_t{roi.width} + extra)});
}
template <class S, class Q>
vnxStatus ownCheckBuilder(const vnx8u* pSrc, int srcStep, const S* pDst, int dstStep, const Q* pSqr, int sqrStep,
                          vnxiSize roi, int extra) {
  const std::int64_t cols = std::int64_t{roi.width} + extra;
  return ownCheck({pSrc, pDst, pSqr}, roi,
                  {ownImg<vnx8u>(srcStep, roi.width), ownTable<S>(dstStep, cols), ownTable<Q>(sqrStep, cols)});
}

// Rectangle deviation checks: pointers, ROI, the step group (row bytes, then
// multiples), and only then the rectangle itself.
inline vnxStatus ownCheckRectStdDev(std::initializer_list<const void*> ptrs, vnxiSize roi,
                                    std::initializer_list<ownStep> steps, vnxiRect rect) {
  if (vnxStatus st = ownCheck(ptrs, roi, steps)) return st;
  return (rect.x < 0 || rect.y < 0 || rect.width < 1 || rect.height < 1) ? vnxStatusBadSize : vnxStatusOk;
}
// The same for tables of S (sums) and Q (squares) read over `cols` columns and a
// W-wide output of D.
template <class S, class Q, class D>
vnxStatus ownCheckRectStdDev(const S* pSrc, int srcStep, const Q* pSqr, int sqrStep, const D* pDst, int dstStep,
                             vnxiSize roi, vnxiRect rect, std::int64_t cols) {
  return ownCheckRectStdDev({pSrc, pDst, pSqr}, roi,
                            {ownTable<S>(srcStep, cols), ownTable<Q>(sqrStep, cols), ownTable<D>(dstStep, roi.width)},
                            rect);
}

// Truncation toward zero of the scaled deviations, as the processor converts: a
// value outside the 32-bit range (or NaN) gives the integer indefinite INT_MIN.
inline vnx32s ownTruncToInt32(double v) {
  return (v > -2147483649.0 && v < 2147483648.0) ? static_cast<vnx32s>(v) : INT32_MIN;
}
