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
