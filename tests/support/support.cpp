#include "support.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace vt {

GuardedBytes::GuardedBytes(std::size_t bytes, int offsetBytes, Guard guard) {
  const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t span = bytes + static_cast<std::size_t>(offsetBytes);
  const std::size_t dataPages = span == 0 ? 1 : (span + page - 1) / page;
  mapBytes_ = (dataPages + 1) * page;
  map_ = mmap(nullptr, mapBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map_ == MAP_FAILED) throw std::runtime_error("mmap failed");
  char* base = static_cast<char*>(map_);
  if (guard == Guard::After) {
    mprotect(base + dataPages * page, page, PROT_NONE);
    data_ = base + dataPages * page - span;
  } else {
    mprotect(base, page, PROT_NONE);
    data_ = base + page + offsetBytes;
  }
}
GuardedBytes::~GuardedBytes() { munmap(map_, mapBytes_); }

template <class T>
Image<T>::Image(int width, int height, int channels, int padBytes, Guard guard)
    : width_(width), height_(height), channels_(channels) {
  rowBytes_ = std::size_t(width) * channels * sizeof(T);
  step_ = static_cast<int>(rowBytes_) + padBytes;
  const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  // The rows span (height - 1) steps plus one row; padding after the last row
  // is not mapped when the guard page follows it.
  const std::size_t span = std::size_t(step_) * (height - 1) + rowBytes_;
  const std::size_t dataPages = (span + page - 1) / page;
  mapBytes_ = (dataPages + 1) * page;
  map_ = mmap(nullptr, mapBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map_ == MAP_FAILED) throw std::runtime_error("mmap failed");
  char* base = static_cast<char*>(map_);
  if (guard == Guard::After) {
    mprotect(base + dataPages * page, page, PROT_NONE);
    roi_ = reinterpret_cast<T*>(base + dataPages * page - span);
  } else {
    mprotect(base, page, PROT_NONE);
    roi_ = reinterpret_cast<T*>(base + page);
  }
  std::memset(guard == Guard::After ? base : base + page, kCanary, dataPages * page);
  fill([](int, int, int) { return 0; });
}

template <class T>
Image<T>::~Image() {
  munmap(map_, mapBytes_);
}

template <class T>
bool Image<T>::canaryIntact() const {
  for (int y = 0; y + 1 < height_; ++y) {
    const unsigned char* pad = reinterpret_cast<const unsigned char*>(row(y)) + rowBytes_;
    for (std::size_t i = rowBytes_; i < std::size_t(step_); ++i, ++pad)
      if (*pad != kCanary) return false;
  }
  return true;
}

template <class T>
std::vector<T> Image<T>::pixels() const {
  std::vector<T> out;
  out.reserve(std::size_t(width_) * height_ * channels_);
  for (int y = 0; y < height_; ++y) out.insert(out.end(), row(y), row(y) + width_ * channels_);
  return out;
}

template <class T>
T randomSample(std::mt19937& rng) {
  if constexpr (std::is_floating_point<T>::value) {
    std::uniform_real_distribution<float> mant(-1.0f, 1.0f);
    std::uniform_int_distribution<int> ex(-8, 12);
    return static_cast<T>(std::ldexp(mant(rng), ex(rng)));
  } else {
    std::uniform_int_distribution<int> d(std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    return static_cast<T>(d(rng));
  }
}

template class Image<unsigned char>;
template class Image<signed char>;
template class Image<unsigned short>;
template class Image<short>;
template class Image<int>;
template class Image<float>;
template class Image<double>;  // squared integral tables
template unsigned char randomSample<unsigned char>(std::mt19937&);
template signed char randomSample<signed char>(std::mt19937&);
template unsigned short randomSample<unsigned short>(std::mt19937&);
template short randomSample<short>(std::mt19937&);
template float randomSample<float>(std::mt19937&);

Threads::Threads(int n) {
  vnxGetNumThreads(&saved_);
  vnxSetNumThreads(n);
}
Threads::~Threads() { vnxSetNumThreads(saved_); }

}  // namespace vt
