// Corner measures: derivatives by the fixed Sobel or Scharr filters (replicated border),
// then one fused pass a band: products, box means in the lowpass filter's order and the
// closed-form eigen solution, row by row, so no product plane leaves the cache.
#include <algorithm>

#include "check.h"
#include "filters/vncvderivative.h"
#include "features.h"
#include "parallel.h"

namespace {

enum class ownCornerKernel : int { Sobel = 0, Scharr = 1 };
enum class ownCornerOutput { MinEigenVal, EigenValsVecs };

inline std::int64_t ownAlign32(std::int64_t n) { return (n + 31) / 32 * 32; }
inline char* ownAlign32(void* p) {
  return reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(p) + 31) & ~std::uintptr_t{31});
}

// The one place the corner measures reach the derivative filters: dx by the vertical
// and dy by the horizontal Sobel (length aperture) or Scharr kernel, replicated border,
// border value 0, through the filters' shared band bodies. Each band takes its own
// block of scratch, `bandScratch` bytes (at most one thread's share of the filters'
// own query, which the buffer holds for every thread).
template <class S, class D>
void ownCornerDerivatives(const S* src, int srcStep, vnxiSize roi, ownCornerKernel kern, int aperture, D* dx, D* dy,
                          int dStep, char* scratch, std::int64_t bandScratch, int nBands) {
  const bool scharr = kern == ownCornerKernel::Scharr;
  const ownFixedKernel vert = scharr ? ownFixedKernel::ScharrVert : ownFixedKernel::SobelVert;
  const ownFixedKernel horiz = scharr ? ownFixedKernel::ScharrHoriz : ownFixedKernel::SobelHoriz;
  ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) {
    char* block = scratch + b * bandScratch;
    ownDerivativeRows(vert, aperture, src, srcStep, dx, dStep, roi, ownBorder::Replicate, S(0), y0, y1, block);
    ownDerivativeRows(horiz, aperture, src, srcStep, dy, dStep, roi, ownBorder::Replicate, S(0), y0, y1, block);
  });
}
// Scratch of one band of the derivatives: the larger of the two kernels' needs.
template <class S>
std::int64_t ownCornerDerivativeScratch(int width, ownCornerKernel kern, int aperture) {
  const ownFixedOutput out = std::is_same<S, vnx32f>::value ? ownFixedOutput::To32f : ownFixedOutput::To16s;
  const bool scharr = kern == ownCornerKernel::Scharr;
  return std::max(
      ownDerivativeScratchBytes(width, aperture, out, scharr ? ownFixedKernel::ScharrVert : ownFixedKernel::SobelVert),
      ownDerivativeScratchBytes(width, aperture, out,
                                scharr ? ownFixedKernel::ScharrHoriz : ownFixedKernel::SobelHoriz));
}
// The largest scratch the filters ask for (the lowpass one included, as the layout
// promises room for a lowpass pass over the product planes).
template <class S>
std::int64_t ownCornerFilterScratch(vnxiSize roi, int aperture, int window) {
  const bool f = std::is_same<S, vnx32f>::value;
  int a = 0, b = 0, c = 0, d = 0;
  f ? vnxiFilterSobelVertGetBufferSize_32f_C1R(roi, 11 * aperture, &a)
    : vnxiFilterSobelVertGetBufferSize_8u16s_C1R(roi, 11 * aperture, &a);
  f ? vnxiFilterSobelHorizGetBufferSize_32f_C1R(roi, 11 * aperture, &b)
    : vnxiFilterSobelHorizGetBufferSize_8u16s_C1R(roi, 11 * aperture, &b);
  if (aperture == 3)
    f ? vnxiFilterScharrVertGetBufferSize_32f_C1R(roi, &c) : vnxiFilterScharrVertGetBufferSize_8u16s_C1R(roi, &c);
  vnxiFilterLowpassGetBufferSize_32f_C1R(roi, 11 * window, &d);
  return std::max({a, b, c, d});
}

// Floats of one band's scratch: three padded product rows, `window` rows of box sums
// for each product, three rows of means.
inline std::int64_t ownCornerBandFloats(int width, int window) {
  const std::int64_t padded = (std::int64_t(width) + 2 * (window / 2) + 8 + 7) / 8 * 8;
  const std::int64_t row = (std::int64_t(width) + 8 + 7) / 8 * 8;
  return 3 * padded + 3 * window * row + 3 * row;
}

