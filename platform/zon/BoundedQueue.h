// A FIFO queue of at most `capacity` elements keyed by an increasing unsigned
// 32-bit number, kept in a ring: after the first enqueue allocates the ring, no
// operation allocates again, however often the queue turns over. Keys run 0, 1,
// 2, ... in order of enqueueing and are never reused, not even after the queue
// was emptied; when the key space is used up, enqueueing fails with
// "linkqueue index space full". Enqueueing on a full queue fails too, with
// "bounded queue full (capacity n)": nothing is dropped to make room, the owner
// decides what to remove. A failed enqueue changes nothing.
//
// An empty queue that never held anything is one pointer and the capacity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "zon/Exception.h"

namespace Zon {

template <typename V>
class BoundedQueue {
   struct Slot {
      std::uint32_t key = 0;
      V value{};
   };
   struct Body {
      explicit Body(std::uint32_t capacity) : slots(new Slot[capacity]) {}
      std::unique_ptr<Slot[]> slots;
      std::uint32_t head = 0; // index of the oldest slot
      std::uint32_t size = 0;
      std::uint64_t nextKey = 0; // 2^32 once the key space is used up
      std::uint64_t dequeues = 0;
   };

 public:
   using Key = std::uint32_t;
   static constexpr std::uint64_t keySpace = std::uint64_t(1) << 32;

   explicit BoundedQueue(std::uint32_t capacity) noexcept : capacity_(capacity) {}
   // A queue whose first key is `firstKey` (for tests of the key space's end).
   BoundedQueue(std::uint32_t capacity, Key firstKey) : capacity_(capacity), b_(std::make_unique<Body>(capacity)) {
      b_->nextKey = firstKey;
   }
   BoundedQueue(BoundedQueue const &) = delete;
   BoundedQueue & operator=(BoundedQueue const &) = delete;

   std::uint32_t capacity() const noexcept { return capacity_; }
   std::size_t size() const noexcept { return b_ ? b_->size : 0; }
   bool empty() const noexcept { return size() == 0; }
   bool full() const noexcept { return size() == capacity_; }

   // The element of `k`, or null.
   V const * find(Key k) const noexcept {
      std::optional<std::uint32_t> i = indexOf(k);
      return i ? &at(*i).value : nullptr;
   }
   V value(Key k) const {
      V const * v = find(k);
      return v ? *v : V{};
   }
   // Key of the oldest element; when empty, the key the next element will get.
   Key headKey() const noexcept {
      if (!b_) {
         return 0;
      }
      return b_->size == 0 ? static_cast<Key>(b_->nextKey) : at(0).key;
   }
   // Key of the newest element; nothing when empty.
   std::optional<Key> tailKey() const noexcept {
      if (!b_ || b_->size == 0) {
         return std::nullopt;
      }
      return at(b_->size - 1).key;
   }
   std::uint64_t nextKey() const noexcept { return b_ ? b_->nextKey : 0; }
   std::uint64_t dequeues() const noexcept { return b_ ? b_->dequeues : 0; }

   // Iteration, oldest first, over (key, value) pairs: for (auto const & [k, v] : q).
   class const_iterator {
    public:
      using value_type = std::pair<Key, V const &>;
      const_iterator(BoundedQueue const * q, std::uint32_t i) noexcept : q_(q), i_(i) {}
      value_type operator*() const noexcept { return {q_->at(i_).key, q_->at(i_).value}; }
      const_iterator & operator++() noexcept {
         ++i_;
         return *this;
      }
      bool operator==(const_iterator const & o) const noexcept { return i_ == o.i_; }

    private:
      BoundedQueue const * q_;
      std::uint32_t i_;
   };
   const_iterator begin() const noexcept { return {this, 0}; }
   const_iterator end() const noexcept { return {this, static_cast<std::uint32_t>(size())}; }

   // Calls f(key, value) for each element, oldest first.
   template <typename F>
   void forEach(F && f) const {
      for (std::uint32_t i = 0; i < size(); ++i) {
         f(at(i).key, at(i).value);
      }
   }

