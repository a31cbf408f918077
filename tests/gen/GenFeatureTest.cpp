// Behaviour of the generator's model features, through the tiny schemas
// GenTypes.zon, GenParts.zon and GenModel.zon: elements and children made from
// more than a key, constructor hooks, reference collections, the new… property,
// bounded queues, counters of every width, nameless entities, enumerations
// inside entities and class constants.
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
void Conn::handleConn() { clientAddrIs(client()); }

void FecSession::handleFecSession() {
   ZON_ASSERT(id() != 0);
   memberIs(initMember(), true);
   labelsIs("labelSet", id());
}

} // namespace GenTest

namespace {

using namespace GenTest;
using Strings = std::vector<std::string>;
using Vorin::IpAddr;

struct HolderFixture : ::testing::Test {
   Zon::Ptr<Holder> h = holderFactory("h");
   Zon::AttrRecorder r{h.ptr()};
};

std::string nameInUseText(Zon::Ptr<Holder> const & h, std::function<void(Holder &)> const & f) {
   try {
      f(*h);
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
   EXPECT_EQ(r.take(), (Strings{"conn[7]"}));
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
      EXPECT_EQ(nameInUseText(h, [&](Holder & x) { x.connIs(k.server, k.port, k.client, 7); }), k.text);
      EXPECT_EQ(nameInUseText(h, [&](Holder & x) { x.newConn(k.server, k.port, k.client, 7); }), k.text);
      EXPECT_EQ(h->conn(7), c); // the stored entry is unchanged
      EXPECT_EQ(c->server(), s1);
      EXPECT_EQ(c->port(), 646);
      EXPECT_EQ(c->client(), c1);
      EXPECT_EQ(c->parent(), h.ptr());
      EXPECT_TRUE(r.take().empty()); // and nobody is told
   }
}

TEST_F(GenParams, TextFormsOfEnumerationAndNameParameters) {
   h->fecSessionIs(5, Member::fromStatic);
   EXPECT_EQ(nameInUseText(h, [](Holder & x) { x.fecSessionIs(5, Member::fromFib); }),
             inUse("5", "initMember", "fromFib", "fromStatic"));
   h->tableIs("t", 1);
   EXPECT_EQ(nameInUseText(h, [](Holder & x) { x.tableIs("t", 2); }), inUse("t", "owner", "2", "1"));
   EXPECT_EQ(h->table("t")->owner(), 1u);
}

TEST_F(GenParams, ConstructorHookRunsWhenTheEntityIsBuilt) {
   Zon::Ptr<FecSession> s = h->fecSessionIs(5, Member::fromStatic);
   EXPECT_EQ(s->members(), 1u);
   EXPECT_TRUE(s->member(Member::fromStatic));
   ASSERT_NE(s->labels(), nullptr);
   EXPECT_EQ(s->labels()->name(), "labelSet");
   EXPECT_EQ(s->labels()->owner(), 5u);
   EXPECT_EQ(s->labels()->parent(), s.ptr());
   // Free-standing construction runs it too.
   auto free = Zon::makePtr<FecSession>(6, Member::fromFib);
   EXPECT_TRUE(free->member(Member::fromFib));
}

TEST(GenParamsDeath, ConstructorHookAssertsOnTheKey) {
   auto h = holderFactory("h");
   EXPECT_DEATH(h->fecSessionIs(0, Member::fromFib), "\nid\\(\\) != 0\n");
}

using GenNew = HolderFixture;

TEST_F(GenNew, ReplacingCollectionMakesAFreshElement) {
   Zon::Ptr<FecSession> a = h->fecSessionIs(5, Member::fromStatic);
   a->memberIs(Member::fromFib, true);
   EXPECT_EQ(h->fecSessionIs(5, Member::fromStatic), a);
   Zon::Ptr<FecSession> b = h->newFecSession(5, Member::fromFib); // no comparison
   EXPECT_NE(b, a);
   EXPECT_EQ(h->fecSession(5), b);
   EXPECT_EQ(b->members(), 1u);
   EXPECT_EQ(a->parent(), nullptr);
   EXPECT_EQ(b->parent(), h.ptr());
   EXPECT_EQ(h->fecSessions(), 1u);
   EXPECT_EQ(r.take(), (Strings{"fecSession[5]", "fecSession[5]"}));
}

TEST_F(GenNew, ReplacedElementMayHoldTheCallersKey) {
   h->tableIs("t", 1);
   // The key passed in lives in the element that the insert drops.
   Zon::Ptr<Table> fresh = h->newTable(h->table("t")->name(), 2);
   EXPECT_EQ(fresh->owner(), 2u);
   EXPECT_EQ(r.take(), (Strings{"table[t]", "table[t]"}));
}

// The three rules for a named child whose other parameters differ under the
// same name, and what new… does for each child.
TEST_F(GenNew, NamedChildrenWithParameters) {
   using Make = Zon::Ptr<Table> (Holder::*)(Zon::Name const &, std::uint32_t);
   struct Case {
      char const * attr;
      Make is, make;
      Zon::Ptr<Table> (Holder::*get)() noexcept;
      char const * onOtherOwner; // "error", "replace" or "keep"
      bool newIsFresh;
   };
   Case const cases[] = {
       {"binding", &Holder::bindingIs, &Holder::newBinding, &Holder::binding, "error", true},
       {"labels", &Holder::labelsIs, &Holder::newLabels, &Holder::labels, "replace", true},
       {"advertised", &Holder::advertisedIs, &Holder::newAdvertised, &Holder::advertised, "keep", false},
       {"leaf", &Holder::leafIs, &Holder::newLeaf, &Holder::leaf, "error", false},
   };
   for (Case const & k : cases) {
      SCOPED_TRACE(k.attr);
      std::string const attr = k.attr;
      Zon::Ptr<Table> a = (h.ptr()->*k.is)("a", 1);
      EXPECT_EQ(a->parent(), h.ptr());
      EXPECT_EQ((h.ptr()->*k.is)("a", 1), a);
      EXPECT_EQ(r.take(), (Strings{attr}));
      std::string const rule = k.onOtherOwner;
      if (rule == "error") {
         EXPECT_EQ(nameInUseText(h, [&](Holder & x) { (x.*k.is)("a", 2); }), inUse("a", "owner", "2", "1"));
         EXPECT_EQ((h.ptr()->*k.get)(), a);
         EXPECT_TRUE(r.take().empty());
      } else if (rule == "replace") {
         Zon::Ptr<Table> b = (h.ptr()->*k.is)("a", 2);
         EXPECT_NE(b, a);
         EXPECT_EQ(b->owner(), 2u);
         EXPECT_EQ(a->parent(), nullptr);
         EXPECT_EQ(r.take(), (Strings{attr}));
         a = b;
      } else {
         EXPECT_EQ((h.ptr()->*k.is)("a", 2), a);
         EXPECT_EQ(a->owner(), 1u);
         EXPECT_TRUE(r.take().empty());
      }
      Zon::Ptr<Table> made = (h.ptr()->*k.make)("a", a->owner());
      EXPECT_EQ(made != a, k.newIsFresh);
      EXPECT_EQ(r.take(), k.newIsFresh ? Strings{attr} : Strings{});
      Zon::Ptr<Table> other = (h.ptr()->*k.is)("b", 1); // another name: a new child
      EXPECT_NE(other, made);
      EXPECT_EQ(made->parent(), nullptr);
      EXPECT_EQ(r.take(), (Strings{attr}));
   }
}

using GenRef = HolderFixture;

TEST_F(GenRef, ReferencesNeverTouchTheParent) {
   auto owner = holderFactory("owner");
   Zon::Ptr<FecSession> s = owner->fecSessionIs(1, Member::fromFib);
   h->sessionIs(s);
   h->sessionIs(s); // the same entity again: nothing to tell
   EXPECT_EQ(h->session(1), s);
   EXPECT_EQ(s->parent(), owner.ptr());
   EXPECT_EQ(r.take(), (Strings{"session[1]"}));
   // Another entity with the same key replaces the reference.
   auto other = Zon::makePtr<FecSession>(1, Member::fromStatic);
   h->sessionIs(other);
   EXPECT_EQ(h->session(1), other);
   EXPECT_EQ(other->parent(), nullptr);
   h->sessionDel(1);
   h->sessionDel(1);
   EXPECT_EQ(s->parent(), owner.ptr());
   EXPECT_EQ(r.take(), (Strings{"session[1]", "session[1]"}));
}

TEST_F(GenRef, ReferenceKeepsItsEntityAlive) {
   auto s = Zon::makePtr<FecSession>(2, Member::fromFib);
   FecSession const * raw = s.ptr();
   h->newSession(s); // new… replaces here: the same as sessionIs
   s = nullptr;
   ASSERT_EQ(h->session(2).ptr(), raw);
   EXPECT_EQ(h->session(2)->id(), 2u);
   EXPECT_EQ(h->sessions(), 1u);
   h->sessionDelAll();
   EXPECT_EQ(h->sessions(), 0u);
   EXPECT_EQ(r.take(), (Strings{"session[2]", "session[2]"}));
}

TEST_F(GenRef, NullArgumentIsRefusedWithTheSchemasText) {
   try {
      h->sessionIs(nullptr);
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "null _session parameter to mutator for GenTest::Holder::session not allowed\"");
   }
   EXPECT_THROW(h->newSession(nullptr), Zon::RangeException);
   try {
      h->newTableRef(nullptr);
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "no table");
   }
   EXPECT_EQ(h->sessions(), 0u);
   EXPECT_TRUE(r.take().empty());
}

