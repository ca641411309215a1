// Internals of the edges-and-features family that the kernel tests reach.
#pragma once

#include <emmintrin.h>

#include "own.h"

// Fast arctangent: four angles in degrees, and a row through the same vector code.
__m128 ownFastArctan4(__m128 y, __m128 x);
void ownFastArctanRow(const vnx32f* y, const vnx32f* x, vnx32f* dst, int len);

// Colour gradient norms, by their public codes.
enum class ownColorNorm : int { Max = 0, L1 = 1, L2 = 2 };
template <class T>
void ownGradientColorRow(const T* src, T* dst, int x0, int n, ownColorNorm norm);
