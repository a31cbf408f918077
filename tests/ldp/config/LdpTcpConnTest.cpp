// The TCP connection requests: the hand-written constructor (base fields, clock),
// the four-parameter create-or-get of the collection with its name-in-use
// refusals, and the factory's refusal of a failed allocation.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "ldp/wire/LdpProtoParam.h"
#include "ldp/config/LdpTcpConn.h"
#include "support/ModelTables.h"

namespace {

// Set by a test to make the next nothrow allocations fail, as a heap that has
// run out would; the factory allocates that way.
bool nothrowAllocationFails = false;

} // namespace

// The one replacement of the nothrow operator new in ldp_config_tests.
void * operator new(std::size_t n, std::nothrow_t const &) noexcept {
   if (nothrowAllocationFails) {
      return nullptr;
   }
   try {
      return ::operator new(n);
   } catch (std::bad_alloc const &) {
      return nullptr;
   }
}

namespace {

using namespace Ldp;
using LdpTest::Records;

Vorin::IpGenAddr addr(char const * text) { return Vorin::IpGenAddr::fromString(text); }

LdpIdentifier const peer(Vorin::IpAddr(2, 2, 2, 2), 0);
Vorin::Port const ldpPort(LdpProtoParam::ldpTcpPort);

// The runtime's clock reads `t` while the object lives.
struct ClockAt {
   explicit ClockAt(double t) {
      Zon::nowSourceIs([t] { return Zon::Seconds(t); });
   }
   ~ClockAt() { Zon::nowSourceIs({}); }
};

TEST(LdpTcpConnConfig, ConstructorFillsTheBaseAndStampsTheRequest) {
   ClockAt const clock(1234.5);
   auto c = ldpTcpConnConfigFactory(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   EXPECT_EQ(c->name(), "2.2.2.2:0");
   EXPECT_EQ(c->clientId(), peer);
   EXPECT_EQ(c->serverIpAddr(), addr("10.0.0.2"));
   EXPECT_EQ(c->serverPort(), Vorin::Port(646));
   EXPECT_EQ(c->clientIpAddr(), addr("10.0.0.1"));
   EXPECT_FALSE(c->enabled());
   EXPECT_EQ(c->requestTime().value(), 1234.5);
   // The platform's options keep the platform's defaults.
   EXPECT_EQ(c->ttl(), Vorin::IpTtl(64));
   EXPECT_EQ(c->md5Password(), "");
   EXPECT_EQ(c->retryLimit(), 0u);
   // Seen as the platform's request, it is the same object.
   Zon::Ptr<Vorin::TcpClientConfig> asRequest = c;
   EXPECT_EQ(asRequest->clientIpAddr(), addr("10.0.0.1"));
}

TEST(LdpTcpConnConfig, NotifieeHearsTheBaseAndItsOwnAttributes) {
   static_assert(LdpTcpConnConfig::Attr::enabled == Vorin::TcpClientConfig::Attr::attrCount);
   auto c = ldpTcpConnConfigFactory(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   Zon::AttrRecorder r(c.ptr());
   c->clientIpAddrIs(addr("10.0.0.1")); // unchanged: nobody hears
   c->enabledIs(false);
   c->md5PasswordIs("secret");
   c->enabledIs(true);
   c->requestTimeIs(c->requestTime() + 1.0);
   EXPECT_EQ(r.take(), (Records{"md5Password", "enabled", "requestTime"}));
}

TEST(LdpTcpConnConfigColl, SameParametersTwiceCreateOneEntry) {
   auto coll = Zon::makePtr<LdpTcpConnConfigColl>("tcpConn");
   Zon::AttrRecorder r(coll.ptr());
   auto first = coll->connConfigIs(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   first->enabledIs(true);
   EXPECT_EQ(coll->connConfigIs(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer), first);
   EXPECT_EQ(coll->newConnConfig(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer), first);
   EXPECT_TRUE(first->enabled());
   EXPECT_EQ(first->parent(), coll.ptr());
   EXPECT_EQ(coll->connConfigs(), 1u);
   EXPECT_EQ(coll->connConfig(peer), first);
   coll->connConfigDel(peer);
   EXPECT_EQ(coll->connConfigs(), 0u);
   EXPECT_EQ(first->parent(), nullptr);
   EXPECT_EQ(r.take(), (Records{"connConfig[2.2.2.2:0]", "connConfig[2.2.2.2:0]"}));
}

TEST(LdpTcpConnConfigColl, OtherParametersForAStoredPeerAreRefused) {
   struct Case {
      char const * serverIpAddr;
      std::uint16_t serverPort;
      char const * clientIpAddr;
      char const * error;
   };
   Case const cases[] = {
      {"10.0.0.3", 646, "10.0.0.1",
       "Reinstantiating the entity with name 2.2.2.2:0 where constructor parameter attribute _serverIpAddr has a "
       "different value of 10.0.0.3 than the current value of 10.0.0.2 not allowed"},
      // The first parameter that differs is named.
      {"10.0.0.3", 647, "10.0.0.9",
       "Reinstantiating the entity with name 2.2.2.2:0 where constructor parameter attribute _serverIpAddr has a "
       "different value of 10.0.0.3 than the current value of 10.0.0.2 not allowed"},
      {"10.0.0.2", 647, "10.0.0.1",
       "Reinstantiating the entity with name 2.2.2.2:0 where constructor parameter attribute _serverPort has a "
       "different value of 647 than the current value of 646 not allowed"},
      {"10.0.0.2", 646, "10.0.0.9",
       "Reinstantiating the entity with name 2.2.2.2:0 where constructor parameter attribute _clientIpAddr has a "
       "different value of 10.0.0.9 than the current value of 10.0.0.1 not allowed"},
   };
   auto coll = Zon::makePtr<LdpTcpConnConfigColl>("tcpConn");
   auto const stored = coll->newConnConfig(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   Zon::AttrRecorder r(coll.ptr());
   for (auto const & c : cases) {
      SCOPED_TRACE(c.error);
      for (bool create : {false, true}) {
         try {
            auto const server = addr(c.serverIpAddr);
            auto const client = addr(c.clientIpAddr);
            Vorin::Port const port(c.serverPort);
            create ? coll->newConnConfig(server, port, client, peer) : coll->connConfigIs(server, port, client, peer);
            ADD_FAILURE() << "no exception";
         } catch (Zon::NameInUseException const & e) {
            EXPECT_EQ(e.what(), std::string(c.error));
         }
      }
      EXPECT_EQ(coll->connConfig(peer), stored);
      EXPECT_EQ(stored->serverIpAddr(), addr("10.0.0.2"));
      EXPECT_EQ(stored->serverPort(), ldpPort);
      EXPECT_EQ(stored->clientIpAddr(), addr("10.0.0.1"));
   }
   EXPECT_EQ(coll->connConfigs(), 1u);
   EXPECT_TRUE(r.records().empty());
}

TEST(LdpTcpConnConfigColl, FactoryRefusesAFailedAllocation) {
   auto coll = Zon::makePtr<LdpTcpConnConfigColl>("tcpConn");
   Zon::AttrRecorder r(coll.ptr());
   nothrowAllocationFails = true;
   std::string direct, throughColl;
   try {
      ldpTcpConnConfigFactory(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   } catch (Zon::RangeException const & e) {
      direct = e.what();
   }
   try {
      coll->connConfigIs(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer);
   } catch (Zon::RangeException const & e) {
      throughColl = e.what();
   }
   nothrowAllocationFails = false;
   EXPECT_EQ(direct, "null ValidPtr");
   EXPECT_EQ(throughColl, "null ValidPtr");
   EXPECT_EQ(coll->connConfigs(), 0u);
   EXPECT_TRUE(r.records().empty());
   EXPECT_TRUE(coll->connConfigIs(addr("10.0.0.2"), ldpPort, addr("10.0.0.1"), peer));
}

} // namespace
