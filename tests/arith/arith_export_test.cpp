// Absolute differences, accumulators and the motion-history update against references
// written from their formulas, on guard-page images with canary padding and float
// special values; the streamed path of large images; the check orders.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <tuple>

#include "support.h"

namespace {

// Sizes from one pixel to a few vectors plus a tail, a tall one and a large one.
const vnxiSize kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {15, 3}, {16, 2}, {17, 5}, {33, 7}, {51, 4}, {64, 1}, {333, 67}};

// The library's one NaN for a NaN result.
float canonical(float v) { return v == v ? v : vt::fromBits(0xFFC00000u); }

template <class T>
void fillSpecial(vt::Image<T>& img, std::mt19937& rng) {
  img.fill([&](int, int, int) { return vt::randomSampleOrSpecial<T>(rng); });
}
std::string sizeText(vnxiSize s) { return std::to_string(s.width) + "x" + std::to_string(s.height); }

// ---- absolute differences ---------------------------------------------------------

// The integer difference exactly; the float one rounded, then its sign bit cleared.
template <class T>
T refAbsDiff(T a, T b) {
  if constexpr (std::is_floating_point<T>::value)
    return vt::fromBits(vt::bits(a - b) & 0x7fffffffu);
  else
    return static_cast<T>(std::abs(int(a) - int(b)));
}

template <class T>
using AbsDiffFn = vnxStatus (*)(const T*, int, const T*, int, T*, int, vnxiSize) noexcept;
template <class T, class C>
using AbsDiffCFn = vnxStatus (*)(const T*, int, T*, int, vnxiSize, C) noexcept;

// Every size and guard side, and for AbsDiffC constants below, inside and above the
// range of the type (integer constants are clamped to it).
template <class T, class C>
void checkAbsDiff(AbsDiffFn<T> f, AbsDiffCFn<T, C> fc) {
  std::mt19937 rng(11);
  for (vnxiSize sz : kSizes)
    for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before})
      for (double value : {-5.0, 0.0, 77.0, 255.0, 300.0, 70000.0}) {
        SCOPED_TRACE(sizeText(sz) + " constant " + std::to_string(value));
        vt::Image<T> a(sz.width, sz.height, 1, 4 * sizeof(T), guard), b(sz.width, sz.height, 1, 2 * sizeof(T), guard),
            d(sz.width, sz.height, 1, 6 * sizeof(T), guard);
        fillSpecial(a, rng);
        fillSpecial(b, rng);
        const T c = std::is_floating_point<T>::value ? T(value) : T(std::min(std::max(value, 0.0), double(T(~0u))));
        for (bool constant : {false, true}) {
          d.fill([](int, int, int) { return 123; });
          std::vector<T> expected;
          for (int y = 0; y < sz.height; ++y)
            for (int x = 0; x < sz.width; ++x) expected.push_back(refAbsDiff(a.at(x, y), constant ? c : b.at(x, y)));
          ASSERT_EQ(constant ? fc(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), C(value))
                             : f(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size()),
                    vnxStatusOk);
          VT_EXPECT_SAME_SAMPLES(expected, d.pixels());
          EXPECT_TRUE(d.canaryIntact());
        }
      }
}

// Images larger than three quarters of the largest cache take the non-temporal path,
// whose rows start with scalar pixels up to an aligned destination: every
// misalignment of the destination gives the same pixels.
template <class T>
void checkLargeAbsDiff(AbsDiffFn<T> f) {
  int cache = 0;
  vnxGetMaxCacheSizeB(&cache);
  const int w = 1021, h = int(std::int64_t(cache) / (3 * w * sizeof(T))) + 2;
  vt::Image<T> a(w, h), b(w, h), d(w + 4, h);
  a.fill([](int x, int y, int) { return ((x * 37 + y * 11) % 251) * (sizeof(T) == 4 ? 0.37 : 1.0); });
  b.fill([](int x, int y, int) { return ((x * 13 + y * 7) % 241) * (sizeof(T) == 4 ? 0.61 : 1.0); });
  for (int shift : {0, 1, 3}) {
    ASSERT_EQ(f(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr() + shift, d.step(), {w, h}), vnxStatusOk);
    for (int y = 0; y < h; y += 7)
      for (int x = 0; x < w; ++x) {
        const T e = refAbsDiff(a.at(x, y), b.at(x, y));
        ASSERT_EQ(std::memcmp(&e, &d.at(x + shift, y), sizeof(T)), 0) << "shift " << shift << " at " << x << "," << y;
      }
  }
}

