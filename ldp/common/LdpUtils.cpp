#include "ldp/common/LdpUtils.h"

#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "zon/Assert.h"

namespace Ldp {

LdpMsgParser::Ptr ldpMsgParserGet(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   ZON_ASSERT(pkt);
   ZON_ASSERT(pkt->front());
   ZON_ASSERT(pkt->frontBytes());
   LdpMsgParser::Ptr base = ldpMsgParserFactory(pkt, offset);
   if (!base->validMsg() || !base->msgHdr()) {
      return base;
   }
   switch (base->msgHdr()->type()) {
    case LdpMsgType::LdpHello: return ldpHelloMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpInit: return ldpInitMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpAddress: return ldpAddressMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpAddressWithdraw: return ldpAddressWithdrawMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpNotification: return ldpNotificationMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpLabelMapping: return ldpLabelMappingMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpLabelRequest: return ldpLabelRequestMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpLabelWithdraw: return ldpLabelWithdrawMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpLabelRelease: return ldpLabelReleaseMsgParserFactory(pkt, offset);
    case LdpMsgType::LdpLabelAbortReq: return ldpLabelAbortReqMsgParserFactory(pkt, offset);
    default: break; // Keepalive and Capability: the base parser serves them
   }
   return base;
}

} // namespace Ldp
