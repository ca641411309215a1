// Every SIMD row kernel of the statistics against its scalar template, bit for bit,
// on every width up to three vectors + 3 and a large one, at every byte offset, with
// the row right before (or after) a protected page; with and without a selection.
// 32f sums take samples that are multiples of 1/256 below 8 in magnitude, so every
// order of the additions gives the same double, plus NaN and infinities where a
// NaN result must stay NaN.
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "stats/vncvmean.h"
#include "support.h"

namespace {

template <class A>
bool same(A a, A b) {
  if constexpr (std::is_floating_point<A>::value)
    if (std::isnan(a) && std::isnan(b)) return true;
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A sums kernel (the sum, the squares or both) against its template, from nonzero sums.
template <int What, class Src, class Sums>
void checkSums(const Src& src, const vnx8u* sel, int n, Sums ref, const std::string& what) {
  Sums got = ref;
  ownSumsRow<What>(src, sel, 0, n, ref);
  ownSumsRow_sse2<What>(src, sel, n, got);
  EXPECT_TRUE(same(ref.sum, got.sum) && same(ref.sq, got.sq)) << what << " sums " << What;
}

// Sums (both, either), maxima from two start values and extrema of one source kind.
template <class Src>
void checkRowKernels(const Src& src, const vnx8u* sel, int n, const std::string& what) {
  using V = decltype(src.at(0));
  using Sums = ownSums<typename std::conditional<std::is_same<V, float>::value, double, std::uint64_t>::type>;
  checkSums<kOwnSum>(src, sel, n, Sums{1, 2}, what);
  checkSums<kOwnSq>(src, sel, n, Sums{1, 2}, what);
  checkSums<kOwnSum | kOwnSq>(src, sel, n, Sums{1, 2}, what);
  for (V start : {V(0), V(100)})
    EXPECT_TRUE(same(ownMaxRow(src, sel, 0, n, start), ownMaxRow_sse2(src, sel, n, start))) << what << " max";
  V mn, mx;  // the start values of the extrema: the greatest and least lane values
  if constexpr (std::is_same<V, float>::value) mn = std::numeric_limits<float>::max(), mx = -mn;
  else mn = Src::Lanes::kTop, mx = 0;
  V mn2 = mn, mx2 = mx;
  ownMinMaxRow(src, sel, 0, n, mn, mx);
  ownMinMaxRow_sse2(src, sel, n, mn2, mx2);
  EXPECT_TRUE(same(mn, mn2) && same(mx, mx2)) << what << " extrema";
}

// Plain, |s| and |s1 - s2| sources; the count of a mask row; the byte kernel, whose
// lanes carry on over a second row; 32f: the aligned kernel, the deviation pass and
// a few NaN and infinite samples in a second round.
template <class T>
void checkType() {
  constexpr bool flt = std::is_same<T, vnx32f>::value;
  using Plain = typename std::conditional<flt, ownPlainSrc32f<>, ownPlainSrc<T>>::type;
  using Abs = typename std::conditional<flt, ownAbsSrc32f, ownAbsSrc<T>>::type;
  using AbsDiff = typename std::conditional<flt, ownAbsDiffSrc32f, ownAbsDiffSrc<T>>::type;
  const float inf = std::numeric_limits<float>::infinity();
  const float specials[] = {vt::fromBits(0x7FC00001u), vt::fromBits(0xFFC00000u), vt::fromBits(0x7F800123u), inf, -inf};
  std::mt19937 rng(41);
  auto sample = [&]() { return flt ? T(float(int(rng() % 4001) - 2000) / 256) : vt::randomSample<T>(rng); };
  vt::forKernelShapes(16 / int(sizeof(T)), [&](int w, int off, vt::Guard g) {
    vt::Span<T> a(w, off, g), b(w, 15 - off, g);
    vt::Span<vnx8u> sel(w, off, g);
    for (int x = 0; x < w; ++x) a[x] = sample(), b[x] = sample(), sel[x] = rng() % 3 ? 0 : vnx8u(1 + rng() % 255);
    for (int special = 0; special < (flt ? 2 : 1); ++special) {
      if constexpr (flt)
        if (special && w)
          for (int i = 0; i < 3; ++i) a[rng() % w] = specials[rng() % 5];
      const std::string what = std::to_string(w) + " at " + std::to_string(off) + (special ? " special" : "");
      for (const vnx8u* s : {static_cast<const vnx8u*>(nullptr), static_cast<const vnx8u*>(sel.data())}) {
        checkRowKernels(Plain{a.data()}, s, w, what + " plain");
        checkRowKernels(Abs{a.data()}, s, w, what + " abs");
        checkRowKernels(AbsDiff{a.data(), b.data()}, s, w, what + " absdiff");
        if constexpr (flt) {
          if (off % 4 == 0)  // the aligned kernel peels single samples up to a 16-byte boundary
            checkSums<kOwnSum | kOwnSq>(ownPlainSrc32f<true>{a.data()}, s, w, ownFltSums{0, 0}, what + " aligned");
          double ref = 0.5, got = 0.5;
          ownDevRow(Plain{a.data()}, s, 0, w, 1.25, ref);
          ownDevRow_sse2(Plain{a.data()}, s, w, 1.25, got);
          EXPECT_TRUE(same(ref, got)) << what << " deviation";
        }
      }
    }
    int count = 0;
    for (int x = 0; x < w; ++x) count += sel[x] != 0;
    EXPECT_EQ(ownCountRow(sel.data(), w), count) << w << " at " << off;
    if constexpr (sizeof(T) == 1) {
      ownByteSums<ownPlainSrc<T>> k;
      ownIntSums ref{0, 0};
      for (const T* row : {a.data(), b.data()}) {
        k.row(ownPlainSrc<T>{row}, w);
        ownSumsRow<kOwnSum | kOwnSq>(ownPlainSrc<T>{row}, nullptr, 0, w, ref);
      }
      const ownIntSums got = k.total();
      EXPECT_TRUE(got.sum == ref.sum && got.sq == ref.sq) << w << " at " << off << " byte sums";
    }
  });
}

TEST(StatsKernels, RowKernelsMatchTheirTemplates) {
  checkType<vnx8u>(), checkType<vnx8s>(), checkType<vnx16u>(), checkType<vnx32f>();
}

}  // namespace
