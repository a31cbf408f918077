// An entity whose base takes parameters and holds some of the entity's own, with
// a hand-written constructor and factory (GenHand.zon): the collection checks
// the base-held parameters through the base's getters, and a factory's null
// result is refused.
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "support/ModelTables.h"
#include "tests/gen/GenHand.h"

namespace GenTest {

// The base gets host and port, the peer is set after construction.
Link::Link(std::uint32_t host, std::uint16_t port, std::uint32_t peer, std::uint32_t id)
    : Endpoint(Zon::nameOf(id), host, port), id_(id) {
   peerIs(peer);
}

// Makes nothing for the id 0.
Zon::Ptr<Link> linkFactory(std::uint32_t host, std::uint16_t port, std::uint32_t peer, std::uint32_t id) {
   return id == 0 ? Zon::Ptr<Link>() : Zon::Ptr<Link>(new Link(host, port, peer, id));
}

} // namespace GenTest

namespace {

using GenTest::Link;
using GenTest::Links;

struct LinksRecorder : Links::Notifiee {
   std::vector<std::uint32_t> seen;
   void onLink(std::uint32_t k) override { seen.push_back(k); }
};

TEST(GenHand, TheHandWrittenConstructorFillsTheBase) {
   auto links = Zon::makePtr<Links>("links");
   auto l = links->linkIs(10, 20, 30, 7);
   EXPECT_EQ(l->name(), "7");
   EXPECT_EQ(l->id(), 7u);
   EXPECT_EQ(l->host(), 10u); // Endpoint's getters: nothing stored twice
   EXPECT_EQ(l->port(), 20);
   EXPECT_EQ(l->peer(), 30u);
   EXPECT_FALSE(l->up());
   // The getters of base-held parameters are the base's own.
   static_assert(std::is_same_v<decltype(&Link::host), decltype(&GenTest::Endpoint::host)>);
   static_assert(std::is_same_v<decltype(&Link::peer), decltype(&GenTest::Endpoint::peer)>);
}

TEST(GenHand, BaseHeldParametersAreReflectedOnceByTheBase) {
   auto l = Zon::makePtr<Links>("links")->linkIs(10, 20, 30, 7);
   LdpTest::expectAttrs(*l, {{"host", "10"}, {"port", "20"}, {"peer", "30"}, {"id", "7"}, {"up", "False"}});
   std::vector<std::string> names;
   for (auto const & a : Zon::attrTexts(*l)) {
      names.push_back(std::string(a.info.name));
   }
   EXPECT_EQ(names, (std::vector<std::string>{"host", "port", "peer", "id", "up"}));
}

TEST(GenHand, BaseHeldParametersAreComparedInOrder) {
   struct Case {
      std::uint32_t host;
      std::uint16_t port;
      std::uint32_t peer;
      std::string error; // empty: the stored element comes back
   };
   Case const cases[] = {
      {10, 20, 30, ""},
      {11, 21, 31, "Reinstantiating the entity with name 7 where constructor parameter attribute _host has a "
                   "different value of 11 than the current value of 10 not allowed"},
      {10, 21, 31, "Reinstantiating the entity with name 7 where constructor parameter attribute _port has a "
                   "different value of 21 than the current value of 20 not allowed"},
      {10, 20, 31, "Reinstantiating the entity with name 7 where constructor parameter attribute _peer has a "
                   "different value of 31 than the current value of 30 not allowed"},
   };
   auto links = Zon::makePtr<Links>("links");
   auto const stored = links->newLink(10, 20, 30, 7);
   LinksRecorder r;
   r.notifierIs(links.ptr());
   for (auto const & c : cases) {
      SCOPED_TRACE(c.error);
      if (c.error.empty()) {
         EXPECT_EQ(links->linkIs(c.host, c.port, c.peer, 7), stored);
         continue;
      }
      try {
         links->linkIs(c.host, c.port, c.peer, 7);
         ADD_FAILURE() << "no exception";
      } catch (Zon::NameInUseException const & e) {
         EXPECT_EQ(e.what(), c.error);
      }
      EXPECT_EQ(links->link(7), stored);
      EXPECT_EQ(stored->host(), 10u);
      EXPECT_EQ(stored->peer(), 30u);
   }
   EXPECT_EQ(links->links(), 1u);
   EXPECT_TRUE(r.seen.empty());
}

TEST(GenHand, ANullFromTheFactoryIsRefused) {
   auto links = Zon::makePtr<Links>("links");
   LinksRecorder r;
   r.notifierIs(links.ptr());
   try {
      links->linkIs(1, 2, 3, 0);
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "null ValidPtr");
   }
   EXPECT_EQ(links->links(), 0u);
   EXPECT_TRUE(r.seen.empty());
}

} // namespace
