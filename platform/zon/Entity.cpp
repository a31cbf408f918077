#include "zon/Entity.h"

#include "zon/Reflect.h"

#include <algorithm>
#include <vector>

namespace Zon {

// The observers of one entity. While a notification runs (depth > 0) a removed
// observer leaves a hole instead of shifting the others, so the running loop's
// indexes stay valid; the holes are closed when the outermost notification ends.
struct ObserverList {
   std::vector<Observer *> observers;
   std::uint32_t depth = 0;
   bool holes = false;

   void compact() {
      observers.erase(std::remove(observers.begin(), observers.end(), nullptr), observers.end());
      holes = false;
   }
};

Observer::~Observer() { notifierIs(nullptr); }

void Observer::notifierIs(Entity const * notifier, AttrId attr) {
   if (notifier_) {
      notifier_->observerDel(this);
      notifier_ = nullptr;
   }
   attr_ = attr;
   if (notifier) {
      notifier->observerAdd(this);
      notifier_ = notifier;
   }
}

void Observer::onAttr(AttrId, void const *) {}

void Entity::attrsVisit(AttrVisitor &) const {}

AttrInfo const * Entity::attrInfo(AttrId) const noexcept { return nullptr; }

std::string Entity::attrKeyText(AttrId, void const *) const { return {}; }

void AttrRecorder::onAttr(AttrId attr, void const * key) {
   Entity const * e = notifier();
   AttrInfo const * info = e ? e->attrInfo(attr) : nullptr;
   std::string record = info ? std::string(info->name) : "attr" + std::to_string(attr);
   if (key) {
      record += '[';
      record += e->attrKeyText(attr, key);
      record += ']';
   }
   records_.push_back(std::move(record));
}

Entity::~Entity() {
   if (observers_) {
      for (Observer * o : observers_->observers) {
         if (o) {
            o->notifier_ = nullptr;
         }
      }
      delete observers_;
   }
}

std::size_t Entity::observers() const noexcept {
   if (!observers_) {
      return 0;
   }
   return static_cast<std::size_t>(
       std::count_if(observers_->observers.begin(), observers_->observers.end(),
                     [](Observer * o) { return o != nullptr; }));
}

void Entity::observerAdd(Observer * o) const {
   if (!observers_) {
      observers_ = new ObserverList;
   }
   observers_->observers.push_back(o);
}

void Entity::observerDel(Observer * o) const noexcept {
   ObserverList * l = observers_;
   auto it = std::find(l->observers.begin(), l->observers.end(), o);
   if (it == l->observers.end()) {
      return;
   }
   if (l->depth > 0) {
      *it = nullptr;
      l->holes = true;
      return;
   }
   l->observers.erase(it);
   if (l->observers.empty()) {
      delete l;
      observers_ = nullptr;
   }
}

void Entity::notifyObservers(AttrId attr, void const * key) const {
   // An observer may drop the last reference to this entity: keep it alive until
   // the loop is done. An entity that nobody holds yet is not counted. The guard
   // also closes the list's holes when an observer throws.
   struct Guard {
      Entity const * e;
      bool held;
      ~Guard() {
         ObserverList * l = e->observers_;
         if (--l->depth == 0 && l->holes) {
            l->compact();
            if (l->observers.empty()) {
               delete l;
               e->observers_ = nullptr;
            }
         }
         if (held) {
            e->unref();
         }
      }
   };
   bool const held = references() != 0;
   if (held) {
      ref();
   }
   ++observers_->depth;
   Guard guard{this, held};
   // Observers that register during the loop hear only of later changes.
   std::size_t const n = observers_->observers.size();
   for (std::size_t i = 0; i < n; ++i) {
      Observer * o = observers_->observers[i];
      if (o && (o->attr_ == allAttrs || o->attr_ == attr)) {
         o->onAttr(attr, key);
      }
   }
}

void nameInUse(std::string_view name, std::string_view param, std::string_view newValue,
               std::string_view storedValue) {
   std::string text = "Reinstantiating the entity with name ";
   text += name;
   text += " where constructor parameter attribute _";
   text += param;
   text += " has a different value of ";
   text += newValue;
   text += " than the current value of ";
   text += storedValue;
   text += " not allowed";
   throw NameInUseException(std::move(text));
}

} // namespace Zon
