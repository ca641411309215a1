#include "alloc.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void* (*ownHeapAlloc)(std::size_t) = std::malloc;
void (*ownHeapFree)(void*) = std::free;

// The word just below the aligned pointer holds its distance back to the raw
// block (4 to 35 bytes). A 32-bit offset rather than the raw pointer keeps the
// figure of n + 36 bytes on 64-bit builds as well.
void* ownAlignedAlloc(int n, int elemBytes) noexcept {
  if (n <= 0) return nullptr;
  const std::uint64_t bytes = static_cast<std::uint64_t>(n) * elemBytes + 36;
  if (bytes > SIZE_MAX) return nullptr;
  char* raw = static_cast<char*>(ownHeapAlloc(static_cast<std::size_t>(bytes)));
  if (!raw) return nullptr;
  char* p = reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(raw) + 35) & ~std::uintptr_t(31));
  const std::uint32_t offset = static_cast<std::uint32_t>(p - raw);
  std::memcpy(p - 4, &offset, 4);
  return p;
}

}  // namespace

void* ownMalloc_8u(int n) noexcept { return ownAlignedAlloc(n, 1); }
void* ownMalloc_16u(int n) noexcept { return ownAlignedAlloc(n, 2); }
void* ownMalloc_32(int n) noexcept { return ownAlignedAlloc(n, 4); }
void* ownMalloc_64(int n) noexcept { return ownAlignedAlloc(n, 8); }

void ownFree(void* p) noexcept {
  if (!p) return;
  std::uint32_t offset;
  std::memcpy(&offset, static_cast<char*>(p) - 4, 4);
  ownHeapFree(static_cast<char*>(p) - offset);
}

void ownSetHeap(void* (*alloc)(std::size_t), void (*release)(void*)) noexcept {
  ownHeapAlloc = alloc ? alloc : std::malloc;
  ownHeapFree = release ? release : std::free;
}
