// The configuration root, per-VRF configuration and protocol parameters: their
// defaults, notifications, the 100-byte VRF name rule, handleInitialized, the
// behaviour bits and the static binding value's text form.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ldp/config/LdpConfig.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;
using Strings = std::vector<std::string>;

// Every attribute of a fresh record, as the configuration front end and the
// agent first see it.
TEST(LdpConfig, FreshRecordsHoldTheirDefaults) {
   auto coll = Zon::makePtr<LdpConfigColl>("configColl");
   expectAttrs(*coll, {{"config", "{}"}, {"initialized", "False"}});
   Zon::Ptr<Config> c = coll->configIs("red");
   EXPECT_EQ(c->name(), "red");
   EXPECT_EQ(c->parent(), coll.ptr());
   expectAttrs(*c, {
                      {"vrfName", "red"},
                      {"enabled", "False"},
                      {"ipTransportAddrIntfId", ""},
                      {"ldpLabelDistCtrl", "orderedCtrl"},
                      {"ldpLabelAdvDspl", "unSolicited"},
                      {"ldpLabelRetention", "liberalRetention"},
                      {"ldpLoopDetection", "False"},
                      {"staticTarget", "{}"},
                      {"ldpProtoParamSetting", "Value('Ldp::LdpProtoParamSetting', ** {'value': 0})"},
                      {"routerId", "0.0.0.0"},
                      {"routerIdIntfId", ""},
                      {"forceRouterId", "0.0"},
                      {"agentFreezeRequest", "0.0"},
                      {"md5Password", "''"},
                      {"intfConfigColl", "{}"},
                      {"staticFecBindingColl", "{}"},
                      {"fecFilterPrefixListName", "''"},
                      {"linkReadyTimeout", "60.0"},
                      {"linkReadyDelay", "5.0"},
                      {"helloHoldTime", "15"},
                      {"helloInterval", "5"},
                      {"targetedHelloHoldTime", "45"},
                      {"targetedHelloInterval", "15"},
                      {"ldpNeighborClearRequest", "{}"},
                      {"serviceAclTypeVrfMap", "None"},
                   });
   expectAttrs(*c->intfConfigCollIs("eth0"), {{"name", "'eth0'"}, {"igpSync", "useGlobal"}});

   Zon::Ptr<ProtoConfig> p = Zon::makePtr<LdpProtoConfigColl>("protoConfigColl")->newProtoConfig("default");
   expectAttrs(*p, {
                      {"vrfName", "default"},
                      {"runningState", "ldpStopped"},
                      {"reason", "''"},
                      {"routerId", "0.0.0.0"},
                      {"intfId", ""},
                      {"ipTransportAddr", "0.0.0.0"},
                      {"configCodefDelay", "1.0"},
                      {"ldpIdentifier", "0.0.0.0:0"},
                      {"ldpLabelDistCtrl", "orderedCtrl"},
                      {"ldpLabelAdvDspl", "unSolicited"},
                      {"ldpLabelRetention", "liberalRetention"},
                      {"ldpMultiLabelSupport", "False"},
                      {"ldpLoopDetection", "False"},
                      {"ldpHopCountMax", "64"},
                      {"md5Password", "''"},
                      {"staticTarget", "{}"},
                      {"linkReadyTimeout", "60.0"},
                      {"linkReadyDelay", "5.0"},
                      {"ldpProtoParamSetting", "Value('Ldp::LdpProtoParamSetting', ** {'value': 0})"},
                      {"fecFilter", "None"},
                      {"ldpProtoParam", "None"},
                   });
   expectAttrs(*Zon::makePtr<Statistics>("stats"),
               {{"messageId", "0"}, {"fecCountUnfiltered", "0"}, {"fecCountFiltered", "0"},
                {"sessionStatisticsColl", "None"}});
   expectAttrs(LdpFecBindingInfo(), {{"inputLabel", "1048576"}, {"outputLabel", "1048576"}, {"nexthopIntfIp", "0.0.0.0"}});
}

