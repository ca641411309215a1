/* vnxcv: computer-vision primitives on caller-owned pixel buffers.
 * C99 and C++. Every function but vnxcvGetLibVersion returns a vnxStatus and
 * writes its results through pointers; on a negative status nothing is written.
 *
 * Image operands are (pointer to the first ROI pixel, row step in bytes); pixel
 * (x, y) lies at pointer + y * step + x * pixelBytes. Arguments are checked in one
 * order everywhere: null pointers (-8), ROI width/height below 1 (-6), steps below
 * their row bytes (-14), steps not a multiple of the element size (-108), then the
 * operation's own parameters. Only the thread count of vnxcore.h is tunable.
 *
 * Buffer and state size queries compute in 64 bits; a size that does not fit a
 * signed 32-bit int gives vnxStatusBadSize and nothing is written. Every float or
 * double result that is NaN is the default quiet NaN: sign bit set, quiet bit set,
 * zero payload (0xFFC00000, 0xFFF8000000000000), on every build and thread count. */
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
 * unselected infinite accumulator becomes NaN. A NaN result is the default quiet
 * NaN (0xFFC00000) whichever operand was NaN. Serial. */
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

/* ---- Image statistics ------------------------------------------------------
 * One channel of the ROI (C1), or channel of interest coi = 1..3 of a three-sample
 * pixel (C3C); masked forms (M) count only pixels whose mask byte is nonzero.
 * Checks: pointers, ROI, source and mask steps against their row bytes, the source
 * step's multiple of the element size, then coi (-52). The masked norms test the
 * source steps fully (row bytes, then multiple) before the mask step.
 * Large ROIs run in row bands, partial results combined in band order, so repeated
 * calls with one thread count give the same bits. Integer sums (8u, 8s, 16u: sums,
 * sums of squares, counts) are exact in 64 bits, whatever the pixel count, so their
 * results do not depend on the thread count; 32f sums are kept in double precision.
 * A band partial for more than 32 bands comes from the scratch allocator: if it
 * cannot be had the call returns -9 and writes nothing. Any coi is accepted as an
 * argument (INT_MIN and INT_MAX give -52 like 0 and 4); sources may start at any byte
 * (samples are read with unaligned loads). A 32f result that is NaN (a NaN sample, or
 * +inf and -inf in one sum) is the library's one NaN at every thread count. */

/* Mean of the selected samples; 0.0 when none is selected. Serial below threads x 131072 pixels. */
VNX_API vnxStatus vnxiMean_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                    vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                   vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                    vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                     vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                    vnx64f* pMean) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                     vnx64f* pMean) VNX_NOEXCEPT;
/* Mean and population deviation sqrt(|Q/n - mean^2|); with n = 0 both are 0.0. Either result
 * pointer may be null. Unmasked forms: serial below threads x 65536 pixels or on a single-core
 * die; masked forms: below threads x 131072 pixels. 32f: when 0.05 mean^2 > deviation^2 a second
 * pass sums (x - m)^2 around the mean rounded to single precision (only if pStdDev is not null).
 * Serial 32f kernels (they differ only in the order of the additions): C1R below 5001 pixels
 * the short one, from 100000 pixels or with a source not 4-byte aligned or step / 4 not a
 * multiple of 4 the general one, else the aligned one; C3CR below 5000 pixels short, aligned
 * with a 16-byte aligned source and step / 4 a multiple of 4, else general. Masked 32f forms
 * and every band use the general kernel. */
VNX_API vnxStatus vnxiMean_StdDev_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           int coi, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                          vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           int coi, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                            int coi, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx64f* pMean,
                                           vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMean_StdDev_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                            int coi, vnx64f* pMean, vnx64f* pStdDev) VNX_NOEXCEPT;
/* Smallest and largest sample (as 32f) and the first location of each in raster order. The
 * four result pointers are not checked: a null one means that result is not wanted, and
 * nothing is written there (the status and the other results are unchanged). Serial below 16384 pixels, else one band
 * a thread; a later band wins a tie for neither. With no pixel selected: 0, 0, (0, 0), (0, 0).
 * 32f NaN samples are skipped. The column search that follows the row scan reports x = 0 when
 * the row holds no selected sample equal to the extreme (only possible when the extreme
 * equals its start value, the type's greatest or least value, and row 0 has no selected
 * sample of it). */
