// Shared pieces of the pyramid steps: the SSE2 row kernels, the band scratch and the
// buffer sizes.
#include "pyramids/vncvpyramid.h"

namespace {
// Eight 16-bit lanes of the even and of the odd bytes of 16 (zero- or sign-extended).
inline void ownEvenOdd(const vnx8u* p, __m128i& e, __m128i& o) {
  const __m128i v = ownLoad(p);
  e = _mm_and_si128(v, _mm_set1_epi16(0xFF));
  o = _mm_srli_epi16(v, 8);
}
inline void ownEvenOdd(const vnx8s* p, __m128i& e, __m128i& o) {
  const __m128i v = ownLoad(p);
  e = _mm_srai_epi16(_mm_slli_epi16(v, 8), 8);
  o = _mm_srai_epi16(v, 8);
}
// Eight bytes widened to 16-bit lanes.
inline __m128i ownWiden8(const vnx8u* p) { return _mm_unpacklo_epi8(ownLoad64(p), _mm_setzero_si128()); }
inline __m128i ownWiden8(const vnx8s* p) {
  const __m128i v = ownLoad64(p);
  return _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
}
inline __m128i ownTimes6(__m128i v) { return _mm_mullo_epi16(v, _mm_set1_epi16(6)); }
// ((6 c + 4 (b + d)) + a) + e in 16-bit lanes (integers: the order does not matter).
inline __m128i ownTaps5(__m128i a, __m128i b, __m128i c, __m128i d, __m128i e) {
  const __m128i bcd = _mm_add_epi16(_mm_add_epi16(b, d), c);  // 4 (b + c + d) + 2 c + a + e
  return _mm_add_epi16(_mm_add_epi16(_mm_slli_epi16(bcd, 2), _mm_add_epi16(c, c)), _mm_add_epi16(a, e));
}
inline __m128 ownTaps5(__m128 a, __m128 b, __m128 c, __m128 d, __m128 e) {
  const __m128 t = _mm_add_ps(_mm_mul_ps(c, _mm_set1_ps(6.0f)), _mm_mul_ps(_mm_add_ps(b, d), _mm_set1_ps(4.0f)));
  return _mm_add_ps(_mm_add_ps(t, a), e);
}

// Rounded shift of a 16-bit sum: unsigned for an 8u down sum (it may exceed 32767),
// arithmetic otherwise (the floor for 8s).
inline __m128i ownRoundShift(__m128i s, int shift, bool isUnsigned) {
  const __m128i r = _mm_add_epi16(s, _mm_set1_epi16(static_cast<short>(1 << (shift - 1))));
  return isUnsigned ? _mm_srl_epi16(r, _mm_cvtsi32_si128(shift)) : _mm_sra_epi16(r, _mm_cvtsi32_si128(shift));
}
inline void ownPack16(vnx8u* d, __m128i lo, __m128i hi, ownStoreKind kind = ownStoreKind::Cached) {
  ownStoreLanes(d, _mm_packus_epi16(lo, hi), kind);
}
inline void ownPack16(vnx8s* d, __m128i lo, __m128i hi, ownStoreKind kind = ownStoreKind::Cached) {
  ownStoreLanes(d, _mm_packs_epi16(lo, hi), kind);
}

// Down, 32f: four output columns i .. i + 3 read source columns 2i - 2 .. 2i + 9.
inline __m128 ownPyrDownH4(const vnx32f* s, std::int64_t i) {
  // five loads, one shuffle each for the even and odd columns: p-2..p1 with p2..p5,
  // p0..p3 with p4..p7, and p2..p5 with p6..p9 for the even columns shifted by one
  const vnx32f* p = s + 2 * i;
  const __m128 a = _mm_loadu_ps(p - 2), b = _mm_loadu_ps(p + 2), c = _mm_loadu_ps(p), d = _mm_loadu_ps(p + 4);
  const __m128 em = _mm_shuffle_ps(a, b, 0x88), om = _mm_shuffle_ps(a, b, 0xDD);  // p-2 p0 p2 p4, p-1 p1 p3 p5
  const __m128 e0 = _mm_shuffle_ps(c, d, 0x88), o0 = _mm_shuffle_ps(c, d, 0xDD);  // p0 p2 p4 p6, p1 p3 p5 p7
  return ownTaps5(em, om, e0, o0, _mm_shuffle_ps(b, _mm_loadu_ps(p + 6), 0x88));  // p2 p4 p6 p8
}

// The lanes of the two-row down kernel: work samples a vector, the horizontal sums of
// a source row at outputs i .., and the results of two output rows.
template <class T>
struct ownPyrDownLanes;
template <>
struct ownPyrDownLanes<vnx32f> {
  using V = __m128;
  static constexpr std::int64_t n = 4;
  static V h(const vnx32f* s, std::int64_t i) { return ownPyrDownH4(s, i); }
  static V load(const vnx32f* p) { return _mm_loadu_ps(p); }
  static void store(vnx32f* p, V v) { _mm_storeu_ps(p, v); }
  static void out(vnx32f* d0, vnx32f* d1, V s0, V s1) {
    _mm_storeu_ps(d0, _mm_mul_ps(s0, _mm_set1_ps(0.00390625f)));
    _mm_storeu_ps(d1, _mm_mul_ps(s1, _mm_set1_ps(0.00390625f)));
  }
};

// Output rows j and j + 1 at columns k (scalar): the work samples of the four new
// source rows are formed here, those of rows 2j + 2 .. 2j + 4 kept in fresh.
template <class T>
void ownPyrDownPairAt(const T* const* src, std::int64_t width, const typename ownPyrWork<T>::W* const* old,
                      typename ownPyrWork<T>::W* const* fresh, T* d0, T* d1, std::int64_t k) {
  using A = typename ownPyrWork<T>::Acc;
  using W = typename ownPyrWork<T>::W;
  std::int64_t col[5];  // the columns of the taps, through the border rule once for the four rows
  for (int t = 0; t < 5; ++t) col[t] = ownPyrDownIndex(2 * k + t - 2, width);
  W h[4];
  for (int r = 0; r < 4; ++r) {
    const T* s = src[r];
    h[r] = static_cast<W>(ownPyrTaps5<A>(s[col[0]], s[col[1]], s[col[2]], s[col[3]], s[col[4]]));
    if (r > 0) fresh[r - 1][k] = h[r];
  }
  d0[k] = ownPyrResult<T>(ownPyrTaps5<A>(old[0][k], old[1][k], old[2][k], h[0], h[1]), 8);
  d1[k] = ownPyrResult<T>(ownPyrTaps5<A>(old[2][k], h[0], h[1], h[2], h[3]), 8);
}

// Two output rows a step: the horizontal sums of the four new source rows stay in
// registers for both rows (the three rows they share with the next pair are stored),
// so each work sample is written once and read once more. Whole vectors from column
// 1 while the source row holds them, the last one ending at the last such column
// (it redoes a few columns with the same values); column 0 and the one or two
// columns right of it take the border rule.
template <class T>
void ownPyrDownPair(const T* const* src, std::int64_t width, const typename ownPyrWork<T>::W* const* old,
                    typename ownPyrWork<T>::W* const* fresh, T* d0, T* d1, std::int64_t n) {
  using L = ownPyrDownLanes<T>;
  using V = typename L::V;
  const std::int64_t last = (width - 2 * L::n - 2) / 2;  // 2 last + 2 lanes + 2 <= width
  std::int64_t i = 1;
  // the row pointers in locals: the stores could otherwise alias the arrays that hold them
  const T *s1 = src[0], *s2 = src[1], *s3 = src[2], *s4 = src[3];
  const auto *o0 = old[0], *o1 = old[1], *o2 = old[2];
  auto *f2 = fresh[0], *f3 = fresh[1], *f4 = fresh[2];
  auto step = [=](std::int64_t x) {
    const V h1 = L::h(s1, x), h2 = L::h(s2, x), h3 = L::h(s3, x), h4 = L::h(s4, x);
    L::store(f2 + x, h2);
    L::store(f3 + x, h3);
    L::store(f4 + x, h4);
    const V v2 = L::load(o2 + x);
    L::out(d0 + x, d1 + x, ownTaps5(L::load(o0 + x), L::load(o1 + x), v2, h1, h2), ownTaps5(v2, h1, h2, h3, h4));
  };
  if (width >= 2 * L::n + 4) {
    for (; i < last; i += L::n) step(i);
    step(last);
    i = last + L::n;
  }
  ownPyrDownPairAt(src, width, old, fresh, d0, d1, 0);
  for (; i < n; ++i) ownPyrDownPairAt(src, width, old, fresh, d0, d1, i);
}
// Column sums of R output rows over 16 source columns c .. c + 15 (c even): eight
// even and eight odd columns a row, each a vector of 16-bit lanes. Source rows are
// split as the output rows reach them, so at most five rows of both parities are
// held at once.
template <int R, class T>
inline void ownPyrDownColsAt(const T* const* s, vnx16s* const* ev, vnx16s* const* od, std::int64_t c) {
  __m128i e[2 * R + 3], o[2 * R + 3];
  for (int r = 0; r < 3; ++r) ownEvenOdd(s[r] + c, e[r], o[r]);
  for (int q = 0; q < R; ++q) {
    const int r = 2 * q;
    ownEvenOdd(s[r + 3] + c, e[r + 3], o[r + 3]);
    ownEvenOdd(s[r + 4] + c, e[r + 4], o[r + 4]);
    ownStore(ev[q] + (c >> 1), ownTaps5(e[r], e[r + 1], e[r + 2], e[r + 3], e[r + 4]));
    ownStore(od[q] + (c >> 1), ownTaps5(o[r], o[r + 1], o[r + 2], o[r + 3], o[r + 4]));
  }
}
// Whole vectors from column 0; two or more columns left take one more vector, the last
// even-started one inside the row (it redoes a few columns with the same values); an
// odd width may leave its last column to the reference.
template <int R, class T>
void ownPyrDownCols8(const T* const* src, std::int64_t width, vnx16s* const* evs, vnx16s* const* ods) {
  // the pointers in locals: the stores could otherwise alias the arrays that hold them
  const T* s[2 * R + 3];
  vnx16s *ev[R], *od[R];
  for (int r = 0; r < 2 * R + 3; ++r) s[r] = src[r];
  for (int q = 0; q < R; ++q) ev[q] = evs[q], od[q] = ods[q];
  std::int64_t c = 0;
  for (; c + 16 <= width; c += 16) ownPyrDownColsAt<R>(s, ev, od, c);
  if (width - c > 1 && width >= 16) {
    c = (width - 16) & ~std::int64_t{1};
    ownPyrDownColsAt<R>(s, ev, od, c);
    c += 16;
  }
  for (int q = 0; q < R; ++q) ownPyrDownColsRow(s + 2 * q, width, ev[q], od[q], c);
}
// Sixteen outputs k .. k + 15 from the column sums and their margins.
template <class T>
inline void ownPyrDownDecimateAt(const vnx16s* ev, const vnx16s* od, T* d, std::int64_t k) {
  __m128i r[2];
  for (int v = 0; v < 2; ++v) {
    const vnx16s *e = ev + k + 8 * v, *o = od + k + 8 * v;
    r[v] = ownRoundShift(ownTaps5(ownLoad(e - 1), ownLoad(o - 1), ownLoad(e), ownLoad(o), ownLoad(e + 1)), 8,
                         std::is_same<T, vnx8u>::value);
  }
  ownPack16(d + k, r[0], r[1]);
}
// Whole steps, then one ending at the row end (it redoes a few outputs).
template <class T>
void ownPyrDownDecimate8(const vnx16s* ev, const vnx16s* od, T* d, std::int64_t n) {
  std::int64_t k = 0;
  for (; k + 16 <= n; k += 16) ownPyrDownDecimateAt(ev, od, d, k);
  if (k < n && n >= 16) {
    ownPyrDownDecimateAt(ev, od, d, n - 16);
    k = n;
  }
  ownPyrDownDecimateRow(ev, od, d, k, n);
}
template <class T>
void ownPyrDownRowV8(const vnx16s* const* r, T* d, std::int64_t n) {
  std::int64_t k = 0;
  for (; k + 16 <= n; k += 16) {
    __m128i s[2];
    for (int v = 0; v < 2; ++v) {
      const std::int64_t o = k + 8 * v;
      s[v] = ownRoundShift(ownTaps5(ownLoad(r[0] + o), ownLoad(r[1] + o), ownLoad(r[2] + o), ownLoad(r[3] + o),
                                    ownLoad(r[4] + o)),
                           8, std::is_same<T, vnx8u>::value);
    }
    ownPack16(d + k, s[0], s[1]);
    if (k + 16 < n && k + 32 > n) k = n - 32;  // the last step ends at the row end
  }
  ownPyrDownRowV<T>(r, d, k, n);
}

// Up, 8-bit: source columns x .. x + 7 read x - 1 .. x + 8 and give 16 work samples.
template <class T>
inline void ownPyrUpH8(const T* s, std::int64_t x, __m128i& w0, __m128i& w1) {
  const __m128i a = ownWiden8(s + x - 1), b = ownWiden8(s + x), c = ownWiden8(s + x + 1);
  const __m128i e = _mm_add_epi16(_mm_add_epi16(a, ownTimes6(b)), c), o = _mm_slli_epi16(_mm_add_epi16(b, c), 2);
  w0 = _mm_unpacklo_epi16(e, o);
  w1 = _mm_unpackhi_epi16(e, o);
}
// Even and odd results of eight work samples from the work rows above, at and below.
inline void ownPyrUpV8(__m128i a, __m128i b, __m128i c, __m128i& even, __m128i& odd) {
  even = ownRoundShift(_mm_add_epi16(_mm_add_epi16(a, ownTimes6(b)), c), 6, false);
  odd = ownRoundShift(_mm_add_epi16(b, c), 4, false);  // (4 (b + c) + 32) >> 6 is (b + c + 8) >> 4
}
template <class T>
void ownPyrUpRowH8(const T* s, std::int64_t width, vnx16s* h) {
  std::int64_t x = 1;
  for (; x + 9 <= width; x += 8) {
    __m128i w0, w1;
    ownPyrUpH8(s, x, w0, w1);
    ownStore(h + 2 * x, w0);
    ownStore(h + 2 * x + 8, w1);
    if (x + 9 < width && x + 17 > width) x = width - 17;  // the last step ends at the last column but one
  }
  ownPyrUpRowH(s, width, 1, h, 0, 1);  // column 0 and the columns right of the vectors
  ownPyrUpRowH(s, width, 1, h, x, width);
}
// Streaming stores need both rows 16-byte aligned and whole steps to the row end.
template <class T>
void ownPyrUpRowV8(const vnx16s* const* r, T* even, T* odd, std::int64_t n, ownStoreKind kind) {
  if (((reinterpret_cast<std::uintptr_t>(even) | reinterpret_cast<std::uintptr_t>(odd)) & 15) != 0 || n % 16 != 0)
    kind = ownStoreKind::Cached;
  std::int64_t k = 0;
  for (; k + 16 <= n; k += 16) {
    __m128i e[2], o[2];
    for (int v = 0; v < 2; ++v) ownPyrUpV8(ownLoad(r[0] + k + 8 * v), ownLoad(r[1] + k + 8 * v), ownLoad(r[2] + k + 8 * v), e[v], o[v]);
    ownPack16(even + k, e[0], e[1], kind);
    ownPack16(odd + k, o[0], o[1], kind);
    if (k + 16 < n && k + 32 > n) k = n - 32;
  }
  ownPyrUpRowV<T>(r, even, odd, k, n);
}
// One source row a step: the work row of the source row below is made in registers for
// both output rows and stored once, for the next two steps. Whole vectors over source
// columns 1 .. width - 2, the last one ending there (it redoes a few columns with the
// same values); the first and last columns take the edge rules.
template <class T>
void ownPyrUpStep8(const T* s, std::int64_t width, const vnx16s* above, const vnx16s* at, vnx16s* below, T* even,
                   T* odd) {
  auto step = [&](std::int64_t x) {
    __m128i w[2], e[2], o[2];
    ownPyrUpH8(s, x, w[0], w[1]);
    for (int v = 0; v < 2; ++v) {
      const std::int64_t k = 2 * x + 8 * v;
      ownStore(below + k, w[v]);
      ownPyrUpV8(ownLoad(above + k), ownLoad(at + k), w[v], e[v], o[v]);
    }
    ownPack16(even + 2 * x, e[0], e[1]);
    ownPack16(odd + 2 * x, o[0], o[1]);
  };
  std::int64_t x = 1;
  if (width >= 10) {
    for (; x < width - 9; x += 8) step(x);
    step(width - 9);
    x = width - 1;
  }
  ownPyrUpRowH(s, width, 1, below, 0, 1);
  ownPyrUpRowH(s, width, 1, below, x, width);
  const vnx16s* r[3] = {above, at, below};
  ownPyrUpRowV<T>(r, even, odd, 0, 2);
  ownPyrUpRowV<T>(r, even, odd, 2 * x, 2 * width);
}
}  // namespace

