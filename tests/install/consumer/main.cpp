// Uses the installed headers and libraries: lays a PDU header over bytes and
// checks its text form, and builds an entity of the generated configuration model
// and reads its defaults, so both the hand-written and the generated headers are
// proven usable.
#include <cstdio>
#include <cstring>
#include <string>

#include "ldp/config/LdpConfig.h"
#include "ldp/wire/LdpHdr.h"

int main() {
   unsigned char const bytes[] = {0x00, 0x01, 0x00, 0x1e, 0x0a, 0x00, 0x00, 0x01, 0x00, 0x00};
   Ldp::LdpPduHdr hdr;
   std::memcpy(&hdr, bytes, sizeof hdr);
   std::string const text = hdr.stringValue();
   std::printf("%s\n", text.c_str());

   auto coll = Zon::makePtr<Ldp::LdpConfigColl>("configColl");
   Zon::Ptr<Ldp::Config> config = coll->configIs("red");
   std::string const vrf = config->vrfName().stringValue();
   std::printf("config %s, enabled %d\n", vrf.c_str(), int(config->enabled()));
   return text == "LdpPduHdr: Ver(1),Len(30),LdpId: 10.0.0.1:0" && vrf == "red" && !config->enabled() ? 0 : 1;
}
