// Flood fill: one scan-line engine for the plain, Range and Grad rules, 4- and
// 8-connectivity, 8u and 32f, one and three channels; marker labelling runs it too.
//
// The walk is the segment stack of the library: entries (row, left, right, parent
// left, parent right, direction), last in first out; a popped span searches the row
// it points away from over its own columns and the row it came from outside its
// parent's columns (8-connectivity: one column wider on each side, clamped).
//
// Taken pixels. Every span taken into the region is marked in a map in the work
// buffer: one bit a pixel for the plain and Range rules (a Range fill whose new
// value lies inside the range could not tell painted pixels from candidates
// otherwise), the byte map of (width + 2) x (height + 2) for the Grad rule. The Grad
// rule paints only at the end, so every test sees pre-fill values; a candidate of a
// searched row passes when it passes against any span pixel it touches (the one
// above or below; with 8-connectivity also the diagonal ones), so a Grad region is
// the set reached from the seed through neighbour pairs that pass, whatever the
// order of the walk.
//
// Bounded stack. The stack gets what the buffer size query leaves after the map. An
// entry that does not fit is not pushed (its span is already taken); once the stack
// runs dry, a rescan of the box around the region (plus one pixel) starts a new walk
// from every untaken pixel that passes against a taken neighbour, until a walk ends
// with nothing dropped. The region is the same; no byte past the reported size is
// ever written.
#pragma once

#include <cstring>

#include "check.h"

enum class ownFillRule { Plain, Range, Grad };
enum class ownFillConn { Four, Eight };

// Bytes of the work buffer for a ROI, in 64 bits (vnxStatusBadSize above an int).
std::int64_t ownFloodFillBytes(vnxiSize roi, ownFillRule rule);

// First x in [x, end) of a byte row equal to v, else end (16-byte compares).
int ownFindByte8u(const vnx8u* row, int x, int end, vnx8u v);

struct ownFillEntry {
  int y, xl, xr, pl, pr, d;
};

// Per-call constants of the membership test.
template <class T, int C>
struct ownFillColours {
  T seed[C], lo[C], hi[C];       // plain and Range: lo <= p <= hi (plain: lo = hi = seed)
  T minDelta[C], maxDelta[C];    // Grad: q - minDelta <= p <= q + maxDelta
  T fill[C];                     // the new value
};

template <class T, int C, ownFillRule R, ownFillConn K>
class ownFloodFiller {
 public:
  // The map must be clear (ownFloodFillClearMap) before the first fill.
  ownFloodFiller(T* image, int step, vnxiSize roi, vnx8u* buffer, const ownFillColours<T, C>& colours);
  // Fills from the seed and returns the region; the map is left clear again.
  vnxiFillRegion run(vnxiPoint seed);
  void clearMap();
  // The new value of channel k for the next run (marker labelling).
  void setFill(int k, T v) { c_.fill[k] = v; }

 private:
  using Row = T*;
  Row row(int y) const { return ownRow(image_, step_, y); }
  const T* px(int x, int y) const { return row(y) + static_cast<std::ptrdiff_t>(x) * C; }

  bool taken(int x, int y) const;
  void take(int y, int l, int r);
  bool intrinsic(const T* p) const;           // plain and Range
  bool gradPasses(const T* q, const T* p) const;
  bool passesFromRow(int x, int y, int qy, int ql, int qr) const;  // candidate (x, y), span pixels of row qy in [ql, qr]
  bool passesFromNeighbour(int x, int y, int nx, int ny) const;    // horizontal extension and rescan
  void extend(int y, int x, int* l, int* r) const;
  void search(int y, int a, int b, int qy, int ql, int qr, int d);
  void push(const ownFillEntry& e);
  void drain();
  void rescan();
  void paintRegion();

  T* image_;
  int step_, w_, h_;
  vnx8u* map_;
  std::ptrdiff_t mapStride_;
  ownFillEntry* stack_;
  std::int64_t cap_, top_ = 0;
  bool dropped_ = false;
  // Plain and Range fills whose new value fails the test need no map lookups: a
  // painted pixel fails by its value. 8u one-channel rows then scan 16 bytes a step.
  bool paintedFails_ = false;
  static constexpr bool kByteRows = C == 1 && sizeof(T) == 1 && R != ownFillRule::Grad;
  ownFillColours<T, C> c_;
  double area_ = 0;
  int minX_, maxX_, minY_, maxY_;
};

// Layout of the work buffer: rounded up to 8, the map, then the stack.
std::int64_t ownFloodFillMapBytes(vnxiSize roi, ownFillRule rule);

// The checks of every fill, in order: pointers (the three-channel members pass their
// value and delta pointers too), ROI, the step against width x element size (the
// same bound for three channels), for 32f its multiple of 4, the seed inside the ROI,
// then 32f deltas below zero or NaN.
template <class T>
inline vnxStatus ownCheckFloodFill(std::initializer_list<const void*> ptrs, int step, vnxiSize roi, vnxiPoint seed,
                                   const T* minDelta, const T* maxDelta, int nDeltas) {
  if (vnxStatus st = ownCheckPtrs(ptrs)) return st;
  if (vnxStatus st = ownCheckRoi(roi)) return st;
  if (vnxStatus st = ownCheckSteps({ownImg<T>(step, roi.width)})) return st;
  if (seed.x < 0 || seed.x >= roi.width || seed.y < 0 || seed.y >= roi.height) return vnxStatusOutOfRange;
  for (int i = 0; i < nDeltas; ++i)
    if (!(minDelta[i] >= T(0)) || !(maxDelta[i] >= T(0))) return vnxStatusOutOfRange;
  return vnxStatusOk;
}

// One fill member: checks, the early return of a seed that already has the new
// value, the clear map, the walk, the record.
template <class T, int C, ownFillRule R, ownFillConn K>
vnxStatus ownFloodFill(T* image, int step, vnxiSize roi, vnxiPoint seed, const T* newVal, const T* minDelta,
                       const T* maxDelta, vnxiFillRegion* region, vnx8u* buffer);
