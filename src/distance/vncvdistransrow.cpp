// Vector bodies of the chamfer row stages. One template over a lane type serves
// 8u (16 lanes, saturating adds), 16u (8 lanes) and 32f (4 lanes): the vertical
// stage is independent per pixel; the integer in-row scan runs as a log-step
// prefix minimum, the float scan as four interleaved stretches with repaired joins.
#include <cstring>

#include "simd.h"
#include "vncvdistrans.h"

namespace {

// Unsigned 16-bit minimum in SSE2: x - max(x - y, 0).
inline __m128i ownMinU16(__m128i x, __m128i y) { return _mm_sub_epi16(x, _mm_subs_epu16(x, y)); }

struct ownLanes8u {
  using D = vnx8u;
  using V = __m128i;
  static constexpr int N = 16;
  static V load(const D* p) { return ownLoad(p); }
  static void store(D* p, V v) { ownStore(p, v); }
  static V set1(D v) { return _mm_set1_epi8(static_cast<char>(v)); }
  static V add(V x, V y) { return _mm_adds_epu8(x, y); }  // saturates at 255, the far value
  static V min(V x, V y) { return _mm_min_epu8(x, y); }
  // Lanes whose source byte is zero: all ones.
  static V features(const vnx8u* s) { return _mm_cmpeq_epi8(ownLoad(s), _mm_setzero_si128()); }
  static V clear(V sel, V v) { return _mm_andnot_si128(sel, v); }
};

struct ownLanes16u {
  using D = vnx16u;
  using V = __m128i;
  static constexpr int N = 8;
  static V load(const D* p) { return ownLoad(p); }
  static void store(D* p, V v) { ownStore(p, v); }
  static V set1(D v) { return _mm_set1_epi16(static_cast<short>(v)); }
  static V add(V x, V y) { return _mm_adds_epu16(x, y); }  // saturates at 65535, the far value
  static V min(V x, V y) { return ownMinU16(x, y); }
  static V features(const vnx8u* s) {
    const __m128i z = _mm_setzero_si128();
    return _mm_cmpeq_epi16(_mm_unpacklo_epi8(ownLoad64(s), z), z);
  }
  static V clear(V sel, V v) { return _mm_andnot_si128(sel, v); }
};

struct ownLanes32f {
  using D = vnx32f;
  using V = __m128;
  static constexpr int N = 4;
  static V load(const D* p) { return _mm_loadu_ps(p); }
  static void store(D* p, V v) { _mm_storeu_ps(p, v); }
  static V set1(D v) { return _mm_set1_ps(v); }
  static V add(V x, V y) { return _mm_add_ps(x, y); }
  static V min(V x, V y) { return _mm_min_ps(x, y); }
  static V features(const vnx8u* s) {
    int four;
    std::memcpy(&four, s, 4);
    const __m128i z = _mm_setzero_si128();
    const __m128i b = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), z), z);
    return _mm_castsi128_ps(_mm_cmpeq_epi32(b, z));
  }
  static V clear(V sel, V v) { return _mm_andnot_ps(sel, v); }  // a feature gets +0.0
};

// Vertical stage over the columns whose whole neighbourhood lies in the row; the
// first and last `radius` columns go through the template.
template <class L>
void ownDistVertical(const vnx8u* src, ownDistNeighbours<typename L::D> nb, typename L::D* out, int width,
                     const ownChamfer<typename L::D>& w) {
  using V = typename L::V;
  const int r = w.radius;
  if (width < L::N + 2 * r) return ownDistVerticalRow(src, nb, out, 0, width, width, w);
  ownDistVerticalRow(src, nb, out, 0, r, width, w);
  const V va = L::set1(w.a), vb = L::set1(w.b), vc = L::set1(w.c), vfar = L::set1(w.far);
  const bool diagonals = !w.orthogonalOnly, knights = r == 2;
  int x = r;
  for (; x + L::N <= width - r; x += L::N) {
    V m = src ? vfar : L::load(out + x);
    if (nb.near) {
      const auto* u = nb.near + x;
      m = L::min(m, L::add(L::load(u), va));
      if (diagonals) m = L::min(m, L::min(L::add(L::load(u - 1), vb), L::add(L::load(u + 1), vb)));
      if (knights) m = L::min(m, L::min(L::add(L::load(u - 2), vc), L::add(L::load(u + 2), vc)));
    }
    if (knights && nb.far2) {
      const auto* u = nb.far2 + x;
      m = L::min(m, L::min(L::add(L::load(u - 1), vc), L::add(L::load(u + 1), vc)));
    }
    if (src) m = L::clear(L::features(src + x), m);  // read before the store: safe in place
    L::store(out + x, m);
  }
  ownDistVerticalRow(src, nb, out, x, width, width, w);
}

