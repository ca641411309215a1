// Running accumulators: the per-pixel formulas and the row kernels, shared by the
// exports of vncvaccum.cpp and the kernel tests.
#pragma once

#include <type_traits>

#include "own.h"
#include "simd.h"
#include "traits.h"

// What an accumulator adds: the source, its square, the product of two sources,
// or a weighted blend toward the source.
enum class ownAccOp { Add, Square, Product, Weighted };
// Whether a mask selects the pixels that take the term.
enum class ownMasking { None, ByMask };

// One pixel, the reference for the vector bodies and their tail. Masked forms
// keep the addition and zero the term (Add, Square, Product) or the weight
// (Weighted): an unselected -0.0 becomes +0.0, an unselected infinity under
// Weighted becomes NaN, both as the formulas say. A NaN result is the library's
// one NaN: which operand's NaN an add or multiply passes on depends on the order
// the compiler gives a commutative operation.
template <ownAccOp K, ownMasking M>
inline float ownAccPixel(float acc, float a, float b, bool sel, float alpha) {
  constexpr bool kMasked = M == ownMasking::ByMask;
  if constexpr (K == ownAccOp::Weighted) {
    return ownCanonicalNaN(acc + (a - acc) * ((kMasked && !sel) ? 0.0f : alpha));
  } else {
    const float term = K == ownAccOp::Add ? a : K == ownAccOp::Square ? a * a : a * b;
    return ownCanonicalNaN(acc + ((kMasked && !sel) ? 0.0f : term));
  }
}

// The same, four lanes at a time; `off` is all-ones in the lanes of unselected pixels,
// and dropping a lane there gives +0.0 exactly. A NaN lane is left as the arithmetic
// gives it: the row kernel settles it.
template <ownAccOp K, ownMasking M>
inline __m128 ownAccLanes(__m128 acc, __m128 a, __m128 b, __m128 off, __m128 alpha) {
  constexpr bool kMasked = M == ownMasking::ByMask;
  if constexpr (K == ownAccOp::Weighted) {
    return ownBlendPs(acc, a, kMasked ? ownDropPs(off, alpha) : alpha);
  } else {
    const __m128 term = K == ownAccOp::Add ? a : K == ownAccOp::Square ? ownMulPs(a, a) : ownMulPs(a, b);
    return ownAddTermPs(acc, kMasked ? ownDropPs(off, term) : term);
  }
}

// Pixels x0 .. n - 1 of one row. s2 is read only by Product, m only ByMask.
template <ownAccOp K, ownMasking M, class S>
void ownAccRow(const S* s1, const S* s2, const vnx8u* m, float* acc, int x0, int n, float alpha) {
  constexpr bool kMasked = M == ownMasking::ByMask;
  for (int x = x0; x < n; ++x)
    acc[x] = ownAccPixel<K, M>(acc[x], static_cast<float>(s1[x]),
                               K == ownAccOp::Product ? static_cast<float>(s2[x]) : 0.0f, kMasked && m[x] != 0,
                               alpha);
}

// Blocks of sixteen pixels, then the template for the rest. Each accumulator
// element is read and written once, so no block overlaps another.
template <ownAccOp K, ownMasking M, class S>
void ownAccRow_sse2(const S* s1, const S* s2, const vnx8u* m, float* acc, int n, float alpha) {
  // Masked Add, Square and Product of integer sources clear the unselected samples
  // before widening: a zero sample gives the term +0.0, exactly what the formula
  // adds there, and no per-lane selector is needed. Weighted and 32f sources select.
  constexpr bool kPremask = M == ownMasking::ByMask && K != ownAccOp::Weighted && !std::is_same<S, vnx32f>::value;
  constexpr ownMasking kSelect = (M == ownMasking::ByMask && !kPremask) ? ownMasking::ByMask : ownMasking::None;
  constexpr bool kTwo = K == ownAccOp::Product;
  const __m128 va = ownSplatPs(alpha);
  ownNaNWatch nan;
  int x = 0;
  // Two blocks an iteration: the loop's own counting is shared by 32 pixels.
#pragma GCC unroll 2
  for (; x + 16 <= n; x += 16) {
    __m128 a[4], b[4], off[4];
    if constexpr (kPremask) {
      ownLoad16fSelected(s1 + x, m + x, a);
      if constexpr (kTwo) ownLoad16fSelected(s2 + x, m + x, b);
    } else {
      ownLoad16f(s1 + x, a);
      if constexpr (kTwo) ownLoad16f(s2 + x, b);
    }
    if constexpr (kSelect == ownMasking::ByMask) ownMaskOffTo32(ownLoad(m + x), off);
    // All loads before the first store: the stores cannot alias what is still to be read.
    __m128 v[4];
    for (int i = 0; i < 4; ++i) v[i] = ownLoadPs(acc + x + 4 * i);
    for (int i = 0; i < 4; ++i)
      v[i] = ownAccLanes<K, kSelect>(v[i], a[i], kTwo ? b[i] : a[i], kSelect == ownMasking::ByMask ? off[i] : a[i],
                                     va);
    for (int i = 0; i < 4; ++i) ownStorePs(acc + x + 4 * i, v[i]);
    nan.note(v[0], v[1]);
    nan.note(v[2], v[3]);
  }
  nan.settle(acc, x);
  ownAccRow<K, M>(s1, s2, m, acc, x, n, alpha);
}

// The source operands of one accumulator call, made by name:
//   ownOneSource(p, step), ownTwoSources(p1, step1, p2, step2), then .masked(mask, step).
template <class S, ownMasking M>
struct ownAccSources {
  const S* s1;
  int s1Step;
  const S* s2;  // Product only
  int s2Step;
  const vnx8u* mask;  // ByMask only
  int maskStep;
  ownAccSources<S, ownMasking::ByMask> masked(const vnx8u* m, int step) const {
    return {s1, s1Step, s2, s2Step, m, step};
  }
};
template <class S>
ownAccSources<S, ownMasking::None> ownOneSource(const S* p, int step) {
  return {p, step, nullptr, 0, nullptr, 0};
}
template <class S>
ownAccSources<S, ownMasking::None> ownTwoSources(const S* p1, int step1, const S* p2, int step2) {
  return {p1, step1, p2, step2, nullptr, 0};
}
