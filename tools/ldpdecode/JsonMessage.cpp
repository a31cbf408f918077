#include "JsonMessage.h"

#include "ldp/parser/LdpCapabilityParser.h"
#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpPktReader.h"
#include "ldp/wire/LdpFecElement.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"
#include "zon/Enum.h"

namespace LdpDecode {

using Ldp::LdpTlvType;

namespace {

// The library's name of an enumerator, or null for a value without one.
template <typename E>
void writeName(JsonWriter & w, std::string_view key, E v, bool known) {
   w.key(key);
   if (known) {
      w.plainValue(std::string_view(Zon::valueToStrep(v)));
   } else {
      w.null();
   }
}

void writeAddress(JsonWriter & w, Vorin::IpGenAddr const & a) {
   w.plainValue(std::string_view(a.stringValue()));
}

void writePwParams(JsonWriter & w, Ldp::PwFwdEqvClassParams const & p) {
   w.object("params");
   w.field("mtu", p.mtu());
   w.field("intfDescription", std::string_view(p.intfDescription()));
   w.field("requestedVlanId", p.requestedVlanId().value());
   w.field("fragCapable", p.fragCapable());
   w.field("vccvCcTypes", p.vccvCcTypes());
   w.field("vccvCvTypes", p.vccvCvTypes());
   w.endObject();
}

void writeFecElement(JsonWriter & w, Ldp::LdpFecTlvElement const & e) {
   using Ldp::LdpFecElementType;
   w.beginObject();
   LdpFecElementType const type = e.type();
   w.plainField("type", std::string_view(Zon::valueToStrep(type)));
   w.field("typeCode", static_cast<unsigned>(type));
   switch (type) {
    case LdpFecElementType::prefixElement:
    case LdpFecElementType::hostAddrElement: {
      Vorin::IpGenPrefix const & p = e.fwdEqvCls().prefix();
      w.field("family", static_cast<unsigned>(p.af()));
      if (type == LdpFecElementType::prefixElement) {
         w.plainField("prefix", std::string_view(p.stringValue()));
         w.field("prefixLength", p.length());
      } else {
         w.key("hostAddr");
         writeAddress(w, p.address());
      }
      break;
    }
    case LdpFecElementType::pwIdElement: {
      Ldp::PwFwdEqvClassInfo const & pw = e.pwFwdEqvCls();
      w.plainField("pwType", std::string_view(Zon::valueToStrep(pw.pwType())));
      w.field("pwTypeCode", static_cast<unsigned>(pw.pwType()));
      w.field("controlWord", pw.controlWord());
      w.field("groupId", pw.groupId().value());
      w.field("pwId", pw.pwId().value());
      writePwParams(w, pw.params());
      break;
    }
    default:
      break;
   }
   w.endObject();
}

// The FEC TLV's elements as its parser kept them, and the parser's fault.
void writeFec(JsonWriter & w, Ldp::LdpFecTlvParser const & fec) {
   w.array("elements");
   for (std::uint32_t i = 0; i < fec.fecElementNum(); ++i) {
      if (auto const e = fec.fecElement(i)) {
         writeFecElement(w, *e);
      }
   }
   w.endArray();
   if (!fec.valid()) {
      w.object("fault");
      writeStatusCode(w, fec.statusCode());
      w.field("reason", std::string_view(fec.reason()));
      w.endObject();
   }
}

void writeStatusTlv(JsonWriter & w, Ldp::LdpStatusTlv const & t) {
   writeStatusCode(w, t.statusData());
   w.field("statusError", t.statusError());
   w.field("statusForwardUnknown", t.statusForwardUnknown());
   w.field("msgId", t.msgId());
   auto const type = static_cast<std::uint16_t>(t.msgType());
   writeName(w, "msgType", t.msgType(), Ldp::isKnownMsgType(type));
   w.field("msgTypeCode", type);
}

void writeSessionParams(JsonWriter & w, Ldp::LdpCommonSessionParamTlv const & t) {
   w.field("protocolVersion", t.protocolVersion());
   w.field("keepAliveTime", t.keepAliveTime());
   w.field("advDiscipline", t.advDiscipline());
   w.field("loopDetect", t.loopDetect());
   w.field("pathVecLim", t.pathVecLim());
   w.field("maxPduLength", t.maxPduLength());
   w.plainField("recvLdpIdentifier", std::string_view(t.recvLdpIdentifier().stringValue()));
}

void writeAddressList(JsonWriter & w, Ldp::LdpAddressListTlv const & t) {
   w.field("family", t.family());
   w.array("addresses");
   for (unsigned i = 0, n = t.numAddress(); i < n; ++i) {
      writeAddress(w, t.address(i));
   }
   w.endArray();
}

void writePathVector(JsonWriter & w, Ldp::LdpPathVectorTlv const & t) {
   w.array("lsrIds");
   for (unsigned i = 0, n = t.lsrIdNum(); i < n; ++i) {
      w.plainValue(std::string_view(t.lsrId(i).stringValue()));
   }
   w.endArray();
}

class TlvFields {
 public:
   TlvFields(JsonWriter & w, Ldp::LdpPktReader const & reader, std::uint32_t offset, std::uint32_t bytes)
       : w_(w), reader_(reader), offset_(offset), bytes_(bytes) {}

