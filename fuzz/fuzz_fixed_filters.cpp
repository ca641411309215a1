// Fixed-kernel filters with borders (every member, every border type, both masks) and
// their buffer-size queries: check order, queries that refuse sizes beyond an int and
// never under-report (the filter then runs in a buffer of exactly the reported size,
// ending right before a protected page), nothing written on an error (destination and
// work buffer), padding intact, the same bytes at 1, 2 and 3 threads, every NaN the
// default one.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Family { kSobel, kScharr, kLaplacian, kLowpass };
enum Out { k16s, k8s, k32f, k8u };

struct Args {
  const void* src;
  int srcStep;
  void* dst;
  int dstStep;
  vnxiSize roi;
  int mask, border;
  vnx8u value8;
  vnx32f value32;
  int divisor;
  vnx8u* buffer;
};
const vnx8u* S8(const Args& a) { return static_cast<const vnx8u*>(a.src); }
const vnx32f* S32(const Args& a) { return static_cast<const vnx32f*>(a.src); }
template <class T>
T* D(const Args& a) { return static_cast<T*>(a.dst); }

using F16sM = vnxStatus (*)(const vnx8u*, int, vnx16s*, int, vnxiSize, int, int, vnx8u, vnx8u*) noexcept;
using F8sM = vnxStatus (*)(const vnx8u*, int, vnx8s*, int, vnxiSize, int, int, vnx8u, int, vnx8u*) noexcept;
using F32fM = vnxStatus (*)(const vnx32f*, int, vnx32f*, int, vnxiSize, int, int, vnx32f, vnx8u*) noexcept;
using F8uM = vnxStatus (*)(const vnx8u*, int, vnx8u*, int, vnxiSize, int, int, vnx8u, vnx8u*) noexcept;
using F16s = vnxStatus (*)(const vnx8u*, int, vnx16s*, int, vnxiSize, int, vnx8u, vnx8u*) noexcept;
using F8s = vnxStatus (*)(const vnx8u*, int, vnx8s*, int, vnxiSize, int, vnx8u, int, vnx8u*) noexcept;
using F32f = vnxStatus (*)(const vnx32f*, int, vnx32f*, int, vnxiSize, int, vnx32f, vnx8u*) noexcept;
using QM = vnxStatus (*)(vnxiSize, int, int*) noexcept;
using Q = vnxStatus (*)(vnxiSize, int*) noexcept;

template <F16sM F> vnxStatus callF16sM(const Args& a) { return F(S8(a), a.srcStep, D<vnx16s>(a), a.dstStep, a.roi, a.mask, a.border, a.value8, a.buffer); }
template <F8sM F> vnxStatus callF8sM(const Args& a) { return F(S8(a), a.srcStep, D<vnx8s>(a), a.dstStep, a.roi, a.mask, a.border, a.value8, a.divisor, a.buffer); }
template <F32fM F> vnxStatus callF32fM(const Args& a) { return F(S32(a), a.srcStep, D<vnx32f>(a), a.dstStep, a.roi, a.mask, a.border, a.value32, a.buffer); }
template <F8uM F> vnxStatus callF8uM(const Args& a) { return F(S8(a), a.srcStep, D<vnx8u>(a), a.dstStep, a.roi, a.mask, a.border, a.value8, a.buffer); }
template <F16s F> vnxStatus callF16s(const Args& a) { return F(S8(a), a.srcStep, D<vnx16s>(a), a.dstStep, a.roi, a.border, a.value8, a.buffer); }
template <F8s F> vnxStatus callF8s(const Args& a) { return F(S8(a), a.srcStep, D<vnx8s>(a), a.dstStep, a.roi, a.border, a.value8, a.divisor, a.buffer); }
template <F32f F> vnxStatus callF32f(const Args& a) { return F(S32(a), a.srcStep, D<vnx32f>(a), a.dstStep, a.roi, a.border, a.value32, a.buffer); }
template <QM F> vnxStatus queryQM(vnxiSize roi, int mask, int* size) { return F(roi, mask, size); }
template <Q F> vnxStatus queryQ(vnxiSize roi, int, int* size) { return F(roi, size); }

