// Hough line transform: every non-zero pixel votes for (rho, theta) cells, two theta
// rows at a time in a ring of four rows, and the peaks of each finished row go into a list of
// the strongest lines, sorted by votes with earlier-found lines first among equals.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "features.h"
#include "simd.h"

namespace {
constexpr double kOwnPi = 3.141592653589793;

// Truncation as the processor's conversion does it: out of range (or NaN) is INT32_MIN.
inline std::int32_t ownTruncToInt(double v) { return (v > -2147483649.0 && v < 2147483648.0) ? std::int32_t(v) : INT32_MIN; }
}  // namespace

std::int32_t ownHoughRhoCount(vnxiSize roi, float rhoStep) {
  const float n = static_cast<float>(2 * (std::int64_t(roi.width) + roi.height) + 1) / rhoStep;
  return ownTruncToInt(n);
}
// pi over the step in double. The float nearest pi (3.14159274, just above it) is
// accepted as a step and counts one row: the only step where the quotient falls below 1.
std::int32_t ownHoughThetaCount(float thetaStep) {
  const double q = kOwnPi / thetaStep;
  return q < 1.0 ? 1 : ownTruncToInt(q);
}

// Coordinates of gathered points: x in the low `shift` bits, y above them. A ROI the
// buffer can size has fewer than 2^29 pixels, so the two fit 31 bits.
int ownHoughShift(int width) {
  int shift = 0;
  while ((std::int64_t{1} << shift) < width) ++shift;
  return shift;
}

namespace {
// Rho indexes of four points for one theta row: nearest, ties to even, plus the offset;
// clamped to the counters only where the counts allow an index outside them.
template <ownHoughIndex kIndex>
inline __m128i ownHoughIndex4(__m128 x, __m128 y, __m128 c, __m128 s, __m128i off, __m128i hi) {
  __m128i r = _mm_add_epi32(_mm_cvtps_epi32(_mm_add_ps(_mm_mul_ps(x, c), _mm_mul_ps(y, s))), off);
  if (kIndex == ownHoughIndex::Clamped) {
    r = _mm_and_si128(r, _mm_cmpgt_epi32(r, _mm_setzero_si128()));  // below 0 becomes 0
    const __m128i over = _mm_cmpgt_epi32(r, hi);
    r = _mm_or_si128(_mm_andnot_si128(over, r), _mm_and_si128(over, hi));
  }
  return r;
}
}  // namespace

// Both theta rows take the votes of the same four points; their increments alternate,
// so a run of votes into one counter of one row waits on half as many stores. The
// last (n mod 4) points go through the same lanes (the point list is followed by
// readable entries); the lanes past the end vote into counter 0 (rho index -2), which
// no peak test reads.
template <ownHoughIndex kIndex>
void ownHoughVotePair_sse2(const std::uint32_t* points, int n, int shift, const ownHoughTheta& a,
                           const ownHoughTheta& b, int offset, int nCounters) {
  const __m128 ca = _mm_set1_ps(a.cosT), sa = _mm_set1_ps(a.sinT), cb = _mm_set1_ps(b.cosT), sb = _mm_set1_ps(b.sinT);
  const __m128i off = _mm_set1_epi32(offset), hi = _mm_set1_epi32(nCounters - 1);
  const __m128i xMask = _mm_set1_epi32((1 << shift) - 1), yShift = _mm_cvtsi32_si128(shift);
  std::int32_t* const accA = a.acc;
  std::int32_t* const accB = b.acc;
  alignas(16) std::int32_t ia[4], ib[4];
  auto vote4 = [&](int i, __m128i lanes) {
    const __m128i p = ownLoad(points + i);
    const __m128 x = _mm_cvtepi32_ps(_mm_and_si128(p, xMask)), y = _mm_cvtepi32_ps(_mm_srl_epi32(p, yShift));
    _mm_store_si128(reinterpret_cast<__m128i*>(ia), _mm_and_si128(lanes, ownHoughIndex4<kIndex>(x, y, ca, sa, off, hi)));
    _mm_store_si128(reinterpret_cast<__m128i*>(ib), _mm_and_si128(lanes, ownHoughIndex4<kIndex>(x, y, cb, sb, off, hi)));
    ++accA[ia[0]], ++accB[ib[0]], ++accA[ia[1]], ++accB[ib[1]];
    ++accA[ia[2]], ++accB[ib[2]], ++accA[ia[3]], ++accB[ib[3]];
  };
  int i = 0;
  for (; i + 4 <= n; i += 4) vote4(i, _mm_set1_epi32(-1));
  alignas(16) static const std::int32_t kLanes[7] = {-1, -1, -1, 0, 0, 0, 0};
  if (i < n) vote4(i, _mm_loadu_si128(reinterpret_cast<const __m128i*>(kLanes + 3 - (n - i))));
}
template void ownHoughVotePair_sse2<ownHoughIndex::Clamped>(const std::uint32_t*, int, int, const ownHoughTheta&,
                                                            const ownHoughTheta&, int, int);
