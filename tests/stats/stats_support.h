// Shared pieces of the statistics tests: type-erased images of the four source
// types, masks, and the sizes every member is measured on.
#pragma once

#include <functional>
#include <memory>
#include <random>

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

inline AnyImage randomImage(Ty ty, int w, int h, int channels, std::mt19937& rng, vt::Guard guard = vt::Guard::After) {
  switch (ty) {
    case Ty::U8:
      return makeImage<vnx8u>(w, h, channels, guard, [&](int, int, int) { return vt::randomSample<vnx8u>(rng); });
    case Ty::S8:
      return makeImage<vnx8s>(w, h, channels, guard, [&](int, int, int) { return vt::randomSample<vnx8s>(rng); });
    case Ty::U16:
      return makeImage<vnx16u>(w, h, channels, guard, [&](int, int, int) { return vt::randomSample<vnx16u>(rng); });
    default:
      return makeImage<vnx32f>(w, h, channels, guard, [&](int, int, int) { return vt::randomSample<vnx32f>(rng); });
  }
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

inline double floatSpan(double a) { return std::fabs(a) * 1e-9 + 1e-300; }

}  // namespace st
