// Pseudowire configuration: the PW type fixed at creation and refused when it
// differs, the pseudowire records' collection and the two enumerations.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ldp/config/PwConfig.h"
#include "support/DeathText.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::Records;

Pseudowire::PseudowireLdpRequestKey const key(Vorin::IpGenAddr::fromString("10.0.0.2"),
                                               Pseudowire::PseudowireId(100));

TEST(PwConfigColl, PwTypeIsFixedForTheEntrysLife) {
   auto coll = Zon::makePtr<PwConfigColl>("pw");
   auto const stored = coll->configIs(key, Pseudowire::PseudowireType::ethernet);
   EXPECT_EQ(stored->requestKey(), key);
   EXPECT_EQ(stored->pwType(), Pseudowire::PseudowireType::ethernet);
   EXPECT_EQ(stored->name(), "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100})");
   stored->mtuIs(1500);
   EXPECT_EQ(coll->newConfig(key, Pseudowire::PseudowireType::ethernet), stored);
   EXPECT_EQ(stored->mtu(), 1500u);
   Zon::AttrRecorder r(coll.ptr());
   for (bool create : {false, true}) {
      try {
         create ? coll->newConfig(key, Pseudowire::PseudowireType::ethernetTagged)
                : coll->configIs(key, Pseudowire::PseudowireType::ethernetTagged);
         ADD_FAILURE() << "no exception";
      } catch (Zon::NameInUseException const & e) {
         EXPECT_EQ(std::string(e.what()),
                   "Reinstantiating the entity with name "
                   "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100}) where "
                   "constructor parameter attribute _pwType has a different value of ethernetTagged than the "
                   "current value of ethernet not allowed");
      }
   }
   EXPECT_EQ(coll->config(key), stored);
   EXPECT_EQ(stored->pwType(), Pseudowire::PseudowireType::ethernet);
   EXPECT_EQ(stored->mtu(), 1500u);
   EXPECT_TRUE(r.records().empty());
   coll->configDel(key);
   EXPECT_EQ(r.take(), (Records{"config[" + std::string(key.stringValue()) + "]"}));
   EXPECT_EQ(coll->configs(), 0u);
}

PwFecSessionId const session(LdpIdentifier(Vorin::IpAddr(5, 5, 5, 5), 0), Pseudowire::PseudowireType::ethernet,
                             Pseudowire::PseudowireId(100));

TEST(PwFecSessionConfig, StartsWithTheMemberItIsMadeFor) {
   auto coll = Zon::makePtr<PwFecSessionConfigColl>("local");
   Zon::AttrRecorder r(coll.ptr());
   auto s = coll->fecSessionConfigIs(session, PwFecSessionMember::pwFecMemberStatic);
   EXPECT_EQ(s->pwFecSessionId(), session);
   EXPECT_EQ(s->initMember(), PwFecSessionMember::pwFecMemberStatic);
   EXPECT_EQ(s->members(), 1u);
   EXPECT_TRUE(s->member(PwFecSessionMember::pwFecMemberStatic));
   EXPECT_FALSE(s->member(PwFecSessionMember::pwFecMemberSessionSm));
   // Members come and go; the session stays what it was made for.
   s->newMember(PwFecSessionMember::pwFecMemberSessionSm, true);
   s->memberDel(PwFecSessionMember::pwFecMemberStatic);
   EXPECT_EQ(coll->newFecSessionConfig(session, PwFecSessionMember::pwFecMemberStatic), s);
   EXPECT_EQ(s->members(), 1u);
   EXPECT_EQ(r.take(), (Records{"fecSessionConfig[" + std::string(session.stringValue()) + "]"}));
}

TEST(PwFecSessionConfig, AnotherInitialMemberIsRefused) {
   auto coll = Zon::makePtr<PwFecSessionConfigColl>("remote");
   auto const stored = coll->newFecSessionConfig(session, PwFecSessionMember::pwFecMemberSessionSm);
   Zon::AttrRecorder r(coll.ptr());
   try {
      coll->fecSessionConfigIs(session, PwFecSessionMember::pwFecMemberStatic);
      FAIL() << "no exception";
   } catch (Zon::NameInUseException const & e) {
      EXPECT_EQ(std::string(e.what()),
                "Reinstantiating the entity with name " + std::string(session.stringValue()) +
                    " where constructor parameter attribute _initMember has a different value of "
                    "pwFecMemberStatic than the current value of pwFecMemberSessionSm not allowed");
   }
   EXPECT_EQ(coll->fecSessionConfig(session), stored);
   EXPECT_EQ(stored->initMember(), PwFecSessionMember::pwFecMemberSessionSm);
   // Still only the member it was made with: the refused one was not added.
   EXPECT_EQ(stored->members(), 1u);
   EXPECT_TRUE(stored->member(PwFecSessionMember::pwFecMemberSessionSm));
   EXPECT_FALSE(stored->member(PwFecSessionMember::pwFecMemberStatic));
   EXPECT_TRUE(r.records().empty());
}

TEST(PwFecSessionConfigDeathTest, AnInvalidIdEndsTheProcess) {
   auto coll = Zon::makePtr<PwFecSessionConfigColl>("local");
   PwFecSessionId const noPwId(LdpIdentifier(Vorin::IpAddr(5, 5, 5, 5), 0), Pseudowire::PseudowireType::ethernet,
                               Pseudowire::PseudowireId(0));
   EXPECT_DEATH(coll->fecSessionConfigIs(noPwId, PwFecSessionMember::pwFecMemberStatic),
                TestSupport::literal("pwFecSessionId().isValid()"));
   EXPECT_DEATH(coll->fecSessionConfigIs(PwFecSessionId(), PwFecSessionMember::pwFecMemberSessionSm),
                TestSupport::literal("pwFecSessionId().isValid()"));
}

TEST(PwEnumerations, StoredNumbersAndNames) {
   EXPECT_EQ(static_cast<std::uint32_t>(PwStatusMethod::pwStatusMethodUndefined), 0u);
   EXPECT_EQ(static_cast<std::uint32_t>(PwStatusMethod::pwStatusMethodWithdraw), 2u);
   EXPECT_EQ(static_cast<std::uint32_t>(PwFecSessionMember::pwFecMemberStatic), 1u);
   EXPECT_EQ(stringValue(PwStatusMethod::pwStatusMethodTlv), "pwStatusMethodTlv");
   EXPECT_EQ(Zon::strepToValue<PwFecSessionMember>("pwFecMemberSessionSm"), PwFecSessionMember::pwFecMemberSessionSm);
}

} // namespace
