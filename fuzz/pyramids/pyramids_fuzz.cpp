// libFuzzer harness of the pyramid family: the 5x5 steps, the sub-pixel copies, the
// layer steps (down and up) and the flow. The input chooses the member, sizes (0, negative, huge),
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

// An 8u layer state, down or up, for a source of at most maxSide pixels a side, a rate
// in (1, 10] and an odd kernel of at most maxTaps taps (symmetric or not).
struct LayerState {
  vnxiSize roi;
  float rate;
  std::vector<vnx16s> ker;
  vnxiPyramidState* st = nullptr;
  LayerState(Reader& r, int maxSide, int maxTaps, bool up)
      : roi{1 + r.pick(maxSide), 1 + r.pick(maxSide)}, rate(1.0f + (1 + r.pick(900)) / 100.0f),
        ker(3 + 2 * r.pick((maxTaps - 1) / 2)) {
    for (vnx16s& t : ker) t = static_cast<vnx16s>(r.pick(41) - 8);
    const vnxStatus cs = (up ? vnxiPyramidLayerUpInitAlloc_8u_C1R : vnxiPyramidLayerDownInitAlloc_8u_C1R)(
        &st, roi, rate, ker.data(), int(ker.size()), 2);
    FZ_ASSERT(cs == vnxStatusOk || cs == vnxStatusSymKernelExpected);
  }
  ~LayerState() { vnxiPyramidLayerDownFree_8u_C1R(st); }
};

void fuzzLayer(Reader& r) {
  const LayerState a(r, 60, 9, false);
  const vnxiSize roi = a.roi;
  const float rate = a.rate;
  const vnxiPyramidState* st = a.st;
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
}

// The layer-up step to a destination size around the up range of the source: inside it
// the serial and banded results agree, outside it the step answers -6 and writes nothing.
void fuzzLayerUp(Reader& r) {
  const LayerState a(r, 40, 7, true);
  const vnxiSize roi = a.roi;
  const vnxiPyramidState* st = a.st;
  vnxiSize lo, hi;
  FZ_ASSERT(vnxiGetPyramidUpROI(roi, &lo, &hi, a.rate) == vnxStatusOk);
  const vnxiSize d{lo.width - 1 + r.pick(hi.width - lo.width + 3), lo.height - 1 + r.pick(hi.height - lo.height + 3)};
  const bool inside = d.width >= lo.width && d.width <= hi.width && d.height >= lo.height && d.height <= hi.height;
  const int dw = d.width > 0 ? d.width : 1, dh = d.height > 0 ? d.height : 1;
  Guarded src(roi.width, roi.height, roi.width + 1), d1(dw, dh, dw + 2), d2(dw, dh, dw + 2);
  src.fill(r);
  const std::vector<unsigned char> before = d1.snapshot();
  vnxSetNumThreads(1);
  FZ_ASSERT(vnxiPyramidLayerUp_8u_C1R(src.data(), roi.width + 1, roi, d1.data(), dw + 2, d, st) ==
            (inside ? vnxStatusOk : vnxStatusBadSize));
  if (inside) {
    vnxSetNumThreads(3);
    FZ_ASSERT(vnxiPyramidLayerUp_8u_C1R(src.data(), roi.width + 1, roi, d2.data(), dw + 2, d, st) == vnxStatusOk);
    FZ_ASSERT(d1.paddingIntact() && d1.snapshot() == d2.snapshot());
  } else {
    FZ_ASSERT(d1.snapshot() == before);
  }
}

