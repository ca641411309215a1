// Row and column pipeline passes and their buffer-size queries: check order (the
// buffer and row-pointer tests where the header puts them), queries exact by their
// formula or -6 beyond an int, the pass run in a buffer of exactly the reported size,
// row-pointer arrays and kernels ending right before a protected page, nothing written
// on an error, padding intact, the same bytes at 1, 2 and 3 threads, every NaN the
// default one.
#include "fuzz_support.h"

namespace {

using namespace fz;

struct Args {
  const void* src;  // row pass: source image; column pass: the row-pointer array
  int srcStep;
  void* dst;  // row pass: the row-pointer array; column pass: destination image
  int dstStep;
  vnxiSize roi;
  const void* kernel;
  int k, anchor, border;
  vnx8u value8;
  vnx16s value16;
  vnx32f value32;
  int divisor;
  vnx8u* buffer;
};
template <class T>
const T* C(const void* p) { return static_cast<const T*>(p); }

using R8u = vnxStatus (*)(const vnx8u*, int, vnx16s**, vnxiSize, const vnx16s*, int, int, int, vnx8u, int, vnx8u*) noexcept;
using R16s = vnxStatus (*)(const vnx16s*, int, vnx16s**, vnxiSize, const vnx16s*, int, int, int, vnx16s, int, vnx8u*) noexcept;
using R32f = vnxStatus (*)(const vnx32f*, int, vnx32f**, vnxiSize, const vnx32f*, int, int, int, vnx32f, vnx8u*) noexcept;
using C16s = vnxStatus (*)(const vnx16s* const*, vnx16s*, int, vnxiSize, const vnx16s*, int, vnx8u*) noexcept;
using C8u = vnxStatus (*)(const vnx16s* const*, vnx8u*, int, vnxiSize, const vnx16s*, int, int, vnx8u*) noexcept;
using C8s = vnxStatus (*)(const vnx16s* const*, vnx8s*, int, vnxiSize, const vnx16s*, int, int, vnx8u*) noexcept;
using C32f = vnxStatus (*)(const vnx32f* const*, vnx32f*, int, vnxiSize, const vnx32f*, int, vnx8u*) noexcept;
using Query = vnxStatus (*)(vnxiSize, int, int*) noexcept;

template <R8u F> vnxStatus row8u(const Args& a) {
  return F(C<vnx8u>(a.src), a.srcStep, static_cast<vnx16s**>(a.dst), a.roi, C<vnx16s>(a.kernel), a.k, a.anchor, a.border, a.value8, a.divisor, a.buffer);
}
template <R16s F> vnxStatus row16s(const Args& a) {
  return F(C<vnx16s>(a.src), a.srcStep, static_cast<vnx16s**>(a.dst), a.roi, C<vnx16s>(a.kernel), a.k, a.anchor, a.border, a.value16, a.divisor, a.buffer);
}
template <R32f F> vnxStatus row32f(const Args& a) {
  return F(C<vnx32f>(a.src), a.srcStep, static_cast<vnx32f**>(a.dst), a.roi, C<vnx32f>(a.kernel), a.k, a.anchor, a.border, a.value32, a.buffer);
}
template <C16s F> vnxStatus col16s(const Args& a) {
  return F(C<const vnx16s*>(a.src), static_cast<vnx16s*>(a.dst), a.dstStep, a.roi, C<vnx16s>(a.kernel), a.k, a.buffer);
}
template <C8u F> vnxStatus col8u(const Args& a) {
  return F(C<const vnx16s*>(a.src), static_cast<vnx8u*>(a.dst), a.dstStep, a.roi, C<vnx16s>(a.kernel), a.k, a.divisor, a.buffer);
}
template <C8s F> vnxStatus col8s(const Args& a) {
  return F(C<const vnx16s*>(a.src), static_cast<vnx8s*>(a.dst), a.dstStep, a.roi, C<vnx16s>(a.kernel), a.k, a.divisor, a.buffer);
}
template <C32f F> vnxStatus col32f(const Args& a) {
  return F(C<const vnx32f*>(a.src), static_cast<vnx32f*>(a.dst), a.dstStep, a.roi, C<vnx32f>(a.kernel), a.k, a.buffer);
}

// in / out: element bytes of the source and destination samples; sizeA, sizeB, sizeW:
// the per-thread size S = sizeA * k + sizeB (row) or sizeA * (width rounded up to sizeW)
// + sizeB (column); sizeW = 0 marks the 32f column query, a constant 32.
struct Member {
  const char* name;
  bool column;
  int in, out, channels;
  bool hasDivisor;
  int sizeA, sizeB, sizeW;
  vnxStatus (*call)(const Args&);
  Query query;
};
const Member kMembers[] = {
    {"Row_8u16s_C1R", false, 1, 2, 1, true, 36, 112, 0, row8u<vnxiFilterRowBorderPipeline_8u16s_C1R>, vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R},
    {"Row_8u16s_C3R", false, 1, 2, 3, true, 60, 112, 0, row8u<vnxiFilterRowBorderPipeline_8u16s_C3R>, vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C3R},
    {"Row_16s_C1R", false, 2, 2, 1, true, 48, 80, 0, row16s<vnxiFilterRowBorderPipeline_16s_C1R>, vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R},
    {"Row_16s_C3R", false, 2, 2, 3, true, 40, 64, 0, row16s<vnxiFilterRowBorderPipeline_16s_C3R>, vnxiFilterRowBorderPipelineGetBufferSize_16s_C3R},
    {"Row_Low_16s_C1R", false, 2, 2, 1, true, 24, 64, 0, row16s<vnxiFilterRowBorderPipeline_Low_16s_C1R>, vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C1R},
    {"Row_Low_16s_C3R", false, 2, 2, 3, true, 208, 64, 0, row16s<vnxiFilterRowBorderPipeline_Low_16s_C3R>, vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R},
    {"Row_32f_C1R", false, 4, 4, 1, false, 64, 64, 0, row32f<vnxiFilterRowBorderPipeline_32f_C1R>, vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R},
    {"Row_32f_C3R", false, 4, 4, 3, false, 192, 32, 0, row32f<vnxiFilterRowBorderPipeline_32f_C3R>, vnxiFilterRowBorderPipelineGetBufferSize_32f_C3R},
    {"Column_16s_C1R", true, 2, 2, 1, false, 12, 32, 4, col16s<vnxiFilterColumnPipeline_16s_C1R>, vnxiFilterColumnPipelineGetBufferSize_16s_C1R},
    {"Column_16s_C3R", true, 2, 2, 3, false, 36, 32, 4, col16s<vnxiFilterColumnPipeline_16s_C3R>, vnxiFilterColumnPipelineGetBufferSize_16s_C3R},
    {"Column_16s8u_C1R", true, 2, 1, 1, true, 12, 32, 4, col8u<vnxiFilterColumnPipeline_16s8u_C1R>, vnxiFilterColumnPipelineGetBufferSize_16s8u_C1R},
    {"Column_16s8u_C3R", true, 2, 1, 3, true, 36, 32, 4, col8u<vnxiFilterColumnPipeline_16s8u_C3R>, vnxiFilterColumnPipelineGetBufferSize_16s8u_C3R},
    {"Column_16s8s_C1R", true, 2, 1, 1, true, 12, 32, 4, col8s<vnxiFilterColumnPipeline_16s8s_C1R>, vnxiFilterColumnPipelineGetBufferSize_16s8s_C1R},
    {"Column_16s8s_C3R", true, 2, 1, 3, true, 36, 32, 4, col8s<vnxiFilterColumnPipeline_16s8s_C3R>, vnxiFilterColumnPipelineGetBufferSize_16s8s_C3R},
    {"Column_Low_16s_C1R", true, 2, 2, 1, false, 12, 32, 8, col16s<vnxiFilterColumnPipeline_Low_16s_C1R>, vnxiFilterColumnPipelineGetBufferSize_Low_16s_C1R},
    {"Column_Low_16s_C3R", true, 2, 2, 3, false, 36, 32, 8, col16s<vnxiFilterColumnPipeline_Low_16s_C3R>, vnxiFilterColumnPipelineGetBufferSize_Low_16s_C3R},
    {"Column_32f_C1R", true, 4, 4, 1, false, 0, 0, 0, col32f<vnxiFilterColumnPipeline_32f_C1R>, vnxiFilterColumnPipelineGetBufferSize_32f_C1R},
    {"Column_32f_C3R", true, 4, 4, 3, false, 0, 0, 0, col32f<vnxiFilterColumnPipeline_32f_C3R>, vnxiFilterColumnPipelineGetBufferSize_32f_C3R},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

// Number of row pointers a call reads: height (row pass) or height + k - 1.
std::int64_t rowPointers(const Member& m, const Args& a) {
  return m.column ? std::int64_t(a.roi.height) + a.k - 1 : a.roi.height;
}

// The status of a call whose row-pointer array holds `nullAt` as its first null entry
// (-1: none).
vnxStatus expected(const Member& m, const Args& a, std::int64_t nullAt) {
  const bool anyNull = nullAt >= 0 && nullAt < rowPointers(m, a);
  if (!m.column) {
    if (vnxStatus st = expectPtrs({a.src, a.dst, a.kernel, a.buffer})) return st;
    if (a.roi.height < 1 || a.roi.width < 1 || a.k < 1) return vnxStatusBadSize;
    if (a.anchor < 0 || a.anchor >= a.k) return vnxStatusBadAnchor;
    if (vnxStatus st = expectSteps({{a.srcStep, rowBytes(a.roi, m.in * m.channels), m.in}})) return st;
    if (a.border < 0 || a.border > 4) return vnxStatusBadArg;
    if (m.hasDivisor && a.divisor == 0) return vnxStatusBadArg;
    return anyNull ? vnxStatusNullPtr : vnxStatusOk;
  }
  if (vnxStatus st = expectPtrs({a.src, a.dst, a.kernel})) return st;
  if (a.roi.height < 1 || a.roi.width < 1 || a.k < 1) return vnxStatusBadSize;
  if (vnxStatus st = expectSteps({{a.dstStep, rowBytes(a.roi, m.out * m.channels), m.out}})) return st;
  if (!a.buffer || anyNull) return vnxStatusNullPtr;
  if (m.hasDivisor && a.divisor == 0) return vnxStatusBadArg;
  return vnxStatusOk;
}

// Query: -8, -6, then threads * (32 + 4 * (h + k) + S) (the 32f column query: 32), or
// -6 with nothing written when that does not fit an int. Returns the size or -1.
std::int64_t checkQuery(const Member& m, vnxiSize roi, int k, bool nullResult) {
  Arr<int> size;
  size.make(1);
  size[0] = -99;
  size.snapshot();
  const vnxStatus st = m.query(roi, k, nullResult ? nullptr : size.ptr());
  vnxStatus want = nullResult ? vnxStatusNullPtr : roi.width < 1 || roi.height < 1 || k < 1 ? vnxStatusBadSize : 0;
  std::int64_t bytes = 32;
  if (!want && !(m.column && m.sizeW == 0)) {
    int t = 1;
    vnxGetNumThreads(&t);
    const std::int64_t s = m.column ? m.sizeA * ((std::int64_t(roi.width) + m.sizeW - 1) / m.sizeW * m.sizeW) + m.sizeB
                                    : std::int64_t(m.sizeA) * k + m.sizeB;
    bytes = t * (32 + 4 * (std::int64_t(roi.height) + k) + s);
#ifdef VNX_FUZZ_SKIP_QUERY_OVERFLOW
    if (bytes > INT_MAX) return -1;
#endif
    if (bytes > INT_MAX) want = vnxStatusBadSize;
  }
  FZ_CHECK_EQ(st, want, "query status");
  if (want) {
    FZ_CHECK(size.unchanged(), "query wrote a size it refused");
    return -1;
  }
  FZ_CHECK_EQ(size[0], bytes, "query size");
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  Args a{};
  a.roi = {pickDim(r, 40, 600), pickDim(r, 40, 600)};
  switch (r.pick(12)) {
    case 0: a.k = r.anyInt(); break;
    case 1: a.k = 1 + r.u16() % 700; break;
    case 2: a.k = (1 << 30) + r.pick(4); break;
    default: a.k = 1 + r.pick(12); break;
  }
  a.anchor = r.oneIn(8) ? r.anyInt() : (a.k > 0 ? static_cast<int>(r.u32() % static_cast<std::uint32_t>(a.k)) : 0);
  static const int kBorders[] = {0, 1, 2, 3, 4, 0, 1, 2, 3, 4, -1, 5, INT_MIN, INT_MAX};
  a.border = kBorders[r.pick(14)];
  a.value8 = r.u8();
  a.value16 = static_cast<vnx16s>(r.u16());
  a.value32 = r.anyFloat();
  a.divisor = r.oneIn(2) ? 1 + r.pick(64) : r.anyInt();
  const int inRow = m.in * m.channels, outRow = m.out * m.channels;
  a.srcStep = pickStep(r, rowBytes(a.roi, inRow), m.in);
  a.dstStep = pickStep(r, rowBytes(a.roi, outRow), m.out);
  FZ_CONTEXT("%s, roi %dx%d, kernelSize %d, anchor %d, border %d, values %d %d %a, divisor %d, steps %d %d", m.name,
             a.roi.width, a.roi.height, a.k, a.anchor, a.border, a.value8, a.value16, a.value32, a.divisor, a.srcStep,
             a.dstStep);
  const bool nullQueryResult = r.oneIn(32);
  const int bufferMode = r.pick(32);  // 0: null, 1: trap, else the queried size
  const int nullMode = r.pick(16);    // 0: a null row pointer inside the array, 1: one past it

  // Images: the row pass reads an image and writes rows; the column pass reads rows
  // (a pool of distinct rows, reused along the array) and writes an image.
  Img image, rows;
  const std::int64_t nPtr = a.roi.height < 1 || a.roi.width < 1 || a.k < 1 ? 0 : rowPointers(m, a);
  const std::int64_t poolRows = m.column ? (nPtr < 64 ? nPtr : 64) : nPtr;
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  if (!m.column) {
    image.make(a.roi.width, a.roi.height, inRow, a.srcStep, guard);
    rows.make(a.roi.width, poolRows, outRow, static_cast<int>(rowBytes(a.roi, outRow) + 4 * m.out * r.pick(3)), Guard::After);
  } else {
    image.make(a.roi.width, a.roi.height, outRow, a.dstStep, guard);
    rows.make(a.roi.width, poolRows, inRow, static_cast<int>(rowBytes(a.roi, inRow) + 4 * m.in * r.pick(3)), Guard::After);
  }
  // The row-pointer array: exactly nPtr entries (one more for a null just past them);
  // an array too large to hold gets 16 entries with a null among them, which the
  // checks must find before reading further.
  Arr<void*> ptrs;
  std::int64_t nullAt = -1;
  const bool hugeArray = nPtr > (1 << 20);
  ptrs.make(hugeArray ? 16 : nPtr + (nullMode == 1 ? 1 : 0));
  if (hugeArray) {
    nullAt = r.pick(16);
    for (int i = 0; i < 16; ++i) ptrs[i] = i == nullAt ? nullptr : trapPage() + pageSize();
  } else if (ptrs.real()) {
    const bool reversed = r.oneIn(2);
    for (std::int64_t i = 0; i < nPtr; ++i) {
      const std::int64_t at = m.column ? (reversed ? nPtr - 1 - i : i) % (poolRows ? poolRows : 1) : reversed ? nPtr - 1 - i : i;
      ptrs[i] = rows.real() ? static_cast<void*>(rows.row(at)) : trapPage() + pageSize();
    }
    if (nullMode == 0 && nPtr > 0) nullAt = r.u32() % nPtr, ptrs[nullAt] = nullptr;
    if (nullMode == 1) ptrs[nPtr] = nullptr;
  }
  Arr<vnx8u> kernel;
  kernel.make(a.k > 0 ? std::int64_t(a.k) * (m.column ? m.in : m.out == 4 ? 4 : 2) : 0);
  if (m.column) a.src = r.oneIn(32) ? nullptr : ptrs.ptr(), a.dst = r.oneIn(32) ? nullptr : image.ptr();
  else a.src = r.oneIn(32) ? nullptr : image.ptr(), a.dst = r.oneIn(32) ? nullptr : ptrs.ptr();
  a.kernel = r.oneIn(32) ? nullptr : kernel.ptr();

#ifdef VNX_FUZZ_SKIP_COLUMN_ROWS_OVERFLOW
  if (m.column && nPtr >= INT_MAX) return 0;  // height + kernelSize overflows an int
#endif
  setThreads(1);
  const std::int64_t bytes1 = checkQuery(m, a.roi, a.k, nullQueryResult);
  a.buffer = bufferMode == 0 ? nullptr : trapPage() + pageSize();
  const vnxStatus want = expected(m, a, nullAt);
  Pixels px(r);
  const auto fillAll = [&] {
    if (m.in == 4) (m.column ? rows : image).fill<vnx32f>(px), (m.column ? image : rows).fill<vnx32f>(px);
    else (m.column ? rows : image).fill<vnx16s>(px), (m.column ? image : rows).fill<vnx8u>(px);
    if (!kernel.real() || a.k < 1) return;
    if (m.in == 4 || m.out == 4) px.fill(reinterpret_cast<vnx32f*>(kernel.ptr()), static_cast<std::size_t>(a.k));
    else px.fill(reinterpret_cast<vnx16s*>(kernel.ptr()), static_cast<std::size_t>(a.k));
  };
  if (want != vnxStatusOk) {  // the checks must fail before anything else is touched
    fillAll();
    Arr<vnx8u> buffer;
    buffer.make(bytes1 > 0 ? bytes1 : 64);
    if (a.buffer && bufferMode > 1 && buffer.real()) a.buffer = buffer.ptr();
    image.snapshot(), rows.snapshot(), buffer.snapshot(), ptrs.snapshot(), kernel.snapshot();
    FZ_CHECK_EQ(m.call(a), want, "status");
    FZ_CHECK(image.unchanged() && rows.unchanged(), "an image or row was written on an error");
    FZ_CHECK(buffer.unchanged() && ptrs.unchanged() && kernel.unchanged(), "buffer, array or kernel written");
    return 0;
  }
  if (!image.real() || !rows.real() || !ptrs.real() || !kernel.real() || bufferMode == 1 || nullQueryResult) return 0;
  // Long kernels over large images are slow, not interesting: keep a run within its time.
  if (std::int64_t(a.roi.width) * a.roi.height * m.channels * a.k > (std::int64_t(1) << 24)) return 0;
  fillAll();
  image.snapshot(), rows.snapshot(), ptrs.snapshot(), kernel.snapshot();
  Img& out = m.column ? image : rows;
  std::vector<std::uint8_t> first;
  for (int t : kThreadCounts) {
    setThreads(t);
    const std::int64_t bytes = checkQuery(m, a.roi, a.k, false);
    Arr<vnx8u> buffer;
    buffer.make(bytes);
    if (bytes < 0 || !buffer.real()) return 0;
    a.buffer = buffer.ptr();
    out.restore();
    FZ_CHECK_EQ(m.call(a), vnxStatusOk, "status");
    FZ_CHECK((m.column ? rows : image).unchanged() && ptrs.unchanged() && kernel.unchanged(), "an input was written");
    FZ_CHECK(out.paddingIntact(), "row padding written");
    std::vector<std::uint8_t> got = out.roiBytes();
    if (m.out == 4) FZ_CHECK(allNaNsCanonical(got.data(), got.size()), "a NaN result is not the default NaN");
    if (t == 1) first.swap(got);
    else FZ_CHECK(got == first, "result depends on the thread count");
  }
  return 0;
}