void ownPyrDownRowH_sse2(const vnx32f* s, std::int64_t width, vnx32f* h, std::int64_t n) {
  std::int64_t i = 1;
  for (; i < n && 2 * i + 10 <= width; i += 4) {
    _mm_storeu_ps(h + i, ownPyrDownH4(s, i));
    if (i + 4 < n && 2 * i + 18 > width && width >= 12 && (width - 10) / 2 > i) i = (width - 10) / 2 - 4;  // last step inside the row
  }
  ownPyrDownRowH(s, width, 1, h, 0, 1 < n ? 1 : n);
  ownPyrDownRowH(s, width, 1, h, i < n ? i : n, n);
}
void ownPyrDownPair_sse2(const vnx32f* const* src, std::int64_t width, const vnx32f* const* old, vnx32f* const* fresh,
                         vnx32f* d0, vnx32f* d1, std::int64_t n) {
  ownPyrDownPair(src, width, old, fresh, d0, d1, n);
}
template <class T>
void ownPyrDownCols(const T* const* s, int outRows, std::int64_t width, vnx16s* const* ev, vnx16s* const* od) {
  switch (outRows) {
    case 4: return ownPyrDownCols8<4>(s, width, ev, od);
    case 2: return ownPyrDownCols8<2>(s, width, ev, od);
    default: return ownPyrDownCols8<1>(s, width, ev, od);
  }
}
void ownPyrDownCols_sse2(const vnx8u* const* s, int outRows, std::int64_t width, vnx16s* const* ev, vnx16s* const* od) {
  ownPyrDownCols(s, outRows, width, ev, od);
}
void ownPyrDownCols_sse2(const vnx8s* const* s, int outRows, std::int64_t width, vnx16s* const* ev, vnx16s* const* od) {
  ownPyrDownCols(s, outRows, width, ev, od);
}
void ownPyrDownDecimate_sse2(const vnx16s* ev, const vnx16s* od, vnx8u* d, std::int64_t n) {
  ownPyrDownDecimate8(ev, od, d, n);
}
void ownPyrDownDecimate_sse2(const vnx16s* ev, const vnx16s* od, vnx8s* d, std::int64_t n) {
  ownPyrDownDecimate8(ev, od, d, n);
}
void ownPyrDownRowV_sse2(const vnx16s* const* r, vnx8u* d, std::int64_t n) { ownPyrDownRowV8(r, d, n); }
void ownPyrDownRowV_sse2(const vnx16s* const* r, vnx8s* d, std::int64_t n) { ownPyrDownRowV8(r, d, n); }
void ownPyrDownRowV_sse2(const vnx32f* const* r, vnx32f* d, std::int64_t n) {
  std::int64_t k = 0;
  for (; k + 4 <= n; k += 4) {
    const __m128 s = ownTaps5(_mm_loadu_ps(r[0] + k), _mm_loadu_ps(r[1] + k), _mm_loadu_ps(r[2] + k),
                              _mm_loadu_ps(r[3] + k), _mm_loadu_ps(r[4] + k));
    _mm_storeu_ps(d + k, _mm_mul_ps(s, _mm_set1_ps(0.00390625f)));
    if (k + 4 < n && k + 8 > n) k = n - 8;
  }
  ownPyrDownRowV<vnx32f>(r, d, k, n);
}

