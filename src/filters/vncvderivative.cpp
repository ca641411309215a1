// The fixed kernels' band dispatch (each member's taps) and the entry point that other
// families call; see vncvderivative.h.
#include "filters/vncvderivative.h"

#include <type_traits>

namespace {

using ownBand32fFn = void (*)(const ownJob32f&, void*, int, int);

template <class D>
using ownBand8uFn = void (*)(const ownJob8u<D>&, void*, int, int);
template <class D>
struct ownMake8u {
  template <class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
  static constexpr ownBand8uFn<D> band = ownBand8u<D, C1, R1, C2, R2>;
};
struct ownMake32f {
  template <class C1, class R1, class C2 = ownNoTaps, class R2 = ownNoTaps>
  static constexpr ownBand32fFn band = ownBand32f<C1, R1, C2, R2>;
};

// The band kernel of each member, column taps top to bottom, row taps left to right:
//   SobelHoriz        column (1 0 -1)      row (1 2 1)      5x5: (1 2 0 -2 -1), (1 4 6 4 1)
//   SobelVert         column (1 2 1)       row (-1 0 1)     5x5: (1 4 6 4 1), (-1 -2 0 2 1)
//   SobelNegVert      column (1 2 1)       row (1 0 -1)     5x5: (1 4 6 4 1), (1 2 0 -2 -1)
//                     (32f: SobelVert times -1, so zeros take the sign of the negation)
//   SobelHorizSecond  column (1 -2 1)      row (1 2 1)      5x5: (1 0 -2 0 1), (1 4 6 4 1)
//   SobelVertSecond   column (1 2 1)       row (1 -2 1)     5x5: (1 4 6 4 1), (1 0 -2 0 1)
//   SobelCross        column (1 0 -1)      row (-1 0 1)     5x5: (1 2 0 -2 -1), (-1 -2 0 2 1)
//   ScharrHoriz       column (1 0 -1)      row (3 10 3)
//   ScharrVert        column (3 10 3)      row (-1 0 1)
//   Laplacian         SobelHorizSecond + SobelVertSecond: 2 0 2 / 0 -8 0 / 2 0 2 for 3x3,
//                     which the 8u members take as column (2 0 2) x row (1 0 1) plus
//                     column (0 -8 0) x row (0 1 0) (one row pass instead of two)
//   Lowpass           ones
template <class M>
auto ownPickBand(ownFixedKernel kind, int k) {
  using D3 = ownTaps<-1, 0, 1>;
  using N3 = ownTaps<1, 0, -1>;
  using S3 = ownTaps<1, 2, 1>;
  using L3 = ownTaps<1, -2, 1>;
  using D5 = ownTaps<-1, -2, 0, 2, 1>;
  using N5 = ownTaps<1, 2, 0, -2, -1>;
  using S5 = ownTaps<1, 4, 6, 4, 1>;
  using L5 = ownTaps<1, 0, -2, 0, 1>;
  const bool five = k == 5;
  switch (kind) {
    case ownFixedKernel::SobelHoriz: return five ? M::template band<N5, S5> : M::template band<N3, S3>;
    case ownFixedKernel::SobelVert: return five ? M::template band<S5, D5> : M::template band<S3, D3>;
    case ownFixedKernel::SobelNegVert:  // 32f: SobelVert, its result negated (ownFixedScale32f)
      if constexpr (std::is_same<M, ownMake32f>::value)
        return five ? M::template band<S5, D5> : M::template band<S3, D3>;
      else
        return five ? M::template band<S5, N5> : M::template band<S3, N3>;
    case ownFixedKernel::SobelHorizSecond: return five ? M::template band<L5, S5> : M::template band<L3, S3>;
    case ownFixedKernel::SobelVertSecond: return five ? M::template band<S5, L5> : M::template band<S3, L3>;
    case ownFixedKernel::SobelCross: return five ? M::template band<N5, D5> : M::template band<N3, D3>;
    case ownFixedKernel::ScharrHoriz: return M::template band<N3, ownTaps<3, 10, 3>>;
    case ownFixedKernel::ScharrVert: return M::template band<ownTaps<3, 10, 3>, D3>;
    case ownFixedKernel::Laplacian:
      if (five) return M::template band<L5, S5, S5, L5>;
      if constexpr (std::is_same<M, ownMake32f>::value)
        return M::template band<L3, S3, S3, L3>;
      else
        return M::template band<ownTaps<2, 0, 2>, ownTaps<1, 0, 1>, ownTaps<0, -8, 0>, ownTaps<0, 1, 0>>;
    default:
      return five ? M::template band<ownTaps<1, 1, 1, 1, 1>, ownTaps<1, 1, 1, 1, 1>>
                  : M::template band<ownTaps<1, 1, 1>, ownTaps<1, 1, 1>>;
  }
}


inline void* ownAligned32(void* p) {
  return reinterpret_cast<void*>((reinterpret_cast<std::uintptr_t>(p) + 31) & ~static_cast<std::uintptr_t>(31));
}

}  // namespace

