// Sub-pixel copies of a whole ROI and of a window around a point.
#include "pyramids/vncvcopysubpix.h"

#include "check.h"
#include "simd.h"

namespace {
// Eight 14-bit sums Q of 8u pixels x .. x + 7 as two vectors of 32-bit lanes: the
// products need them (255 x 16388 x 4 < 2^31); _mm_madd_epi16 pairs s00 with s10 and
// s01 with s11.
inline void ownSubpixSums8(const vnx8u* r0, const vnx8u* r1, __m128i wTop, __m128i wBot, __m128i q[2]) {
  const __m128i z = _mm_setzero_si128();
  const __m128i a0 = _mm_unpacklo_epi8(ownLoad64(r0), z), a1 = _mm_unpacklo_epi8(ownLoad64(r0 + 1), z);
  const __m128i b0 = _mm_unpacklo_epi8(ownLoad64(r1), z), b1 = _mm_unpacklo_epi8(ownLoad64(r1 + 1), z);
  q[0] = _mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(a0, a1), wTop), _mm_madd_epi16(_mm_unpacklo_epi16(b0, b1), wBot));
  q[1] = _mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(a0, a1), wTop), _mm_madd_epi16(_mm_unpackhi_epi16(b0, b1), wBot));
}
inline __m128i ownPairs(std::int32_t lo, std::int32_t hi) {
  return _mm_set1_epi32(static_cast<int>((static_cast<std::uint32_t>(hi) << 16) | static_cast<std::uint16_t>(lo)));
}
}  // namespace

// The vectors of outputs x .. x + 7 read r0[x .. x + 8] and r1[x .. x + 8], inside
// the n + 1 source pixels of a row; a row not a whole number of vectors ends with
// one more vector over its last eight outputs.
void ownCopySubpixRow_sse2(const vnx8u* r0, const vnx8u* r1, vnx8u* d, const ownSubpixWeights& w, std::int64_t n) {
  const __m128i wTop = ownPairs(w.w00, w.w10), wBot = ownPairs(w.w01, w.w11), half = _mm_set1_epi32(8192);
  auto step = [&](std::int64_t x) {
    __m128i q[2];
    ownSubpixSums8(r0 + x, r1 + x, wTop, wBot, q);
    const __m128i p16 = _mm_packs_epi32(_mm_srli_epi32(_mm_add_epi32(q[0], half), 14),
                                        _mm_srli_epi32(_mm_add_epi32(q[1], half), 14));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + x), _mm_packus_epi16(p16, p16));
  };
  std::int64_t x = 0;
  for (; x + 8 <= n; x += 8) step(x);
  if (x < n && n >= 8) step(x = n - 8);
  else ownCopySubpixRow<vnx8u, vnx8u>(r0, r1, d, w, 14, x, n);
}
void ownCopySubpixRow_sse2(const vnx8u* r0, const vnx8u* r1, vnx16u* d, const ownSubpixWeights& w, int shift,
                           std::int64_t n) {
  const __m128i wTop = ownPairs(w.w00, w.w10), wBot = ownPairs(w.w01, w.w11);
  const __m128i half = _mm_set1_epi32(1 << (shift - 1)), count = _mm_cvtsi32_si128(shift);
  auto step = [&](std::int64_t x) {
    __m128i q[2];
    ownSubpixSums8(r0 + x, r1 + x, wTop, wBot, q);
    ownStore(d + x, _mm_packs_epi32(_mm_srl_epi32(_mm_add_epi32(q[0], half), count),
                                    _mm_srl_epi32(_mm_add_epi32(q[1], half), count)));
  };
  std::int64_t x = 0;
  for (; x + 8 <= n; x += 8) step(x);
  if (x < n && n >= 8) step(x = n - 8);
  else ownCopySubpixRow<vnx8u, vnx16u>(r0, r1, d, w, shift, x, n);
}

