// Every SIMD row kernel of the arithmetic families against its scalar template,
// bit for bit, on guarded rows of every kernel shape (widths 0 to three vectors + 3
// and one large width, guard page after and before) at every byte offset 0 to 15
// that keeps the elements aligned to their size, as the exports' steps do.
#include <cmath>
#include <limits>

#include "support.h"
#include "arith/vncvabsdiff.h"
#include "arith/vncvaccum.h"
#include "arith/vncvmotionhistory.h"

namespace {

// Random samples; floats also take the special values (NaN, infinities, -0, a denormal).
template <class T>
T kernelSample(std::mt19937& rng) {
  if constexpr (std::is_floating_point<T>::value) {
    const T special[] = {std::numeric_limits<T>::quiet_NaN(), -std::numeric_limits<T>::infinity(),
                         std::numeric_limits<T>::infinity(), -0.0f, 1e-40f, 0.0f};
    if (rng() % 8 == 0) return special[rng() % 6];
  }
  return vt::randomSample<T>(rng);
}
template <class T>
void fillSpan(const vt::Span<T>& s, std::mt19937& rng) {
  for (std::size_t i = 0; i < s.size(); ++i) s[i] = kernelSample<T>(rng);
}
template <class T>
std::vector<T> copyOf(const vt::Span<T>& s) {
  return std::vector<T>(s.data(), s.data() + s.size());
}

template <class T>
void checkAbsDiffKernels() {
  std::mt19937 rng(21);
  vt::forKernelShapes(16 / sizeof(T), [&](int w, int off, vt::Guard g) {
    if (off % sizeof(T) != 0) return;
    vt::Span<T> a(w, off, g), b(w, off, g), d(w, off, g);
    fillSpan(a, rng);
    fillSpan(b, rng);
    const T c = kernelSample<T>(rng);
    for (ownStoreKind store : {ownStoreKind::Cached, ownStoreKind::Streaming}) {
      std::vector<T> ref(w, T(1)), refC(w, T(2));
      ownAbsDiffRow<ownAbsDiffOperand::Image>(a.data(), b.data(), c, ref.data(), 0, w);
      ownAbsDiffRow<ownAbsDiffOperand::Constant>(a.data(), b.data(), c, refC.data(), 0, w);
      SCOPED_TRACE(testing::Message() << "width " << w << " offset " << off << " streaming " << int(store));
      ownAbsDiffRow_sse2<ownAbsDiffOperand::Image>(a.data(), b.data(), c, d.data(), w, store);
      ownStreamFence();
      VT_EXPECT_SAME_SAMPLES(ref, copyOf(d));
      ownAbsDiffRow_sse2<ownAbsDiffOperand::Constant>(a.data(), static_cast<const T*>(nullptr), c, d.data(), w, store);
      ownStreamFence();
      VT_EXPECT_SAME_SAMPLES(refC, copyOf(d));
    }
  });
}

TEST(ArithKernels, AbsDiffRowsMatchTheirTemplate) {
  checkAbsDiffKernels<vnx8u>();
  checkAbsDiffKernels<vnx16u>();
  checkAbsDiffKernels<vnx32f>();
}

// One accumulator kernel pair on the given rows; acc is restored for the next pair.
template <ownAccOp K, ownMasking M, class S>
void compareAccKernel(const vt::Span<S>& s1, const vt::Span<S>& s2, const vt::Span<vnx8u>& m,
                      const vt::Span<float>& acc, const std::vector<float>& start, float alpha) {
  const int w = static_cast<int>(acc.size());
  std::vector<float> ref = start;
  ownAccRow<K, M>(s1.data(), s2.data(), m.data(), ref.data(), 0, w, alpha);
  std::copy(start.begin(), start.end(), acc.data());
  ownAccRow_sse2<K, M>(s1.data(), s2.data(), m.data(), acc.data(), w, alpha);
  SCOPED_TRACE(testing::Message() << "op " << int(K) << " masked " << int(M) << " width " << w);
  VT_EXPECT_SAME_SAMPLES(ref, copyOf(acc));
}
template <ownAccOp K, class S>
void compareAccKernels(const vt::Span<S>& s1, const vt::Span<S>& s2, const vt::Span<vnx8u>& m,
                       const vt::Span<float>& acc, const std::vector<float>& start, float alpha) {
  compareAccKernel<K, ownMasking::None>(s1, s2, m, acc, start, alpha);
  compareAccKernel<K, ownMasking::ByMask>(s1, s2, m, acc, start, alpha);
}

template <class S>
void checkAccKernels() {
  std::mt19937 rng(22);
  vt::forKernelShapes(16, [&](int w, int off, vt::Guard g) {
    if (off % 4 != 0) return;  // the accumulator is float
    vt::Span<S> s1(w, off, g), s2(w, off, g);
    vt::Span<vnx8u> m(w, off, g);
    vt::Span<float> acc(w, off, g);
    fillSpan(s1, rng);
    fillSpan(s2, rng);
    for (int i = 0; i < w; ++i) m[i] = (rng() % 3) ? vnx8u(0) : vnx8u(rng() % 255 + 1);
    fillSpan(acc, rng);
    const std::vector<float> start = copyOf(acc);
    const float alpha = (w % 2) ? 0.3f : -1.5f;
    if constexpr (!std::is_same<S, vnx32f>::value)  // no unmasked 32f Add
      compareAccKernel<ownAccOp::Add, ownMasking::None>(s1, s2, m, acc, start, alpha);
    compareAccKernel<ownAccOp::Add, ownMasking::ByMask>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Square>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Product>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Weighted>(s1, s2, m, acc, start, alpha);
  });
}

TEST(ArithKernels, AccumulatorRowsMatchTheirTemplate8u) { checkAccKernels<vnx8u>(); }
TEST(ArithKernels, AccumulatorRowsMatchTheirTemplate8s) { checkAccKernels<vnx8s>(); }
TEST(ArithKernels, AccumulatorRowsMatchTheirTemplate16u) { checkAccKernels<vnx16u>(); }
TEST(ArithKernels, AccumulatorRowsMatchTheirTemplate32f) { checkAccKernels<vnx32f>(); }

template <class S>
void checkMhiKernels() {
  std::mt19937 rng(23);
  vt::forKernelShapes(16, [&](int w, int off, vt::Guard g) {
    if (off % 4 != 0) return;  // the history is float
    vt::Span<S> s(w, off, g);
    vt::Span<float> h(w, off, g);
    for (int i = 0; i < w; ++i) s[i] = (rng() % 2) ? S(0) : kernelSample<S>(rng);
    const float ts = 20.0f, threshold = 17.0f;
    const float histories[] = {threshold, std::nextafter(threshold, 0.0f), 19.0f, -0.0f, std::nanf(""), ts};
    for (int i = 0; i < w; ++i) h[i] = histories[rng() % 6];
    std::vector<float> ref = copyOf(h);
    ownMhiRow(s.data(), ref.data(), 0, w, ts, threshold);
    ownMhiRow_sse2(s.data(), h.data(), w, ts, threshold);
    SCOPED_TRACE(testing::Message() << "width " << w << " offset " << off);
    VT_EXPECT_SAME_SAMPLES(ref, copyOf(h));
  });
}

TEST(ArithKernels, MotionHistoryRowsMatchTheirTemplate) {
  checkMhiKernels<vnx8u>();
  checkMhiKernels<vnx16u>();
  checkMhiKernels<vnx32f>();
}

}  // namespace