   // Appends `v` and returns its key; refused on a full queue (the owner
   // dequeues first) and when no key is left.
   Key enqueue(V const & v) { return place() = v, lastKey(); }
   Key enqueue(V && v) { return place() = std::move(v), lastKey(); }

   // Removes the oldest element without handing its value out; its key, or
   // nothing when empty. The slot keeps the value until an enqueue assigns over
   // it (reusing what it holds, a string's buffer): a ring that turns over
   // neither clears nor allocates.
   std::optional<Key> dropOldest() {
      if (!b_ || b_->size == 0) {
         return std::nullopt;
      }
      Slot & s = at(0);
      b_->head = b_->head + 1 == capacity_ ? 0 : b_->head + 1;
      --b_->size;
      ++b_->dequeues;
      return s.key;
   }

   // Removes the oldest element and returns its key and value; nothing when empty.
   std::optional<std::pair<Key, V>> dequeue() {
      if (!b_ || b_->size == 0) {
         return std::nullopt;
      }
      Slot & s = at(0);
      // The slot keeps the moved-from value until an enqueue assigns over it.
      std::pair<Key, V> out(s.key, std::move(s.value));
      b_->head = b_->head + 1 == capacity_ ? 0 : b_->head + 1;
      --b_->size;
      ++b_->dequeues;
      return out;
   }

 private:
   // The slot of a new newest element, keyed; its value is for the caller to assign
   // (assigning over the old value reuses what it holds, a string's buffer).
   V & place() {
      if (!b_ || b_->nextKey >= keySpace || b_->size == capacity_) [[unlikely]] {
         firstOrRefuse();
      }
      Slot & s = at(b_->size++);
      s.key = static_cast<Key>(b_->nextKey++);
      return s.value;
   }
   Key lastKey() const noexcept { return static_cast<Key>(b_->nextKey - 1); }
   // Off the hot path of place(): allocates the ring at the first enqueue, and
   // refuses an enqueue that has no key or no room left.
   [[gnu::cold]] [[gnu::noinline]] void firstOrRefuse() {
      if (!b_) {
         b_ = std::make_unique<Body>(capacity_);
      }
      if (b_->nextKey >= keySpace) {
         throw RangeException("linkqueue index space full");
      }
      if (b_->size == capacity_) {
         throw RangeException("bounded queue full (capacity " + std::to_string(capacity_) + ")");
      }
   }

 public:
   // Removes the element of `k`, keeping the order of the others; false when absent.
   bool erase(Key k) {
      std::optional<std::uint32_t> i = indexOf(k);
      if (!i) {
         return false;
      }
      for (std::uint32_t j = *i; j + 1 < b_->size; ++j) {
         at(j) = std::move(at(j + 1));
      }
      at(b_->size - 1).value = V{};
      --b_->size;
      return true;
   }
   // Removes every element, oldest first, calling f(key) after each removal.
   template <typename F>
   void eraseEach(F && f) {
      while (b_ && b_->size != 0) {
         Key const k = dequeue()->first;
         --b_->dequeues; // a deletion, not a dequeue
         f(k);
      }
   }

 private:
   // The i-th slot from the oldest; head and i are both below the capacity, so one
   // subtraction wraps the index (no division on the hot path).
   Slot & at(std::uint32_t i) const noexcept {
      std::uint32_t const j = b_->head + i;
      return b_->slots[j >= capacity_ ? j - capacity_ : j];
   }
   // The position of `k` from the oldest element; keys ascend, so a binary search.
   std::optional<std::uint32_t> indexOf(Key k) const noexcept {
      if (!b_ || b_->size == 0) {
         return std::nullopt;
      }
      if (at(b_->size - 1).key == k) { // the newest: what a log looks at
         return b_->size - 1;
      }
      std::uint32_t lo = 0, hi = b_->size;
      while (lo < hi) {
         std::uint32_t const mid = lo + (hi - lo) / 2;
         if (at(mid).key < k) {
            lo = mid + 1;
         } else {
            hi = mid;
         }
      }
      return lo < b_->size && at(lo).key == k ? std::optional<std::uint32_t>(lo) : std::nullopt;
   }

   std::uint32_t capacity_;
   std::unique_ptr<Body> b_;
};

} // namespace Zon
