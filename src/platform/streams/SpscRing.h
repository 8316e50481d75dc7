// Lock-free line of items from one thread to one other, in storage made once.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorl {

// One thread calls the producer's routines, one the consumer's. Nothing waits, nothing allocates after the
// constructor. Items are counted from the first one ever pushed: `Written` and `Taken` never step back.
template <class T>
class SpscRing {
 public:
  // Room for `capacity` items, > 0.
  explicit SpscRing(std::size_t capacity) : capacity_(capacity), items_(std::bit_ceil(capacity)) {}

  // Producer.
  std::uint64_t Written() const { return written_.load(std::memory_order_relaxed); }
  std::size_t Writable() const {
    return capacity_ - static_cast<std::size_t>(Written() - taken_.load(std::memory_order_acquire));
  }
  // n <= Writable(). The consumer sees all of them or none.
  void Push(const T* items, std::size_t n) {
    const std::uint64_t at = Written();
    const std::size_t begin = Place(at), head = std::min(n, items_.size() - begin);
    std::copy_n(items, head, items_.begin() + static_cast<std::ptrdiff_t>(begin));
    std::copy_n(items + head, n - head, items_.begin());
    written_.store(at + n, std::memory_order_release);
  }
  void Push(const T& item) { Push(&item, 1); }

  // Consumer.
  std::uint64_t Taken() const { return taken_.load(std::memory_order_relaxed); }
  std::size_t Readable() const {
    return static_cast<std::size_t>(written_.load(std::memory_order_acquire) - Taken());
  }
  // Readable() > 0; valid until the item is taken or dropped.
  const T& Front() const { return items_[Place(Taken())]; }
  // n <= Readable().
  void Take(T* out, std::size_t n) {
    const std::size_t begin = Place(Taken()), head = std::min(n, items_.size() - begin);
    std::copy_n(items_.begin() + static_cast<std::ptrdiff_t>(begin), head, out);
    std::copy_n(items_.begin(), n - head, out + head);
    Drop(n);
  }
  void Drop(std::size_t n) { taken_.store(Taken() + n, std::memory_order_release); }
  // Drops the items before number `count`; nothing where they are gone already. At most to what is readable.
  void DropUntil(std::uint64_t count) {
    if (count > Taken()) Drop(std::min(static_cast<std::size_t>(count - Taken()), Readable()));
  }

 private:
  static constexpr std::size_t kCacheLine = 64;

  std::size_t Place(std::uint64_t count) const {
    return static_cast<std::size_t>(count) & (items_.size() - 1);
  }

  const std::size_t capacity_;
  std::vector<T> items_;  // a power of two of them, so that counts may run over
  alignas(kCacheLine) std::atomic<std::uint64_t> written_{0};
  alignas(kCacheLine) std::atomic<std::uint64_t> taken_{0};
};

}  // namespace quorl
