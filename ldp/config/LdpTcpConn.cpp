// The TCP connection request's constructor and factory.
#include "ldp/config/LdpTcpConn.h"

#include <new>

namespace Ldp {

// The base gets the server's address and port; enabled and requestTime hold their
// defaults (off, the clock's current time) before the client address is set.
LdpTcpConnConfig::LdpTcpConnConfig(Vorin::IpGenAddr const & serverIpAddr, Vorin::Port const & serverPort,
                                   Vorin::IpGenAddr const & clientIpAddr, LdpIdentifier const & clientId)
    : Vorin::TcpClientConfig(Zon::nameOf(clientId), serverIpAddr, serverPort), clientId_(clientId) {
   clientIpAddrIs(clientIpAddr);
}

Zon::Ptr<LdpTcpConnConfig> ldpTcpConnConfigFactory(Vorin::IpGenAddr const & serverIpAddr,
                                                   Vorin::Port const & serverPort,
                                                   Vorin::IpGenAddr const & clientIpAddr,
                                                   LdpIdentifier const & clientId) {
   return Zon::validPtr(Zon::Ptr<LdpTcpConnConfig>(
       new (std::nothrow) LdpTcpConnConfig(serverIpAddr, serverPort, clientIpAddr, clientId)));
}

} // namespace Ldp
