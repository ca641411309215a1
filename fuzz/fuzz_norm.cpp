// Masked norms of an image, of a difference and relative (Inf, L1, L2; C1MR, C3CMR):
// check order (sources fully before the mask step, coi last), nothing written on an
// error, the warning and its infinity or NaN for a zero denominator, exact integer
// results from the formulas, the same results at every thread count (32f L1 and L2:
// the same NaN class), every NaN the default one.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Type { k8u, k8s, k16u, k32f };
constexpr int kElem[] = {1, 1, 2, 4};
enum Kind { kNorm, kDiff, kRel };
enum Which { kInf, kL1, kL2 };

struct Args {
  const void *s1, *s2, *mask;
  int s1Step, s2Step, maskStep;
  vnxiSize roi;
  int coi;
  vnx64f* norm;
};

template <class T>
using N1 = vnxStatus (*)(const T*, int, const vnx8u*, int, vnxiSize, vnx64f*) noexcept;
template <class T>
using N3 = vnxStatus (*)(const T*, int, const vnx8u*, int, vnxiSize, int, vnx64f*) noexcept;
template <class T>
using D1 = vnxStatus (*)(const T*, int, const T*, int, const vnx8u*, int, vnxiSize, vnx64f*) noexcept;
template <class T>
using D3 = vnxStatus (*)(const T*, int, const T*, int, const vnx8u*, int, vnxiSize, int, vnx64f*) noexcept;
template <class T>
const T* P(const void* p) { return static_cast<const T*>(p); }
const vnx8u* M(const Args& a) { return static_cast<const vnx8u*>(a.mask); }

template <class T, N1<T> F>
vnxStatus callN1(const Args& a) { return F(P<T>(a.s1), a.s1Step, M(a), a.maskStep, a.roi, a.norm); }
template <class T, N3<T> F>
vnxStatus callN3(const Args& a) { return F(P<T>(a.s1), a.s1Step, M(a), a.maskStep, a.roi, a.coi, a.norm); }
template <class T, D1<T> F>
vnxStatus callD1(const Args& a) {
  return F(P<T>(a.s1), a.s1Step, P<T>(a.s2), a.s2Step, M(a), a.maskStep, a.roi, a.norm);
}
template <class T, D3<T> F>
vnxStatus callD3(const Args& a) {
  return F(P<T>(a.s1), a.s1Step, P<T>(a.s2), a.s2Step, M(a), a.maskStep, a.roi, a.coi, a.norm);
}

