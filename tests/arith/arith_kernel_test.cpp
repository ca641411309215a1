// Every SIMD row kernel of the arithmetic families against its scalar template, bit
// for bit, on guarded rows of every kernel shape, at the byte offsets that keep the
// elements aligned to their size (as the exports' steps do); floats take special values.
#include <cmath>

#include "support.h"
#include "arith/vncvabsdiff.h"
#include "arith/vncvaccum.h"
#include "arith/vncvmotionhistory.h"

namespace {

template <class T>
void fillSpan(const vt::Span<T>& s, std::mt19937& rng) {
  for (std::size_t i = 0; i < s.size(); ++i) s[i] = vt::randomSampleOrSpecial<T>(rng);
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
    const T c = vt::randomSampleOrSpecial<T>(rng);
    for (ownStoreKind store : {ownStoreKind::Cached, ownStoreKind::Streaming}) {
      SCOPED_TRACE(testing::Message() << "width " << w << " offset " << off << " streaming " << int(store));
      std::vector<T> ref(w, T(1)), refC(w, T(2));
      ownAbsDiffRow<ownAbsDiffOperand::Image>(a.data(), b.data(), c, ref.data(), 0, w);
      ownAbsDiffRow<ownAbsDiffOperand::Constant>(a.data(), b.data(), c, refC.data(), 0, w);
      ownAbsDiffRow_sse2<ownAbsDiffOperand::Image>(a.data(), b.data(), c, d.data(), w, store);
      ownStreamFence();
      VT_EXPECT_SAME_SAMPLES(ref, copyOf(d));
      ownAbsDiffRow_sse2<ownAbsDiffOperand::Constant>(a.data(), static_cast<const T*>(nullptr), c, d.data(), w, store);
      ownStreamFence();
      VT_EXPECT_SAME_SAMPLES(refC, copyOf(d));
    }
  });
}

// One accumulator kernel pair, masked and not, from the same start values.
template <ownAccOp K, class S>
void compareAccKernels(const vt::Span<S>& s1, const vt::Span<S>& s2, const vt::Span<vnx8u>& m,
                       const vt::Span<float>& acc, const std::vector<float>& start, float alpha) {
  const int w = static_cast<int>(acc.size());
  auto compare = [&](auto masking) {
    constexpr ownMasking M = decltype(masking)::value;
    std::vector<float> ref = start;
    ownAccRow<K, M>(s1.data(), s2.data(), m.data(), ref.data(), 0, w, alpha);
    std::copy(start.begin(), start.end(), acc.data());
    ownAccRow_sse2<K, M>(s1.data(), s2.data(), m.data(), acc.data(), w, alpha);
    SCOPED_TRACE(testing::Message() << "op " << int(K) << " masked " << int(M) << " width " << w);
    VT_EXPECT_SAME_SAMPLES(ref, copyOf(acc));
  };
  if constexpr (K != ownAccOp::Add || !std::is_same<S, vnx32f>::value)  // no unmasked 32f Add
    compare(std::integral_constant<ownMasking, ownMasking::None>());
  compare(std::integral_constant<ownMasking, ownMasking::ByMask>());
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
    fillSpan(acc, rng);
    for (int i = 0; i < w; ++i) m[i] = (rng() % 3) ? vnx8u(0) : vnx8u(rng() % 255 + 1);
    const std::vector<float> start = copyOf(acc);
    const float alpha = (w % 2) ? 0.3f : -1.5f;
    compareAccKernels<ownAccOp::Add>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Square>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Product>(s1, s2, m, acc, start, alpha);
    compareAccKernels<ownAccOp::Weighted>(s1, s2, m, acc, start, alpha);
  });
}

// Histories at the threshold, just below it, above it, -0, NaN and the timestamp.
template <class S>
void checkMhiKernels() {
  std::mt19937 rng(23);
  vt::forKernelShapes(16, [&](int w, int off, vt::Guard g) {
    if (off % 4 != 0) return;  // the history is float
    vt::Span<S> s(w, off, g);
    vt::Span<float> h(w, off, g);
    const float ts = 20.0f, threshold = 17.0f;
    const float histories[] = {threshold, std::nextafter(threshold, 0.0f), 19.0f, -0.0f, std::nanf(""), ts};
    for (int i = 0; i < w; ++i) s[i] = (rng() % 2) ? S(0) : vt::randomSampleOrSpecial<S>(rng), h[i] = histories[rng() % 6];
    std::vector<float> ref = copyOf(h);
    ownMhiRow(s.data(), ref.data(), 0, w, ts, threshold);
    ownMhiRow_sse2(s.data(), h.data(), w, ts, threshold);
    SCOPED_TRACE(testing::Message() << "width " << w << " offset " << off);
    VT_EXPECT_SAME_SAMPLES(ref, copyOf(h));
  });
}

TEST(ArithKernels, AbsDiffAndMotionHistoryRowsMatchTheirTemplates) {
  checkAbsDiffKernels<vnx8u>();
  checkAbsDiffKernels<vnx16u>();
  checkAbsDiffKernels<vnx32f>();
  checkMhiKernels<vnx8u>();
  checkMhiKernels<vnx16u>();
  checkMhiKernels<vnx32f>();
}
TEST(ArithKernels, AccumulatorRowsMatchTheirTemplates) {
  checkAccKernels<vnx8u>();
  checkAccKernels<vnx8s>();
  checkAccKernels<vnx16u>();
  checkAccKernels<vnx32f>();
}

}  // namespace
