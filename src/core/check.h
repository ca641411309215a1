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

// ---- Pyramids ----
// An image whose width in pixels is formed in 64 bits (width + 1, 2 x width): the same
// two tests as ownImg.
template <class T, int C = 1>
inline ownStep ownImgWide(int step, std::int64_t width) {
  return {step, width * C * static_cast<std::int64_t>(sizeof(T)), static_cast<int>(sizeof(T))};
}