// Integer in-row scans as prefix minima: after the steps of 1, 2, 4 (, 8) lanes each
// lane holds min over k of (lane - k) + k * a, the sums clamped at the far value;
// the lanes shifted in hold the far value, which never wins. Saturating sums are
// exact here: min(min(v + a, F) + a, F) = min(v + 2a, F). The carry from the
// previous vector adds 1 .. N times a, clamped the same way.
template <class L>
struct ownScanTables {
  using D = typename L::D;
  static constexpr int kSteps = L::N == 16 ? 4 : 3;  // shifts of 1, 2, 4 (, 8) lanes
  __m128i weight[kSteps];                           // min(shift * a, far) in every lane
  __m128i fillForward[kSteps], fillBackward[kSteps];  // far in the lanes shifted in
  __m128i rampForward, rampBackward;                // min(k * a, far), k = 1 .. N
  ownScanTables(D a, D far) {
    auto ka = [a, far](int k) {
      const long long v = static_cast<long long>(k) * a;
      return static_cast<D>(v < far ? v : far);
    };
    D f[L::N], b[L::N];
    for (int s = 0; s < kSteps; ++s) {
      const int shift = 1 << s;
      weight[s] = L::set1(ka(shift));
      for (int i = 0; i < L::N; ++i) {
        f[i] = i < shift ? far : D(0);
        b[i] = i >= L::N - shift ? far : D(0);
      }
      fillForward[s] = L::load(f);
      fillBackward[s] = L::load(b);
    }
    for (int i = 0; i < L::N; ++i) {
      f[i] = ka(i + 1);
      b[i] = ka(L::N - i);
    }
    rampForward = L::load(f);
    rampBackward = L::load(b);
  }
};

template <int Bytes>
inline __m128i ownShiftIn(__m128i v, __m128i fill, bool forward) {
  return _mm_or_si128(forward ? _mm_slli_si128(v, Bytes) : _mm_srli_si128(v, Bytes), fill);
}

template <class L>
inline __m128i ownScanVector(__m128i v, const ownScanTables<L>& t, bool forward) {
  constexpr int e = static_cast<int>(sizeof(typename L::D));
  const __m128i* fill = forward ? t.fillForward : t.fillBackward;
  v = L::min(v, L::add(ownShiftIn<1 * e>(v, fill[0], forward), t.weight[0]));
  v = L::min(v, L::add(ownShiftIn<2 * e>(v, fill[1], forward), t.weight[1]));
  v = L::min(v, L::add(ownShiftIn<4 * e>(v, fill[2], forward), t.weight[2]));
  if constexpr (L::N == 16) v = L::min(v, L::add(ownShiftIn<8 * e>(v, fill[3], forward), t.weight[3]));
  return v;
}

// Lane 0 (forward: the last lane) broadcast to all lanes.
inline __m128i ownBroadcastLast(__m128i v, vnx8u) {
  const __m128i b = _mm_srli_si128(v, 15);
  return _mm_shuffle_epi32(_mm_shufflelo_epi16(_mm_unpacklo_epi8(b, b), 0), 0);
}
inline __m128i ownBroadcastLast(__m128i v, vnx16u) {
  return _mm_shuffle_epi32(_mm_shufflelo_epi16(_mm_srli_si128(v, 14), 0), 0);
}
inline __m128i ownBroadcastFirst(__m128i v, vnx8u) {
  return _mm_shuffle_epi32(_mm_shufflelo_epi16(_mm_unpacklo_epi8(v, v), 0), 0);
}
inline __m128i ownBroadcastFirst(__m128i v, vnx16u) { return _mm_shuffle_epi32(_mm_shufflelo_epi16(v, 0), 0); }

template <class L>
void ownScanForwardInt(typename L::D* d, int n, typename L::D a) {
  using D = typename L::D;
  const D far = ownDistanceFar<D>();
  if (n < 2 * L::N) return ownDistScanForwardRow(d, n, a);
  const ownScanTables<L> t(a, far);
  __m128i carry = L::set1(far);
  int x = 0;
  for (; x + L::N <= n; x += L::N) {
    __m128i v = L::min(ownScanVector<L>(L::load(d + x), t, true), L::add(carry, t.rampForward));
    L::store(d + x, v);
    carry = ownBroadcastLast(v, D());
  }
  if (x < n) ownDistScanForwardRow(d + x - 1, n - x + 1, a);
}

