// The Haar classifier state: one block from the scratch allocator holding the
// header, the feature records and the rectangle records, in that order.
#pragma once

#include <cstdint>

#include "own.h"

// One rectangle: corners c0..c3 as (column, row), then its weight. The sum under
// the rectangle at window position p is I[p+c0] - I[p+c1] - I[p+c2] + I[p+c3].
template <class W>
struct ownHaarRect {
  int corner[4][2];
  W weight;
};

// One feature: its rectangles, threshold and the two output values; the tag is
// the input index x 256, plus 1 when the feature is tilted (1 after tilting).
template <class W>
struct ownHaarFeature {
  int nRects;
  ownHaarRect<W>* rect;
  W threshold, val1, val2;
  int tag;
};

constexpr int kOwnHaarTilted = 1;  // flags bit 0: the state holds tilted features

template <class W>
struct ownHaarState {
  int nFeatures;
  int nRects;
  ownHaarFeature<W>* feature;
  int bx, by, bw, bh;   // bounding rectangle bookkeeping (stored, not read by apply)
  int flags;
  int nTwo, nTwoOrThree, nOffsetRects;
  int standardWeights;  // upright 32f: 1 when every feature's first weight is -1
};

// The exported opaque types are these states.
struct vnxiHaarClassifier_32f : ownHaarState<vnx32f> {};
struct vnxiHaarClassifier_32s : ownHaarState<vnx32s> {};
