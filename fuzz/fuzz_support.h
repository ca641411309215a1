// Shared pieces of the libFuzzer harnesses: a reader that turns the fuzzer's bytes
// into arguments, guard-page buffers with canary padding, a trap page for calls that
// must fail before touching memory, and the expected-status arithmetic of the call
// frame (pointers, ROI, step groups) written from the contract, not from the library.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "vnxcv.h"

namespace fz {

// ---- violations ----------------------------------------------------------------

// What the harness is calling, printed with a violation.
inline char* context() {
  static char text[512];
  return text;
}
// FZ_TRACE=1 in the environment prints it before the call as well (for faults a
// sanitizer reports on its own, when replaying a reproducer).
#define FZ_CONTEXT(...)                                                      \
  do {                                                                       \
    std::snprintf(fz::context(), 512, __VA_ARGS__);                          \
    if (std::getenv("FZ_TRACE")) std::fprintf(stderr, "%s\n", fz::context()); \
  } while (0)

[[noreturn]] inline void fail(const char* file, int line, const char* what, long long a, long long b) {
  std::fprintf(stderr, "\n*** %s:%d: contract violation: %s (got %lld, expected %lld)\n    in %s\n", file, line,
               what, a, b, context());
  std::fflush(stderr);
  __builtin_trap();
}
#define FZ_CHECK(cond, what) \
  do {                       \
    if (!(cond)) fz::fail(__FILE__, __LINE__, what, 0, 0); \
  } while (0)
#define FZ_CHECK_EQ(a, b, what)                                                         \
  do {                                                                                  \
    const long long a_ = (long long)(a), b_ = (long long)(b);                           \
    if (a_ != b_) fz::fail(__FILE__, __LINE__, what, a_, b_);                           \
  } while (0)

// Largest buffer a harness allocates for one image; bigger images only appear in
// calls whose arguments the checks must reject, or are not called at all.
constexpr std::int64_t kMaxImageBytes = 4 << 20;

// ---- the fuzzer's bytes ------------------------------------------------------------

class Reader {
 public:
  Reader(const std::uint8_t* p, std::size_t n) : p_(p), n_(n) {}
  std::uint8_t u8() {
    if (!n_) return 0;
    --n_;
    return *p_++;
  }
  std::uint16_t u16() { return static_cast<std::uint16_t>(u8() | (u8() << 8)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(u16()) | (static_cast<std::uint32_t>(u16()) << 16); }
  int pick(int n) { return n <= 1 ? 0 : static_cast<int>(u8() % n); }
  bool oneIn(int n) { return pick(n) == 0; }
  // Interesting signed values first, then anything.
  int anyInt() {
    static const int kVals[] = {0, 1, -1, 2, 3, 5, 7, 255, 256, -128, 65535, INT_MAX, INT_MIN, INT_MIN + 1, 1 << 30};
    const int k = pick(20);
    if (k < 15) return kVals[k];
    return static_cast<int>(u32());
  }
  float anyFloat() {
    static const std::uint32_t kBits[] = {0x00000000u, 0x80000000u, 0x3f800000u, 0xbf800000u, 0x7fc00000u,
                                          0xffc00000u, 0x7f800001u, 0x7fa00000u, 0x7f800000u, 0xff800000u,
                                          0x00000001u, 0x807fffffu, 0x7f7fffffu, 0xff7fffffu, 0x3effffffu};
    const int k = pick(24);
    std::uint32_t u;
    if (k < 15)
      u = kBits[k];
    else if (k < 20) {
      float f = static_cast<float>(static_cast<std::int8_t>(u8())) * 0.375f;
      return f;
    } else
      u = u32();
    float f;
    std::memcpy(&f, &u, 4);
    return f;
  }
  // The bytes the fuzzer has not used for arguments: the pixel data.
  const std::uint8_t* rest() const { return p_; }
  std::size_t restSize() const { return n_; }

 private:
  const std::uint8_t* p_;
  std::size_t n_;
};

// Pixel data: the remaining bytes, repeated; floats take specials, fractions,
// wide magnitudes and raw patterns (NaNs with payloads, denormals, infinities).
class Pixels {
 public:
  explicit Pixels(const Reader& r) : p_(r.rest()), n_(r.restSize()) {}
  std::uint8_t byte() {
    if (!n_) return static_cast<std::uint8_t>(i_++ * 37 + 11);
    return p_[i_++ % n_];
  }
  void fill(vnx8u* d, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) d[i] = byte();
  }
  void fill(vnx8s* d, std::size_t n) { fill(reinterpret_cast<vnx8u*>(d), n); }
  // Stores through memcpy: a harness may place samples at any byte address.
  void fill(vnx16u* d, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
      const vnx16u v = static_cast<vnx16u>(byte() | (byte() << 8));
      std::memcpy(reinterpret_cast<std::uint8_t*>(d) + 2 * i, &v, 2);
    }
  }
  void fill(vnx16s* d, std::size_t n) { fill(reinterpret_cast<vnx16u*>(d), n); }
  void fill(vnx32f* d, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
      const float v = sample32f();
      std::memcpy(reinterpret_cast<std::uint8_t*>(d) + 4 * i, &v, 4);
    }
  }
  float sample32f() {
    const std::uint8_t c = byte();
    switch (c & 7) {
      case 0: case 1: case 2: case 3:
        return static_cast<float>(static_cast<std::int8_t>(byte())) * 0.375f;
      case 4:
        return std::ldexp(static_cast<float>(static_cast<std::int8_t>(byte())), (c >> 3) * 8 - 120);
      case 5: {
        static const std::uint32_t kBits[] = {0x7fc00000u, 0xffc00000u, 0x7f800001u, 0xffa00001u,
                                              0x7f800000u, 0xff800000u, 0x80000000u, 0x00000003u};
        float f;
        std::memcpy(&f, &kBits[(c >> 3) & 7], 4);
        return f;
      }
      default: {
        std::uint32_t u = byte() | (byte() << 8) | (byte() << 16) | (static_cast<std::uint32_t>(byte()) << 24);
        float f;
        std::memcpy(&f, &u, 4);
        return f;
      }
    }
  }

 private:
  const std::uint8_t* p_;
  std::size_t n_;
  std::size_t i_ = 0;
};