VNX_API vnxStatus vnxiMinMaxIndx_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal,
                                        vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CR(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                         vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          int coi, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8s_C1R(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal,
                                        vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CR(const vnx8s* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                         vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                         vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                         vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          int coi, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal,
                                         vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CR(const vnx16u* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           int coi, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                           vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, vnx32f* pMinVal, vnx32f* pMaxVal,
                                         vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CR(const vnx32f* pSrc, int srcStep, vnxiSize roiSize, int coi, vnx32f* pMinVal,
                                          vnx32f* pMaxVal, vnxiPoint* pMinIndex, vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                          vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                          vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinMaxIndx_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                           int coi, vnx32f* pMinVal, vnx32f* pMaxVal, vnxiPoint* pMinIndex,
                                           vnxiPoint* pMaxIndex) VNX_NOEXCEPT;
/* Masked norms: Inf = max |s|, L1 = sum |s|, L2 = sqrt(sum s^2) of the sample s (Norm), of
 * d = s1 - s2 (NormDiff, 32f: d rounded to single precision), or Rel = norm of d over norm of
 * s2 (L2: one square root of the ratio of the sums). An empty mask gives 0.0 for Norm and
 * NormDiff. Rel with a zero denominator returns the warning 6 and writes +inf (numerator > 0),
 * -inf (numerator < 0) or the quiet NaN with the sign bit set (numerator 0). 32f NaN samples
 * are skipped by the Inf norms and propagate through L1 and L2. Every norm is serial below
 * threads x 131072 pixels or on a single-core die; NormRel_L1_8u_C1MR is always serial and
 * keeps both sums in 32-bit signed integers, which wrap above 2147483647. */
VNX_API vnxStatus vnxiNorm_Inf_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                         int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_Inf_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                         int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                            int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                            int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                             vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_Inf_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                             const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                             vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_Inf_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                      vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                      vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L1_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L1_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                         int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                         int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L1_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_8u_C1MR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                      vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_8u_C3CMR(const vnx8u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_8s_C1MR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                      vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_8s_C3CMR(const vnx8s* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_16u_C1MR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_16u_C3CMR(const vnx16u* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_32f_C1MR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                       vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNorm_L2_32f_C3CMR(const vnx32f* pSrc, int srcStep, const vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                        int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                           int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormDiff_L2_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                            const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                            vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_8u_C1MR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                         int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_8u_C3CMR(const vnx8u* pSrc1, int src1Step, const vnx8u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_8s_C1MR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                         int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_8s_C3CMR(const vnx8s* pSrc1, int src1Step, const vnx8s* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, int coi, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_16u_C1MR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_16u_C3CMR(const vnx16u* pSrc1, int src1Step, const vnx16u* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_32f_C1MR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step, const vnx8u* pMask,
                                          int maskStep, vnxiSize roiSize, vnx64f* pNorm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiNormRel_L2_32f_C3CMR(const vnx32f* pSrc1, int src1Step, const vnx32f* pSrc2, int src2Step,
                                           const vnx8u* pMask, int maskStep, vnxiSize roiSize, int coi,
                                           vnx64f* pNorm) VNX_NOEXCEPT;

/* ---- Linear filters -------------------------------------------------------- */
/* Row and column pipeline passes: the two halves of a separable filter.
 * Row pass: ppDst[y][x] = sum over i of pKernel[i] * src(x - xAnchor + i, y) for each of
 * the roiSize.height source rows, per channel for C3R; columns outside the row come from
 * borderType (0..4), vnxBorderConst taking borderValue (one value for all channels).
 * Integer sums are exact, then divided by `divisor` rounded to nearest with halves away
 * from zero (the one rounding rule of every integer division of these filters), then
 * saturated to 16s. The 32f passes have no divisor; their products are added left to
 * right (row) or top to bottom (column) in single precision.
 * Column pass: dst(x, y) = sum over j of pKernel[j] * ppSrc[y + j][x], j = 0 .. kernelSize-1
 * (tap 0 weighs the top row); ppSrc holds height + kernelSize - 1 row pointers. 16s: exact
 * sum saturated; 16s8u / 16s8s: exact sum divided by `divisor` (rounded as above),
 * saturated to 8 bits.
 * Low members: the sum is formed modulo 2^16 (two's-complement 16-bit lanes), exact
 * whenever the true sum lies in -32768..32767; the Low row pass then divides as above.
 * Row pass checks: pSrc, ppDst, pKernel, pBuffer null (-8); height, width, kernelSize
 * below 1 (-6); xAnchor outside 0..kernelSize-1 (-34); srcStep (-14, then -108 for 16s
 * and 32f); borderType (-5); divisor 0 (-5); a null one of the height destination row
 * pointers (-8). Bands of rows in parallel from width * height >= threads * 32768.
 * Column pass checks: ppSrc, pDst, pKernel null (-8); height, width, kernelSize below 1
 * (-6); dstStep (-14, -108); pBuffer null (-8); a null one of the first
 * height + kernelSize - 1 row pointers (-8); 16s8u / 16s8s divisor 0 (-5). Serial.
 * Size queries (roiSize, kernelSize, result): -8 for a null result, -6 for a size or
 * kernelSize below 1; they report threads * (32 + 4 * (h + k) + S) with the thread
 * count read at the query, S by member: row 8u16s 36k+112 (C3R 60k+112), 16s 48k+80
 * (40k+64), Low_16s 24k+64 (208k+64), 32f 64k+64 (192k+32); column 16s, 16s8u, 16s8s
 * 12*W4+32 (36*W4+32), Low_16s 12*W8+32 (36*W8+32), Wn = width rounded up to n. The
 * 32f column query reports 32. A size beyond a signed 32-bit int gives -6, nothing written.
 * 32f results that are NaN are the library's one NaN. Border indices are 64-bit: rows of
 * any length a 32-bit step can describe. */
VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_8u16s_C3R(const vnx8u* pSrc, int srcStep, vnx16s** ppDst,
                                                        vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                        int xAnchor, int borderType, vnx8u borderValue, int divisor,
                                                        vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                      vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx16s borderValue, int divisor,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C1R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_Low_16s_C3R(const vnx16s* pSrc, int srcStep, vnx16s** ppDst,
                                                          vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                          int xAnchor, int borderType, vnx16s borderValue,
                                                          int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipeline_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f** ppDst,
                                                      vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                      int xAnchor, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C1R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8u_C3R(const vnx16s* const* ppSrc, vnx8u* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C1R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_16s8s_C3R(const vnx16s* const* ppSrc, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C1R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_Low_16s_C3R(const vnx16s* const* ppSrc, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, const vnx16s* pKernel, int kernelSize,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C1R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipeline_32f_C3R(const vnx32f* const* ppSrc, vnx32f* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32f* pKernel, int kernelSize,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_8u16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                     int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                       int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterRowBorderPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8u_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C1R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_16s8s_C3R(vnxiSize roiSize, int kernelSize,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C1R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_Low_16s_C3R(vnxiSize roiSize, int kernelSize,
                                                                    int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C1R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterColumnPipelineGetBufferSize_32f_C3R(vnxiSize roiSize, int kernelSize,
                                                                int* pBufferSize) VNX_NOEXCEPT;

/* Fixed-kernel filters with borders, single channel: the weights as they lie over the
 * image (x rightward, y downward, centre weight on the output pixel):
 *   SobelHoriz        1 2 1 / 0 0 0 / -1 -2 -1;  5x5: column (1 2 0 -2 -1) x row (1 4 6 4 1)
 *   SobelVert         -1 0 1 / -2 0 2 / -1 0 1;  5x5: column (1 4 6 4 1) x row (-1 -2 0 2 1)
 *   SobelNegVert      the negation of SobelVert (32f: SobelVert's result times -1, so a
 *                     zero result takes the negated sign)
 *   SobelHorizSecond  1 2 1 / -2 -4 -2 / 1 2 1;  5x5: column (1 0 -2 0 1) x row (1 4 6 4 1)
 *   SobelVertSecond   1 -2 1 / 2 -4 2 / 1 -2 1;  5x5: column (1 4 6 4 1) x row (1 0 -2 0 1)
 *   SobelCross        -1 0 1 / 0 0 0 / 1 0 -1;   5x5: column (1 2 0 -2 -1) x row (-1 -2 0 2 1)
 *   ScharrHoriz       3 10 3 / 0 0 0 / -3 -10 -3 (3x3 only)
 *   ScharrVert        -3 0 3 / -10 0 10 / -3 0 3 (3x3 only)
 *   Laplacian         SobelHorizSecond + SobelVertSecond of the same size; for 3x3 this is
 *                     2 0 2 / 0 -8 0 / 2 0 2, i.e. 2 * (1 0 1)^T (1 0 1) minus 8 at the centre
 *   Lowpass           box of k x k ones divided by k * k
 * Outside pixels by borderType 0..4 (vnxBorderConst: borderValue); reflections repeat for
 * an ROI smaller than the reach (Mirror has period 2n-2, a single row or column mirrors to
 * itself; MirrorR period 2n; Wrap period n). Only pixels inside the source ROI are read.
 * 8u16s: exact sum (never saturates for these weights). 8u8s: the sum divided by `divisor`
 * rounded to nearest, halves away from zero, saturated to -128..127; Lowpass 8u: the sum
 * divided by 9 or 25 by the same rule. 32f: products summed in single precision (rows,
 * then columns; Laplacian: the two terms added); Lowpass 32f multiplies the sum by
 * 1.0f / (k * k) rounded to single precision. Every 32f result that is NaN is the one NaN
 * (0xFFC00000) on every build and thread count.
 * Checks: pSrc, pDst, pBuffer null (-8); width, height below 1 (-6); srcStep or dstStep
 * below the row bytes (-14); 8u16s dstStep odd, 32f steps not multiples of 4 (-108);
 * borderType outside 0..4 (-5); 8u8s divisor 0 (-5); mask neither 33 nor 55 (-33).
 * Bands of rows in parallel, one slice of pBuffer each, when threads > 1, the call is not
 * inside a parallel region, the die has more than one core, threads * 128 <= height
 * (Laplacian: threads * 32) and width >= 256 (Scharr: any width); serial otherwise.
 * GetBufferSize (roiSize, mask, result; Scharr without mask): -8, -6, -33 in this order;
 * reports threads * (S + 32) with S per thread, W16 / W4 the width rounded up to 16 / 4,
 * R8/R32 the row 8u16s/32f C1R queries and C16/C32 the column 16s/32f C1R queries for k
 * as they report for one thread (so the size grows linearly with the thread count; a
 * size beyond a signed 32-bit int gives -6 with nothing written):
 *   Sobel, Lowpass 8u (8u16s, 8u8s):  2*W16*(2k+15) + 4*(3k+30) + 64 + R8 + C16
 *   Sobel, Lowpass 32f:               4*W4*(2k+15) + 4*(3k+30) + 64 + R32 + C32
 *   Scharr 8u16s, 8u8s / 32f:         42*W16 + 220 + R8 + C16  /  84*W4 + 220 + R32 + C32
 *   Laplacian 8u16s:                  4*W16*(2k+15) + 8*(3k+30) + 96 + R8 + C16
 *   Laplacian 8u8s:                   the same, plus 2*W16*height + 32 for k = 5
 *   Laplacian 32f:                    8*W16*(2k+15) + 8*(3k+30) + 96 + R32 + C32
 * A buffer smaller than the query reports is not detected. */
VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                              int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                             int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                            int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                             int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                            int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                         vnxiSize roiSize, int mask, int borderType,
                                                         vnx8u borderValue, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                        vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                        int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                               int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelNegVertGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                              int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst,
                                                             int dstStep, vnxiSize roiSize, int mask, int borderType,
                                                             vnx8u borderValue, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, int divisor,
                                                            vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx32f borderValue, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                    int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelHorizSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                            vnxiSize roiSize, int mask, int borderType,
                                                            vnx8u borderValue, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                           vnxiSize roiSize, int mask, int borderType,
                                                           vnx8u borderValue, int divisor,
                                                           vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                          vnxiSize roiSize, int mask, int borderType,
                                                          vnx32f borderValue, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                                   int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                                  int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelVertSecondGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                                 int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                              int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                             int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterSobelCrossGetBufferSize_32f_C1R(vnxiSize roiSize, int mask,
                                                            int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                      vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                     vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                     int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                    vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u16s_C1R(vnxiSize roiSize, int mask,
                                                             int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_8u8s_C1R(vnxiSize roiSize, int mask,
                                                            int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLaplacianGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                        vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                        vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                      vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrHorizGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u16s_C1R(const vnx8u* pSrc, int srcStep, vnx16s* pDst, int dstStep,
                                                       vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                       vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertBorder_8u8s_C1R(const vnx8u* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                                      vnxiSize roiSize, int borderType, vnx8u borderValue,
                                                      int divisor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                     vnxiSize roiSize, int borderType, vnx32f borderValue,
                                                     vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u16s_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_8u8s_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterScharrVertGetBufferSize_32f_C1R(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLowpassBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                 vnxiSize roiSize, int mask, int borderType, vnx8u borderValue,
                                                 vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_8u_C1R(vnxiSize roiSize, int mask, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLowpassBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                  vnxiSize roiSize, int mask, int borderType, vnx32f borderValue,
                                                  vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterLowpassGetBufferSize_32f_C1R(vnxiSize roiSize, int mask, int* pBufferSize) VNX_NOEXCEPT;

/* ---- Sampling along a line -------------------------------------------------
 * Copies the pixels of the digital line from pStart to pEnd (inclusive, in that
 * order) into pDst, which must hold max(|dx|, |dy|) + 1 pixels (3 samples each for
 * C3R). The major axis is the longer extent; on a tie y is the major axis. Both
 * points must lie inside the ROI, else -11 and nothing is written. The walker
 * computes in 64 bits, so lines of any length a ROI can hold are exact. */
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

/* ---- Morphology: dilation, erosion and composite operations (morph) ---------- */

/* Structuring elements are byte masks (nonzero = part of the element), row-major without
 * padding, with an anchor cell. Dilation: dst(x, y) = max over nonzero cells (i, j) of
 * src(x + i - anchor.x, y + j - anchor.y); erosion the minimum; per channel. Outside the ROI
 * a coordinate is clamped to the nearest ROI row and column (replicate border): only ROI
 * pixels are read. 32f: the extreme is taken in a total order in which -0.0 < +0.0 and any
 * NaN in the window gives NaN (the library's one NaN), so the result never depends on the
 * path or the order of the cells; infinities pass through unchanged.
 *
 * Rectangular maximum and minimum filters: the extreme over a maskSize rectangle placed with
 * its cell `anchor` on the output pixel. Any anchor is accepted, inside the rectangle or
 * outside it (the window then lies beside the pixel; offsets beyond the ROI read its edge).
 * Checks: pSrc, pDst, pBuffer null (-8); ROI below 1 (-6); steps below the row bytes (-14);
 * 32f steps not multiples of 4 (-108); mask width or height below 1 (-6).
 * GetBufferSize(roiWidth, maskSize): pBufferSize null (-8), roiWidth or a mask side below 1
 * (-6), a size beyond INT_MAX (-6). The buffer serves the first band of rows; with more than
 * one thread each further band takes a block from the scratch allocator (-9 when that fails,
 * nothing written). Columns are folded down the mask height, then a window slides along the
 * row: directly up to 8 pixels, by doubling spans (log2 of the width passes) beyond. */
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, vnxiSize maskSize, vnxiPoint anchor, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_8u_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMaxGetBufferSize_32f_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_8u_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C1R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C3R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFilterMinGetBufferSize_32f_C4R(int roiWidth, vnxiSize maskSize, int* pBufferSize) VNX_NOEXCEPT;

/* Dilation and erosion states. vnxiMorphState is one block: a header of 18 32-bit words
 * (on i686 and x86-64 alike: the five references to the block's arrays - mask copy, erosion
 * and dilation tables, work area, run record - are byte offsets from the start of the
 * block, not pointers, so the header is 72 bytes on both builds, the sizes below hold on
 * both, and a block may be moved with memcpy), then from byte 80 the mask copy, the path's
 * arrays and the work area. Mask classification at creation: empty mask (kind 3, copies);
 * mask height >= 256 (kind 0, general); a row with two runs (kind 0); consecutive rows of one
 * run each, all with the same start and length (kind 1, rectangle, tested before the anchor:
 * the anchor may lie outside it); an anchor outside a row's run or outside the rows (kind 0);
 * rows of one run where equal lengths share their anchor offset (kind 2, run decomposition),
 * else kind 0. 8u masks below an area of 13 (C1) / 35 (C3, C4) for kind 1 and 35 / 90 for
 * kind 2 run on the general path. Sizes in bytes, M = mask area rounded up to 16:
 *   kind 0: 96 + M + area * 16 (8u) or 32 (32f) + max(e c maskHeight, 2 maskHeight W),
 *           W = (roiWidth + maskWidth) e c rounded up to 16 (e = 1 or 4, c = channels);
 *   kind 1, 2: 128 + M + 8 (R + D) + F (R non-empty rows, D distinct run lengths; kind 1:
 *           R = height, D = 1, F = the FilterMax buffer size for roiWidth and the rectangle;
 *           kind 2: F holds a ring row, the D horizontal extremes of each of the box's rows
 *           and one doubling row); kind 3: 80 + M.
 * GetSize reports the size for the centre anchor (maskSize.width >> 1, .height >> 1);
 * InitAlloc sizes for its own anchor. The general path keeps its per-cell tables in the
 * state (8u: 8 bytes a cell, all ones for a nonzero cell in the dilation table and zero in
 * the erosion table, swapped for a zero cell; 32f: four floats of +-3.4028235e38 likewise),
 * but its kernels fold only the nonzero cells, which is the same extreme (a zero cell's
 * entry only neutralises it) and keeps infinities that a clip at the largest finite float
 * would change. Creation checks: pMask null (-8); roiWidth < 1 (-6);
 * mask width, then height < 1 (-6); anchor outside the mask (-34, not in GetSize); pSize,
 * pState, ppState null (-8); allocation (-9, *ppState untouched); a size beyond INT_MAX (-6).
 * Apply checks: pSrc, pDst, pState null (-8); ROI below 1 (-6); steps below width x channels
 * x element bytes (-14); 32f steps not multiples of 4 (-108); borderType not
 * vnxBorderReplicate (-5); ROI width above the creation width (-6). The state's work area
 * serves the first band of rows when it is large enough; every other band (and the first
 * when it is not) takes a block from the scratch allocator (-9 when that fails, nothing
 * written). Rows run in bands in parallel from 16 rows and 16384 pixels a thread; the result
 * does not depend on the thread count. One state serves one call at a time. */
typedef struct vnxiMorphState vnxiMorphState;
VNX_API vnxStatus vnxiMorphologyGetSize_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyGetSize_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyGetSize_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyGetSize_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInit_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_8u_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C1R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C3R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphologyInitAlloc_32f_C4R(int roiWidth, const vnx8u* pMask, vnxiSize maskSize, vnxiPoint anchor,
    vnxiMorphState** ppState) VNX_NOEXCEPT;
/* Releases a state from InitAlloc; null gives -8. */
VNX_API vnxStatus vnxiMorphologyFree(vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDilateBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiErodeBorderReplicate_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphState* pState) VNX_NOEXCEPT;

/* Composite operations. vnxiMorphAdvState: a header of five 32-bit words (byte offsets of
 * the direct state, the reflected state and the intermediate image from the start of the
 * block, on both builds; the recorded figure roundup32(roiWidth x e) x roiHeight; a zero),
 * the direct state right after it, the reflected state (mask rotated by half a turn, anchor
 * (w - ax - 1, h - ay - 1)) and the intermediate image each at the next 32-byte boundary.
 * Both inner states are built with the run decomposition disabled (kinds 0, 1, 3 only).
 * Size: T x roiHeight + 2 S + 84, T = roiWidth x channels x e rounded up to 32, S the state
 * size of the mask at the centre anchor. Init and InitAlloc reverse the caller's mask in
 * place while they build the reflected state and restore it before returning: the mask
 * must be writable and not read elsewhere meanwhile.
 *   Open: tmp = E(src), dst = D'(tmp).   Close: tmp = D(src), dst = E'(tmp).
 *   Top-hat: dst = E(src), tmp = D'(dst), dst = src - tmp.
 *   Black-hat: dst = D(src), tmp = E'(dst), dst = tmp - src.
 *   Gradient: dst = D(src), tmp = E(src), dst = dst - tmp.
 * (D, E direct; D', E' reflected.) 8u differences saturate at 0; 32f differences below 0.0
 * become 0.0 (NaN stays NaN). The intermediate image has step T computed from the call's
 * ROI width. Checks of GetSize: roiHeight < 1 (-6), pSize null (-8), then the creation
 * checks without the anchor. Init: roiHeight < 1 (-6), pState null (-8), creation checks
 * of the direct, then the reflected state. InitAlloc: ppState null (-8); then the size is
 * queried (a failed query leaves 0, so a bad mask or size reports -9 here), allocated (-9),
 * and initialised (its status, the block released). Operation checks: pSrc, pDst, pState
 * null (-8); ROI below 1 (-6); steps (-14, 32f -108); borderType (-5); ROI width above the
 * creation width, or roiHeight x T below the recorded figure (-6). A taller ROI that passes
 * and needs more than the state's intermediate image takes a temporary one from the
 * scratch allocator for the call (-9 when that fails, nothing written); nothing is ever
 * written past the state's image. A failing inner step returns at once (dst may then hold
 * a partial result). */
typedef struct vnxiMorphAdvState vnxiMorphAdvState;
VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C1R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C3R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvGetSize_8u_C4R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C1R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C3R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvGetSize_32f_C4R(vnxiSize roiSize, const vnx8u* pMask, vnxiSize maskSize, int* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_8u_C1R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_8u_C3R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_8u_C4R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_32f_C1R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_32f_C3R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInit_32f_C4R(vnxiMorphAdvState* pState, vnxiSize roiSize, vnx8u* pMask, vnxiSize maskSize,
    vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C1R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C3R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_8u_C4R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C1R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C3R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphAdvInitAlloc_32f_C4R(vnxiMorphAdvState** ppState, vnxiSize roiSize, vnx8u* pMask,
    vnxiSize maskSize, vnxiPoint anchor) VNX_NOEXCEPT;
/* Releases a composite state from InitAlloc; null gives -8. */
VNX_API vnxStatus vnxiMorphAdvFree(vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphOpenBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphCloseBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphTophatBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphBlackhatBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_8u_C4R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMorphGradientBorder_32f_C4R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
    vnxiSize roiSize, int borderType, vnxiMorphAdvState* pState) VNX_NOEXCEPT;

/* ---- Edges and features: Canny, corners, Hough lines, arctangent (features) -- */

/* Fast arctangent: pDst[i] = the angle of (pSrcX[i], pSrcY[i]) in degrees, from the fit
 * a = (-15.8131895*r + 61.094196)*r - 0.14050041 of r = min(|x|,|y|) / max(|x|,|y|,1e-8),
 * then a = 90 - a if |x| < |y|, a = 180 - a if x < 0, a = 360 - a if y < 0 (strict tests:
 * -0.0 counts as non-negative). r is m times the processor's approximate reciprocal of M
 * refined by one Newton step, so the last bits may differ from a division (and between
 * processor makers; results are the same on every build and thread count of one machine).
 * Results are not wrapped: (0, 0) and (1, 0) give -0.14050041, (1, -1e-30) 360.14050041.
 * The last len mod 4 elements go through the same vector code. A NaN input gives the
 * library's NaN. pDst may equal a source. Checks: a null pointer (-8), len < 1 (-6). Serial. */
VNX_API vnxStatus vnxibFastArctan_32f(const vnx32f* pSrcY, const vnx32f* pSrcX, vnx32f* pDst, int len) VNX_NOEXCEPT;

/* Colour gradient to gray, norm 0 max, 1 L1, 2 L2 of the channels c0, c1, c2:
 *   8u:  max; ((c0+c1+c2)*1365 + 2048) >> 12; floor(sqrt(float(c0^2+c1^2+c2^2) / 3.0f) + 0.5)
 *   16u: max; ((c0+c1+c2)*5461 + 8192) >> 14; the 8u L2 form (sum of squares exact in 64
 *        bits before it is rounded to float), at most 65535
 *   32f: max(|c0|,|c1|,|c2|); (|c0|+|c1|)+|c2|; sqrt((c0^2+c1^2)+c2^2), all in float and
 *        without division by 3; a NaN channel gives the library's NaN for every norm.
 * Checks: pSrc, pDst null (-8); width, height below 1 (-6); srcStep below 3 samples a
 * pixel or dstStep below one (-14); 16u, 32f steps not multiples of 2, 4 (-108); norm not
 * 0, 1, 2 (-5). Serial. */
VNX_API vnxStatus vnxiGradientColorToGray_8u_C3C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, int norm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGradientColorToGray_16u_C3C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                    vnxiSize roiSize, int norm) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGradientColorToGray_32f_C3C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnxiSize roiSize, int norm) VNX_NOEXCEPT;

/* Canny edge map (255 on edges, 0 elsewhere) from horizontal and vertical derivatives:
 * m = |dx| + |dy| (16s: on 16 unsigned bits saturated at 65535, so -32768, -32768 gives
 * 65535; 32f: in float). A pixel is a candidate only if it passes the low test, which
 * differs on purpose: 16s keeps m > the truncated lowThresh (10.9 acts as 10), 32f keeps
 * m >= lowThresh. Suppression with ax = |dx|, ay = |dy| as floats and tan 22.5 = bits
 * 0x3ED413CD, tan 67.5 = bits 0x401A827A: ay < ax*tan22.5 keeps m > left and m >= right;
 * ax*tan67.5 < ay keeps m > above and m >= below; otherwise m > upper-left and m > lower-
 * right when dx, dy have the same sign, m > max(lower-left, upper-right) when not. On a
 * plateau of two equal magnitudes along the gradient the algorithm keeps the LEFT (upper)
 * one: it passes m >= its right (lower) twin, the twin fails m > left. Magnitude beyond
 * the ROI is 0, so a 1x1 ROI's pixel survives when its magnitude passes the low test.
 * A kept pixel above highThresh (strictly; 16s: the truncated value) is a seed; seeds are
 * taken in raster order, then hysteresis pops last-in-first-out and marks 8-connected
 * candidates (upper-left, upper, upper-right, left, right, lower-left, lower, lower-right).
 * A NaN threshold passes the checks and compares false: no candidate (or no seed).
 * Checks: pSrcDx, pSrcDy, then pDstEdges, pBuffer null (-8); width, then height below 1
 * (-6); derivative steps below 2*width (16s) or 4*width (32f), or dstEdgeStep below width
 * (-14); derivative steps not multiples of 2 (4) (-108); lowThresh < 0 or highThresh <
 * lowThresh (-5; equal thresholds are fine).
 * vnxiCannyGetSize: null (-8), width or height below 1 (-6); 5*(w+2)*(h+2) + 16*w + 160
 * when w+2 and h+2 are below 65535 (16-bit stack entries), else 9*(w+2)*(h+2) + 16*w + 160
 * (32-bit entries); the same size serves both members. A buffer smaller than that is not
 * detected. The map is the set of candidates 8-connected to a seed, which no order of
 * pushes and pops changes, and the stack never overflows (each pixel is pushed at most
 * once), so the work runs in parallel bands of rows (at least 32 rows and 64K pixels a
 * thread): each band suppresses its rows and grows its own seeds within them, then the
 * calling thread continues the edges that cross from one band into the next. The map is
 * the serial one for every thread count. */
VNX_API vnxStatus vnxiCannyGetSize(vnxiSize roiSize, int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCanny_16s8u_C1R(const vnx16s* pSrcDx, int srcDxStep, const vnx16s* pSrcDy, int srcDyStep,
                                      vnx8u* pDstEdges, int dstEdgeStep, vnxiSize roiSize, vnx32f lowThresh,
                                      vnx32f highThresh, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCanny_32f8u_C1R(const vnx32f* pSrcDx, int srcDxStep, const vnx32f* pSrcDy, int srcDyStep,
                                      vnx8u* pDstEdges, int dstEdgeStep, vnxiSize roiSize, vnx32f lowThresh,
                                      vnx32f highThresh, vnx8u* pBuffer) VNX_NOEXCEPT;

/* Hough lines. Resolution of the accumulator: distance step in pixels, angle step in
 * radians, passed by value. */
typedef struct {
  vnx32f rho;
  vnx32f theta;
} vnxiHoughDelta;
/* Every non-zero pixel (x, y) votes in theta rows t = 0 .. nTheta-1 for the rho index
 * round(x*cos_t + y*sin_t) + (nRho-1)/2, the products taken in float as float(x)*c_t +
 * float(y)*s_t and rounded to nearest with ties to even; c_t, s_t are cos and sin of
 * theta_t (theta_0 = 0, theta_t+1 = theta_t + delta.theta summed in float; cos, sin in
 * double rounded to float) times the float 1/delta.rho. nRho = (2*(w+h)+1) / delta.rho in
 * float and nTheta = pi / delta.theta in double (pi = 3.141592653589793), both truncated.
 * The tables have nTheta+1 entries; the last (theta about pi) takes no votes, since its
 * lines are those of theta 0. A cell of v votes is a peak when v > threshold, v > the
 * cell at rho-1, v >= the cell at rho+1, v > the cell of the previous theta row (strict
 * toward lower theta) and v >= the one of the next (rows outside 0..nTheta-1 hold 0).
 * Peaks are taken theta row by theta row, rho ascending; each is inserted before the
 * first line with fewer votes, so among equal votes the earlier-found (lower theta, then
 * lower rho) line comes first; once maxLineCount lines are held, a peak below the last
 * is not inserted. pLine gets (rho, theta) pairs, rho = (index - (nRho-1)/2) * delta.rho
 * and theta = t * delta.theta in float, strongest first; *pLineCount the number written.
 * The found count behind the warning counts every peak, inserted or not: more peaks than
 * maxLineCount give vnxStatusTooManyLines (33) with the strongest maxLineCount written.
 * Checks: pSrc, pLine, pLineCount, pBuffer null (-8); srcStep < 1 (-14, the step is not
 * compared with the width); width, height or maxLineCount below 1 (-6); delta.rho not
 * > 0 or above w+h, delta.theta not > 0 or above pi in float (3.14159274f, the float
 * nearest pi, is accepted and gives nTheta = 1, entries 0 and pi), threshold < 1, or a
 * resolution so fine that the work would not fit a buffer an int can size (-5). Serial.
 * GetSize (roiSize, delta, maxLineCount, result): null (-8), width or height below 1
 * (-6), delta.rho or delta.theta not > 0 (-5); then, with R = 4*nRho + 16, 16*
 * maxLineCount + 4*R + 8*nTheta + (4*w + 48)*h + 200 summed in 32-bit arithmetic that
 * wraps (a count past the int range converts to INT32_MIN) and stored as it stands; a
 * sum above 2147483647 read as unsigned gives the warning vnxStatusSizeOverflow (12)
 * with the wrapped size, the one exception to the library's size-query rule. */
VNX_API vnxStatus vnxiHoughLineGetSize_8u_C1R(vnxiSize roiSize, vnxiHoughDelta delta, int maxLineCount,
                                              int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiHoughLine_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnxiSize roiSize, vnxiHoughDelta delta,
                                          int threshold, vnx32f* pLine, int maxLineCount, int* pLineCount,
                                          vnx8u* pBuffer) VNX_NOEXCEPT;

/* Corner measures of an 8u (or 32f) image, per pixel, from the box means Mxx, Mxy, Myy
 * over avgWindow x avgWindow (3 or 5) of dx*dx, dx*dy, dy*dy (products in float): dx by
 * FilterSobelVert and dy by FilterSobelHoriz with mask 11*apertureSize (kernType 0), or
 * FilterScharrVert / ScharrHoriz (kernType 1, aperture 3), replicated border; the box
 * means as FilterLowpassBorder_32f with the replicated border gives them (sums along x
 * left to right, then down the rows top to bottom, times 1.0f/(k*k)), so the results
 * equal the composition of those exports bit for bit. Scale s: 8u 1/4080 (aperture 3),
 * 1/65280 (5); 32f sources 1/16 and 1/256 (the 8u scales without the 255 of the 8-bit
 * range); Scharr times 0.6125 (bits 0x3F1CCCCD).
 * MinEigenVal: a = Mxx*h, b = Mxy*h, c = Myy*h with h = s/2, then
 *   (a + c) - sqrt((a - c)*(a - c) + 4.0f*(b*b)), all in float.
 * EigenValsVecs, six floats a pixel (l1, l2, x1, y1, x2, y2): p = s*Mxx, q = s*Mxy,
 *   r = s*Myy, t = 0.01f*max(p, r), d = sqrt(4*q*q + (p - r)*(p - r)), l1 = (p + r + d)*0.5,
 *   l2 = (p + r - d)*0.5; min(p, r) < t or p*r - q*q < t gives six zeros; else |q| < t gives
 *   l1, l2, (1, 0), (0, 1); else with g = -q (Sobel) or +q (Scharr) the vectors (g, l1 - p)
 *   and (g, l2 - p) over their lengths, a length below 1.1920929e-7 taken as that value.
 *   A constant image gives p = q = r = 0: six zeros (and MinEigenVal 0).
 * A NaN result is the library's NaN. Checks: pSrc, pDst, pBuffer null (-8); width, height
 * below 1 (-6); srcStep below width samples, dstStep below 4*width (MinEigenVal) or
 * 24*width (EigenValsVecs) (-14); dstStep (and for 32f srcStep) not a multiple of 4
 * (-108); kernType not 0 or 1 (-5); apertureSize not 3 or 5, or Scharr with 5 (-6);
 * avgWindow not 3 or 5 (-6, not -33). The derivatives come from the filters' own band
 * bodies, which cannot fail once these checks pass.
 * GetBufferSize (one function for both measures of a source type): null (-8), width or
 * height below 1 (-6), apertureSize not 3 or 5 (-6), avgWindow not 3 or 5 (-6); reports
 * 2*P + 3*Q*(threads > 1 ? 2 : 1) + threads*B + F + 32 with P the dx or dy plane
 * (width*height*2 bytes for 8u, *4 for 32f) and Q = 4*W16*height (W16 the width rounded
 * up to 16), each rounded up to 32; B the band scratch, 4*(3*Wp + 3*k*Wr + 3*Wr) rounded
 * up to 32 (Wr = width + 8, Wp = width + 2*(k/2) + 8, both rounded up to 8, k =
 * avgWindow); F the largest of the Sobel (and for aperture 3 Scharr) and Lowpass 32f
 * queries for the ROI. It depends on the thread count: query with the count the call
 * will use. The fused pass runs in parallel bands of rows (at least 32 rows and 64K
 * pixels a thread); results are the same for every thread count. */
VNX_API vnxStatus vnxiMinEigenValGetBufferSize_8u32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                         int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiEigenValsVecsGetBufferSize_8u32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                           int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinEigenValGetBufferSize_32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                       int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiEigenValsVecsGetBufferSize_32f_C1R(vnxiSize roiSize, int apertureSize, int avgWindow,
                                                         int* pBufferSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinEigenVal_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                            vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiEigenValsVecs_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                              vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiMinEigenVal_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                          vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                          vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiEigenValsVecs_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, int kernType, int apertureSize, int avgWindow,
                                            vnx8u* pBuffer) VNX_NOEXCEPT;

/* ---- Pyramids, sub-pixel copy and optical flow (pyramids) -------------------- */

/* A point with float coordinates (x, y): the feature points of the optical flow and the centre of
 * an intersecting sub-pixel copy. */
typedef struct { vnx32f x, y; } vnxiPoint32f;

/* Gaussian pyramid steps with the 5x5 kernel (1 4 6 4 1) x (1 4 6 4 1).
 * Down: dst is ((w + 1) >> 1) x ((h + 1) >> 1); dst(i, j) weighs src around (2i, 2j) (total 256).
 *   Beyond the edges the image is mirrored without repeating the edge pixel, again while the index
 *   is still outside (a width of 1 reads only column 0; a width of 2 weighs its columns 8, 8).
 * Up: dst is 2w x 2h; per direction an even position 2x takes p(x-1) + 6p(x) + p(x+1) and an odd one
 *   4(p(x) + p(x+1)) (total 64); left and top mirror (p(-1) is p(1)), right and bottom repeat the
 *   edge pixel (p(w) is p(w-1)).
 * Results: 8u (S + 128) >> 8 down, (S + 32) >> 6 up; 8s the floor of (S + 128) / 256 and (S + 32) / 64;
 *   32f S * 0.00390625 and S * 0.015625. 32f sums rows first, then columns, in the order
 *   ((6 p0 + 4 (p-1 + p1)) + p-2) + p2 down and (p-1 + 6 p0) + p1, 4 (p0 + p1) up, per pass (integer
 *   sums are exact in any order).
 * Buffer: down 6 R + 32 bytes with R = 4 w channels rounded up to 16; up 3 R' + 32 with R' = 8 w channels
 *   rounded up to 16; the steps align it themselves. Parallel bands take their rows from the buffer while
 *   it holds them; further bands take theirs from the scratch allocator, and when that fails the step runs
 *   in as many bands as the buffer holds (the results are the same).
 * As everywhere in the library, a 32f step that is not a multiple of 4 gives -108 after the row-byte
 * tests (here and in the sub-pixel copies and layer steps, for every 16u or 32f image). */
VNX_API vnxStatus vnxiPyrDownGetBufSize_Gauss5x5(int roiWidth, int dataType, int channels, int* pBufSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUpGetBufSize_Gauss5x5(int roiWidth, int dataType, int channels, int* pBufSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8s_C1R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_8s_C3R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                               vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrDown_Gauss5x5_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                               vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8u_C3R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8s_C1R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_8s_C3R(const vnx8s* pSrc, int srcStep, vnx8s* pDst, int dstStep,
                                            vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                             vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyrUp_Gauss5x5_32f_C3R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                             vnxiSize roiSize, vnx8u* pBuffer) VNX_NOEXCEPT;

/* Sub-pixel copies (bilinear). Only the fractional part of an offset counts: f = d - trunc(d), plus 1
 * when negative (dx = -0.25 is a fraction of 0.75 and moves no column). Integer members weigh the four
 * neighbours with 14-bit weights a = trunc(f * 16384 + 0.5), w = (p q + 16384) >> 14 (they sum to 16388
 * at a zero offset) and return (sum w s + 8192) >> 14; 16u results above 65535 saturate. The _Sfs member
 * rounds the same sum Q as (Q + 2^(s - 1)) >> s with s = 14 + scaleFactor (a shift of 0 or less
 * multiplies) and saturates to 0..65535; -7 gives values times 128. Float members (8u32f, 16u32f and
 * 32f) raise fx to at least 1e-6 and fy to at least 1e-9 and sum ((w00 s00 + w10 s10) + w01 s01) + w11 s11.
 * CopySubpix reads (width + 1) x (height + 1) source pixels; srcStep must cover width + 1 pixels.
 * Both families test the row bytes of source and destination, then (as everywhere) the multiples of the
 * element size of both (-108). */
VNX_API vnxStatus vnxiCopySubpix_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep, vnxiSize roiSize,
                                        vnx32f dx, vnx32f dy) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpix_8u16u_C1R_Sfs(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                               vnxiSize roiSize, vnx32f dx, vnx32f dy, int scaleFactor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpix_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                           vnxiSize roiSize, vnx32f dx, vnx32f dy) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpix_16u_C1R(const vnx16u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                         vnxiSize roiSize, vnx32f dx, vnx32f dy) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpix_16u32f_C1R(const vnx16u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                            vnxiSize roiSize, vnx32f dx, vnx32f dy) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpix_32f_C1R(const vnx32f* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                         vnxiSize roiSize, vnx32f dx, vnx32f dy) VNX_NOEXCEPT;

/* Intersecting copy: the window dstRoi centred at `point`, corner x0 = x - (W - 1) / 2, ix = trunc(W + x0) - W,
 * fx = x0 - ix (likewise y). pMin.x = min(max(0, -ix), W); pMax.x = W - 1, or srcWidth - ix - 2 when
 * ix + W - 1 > srcWidth - 2; ix >= srcWidth gives pMin.x = 0, pMax.x = -1 (likewise y): [pMin, pMax] is
 * the part of the window whose four source pixels are all inside. Every window pixel is the interpolation
 * above of the source extended by edge replication: source rows and columns are clamped to the image, so
 * a pixel left of pMin.x takes the first source column and one right of pMax.x the last (interpolated
 * along the other direction only where that one is inside). Same arithmetic as CopySubpix. */
VNX_API vnxStatus vnxiCopySubpixIntersect_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst,
                                                 int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                 vnxiPoint* pMax) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpixIntersect_8u16u_C1R_Sfs(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi,
                                                        vnx16u* pDst, int dstStep, vnxiSize dstRoi,
                                                        vnxiPoint32f point, vnxiPoint* pMin, vnxiPoint* pMax,
                                                        int scaleFactor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpixIntersect_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst,
                                                    int dstStep, vnxiSize dstRoi, vnxiPoint32f point,
                                                    vnxiPoint* pMin, vnxiPoint* pMax) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpixIntersect_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst,
                                                  int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                  vnxiPoint* pMax) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpixIntersect_16u32f_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi,
                                                     vnx32f* pDst, int dstStep, vnxiSize dstRoi, vnxiPoint32f point,
                                                     vnxiPoint* pMin, vnxiPoint* pMax) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiCopySubpixIntersect_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst,
                                                  int dstStep, vnxiSize dstRoi, vnxiPoint32f point, vnxiPoint* pMin,
                                                  vnxiPoint* pMax) VNX_NOEXCEPT;

/* Pyramid levels of any rate 1 < r <= 10. Up range of a dimension n: minimum 1 for n = 1, else
 * max(trunc((n - 1) r) + 1, n + 1); maximum max(n + 1, trunc(n r)) (single-precision products; a maximum
 * beyond 2^31 - 1 is reported as 2^31 - 1). Down size: m = trunc(n / r + 0.5), at least 1, moved by one
 * until n lies in the up range of m. */
VNX_API vnxStatus vnxiGetPyramidDownROI(vnxiSize srcRoi, vnxiSize* pDstRoi, vnx32f rate) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGetPyramidUpROI(vnxiSize srcRoi, vnxiSize* pDstRoiMin, vnxiSize* pDstRoiMax,
                                      vnx32f rate) VNX_NOEXCEPT;

/* The pyramid record: one block from vnxiPyramidInitAlloc, released by vnxiPyramidFree, with its four
 * arrays of level + 1 entries in the same block (each aligned to 8 bytes). The caller fills pImage and
 * pStep; level is min(the wanted count, the down steps that reach 1 x 1). */
typedef struct {
  void** pImage;  /* level images, null at creation */
  vnxiSize* pRoi; /* level sizes, level 0 the base ROI, each the down size of the one before */
  vnx64f* pRate;  /* scale factors: level k holds (1 / rate)^k, level 0 1.0 */
  int* pStep;     /* level row steps in bytes, 0 at creation */
  void* pState;   /* a layer state the caller may attach, null at creation */
  int level;      /* levels above the base */
} vnxiPyramid;
VNX_API vnxStatus vnxiPyramidInitAlloc(vnxiPyramid** ppPyramid, int level, vnxiSize roiSize, vnx32f rate) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidFree(vnxiPyramid* pPyramid) VNX_NOEXCEPT;

/* Layer states and steps: smooth with the caller's kernel, then resample to the next level.
 * Kernel: kerSize odd, >= 3; only taps 0..kerSize/2 count, the right half is their mirror (a differing
 * right half gives the warning 38 and the state is built). S = tap[c] + 2 (taps 0..c-1): 32f taps are
 * divided by S unless |S| <= FLT_EPSILON (then used as given); integer taps become trunc(16384 tap / S + 0.5)
 * kept in 16 bits and halved (13 fraction bits); an integer sum of 0 keeps the taps as given, in units of
 * 2^-13. mode must be 2 (linear).
 * Smoothing: rows then columns, the image mirrored about its edge pixel beyond the edges. 8u and 16u keep
 * the intermediate in units of 1/8: a row sum is (sum + 2^9) >> 10, a column sum (sum + 2^12) >> 13,
 * clamped to 16 bits (8u) or 32 bits (16u); 32f sums floats over the taps in order.
 * Down: a rate within [1.99998, 2.00002] takes every second intermediate sample in each direction; any
 * other rate maps destination row j to y = j r (single precision), iy = trunc(y), f = y - iy, and blends
 * rows iy + 1 and iy as trunc(a f + 0.5 + b (1 - f)) (32f: a f + b (1 - f)), then columns alike at x = i r;
 * indices beyond the last row or column take the last one.
 * Up: the same smoothing, then the same blend at y = j / r and x = i / r (rows, then columns).
 * Results: 8u and 16u v -> (v + 4) >> 3, 0 when v + 4 < 8, the type's maximum above it; 32f as blended.
 * Steps check pointers (-8), the source size (-6), steps against row bytes (-14), then a state rate outside
 * (1, 10] or a state of another type, channel count or direction (-5), then the destination size (-6):
 * down, the next entry of the state's table of sizes when the source height is in it, else the down size
 * of the source; up, within the up range. Both steps take a work area from the scratch allocator for each
 * call (-9 when that fails) and run in bands of destination rows. One state serves one call at a time. */
typedef struct vnxiPyramidState vnxiPyramidState;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_8u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_8u_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_8u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_8u_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_16u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_16u_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_16u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_16u_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_32f_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_32f_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownInitAlloc_32f_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDown_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerDownFree_32f_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_8u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_8u_C1R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_8u_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_8u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_8u_C3R(const vnx8u* pSrc, int srcStep, vnxiSize srcRoi, vnx8u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_8u_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_16u_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_16u_C1R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_16u_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_16u_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx16s* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_16u_C3R(const vnx16u* pSrc, int srcStep, vnxiSize srcRoi, vnx16u* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_16u_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_32f_C1R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_32f_C1R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_32f_C1R(vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpInitAlloc_32f_C3R(vnxiPyramidState** ppState, vnxiSize srcRoi, vnx32f rate,
                                                   const vnx32f* pKernel, int kerSize, int mode) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUp_32f_C3R(const vnx32f* pSrc, int srcStep, vnxiSize srcRoi, vnx32f* pDst, int dstStep,
                                          vnxiSize dstRoi, const vnxiPyramidState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiPyramidLayerUpFree_32f_C3R(vnxiPyramidState* pState) VNX_NOEXCEPT;

/* Pyramidal Lucas-Kanade flow. pPyr1 and pPyr2 are pyramid records whose images (of the function's
 * type) the caller filled up to maxLev; points are in level-0 pixels. Every status byte starts at
 * maxLev + 1. Per point and level lev = maxLev .. 0 (f = scale factor of the level): the window of side
 * winSize + 2 around pPrev * f is cut from the first image with the intersecting copy, its inside part
 * shrunk by one pixel a side, and differentiated with the 3 x 3 Scharr sums divided by 32; then at most
 * maxIter times the window around the estimate (u, v) (at the coarsest level pNext * f) is cut from the
 * second image, d = first - second is summed over the intersection of the two inside parts (G again on
 * the first pass and whenever the intersection changes), det = Gxx Gyy - Gxy^2 below 2^-52 loses the
 * point, (dx, dy) = G^-1 b is added; dx^2 + dy^2 < threshold ends the level, and so does a step that
 * undoes the previous one to within 2^-11.5 in both components (then half of it is taken back). A
 * finished level above 0 multiplies (u, v) by the rate (by 1.0 when maxLev = 1: deliberately unscaled).
 * Status: 0 tracked to level 0 (pNext written); k > 0 lost on level k - 1: pNext keeps its value, except
 * when the two windows no longer overlap, which writes the last estimate in level-0 pixels.
 * pError: RMS of the last differences over the last intersection in grey levels (0 when none).
 * Patches: 8u windows times 128 in 16 bits (the 8u16u Sfs copy with -7), derivatives (sum + 16) >> 5,
 * sums exact in double, error times 0.0078125; 16u and 32f windows as floats in grey levels (the
 * 16u32f and 32f copies), derivatives times 0.03125 (the differences across the pixel first, then
 * 3 (first) + 10 (middle) + 3 (last) in that order), sums in double row by row, error unscaled.
 * Checks: pointers (-8); numFeat, winSize < 1 or winSize other than the state's (-6); maxLev < 0,
 * maxIter < 1 (-5); threshold < 0 or NaN (-5); then, beyond these, maxLev above either record's level
 * count or a state of another type (-5), and per level up to maxLev a null image (-8) or a level step below
 * its row bytes (-14) or not a multiple of the element size (-108). The points are split
 * into equal consecutive chunks, one per thread (the last takes the remainder), each with its own part of
 * the state's scratch: results do not depend on the thread count. hint is accepted and unused. */
typedef struct vnxiOptFlowPyrLKState vnxiOptFlowPyrLKState;
VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                       int winSize, int hint) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_16u_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                        int winSize, int hint) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLKInitAlloc_32f_C1R(vnxiOptFlowPyrLKState** ppState, vnxiSize roiSize,
                                                        int winSize, int hint) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLK_8u_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                              const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                              vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                              vnx32f threshold, vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLK_16u_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                               const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                               vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                               vnx32f threshold, vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLK_32f_C1R(const vnxiPyramid* pPyr1, const vnxiPyramid* pPyr2,
                                               const vnxiPoint32f* pPrev, vnxiPoint32f* pNext, vnx8u* pStatus,
                                               vnx32f* pError, int numFeat, int winSize, int maxLev, int maxIter,
                                               vnx32f threshold, vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_8u_C1R(vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_16u_C1R(vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiOpticalFlowPyrLKFree_32f_C1R(vnxiOptFlowPyrLKState* pState) VNX_NOEXCEPT;

/* ---- Distance transforms, flood fill and marker labelling (distance, segment)  */

/* Chamfer distance transforms of a binary 8u image: every output pixel gets the
 * weighted chamfer distance to the nearest source pixel that is 0, by a forward
 * raster pass (left, up, up-left, up-right; 5x5 also the knight steps above) and a
 * backward pass (mirrored), neighbours read only inside the ROI. pMetrics holds a
 * (orthogonal step), b (diagonal step) and, for 5x5, c (knight step). Far values:
 * 255 (8u), 65535 (16u), 3.4028235e38 (32f); a ROI without zeros is far everywhere.
 * Checks: pointers (-8), ROI (-6), source and destination steps against their row
 * bytes (-14), destination step a multiple of its element (-108), then a weight
 * that is not positive (-56); a float weight that is NaN is not positive.
 * Choices:
 * - Integer weights are clamped to the far value and every sum is clamped before it
 *   is compared. Float sums are rounded once each in pass order and compared with
 *   values no larger than 3.4028235e38, so an infinite weight or sum never wins and
 *   the far value stays finite.
 * - 3x3 integer weights with b >= 2a run the orthogonal neighbours only (the same
 *   distances). The 32f members and the 5x5 masks always run the whole mask: with
 *   rounded float sums a diagonal step can win by a rounding even when b >= 2a.
 * - The backward pass takes the minimum with every anti-causal term; a pixel already
 *   no larger than the smallest weight stays as it is either way.
 * - In place (C1IR), 0 marks the features for the whole call: a non-feature's
 *   distance is at least 1.
 * - Parallel form: with 2 or more threads, width >= 65, height >= 64 and (integer
 *   weights) a <= b, each pass runs in bands of rows, each band starting as if its
 *   edge were the ROI's; the seams are then joined in pass order by recomputing the
 *   band's rows from the finished rows beyond the seam until `radius` consecutive
 *   rows (1 for 3x3, 2 for 5x5) come out unchanged. Every thread count gives the
 *   serial bits. It needs one scratch row (-9 if the allocation fails, nothing
 *   written). */
VNX_API vnxStatus vnxiGetDistanceTransformMask_32s(int kerSize, int norm, vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGetDistanceTransformMask_32f(int kerSize, int norm, vnx32f* pMetrics) VNX_NOEXCEPT;
/* maskType = kerSize * 10 + norm (30, 31, 32, 50, 51, 52), checked as kerSize first
 * (-6 unless 3 or 5), then norm (-5 unless 0..2), C division and remainder. */
VNX_API vnxStatus vnxiGetDistanceTransformMask(int maskType, vnx32f* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_3x3_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_5x5_8u_C1R(const vnx8u* pSrc, int srcStep, vnx8u* pDst, int dstStep,
                                                   vnxiSize roiSize, const vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_3x3_8u16u_C1R(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_5x5_8u16u_C1R(const vnx8u* pSrc, int srcStep, vnx16u* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_3x3_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32f* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_5x5_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                      vnxiSize roiSize, const vnx32f* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_3x3_8u_C1IR(vnx8u* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                                    const vnx32s* pMetrics) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiDistanceTransform_5x5_8u_C1IR(vnx8u* pSrcDst, int srcDstStep, vnxiSize roiSize,
                                                    const vnx32s* pMetrics) VNX_NOEXCEPT;


/* Flood fill, in place, of the connected region holding the seed (4- or 8-connected).
 * Plain: every channel equal to the seed's colour before the fill; Range: every
 * channel within [seed - minDelta, seed + maxDelta] (8u: clamped to 0..255; 32f: not
 * clamped); Grad: every channel within [q - minDelta, q + maxDelta] of a neighbour q
 * already in the region, pre-fill values throughout. One-channel members take the
 * value and deltas by value, three-channel members by pointers to three values.
 * pRegion receives the area, the new value (value[1], value[2] are 0 for one
 * channel) and the bounding box. pBuffer holds vnxiFloodFillGetSize (Grad:
 * vnxiFloodFillGetSize_Grad) bytes for the ROI, from any address.
 * Checks: pImage, pRegion, pBuffer, and the value and delta pointers of the C3
 * members (-8); ROI (-6); imageStep below width x element size, the same bound for
 * C3 (-14); a 32f step not a multiple of 4 (-108); the seed outside the ROI (-11);
 * a 32f delta below zero or NaN (-11).
 * A seed whose colour already equals the new value (every channel) returns
 * vnxStatusOk at once: nothing painted, pRegion not written.
 * Choices:
 * - The walk is a scan-line segment stack (row, left, right, parent left, parent
 *   right, direction; last in, first out), started with the direction pointing up,
 *   or down when the seed is on the last row.
 * - Taken pixels are marked in the buffer (one bit a pixel for plain and Range, the
 *   (width + 2) x (height + 2) byte map for Grad, border bytes 0 and never read), so
 *   a Range fill whose new value lies inside its range still ends. The seed is
 *   always painted, even a NaN seed (which equals nothing, itself included).
 * - 32f colours compare as values: -0 equals +0, NaN equals nothing and is in no
 *   range.
 * - A Grad candidate of a searched row passes when it passes against any pixel of
 *   the span that touches it (the one above or below; with 8-connectivity also the
 *   diagonal ones); pixels along a row are tested against the pixel beside them. The
 *   region is therefore the set of pixels reached from the seed through neighbour
 *   pairs that pass, whatever the order; the Grad rule paints after the walk.
 * - The reported size is enough for any content: entries that would not fit are
 *   not pushed, and a rescan of the box around the region resumes the walk from
 *   every untaken pixel that passes against a taken neighbour, until nothing is
 *   left. The region is the same; the buffer is never written past the size. */
typedef struct {
  vnx64f area;     /* pixels painted */
  vnx64f value[3]; /* the new value */
  vnxiRect rect;   /* bounding box of the painted pixels */
} vnxiFillRegion;
/* Work buffer bytes: (24 x height x width) / 4 + 32 in 64 bits; Grad adds
 * (width + 2) x (height + 2). -8, -6, and -6 when the size does not fit an int. */
VNX_API vnxStatus vnxiFloodFillGetSize(vnxiSize roiSize, int* pBufSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFillGetSize_Grad(vnxiSize roiSize, int* pBufSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_4Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             vnx8u newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_4Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             const vnx8u* pNewVal, vnxiFillRegion* pRegion,
                                             vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_4Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              vnx32f newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_4Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              const vnx32f* pNewVal, vnxiFillRegion* pRegion,
                                              vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_8Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             vnx8u newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_8Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                             const vnx8u* pNewVal, vnxiFillRegion* pRegion,
                                             vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_8Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              vnx32f newVal, vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_8Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                              const vnx32f* pNewVal, vnxiFillRegion* pRegion,
                                              vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range4Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range4Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range4Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                   vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range4Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                   const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range8Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range8Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range8Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                   vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Range8Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                   const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                   const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                   vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad4Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                 vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                 vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad4Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                 const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                 vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad4Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad4Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                  const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad8Con_8u_C1IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                 vnx8u newVal, vnx8u minDelta, vnx8u maxDelta, vnxiFillRegion* pRegion,
                                                 vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad8Con_8u_C3IR(vnx8u* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                 const vnx8u* pNewVal, const vnx8u* pMinDelta, const vnx8u* pMaxDelta,
                                                 vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad8Con_32f_C1IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  vnx32f newVal, vnx32f minDelta, vnx32f maxDelta,
                                                  vnxiFillRegion* pRegion, vnx8u* pBuffer) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiFloodFill_Grad8Con_32f_C3IR(vnx32f* pImage, int imageStep, vnxiSize roiSize, vnxiPoint seed,
                                                  const vnx32f* pNewVal, const vnx32f* pMinDelta,
                                                  const vnx32f* pMaxDelta, vnxiFillRegion* pRegion,
                                                  vnx8u* pBuffer) VNX_NOEXCEPT;

/* Marker labelling, in place: every pixel above 0 becomes 255, then each component
 * of 255 pixels, in raster order of its first pixel, is filled with the next label
 * (minLabel, minLabel + 1, ..., maxLabel, then minLabel again) by the plain 8u fill,
 * 4-connected for norm 1, 8-connected for norm 0. *pNumber counts every component.
 * Checks: pMarker, pBuffer, pNumber (-8); ROI (-6); markerStep below width (-14);
 * minLabel < 1, maxLabel >= 255 or minLabel > maxLabel (-5); norm not 0 or 1 (-5).
 * The buffer size is that of vnxiFloodFillGetSize. */
VNX_API vnxStatus vnxiLabelMarkersGetBufferSize_8u_C1R(vnxiSize roiSize, int* pBufSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiLabelMarkers_8u_C1IR(vnx8u* pMarker, int markerStep, vnxiSize roiSize, int minLabel,
                                           int maxLabel, int norm, int* pNumber, vnx8u* pBuffer) VNX_NOEXCEPT;

/* ---- Integral images and Haar classifiers (detect) --------------------------- */
/* Summed-area tables of an 8u image (W x H ROI). Upright tables are (W+1) x (H+1):
 * row 0 and column 0 hold the offset `val` (`valSqr` for squares) and every entry
 * carries it once. Tilted tables are (W+2) x (H+2), rows 0 and 1 hold the offset,
 * and row r + 2 follows from source row r and the two table rows above it:
 *   T[0] = P[1]; T[x] = s[x-1] + s[x] + P[x-1] + P[x+1] - PP[x] (x = 1..W-1);
 *   T[W] = s[W-1] + P[W-1] + P[W+1] - PP[W]; T[W+1] = P[W].
 * 32s tables wrap at 32 bits (no saturation). 32f sums: the row sum is an exact
 * integer, only the vertical accumulation rounds; tilted 32f entries are evaluated
 * in double and rounded once. The 32f tilted sum tables (TiltedIntegral_8u32f and
 * the sum table of TiltedSqrIntegral_8u32f64f) ADD the new T[W] to the value the
 * caller's table already holds in column W of rows 2..H+1: zero that column first
 * for the plain table (the library never pre-clears it, so the rule stays
 * observable); all other entries and all square tables are assigned.
 * Checks: null pointers -8; W or H < 1 -6; srcStep < W or a table step below
 * elemBytes x columns -14; a table step not a multiple of its element -108 (the
 * source step is never tested for alignment). Serial. Upright tables larger than
 * three quarters of the largest cache are made row by row in a cached scratch row
 * whose whole 16-byte vectors go straight around the cache into the tables
 * (non-temporal stores; 64f square rows that sit 8 bytes off the sum rows' 16-byte
 * boundaries are stored in pairs that straddle two vectors, 32s square rows that sit
 * otherwise are copied out separately); the values are the same. The 64f square
 * sums run in 32-bit lanes in chunks of at most 16384 pixels (16384 x 255^2 < 2^31),
 * each added to an exact double base, so they are exact at every width. */
VNX_API vnxStatus vnxiIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                        vnxiSize roiSize, vnx32s val) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiIntegral_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                        vnxiSize roiSize, vnx32f val) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSqrIntegral_8u32s64f_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                              vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                              vnx64f valSqr) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSqrIntegral_8u32f64f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32f val,
                                              vnx64f valSqr) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiSqrIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                           vnx32s* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                           vnx32s valSqr) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32s val) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedIntegral_8u32f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                              vnxiSize roiSize, vnx32f val) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s64f_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                    vnx64f valSqr) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32f64f_C1R(const vnx8u* pSrc, int srcStep, vnx32f* pDst, int dstStep,
                                                    vnx64f* pSqr, int sqrStep, vnxiSize roiSize, vnx32f val,
                                                    vnx64f valSqr) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedSqrIntegral_8u32s_C1R(const vnx8u* pSrc, int srcStep, vnx32s* pDst, int dstStep,
                                                 vnx32s* pSqr, int sqrStep, vnxiSize roiSize, vnx32s val,
                                                 vnx32s valSqr) VNX_NOEXCEPT;

/* Standard deviation under rectangle `rect` at every position of the W x H output.
 * pSrc/pSqr address the table entry output (0,0) uses. Upright corners of output
 * (j,i): [j+y][i+x], [j+y][i+x+w], [j+y+h][i+x], [j+y+h][i+x+w], area w*h (formed in
 * 64 bits, then converted to single). Tilted corners A = [j+x+y][i+x-y],
 * B = [j+x+y+w+h][i+x-y+w-h], C = [j+x+y+h][i+x-y-h], D = [j+x+y+w][i+x-y+w], area
 * 2wh; column indices may be negative (the caller positions pSrc).
 * 32s32f / 32f: mean and variance in single, squares converted to single first;
 * tilted: mean in single (32f member: the four sums combined in double, mean in
 * double), variance in double, square root in single. Negative variances are 0.
 * Sfs: trunc(sqrt(var) x 2^-scaleFactor + 0.5) without saturation; a result outside
 * the 32-bit range gives INT_MIN (the processor's indefinite integer), and a scale
 * outside the float range is 0 or infinity. Checks: null -8; ROI -6; srcStep below
 * 4 x columns, sqrStep below elemBytes x columns or dstStep below 4W -14 (columns =
 * W + x + width upright, width + height + x + y + W - 1 tilted); srcStep, dstStep
 * not a multiple of 4 or sqrStep of its element -108; then rect x or y < 0, width
 * or height < 1 -6. Only RectStdDev_32f runs in bands: min(threads, (W x H) >> 10)
 * of them, serial below 2, at most 32. The upright members compute four adjacent
 * outputs at a time with the same operations, so the bits are those of the
 * formulas; a NaN result (from NaN or infinite table entries) is the library's NaN. */
VNX_API vnxStatus vnxiRectStdDev_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                           vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiRectStdDev_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                        vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiRectStdDev_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pSqr, int sqrStep,
                                           vnx32s* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect,
                                           int scaleFactor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedRectStdDev_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                                 vnx32f* pDst, int dstStep, vnxiSize roiSize,
                                                 vnxiRect rect) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedRectStdDev_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx64f* pSqr, int sqrStep,
                                              vnx32f* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedRectStdDev_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pSqr, int sqrStep,
                                                 vnx32s* pDst, int dstStep, vnxiSize roiSize, vnxiRect rect,
                                                 int scaleFactor) VNX_NOEXCEPT;


/* Haar classifier stages. A state is built once from the features' rectangles
 * (pFeature, concatenated in feature order), one weight per rectangle, one
 * threshold and two output values per feature, and pNum (rectangles per feature,
 * at least 1), and released with the matching Free. Upright states store the
 * two-rectangle features first, then the three-rectangle ones, then the others,
 * each group in input order (the evaluation order); tilted states keep the input
 * order. Corners: upright (x,y,w,h) c0 = (x+w, y+h), c1 = (x, y+h), c2 = (x+w, y),
 * c3 = (x, y); tilted c3 = (x, y), c2 = (x+w, y+w), c1 = (x-h, y+h),
 * c0 = (x+w-h, y+w+h); a rectangle's sum is I[c0] - I[c1] - I[c2] + I[c3].
 * InitAlloc: null -8; length < 0 or a pNum entry < 1 -6 (before allocating);
 * no memory -9; a rectangle with x or y < 0, width or height < 1 (tilted also
 * x + 1 < height) frees the block, sets *ppState to null and gives -5. length 0
 * builds an empty state (window size {0, 0}, every stage sum 0). The state keeps
 * the bounding rectangle with its classic bookkeeping (minima of x and y, far
 * edges compared against size + minimum; for tilted states the far edges are the
 * c0 corners) and a standard-weights flag, set only by the upright 32f
 * constructor (1 when every feature's first weight is -1); no apply reads them.
 * Free takes the state alone (null -8). GetSize: width = max column of c2, height
 * = max row of c1. TiltHaarFeatures: for each nonzero pMask[i] (one byte per
 * feature, ascending i) the feature with input index i becomes tilted (tag 1),
 * anchored at its top-left corner when flag != 0, at its lower-left one when
 * flag = 0; a state holding tilted features refuses with -5 (tilting happens once).
 * Apply: checks null -8 (pSrc, pNorm, pMask, pPositive, pState; mixed also pTilt);
 * ROI -6; srcStep, normStep (mixed: tiltStep) below 4W or maskStep below W -14;
 * a table or norm step not a multiple of 4 -108; no memory -9. At each position
 * whose mask byte is nonzero, with n = pNorm there: every feature adds
 * val2 if sum(float(rect sum) x weight) >= threshold x n, else val1; a position
 * whose stage sum is below `threshold` is cleared in the mask, the others are
 * counted into *pPositive. Sfs: all in wrapping 32-bit integers, scaleFactor
 * accepted and unused. Mixed members read tilted features (tag bit 0) from the
 * tilted table addressed at its row 1, column 1, the others from pSrc; the plain
 * members read every feature from pSrc. ApplyHaarClassifier_32f runs in row bands
 * (min(threads, (W x H) >> 10), serial below 2, at most 32) sharing one read-only
 * offset table; positive counts are added in band order. The 32f-valued members
 * evaluate four adjacent positions at once wherever one of the four has a nonzero
 * mask byte (lane by lane the same operations): the windows of all four are read,
 * so the table must cover the window of every ROI position; only positions with a
 * nonzero mask byte are changed or counted, and an all-zero mask reads no entry. */
typedef struct vnxiHaarClassifier_32f vnxiHaarClassifier_32f;
typedef struct vnxiHaarClassifier_32s vnxiHaarClassifier_32s;
VNX_API vnxStatus vnxiHaarClassifierInitAlloc_32f(vnxiHaarClassifier_32f** ppState, const vnxiRect* pFeature,
                                                 const vnx32f* pWeight, const vnx32f* pThreshold, const vnx32f* pVal1,
                                                 const vnx32f* pVal2, const int* pNum, int length) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiHaarClassifierInitAlloc_32s(vnxiHaarClassifier_32s** ppState, const vnxiRect* pFeature,
                                                 const vnx32s* pWeight, const vnx32s* pThreshold, const vnx32s* pVal1,
                                                 const vnx32s* pVal2, const int* pNum, int length) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedHaarClassifierInitAlloc_32f(vnxiHaarClassifier_32f** ppState, const vnxiRect* pFeature,
                                                       const vnx32f* pWeight, const vnx32f* pThreshold,
                                                       const vnx32f* pVal1, const vnx32f* pVal2, const int* pNum,
                                                       int length) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltedHaarClassifierInitAlloc_32s(vnxiHaarClassifier_32s** ppState, const vnxiRect* pFeature,
                                                       const vnx32s* pWeight, const vnx32s* pThreshold,
                                                       const vnx32s* pVal1, const vnx32s* pVal2, const int* pNum,
                                                       int length) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiHaarClassifierFree_32f(vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiHaarClassifierFree_32s(vnxiHaarClassifier_32s* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGetHaarClassifierSize_32f(const vnxiHaarClassifier_32f* pState, vnxiSize* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiGetHaarClassifierSize_32s(const vnxiHaarClassifier_32s* pState, vnxiSize* pSize) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltHaarFeatures_32f(const vnx8u* pMask, int flag, vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiTiltHaarFeatures_32s(const vnx8u* pMask, int flag, vnxiHaarClassifier_32s* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyHaarClassifier_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx32f* pNorm, int normStep,
                                                 vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                 vnx32f threshold, const vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyHaarClassifier_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx32f* pNorm,
                                                    int normStep, vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                                    int* pPositive, vnx32f threshold,
                                                    const vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyHaarClassifier_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pNorm,
                                                    int normStep, vnx8u* pMask, int maskStep, vnxiSize roiSize,
                                                    int* pPositive, vnx32s threshold,
                                                    const vnxiHaarClassifier_32s* pState, int scaleFactor) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32f_C1R(const vnx32f* pSrc, int srcStep, const vnx32f* pTilt,
                                                      int tiltStep, const vnx32f* pNorm, int normStep, vnx8u* pMask,
                                                      int maskStep, vnxiSize roiSize, int* pPositive,
                                                      vnx32f threshold,
                                                      const vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32s32f_C1R(const vnx32s* pSrc, int srcStep, const vnx32s* pTilt,
                                                         int tiltStep, const vnx32f* pNorm, int normStep,
                                                         vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                         vnx32f threshold,
                                                         const vnxiHaarClassifier_32f* pState) VNX_NOEXCEPT;
VNX_API vnxStatus vnxiApplyMixedHaarClassifier_32s_C1RSfs(const vnx32s* pSrc, int srcStep, const vnx32s* pTilt,
                                                         int tiltStep, const vnx32s* pNorm, int normStep,
                                                         vnx8u* pMask, int maskStep, vnxiSize roiSize, int* pPositive,
                                                         vnx32s threshold, const vnxiHaarClassifier_32s* pState,
                                                         int scaleFactor) VNX_NOEXCEPT;

/* ---- Status texts (runtime) --------------------------------------------------- */

/* A constant English text for a status, never null and never to be freed: one per
 * code of the status table, "Unknown status code" for any other value. */
VNX_API const char* vnxcvGetStatusString(vnxStatus status) VNX_NOEXCEPT;

#ifdef __cplusplus
}
#endif
#endif
