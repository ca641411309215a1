// Shared pieces of the statistics tests: type-erased images of the four source
// types, masks, and the sizes every member is measured on.
#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <tuple>

#include "support.h"

namespace st {

enum class Ty { U8, S8, U16, F32 };

template <class T>
constexpr Ty tyOf() {
  return std::is_same<T, vnx8u>::value    ? Ty::U8
         : std::is_same<T, vnx8s>::value  ? Ty::S8
         : std::is_same<T, vnx16u>::value ? Ty::U16
                                          : Ty::F32;
}

// A sample of an image of any of the four types, read as double.
struct AnyImage {
  Ty ty;
  std::shared_ptr<void> holder;
  const void* ptr;
  int step;
  std::function<double(int x, int y, int c)> at;
};

template <class T>
AnyImage makeImage(int w, int h, int channels, vt::Guard guard, std::function<T(int, int, int)> f) {
  auto img = std::make_shared<vt::Image<T>>(w, h, channels, 3 * int(sizeof(T)), guard);
  img->fill(f);
  vt::Image<T>* raw = img.get();
  return {tyOf<T>(), img, img->ptr(), img->step(), [raw](int x, int y, int c) { return double(raw->at(x, y, c)); }};
}

// An image of any of the four types with samples f(x, y, c), converted to the type.
inline AnyImage imageOf(Ty ty, int w, int h, int channels, vt::Guard guard, std::function<double(int, int, int)> f) {
  switch (ty) {
    case Ty::U8: return makeImage<vnx8u>(w, h, channels, guard, [&](int x, int y, int c) { return vnx8u(f(x, y, c)); });
    case Ty::S8: return makeImage<vnx8s>(w, h, channels, guard, [&](int x, int y, int c) { return vnx8s(f(x, y, c)); });
    case Ty::U16:
      return makeImage<vnx16u>(w, h, channels, guard, [&](int x, int y, int c) { return vnx16u(f(x, y, c)); });
    default: return makeImage<vnx32f>(w, h, channels, guard, [&](int x, int y, int c) { return vnx32f(f(x, y, c)); });
  }
}
// Random samples over the type's whole range (floats: a spread of magnitudes and signs).
inline AnyImage randomImage(Ty ty, int w, int h, int channels, std::mt19937& rng, vt::Guard guard = vt::Guard::After) {
  return imageOf(ty, w, h, channels, guard, [&](int, int, int) -> double {
    switch (ty) {
      case Ty::U8: return vt::randomSample<vnx8u>(rng);
      case Ty::S8: return vt::randomSample<vnx8s>(rng);
      case Ty::U16: return vt::randomSample<vnx16u>(rng);
      default: return vt::randomSample<vnx32f>(rng);
    }
  });
}

// Masks: all zero, all 255, or random (about a third of the pixels selected, values 1..255).
enum class MaskKind { Empty, Full, Random };
struct Mask {
  std::shared_ptr<vt::Image<vnx8u>> img;
  const vnx8u* ptr() const { return img->ptr(); }
  int step() const { return img->step(); }
  bool on(int x, int y) const { return img->at(x, y) != 0; }
};
inline Mask makeMask(MaskKind k, int w, int h, std::mt19937& rng, vt::Guard guard = vt::Guard::After) {
  auto img = std::make_shared<vt::Image<vnx8u>>(w, h, 1, 5, guard);
  img->fill([&](int, int, int) {
    if (k == MaskKind::Empty) return 0u;
    if (k == MaskKind::Full) return 255u;
    return rng() % 3 == 0 ? unsigned(1 + rng() % 255) : 0u;
  });
  return {img};
}

// Awkward sizes: single rows and columns, around one vector, odd widths, and rows
// wider than one run of 16384 samples (one channel) or 1024 pixels (three channels).
inline const std::vector<vnxiSize>& awkwardSizes() {
  static const std::vector<vnxiSize> s = {{1, 1},  {1, 37}, {37, 1},  {15, 3},    {16, 5},
                                          {17, 4}, {33, 7}, {47, 9}, {130, 3}, {16401, 2}};
  return s;
}

// The operands and results of one call of any statistics export, by name. Results
// are numbered in argument order (mean, deviation; norm; minimum, maximum and their
// locations); a result whose bit in `wanted` is clear is passed as a null pointer.
struct Call {
  const void* src1 = nullptr;
  int step1 = 0;
  const void* src2 = nullptr;
  int step2 = 0;
  const vnx8u* mask = nullptr;
  int maskStep = 0;
  vnxiSize roi{0, 0};
  int coi = 1;
  unsigned wanted = ~0u;
  double d[2] = {-7, -7};
  float f[2] = {-7, -7};
  vnxiPoint p[2] = {{-7, -7}, {-7, -7}};
};

// A call on one or two sources and an optional mask.
inline Call callOn(const AnyImage& a, const AnyImage& b, const Mask* mask, vnxiSize r, int coi) {
  Call c;
  c.src1 = a.ptr, c.step1 = a.step, c.src2 = b.ptr, c.step2 = b.step, c.roi = r, c.coi = coi;
  if (mask) c.mask = mask->ptr(), c.maskStep = mask->step();
  return c;
}

// One export and what its name says: element type, channels, mask, sources.
struct Member {
  std::string name;
  Ty ty;
  int channels;
  bool masked;
  int sources;  // 2: NormDiff, NormRel
  std::function<vnxStatus(Call&)> call;
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
    } else if constexpr (std::is_same<P, vnx64f*>::value || std::is_same<P, vnx32f*>::value ||
                         std::is_same<P, vnxiPoint*>::value) {
      const int k = results++;
      if (!(c.wanted >> k & 1)) return nullptr;
      if constexpr (std::is_same<P, vnx64f*>::value)
        return &c.d[k];
      else if constexpr (std::is_same<P, vnx32f*>::value)
        return &c.f[k];
      else
        return &c.p[k - 2];
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
  return {n, tyOf<T>(), n.find("_C3") != std::string::npos ? 3 : 1, n.find("MR") != std::string::npos, sources, call};
}
#define ST_MEMBER(fn) st::member(#fn, fn)

inline int elemBytes(Ty t) { return t == Ty::U8 || t == Ty::S8 ? 1 : t == Ty::U16 ? 2 : 4; }

// A status case: a change to a valid call and the status it must give; on an error
// no result is written.
struct StatusCase {
  const char* what;
  std::function<void(Call&)> change;
  vnxStatus expected;
};
inline void expectStatuses(const Member& m, const Call& valid, const std::vector<StatusCase>& cases) {
  for (const StatusCase& k : cases) {
    Call c = valid;
    k.change(c);
    const vnxStatus s = m.call(c);
    EXPECT_EQ(s, k.expected) << m.name << ": " << k.what;
    if (s < 0) {
      EXPECT_TRUE(c.d[0] == -7 && c.d[1] == -7 && c.f[0] == -7 && c.f[1] == -7 && c.p[0].x == -7 && c.p[1].y == -7)
          << m.name << ": " << k.what;
    }
  }
}

// The statuses of the means, deviations and extrema, on a valid call of 5 x 3 pixels:
// pointers, ROI, source and mask steps, the source step's multiple, then coi.
inline std::vector<StatusCase> statStatusCases(const Member& m) {
  const int eb = elemBytes(m.ty), rowBytes = 5 * m.channels * eb;
  const bool c3 = m.channels == 3, wide = eb > 1;
  const vnxStatus coiStatus = c3 ? vnxStatusBadCoi : vnxStatusOk;
  std::vector<StatusCase> cases = {
      {"null source, zero width", [](Call& c) { c.src1 = nullptr, c.roi.width = 0; }, vnxStatusNullPtr},
      {"zero width", [](Call& c) { c.roi.width = 0; }, vnxStatusBadSize},
      {"zero height, bad step", [](Call& c) { c.step1 = -1, c.roi.height = 0; }, vnxStatusBadSize},
      {"short source step", [=](Call& c) { c.step1 = rowBytes - 1, c.coi = 0; }, vnxStatusBadStep},
      {"short by one element", [=](Call& c) { c.step1 = rowBytes - eb, c.coi = 0; }, vnxStatusBadStep},
      {"negative step", [=](Call& c) { c.step1 = -rowBytes; }, vnxStatusBadStep},
      {"bad coi", [](Call& c) { c.coi = 0; }, coiStatus},
      {"coi 4", [](Call& c) { c.coi = 4; }, coiStatus},
      {"coi INT_MIN", [](Call& c) { c.coi = std::numeric_limits<int>::min(); }, coiStatus},
      {"step not a multiple, bad coi", [=](Call& c) { c.step1 = rowBytes + 1, c.coi = 0; },
       wide ? vnxStatusStepNotMultiple : coiStatus},
  };
  if (m.masked) {
    cases.push_back({"null mask", [](Call& c) { c.mask = nullptr; }, vnxStatusNullPtr});
    cases.push_back({"short mask step", [](Call& c) { c.maskStep = 4; }, vnxStatusBadStep});
    cases.push_back(
        {"short mask step, misaligned source", [=](Call& c) { c.step1 = rowBytes + 1, c.maskStep = 4; }, vnxStatusBadStep});
  }
  return cases;
}

}  // namespace st