// ---- sizes and steps ---------------------------------------------------------------

// Width or height: mostly small, sometimes large enough for the parallel paths
// (up to `largeMax`), sometimes 0, negative, or too large for any buffer.
inline int pickDim(Reader& r, int smallMax, int largeMax) {
  const int k = r.pick(32);
  switch (k) {
    case 0: return 0;
    case 1: return -1 - r.pick(4);
    case 2: return INT_MIN;
    case 3: return INT_MAX;
    case 4: return (1 << 30) + r.pick(17) - 8;
    case 5: return 65536 + r.u8();
    case 6: return (1 << 28) + r.u8();
    case 7: return static_cast<int>(r.u32());
    case 8: case 9: case 10: case 11: case 12:
      return largeMax / 2 + r.u16() % (largeMax / 2 + 1);
    default: return 1 + r.u8() % smallMax;
  }
}

inline int clampInt(std::int64_t v) {
  return v > INT_MAX ? INT_MAX : v < INT_MIN ? INT_MIN : static_cast<int>(v);
}

// A step for rows of `rowBytes` bytes of elements of `elem` bytes: mostly valid with
// some padding, sometimes too small, odd, zero, negative or extreme.
inline int pickStep(Reader& r, std::int64_t rowBytes, int elem) {
  const int k = r.pick(24);
  switch (k) {
    case 0: return clampInt(rowBytes - 1);
    case 1: return clampInt(rowBytes - elem);
    case 2: return 0;
    case 3: return clampInt(-rowBytes);
    case 4: return INT_MIN;
    case 5: return clampInt(rowBytes + 1);
    case 6: return INT_MAX;
    case 7: return clampInt(rowBytes + r.pick(16));
    case 8: return -1 - r.pick(64);
    case 9: case 10: case 11: case 12: return clampInt(rowBytes + std::int64_t(elem) * r.pick(9));
    default: return clampInt(rowBytes);
  }
}

// ---- the call frame's check order, from the contract ------------------------------

struct StepArg {
  int step;
  std::int64_t rowBytes;
  int elem;  // 1: no multiple-of-size test
};
// An operand a member does not have: passes every test.
constexpr StepArg kAbsent{0, 0, 1};


inline vnxStatus expectPtrs(std::initializer_list<const void*> ps) {
  for (const void* p : ps)
    if (!p) return vnxStatusNullPtr;
  return vnxStatusOk;
}
inline vnxStatus expectRoi(vnxiSize roi) {
  return roi.width < 1 || roi.height < 1 ? vnxStatusBadSize : vnxStatusOk;
}
// One group: every row-bytes test first, then every multiple-of-size test.
inline vnxStatus expectSteps(std::initializer_list<StepArg> group) {
  for (const StepArg& s : group)
    if (static_cast<std::int64_t>(s.step) < s.rowBytes) return vnxStatusBadStep;
  for (const StepArg& s : group)
    if (s.elem > 1 && s.step % s.elem != 0) return vnxStatusStepNotMultiple;
  return vnxStatusOk;
}
inline std::int64_t rowBytes(vnxiSize roi, int pixelBytes) { return std::int64_t(roi.width) * pixelBytes; }

