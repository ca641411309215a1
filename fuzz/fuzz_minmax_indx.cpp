// Extrema with locations: check order (coi last), null result pointers meaning "not
// wanted" (nothing written there, no crash), nothing written on an error, values and
// first locations from the row-scan rule, the same results at every thread count.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Type { k8u, k8s, k16u, k32f };
constexpr int kElem[] = {1, 1, 2, 4};
enum Form { kC1, kC3C, kC1M, kC3CM };

struct Args {
  const void *src, *mask;
  int srcStep, maskStep;
  vnxiSize roi;
  int coi;
  vnx32f *minV, *maxV;
  vnxiPoint *minI, *maxI;
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
    {k8u, kC1, [](const Args& a) { return vnxiMinMaxIndx_8u_C1R(S<vnx8u>(a), a.srcStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8s, kC1, [](const Args& a) { return vnxiMinMaxIndx_8s_C1R(S<vnx8s>(a), a.srcStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k16u, kC1, [](const Args& a) { return vnxiMinMaxIndx_16u_C1R(S<vnx16u>(a), a.srcStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k32f, kC1, [](const Args& a) { return vnxiMinMaxIndx_32f_C1R(S<vnx32f>(a), a.srcStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8u, kC3C, [](const Args& a) { return vnxiMinMaxIndx_8u_C3CR(S<vnx8u>(a), a.srcStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8s, kC3C, [](const Args& a) { return vnxiMinMaxIndx_8s_C3CR(S<vnx8s>(a), a.srcStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k16u, kC3C, [](const Args& a) { return vnxiMinMaxIndx_16u_C3CR(S<vnx16u>(a), a.srcStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k32f, kC3C, [](const Args& a) { return vnxiMinMaxIndx_32f_C3CR(S<vnx32f>(a), a.srcStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8u, kC1M, [](const Args& a) { return vnxiMinMaxIndx_8u_C1MR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8s, kC1M, [](const Args& a) { return vnxiMinMaxIndx_8s_C1MR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k16u, kC1M, [](const Args& a) { return vnxiMinMaxIndx_16u_C1MR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k32f, kC1M, [](const Args& a) { return vnxiMinMaxIndx_32f_C1MR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8u, kC3CM, [](const Args& a) { return vnxiMinMaxIndx_8u_C3CMR(S<vnx8u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k8s, kC3CM, [](const Args& a) { return vnxiMinMaxIndx_8s_C3CMR(S<vnx8s>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k16u, kC3CM, [](const Args& a) { return vnxiMinMaxIndx_16u_C3CMR(S<vnx16u>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
    {k32f, kC3CM, [](const Args& a) { return vnxiMinMaxIndx_32f_C3CMR(S<vnx32f>(a), a.srcStep, M(a), a.maskStep, a.roi, a.coi, a.minV, a.maxV, a.minI, a.maxI); }},
};
constexpr int kNumMembers = sizeof(kMembers) / sizeof(kMembers[0]);

bool masked(Form f) { return f == kC1M || f == kC3CM; }
bool coiForm(Form f) { return f == kC3C || f == kC3CM; }

vnxStatus expected(const Member& m, const Args& a) {
  if (vnxStatus st = expectPtrs({a.src, masked(m.form) ? a.mask : &a})) return st;
  if (vnxStatus st = expectRoi(a.roi)) return st;
  const int e = kElem[m.type], ch = coiForm(m.form) ? 3 : 1;
  if (vnxStatus st = expectSteps({{a.srcStep, rowBytes(a.roi, e * ch), e},
                                  masked(m.form) ? StepArg{a.maskStep, rowBytes(a.roi, 1), 1} : kAbsent}))
    return st;
  if (coiForm(m.form) && (a.coi < 1 || a.coi > 3)) return vnxStatusBadCoi;
  return vnxStatusOk;
}

float sampleAt(Type t, const std::uint8_t* p) {
  switch (t) {
    case k8u: return *p;
    case k8s: return static_cast<std::int8_t>(*p);
    case k16u: { vnx16u v; std::memcpy(&v, p, 2); return v; }
    default: { float v; std::memcpy(&v, p, 4); return v; }
  }
}

struct Result {
  float minV, maxV;
  vnxiPoint minI, maxI;
};

// The row scan of the contract: strictly better samples move the extreme and its
// row; then the first selected sample equal to it in that row gives x (0 if none).
// Returns false where the contract leaves the outcome open (no sample but NaNs).
bool reference(const Member& m, const Args& a, const Img& src, const Img& mask, Result* out) {
  const int e = kElem[m.type], ch = coiForm(m.form) ? 3 : 1, c = ch == 3 ? a.coi - 1 : 0;
  static const float kLo[] = {0.0f, -128.0f, 0.0f, -3.4028234663852886e38f};
  static const float kHi[] = {255.0f, 127.0f, 65535.0f, 3.4028234663852886e38f};
  float mn = kHi[m.type], mx = kLo[m.type];
  int minRow = 0, maxRow = 0;
  std::int64_t selected = 0, numbers = 0;
  const auto at = [&](std::int64_t x, std::int64_t y) { return sampleAt(m.type, src.row(y) + (x * ch + c) * e); };
  const auto sel = [&](std::int64_t x, std::int64_t y) { return !masked(m.form) || mask.row(y)[x] != 0; };
  for (int y = 0; y < a.roi.height; ++y)
    for (int x = 0; x < a.roi.width; ++x) {
      if (!sel(x, y)) continue;
      ++selected;
      const float v = at(x, y);
      if (v != v) continue;
      ++numbers;
      if (v < mn) mn = v, minRow = y;
      if (v > mx) mx = v, maxRow = y;
    }
  if (selected == 0) {
    *out = {0.0f, 0.0f, {0, 0}, {0, 0}};
    return true;
  }
  if (numbers == 0) return false;
  const auto column = [&](float v, int y) {
    for (int x = 0; x < a.roi.width; ++x)
      if (sel(x, y) && at(x, y) == v) return x;
    return 0;
  };
  *out = {mn, mx, {column(mn, minRow), minRow}, {column(mx, maxRow), maxRow}};
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(kNumMembers)];
  const int e = kElem[m.type], ch = coiForm(m.form) ? 3 : 1;
  Args a{};
  a.roi = {pickDim(r, 40, 500), pickDim(r, 40, 500)};
  a.srcStep = pickStep(r, rowBytes(a.roi, e * ch), e);
  a.maskStep = pickStep(r, rowBytes(a.roi, 1), 1);
  static const int kCoi[] = {1, 2, 3, 1, 2, 3, 1, 2, 3, 0, 4, -1, INT_MIN, INT_MAX, -3, 5};
  a.coi = kCoi[r.pick(16)];
  FZ_CONTEXT("member %d (type %d, form %d), roi %dx%d, steps %d %d, coi %d", static_cast<int>(&m - kMembers), m.type,
             m.form, a.roi.width, a.roi.height, a.srcStep, a.maskStep, a.coi);
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  Img src, mask;
  src.make(a.roi.width, a.roi.height, e * ch, a.srcStep, guard, guard == Guard::Before ? e * r.pick(16 / e) : 0);
  mask.make(a.roi.width, a.roi.height, 1, a.maskStep, r.oneIn(3) ? Guard::Before : Guard::After);
  Arr<vnx32f> minV, maxV;
  Arr<vnxiPoint> minI, maxI;
  minV.make(1), maxV.make(1), minI.make(1), maxI.make(1);
  a.src = r.oneIn(32) ? nullptr : src.ptr();
  a.mask = !masked(m.form) ? nullptr : r.oneIn(32) ? nullptr : mask.ptr();
  // A null result pointer means the caller does not want that result.
#ifdef VNX_FUZZ_SKIP_NULL_RESULT
  const bool nulls = false;
#else
  const bool nulls = true;
#endif
  a.minV = r.oneIn(8) && nulls ? nullptr : minV.ptr();
  a.maxV = r.oneIn(8) && nulls ? nullptr : maxV.ptr();
  a.minI = r.oneIn(8) && nulls ? nullptr : minI.ptr();
  a.maxI = r.oneIn(8) && nulls ? nullptr : maxI.ptr();
  const vnxStatus want = expected(m, a);
  if (want == vnxStatusOk && !(src.real() && (!masked(m.form) || mask.real()))) return 0;

  Pixels px(r);
  if (m.type == k32f) src.fill<vnx32f>(px); else src.fill<vnx8u>(px);
  mask.fill<vnx8u>(px);
  const int maskCut = r.pick(256);
  for (std::int64_t y = 0; mask.real() && y < mask.height(); ++y)
    for (std::int64_t x = 0; x < mask.rowBytes(); ++x) mask.row(y)[x] = mask.row(y)[x] < maskCut ? 0 : 7;
  minV[0] = -777.0f, maxV[0] = 777.0f, minI[0] = {-7, -7}, maxI[0] = {-9, -9};
  src.snapshot(), mask.snapshot(), minV.snapshot(), maxV.snapshot(), minI.snapshot(), maxI.snapshot();

  Result ref{};
  bool haveRef = false;
  for (int t : kThreadCounts) {
    setThreads(t);
    minV.restore(), maxV.restore(), minI.restore(), maxI.restore();
    const vnxStatus st = m.call(a);
    FZ_CHECK_EQ(st, want, "status");
    FZ_CHECK(src.unchanged() && mask.unchanged(), "a source was written");
    if (st != vnxStatusOk) {
      FZ_CHECK(minV.unchanged() && maxV.unchanged() && minI.unchanged() && maxI.unchanged(),
               "a result written on an error");
      return 0;
    }
    if (!a.minV) FZ_CHECK(minV.unchanged(), "minimum written through no pointer");
    if (!a.maxV) FZ_CHECK(maxV.unchanged(), "maximum written through no pointer");
    if (!a.minI) FZ_CHECK(minI.unchanged(), "minimum location written through no pointer");
    if (!a.maxI) FZ_CHECK(maxI.unchanged(), "maximum location written through no pointer");
    if (t == 1) haveRef = reference(m, a, src, mask, &ref);
    if (!haveRef) continue;
    if (a.minV) FZ_CHECK(std::memcmp(&minV[0], &ref.minV, 4) == 0 || (minV[0] == 0 && ref.minV == 0), "minimum");
    if (a.maxV) FZ_CHECK(std::memcmp(&maxV[0], &ref.maxV, 4) == 0 || (maxV[0] == 0 && ref.maxV == 0), "maximum");
    if (a.minI) FZ_CHECK(minI[0].x == ref.minI.x && minI[0].y == ref.minI.y, "location of the minimum");
    if (a.maxI) FZ_CHECK(maxI[0].x == ref.maxI.x && maxI[0].y == ref.maxI.y, "location of the maximum");
  }
  return 0;
}
