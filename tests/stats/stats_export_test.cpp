// Every statistics export against a reference written from the contract, over the
// selected samples of the channel of interest:
// - means and deviations: S = sum x, Q = sum x^2, mean = S / n, sd = sqrt(|Q / n - mean^2|);
//   32f makes a second pass around the mean rounded to single precision when 0.05 mean^2 > sd^2;
// - extrema: the first sample strictly below (above) the running value, starting from the
//   type's greatest (least) value, in raster order (so 32f NaN samples are skipped); an
//   extreme equal to its start value is reported in row 0;
// - norms of v = s or v = s1 - s2 (32f: the difference rounded to single precision):
//   Inf = max |v| (NaN skipped), L1 = sum |v|, L2 = sqrt(sum v^2); relative: over the norm of s2.
// A NaN result is the library's one NaN. Integer results are exact, so the same bits at
// every band count; 32f results repeat.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <tuple>

#include "stats/vncvmean.h"
#include "support.h"

namespace {

// An image of any of the four types (row padding holds a canary), read as double.
struct AnyImage {
  std::shared_ptr<void> holder;
  const void* ptr;
  int step;
  std::function<double(int x, int y, int c)> at;
};
template <class T>
AnyImage makeImage(int w, int h, int channels, vt::Guard guard, const std::function<double(int, int, int)>& f) {
  auto img = std::make_shared<vt::Image<T>>(w, h, channels, 3 * int(sizeof(T)), guard);
  img->fill([&](int x, int y, int c) { return T(f(x, y, c)); });
  vt::Image<T>* raw = img.get();
  return {img, img->ptr(), img->step(), [raw](int x, int y, int c) { return double(raw->at(x, y, c)); }};
}

// Masks: all zero, all 255, or random (about a third of the pixels selected, values 1..255).
enum class MaskKind { Empty, Full, Random };
using Mask = vt::Image<vnx8u>;
std::shared_ptr<Mask> makeMask(MaskKind k, int w, int h, std::mt19937& rng, vt::Guard guard = vt::Guard::After) {
  auto img = std::make_shared<Mask>(w, h, 1, 5, guard);
  img->fill([&](int, int, int) {
    return k == MaskKind::Empty ? 0u : k == MaskKind::Full ? 255u : rng() % 3 == 0 ? unsigned(1 + rng() % 255) : 0u;
  });
  return img;
}

// The operands and results of one call of any statistics export. Results are numbered
// in argument order (mean, deviation; norm; minimum, maximum and their locations), each
// in a slot of its own; a result whose bit in `wanted` is clear is passed as a null pointer.
struct Call {
  const void *src1 = nullptr, *src2 = nullptr;
  int step1 = 0, step2 = 0;
  const vnx8u* mask = nullptr;
  int maskStep = 0;
  vnxiSize roi{0, 0};
  int coi = 1;
  unsigned wanted = ~0u;
  union { double d; float f; vnxiPoint p; } out[4] = {{-7}, {-7}, {-7}, {-7}};
};
Call callOn(const AnyImage& a, const AnyImage& b, const Mask* mask, vnxiSize r, int coi) {
  Call c;
  c.src1 = a.ptr, c.step1 = a.step, c.src2 = b.ptr, c.step2 = b.step, c.roi = r, c.coi = coi;
  if (mask) c.mask = mask->ptr(), c.maskStep = mask->step();
  return c;
}

// One export and what its name says: element type, channels, mask, sources.
struct Member {
  std::string name;
  bool flt;
  int bytes;
  double top, bottom;  // the greatest and least values of the element type
  int channels;
  bool masked;
  int sources;  // 2: NormDiff, NormRel
  std::function<vnxStatus(Call&)> call;
  decltype(&makeImage<vnx8u>) image;  // an image of the element type
  double (*random)(std::mt19937&);     // a random sample of it
  bool is(const char* part) const { return name.find(part) != std::string::npos; }
};

// Hands each parameter of an export its operand from a Call, in argument order:
// pointers are the sources and then the mask, ints before the ROI are the source
// steps and then the mask step, the int after it is coi, the rest are results.
struct Binder {
  Call& c;
  int sources;
  int ptrs = 0, steps = 0, results = 0;
  bool afterRoi = false;
  template <class P>
  P get() {
    if constexpr (std::is_same<P, vnxiSize>::value) {
      afterRoi = true;
      return c.roi;
    } else if constexpr (std::is_same<P, int>::value) {
      if (afterRoi) return c.coi;
      const int k = steps++;
      return k < sources ? (k ? c.step2 : c.step1) : c.maskStep;
    } else if constexpr (!std::is_const<typename std::remove_pointer<P>::type>::value) {  // a result
      const int k = results++;
      return c.wanted >> k & 1 ? reinterpret_cast<P>(&c.out[k]) : nullptr;
    } else {
      const int k = ptrs++;
      return static_cast<P>(k < sources ? (k ? c.src2 : c.src1) : static_cast<const void*>(c.mask));
    }
  }
};
template <class First, class... P>
Member member(const char* name, vnxStatus (*f)(First, P...)) {
  using T = typename std::remove_cv<typename std::remove_pointer<First>::type>::type;
  const std::string n(name);
  const int sources = n.find("NormDiff") != std::string::npos || n.find("NormRel") != std::string::npos ? 2 : 1;
  auto call = [f, sources](Call& c) {
    Binder b{c, sources};
    std::tuple<First, P...> args{b.template get<First>(), b.template get<P>()...};  // in order
    return std::apply(f, args);
  };
  using L = std::numeric_limits<T>;
  return {n, L::is_iec559, int(sizeof(T)), double(L::max()), double(L::lowest()),
          n.find("_C3") != std::string::npos ? 3 : 1, n.find("MR") != std::string::npos, sources, call, makeImage<T>,
          [](std::mt19937& rng) { return double(vt::randomSample<T>(rng)); }};
}

#define M(fn) member(#fn, fn)
#define ST_TYPES(pre, form) M(pre##_8u_##form), M(pre##_8s_##form), M(pre##_16u_##form), M(pre##_32f_##form)
#define ST_MASKED(pre) ST_TYPES(pre, C1MR), ST_TYPES(pre, C3CMR)
#define ST_ALL(pre) ST_MASKED(pre), ST_TYPES(pre, C1R), ST_TYPES(pre, C3CR)
const std::vector<Member>& allMembers() {
  static const std::vector<Member> m = {
      ST_MASKED(vnxiMean),         ST_ALL(vnxiMean_StdDev),     ST_ALL(vnxiMinMaxIndx),     ST_MASKED(vnxiNorm_Inf),
      ST_MASKED(vnxiNorm_L1),      ST_MASKED(vnxiNorm_L2),      ST_MASKED(vnxiNormDiff_Inf), ST_MASKED(vnxiNormDiff_L1),
      ST_MASKED(vnxiNormDiff_L2),  ST_MASKED(vnxiNormRel_Inf),  ST_MASKED(vnxiNormRel_L1),  ST_MASKED(vnxiNormRel_L2)};
  return m;
}
#undef ST_ALL
#undef ST_MASKED
#undef ST_TYPES
#undef M

bool isExtrema(const Member& m) { return m.is("MinMax"); }
bool isNorm(const Member& m) { return m.is("Norm"); }

// What a call reports: the status, two values (mean and deviation, minimum and
// maximum, or the norm) and the two locations of the extrema.
struct Outcome {
  vnxStatus status;
  double v[2];
  vnxiPoint p[2];
  double scale;  // the largest selected |sample|: the tolerance of 32f sums scales with it
};

Outcome reference(const Member& m, const AnyImage& a, const AnyImage& b, const Mask* mask, vnxiSize r, int coi) {
  const int c = m.channels == 3 ? coi - 1 : 0;
  Outcome o{vnxStatusOk, {0, 0}, {{0, 0}, {0, 0}}, 0};
  double mn = m.top, mx = m.bottom;
  bool found[2] = {false, false};
  const bool inf = m.is("_Inf_"), l1 = m.is("_L1_"), l2 = m.is("_L2_");
  long double s = 0, q = 0, num = 0, den = 0;
  std::vector<double> picked;
  for (int y = 0; y < r.height; ++y)
    for (int x = 0; x < r.width; ++x) {
      if (mask && !mask->at(x, y)) continue;
      double v = a.at(x, y, c);
      o.scale = std::max(o.scale, std::fabs(v));
      picked.push_back(v);
      s += v, q += static_cast<long double>(v) * v;
      if (v < mn) mn = v, o.p[0] = {x, y}, found[0] = true;
      if (v > mx) mx = v, o.p[1] = {x, y}, found[1] = true;
      const double w = m.sources == 2 ? b.at(x, y, c) : 0;
      if (m.sources == 2) v = m.flt ? double(float(v) - float(w)) : v - w;
      if (inf)
        num = std::max<long double>(num, std::fabs(v)), den = std::max<long double>(den, std::fabs(w));
      else if (l1)
        num += std::fabs(v), den += std::fabs(w);
      else
        num += static_cast<long double>(v) * v, den += static_cast<long double>(w) * w;
    }
  const double n = double(picked.size());
  if (isExtrema(m)) {
    if (n) o.v[0] = float(mn), o.v[1] = float(mx);
    const double extreme[2] = {mn, mx};  // equal to its start value: the first selected sample of it in row 0, or x = 0
    for (int k = 0; k < 2; ++k)
      for (int x = r.width - 1; x >= 0 && n && !found[k]; --x)
        if ((!mask || mask->at(x, 0)) && a.at(x, 0, c) == extreme[k]) o.p[k] = {x, 0};
    return o;
  }
  o.p[0] = o.p[1] = {0, 0};
  if (isNorm(m) && !m.is("NormRel")) {
    o.v[0] = l2 ? std::sqrt(double(num)) : double(num);
  } else if (isNorm(m)) {
    if (m.name == "vnxiNormRel_L1_8u_C1MR") {  // 32-bit signed sums that wrap
      num = std::int32_t(std::uint32_t(std::uint64_t(num)));
      den = std::int32_t(std::uint32_t(std::uint64_t(den)));
    }
    if (den == 0) {
      o.status = vnxStatusDivByZero;
      o.v[0] = num > 0 ? HUGE_VAL : num < 0 ? -HUGE_VAL : NAN;
    } else {
      o.v[0] = l2 ? std::sqrt(double(num) / double(den)) : double(num) / double(den);
    }
  } else if (n) {
    const double mean = double(s) / n;
    double sd = std::sqrt(std::fabs(double(q) / n - mean * mean));
    if (m.flt && 0.05 * mean * mean > sd * sd) {
      const double mf = static_cast<float>(mean);
      long double d = 0;
      for (double v : picked) d += (static_cast<long double>(v) - mf) * (static_cast<long double>(v) - mf);
      sd = std::sqrt(double(d) / n);
    }
    o.v[0] = mean, o.v[1] = m.is("StdDev") ? sd : 0;
  }
  for (double& v : o.v)
    if (std::isnan(v)) v = -std::numeric_limits<double>::quiet_NaN();  // 0xFFF8000000000000
  return o;
}

Outcome run(const Member& m, const AnyImage& a, const AnyImage& b, const Mask* mask, vnxiSize r, int coi,
            unsigned wanted = ~0u) {
  Call c = callOn(a, b, mask, r, coi);
  c.wanted = wanted;
  const vnxStatus s = m.call(c);
  if (isExtrema(m)) return {s, {c.out[0].f, c.out[1].f}, {c.out[2].p, c.out[3].p}, 0};
  return {s, {c.out[0].d, m.is("StdDev") ? c.out[1].d : 0}, {{0, 0}, {0, 0}}, 0};
}

// Integer results and extrema to the bit; 32f sums within a bound on the order of
// the additions, which is the library's own; an exact zero deviation stays exact.
// Results the call did not want (their `wanted` bits clear, null pointers) are not read.
void expectOutcome(const Member& m, const Outcome& e, const Outcome& g, const std::string& what, unsigned wanted = ~0u) {
  ASSERT_EQ(g.status, e.status) << what;
  for (int k = 0; k < 2; ++k) {
    const bool approx = m.flt && !isExtrema(m) && !m.is("_Inf_") && std::isfinite(e.v[k]);
    const double tol = isNorm(m) ? std::fabs(e.v[k]) * 1e-12 : k == 0 ? e.scale * 1e-12 : e.v[k] ? e.scale * 1e-6 : 0;
    EXPECT_TRUE(!(wanted >> k & 1) || (approx ? std::fabs(g.v[k] - e.v[k]) <= tol : vt::bits(g.v[k]) == vt::bits(e.v[k])))
        << what << " result " << k << ": " << g.v[k] << " vs " << e.v[k];
    EXPECT_TRUE((!isExtrema(m) || !(wanted >> (k + 2) & 1)) || (g.p[k].x == e.p[k].x && g.p[k].y == e.p[k].y))
        << what << " location " << k << ": " << g.p[k].x << "," << g.p[k].y << " vs " << e.p[k].x << "," << e.p[k].y;
  }
}

// Sources: random samples; four values only, so extremes repeat across rows and bands;
// one value everywhere (the type's greatest, which fills the 8-bit square lanes
// fastest; 32f: 1000.5, whose deviation must come out exactly 0); zero everywhere (the
// second image of a constant first one: relative norms warn with +inf). A 32f plant
// replaces one sample in 4096: 1 any NaN, 2 +inf, 3 either infinity, 4 -0 or a denormal.
enum class Src { Random, Few, Constant, Zero };
AnyImage source(const Member& m, vnxiSize r, std::mt19937& rng, vt::Guard g, Src kind, int plant = 0) {
  const double lo = m.flt ? -2.5 : m.bottom, stride = m.flt ? 1 : (m.top - m.bottom) / 3, one = m.flt ? 1000.5 : m.top;
  return m.image(r.width, r.height, m.channels, g, [&](int, int, int) -> double {
    if (plant && rng() % 4096 == 0) {
      const std::uint32_t sign = rng() % 2 ? 0x80000000u : 0;
      if (plant == 1) return vt::fromBits(sign | 0x7FC00000u | std::uint32_t(rng() % 0x3FFFFF));
      if (plant == 4) return rng() % 2 ? -0.0 : double(vt::fromBits(sign | std::uint32_t(1 + rng() % 0x7FFFFF)));
      return plant == 3 && sign ? -HUGE_VAL : HUGE_VAL;
    }
    if (kind == Src::Random) return m.random(rng);
    return kind == Src::Constant ? one : kind == Src::Zero ? 0 : lo + stride * (rng() % 4);
  });
}

std::string describe(const Member& m, vnxiSize r, const char* more, int value) {
  return m.name + " " + std::to_string(r.width) + "x" + std::to_string(r.height) + more + std::to_string(value);
}

// Single rows and columns, around one vector, odd widths, rows wider than one run of
// 16384 samples (one channel) or 1024 pixels (three channels); every mask kind, every
// channel, random subsets of the wanted results; a constant image against a zero one.
TEST(Statistics, EveryMemberMatchesTheReferenceOnAwkwardSizes) {
  std::mt19937 rng(11);
  for (const Member& m : allMembers())
    for (vnxiSize r : {vnxiSize{1, 1}, vnxiSize{1, 37}, vnxiSize{37, 1}, vnxiSize{15, 3}, vnxiSize{16, 5},
                       vnxiSize{17, 4}, vnxiSize{33, 7}, vnxiSize{47, 9}, vnxiSize{130, 3}, vnxiSize{16401, 2}})
      for (vt::Guard g : {vt::Guard::After, vt::Guard::Before})
        for (Src kind : {Src::Random, Src::Few, Src::Constant}) {
          if (kind == Src::Few && !isExtrema(m)) continue;
          const AnyImage a = source(m, r, rng, g, kind);
          const AnyImage b = m.sources == 1 ? a : source(m, r, rng, g, kind == Src::Constant ? Src::Zero : Src::Random);
          for (MaskKind mk : {MaskKind::Empty, MaskKind::Full, MaskKind::Random}) {
            if (!m.masked && mk != MaskKind::Full) continue;
            const auto mask = makeMask(mk, r.width, r.height, rng, g);
            const Mask* mp = m.masked ? mask.get() : nullptr;
            for (int coi = 1; coi <= m.channels; ++coi) {
              const unsigned wanted = isExtrema(m) || m.is("StdDev") ? rng() % 16 : ~0u;
              expectOutcome(m, reference(m, a, b, mp, r, coi), run(m, a, b, mp, r, coi, wanted),
                            describe(m, r, " mask ", int(mk)) + " coi " + std::to_string(coi), wanted);
            }
          }
        }
}

// Both sides of the cut-offs (2 threads: 131072 and 262144 pixels; extrema: 16384) and
// of the 32f kernel thresholds (5000 pixels); at every thread count and 40 bands (a
// tall 8u image of 5.2 million 255s, which widens the square lanes many times): the
// reference, and the same bits again. 32f sources carry special values.
TEST(Statistics, BandsKeepTheReferenceAndRunsRepeat) {
  std::mt19937 rng(12);
  for (const Member& m : allMembers()) {
    int plant = 0;
    for (vnxiSize r : {vnxiSize{4999, 1}, vnxiSize{5001, 1}, vnxiSize{128, 127}, vnxiSize{128, 128}, vnxiSize{512, 255},
                       vnxiSize{512, 256}, vnxiSize{512, 511}, vnxiSize{512, 512}, vnxiSize{7, 5000},
                       m.is("_8u_C1") ? vnxiSize{64, 82000} : vnxiSize{600, 1000}}) {
      plant = m.flt ? (plant + 1) % 5 : 0;
      const Src kind = r.height == 82000 ? Src::Constant : isExtrema(m) ? Src::Few : Src::Random;
      const AnyImage a = source(m, r, rng, vt::Guard::After, kind, plant);
      const AnyImage b = m.sources == 2 ? source(m, r, rng, vt::Guard::After, Src::Random) : a;
      const auto mask = makeMask(m.masked ? MaskKind::Random : MaskKind::Full, r.width, r.height, rng);
      const Mask* mp = m.masked ? mask.get() : nullptr;
      const int coi = m.channels == 3 ? 2 : 1;
      const Outcome e = reference(m, a, b, mp, r, coi);
      for (int n : {1, 2, 3, 7, 40}) {
        vt::Threads threads(n);
        const Outcome first = run(m, a, b, mp, r, coi), again = run(m, a, b, mp, r, coi);
        expectOutcome(m, e, first, describe(m, r, " threads ", n) + " plant " + std::to_string(plant));
        EXPECT_EQ(std::memcmp(first.v, again.v, sizeof first.v), 0) << describe(m, r, " repeated, threads ", n);
      }
    }
  }
}

// Statuses in their order, one fault or a pair a row; nothing is written on an error.
// Means, deviations and extrema: pointers, ROI, source and mask steps against their row
// bytes, the source step's multiple, then coi. The norms test the source steps fully
// (row bytes, then multiple) before the mask step.
TEST(Statistics, StatusesInOrderForEveryMember) {
  std::mt19937 rng(14);
  for (const Member& m : allMembers()) {
    const int eb = m.bytes, rb = 5 * m.channels * eb;
    const AnyImage a = source(m, {5, 3}, rng, vt::Guard::After, Src::Random);
    const auto mask = makeMask(MaskKind::Full, 5, 3, rng);
    const Call valid = callOn(a, a, m.masked ? mask.get() : nullptr, {5, 3}, 1);
    Call probe = valid;
    const vnxStatus ok = m.call(probe);  // NormRel of an image and itself may warn
    const vnxStatus coi = m.channels == 3 ? vnxStatusBadCoi : ok;
    const bool two = m.sources == 2, nullResult = isNorm(m) || !(isExtrema(m) || m.is("StdDev"));
    const struct { bool applies; const char* what; std::function<void(Call&)> change; vnxStatus expected; } rows[] = {
        {true, "null source, zero width", [](Call& c) { c.src1 = nullptr, c.roi.width = 0; }, vnxStatusNullPtr},
        {m.masked, "null mask, zero width", [](Call& c) { c.mask = nullptr, c.roi.width = 0; }, vnxStatusNullPtr},
        {two, "null second source, zero width", [](Call& c) { c.src2 = nullptr, c.roi.width = 0; }, vnxStatusNullPtr},
        {nullResult, "null result, zero width", [](Call& c) { c.wanted = 0, c.roi.width = 0; }, vnxStatusNullPtr},
        {true, "zero width", [](Call& c) { c.roi.width = 0; }, vnxStatusBadSize},
        {true, "zero height, bad step", [](Call& c) { c.step1 = -1, c.roi.height = 0; }, vnxStatusBadSize},
        {true, "short source step, bad coi", [=](Call& c) { c.step1 = rb - 1, c.coi = 0; }, vnxStatusBadStep},
        {true, "short by one element, bad coi", [=](Call& c) { c.step1 = rb - eb, c.coi = 0; }, vnxStatusBadStep},
        {true, "negative step", [=](Call& c) { c.step1 = -rb; }, vnxStatusBadStep},
        {two, "short second step", [=](Call& c) { c.step2 = rb - 1; }, vnxStatusBadStep},
        {two, "misaligned first, short second", [=](Call& c) { c.step1 = rb + 1, c.step2 = rb - eb; }, vnxStatusBadStep},
        {two, "misaligned second", [=](Call& c) { c.step2 = rb + 1; }, eb > 1 ? vnxStatusStepNotMultiple : ok},
        {m.masked, "short mask step, bad coi", [](Call& c) { c.maskStep = 4, c.coi = 0; }, vnxStatusBadStep},
        {m.masked, "misaligned source, short mask step", [=](Call& c) { c.step1 = rb + 1, c.maskStep = 4; },
         isNorm(m) && eb > 1 ? vnxStatusStepNotMultiple : vnxStatusBadStep},
        {true, "misaligned source, bad coi", [=](Call& c) { c.step1 = rb + 1, c.coi = 0; },
         eb > 1 ? vnxStatusStepNotMultiple : coi},
        {true, "coi 0", [](Call& c) { c.coi = 0; }, coi},
        {true, "coi 4", [](Call& c) { c.coi = 4; }, coi},
        {true, "coi INT_MIN", [](Call& c) { c.coi = std::numeric_limits<int>::min(); }, coi},
    };
    for (const auto& k : rows) {
      if (!k.applies) continue;
      Call c = valid;
      k.change(c);
      const vnxStatus s = m.call(c);
      EXPECT_EQ(s, k.expected) << m.name << ": " << k.what;
      EXPECT_TRUE(s >= 0 || std::memcmp(c.out, valid.out, sizeof c.out) == 0) << m.name << ": " << k.what;
    }
  }
}

// Which serial 32f kernel sums an image, by pixels, source alignment and step; a
// source at any byte gives the result of an aligned copy (these sums are exact).
TEST(Statistics, Float32KernelChoiceAndUnalignedSources) {
  alignas(16) static float buf[8];
  const void *a16 = buf, *a4 = buf + 1, *odd = reinterpret_cast<const char*>(buf) + 2;
  const auto S = ownSum32fKernel::Short, A = ownSum32fKernel::Aligned, G = ownSum32fKernel::General;
  const struct { vnxiSize r; const void* p; int step, channels; ownSum32fKernel expected; } cases[] = {
      {{5000, 1}, a16, 20000, 1, S},   {{5001, 1}, a4, 20016, 1, A},     {{5001, 1}, a4, 20008, 1, G},
      {{5001, 1}, odd, 20016, 1, G},   {{99999, 1}, a16, 400000, 1, A},  {{100000, 1}, a16, 400000, 1, G},
      {{4999, 1}, a16, 60000, 3, S},   {{5000, 1}, a16, 60000, 3, A},    {{5000, 1}, a4, 60000, 3, G},
      {{5000, 1}, a16, 60004, 3, G},   {{500000, 1}, a16, 6000000, 3, A}};
  for (const auto& c : cases)
    EXPECT_EQ(int(ownPickSum32fKernel(c.r, c.p, c.step, c.channels)), int(c.expected)) << c.r.width << " " << c.channels;
  std::mt19937 rng(52);
  for (vnxiSize r : {vnxiSize{7, 3}, vnxiSize{5003, 1}, vnxiSize{300, 400}}) {
    const std::size_t n = std::size_t(r.width) * r.height;
    std::vector<float> v(n);
    for (float& f : v) f = float(int(rng() % 4001) - 2000) / 256;
    std::vector<unsigned char> raw(n * 4 + 3);
    double m1 = 0, s1 = 0;
    ASSERT_EQ(vnxiMean_StdDev_32f_C1R(v.data(), r.width * 4, r, &m1, &s1), vnxStatusOk);
    for (int off = 1; off < 4; ++off) {
      std::memcpy(raw.data() + off, v.data(), n * 4);
      double m2 = 1, s2 = 1;
      ASSERT_EQ(vnxiMean_StdDev_32f_C1R(reinterpret_cast<const float*>(raw.data() + off), r.width * 4, r, &m2, &s2),
                vnxStatusOk);
      EXPECT_TRUE(vt::bits(m1) == vt::bits(m2) && vt::bits(s1) == vt::bits(s2)) << r.width << " offset " << off;
    }
  }
}

// 8.6 million differences of 255 sum past 2^31 in the 32-bit signed sum of the 8u relative L1
// norm, which wraps negative: -inf over a zero second image.
TEST(Statistics, RelativeNormsWarnOnZeroDenominatorAndWrapIn32Bits) {
  const vnxiSize r{4096, 2100};
  double v = 0;
  std::vector<vnx8u> a(std::size_t(r.width) * r.height, 255), b(a.size(), 0), mask(a.size(), 1);
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v), vnxStatusDivByZero);
  EXPECT_EQ(v, -HUGE_VAL);
  b.assign(a.size(), 1);  // 255 * 8601600 wraps to -2101559296, 8601600 stays positive
  EXPECT_EQ(vnxiNormRel_L1_8u_C1MR(a.data(), r.width, b.data(), r.width, mask.data(), r.width, r, &v), vnxStatusOk);
  EXPECT_EQ(v, double(std::int32_t(std::uint32_t(254ull * 8601600))) / 8601600.0);
}

}  // namespace
