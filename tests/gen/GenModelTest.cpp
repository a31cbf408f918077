// Behaviour of generated code through GenTypes.zon, GenParts.zon and
// GenModel.zon: elements made from more than their key (the name-in-use error
// names the first differing parameter, both values as text), a constructor
// hook that checks the key, counters of every width, an enumeration declared
// inside an entity, and one shared schema reached by two import paths.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/ModelTables.h"
#include "tests/gen/GenModel.h"
#include "zon/Assert.h"
#include "zon/Reflect.h"

namespace GenTest {

// The constructor hooks that GenParts.zon declares.
void Conn::constructed() { clientAddrIs(client()); }

void FecSession::constructed() {
   ZON_ASSERT(id() != 0);
   memberIs(initMember(), true);
}

} // namespace GenTest

namespace {

using namespace GenTest;
using LdpTest::expectAttrs;
using LdpTest::Records;
using Vorin::IpAddr;

struct HolderFixture : ::testing::Test {
   Zon::Ptr<Holder> h = holderFactory("h");
   Zon::AttrRecorder r{h.ptr()};
};

std::string nameInUseText(std::function<void()> const & f) {
   try {
      f();
   } catch (Zon::NameInUseException const & e) {
      return e.what();
   }
   return "no exception";
}

std::string inUse(std::string const & name, std::string const & param, std::string const & newValue,
                  std::string const & stored) {
   return "Reinstantiating the entity with name " + name + " where constructor parameter attribute _" + param +
          " has a different value of " + newValue + " than the current value of " + stored + " not allowed";
}

using GenParams = HolderFixture;

TEST_F(GenParams, ElementMadeFromFourParametersAndItsBase) {
   IpAddr const server(10, 0, 0, 1), client(10, 0, 0, 2);
   Zon::Ptr<Conn> c = h->connIs(server, 646, client, 7);
   EXPECT_EQ(c->name(), "7");
   EXPECT_EQ(c->serverAddr(), server); // handed to the base
   EXPECT_EQ(c->serverPort(), 646);
   EXPECT_EQ(c->clientAddr(), client); // set by the constructor hook
   EXPECT_EQ(c->parent(), h.ptr());
   EXPECT_EQ(h->connIs(server, 646, client, 7), c);
   EXPECT_EQ(h->newConn(server, 646, client, 7), c); // new… is create-or-get here
   EXPECT_EQ(r.take(), (Records{"conn[7]"}));
}

TEST_F(GenParams, FirstDifferingParameterInDeclarationOrderIsNamed) {
   IpAddr const s1(10, 0, 0, 1), s2(10, 0, 0, 9), c1(10, 0, 0, 2), c2(10, 0, 0, 8);
   Zon::Ptr<Conn> c = h->connIs(s1, 646, c1, 7);
   r.take();
   struct Case {
      char const * what;
      IpAddr server;
      std::uint16_t port;
      IpAddr client;
      std::string text;
   };
   Case const cases[] = {
       {"server", s2, 646, c1, inUse("7", "server", "10.0.0.9", "10.0.0.1")},
       {"port", s1, 647, c1, inUse("7", "port", "647", "646")},
       {"client", s1, 646, c2, inUse("7", "client", "10.0.0.8", "10.0.0.2")},
       {"server before port", s2, 1, c1, inUse("7", "server", "10.0.0.9", "10.0.0.1")},
       {"port before client", s1, 1, c2, inUse("7", "port", "1", "646")},
   };
   for (Case const & k : cases) {
      SCOPED_TRACE(k.what);
      EXPECT_EQ(nameInUseText([&] { h->connIs(k.server, k.port, k.client, 7); }), k.text);
      EXPECT_EQ(nameInUseText([&] { h->newConn(k.server, k.port, k.client, 7); }), k.text);
      EXPECT_EQ(h->conn(7), c); // the stored entry is unchanged
      EXPECT_EQ(c->server(), s1);
      EXPECT_EQ(c->port(), 646);
      EXPECT_EQ(c->client(), c1);
      EXPECT_EQ(c->parent(), h.ptr());
      EXPECT_TRUE(r.take().empty()); // and nobody is told
   }
}

TEST_F(GenParams, TextFormsOfEnumerationAndNumberParameters) {
   Zon::Ptr<FecSession> s = h->fecSessionIs(5, Member::fromStatic);
   EXPECT_EQ(nameInUseText([&] { h->fecSessionIs(5, Member::fromFib); }),
             inUse("5", "initMember", "fromFib", "fromStatic"));
   EXPECT_EQ(h->fecSession(5), s);
   h->labelIs("t", 1);
   EXPECT_EQ(nameInUseText([&] { h->labelIs("t", 2); }), inUse("t", "owner", "2", "1"));
   EXPECT_EQ(h->label("t")->owner(), 1u);
   EXPECT_EQ(r.take(), (Records{"fecSession[5]", "label[t]"}));
}

TEST_F(GenParams, ConstructorHookRecordsTheInitialMember) {
   expectAttrs(*h->fecSessionIs(5, Member::fromStatic),
               {{"id", "5"}, {"initMember", "fromStatic"}, {"member", "{fromStatic: True}"}});
   EXPECT_TRUE(Zon::makePtr<FecSession>(6, Member::fromFib)->member(Member::fromFib)); // free-standing too
}

TEST(GenParamsDeath, ConstructorHookAssertsOnTheKey) {
   auto h = holderFactory("h");
   EXPECT_DEATH(h->fecSessionIs(0, Member::fromFib), "\nid\\(\\) != 0\n");
}

TEST_F(GenParams, ReplacedElementMayHoldTheCallersKey) {
   h->labelIs("t", 1);
   // The key passed in lives in the element that the insert drops, which only the
   // collection holds (ASan watches the observer read it).
   Label const * old = h->label("t").ptr();
   Zon::Ptr<Label> fresh = h->newLabel(old->name(), 2);
   EXPECT_EQ(fresh->owner(), 2u);
   EXPECT_EQ(r.take(), (Records{"label[t]", "label[t]"}));
}

// Counters of every width wrap at that width, return the new value and tell
// only of a change.
TEST(GenCounters, WrapAtTheirWidth) {
   auto c = Zon::makePtr<Counts>("c");
   Zon::AttrRecorder r(c.ptr());
   std::uint64_t const max64 = std::numeric_limits<std::uint64_t>::max();
   EXPECT_EQ(c->c8Inc(0), 0);
   EXPECT_EQ(c->c64Inc(0), 0u);
   EXPECT_TRUE(r.take().empty());
   c->c8Is(255);
   EXPECT_EQ(c->c8Inc(1), 0);
   EXPECT_EQ(c->c8Inc(200), 200);
   EXPECT_EQ(c->c8Inc(100), 44); // 300 mod 256
   c->c16Is(65535);
   EXPECT_EQ(c->c16Inc(2), 1);
   EXPECT_EQ(c->c16Dec(2), 65535);
   c->c32Is(4294967295u);
   EXPECT_EQ(c->c32Inc(1), 0u);
   c->c64Is(max64);
   EXPECT_EQ(c->c64Inc(1), 0u);
   EXPECT_EQ(c->c64Dec(1), max64);
   EXPECT_EQ(r.take(), (Records{"c8", "c8", "c8", "c8", "c16", "c16", "c16", "c32", "c32", "c64", "c64", "c64"}));
   static_assert(std::is_same_v<decltype(c->c8()), std::uint8_t>);
   static_assert(std::is_same_v<decltype(c->c64()), std::uint64_t>);
}

TEST(GenCounters, KeyedByAnEnumeration) {
   auto c = Zon::makePtr<Counts>("c");
   Zon::AttrRecorder r(c.ptr());
   EXPECT_EQ(c->perMemberInc(Member::fromFib, 0), 0u); // created at 0, nobody told
   EXPECT_EQ(c->perMembers(), 1u);
   EXPECT_EQ(c->perMemberDec(Member::fromStatic, 1), std::numeric_limits<std::uint64_t>::max());
   EXPECT_EQ(c->perMemberInc(Member::fromStatic, 2), 1u);
   EXPECT_EQ(r.take(), (Records{"perMember[fromStatic]", "perMember[fromStatic]"}));
}

TEST(GenNestedEnum, DeclaredInsideItsEntity) {
   auto n = Zon::makePtr<Notice>("n");
   static_assert(Notice::defaultKind() == Notice::Kind::mapping);
   EXPECT_EQ(GenTest::stringValue(Notice::Kind::request), "request");
   std::ostringstream os;
   os << Notice::Kind::mapping;
   EXPECT_EQ(os.str(), "mapping");
   EXPECT_EQ(Zon::enumInfo("GenTest::Notice::Kind"), &Zon::EnumTraits<Notice::Kind>::info());
   EXPECT_EQ(Zon::strepToValue<Notice::Kind>("request"), Notice::Kind::request);
   Zon::AttrRecorder r(n.ptr());
   EXPECT_EQ(n->perKindInc(Notice::Kind::request, 2), 2u);
   n->kindIs(Notice::Kind::mapping);
   EXPECT_EQ(r.take(), (Records{"perKind[request]", "kind"}));
   expectAttrs(*n, {{"kind", "mapping"}, {"perKind", "{request: 2}"}, {"defaultKind", "mapping"}});
   // Another entity uses it by its qualified name.
   EXPECT_EQ(holderFactory("h")->noticeKind(), Notice::Kind::request);
}

// GenTypes.zon reaches GenModel.zon directly and through GenParts.zon: one type.
TEST(GenImports, SharedTypesAreDeclaredOnce) {
   static_assert(std::is_same_v<decltype(std::declval<FecSession>().initMember()), Member>);
   EXPECT_NE(Zon::enumInfo("GenTest::Member"), nullptr);
   auto h = holderFactory("h");
   Zon::Ptr<Neighbour> p = h->neighbourIs(PeerId(1, 2));
   EXPECT_EQ(p->name(), PeerId(1, 2).stringValue());
   EXPECT_EQ(h->neighbourIs(PeerId(1, 2)), p);
   expectAttrs(*h, {{"conn", "{}"}, {"fecSession", "{}"}, {"label", "{}"},
                    {"neighbour", "{Value('GenTest::PeerId', ** {'lsr': 1, 'space': 2})}"},
                    {"noticeKind", "request"}});
}

} // namespace
