// Accumulators against references written from their formulas, on guard-page
// images with canary padding, plus their check order.
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "support.h"

namespace {

enum class Kind { Add, Square, Product, Weighted };

// Arguments of every accumulator member; the ones a member lacks are ignored.
struct AccArgs {
  const void* s1;
  int s1Step;
  const void* s2;
  int s2Step;
  const vnx8u* mask;
  int maskStep;
  vnx32f* acc;
  int accStep;
  vnxiSize roi;
  float alpha;
};

// One exported member, called through one signature whatever its own.
template <class S>
struct AccMember {
  std::string name;
  Kind kind;
  bool masked;
  std::function<vnxStatus(const AccArgs&)> call;

  AccMember(const char* n, Kind k, vnxStatus (*f)(const S*, int, vnx32f*, int, vnxiSize))
      : name(n), kind(k), masked(false), call([f](const AccArgs& a) {
          return f(static_cast<const S*>(a.s1), a.s1Step, a.acc, a.accStep, a.roi);
        }) {}
  // Masked Add and Square, and unmasked Product, share this shape (for 8u the very
  // same type): the second image is the mask or the second source by the kind.
  template <class X>
  AccMember(const char* n, Kind k, vnxStatus (*f)(const S*, int, const X*, int, vnx32f*, int, vnxiSize))
      : name(n), kind(k), masked(k != Kind::Product), call([f, k](const AccArgs& a) {
          const bool product = k == Kind::Product;
          return f(static_cast<const S*>(a.s1), a.s1Step, static_cast<const X*>(product ? a.s2 : a.mask),
                   product ? a.s2Step : a.maskStep, a.acc, a.accStep, a.roi);
        }) {}
  AccMember(const char* n, Kind k,
            vnxStatus (*f)(const S*, int, const S*, int, const vnx8u*, int, vnx32f*, int, vnxiSize))
      : name(n), kind(k), masked(true), call([f](const AccArgs& a) {
          return f(static_cast<const S*>(a.s1), a.s1Step, static_cast<const S*>(a.s2), a.s2Step, a.mask,
                   a.maskStep, a.acc, a.accStep, a.roi);
        }) {}
  AccMember(const char* n, Kind k, vnxStatus (*f)(const S*, int, vnx32f*, int, vnxiSize, vnx32f))
      : name(n), kind(k), masked(false), call([f](const AccArgs& a) {
          return f(static_cast<const S*>(a.s1), a.s1Step, a.acc, a.accStep, a.roi, a.alpha);
        }) {}
  AccMember(const char* n, Kind k, vnxStatus (*f)(const S*, int, const vnx8u*, int, vnx32f*, int, vnxiSize, vnx32f))
      : name(n), kind(k), masked(true), call([f](const AccArgs& a) {
          return f(static_cast<const S*>(a.s1), a.s1Step, a.mask, a.maskStep, a.acc, a.accStep, a.roi, a.alpha);
        }) {}
};

template <class S>
std::vector<AccMember<S>> accMembers();

template <>
std::vector<AccMember<vnx8u>> accMembers() {
  return {{"Add_8u32f_C1IR", Kind::Add, vnxiAdd_8u32f_C1IR},
          {"Add_8u32f_C1IMR", Kind::Add, vnxiAdd_8u32f_C1IMR},
          {"AddSquare_8u32f_C1IR", Kind::Square, vnxiAddSquare_8u32f_C1IR},
          {"AddSquare_8u32f_C1IMR", Kind::Square, vnxiAddSquare_8u32f_C1IMR},
          {"AddProduct_8u32f_C1IR", Kind::Product, vnxiAddProduct_8u32f_C1IR},
          {"AddProduct_8u32f_C1IMR", Kind::Product, vnxiAddProduct_8u32f_C1IMR},
          {"AddWeighted_8u32f_C1IR", Kind::Weighted, vnxiAddWeighted_8u32f_C1IR},
          {"AddWeighted_8u32f_C1IMR", Kind::Weighted, vnxiAddWeighted_8u32f_C1IMR}};
}
template <>
std::vector<AccMember<vnx8s>> accMembers() {
  return {{"Add_8s32f_C1IR", Kind::Add, vnxiAdd_8s32f_C1IR},
          {"Add_8s32f_C1IMR", Kind::Add, vnxiAdd_8s32f_C1IMR},
          {"AddSquare_8s32f_C1IR", Kind::Square, vnxiAddSquare_8s32f_C1IR},
          {"AddSquare_8s32f_C1IMR", Kind::Square, vnxiAddSquare_8s32f_C1IMR},
          {"AddProduct_8s32f_C1IR", Kind::Product, vnxiAddProduct_8s32f_C1IR},
          {"AddProduct_8s32f_C1IMR", Kind::Product, vnxiAddProduct_8s32f_C1IMR},
          {"AddWeighted_8s32f_C1IR", Kind::Weighted, vnxiAddWeighted_8s32f_C1IR},
          {"AddWeighted_8s32f_C1IMR", Kind::Weighted, vnxiAddWeighted_8s32f_C1IMR}};
}
template <>
std::vector<AccMember<vnx16u>> accMembers() {
  return {{"Add_16u32f_C1IR", Kind::Add, vnxiAdd_16u32f_C1IR},
          {"Add_16u32f_C1IMR", Kind::Add, vnxiAdd_16u32f_C1IMR},
          {"AddSquare_16u32f_C1IR", Kind::Square, vnxiAddSquare_16u32f_C1IR},
          {"AddSquare_16u32f_C1IMR", Kind::Square, vnxiAddSquare_16u32f_C1IMR},
          {"AddProduct_16u32f_C1IR", Kind::Product, vnxiAddProduct_16u32f_C1IR},
          {"AddProduct_16u32f_C1IMR", Kind::Product, vnxiAddProduct_16u32f_C1IMR},
          {"AddWeighted_16u32f_C1IR", Kind::Weighted, vnxiAddWeighted_16u32f_C1IR},
          {"AddWeighted_16u32f_C1IMR", Kind::Weighted, vnxiAddWeighted_16u32f_C1IMR}};
}
template <>
std::vector<AccMember<vnx32f>> accMembers() {
  return {{"Add_32f_C1IMR", Kind::Add, vnxiAdd_32f_C1IMR},
          {"AddSquare_32f_C1IR", Kind::Square, vnxiAddSquare_32f_C1IR},
          {"AddSquare_32f_C1IMR", Kind::Square, vnxiAddSquare_32f_C1IMR},
          {"AddProduct_32f_C1IR", Kind::Product, vnxiAddProduct_32f_C1IR},
          {"AddProduct_32f_C1IMR", Kind::Product, vnxiAddProduct_32f_C1IMR},
          {"AddWeighted_32f_C1IR", Kind::Weighted, vnxiAddWeighted_32f_C1IR},
          {"AddWeighted_32f_C1IMR", Kind::Weighted, vnxiAddWeighted_32f_C1IMR}};
}

// The formulas, one pixel at a time: the term (or the weight) is zero where the
// mask byte is zero, and the addition always happens.
float refAccumulate(Kind k, bool masked, float acc, float a, float b, vnx8u m, float alpha) {
  const bool sel = !masked || m != 0;
  switch (k) {
    case Kind::Add: return acc + (sel ? a : 0.0f);
    case Kind::Square: {
      const float sq = a * a;
      return acc + (sel ? sq : 0.0f);
    }
    case Kind::Product: {
      const float p = a * b;
      return acc + (sel ? p : 0.0f);
    }
    case Kind::Weighted: {
      const float diff = a - acc;
      const float scaled = diff * (sel ? alpha : 0.0f);
      return acc + scaled;
    }
  }
  return 0;
}

// Sizes from one pixel to a few vectors plus a tail, a tall one and a large one.
const vnxiSize kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {15, 3}, {16, 2}, {17, 5}, {33, 7}, {51, 4}, {64, 1}, {333, 67}};

