// Means and deviations, masked and channel-of-interest forms: check order (coi last),
// optional result pointers, nothing written on an error, exact integer results from
// the formulas, the same bits at every thread count (32f: the same NaN class, and
// every NaN the default one). 32f sources of the unmasked forms may be unaligned.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Type { k8u, k8s, k16u, k32f };
constexpr int kElem[] = {1, 1, 2, 4};
enum Form { kMeanC1M, kMeanC3CM, kC1, kC3C, kC1M, kC3CM };

struct Args {
  const void *src, *mask;
  int srcStep, maskStep;
  vnxiSize roi;
  int coi;
  vnx64f *mean, *sd;
};
template <class T>
const T* S(const Args& a) { return static_cast<const T*>(a.src); }
const vnx8u* M(const Args& a) { return static_cast<const vnx8u*>(a.mask); }

struct Member {
  Type type;
  Form form;
  vnxStatus (*call)(const Args&);
};
const Member kMembers[] = {
    {k8u, kMeanC1M, [](const Args& a) { return vnxiMean_8u_C1MR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean); }},
    {k8s, kMeanC1M, [](const Args& a) { return vnxiMean_8s_C1MR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean); }},
    {k16u, kMeanC1M, [](const Args& a) { return vnxiMean_16u_C1MR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean); }},
    {k32f, kMeanC1M, [](const Args& a) { return vnxiMean_32f_C1MR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean); }},
    {k8u, kMeanC3CM, [](const Args& a) { return vnxiMean_8u_C3CMR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean); }},
    {k8s, kMeanC3CM, [](const Args& a) { return vnxiMean_8s_C3CMR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean); }},
    {k16u, kMeanC3CM, [](const Args& a) { return vnxiMean_16u_C3CMR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean); }},
    {k32f, kMeanC3CM, [](const Args& a) { return vnxiMean_32f_C3CMR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean); }},
    {k8u, kC1, [](const Args& a) { return vnxiMean_StdDev_8u_C1R(S<vnx8u>(a), a.srcStep, a.roi, a.mean, a.sd); }},
    {k8s, kC1, [](const Args& a) { return vnxiMean_StdDev_8s_C1R(S<vnx8s>(a), a.srcStep, a.roi, a.mean, a.sd); }},
    {k16u, kC1, [](const Args& a) { return vnxiMean_StdDev_16u_C1R(S<vnx16u>(a), a.srcStep, a.roi, a.mean, a.sd); }},
    {k32f, kC1, [](const Args& a) { return vnxiMean_StdDev_32f_C1R(S<vnx32f>(a), a.srcStep, a.roi, a.mean, a.sd); }},
    {k8u, kC3C, [](const Args& a) { return vnxiMean_StdDev_8u_C3CR(S<vnx8u>(a), a.srcStep, a.roi, a.coi, a.mean, a.sd); }},
    {k8s, kC3C, [](const Args& a) { return vnxiMean_StdDev_8s_C3CR(S<vnx8s>(a), a.srcStep, a.roi, a.coi, a.mean, a.sd); }},
    {k16u, kC3C, [](const Args& a) { return vnxiMean_StdDev_16u_C3CR(S<vnx16u>(a), a.srcStep, a.roi, a.coi, a.mean, a.sd); }},
    {k32f, kC3C, [](const Args& a) { return vnxiMean_StdDev_32f_C3CR(S<vnx32f>(a), a.srcStep, a.roi, a.coi, a.mean, a.sd); }},
    {k8u, kC1M, [](const Args& a) { return vnxiMean_StdDev_8u_C1MR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean, a.sd); }},
    {k8s, kC1M, [](const Args& a) { return vnxiMean_StdDev_8s_C1MR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean, a.sd); }},
    {k16u, kC1M, [](const Args& a) { return vnxiMean_StdDev_16u_C1MR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean, a.sd); }},
    {k32f, kC1M, [](const Args& a) { return vnxiMean_StdDev_32f_C1MR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.mean, a.sd); }},
    {k8u, kC3CM, [](const Args& a) { return vnxiMean_StdDev_8u_C3CMR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean, a.sd); }},
    {k8s, kC3CM, [](const Args& a) { return vnxiMean_StdDev_8s_C3CMR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean, a.sd); }},
    {k16u, kC3CM, [](const Args& a) { return vnxiMean_StdDev_16u_C3CMR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean, a.sd); }},
    {k32f, kC3CM, [](const Args& a) { return vnxiMean_StdDev_32f_C3CMR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.mean, a.sd); }},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

bool masked(Form f) { return f == kMeanC1M || f == kMeanC3CM || f == kC1M || f == kC3CM; }
bool coiForm(Form f) { return f == kMeanC3CM || f == kC3C || f == kC3CM; }
bool meanOnly(Form f) { return f == kMeanC1M || f == kMeanC3CM; }

int pickCoi(Reader& r) {
  static const int kCoi[] = {1, 2, 3, 1, 2, 3, 1, 2, 3, 0, 4, -1, INT_MIN, INT_MAX, -3, 5};
  return kCoi[r.pick(16)];
}