   // The TLV seen as T when it was received whole and its length is the one T
   // requires; null otherwise (its fields are then not written).
   template <typename T>
   T const * fixed() const noexcept {
      T const * t = reader_.view<T>(offset_, bytes_);
      return t && t->length() == T::requiredLength ? t : nullptr;
   }
   // A variable-length TLV received whole.
   template <typename T>
   T const * whole() const noexcept {
      return reader_.view<T>(offset_, bytes_);
   }

   void write(LdpTlvType type, Ldp::LdpMsgParser const & msg) {
      switch (type) {
       case LdpTlvType::commonHelloTlv:
         if (auto const * t = fixed<Ldp::LdpCommonHelloTlv>()) {
            w_.field("holdTime", t->holdTime());
            w_.field("targetedHello", t->targetedHello());
            w_.field("requestSendTargetedHello", t->requestSendTargetedHello());
         }
         break;
       case LdpTlvType::ipv4TransportAddrTlv:
         if (auto const * t = fixed<Ldp::LdpIpTransportAddrTlv>()) {
            w_.plainField("ipAddr", std::string_view(t->ipAddr().stringValue()));
         }
         break;
       case LdpTlvType::ipv6TransportAddrTlv:
         if (auto const * t = fixed<Ldp::LdpIp6TransportAddrTlv>()) {
            w_.plainField("ip6Addr", std::string_view(t->ip6Addr().stringValue()));
         }
         break;
       case LdpTlvType::configSeqNumTlv:
         if (auto const * t = fixed<Ldp::LdpConfigSeqNumTlv>()) {
            w_.field("configSeqNum", t->configSeqNum());
         }
         break;
       case LdpTlvType::commonSessionParamTlv:
         if (auto const * t = fixed<Ldp::LdpCommonSessionParamTlv>()) {
            writeSessionParams(w_, *t);
         }
         break;
       case LdpTlvType::statusTlv:
         if (auto const * t = fixed<Ldp::LdpStatusTlv>()) {
            writeStatusTlv(w_, *t);
         }
         break;
       case LdpTlvType::genLabelTlv:
         if (auto const * t = fixed<Ldp::LdpGenLabelTlv>()) {
            w_.field("label", t->label().value());
         }
         break;
       case LdpTlvType::labelReqMsgIdTlv:
         if (auto const * t = fixed<Ldp::LdpLabelReqMsgIdTlv>()) {
            w_.field("reqMsgId", t->reqMsgId());
         }
         break;
       case LdpTlvType::hopCountTlv:
         if (auto const * t = fixed<Ldp::LdpHopCountTlv>()) {
            w_.field("hopCount", t->hopCount());
         }
         break;
       case LdpTlvType::pathVectorTlv:
         if (auto const * t = whole<Ldp::LdpPathVectorTlv>()) {
            writePathVector(w_, *t);
         }
         break;
       case LdpTlvType::addrListTlv:
         if (auto const * t = whole<Ldp::LdpAddressListTlv>(); t && t->validate() == Ldp::LdpStatusCode::success) {
            writeAddressList(w_, *t);
         }
         break;
       case LdpTlvType::pwStatusTlv:
         if (auto const * t = fixed<Ldp::LdpPwStatusTlv>()) {
            w_.field("pwStatus", t->status());
         }
         break;
       case LdpTlvType::fecTlv:
         if (msg.ldpFecTlvParser() && msg.ldpFecTlvParser()->offset() == offset_) {
            writeFec(w_, *msg.ldpFecTlvParser());
         }
         break;
       default: {
         auto const code = static_cast<std::uint16_t>(type);
         if (code >= Ldp::LdpCapabilityParser::firstCapabilityType &&
             code <= Ldp::LdpCapabilityParser::lastCapabilityType) {
            auto const * t = whole<Ldp::LdpCapabilityParameterTlv>();
            if (t && t->length() >= Ldp::LdpCapabilityParameterTlv::minLength) {
               w_.field("state", t->state());
            }
         }
         break;
       }
      }
   }

 private:
   JsonWriter & w_;
   Ldp::LdpPktReader const & reader_;
   std::uint32_t offset_;
   std::uint32_t bytes_;
};

} // namespace

void writeStatusCode(JsonWriter & w, Ldp::LdpStatusCode code) {
   w.field("statusCode", static_cast<std::uint32_t>(code));
   w.plainField("status", std::string_view(Zon::valueToStrep(code)));
}

void writeMessageTlvs(JsonWriter & w, Ldp::LdpMsgParser const & msg) {
   auto const & group = msg.tlvGroupParser();
   if (!group) {
      return;
   }
   Ldp::LdpPktReader const reader(*msg.pkt());
   w.array("tlvs");
   for (auto const & entry : group->tlvOffsets()) {
      std::uint32_t const offset = entry.offset;
      auto const * h = reader.view<Ldp::LdpTlvHdr>(offset);
      if (!h) {
         continue;
      }
      auto const type = h->type();
      auto const code = static_cast<std::uint16_t>(type);
      w.beginObject();
      w.field("offset", offset - msg.offset());
      writeName(w, "type", type, Ldp::isKnownTlvType(code));
      w.field("typeCode", code);
      w.field("uBit", h->unknown());
      w.field("fBit", h->forwardUnknown());
      w.field("length", h->length());
      TlvFields(w, reader, offset, std::uint32_t(h->length()) + Ldp::LdpTlvHdr::tlvHdrSizeExclude).write(type, msg);
      w.endObject();
   }
   w.endArray();
}

} // namespace LdpDecode
