// Sample memory on cache line boundaries, so that the widest vectors load without a split.
#pragma once

#include <cstddef>
#include <new>
#include <vector>

namespace quorl {

template <typename T>
struct CacheLineAllocator {
  using value_type = T;
  static constexpr std::align_val_t kAlignment{64};

  CacheLineAllocator() = default;
  template <typename U>
  explicit CacheLineAllocator(const CacheLineAllocator<U>&) {}

  T* allocate(std::size_t count) { return static_cast<T*>(::operator new(count * sizeof(T), kAlignment)); }
  void deallocate(T* memory, std::size_t) { ::operator delete(memory, kAlignment); }

  template <typename U>
  bool operator==(const CacheLineAllocator<U>&) const {
    return true;
  }
};

using SampleBuffer = std::vector<float, CacheLineAllocator<float>>;

}  // namespace quorl
