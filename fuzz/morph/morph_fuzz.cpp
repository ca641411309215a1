// libFuzzer harness of morphology: dilation and erosion with their states, the
// rectangular maximum and minimum filters, and the composite operations. The fuzzer
// chooses the form, sizes (0, negative and huge widths included), steps, mask cells,
// anchor, border code, thread count and pixels. Every image ends right before a
// protected page (or starts right after one). The harness asserts the status the
// check order predicts, nothing written on an error, row padding untouched, the
// result equal to the clamped extreme over the mask cells (composites: composed from
// it), and the same result with one thread and with several.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vnxcv.h"

namespace {

#define FUZZ_CHECK(c) \
  do {                \
    if (!(c)) abort(); \
  } while (0)

class Input {
 public:
  Input(const std::uint8_t* d, std::size_t n) : d_(d), n_(n) {}
  unsigned byte() { return i_ < n_ ? d_[i_++] : 0; }
  int range(int lo, int hi) { return lo + int(byte() % unsigned(hi - lo + 1)); }

 private:
  const std::uint8_t* d_;
  std::size_t n_, i_ = 0;
};

// bytes of storage ending right before an inaccessible page (or starting right after one).
class Guarded {
 public:
  Guarded(std::size_t bytes, bool before) {
    const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
    const std::size_t body = (bytes + page - 1) / page * page;
    total_ = body + 2 * page;
    base_ = static_cast<std::uint8_t*>(mmap(nullptr, total_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    FUZZ_CHECK(base_ != MAP_FAILED);
    mprotect(base_, page, PROT_NONE);
    mprotect(base_ + page + body, page, PROT_NONE);
    data_ = before ? base_ + page : base_ + page + body - bytes;
  }
  ~Guarded() { munmap(base_, total_); }
  std::uint8_t* data() const { return data_; }

 private:
  std::uint8_t* base_;
  std::size_t total_;
  std::uint8_t* data_;
};

enum Op { Dilate, Erode, FilterMax, FilterMin, Open, Close, Tophat, Blackhat, Gradient, OpCount };

// Total order of the library: -0.0 below +0.0, NaN absorbs.
float ext(float a, float b, bool mx) {
  if (std::isnan(a) || std::isnan(b)) return std::nanf("");
  if (a == b) return (std::signbit(a) == mx) ? b : a;
  return (a > b) == mx ? a : b;
}
vnx8u ext(vnx8u a, vnx8u b, bool mx) { return mx ? std::max(a, b) : std::min(a, b); }

template <class T>
std::vector<T> reference(const std::vector<T>& s, int w, int h, int c, const std::vector<vnx8u>& m, int mw, int mh,
                         vnxiPoint a, bool mx) {
  std::vector<T> o(s);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      for (int k = 0; k < c; ++k) {
        bool any = false;
        T v{};
        for (int j = 0; j < mh; ++j)
          for (int i = 0; i < mw; ++i)
            if (m[j * mw + i]) {
              const long sx = std::clamp<long>(long(x) + i - a.x, 0, w - 1), sy = std::clamp<long>(long(y) + j - a.y, 0, h - 1);
              v = any ? ext(v, s[(sy * w + sx) * c + k], mx) : s[(sy * w + sx) * c + k];
              any = true;
            }
        if (any) o[(std::size_t(y) * w + x) * c + k] = v;
      }
  return o;
}
template <class T>
T sub(T a, T b) {
  if constexpr (sizeof(T) == 1) return a > b ? T(a - b) : T(0);
  else {
    const float v = a - b;
    return std::isnan(v) ? v : (v < 0.0f ? 0.0f : v);
  }
}

template <class T>
bool same(const std::vector<T>& a, const std::vector<T>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if constexpr (sizeof(T) == 4) {
      if (std::isnan(a[i]) && std::isnan(b[i])) continue;
    }
    if (std::memcmp(&a[i], &b[i], sizeof(T))) return false;
  }
  return true;
}

template <class T, int C>
struct Api;
#define FUZZ_API(T, C, S)                                                                                        \
  template <>                                                                                                    \
  struct Api<T, C> {                                                                                             \
    static constexpr auto initAlloc = vnxiMorphologyInitAlloc_##S;                                               \
    static constexpr auto dilate = vnxiDilateBorderReplicate_##S;                                                \
    static constexpr auto erode = vnxiErodeBorderReplicate_##S;                                                  \
    static constexpr auto fmax = vnxiFilterMaxBorderReplicate_##S;                                               \
    static constexpr auto fmin = vnxiFilterMinBorderReplicate_##S;                                               \
    static constexpr auto fsize = vnxiFilterMaxGetBufferSize_##S;                                                \
    static constexpr auto advAlloc = vnxiMorphAdvInitAlloc_##S;                                                  \
    static constexpr decltype(&vnxiMorphOpenBorder_##S) comp[5] = {                                              \
        vnxiMorphOpenBorder_##S, vnxiMorphCloseBorder_##S, vnxiMorphTophatBorder_##S,                           \
        vnxiMorphBlackhatBorder_##S, vnxiMorphGradientBorder_##S};                                                \
  };
FUZZ_API(vnx8u, 1, 8u_C1R)
FUZZ_API(vnx8u, 3, 8u_C3R)
FUZZ_API(vnx8u, 4, 8u_C4R)
FUZZ_API(vnx32f, 1, 32f_C1R)
FUZZ_API(vnx32f, 3, 32f_C3R)
FUZZ_API(vnx32f, 4, 32f_C4R)
#undef FUZZ_API

template <class T, int C>
void run(Input& in) {
  using A = Api<T, C>;
  const Op op = Op(in.range(0, OpCount - 1));
  const int pick = in.range(0, 15);
  const int w = pick == 0 ? 0 : pick == 1 ? -3 : pick == 2 ? (1 << 29) : in.range(1, 40);
  const int h = in.range(-1, 45);
  const int mw = in.range(0, 7), mh = in.range(0, 7);
  std::vector<vnx8u> mask(std::size_t(std::max(mw, 1) * std::max(mh, 1)));
  const int density = in.range(0, 3);
  for (auto& v : mask) v = density == 0 ? 0 : (in.byte() % 4 < unsigned(density + 1)) ? vnx8u(in.byte() | 1) : 0;
  const vnxiPoint anchor{in.range(-2, mw + 1), in.range(-2, mh + 1)};
  const int border = in.range(0, 7) == 0 ? in.range(-1, 5) : 1;
  const int cw = in.range(0, 4) == 0 ? std::max(w - 1, 1) : std::max(w, 1);  // creation width
  const int ch = std::max(h + in.range(-2, 3), 1);                            // composite creation height
  const std::int64_t rowBytes = std::int64_t(std::max(w, 0)) * C * sizeof(T);
  const int deltas[] = {0, 0, 0, 0, 4, 12, -1, 2};
  const int ss = int(std::min<std::int64_t>(rowBytes + deltas[in.byte() % 8], INT32_MAX));
  const int ds = int(std::min<std::int64_t>(rowBytes + deltas[in.byte() % 8] + (in.byte() % 2) * 8, INT32_MAX));
  const bool before = in.byte() & 1;
  const int threads = in.range(2, 4);

  // Images only for sizes that can pass the checks.
  const bool real = w >= 1 && w <= 40 && h >= 1 && ss >= rowBytes && ds >= rowBytes;
  const std::size_t sb = real ? std::size_t(ss) * (h - 1) + rowBytes : 64, db = real ? std::size_t(ds) * (h - 1) + rowBytes : 64;
  Guarded src(sb, before), dst(db, !before);
  for (std::size_t i = 0; i < sb; ++i) src.data()[i] = std::uint8_t(in.byte());
  if constexpr (sizeof(T) == 4)  // mostly ordinary floats, some specials from the raw bytes
    for (std::size_t i = 0; i + 4 <= sb; i += 4)
      if (src.data()[i] & 7) {
        const float v = float(int(src.data()[i + 1]) - 128) / 4.0f;
        std::memcpy(src.data() + i, &v, 4);
      }
  std::memset(dst.data(), 0x5A, db);
  const std::vector<std::uint8_t> before0(dst.data(), dst.data() + db);
  const T* s = reinterpret_cast<const T*>(src.data());
  T* d = reinterpret_cast<T*>(dst.data());
  const vnxiSize roi{w, h};

  // The check order: pointers, ROI, row bytes, multiples, then the operation's own.
  vnxStatus expect = vnxStatusOk;
  if (w < 1 || h < 1) expect = vnxStatusBadSize;
  else if (ss < rowBytes || ds < rowBytes) expect = vnxStatusBadStep;
  else if (sizeof(T) == 4 && (ss % 4 || ds % 4)) expect = vnxStatusStepNotMultiple;

  vnxStatus got;
  vnxiMorphState* st = nullptr;
  vnxiMorphAdvState* adv = nullptr;
  std::vector<vnx8u> buf;
  auto call = [&](T* out) -> vnxStatus {
    if (op == Dilate || op == Erode) return (op == Dilate ? A::dilate : A::erode)(s, ss, out, ds, roi, border, st);
    if (op == FilterMax || op == FilterMin)
      return (op == FilterMax ? A::fmax : A::fmin)(s, ss, out, ds, roi, {mw, mh}, anchor, buf.data());
    return A::comp[op - Open](s, ss, out, ds, roi, border, adv);
  };
  const bool inMask = anchor.x >= 0 && anchor.x < mw && anchor.y >= 0 && anchor.y < mh;
  if (op == FilterMax || op == FilterMin) {
    int n = 0;
    const vnxStatus q = A::fsize(std::max(w, 1), {mw, mh}, &n);
    if (q != vnxStatusOk) {
      FUZZ_CHECK(mw < 1 || mh < 1 || w >= (1 << 20));
      return;
    }
    buf.resize(std::size_t(n));
    if (expect == vnxStatusOk && (mw < 1 || mh < 1)) expect = vnxStatusBadSize;
  } else if (op == Dilate || op == Erode) {
    const vnxStatus q = A::initAlloc(cw, mask.data(), {mw, mh}, anchor, &st);
    const vnxStatus qe = (mw < 1 || mh < 1) ? vnxStatusBadSize : !inMask ? vnxStatusBadAnchor : vnxStatusOk;
    FUZZ_CHECK(q == qe || (q == vnxStatusBadSize && cw >= (1 << 20)));
    if (q != vnxStatusOk) return;
    if (expect == vnxStatusOk && border != 1) expect = vnxStatusBadArg;
    else if (expect == vnxStatusOk && w > cw) expect = vnxStatusBadSize;
  } else {
    const vnxStatus q = A::advAlloc(&adv, {cw, ch}, mask.data(), {mw, mh}, anchor);
    if (q != vnxStatusOk) {
      FUZZ_CHECK(mw < 1 || mh < 1 || !inMask || cw >= (1 << 20));
      return;
    }
    const std::int64_t t = (std::int64_t(w) * C * sizeof(T) + 31) / 32 * 32;
    const std::int64_t recorded = (std::int64_t(cw) * sizeof(T) + 31) / 32 * 32 * ch;
    if (expect == vnxStatusOk && border != 1) expect = vnxStatusBadArg;
    else if (expect == vnxStatusOk && (w > cw || h * t < recorded)) expect = vnxStatusBadSize;
  }

  if (!real && expect == vnxStatusOk) {  // a huge width that no state or buffer admits
    vnxiMorphologyFree(st);
    vnxiMorphAdvFree(adv);
    return;
  }
  vnxSetNumThreads(1);
  got = call(d);
  FUZZ_CHECK(got == expect);
  const std::vector<std::uint8_t> serial(dst.data(), dst.data() + db);
  if (got != vnxStatusOk) {
    FUZZ_CHECK(serial == before0);  // nothing written
  } else {
    // Padding untouched, then the result against the reference.
    std::vector<T> px(std::size_t(w) * h * C), out(px.size());
    for (int y = 0; y < h; ++y) {
      std::memcpy(&px[std::size_t(y) * w * C], src.data() + std::size_t(ss) * y, std::size_t(rowBytes));
      std::memcpy(&out[std::size_t(y) * w * C], dst.data() + std::size_t(ds) * y, std::size_t(rowBytes));
      if (y + 1 < h)
        for (std::size_t i = std::size_t(ds) * y + rowBytes; i < std::size_t(ds) * (y + 1); ++i) FUZZ_CHECK(serial[i] == 0x5A);
    }
    std::vector<vnx8u> full(std::size_t(std::max(mw, 1)) * std::max(mh, 1), 1), refl(mask.rbegin(), mask.rend());
    const vnxiPoint ra{mw - anchor.x - 1, mh - anchor.y - 1};
    auto D = [&](const std::vector<T>& v, const std::vector<vnx8u>& m, vnxiPoint a) { return reference(v, w, h, C, m, mw, mh, a, true); };
    auto E = [&](const std::vector<T>& v, const std::vector<vnx8u>& m, vnxiPoint a) { return reference(v, w, h, C, m, mw, mh, a, false); };
    auto diff = [](std::vector<T> a, const std::vector<T>& b) {
      for (std::size_t i = 0; i < a.size(); ++i) a[i] = sub(a[i], b[i]);
      return a;
    };
    std::vector<T> ref;
    switch (op) {
      case Dilate: ref = D(px, mask, anchor); break;
      case Erode: ref = E(px, mask, anchor); break;
      case FilterMax: ref = D(px, full, anchor); break;
      case FilterMin: ref = E(px, full, anchor); break;
      case Open: ref = D(E(px, mask, anchor), refl, ra); break;
      case Close: ref = E(D(px, mask, anchor), refl, ra); break;
      case Tophat: ref = diff(px, D(E(px, mask, anchor), refl, ra)); break;
      case Blackhat: ref = diff(E(D(px, mask, anchor), refl, ra), px); break;
      default: ref = diff(D(px, mask, anchor), E(px, mask, anchor)); break;
    }
    FUZZ_CHECK(same(ref, out));
    // Several threads: the same bytes.
    std::memset(dst.data(), 0x5A, db);
    vnxSetNumThreads(threads);
    FUZZ_CHECK(call(d) == vnxStatusOk);
    FUZZ_CHECK(std::memcmp(serial.data(), dst.data(), db) == 0);
    vnxSetNumThreads(1);
  }
  vnxiMorphologyFree(st);
  vnxiMorphAdvFree(adv);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  switch (in.range(0, 5)) {
    case 0: run<vnx8u, 1>(in); break;
    case 1: run<vnx8u, 3>(in); break;
    case 2: run<vnx8u, 4>(in); break;
    case 3: run<vnx32f, 1>(in); break;
    case 4: run<vnx32f, 3>(in); break;
    default: run<vnx32f, 4>(in); break;
  }
  return 0;
}