struct Member {
  Type type;
  Kind kind;
  Which which;
  bool coiForm;
  vnxStatus (*call)(const Args&);
};
const Member kMembers[] = {
    {k8u, kNorm, kInf, false, callN1<vnx8u, vnxiNorm_Inf_8u_C1MR>},
    {k8u, kNorm, kInf, true, callN3<vnx8u, vnxiNorm_Inf_8u_C3CMR>},
    {k8s, kNorm, kInf, false, callN1<vnx8s, vnxiNorm_Inf_8s_C1MR>},
    {k8s, kNorm, kInf, true, callN3<vnx8s, vnxiNorm_Inf_8s_C3CMR>},
    {k16u, kNorm, kInf, false, callN1<vnx16u, vnxiNorm_Inf_16u_C1MR>},
    {k16u, kNorm, kInf, true, callN3<vnx16u, vnxiNorm_Inf_16u_C3CMR>},
    {k32f, kNorm, kInf, false, callN1<vnx32f, vnxiNorm_Inf_32f_C1MR>},
    {k32f, kNorm, kInf, true, callN3<vnx32f, vnxiNorm_Inf_32f_C3CMR>},
    {k8u, kNorm, kL1, false, callN1<vnx8u, vnxiNorm_L1_8u_C1MR>},
    {k8u, kNorm, kL1, true, callN3<vnx8u, vnxiNorm_L1_8u_C3CMR>},
    {k8s, kNorm, kL1, false, callN1<vnx8s, vnxiNorm_L1_8s_C1MR>},
    {k8s, kNorm, kL1, true, callN3<vnx8s, vnxiNorm_L1_8s_C3CMR>},
    {k16u, kNorm, kL1, false, callN1<vnx16u, vnxiNorm_L1_16u_C1MR>},
    {k16u, kNorm, kL1, true, callN3<vnx16u, vnxiNorm_L1_16u_C3CMR>},
    {k32f, kNorm, kL1, false, callN1<vnx32f, vnxiNorm_L1_32f_C1MR>},
    {k32f, kNorm, kL1, true, callN3<vnx32f, vnxiNorm_L1_32f_C3CMR>},
    {k8u, kNorm, kL2, false, callN1<vnx8u, vnxiNorm_L2_8u_C1MR>},
    {k8u, kNorm, kL2, true, callN3<vnx8u, vnxiNorm_L2_8u_C3CMR>},
    {k8s, kNorm, kL2, false, callN1<vnx8s, vnxiNorm_L2_8s_C1MR>},
    {k8s, kNorm, kL2, true, callN3<vnx8s, vnxiNorm_L2_8s_C3CMR>},
    {k16u, kNorm, kL2, false, callN1<vnx16u, vnxiNorm_L2_16u_C1MR>},
    {k16u, kNorm, kL2, true, callN3<vnx16u, vnxiNorm_L2_16u_C3CMR>},
    {k32f, kNorm, kL2, false, callN1<vnx32f, vnxiNorm_L2_32f_C1MR>},
    {k32f, kNorm, kL2, true, callN3<vnx32f, vnxiNorm_L2_32f_C3CMR>},
    {k8u, kDiff, kInf, false, callD1<vnx8u, vnxiNormDiff_Inf_8u_C1MR>},
    {k8u, kDiff, kInf, true, callD3<vnx8u, vnxiNormDiff_Inf_8u_C3CMR>},
    {k8s, kDiff, kInf, false, callD1<vnx8s, vnxiNormDiff_Inf_8s_C1MR>},
    {k8s, kDiff, kInf, true, callD3<vnx8s, vnxiNormDiff_Inf_8s_C3CMR>},
    {k16u, kDiff, kInf, false, callD1<vnx16u, vnxiNormDiff_Inf_16u_C1MR>},
    {k16u, kDiff, kInf, true, callD3<vnx16u, vnxiNormDiff_Inf_16u_C3CMR>},
    {k32f, kDiff, kInf, false, callD1<vnx32f, vnxiNormDiff_Inf_32f_C1MR>},
    {k32f, kDiff, kInf, true, callD3<vnx32f, vnxiNormDiff_Inf_32f_C3CMR>},
    {k8u, kDiff, kL1, false, callD1<vnx8u, vnxiNormDiff_L1_8u_C1MR>},
    {k8u, kDiff, kL1, true, callD3<vnx8u, vnxiNormDiff_L1_8u_C3CMR>},
    {k8s, kDiff, kL1, false, callD1<vnx8s, vnxiNormDiff_L1_8s_C1MR>},
    {k8s, kDiff, kL1, true, callD3<vnx8s, vnxiNormDiff_L1_8s_C3CMR>},
    {k16u, kDiff, kL1, false, callD1<vnx16u, vnxiNormDiff_L1_16u_C1MR>},
    {k16u, kDiff, kL1, true, callD3<vnx16u, vnxiNormDiff_L1_16u_C3CMR>},
    {k32f, kDiff, kL1, false, callD1<vnx32f, vnxiNormDiff_L1_32f_C1MR>},
    {k32f, kDiff, kL1, true, callD3<vnx32f, vnxiNormDiff_L1_32f_C3CMR>},
    {k8u, kDiff, kL2, false, callD1<vnx8u, vnxiNormDiff_L2_8u_C1MR>},
    {k8u, kDiff, kL2, true, callD3<vnx8u, vnxiNormDiff_L2_8u_C3CMR>},
    {k8s, kDiff, kL2, false, callD1<vnx8s, vnxiNormDiff_L2_8s_C1MR>},
    {k8s, kDiff, kL2, true, callD3<vnx8s, vnxiNormDiff_L2_8s_C3CMR>},
    {k16u, kDiff, kL2, false, callD1<vnx16u, vnxiNormDiff_L2_16u_C1MR>},
    {k16u, kDiff, kL2, true, callD3<vnx16u, vnxiNormDiff_L2_16u_C3CMR>},
    {k32f, kDiff, kL2, false, callD1<vnx32f, vnxiNormDiff_L2_32f_C1MR>},
    {k32f, kDiff, kL2, true, callD3<vnx32f, vnxiNormDiff_L2_32f_C3CMR>},
    {k8u, kRel, kInf, false, callD1<vnx8u, vnxiNormRel_Inf_8u_C1MR>},
    {k8u, kRel, kInf, true, callD3<vnx8u, vnxiNormRel_Inf_8u_C3CMR>},
    {k8s, kRel, kInf, false, callD1<vnx8s, vnxiNormRel_Inf_8s_C1MR>},
    {k8s, kRel, kInf, true, callD3<vnx8s, vnxiNormRel_Inf_8s_C3CMR>},
    {k16u, kRel, kInf, false, callD1<vnx16u, vnxiNormRel_Inf_16u_C1MR>},
    {k16u, kRel, kInf, true, callD3<vnx16u, vnxiNormRel_Inf_16u_C3CMR>},
    {k32f, kRel, kInf, false, callD1<vnx32f, vnxiNormRel_Inf_32f_C1MR>},
    {k32f, kRel, kInf, true, callD3<vnx32f, vnxiNormRel_Inf_32f_C3CMR>},
    {k8u, kRel, kL1, false, callD1<vnx8u, vnxiNormRel_L1_8u_C1MR>},
    {k8u, kRel, kL1, true, callD3<vnx8u, vnxiNormRel_L1_8u_C3CMR>},
    {k8s, kRel, kL1, false, callD1<vnx8s, vnxiNormRel_L1_8s_C1MR>},
    {k8s, kRel, kL1, true, callD3<vnx8s, vnxiNormRel_L1_8s_C3CMR>},
    {k16u, kRel, kL1, false, callD1<vnx16u, vnxiNormRel_L1_16u_C1MR>},
    {k16u, kRel, kL1, true, callD3<vnx16u, vnxiNormRel_L1_16u_C3CMR>},
    {k32f, kRel, kL1, false, callD1<vnx32f, vnxiNormRel_L1_32f_C1MR>},
    {k32f, kRel, kL1, true, callD3<vnx32f, vnxiNormRel_L1_32f_C3CMR>},
    {k8u, kRel, kL2, false, callD1<vnx8u, vnxiNormRel_L2_8u_C1MR>},
    {k8u, kRel, kL2, true, callD3<vnx8u, vnxiNormRel_L2_8u_C3CMR>},
    {k8s, kRel, kL2, false, callD1<vnx8s, vnxiNormRel_L2_8s_C1MR>},
    {k8s, kRel, kL2, true, callD3<vnx8s, vnxiNormRel_L2_8s_C3CMR>},
    {k16u, kRel, kL2, false, callD1<vnx16u, vnxiNormRel_L2_16u_C1MR>},
    {k16u, kRel, kL2, true, callD3<vnx16u, vnxiNormRel_L2_16u_C3CMR>},
    {k32f, kRel, kL2, false, callD1<vnx32f, vnxiNormRel_L2_32f_C1MR>},
    {k32f, kRel, kL2, true, callD3<vnx32f, vnxiNormRel_L2_32f_C3CMR>},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

vnxStatus expected(const Member& m, const Args& a) {
  const bool two = m.kind != kNorm;
  if (vnxStatus st = expectPtrs({a.s1, two ? a.s2 : &a, a.mask, static_cast<const void*>(a.norm)})) return st;
  if (vnxStatus st = expectRoi(a.roi)) return st;
  const int e = kElem[m.type], ch = m.coiForm ? 3 : 1;
  const StepArg s1{a.s1Step, rowBytes(a.roi, e * ch), e}, s2 = two ? StepArg{a.s2Step, rowBytes(a.roi, e * ch), e} : kAbsent;
  const StepArg mk{a.maskStep, rowBytes(a.roi, 1), 1};
  if (e == 1) {
    if (vnxStatus st = expectSteps({s1, s2, mk})) return st;
  } else {  // the sources fully (row bytes, then multiples), and only then the mask
    if (vnxStatus st = expectSteps({s1, s2})) return st;
    if (vnxStatus st = expectSteps({mk})) return st;
  }
  if (m.coiForm && (a.coi < 1 || a.coi > 3)) return vnxStatusBadCoi;
  return vnxStatusOk;
}

std::int64_t intSample(Type t, const std::uint8_t* p) {
  if (t == k8u) return *p;
  if (t == k8s) return static_cast<std::int8_t>(*p);
  vnx16u v;
  std::memcpy(&v, p, 2);
  return v;
}

std::uint64_t bitsOf(double v) {
  std::uint64_t u;
  std::memcpy(&u, &v, 8);
  return u;
}

// Integer members: exact sums and maxima, then the double-precision result; the
// status (0 or the warning 6) comes back through *status.
double reference(const Member& m, const Args& a, const Img& s1, const Img& s2, const Img& mask, vnxStatus* status) {
  const int e = kElem[m.type], ch = m.coiForm ? 3 : 1, c = ch == 3 ? a.coi - 1 : 0;
  std::int64_t num = 0, den = 0;
  for (std::int64_t y = 0; y < a.roi.height; ++y)
    for (std::int64_t x = 0; x < a.roi.width; ++x) {
      if (!mask.row(y)[x]) continue;
      const std::int64_t v1 = intSample(m.type, s1.row(y) + (x * ch + c) * e);
      const std::int64_t v2 = m.kind == kNorm ? 0 : intSample(m.type, s2.row(y) + (x * ch + c) * e);
      const std::int64_t d = v1 - v2, ad = d < 0 ? -d : d, ar = v2 < 0 ? -v2 : v2;
      switch (m.which) {
        case kInf: num = ad > num ? ad : num, den = ar > den ? ar : den; break;
        case kL1: num += ad, den += ar; break;
        case kL2: num += d * d, den += v2 * v2; break;
      }
    }
  *status = vnxStatusOk;
  if (m.kind != kRel) return m.which == kL2 ? std::sqrt(static_cast<double>(num)) : static_cast<double>(num);
  if (den == 0) {
    *status = vnxStatusDivByZero;
    if (num > 0) return HUGE_VAL;
    const std::uint64_t nan = 0xFFF8000000000000ull;
    double v;
    std::memcpy(&v, &nan, 8);
    return v;
  }
  const double q = static_cast<double>(num) / static_cast<double>(den);
  return m.which == kL2 ? std::sqrt(q) : q;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  const int e = kElem[m.type], ch = m.coiForm ? 3 : 1;
  const bool two = m.kind != kNorm;
  Args a{};
  a.roi = {pickDim(r, 40, 700), pickDim(r, 40, 700)};
  a.s1Step = pickStep(r, rowBytes(a.roi, e * ch), e);
  a.s2Step = pickStep(r, rowBytes(a.roi, e * ch), e);
  a.maskStep = pickStep(r, rowBytes(a.roi, 1), 1);
#ifdef VNX_FUZZ_SKIP_COI_OVERFLOW
  static const int kCoi[] = {1, 2, 3, 1, 2, 3, 1, 2, 3, 0, 4, -1, -2, INT_MAX, -3, 5};
#else
  static const int kCoi[] = {1, 2, 3, 1, 2, 3, 1, 2, 3, 0, 4, -1, INT_MIN, INT_MAX, -3, 5};
#endif
  a.coi = kCoi[r.pick(16)];
  FZ_CONTEXT("member %d (type %d, kind %d, norm %d, coi form %d), roi %dx%d, steps %d %d %d, coi %d",
             static_cast<int>(&m - kMembers), m.type, m.kind, m.which, m.coiForm, a.roi.width, a.roi.height, a.s1Step,
             a.s2Step, a.maskStep, a.coi);
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  Img s1, s2, mask;
  s1.make(a.roi.width, a.roi.height, e * ch, a.s1Step, guard, guard == Guard::Before ? e * r.pick(16 / e) : 0);
  s2.make(a.roi.width, a.roi.height, e * ch, a.s2Step, Guard::After);
  mask.make(a.roi.width, a.roi.height, 1, a.maskStep, r.oneIn(3) ? Guard::Before : Guard::After);
  Arr<vnx64f> norm;
  norm.make(1);
  a.s1 = r.oneIn(32) ? nullptr : s1.ptr();
  a.s2 = !two ? nullptr : r.oneIn(32) ? nullptr : s2.ptr();
  a.mask = r.oneIn(32) ? nullptr : mask.ptr();
  a.norm = r.oneIn(32) ? nullptr : norm.ptr();
  const vnxStatus want = expected(m, a);
  if (want == vnxStatusOk && !(s1.real() && (!two || s2.real()) && mask.real())) return 0;

  Pixels px(r);
  if (m.type == k32f) s1.fill<vnx32f>(px), s2.fill<vnx32f>(px);
  else s1.fill<vnx8u>(px), s2.fill<vnx8u>(px);
  mask.fill<vnx8u>(px);
  const int maskCut = r.pick(256);
  for (std::int64_t y = 0; mask.real() && y < mask.height(); ++y)
    for (std::int64_t x = 0; x < mask.rowBytes(); ++x) mask.row(y)[x] = mask.row(y)[x] < maskCut ? 0 : 3;
  if (two && s2.real() && r.oneIn(4)) {  // zero denominators
    for (std::int64_t y = 0; y < s2.height(); ++y) std::memset(s2.row(y), 0, static_cast<std::size_t>(s2.rowBytes()));
  }
  norm[0] = -4242.25;
  s1.snapshot(), s2.snapshot(), mask.snapshot(), norm.snapshot();

  vnxStatus firstStatus = 0;
  std::uint64_t first = 0;
  for (int t : kThreadCounts) {
    setThreads(t);
    norm.restore();
    const vnxStatus st = m.call(a);
    if (want != vnxStatusOk || m.kind != kRel) FZ_CHECK_EQ(st, want, "status");
    else FZ_CHECK(st == vnxStatusOk || st == vnxStatusDivByZero, "status of a relative norm");
    FZ_CHECK(s1.unchanged() && s2.unchanged() && mask.unchanged(), "a source was written");
    if (st < 0) {
      FZ_CHECK(norm.unchanged(), "result written on an error");
      return 0;
    }
    const double v = norm[0];
    FZ_CHECK(nanRuleHolds64(v), "a NaN result is not the default NaN");
    if (st == vnxStatusDivByZero) FZ_CHECK(v == HUGE_VAL || v == -HUGE_VAL || v != v, "a zero denominator's result");
    if (t == 1) {
      firstStatus = st, first = bitsOf(v);
      if (m.type == k32f) continue;
      vnxStatus refStatus;
      const double ref = reference(m, a, s1, s2, mask, &refStatus);
      FZ_CHECK_EQ(st, refStatus, "status against the denominator");
      FZ_CHECK(bitsOf(v) == bitsOf(ref) || (v != v && ref != ref), "norm differs from the formula");
      continue;
    }
    FZ_CHECK_EQ(st, firstStatus, "status depends on the thread count");
    if (m.type != k32f || m.which == kInf) {
      FZ_CHECK(bitsOf(v) == first, "norm depends on the thread count");
    } else {
      double f;
      std::memcpy(&f, &first, 8);
      FZ_CHECK((f != f) == (v != v), "NaN result at one thread count only");
    }
  }
  return 0;
}