TEST(AbsDiff, MatchesTheRoundedDifferenceInCacheAndStreamed) {
  checkAbsDiff<vnx8u, int>(vnxiAbsDiff_8u_C1R, vnxiAbsDiffC_8u_C1R);
  checkAbsDiff<vnx16u, int>(vnxiAbsDiff_16u_C1R, vnxiAbsDiffC_16u_C1R);
  checkAbsDiff<vnx32f, float>(vnxiAbsDiff_32f_C1R, vnxiAbsDiffC_32f_C1R);
  checkLargeAbsDiff<vnx8u>(vnxiAbsDiff_8u_C1R);
  checkLargeAbsDiff<vnx16u>(vnxiAbsDiff_16u_C1R);
  checkLargeAbsDiff<vnx32f>(vnxiAbsDiff_32f_C1R);
}

// Each export calls the shared check (its order is tested in core): one fault each.
TEST(AbsDiff, EachExportChecksInTheSharedOrder) {
  std::vector<vnx32f> buf(64);
  const vnx32f* p = buf.data();
  const auto q = reinterpret_cast<const vnx16u*>(p);
  const auto b = reinterpret_cast<const vnx8u*>(p);
  EXPECT_EQ(vnxiAbsDiff_32f_C1R(p, 34, p, 32, buf.data(), 31, {8, 2}), vnxStatusBadStep);  // row bytes first
  EXPECT_EQ(vnxiAbsDiff_16u_C1R(q, 16, q, 16, reinterpret_cast<vnx16u*>(buf.data()), 17, {8, 2}), vnxStatusStepNotMultiple);
  EXPECT_EQ(vnxiAbsDiff_8u_C1R(nullptr, 1, nullptr, 1, nullptr, 1, {0, 0}), vnxStatusNullPtr);
  EXPECT_EQ(vnxiAbsDiffC_8u_C1R(b, 8, reinterpret_cast<vnx8u*>(buf.data()), 7, {8, 1}, 3), vnxStatusBadStep);
  EXPECT_EQ(vnxiAbsDiffC_16u_C1R(q, 17, reinterpret_cast<vnx16u*>(buf.data()), 16, {8, 1}, 3), vnxStatusStepNotMultiple);
  EXPECT_EQ(vnxiAbsDiffC_32f_C1R(p, 32, buf.data(), 32, {8, 0}, 1.0f), vnxStatusBadSize);
  EXPECT_EQ(buf, std::vector<vnx32f>(64));  // nothing written
}

// ---- accumulators -----------------------------------------------------------------

enum class Kind { Add, Square, Product, Weighted };