template void ownHoughVotePair_sse2<ownHoughIndex::InRange>(const std::uint32_t*, int, int, const ownHoughTheta&,
                                                            const ownHoughTheta&, int, int);

namespace {

struct ownHoughRecord {
  std::int32_t rho, theta, votes;
};

// The list of the strongest lines and the count of every peak found.
struct ownHoughList {
  ownHoughRecord* rec;
  int capacity;
  int size = 0;
  std::int64_t found = 0;
  // Before the first record with fewer votes: among equals the earlier line stays ahead.
  void insert(ownHoughRecord r) {
    int pos = 0;
    while (pos < size && rec[pos].votes >= r.votes) ++pos;
    if (pos >= capacity) return;
    const int last = std::min(size, capacity - 1);
    std::memmove(rec + pos + 1, rec + pos, sizeof(ownHoughRecord) * std::size_t(last - pos));
    rec[pos] = r;
    if (size < capacity) ++size;
  }
};

// Peaks of theta row t: v > threshold, v > the cell at r - 1 and v >= the cell at r + 1,
// v > the same rho in the previous theta row and v >= it in the next. Every peak counts
// as found; one below the last record of a full list is not inserted.
// Cells above the threshold are few: sixteen at a time are tested against it first.
void ownHoughPeaks(const std::int32_t* prev, const std::int32_t* cur, const std::int32_t* next, int nRho, int t,
                   int threshold, ownHoughList& list) {
  auto peak = [&](int r) {
    const std::int32_t v = cur[r];
    if (v <= threshold || !(v > cur[r - 1] && v >= cur[r + 1] && v > prev[r] && v >= next[r])) return;
    ++list.found;
    if (list.size == list.capacity && v < list.rec[list.size - 1].votes) return;
    list.insert({r, t, v});
  };
  const __m128i thr = _mm_set1_epi32(threshold);
  int r = 0;
  for (; r + 16 <= nRho; r += 16) {
    const __m128i above = _mm_or_si128(
        _mm_or_si128(_mm_cmpgt_epi32(ownLoad(cur + r), thr), _mm_cmpgt_epi32(ownLoad(cur + r + 4), thr)),
        _mm_or_si128(_mm_cmpgt_epi32(ownLoad(cur + r + 8), thr), _mm_cmpgt_epi32(ownLoad(cur + r + 12), thr)));
    if (_mm_movemask_epi8(above) == 0) continue;
    for (int k = 0; k < 16; ++k) peak(r + k);
  }
  for (; r < nRho; ++r) peak(r);
}

inline char* ownAlign16(void* p) {
  return reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(p) + 15) & ~std::uintptr_t{15});
}

