// libFuzzer harness of the pyramid family: the 5x5 steps, the sub-pixel copies, the
// layer steps and the flow. The input chooses the member, sizes (0, negative, huge),
// steps (too small, odd, negative) and pixel data; images end right before a
// protected page. Asserts: the status the check order predicts; nothing written on
// an error; row padding untouched on success; results with three threads equal to
// the serial ones.
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vnxcv.h"

namespace {

#define FZ_ASSERT(c) ((c) ? (void)0 : std::abort())

struct Reader {
  const std::uint8_t* p;
  std::size_t n;
  std::uint32_t u32() {
    std::uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v = (v << 8) | (n ? (--n, *p++) : 0u);
    return v;
  }
  int pick(int k) { return static_cast<int>(u32() % static_cast<std::uint32_t>(k)); }
  float f32() { return static_cast<float>(static_cast<std::int32_t>(u32())) / 65536.0f; }
  // a dimension: mostly small, sometimes 0, negative or huge
  int dim() {
    switch (pick(10)) {
      case 0: return 0;
      case 1: return -1 - pick(5);
      case 2: return INT_MAX - pick(3);
      default: return 1 + pick(70);
    }
  }
  // a step for rows of `bytes`: mostly enough, sometimes one short, odd or negative
  int step(std::int64_t bytes) {
    switch (pick(8)) {
      case 0: return static_cast<int>(bytes > INT_MAX ? INT_MAX : bytes) - 1;
      case 1: return -static_cast<int>(u32() % 4096);
      case 2: return static_cast<int>(bytes > INT_MAX - 9 ? INT_MAX : bytes + 1 + pick(7));
      default: return static_cast<int>(bytes > INT_MAX - 16 ? INT_MAX : bytes + pick(3) * 4);
    }
  }
};

constexpr unsigned char kCanary = 0x5C;

// height rows of `step` bytes whose last byte sits right before a protected page;
// the bytes of each row past rowBytes are canary.
class Guarded {
 public:
  Guarded(std::int64_t rowBytes, int height, int step) : rowBytes_(rowBytes), height_(height), step_(step) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    bytes_ = static_cast<std::size_t>(std::int64_t(step) * (height - 1) + rowBytes);
    map_ = (bytes_ + 2 * page - 1) / page * page;
    base_ = static_cast<unsigned char*>(mmap(nullptr, map_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    FZ_ASSERT(base_ != MAP_FAILED);
    mprotect(base_ + map_ - page, page, PROT_NONE);
    data_ = base_ + (map_ - page) - bytes_;
    std::memset(data_, kCanary, bytes_);
  }
  ~Guarded() { munmap(base_, map_); }
  unsigned char* data() const { return data_; }
  std::vector<unsigned char> snapshot() const { return std::vector<unsigned char>(data_, data_ + bytes_); }
  bool paddingIntact() const {
    for (int y = 0; y + 1 < height_; ++y)
      for (std::int64_t b = rowBytes_; b < step_; ++b)
        if (data_[std::int64_t(y) * step_ + b] != kCanary) return false;
    return true;
  }
  void fill(Reader& r) {
    for (int y = 0; y < height_; ++y)
      for (std::int64_t b = 0; b < rowBytes_; ++b) data_[std::int64_t(y) * step_ + b] = static_cast<unsigned char>(r.u32());
  }

 private:
  std::int64_t rowBytes_;
  int height_, step_;
  std::size_t bytes_ = 0, map_ = 0;
  unsigned char* base_ = nullptr;
  unsigned char* data_ = nullptr;
};

constexpr std::int64_t kMaxBytes = 1 << 22;  // larger valid images are only checked for their status

bool stepsOk(std::initializer_list<std::pair<int, std::int64_t>> steps) {
  for (auto s : steps)
    if (s.first < s.second) return false;
  return true;
}

// A member called as bytes: pyramid steps of element size e and channels c.
struct StepMember {
  int elem, channels, code;
  bool up;
  vnxStatus (*call)(const void*, int, void*, int, vnxiSize, vnx8u*);
};
#define FZ_STEP(fn, T) [](const void* s, int ss, void* d, int ds, vnxiSize r, vnx8u* b) { \
    return fn(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r, b); }
const StepMember kSteps[] = {
    {1, 1, 1, false, FZ_STEP(vnxiPyrDown_Gauss5x5_8u_C1R, vnx8u)},  {1, 3, 1, false, FZ_STEP(vnxiPyrDown_Gauss5x5_8u_C3R, vnx8u)},
    {1, 1, 3, false, FZ_STEP(vnxiPyrDown_Gauss5x5_8s_C1R, vnx8s)},  {1, 3, 3, false, FZ_STEP(vnxiPyrDown_Gauss5x5_8s_C3R, vnx8s)},
    {4, 1, 13, false, FZ_STEP(vnxiPyrDown_Gauss5x5_32f_C1R, vnx32f)}, {4, 3, 13, false, FZ_STEP(vnxiPyrDown_Gauss5x5_32f_C3R, vnx32f)},
    {1, 1, 1, true, FZ_STEP(vnxiPyrUp_Gauss5x5_8u_C1R, vnx8u)},     {1, 3, 1, true, FZ_STEP(vnxiPyrUp_Gauss5x5_8u_C3R, vnx8u)},
    {1, 1, 3, true, FZ_STEP(vnxiPyrUp_Gauss5x5_8s_C1R, vnx8s)},     {1, 3, 3, true, FZ_STEP(vnxiPyrUp_Gauss5x5_8s_C3R, vnx8s)},
    {4, 1, 13, true, FZ_STEP(vnxiPyrUp_Gauss5x5_32f_C1R, vnx32f)},  {4, 3, 13, true, FZ_STEP(vnxiPyrUp_Gauss5x5_32f_C3R, vnx32f)},
};

void fuzzStep(Reader& r) {
  const StepMember& m = kSteps[r.pick(12)];
  const vnxiSize roi{r.dim(), r.dim()};
  const std::int64_t px = std::int64_t(m.elem) * m.channels;
  const std::int64_t sw = roi.width > 0 ? roi.width : 1, sh = roi.height > 0 ? roi.height : 1;
  const std::int64_t dw = m.up ? 2 * sw : (sw + 1) / 2, dh = m.up ? 2 * sh : (sh + 1) / 2;
  const int ss = r.step(sw * px), ds = r.step(dw * px);
  int bufBytes = 0;
  const vnxStatus q = m.up ? vnxiPyrUpGetBufSize_Gauss5x5(roi.width, m.code, m.channels, &bufBytes)
                           : vnxiPyrDownGetBufSize_Gauss5x5(roi.width, m.code, m.channels, &bufBytes);
  FZ_ASSERT(q == (roi.width < 1 ? vnxStatusBadSize : q));
  vnxStatus expect = vnxStatusOk;
  if (roi.width < 1 || roi.height < 1) expect = vnxStatusBadSize;
  else if (!stepsOk({{ss, sw * px}, {ds, dw * px}})) expect = vnxStatusBadStep;
  else if (ss % m.elem || ds % m.elem) expect = vnxStatusStepNotMultiple;
  const bool real = expect == vnxStatusOk && q == vnxStatusOk && std::int64_t(ss) * sh <= kMaxBytes &&
                    std::int64_t(ds) * dh <= kMaxBytes;
  if (!real) {
    if (expect == vnxStatusOk) return;  // too large to run here
    unsigned char small[64];
    std::memset(small, kCanary, sizeof small);
    vnx8u buf[64];
    FZ_ASSERT(m.call(small, ss, small, ds, roi, buf) == expect);
    for (unsigned char c : small) FZ_ASSERT(c == kCanary);
    FZ_ASSERT(m.call(nullptr, ss, small, ds, roi, buf) == vnxStatusNullPtr);
    return;
  }
  Guarded src(sw * px, int(sh), ss), d1(dw * px, int(dh), ds), d2(dw * px, int(dh), ds), buf(bufBytes, 1, bufBytes);
  src.fill(r);
  vnxSetNumThreads(1);
  FZ_ASSERT(m.call(src.data(), ss, d1.data(), ds, roi, buf.data()) == vnxStatusOk);
  vnxSetNumThreads(3);
  FZ_ASSERT(m.call(src.data(), ss, d2.data(), ds, roi, buf.data()) == vnxStatusOk);
  FZ_ASSERT(d1.paddingIntact() && d2.paddingIntact());
  FZ_ASSERT(d1.snapshot() == d2.snapshot());
}

void fuzzCopy(Reader& r) {
  const vnxiSize roi{r.dim(), r.dim()}, win{r.dim(), r.dim()};
  const std::int64_t sw = roi.width > 0 ? roi.width : 1, sh = roi.height > 0 ? roi.height : 1;
  const std::int64_t ww = win.width > 0 ? win.width : 1, wh = win.height > 0 ? win.height : 1;
  const int ss = r.step(sw + 1), ds = r.step(2 * ww);
  const vnxiPoint32f pt{r.f32(), r.f32()};
  const int sf = r.pick(40) - 20;
  vnxStatus expect = vnxStatusOk;  // intersecting copy, 8u to 16u
  if (roi.width < 1 || roi.height < 1 || win.width < 1 || win.height < 1) expect = vnxStatusBadSize;
  else if (!stepsOk({{ss, sw}, {ds, 2 * ww}})) expect = vnxStatusBadStep;
  else if (ds % 2) expect = vnxStatusStepNotMultiple;
  if (expect != vnxStatusOk || std::int64_t(ss) * (sh + 1) > kMaxBytes || std::int64_t(ds) * wh > kMaxBytes) {
    if (expect == vnxStatusOk) return;  // too large to run here
    unsigned char small[64];
    std::memset(small, kCanary, sizeof small);
    vnxiPoint lo{7, 7}, hi{7, 7};
    const vnxStatus st = vnxiCopySubpixIntersect_8u16u_C1R_Sfs(small, ss, roi, reinterpret_cast<vnx16u*>(small + 32),
                                                               ds, win, pt, &lo, &hi, sf);
    FZ_ASSERT(st == expect && lo.x == 7 && hi.y == 7);
    for (unsigned char c : small) FZ_ASSERT(c == kCanary);
    return;
  }
  Guarded src(sw + 1, int(sh + 1), ss), dst(2 * ww, int(wh), ds), whole(2 * sw, int(sh), int(2 * sw));
  src.fill(r);
  vnxiPoint lo, hi;
  FZ_ASSERT(vnxiCopySubpixIntersect_8u16u_C1R_Sfs(src.data(), ss, roi, reinterpret_cast<vnx16u*>(dst.data()), ds, win,
                                                  pt, &lo, &hi, sf) == vnxStatusOk);
  FZ_ASSERT(dst.paddingIntact());
  FZ_ASSERT(lo.x >= 0 && lo.x <= win.width && hi.x >= -1 && hi.x < win.width);
  FZ_ASSERT(vnxiCopySubpix_8u16u_C1R_Sfs(src.data(), ss, reinterpret_cast<vnx16u*>(whole.data()), int(2 * sw), roi,
                                         pt.x, pt.y, sf) == (ss >= sw + 1 ? vnxStatusOk : vnxStatusBadStep));
  FZ_ASSERT(whole.paddingIntact());
}

void fuzzLayer(Reader& r) {
  const vnxiSize roi{1 + r.pick(60), 1 + r.pick(60)};
  const float rate = 1.0f + (1 + r.pick(900)) / 100.0f;
  const int k = 3 + 2 * r.pick(4);
  std::vector<vnx16s> ker(k);
  for (vnx16s& t : ker) t = static_cast<vnx16s>(r.pick(41) - 8);
  vnxiPyramidState* st = nullptr;
  const vnxStatus cs = vnxiPyramidLayerDownInitAlloc_8u_C1R(&st, roi, rate, ker.data(), k, 2);
  FZ_ASSERT(cs == vnxStatusOk || cs == vnxStatusSymKernelExpected);
  vnxiSize d;
  FZ_ASSERT(vnxiGetPyramidDownROI(roi, &d, rate) == vnxStatusOk);
  Guarded src(roi.width, roi.height, roi.width + 3), d1(d.width, d.height, d.width + 2), d2(d.width, d.height, d.width + 2);
  src.fill(r);
  vnxSetNumThreads(1);
  FZ_ASSERT(vnxiPyramidLayerDown_8u_C1R(src.data(), roi.width + 3, roi, d1.data(), d.width + 2, d, st) == vnxStatusOk);
  vnxSetNumThreads(3);
  FZ_ASSERT(vnxiPyramidLayerDown_8u_C1R(src.data(), roi.width + 3, roi, d2.data(), d.width + 2, d, st) == vnxStatusOk);
  FZ_ASSERT(d1.paddingIntact() && d1.snapshot() == d2.snapshot());
  const vnxiSize bad{d.width + 1, d.height};
  FZ_ASSERT(vnxiPyramidLayerDown_8u_C1R(src.data(), roi.width + 3, roi, d1.data(), d.width + 2, bad, st) == vnxStatusBadSize);
  vnxiPyramidLayerDownFree_8u_C1R(st);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r{data, size};
  switch (r.pick(3)) {
    case 0: fuzzStep(r); break;
    case 1: fuzzCopy(r); break;
    default: fuzzLayer(r); break;
  }
  vnxSetNumThreads(1);
  return 0;
}
