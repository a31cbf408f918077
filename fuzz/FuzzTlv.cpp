// Fuzz harness of TLV validation: the bytes are one TLV. The untyped parser reads
// the header; the typed parser of the TLV's own type validates and prints it and
// reads every accessor (a typed parser is only ever applied to its own type).
#include <cstddef>
#include <cstdint>

#include "FuzzTouch.h"
#include "ldp/parser/LdpTlvParser.h"

namespace {

using namespace Ldp;
using FuzzTouch::keep;

template <typename P>
void typed(P const & p) {
   keep(static_cast<std::uint64_t>(p.validate()));
   keep(p.stringValue());
   keep(p.header2() != nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   auto pkt = Vorin::Pkt::fromBytes({data, size});
   auto base = ldpTlvParserFactory(pkt, 0);
   keep(static_cast<std::uint64_t>(base->type()) + base->unknown() + base->forwardUnknown() + base->length());
   if (size < 2) {
      return 0;
   }
   switch (static_cast<LdpTlvType>((data[0] << 8 | data[1]) & 0x3FFF)) {
    case LdpTlvType::commonHelloTlv: {
      auto p = ldpCommonHelloTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->holdTime() + p->targetedHello() + p->requestSendTargetedHello());
      break;
    }
    case LdpTlvType::commonSessionParamTlv: {
      auto p = ldpCommonSessionParamTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->protocolVersion() + p->keepAliveTime() + p->maxPduLength() + p->recvLdpIdentifier().labelSpace());
      break;
    }
    case LdpTlvType::statusTlv: {
      auto p = ldpStatusTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->statusError() + p->statusForwardUnknown() + static_cast<std::uint64_t>(p->statusData()) +
           p->msgId() + static_cast<std::uint64_t>(p->msgType()));
      p->statusErrorIs(1);
      p->statusForwardUnknownIs(0);
      break;
    }
    case LdpTlvType::genLabelTlv: typed(*ldpGenLabelTlvParserFactory(pkt, 0)); break;
    case LdpTlvType::labelReqMsgIdTlv: {
      auto p = ldpLabelReqMsgIdTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->reqMsgId());
      break;
    }
    case LdpTlvType::addrListTlv: {
      auto p = ldpAddressListTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->family());
      for (unsigned i = 0; i < p->numAddress(); ++i) {
         keep(p->address(i).bytes()[0]);
      }
      break;
    }
    case LdpTlvType::ipv4TransportAddrTlv: typed(*ldpIpTransportAddrTlvParserFactory(pkt, 0)); break;
    case LdpTlvType::configSeqNumTlv: {
      auto p = ldpConfigSeqNumTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->configSeqNum());
      break;
    }
    case LdpTlvType::ipv6TransportAddrTlv: typed(*ldpIp6TransportAddrTlvParserFactory(pkt, 0)); break;
    case LdpTlvType::hopCountTlv: typed(*ldpHopCountTlvParserFactory(pkt, 0)); break;
    case LdpTlvType::pathVectorTlv: {
      auto p = ldpPathVectorTlvParserFactory(pkt, 0);
      typed(*p);
      keep(p->lsrIdNum());
      break;
    }
    default: break;
   }
   return 0;
}
