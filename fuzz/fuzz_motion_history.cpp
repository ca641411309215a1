// Motion-history update: check order (duration last), nothing written on an error,
// padding intact, history against the update rule, the same bytes at every thread count.
#include "fuzz_support.h"

namespace {

using namespace fz;

enum Type { k8u, k16u, k32f };
constexpr int kElem[] = {1, 2, 4};

struct Member {
  Type type;
  vnxStatus (*call)(const void*, int, vnx32f*, int, vnxiSize, vnx32f, vnx32f);
};
const Member kMembers[] = {
    {k8u, [](const void* s, int ss, vnx32f* h, int hs, vnxiSize roi, vnx32f ts, vnx32f du) {
       return vnxiUpdateMotionHistory_8u32f_C1IR(static_cast<const vnx8u*>(s), ss, h, hs, roi, ts, du); }},
    {k16u, [](const void* s, int ss, vnx32f* h, int hs, vnxiSize roi, vnx32f ts, vnx32f du) {
       return vnxiUpdateMotionHistory_16u32f_C1IR(static_cast<const vnx16u*>(s), ss, h, hs, roi, ts, du); }},
    {k32f, [](const void* s, int ss, vnx32f* h, int hs, vnxiSize roi, vnx32f ts, vnx32f du) {
       return vnxiUpdateMotionHistory_32f_C1IR(static_cast<const vnx32f*>(s), ss, h, hs, roi, ts, du); }},
};

vnxStatus expected(Type t, const void* s, int ss, const void* h, int hs, vnxiSize roi, float duration) {
  if (vnxStatus st = expectPtrs({s, h})) return st;
  if (vnxStatus st = expectRoi(roi)) return st;
  const int e = kElem[t];
  if (vnxStatus st = expectSteps({{ss, rowBytes(roi, e), e}, {hs, rowBytes(roi, 4), 4}})) return st;
  if (!(duration >= 0.0f)) return vnxStatusOutOfRange;
  return vnxStatusOk;
}

bool moving(Type t, const std::uint8_t* p) {
  if (t == k8u) return *p != 0;
  if (t == k16u) { vnx16u v; std::memcpy(&v, p, 2); return v != 0; }
  float v;
  std::memcpy(&v, p, 4);
  return v != 0.0f;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader r(data, size);
  const Member& m = kMembers[r.pick(3)];
  const int e = kElem[m.type];
  const vnxiSize roi{pickDim(r, 40, 600), pickDim(r, 40, 600)};
  const int ss = pickStep(r, rowBytes(roi, e), e), hs = pickStep(r, rowBytes(roi, 4), 4);
  const float timestamp = r.anyFloat(), duration = r.anyFloat();
  FZ_CONTEXT("member %d, roi %dx%d, steps %d %d, timestamp %a, duration %a", static_cast<int>(&m - kMembers),
             roi.width, roi.height, ss, hs, timestamp, duration);
  const Guard guard = r.oneIn(3) ? Guard::Before : Guard::After;
  Img sil, hist;
  sil.make(roi.width, roi.height, e, ss, guard);
  hist.make(roi.width, roi.height, 4, hs, r.oneIn(3) ? Guard::Before : Guard::After);
  const void* ps = r.oneIn(32) ? nullptr : sil.ptr();
  vnx32f* ph = r.oneIn(32) ? nullptr : reinterpret_cast<vnx32f*>(hist.ptr());
  const vnxStatus want = expected(m.type, ps, ss, ph, hs, roi, duration);
  if (want == vnxStatusOk && !(sil.real() && hist.real())) return 0;

  Pixels px(r);
  if (m.type == k32f) sil.fill<vnx32f>(px);
  else if (r.oneIn(2)) sil.fill<vnx8u>(px);
  else {  // mostly still, a few moving pixels
    sil.fill<vnx8u>(px);
    for (std::int64_t y = 0; sil.real() && y < sil.height(); ++y)
      for (std::int64_t x = 0; x < sil.rowBytes(); ++x) sil.row(y)[x] = sil.row(y)[x] > 220 ? sil.row(y)[x] : 0;
  }
  hist.fill<vnx32f>(px);
  if (hist.real() && r.oneIn(2)) {  // histories near the threshold
    const float thr = timestamp - duration;
    for (std::int64_t y = 0; y < hist.height(); y += 2) std::memcpy(hist.row(y), &thr, 4);
  }
  sil.snapshot(), hist.snapshot();

  std::vector<std::uint8_t> first;
  for (int t : kThreadCounts) {
    setThreads(t);
    hist.restore();
    const vnxStatus st = m.call(ps, ss, ph, hs, roi, timestamp, duration);
    FZ_CHECK_EQ(st, want, "status");
    FZ_CHECK(sil.unchanged(), "silhouette written");
    if (st != vnxStatusOk) {
      FZ_CHECK(hist.unchanged(), "history written on an error");
      return 0;
    }
    FZ_CHECK(hist.paddingIntact(), "row padding written");
    const std::vector<std::uint8_t> got = hist.roiBytes();
    if (t != 1) {
      FZ_CHECK(got == first, "history depends on the thread count");
      continue;
    }
    first = got;
    hist.restore();
    const volatile float threshold = timestamp - duration;
    for (std::int64_t y = 0; y < roi.height; ++y)
      for (std::int64_t x = 0; x < roi.width; ++x) {
        float h, want_h;
        std::memcpy(&h, hist.row(y) + 4 * x, 4);
        if (moving(m.type, sil.row(y) + e * x)) want_h = timestamp;
        else if (h < threshold) want_h = 0.0f;
        else want_h = h;
        FZ_CHECK(std::memcmp(&want_h, &got[static_cast<std::size_t>(4 * (y * roi.width + x))], 4) == 0,
                 "history differs from the update rule");
      }
  }
  return 0;
}