template <class S>
void checkAccumulators() {
  std::mt19937 rng(7);
  for (const AccMember<S>& mem : accMembers<S>())
    for (vnxiSize sz : kSizes)
      for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before}) {
        SCOPED_TRACE(mem.name + " " + std::to_string(sz.width) + "x" + std::to_string(sz.height));
        vt::Image<S> s1(sz.width, sz.height, 1, 3 * sizeof(S), guard), s2(sz.width, sz.height, 1, 5 * sizeof(S), guard);
        vt::Image<vnx8u> mask(sz.width, sz.height, 1, 1, guard);
        vt::Image<vnx32f> acc(sz.width, sz.height, 1, 8, guard);
        vt::fillRandom(s1, rng);
        vt::fillRandom(s2, rng);
        mask.fill([&](int, int, int) { return (rng() % 3) ? 0 : int(rng() % 255) + 1; });
        vt::fillRandom(acc, rng);
        const float alpha = 0.3f;
        std::vector<float> expected = acc.pixels();
        for (int y = 0, i = 0; y < sz.height; ++y)
          for (int x = 0; x < sz.width; ++x, ++i)
            expected[i] = refAccumulate(mem.kind, mem.masked, expected[i], float(s1.at(x, y)), float(s2.at(x, y)),
                                        mask.at(x, y), alpha);
        const AccArgs args{s1.ptr(), s1.step(), s2.ptr(), s2.step(), mask.ptr(), mask.step(), acc.ptr(), acc.step(),
                           sz, alpha};
        ASSERT_EQ(mem.call(args), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(expected, acc.pixels());
        EXPECT_TRUE(acc.canaryIntact() && s1.canaryIntact() && mask.canaryIntact());
      }
}