void ownPyrUpRowH_sse2(const vnx8u* s, std::int64_t width, vnx16s* h) { ownPyrUpRowH8(s, width, h); }
void ownPyrUpRowH_sse2(const vnx8s* s, std::int64_t width, vnx16s* h) { ownPyrUpRowH8(s, width, h); }
void ownPyrUpRowH_sse2(const vnx32f* s, std::int64_t width, vnx32f* h) {
  std::int64_t x = 1;
  const __m128 six = _mm_set1_ps(6.0f), four = _mm_set1_ps(4.0f);
  for (; x + 5 <= width; x += 4) {
    const __m128 a = _mm_loadu_ps(s + x - 1), b = _mm_loadu_ps(s + x), c = _mm_loadu_ps(s + x + 1);
    const __m128 e = _mm_add_ps(_mm_add_ps(a, _mm_mul_ps(b, six)), c), o = _mm_mul_ps(_mm_add_ps(b, c), four);
    _mm_storeu_ps(h + 2 * x, _mm_unpacklo_ps(e, o));
    _mm_storeu_ps(h + 2 * x + 4, _mm_unpackhi_ps(e, o));
  }
  ownPyrUpRowH(s, width, 1, h, 0, 1);
  ownPyrUpRowH(s, width, 1, h, x, width);
}
void ownPyrUpStep_sse2(const vnx8u* s, std::int64_t width, const vnx16s* above, const vnx16s* at, vnx16s* below,
                       vnx8u* even, vnx8u* odd) {
  ownPyrUpStep8(s, width, above, at, below, even, odd);
}
void ownPyrUpStep_sse2(const vnx8s* s, std::int64_t width, const vnx16s* above, const vnx16s* at, vnx16s* below,
                       vnx8s* even, vnx8s* odd) {
  ownPyrUpStep8(s, width, above, at, below, even, odd);
}
void ownPyrUpRowV_sse2(const vnx16s* const* r, vnx8u* even, vnx8u* odd, std::int64_t n, ownStoreKind kind) {
  ownPyrUpRowV8(r, even, odd, n, kind);
}
void ownPyrUpRowV_sse2(const vnx16s* const* r, vnx8s* even, vnx8s* odd, std::int64_t n, ownStoreKind kind) {
  ownPyrUpRowV8(r, even, odd, n, kind);
}
void ownPyrUpRowV_sse2(const vnx32f* const* r, vnx32f* even, vnx32f* odd, std::int64_t n, ownStoreKind) {
  std::int64_t k = 0;
  const __m128 six = _mm_set1_ps(6.0f), four = _mm_set1_ps(4.0f), w = _mm_set1_ps(0.015625f);
  for (; k + 4 <= n; k += 4) {
    const __m128 a = _mm_loadu_ps(r[0] + k), b = _mm_loadu_ps(r[1] + k), c = _mm_loadu_ps(r[2] + k);
    _mm_storeu_ps(even + k, _mm_mul_ps(_mm_add_ps(_mm_add_ps(a, _mm_mul_ps(b, six)), c), w));
    _mm_storeu_ps(odd + k, _mm_mul_ps(_mm_mul_ps(_mm_add_ps(b, c), four), w));
  }
  ownPyrUpRowV<vnx32f>(r, even, odd, k, n);
}