TEST(LdpConfig, EnumerationsKeepTheirStoredNumbers) {
   EXPECT_EQ(static_cast<std::uint32_t>(LdpLabelDistCtrl::independentCtrl), 1u);
   EXPECT_EQ(static_cast<std::uint32_t>(LdpLabelAdvDspl::unknownAdvDspl), 3u);
   EXPECT_EQ(static_cast<std::uint32_t>(LdpLabelRetention::conservativeRetention), 1u);
   EXPECT_EQ(static_cast<std::uint32_t>(LdpRunningState::ldpStopping), 2u);
   EXPECT_EQ(static_cast<std::uint32_t>(LdpIgpSyncMode::useGlobal), 3u);
   static_assert(sizeof(LdpLabelAdvDspl) == 4);
   EXPECT_EQ(stringValue(LdpIgpSyncMode::off), "off");
   EXPECT_EQ(stringValue(static_cast<LdpLabelAdvDspl>(0)), "0"); // no member 0
   EXPECT_EQ(Zon::strepToValue<LdpRunningState>("ldpRunning"), LdpRunningState::ldpRunning);
   EXPECT_NE(Zon::enumInfo("Ldp::LdpLabelRetention"), nullptr);
}

TEST(LdpConfig, ConfigNotifiesOnlyRealChangesWithKeys) {
   auto coll = Zon::makePtr<LdpConfigColl>("configColl");
   auto c = coll->configIs("red");
   Zon::AttrRecorder r(c.ptr());
   c->helloIntervalIs(5); // the current value: nobody hears
   c->enabledIs(false);
   EXPECT_TRUE(r.records().empty());
   c->helloIntervalIs(7);
   auto const peer = Vorin::IpGenAddr::fromString("10.0.0.9");
   c->newStaticTarget(peer, true);
   c->staticTargetIs(peer, true);
   c->staticTargetDel(peer);
   LdpIdentifier const id(Vorin::IpAddr(1, 1, 1, 1), 0);
   c->ldpNeighborClearRequestIs(id, 12.5);
   c->ldpNeighborClearRequestIs(id, 12.5);
   c->ldpNeighborClearRequestIs(id, 13.0);
   EXPECT_EQ(c->ldpNeighborClearRequest(id).value(), 13.0);
   auto intf = c->intfConfigCollIs("eth0");
   EXPECT_EQ(intf->igpSync(), LdpIgpSyncMode::useGlobal);
   EXPECT_EQ(c->intfConfigCollIs("eth0"), intf);
   auto const prefix = Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.1.0.0/16"));
   auto binding = c->staticFecBindingCollIs(prefix);
   EXPECT_EQ(binding->name(), "10.1.0.0/16");
   EXPECT_EQ(binding->fwdEqvClass(), prefix);
   EXPECT_EQ(r.take(), (Records{"helloInterval", "staticTarget[10.0.0.9]", "staticTarget[10.0.0.9]",
                                "ldpNeighborClearRequest[1.1.1.1:0]", "ldpNeighborClearRequest[1.1.1.1:0]",
                                "intfConfigColl[eth0]", "staticFecBindingColl[10.1.0.0/16]"}));
}

TEST(LdpConfig, ServiceAclMapIsCreatedByName) {
   auto c = Zon::makePtr<LdpConfigColl>("cc")->configIs("red");
   Zon::AttrRecorder r(c.ptr());
   auto m = c->serviceAclTypeVrfMapIs("ldp-acl");
   EXPECT_EQ(m->name(), "ldp-acl");
   EXPECT_EQ(c->serviceAclTypeVrfMapIs("ldp-acl"), m);
   c->serviceAclTypeVrfMapDel();
   EXPECT_FALSE(c->serviceAclTypeVrfMap());
   EXPECT_EQ(m->parent(), nullptr);
   EXPECT_EQ(r.take(), (Records{"serviceAclTypeVrfMap", "serviceAclTypeVrfMap"}));
}

TEST(LdpConfig, VrfNameOfMoreThan100BytesIsRefusedAndCreatesNothing) {
   EXPECT_EQ(L3::VrfName(std::string(100, 'v')).bytes(), 100u);
   auto coll = Zon::makePtr<LdpConfigColl>("configColl");
   Zon::AttrRecorder r(coll.ptr());
   try {
      coll->configIs(std::string(101, 'v'));
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "VrfName::bytes > 100 not allowed");
   }
   EXPECT_EQ(coll->configs(), 0u);
   EXPECT_TRUE(r.records().empty());
   EXPECT_THROW(Zon::makePtr<LdpProtoConfigColl>("p")->protoConfigIs(std::string(101, 'v')), Zon::RangeException);
}

