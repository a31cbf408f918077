#include "ldp/common/LdpUtils.h"

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
   return base;
}

} // namespace Ldp
