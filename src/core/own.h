// Internal basics shared by every unit: the public header, row addressing and
// the status shorthand. Nothing here is exported.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vnxcv.h"

// Address of row y of an image operand; the product is formed in ptrdiff_t so a
// negative or large step never overflows an int.
template <class T>
inline T* ownRow(T* base, int step, int y) {
  using Byte = typename std::conditional<std::is_const<T>::value, const char, char>::type;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) + static_cast<std::ptrdiff_t>(step) * y);
}