// Buffer: the dx and dy planes, three product planes of W16 * height floats (six with
// more than one thread), one band scratch a thread and the filters' scratch, each part
// on a 32-byte boundary, plus 32 bytes of alignment slack.
template <class S>
std::int64_t ownCornerBufferBytes(vnxiSize roi, int aperture, int window) {
  using D = typename std::conditional<std::is_same<S, vnx32f>::value, vnx32f, vnx16s>::type;
  const int threads = ownNumThreads();
  const std::int64_t w16 = (std::int64_t(roi.width) + 15) / 16 * 16;
  const std::int64_t plane = ownAlign32(std::int64_t(roi.width) * roi.height * std::int64_t(sizeof(D)));
  const std::int64_t products = ownAlign32(4 * w16 * roi.height) * 3 * (threads > 1 ? 2 : 1);
  const std::int64_t bands = threads * ownAlign32(4 * ownCornerBandFloats(roi.width, window));
  return 2 * plane + products + bands + ownCornerFilterScratch<S>(roi, aperture, window) + 32;
}

struct ownCornerJob {
  vnxiSize roi;
  int window;
  float boxScale;  // 1.0f / (window * window), as the lowpass filter rounds it
  float s;         // the normalisation scale
  float sign;      // eigenvector sign: -1 Sobel, +1 Scharr
  ownCornerOutput out;
  vnx32f* dst;
  int dstStep;
};

// Output rows y0 .. y1 - 1 from derivative rows y0 - r .. y1 - 1 + r (replicated).
template <class D>
void ownCornerBand(const ownCornerJob& j, const D* dx, const D* dy, int dStep, float* scratch, int y0, int y1) {
  const int w = j.roi.width, r = j.window / 2, win = j.window;
  const std::int64_t padded = (std::int64_t(w) + 2 * r + 8 + 7) / 8 * 8, row = (std::int64_t(w) + 8 + 7) / 8 * 8;
  float* prod[3];
  for (int k = 0; k < 3; ++k) prod[k] = scratch + k * padded + r;
  float* sums = scratch + 3 * padded;  // sums[(k * win + slot) * row]
  float* means[3];
  for (int k = 0; k < 3; ++k) means[k] = sums + (3 * win + k) * row;
  auto rowSums = [&](int yy) {
    const int sy = std::min(std::max(yy, 0), j.roi.height - 1);
    ownCornerProductsRow_sse2(ownRow(dx, dStep, sy), ownRow(dy, dStep, sy), prod[0], prod[1], prod[2], w, r);
    const int slot = ((yy % win) + win) % win;
    for (int k = 0; k < 3; ++k) ownBoxRowSums_sse2(prod[k], sums + (k * win + slot) * row, w, win);
  };
  for (int yy = y0 - r; yy < y0 + r; ++yy) rowSums(yy);
  for (int y = y0; y < y1; ++y) {
    rowSums(y + r);
    const float* rows[3][5];
    for (int k = 0; k < 3; ++k)
      for (int i = 0; i < win; ++i) rows[k][i] = sums + (k * win + (((y - r + i) % win) + win) % win) * row;
    vnx32f* d = ownRow(j.dst, j.dstStep, y);
    if (j.out == ownCornerOutput::MinEigenVal) {
      ownMinEigenColumns_sse2(rows[0], rows[1], rows[2], d, w, win, j.boxScale, j.s * 0.5f);
      continue;
    }
    for (int k = 0; k < 3; ++k) ownBoxColumnSums_sse2(rows[k], means[k], w, win, j.boxScale);
    ownEigenValsVecsRow(means[0], means[1], means[2], d, 0, w, j.s, j.sign);
  }
}

// Normalisation scale: 8u, 1 / (255 * 2^(2k - 2)) (1/4080, 1/65280); 32f, 1 / 2^(2k - 2)
// (1/16, 1/256); Scharr times 0.6125 (bits 0x3F1CCCCD).
template <class S>
float ownCornerScale(ownCornerKernel kern, int aperture) {
  const float base = aperture == 3 ? 16.0f : 256.0f;
  float s = std::is_same<S, vnx8u>::value ? 1.0f / (255.0f * base) : 1.0f / base;
  if (kern == ownCornerKernel::Scharr) s *= 0x1.39999ap-1f;
  return s;
}