// The operands of every accumulator member; a member takes the ones its signature names.
struct AccCall {
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
struct AccMember {
  std::string name;
  Kind kind;
  bool masked;
  std::function<vnxStatus(const AccCall&)> call;
  bool of(const char* type) const { return name.find(type) != std::string::npos; }
};

// Hands each parameter its operand in argument order: the first pointer is the source,
// the second the second source (products) or the mask, the third the mask; an int is
// the step of the pointer before it; the float pointer is the accumulator.
struct AccBinder {
  const AccCall& c;
  bool product;
  int ptrs = 0;
  template <class P>
  P get() {
    if constexpr (std::is_same<P, vnxiSize>::value) {
      return c.roi;
    } else if constexpr (std::is_same<P, vnx32f>::value) {
      return c.alpha;
    } else if constexpr (std::is_same<P, vnx32f*>::value) {
      ptrs = 9;
      return c.acc;
    } else if constexpr (std::is_same<P, int>::value) {
      return ptrs == 9 ? c.accStep : ptrs == 1 ? c.s1Step : ptrs == 2 && product ? c.s2Step : c.maskStep;
    } else {
      const int k = ++ptrs;
      return static_cast<P>(k == 1 ? c.s1 : k == 2 && product ? c.s2 : static_cast<const void*>(c.mask));
    }
  }
};
template <class... P>
AccMember accMember(const char* name, vnxStatus (*f)(P...)) {
  const std::string n(name);
  auto has = [&](const char* part) { return n.find(part) != std::string::npos; };
  const Kind k = has("Weighted") ? Kind::Weighted : has("Product") ? Kind::Product : has("Square") ? Kind::Square : Kind::Add;
  return {n, k, has("IMR"), [f, k](const AccCall& c) {
            AccBinder b{c, k == Kind::Product};
            std::tuple<P...> args{b.template get<P>()...};  // in order
            return std::apply(f, args);
          }};
}
#define ACC(fn) accMember(#fn, fn)

const std::vector<AccMember>& accMembers() {
  static const std::vector<AccMember> m = {
      ACC(vnxiAdd_8u32f_C1IR),            ACC(vnxiAdd_8u32f_C1IMR),            ACC(vnxiAddSquare_8u32f_C1IR),
      ACC(vnxiAddSquare_8u32f_C1IMR),     ACC(vnxiAddProduct_8u32f_C1IR),      ACC(vnxiAddProduct_8u32f_C1IMR),
      ACC(vnxiAddWeighted_8u32f_C1IR),    ACC(vnxiAddWeighted_8u32f_C1IMR),    ACC(vnxiAdd_8s32f_C1IR),
      ACC(vnxiAdd_8s32f_C1IMR),           ACC(vnxiAddSquare_8s32f_C1IR),       ACC(vnxiAddSquare_8s32f_C1IMR),
      ACC(vnxiAddProduct_8s32f_C1IR),     ACC(vnxiAddProduct_8s32f_C1IMR),     ACC(vnxiAddWeighted_8s32f_C1IR),
      ACC(vnxiAddWeighted_8s32f_C1IMR),   ACC(vnxiAdd_16u32f_C1IR),            ACC(vnxiAdd_16u32f_C1IMR),
      ACC(vnxiAddSquare_16u32f_C1IR),     ACC(vnxiAddSquare_16u32f_C1IMR),     ACC(vnxiAddProduct_16u32f_C1IR),
      ACC(vnxiAddProduct_16u32f_C1IMR),   ACC(vnxiAddWeighted_16u32f_C1IR),    ACC(vnxiAddWeighted_16u32f_C1IMR),
      ACC(vnxiAdd_32f_C1IMR),             ACC(vnxiAddSquare_32f_C1IR),         ACC(vnxiAddSquare_32f_C1IMR),
      ACC(vnxiAddProduct_32f_C1IR),       ACC(vnxiAddProduct_32f_C1IMR),       ACC(vnxiAddWeighted_32f_C1IR),
      ACC(vnxiAddWeighted_32f_C1IMR)};
  return m;
}
template <class S>
const char* typeTag() {
  return std::is_same<S, vnx8u>::value ? "_8u32f" : std::is_same<S, vnx8s>::value ? "_8s32f"
         : std::is_same<S, vnx16u>::value ? "_16u32f" : "_32f_";
}

// The formulas, one pixel at a time, each operation rounded to single precision: the
// term (or the weight) is zero where the mask byte is zero, and the addition always happens.
float refAccumulate(Kind k, bool sel, float acc, float a, float b, float alpha) {
  switch (k) {
    case Kind::Add: return canonical(acc + (sel ? a : 0.0f));
    case Kind::Square: return canonical(acc + (sel ? a * a : 0.0f));
    case Kind::Product: return canonical(acc + (sel ? a * b : 0.0f));
    default: return canonical(acc + (a - acc) * (sel ? alpha : 0.0f));
  }
}

template <class S>
void checkAccumulators() {
  std::mt19937 rng(7);
  for (const AccMember& mem : accMembers())
    for (vnxiSize sz : kSizes) {
      if (!mem.of(typeTag<S>())) break;
      for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before}) {
        SCOPED_TRACE(mem.name + " " + sizeText(sz));
        vt::Image<S> s1(sz.width, sz.height, 1, 3 * sizeof(S), guard), s2(sz.width, sz.height, 1, 5 * sizeof(S), guard);
        vt::Image<vnx8u> mask(sz.width, sz.height, 1, 1, guard);
        vt::Image<vnx32f> acc(sz.width, sz.height, 1, 8, guard);
        fillSpecial(s1, rng);
        fillSpecial(s2, rng);
        fillSpecial(acc, rng);
        mask.fill([&](int, int, int) { return (rng() % 3) ? 0 : int(rng() % 255) + 1; });
        const float alpha = sz.width % 2 ? 0.3f : -1.5f;
        std::vector<float> expected = acc.pixels();
        for (int y = 0, i = 0; y < sz.height; ++y)
          for (int x = 0; x < sz.width; ++x, ++i)
            expected[i] = refAccumulate(mem.kind, !mem.masked || mask.at(x, y), expected[i], float(s1.at(x, y)),
                                        float(s2.at(x, y)), alpha);
        ASSERT_EQ(mem.call({s1.ptr(), s1.step(), s2.ptr(), s2.step(), mask.ptr(), mask.step(), acc.ptr(), acc.step(),
                            sz, alpha}),
                  vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(expected, acc.pixels());
        EXPECT_TRUE(acc.canaryIntact());
      }
    }
}

