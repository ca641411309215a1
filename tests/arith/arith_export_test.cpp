// Absolute differences, accumulators and the motion-history update against references
// written from their formulas, on guard-page images with canary padding and float
// special values, at every width their row kernels treat apart and on images large
// enough to be written around the cache; the check orders.
#include <cmath>
#include <functional>
#include <string>

#include "support.h"

namespace {

struct Shape {
  vnxiSize size;
  vt::Guard guard;
};
// Every width up to three 8-bit vectors + 3, at heights 1 to 9 (1x1 first), on both
// guard sides, a column and a large image. (Images written around the cache: checkStreamed.)
std::vector<Shape> everyWidth() {
  std::vector<Shape> s;
  for (int w = 1; w <= 51; ++w)
    for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) s.push_back({{w, 1 + (w - 1) * 5 % 9}, g});
  for (vnxiSize sz : {vnxiSize{1, 17}, vnxiSize{333, 67}}) s.push_back({sz, vt::Guard::Before});
  return s;
}

// One operation on every shape: sources a and b (a third of them zero, floats with
// special values), a sparse mask and a destination filled by start(rng). Every pixel
// must equal ref(a, b, mask, destination before), and the padding keep its canary.
// Destination rows padded by four elements start at every alignment.
template <class S, class D, class Start, class Call, class Ref>
void checkPixels(Start start, Call call, Ref ref, const std::vector<Shape>& shapes = everyWidth()) {
  std::mt19937 rng(7);
  for (const auto& [sz, g] : shapes) {
    SCOPED_TRACE(testing::Message() << sz.width << "x" << sz.height);
    vt::Image<S> a(sz.width, sz.height, 1, 3 * sizeof(S), g), b(sz.width, sz.height, 1, 5 * sizeof(S), g);
    vt::Image<vnx8u> m(sz.width, sz.height, 1, 1, g);
    vt::Image<D> d(sz.width, sz.height, 1, 4 * sizeof(D), g);
    auto sample = [&](int, int, int) { return rng() % 3 ? vt::randomSampleOrSpecial<S>(rng) : S(0); };
    a.fill(sample), b.fill(sample), d.fill([&](int, int, int) { return start(rng); });
    m.fill([&](int, int, int) { return rng() % 3 ? 0 : int(rng() % 255) + 1; });
    std::vector<D> expected = d.pixels();
    for (int y = 0, i = 0; y < sz.height; ++y)
      for (int x = 0; x < sz.width; ++x, ++i) expected[i] = ref(a.at(x, y), b.at(x, y), m.at(x, y), expected[i]);
    ASSERT_EQ(call(a, b, m, d), vnxStatusOk);
    VT_EXPECT_SAME_SAMPLES(expected, d.pixels());
    EXPECT_TRUE(d.canaryIntact());
  }
}

// ---- absolute differences ---------------------------------------------------------

// The integer difference exactly; the float one rounded, then its sign bit cleared.
template <class T>
T refAbsDiff(T a, T b) {
  if constexpr (std::is_floating_point<T>::value) return vt::fromBits(vt::bits(a - b) & 0x7fffffffu);
  return static_cast<T>(std::abs(int(a) - int(b)));
}

template <class T>
using AbsDiffFn = vnxStatus (*)(const T*, int, const T*, int, T*, int, vnxiSize) noexcept;

// The constants below, inside and above the type's range: integers are clamped to it.
template <class T, class C>
void checkAbsDiff(AbsDiffFn<T> f, vnxStatus (*fc)(const T*, int, T*, int, vnxiSize, C) noexcept) {
  checkPixels<T, T>(vt::randomSampleOrSpecial<T>, [&](auto& a, auto& b, auto&, auto& d) { return f(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size()); },
                    [](T a, T b, vnx8u, T) { return refAbsDiff(a, b); });
  for (double v : {-5.0, 77.0, 300.0, 70000.0}) {
    const T c = std::is_floating_point<T>::value ? T(v) : T(std::min(std::max(v, 0.0), double(T(~0u))));
    checkPixels<T, T>(vt::randomSampleOrSpecial<T>, [&](auto& a, auto&, auto&, auto& d) { return fc(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), C(v)); },
                      [&](T a, T, vnx8u, T) { return refAbsDiff(a, c); });
  }
}

