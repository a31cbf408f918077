// A map that holds the most recently used entries only: past its capacity the
// least recently used entry is dropped and counted. Iteration is in key order,
// so what is printed from it reads sorted. Used for the totals that would
// otherwise grow with every identifier and connection of a capture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <map>
#include <utility>

namespace LdpDecode {

template <typename K, typename V>
class RecentMap {
   struct Slot;
   using Map = std::map<K, Slot>;

 public:
   explicit RecentMap(std::size_t capacity) : capacity_(capacity ? capacity : 1) {}
   RecentMap(RecentMap const & o) : capacity_(o.capacity_) { add(o, [](V & mine, V const & theirs) { mine = theirs; }); }
   RecentMap & operator=(RecentMap const & o) {
      if (this != &o) {
         clear();
         capacity_ = o.capacity_;
         add(o, [](V & mine, V const & theirs) { mine = theirs; });
      }
      return *this;
   }

   // The value of k, made the most recent; a new entry is value-initialised
   // and may push out the least recent one. The reference stays valid until k
   // itself is dropped.
   V & touch(K const & k) {
      auto [it, added] = map_.try_emplace(k);
      if (!added) {
         recency_.splice(recency_.begin(), recency_, it->second.use);
         return it->second.value;
      }
      recency_.push_front(it);
      it->second.use = recency_.begin();
      if (map_.size() > capacity_) {
         map_.erase(recency_.back());
         recency_.pop_back();
         ++dropped_;
      }
      return it->second.value;
   }

   // Adds another map's entries (the other's least recent first, so that its
   // most recent stay), combining a value held by both with combine(mine,
   // theirs), and its count of dropped entries.
   template <typename Combine>
   void add(RecentMap const & o, Combine combine) {
      for (auto r = o.recency_.rbegin(); r != o.recency_.rend(); ++r) {
         combine(touch((*r)->first), (*r)->second.value);
      }
      dropped_ += o.dropped_;
   }

   void clear() noexcept {
      map_.clear();
      recency_.clear();
   }

   std::size_t size() const noexcept { return map_.size(); }
   std::size_t capacity() const noexcept { return capacity_; }
   // Entries dropped to stay within the capacity (one seen again after being
   // dropped comes back, and may be dropped again).
   std::uint64_t dropped() const noexcept { return dropped_; }

   class const_iterator {
    public:
      using iterator_category = std::bidirectional_iterator_tag;
      using difference_type = std::ptrdiff_t;
      using value_type = std::pair<K const &, V const &>;
      using reference = value_type;
      using pointer = void;

      explicit const_iterator(typename Map::const_iterator it) : it_(it) {}
      using Entry = std::pair<K const &, V const &>;
      Entry operator*() const { return {it_->first, it_->second.value}; }
      struct Arrow {
         Entry entry;
         Entry const * operator->() const noexcept { return &entry; }
      };
      Arrow operator->() const { return Arrow{**this}; }
      const_iterator & operator++() {
         ++it_;
         return *this;
      }
      const_iterator & operator--() {
         --it_;
         return *this;
      }
      bool operator==(const_iterator const & o) const { return it_ == o.it_; }

    private:
      typename Map::const_iterator it_;
   };
   const_iterator begin() const { return const_iterator(map_.begin()); }
   const_iterator end() const { return const_iterator(map_.end()); }

 private:
   struct Slot {
      V value{};
      typename std::list<typename Map::iterator>::iterator use;
   };

   std::size_t capacity_;
   Map map_;
   std::list<typename Map::iterator> recency_;  // the most recent first
   std::uint64_t dropped_ = 0;
};

} // namespace LdpDecode
