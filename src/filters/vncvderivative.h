// The fixed kernels of the linear filters: Sobel first and second derivatives
// (horizontal, vertical, negated vertical, cross), Scharr first derivatives, the
// Laplacian and the box lowpass, 3x3 and 5x5, as band bodies that the fixed-kernel
// filters (vncvnewconvol.cpp) and other families (Canny, corner measures, optical
// flow) share. Bodies: vncvderivative8u.h (8u sources, 16s/8s/8u results) and
// vncvderivative32f.h (32f); tap tables: vncvtaps.h.
//
// Entry point for other families, no argument checks (the caller has checked the ROI,
// steps and pointers):
//   ownDerivativeRows(kernel, k, src, srcStep, dst, dstStep, roi, rule, value, y0, y1,
//                     scratch)
// writes rows y0 .. y1 - 1 of the kernel (for example ownFixedKernel::SobelVert, k = 3
// or 5; Scharr is 3 only) over an 8u ROI into a 16s plane (exact, saturated) or over a
// 32f ROI into a 32f plane, with the border rule and value (ownBorder::Replicate for
// Canny and the corner measures). Rows above and below the ROI come from the border
// rule, so any split of the rows into bands gives the same plane. `scratch` is a block
// of ownDerivativeScratchBytes(roi.width, k, output, kernel) bytes owned by the caller, one
// block for each band that runs at the same time; any alignment.
#pragma once

#include <cstdint>

#include "border.h"
#include "filters/vncvderivative32f.h"
#include "filters/vncvderivative8u.h"
#include "parallel.h"

enum class ownFixedKernel { SobelHoriz, SobelVert, SobelNegVert, SobelHorizSecond, SobelVertSecond, SobelCross,
                            ScharrHoriz, ScharrVert, Laplacian, Lowpass };
// The result type of a member: 16s, 8s (divided), 8u (the lowpass), 32f.
enum class ownFixedOutput { To16s, To8s, To8u, To32f };
// One exported member: its kernel and its result type.
struct ownFixedMember {
  ownFixedKernel kernel;
  ownFixedOutput output;
};

inline int ownMaskLength(int mask) { return mask == vnxMskSize5x5 ? 5 : 3; }
inline bool ownIsScharr(ownFixedKernel kernel) {
  return kernel == ownFixedKernel::ScharrHoriz || kernel == ownFixedKernel::ScharrVert;
}

// Intermediate stride of a body, in elements: 16 for 16-bit rows, 4 for float rows (16
// for the float Laplacian).
inline std::int64_t ownFixedStride(int width, ownFixedOutput out, ownFixedKernel kernel) {
  const bool floatRows = out == ownFixedOutput::To32f;
  return ownRoundUp(width, (!floatRows || kernel == ownFixedKernel::Laplacian) ? 16 : 4);
}
// Scratch a body uses for one band, with 32 bytes to align it: six rows of 16-bit sums
// with 32 elements of margin and a row of the border value (8u), or k + 1 ring rows a
// term and one padded row (32f).
inline std::int64_t ownDerivativeScratchBytes(int width, int k, ownFixedOutput out, ownFixedKernel kernel) {
  const std::int64_t len = ownFixedStride(width, out, kernel);
  if (out != ownFixedOutput::To32f) return 2 * 6 * (len + 32) + len + 32;
  return 4 * (2 * (k + 1) * len + len + 16) + 32;
}
// The factor a 32f body multiplies its sums by: 1 / (k * k) for the lowpass, -1 for
// SobelNegVert (the negation of SobelVert's result, exact), 1 (none) otherwise.
inline float ownFixedScale32f(ownFixedKernel kernel, int k) {
  if (kernel == ownFixedKernel::Lowpass) return 1.0f / static_cast<float>(k * k);
  return kernel == ownFixedKernel::SobelNegVert ? -1.0f : 1.0f;
}
// A band's policy: the Laplacian pays for bands from fewer rows, the Scharr filters
// from any width.
inline const ownBandPolicy& ownFixedBands(ownFixedKernel kernel) {
  if (kernel == ownFixedKernel::Laplacian) return kOwnBandsFixedLaplacian;
  if (ownIsScharr(kernel)) return kOwnBandsFixedScharr;
  return kOwnBandsFixedFilter;
}

// Rows y0 .. y1 - 1 of a kernel of length k (3 or 5) for a prepared job, in scratch of
// ownDerivativeScratchBytes (any alignment). 8u jobs carry the divisor of 8-bit results
// (the lowpass: k * k).
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx16s>& job, void* scratch, int y0, int y1);
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx8s>& job, void* scratch, int y0, int y1);
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob8u<vnx8u>& job, void* scratch, int y0, int y1);
void ownFixedRows(ownFixedKernel kernel, int k, const ownJob32f& job, void* scratch, int y0, int y1);

// The entry point of the header comment.
void ownDerivativeRows(ownFixedKernel kernel, int k, const vnx8u* src, int srcStep, vnx16s* dst, int dstStep,
                       vnxiSize roi, ownBorder rule, vnx8u value, int y0, int y1, void* scratch);
void ownDerivativeRows(ownFixedKernel kernel, int k, const vnx32f* src, int srcStep, vnx32f* dst, int dstStep,
                       vnxiSize roi, ownBorder rule, vnx32f value, int y0, int y1, void* scratch);

// ---- Scharr gradients of small patches (pyramids: the optical flow's windows) ----
// Both Scharr derivatives at rows y0 .. y1, columns x0 .. x1 of a patch of `side`
// samples a row (the pixels around that rectangle are read), differences first:
//   dx = 3 (p(x+1, y-1) - p(x-1, y-1)) + 10 (p(x+1, y) - p(x-1, y)) + 3 (p(x+1, y+1) - p(x-1, y+1))
//   dy = 3 (p(x-1, y+1) - p(x-1, y-1)) + 10 (p(x, y+1) - p(x, y-1)) + 3 (p(x+1, y+1) - p(x+1, y-1))
// summed in that order and divided by 32 (the taps' weight), so the results are in the
// patch's units per pixel: 16s patches sum in 32 bits and round, (s + 16) >> 5; float
// patches multiply by 0.03125. Results go to the same places of dx and dy.
void ownScharrPatch(const vnx16s* p, int side, int x0, int y0, int x1, int y1, vnx16s* dx, vnx16s* dy);
void ownScharrPatch(const vnx32f* p, int side, int x0, int y0, int x1, int y1, vnx32f* dx, vnx32f* dy);
