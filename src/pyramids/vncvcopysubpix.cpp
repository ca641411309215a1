// Sub-pixel copies of a whole ROI and of a window around a point.
#include "pyramids/vncvcopysubpix.h"

#include "check.h"
#include "simd.h"

// 8u to 8u, eight pixels at a time: the 14-bit products need 32-bit lanes
// (255 x 16388 x 4 < 2^31); _mm_madd_epi16 pairs s00 with s10 and s01 with s11.
void ownCopySubpixRow_sse2(const vnx8u* r0, const vnx8u* r1, vnx8u* d, const ownSubpixWeights& w, std::int64_t n) {
  const __m128i z = _mm_setzero_si128();
  const __m128i wTop = _mm_set1_epi32((w.w10 << 16) | w.w00), wBot = _mm_set1_epi32((w.w11 << 16) | w.w01);
  const __m128i half = _mm_set1_epi32(8192);
  std::int64_t x = 0;
  for (; x + 8 <= n; x += 8) {
    const __m128i a0 = _mm_unpacklo_epi8(ownLoad64(r0 + x), z), a1 = _mm_unpacklo_epi8(ownLoad64(r0 + x + 1), z);
    const __m128i b0 = _mm_unpacklo_epi8(ownLoad64(r1 + x), z), b1 = _mm_unpacklo_epi8(ownLoad64(r1 + x + 1), z);
    __m128i out[2];
    for (int h = 0; h < 2; ++h) {
      const __m128i top = h ? _mm_unpackhi_epi16(a0, a1) : _mm_unpacklo_epi16(a0, a1);
      const __m128i bot = h ? _mm_unpackhi_epi16(b0, b1) : _mm_unpacklo_epi16(b0, b1);
      const __m128i q = _mm_add_epi32(_mm_madd_epi16(top, wTop), _mm_madd_epi16(bot, wBot));
      out[h] = _mm_srli_epi32(_mm_add_epi32(q, half), 14);
    }
    const __m128i p16 = _mm_packs_epi32(out[0], out[1]);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + x), _mm_packus_epi16(p16, p16));
  }
  ownCopySubpixRow<vnx8u, vnx8u>(r0, r1, d, w, 14, x, n);
}

namespace {

// Pointers, ROI, steps (source against width + 1 pixels: the copy reads one more
// column and row), then the destination step against its element size.
template <class S, class D>
vnxStatus ownCopySubpix(const S* src, int srcStep, D* dst, int dstStep, vnxiSize roi, float dx, float dy, int shift) {
  if (vnxStatus st = ownCheckPtrs({src, dst})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  if (vnxStatus st = ownCheckSteps({ownImgRowBytes<S>(srcStep, std::int64_t{roi.width} + 1), ownImg<D>(dstStep, roi.width)}))
    return st;
  const ownSubpixWeights w = ownSubpixWeightsOf(ownSubpixFraction(dx), ownSubpixFraction(dy));
  for (int y = 0; y < roi.height; ++y) {
    const S* r0 = ownRow(src, srcStep, y);
    if constexpr (std::is_same<S, vnx8u>::value && std::is_same<D, vnx8u>::value)
      ownCopySubpixRow_sse2(r0, ownRow(r0, srcStep, 1), ownRow(dst, dstStep, y), w, roi.width);
    else
      ownCopySubpixRow<S, D>(r0, ownRow(r0, srcStep, 1), ownRow(dst, dstStep, y), w, shift, 0, roi.width);
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
  if (vnxStatus st = ownCheckSteps({ownImgRowBytes<S>(srcStep, srcRoi.width), ownImgRowBytes<D>(dstStep, dstRoi.width)}))
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
