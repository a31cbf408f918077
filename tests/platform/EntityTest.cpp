// Notification, parent links and the name-in-use error of the entity runtime, on a
// small hand-written entity shaped like the generated ones.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "vorin/IpAddr.h"
#include "zon/Collection.h"
#include "zon/Entity.h"

namespace {

class Probe : public Zon::Entity {
 public:
   struct Attr {
      static constexpr Zon::AttrId a = 0;
      static constexpr Zon::AttrId b = 1;
      static constexpr Zon::AttrId item = 2;
   };
   explicit Probe(Zon::Name name) : Zon::Entity(std::move(name)) {}

   int a() const { return a_; }
   void aIs(int v) {
      if (v == a_) {
         return;
      }
      a_ = v;
      notify(Attr::a);
   }
   void bIs(int v) {
      if (v == b_) {
         return;
      }
      b_ = v;
      notify(Attr::b);
   }
   void itemIs(int k, int v) {
      if (item_.set(k, v)) {
         notify(Attr::item, &k);
      }
   }

 protected:
   ~Probe() override = default;

 private:
   int a_ = 0;
   int b_ = 0;
   Zon::ValueMap<int, int, Zon::Ordered> item_;
};

// Records each notification as "attr" or "attr:key"; runs an optional action.
struct Recorder : Zon::Observer {
   std::vector<std::string> seen;
   std::function<void()> action;
   void onAttr(Zon::AttrId attr, void const * key) override {
      std::string s = std::to_string(attr);
      if (key) {
         s += ":" + std::to_string(*static_cast<int const *>(key));
      }
      seen.push_back(s);
      if (action) {
         action();
      }
   }
};

using Strings = std::vector<std::string>;

TEST(ZonEntity, NotifiesOnlyRealChangesWithTheirKey) {
   auto p = Zon::makePtr<Probe>("p");
   EXPECT_EQ(p->observers(), 0u);
   Recorder r;
   r.notifierIs(p.ptr());
   EXPECT_EQ(p->observers(), 1u);
   p->aIs(0); // stored value: nobody hears
   p->aIs(5);
   p->aIs(5);
   p->itemIs(7, 1);
   p->itemIs(7, 1);
   p->itemIs(7, 2);
   EXPECT_EQ(r.seen, (Strings{"0", "2:7", "2:7"}));
   r.notifierIs(nullptr);
   EXPECT_EQ(p->observers(), 0u);
   p->aIs(6);
   EXPECT_EQ(r.seen.size(), 3u);
}

TEST(ZonEntity, ObserverOfOneAttributeHearsOnlyThatOne) {
   auto p = Zon::makePtr<Probe>("p");
   Recorder onB, onAll;
   onB.notifierIs(p.ptr(), Probe::Attr::b);
   onAll.notifierIs(p.ptr());
   p->aIs(1);
   p->bIs(1);
   EXPECT_EQ(onB.seen, (Strings{"1"}));
   EXPECT_EQ(onAll.seen, (Strings{"0", "1"}));
   // Watching anew replaces the earlier watch.
   onB.notifierIs(p.ptr(), Probe::Attr::a);
   EXPECT_EQ(p->observers(), 2u);
   p->bIs(2);
   p->aIs(2);
   EXPECT_EQ(onB.seen, (Strings{"1", "0"}));
}

TEST(ZonEntity, ObserversMayChangeTheListDuringANotification) {
   auto p = Zon::makePtr<Probe>("p");
   Recorder first, second, late;
   // The first observer leaves, and brings in a late one, while being told.
   first.action = [&] {
      first.notifierIs(nullptr);
      late.notifierIs(p.ptr());
   };
   first.notifierIs(p.ptr());
   second.notifierIs(p.ptr());
   p->aIs(1);
   EXPECT_EQ(first.seen, (Strings{"0"}));
   EXPECT_EQ(second.seen, (Strings{"0"}));
   EXPECT_TRUE(late.seen.empty()); // registered after the change
   EXPECT_EQ(p->observers(), 2u);
   p->aIs(2);
   EXPECT_EQ(first.seen.size(), 1u);
   EXPECT_EQ(late.seen, (Strings{"0"}));
}

TEST(ZonEntity, ObserverMayDeleteItselfOrAnotherWhileBeingTold) {
   auto p = Zon::makePtr<Probe>("p");
   auto * self = new Recorder;
   auto * victim = new Recorder;
   Recorder last;
   self->action = [&] {
      delete victim;
      delete self;
   };
   self->notifierIs(p.ptr());
   victim->notifierIs(p.ptr());
   last.notifierIs(p.ptr());
   p->aIs(1);
   EXPECT_EQ(last.seen, (Strings{"0"}));
   EXPECT_EQ(p->observers(), 1u);
}

TEST(ZonEntity, ObserverMayDropTheLastReference) {
   auto p = Zon::makePtr<Probe>("p");
   Probe * raw = p.ptr();
   Recorder dropper, after;
   dropper.action = [&] { p = nullptr; };
   dropper.notifierIs(raw);
   after.notifierIs(raw);
   raw->aIs(1);
   // The entity lived until every observer was told, then went away.
   EXPECT_EQ(after.seen, (Strings{"0"}));
   EXPECT_EQ(dropper.notifier(), nullptr);
   EXPECT_EQ(after.notifier(), nullptr);
}

TEST(ZonEntity, DestroyedEntityLeavesItsObserversUnattached) {
   Recorder r;
   {
      auto p = Zon::makePtr<Probe>("p");
      r.notifierIs(p.ptr());
      EXPECT_EQ(r.notifier(), p.ptr());
   }
   EXPECT_EQ(r.notifier(), nullptr);
   r.notifierIs(nullptr); // nothing to leave
}

TEST(ZonEntity, ThrowingObserverLeavesTheListUsable) {
   auto p = Zon::makePtr<Probe>("p");
   Recorder thrower, other;
   thrower.action = [&] {
      thrower.action = nullptr;
      other.notifierIs(nullptr);
      throw std::runtime_error("observer failed");
   };
   thrower.notifierIs(p.ptr());
   other.notifierIs(p.ptr());
   EXPECT_THROW(p->aIs(1), std::runtime_error);
   EXPECT_EQ(p->observers(), 1u);
   p->aIs(2);
   EXPECT_EQ(thrower.seen, (Strings{"0", "0"}));
   EXPECT_TRUE(other.seen.empty());
}

TEST(ZonEntity, NameInUseText) {
   try {
      Zon::nameInUse("10.0.0.1:0", "serverIpAddr", "10.0.0.9", "10.0.0.2");
      FAIL() << "no exception";
   } catch (Zon::NameInUseException const & e) {
      EXPECT_STREQ(e.what(), "Reinstantiating the entity with name 10.0.0.1:0 where constructor parameter "
                             "attribute _serverIpAddr has a different value of 10.0.0.9 than the current "
                             "value of 10.0.0.2 not allowed");
   }
}

TEST(ZonEntity, PlainTextOfKeys) {
   EXPECT_EQ(Zon::plainText(Zon::Name("eth0")), "eth0");
   EXPECT_EQ(Zon::plainText(std::uint32_t(4294967295u)), "4294967295");
   EXPECT_EQ(Zon::plainText(std::uint8_t(200)), "200");
   EXPECT_EQ(Zon::plainText(true), "True");
   EXPECT_EQ(Zon::plainText(Vorin::IpAddr(10, 0, 0, 1)), "10.0.0.1");
   EXPECT_EQ(Zon::nameOf(Vorin::IpGenAddr(Vorin::IpAddr(1, 2, 3, 4))), "1.2.3.4");
}

TEST(ZonChild, ParentLinkFollowsTheHolder) {
   auto owner = Zon::makePtr<Probe>("owner");
   auto a = Zon::makePtr<Probe>("a");
   auto b = Zon::makePtr<Probe>("b");
   {
      Zon::Child<Probe> child;
      EXPECT_FALSE(child.reset());
      child.set(a, owner.ptr());
      EXPECT_EQ(a->parent(), owner.ptr());
      child.set(a, owner.ptr()); // the same child again stays linked
      EXPECT_EQ(a->parent(), owner.ptr());
      child.set(b, owner.ptr()); // replacing unlinks the old one
      EXPECT_EQ(a->parent(), nullptr);
      EXPECT_EQ(b->parent(), owner.ptr());
      EXPECT_EQ(b->references(), 2u);
   }
   // The holder went away while someone else still holds the child.
   EXPECT_EQ(b->parent(), nullptr);
   EXPECT_EQ(b->references(), 1u);
}

TEST(ZonEntityMap, ParentLinkFollowsTheCollection) {
   auto owner = Zon::makePtr<Probe>("owner");
   auto a = Zon::makePtr<Probe>("a");
   auto b = Zon::makePtr<Probe>("b");
   auto c = Zon::makePtr<Probe>("c");
   {
      Zon::EntityMap<int, Probe> m;
      m.insert(1, a, owner.ptr());
      m.insert(2, b, owner.ptr());
      EXPECT_EQ(a->parent(), owner.ptr());
      m.insert(1, c, owner.ptr()); // replaces a
      EXPECT_EQ(a->parent(), nullptr);
      EXPECT_EQ(m.find(1), c);
      EXPECT_EQ(m.take(2), b);
      EXPECT_EQ(b->parent(), nullptr);
      EXPECT_EQ(m.take(2), nullptr);
      EXPECT_EQ(c->parent(), owner.ptr());
   }
   EXPECT_EQ(c->parent(), nullptr);
   EXPECT_EQ(c->references(), 1u);
}

} // namespace
