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
 * cannot be had the call returns -9 and writes nothing. */

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
 * four result pointers are required and not checked. Serial below 16384 pixels, else one band
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
 * 32f column query reports 32. */
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
 *   SobelNegVert      the negation of SobelVert
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
 * 1.0f / (k * k) rounded to single precision.
 * Checks: pSrc, pDst, pBuffer null (-8); width, height below 1 (-6); srcStep or dstStep
 * below the row bytes (-14); 8u16s dstStep odd, 32f steps not multiples of 4 (-108);
 * borderType outside 0..4 (-5); 8u8s divisor 0 (-5); mask neither 33 nor 55 (-33).
 * Bands of rows in parallel, one slice of pBuffer each, when threads > 1, the call is not
 * inside a parallel region, the die has more than one core, threads * 128 <= height
 * (Laplacian: threads * 32) and width >= 256 (Scharr: any width); serial otherwise.
 * GetBufferSize (roiSize, mask, result; Scharr without mask): -8, -6, -33 in this order;
 * reports threads * (S + 32) with S per thread, W16 / W4 the width rounded up to 16 / 4,
 * R8/R32 the row 8u16s/32f C1R queries and C16/C32 the column 16s/32f C1R queries for k:
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

/* ---- Morphology: dilation, erosion and composite operations (morph) ---------- */

/* ---- Edges and features: Canny, corners, Hough lines, arctangent (features) -- */

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
 *   32f S * 0.00390625 and S * 0.015625. Both steps sum rows first, then columns; 32f sums in the order
 *   ((6 p0 + 4 (p-1 + p1)) + p-2) + p2 down and (p-1 + 6 p0) + p1, 4 (p0 + p1) up, per pass.
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
 * 16u32f and 32f copies), derivatives times 0.03125, sums in double row by row, error unscaled.
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
 * source step is never tested for alignment). Serial. */
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
 * of them, serial below 2, at most 32. */
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
 * offset table; positive counts are added in band order. */
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

#ifdef __cplusplus
}
#endif
#endif
