// Reflection of generated entities and value types: each lists its attributes
// (name, kind, type as written in its schema) and shows each attribute's current
// value as text, so that tests, trace and status displays can treat every entity
// alike.
//
// The text of an attribute is the generic value text (Value.h: True/False,
// decimal numbers, quoted strings, enumerations by name, values by their
// stringValue()), and for the holders:
//    counted pointer      None, or the entity's name quoted (the value's text for
//                         a value, <object> for what has no text)
//    named child          None, or the child's name quoted
//    map, counters        {} or {key: value, ...}
//    set, collection      {} or {key, ...} (a collection lists its elements' keys,
//                         and so do references to entities owned elsewhere)
//    queue                {} or {sequence: value, ...}
// Entries of ordered holders and queues keep their order; those of hashed ones
// are sorted by their text, so that the text does not depend on the hash.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "zon/BoundedQueue.h"
#include "zon/Collection.h"
#include "zon/Entity.h"
#include "zon/LinkQueue.h"
#include "zon/Ptr.h"
#include "zon/Value.h"

namespace Zon {

// One attribute as its schema declares it. `id` is the attribute's notification
// id, or noAttrId for what never notifies (constructor parameters, constants).
struct AttrInfo {
   std::string_view name;
   std::string_view kind; // param, scalar, counter, map, set, counters, coll, child, queue, const, field
   std::string_view type;
   AttrId id;
};
inline constexpr AttrId noAttrId = allAttrs;

// Receives each attribute with its value's text, in declaration order (a base
// class's attributes first).
class AttrVisitor {
 public:
   virtual void attr(AttrInfo const & info, std::string const & text) = 0;

 protected:
   ~AttrVisitor() = default;
};

namespace detail {

template <typename T>
struct IsPtr : std::false_type {};
template <typename T>
struct IsPtr<Ptr<T>> : std::true_type {};

template <typename Order>
void finishEntries(std::vector<std::string> & entries) {
   if constexpr (!std::is_same_v<Order, Ordered>) {
      std::sort(entries.begin(), entries.end());
   }
}

inline std::string braced(std::vector<std::string> const & entries) {
   std::string out = "{";
   for (std::size_t i = 0; i < entries.size(); ++i) {
      out += i ? ", " : "";
      out += entries[i];
   }
   return out + "}";
}

} // namespace detail

template <typename T>
void appendAttrText(std::string & out, T const & v) {
   if constexpr (detail::IsPtr<T>::value) {
      if (!v) {
         out += "None";
      } else if constexpr (requires { v->name(); }) {
         appendValueText(out, std::string_view(v->name()));
      } else if constexpr (requires { v->stringValue(); }) {
         appendValueText(out, *v);
      } else {
         out += "<object>"; // held, but without a text of its own (a packet buffer)
      }
   } else if constexpr (std::is_same_v<T, std::string_view>) {
      appendValueText(out, v);
   } else {
      appendValueText(out, v);
   }
}

template <typename T>
std::string attrText(T const & v) {
   std::string out;
   appendAttrText(out, v);
   return out;
}

template <typename K, typename V, typename Order>
std::string attrText(ValueMap<K, V, Order> const & m) {
   std::vector<std::string> entries;
   for (auto const & [k, v] : m) {
      entries.push_back(attrText(k) + ": " + attrText(v));
   }
   detail::finishEntries<Order>(entries);
   return detail::braced(entries);
}

// The keys of a map alone: the text of references to entities owned elsewhere.
template <typename K, typename V, typename Order>
std::string keysText(ValueMap<K, V, Order> const & m) {
   std::vector<std::string> entries;
   for (auto const & kv : m) {
      entries.push_back(attrText(kv.first));
   }
   detail::finishEntries<Order>(entries);
   return detail::braced(entries);
}

template <typename K, typename Order>
std::string attrText(ValueSet<K, Order> const & s) {
   std::vector<std::string> entries;
   for (auto const & k : s) {
      entries.push_back(attrText(k));
   }
   detail::finishEntries<Order>(entries);
   return detail::braced(entries);
}

template <typename K, typename E, typename Order>
std::string attrText(EntityMap<K, E, Order> const & m) {
   std::vector<std::string> entries;
   for (auto const & kv : m) {
      entries.push_back(attrText(kv.first));
   }
   detail::finishEntries<Order>(entries);
   return detail::braced(entries);
}

template <typename E>
std::string attrText(Child<E> const & c) {
   return attrText(c.get());
}

template <typename V>
std::string attrText(LinkQueue<V> const & q) {
   std::vector<std::string> entries;
   for (auto const & [k, v] : q) {
      entries.push_back(attrText(k) + ": " + attrText(v));
   }
   return detail::braced(entries);
}

template <typename V>
std::string attrText(BoundedQueue<V> const & q) {
   std::vector<std::string> entries;
   q.forEach([&](std::uint32_t k, V const & v) { entries.push_back(attrText(k) + ": " + attrText(v)); });
   return detail::braced(entries);
}

// The attributes of an entity or a value, with their texts, in declaration order.
struct AttrText {
   AttrInfo info;
   std::string text;
};

template <typename T>
std::vector<AttrText> attrTexts(T const & x) {
   struct Collect final : AttrVisitor {
      std::vector<AttrText> out;
      void attr(AttrInfo const & info, std::string const & text) override { out.push_back({info, text}); }
   } collect;
   x.attrsVisit(collect);
   return std::move(collect.out);
}

// An observer that records every notification of the entity it watches as
// "attribute" or "attribute[key]" (the key in its plain text), for tests and for
// tracing what an entity tells its observers.
class AttrRecorder final : public Observer {
 public:
   AttrRecorder() noexcept = default;
   explicit AttrRecorder(Entity const * notifier, AttrId attr = allAttrs) { notifierIs(notifier, attr); }
   ~AttrRecorder() override { notifierIs(nullptr); }

   void onAttr(AttrId attr, void const * key) override;

   std::vector<std::string> const & records() const noexcept { return records_; }
   // The records so far; the recorder starts afresh.
   std::vector<std::string> take() { return std::exchange(records_, {}); }

 private:
   std::vector<std::string> records_;
};

} // namespace Zon
