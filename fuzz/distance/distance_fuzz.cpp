// libFuzzer harness of the distance transforms, flood fills and marker labelling.
// The input chooses the operation, sizes (0, negative, odd), steps (too small, odd,
// padded), metrics, seeds, tolerances, the thread count and the pixels. Images end
// right before a protected page (or start right after one), work buffers have
// exactly the reported size and end before a protected page. Asserted: the status
// the check order predicts; nothing written on an error (image, destination,
// record, count); row padding untouched on success; the banded distance transform
// equal to the serial one.
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vnxcv.h"

namespace {

#define FUZZ_CHECK(cond) \
  do {                   \
    if (!(cond)) std::abort(); \
  } while (0)

// Input reader: bytes in order, zeros once exhausted.
struct Reader {
  const std::uint8_t* p;
  std::size_t n;
  std::uint8_t byte() { return n ? (--n, *p++) : 0; }
  int range(int lo, int hi) { return lo + byte() % (hi - lo + 1); }
  float real() {
    static const float kValues[] = {0.0f, -0.0f, 1.0f, 0.955f, 1.3693f, 2.5f, -1.0f, 1e38f, 3e38f, 0.001f, NAN, INFINITY};
    return kValues[byte() % (sizeof kValues / sizeof kValues[0])];
  }
};

// `bytes` of memory whose last byte sits right before a protected page (or, with
// before set, whose first byte sits right after one).
class Guarded {
 public:
  Guarded(std::size_t bytes, bool before) {
    const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
    const std::size_t body = (bytes + page - 1) / page * page;
    total_ = body + 2 * page;
    base_ = static_cast<std::uint8_t*>(mmap(nullptr, total_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    FUZZ_CHECK(base_ != MAP_FAILED);
    mprotect(base_, page, PROT_NONE);
    mprotect(base_ + page + body, page, PROT_NONE);
    data_ = before ? base_ + page : base_ + page + body - bytes;
  }
  ~Guarded() { munmap(base_, total_); }
  std::uint8_t* data() const { return data_; }

 private:
  std::uint8_t* base_;
  std::size_t total_;
  std::uint8_t* data_;
};

// An image of h rows of `step` bytes whose ROI rows hold rowBytes; the memory covers
// what the library may touch when the step is valid.
struct Img {
  int w, h, step;
  std::size_t bytes;
  Guarded mem;
  Img(int w_, int h_, int step_, std::int64_t rowBytes, bool before, Reader& in)
      : w(w_), h(h_), step(step_),
        bytes(w_ < 1 || h_ < 1 || step_ < rowBytes ? 64 : std::size_t(step_) * (h_ - 1) + std::size_t(rowBytes)),
        mem(bytes, before) {
    for (std::size_t i = 0; i < bytes; ++i) mem.data()[i] = in.byte();
  }
  std::vector<std::uint8_t> snapshot() const { return {mem.data(), mem.data() + bytes}; }
  // Bytes between the end of each row and the next row: untouched.
  bool paddingSame(const std::vector<std::uint8_t>& before, std::int64_t rowBytes) const {
    for (int y = 0; y + 1 < h; ++y)
      for (std::int64_t i = rowBytes; i < step; ++i)
        if (mem.data()[std::size_t(y) * step + i] != before[std::size_t(y) * step + i]) return false;
    return true;
  }
};

vnxStatus expectedCommon(bool nullPtr, int w, int h) {
  if (nullPtr) return vnxStatusNullPtr;
  if (w < 1 || h < 1) return vnxStatusBadSize;
  return vnxStatusOk;
}

void fuzzDistance(Reader& in) {
  const int member = in.range(0, 7);  // 3x3/5x5 x (8u, 16u, 32f, 8u in place)
  const bool five = member & 1;
  const int kind = member >> 1;
  const int es = kind == 1 ? 2 : kind == 2 ? 4 : 1;
  const int w = in.range(-1, 90), h = in.range(-1, 80);
  const int srcStep = w + in.range(-2, 5), dstStep = w * es + in.range(-2, 7);
  const int threads = in.range(1, 4);
  vnx32s mi[3];
  vnx32f mf[3];
  for (int i = 0; i < 3; ++i) mi[i] = in.range(-1, 6) * (in.byte() % 8 == 0 ? 100 : 1), mf[i] = in.real();
  const bool nullMetrics = in.byte() % 32 == 0;
  Img src(w, h, kind == 3 ? dstStep : srcStep, w, in.byte() & 1, in);
  Img dst(w, h, dstStep, std::int64_t(w) * es, in.byte() & 1, in);
  const std::int64_t rowBytes = std::int64_t(w) * es;
  // Expected status: pointers, ROI, steps (row bytes, then the multiple), metrics.
  vnxStatus want = expectedCommon(nullMetrics, w, h);
  const int sStep = kind == 3 ? dstStep : srcStep;
  if (!want && (sStep < w || (kind != 3 && dstStep < rowBytes))) want = vnxStatusBadStep;
  if (!want && kind != 3 && dstStep % es) want = vnxStatusStepNotMultiple;
  if (!want)
    for (int i = 0; i < (five ? 3 : 2); ++i)
      if (kind == 2 ? !(mf[i] > 0) : mi[i] < 1) want = vnxStatusBadMetric;
  const auto srcBefore = src.snapshot(), dstBefore = dst.snapshot();
  auto call = [&](Img& s, Img& d) -> vnxStatus {
    const vnx32s* m = nullMetrics ? nullptr : mi;
    const vnx32f* f = nullMetrics ? nullptr : mf;
    const vnxiSize roi{w, h};
    switch (kind) {
      case 0: return (five ? vnxiDistanceTransform_5x5_8u_C1R : vnxiDistanceTransform_3x3_8u_C1R)(
                  s.mem.data(), s.step, d.mem.data(), d.step, roi, m);
      case 1: return (five ? vnxiDistanceTransform_5x5_8u16u_C1R : vnxiDistanceTransform_3x3_8u16u_C1R)(
                  s.mem.data(), s.step, reinterpret_cast<vnx16u*>(d.mem.data()), d.step, roi, m);
      case 2: return (five ? vnxiDistanceTransform_5x5_8u32f_C1R : vnxiDistanceTransform_3x3_8u32f_C1R)(
                  s.mem.data(), s.step, reinterpret_cast<vnx32f*>(d.mem.data()), d.step, roi, f);
      default: return (five ? vnxiDistanceTransform_5x5_8u_C1IR : vnxiDistanceTransform_3x3_8u_C1IR)(
                  s.mem.data(), s.step, roi, m);
    }
  };
  vnxSetNumThreads(threads);
  const vnxStatus st = call(src, dst);
  FUZZ_CHECK(st == want);
  if (st != vnxStatusOk) {
    FUZZ_CHECK(src.snapshot() == srcBefore && dst.snapshot() == dstBefore);
    return;
  }
  Img& out = kind == 3 ? src : dst;
  FUZZ_CHECK(out.paddingSame(kind == 3 ? srcBefore : dstBefore, kind == 3 ? w : rowBytes));
  if (kind != 3) FUZZ_CHECK(src.snapshot() == srcBefore);
  // The serial transform on copies of the inputs gives the same bytes.
  Reader none{nullptr, 0};
  Img src1(w, h, src.step, w, false, none), dst1(w, h, dst.step, rowBytes, false, none);
  std::memcpy(src1.mem.data(), srcBefore.data(), src.bytes);
  std::memcpy(dst1.mem.data(), dstBefore.data(), dst.bytes);
  vnxSetNumThreads(1);
  FUZZ_CHECK(call(src1, dst1) == vnxStatusOk);
  FUZZ_CHECK((kind == 3 ? src1.snapshot() == src.snapshot() : dst1.snapshot() == dst.snapshot()));
}

template <class T>
void fuzzFill(Reader& in) {
  const int channels = in.byte() & 1 ? 3 : 1;
  const int rule = in.range(0, 2), eight = in.byte() & 1;
  const int es = int(sizeof(T));
  const int w = in.range(-1, 40), h = in.range(-1, 30);
  const int step = w * es * (in.byte() & 1 ? channels : 1) + in.range(-2, 6);  // C3: the bound is width x 1
  const vnxiPoint seed{in.range(-1, 41), in.range(-1, 31)};
  T v[3], lo[3], hi[3];
  for (int k = 0; k < 3; ++k) {
    if constexpr (sizeof(T) == 1) {
      v[k] = T(in.byte() % 4), lo[k] = T(in.byte() % 4), hi[k] = T(in.byte() % 4);
    } else {
      v[k] = T(in.byte() % 4), lo[k] = in.real(), hi[k] = in.real();
    }
  }
  const bool nullBuffer = in.byte() % 32 == 0;
  // The library reads rows of width x channels samples; the step check bounds width x 1.
  const std::int64_t rowBytes = std::int64_t(w) * channels * es;
  Img img(w, h, step, rowBytes, in.byte() & 1, in);
  if constexpr (sizeof(T) == 4) {  // small palette so regions form
    for (std::size_t i = 0; i + 4 <= img.bytes; i += 4) {
      const float f = float(img.mem.data()[i] % 4);
      std::memcpy(img.mem.data() + i, &f, 4);
    }
  } else {
    for (std::size_t i = 0; i < img.bytes; ++i) img.mem.data()[i] %= 4;
  }
  int size = 0;
  const vnxiSize roi{w, h};
  const vnxStatus qs = (rule == 2 ? vnxiFloodFillGetSize_Grad : vnxiFloodFillGetSize)(roi, &size);
  Guarded buf(qs == vnxStatusOk ? std::size_t(size) : 16, false);
  vnxiFillRegion region;
  std::memset(&region, 0x6B, sizeof region);
  const vnxiFillRegion regionBefore = region;
  vnxStatus want = expectedCommon(nullBuffer, w, h);
  if (!want && step < std::int64_t(w) * es) want = vnxStatusBadStep;
  if (!want && step % es) want = vnxStatusStepNotMultiple;
  if (!want && (seed.x < 0 || seed.x >= w || seed.y < 0 || seed.y >= h)) want = vnxStatusOutOfRange;
  if (!want && rule && sizeof(T) == 4)
    for (int k = 0; k < channels; ++k)
      if (!(lo[k] >= 0) || !(hi[k] >= 0)) want = vnxStatusOutOfRange;
  // A step below the three-channel row bytes lets rows overlap: allowed, but the
  // image must then cover the last row; skip such inputs on success paths.
  if (!want && step < rowBytes) return;
  const auto before = img.snapshot();
  T* p = reinterpret_cast<T*>(img.mem.data());
  vnx8u* b = nullBuffer ? nullptr : buf.data();
  vnxStatus st;
  if (channels == 1) {
    using F = vnxStatus (*)(T*, int, vnxiSize, vnxiPoint, T, T, T, vnxiFillRegion*, vnx8u*);
    using P = vnxStatus (*)(T*, int, vnxiSize, vnxiPoint, T, vnxiFillRegion*, vnx8u*);
    P plain[2];
    F ranged[2][2];
    if constexpr (sizeof(T) == 1) {
      plain[0] = vnxiFloodFill_4Con_8u_C1IR, plain[1] = vnxiFloodFill_8Con_8u_C1IR;
      ranged[0][0] = vnxiFloodFill_Range4Con_8u_C1IR, ranged[0][1] = vnxiFloodFill_Range8Con_8u_C1IR;
      ranged[1][0] = vnxiFloodFill_Grad4Con_8u_C1IR, ranged[1][1] = vnxiFloodFill_Grad8Con_8u_C1IR;
    } else {
      plain[0] = vnxiFloodFill_4Con_32f_C1IR, plain[1] = vnxiFloodFill_8Con_32f_C1IR;
      ranged[0][0] = vnxiFloodFill_Range4Con_32f_C1IR, ranged[0][1] = vnxiFloodFill_Range8Con_32f_C1IR;
      ranged[1][0] = vnxiFloodFill_Grad4Con_32f_C1IR, ranged[1][1] = vnxiFloodFill_Grad8Con_32f_C1IR;
    }
    st = rule == 0 ? plain[eight](p, step, roi, seed, v[0], &region, b)
                   : ranged[rule - 1][eight](p, step, roi, seed, v[0], lo[0], hi[0], &region, b);
  } else {
    using F = vnxStatus (*)(T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*, vnx8u*);
    using P = vnxStatus (*)(T*, int, vnxiSize, vnxiPoint, const T*, vnxiFillRegion*, vnx8u*);
    P plain[2];
    F ranged[2][2];
    if constexpr (sizeof(T) == 1) {
      plain[0] = vnxiFloodFill_4Con_8u_C3IR, plain[1] = vnxiFloodFill_8Con_8u_C3IR;
      ranged[0][0] = vnxiFloodFill_Range4Con_8u_C3IR, ranged[0][1] = vnxiFloodFill_Range8Con_8u_C3IR;
      ranged[1][0] = vnxiFloodFill_Grad4Con_8u_C3IR, ranged[1][1] = vnxiFloodFill_Grad8Con_8u_C3IR;
    } else {
      plain[0] = vnxiFloodFill_4Con_32f_C3IR, plain[1] = vnxiFloodFill_8Con_32f_C3IR;
      ranged[0][0] = vnxiFloodFill_Range4Con_32f_C3IR, ranged[0][1] = vnxiFloodFill_Range8Con_32f_C3IR;
      ranged[1][0] = vnxiFloodFill_Grad4Con_32f_C3IR, ranged[1][1] = vnxiFloodFill_Grad8Con_32f_C3IR;
    }
    st = rule == 0 ? plain[eight](p, step, roi, seed, v, &region, b)
                   : ranged[rule - 1][eight](p, step, roi, seed, v, lo, hi, &region, b);
  }
  FUZZ_CHECK(st == want);
  if (st != vnxStatusOk) {
    FUZZ_CHECK(img.snapshot() == before);
    FUZZ_CHECK(std::memcmp(&region, &regionBefore, sizeof region) == 0);
    return;
  }
  FUZZ_CHECK(img.paddingSame(before, rowBytes));
  if (std::memcmp(&region, &regionBefore, sizeof region) != 0) {  // written unless the seed had the new value
    FUZZ_CHECK(region.area >= 1 && region.area <= double(w) * h);
    FUZZ_CHECK(region.rect.x >= 0 && region.rect.y >= 0 && region.rect.x + region.rect.width <= w &&
               region.rect.y + region.rect.height <= h);
  } else {
    FUZZ_CHECK(img.snapshot() == before);
  }
}

void fuzzLabels(Reader& in) {
  const int w = in.range(-1, 60), h = in.range(-1, 40), step = w + in.range(-2, 5);
  const int minLabel = in.range(0, 5), maxLabel = in.byte() % 8 == 0 ? 255 : in.range(0, 12), norm = in.range(0, 2);
  int size = 0;
  const vnxStatus qs = vnxiLabelMarkersGetBufferSize_8u_C1R({w, h}, &size);
  Guarded buf(qs == vnxStatusOk ? std::size_t(size) : 16, false);
  Img img(w, h, step, w, in.byte() & 1, in);
  for (std::size_t i = 0; i < img.bytes; ++i) img.mem.data()[i] = img.mem.data()[i] % 3 == 0;
  vnxStatus want = expectedCommon(false, w, h);
  if (!want && step < w) want = vnxStatusBadStep;
  if (!want && (minLabel < 1 || maxLabel >= 255 || minLabel > maxLabel)) want = vnxStatusBadArg;
  if (!want && norm != 0 && norm != 1) want = vnxStatusBadArg;
  const auto before = img.snapshot();
  int count = -7;
  FUZZ_CHECK(vnxiLabelMarkers_8u_C1IR(img.mem.data(), step, {w, h}, minLabel, maxLabel, norm, &count, buf.data()) ==
             want);
  if (want) {
    FUZZ_CHECK(count == -7 && img.snapshot() == before);
    return;
  }
  FUZZ_CHECK(count >= 0 && count <= w * h);
  FUZZ_CHECK(img.paddingSame(before, w));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int v = img.mem.data()[std::size_t(y) * step + x];
      FUZZ_CHECK(v == 0 || (v >= minLabel && v <= maxLabel));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader in{data, size};
  switch (in.byte() % 4) {
    case 0: fuzzDistance(in); break;
    case 1: fuzzFill<vnx8u>(in); break;
    case 2: fuzzFill<vnx32f>(in); break;
    default: fuzzLabels(in); break;
  }
  vnxSetNumThreads(1);
  return 0;
}
