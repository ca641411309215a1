// libFuzzer harness of the edges-and-features family: Canny, Hough lines, the corner
// measures, the fast arctangent and the colour gradient. The fuzzer picks the member,
// sizes (0, negative, odd), steps (too small, odd, negative), thresholds, selectors and
// pixel data; images end right before a protected page. Asserted: the status the check
// order predicts, nothing written on an error, row padding intact on success, and the
// same result with one thread and with three.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vnxcv.h"

namespace {

#define FZ_CHECK(c)                  \
  do {                               \
    if (!(c)) __builtin_trap();      \
  } while (0)

// Bytes of the input as a little stream; zeros once exhausted.
struct Stream {
  const std::uint8_t* p;
  std::size_t n;
  std::uint8_t u8() { return n ? (--n, *p++) : 0; }
  int range(int lo, int hi) { return lo + int(u8() % unsigned(hi - lo + 1)); }
  float f32() {
    std::uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v = v << 8 | u8();
    float f;
    std::memcpy(&f, &v, 4);
    return f;
  }
};

// A block whose last byte sits right before a protected page; null for 0 bytes.
class Guarded {
 public:
  explicit Guarded(std::size_t bytes) : bytes_(bytes) {
    const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
    map_ = (bytes + page - 1) / page * page + page;
    base_ = static_cast<std::uint8_t*>(mmap(nullptr, map_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    FZ_CHECK(base_ != MAP_FAILED);
    mprotect(base_ + map_ - page, page, PROT_NONE);
    data_ = base_ + (map_ - page - bytes);
  }
  ~Guarded() { munmap(base_, map_); }
  std::uint8_t* data() const { return data_; }
  std::size_t size() const { return bytes_; }

 private:
  std::size_t bytes_, map_;
  std::uint8_t* base_;
  std::uint8_t* data_;
};

// An image operand: `height` rows of `step` bytes (at least a row's bytes), filled from
// the stream, padding with a canary byte. With an unusable size or step it is a small
// block the call must never read.
struct Img {
  std::vector<std::uint8_t> tiny = std::vector<std::uint8_t>(64, 0x5A);
  Guarded* g = nullptr;
  int step;
  std::int64_t rowBytes;
  int height;
  // rowsMayOverlap: any positive step is valid (Hough lines never compare it with the width).
  Img(Stream& s, int width, int h, int elemBytes, int channels, bool fill, bool rowsMayOverlap = false) : height(h) {
    rowBytes = std::int64_t(width) * elemBytes * channels;
    step = int(rowBytes) + s.range(-3, 9) * (s.u8() % 4 == 0 ? 1 : elemBytes / 2 + 1) - (s.u8() % 16 == 0 ? 1 : 0);
    if (width < 1 || h < 1 || step < (rowsMayOverlap ? 1 : rowBytes) || rowBytes > 4096 || h > 512) return;
    g = new Guarded(std::size_t(step) * (h - 1) + std::size_t(rowBytes));
    std::uint8_t* p = g->data();
    for (std::size_t i = 0; i < g->size(); ++i) p[i] = 0xA5;
    if (rowsMayOverlap)
      for (std::size_t i = 0; i < g->size(); ++i) p[i] = s.u8();
    else
      for (int y = 0; y < h; ++y)
        for (std::int64_t x = 0; x < rowBytes; ++x) p[std::size_t(y) * step + x] = fill ? s.u8() : 0x33;
  }
  ~Img() { delete g; }
  void* ptr() { return g ? g->data() : tiny.data(); }
  std::vector<std::uint8_t> snapshot() const {
    return g ? std::vector<std::uint8_t>(g->data(), g->data() + g->size()) : tiny;
  }
  bool paddingIntact() const {
    if (!g) return true;
    for (int y = 0; y + 1 < height; ++y)
      for (std::int64_t x = rowBytes; x < step; ++x)
        if (g->data()[std::size_t(y) * step + x] != 0xA5) return false;
    return true;
  }
  std::vector<std::uint8_t> rows() const {
    std::vector<std::uint8_t> v;
    if (g)
      for (int y = 0; y < height; ++y) v.insert(v.end(), g->data() + std::size_t(y) * step, g->data() + std::size_t(y) * step + rowBytes);
    return v;
  }
};

// Step checks of one group: row bytes for all, then multiples for the wide ones.
vnxStatus stepStatus(std::initializer_list<const Img*> imgs, std::initializer_list<int> elems) {
  for (const Img* i : imgs)
    if (i->step < i->rowBytes) return vnxStatusBadStep;
  auto e = elems.begin();
  for (const Img* i : imgs) {
    if (*e > 1 && i->step % *e) return vnxStatusStepNotMultiple;
    ++e;
  }
  return vnxStatusOk;
}

// Runs `call` with one thread and with three: same status, same output rows.
template <class Call>
vnxStatus runBoth(Img& out, Call call) {
  const auto before = out.snapshot();
  vnxSetNumThreads(1);
  const vnxStatus st1 = call();
  const auto serial = out.rows();
  if (st1 < 0) FZ_CHECK(out.snapshot() == before);
  vnxSetNumThreads(3);
  const vnxStatus st3 = call();
  vnxSetNumThreads(1);
  FZ_CHECK(st1 == st3);
  if (st1 >= 0) FZ_CHECK(out.rows() == serial && out.paddingIntact());
  return st1;
}

void fuzzCanny(Stream& s, bool f32) {
  const int w = s.range(-1, 70), h = s.range(-1, 60), eb = f32 ? 4 : 2;
  Img dx(s, w, h, eb, 1, true), dy(s, w, h, eb, 1, true), dst(s, w, h, 1, 1, false);
  const float lo = s.u8() % 8 == 0 ? s.f32() : float(s.range(-2, 200)) + 0.5f * (s.u8() & 1);
  const float hi = s.u8() % 8 == 0 ? s.f32() : lo + float(s.range(-3, 300));
  int size = 0;
  const bool sized = w > 0 && h > 0 && vnxiCannyGetSize({w, h}, &size) == vnxStatusOk;
  Guarded buf(sized ? std::size_t(size) : 64);
  vnxStatus expect = vnxStatusOk;
  if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (vnxStatus st = stepStatus({&dx, &dy, &dst}, {eb, eb, 1})) expect = st;
  else if (lo < 0 || hi < lo) expect = vnxStatusBadArg;
  const vnxStatus st = runBoth(dst, [&] {
    return f32 ? vnxiCanny_32f8u_C1R(static_cast<vnx32f*>(dx.ptr()), dx.step, static_cast<vnx32f*>(dy.ptr()), dy.step,
                                     static_cast<vnx8u*>(dst.ptr()), dst.step, {w, h}, lo, hi, buf.data())
               : vnxiCanny_16s8u_C1R(static_cast<vnx16s*>(dx.ptr()), dx.step, static_cast<vnx16s*>(dy.ptr()), dy.step,
                                     static_cast<vnx8u*>(dst.ptr()), dst.step, {w, h}, lo, hi, buf.data());
  });
  FZ_CHECK(st == expect);
  if (st == vnxStatusOk)
    for (std::uint8_t v : dst.rows()) FZ_CHECK(v == 0 || v == 255);
}

void fuzzHough(Stream& s) {
  const int w = s.range(-1, 60), h = s.range(-1, 40), maxLines = s.range(-1, 12), threshold = s.range(-1, 20);
  Img src(s, w, h, 1, 1, true, true);
  const vnxiHoughDelta d{s.u8() % 8 == 0 ? s.f32() : 0.25f * s.range(-1, 40), s.u8() % 8 == 0 ? s.f32() : 0.01f * s.range(-1, 330)};
  int size = 0;
  const vnxStatus qs = vnxiHoughLineGetSize_8u_C1R({w, h}, d, maxLines, &size);
  // The peak scan visits every accumulator cell: keep the work of one call small enough
  // for the fuzzer's time limit (the accumulator is most of the reported size).
  const bool sized = qs == vnxStatusOk && size > 0 && size < (4 << 20);
  Guarded buf(sized ? std::size_t(size) : 64);
  std::vector<vnx32f> lines(2 * std::size_t(maxLines > 0 ? maxLines : 1), -7.0f);
  int count = -9;
  vnxStatus expect = vnxStatusOk;
  const float wh = float(w + h);
  if (src.step < 1) expect = vnxStatusBadStep;
  else if (w < 1 || h < 1 || maxLines < 1) expect = vnxStatusBadSize;
  else if (!(d.rho > 0) || d.rho > wh || !(d.theta > 0) || d.theta > 3.14159265f || threshold < 1) expect = vnxStatusBadArg;
  if (expect == vnxStatusOk && !sized) return;  // a resolution too fine for this harness's memory
  // The votes and the peak scan visit every (theta, rho) cell, and the ring keeps the
  // buffer small whatever their count: bound the cells, not the buffer, for the time limit.
  if (expect == vnxStatusOk && (2.0 * (w + h) / d.rho + 3.0) * (3.2 / d.theta + 2.0) > double(1 << 22)) return;
  auto call = [&] {
    return vnxiHoughLine_8u32f_C1R(static_cast<vnx8u*>(src.ptr()), src.step, {w, h}, d, threshold, lines.data(), maxLines,
                                   &count, buf.data());
  };
  vnxStatus st = call();
  // A resolution so fine that the work would not fit an int-sized buffer is refused too.
  const double work = 16.0 * (2.0 * (double(w) + h) + 1) / d.rho + 8.0 * 3.141592653589793 / d.theta;
  if (expect == vnxStatusOk && st == vnxStatusBadArg && work > 1e9) expect = vnxStatusBadArg;
  if (expect != vnxStatusOk) {
    FZ_CHECK(st == expect && count == -9 && lines[0] == -7.0f);
    return;
  }
  FZ_CHECK(st == vnxStatusOk || st == vnxStatusTooManyLines);
  FZ_CHECK(count >= 0 && count <= maxLines && (st == vnxStatusOk || count == maxLines));
}

void fuzzCorners(Stream& s) {
  const bool vecs = s.u8() & 1, f32 = s.u8() & 1;
  const int w = s.range(-1, 50), h = s.range(-1, 40), kern = s.range(-1, 2), ap = s.range(2, 6), win = s.range(2, 6);
  Img src(s, w, h, f32 ? 4 : 1, 1, true), dst(s, w, h, 4, vecs ? 6 : 1, false);
  if (f32 && src.g)  // finite floats, so the composition stays away from NaN payload questions
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const float v = float(s.u8());
        std::memcpy(src.g->data() + std::size_t(y) * src.step + 4 * std::size_t(x), &v, 4);
      }
  int size = 0;
  const bool sized = w > 0 && h > 0 && (ap == 3 || ap == 5) && (win == 3 || win == 5);
  vnxSetNumThreads(3);  // the buffer for the larger team serves the smaller one
  if (sized) (f32 ? vnxiMinEigenValGetBufferSize_32f_C1R : vnxiMinEigenValGetBufferSize_8u32f_C1R)({w, h}, ap, win, &size);
  Guarded buf(sized ? std::size_t(size) : 64);
  vnxStatus expect = vnxStatusOk;
  if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (vnxStatus st = stepStatus({&src, &dst}, {f32 ? 4 : 1, 4})) expect = st;
  else if (kern != 0 && kern != 1) expect = vnxStatusBadArg;
  else if (ap != 3 && (ap != 5 || kern == 1)) expect = vnxStatusBadSize;
  else if (win != 3 && win != 5) expect = vnxStatusBadSize;
  // Each member is called through its own type: the 8u and 32f sources differ.
  auto call = [&] {
    const vnxiSize roi{w, h};
    vnx32f* d = static_cast<vnx32f*>(dst.ptr());
    vnx8u* b = static_cast<vnx8u*>(buf.data());
    if (f32) {
      const vnx32f* p = static_cast<const vnx32f*>(src.ptr());
      return vecs ? vnxiEigenValsVecs_32f_C1R(p, src.step, d, dst.step, roi, kern, ap, win, b)
                  : vnxiMinEigenVal_32f_C1R(p, src.step, d, dst.step, roi, kern, ap, win, b);
    }
    const vnx8u* p = static_cast<const vnx8u*>(src.ptr());
    return vecs ? vnxiEigenValsVecs_8u32f_C1R(p, src.step, d, dst.step, roi, kern, ap, win, b)
                : vnxiMinEigenVal_8u32f_C1R(p, src.step, d, dst.step, roi, kern, ap, win, b);
  };
  FZ_CHECK(expect == runBoth(dst, call));
}

void fuzzArctanAndGradient(Stream& s) {
  const int len = s.range(-1, 40);
  Guarded y(4 * std::size_t(len > 0 ? len : 1)), x(4 * std::size_t(len > 0 ? len : 1)), d(4 * std::size_t(len > 0 ? len : 1));
  for (std::size_t i = 0; i < y.size(); ++i) y.data()[i] = s.u8(), x.data()[i] = s.u8(), d.data()[i] = 0x11;
  const vnxStatus st = vnxibFastArctan_32f(reinterpret_cast<vnx32f*>(y.data()), reinterpret_cast<vnx32f*>(x.data()),
                                           reinterpret_cast<vnx32f*>(d.data()), len);
  FZ_CHECK(st == (len < 1 ? vnxStatusBadSize : vnxStatusOk));
  if (len < 1) FZ_CHECK(d.data()[0] == 0x11);

  const int type = s.range(0, 2), w = s.range(-1, 40), h = s.range(-1, 20), norm = s.range(-1, 3);
  const int eb = type == 0 ? 1 : type == 1 ? 2 : 4;
  Img src(s, w, h, eb, 3, true), dst(s, w, h, eb, 1, false);
  vnxStatus expect = vnxStatusOk;
  if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (vnxStatus e = stepStatus({&src, &dst}, {eb, eb})) expect = e;
  else if (norm < 0 || norm > 2) expect = vnxStatusBadArg;
  FZ_CHECK(expect == runBoth(dst, [&] {
             switch (type) {
               case 0: return vnxiGradientColorToGray_8u_C3C1R(static_cast<vnx8u*>(src.ptr()), src.step, static_cast<vnx8u*>(dst.ptr()), dst.step, {w, h}, norm);
               case 1: return vnxiGradientColorToGray_16u_C3C1R(static_cast<vnx16u*>(src.ptr()), src.step, static_cast<vnx16u*>(dst.ptr()), dst.step, {w, h}, norm);
               default: return vnxiGradientColorToGray_32f_C3C1R(static_cast<vnx32f*>(src.ptr()), src.step, static_cast<vnx32f*>(dst.ptr()), dst.step, {w, h}, norm);
             }
           }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Stream s{data, size};
  switch (s.u8() % 5) {
    case 0: fuzzCanny(s, false); break;
    case 1: fuzzCanny(s, true); break;
    case 2: fuzzHough(s); break;
    case 3: fuzzCorners(s); break;
    default: fuzzArctanAndGradient(s); break;
  }
  return 0;
}
