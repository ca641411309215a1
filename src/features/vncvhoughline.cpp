// Hough line transform: every non-zero pixel votes for (rho, theta) cells, one theta row
// at a time in a ring of three rows, and the peaks of each finished row go into a list of
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

void ownHoughVoteRow(const std::int32_t* xs, int x0, int n, float ysin, float cosT, int offset, int nCounters,
                     std::int32_t* acc) {
  for (int i = x0; i < n; ++i) {
    const float rho = static_cast<float>(xs[i]) * cosT + ysin;
    const int r = _mm_cvtss_si32(_mm_set_ss(rho)) + offset;  // nearest, ties to even
    ++acc[std::min(std::max(r, 0), nCounters - 1)];
  }
}

void ownHoughVoteRow_sse2(const std::int32_t* xs, int n, float ysin, float cosT, int offset, int nCounters,
                          std::int32_t* acc) {
  const __m128 c = _mm_set1_ps(cosT), s = _mm_set1_ps(ysin);
  const __m128i off = _mm_set1_epi32(offset), lo = _mm_setzero_si128(), hi = _mm_set1_epi32(nCounters - 1);
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    __m128i r = _mm_add_epi32(_mm_cvtps_epi32(_mm_add_ps(_mm_mul_ps(_mm_cvtepi32_ps(ownLoad(xs + i)), c), s)), off);
    r = _mm_and_si128(r, _mm_cmpgt_epi32(r, lo));  // below 0 becomes 0
    const __m128i over = _mm_cmpgt_epi32(r, hi);
    r = _mm_or_si128(_mm_andnot_si128(over, r), _mm_and_si128(over, hi));
    alignas(16) std::int32_t idx[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(idx), r);
    ++acc[idx[0]];
    ++acc[idx[1]];
    ++acc[idx[2]];
    ++acc[idx[3]];
  }
  ownHoughVoteRow(xs, i, n, ysin, cosT, offset, nCounters, acc);
}

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
void ownHoughPeaks(const std::int32_t* prev, const std::int32_t* cur, const std::int32_t* next, int nRho, int t,
                   int threshold, ownHoughList& list) {
  for (int r = 0; r < nRho; ++r) {
    const std::int32_t v = cur[r];
    if (v <= threshold) continue;
    if (!(v > cur[r - 1] && v >= cur[r + 1] && v > prev[r] && v >= next[r])) continue;
    ++list.found;
    if (list.size == list.capacity && v < list.rec[list.size - 1].votes) continue;
    list.insert({r, t, v});
  }
}

inline char* ownAlign16(void* p) {
  return reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(p) + 15) & ~std::uintptr_t{15});
}

// Rows with non-zero pixels as (y, count, x ...), in raster order; returns the end.
std::int32_t* ownHoughGather(const vnx8u* pSrc, int srcStep, vnxiSize roi, std::int32_t* out) {
  const __m128i z = _mm_setzero_si128();
  for (int y = 0; y < roi.height; ++y) {
    const vnx8u* s = ownRow(pSrc, srcStep, y);
    std::int32_t* xs = out + 2;
    int n = 0, x = 0;
    for (; x + 16 <= roi.width; x += 16)
      for (unsigned m = ~unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(ownLoad(s + x), z))) & 0xFFFFu; m; m &= m - 1)
        xs[n++] = x + __builtin_ctz(m);
    for (; x < roi.width; ++x)
      if (s[x]) xs[n++] = x;
    if (n) {
      out[0] = y;
      out[1] = n;
      out = xs + n;
    }
  }
  return out;
}

// Bytes the transform uses of the work buffer, in 64 bits.
std::int64_t ownHoughUsedBytes(vnxiSize roi, std::int64_t nRho, std::int64_t nTheta, int maxLineCount) {
  return 16 * std::int64_t(maxLineCount) + 16 * (nRho + 4) + 8 * (nTheta + 1) +
         (4 * std::int64_t(roi.width) + 8) * roi.height + 64;
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
  // Work buffer: the list, the ring of three theta rows, the two angle tables, the points.
  ownHoughList list{reinterpret_cast<ownHoughRecord*>(ownAlign16(pBuffer)), maxLineCount};
  std::int32_t* ring = reinterpret_cast<std::int32_t*>(ownAlign16(list.rec + maxLineCount));
  float* cosTab = reinterpret_cast<float*>(ring + 3 * std::int64_t(nCounters));
  float* sinTab = cosTab + nTheta + 1;
  std::int32_t* points = reinterpret_cast<std::int32_t*>(ownAlign16(sinTab + nTheta + 1));
  // theta_0 = 0, theta_t+1 = theta_t + thetaStep accumulated in float; the tables hold
  // cos and sin (double, rounded to float) times the float reciprocal of rhoStep.
  const float irho = 1.0f / delta.rho;
  float theta = 0.0f;
  for (int t = 0; t <= nTheta; ++t, theta += delta.theta) {
    cosTab[t] = static_cast<float>(std::cos(double(theta))) * irho;
    sinTab[t] = static_cast<float>(std::sin(double(theta))) * irho;
  }
  const std::int32_t* end = ownHoughGather(pSrc, srcStep, roiSize, points);
  // Ring rows hold rho indexes -2 .. nRho + 1; the counter of rho index r is row[r + 2].
  const int offset = (nRho - 1) / 2 + 2;
  auto row = [&](int t) { return ring + std::int64_t((t % 3 + 3) % 3) * nCounters; };
  std::memset(ring, 0, sizeof(std::int32_t) * 3 * std::size_t(nCounters));
  for (int t = 0; t <= nTheta; ++t) {
    if (t < nTheta) {
      std::int32_t* acc = row(t);
      std::memset(acc, 0, sizeof(std::int32_t) * std::size_t(nCounters));
      for (const std::int32_t* p = points; p < end; p += 2 + p[1])
        ownHoughVoteRow_sse2(p + 2, p[1], static_cast<float>(p[0]) * sinTab[t], cosTab[t], offset, nCounters, acc);
    } else {
      std::memset(row(t), 0, sizeof(std::int32_t) * std::size_t(nCounters));  // no row after the last
    }
    if (t >= 1) ownHoughPeaks(row(t - 2) + 2, row(t - 1) + 2, row(t) + 2, nRho, t - 1, threshold, list);
  }
  const int half = (nRho - 1) / 2;
  for (int i = 0; i < list.size; ++i) {
    pLine[2 * i] = static_cast<float>(list.rec[i].rho - half) * delta.rho;
    pLine[2 * i + 1] = static_cast<float>(list.rec[i].theta) * delta.theta;
  }
  *pLineCount = list.size;
  return list.found > maxLineCount ? vnxStatusTooManyLines : vnxStatusOk;
}
