// Standard deviation of the pixels under a fixed rectangle at every output
// position, from an integral table and its squared table (upright or tilted).
// Each member keeps its own single- or double-precision formula; negative
// variances from rounding are clamped to 0, so flat regions give 0, never NaN.
#include <cmath>

#include "integral.h"
#include "parallel.h"
#include "simd.h"
#include "traits.h"

namespace {

// 2^-scaleFactor as a single (0 or infinity when it leaves the float range).
inline float ownScale(int scaleFactor) { return std::ldexp(1.0f, -scaleFactor); }

inline vnx32s ownScaled(double dev, float scale) { return ownTruncToInt32(dev * scale + 0.5); }

// Corners of output pixel (j, i): (row, column) offsets from the table origin.
struct ownCorners {
  int tlRow, tlCol, trRow, trCol, blRow, blCol, brRow, brCol;
};

inline ownCorners ownUprightCorners(vnxiRect r) {
  return {r.y, r.x, r.y, r.x + r.width, r.y + r.height, r.x, r.y + r.height, r.x + r.width};
}
// Tilted corners A, B, C, D stored as tl, br, bl, tr.
inline ownCorners ownTiltedCorners(vnxiRect r) {
  return {r.x + r.y,           r.x - r.y,           r.x + r.y + r.width, r.x - r.y + r.width,
          r.x + r.y + r.height, r.x - r.y - r.height, r.x + r.y + r.width + r.height,
          r.x - r.y + r.width - r.height};
}

template <class T>
struct ownFour {
  T tl, tr, bl, br;
};

template <class T>
inline ownFour<T> ownFetch(const T* base, int step, const ownCorners& c, int j, int i) {
  return {ownRow(base, step, j + c.tlRow)[i + c.tlCol], ownRow(base, step, j + c.trRow)[i + c.trCol],
          ownRow(base, step, j + c.blRow)[i + c.blCol], ownRow(base, step, j + c.brRow)[i + c.brCol]};
}

inline std::uint32_t u(vnx32s v) { return static_cast<std::uint32_t>(v); }
inline vnx32s wrap(std::uint32_t v) { return static_cast<vnx32s>(v); }

// Upright members.
// The sum has been formed by the member (wrapping 32s, or single precision).
inline float ownUprightDev(float sum, ownFour<double> q, float area) {
  const float mean = sum / area;
  const float qs = ((static_cast<float>(q.tl) - static_cast<float>(q.tr)) + static_cast<float>(q.br)) -
                   static_cast<float>(q.bl);
  const float var = qs / area - mean * mean;
  return ownCanonicalNaN(std::sqrt(var < 0.0f ? 0.0f : var));
}

// Four adjacent outputs: the corner entries of outputs i .. i+3 are consecutive,
// so each corner is one load; every lane repeats the scalar operations.
struct ownCornerRows {
  const void *tl, *tr, *bl, *br;
};
inline __m128 ownLoad4(const vnx32f* p) { return _mm_loadu_ps(p); }
inline __m128 ownLoad4(const vnx64f* p) {  // four doubles, each rounded to single
  return _mm_movelh_ps(_mm_cvtpd_ps(_mm_loadu_pd(p)), _mm_cvtpd_ps(_mm_loadu_pd(p + 2)));
}
inline __m128 ownUprightDev4(__m128 sum, const ownCornerRows& q, int i, __m128 area) {
  auto at = [&](const void* row) { return ownLoad4(static_cast<const vnx64f*>(row) + i); };
  const __m128 mean = _mm_div_ps(sum, area);
  const __m128 qs = _mm_sub_ps(_mm_add_ps(_mm_sub_ps(at(q.tl), at(q.tr)), at(q.br)), at(q.bl));
  const __m128 var = _mm_sub_ps(_mm_div_ps(qs, area), _mm_mul_ps(mean, mean));
  return ownCanonicalNaN(_mm_sqrt_ps(ownClearBelowPs(var, _mm_setzero_ps())));
}

struct ownUpright32s32f {
  static constexpr bool kFour = true;
  float area;
  float operator()(ownFour<vnx32s> s, ownFour<double> q) const {
    return ownUprightDev(static_cast<float>(wrap((u(s.tl) - u(s.tr)) + (u(s.br) - u(s.bl)))), q, area);
  }
  __m128 four(const ownCornerRows& s, const ownCornerRows& q, int i) const {
    auto at = [&](const void* row) { return ownLoad(static_cast<const vnx32s*>(row) + i); };
    const __m128i sum = _mm_add_epi32(_mm_sub_epi32(at(s.tl), at(s.tr)), _mm_sub_epi32(at(s.br), at(s.bl)));
    return ownUprightDev4(_mm_cvtepi32_ps(sum), q, i, _mm_set1_ps(area));
  }
};

struct ownUpright32f {
  static constexpr bool kFour = true;
  float area;
  float operator()(ownFour<vnx32f> s, ownFour<double> q) const {
    return ownUprightDev((s.tl - s.tr) + (s.br - s.bl), q, area);
  }
  __m128 four(const ownCornerRows& s, const ownCornerRows& q, int i) const {
    auto at = [&](const void* row) { return ownLoad4(static_cast<const vnx32f*>(row) + i); };
    const __m128 sum = _mm_add_ps(_mm_sub_ps(at(s.tl), at(s.tr)), _mm_sub_ps(at(s.br), at(s.bl)));
    return ownUprightDev4(sum, q, i, _mm_set1_ps(area));
  }
};

struct ownUpright32sSfs {
  static constexpr bool kFour = true;
  float area, scale;
  vnx32s operator()(ownFour<vnx32s> s, ownFour<vnx32s> q) const {
    const float mean = static_cast<float>(wrap((u(s.br) - u(s.tr)) + (u(s.tl) - u(s.bl)))) / area;
    const float qs = static_cast<float>(wrap((u(q.br) - u(q.tr)) + (u(q.tl) - u(q.bl))));
    float var = qs / area - mean * mean;
    if (var < 0.0f) var = 0.0f;
    return ownScaled(std::sqrt(static_cast<double>(var)), scale);
  }
  // Lane by lane the same: a variance of -0 kept by the scalar test and the +0
  // of the maximum give the same root and the same truncation (0 x inf is NaN either
  // way), and the truncating conversion gives INT_MIN outside the 32-bit range.
  __m128i four(const ownCornerRows& s, const ownCornerRows& q, int i) const {
    auto sum = [&](const ownCornerRows& r) {
      auto at = [&](const void* row) { return ownLoad(static_cast<const vnx32s*>(row) + i); };
      return _mm_cvtepi32_ps(_mm_add_epi32(_mm_sub_epi32(at(r.br), at(r.tr)), _mm_sub_epi32(at(r.tl), at(r.bl))));
    };
    const __m128 a = _mm_set1_ps(area), mean = _mm_div_ps(sum(s), a);
    const __m128 var = _mm_max_ps(_mm_sub_ps(_mm_div_ps(sum(q), a), _mm_mul_ps(mean, mean)), _mm_setzero_ps());
    const __m128d k = _mm_set1_pd(scale), half = _mm_set1_pd(0.5);
    auto scaled = [&](__m128 v) { return _mm_cvttpd_epi32(_mm_add_pd(_mm_mul_pd(_mm_sqrt_pd(_mm_cvtps_pd(v)), k), half)); };
    return _mm_unpacklo_epi64(scaled(var), scaled(_mm_movehl_ps(var, var)));
  }
};
inline void ownStoreFour(vnx32f* p, __m128 v) { _mm_storeu_ps(p, v); }
inline void ownStoreFour(vnx32s* p, __m128i v) { ownStore(p, v); }

// Tilted members (A = tl, B = br, C = bl, D = tr): S = (B - C) + (A - D).
inline float ownTiltedDev32f(double var) {
  return ownCanonicalNaN(std::sqrt(static_cast<float>(var < 0.0 ? 0.0 : var)));
}
inline double ownTiltedSqr(ownFour<double> q) { return ((q.br - q.bl) - q.tr) + q.tl; }

struct ownTilted32s32f {
  static constexpr bool kFour = false;
  float area;
  double areaD;
  float operator()(ownFour<vnx32s> s, ownFour<double> q) const {
    const float mean = static_cast<float>(wrap((u(s.br) - u(s.bl)) + (u(s.tl) - u(s.tr)))) / area;
    return ownTiltedDev32f(ownTiltedSqr(q) / areaD - static_cast<double>(mean) * mean);
  }
};

struct ownTilted32f {
  static constexpr bool kFour = false;
  double areaD;
  float operator()(ownFour<vnx32f> s, ownFour<double> q) const {
    const double mean = ((static_cast<double>(s.br) - s.bl) + (static_cast<double>(s.tl) - s.tr)) / areaD;
    return ownTiltedDev32f(ownTiltedSqr(q) / areaD - mean * mean);
  }
};

struct ownTilted32sSfs {
  static constexpr bool kFour = false;
  float area, scale;
  vnx32s operator()(ownFour<vnx32s> s, ownFour<vnx32s> q) const {
    const float mean = static_cast<float>(wrap((u(s.br) - u(s.bl)) + (u(s.tl) - u(s.tr)))) / area;
    const float qs = static_cast<float>(wrap((u(q.br) - u(q.bl)) + (u(q.tl) - u(q.tr)))) / area;
    double var = static_cast<double>(qs) - static_cast<double>(mean) * mean;
    if (var < 0.0) var = 0.0;
    return ownScaled(static_cast<double>(std::sqrt(static_cast<float>(var))), scale);
  }
};

}  // namespace

