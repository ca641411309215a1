// The fixed order of argument checks, as small helpers every export composes:
//   1. every required pointer               -8  (before anything else)
//   2. ROI width, height below 1            -6
//   3. each step against its row bytes      -14
//   4. each step against its element size   -108
// Steps 3 and 4 run per group: within a group all row-byte tests come first, in
// argument order, then all multiple-of-size tests. Most operations check all their
// images as one group; mixed orders (16u with 32f, masked norms) chain groups.
#pragma once

#include <initializer_list>

#include "own.h"

// One image operand as the step checks see it.
struct ownStep {
  int step;
  std::int64_t rowBytes;  // 64 bits: width * pixelBytes may exceed an int
  int elemBytes;          // 1 means no multiple-of-size test
};

// Image of element T with C interleaved channels, `width` pixels a row.
template <class T, int C = 1>
inline ownStep ownImg(int step, int width) {
  return {step, static_cast<std::int64_t>(width) * C * static_cast<int>(sizeof(T)), static_cast<int>(sizeof(T))};
}

inline vnxStatus ownCheckPtrs(std::initializer_list<const void*> ptrs) {
  for (const void* p : ptrs)
    if (!p) return vnxStatusNullPtr;
  return vnxStatusOk;
}

inline vnxStatus ownCheckRoi(vnxiSize roi) {
  return (roi.width < 1 || roi.height < 1) ? vnxStatusBadSize : vnxStatusOk;
}

// One group: row-byte tests for all, then multiple-of-size tests for all.
// A negative step is always below its row bytes.
inline vnxStatus ownCheckSteps(const ownStep* group, int n);
inline vnxStatus ownCheckSteps(std::initializer_list<ownStep> group) {
  return ownCheckSteps(group.begin(), static_cast<int>(group.size()));
}

// The same for a group held in an array.
inline vnxStatus ownCheckSteps(const ownStep* group, int n) {
  for (int i = 0; i < n; ++i)
    if (group[i].step < group[i].rowBytes) return vnxStatusBadStep;
  for (int i = 0; i < n; ++i)
    if (group[i].elemBytes > 1 && group[i].step % group[i].elemBytes != 0) return vnxStatusStepNotMultiple;
  return vnxStatusOk;
}

// Pointers, ROI, then one step group: the order of every operation whose images
// are checked together (one element size, or one-byte images with one wider one).
inline vnxStatus ownCheck(std::initializer_list<const void*> ptrs, vnxiSize roi,
                          std::initializer_list<ownStep> steps) {
  if (vnxStatus st = ownCheckPtrs(ptrs)) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  return ownCheckSteps(steps);
}

// The masked norms: the source steps against row bytes and then their multiples,
// and only then the mask step against its width.
inline vnxStatus ownCheckSourcesThenMask(std::initializer_list<ownStep> sources, ownStep mask) {
  if (vnxStatus st = ownCheckSteps(sources)) return st;
  return ownCheckSteps({mask});
}

// Channel of interest of the C3C forms.
inline vnxStatus ownCheckCoi(int coi) { return (coi < 1 || coi > 3) ? vnxStatusBadCoi : vnxStatusOk; }

// ---- statistics (means, deviations, extrema, norms) -------------------------------

// A statistics image: `width` pixels of `channels` samples of T.
template <class T>
inline ownStep ownStatImg(int step, int width, int channels) {
  return {step, static_cast<std::int64_t>(width) * channels * static_cast<int>(sizeof(T)), static_cast<int>(sizeof(T))};
}

// Whether a statistics form takes a mask: a masked form requires its mask pointer.
enum class ownMaskForm { Unmasked, Masked };

// coi of the C3C forms (channels == 3); one-channel forms ignore it.
inline vnxStatus ownCheckChannelOfInterest(int channels, int coi) {
  return channels == 3 ? ownCheckCoi(coi) : vnxStatusOk;
}

