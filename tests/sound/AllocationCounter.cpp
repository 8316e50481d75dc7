#include "sound/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::int64_t tAllocations = 0;

void* Allocate(std::size_t size) {
  ++tAllocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void* AllocateAligned(std::size_t size, std::size_t alignment) {
  ++tAllocations;
  if (void* memory = std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment))
    return memory;
  throw std::bad_alloc();
}
}  // namespace

std::int64_t quorl::AllocationsOfThisThread() {
  return tAllocations;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++tAllocations;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateAligned(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