TEST_F(GenRef, CreateOrGetReferenceKeepsTheFirst) {
   Zon::Ptr<Table> t1 = h->tableIs("t", 1);
   auto t2 = Zon::makePtr<Table>("t", 2);
   h->newTableRef(t1);
   h->newTableRef(t2); // new… is create-or-get here: the first stays
   EXPECT_EQ(h->tableRef("t"), t1);
   h->tableRefIs(t2);
   EXPECT_EQ(h->tableRef("t"), t2);
   EXPECT_EQ(t1->parent(), h.ptr()); // still the table collection's
   EXPECT_EQ(r.take(), (Strings{"table[t]", "tableRef[t]", "tableRef[t]"}));
}

using GenCounted = HolderFixture;

TEST_F(GenCounted, NamelessEntitiesTravelByCountedPointer) {
   auto m1 = Zon::makePtr<Msg>(7, 10);
   auto m2 = Zon::makePtr<Msg>(8, 20);
   EXPECT_EQ(m1->name(), "");
   EXPECT_EQ(m1->sender(), 7u);
   EXPECT_EQ(m1->offset(), 10);
   h->pipeIs(1, m1);
   h->pipeIs(1, m1);
   h->pipeIs(2, m1); // one message may stand under several keys
   h->pipeIs(1, m2);
   h->lastMsgIs(m2);
   h->lastMsgIs(m2);
   EXPECT_EQ(h->pipe(1), m2);
   EXPECT_EQ(h->pipe(3), nullptr);
   EXPECT_EQ(m1->parent(), nullptr);
   EXPECT_EQ(r.take(), (Strings{"pipe[1]", "pipe[2]", "pipe[1]", "lastMsg"}));
   EXPECT_EQ(m1->references(), 2u); // here and under key 2
   EXPECT_EQ(m2->references(), 3u); // here, under key 1 and as lastMsg
   h = nullptr; // the holder goes; the messages live while someone holds them
   EXPECT_EQ(m1->references(), 1u);
   EXPECT_EQ(m2->references(), 1u);
}

