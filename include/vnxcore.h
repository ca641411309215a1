/* vnxcore: the thread count and processor facts that vnxcv reads at every call.
 * C99 and C++. This is the library's only tunable; there are no environment
 * variables and no configuration files. */
#ifndef VNXCORE_H
#define VNXCORE_H

#if defined(__GNUC__)
#define VNXCORE_API __attribute__((visibility("default")))
#else
#define VNXCORE_API
#endif

#ifdef __cplusplus
#define VNXCORE_NOEXCEPT noexcept
extern "C" {
#else
#define VNXCORE_NOEXCEPT
#endif

#ifndef VNX_STATUS_TYPE_DEFINED
#define VNX_STATUS_TYPE_DEFINED
/* 0 success, negative error (nothing written), positive warning (results written). */
typedef int vnxStatus;
#endif

/* Team size requested for every parallel region. vnxSetNumThreads keeps it equal
 * to the thread count, so the team requested always matches the band count. */
VNXCORE_API extern int threads_omp_of_n_vnx;

/* Number of bands (and threads) a parallel operation uses. -8 for a null pointer. */
VNXCORE_API vnxStatus vnxGetNumThreads(int* pNumThreads) VNXCORE_NOEXCEPT;
/* Sets the thread count and threads_omp_of_n_vnx together; below 1: -5, nothing changes.
 * The default is the number of online processors. Not to be changed while calls
 * that read it are running, nor between a buffer-size query and its call. */
VNXCORE_API vnxStatus vnxSetNumThreads(int numThreads) VNXCORE_NOEXCEPT;
/* Size in bytes of the largest cache of the processor. -8 for a null pointer. */
VNXCORE_API vnxStatus vnxGetMaxCacheSizeB(int* pSizeByte) VNXCORE_NOEXCEPT;
/* Physical cores on the processor die (at least 1). */
VNXCORE_API int vnxGetNumCoresOnDie(void) VNXCORE_NOEXCEPT;

#ifdef __cplusplus
}
#endif
#endif
