// The line walker of vncvsampleline.cpp, reachable from the tests.
#pragma once

#include <cstdint>

#include "own.h"

// Integer walker: the error term starts at the major extent; each move takes twice
// the minor extent off it and, when it goes negative, gives back twice the major
// extent and moves one step along the minor axis as well. Every term is 64-bit: an
// extent may reach 2^31 - 2, and twice that does not fit an int.
struct ownLineWalker {
  std::int64_t majorStep, minorStep;  // byte moves along the two axes, signed
  std::int64_t error, majorIncrement, minorDecrement;
  std::int64_t count;  // samples on the line: the major extent + 1

  // One move along the line; returns the byte offset to the next sample.
  std::int64_t advance() {
    error -= minorDecrement;
    if (error >= 0) return majorStep;
    error += majorIncrement;
    return majorStep + minorStep;
  }
};

// The walker from p1 to p2 for pixels xStep bytes apart and rows yStep bytes apart.
// The longer extent is the major axis; a tie makes y the major axis.
inline ownLineWalker ownLineSetup(std::int64_t xStep, std::int64_t yStep, vnxiPoint p1, vnxiPoint p2) {
  const std::int64_t dx = std::int64_t(p2.x) - p1.x, dy = std::int64_t(p2.y) - p1.y;
  const std::int64_t adx = dx < 0 ? -dx : dx, ady = dy < 0 ? -dy : dy;
  const std::int64_t xMove = dx < 0 ? -xStep : xStep, yMove = dy < 0 ? -yStep : yStep;
  if (adx <= ady) return {yMove, xMove, ady, 2 * ady, 2 * adx, ady + 1};
  return {xMove, yMove, adx, 2 * adx, 2 * ady, adx + 1};
}
