// The demo's built-in frames: a procedural textured scene and the same scene
// moved by a known sub-pixel motion.
#pragma once

#include "pngio.h"

namespace vnxdemo {

struct Motion {
  double dx, dy;  // in pixels; content at (x, y) in the first frame is at (x + dx, y + dy) in the second
};

// Renders the first frame (width x height, gray) and the second one, moved by
// `motion` (|dx|, |dy| < 8). The scene is a field of texture values on the integer
// lattice around the frame; the first frame samples it at whole pixels, the second
// at (x - dx, y - dy) by bilinear interpolation of the lattice, so the second frame
// is the first one's continuous (bilinear) surface moved exactly by the motion.
// Both are rounded to 8 bits once. The same arguments give the same bytes.
void renderScenePair(int width, int height, Motion motion, Image8& first, Image8& second);

}  // namespace vnxdemo