// ---- memory ------------------------------------------------------------------------

inline std::size_t pageSize() {
  static const std::size_t p = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return p;
}

// Pages nobody may touch: the pointer handed to a call whose checks must fail
// before it reads or writes anything.
inline std::uint8_t* trapPage() {
  static std::uint8_t* p = [] {
    void* m = mmap(nullptr, 2 * pageSize(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (m == MAP_FAILED) std::abort();
    return static_cast<std::uint8_t*>(m);
  }();
  return p;
}

enum class Guard { After, Before };
constexpr std::uint8_t kCanary = 0xA5;

// `bytes` accessible bytes between protected pages: with Guard::After the last one
// sits right before a protected page, with Guard::Before the first right after one
// (moved `lead` bytes in, for alignment). Every accessible byte starts as canary.
class Block {
 public:
  Block() = default;
  Block(std::size_t bytes, Guard guard, std::size_t lead = 0) { map(bytes, guard, lead); }
  enum Fill { kCanaryFill, kUntouched };
  ~Block() { unmap(); }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  // kUntouched leaves the pages unwritten (they read as zeros and cost no memory
  // until written): for the few huge buffers a harness maps on purpose.
  void map(std::size_t bytes, Guard guard, std::size_t lead = 0, Fill fill = kCanaryFill) {
    unmap();
    const std::size_t pg = pageSize();
    const std::size_t body = bytes + lead == 0 ? pg : (bytes + lead + pg - 1) / pg * pg;
    total_ = body + 2 * pg;
    void* m = mmap(nullptr, total_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (m == MAP_FAILED) std::abort();
    base_ = static_cast<std::uint8_t*>(m);
    mprotect(base_, pg, PROT_NONE);
    mprotect(base_ + pg + body, pg, PROT_NONE);
    lo_ = base_ + pg;
    hi_ = base_ + pg + body;
    data_ = guard == Guard::After ? hi_ - bytes : lo_ + lead;
    bytes_ = bytes;
    if (fill == kCanaryFill) std::memset(lo_, kCanary, body);
  }
  std::uint8_t* data() const { return data_; }
  std::size_t bytes() const { return bytes_; }
  // Every accessible byte, canary slack included.
  std::uint8_t* lo() const { return lo_; }
  std::size_t span() const { return static_cast<std::size_t>(hi_ - lo_); }

 private:
  void unmap() {
    if (base_) munmap(base_, total_);
    base_ = nullptr;
  }
  std::uint8_t* base_ = nullptr;
  std::uint8_t *lo_ = nullptr, *hi_ = nullptr, *data_ = nullptr;
  std::size_t total_ = 0, bytes_ = 0;
};

// An image operand: `height` rows of `rowBytes` bytes, `step` apart as the call is
// told. Memory is real when the shape is valid and small enough (rows laid out with
// max(step, rowBytes) so a call that wrongly accepts a bad step stays inside); else
// the pointer is the trap page. Padding between rows holds the canary.
class Img {
 public:
  // `align`: byte offset of the first pixel from a 16-byte boundary (Guard::Before) or
  // of the end (Guard::After), a multiple of the element size unless a harness wants
  // misaligned samples.
  void make(std::int64_t width, std::int64_t height, int pixelBytes, int step, Guard guard, int lead = 0) {
    rowBytes_ = width * pixelBytes;
    height_ = height;
    step_ = step;
    real_ = false;
    if (width < 1 || height < 1 || rowBytes_ > kMaxImageBytes || height > kMaxImageBytes) {
      ptr_ = trapPage() + pageSize();
      return;
    }
    memStep_ = step >= rowBytes_ ? step : rowBytes_;
    const std::int64_t bytes = (height - 1) * memStep_ + rowBytes_;
    if (bytes > kMaxImageBytes) {
      ptr_ = trapPage() + pageSize();
      return;
    }
    block_.map(static_cast<std::size_t>(bytes), guard, static_cast<std::size_t>(lead));
    ptr_ = block_.data();
    real_ = true;
  }
  bool real() const { return real_; }
  std::uint8_t* ptr() const { return ptr_; }
  int step() const { return step_; }
  std::uint8_t* row(std::int64_t y) const { return ptr_ + y * memStep_; }
  std::int64_t rowBytes() const { return rowBytes_; }
  std::int64_t height() const { return height_; }
  template <class T>
  void fill(Pixels& px) {
    if (!real_) return;
    for (std::int64_t y = 0; y < height_; ++y) px.fill(reinterpret_cast<T*>(row(y)), rowBytes_ / sizeof(T));
  }
  // Copy of every accessible byte, to compare after a call.
  void snapshot() {
    if (real_) snap_.assign(block_.lo(), block_.lo() + block_.span());
  }
  void restore() {
    if (real_) std::memcpy(block_.lo(), snap_.data(), snap_.size());
  }
  // Nothing changed at all.
  bool unchanged() const { return !real_ || std::memcmp(block_.lo(), snap_.data(), snap_.size()) == 0; }
  // Nothing changed outside the ROI rows (padding, slack before and after).
  bool paddingIntact() const {
    if (!real_) return true;
    const std::uint8_t* lo = block_.lo();
    std::size_t at = 0;
    for (std::int64_t y = 0; y < height_; ++y) {
      const std::size_t r0 = static_cast<std::size_t>(row(y) - lo);
      if (std::memcmp(lo + at, snap_.data() + at, r0 - at) != 0) return false;
      at = r0 + static_cast<std::size_t>(rowBytes_);
    }
    return std::memcmp(lo + at, snap_.data() + at, snap_.size() - at) == 0;
  }
  // The ROI bytes, row by row.
  std::vector<std::uint8_t> roiBytes() const {
    std::vector<std::uint8_t> v;
    if (!real_) return v;
    v.reserve(static_cast<std::size_t>(rowBytes_ * height_));
    for (std::int64_t y = 0; y < height_; ++y) v.insert(v.end(), row(y), row(y) + rowBytes_);
    return v;
  }

 private:
  Block block_;
  std::uint8_t* ptr_ = nullptr;
  std::int64_t rowBytes_ = 0, height_ = 0, memStep_ = 0;
  int step_ = 0;
  bool real_ = false;
  std::vector<std::uint8_t> snap_;
};

// A plain array of n elements (results, kernels, row-pointer arrays, work buffers)
// ending right before a protected page; the trap page when n is too large.
template <class T>
class Arr {
 public:
  void make(std::int64_t n) {
    n_ = n;
    real_ = n >= 0 && n * std::int64_t(sizeof(T)) <= kMaxImageBytes;
    if (real_) {
      block_.map(static_cast<std::size_t>(n * sizeof(T)), Guard::After);
      ptr_ = reinterpret_cast<T*>(block_.data());
    } else {
      ptr_ = reinterpret_cast<T*>(trapPage() + pageSize());
    }
  }
  T* ptr() const { return ptr_; }
  T& operator[](std::int64_t i) const { return ptr_[i]; }
  std::int64_t size() const { return n_; }
  bool real() const { return real_; }
  void snapshot() {
    if (real_) snap_.assign(block_.lo(), block_.lo() + block_.span());
  }
  void restore() {
    if (real_) std::memcpy(block_.lo(), snap_.data(), snap_.size());
  }
  bool unchanged() const { return !real_ || std::memcmp(block_.lo(), snap_.data(), snap_.size()) == 0; }

 private:
  Block block_;
  T* ptr_ = nullptr;
  std::int64_t n_ = 0;
  bool real_ = false;
  std::vector<std::uint8_t> snap_;
};

// ---- threads and NaNs ---------------------------------------------------------------

// Thread counts each successful call is repeated with; results must equal those of 1.
constexpr int kThreadCounts[] = {1, 2, 3};

inline void setThreads(int n) {
  if (vnxSetNumThreads(n) != vnxStatusOk) std::abort();
}

inline bool canonicalNaN32(float v) {
  std::uint32_t u;
  std::memcpy(&u, &v, 4);
  return v == v || u == 0xFFC00000u;
}
inline bool canonicalNaN64(double v) {
  std::uint64_t u;
  std::memcpy(&u, &v, 8);
  return v == v || u == 0xFFF8000000000000ull;
}
// Every NaN among n floats has the default bits.
inline bool allNaNsCanonical(const std::uint8_t* p, std::size_t bytes) {
#ifdef VNX_FUZZ_SKIP_NAN_RULE
  (void)p, (void)bytes;
  return true;
#else
  for (std::size_t i = 0; i + 4 <= bytes; i += 4) {
    float f;
    std::memcpy(&f, p + i, 4);
    if (!canonicalNaN32(f)) return false;
  }
  return true;
#endif
}
inline bool nanRuleHolds64(double v) {
#ifdef VNX_FUZZ_SKIP_NAN_RULE
  (void)v;
  return true;
#else
  return canonicalNaN64(v);
#endif
}

}  // namespace fz
