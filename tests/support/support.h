// Test support: guard-page images, canary padding, bit-pattern compares,
// a thread-count guard and a seeded random source.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "vnxcv.h"

namespace vt {

constexpr unsigned char kCanary = 0xA5;

enum class Guard { After, Before };

// An image of width x height pixels of `channels` samples of T whose row step
// leaves `padBytes` of padding after each row (filled with a canary). With
// Guard::After the last ROI byte sits right before an inaccessible page; with
// Guard::Before the first ROI byte sits right after one. Any read or write
// outside the rows faults; a write into the padding shows in canaryIntact().
template <class T>
class Image {
 public:
  Image(int width, int height, int channels = 1, int padBytes = 0, Guard guard = Guard::After);
  ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  T* ptr() const { return roi_; }
  int step() const { return step_; }
  int width() const { return width_; }
  int height() const { return height_; }
  int channels() const { return channels_; }
  vnxiSize size() const { return {width_, height_}; }
  T* row(int y) const { return reinterpret_cast<T*>(reinterpret_cast<char*>(roi_) + std::ptrdiff_t(step_) * y); }
  T& at(int x, int y, int c = 0) const { return row(y)[x * channels_ + c]; }
  bool canaryIntact() const;
  // Fills every sample with f(x, y, c).
  template <class F>
  void fill(F f) {
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x)
        for (int c = 0; c < channels_; ++c) at(x, y, c) = static_cast<T>(f(x, y, c));
  }
  // Copies the ROI into a dense vector, row by row.
  std::vector<T> pixels() const;

 private:
  int width_, height_, channels_, step_;
  std::size_t rowBytes_;
  void* map_ = nullptr;
  std::size_t mapBytes_ = 0;
  T* roi_ = nullptr;
};

// Random samples covering the whole range of T (floats: a spread of magnitudes and signs).
template <class T>
T randomSample(std::mt19937& rng);

// As randomSample, but one float in eight is special: NaN of either sign, an infinity, -0 or a denormal.
template <class T>
T randomSampleOrSpecial(std::mt19937& rng) {
  if constexpr (std::is_floating_point<T>::value) {
    const T nan = std::numeric_limits<T>::quiet_NaN(), inf = std::numeric_limits<T>::infinity();
    const T special[] = {nan, -nan, inf, -inf, T(-0.0), T(1e-40f)};
    if (rng() % 8 == 0) return special[rng() % 6];
  }
  return randomSample<T>(rng);
}

template <class T>
void fillRandom(Image<T>& img, std::mt19937& rng) {
  img.fill([&](int, int, int) { return randomSample<T>(rng); });
}

inline std::uint32_t bits(float v) {
  std::uint32_t u;
  std::memcpy(&u, &v, 4);
  return u;
}
inline std::uint64_t bits(double v) {
  std::uint64_t u;
  std::memcpy(&u, &v, 8);
  return u;
}
inline float fromBits(std::uint32_t u) {
  float v;
  std::memcpy(&v, &u, 4);
  return v;
}

// Sets the library's thread count for a scope and restores it afterwards.
class Threads {
 public:
  explicit Threads(int n);
  ~Threads();

 private:
  int saved_;
};

// Thread counts every parallel operation is tested with.
inline const std::vector<int>& threadCounts() {
  static const std::vector<int> counts = {1, 2, 3, 4, 7};
  return counts;
}

// The kernel harness. A row of n elements of T on pages of its own: with Guard::After
// the row ends `offsetBytes` before an inaccessible page (0: right before it), with
// Guard::Before it starts `offsetBytes` after one. Reads past either end of a row at
// offset 0 fault; offsets 1..15 move the row across every alignment.
class GuardedBytes {
 public:
  GuardedBytes(std::size_t bytes, int offsetBytes, Guard guard);
  ~GuardedBytes();
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;
  void* data() const { return data_; }

 private:
  void* map_ = nullptr;
  std::size_t mapBytes_ = 0;
  void* data_ = nullptr;
};
template <class T>
class Span {
 public:
  // The offset is taken in whole elements (rounded down): a pointer to T is aligned
  // for T, as C requires of every pointer an application passes.
  Span(std::size_t n, int offsetBytes = 0, Guard guard = Guard::After)
      : bytes_(n * sizeof(T), offsetBytes / static_cast<int>(sizeof(T)) * static_cast<int>(sizeof(T)), guard),
        n_(n) {}
  T* data() const { return static_cast<T*>(bytes_.data()); }
  T& operator[](std::size_t i) const { return data()[i]; }
  std::size_t size() const { return n_; }

 private:
  GuardedBytes bytes_;
  std::size_t n_;
};

// Shapes every SIMD row kernel is compared with its scalar template on: every width
// from 0 to three vectors + 3 and one large width, each at byte offsets 0 to 15 and
// with the guard page after and before the row. f(width, offsetBytes, guard).
template <class F>
void forKernelShapes(int vectorElems, F&& f) {
  std::vector<int> widths;
  for (int w = 0; w <= 3 * vectorElems + 3; ++w) widths.push_back(w);
  widths.push_back(4099);
  for (int w : widths)
    for (int off = 0; off < 16; ++off)
      for (Guard g : {Guard::After, Guard::Before}) f(w, off, g);
}

}  // namespace vt

// Compares two sample sequences; floats by bit pattern.
#define VT_EXPECT_SAME_SAMPLES(expected, actual)                                                    \
  do {                                                                                              \
    const auto& e_ = (expected);                                                                    \
    const auto& a_ = (actual);                                                                      \
    ASSERT_EQ(e_.size(), a_.size());                                                                \
    for (std::size_t i_ = 0; i_ < e_.size(); ++i_)                                                  \
      if (std::memcmp(&e_[i_], &a_[i_], sizeof e_[i_]) != 0) {                                      \
        ADD_FAILURE() << "first difference at sample " << i_ << ": expected " << +e_[i_] << ", got " \
                      << +a_[i_];                                                                   \
        break;                                                                                      \
      }                                                                                             \
  } while (0)

// ---- r1: a table-driven status runner ------------------------------------------
#include <initializer_list>

namespace vt {

// The bytes of one output that an error must leave as they were.
struct Watched {
  const void* p;
  std::size_t bytes;
};

// Runs call(row) for every row of a fault table (rows carry `what` and `want`),
// expects the row's status, and on an error status expects every watched output
// byte for byte as it was before the call.
template <class Rows, class Call>
void expectStatuses(const Rows& rows, std::initializer_list<Watched> outputs, Call call) {
  for (const auto& r : rows) {
    std::vector<std::vector<char>> before;
    for (const Watched& o : outputs)
      before.emplace_back(static_cast<const char*>(o.p), static_cast<const char*>(o.p) + o.bytes);
    EXPECT_EQ(call(r), r.want) << r.what;
    if (r.want >= 0) continue;
    std::size_t i = 0;
    for (const Watched& o : outputs)
      EXPECT_EQ(std::memcmp(before[i++].data(), o.p, o.bytes), 0) << r.what << ": an output was written on error";
  }
}

}  // namespace vt