// Images larger than three quarters of the largest cache are written around it, each
// row first taking scalar pixels up to an aligned destination: rows narrower than
// that peel, and rows at every alignment of the destination, give the same pixels.
template <class T>
void checkStreamed(AbsDiffFn<T> f) {
  int cache = 0;
  vnxGetMaxCacheSizeB(&cache);
  for (int w : {5, 1021}) {
    const int h = int(std::int64_t(cache) / (3 * w * sizeof(T))) + 2;
    vt::Image<T> a(w, h), b(w, h), d(w, h, 1, 4 * sizeof(T));  // rows start at every alignment
    a.fill([](int x, int y, int) { return ((x * 37 + y * 11) % 251) * (sizeof(T) == 4 ? 0.37 : 1.0); });
    b.fill([](int x, int y, int) { return ((x * 13 + y * 7) % 241) * (sizeof(T) == 4 ? 0.61 : 1.0); });
    ASSERT_EQ(f(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), {w, h}), vnxStatusOk);
    for (int y = 0; y < h; y += 7)
      for (int x = 0; x < w; ++x) ASSERT_EQ(vt::bits(float(refAbsDiff(a.at(x, y), b.at(x, y)))), vt::bits(float(d.at(x, y)))) << w << " wide, at " << x << "," << y;
    EXPECT_TRUE(d.canaryIntact());
  }
}