// Means, deviations and extrema: the source pointer, the mask pointer of a masked
// form, then the result pointers the operation requires; ROI; the source step and
// the mask step against their row bytes, then the source step's multiple; coi.
template <class T>
inline vnxStatus ownCheckStat(vnxiSize roi, const void* src, int srcStep, ownMaskForm form, const vnx8u* mask,
                              int maskStep, int channels, int coi, std::initializer_list<const void*> results = {}) {
  if (!src || (form == ownMaskForm::Masked && !mask)) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckPtrs(results)) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  const ownStep s = ownStatImg<T>(srcStep, roi.width, channels);
  vnxStatus st = form == ownMaskForm::Masked ? ownCheckSteps({s, ownImg<vnx8u>(maskStep, roi.width)}) : ownCheckSteps({s});
  return st ? st : ownCheckChannelOfInterest(channels, coi);
}

// The masked norms: the source pointers (one, or two for differences and relative
// norms), the mask and the result pointer; ROI; the source steps against their row
// bytes and then their multiples, and only then the mask step; coi.
struct ownStatSource {
  const void* ptr;
  int step;
};
template <class T>
inline vnxStatus ownCheckMaskedNorm(vnxiSize roi, std::initializer_list<ownStatSource> sources, const vnx8u* mask,
                                    int maskStep, const void* result, int channels, int coi) {
  for (const ownStatSource& s : sources)
    if (!s.ptr) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckPtrs({mask, result})) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  ownStep steps[2];
  int n = 0;
  for (const ownStatSource& s : sources) steps[n++] = ownStatImg<T>(s.step, roi.width, channels);
  const ownStep m = ownImg<vnx8u>(maskStep, roi.width);
  vnxStatus st = n == 1 ? ownCheckSourcesThenMask({steps[0]}, m) : ownCheckSourcesThenMask({steps[0], steps[1]}, m);
  return st ? st : ownCheckChannelOfInterest(channels, coi);
}

// ---- filters: the fixed-kernel filters, the pipeline passes and their size queries ----

// A divisor argument: checked (must not be 0) where the operation has one.
struct ownDivisorArg {
  int value;
  bool present;
  static ownDivisorArg none() { return {1, false}; }
  static ownDivisorArg of(int d) { return {d, true}; }
};

// Fixed-kernel filters: pointers, ROI, the steps as one group, the border code, the
// divisor (8u8s members), then the mask selector (3x3 for the members without one).
inline vnxStatus ownCheckFixedFilter(std::initializer_list<const void*> ptrs, vnxiSize roi,
                                     std::initializer_list<ownStep> steps, int border, ownDivisorArg divisor,
                                     int mask) {
  if (vnxStatus st = ownCheck(ptrs, roi, steps)) return st;
  if (border < vnxBorderConst || border > vnxBorderMirrorR) return vnxStatusBadArg;
  if (divisor.present && divisor.value == 0) return vnxStatusBadArg;
  if (mask != vnxMskSize3x3 && mask != vnxMskSize5x5) return vnxStatusBadMaskSize;
  return vnxStatusOk;
}

// Row pass: pointers, height, width, kernel size, anchor, the source step, border code,
// divisor, and last the nRows destination row pointers.
template <class P>
vnxStatus ownCheckRowPass(std::initializer_list<const void*> ptrs, vnxiSize roi, int k, int anchor, ownStep src,
                          int border, int divisor, const P* rows, int nRows) {
  if (vnxStatus st = ownCheckPtrs(ptrs)) return st;
  if (roi.height < 1 || roi.width < 1 || k < 1) return vnxStatusBadSize;
  if (anchor < 0 || anchor >= k) return vnxStatusBadAnchor;
  if (vnxStatus st = ownCheckSteps({src})) return st;
  if (border < vnxBorderConst || border > vnxBorderMirrorR) return vnxStatusBadArg;
  if (divisor == 0) return vnxStatusBadArg;
  for (int y = 0; y < nRows; ++y)
    if (!rows[y]) return vnxStatusNullPtr;
  return vnxStatusOk;
}

