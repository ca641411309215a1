// Absolute differences and the accumulators (plain and masked): check order,
// nothing written on an error, padding intact, results against a reference
// written from the formulas, the same bytes at every thread count.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Type { k8u, k8s, k16u, k32f };
enum Op { kAbsDiff, kAbsDiffC, kAdd, kAddSquare, kAddProduct, kAddWeighted };
constexpr int kElem[] = {1, 1, 2, 4};

struct Args {
  const void *s1, *s2, *mask;
  int s1Step, s2Step, maskStep;
  void* dst;
  int dstStep;
  vnxiSize roi;
  int value;
  float fvalue;
};
template <class T>
const T* in(const void* p) { return static_cast<const T*>(p); }
template <class T>
T* out(void* p) { return static_cast<T*>(p); }

struct Member {
  Op op;
  Type type;
  bool masked;
  vnxStatus (*call)(const Args&);
};

// Every member, written out by name.
const Member kMembers[] = {
    {kAbsDiff, k8u, false, [](const Args& a) { return vnxiAbsDiff_8u_C1R(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.s2), a.s2Step, out<vnx8u>(a.dst), a.dstStep, a.roi); }},
    {kAbsDiff, k16u, false, [](const Args& a) { return vnxiAbsDiff_16u_C1R(in<vnx16u>(a.s1), a.s1Step, in<vnx16u>(a.s2), a.s2Step, out<vnx16u>(a.dst), a.dstStep, a.roi); }},
    {kAbsDiff, k32f, false, [](const Args& a) { return vnxiAbsDiff_32f_C1R(in<vnx32f>(a.s1), a.s1Step, in<vnx32f>(a.s2), a.s2Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAbsDiffC, k8u, false, [](const Args& a) { return vnxiAbsDiffC_8u_C1R(in<vnx8u>(a.s1), a.s1Step, out<vnx8u>(a.dst), a.dstStep, a.roi, a.value); }},
    {kAbsDiffC, k16u, false, [](const Args& a) { return vnxiAbsDiffC_16u_C1R(in<vnx16u>(a.s1), a.s1Step, out<vnx16u>(a.dst), a.dstStep, a.roi, a.value); }},
    {kAbsDiffC, k32f, false, [](const Args& a) { return vnxiAbsDiffC_32f_C1R(in<vnx32f>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAdd, k8u, false, [](const Args& a) { return vnxiAdd_8u32f_C1IR(in<vnx8u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k8s, false, [](const Args& a) { return vnxiAdd_8s32f_C1IR(in<vnx8s>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k16u, false, [](const Args& a) { return vnxiAdd_16u32f_C1IR(in<vnx16u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k8u, true, [](const Args& a) { return vnxiAdd_8u32f_C1IMR(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k8s, true, [](const Args& a) { return vnxiAdd_8s32f_C1IMR(in<vnx8s>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k16u, true, [](const Args& a) { return vnxiAdd_16u32f_C1IMR(in<vnx16u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAdd, k32f, true, [](const Args& a) { return vnxiAdd_32f_C1IMR(in<vnx32f>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k8u, false, [](const Args& a) { return vnxiAddSquare_8u32f_C1IR(in<vnx8u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k8s, false, [](const Args& a) { return vnxiAddSquare_8s32f_C1IR(in<vnx8s>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k16u, false, [](const Args& a) { return vnxiAddSquare_16u32f_C1IR(in<vnx16u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k32f, false, [](const Args& a) { return vnxiAddSquare_32f_C1IR(in<vnx32f>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k8u, true, [](const Args& a) { return vnxiAddSquare_8u32f_C1IMR(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k8s, true, [](const Args& a) { return vnxiAddSquare_8s32f_C1IMR(in<vnx8s>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k16u, true, [](const Args& a) { return vnxiAddSquare_16u32f_C1IMR(in<vnx16u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddSquare, k32f, true, [](const Args& a) { return vnxiAddSquare_32f_C1IMR(in<vnx32f>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k8u, false, [](const Args& a) { return vnxiAddProduct_8u32f_C1IR(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.s2), a.s2Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k8s, false, [](const Args& a) { return vnxiAddProduct_8s32f_C1IR(in<vnx8s>(a.s1), a.s1Step, in<vnx8s>(a.s2), a.s2Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k16u, false, [](const Args& a) { return vnxiAddProduct_16u32f_C1IR(in<vnx16u>(a.s1), a.s1Step, in<vnx16u>(a.s2), a.s2Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k32f, false, [](const Args& a) { return vnxiAddProduct_32f_C1IR(in<vnx32f>(a.s1), a.s1Step, in<vnx32f>(a.s2), a.s2Step, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k8u, true, [](const Args& a) { return vnxiAddProduct_8u32f_C1IMR(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.s2), a.s2Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k8s, true, [](const Args& a) { return vnxiAddProduct_8s32f_C1IMR(in<vnx8s>(a.s1), a.s1Step, in<vnx8s>(a.s2), a.s2Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k16u, true, [](const Args& a) { return vnxiAddProduct_16u32f_C1IMR(in<vnx16u>(a.s1), a.s1Step, in<vnx16u>(a.s2), a.s2Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddProduct, k32f, true, [](const Args& a) { return vnxiAddProduct_32f_C1IMR(in<vnx32f>(a.s1), a.s1Step, in<vnx32f>(a.s2), a.s2Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi); }},
    {kAddWeighted, k8u, false, [](const Args& a) { return vnxiAddWeighted_8u32f_C1IR(in<vnx8u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k8s, false, [](const Args& a) { return vnxiAddWeighted_8s32f_C1IR(in<vnx8s>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k16u, false, [](const Args& a) { return vnxiAddWeighted_16u32f_C1IR(in<vnx16u>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k32f, false, [](const Args& a) { return vnxiAddWeighted_32f_C1IR(in<vnx32f>(a.s1), a.s1Step, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k8u, true, [](const Args& a) { return vnxiAddWeighted_8u32f_C1IMR(in<vnx8u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k8s, true, [](const Args& a) { return vnxiAddWeighted_8s32f_C1IMR(in<vnx8s>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k16u, true, [](const Args& a) { return vnxiAddWeighted_16u32f_C1IMR(in<vnx16u>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
    {kAddWeighted, k32f, true, [](const Args& a) { return vnxiAddWeighted_32f_C1IMR(in<vnx32f>(a.s1), a.s1Step, in<vnx8u>(a.mask), a.maskStep, out<vnx32f>(a.dst), a.dstStep, a.roi, a.fvalue); }},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

// The status the contract predicts.
vnxStatus expected(const Member& m, const Args& a) {
  const bool two = m.op == kAbsDiff || m.op == kAddProduct;
  if (vnxStatus st = expectPtrs({a.s1, two ? a.s2 : &a, m.masked ? a.mask : &a, a.dst})) return st;
  if (vnxStatus st = expectRoi(a.roi)) return st;
  const int e = kElem[m.type];
  const StepArg s1{a.s1Step, rowBytes(a.roi, e), e}, s2 = two ? StepArg{a.s2Step, rowBytes(a.roi, e), e} : kAbsent;
  const StepArg mk = m.masked ? StepArg{a.maskStep, rowBytes(a.roi, 1), 1} : kAbsent;
  if (m.op == kAbsDiff || m.op == kAbsDiffC) return expectSteps({s1, s2, {a.dstStep, rowBytes(a.roi, e), e}});
  const StepArg acc{a.dstStep, rowBytes(a.roi, 4), 4};
  if (m.type == k16u) {  // the 16-bit sources, then the mask, then the accumulator
    if (vnxStatus st = expectSteps({s1, s2})) return st;
    if (vnxStatus st = expectSteps({mk})) return st;
    return expectSteps({acc});
  }
  return expectSteps({s1, s2, mk, acc});
}

float sampleAt(Type t, const std::uint8_t* p) {
  switch (t) {
    case k8u: return static_cast<float>(*p);
    case k8s: return static_cast<float>(static_cast<std::int8_t>(*p));
    case k16u: { vnx16u v; std::memcpy(&v, p, 2); return static_cast<float>(v); }
    default: { float v; std::memcpy(&v, p, 4); return v; }
  }
}

// One output sample from the formulas, as bytes of the destination type.
void reference(const Member& m, const Args& a, const std::uint8_t* p1, const std::uint8_t* p2, std::uint8_t mk,
               std::uint8_t* d) {
  const int e = kElem[m.type];
  if (m.op == kAbsDiff || m.op == kAbsDiffC) {
    if (m.type == k32f) {
      float x, y;
      std::memcpy(&x, p1, 4);
      if (m.op == kAbsDiff) std::memcpy(&y, p2, 4); else y = a.fvalue;
      volatile float diff = x - y;
      std::uint32_t u;
      float dv = diff;
      std::memcpy(&u, &dv, 4);
      u &= 0x7fffffffu;
      std::memcpy(d, &u, 4);
      return;
    }
    const std::int64_t hi = m.type == k8u ? 255 : 65535;
    const std::int64_t x = static_cast<std::int64_t>(sampleAt(m.type, p1));
    std::int64_t y = m.op == kAbsDiff ? static_cast<std::int64_t>(sampleAt(m.type, p2)) : a.value;
    if (y < 0) y = 0;
    if (y > hi) y = hi;
    const std::int64_t r = x > y ? x - y : y - x;
    if (e == 1) *d = static_cast<std::uint8_t>(r);
    else { vnx16u v = static_cast<vnx16u>(r); std::memcpy(d, &v, 2); }
    return;
  }
  float acc;
  std::memcpy(&acc, d, 4);
  const bool sel = !m.masked || mk != 0;
  const volatile float s = sampleAt(m.type, p1);
  volatile float term;
  switch (m.op) {
    case kAdd: term = s; break;
    case kAddSquare: term = s * s; break;
    case kAddProduct: term = s * sampleAt(m.type, p2); break;
    default: {
      const volatile float diff = s - acc;
      const volatile float prod = diff * (sel ? a.fvalue : 0.0f);
      acc = acc + prod;
      std::memcpy(d, &acc, 4);
      return;
    }
  }
  const volatile float t = sel ? static_cast<float>(term) : 0.0f;
  acc = acc + t;
  std::memcpy(d, &acc, 4);
}

bool sameSample(const std::uint8_t* x, const std::uint8_t* y, int n, bool isFloat) {
  if (std::memcmp(x, y, n) == 0) return true;
  if (!isFloat) return false;
  float a, b;
  std::memcpy(&a, x, 4);
  std::memcpy(&b, y, 4);
  return a != a && b != b;  // which NaN an operation on NaNs yields is the processor's
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  const bool two = m.op == kAbsDiff || m.op == kAddProduct;
  const bool acc = m.op >= kAdd;
  const int e = kElem[m.type], de = acc ? 4 : e;
  Args a{};
  a.roi = {pickDim(r, 40, 600), pickDim(r, 40, 600)};
  a.s1Step = pickStep(r, rowBytes(a.roi, e), e);
  a.s2Step = pickStep(r, rowBytes(a.roi, e), e);
  a.maskStep = pickStep(r, rowBytes(a.roi, 1), 1);
  a.dstStep = pickStep(r, rowBytes(a.roi, de), de);
  a.value = r.anyInt();
  a.fvalue = r.anyFloat();
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  const int lead = guard == Guard::Before ? e * r.pick(16 / e) : 0;
  FZ_CONTEXT("member %d (op %d, type %d, masked %d), roi %dx%d, steps %d %d %d %d, value %d, %a",
             static_cast<int>(&m - kMembers), m.op, m.type, m.masked, a.roi.width, a.roi.height, a.s1Step,
             a.s2Step, a.maskStep, a.dstStep, a.value, a.fvalue);

  Img s1, s2, mk, dst;
  s1.make(a.roi.width, a.roi.height, e, a.s1Step, guard, lead);
  s2.make(a.roi.width, a.roi.height, e, a.s2Step, Guard::After);
  mk.make(a.roi.width, a.roi.height, 1, a.maskStep, guard);
  dst.make(a.roi.width, a.roi.height, de, a.dstStep, Guard::After);
  a.s1 = r.oneIn(32) ? nullptr : s1.ptr();
  a.s2 = !two ? nullptr : r.oneIn(32) ? nullptr : s2.ptr();
  a.mask = !m.masked ? nullptr : r.oneIn(32) ? nullptr : mk.ptr();
  a.dst = r.oneIn(32) ? nullptr : dst.ptr();

  const vnxStatus want = expected(m, a);
  const bool allReal = s1.real() && (!two || s2.real()) && (!m.masked || mk.real()) && dst.real();
  if (want == vnxStatusOk && !allReal) return 0;  // too large to hold: not called

  Pixels px(r);
  const auto fill = [&](Img& im, int elem) {
    if (elem == 4) im.fill<vnx32f>(px);
    else if (elem == 2) im.fill<vnx16u>(px);
    else im.fill<vnx8u>(px);
  };
  fill(s1, e), fill(s2, e), fill(mk, 1), fill(dst, de);
  if (m.masked && r.oneIn(2)) {  // sparse masks as well as dense ones
    for (std::int64_t y = 0; mk.real() && y < mk.height(); ++y)
      for (std::int64_t x = 0; x < mk.rowBytes(); ++x) mk.row(y)[x] = mk.row(y)[x] < 200 ? 0 : mk.row(y)[x];
  }
  s1.snapshot(), s2.snapshot(), mk.snapshot(), dst.snapshot();

  std::vector<std::uint8_t> first;
  for (int t : kThreadCounts) {
    setThreads(t);
    dst.restore();
    const vnxStatus st = m.call(a);
    FZ_CHECK_EQ(st, want, "status");
    FZ_CHECK(s1.unchanged() && s2.unchanged() && mk.unchanged(), "a source was written");
    if (st != vnxStatusOk) {
      FZ_CHECK(dst.unchanged(), "destination written on an error");
      return 0;
    }
    FZ_CHECK(dst.paddingIntact(), "row padding written");
    std::vector<std::uint8_t> got = dst.roiBytes();
    if (t == 1) {
      first = got;
      // Reference over the pre-filled destination.
      dst.restore();
      for (std::int64_t y = 0; y < a.roi.height; ++y)
        for (std::int64_t x = 0; x < a.roi.width; ++x) {
          std::uint8_t* d = dst.row(y) + x * de;
          reference(m, a, s1.row(y) + x * e, two ? s2.row(y) + x * e : nullptr, m.masked ? mk.row(y)[x] : 1, d);
          const std::size_t at = static_cast<std::size_t>((y * a.roi.width + x) * de);
          FZ_CHECK(sameSample(d, &got[at], de, de == 4), "result differs from the formula");
        }
    } else {
      FZ_CHECK(got == first, "result depends on the thread count");
    }
  }
  return 0;
}