template <class L>
void ownScanBackwardInt(typename L::D* d, int n, typename L::D a) {
  using D = typename L::D;
  const D far = ownDistanceFar<D>();
  if (n < 2 * L::N) return ownDistScanBackwardRow(d, n, a);
  const ownScanTables<L> t(a, far);
  __m128i carry = L::set1(far);
  int x = n;
  for (; x >= L::N; x -= L::N) {
    __m128i v = L::min(ownScanVector<L>(L::load(d + x - L::N), t, false), L::add(carry, t.rampBackward));
    L::store(d + x - L::N, v);
    carry = ownBroadcastFirst(v, D());
  }
  if (x > 0) ownDistScanBackwardRow(d, x + 1, a);
}

// Float scans: a float sum cannot be regrouped, so the row is cut into four
// stretches that run as four independent chains, each starting with no left
// (right) neighbour. A stretch then takes the carry of the one before it: from its
// first pixel on, v = min(d[x], carry + a) is the serial value (the stretch's own
// value is never below it), and as soon as v equals the stored value the rest of
// the stretch is the serial result already and the join stops.
constexpr int kOwnStretches = 4;

void ownScanForward32f(float* d, int n, float a) {
  if (n < 64) return ownDistScanForwardRow(d, n, a);
  const int q = n / kOwnStretches;
  float* s[kOwnStretches];
  float p[kOwnStretches];
  for (int k = 0; k < kOwnStretches; ++k) {
    s[k] = d + k * q;
    p[k] = s[k][0];
  }
  for (int i = 1; i < q; ++i)
    for (int k = 0; k < kOwnStretches; ++k) {
      const float v = p[k] + a;
      p[k] = v < s[k][i] ? v : s[k][i];
      s[k][i] = p[k];
    }
  ownDistScanForwardRow(d + kOwnStretches * q - 1, n - kOwnStretches * q + 1, a);
  for (int k = 1; k < kOwnStretches; ++k) {
    float carry = d[k * q - 1];
    for (int x = k * q; x < n; ++x) {
      const float v = carry + a;
      if (!(v < d[x])) break;
      d[x] = carry = v;
    }
  }
}

void ownScanBackward32f(float* d, int n, float a) {
  if (n < 64) return ownDistScanBackwardRow(d, n, a);
  const int q = n / kOwnStretches;
  // Stretch k ends (exclusive) at n - k * q and runs right to left.
  float* e[kOwnStretches];
  float p[kOwnStretches];
  for (int k = 0; k < kOwnStretches; ++k) {
    e[k] = d + n - k * q - 1;
    p[k] = e[k][0];
  }
  for (int i = 1; i < q; ++i)
    for (int k = 0; k < kOwnStretches; ++k) {
      const float v = p[k] + a;
      p[k] = v < e[k][-i] ? v : e[k][-i];
      e[k][-i] = p[k];
    }
  ownDistScanBackwardRow(d, n - kOwnStretches * q + 1, a);
  for (int k = 1; k < kOwnStretches; ++k) {
    float carry = d[n - k * q];
    for (int x = n - k * q - 1; x >= 0; --x) {
      const float v = carry + a;
      if (!(v < d[x])) break;
      d[x] = carry = v;
    }
  }
}

}  // namespace

void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx8u> nb, vnx8u* out, int width,
                             const ownChamfer<vnx8u>& w) {
  ownDistVertical<ownLanes8u>(src, nb, out, width, w);
}
void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx16u> nb, vnx16u* out, int width,
                             const ownChamfer<vnx16u>& w) {
  ownDistVertical<ownLanes16u>(src, nb, out, width, w);
}
void ownDistVerticalRow_sse2(const vnx8u* src, ownDistNeighbours<vnx32f> nb, vnx32f* out, int width,
                             const ownChamfer<vnx32f>& w) {
  ownDistVertical<ownLanes32f>(src, nb, out, width, w);
}
void ownDistScanForwardRow_sse2(vnx8u* d, int n, vnx8u a) { ownScanForwardInt<ownLanes8u>(d, n, a); }
void ownDistScanForwardRow_sse2(vnx16u* d, int n, vnx16u a) { ownScanForwardInt<ownLanes16u>(d, n, a); }
void ownDistScanForwardRow_sse2(vnx32f* d, int n, vnx32f a) { ownScanForward32f(d, n, a); }
void ownDistScanBackwardRow_sse2(vnx8u* d, int n, vnx8u a) { ownScanBackwardInt<ownLanes8u>(d, n, a); }
void ownDistScanBackwardRow_sse2(vnx16u* d, int n, vnx16u a) { ownScanBackwardInt<ownLanes16u>(d, n, a); }
void ownDistScanBackwardRow_sse2(vnx32f* d, int n, vnx32f a) { ownScanBackward32f(d, n, a); }