vnxStatus expected(const Member& m, const Args& a) {
  if (vnxStatus st = expectPtrs({a.src, masked(m.form) ? a.mask : static_cast<const void*>(&a), meanOnly(m.form) ? static_cast<const void*>(a.mean) : &a})) return st;
  if (vnxStatus st = expectRoi(a.roi)) return st;
  const int e = kElem[m.type], ch = coiForm(m.form) ? 3 : 1;
  if (vnxStatus st = expectSteps({{a.srcStep, rowBytes(a.roi, e * ch), e},
                                  masked(m.form) ? StepArg{a.maskStep, rowBytes(a.roi, 1), 1} : kAbsent}))
    return st;
  if (coiForm(m.form) && (a.coi < 1 || a.coi > 3)) return vnxStatusBadCoi;
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  const int e = kElem[m.type], ch = coiForm(m.form) ? 3 : 1;
  Args a{};
  a.roi = {pickDim(r, 40, 700), pickDim(r, 40, 700)};
  a.srcStep = pickStep(r, rowBytes(a.roi, e * ch), e);
  a.maskStep = pickStep(r, rowBytes(a.roi, 1), 1);
  a.coi = pickCoi(r);
  FZ_CONTEXT("member %d (type %d, form %d), roi %dx%d, steps %d %d, coi %d", static_cast<int>(&m - kMembers), m.type,
             m.form, a.roi.width, a.roi.height, a.srcStep, a.maskStep, a.coi);
  // The unmasked 32f forms accept any source address.
#ifdef VNX_FUZZ_SKIP_UNALIGNED_MEANSTDDEV
  const bool anyAddress = false;
#else
  const bool anyAddress = m.type == k32f && (m.form == kC1 || m.form == kC3C);
#endif
  const int lead = anyAddress ? r.pick(16) : e * r.pick(16 / e);
  const Guard guard = lead || r.oneIn(3) ? Guard::Before : Guard::After;
  Img src, mask;
  src.make(a.roi.width, a.roi.height, e * ch, a.srcStep, guard, lead);
  mask.make(a.roi.width, a.roi.height, 1, a.maskStep, r.oneIn(3) ? Guard::Before : Guard::After);
  Arr<vnx64f> mean, sd;
  mean.make(1), sd.make(1);
  a.src = r.oneIn(32) ? nullptr : src.ptr();
  a.mask = !masked(m.form) ? nullptr : r.oneIn(32) ? nullptr : mask.ptr();
  a.mean = r.oneIn(meanOnly(m.form) ? 32 : 6) ? nullptr : mean.ptr();
  a.sd = meanOnly(m.form) || r.oneIn(6) ? nullptr : sd.ptr();
  const vnxStatus want = expected(m, a);
  if (want == vnxStatusOk && !(src.real() && (!masked(m.form) || mask.real()))) return 0;

  Pixels px(r);
  if (m.type == k32f) src.fill<vnx32f>(px); else src.fill<vnx8u>(px);
  mask.fill<vnx8u>(px);
  const int maskCut = r.pick(256);  // from dense to empty masks
  for (std::int64_t y = 0; mask.real() && y < mask.height(); ++y)
    for (std::int64_t x = 0; x < mask.rowBytes(); ++x) mask.row(y)[x] = mask.row(y)[x] < maskCut ? 0 : 1;
  const double kPre = -12345.5;
  mean[0] = kPre, sd[0] = kPre;
  src.snapshot(), mask.snapshot(), mean.snapshot(), sd.snapshot();

  std::uint64_t firstMean = 0, firstSd = 0;
  for (int t : kThreadCounts) {
    setThreads(t);
    mean.restore(), sd.restore();
    const vnxStatus st = m.call(a);
    FZ_CHECK_EQ(st, want, "status");
    FZ_CHECK(src.unchanged() && mask.unchanged(), "a source was written");
    if (st != vnxStatusOk) {
      FZ_CHECK(mean.unchanged() && sd.unchanged(), "a result written on an error");
      return 0;
    }
    if (!a.mean) FZ_CHECK(mean.unchanged(), "mean written through no pointer");
    if (!a.sd) FZ_CHECK(sd.unchanged(), "deviation written through no pointer");
    FZ_CHECK(nanRuleHolds64(mean[0]) && nanRuleHolds64(sd[0]), "a NaN result is not the default NaN");
    if (t == 1) {
      firstMean = bitsOf(mean[0]), firstSd = bitsOf(sd[0]);
      if (m.type == k32f) continue;
      // Integer sources: exact sums, then the double-precision formulas.
      std::int64_t s = 0, q = 0, n = 0;
      for (std::int64_t y = 0; y < a.roi.height; ++y)
        for (std::int64_t x = 0; x < a.roi.width; ++x) {
          if (masked(m.form) && !mask.row(y)[x]) continue;
          const std::int64_t v = intSample(m.type, src.row(y) + (x * ch + (ch == 3 ? a.coi - 1 : 0)) * e);
          s += v, q += v * v, ++n;
        }
      const double mu = n ? static_cast<double>(s) / static_cast<double>(n) : 0.0;
      const double dev = n ? std::sqrt(std::fabs(static_cast<double>(q) / static_cast<double>(n) - mu * mu)) : 0.0;
      if (a.mean) FZ_CHECK(bitsOf(mean[0]) == bitsOf(mu), "mean differs from sum / count");
      if (a.sd) FZ_CHECK(bitsOf(sd[0]) == bitsOf(dev), "deviation differs from sqrt(|Q/n - mean^2|)");
    } else if (m.type != k32f) {
      FZ_CHECK(bitsOf(mean[0]) == firstMean && bitsOf(sd[0]) == firstSd, "result depends on the thread count");
    } else {
      double m1, s1;
      std::memcpy(&m1, &firstMean, 8), std::memcpy(&s1, &firstSd, 8);
      FZ_CHECK((m1 != m1) == (mean[0] != mean[0]) && (s1 != s1) == (sd[0] != sd[0]),
               "NaN result at one thread count only");
    }
  }
  return 0;
}