ownPyrScratch::ownPyrScratch(vnx8u* buffer, std::int64_t bufferBytes, std::int64_t perBand, int wanted)
    : buf_(reinterpret_cast<vnx8u*>((reinterpret_cast<std::uintptr_t>(buffer) + 31) & ~std::uintptr_t{31})),
      perBand_(perBand) {
  const std::int64_t held = (bufferBytes - 32) / perBand;
  inBuffer_ = held < 1 ? 1 : (held < wanted ? static_cast<int>(held) : wanted);
  bands_ = inBuffer_;
  if (wanted > inBuffer_) {
    const std::int64_t more = (wanted - inBuffer_) * perBand;
    if (more <= INT32_MAX) extra_ = ownMalloc_8u(static_cast<int>(more));
    if (extra_) bands_ = wanted;
  }
}

void* ownPyrScratch::slice(int band) const {
  if (band < inBuffer_) return buf_ + band * perBand_;
  return static_cast<vnx8u*>(extra_) + (band - inBuffer_) * perBand_;
}

std::int64_t ownPyrDownBufBytes(int width, int channels) {
  const std::int64_t r = (std::int64_t{4} * width * channels + 15) / 16 * 16;
  const std::int64_t b = 6 * r + 32;
  return b > INT32_MAX ? -1 : b;
}
std::int64_t ownPyrUpBufBytes(int width, int channels) {
  const std::int64_t r = (std::int64_t{8} * width * channels + 15) / 16 * 16;
  const std::int64_t b = 3 * r + 32;
  return b > INT32_MAX ? -1 : b;
}
