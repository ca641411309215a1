/* vnxcv: computer-vision primitives on caller-owned pixel buffers.
 * C99 and C++. Every function but vnxcvGetLibVersion returns a vnxStatus and
 * writes its results through pointers; on a negative status nothing is written.
 *
 * Image operands are (pointer to the first ROI pixel, row step in bytes); pixel
 * (x, y) lies at pointer + y * step + x * pixelBytes. Arguments are checked in one
 * order everywhere: null pointers (-8), ROI width/height below 1 (-6), steps below
 * their row bytes (-14), steps not a multiple of the element size (-108), then the
 * operation's own parameters. Only the thread count of vnxcore.h is tunable. */
#ifndef VNXCV_H
#define VNXCV_H

#include "vnxcore.h"

#if defined(__GNUC__)
#define VNX_API __attribute__((visibility("default")))
#else
#define VNX_API
#endif

#ifdef __cplusplus
#define VNX_NOEXCEPT noexcept
extern "C" {
#else
#define VNX_NOEXCEPT
#endif

/* ---- Shared types ---------------------------------------------------------- */

typedef unsigned char vnx8u;
typedef signed char vnx8s;
typedef unsigned short vnx16u;
typedef short vnx16s;
typedef int vnx32s;
typedef unsigned int vnx32u;
typedef float vnx32f;
typedef double vnx64f;

typedef struct { int width, height; } vnxiSize;
typedef struct { int x, y; } vnxiPoint;
typedef struct { int x, y, width, height; } vnxiRect;

/* Status codes. */
enum {
  vnxStatusOk = 0,
  vnxStatusDivByZero = 6,            /* warning: relative norm with a zero denominator */
  vnxStatusSizeOverflow = 12,        /* warning: a reported buffer size exceeds 2^31 - 1 */
  vnxStatusTooManyLines = 33,        /* warning: more lines than the caller's capacity */
  vnxStatusSymKernelExpected = 38,   /* warning: a non-symmetric kernel was mirrored */
  vnxStatusLineError = -2,
  vnxStatusBadArg = -5,
  vnxStatusBadSize = -6,
  vnxStatusNullPtr = -8,
  vnxStatusNoMemory = -9,
  vnxStatusOutOfRange = -11,
  vnxStatusBadDataType = -12,
  vnxStatusBadStep = -14,
  vnxStatusBadMaskSize = -33,
  vnxStatusBadAnchor = -34,
  vnxStatusBadCoi = -52,
  vnxStatusBadChannels = -53,
  vnxStatusBadMetric = -56,
  vnxStatusStepNotMultiple = -108,
  vnxStatusNotSupportedMode = -9999
};

/* Border types: what a filter sees beyond the ROI. */
enum {
  vnxBorderConst = 0,     /* the caller's border value */
  vnxBorderReplicate = 1, /* the nearest edge pixel */
  vnxBorderWrap = 2,      /* periodic continuation from the opposite side */
  vnxBorderMirror = 3,    /* reflection without repeating the edge pixel */
  vnxBorderMirrorR = 4    /* reflection repeating the edge pixel */
};

/* Fixed mask selectors. */
enum { vnxMskSize3x3 = 33, vnxMskSize5x5 = 55 };

/* Element-type codes stored in states and accepted by some queries. */
enum { vnx8uCode = 1, vnx8sCode = 3, vnx16uCode = 5, vnx32fCode = 13 };

/* Version record of this build. */
typedef struct {
  int major;          /* 5 */
  int minor;          /* 2 */
  int majorBuild;     /* 108 */
  int build;          /* 398 */
  char targetCpu[4];  /* "t7": the SSE2/SSE3 build */
  const char* name;   /* "vnxcvt7-5.2.dll" */
  const char* version;   /* "5.2" */
  const char* buildDate; /* "Jul 11 2007" */
} vnxLibraryVersion;

/* ---- Version ---------------------------------------------------------------- */

/* The constant version record; the same pointer on every call, never null, never freed. */
VNX_API const vnxLibraryVersion* vnxcvGetLibVersion(void) VNX_NOEXCEPT;

/* ---- Absolute differences -------------------------------------------------
 * dst = |src1 - src2|, exact for 8u and 16u; for 32f the difference is rounded to
 * single precision and its sign bit cleared (-0 becomes +0, NaN stays NaN).
 * AbsDiffC clamps the constant to the type's range (8u: 0..255, 16u: 0..65535);
 * the 32f constant is used as given. Serial. */
VNX_API vnxStatus vnxiAbsDiff_8u_C1R(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                     vnx8u* pDst, int dstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAbsDiff_16u_C1R(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                      vnx16u* pDst, int dstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAbsDiff_32f_C1R(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                      vnx32f* pDst, int dstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAbsDiffC_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                      vnxiSize roiSize, int value) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAbsDiffC_16u_C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                       vnxiSize roiSize, int value) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAbsDiffC_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                       vnxiSize roiSize, vnx32f value) VNX_NOEXCEPT;

/* ---- Accumulators ----------------------------------------------------------
 * The accumulator is a 32f image updated in place, pixel by pixel, in single
 * precision with round-to-nearest; sources are converted to float first.
 *   Add:         acc = acc + s
 *   AddSquare:   acc = acc + (s * s)        product rounded before the sum
 *   AddProduct:  acc = acc + (s1 * s2)      product rounded before the sum
 *   AddWeighted: acc = acc + (s - acc) * alpha, in this order; alpha is not checked
 * Masked (C1IMR) forms replace the term by 0.0 where the mask byte is zero (an
 * unselected -0.0 becomes +0.0); AddWeighted uses the weight 0.0 there, so an
 * unselected infinite accumulator becomes NaN. Serial. */
VNX_API vnxStatus vnxiAdd_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                     vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                      vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                      vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                       vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAdd_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                    vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;

VNX_API vnxStatus vnxiAddSquare_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                            vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                         vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                             vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddSquare_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;

VNX_API vnxStatus vnxiAddProduct_8u32f_C1IR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                             int src2Step, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_32f_C1IR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                          vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_8u32f_C1IMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_8s32f_C1IMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_16u32f_C1IMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2,
                                              int src2Step, const vnx8u* pMask, int maskStep, vnx32f* pSrcDst,
                                              int srcDstStep, vnxiSize roiSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddProduct_32f_C1IMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize) VNX_NOEXCEPT;

VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IR(const vnx8u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IR(const vnx8s* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                             vnxiSize roiSize, vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IR(const vnx16u* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                              vnxiSize roiSize, vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_32f_C1IR(const vnx32f* pSrc, int srcStep, vnx32f* pSrcDst, int srcDstStep,
                                           vnxiSize roiSize, vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_8u32f_C1IMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_8s32f_C1IMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                              vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                              vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_16u32f_C1IMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                               vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                               vnx32f alpha) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiAddWeighted_32f_C1IMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep,
                                            vnx32f* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                            vnx32f alpha) VNX_NOEXCEPT;

/* ---- Motion history --------------------------------------------------------
 * threshold = timestamp - duration (single precision). Where the silhouette is
 * nonzero (32f: compares unequal to 0.0, so -0.0 is no motion and NaN is motion)
 * history = timestamp; elsewhere history < threshold becomes 0.0 and anything else
 * (equal to the threshold, NaN) is kept. A duration below 0 or NaN gives -11. Serial. */
VNX_API vnxStatus vnxiUpdateMotionHistory_8u32f_C1IR(const vnx8u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                     int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                     vnx32f duration) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiUpdateMotionHistory_16u32f_C1IR(const vnx16u* pSilhouette, int silhStep, vnx32f* pMHI,
                                                      int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                      vnx32f duration) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiUpdateMotionHistory_32f_C1IR(const vnx32f* pSilhouette, int silhStep, vnx32f* pMHI,
                                                   int mhiStep, vnxiSize roiSize, vnx32f timestamp,
                                                   vnx32f duration) VNX_NOEXCEPT;

/* ---- Image statistics ------------------------------------------------------ */
/* (statistics: means, deviations, extrema, norms) */

/* ---- Linear filters -------------------------------------------------------- */
/* (filters: row and column pipeline passes, fixed-kernel filters with borders) */

/* ---- Sampling along a line -------------------------------------------------
 * Copies the pixels of the digital line from pStart to pEnd (inclusive, in that
 * order) into pDst, which must hold max(|dx|, |dy|) + 1 pixels (3 samples each for
 * C3R). The major axis is the longer extent; on a tie y is the major axis. Both
 * points must lie inside the ROI, else -11 and nothing is written. */
VNX_API vnxStatus vnxiSampleLine_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx8u* pDst,
                                        vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSampleLine_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx8u* pDst,
                                        vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSampleLine_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx16u* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSampleLine_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx16u* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSampleLine_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSampleLine_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pDst,
                                         vnxiPoint pt1, vnxiPoint pt2) VNX_NOEXCEPT;

#ifdef __cplusplus
}
#endif
#endif
