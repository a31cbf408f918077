// The runtime's FIFO link queue: elements keyed by an increasing unsigned 32-bit
// number. Keys run 0, 1, 2, ... in order of enqueueing and are never reused, not
// even after the element that had one was dequeued or deleted; when the key space
// is used up, enqueueing fails with "linkqueue index space full".
//
// An empty queue that never held anything is one pointer; the bookkeeping (next
// key, dequeue count) is allocated with the first element and kept from then on.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "zon/Exception.h"

namespace Zon {

template <typename V>
class LinkQueue {
   struct Body {
      std::map<std::uint32_t, V> elements; // ordered by key, that is oldest first
      std::uint64_t nextKey = 0;            // 2^32 once the key space is used up
      std::uint64_t dequeues = 0;
   };
   using Container = std::map<std::uint32_t, V>;

 public:
   using Key = std::uint32_t;
   using const_iterator = typename Container::const_iterator;
   static constexpr std::uint64_t keySpace = std::uint64_t(1) << 32;

   LinkQueue() noexcept = default;
   // A queue whose first key is `firstKey` (for tests of the key space's end).
   explicit LinkQueue(Key firstKey) : b_(std::make_unique<Body>()) { b_->nextKey = firstKey; }
   LinkQueue(LinkQueue const &) = delete;
   LinkQueue & operator=(LinkQueue const &) = delete;

   std::size_t size() const noexcept { return b_ ? b_->elements.size() : 0; }
   bool empty() const noexcept { return size() == 0; }
   const_iterator begin() const noexcept { return b_ ? b_->elements.cbegin() : none().cbegin(); }
   const_iterator end() const noexcept { return b_ ? b_->elements.cend() : none().cend(); }

   // The element of `k`, or null.
   V const * find(Key k) const {
      if (!b_) {
         return nullptr;
      }
      auto it = b_->elements.find(k);
      return it == b_->elements.end() ? nullptr : &it->second;
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
      return b_->elements.empty() ? static_cast<Key>(b_->nextKey) : b_->elements.begin()->first;
   }
   // Key of the newest element; null when empty.
   std::optional<Key> tailKey() const noexcept {
      if (!b_ || b_->elements.empty()) {
         return std::nullopt;
      }
      return b_->elements.rbegin()->first;
   }
   // The key the next enqueued element will get (2^32: none left).
   std::uint64_t nextKey() const noexcept { return b_ ? b_->nextKey : 0; }
   std::uint64_t dequeues() const noexcept { return b_ ? b_->dequeues : 0; }

   // Appends `v` at the tail and returns its key.
   Key enqueue(V v) {
      if (!b_) {
         b_ = std::make_unique<Body>();
      }
      if (b_->nextKey >= keySpace) {
         throw RangeException("linkqueue index space full");
      }
      Key const k = static_cast<Key>(b_->nextKey);
      b_->elements.emplace_hint(b_->elements.end(), k, std::move(v));
      ++b_->nextKey;
      return k;
   }
   // Removes the head and returns its key and value; nothing when empty.
   std::optional<std::pair<Key, V>> dequeue() {
      if (!b_ || b_->elements.empty()) {
         return std::nullopt;
      }
      auto node = b_->elements.extract(b_->elements.begin());
      ++b_->dequeues;
      return std::pair<Key, V>(node.key(), std::move(node.mapped()));
   }
   // Removes the element of `k`; false when absent.
   bool erase(Key k) { return b_ && b_->elements.erase(k) != 0; }
   // Removes every element, oldest first, calling `f(key)` after each removal.
   // Keys are not reused afterwards.
   template <typename F>
   void eraseEach(F && f) {
      while (b_ && !b_->elements.empty()) {
         auto it = b_->elements.begin();
         Key const k = it->first;
         b_->elements.erase(it);
         f(k);
      }
   }

 private:
   static Container const & none() noexcept {
      static Container const empty;
      return empty;
   }
   std::unique_ptr<Body> b_;
};

} // namespace Zon