TEST(Accumulate, EveryMemberMatchesItsFormula) {
  checkAccumulators<vnx8u>();
  checkAccumulators<vnx8s>();
  checkAccumulators<vnx16u>();
  checkAccumulators<vnx32f>();
}

// A valid call 8 pixels wide, then one fault (or two) at a time, statuses by source
// type (8s as 8u); on an error the accumulator keeps its values.
enum class Applies { All, Masked, Product };
struct Fault {
  const char* what;
  std::function<void(AccCall&, int sourceRowBytes)> apply;
  vnxStatus for8u, for16u, for32f;
  Applies applies = Applies::All;
};

TEST(Accumulate, ChecksInOrder) {
  const std::vector<Fault> faults = {
      {"null source", [](AccCall& a, int) { a.s1 = nullptr; }, -8, -8, -8},
      {"null accumulator and zero width", [](AccCall& a, int) { a.acc = nullptr, a.roi.width = 0; }, -8, -8, -8},
      {"zero width", [](AccCall& a, int) { a.roi.width = 0; }, -6, -6, -6},
      {"negative height", [](AccCall& a, int) { a.roi.height = -1; }, -6, -6, -6},
      {"source step short", [](AccCall& a, int sb) { a.s1Step = sb - 1; }, -14, -14, -14},
      {"accumulator step short", [](AccCall& a, int) { a.accStep = 28; }, -14, -14, -14},
      {"accumulator step 4w+2", [](AccCall& a, int) { a.accStep = 34; }, -108, -108, -108},
      {"odd source step", [](AccCall& a, int sb) { a.s1Step = sb + 1; }, 0, -108, -108},
      {"odd source step, short accumulator", [](AccCall& a, int sb) { a.s1Step = sb + 1, a.accStep = 4; }, -14, -108, -14},
      {"misaligned accumulator, short source", [](AccCall& a, int) { a.accStep = 34, a.s1Step = 1; }, -14, -14, -14},
      {"negative accumulator step", [](AccCall& a, int) { a.accStep = -32; }, -14, -14, -14},
      {"alpha NaN is used, not refused", [](AccCall& a, int) { a.alpha = std::nanf(""); }, 0, 0, 0},
      {"null mask", [](AccCall& a, int) { a.mask = nullptr; }, -8, -8, -8, Applies::Masked},
      {"mask step short", [](AccCall& a, int) { a.maskStep = 7; }, -14, -14, -14, Applies::Masked},
      {"odd mask step is never tested for alignment", [](AccCall& a, int) { a.maskStep = 9; }, 0, 0, 0, Applies::Masked},
      {"odd source before short mask", [](AccCall& a, int sb) { a.maskStep = 7, a.s1Step = sb + 1; }, -14, -108, -14,
       Applies::Masked},
      {"null second source", [](AccCall& a, int) { a.s2 = nullptr; }, -8, -8, -8, Applies::Product},
  };
  std::vector<vnx32f> src(64), acc(64);
  std::vector<vnx8u> mask(64, 1);
  for (const AccMember& mem : accMembers()) {
    const int eb = mem.of("_8") ? 1 : mem.of("_16u") ? 2 : 4, sb = 8 * eb;
    for (const Fault& f : faults) {
      if ((f.applies == Applies::Masked && !mem.masked) || (f.applies == Applies::Product && mem.kind != Kind::Product))
        continue;
      std::fill(acc.begin(), acc.end(), 1.5f);
      AccCall a{src.data(), sb + 2 * eb, src.data(), sb, mask.data(), 8, acc.data(), 32, {8, 2}, 0.5f};
      f.apply(a, sb);
      const vnxStatus expected = eb == 1 ? f.for8u : eb == 2 ? f.for16u : f.for32f;
      EXPECT_EQ(mem.call(a), expected) << mem.name << ": " << f.what;
      if (expected < 0) {
        EXPECT_EQ(acc, std::vector<vnx32f>(64, 1.5f)) << mem.name << ": written on error";
      }
    }
  }
}

// ---- motion history ---------------------------------------------------------------

template <class S>
using MotionFn = vnxStatus (*)(const S*, int, vnx32f*, int, vnxiSize, vnx32f, vnx32f) noexcept;