TEST(AbsDiff, MatchesTheRoundedDifferenceInCacheAndStreamed) {
  checkAbsDiff<vnx8u, int>(vnxiAbsDiff_8u_C1R, vnxiAbsDiffC_8u_C1R);
  checkAbsDiff<vnx16u, int>(vnxiAbsDiff_16u_C1R, vnxiAbsDiffC_16u_C1R);
  checkAbsDiff<vnx32f, float>(vnxiAbsDiff_32f_C1R, vnxiAbsDiffC_32f_C1R);
  checkStreamed<vnx8u>(vnxiAbsDiff_8u_C1R);
  checkStreamed<vnx16u>(vnxiAbsDiff_16u_C1R);
  checkStreamed<vnx32f>(vnxiAbsDiff_32f_C1R);
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

// The formulas, one pixel at a time, each operation rounded to single precision: the
// term (or the weight) is zero where the mask byte is zero, and the addition always
// happens; a NaN result is the library's one NaN.
float refAccumulate(Kind k, bool sel, float acc, float a, float b, float alpha) {
  const float term = k == Kind::Add ? a : k == Kind::Square ? a * a : a * b;
  const float r = k == Kind::Weighted ? acc + (a - acc) * (sel ? alpha : 0.0f) : acc + (sel ? term : 0.0f);
  return r == r ? r : vt::fromBits(0xFFC00000u);
}

// The operands of every accumulator member; a member takes the ones its signature
// names, sources and mask converted to the types it takes.
struct AnyPtr {
  const void* p;
  template <class T> operator const T*() const { return static_cast<const T*>(p); }
};
struct AccCall {
  AnyPtr s1, s2, mask;
  vnx32f* acc;
  int s1Step, s2Step, maskStep, accStep;
  vnxiSize roi;
  float alpha;
};
struct AccMember {
  std::string name;
  Kind kind;
  bool masked;
  std::function<vnxStatus(const AccCall&)> call;
  std::function<void()> check;  // against the formula on every shape
};

// The arguments in signature order: sources, the second source of products, the
// mask of masked members, the accumulator, the ROI, the weight of blends.
template <class S1, class... P>
AccMember accMember(const std::string& n, vnxStatus (*f)(S1, P...)) {
  using S = std::remove_const_t<std::remove_pointer_t<S1>>;
  auto has = [&](const char* part) { return n.find(part) != std::string::npos; };
  const Kind k = has("Weighted") ? Kind::Weighted : has("Product") ? Kind::Product : has("Square") ? Kind::Square : Kind::Add;
  const bool masked = has("IMR");
  auto call = [f, two = k == Kind::Product](const AccCall& c) -> vnxStatus {
    (void)two;  // read only by the seven-argument members
    if constexpr (sizeof...(P) == 4) return f(c.s1, c.s1Step, c.acc, c.accStep, c.roi);
    else if constexpr (sizeof...(P) == 5) return f(c.s1, c.s1Step, c.acc, c.accStep, c.roi, c.alpha);
    else if constexpr (sizeof...(P) == 7) return f(c.s1, c.s1Step, c.mask, c.maskStep, c.acc, c.accStep, c.roi, c.alpha);
    else if constexpr (sizeof...(P) == 8) return f(c.s1, c.s1Step, c.s2, c.s2Step, c.mask, c.maskStep, c.acc, c.accStep, c.roi);
    else return two ? f(c.s1, c.s1Step, c.s2, c.s2Step, c.acc, c.accStep, c.roi) : f(c.s1, c.s1Step, c.mask, c.maskStep, c.acc, c.accStep, c.roi);
  };
  auto check = [call, k, masked] {
    checkPixels<S, float>(vt::randomSampleOrSpecial<float>, [&](auto& a, auto& b, auto& m, auto& d) {
      return call({{a.ptr()}, {b.ptr()}, {m.ptr()}, d.ptr(), a.step(), b.step(), m.step(), d.step(), a.size(), 0.3f});
    }, [&](S a, S b, vnx8u m, float acc) { return refAccumulate(k, !masked || m, acc, float(a), float(b), 0.3f); });
  };
  return {n, k, masked, call, check};
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

TEST(Accumulate, EveryMemberMatchesItsFormula) {
  for (const AccMember& mem : accMembers()) {
    SCOPED_TRACE(mem.name);
    mem.check();
  }
}

// A valid call 8 pixels wide, then one fault (or two) at a time, statuses by source
// type (8s as 8u); on an error the accumulator keeps its values.
TEST(Accumulate, ChecksInOrder) {
  enum Applies { All, Masked, Product };
  struct Fault { const char* what; void (*apply)(AccCall&, int sourceRowBytes); vnxStatus for8u, for16u, for32f; Applies applies; };
  const Fault faults[] = {
      {"null source", [](AccCall& a, int) { a.s1.p = nullptr; }, -8, -8, -8, All},
      {"null accumulator and zero width", [](AccCall& a, int) { a.acc = nullptr, a.roi.width = 0; }, -8, -8, -8, All},
      {"zero width", [](AccCall& a, int) { a.roi.width = 0; }, -6, -6, -6, All},
      {"source step short", [](AccCall& a, int sb) { a.s1Step = sb - 1; }, -14, -14, -14, All},
      {"accumulator step short", [](AccCall& a, int) { a.accStep = 28; }, -14, -14, -14, All},
      {"accumulator step 4w+2", [](AccCall& a, int) { a.accStep = 34; }, -108, -108, -108, All},
      {"odd source step", [](AccCall& a, int sb) { a.s1Step = sb + 1; }, 0, -108, -108, All},
      {"odd source step, short accumulator", [](AccCall& a, int sb) { a.s1Step = sb + 1, a.accStep = 4; }, -14, -108, -14, All},
      {"misaligned accumulator, short source", [](AccCall& a, int) { a.accStep = 34, a.s1Step = 1; }, -14, -14, -14, All},
      {"alpha NaN is used, not refused", [](AccCall& a, int) { a.alpha = std::nanf(""); }, 0, 0, 0, All},
      {"null mask", [](AccCall& a, int) { a.mask.p = nullptr; }, -8, -8, -8, Masked},
      {"mask step short", [](AccCall& a, int) { a.maskStep = 7; }, -14, -14, -14, Masked},
      {"odd mask step is never tested for alignment", [](AccCall& a, int) { a.maskStep = 9; }, 0, 0, 0, Masked},
      {"odd source before short mask", [](AccCall& a, int sb) { a.maskStep = 7, a.s1Step = sb + 1; }, -14, -108, -14, Masked},
      {"null second source", [](AccCall& a, int) { a.s2.p = nullptr; }, -8, -8, -8, Product},
  };
  std::vector<vnx32f> src(64), acc(64);
  std::vector<vnx8u> mask(64, 1);
  for (const AccMember& mem : accMembers()) {
    const int eb = mem.name.find("_8") != std::string::npos ? 1 : mem.name.find("_16u") != std::string::npos ? 2 : 4;
    for (const Fault& f : faults) {
      if ((f.applies == Masked && !mem.masked) || (f.applies == Product && mem.kind != Kind::Product)) continue;
      std::fill(acc.begin(), acc.end(), 1.5f);
      AccCall a{{src.data()}, {src.data()}, {mask.data()}, acc.data(), 10 * eb, 8 * eb, 8, 32, {8, 2}, 0.5f};
      f.apply(a, 8 * eb);
      const vnxStatus expected = eb == 1 ? f.for8u : eb == 2 ? f.for16u : f.for32f;
      EXPECT_EQ(mem.call(a), expected) << mem.name << ": " << f.what;
      EXPECT_TRUE(expected >= 0 || acc == std::vector<vnx32f>(64, 1.5f)) << mem.name << ": written on error";
    }
  }
}

// ---- motion history ---------------------------------------------------------------

// A moving pixel takes the timestamp, a history older than timestamp - duration is
// cleared, any other is kept; histories at the threshold and either side of it, NaN,
// -0 and an infinity.
template <class S>
void checkMotion(vnxStatus (*f)(const S*, int, vnx32f*, int, vnxiSize, vnx32f, vnx32f) noexcept) {
  const float ts = 20.0f;
  for (float dur : {0.0f, -0.0f, 3.0f, 100.0f}) {
    SCOPED_TRACE(testing::Message() << "duration " << dur);
    const float hs[] = {ts - dur, std::nextafter(ts - dur, -1e9f), std::nextafter(ts - dur, 1e9f), -0.0f, std::nanf(""), -HUGE_VALF, ts, 7.0f};
    checkPixels<S, float>([&](std::mt19937& rng) { return hs[rng() % 8]; },
                          [&](auto& s, auto&, auto&, auto& h) { return f(s.ptr(), s.step(), h.ptr(), h.step(), s.size(), ts, dur); },
                          [&](S s, S, vnx8u, float h) { return s != 0 ? ts : h < ts - dur ? 0.0f : h; });
  }
}

TEST(MotionHistory, FollowsTheRules) {
  checkMotion<vnx8u>(vnxiUpdateMotionHistory_8u32f_C1IR);
  checkMotion<vnx16u>(vnxiUpdateMotionHistory_16u32f_C1IR);
  checkMotion<vnx32f>(vnxiUpdateMotionHistory_32f_C1IR);
}

// A 16u silhouette 8 pixels wide; one fault (or a pair) a row; the history keeps its values.
TEST(MotionHistory, ChecksInOrder) {
  std::vector<vnx16u> s(64);
  std::vector<vnx32f> h(64, 5.0f);
  struct Row { const char* what; vnx32f* h; int sStep, hStep; vnxiSize roi; float dur; vnxStatus want; };
  const Row rows[] = {
      {"null history beats size", nullptr, 16, 32, {0, 0}, 1, -8},          {"zero height", h.data(), 16, 32, {8, 0}, 1, -6},
      {"short silhouette", h.data(), 15, 32, {8, 2}, 1, -14},               {"odd silhouette, short history", h.data(), 17, 28, {8, 2}, 1, -14},
      {"odd silhouette", h.data(), 17, 32, {8, 2}, 1, -108},                {"misaligned before negative duration", h.data(), 16, 34, {8, 2}, -1, -108},
      {"negative duration", h.data(), 16, 32, {8, 2}, -1, -11},             {"NaN duration", h.data(), 16, 32, {8, 2}, std::nanf(""), -11},
      {"minus zero duration", h.data(), 16, 32, {8, 2}, -0.0f, 0}};
  vt::expectStatuses(rows, {{h.data(), 256}}, [&](const Row& r) {
    return vnxiUpdateMotionHistory_16u32f_C1IR(s.data(), r.sStep, r.h, r.hStep, r.roi, 10.0f, r.dur);
  });
  vnx8u s8[3] = {};
  vnx32f h8[3] = {};
  EXPECT_EQ(vnxiUpdateMotionHistory_8u32f_C1IR(s8, 3, h8, 12, {3, 1}, 1, 1), vnxStatusOk);  // odd 8u step is fine
  EXPECT_EQ(vnxiUpdateMotionHistory_32f_C1IR(h8, 10, h8, 12, {2, 1}, 1, 1), vnxStatusStepNotMultiple);
}

}  // namespace
