// Attribute holders of the generated-object runtime: value maps and sets, counter
// maps, instantiating entity collections and named single children.
//
// Each collection is one pointer; the container behind it is allocated on the
// first insert and freed again by eraseEach (the DelAll operations), so an
// entity pays one pointer for every collection it does not use. Collections hand
// out read-only views; changes go through the owning entity, which notifies.
// Mutators report whether anything changed so that the entity can notify only on
// a real change.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "zon/Entity.h"
#include "zon/Ptr.h"

namespace Zon {

// Order of a collection: by hash (the default) or by the key's operator<.
struct Hashed {};
struct Ordered {};

template <typename K, typename V, typename Order>
using MapContainer = std::conditional_t<std::is_same_v<Order, Ordered>, std::map<K, V>,
                                        std::unordered_map<K, V>>;
template <typename K, typename Order>
using SetContainer = std::conditional_t<std::is_same_v<Order, Ordered>, std::set<K>,
                                        std::unordered_set<K>>;

// Adds or subtracts with wrap-around at the width of T (no promotion surprises
// for the narrow types, no overflow for the wide ones).
template <typename T>
constexpr T wrapAdd(T a, T b) noexcept {
   static_assert(std::is_unsigned_v<T> && !std::is_same_v<T, bool>, "counters are unsigned");
   return static_cast<T>(a + b);
}
template <typename T>
constexpr T wrapSub(T a, T b) noexcept {
   static_assert(std::is_unsigned_v<T> && !std::is_same_v<T, bool>, "counters are unsigned");
   return static_cast<T>(a - b);
}

// The result of a counter operation: the new value and whether it differs from
// the old one.
template <typename V>
struct CounterResult {
   V value;
   bool changed;
};

namespace detail {

// A lazily allocated container: one pointer while empty.
template <typename C>
class LazyContainer {
 public:
   using Container = C;
   using const_iterator = typename C::const_iterator;

   LazyContainer() noexcept = default;
   LazyContainer(LazyContainer const &) = delete;
   LazyContainer & operator=(LazyContainer const &) = delete;

   std::size_t size() const noexcept { return c_ ? c_->size() : 0; }
   bool empty() const noexcept { return !c_ || c_->empty(); }
   const_iterator begin() const noexcept { return c_ ? c_->cbegin() : none().cbegin(); }
   const_iterator end() const noexcept { return c_ ? c_->cend() : none().cend(); }
   // True while storage is allocated (for tests of the one-pointer promise).
   bool allocated() const noexcept { return c_ != nullptr; }

 protected:
   C * get() const noexcept { return c_.get(); }
   C & storage() {
      if (!c_) {
         c_ = std::make_unique<C>();
      }
      return *c_;
   }
   void release() noexcept { c_.reset(); }

 private:
   static C const & none() noexcept {
      static C const empty;
      return empty;
   }
   std::unique_ptr<C> c_;
};

} // namespace detail

// A collection of values keyed by K: for example Vorin::IpGenAddr to bool.
template <typename K, typename V, typename Order = Hashed>
class ValueMap : public detail::LazyContainer<MapContainer<K, V, Order>> {
   using Base = detail::LazyContainer<MapContainer<K, V, Order>>;

 public:
   using key_type = K;
   using mapped_type = V;

   // The stored value, or null.
   V const * find(K const & k) const {
      auto * c = this->get();
      if (!c) {
         return nullptr;
      }
      auto it = c->find(k);
      return it == c->end() ? nullptr : &it->second;
   }
   bool contains(K const & k) const { return find(k) != nullptr; }
   // The stored value, or a default-constructed one when the key is absent.
   V value(K const & k) const {
      V const * v = find(k);
      return v ? *v : V{};
   }

   // Inserts or replaces; false when the key already held an equal value.
   bool set(K const & k, V const & v) {
      auto & c = this->storage();
      auto [it, inserted] = c.try_emplace(k, v);
      if (inserted) {
         return true;
      }
      if (it->second == v) {
         return false;
      }
      it->second = v;
      return true;
   }
   // Adds `delta` to the value of `k`, creating a missing key at 0 first.
   CounterResult<V> add(K const & k, V delta) {
      auto & c = this->storage();
      V & v = c.try_emplace(k, V{}).first->second;
      V const old = v;
      v = wrapAdd(v, delta);
      return {v, v != old};
   }
   CounterResult<V> sub(K const & k, V delta) {
      auto & c = this->storage();
      V & v = c.try_emplace(k, V{}).first->second;
      V const old = v;
      v = wrapSub(v, delta);
      return {v, v != old};
   }
   bool erase(K const & k) {
      auto * c = this->get();
      return c && c->erase(k) != 0;
   }
   // Removes every entry, one at a time, calling `f(key)` after each removal; the
   // collection seen from `f` already lacks that key. Frees the storage.
   template <typename F>
   void eraseEach(F && f) {
      while (auto * c = this->get()) {
         if (c->empty()) {
            this->release();
            break;
         }
         auto it = c->begin();
         K const k = it->first;
         c->erase(it);
         f(k);
      }
   }
};

// A set of keys.
template <typename K, typename Order = Hashed>
class ValueSet : public detail::LazyContainer<SetContainer<K, Order>> {
 public:
   using key_type = K;

