// The platform's generated entities: the TCP client request and the UDP
// endpoint keep the model's conventions (defaults, setters that ignore an
// unchanged value, per-attribute notification), so the model can build on them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ModelTables.h"
#include "vorin/TcpClient.h"
#include "vorin/UdpPam.h"

namespace {

using LdpTest::Records;

TEST(TcpClientConfig, ServerIsFixedAndOptionsNotifyOnChange) {
   auto c = Zon::makePtr<Vorin::TcpClientConfig>("conn", Vorin::IpGenAddr::fromString("192.0.2.1"), Vorin::Port(179));
   EXPECT_EQ(c->name(), "conn");
   LdpTest::expectAttrs(*c, {{"serverIpAddr", "192.0.2.1"}, {"serverPort", "179"}, {"clientIpAddr", "0.0.0.0"},
                             {"ttl", "64"}, {"md5Password", "''"}, {"retryLimit", "0"}});
   Zon::AttrRecorder r(c.ptr());
   c->ttlIs(Vorin::IpTtl(64));
   c->md5PasswordIs("");
   c->clientIpAddrIs(Vorin::IpGenAddr::fromString("192.0.2.2"));
   c->ttlIs(Vorin::IpTtl(255));
   c->md5PasswordIs("secret");
   c->retryLimitIs(3);
   c->retryLimitIs(3);
   EXPECT_EQ(r.take(), (Records{"clientIpAddr", "ttl", "md5Password", "retryLimit"}));
}

TEST(UdpPam, ClosedUntilEnabled) {
   auto pam = Zon::makePtr<Vorin::UdpPam>("hello");
   LdpTest::expectAttrs(*pam, {{"ipAddr", "0.0.0.0"}, {"port", "0"}, {"enabled", "False"}});
   Zon::AttrRecorder r(pam.ptr(), Vorin::UdpPam::Attr::enabled); // one attribute only
   pam->portIs(Vorin::Port(646));
   pam->enabledIs(false);
   pam->enabledIs(true);
   EXPECT_EQ(r.take(), (Records{"enabled"}));
}

} // namespace
