// The platform's generated entities as the model first sees them: the TCP
// client request (whose server is fixed at construction) and the UDP endpoint.
#include <gtest/gtest.h>

#include "support/ModelTables.h"
#include "vorin/TcpClient.h"
#include "vorin/UdpPam.h"

namespace {

TEST(PlatformEntities, FreshRequestAndEndpoint) {
   auto c = Zon::makePtr<Vorin::TcpClientConfig>("conn", Vorin::IpGenAddr::fromString("192.0.2.1"), Vorin::Port(179));
   EXPECT_EQ(c->name(), "conn");
   LdpTest::expectAttrs(*c, {{"serverIpAddr", "192.0.2.1"}, {"serverPort", "179"}, {"clientIpAddr", "0.0.0.0"},
                             {"ttl", "64"}, {"md5Password", "''"}, {"retryLimit", "0"}});
   LdpTest::expectAttrs(*Zon::makePtr<Vorin::UdpPam>("hello"), {{"ipAddr", "0.0.0.0"}, {"port", "0"}, {"enabled", "False"}});
}

} // namespace
