#include "ldp/wire/LdpTlv.h"

#include <string>

#include "trace/Trace.h"

namespace Ldp {

namespace {

// "Error <name>: " followed by the status code's enumerator name.
Zon::String8 errorText(char const * prefix, LdpStatusCode code) {
   return Zon::String8(std::string(prefix) + stringValue(code));
}

} // namespace

// ---- flag words ------------------------------------------------------------

Zon::String8 LdpCommonHelloTargetField::stringValue() const {
   std::uint8_t const b[2] = {word_.byte(0), word_.byte(1)};
   return wireWordText("Ldp::LdpCommonHelloTargetField", b, 2);
}

Zon::String8 LdpCommonSessionParamTlvAdField::stringValue() const {
   return wireWordText("Ldp::LdpCommonSessionParamTlvAdField", &byte_, 1);
}

Zon::String8 LdpStatusTlvStatusCode::stringValue() const {
   std::uint8_t const b[4] = {word_.byte(0), word_.byte(1), word_.byte(2), word_.byte(3)};
   return wireWordText("Ldp::LdpStatusTlvStatusCode", b, 4);
}

Zon::String8 LdpGenLabelTlvLabel::stringValue() const {
   std::uint8_t const b[4] = {word_.byte(0), word_.byte(1), word_.byte(2), word_.byte(3)};
   return wireWordText("Ldp::LdpGenLabelTlvLabel", b, 4);
}

Zon::String8 LdpStateBit::stringValue() const { return wireWordText("Ldp::LdpStateBit", &byte_, 1); }

// ---- fixed-size TLVs -------------------------------------------------------

Zon::String8 LdpCommonHelloTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpCommonHelloTlv: ", code);
   }
   return Zon::format("CommonHelloTlv: HT(%d),%d,%d", holdTime(), int(targetedHello()),
                      int(requestSendTargetedHello()));
}

Zon::String8 LdpIpTransportAddrTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error IpTransportAddrTlv: ", code);
   }
   return ipAddr_.stringValue();
}

Zon::String8 LdpIp6TransportAddrTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error Ip6TransportAddrTlv: ", code);
   }
   return ip6Addr_.stringValue();
}

Zon::String8 LdpConfigSeqNumTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error ConfigSeqNumTlv: ", code);
   }
   // Printed as a signed 32-bit number, like the other %d fields.
   return Zon::format("ConfigSeqNumTlv: %d", static_cast<int>(configSeqNum()));
}

LdpStatusCode LdpCommonSessionParamTlv::validate() const {
   static Trace::Source & trace = Trace::source("LdpHdr");
   if (auto const hdr = validateTlvHdr(); hdr != LdpStatusCode::success) {
      return hdr;
   }
   if (length() != requiredLength) {
      return LdpStatusCode::badTlvLength;
   }
   if (protocolVersion() != 1) {
      TRACE(trace, 5, "   Rejected. Protocol version is not 1");
      return LdpStatusCode::badVersion;
   }
   if (keepAliveTime() <= keepAliveTimeRejectMax) {
      TRACE(trace, 5, "   Rejected. keepAliveTime is out of range.");
      return LdpStatusCode::sessionRejectBadKeepAliveTime;
   }
   if (maxPduLength() > maxPduLengthLimit) {
      TRACE(trace, 5, "   Rejected. maxPduLength is out of range.");
      return LdpStatusCode::rejectMaxPduLength;
   }
   return LdpStatusCode::success;
}

Zon::String8 LdpCommonSessionParamTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpCommonSessionParamTlv: ", code);
   }
   return Zon::String8(Zon::format("LdpCommonSessionParamTlv: KA(%d), A(%d), D(%d), PduLen(%d), ",
                                   keepAliveTime(), int(advDiscipline()), int(loopDetect()), maxPduLength()) +
                       recvLdpIdentifier_.stringValue());
}

Zon::String8 LdpStatusTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpStatusTlv: ", code);
   }
   return Zon::format("StatusTlv(%s): %s:%u u(%d), fu(%d), e(%d), efu(%d)", Ldp::stringValue(statusData()).c_str(),
                      Ldp::stringValue(msgType()).c_str(), msgId(), int(unknown()), int(forwardUnknown()),
                      int(statusError()), int(statusForwardUnknown()));
}

Zon::String8 LdpGenLabelTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error GenLabelTlv: ", code);
   }
   return Zon::format("GenLabelTlv: L(%u)", static_cast<unsigned>(label().value()));
}

Zon::String8 LdpLabelReqMsgIdTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LabelReqMsgIdTlv: ", code);
   }
   return Zon::format("LabelReqMsgIdTlv: ID(%u)", static_cast<unsigned>(reqMsgId()));
}

Zon::String8 LdpHopCountTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpHopCountTlv: ", code);
   }
   return Zon::format("LdpHopCountTlv: %d", int(hopCount()));
}

// ---- path vector -----------------------------------------------------------

Vorin::IpAddr LdpPathVectorTlv::lsrId(unsigned i) const noexcept {
   if (i >= lsrIdNum()) {
      return Vorin::IpAddr();
   }
   Vorin::IpAddr ip;
   std::memcpy(&ip, valueBytes() + i * lsrIdBytes, lsrIdBytes);
   return ip;
}

void LdpPathVectorTlv::lsrIdIs(unsigned i, Vorin::IpAddr ip) noexcept {
   ZON_ASSERT(i < lsrIdNum());
   std::memcpy(valueBytes() + i * lsrIdBytes, ip.bytes(), lsrIdBytes);
}

unsigned LdpPathVectorTlv::lsrIdPosition(Vorin::IpAddr ip) const noexcept {
   unsigned const n = lsrIdNum();
   for (unsigned i = 0; i < n; ++i) {
      if (lsrId(i) == ip) {
         return i + 1;
      }
   }
   return 0;
}

Zon::String8 LdpPathVectorTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpPathVectorTlv: ", code);
   }
   std::string s = "LdpPathVectorTlv: [";
   unsigned const n = lsrIdNum();
   for (unsigned i = 0; i < n; ++i) {
      if (i != 0) {
         s += ", ";
      }
      s += lsrId(i).stringValue();
   }
   s += "]";
   return Zon::String8(std::move(s));
}

// ---- address list ----------------------------------------------------------

Vorin::IpGenAddr LdpAddressListTlv::address(unsigned offset) const noexcept {
   // A TLV too short to hold its family has no addresses; the offset assertion
   // below ends it without reading the family bytes.
   if (length() >= addressFamilyBytes) {
      if (family() == Vorin::ipv6_) {
         ZON_ASSERT(offset < numAddress());
         return Vorin::IpGenAddr(Vorin::ipv6_, addressBytes() + 16 * offset);
      }
      ZON_ASSERT_TEXT(family() == Vorin::ipv4_, "family() == Vorin::ipv4_");
   }
   ZON_ASSERT(offset < numAddress());
   return Vorin::IpGenAddr(Vorin::ipv4_, addressBytes() + 4 * offset);
}

LdpStatusCode LdpAddressListTlv::validate() const noexcept {
   if (auto const hdr = validateTlvHdr(); hdr != LdpStatusCode::success) {
      return hdr;
   }
   // Received bytes may end right after the header: the family is read only when
   // the length covers it.
   if (length() < addressFamilyBytes) {
      return LdpStatusCode::malformedTlv;
   }
   if (family() != Vorin::ipv4_ && family() != Vorin::ipv6_) {
      return LdpStatusCode::unsupportedAddressFamily;
   }
   if (numAddress() == 0) {
      return LdpStatusCode::malformedTlv;
   }
   return LdpStatusCode::success;
}

// Only the first address is shown, with the count:
//    "LdpAddressListTlv( 10.0.0.1, 2, ... )"  more than one address
//    "LdpAddressListTlv( 10.0.0.1, 1 )"       exactly one
//    "LdpAddressListTlv( Invalid TLV )"       none (numAddress() is 0), whatever
//                                             validate() says
Zon::String8 LdpAddressListTlv::stringValue() const {
   unsigned const n = numAddress();
   if (n == 0) {
      return Zon::String8("LdpAddressListTlv( Invalid TLV )");
   }
   std::string s = Zon::format("LdpAddressListTlv( %s, %d", address(0).stringValue().c_str(), int(n));
   s += n > 1 ? ", ... )" : " )";
   return Zon::String8(std::move(s));
}

// ---- capability parameter --------------------------------------------------

Zon::String8 LdpCapabilityParameterTlv::stringValue() const {
   if (auto const code = validate(); code != LdpStatusCode::success) {
      return errorText("Error LdpCapabilityParameterTlv: ", code);
   }
   return Zon::format("LdpCapabilityParameterTlv(%s): S(%d)", Ldp::stringValue(type()).c_str(), int(state()));
}

} // namespace Ldp
