// The platform's generated entities: the TCP client request and the UDP
// endpoint keep the model's conventions (defaults, setters that ignore an
// unchanged value, per-attribute notification), so the model can build on them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vorin/TcpClient.h"
#include "vorin/UdpPam.h"

namespace {

using Strings = std::vector<std::string>;

TEST(TcpClientConfig, ServerIsFixedAndOptionsNotifyOnChange) {
   auto const server = Vorin::IpGenAddr::fromString("192.0.2.1");
   auto c = Zon::makePtr<Vorin::TcpClientConfig>("conn", server, Vorin::Port(179));
   EXPECT_EQ(c->name(), "conn");
   EXPECT_EQ(c->serverIpAddr(), server);
   EXPECT_EQ(c->serverPort().value(), 179);
   EXPECT_TRUE(c->clientIpAddr().isUnspecified());
   EXPECT_EQ(c->ttl().value(), 64);
   EXPECT_EQ(c->md5Password(), "");
   EXPECT_EQ(c->retryLimit(), 0u);
   struct Recorder : Vorin::TcpClientConfig::Notifiee {
      Strings seen;
      void onClientIpAddr() override { seen.push_back("clientIpAddr"); }
      void onTtl() override { seen.push_back("ttl"); }
      void onMd5Password() override { seen.push_back("md5Password"); }
      void onRetryLimit() override { seen.push_back("retryLimit"); }
   } r;
   r.notifierIs(c.ptr());
   c->ttlIs(Vorin::IpTtl(64));
   c->md5PasswordIs("");
   c->clientIpAddrIs(Vorin::IpGenAddr::fromString("192.0.2.2"));
   c->ttlIs(Vorin::IpTtl(255));
   c->md5PasswordIs("secret");
   c->retryLimitIs(3);
   c->retryLimitIs(3);
   EXPECT_EQ(r.seen, (Strings{"clientIpAddr", "ttl", "md5Password", "retryLimit"}));
}

TEST(UdpPam, ClosedUntilEnabled) {
   auto pam = Zon::makePtr<Vorin::UdpPam>("hello");
   EXPECT_FALSE(pam->enabled());
   EXPECT_TRUE(pam->ipAddr().isUnspecified());
   EXPECT_EQ(pam->port().value(), 0);
   struct Recorder : Vorin::UdpPam::Notifiee {
      Strings seen;
      void onPort() override { seen.push_back("port"); }
      void onEnabled() override { seen.push_back("enabled"); }
   } r;
   r.notifierIs(pam.ptr(), Vorin::UdpPam::Attr::enabled); // one attribute only
   pam->portIs(Vorin::Port(646));
   pam->enabledIs(false);
   pam->enabledIs(true);
   EXPECT_EQ(r.seen, (Strings{"enabled"}));
}

} // namespace