   bool contains(K const & k) const {
      auto * c = this->get();
      return c && c->find(k) != c->end();
   }
   // False when the key was already present.
   bool insert(K const & k) { return this->storage().insert(k).second; }
   bool erase(K const & k) {
      auto * c = this->get();
      return c && c->erase(k) != 0;
   }
   template <typename F>
   void eraseEach(F && f) {
      while (auto * c = this->get()) {
         if (c->empty()) {
            this->release();
            break;
         }
         auto it = c->begin();
         K const k = *it;
         c->erase(it);
         f(k);
      }
   }
};

// An instantiating collection: entities of type E keyed by K. Its elements have
// the collection's owner as parent while they belong to it; an element that
// leaves (deleted, replaced, or its owner destroyed) is unlinked.
template <typename K, typename E, typename Order = Hashed>
class EntityMap : public detail::LazyContainer<MapContainer<K, Ptr<E>, Order>> {
 public:
   using key_type = K;
   using element_type = E;

   ~EntityMap() {
      if (auto * c = this->get()) {
         for (auto & kv : *c) {
            kv.second->parentIs(nullptr);
         }
      }
   }

   // The element of `k`, or null.
   Ptr<E> find(K const & k) const {
      auto * c = this->get();
      if (!c) {
         return nullptr;
      }
      auto it = c->find(k);
      return it == c->end() ? Ptr<E>() : it->second;
   }
   bool contains(K const & k) const {
      auto * c = this->get();
      return c && c->find(k) != c->end();
   }

   // Stores `e` under `k` with `owner` as its parent; an element it replaces is
   // unlinked.
   void insert(K const & k, Ptr<E> e, Entity * owner) {
      auto & c = this->storage();
      auto [it, inserted] = c.try_emplace(k, e);
      if (!inserted && it->second != e) {
         it->second->parentIs(nullptr);
         it->second = e;
      }
      e->parentIs(owner);
   }
   // Removes and returns the element of `k` (null when absent), unlinked.
   Ptr<E> take(K const & k) {
      auto * c = this->get();
      if (!c) {
         return nullptr;
      }
      auto it = c->find(k);
      if (it == c->end()) {
         return nullptr;
      }
      Ptr<E> e = std::move(it->second);
      c->erase(it);
      e->parentIs(nullptr);
      return e;
   }
   template <typename F>
   void eraseEach(F && f) {
      while (auto * c = this->get()) {
         if (c->empty()) {
            this->release();
            break;
         }
         auto it = c->begin();
         K const k = it->first;
         Ptr<E> e = std::move(it->second);
         c->erase(it);
         e->parentIs(nullptr);
         f(k);
      }
   }
};

// A named single child: at most one entity of type E, created by name.
template <typename E>
class Child {
 public:
   Child() noexcept = default;
   Child(Child const &) = delete;
   Child & operator=(Child const &) = delete;
   ~Child() {
      if (p_) {
         p_->parentIs(nullptr);
      }
   }

   Ptr<E> const & get() const noexcept { return p_; }
   E * ptr() const noexcept { return p_.ptr(); }
   explicit operator bool() const noexcept { return p_ != nullptr; }

   // Replaces the child by `e` (whose parent becomes `owner`), unlinking the old one.
   void set(Ptr<E> e, Entity * owner) {
      if (p_ && p_ != e) {
         p_->parentIs(nullptr);
      }
      if (e) {
         e->parentIs(owner);
      }
      p_ = std::move(e);
   }
   // Drops the child; false when there was none.
   bool reset() noexcept {
      if (!p_) {
         return false;
      }
      p_->parentIs(nullptr);
      p_ = nullptr;
      return true;
   }

 private:
   Ptr<E> p_;
};

} // namespace Zon