TEST(LdpConfig, HandleInitializedCreatesTheDefaultVrfOnce) {
   auto coll = Zon::makePtr<LdpConfigColl>("configColl");
   struct Recorder : LdpConfigColl::Notifiee {
      Strings seen;
      void onConfig(L3::VrfName const & k) override { seen.push_back("config:" + k.stdString()); }
      void onInitialized() override {
         // The default VRF already exists when initialized is told.
         seen.push_back(std::string("initialized:") + (notifier()->config("default") ? "with" : "without"));
      }
   } r;
   r.notifierIs(coll.ptr());
   EXPECT_FALSE(coll->initialized());
   coll->handleInitialized();
   EXPECT_TRUE(coll->initialized());
   ASSERT_EQ(coll->configs(), 1u);
   Zon::Ptr<Config> c = coll->config("default");
   ASSERT_TRUE(c);
   EXPECT_EQ(c->helloInterval(), 5);
   EXPECT_EQ(c->references(), 2u); // the collection's and ours: the returned one was released
   coll->handleInitialized();
   EXPECT_EQ(coll->configs(), 1u);
   EXPECT_EQ(coll->config("default"), c);
   EXPECT_EQ(r.seen, (Strings{"config:default", "initialized:with"}));
   // Creating the VRF's configuration again returns it, settings kept.
   c->helloIntervalIs(7);
   EXPECT_EQ(coll->newConfig("default"), c);
   EXPECT_EQ(c->helloInterval(), 7);
}

TEST(LdpConfig, HandleInitializedKeepsOtherVrfs) {
   auto coll = Zon::makePtr<LdpConfigColl>("configColl");
   auto red = coll->configIs("red");
   coll->handleInitialized();
   EXPECT_EQ(coll->configs(), 2u);
   EXPECT_EQ(coll->config("red"), red);
}

TEST(LdpConfig, DeletingAProtoConfigDropsWhatItOwns) {
   auto coll = Zon::makePtr<LdpProtoConfigColl>("protoConfigColl");
   auto p = coll->protoConfigIs("red");
   auto filter = p->fecFilterIs("filter");
   auto param = p->ldpProtoParamIs("param");
   EXPECT_EQ(filter->parent(), p.ptr());
   EXPECT_EQ(p->fecFilterIs("filter"), filter);
   p = nullptr;
   coll->protoConfigDel("red");
   EXPECT_EQ(coll->protoConfigs(), 0u);
   EXPECT_EQ(filter->references(), 1u); // only ours is left
   EXPECT_EQ(filter->parent(), nullptr);
   EXPECT_EQ(param->parent(), nullptr);
}

TEST(LdpProtoParam, SwitchesAndConstants) {
   auto coll = Zon::makePtr<LdpProtoConfigColl>("c");
   auto p = coll->protoConfigIs("default");
   p->ldpProtoParamIs("param");
   // Read the way the parsers read it.
   Zon::Ptr<LdpProtoParam const> param = p->ldpProtoParam();
   expectAttrs(*param, {
                          {"tlvIpTransportAddrIncude", "True"},
                          {"tlvIpTransportUnknownBit", "False"},
                          {"tlvConfigSeqNumInclude", "True"},
                          {"tlvConfigSeqNumUnknownBit", "False"},
                          {"fecTlvStrictPrefixWildcardOnlyElement", "True"},
                          {"ldpUdpPort", "646"},
                          {"ldpTcpPort", "646"},
                          {"ldpPktBufferSize", "9600"},
                          {"ldpProtocolVersion", "1"},
                          {"defaultMaxPduLength", "4096"},
                          {"msgTypeIgnoreBegin", "32768"},
                          {"tlvTypeIgnoreBegin", "32768"},
                          {"infiniteHelloHoldTime", "65535"},
                          {"ldpNewAdjHelloWaitTime", "0.1"},
                          {"ldpNewSessionWaitTime", "0.5"},
                          {"defaultBasicHelloInterval", "5"},
                          {"defaultBasicHelloHoldTime", "15"},
                          {"defaultTargetHelloInterval", "15"},
                          {"defaultTargetHelloHoldTime", "45"},
                          {"defaultSessionKeepAliveTime", "30"},
                          {"defaultRetryBackoffTime", "15.0"},
                          {"defaultMaxRetryBackoffTime", "120.0"},
                          {"ldpNonFatalSessionRetryTime", "10.0"},
                          {"ldpImmediateHelloWaitTime", "0.1"},
                          {"ldpIpTos", "192"},
                          {"ldpIpChangeSessionRetryTime", "2.0"},
                          {"ldpIdChangeSessionRetryTime", "2.0"},
                          {"ldpTcpConnExponentialBackoffRetries", "5"},
                          {"ldpMaxStartListenerRetries", "5"},
                          {"serviceName", "'ldp'"},
                       });
   Zon::AttrRecorder r(param.ptr());
   p->ldpProtoParam()->tlvConfigSeqNumIncludeIs(false);
   p->ldpProtoParam()->tlvConfigSeqNumIncludeIs(false);
   EXPECT_FALSE(param->tlvConfigSeqNumInclude());
   EXPECT_EQ(r.take(), Records{"tlvConfigSeqNumInclude"});
   // The constants are compile-time numbers, usable in constant expressions.
   static_assert(LdpProtoParam::ldpUdpPort == 646 && LdpProtoParam::defaultMaxPduLength == 4096);
}

