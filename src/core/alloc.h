// Scratch allocator: every work buffer and state object of the library.
// A request of n elements takes n * elementBytes + 36 bytes from the heap and
// returns the block aligned up to 32 bytes; null for n <= 0 or a failed heap.
// The blocks are not cleared.
#pragma once

#include <cstddef>

#include "own.h"

void* ownMalloc_8u(int n) noexcept;
void* ownMalloc_16u(int n) noexcept;
void* ownMalloc_32(int n) noexcept;
void* ownMalloc_64(int n) noexcept;
void ownFree(void* p) noexcept;

// Replaces the heap functions under the allocator (tests inject failures with it);
// null restores the process heap. Not thread-safe: for single-threaded tests only.
void ownSetHeap(void* (*alloc)(std::size_t), void (*release)(void*)) noexcept;

// Owns one block for the length of a scope.
class ownBlock {
 public:
  explicit ownBlock(void* p = nullptr) noexcept : p_(p) {}
  ~ownBlock() { ownFree(p_); }
  ownBlock(const ownBlock&) = delete;
  ownBlock& operator=(const ownBlock&) = delete;
  void* get() const noexcept { return p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }

 private:
  void* p_;
};
