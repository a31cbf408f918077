// Fuzz harness of the receive path: the bytes are a TCP stream's worth of PDUs.
// Every PDU is parsed, every message handed to ldpMsgParserGet and to the factory
// of its own class, and every accessor and text form is read.
#include <cstddef>
#include <cstdint>

#include "FuzzTouch.h"
#include "ldp/parser/LdpPduParser.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   auto pkt = Vorin::Pkt::fromBytes({data, size});
   std::uint32_t offset = 0;
   while (offset < size) {
      auto pdu = Ldp::ldpPduParserFactory(pkt, offset);
      FuzzTouch::pdu(*pdu);
      if (!pdu->validLdpPdu()) {
         break;
      }
      for (std::uint32_t i = 0; i < pdu->messageNum(); ++i) {
         FuzzTouch::message(pkt, pdu->messageOffset(i));
      }
      offset += pdu->totalLength();
   }
   return 0;
}