TEST(Accumulate, EveryMemberMatchesItsFormula8u) { checkAccumulators<vnx8u>(); }
TEST(Accumulate, EveryMemberMatchesItsFormula8s) { checkAccumulators<vnx8s>(); }
TEST(Accumulate, EveryMemberMatchesItsFormula16u) { checkAccumulators<vnx16u>(); }
TEST(Accumulate, EveryMemberMatchesItsFormula32f) { checkAccumulators<vnx32f>(); }

// Values where the single-precision rules show: rounding of the 16u square,
// infinities under a zero weight, -0.0 under a zero term.
TEST(Accumulate, SinglePrecisionCornerCases) {
  const float inf = std::numeric_limits<float>::infinity();
  const vnxiSize one{1, 1};
  {
    vnx16u s = 65535;
    vnx32f acc = 0;
    ASSERT_EQ(vnxiAddSquare_16u32f_C1IR(&s, 2, &acc, 4, one), vnxStatusOk);
    EXPECT_EQ(acc, 4294836224.0f);
  }
  {
    vnx8u s[16] = {}, m[16] = {};
    vnx32f acc[16];
    for (vnx32f& a : acc) a = inf;
    ASSERT_EQ(vnxiAddWeighted_8u32f_C1IMR(s, 16, m, 16, acc, 64, {16, 1}, 0.5f), vnxStatusOk);
    for (vnx32f a : acc) EXPECT_EQ(vt::bits(a), 0xFFC00000u);  // the library's one NaN
  }
  {
    vnx8u s[17], m[17] = {};
    vnx32f acc[17];
    for (int i = 0; i < 17; ++i) s[i] = 9, acc[i] = -0.0f;
    ASSERT_EQ(vnxiAdd_8u32f_C1IMR(s, 17, m, 17, acc, 68, {17, 1}), vnxStatusOk);
    for (vnx32f a : acc) EXPECT_EQ(vt::bits(a), 0u);
  }
  {
    // NaNs of either sign in the source, the second source or the accumulator give the one NaN
    const float nan = std::nanf(""), nans[4] = {nan, -nan, 1.0f, 2.0f};
    vnx32f s[4] = {1.0f, 1.0f, -nan, nan}, acc[4] = {-nan, nan, nan, -nan};
    ASSERT_EQ(vnxiAddProduct_32f_C1IR(s, 16, nans, 16, acc, 16, {4, 1}), vnxStatusOk);
    for (vnx32f a : acc) EXPECT_EQ(vt::bits(a), 0xFFC00000u);
  }
  {
    vnx32f s = 0.1f, acc = 1e-3f;
    ASSERT_EQ(vnxiAddWeighted_32f_C1IR(&s, 4, &acc, 4, one, 1.0f), vnxStatusOk);
    EXPECT_EQ(vt::bits(acc), vt::bits(1e-3f + (0.1f - 1e-3f)));
  }
}