void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx16s>& job, void* scratch, int y0, int y1) {
  ownPickBand<ownMake8u<vnx16s>>(kernel, k)(job, ownAligned32(scratch), y0, y1);
}
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx8s>& job, void* scratch, int y0, int y1) {
  ownPickBand<ownMake8u<vnx8s>>(kernel, k)(job, ownAligned32(scratch), y0, y1);
}
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx8u>& job, void* scratch, int y0, int y1) {
  ownPickBand<ownMake8u<vnx8u>>(kernel, k)(job, ownAligned32(scratch), y0, y1);
}
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob32f& job, void* scratch, int y0, int y1) {
  ownPickBand<ownMake32f>(kernel, k)(job, ownAligned32(scratch), y0, y1);
}

void ownDerivativeRows(ownFixedKernel kernel, int k, const vnx8u* src, int srcStep, vnx16s* dst, int dstStep,
                       vnxiSize roi, ownBorder rule, vnx8u value, int y0, int y1, void* scratch) {
  const ownJob8u<vnx16s> job{src, srcStep, dst, dstStep, roi, rule, value, 1,
                             ownFixedStride(roi.width, ownFixedOutput::To16s, kernel)};
  ownFixedRows(kernel, k, job, scratch, y0, y1);
}
void ownDerivativeRows(ownFixedKernel kernel, int k, const vnx32f* src, int srcStep, vnx32f* dst, int dstStep,
                       vnxiSize roi, ownBorder rule, vnx32f value, int y0, int y1, void* scratch) {
  const ownJob32f job{src, srcStep, dst, dstStep, roi, rule, value, ownFixedScale32f(kernel, k),
                      ownFixedStride(roi.width, ownFixedOutput::To32f, kernel)};
  ownFixedRows(kernel, k, job, scratch, y0, y1);
}

