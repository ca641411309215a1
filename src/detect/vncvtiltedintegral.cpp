// Tilted (45-degree) summed-area tables of 8u images, W + 2 by H + 2: rows 0 and 1
// hold the offset; each source row r gives table row r + 2 from the two rows above
// it (P = row r + 1, PP = row r), the source row s and, for the squared table, the
// same recurrence on squares:
//   T[0] = P[1]
//   T[x] = s[x-1] + s[x] + P[x-1] + P[x+1] - PP[x]     x = 1 .. W-1
//   T[W] = s[W-1] + P[W-1] + P[W+1] - PP[W]
//   T[W+1] = P[W]
// The 32f sum tables add T[W] to the value the caller left there (see the header).
#include <algorithm>

#include "check.h"
#include "integral.h"

namespace {

// One interior entry of the sum table: 32s wraps; 32f is evaluated in double as
// ((P[x-1] - PP[x]) + P[x+1]) + s[x-1] + s[x] and rounded once.
inline vnx32s ownTiltedEntry(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t s0, std::uint32_t s1) {
  return static_cast<vnx32s>(s0 + s1 + static_cast<std::uint32_t>(pl) + static_cast<std::uint32_t>(pr) -
                             static_cast<std::uint32_t>(pp));
}
inline vnx32f ownTiltedEntry(vnx32f pl, vnx32f pp, vnx32f pr, std::uint32_t s0, std::uint32_t s1) {
  return static_cast<float>(((static_cast<double>(pl) - pp) + pr) + s0 + s1);
}
// The last column: s[W-1] + P[W-1] + P[W+1] - PP[W], assigned for 32s, rounded to
// single and added to the prior content for 32f.
inline void ownTiltedLast(vnx32s& t, vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t s0) {
  t = static_cast<vnx32s>(s0 + static_cast<std::uint32_t>(pl) + static_cast<std::uint32_t>(pr) -
                          static_cast<std::uint32_t>(pp));
}
inline void ownTiltedLast(vnx32f& t, vnx32f pl, vnx32f pp, vnx32f pr, std::uint32_t s0) {
  t += static_cast<float>(static_cast<double>(s0) + pl + pr - pp);
}

// Square entries: the integer square term first, then ((sq + P[x-1]) - PP[x]) + P[x+1]
// inside, ((sq + P[W-1]) + P[W+1]) - PP[W] in the last column; both assigned.
inline vnx64f ownTiltedSqrEntry(vnx64f pl, vnx64f pp, vnx64f pr, std::uint32_t sq) {
  return ((static_cast<double>(sq) + pl) - pp) + pr;
}
inline vnx32s ownTiltedSqrEntry(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t sq) {
  return static_cast<vnx32s>(sq + static_cast<std::uint32_t>(pl) - static_cast<std::uint32_t>(pp) +
                             static_cast<std::uint32_t>(pr));
}
inline vnx64f ownTiltedSqrLast(vnx64f pl, vnx64f pp, vnx64f pr, std::uint32_t sq) {
  return ((static_cast<double>(sq) + pl) + pr) - pp;
}
inline vnx32s ownTiltedSqrLast(vnx32s pl, vnx32s pp, vnx32s pr, std::uint32_t sq) {
  return ownTiltedSqrEntry(pl, pp, pr, sq);
}

}  // namespace

// One table row from the two above it (t, p, pp address column 0).
template <class S>
void ownTiltedRow(const vnx8u* s, const S* p, const S* pp, S* t, int w) {
  t[0] = p[1];
  for (int x = 1; x < w; ++x) t[x] = ownTiltedEntry(p[x - 1], pp[x], p[x + 1], s[x - 1], s[x]);
  ownTiltedLast(t[w], p[w - 1], pp[w], p[w + 1], s[w - 1]);
  t[w + 1] = p[w];
}

template <class Q>
void ownTiltedSqrRow(const vnx8u* s, const Q* p, const Q* pp, Q* t, int w) {
  auto sq = [](unsigned v) { return v * v; };
  t[0] = p[1];
  for (int x = 1; x < w; ++x) t[x] = ownTiltedSqrEntry(p[x - 1], pp[x], p[x + 1], sq(s[x - 1]) + sq(s[x]));
  t[w] = ownTiltedSqrLast(p[w - 1], pp[w], p[w + 1], sq(s[w - 1]));
  t[w + 1] = p[w];
}

namespace {

template <class S, class Q>
void ownTiltedImage(const vnx8u* pSrc, int srcStep, S* pDst, int dstStep, Q* pSqr, int sqrStep, vnxiSize roi,
                    S val, Q valSqr) {
  const int w = roi.width;
  for (int y = 0; y < 2; ++y) {
    std::fill_n(ownRow(pDst, dstStep, y), w + 2, val);
    if (pSqr) std::fill_n(ownRow(pSqr, sqrStep, y), w + 2, valSqr);
  }
  for (int r = 0; r < roi.height; ++r) {
    const vnx8u* s = ownRow(pSrc, srcStep, r);
    ownTiltedRow(s, ownRow(pDst, dstStep, r + 1), ownRow(pDst, dstStep, r), ownRow(pDst, dstStep, r + 2), w);
    if (pSqr)
      ownTiltedSqrRow(s, ownRow(pSqr, sqrStep, r + 1), ownRow(pSqr, sqrStep, r), ownRow(pSqr, sqrStep, r + 2), w);
  }
}

}  // namespace

VNX_API vnxStatus vnxiTiltedIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32s val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 2))
    return st;
  ownTiltedImage<vnx32s, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedIntegral_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32f val) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, roiSize, 2))
    return st;
  ownTiltedImage<vnx32f, vnx64f>(pSrc, srcStep, pDst, dstStep, nullptr, 0, roiSize, val, 0.0);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s64f_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                    vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32f64f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32f val,
                                                    vnx64f valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                 vnx32s* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                 vnx32s valSqr) noexcept {
  if (vnxStatus st = ownCheckBuilder(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, 2))
    return st;
  ownTiltedImage(pSrc, srcStep, pDst, dstStep, pSqr, sqrStep, roiSize, val, valSqr);
  return vnxStatusOk;
}