template <class S>
vnxStatus ownCornerEigen(const S* pSrc, int srcStep, vnx32f* pDst, int dstStep, vnxiSize roi, int kernType,
                         int aperture, int window, vnx8u* pBuffer, ownCornerOutput out) {
  const int outFloats = out == ownCornerOutput::MinEigenVal ? 1 : 6;
  if (vnxStatus st = ownCheck({pSrc, pDst, pBuffer}, roi,
                              {ownImg<S>(srcStep, roi.width), {dstStep, 4 * std::int64_t(outFloats) * roi.width, 4}}))
    return st;
  if (kernType != 0 && kernType != 1) return vnxStatusBadArg;
  const ownCornerKernel kern = static_cast<ownCornerKernel>(kernType);
  if (aperture != 3 && (aperture != 5 || kern == ownCornerKernel::Scharr)) return vnxStatusBadSize;
  if (window != 3 && window != 5) return vnxStatusBadSize;
  using D = typename std::conditional<std::is_same<S, vnx32f>::value, vnx32f, vnx16s>::type;
  const int threads = ownNumThreads();
  const std::int64_t planeBytes = ownAlign32(std::int64_t(roi.width) * roi.height * std::int64_t(sizeof(D)));
  const std::int64_t w16 = (std::int64_t(roi.width) + 15) / 16 * 16;
  const std::int64_t bandBytes = ownAlign32(4 * ownCornerBandFloats(roi.width, window));
  char* base = ownAlign32(pBuffer);
  D* dx = reinterpret_cast<D*>(base);
  D* dy = reinterpret_cast<D*>(base + planeBytes);
  char* bands = base + 2 * planeBytes;  // the band scratch lives in the product planes' room
  char* scratch = bands + ownAlign32(4 * w16 * roi.height) * 3 * (threads > 1 ? 2 : 1) + threads * bandBytes;
  const int dStep = static_cast<int>(roi.width * sizeof(D));
  const int nBands = std::min(ownBandCount(roi, kOwnBandsCorners), threads);
  ownCornerDerivatives(pSrc, srcStep, roi, kern, aperture, dx, dy, dStep, scratch,
                       ownCornerDerivativeScratch<S>(roi.width, kern, aperture), nBands);
  const ownCornerJob job{roi, window, 1.0f / float(window * window), ownCornerScale<S>(kern, aperture),
                         kern == ownCornerKernel::Sobel ? -1.0f : 1.0f, out, pDst, dstStep};
  ownRunBands(ownBandSplit{roi.height, nBands}, [&](int b, int y0, int y1) {
    ownCornerBand(job, dx, dy, dStep, reinterpret_cast<float*>(bands + b * bandBytes), y0, y1);
  });
  return vnxStatusOk;
}

template <class S>
vnxStatus ownCornerSize(vnxiSize roi, int aperture, int window, int* pBufferSize) {
  if (!pBufferSize) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  if (aperture != 3 && aperture != 5) return vnxStatusBadSize;
  if (window != 3 && window != 5) return vnxStatusBadSize;
  const std::int64_t bytes = ownCornerBufferBytes<S>(roi, aperture, window);
  if (bytes > INT32_MAX) return vnxStatusBadSize;
  *pBufferSize = static_cast<int>(bytes);
  return vnxStatusOk;
}

}  // namespace

VNX_API vnxStatus vnxiMinEigenValGetBufferSize_8u32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                         int* pBufferSize) noexcept {
  return ownCornerSize<vnx8u>(roiSize, apertureSize, avgWindow, pBufferSize);
}
VNX_API vnxStatus vnxiEigenValsVecsGetBufferSize_8u32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                           int* pBufferSize) noexcept {
  return ownCornerSize<vnx8u>(roiSize, apertureSize, avgWindow, pBufferSize);
}
VNX_API vnxStatus vnxiMinEigenValGetBufferSize_32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                       int* pBufferSize) noexcept {
  return ownCornerSize<vnx32f>(roiSize, apertureSize, avgWindow, pBufferSize);
}
VNX_API vnxStatus vnxiEigenValsVecsGetBufferSize_32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                         int* pBufferSize) noexcept {
  return ownCornerSize<vnx32f>(roiSize, apertureSize, avgWindow, pBufferSize);
}

VNX_API vnxStatus vnxiMinEigenVal_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                            vnx8u* pBuffer) noexcept {
  return ownCornerEigen(pSrc, srcStep, pDst, dstStep, roiSize, kernType, apertureSize, avgWindow, pBuffer,
                        ownCornerOutput::MinEigenVal);
}
VNX_API vnxStatus vnxiEigenValsVecs_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                              vnx8u* pBuffer) noexcept {
  return ownCornerEigen(pSrc, srcStep, pDst, dstStep, roiSize, kernType, apertureSize, avgWindow, pBuffer,
                        ownCornerOutput::EigenValsVecs);
}
VNX_API vnxStatus vnxiMinEigenVal_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                          vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                          vnx8u* pBuffer) noexcept {
  return ownCornerEigen(pSrc, srcStep, pDst, dstStep, roiSize, kernType, apertureSize, avgWindow, pBuffer,
                        ownCornerOutput::MinEigenVal);
}
VNX_API vnxStatus vnxiEigenValsVecs_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                            vnx8u* pBuffer) noexcept {
  return ownCornerEigen(pSrc, srcStep, pDst, dstStep, roiSize, kernType, apertureSize, avgWindow, pBuffer,
                        ownCornerOutput::EigenValsVecs);
}