TEST(LdpProtoParamSetting, BitViewsSetAndClearOnlyTheirBit) {
   static_assert(LdpProtoParamSetting::bitAnvlTestCompatible == 0);
   static_assert(LdpProtoParamSetting::bitAnvlTestAdvDsplForce == 2);
   static_assert(LdpProtoParamSetting::bitAnvlTestAllFecs == 3);
   static_assert(LdpProtoParamSetting::bitEdgeRouterRole == 8);
   static_assert(LdpProtoParamSetting::bitPwStatusMethodLabelWithdraw == 9);
   LdpProtoParamSetting s;
   s.anvlTestAllFecsIs(true);
   EXPECT_EQ(s.value(), 8u);
   s.edgeRouterRoleIs(true);
   EXPECT_EQ(s.value(), 264u);
   s.anvlTestAllFecsIs(false);
   EXPECT_EQ(s.value(), 256u);
   EXPECT_TRUE(s.edgeRouterRole());
   EXPECT_FALSE(s.anvlTestAllFecs());
   // Unassigned bits (1, 4 to 7, 10 to 63) are kept.
   LdpProtoParamSetting t(0x80000000000000f2u);
   t.anvlTestCompatibleIs(true);
   t.pwStatusMethodLabelWithdrawIs(true);
   t.anvlTestAdvDsplForceIs(false);
   EXPECT_EQ(t.value(), 0x80000000000002f3u);
   EXPECT_TRUE(t.anvlTestCompatible() && t.pwStatusMethodLabelWithdraw() && !t.anvlTestAdvDsplForce());
   EXPECT_EQ(LdpProtoParamSetting(264).stringValue(), "Value('Ldp::LdpProtoParamSetting', ** {'value': 264})");
}

TEST(LdpProtoParamSetting, ConfigNotifiesOnAnyBit) {
   auto c = Zon::makePtr<LdpConfigColl>("cc")->configIs("red");
   Zon::AttrRecorder r(c.ptr());
   LdpProtoParamSetting s = c->ldpProtoParamSetting();
   c->ldpProtoParamSettingIs(s);
   s.edgeRouterRoleIs(true);
   c->ldpProtoParamSettingIs(s);
   EXPECT_EQ(r.take(), Records{"ldpProtoParamSetting"});
   EXPECT_TRUE(c->ldpProtoParamSetting().edgeRouterRole());
}

TEST(LdpFecBindingInfo, TextFormAndParse) {
   LdpFecBindingInfo none;
   EXPECT_EQ(none.inputLabel().value(), 1048576u);
   EXPECT_EQ(none.outputLabel().value(), 1048576u);
   EXPECT_EQ(none.stringValue(),
             "Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': 1048576, 'outputLabel': 1048576, "
             "'nexthopIntfIp': 0.0.0.0})");
   LdpFecBindingInfo const b(Vorin::MplsLabel(16), Vorin::MplsLabel(1048577),
                             Vorin::IpGenAddr::fromString("2001:db8::1"));
   EXPECT_EQ(b.stringValue(),
             "Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': 16, 'outputLabel': 1048577, "
             "'nexthopIntfIp': 2001:db8::1})");
   EXPECT_EQ(LdpFecBindingInfo::fromString(b.stringValue()), b);
   EXPECT_EQ(LdpFecBindingInfo::fromString(none.stringValue()), none);
   // Every field counts in equality.
   LdpFecBindingInfo c = b;
   c.nexthopIntfIpIs(Vorin::IpGenAddr::fromString("2001:db8::2"));
   EXPECT_NE(c, b);
   c = b;
   c.outputLabelIs(Vorin::MplsLabel(17));
   EXPECT_NE(c, b);
}

