#include "FuzzTouch.h"

#include "ldp/common/LdpUtils.h"

namespace FuzzTouch {

namespace {
volatile std::uint64_t sink;
}

void keep(std::uint64_t v) noexcept { sink = sink + v; }
void keep(std::string const & s) noexcept { keep(s.size() + (s.empty() ? 0 : std::uint8_t(s.back()))); }

void pdu(Ldp::LdpPduParser const & p) {
   keep(p.validLdpPdu());
   keep(static_cast<std::uint64_t>(p.statusCode()));
   keep(p.reason());
   keep(p.version() + p.length() + p.totalLength());
   keep(p.ldpIdentifier().lsrId().value());
   keep(p.messageNum());
   for (std::uint32_t i = 0; i < p.messageNum(); ++i) {
      keep(p.messageOffset(i));
   }
   keep(p.stringValue());
}

void message(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   auto m = Ldp::ldpMsgParserGet(pkt, offset);
   keep(m->validMsg());
   keep(static_cast<std::uint64_t>(m->statusCode()));
   keep(m->reason());
   keep(m->stringValue());
   if (auto const * h = m->msgHdr()) {
      keep(h->msgId() + h->length() + static_cast<std::uint64_t>(h->type()));
   }
}

} // namespace FuzzTouch
