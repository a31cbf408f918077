#include "FuzzTouch.h"

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "ldp/wire/LdpPwHdr.h"

namespace FuzzTouch {

namespace {

using namespace Ldp;

volatile std::uint64_t sink;

template <typename T>
void tlv(T const * t) {
   if (t) {
      keep(static_cast<std::uint64_t>(t->validate()));
      keep(t->stringValue());
   }
}

void base(LdpMsgParser const & m) {
   keep(m.validMsg());
   keep(m.headerStepValid());
   keep(static_cast<std::uint64_t>(m.statusCode()));
   keep(m.reason());
   keep(m.stringValue());
   keep(std::string(m.fwkType()));
   if (auto const * h = m.msgHdr()) {
      keep(h->msgId() + h->length() + static_cast<std::uint64_t>(h->type()) + h->unknown());
   }
   tlv(m.msgStatusTlv());
   if (m.msgFecTlv()) {
      keep(m.msgFecTlv()->length());
   }
   if (m.ldpFecTlvParser()) {
      fec(*m.ldpFecTlvParser());
   }
}

void capabilities(LdpCapabilityParser const & m) {
   keep(m.capabilitiesNum());
   for (auto const & e : m.capabilities()) {
      keep(static_cast<std::uint64_t>(e.type));
      tlv(e.tlv);
   }
}

void own(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset, LdpMsgType type) {
   switch (type) {
    case LdpMsgType::LdpHello: {
      auto m = ldpHelloMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgCommonHelloTlv());
      tlv(m->msgIpTransportTlv());
      tlv(m->msgIp6TransportTlv());
      tlv(m->msgConfigSeqTlv());
      break;
    }
    case LdpMsgType::LdpInit: {
      auto m = ldpInitMsgParserFactory(pkt, offset);
      base(*m);
      capabilities(*m);
      tlv(m->msgSessionParamTlv());
      break;
    }
    case LdpMsgType::LdpCapability: {
      auto m = ldpCapabilityMsgParserFactory(pkt, offset);
      base(*m);
      capabilities(*m);
      break;
    }
    case LdpMsgType::LdpAddress:
    case LdpMsgType::LdpAddressWithdraw: {
      Zon::Ptr<LdpAddressListMsgParser> m;
      if (type == LdpMsgType::LdpAddress) {
         m = ldpAddressMsgParserFactory(pkt, offset);
      } else {
         m = ldpAddressWithdrawMsgParserFactory(pkt, offset);
      }
      base(*m);
      if (auto const & list = m->addressListTlv()) {
         keep(static_cast<std::uint64_t>(list->validate()) + list->family());
         keep(list->stringValue());
         for (unsigned i = 0; i < list->numAddress(); ++i) {
            keep(list->address(i).bytes()[0]);
         }
      }
      break;
    }
    case LdpMsgType::LdpLabelMapping: {
      auto m = ldpLabelMappingMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgGenLabelTlv());
      tlv(m->msgReqMsgIdTlv());
      tlv(m->msgHopCountTlv());
      tlv(m->msgPathVectorTlv());
      tlv(m->msgPwStatusTlv());
      if (auto const * pv = m->msgPathVectorTlv()) {
         for (unsigned i = 0; i < pv->lsrIdNum(); ++i) {
            keep(pv->lsrId(i).value());
         }
      }
      break;
    }
    case LdpMsgType::LdpLabelRequest: {
      auto m = ldpLabelRequestMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgHopCountTlv());
      tlv(m->msgPathVectorTlv());
      break;
    }
    case LdpMsgType::LdpLabelWithdraw: {
      auto m = ldpLabelWithdrawMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgGenLabelTlv());
      break;
    }
    case LdpMsgType::LdpLabelRelease: {
      auto m = ldpLabelReleaseMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgGenLabelTlv());
      break;
    }
    case LdpMsgType::LdpLabelAbortReq: {
      auto m = ldpLabelAbortReqMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgReqMsgIdTlv());
      break;
    }
    case LdpMsgType::LdpNotification: {
      auto m = ldpNotificationMsgParserFactory(pkt, offset);
      base(*m);
      tlv(m->msgPwStatusTlv());
      break;
    }
    default: break;
   }
}

} // namespace

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

void fec(Ldp::LdpFecTlvParser const & p) {
   keep(p.valid() + p.hasWildcardFecElement() + p.initialized());
   keep(static_cast<std::uint64_t>(p.statusCode()));
   keep(p.reason());
   keep(p.stringValue());
   for (std::uint32_t i = 0; i < p.fecElementNum(); ++i) {
      auto e = p.fecElement(i);
      if (!e) {
         continue;
      }
      keep(e->stringValue());
      if (e->type() == LdpFecElementType::pwIdElement) {
         keep(e->pwFwdEqvCls().stringValue());
      } else {
         keep(e->fwdEqvCls().stringValue());
      }
   }
}

void message(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   auto m = Ldp::ldpMsgParserGet(pkt, offset);
   base(*m);
   // The parser of the message's own class too, also for the types that
   // ldpMsgParserGet leaves to the base parser (Capability); only a message
   // whose shared checks passed may be handed to it.
   if (m->headerStepValid() && m->msgHdr()) {
      own(pkt, offset, m->msgHdr()->type());
   }
}

} // namespace FuzzTouch