// A moving pixel takes the timestamp, a history older than timestamp - duration is
// cleared, any other is kept; histories around the threshold, NaN and infinities.
template <class S>
void checkMotion(MotionFn<S> f) {
  std::mt19937 rng(5);
  const float nan = std::nanf(""), ts = 20.0f;
  for (vnxiSize sz : {vnxiSize{1, 1}, vnxiSize{15, 2}, vnxiSize{16, 3}, vnxiSize{17, 1}, vnxiSize{49, 9}, vnxiSize{300, 41}})
    for (vt::Guard guard : {vt::Guard::After, vt::Guard::Before})
      for (float dur : {0.0f, -0.0f, 3.0f, 100.0f}) {
        SCOPED_TRACE(sizeText(sz) + " duration " + std::to_string(dur));
        vt::Image<S> sil(sz.width, sz.height, 1, 2 * sizeof(S), guard);
        vt::Image<vnx32f> mhi(sz.width, sz.height, 1, 12, guard);
        const float hs[] = {ts - dur, std::nextafter(ts - dur, -1e9f), std::nextafter(ts - dur, 1e9f), 0.0f, -0.0f,
                            nan, -HUGE_VALF, ts, 7.0f, 19.5f};
        sil.fill([&](int, int, int) { return rng() % 2 ? S(0) : vt::randomSampleOrSpecial<S>(rng); });
        mhi.fill([&](int, int, int) { return hs[rng() % 10]; });
        std::vector<float> expected;
        for (int y = 0; y < sz.height; ++y)
          for (int x = 0; x < sz.width; ++x) {
            const float h = mhi.at(x, y);
            expected.push_back(!(sil.at(x, y) == 0) ? ts : h < ts - dur ? 0.0f : h);
          }
        ASSERT_EQ(f(sil.ptr(), sil.step(), mhi.ptr(), mhi.step(), sil.size(), ts, dur), vnxStatusOk);
        VT_EXPECT_SAME_SAMPLES(expected, mhi.pixels());
        EXPECT_TRUE(mhi.canaryIntact());
      }
}

TEST(MotionHistory, FollowsTheRules) {
  checkMotion<vnx8u>(vnxiUpdateMotionHistory_8u32f_C1IR);
  checkMotion<vnx16u>(vnxiUpdateMotionHistory_16u32f_C1IR);
  checkMotion<vnx32f>(vnxiUpdateMotionHistory_32f_C1IR);
}

TEST(MotionHistory, ChecksInOrder) {
  std::vector<vnx16u> s(64);
  std::vector<vnx32f> h(64, 5.0f);
  const struct {
    const char* what;
    vnx32f* h;
    int sStep, hStep;
    vnxiSize roi;
    float dur;
    vnxStatus expected;
  } cases[] = {
      {"null history beats size", nullptr, 16, 32, {0, 0}, 1, -8},
      {"zero height", h.data(), 16, 32, {8, 0}, 1, -6},
      {"short silhouette", h.data(), 15, 32, {8, 2}, 1, -14},
      {"odd silhouette, short history", h.data(), 17, 28, {8, 2}, 1, -14},
      {"odd silhouette", h.data(), 17, 32, {8, 2}, 1, -108},
      {"misaligned before negative duration", h.data(), 16, 34, {8, 2}, -1, -108},
      {"negative duration", h.data(), 16, 32, {8, 2}, -1, -11},
      {"NaN duration", h.data(), 16, 32, {8, 2}, std::nanf(""), -11},
      {"minus zero duration", h.data(), 16, 32, {8, 2}, -0.0f, 0},
  };
  for (const auto& c : cases) {
    std::fill(h.begin(), h.end(), 5.0f);
    EXPECT_EQ(vnxiUpdateMotionHistory_16u32f_C1IR(s.data(), c.sStep, c.h, c.hStep, c.roi, 10.0f, c.dur), c.expected)
        << c.what;
    if (c.expected < 0) {
      EXPECT_EQ(h, std::vector<vnx32f>(64, 5.0f)) << c.what << ": written on error";
    }
  }
  vnx8u s8[3] = {};
  vnx32f h8[3] = {};
  EXPECT_EQ(vnxiUpdateMotionHistory_8u32f_C1IR(s8, 3, h8, 12, {3, 1}, 1, 1), vnxStatusOk);  // odd 8u step is fine
  EXPECT_EQ(vnxiUpdateMotionHistory_32f_C1IR(h8, 10, h8, 12, {2, 1}, 1, 1), vnxStatusStepNotMultiple);
}

}  // namespace