// Output rows y0 .. y1 - 1 of one deviation map: four outputs at a time where the
// member has a four-lane form, then one at a time.
template <class S, class Q, class D, class Formula>
void ownRectStdDevBand(const S* pSrc, int srcStep, const Q* pSqr, int sqrStep, D* pDst, int dstStep, int width,
                       const ownCorners& c, const Formula& f, int y0, int y1) {
  for (int j = y0; j < y1; ++j) {
    D* out = ownRow(pDst, dstStep, j);
    int i = 0;
    if constexpr (Formula::kFour) {
      const ownCornerRows s{ownRow(pSrc, srcStep, j + c.tlRow) + c.tlCol, ownRow(pSrc, srcStep, j + c.trRow) + c.trCol,
                            ownRow(pSrc, srcStep, j + c.blRow) + c.blCol, ownRow(pSrc, srcStep, j + c.brRow) + c.brCol};
      const ownCornerRows q{ownRow(pSqr, sqrStep, j + c.tlRow) + c.tlCol, ownRow(pSqr, sqrStep, j + c.trRow) + c.trCol,
                            ownRow(pSqr, sqrStep, j + c.blRow) + c.blCol, ownRow(pSqr, sqrStep, j + c.brRow) + c.brCol};
      for (; i + 4 <= width; i += 4) ownStoreFour(out + i, f.four(s, q, i));
    }
    for (; i < width; ++i) out[i] = f(ownFetch(pSrc, srcStep, c, j, i), ownFetch(pSqr, sqrStep, c, j, i));
  }
}

