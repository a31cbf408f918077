// A hand-written base entity for the generated Conn of GenParts.zon: it takes
// constructor arguments beyond the name, as platform base classes do.
#pragma once

#include <cstdint>

#include "vorin/IpAddr.h"
#include "zon/Entity.h"

namespace GenTest {

class ConnBase : public Zon::Entity {
 public:
   Vorin::IpAddr serverAddr() const noexcept { return serverAddr_; }
   std::uint16_t serverPort() const noexcept { return serverPort_; }
   Vorin::IpAddr clientAddr() const noexcept { return clientAddr_; }
   void clientAddrIs(Vorin::IpAddr a) noexcept { clientAddr_ = a; }

 protected:
   ConnBase(Zon::Name name, Vorin::IpAddr server, std::uint16_t port)
       : Zon::Entity(std::move(name)), serverAddr_(server), serverPort_(port) {}
   ~ConnBase() override = default;

 private:
   Vorin::IpAddr serverAddr_;
   std::uint16_t serverPort_;
   Vorin::IpAddr clientAddr_;
};

} // namespace GenTest