// Counters of every width wrap at that width, return the new value and tell
// only of a change.
TEST(GenCounters, WrapAtTheirWidth) {
   auto c = Zon::makePtr<Counts>("c");
   struct Recorder : Counts::Notifiee {
      int told = 0;
      void onC8() override { ++told; }
      void onC16() override { ++told; }
      void onC32() override { ++told; }
      void onC64() override { ++told; }
   } r;
   r.notifierIs(c.ptr());
   EXPECT_EQ(c->c8Inc(0), 0);
   EXPECT_EQ(c->c64Inc(0), 0u);
   EXPECT_EQ(r.told, 0);
   c->c8Is(255);
   EXPECT_EQ(c->c8Inc(1), 0);
   EXPECT_EQ(c->c8Inc(200), 200);
   EXPECT_EQ(c->c8Inc(100), 44); // 300 mod 256
   c->c16Is(65535);
   EXPECT_EQ(c->c16Inc(2), 1);
   EXPECT_EQ(c->c16Dec(2), 65535);
   c->c32Is(4294967295u);
   EXPECT_EQ(c->c32Inc(1), 0u);
   std::uint64_t const max64 = std::numeric_limits<std::uint64_t>::max();
   c->c64Is(max64);
   EXPECT_EQ(c->c64Inc(1), 0u);
   EXPECT_EQ(c->c64Dec(1), max64);
   EXPECT_EQ(r.told, 12);
   static_assert(std::is_same_v<decltype(c->c8()), std::uint8_t>);
   static_assert(std::is_same_v<decltype(c->c64()), std::uint64_t>);
}