// The non-zero pixels as x | y << shift, in raster order, followed by four zero
// entries that the last vector may read; returns their count.
int ownHoughGather(const vnx8u* pSrc, int srcStep, vnxiSize roi, int shift, std::uint32_t* out) {
  const __m128i z = _mm_setzero_si128();
  int n = 0;
  for (int y = 0; y < roi.height; ++y) {
    const vnx8u* s = ownRow(pSrc, srcStep, y);
    const std::uint32_t row = std::uint32_t(y) << shift;
    int x = 0;
    for (; x + 16 <= roi.width; x += 16)
      for (unsigned m = ~unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(ownLoad(s + x), z))) & 0xFFFFu; m; m &= m - 1)
        out[n++] = row | std::uint32_t(x + __builtin_ctz(m));
    for (; x < roi.width; ++x)
      if (s[x]) out[n++] = row | std::uint32_t(x);
  }
  std::memset(out + n, 0, 4 * sizeof(std::uint32_t));
  return n;
}

// Bytes the transform uses of the work buffer, in 64 bits.
std::int64_t ownHoughUsedBytes(vnxiSize roi, std::int64_t nRho, std::int64_t nTheta, int maxLineCount) {
  return 16 * std::int64_t(maxLineCount) + 16 * (nRho + 4) + 8 * (nTheta + 1) +
         (4 * std::int64_t(roi.width) + 8) * roi.height + 80;
}

