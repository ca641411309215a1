// The feature-tracking request, as an application writes it against vnxcv:
// two pyramid records filled with the layer-down step, corners picked on level 0
// with MinEigenVal, and pyramidal Lucas-Kanade flow from the first frame to the
// second.
#pragma once

#include <vector>

#include "pngio.h"
#include "vnxcv.h"

namespace vnxdemo {

struct TrackOptions {
  int levels = 3;          // pyramid levels wanted above the base (fewer when the frames are small)
  float rate = 2.0f;       // scale step between levels
  int maxCorners = 300;    // strongest corners kept
  int minDistance = 10;    // pixels between two kept corners, at least
  float quality = 0.01f;   // a corner's smaller eigenvalue is at least this fraction of the largest one
  int winSize = 21;        // flow window side in pixels
  int maxIter = 30;        // iterations per level, at most
  float threshold = 1e-4f; // a level ends once a step's squared length is below this (0.01 px)
};

struct TrackResult {
  std::vector<vnxiSize> levelSizes;  // the first pyramid's levels, base first
  int maxLev = 0;                    // coarsest level the flow started on
  std::vector<vnxiPoint32f> prev;    // corners in the first frame, strongest first
  std::vector<vnxiPoint32f> next;    // their positions in the second frame
  std::vector<vnx8u> status;         // 0 tracked, k > 0 lost on level k - 1
  std::vector<vnx32f> error;         // root-mean-square window difference in grey levels
};

// Tracks the corners of `first` into `second` (gray images of the same size).
// Every library call's status is checked: a failing call prints its name and
// status text and ends the program.
TrackResult trackFeatures(const Image8& first, const Image8& second, const TrackOptions& options);

// Checks a status: anything but vnxStatusOk prints the call and the status text and exits.
void require(vnxStatus status, const char* call);

}  // namespace vnxdemo