namespace {

// Pointers, ROI, steps (source against width + 1 pixels: the copy reads one more
// column and row), then the destination step against its element size.
template <class S, class D>
vnxStatus ownCopySubpix(const S* src, int srcStep, D* dst, int dstStep, vnxiSize roi, float dx, float dy, int shift) {
  if (vnxStatus st = ownCheckPtrs({src, dst})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  if (vnxStatus st = ownCheckSteps({ownImgWide<S>(srcStep, std::int64_t{roi.width} + 1), ownImgWide<D>(dstStep, roi.width)}))
    return st;
  const ownSubpixWeights w = ownSubpixWeightsOf(ownSubpixFraction(dx), ownSubpixFraction(dy));
  for (int y = 0; y < roi.height; ++y) {
    const S* r0 = ownRow(src, srcStep, y);
    ownCopySubpixRowAny<S, D>(r0, ownRow(r0, srcStep, 1), ownRow(dst, dstStep, y), w, shift, roi.width);
  }
  return vnxStatusOk;
}

// Pointers (images, then pMin and pMax), source size, window size, source step, window step.
template <class S, class D>
vnxStatus ownCopySubpixIntersectChecked(const S* src, int srcStep, vnxiSize srcRoi, D* dst, int dstStep,
                                        vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin, vnxiPoint* pMax,
                                        int shift) {
  if (vnxStatus st = ownCheckPtrs({src, dst})) return st;
  if (vnxStatus st = ownCheckPtrs({pMin, pMax})) return st;
  if (vnxStatus st = ownCheckRoi(srcRoi)) return st;
  if (vnxStatus st = ownCheckRoi(dstRoi)) return st;
  if (vnxStatus st = ownCheckSteps({ownImgWide<S>(srcStep, srcRoi.width), ownImgWide<D>(dstStep, dstRoi.width)}))
    return st;
  int lo[2], hi[2];
  ownCopySubpixIntersect<S, D>(src, srcStep, srcRoi, dst, dstStep, dstRoi, point.x, point.y, shift, lo, hi);
  *pMin = vnxiPoint{lo[0], lo[1]};
  *pMax = vnxiPoint{hi[0], hi[1]};
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiCopySubpix_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep, vnxiSize roiSize,
                                        vnx32f dx, vnx32f dy) noexcept {
  return ownCopySubpix<vnx8u, vnx8u>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, 14);
}
VNX_API vnxStatus vnxiCopySubpix_8u16u_C1R_Sfs(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                               vnxiSize roiSize, vnx32f dx, vnx32f dy, int scaleFactor) noexcept {
  const int shift = 14 + std::min(std::max(scaleFactor, -64), 64);
  return ownCopySubpix<vnx8u, vnx16u>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, shift);
}
VNX_API vnxStatus vnxiCopySubpix_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                           vnxiSize roiSize, vnx32f dx, vnx32f dy) noexcept {
  return ownCopySubpix<vnx8u, vnx32f>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, 0);
}
VNX_API vnxStatus vnxiCopySubpix_16u_C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                         vnxiSize roiSize, vnx32f dx, vnx32f dy) noexcept {
  return ownCopySubpix<vnx16u, vnx16u>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, 14);
}
VNX_API vnxStatus vnxiCopySubpix_16u32f_C1R(const vnx16u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, vnx32f dx, vnx32f dy) noexcept {
  return ownCopySubpix<vnx16u, vnx32f>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, 0);
}
VNX_API vnxStatus vnxiCopySubpix_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                         vnxiSize roiSize, vnx32f dx, vnx32f dy) noexcept {
  return ownCopySubpix<vnx32f, vnx32f>(pSrc, srcStep, pDst, dstStep, roiSize, dx, dy, 0);
}

VNX_API vnxStatus vnxiCopySubpixIntersect_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst,
                                                 int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                 vnxiPoint* pMax) noexcept {
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, 14);
}
VNX_API vnxStatus vnxiCopySubpixIntersect_8u16u_C1R_Sfs(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi,
                                                        vnx16u* pDst, int dstStep, vnxiSize dstRoi, vnxiPoint32f point,
                                                        vnxiPoint* pMin, vnxiPoint* pMax, int scaleFactor) noexcept {
  const int shift = 14 + std::min(std::max(scaleFactor, -64), 64);
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, shift);
}
VNX_API vnxStatus vnxiCopySubpixIntersect_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst,
                                                    int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                    vnxiPoint* pMax) noexcept {
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, 0);
}
VNX_API vnxStatus vnxiCopySubpixIntersect_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst,
                                                  int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                  vnxiPoint* pMax) noexcept {
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, 14);
}
VNX_API vnxStatus vnxiCopySubpixIntersect_16u32f_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst,
                                                     int dstStep, vnxiSize dstRoi, vnxiPoint32f point,
                                                     vnxiPoint* pMin, vnxiPoint* pMax) noexcept {
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, 0);
}
VNX_API vnxStatus vnxiCopySubpixIntersect_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst,
                                                  int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                  vnxiPoint* pMax) noexcept {
  return ownCopySubpixIntersectChecked(pSrc, srcStep, srcRoi, pDst, dstStep, dstRoi, point, pMin, pMax, 0);
}