TEST(LdpFecBindingInfo, ParseFailures) {
   char const * mismatches[] = {
       "Value('Ldp::LdpFecBindingInfo', ** {'outputLabel': 1, 'inputLabel': 1, 'nexthopIntfIp': 0.0.0.0})",
       "Value('Ldp::LdpFecBinding', ** {'inputLabel': 1, 'outputLabel': 1, 'nexthopIntfIp': 0.0.0.0})",
       "Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': 1, 'outputLabel': 1})",
       "Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': 1, 'outputLabel': 1, 'nexthopIntfIp': 0.0.0})",
       "Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': x, 'outputLabel': 1, 'nexthopIntfIp': 0.0.0.0})",
   };
   for (char const * text : mismatches) {
      EXPECT_THROW(LdpFecBindingInfo::fromString(text), Zon::ParseException) << text;
   }
   for (char const * label : {"1048578", "-1", "4294967296"}) {
      std::string text = std::string("Value('Ldp::LdpFecBindingInfo', ** {'inputLabel': 3, 'outputLabel': ") +
                         label + ", 'nexthopIntfIp': 0.0.0.0})";
      try {
         LdpFecBindingInfo::fromString(text);
         ADD_FAILURE() << label << ": no exception";
      } catch (Zon::RangeException const & e) {
         EXPECT_STREQ(e.what(), "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed");
      }
   }
}

TEST(LdpStaticFecBindingEntry, SetterIgnoresTheSameBinding) {
   auto c = Zon::makePtr<LdpConfigColl>("cc")->configIs("red");
   auto e = c->newStaticFecBindingColl(Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.0.0.0/8")));
   Zon::AttrRecorder r(e.ptr());
   e->fecBindingInfoIs(LdpFecBindingInfo());
   e->fecBindingInfoIs(LdpFecBindingInfo(Vorin::MplsLabel(20), Vorin::MplsLabel(30), Vorin::IpGenAddr()));
   e->fecBindingInfoIs(LdpFecBindingInfo(Vorin::MplsLabel(20), Vorin::MplsLabel(30), Vorin::IpGenAddr()));
   EXPECT_EQ(r.take(), Records{"fecBindingInfo"});
}

TEST(LdpStatistics, CountersWrapAndNotifyOnlyOnChange) {
   auto s = Zon::makePtr<Statistics>("stats");
   Zon::AttrRecorder r(s.ptr());
   EXPECT_EQ(s->messageIdInc(0), 0u);
   EXPECT_EQ(s->fecCountFilteredDec(0), 0u);
   EXPECT_TRUE(r.records().empty());
   s->messageIdIs(4294967295u);
   EXPECT_EQ(s->messageIdInc(1), 0u);
   EXPECT_EQ(s->fecCountUnfilteredInc(3), 3u);
   EXPECT_EQ(s->fecCountUnfilteredDec(5), 4294967294u);
   EXPECT_EQ(s->fecCountFilteredInc(2), 2u);
   EXPECT_EQ(r.take(), (Records{"messageId", "messageId", "fecCountUnfiltered", "fecCountUnfiltered",
                                "fecCountFiltered"}));
}

TEST(LdpConfigCollections, EnabledVrfsAndPwTargets) {
   auto vrfs = Zon::makePtr<LdpEnabledVrfColl>("vrfs");
   vrfs->newEnabledVrf("red", true);
   vrfs->enabledVrfIs("blue", false);
   EXPECT_TRUE(vrfs->enabledVrf("red"));
   EXPECT_FALSE(vrfs->enabledVrf("blue"));
   EXPECT_EQ(vrfs->enabledVrfs(), 2u);
   vrfs->enabledVrfDelAll();
   EXPECT_EQ(vrfs->enabledVrfs(), 0u);
   auto targets = Zon::makePtr<PwTargetConfigColl>("targets");
   auto const a = Vorin::IpGenAddr::fromString("192.0.2.1");
   targets->pwTargetIs(a, true);
   targets->pwTargetDel(a);
   EXPECT_EQ(targets->pwTargets(), 0u);
}

} // namespace