// The checks of the transform: pointers, then the step (only tested for being positive),
// then sizes and the line capacity, then the resolution and the threshold.
vnxStatus ownCheckHoughLine(const void* pSrc, int srcStep, vnxiSize roi, vnxiHoughDelta delta, int threshold,
                            const void* pLine, int maxLineCount, const void* pLineCount, const void* pBuffer) {
  if (!pSrc || !pLine || !pLineCount || !pBuffer) return vnxStatusNullPtr;
  if (srcStep < 1) return vnxStatusBadStep;
  if (roi.width < 1 || roi.height < 1 || maxLineCount < 1) return vnxStatusBadSize;
  const float wh = static_cast<float>(std::int64_t(roi.width) + roi.height);
  if (!(delta.rho > 0) || delta.rho > wh || !(delta.theta > 0) || delta.theta > static_cast<float>(kOwnPi) ||
      threshold < 1)
    return vnxStatusBadArg;
  // A resolution so fine that the work would not fit a buffer an int can size.
  const std::int32_t nRho = ownHoughRhoCount(roi, delta.rho), nTheta = ownHoughThetaCount(delta.theta);
  if (nRho < 1 || nTheta < 1 || ownHoughUsedBytes(roi, nRho, nTheta, maxLineCount) > INT32_MAX)
    return vnxStatusBadArg;
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiHoughLineGetSize_8u_C1R(vnxiSize roiSize, vnxiHoughDelta delta, int maxLineCount,
                                              int* pBufferSize) noexcept {
  if (!pBufferSize) return vnxStatusNullPtr;
  if (roiSize.width < 1 || roiSize.height < 1) return vnxStatusBadSize;
  if (!(delta.rho > 0) || !(delta.theta > 0)) return vnxStatusBadArg;
  // 32-bit arithmetic, wrapping as the processor's does: R = 4 * nRho + 16,
  // 16 * maxLineCount + 4 * R + 8 * nTheta + (4 * width + 48) * height + 200.
  const std::uint32_t nRho = std::uint32_t(ownHoughRhoCount(roiSize, delta.rho));
  const std::uint32_t nTheta = std::uint32_t(ownHoughThetaCount(delta.theta));
  const std::uint32_t R = 4u * nRho + 16u;
  const std::uint32_t size = 16u * std::uint32_t(maxLineCount) + 4u * R + 8u * nTheta +
                             (4u * std::uint32_t(roiSize.width) + 48u) * std::uint32_t(roiSize.height) + 200u;
  *pBufferSize = static_cast<int>(size);
  return size > 2147483647u ? vnxStatusSizeOverflow : vnxStatusOk;
}

VNX_API vnxStatus vnxiHoughLine_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnxiHoughDelta delta,
                                          int threshold, vnx32f* pLine, int maxLineCount, int* pLineCount,
                                          vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheckHoughLine(pSrc, srcStep, roiSize, delta, threshold, pLine, maxLineCount, pLineCount,
                                       pBuffer))
    return st;
  const int nRho = ownHoughRhoCount(roiSize, delta.rho), nTheta = ownHoughThetaCount(delta.theta);
  const int nCounters = nRho + 4;
  // Work buffer: the list, the ring of four theta rows, the two angle tables, the points.
  ownHoughList list{reinterpret_cast<ownHoughRecord*>(ownAlign16(pBuffer)), maxLineCount};
  std::int32_t* ring = reinterpret_cast<std::int32_t*>(ownAlign16(list.rec + maxLineCount));
  float* cosTab = reinterpret_cast<float*>(ring + 4 * std::int64_t(nCounters));
  float* sinTab = cosTab + nTheta + 1;
  std::uint32_t* points = reinterpret_cast<std::uint32_t*>(ownAlign16(sinTab + nTheta + 1));
  // theta_0 = 0, theta_t+1 = theta_t + thetaStep accumulated in float; the tables hold
  // cos and sin (double, rounded to float) times the float reciprocal of rhoStep.
  const float irho = 1.0f / delta.rho;
  float theta = 0.0f;
  for (int t = 0; t <= nTheta; ++t, theta += delta.theta) {
    cosTab[t] = static_cast<float>(std::cos(double(theta))) * irho;
    sinTab[t] = static_cast<float>(std::sin(double(theta))) * irho;
  }
  const int shift = ownHoughShift(roiSize.width);
  const int nPoints = ownHoughGather(pSrc, srcStep, roiSize, shift, points);
  // Four ring rows hold rho indexes -2 .. nRho + 1 (the counter of rho index r is
  // row[r + 2]); theta rows are voted two at a time, so the rows t - 2 .. t + 1 are held
  // while the peaks of t - 1 and t are taken.
  const int offset = (nRho - 1) / 2 + 2;
  auto row = [&](int t) { return ring + std::int64_t(t & 3) * nCounters; };
  auto clear = [&](int t) { std::memset(row(t), 0, sizeof(std::int32_t) * std::size_t(nCounters)); };
  auto peaks = [&](int t) { ownHoughPeaks(row(t - 1) + 2, row(t) + 2, row(t + 1) + 2, nRho, t, threshold, list); };
  // Below 2^18 rho cells every index falls within the four spare counters (the float
  // products err by far less than half a cell), so the votes need no clamp.
  const auto vote = nRho < (1 << 18) ? ownHoughVotePair_sse2<ownHoughIndex::InRange>
                                     : ownHoughVotePair_sse2<ownHoughIndex::Clamped>;
  clear(-1);
  for (int t = 0; t < nTheta; t += 2) {
    clear(t);
    clear(t + 1);
    // An odd last row votes its twin into the row after it, cleared again afterwards.
    const int u = t + 1 < nTheta ? t + 1 : t;
    vote(points, nPoints, shift, {cosTab[t], sinTab[t], row(t)}, {cosTab[u], sinTab[u], row(t + 1)}, offset,
         nCounters);
    if (u == t) clear(t + 1);
    if (t >= 1) peaks(t - 1);
    peaks(t);
  }
  if (nTheta % 2 == 0) {
    clear(nTheta);  // no row after the last
    peaks(nTheta - 1);
  }
  const int half = (nRho - 1) / 2;
  for (int i = 0; i < list.size; ++i) {
    pLine[2 * i] = static_cast<float>(list.rec[i].rho - half) * delta.rho;
    pLine[2 * i + 1] = static_cast<float>(list.rec[i].theta) * delta.theta;
  }
  *pLineCount = list.size;
  return list.found > maxLineCount ? vnxStatusTooManyLines : vnxStatusOk;
}