// Check order. A base call that succeeds, then one fault (or two) at a time; on an
// error the accumulator keeps its values.
enum class Applies { All, Masked, Product };
struct Fault {
  const char* what;
  std::function<void(AccArgs&)> apply;
  vnxStatus for8u, for16u, for32f;  // expected by source type (8s as 8u)
  Applies applies = Applies::All;
};

template <class S>
void checkAccStatuses(vnxStatus Fault::*expected) {
  const int w = 8;
  std::vector<S> s1(64), s2(64);
  std::vector<vnx8u> mask(64, 1);
  std::vector<vnx32f> acc(64);
  const int sb = int(sizeof(S)) * w;
  const std::vector<Fault> faults = {
      {"null source", [](AccArgs& a) { a.s1 = nullptr; }, -8, -8, -8},
      {"null accumulator and zero width", [](AccArgs& a) { a.acc = nullptr, a.roi.width = 0; }, -8, -8, -8},
      {"zero width", [](AccArgs& a) { a.roi.width = 0; }, -6, -6, -6},
      {"negative height", [](AccArgs& a) { a.roi.height = -1; }, -6, -6, -6},
      {"source step short", [&](AccArgs& a) { a.s1Step = sb - 1; }, -14, -14, -14},
      {"accumulator step short", [](AccArgs& a) { a.accStep = 4 * w - 4; }, -14, -14, -14},
      {"accumulator step 4w+2", [](AccArgs& a) { a.accStep = 4 * w + 2; }, -108, -108, -108},
      {"odd source step", [&](AccArgs& a) { a.s1Step = sb + 1; }, 0, -108, -108},
      {"odd source step, short accumulator", [&](AccArgs& a) { a.s1Step = sb + 1, a.accStep = 4; }, -14, -108,
       -14},
      {"misaligned accumulator, short source", [&](AccArgs& a) { a.accStep = 4 * w + 2, a.s1Step = 1; }, -14, -14,
       -14},
      {"negative accumulator step", [](AccArgs& a) { a.accStep = -32; }, -14, -14, -14},
      {"alpha NaN is used, not refused", [](AccArgs& a) { a.alpha = std::nanf(""); }, 0, 0, 0},
      {"null mask", [](AccArgs& a) { a.mask = nullptr; }, -8, -8, -8, Applies::Masked},
      {"mask step short", [](AccArgs& a) { a.maskStep = w - 1; }, -14, -14, -14, Applies::Masked},
      {"odd mask step is never tested for alignment", [](AccArgs& a) { a.maskStep = w + 1; }, 0, 0, 0,
       Applies::Masked},
      {"odd source before short mask", [&](AccArgs& a) { a.maskStep = w - 1, a.s1Step = sb + 1; }, -14, -108, -14,
       Applies::Masked},
      {"null second source", [](AccArgs& a) { a.s2 = nullptr; }, -8, -8, -8, Applies::Product},
  };
  for (const AccMember<S>& mem : accMembers<S>())
    for (const Fault& f : faults) {
      if ((f.applies == Applies::Masked && !mem.masked) || (f.applies == Applies::Product && mem.kind != Kind::Product))
        continue;
      std::fill(acc.begin(), acc.end(), 1.5f);
      AccArgs a{s1.data(), sb + 2 * int(sizeof(S)), s2.data(), sb, mask.data(), w, acc.data(), 4 * w, {w, 2}, 0.5f};
      f.apply(a);
      EXPECT_EQ(mem.call(a), f.*expected) << mem.name << ": " << f.what;
      if (f.*expected < 0) {
        EXPECT_EQ(acc, std::vector<vnx32f>(64, 1.5f)) << mem.name << ": written on error";
      }
    }
}

TEST(AccumulateStatus, ChecksInOrder8u) { checkAccStatuses<vnx8u>(&Fault::for8u); }
TEST(AccumulateStatus, ChecksInOrder8s) { checkAccStatuses<vnx8s>(&Fault::for8u); }
TEST(AccumulateStatus, ChecksInOrder16u) { checkAccStatuses<vnx16u>(&Fault::for16u); }
TEST(AccumulateStatus, ChecksInOrder32f) { checkAccStatuses<vnx32f>(&Fault::for32f); }

}  // namespace