TEST(GenCounters, KeyedByAnEnumeration) {
   auto c = Zon::makePtr<Counts>("c");
   struct Recorder : Counts::Notifiee {
      Strings seen;
      void onPerMember(Member k) override { seen.push_back(GenTest::stringValue(k)); }
   } r;
   r.notifierIs(c.ptr());
   EXPECT_EQ(c->perMemberInc(Member::fromFib, 0), 0u);
   EXPECT_EQ(c->perMembers(), 1u);
   EXPECT_EQ(c->perMemberDec(Member::fromStatic, 1), std::numeric_limits<std::uint64_t>::max());
   EXPECT_EQ(c->perMemberInc(Member::fromStatic, 2), 1u);
   EXPECT_EQ(r.seen, (Strings{"fromStatic", "fromStatic"}));
}

// A bounded queue drops its oldest element before it takes one more; its keys
// keep counting.
TEST(GenQueue, BoundedQueueEvictsTheOldest) {
   auto c = Zon::makePtr<Counts>("c");
   struct Recorder : Counts::Notifiee {
      Strings seen;
      void onLog(std::uint32_t k) override { seen.push_back("log:" + std::to_string(k)); }
      void onOne(std::uint32_t k) override { seen.push_back("one:" + std::to_string(k)); }
   } r;
   r.notifierIs(c.ptr());
   static_assert(Counts::maxSize() == 3);
   for (std::uint32_t v = 10; v < 15; ++v) {
      EXPECT_EQ(c->logEnq(v), v - 10);
      EXPECT_LE(c->logs(), Counts::maxSize());
   }
   std::vector<std::pair<std::uint32_t, std::uint32_t>> held(c->log().begin(), c->log().end());
   EXPECT_EQ(held, (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{2, 12}, {3, 13}, {4, 14}}));
   EXPECT_EQ(r.seen, (Strings{"log:0", "log:1", "log:2", "log:0", "log:3", "log:1", "log:4"}));
   EXPECT_EQ(c->log().dequeues(), 2u);
   EXPECT_EQ(c->logDeq(), 12u);
   EXPECT_EQ(c->logEnq(15), 5u); // below the capacity: nothing dropped
   EXPECT_EQ(c->logs(), 3u);
   r.seen.clear();
   c->oneEnq(1);
   c->oneEnq(2);
   EXPECT_EQ(c->ones(), 1u);
   EXPECT_EQ(c->one(1), 2);
   EXPECT_EQ(r.seen, (Strings{"one:0", "one:0", "one:1"}));
   for (std::uint16_t v = 0; v < 5; ++v) {
      c->pairEnq(PeerId(v, v));
      c->allEnq(v);
   }
   EXPECT_EQ(c->pairs(), std::size_t(Counts::limit));
   EXPECT_EQ(c->alls(), 5u); // no capacity: unbounded
}

TEST(GenQueue, ExhaustedKeySpaceIsReportedBeforeAnyChange) {
   Zon::LinkQueue<int> q(0xffffffffu);
   q.requireKey();
   EXPECT_EQ(q.enqueue(1), 0xffffffffu);
   EXPECT_THROW(q.requireKey(), Zon::RangeException);
   EXPECT_THROW(q.enqueue(2), Zon::RangeException);
   EXPECT_EQ(q.size(), 1u);
}

