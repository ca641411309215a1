// libFuzzer harness for the integral tables, rectangle deviations and Haar stages.
// The fuzzer picks the member, sizes (0, negative, large), steps (short, odd,
// negative), the rectangle, offsets, thresholds and pixel data. Every operand sits
// so its last byte is right before a protected page; the harness checks the
// status the documented check order predicts, that nothing is written on an
// error, that row padding survives a success, and that the parallel members give
// the serial result.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vnxcore.h"
#include "vnxcv.h"

namespace {

constexpr unsigned char kCanary = 0x5A;

// Bytes read from the fuzzer input, zero once it runs out.
struct Input {
  const std::uint8_t* p;
  std::size_t n;
  std::uint8_t u8() { return n ? (--n, *p++) : 0; }
  int small(int lo, int hi) { return lo + u8() % (hi - lo + 1); }
};

// A buffer whose last byte sits right before an inaccessible page, pre-filled
// with the canary.
class Guarded {
 public:
  explicit Guarded(std::size_t bytes) : bytes_(bytes) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    map_ = (bytes + page - 1) / page * page + page;
    base_ = static_cast<unsigned char*>(mmap(nullptr, map_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (base_ == MAP_FAILED) std::abort();
    mprotect(base_ + map_ - page, page, PROT_NONE);
    data_ = base_ + (map_ - page) - bytes;
    std::memset(data_, kCanary, bytes);
  }
  ~Guarded() { munmap(base_, map_); }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;
  unsigned char* data() const { return data_; }
  std::vector<unsigned char> snapshot() const { return {data_, data_ + bytes_}; }

 private:
  std::size_t bytes_, map_;
  unsigned char* base_;
  unsigned char* data_;
};

// Bytes an image of `rows` rows of `rowBytes` needs at `step` (0 when unusable).
std::size_t imageBytes(int step, int rows, std::int64_t rowBytes) {
  if (rows < 1 || rowBytes < 1 || step < rowBytes) return 1;
  return static_cast<std::size_t>(step) * (rows - 1) + rowBytes;
}

bool paddingIntact(const Guarded& g, int step, int rows, std::int64_t rowBytes) {
  for (int y = 0; y + 1 < rows; ++y)
    for (std::int64_t b = rowBytes; b < step; ++b)
      if (g.data()[std::size_t(y) * step + b] != kCanary) return false;
  return true;
}

[[noreturn]] void fail() { std::abort(); }

// The builders: the sum table and, for the squared members, the square table.
void fuzzBuilder(Input& in) {
  const int member = in.small(0, 9);  // 0-1 plain, 2-4 squared, 5-6 tilted, 7-9 tilted squared
  const bool tilted = member >= 5, squared = member >= 2 && member != 5 && member != 6;
  const int extra = tilted ? 2 : 1;
  const int w = in.small(-1, 40), h = in.small(-1, 12);
  const int sqrElem = (member == 4 || member == 9) ? 4 : 8;
  const std::int64_t cols = std::int64_t(w) + extra;
  const int srcStep = w + in.small(-2, 5);
  const int dstStep = int(4 * cols) + in.small(-3, 9), sqrStep = int(sqrElem * cols) + in.small(-3, 17);
  const bool nulls = in.u8() < 8;
  Guarded src(imageBytes(srcStep, h, w)), dst(imageBytes(dstStep, h + extra, 4 * cols)),
      sqr(imageBytes(sqrStep, h + extra, sqrElem * cols));
  for (int i = 0; w > 0 && h > 0 && srcStep >= w && i < h; ++i)
    for (int x = 0; x < w; ++x) src.data()[std::size_t(i) * srcStep + x] = in.u8();
  // The 32f tilted sum tables add to column W: it holds the canary bytes, a float.
  vnxStatus expect = vnxStatusOk;
  if (nulls) expect = vnxStatusNullPtr;
  else if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (srcStep < w || dstStep < 4 * cols || (squared && sqrStep < sqrElem * cols)) expect = vnxStatusBadStep;
  else if (dstStep % 4 || (squared && sqrStep % sqrElem)) expect = vnxStatusStepNotMultiple;
  const auto before = dst.snapshot(), sqrBefore = sqr.snapshot();
  const vnx8u* ps = nulls ? nullptr : src.data();
  void* pd = dst.data();
  void* pq = sqr.data();
  const vnxiSize roi{w, h};
  vnxStatus st;
  switch (member) {
    case 0: st = vnxiIntegral_8u32s_C1R(ps, srcStep, (vnx32s*)pd, dstStep, roi, 7); break;
    case 1: st = vnxiIntegral_8u32f_C1R(ps, srcStep, (vnx32f*)pd, dstStep, roi, 0.5f); break;
    case 2: st = vnxiSqrIntegral_8u32s64f_C1R(ps, srcStep, (vnx32s*)pd, dstStep, (vnx64f*)pq, sqrStep, roi, 1, 2); break;
    case 3: st = vnxiSqrIntegral_8u32f64f_C1R(ps, srcStep, (vnx32f*)pd, dstStep, (vnx64f*)pq, sqrStep, roi, 1, 2); break;
    case 4: st = vnxiSqrIntegral_8u32s_C1R(ps, srcStep, (vnx32s*)pd, dstStep, (vnx32s*)pq, sqrStep, roi, 1, 2); break;
    case 5: st = vnxiTiltedIntegral_8u32s_C1R(ps, srcStep, (vnx32s*)pd, dstStep, roi, 3); break;
    case 6: st = vnxiTiltedIntegral_8u32f_C1R(ps, srcStep, (vnx32f*)pd, dstStep, roi, 3); break;
    case 7: st = vnxiTiltedSqrIntegral_8u32s64f_C1R(ps, srcStep, (vnx32s*)pd, dstStep, (vnx64f*)pq, sqrStep, roi, 1, 2); break;
    case 8: st = vnxiTiltedSqrIntegral_8u32f64f_C1R(ps, srcStep, (vnx32f*)pd, dstStep, (vnx64f*)pq, sqrStep, roi, 1, 2); break;
    default: st = vnxiTiltedSqrIntegral_8u32s_C1R(ps, srcStep, (vnx32s*)pd, dstStep, (vnx32s*)pq, sqrStep, roi, 1, 2); break;
  }
  if (st != expect) fail();
  if (st != vnxStatusOk) {
    if (dst.snapshot() != before || sqr.snapshot() != sqrBefore) fail();
    return;
  }
  if (!paddingIntact(dst, dstStep, h + extra, 4 * cols)) fail();
  if (squared && !paddingIntact(sqr, sqrStep, h + extra, sqrElem * cols)) fail();
}

// The 32f rectangle deviation on a 32f table: status, no write on error,
// padding, and the banded result equal to the serial one.
void fuzzRectStdDev(Input& in) {
  const int w = in.small(-1, 70), h = in.small(-1, 40);
  const vnxiRect r{in.small(-1, 3), in.small(-1, 3), in.small(0, 5), in.small(0, 5)};
  const std::int64_t cols = std::int64_t(w) + r.x + r.width;
  const int rows = h + r.y + r.height;
  const int srcStep = int(4 * cols) + in.small(-4, 6), sqrStep = int(8 * cols) + in.small(-8, 10);
  const int dstStep = 4 * w + in.small(-2, 6);
  Guarded sum(imageBytes(srcStep, rows, 4 * cols)), sqr(imageBytes(sqrStep, rows, 8 * cols));
  for (int y = 0; srcStep >= 4 * cols && sqrStep >= 8 * cols && cols > 0 && y < rows; ++y)
    for (int x = 0; x < cols; ++x) {
      const float v = float(in.u8()) * float(y + x);
      std::memcpy(sum.data() + std::size_t(y) * srcStep + 4 * x, &v, 4);
      const double q = double(in.u8()) * (y + 1) * (x + 1) * 200.0;
      std::memcpy(sqr.data() + std::size_t(y) * sqrStep + 8 * x, &q, 8);
    }
  Guarded d1(imageBytes(dstStep, h, 4 * std::int64_t(w))), d2(imageBytes(dstStep, h, 4 * std::int64_t(w)));
  vnxStatus expect = vnxStatusOk;
  if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (srcStep < 4 * cols || sqrStep < 8 * cols || dstStep < 4 * w) expect = vnxStatusBadStep;
  else if (srcStep % 4 || dstStep % 4 || sqrStep % 8) expect = vnxStatusStepNotMultiple;
  else if (r.x < 0 || r.y < 0 || r.width < 1 || r.height < 1) expect = vnxStatusBadSize;
  const auto before = d1.snapshot();
  vnxSetNumThreads(1);
  const vnxStatus st = vnxiRectStdDev_32f_C1R((const vnx32f*)sum.data(), srcStep, (const vnx64f*)sqr.data(), sqrStep,
                                              (vnx32f*)d1.data(), dstStep, {w, h}, r);
  if (st != expect) fail();
  if (st != vnxStatusOk) {
    if (d1.snapshot() != before) fail();
    return;
  }
  if (!paddingIntact(d1, dstStep, h, 4 * std::int64_t(w))) fail();
  vnxSetNumThreads(3);
  if (vnxiRectStdDev_32f_C1R((const vnx32f*)sum.data(), srcStep, (const vnx64f*)sqr.data(), sqrStep,
                             (vnx32f*)d2.data(), dstStep, {w, h}, r) != vnxStatusOk)
    fail();
  vnxSetNumThreads(1);
  if (d1.snapshot() != d2.snapshot()) fail();
}

// A fuzzed stage applied by the banded 32f member with 1 and 3 threads.
void fuzzHaar(Input& in) {
  const int nFeatures = in.small(0, 4);
  std::vector<int> num;
  std::vector<vnxiRect> rects;
  std::vector<float> weight, th, v1, v2;
  bool invalid = false;
  for (int i = 0; i < nFeatures; ++i) {
    num.push_back(in.small(1, 3));
    for (int k = 0; k < num.back(); ++k) {
      rects.push_back({in.small(0, 4), in.small(0, 4), in.small(0, 4), in.small(1, 4)});
      invalid |= rects.back().width < 1;
      weight.push_back(float(in.small(-3, 3)));
    }
    th.push_back(float(in.small(-50, 50)));
    v1.push_back(float(in.small(-4, 4)));
    v2.push_back(float(in.small(-4, 4)));
  }
  vnxiHaarClassifier_32f* st = nullptr;
  const vnxiRect dummy{0, 0, 1, 1};
  const float zero = 0;
  const int one = 1;
  const vnxStatus cs = vnxiHaarClassifierInitAlloc_32f(&st, rects.empty() ? &dummy : rects.data(),
                                                       weight.empty() ? &zero : weight.data(),
                                                       th.empty() ? &zero : th.data(), v1.empty() ? &zero : v1.data(),
                                                       v2.empty() ? &zero : v2.data(), num.empty() ? &one : num.data(),
                                                       nFeatures);
  if (cs != (invalid ? vnxStatusBadArg : vnxStatusOk)) fail();
  if (cs != vnxStatusOk) {
    if (st != nullptr) fail();
    return;
  }
  vnxiSize win{0, 0};
  vnxiGetHaarClassifierSize_32f(st, &win);
  const int w = in.small(1, 80), h = in.small(1, 40);
  const int tw = w + win.width, thh = h + win.height;
  Guarded table(std::size_t(4) * tw * thh), norm(std::size_t(4) * w * h), m1(std::size_t(w) * h),
      m2(std::size_t(w) * h);
  for (int i = 0; i < tw * thh; ++i) {
    const float v = float(in.u8() * i);
    std::memcpy(table.data() + 4 * i, &v, 4);
  }
  for (int i = 0; i < w * h; ++i) {
    const float v = float(in.small(0, 9));
    std::memcpy(norm.data() + 4 * i, &v, 4);
    m1.data()[i] = m2.data()[i] = in.u8() & 1;
  }
  const float stage = float(in.small(-5, 5));
  int c1 = -1, c2 = -1;
  vnxSetNumThreads(1);
  if (vnxiApplyHaarClassifier_32f_C1R((const vnx32f*)table.data(), 4 * tw, (const vnx32f*)norm.data(), 4 * w,
                                      m1.data(), w, {w, h}, &c1, stage, st) != vnxStatusOk)
    fail();
  vnxSetNumThreads(3);
  if (vnxiApplyHaarClassifier_32f_C1R((const vnx32f*)table.data(), 4 * tw, (const vnx32f*)norm.data(), 4 * w,
                                      m2.data(), w, {w, h}, &c2, stage, st) != vnxStatusOk)
    fail();
  vnxSetNumThreads(1);
  if (c1 != c2 || m1.snapshot() != m2.snapshot()) fail();
  // Tilting takes one mask byte per feature, once; a second time is refused.
  Guarded tiltMask(nFeatures > 0 ? nFeatures : 1);
  for (int i = 0; i < nFeatures; ++i) tiltMask.data()[i] = in.u8() & 1;
  bool any = false;
  for (int i = 0; i < nFeatures; ++i) any |= tiltMask.data()[i] != 0;
  if (vnxiTiltHaarFeatures_32f(tiltMask.data(), in.u8() & 1, st) != vnxStatusOk) fail();
  if (vnxiTiltHaarFeatures_32f(tiltMask.data(), 1, st) != (any ? vnxStatusBadArg : vnxStatusOk)) fail();
  vnxiHaarClassifierFree_32f(st);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  switch (in.u8() % 3) {
    case 0: fuzzBuilder(in); break;
    case 1: fuzzRectStdDev(in); break;
    default: fuzzHaar(in); break;
  }
  return 0;
}
