// Sampling along a line: check order (end points last), nothing written on an error,
// exactly max(|dx|, |dy|) + 1 pixels written into an array that ends right before a
// protected page, the samples of the walker the contract describes. A rare input
// walks a line longer than 2^30 pixels over an untouched (zero) source.
#include "fuzz_support.h"

namespace {

using namespace fz;

struct Member {
  int elem, channels;
  vnxStatus (*call)(const void*, int, vnxiSize, void*, vnxiPoint, vnxiPoint);
};
const Member kMembers[] = {
    {1, 1, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_8u_C1R(static_cast<const vnx8u*>(s), st, roi, static_cast<vnx8u*>(d), a, b); }},
    {1, 3, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_8u_C3R(static_cast<const vnx8u*>(s), st, roi, static_cast<vnx8u*>(d), a, b); }},
    {2, 1, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_16u_C1R(static_cast<const vnx16u*>(s), st, roi, static_cast<vnx16u*>(d), a, b); }},
    {2, 3, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_16u_C3R(static_cast<const vnx16u*>(s), st, roi, static_cast<vnx16u*>(d), a, b); }},
    {4, 1, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_32f_C1R(static_cast<const vnx32f*>(s), st, roi, static_cast<vnx32f*>(d), a, b); }},
    {4, 3, [](const void* s, int st, vnxiSize roi, void* d, vnxiPoint a, vnxiPoint b) {
       return vnxiSampleLine_32f_C3R(static_cast<const vnx32f*>(s), st, roi, static_cast<vnx32f*>(d), a, b); }},
};

int pickCoord(Reader& r, int extent) {
  switch (r.pick(16)) {
    case 0: return -1;
    case 1: return extent;
    case 2: return INT_MIN;
    case 3: return INT_MAX;
    case 4: return clampInt(std::int64_t(extent) - 1);
    case 5: return 0;
    default: return extent > 0 ? static_cast<int>(r.u32() % static_cast<std::uint32_t>(extent)) : r.anyInt();
  }
}

bool inside(vnxiPoint p, vnxiSize roi) { return p.x >= 0 && p.y >= 0 && p.x < roi.width && p.y < roi.height; }

vnxStatus expected(const Member& m, const void* s, int step, vnxiSize roi, const void* d, vnxiPoint a, vnxiPoint b) {
  if (vnxStatus st = expectPtrs({s, d})) return st;
  if (vnxStatus st = expectRoi(roi)) return st;
  if (vnxStatus st = expectSteps({{step, rowBytes(roi, m.elem * m.channels), m.elem}})) return st;
  if (!inside(a, roi) || !inside(b, roi)) return vnxStatusOutOfRange;
  return vnxStatusOk;
}

std::int64_t count(vnxiPoint a, vnxiPoint b) {
  const std::int64_t adx = std::llabs(std::int64_t(b.x) - a.x), ady = std::llabs(std::int64_t(b.y) - a.y);
  return (adx > ady ? adx : ady) + 1;
}

// Pixel positions of the walker, in 64 bits.
template <class F>
void walk(vnxiPoint a, vnxiPoint b, F visit) {
  const std::int64_t dx = std::int64_t(b.x) - a.x, dy = std::int64_t(b.y) - a.y;
  const std::int64_t adx = std::llabs(dx), ady = std::llabs(dy);
  const bool yMajor = adx <= ady;
  const std::int64_t major = yMajor ? ady : adx, minor = yMajor ? adx : ady;
  std::int64_t x = a.x, y = a.y, err = major;
  for (std::int64_t i = 0; i <= major; ++i) {
    visit(i, x, y);
    err -= 2 * minor;
    if (err < 0) {
      err += 2 * major;
      if (yMajor) x += dx < 0 ? -1 : 1; else y += dy < 0 ? -1 : 1;
    }
    if (yMajor) y += dy < 0 ? -1 : 1; else x += dx < 0 ? -1 : 1;
  }
}

// A line of 2^30 + 1 pixels along the one row (or column) of an 8-bit image that
// is never written: the walker's extents must not overflow.
int hugeLine(Reader& r) {
#ifdef VNX_FUZZ_SKIP_HUGE_LINES
  (void)r;
  return 0;
#else
  const bool vertical = r.oneIn(2);
  const int n = (1 << 30) + 1;
  const vnxiSize roi = vertical ? vnxiSize{1, n} : vnxiSize{n, 1};
  const int step = vertical ? 1 : n;
  Block src, dst;
  src.map(static_cast<std::size_t>(n), Guard::After, 0, Block::kUntouched);
  dst.map(static_cast<std::size_t>(n), Guard::After, 0, Block::kUntouched);
  const vnxiPoint a{0, 0}, b = vertical ? vnxiPoint{0, n - 1} : vnxiPoint{n - 1, 0};
  const bool reverse = r.oneIn(2);
  const vnxStatus st = vnxiSampleLine_8u_C1R(src.data(), step, roi, dst.data(), reverse ? b : a, reverse ? a : b);
  FZ_CHECK_EQ(st, vnxStatusOk, "status of a line of 2^30 + 1 pixels");
  FZ_CHECK(dst.data()[0] == 0 && dst.data()[n - 1] == 0, "samples of a line of 2^30 + 1 pixels");
  return 0;
#endif
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  if (r.u8() == 0xEE) return hugeLine(r);
  const Member& m = kMembers[r.pick(6)];
  const int pb = m.elem * m.channels;
  const vnxiSize roi{pickDim(r, 64, 3000), pickDim(r, 64, 3000)};
  const int step = pickStep(r, rowBytes(roi, pb), m.elem);
  const vnxiPoint a{pickCoord(r, roi.width), pickCoord(r, roi.height)};
  const vnxiPoint b{pickCoord(r, roi.width), pickCoord(r, roi.height)};
  FZ_CONTEXT("member %d, roi %dx%d, step %d, (%d, %d) to (%d, %d)", static_cast<int>(&m - kMembers), roi.width,
             roi.height, step, a.x, a.y, b.x, b.y);
  Img src;
  src.make(roi.width, roi.height, pb, step, r.oneIn(3) ? Guard::Before : Guard::After);
  const std::int64_t n = count(a, b);
  Arr<std::uint8_t> dst;
  dst.make(inside(a, roi) && inside(b, roi) ? n * pb : 64);
  const void* ps = r.oneIn(24) ? nullptr : src.ptr();
  void* pd = r.oneIn(24) ? nullptr : dst.ptr();
  const vnxStatus want = expected(m, ps, step, roi, pd, a, b);
  if (want == vnxStatusOk && !(src.real() && dst.real())) return 0;

  Pixels px(r);
  if (m.elem == 4) src.fill<vnx32f>(px); else src.fill<vnx8u>(px);
  src.snapshot(), dst.snapshot();
  const vnxStatus st = m.call(ps, step, roi, pd, a, b);
  FZ_CHECK_EQ(st, want, "status");
  FZ_CHECK(src.unchanged(), "source written");
  if (st != vnxStatusOk) {
    FZ_CHECK(dst.unchanged(), "destination written on an error");
    return 0;
  }
  walk(a, b, [&](std::int64_t i, std::int64_t x, std::int64_t y) {
    FZ_CHECK(std::memcmp(&dst[i * pb], src.row(y) + x * pb, pb) == 0, "sample differs from the walker's pixel");
  });
  return 0;
}
