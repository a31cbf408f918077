// Entities of the generated-object runtime: named, reference counted objects with a
// parent link and per-attribute change notification.
//
// An entity holds a single pointer to its observer list, null until the first
// observer registers, so a change to an entity that nobody watches costs one
// pointer test. Notification is synchronous: the setter returns after every
// observer has run. Observers may register, unregister, delete themselves or drop
// the last reference to the entity from inside a notification.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "zon/Enum.h"
#include "zon/Exception.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Zon {

// Identifies one attribute of an entity class. Generated classes number their
// attributes from their base class's Attr::attrCount on.
using AttrId = std::uint16_t;
inline constexpr AttrId allAttrs = 0xffff;

class Entity;
struct ObserverList;
struct AttrInfo;
class AttrVisitor;

// Watches the attributes of one entity. onAttr runs after each change of a watched
// attribute; `key` points at the key of the changed element for collection
// attributes and is null for the others. Generated entities have a typed
// Notifiee that turns onAttr into one virtual function per attribute.
class Observer {
 public:
   Observer() noexcept = default;
   Observer(Observer const &) = delete;
   Observer & operator=(Observer const &) = delete;
   virtual ~Observer();

   // Starts watching `attr` of `notifier` (allAttrs: every attribute) after
   // stopping any earlier watch; a null notifier only stops.
   void notifierIs(Entity const * notifier, AttrId attr = allAttrs);
   Entity const * notifier() const noexcept { return notifier_; }
   AttrId attr() const noexcept { return attr_; }

   virtual void onAttr(AttrId attr, void const * key);

 private:
   friend class Entity;
   Entity const * notifier_ = nullptr;
   AttrId attr_ = allAttrs;
};

class Entity : public PtrInterface {
 public:
   // Generated classes extend these: their attribute ids start at Base::Attr::attrCount,
   // and their Notifiee derives from Base::Notifiee.
   struct Attr {
      static constexpr AttrId attrCount = 0;
   };
   using Notifiee = Observer;

   Entity(Entity const &) = delete;
   Entity & operator=(Entity const &) = delete;

   Name const & name() const noexcept { return name_; }

   // The entity that holds this one (a collection's owner, a named child's owner);
   // never owned through this link. Set and cleared by the runtime's holders.
   Entity * parent() const noexcept { return parent_; }
   void parentIs(Entity * parent) noexcept { parent_ = parent; }

   // Number of registered observers.
   std::size_t observers() const noexcept;

   // Reflection (zon/Reflect.h), generated for every schema entity: visits each
   // attribute with its value's text, base class first; the attribute of a
   // notification id (null for none); the text of a notification's key.
   virtual void attrsVisit(AttrVisitor & visitor) const;
   virtual AttrInfo const * attrInfo(AttrId attr) const noexcept;
   virtual std::string attrKeyText(AttrId attr, void const * key) const;

 protected:
   explicit Entity(Name name) noexcept : name_(std::move(name)) {}
   ~Entity() override;

   // Keeps the entity alive across a series of notifications (emptying a
   // collection), since an observer may drop the last reference. An entity that
   // nobody holds yet is not counted.
   class Hold {
    public:
      explicit Hold(Entity const * e) noexcept : e_(e->references() != 0 ? e : nullptr) {
         if (e_) {
            e_->ref();
         }
      }
      ~Hold() {
         if (e_) {
            e_->unref();
         }
      }
      Hold(Hold const &) = delete;
      Hold & operator=(Hold const &) = delete;

    private:
      Entity const * e_;
   };

   // Tells the observers of `attr`; `key` is the changed element's key or null.
   void notify(AttrId attr, void const * key = nullptr) const {
      if (observers_) [[unlikely]] {
         notifyObservers(attr, key);
      }
   }

 private:
   friend class Observer;
   void notifyObservers(AttrId attr, void const * key) const;
   void observerAdd(Observer * o) const;
   void observerDel(Observer * o) const noexcept;

   Name name_;
   Entity * parent_ = nullptr;
   mutable ObserverList * observers_ = nullptr;
};

// The text of a value as it appears in names and error texts: strings as they
// are, enumerations by name, integers in decimal, anything else by its stringValue().
template <typename T>
std::string plainText(T const & v) {
   if constexpr (std::is_base_of_v<std::string, T>) {
      return v;
   } else if constexpr (std::is_same_v<T, bool>) {
      return v ? "True" : "False";
   } else if constexpr (RegisteredEnum<T>) {
      return valueToStrep(v);
   } else if constexpr (std::is_enum_v<T>) {
      return std::to_string(static_cast<std::underlying_type_t<T>>(v));
   } else if constexpr (std::is_arithmetic_v<T>) {
      return std::to_string(v);
   } else {
      return std::string(v.stringValue());
   }
}

// The name of an entity that is keyed by `key`: the key's text.
template <typename K>
Name nameOf(K const & key) {
   return Name(plainText(key));
}

// Raises the name-in-use error of an instantiating insert whose constructor
// parameter `param` differs from the stored entity's.
[[noreturn]] void nameInUse(std::string_view name, std::string_view param, std::string_view newValue,
                            std::string_view storedValue);

} // namespace Zon