// The flow on small rate-2 pyramids of fuzzed images (levels from the 5x5 down step,
// each level ending before a protected page) with fuzzed points, window, level count,
// iterations and threshold: the status of the check order with nothing written on an
// error; on success every status at most maxLev + 1, errors finite and not negative,
// and three threads giving the serial bits.
void fuzzFlow(Reader& r) {
  const vnxiSize roi{4 + r.pick(60), 4 + r.pick(60)};
  const int win = 1 + r.pick(15), callWin = r.pick(10) == 0 ? win + 1 : win;
  vnxiPyramid* pyr[2] = {};
  for (vnxiPyramid*& p : pyr) FZ_ASSERT(vnxiPyramidInitAlloc(&p, 3, roi, 2.0f) == vnxStatusOk);
  const int numFeat = r.pick(12) == 0 ? 0 : 1 + r.pick(40);
  const int maxLev = r.pick(pyr[0]->level + 2), maxIter = r.pick(12);
  const float threshold = r.pick(10) == 0 ? -0.5f : r.pick(100) / 1000.0f;
  std::vector<vnxiPoint32f> prev, start;
  for (int i = 0; i < numFeat; ++i) {
    prev.push_back({(r.pick(4 * roi.width + 80) - 40) / 4.0f, (r.pick(4 * roi.height + 80) - 40) / 4.0f});
    start.push_back({prev.back().x + (r.pick(17) - 8) / 4.0f, prev.back().y + (r.pick(17) - 8) / 4.0f});
  }
  std::vector<Guarded*> images;
  vnx8u buf[4096];
  for (vnxiPyramid* p : pyr)
    for (int k = 0; k <= p->level; ++k) {
      const vnxiSize s = p->pRoi[k];
      images.push_back(new Guarded(s.width, s.height, s.width + 1));
      p->pImage[k] = images.back()->data();
      p->pStep[k] = s.width + 1;
      if (k == 0)
        images.back()->fill(r);
      else
        FZ_ASSERT(vnxiPyrDown_Gauss5x5_8u_C1R(static_cast<vnx8u*>(p->pImage[k - 1]), p->pStep[k - 1],
                                              images.back()->data(), p->pStep[k], p->pRoi[k - 1], buf) == vnxStatusOk);
    }
  vnxStatus expect = vnxStatusOk;
  if (numFeat < 1 || callWin != win) expect = vnxStatusBadSize;
  else if (maxIter < 1 || threshold < 0) expect = vnxStatusBadArg;
  else if (maxLev > pyr[0]->level) expect = vnxStatusBadArg;  // the records hold fewer levels
  vnxSetNumThreads(3);
  vnxiOptFlowPyrLKState* st = nullptr;
  FZ_ASSERT(vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, roi, win, 0) == vnxStatusOk);
  const int n = numFeat > 0 ? numFeat : 1;
  prev.resize(n);
  start.resize(n);
  std::vector<vnxiPoint32f> next[2] = {start, start};
  std::vector<vnx8u> status[2] = {std::vector<vnx8u>(n, 0xEE), std::vector<vnx8u>(n, 0xEE)};
  std::vector<vnx32f> error[2] = {std::vector<vnx32f>(n, -3.0f), std::vector<vnx32f>(n, -3.0f)};
  for (int t = 0; t < 2; ++t) {
    vnxSetNumThreads(t == 0 ? 1 : 3);
    FZ_ASSERT(vnxiOpticalFlowPyrLK_8u_C1R(pyr[0], pyr[1], prev.data(), next[t].data(), status[t].data(),
                                          error[t].data(), numFeat, callWin, maxLev, maxIter, threshold, st) == expect);
  }
  for (int i = 0; i < n; ++i) {
    if (expect != vnxStatusOk) {
      FZ_ASSERT(status[0][i] == 0xEE && error[0][i] == -3.0f && std::memcmp(&next[0][i], &start[i], 8) == 0);
      continue;
    }
    FZ_ASSERT(status[0][i] <= maxLev + 1 && error[0][i] >= 0.0f && error[0][i] < 1e30f);
    FZ_ASSERT(status[0][i] == status[1][i] && std::memcmp(&error[0][i], &error[1][i], 4) == 0 &&
              std::memcmp(&next[0][i], &next[1][i], 8) == 0);
  }
  vnxiOpticalFlowPyrLKFree_8u_C1R(st);
  for (vnxiPyramid* p : pyr) vnxiPyramidFree(p);
  for (Guarded* g : images) delete g;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r{data, size};
  switch (r.pick(5)) {
    case 0: fuzzStep(r); break;
    case 1: fuzzCopy(r); break;
    case 2: fuzzLayer(r); break;
    case 3: fuzzLayerUp(r); break;
    default: fuzzFlow(r); break;
  }
  vnxSetNumThreads(1);
  return 0;
}