namespace {

inline float ownArea(vnxiRect r) { return static_cast<float>(static_cast<std::int64_t>(r.width) * r.height); }
inline double ownTiltedArea(vnxiRect r) { return 2.0 * static_cast<double>(r.width) * r.height; }

// Columns each upright or tilted table row must hold for the steps.
inline std::int64_t ownUprightColumns(vnxiSize roi, vnxiRect r) {
  return static_cast<std::int64_t>(roi.width) + r.x + r.width;
}
inline std::int64_t ownTiltedColumns(vnxiSize roi, vnxiRect r) {
  return static_cast<std::int64_t>(r.width) + r.height + r.x + r.y + roi.width - 1;
}

template <class S, class Q, class D, class Formula>
void ownRectStdDev(const S* pSrc, int srcStep, const Q* pSqr, int sqrStep, D* pDst, int dstStep, vnxiSize roi,
                   const ownCorners& c, const Formula& f) {
  ownRectStdDevBand(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roi.width, c, f, 0, roi.height);
}

}  // namespace

VNX_API vnxStatus vnxiRectStdDev_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                           vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownUprightColumns(roiSize, rect)))
    return st;
  ownRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, ownUprightCorners(rect),
                ownUpright32s32f{ownArea(rect)});
  return vnxStatusOk;
}

// The only parallel member: bands of rows, every output pixel independent.
VNX_API vnxStatus vnxiRectStdDev_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                        vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownUprightColumns(roiSize, rect)))
    return st;
  const ownCorners c = ownUprightCorners(rect);
  const ownUpright32f f{ownArea(rect)};
  ownRunBands(ownBandSplit{roiSize.height, ownBandCountPerKPixels(roiSize)}, [&](int, int y0, int y1) {
    ownRectStdDevBand(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize.width, c, f, y0, y1);
  });
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiRectStdDev_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pSqr, int sqrStep,
                                           vnx32s* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect,
                                           int scaleFactor) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownUprightColumns(roiSize, rect)))
    return st;
  ownRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, ownUprightCorners(rect),
                ownUpright32sSfs{ownArea(rect), ownScale(scaleFactor)});
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedRectStdDev_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                                 vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownTiltedColumns(roiSize, rect)))
    return st;
  ownRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, ownTiltedCorners(rect),
                ownTilted32s32f{static_cast<float>(ownTiltedArea(rect)), ownTiltedArea(rect)});
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedRectStdDev_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                              vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownTiltedColumns(roiSize, rect)))
    return st;
  ownRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, ownTiltedCorners(rect),
                ownTilted32f{ownTiltedArea(rect)});
  return vnxStatusOk;
}

VNX_API vnxStatus vnxiTiltedRectStdDev_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pSqr, int sqrStep,
                                                 vnx32s* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect,
                                                 int scaleFactor) noexcept {
  if (vnxStatus st = ownCheckRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, rect,
                                          ownTiltedColumns(roiSize, rect)))
    return st;
  ownRectStdDev(pSrc, srcStep, pSqr, sqrStep, pDst, dstStep, roiSize, ownTiltedCorners(rect),
                ownTilted32sSfs{static_cast<float>(ownTiltedArea(rect)), ownScale(scaleFactor)});
  return vnxStatusOk;
}