// ---- Scharr gradients of small patches (see vncvderivative.h) ----
namespace {

using ownScharrSmooth = ownTaps<3, 10, 3>;

// One pixel at offset o: the reference and the tail of the vector bodies.
template <class P>
void ownScharrPatchAt(const P* p, int side, std::int64_t o, P* dx, P* dy) {
  using A = typename std::conditional<std::is_same<P, vnx16s>::value, int, float>::type;
  constexpr A t0 = ownScharrSmooth::tap[0], t1 = ownScharrSmooth::tap[1], t2 = ownScharrSmooth::tap[2];
  auto at = [&](int ox, int oy) { return static_cast<A>(p[o + std::int64_t{oy} * side + ox]); };
  const A gx = t0 * (at(1, -1) - at(-1, -1)) + t1 * (at(1, 0) - at(-1, 0)) + t2 * (at(1, 1) - at(-1, 1));
  const A gy = t0 * (at(-1, 1) - at(-1, -1)) + t1 * (at(0, 1) - at(0, -1)) + t2 * (at(1, 1) - at(1, -1));
  if constexpr (std::is_same<P, vnx16s>::value) {
    dx[o] = static_cast<vnx16s>((gx + 16) >> 5);  // |gx| <= 32 * 65535: 32 bits hold it
    dy[o] = static_cast<vnx16s>((gy + 16) >> 5);
  } else {
    dx[o] = gx * 0.03125f;
    dy[o] = gy * 0.03125f;
  }
}

// Eight 16s pixels: each difference times its tap as one pair of a multiply-add.
inline void ownScharrPatchVec(const vnx16s* p, int side, std::int64_t o, vnx16s* dx, vnx16s* dy) {
  const vnx16s *up = p + o - side, *mid = p + o, *dn = p + o + side;
  const __m128i k0 = ownTapPair16(ownScharrSmooth::tap[0], -ownScharrSmooth::tap[0]);
  const __m128i k1 = ownTapPair16(ownScharrSmooth::tap[1], -ownScharrSmooth::tap[1]);
  const __m128i k2 = ownTapPair16(ownScharrSmooth::tap[2], -ownScharrSmooth::tap[2]);
  __m128i xl = _mm_setzero_si128(), xh = xl, yl = xl, yh = xl;
  ownMulAddPairs16(ownLoad(up + 1), ownLoad(up - 1), k0, xl, xh);
  ownMulAddPairs16(ownLoad(mid + 1), ownLoad(mid - 1), k1, xl, xh);
  ownMulAddPairs16(ownLoad(dn + 1), ownLoad(dn - 1), k2, xl, xh);
  ownMulAddPairs16(ownLoad(dn - 1), ownLoad(up - 1), k0, yl, yh);
  ownMulAddPairs16(ownLoad(dn), ownLoad(up), k1, yl, yh);
  ownMulAddPairs16(ownLoad(dn + 1), ownLoad(up + 1), k2, yl, yh);
  const __m128i half = _mm_set1_epi32(16);
  auto round = [&](__m128i v) { return _mm_srai_epi32(_mm_add_epi32(v, half), 5); };
  ownStorePacked(dx + o, round(xl), round(xh));
  ownStorePacked(dy + o, round(yl), round(yh));
}
// Four float pixels: the differences, then the taps in their order.
inline void ownScharrPatchVec(const vnx32f* p, int side, std::int64_t o, vnx32f* dx, vnx32f* dy) {
  const vnx32f *up = p + o - side, *mid = p + o, *dn = p + o + side;
  const __m128 hx[3] = {_mm_sub_ps(ownLoadPs(up + 1), ownLoadPs(up - 1)),
                        _mm_sub_ps(ownLoadPs(mid + 1), ownLoadPs(mid - 1)),
                        _mm_sub_ps(ownLoadPs(dn + 1), ownLoadPs(dn - 1))};
  const __m128 vy[3] = {_mm_sub_ps(ownLoadPs(dn - 1), ownLoadPs(up - 1)), _mm_sub_ps(ownLoadPs(dn), ownLoadPs(up)),
                        _mm_sub_ps(ownLoadPs(dn + 1), ownLoadPs(up + 1))};
  const __m128 scale = _mm_set1_ps(0.03125f);
  ownStorePs(dx + o, _mm_mul_ps(ownScharrSmooth::dotf(hx), scale));
  ownStorePs(dy + o, _mm_mul_ps(ownScharrSmooth::dotf(vy), scale));
}

// Whole vectors along each row, the last one ending at x1 (it redoes a few pixels
// with the same values); rows narrower than a vector pixel by pixel.
template <class P>
void ownScharrPatchRows(const P* p, int side, int x0, int y0, int x1, int y1, P* dx, P* dy) {
  constexpr int lanes = 16 / sizeof(P);
  for (int y = y0; y <= y1; ++y) {
    const std::int64_t row = std::int64_t{y} * side;
    if (x1 - x0 + 1 < lanes) {
      for (int x = x0; x <= x1; ++x) ownScharrPatchAt(p, side, row + x, dx, dy);
      continue;
    }
    for (int x = x0; x + lanes - 1 < x1; x += lanes) ownScharrPatchVec(p, side, row + x, dx, dy);
    ownScharrPatchVec(p, side, row + x1 - lanes + 1, dx, dy);
  }
}

}  // namespace

void ownScharrPatch(const vnx16s* p, int side, int x0, int y0, int x1, int y1, vnx16s* dx, vnx16s* dy) {
  ownScharrPatchRows(p, side, x0, y0, x1, y1, dx, dy);
}
void ownScharrPatch(const vnx32f* p, int side, int x0, int y0, int x1, int y1, vnx32f* dx, vnx32f* dy) {
  ownScharrPatchRows(p, side, x0, y0, x1, y1, dx, dy);
}
