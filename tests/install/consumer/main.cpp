// Uses the installed headers and libraries: lays a PDU header over bytes and
// checks its text form.
#include <cstdio>
#include <cstring>

#include "ldp/wire/LdpHdr.h"

int main() {
   unsigned char const bytes[] = {0x00, 0x01, 0x00, 0x1e, 0x0a, 0x00, 0x00, 0x01, 0x00, 0x00};
   Ldp::LdpPduHdr hdr;
   std::memcpy(&hdr, bytes, sizeof hdr);
   std::string text = hdr.stringValue();
   std::printf("%s\n", text.c_str());
   return text == "LdpPduHdr: Ver(1),Len(30),LdpId: 10.0.0.1:0" ? 0 : 1;
}