// Column pass: pointers, height, width, kernel size, the destination step, then the
// work buffer (after the steps on purpose), the nRows source row pointers, the divisor.
template <class P>
vnxStatus ownCheckColumnPass(std::initializer_list<const void*> ptrs, vnxiSize roi, int k, ownStep dst,
                             const void* buffer, const P* rows, std::int64_t nRows, int divisor) {
  if (vnxStatus st = ownCheckPtrs(ptrs)) return st;
  if (roi.height < 1 || roi.width < 1 || k < 1) return vnxStatusBadSize;
  if (vnxStatus st = ownCheckSteps({dst})) return st;
  if (!buffer) return vnxStatusNullPtr;
  for (std::int64_t i = 0; i < nRows; ++i)
    if (!rows[i]) return vnxStatusNullPtr;
  if (divisor == 0) return vnxStatusBadArg;
  return vnxStatusOk;
}

// Size queries: the result pointer, the ROI, then the kernel length (pipeline passes,
// below 1) or the mask selector (fixed filters).
inline vnxStatus ownCheckPipelineQuery(const int* pSize, vnxiSize roi, int k) {
  if (!pSize) return vnxStatusNullPtr;
  return (roi.width < 1 || roi.height < 1 || k < 1) ? vnxStatusBadSize : vnxStatusOk;
}
inline vnxStatus ownCheckFixedQuery(const int* pSize, vnxiSize roi, int mask) {
  if (!pSize) return vnxStatusNullPtr;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  return (mask != vnxMskSize3x3 && mask != vnxMskSize5x5) ? vnxStatusBadMaskSize : vnxStatusOk;
}
// A size computed in 64 bits, reported when it fits a signed 32-bit int; otherwise
// vnxStatusBadSize and *pSize is left as it was.
inline vnxStatus ownReportSize(std::int64_t bytes, int* pSize) {
  if (bytes < 0 || bytes > INT32_MAX) return vnxStatusBadSize;
  *pSize = static_cast<int>(bytes);
  return vnxStatusOk;
}


// ---- Morphology --------------------------------------------------------------------
// State creation: the mask pointer, the creation width, the mask width then height,
// the anchor against the mask, and only then the pointer that receives the result.
inline vnxStatus ownCheckMorphCreate(const void* mask, int roiWidth, vnxiSize maskSize, const void* out) {
  if (!mask) return vnxStatusNullPtr;
  if (roiWidth < 1 || maskSize.width < 1 || maskSize.height < 1) return vnxStatusBadSize;
  return out ? vnxStatusOk : vnxStatusNullPtr;
}
inline vnxStatus ownCheckMorphCreate(const void* mask, int roiWidth, vnxiSize maskSize, vnxiPoint anchor,
                                     const void* out) {
  if (!mask) return vnxStatusNullPtr;
  if (roiWidth < 1 || maskSize.width < 1 || maskSize.height < 1) return vnxStatusBadSize;
  if (anchor.x < 0 || anchor.x >= maskSize.width || anchor.y < 0 || anchor.y >= maskSize.height)
    return vnxStatusBadAnchor;
  return out ? vnxStatusOk : vnxStatusNullPtr;
}

// Dilation, erosion and the composite operations: pointers, ROI, both steps (row bytes,
// then multiples), then the border code, of which only vnxBorderReplicate is accepted.
// The caller then tests the ROI against its state.
template <class T, int C>
inline vnxStatus ownCheckMorphApply(const T* src, int srcStep, const T* dst, int dstStep, vnxiSize roi,
                                    int borderType, const void* state) {
  if (vnxStatus st = ownCheck({src, dst, state}, roi, {ownImg<T, C>(srcStep, roi.width), ownImg<T, C>(dstStep, roi.width)}))
    return st;
  return borderType == vnxBorderReplicate ? vnxStatusOk : vnxStatusBadArg;
}


// ---- Pyramids ----
// An image whose width in pixels is formed in 64 bits (width + 1, 2 x width): the same
// two tests as ownImg.
template <class T, int C = 1>
inline ownStep ownImgWide(int step, std::int64_t width) {
  return {step, width * C * static_cast<std::int64_t>(sizeof(T)), static_cast<int>(sizeof(T))};
}