TEST(GenNestedEnum, DeclaredInsideItsEntity) {
   auto n = Zon::makePtr<Notice>("n");
   EXPECT_EQ(n->kind(), Notice::Kind::unknown);
   static_assert(Notice::defaultKind() == Notice::Kind::mapping);
   EXPECT_EQ(GenTest::stringValue(Notice::Kind::request), "request");
   std::ostringstream os;
   os << Notice::Kind::mapping;
   EXPECT_EQ(os.str(), "mapping");
   EXPECT_EQ(Zon::enumInfo("GenTest::Notice::Kind"), &Zon::EnumTraits<Notice::Kind>::info());
   EXPECT_EQ(Zon::strepToValue<Notice::Kind>("request"), Notice::Kind::request);
   EXPECT_EQ(n->perKindInc(Notice::Kind::request, 2), 2u);
   // Another entity uses it by its qualified name.
   EXPECT_EQ(holderFactory("h")->noticeKind(), Notice::Kind::request);
}

TEST(GenConstants, GetterFormAndConstexprForm) {
   static_assert(Counts::maxSize() == 3u);
   static_assert(Counts::limit == 2u);
   EXPECT_EQ(Counts::title(), "counts");
   EXPECT_EQ(&Counts::title(), &Counts::title()); // one object
   static_assert(std::is_same_v<decltype(Counts::title()), Zon::String8 const &>);
}

// GenTypes.zon reaches GenModel.zon directly and through GenParts.zon: one type.
TEST(GenImports, SharedTypesAreDeclaredOnce) {
   static_assert(std::is_same_v<decltype(std::declval<FecSession>().initMember()), Member>);
   EXPECT_NE(Zon::enumInfo("GenTest::Member"), nullptr);
   auto h = holderFactory("h");
   Zon::Ptr<Peer> p = h->peerIs(PeerId(1, 2));
   EXPECT_EQ(p->name(), PeerId(1, 2).stringValue());
   EXPECT_EQ(h->peerIs(PeerId(1, 2)), p);
}

// The new kinds in the reflection tables: a fresh instance of each entity.
TEST(GenFeatureReflect, FreshInstancesAsTables) {
   using LdpTest::expectAttrs;
   auto h = holderFactory("h");
   expectAttrs(*h, {{"conn", "{}"}, {"fecSession", "{}"}, {"table", "{}"}, {"peer", "{}"}, {"session", "{}"},
                    {"tableRef", "{}"}, {"binding", "None"}, {"labels", "None"}, {"advertised", "None"},
                    {"leaf", "None"}, {"pipe", "{}"}, {"lastMsg", "None"}, {"noticeKind", "request"}});
   auto s = h->fecSessionIs(5, Member::fromSession);
   h->sessionIs(s);
   expectAttrs(*h, {{"fecSession", "{5}"}, {"session", "{5: '5'}"}}, LdpTest::Coverage::some);
   expectAttrs(*s, {{"id", "5"}, {"initMember", "fromSession"}, {"member", "{fromSession: True}"},
                    {"labels", "'labelSet'"}});
   expectAttrs(*Zon::makePtr<Msg>(1, 2), {{"sender", "1"}, {"offset", "2"}, {"priority", "0"}});
   expectAttrs(*Zon::makePtr<Notice>("n"), {{"kind", "unknown"}, {"perKind", "{}"}, {"defaultKind", "mapping"}});
   auto c = Zon::makePtr<Counts>("c");
   c->oneEnq(4);
   expectAttrs(*c, {{"c8", "0"}, {"c16", "0"}, {"c32", "0"}, {"c64", "0"}, {"perMember", "{}"}, {"maxSize", "3"},
                    {"limit", "2"}, {"title", "'counts'"}, {"log", "{}"}, {"pair", "{}"}, {"one", "{0: 4}"},
                    {"all", "{}"}});
   std::vector<std::string> kinds;
   for (Zon::AttrText const & a : Zon::attrTexts(*h)) {
      kinds.push_back(std::string(a.info.name) + " " + std::string(a.info.kind));
   }
   EXPECT_EQ(kinds[4], "session ref");
   Zon::AttrRecorder rec(h.ptr());
   h->sessionDel(5);
   EXPECT_EQ(rec.take(), (Strings{"session[5]"}));
}

} // namespace
