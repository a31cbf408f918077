#include "ldp/parser/LdpMsgParserGet.h"

#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "ldp/parser/LdpPktReader.h"
#include "zon/Assert.h"

namespace Ldp {

LdpMsgParser::Ptr ldpMsgParserGet(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   ZON_ASSERT(pkt);
   ZON_ASSERT(pkt->front());
   ZON_ASSERT(pkt->frontBytes());
   // The parser of the message's own class is built directly: its header step is
   // the base parser's, so a base parser built first would only repeat it. When
   // that step fails, the caller gets a base parser with the fault, as for the
   // types that have no class of their own (Keepalive, Capability) and for
   // unknown types; it takes the outcome over rather than running the step (and
   // tracing its fault) once more.
   LdpMsgParser::Ptr own;
   if (auto const word = LdpPktReader(*pkt).u16(offset)) {
      switch (static_cast<LdpMsgType>(*word & 0x7FFF)) {
       case LdpMsgType::LdpHello: own = ldpHelloMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpInit: own = ldpInitMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpAddress: own = ldpAddressMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpAddressWithdraw: own = ldpAddressWithdrawMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpNotification: own = ldpNotificationMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpLabelMapping: own = ldpLabelMappingMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpLabelRequest: own = ldpLabelRequestMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpLabelWithdraw: own = ldpLabelWithdrawMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpLabelRelease: own = ldpLabelReleaseMsgParserFactory(pkt, offset); break;
       case LdpMsgType::LdpLabelAbortReq: own = ldpLabelAbortReqMsgParserFactory(pkt, offset); break;
       default: break;
      }
   }
   if (!own) {
      return ldpMsgParserFactory(pkt, offset);
   }
   if (own->headerStepValid()) {
      return own;
   }
   return Zon::validPtr(LdpMsgParser::Ptr(new LdpMsgParser(LdpMsgParser::HeaderStepOf(), *own)));
}

} // namespace Ldp