struct Member {
  const char* name;
  Family family;
  Out out;
  bool hasMask;
  vnxStatus (*call)(const Args&);
  vnxStatus (*query)(vnxiSize, int, int*);
};
const Member kMembers[] = {
    {"SobelHoriz_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelHorizBorder_8u16s_C1R>, queryQM<vnxiFilterSobelHorizGetBufferSize_8u16s_C1R>},
    {"SobelHoriz_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelHorizBorder_8u8s_C1R>, queryQM<vnxiFilterSobelHorizGetBufferSize_8u8s_C1R>},
    {"SobelHoriz_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelHorizBorder_32f_C1R>, queryQM<vnxiFilterSobelHorizGetBufferSize_32f_C1R>},
    {"SobelVert_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelVertBorder_8u16s_C1R>, queryQM<vnxiFilterSobelVertGetBufferSize_8u16s_C1R>},
    {"SobelVert_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelVertBorder_8u8s_C1R>, queryQM<vnxiFilterSobelVertGetBufferSize_8u8s_C1R>},
    {"SobelVert_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelVertBorder_32f_C1R>, queryQM<vnxiFilterSobelVertGetBufferSize_32f_C1R>},
    {"SobelNegVert_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelNegVertBorder_8u16s_C1R>, queryQM<vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R>},
    {"SobelNegVert_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelNegVertBorder_8u8s_C1R>, queryQM<vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R>},
    {"SobelNegVert_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelNegVertBorder_32f_C1R>, queryQM<vnxiFilterSobelNegVertGetBufferSize_32f_C1R>},
    {"SobelHorizSecond_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelHorizSecondBorder_8u16s_C1R>, queryQM<vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R>},
    {"SobelHorizSecond_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelHorizSecondBorder_8u8s_C1R>, queryQM<vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R>},
    {"SobelHorizSecond_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelHorizSecondBorder_32f_C1R>, queryQM<vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R>},
    {"SobelVertSecond_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelVertSecondBorder_8u16s_C1R>, queryQM<vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R>},
    {"SobelVertSecond_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelVertSecondBorder_8u8s_C1R>, queryQM<vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R>},
    {"SobelVertSecond_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelVertSecondBorder_32f_C1R>, queryQM<vnxiFilterSobelVertSecondGetBufferSize_32f_C1R>},
    {"SobelCross_8u16s", kSobel, k16s, true, callF16sM<vnxiFilterSobelCrossBorder_8u16s_C1R>, queryQM<vnxiFilterSobelCrossGetBufferSize_8u16s_C1R>},
    {"SobelCross_8u8s", kSobel, k8s, true, callF8sM<vnxiFilterSobelCrossBorder_8u8s_C1R>, queryQM<vnxiFilterSobelCrossGetBufferSize_8u8s_C1R>},
    {"SobelCross_32f", kSobel, k32f, true, callF32fM<vnxiFilterSobelCrossBorder_32f_C1R>, queryQM<vnxiFilterSobelCrossGetBufferSize_32f_C1R>},
    {"Laplacian_8u16s", kLaplacian, k16s, true, callF16sM<vnxiFilterLaplacianBorder_8u16s_C1R>, queryQM<vnxiFilterLaplacianGetBufferSize_8u16s_C1R>},
    {"Laplacian_8u8s", kLaplacian, k8s, true, callF8sM<vnxiFilterLaplacianBorder_8u8s_C1R>, queryQM<vnxiFilterLaplacianGetBufferSize_8u8s_C1R>},
    {"Laplacian_32f", kLaplacian, k32f, true, callF32fM<vnxiFilterLaplacianBorder_32f_C1R>, queryQM<vnxiFilterLaplacianGetBufferSize_32f_C1R>},
    {"ScharrHoriz_8u16s", kScharr, k16s, false, callF16s<vnxiFilterScharrHorizBorder_8u16s_C1R>, queryQ<vnxiFilterScharrHorizGetBufferSize_8u16s_C1R>},
    {"ScharrHoriz_8u8s", kScharr, k8s, false, callF8s<vnxiFilterScharrHorizBorder_8u8s_C1R>, queryQ<vnxiFilterScharrHorizGetBufferSize_8u8s_C1R>},
    {"ScharrHoriz_32f", kScharr, k32f, false, callF32f<vnxiFilterScharrHorizBorder_32f_C1R>, queryQ<vnxiFilterScharrHorizGetBufferSize_32f_C1R>},
    {"ScharrVert_8u16s", kScharr, k16s, false, callF16s<vnxiFilterScharrVertBorder_8u16s_C1R>, queryQ<vnxiFilterScharrVertGetBufferSize_8u16s_C1R>},
    {"ScharrVert_8u8s", kScharr, k8s, false, callF8s<vnxiFilterScharrVertBorder_8u8s_C1R>, queryQ<vnxiFilterScharrVertGetBufferSize_8u8s_C1R>},
    {"ScharrVert_32f", kScharr, k32f, false, callF32f<vnxiFilterScharrVertBorder_32f_C1R>, queryQ<vnxiFilterScharrVertGetBufferSize_32f_C1R>},
    {"Lowpass_8u", kLowpass, k8u, true, callF8uM<vnxiFilterLowpassBorder_8u_C1R>, queryQM<vnxiFilterLowpassGetBufferSize_8u_C1R>},
    {"Lowpass_32f", kLowpass, k32f, true, callF32fM<vnxiFilterLowpassBorder_32f_C1R>, queryQM<vnxiFilterLowpassGetBufferSize_32f_C1R>},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

bool wide(const Member& m) { return m.out == k32f; }
int srcElem(const Member& m) { return wide(m) ? 4 : 1; }
int dstElem(const Member& m) { return m.out == k32f ? 4 : m.out == k16s ? 2 : 1; }
std::int64_t up(std::int64_t v, int m) { return (v + m - 1) / m * m; }

vnxStatus expected(const Member& m, const Args& a) {
  if (vnxStatus st = expectPtrs({a.src, a.dst, a.buffer})) return st;
  if (vnxStatus st = expectRoi(a.roi)) return st;
  if (vnxStatus st = expectSteps({{a.srcStep, rowBytes(a.roi, srcElem(m)), srcElem(m)},
                                  {a.dstStep, rowBytes(a.roi, dstElem(m)), dstElem(m)}}))
    return st;
  if (a.border < 0 || a.border > 4) return vnxStatusBadArg;
  if (m.out == k8s && a.divisor == 0) return vnxStatusBadArg;
  if (m.hasMask && a.mask != vnxMskSize3x3 && a.mask != vnxMskSize5x5) return vnxStatusBadMaskSize;
  return vnxStatusOk;
}

// Bounds of the buffer a query must report at t threads: every thread needs its slice
// (the filter's own rows plus one row pass and one column pass, each for one thread).
// Whether the passes' sizes are counted once per thread or once per thread per thread,
// the size lies between the two bounds; at one thread they are equal.
void queryBounds(const Member& m, vnxiSize roi, int mask, std::int64_t t, std::int64_t* lo, std::int64_t* hi) {
  const std::int64_t k = m.hasMask && mask == vnxMskSize5x5 ? 5 : 3, w = roi.width, h = roi.height;
  const std::int64_t w16 = up(w, 16), w4 = up(w, 4);
  const std::int64_t row = 32 + 4 * (h + k) + (wide(m) ? 64 * k + 64 : 36 * k + 112);
  const std::int64_t col = wide(m) ? 0 : 32 + 4 * (h + k) + 12 * w4 + 32;
  const std::int64_t colConst = wide(m) ? 32 : 0;
  std::int64_t s = 0;
  switch (m.family) {
    case kSobel: case kLowpass:
      s = (wide(m) ? 4 * w4 : 2 * w16) * (2 * k + 15) + 4 * (3 * k + 30) + 64;
      break;
    case kScharr: s = wide(m) ? 84 * w4 + 220 : 42 * w16 + 220; break;
    case kLaplacian:
      s = (wide(m) ? 8 : 4) * w16 * (2 * k + 15) + 8 * (3 * k + 30) + 96;
      if (m.out == k8s && k == 5) s += 2 * w16 * h + 32;
      break;
  }
  *lo = t * (s + row + col + colConst + 32);
  *hi = t * (s + t * row + t * col + colConst + 32);
}

// Query: -8, -6, -33 in this order, then the size or, beyond an int, -6.
// Returns the reported size, or -1 when the call gave no size.
std::int64_t checkQuery(const Member& m, vnxiSize roi, int mask, bool nullResult) {
  Arr<int> size;
  size.make(1);
  size[0] = -99;
  size.snapshot();
  const vnxStatus st = m.query(roi, mask, nullResult ? nullptr : size.ptr());
  vnxStatus want = nullResult ? vnxStatusNullPtr : expectRoi(roi);
  if (!want && m.hasMask && mask != vnxMskSize3x3 && mask != vnxMskSize5x5) want = vnxStatusBadMaskSize;
  if (want) {
    FZ_CHECK_EQ(st, want, "query status");
    FZ_CHECK(size.unchanged(), "query wrote a size on an error");
    return -1;
  }
  int t = 1;
  vnxGetNumThreads(&t);
  std::int64_t lo, hi;
  queryBounds(m, roi, mask, t, &lo, &hi);
#ifdef VNX_FUZZ_SKIP_QUERY_OVERFLOW
  if (hi > INT_MAX) return -1;
#endif
  if (lo > INT_MAX) {
    FZ_CHECK_EQ(st, vnxStatusBadSize, "query of a size beyond an int");
    FZ_CHECK(size.unchanged(), "query wrote a size beyond an int");
    return -1;
  }
  if (hi <= INT_MAX) FZ_CHECK_EQ(st, vnxStatusOk, "query status");
  if (st == vnxStatusBadSize) {
    FZ_CHECK(size.unchanged(), "query wrote a size it refused");
    return -1;
  }
  FZ_CHECK_EQ(st, vnxStatusOk, "query status");
  FZ_CHECK(size[0] >= lo && size[0] <= hi, "query size outside its bounds");
  return size[0];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  Args a{};
  a.roi = {pickDim(r, 40, 800), pickDim(r, 40, 800)};
  static const int kMasks[] = {33, 55, 33, 55, 33, 55, 3, 5, 0, -33, 34, 54, INT_MIN, INT_MAX};
  a.mask = kMasks[r.pick(14)];
  static const int kBorders[] = {0, 1, 2, 3, 4, 0, 1, 2, 3, 4, -1, 5, INT_MIN, INT_MAX};
  a.border = kBorders[r.pick(14)];
  a.value8 = r.u8();
  a.value32 = r.anyFloat();
  a.divisor = r.oneIn(2) ? 1 + r.pick(300) : r.anyInt();
  a.srcStep = pickStep(r, rowBytes(a.roi, srcElem(m)), srcElem(m));
  a.dstStep = pickStep(r, rowBytes(a.roi, dstElem(m)), dstElem(m));
  FZ_CONTEXT("%s, roi %dx%d, mask %d, border %d, value %d / %a, divisor %d, steps %d %d", m.name, a.roi.width,
             a.roi.height, a.mask, a.border, a.value8, a.value32, a.divisor, a.srcStep, a.dstStep);
  const bool nullQueryResult = r.oneIn(32);
  const int bufferMode = r.pick(32);  // 0: null, 1: trap, else the queried size
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  Img src, dst;
  src.make(a.roi.width, a.roi.height, srcElem(m), a.srcStep, guard);
  dst.make(a.roi.width, a.roi.height, dstElem(m), a.dstStep, r.oneIn(3) ? Guard::Before : Guard::After);
  a.src = r.oneIn(32) ? nullptr : src.ptr();
  a.dst = r.oneIn(32) ? nullptr : dst.ptr();

  setThreads(1);
  const std::int64_t bytes1 = checkQuery(m, a.roi, a.mask, nullQueryResult);
  a.buffer = bufferMode == 0 ? nullptr : trapPage() + pageSize();
  const vnxStatus want = expected(m, a);
  if (want != vnxStatusOk) {  // the checks must fail before anything is touched
    Pixels px(r);
    if (wide(m)) src.fill<vnx32f>(px), dst.fill<vnx32f>(px);
    else src.fill<vnx8u>(px), dst.fill<vnx8u>(px);
    Arr<vnx8u> buffer;
    buffer.make(bytes1 > 0 ? bytes1 : 64);
    if (a.buffer && bufferMode > 1 && buffer.real()) a.buffer = buffer.ptr();
    src.snapshot(), dst.snapshot(), buffer.snapshot();
    FZ_CHECK_EQ(m.call(a), want, "status");
    FZ_CHECK(src.unchanged() && dst.unchanged(), "an image was written on an error");
    FZ_CHECK(buffer.unchanged(), "the work buffer was written on an error");
    return 0;
  }
  if (!src.real() || !dst.real() || bufferMode == 1 || nullQueryResult) return 0;

  Pixels px(r);
  if (wide(m)) src.fill<vnx32f>(px), dst.fill<vnx32f>(px);
  else src.fill<vnx8u>(px), dst.fill<vnx8u>(px);
  src.snapshot(), dst.snapshot();
  std::vector<std::uint8_t> first;
  for (int t : kThreadCounts) {
    setThreads(t);
    const std::int64_t bytes = checkQuery(m, a.roi, a.mask, false);
    Arr<vnx8u> buffer;
    buffer.make(bytes);
    if (bytes < 0 || !buffer.real()) return 0;
    a.buffer = buffer.ptr();
    dst.restore();
    FZ_CHECK_EQ(m.call(a), vnxStatusOk, "status");
    FZ_CHECK(src.unchanged(), "source written");
    FZ_CHECK(dst.paddingIntact(), "row padding written");
    std::vector<std::uint8_t> got = dst.roiBytes();
    if (wide(m)) FZ_CHECK(allNaNsCanonical(got.data(), got.size()), "a NaN result is not the default NaN");
    if (t == 1) first.swap(got);
    else FZ_CHECK(got == first, "result depends on the thread count");
  }
  return 0;
}
