// TLV value types of discovery (hello parameters, transport addresses, configuration
// sequence number), session setup (common session parameters, capabilities),
// notification (status) and label distribution (generic label, label request
// message id, hop count, path vector, address list).
//
// Each type begins with an LdpTlvHdr and is a packed view of wire bytes in network
// order: it can be laid over a TLV inside a received buffer or filled in field by
// field. Two sizes are stated once per type: `wireBytes`, the bytes the structure
// occupies on the wire with its header, and for the fixed-size TLVs
// `requiredLength`, the value of the length field that validate() accepts (the
// header's 4 bytes are not counted in it).
//
// The path vector and address list TLVs are variable-length views: their value
// runs past the structure for as many bytes as their own length field says. They
// trust that length (the parsers check that the TLV lies inside the received
// bytes) and never read beyond the header plus length().
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/IpAddr.h"
#include "vorin/MplsLabel.h"
#include "vorin/NetInt.h"
#include "zon/Assert.h"
#include "zon/String.h"

namespace Ldp {

// Flags word of the Common Hello Parameters TLV: T (15, targeted hello),
// R (14, request targeted hellos back), 13..0 reserved.
class LdpCommonHelloTargetField {
 public:
   constexpr LdpCommonHelloTargetField() noexcept = default;
   constexpr explicit LdpCommonHelloTargetField(std::uint16_t word) noexcept
       : word_(Vorin::NetU16::fromHost(word)) {}

   constexpr std::uint16_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint16_t v) noexcept { word_.valueIs(v); }

   constexpr bool targetedHello() const noexcept { return (value() >> 15) & 1; }
   constexpr void targetedHelloIs(unsigned bit) noexcept { valueIs(withBit<std::uint16_t>(value(), 15, bit)); }
   constexpr bool requestSendTargetedHello() const noexcept { return (value() >> 14) & 1; }
   constexpr void requestSendTargetedHelloIs(unsigned bit) noexcept {
      valueIs(withBit<std::uint16_t>(value(), 14, bit));
   }

   // Value('Ldp::LdpCommonHelloTargetField', ** {'v0': b0, 'v1': b1})
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpCommonHelloTargetField const & o) const noexcept { return value() <=> o.value(); }
   constexpr bool operator==(LdpCommonHelloTargetField const & o) const noexcept { return value() == o.value(); }

 private:
   Vorin::NetU16 word_;
};

class LdpCommonHelloTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpCommonHelloTlv() noexcept = default;

   constexpr Vorin::NetU16 holdTimeNbo() const noexcept { return holdTimeNbo_; }
   constexpr void holdTimeNboIs(Vorin::NetU16 v) noexcept { holdTimeNbo_ = v; }
   constexpr LdpCommonHelloTargetField targetHelloField() const noexcept { return targetHelloField_; }
   constexpr void targetHelloFieldIs(LdpCommonHelloTargetField f) noexcept { targetHelloField_ = f; }

   constexpr std::uint16_t holdTime() const noexcept { return holdTimeNbo_.value(); }
   constexpr void holdTimeIs(std::uint16_t v) noexcept { holdTimeNbo_.valueIs(v); }
   constexpr bool targetedHello() const noexcept { return targetHelloField_.targetedHello(); }
   constexpr void targetedHelloIs(unsigned bit) noexcept { targetHelloField_.targetedHelloIs(bit); }
   constexpr bool requestSendTargetedHello() const noexcept {
      return targetHelloField_.requestSendTargetedHello();
   }
   constexpr void requestSendTargetedHelloIs(unsigned bit) noexcept {
      targetHelloField_.requestSendTargetedHelloIs(bit);
   }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::commonHelloTlv, "type() == commonHelloTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "CommonHelloTlv: HT(15),1,0"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpCommonHelloTlv const &) const noexcept = default;

 private:
   Vorin::NetU16 holdTimeNbo_;
   LdpCommonHelloTargetField targetHelloField_;
};

class LdpIpTransportAddrTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpIpTransportAddrTlv() noexcept = default;

   constexpr Vorin::IpAddr ipAddr() const noexcept { return ipAddr_; }
   constexpr void ipAddrIs(Vorin::IpAddr a) noexcept { ipAddr_ = a; }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::ipv4TransportAddrTlv, "type() == ipv4TransportAddrTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // The address, "10.0.0.1".
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpIpTransportAddrTlv const &) const noexcept = default;

 private:
   Vorin::IpAddr ipAddr_;
};

class LdpIp6TransportAddrTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 20;
   static constexpr std::uint16_t requiredLength = 16;

   constexpr LdpIp6TransportAddrTlv() noexcept = default;

   constexpr Vorin::Ip6Addr ip6Addr() const noexcept { return ip6Addr_; }
   constexpr void ip6AddrIs(Vorin::Ip6Addr const & a) noexcept { ip6Addr_ = a; }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::ipv6TransportAddrTlv, "type() == ipv6TransportAddrTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // The address, "2001:db8::1".
   Zon::String8 stringValue() const;

   bool operator==(LdpIp6TransportAddrTlv const &) const noexcept = default;

 private:
   Vorin::Ip6Addr ip6Addr_;
};

class LdpConfigSeqNumTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpConfigSeqNumTlv() noexcept = default;

   constexpr Vorin::NetU32 configSeqNumNbo() const noexcept { return configSeqNumNbo_; }
   constexpr void configSeqNumNboIs(Vorin::NetU32 v) noexcept { configSeqNumNbo_ = v; }
   constexpr std::uint32_t configSeqNum() const noexcept { return configSeqNumNbo_.value(); }
   constexpr void configSeqNumIs(std::uint32_t v) noexcept { configSeqNumNbo_.valueIs(v); }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::configSeqNumTlv, "type() == configSeqNumTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "ConfigSeqNumTlv: 7"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpConfigSeqNumTlv const &) const noexcept = default;

 private:
   Vorin::NetU32 configSeqNumNbo_;
};

// One octet of the Common Session Parameters TLV: A (7, label advertisement
// discipline, 1 = downstream on demand), D (6, loop detection), 5..0 reserved.
class LdpCommonSessionParamTlvAdField {
 public:
   constexpr LdpCommonSessionParamTlvAdField() noexcept = default;
   constexpr explicit LdpCommonSessionParamTlvAdField(std::uint8_t v) noexcept : byte_(v) {}

   constexpr std::uint8_t value() const noexcept { return byte_; }
   constexpr void valueIs(std::uint8_t v) noexcept { byte_ = v; }

   constexpr bool advDiscipline() const noexcept { return (byte_ >> 7) & 1; }
   constexpr void advDisciplineIs(unsigned bit) noexcept { byte_ = withBit<std::uint8_t>(byte_, 7, bit); }
   constexpr bool loopDetect() const noexcept { return (byte_ >> 6) & 1; }
   constexpr void loopDetectIs(unsigned bit) noexcept { byte_ = withBit<std::uint8_t>(byte_, 6, bit); }
   constexpr std::uint8_t reserved() const noexcept { return byte_ & 0x3F; }
   // Writes the low 6 bits of `v`, keeps A and D.
   constexpr void reservedIs(std::uint8_t v) noexcept {
      byte_ = static_cast<std::uint8_t>((byte_ & 0xC0) | (v & 0x3F));
   }

   // Value('Ldp::LdpCommonSessionParamTlvAdField', ** {'v0': b0})
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpCommonSessionParamTlvAdField const &) const noexcept = default;

 private:
   std::uint8_t byte_ = 0;
};

class LdpCommonSessionParamTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 18;
   static constexpr std::uint16_t requiredLength = 14;
   // Largest maximum PDU length a peer may propose (the PDU buffer size).
   static constexpr std::uint16_t maxPduLengthLimit = 9600;
   // Keepalive times up to this many seconds are refused: the minimum is 3.
   static constexpr std::uint16_t keepAliveTimeRejectMax = 2;

   constexpr LdpCommonSessionParamTlv() noexcept = default;

   constexpr Vorin::NetU16 protocolVersionNbo() const noexcept { return protocolVersionNbo_; }
   constexpr void protocolVersionNboIs(Vorin::NetU16 v) noexcept { protocolVersionNbo_ = v; }
   constexpr Vorin::NetU16 keepAliveTimeNbo() const noexcept { return keepAliveTimeNbo_; }
   constexpr void keepAliveTimeNboIs(Vorin::NetU16 v) noexcept { keepAliveTimeNbo_ = v; }
   constexpr LdpCommonSessionParamTlvAdField adField() const noexcept { return adField_; }
   constexpr void adFieldIs(LdpCommonSessionParamTlvAdField f) noexcept { adField_ = f; }
   constexpr std::uint8_t pathVecLim() const noexcept { return pathVecLim_; }
   constexpr void pathVecLimIs(std::uint8_t v) noexcept { pathVecLim_ = v; }
   constexpr Vorin::NetU16 maxPduLengthNbo() const noexcept { return maxPduLengthNbo_; }
   constexpr void maxPduLengthNboIs(Vorin::NetU16 v) noexcept { maxPduLengthNbo_ = v; }
   constexpr LdpIdentifier recvLdpIdentifier() const noexcept { return recvLdpIdentifier_; }
   constexpr void recvLdpIdentifierIs(LdpIdentifier const & id) noexcept { recvLdpIdentifier_ = id; }

   constexpr std::uint16_t protocolVersion() const noexcept { return protocolVersionNbo_.value(); }
   constexpr void protocolVersionIs(std::uint16_t v) noexcept { protocolVersionNbo_.valueIs(v); }
   constexpr std::uint16_t keepAliveTime() const noexcept { return keepAliveTimeNbo_.value(); }
   constexpr void keepAliveTimeIs(std::uint16_t v) noexcept { keepAliveTimeNbo_.valueIs(v); }
   constexpr std::uint16_t maxPduLength() const noexcept { return maxPduLengthNbo_.value(); }
   constexpr void maxPduLengthIs(std::uint16_t v) noexcept { maxPduLengthNbo_.valueIs(v); }
   constexpr bool advDiscipline() const noexcept { return adField_.advDiscipline(); }
   constexpr void advDisciplineIs(unsigned bit) noexcept { adField_.advDisciplineIs(bit); }
   constexpr bool loopDetect() const noexcept { return adField_.loopDetect(); }
   constexpr void loopDetectIs(unsigned bit) noexcept { adField_.loopDetectIs(bit); }

   // In order: validateTlvHdr(), length, protocol version 1, keepalive time of
   // at least 3 seconds, maximum PDU length of at most 9600 (0 is accepted). The
   // three parameter refusals are traced at error level under "LdpHdr".
   LdpStatusCode validate() const;
   // "LdpCommonSessionParamTlv: KA(30), A(0), D(1), PduLen(4096), 10.0.0.2:0"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpCommonSessionParamTlv const &) const noexcept = default;

 private:
   Vorin::NetU16 protocolVersionNbo_;
   Vorin::NetU16 keepAliveTimeNbo_;
   LdpCommonSessionParamTlvAdField adField_;
   std::uint8_t pathVecLim_ = 0;
   Vorin::NetU16 maxPduLengthNbo_;
   LdpIdentifier recvLdpIdentifier_;
};

// Status word of the Status TLV: E (31, fatal error), F (30, forward), 29..0 the
// status data, an LdpStatusCode.
class LdpStatusTlvStatusCode {
 public:
   static constexpr std::uint32_t statusDataMask = 0x3FFFFFFF;

   constexpr LdpStatusTlvStatusCode() noexcept = default;
   constexpr explicit LdpStatusTlvStatusCode(std::uint32_t word) noexcept
       : word_(Vorin::NetU32::fromHost(word)) {}

   constexpr std::uint32_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint32_t v) noexcept { word_.valueIs(v); }

   constexpr bool error() const noexcept { return (value() >> 31) & 1; }
   constexpr void errorIs(unsigned bit) noexcept { valueIs(withBit<std::uint32_t>(value(), 31, bit)); }
   constexpr bool forwardUnknown() const noexcept { return (value() >> 30) & 1; }
   constexpr void forwardUnknownIs(unsigned bit) noexcept { valueIs(withBit<std::uint32_t>(value(), 30, bit)); }
   constexpr LdpStatusCode statusData() const noexcept { return LdpStatusCode(value() & statusDataMask); }
   // Writes the low 30 bits of the code, keeps E and F. The local codes (top bit
   // set) do not fit and are not meant to be sent.
   constexpr void statusDataIs(LdpStatusCode c) noexcept {
      valueIs((value() & ~statusDataMask) | (static_cast<std::uint32_t>(c) & statusDataMask));
   }

   // Value('Ldp::LdpStatusTlvStatusCode', ** {'v0': b0, 'v1': b1, 'v2': b2, 'v3': b3})
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpStatusTlvStatusCode const & o) const noexcept { return value() <=> o.value(); }
   constexpr bool operator==(LdpStatusTlvStatusCode const & o) const noexcept { return value() == o.value(); }

 private:
   Vorin::NetU32 word_;
};

class LdpStatusTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 14;
   static constexpr std::uint16_t requiredLength = 10;

   constexpr LdpStatusTlv() noexcept = default;

   constexpr LdpStatusTlvStatusCode statusCode() const noexcept { return statusCode_; }
   constexpr void statusCodeIs(LdpStatusTlvStatusCode c) noexcept { statusCode_ = c; }
   constexpr Vorin::NetU32 msgIdNbo() const noexcept { return msgIdNbo_; }
   constexpr void msgIdNboIs(Vorin::NetU32 v) noexcept { msgIdNbo_ = v; }
   constexpr Vorin::NetU16 msgTypeNbo() const noexcept { return msgTypeNbo_; }
   constexpr void msgTypeNboIs(Vorin::NetU16 v) noexcept { msgTypeNbo_ = v; }

   constexpr LdpStatusCode statusData() const noexcept { return statusCode_.statusData(); }
   constexpr void statusDataIs(LdpStatusCode c) noexcept { statusCode_.statusDataIs(c); }
   constexpr bool statusError() const noexcept { return statusCode_.error(); }
   constexpr void statusErrorIs(unsigned bit) noexcept { statusCode_.errorIs(bit); }
   constexpr bool statusForwardUnknown() const noexcept { return statusCode_.forwardUnknown(); }
   constexpr void statusForwardUnknownIs(unsigned bit) noexcept { statusCode_.forwardUnknownIs(bit); }
   constexpr std::uint32_t msgId() const noexcept { return msgIdNbo_.value(); }
   constexpr void msgIdIs(std::uint32_t v) noexcept { msgIdNbo_.valueIs(v); }
   constexpr LdpMsgType msgType() const noexcept { return LdpMsgType(msgTypeNbo_.value()); }
   constexpr void msgTypeIs(LdpMsgType t) noexcept { msgTypeNbo_.valueIs(static_cast<std::uint16_t>(t)); }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::statusTlv, "type() == statusTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "StatusTlv(shutdown): LdpInit:7 u(0), fu(0), e(1), efu(0)"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpStatusTlv const &) const noexcept = default;

 private:
   LdpStatusTlvStatusCode statusCode_;
   Vorin::NetU32 msgIdNbo_;
   Vorin::NetU16 msgTypeNbo_;
};

// Value word of the Generic Label TLV: the label in bits 19..0; bits 31..20 are
// not part of the label and are kept as they are.
class LdpGenLabelTlvLabel {
 public:
   static constexpr std::uint32_t labelMask = 0x000FFFFF;

   constexpr LdpGenLabelTlvLabel() noexcept = default;
   constexpr explicit LdpGenLabelTlvLabel(std::uint32_t word) noexcept : word_(Vorin::NetU32::fromHost(word)) {}

   constexpr std::uint32_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint32_t v) noexcept { word_.valueIs(v); }

   Vorin::MplsLabel label() const { return Vorin::MplsLabel(value() & labelMask); }
   // Writes the low 20 bits of the label's value, keeps bits 31..20.
   constexpr void labelIs(Vorin::MplsLabel l) noexcept {
      valueIs((value() & ~labelMask) | (l.value() & labelMask));
   }

   // Value('Ldp::LdpGenLabelTlvLabel', ** {'v0': b0, 'v1': b1, 'v2': b2, 'v3': b3})
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpGenLabelTlvLabel const & o) const noexcept { return value() <=> o.value(); }
   constexpr bool operator==(LdpGenLabelTlvLabel const & o) const noexcept { return value() == o.value(); }

 private:
   Vorin::NetU32 word_;
};

class LdpGenLabelTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpGenLabelTlv() noexcept = default;

   constexpr LdpGenLabelTlvLabel labelField() const noexcept { return labelField_; }
   constexpr void labelFieldIs(LdpGenLabelTlvLabel f) noexcept { labelField_ = f; }
   Vorin::MplsLabel label() const { return labelField_.label(); }
   constexpr void labelIs(Vorin::MplsLabel l) noexcept { labelField_.labelIs(l); }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::genLabelTlv, "type() == genLabelTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "GenLabelTlv: L(16)"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpGenLabelTlv const &) const noexcept = default;

 private:
   LdpGenLabelTlvLabel labelField_;
};

class LdpLabelReqMsgIdTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpLabelReqMsgIdTlv() noexcept = default;

   constexpr Vorin::NetU32 reqMsgIdNbo() const noexcept { return reqMsgIdNbo_; }
   constexpr void reqMsgIdNboIs(Vorin::NetU32 v) noexcept { reqMsgIdNbo_ = v; }
   constexpr std::uint32_t reqMsgId() const noexcept { return reqMsgIdNbo_.value(); }
   constexpr void reqMsgIdIs(std::uint32_t v) noexcept { reqMsgIdNbo_.valueIs(v); }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::labelReqMsgIdTlv, "type() == labelReqMsgIdTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "LabelReqMsgIdTlv: ID(42)"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpLabelReqMsgIdTlv const &) const noexcept = default;

 private:
   Vorin::NetU32 reqMsgIdNbo_;
};

class LdpHopCountTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 5;
   static constexpr std::uint16_t requiredLength = 1;

   constexpr LdpHopCountTlv() noexcept = default;

   constexpr std::uint8_t hopCount() const noexcept { return hopCount_; }
   constexpr void hopCountIs(std::uint8_t v) noexcept { hopCount_ = v; }

   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::hopCountTlv, "type() == hopCountTlv_");
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "LdpHopCountTlv: 3"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpHopCountTlv const &) const noexcept = default;

 private:
   std::uint8_t hopCount_ = 0;
};

// Variable-length view: after the header, length() / 4 LSR ids of 4 bytes each.
// `wireBytes` is the header alone; the ids follow it in the received buffer.
class LdpPathVectorTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 4;
   static constexpr std::size_t lsrIdBytes = 4;

   constexpr LdpPathVectorTlv() noexcept = default;

   // length() / 4 when the length is non-zero and a multiple of 4; otherwise 0.
   constexpr unsigned lsrIdNum() const noexcept {
      return (length() != 0 && length() % lsrIdBytes == 0) ? length() / lsrIdBytes : 0;
   }
   // The i-th id from 0; 0.0.0.0 when i is not below lsrIdNum().
   Vorin::IpAddr lsrId(unsigned i) const noexcept;
   // Writes the i-th id into the buffer the view is laid over; i < lsrIdNum().
   void lsrIdIs(unsigned i, Vorin::IpAddr ip) noexcept;
   // The 1-based position of the first id equal to ip; 0 when absent.
   unsigned lsrIdPosition(Vorin::IpAddr ip) const noexcept;

   // Type assertion, then success when lsrIdNum() is non-zero, else badTlvLength.
   LdpStatusCode validate() const noexcept {
      ZON_ASSERT_TEXT(type() == LdpTlvType::pathVectorTlv, "type() == pathVectorTlv_");
      return lsrIdNum() != 0 ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "LdpPathVectorTlv: [10.0.0.1, 10.0.0.2]"
   Zon::String8 stringValue() const;

 private:
   std::uint8_t const * valueBytes() const noexcept {
      return reinterpret_cast<std::uint8_t const *>(this) + LdpTlvHdr::wireBytes;
   }
   std::uint8_t * valueBytes() noexcept { return reinterpret_cast<std::uint8_t *>(this) + LdpTlvHdr::wireBytes; }
};

// Variable-length view: after the header the 2-byte address family (1 IPv4,
// 2 IPv6), then the addresses, 4 or 16 bytes each. `wireBytes` covers the header
// and the family. A TLV whose length is below 2 has no family: validate() and
// numAddress() check the length before they read it.
class LdpAddressListTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 6;
   static constexpr std::uint16_t addressFamilyBytes = 2;

   constexpr LdpAddressListTlv() noexcept = default;

   constexpr Vorin::NetU16 addressFamilyNbo() const noexcept { return addressFamilyNbo_; }
   constexpr void addressFamilyNboIs(Vorin::NetU16 v) noexcept { addressFamilyNbo_ = v; }
   // The family number as on the wire (1 IPv4, 2 IPv6, anything else unsupported);
   // compare it with Vorin::ipv4_ and Vorin::ipv6_.
   constexpr std::uint16_t family() const noexcept { return addressFamilyNbo_.value(); }
   constexpr void familyIs(std::uint16_t f) noexcept { addressFamilyNbo_.valueIs(f); }

   // 0 when the length is below 3; for IPv4 (length - 2) / 4 when length % 4 is 2;
   // for IPv6 (length - 2) / 16 when length % 16 is 2; otherwise 0.
   constexpr unsigned numAddress() const noexcept {
      unsigned const len = length();
      if (len < 3) {
         return 0;
      }
      if (family() == Vorin::ipv4_) {
         return len % 4 == 2 ? (len - addressFamilyBytes) / 4 : 0;
      }
      if (family() == Vorin::ipv6_) {
         return len % 16 == 2 ? (len - addressFamilyBytes) / 16 : 0;
      }
      return 0;
   }
   // The address at `offset` (from 0). IPv6 lists read 16 bytes at 6 + 16 offset;
   // any other family must be IPv4 (asserted) and reads 4 bytes at 6 + 4 offset.
   // `offset` must be below numAddress() (asserted).
   Vorin::IpGenAddr address(unsigned offset) const noexcept;

   // validateTlvHdr(), then malformedTlv when the length cannot hold the family,
   // unsupportedAddressFamily for a family other than 1 or 2, malformedTlv when
   // numAddress() is 0, else success.
   LdpStatusCode validate() const noexcept;
   // "LdpAddressListTlv( 10.0.0.1, 2, ... )"; see the definition for the forms.
   Zon::String8 stringValue() const;

 private:
   std::uint8_t const * addressBytes() const noexcept {
      return reinterpret_cast<std::uint8_t const *>(this) + wireBytes;
   }

   Vorin::NetU16 addressFamilyNbo_;
};

// The octet after the header of a capability parameter TLV: the S bit (7) says
// whether the capability is announced (1) or withdrawn (0); bits 6..0 reserved.
class LdpStateBit {
 public:
   constexpr LdpStateBit() noexcept = default;
   constexpr explicit LdpStateBit(std::uint8_t v) noexcept : byte_(v) {}

   constexpr std::uint8_t value() const noexcept { return byte_; }
   constexpr void valueIs(std::uint8_t v) noexcept { byte_ = v; }

   constexpr bool state() const noexcept { return (byte_ >> 7) & 1; }
   constexpr void stateIs(unsigned bit) noexcept { byte_ = withBit<std::uint8_t>(byte_, 7, bit); }

   // Value('Ldp::LdpStateBit', ** {'v0': b0})
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpStateBit const &) const noexcept = default;

 private:
   std::uint8_t byte_ = 0;
};

// A capability parameter TLV (types 0x0506..0x050F): the header and the state
// octet. Some capabilities carry data after it, up to the TLV's length; the
// capability parser checks the length per type, this type reads only the octet.
class LdpCapabilityParameterTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 5;
   // Smallest length that holds the state octet.
   static constexpr std::uint16_t minLength = 1;

   constexpr LdpCapabilityParameterTlv() noexcept = default;

   constexpr LdpStateBit stateBit() const noexcept { return stateBit_; }
   constexpr void stateBitIs(LdpStateBit b) noexcept { stateBit_ = b; }
   constexpr bool state() const noexcept { return stateBit_.state(); }
   constexpr void stateIs(unsigned bit) noexcept { stateBit_.stateIs(bit); }

   // validateTlvHdr(), then badTlvLength when the length cannot hold the state
   // octet, else success.
   constexpr LdpStatusCode validate() const noexcept {
      if (auto const hdr = validateTlvHdr(); hdr != LdpStatusCode::success) {
         return hdr;
      }
      return length() >= minLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }
   // "LdpCapabilityParameterTlv(dynamicCapabilityTlv): S(1)", or
   // "Error LdpCapabilityParameterTlv: " and the status code's name. The state
   // octet is not read when the length is 0.
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpCapabilityParameterTlv const &) const noexcept = default;

 private:
   LdpStateBit stateBit_;
};

// Each wire type: packed (no padding, alignment 1), trivially copyable, and its
// size is its wire size.
template <typename T>
constexpr bool isWireType = sizeof(T) == T::wireBytes && alignof(T) == 1 && std::is_trivially_copyable_v<T>;

static_assert(sizeof(LdpCommonHelloTargetField) == 2 && alignof(LdpCommonHelloTargetField) == 1);
static_assert(sizeof(LdpCommonSessionParamTlvAdField) == 1 && alignof(LdpCommonSessionParamTlvAdField) == 1);
static_assert(sizeof(LdpStatusTlvStatusCode) == 4 && alignof(LdpStatusTlvStatusCode) == 1);
static_assert(sizeof(LdpGenLabelTlvLabel) == 4 && alignof(LdpGenLabelTlvLabel) == 1);
static_assert(sizeof(LdpStateBit) == 1 && alignof(LdpStateBit) == 1);

static_assert(isWireType<LdpCommonHelloTlv> && LdpCommonHelloTlv::wireBytes == 8 &&
              LdpCommonHelloTlv::requiredLength == LdpCommonHelloTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpIpTransportAddrTlv> && LdpIpTransportAddrTlv::wireBytes == 8 &&
              LdpIpTransportAddrTlv::requiredLength == LdpIpTransportAddrTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpIp6TransportAddrTlv> && LdpIp6TransportAddrTlv::wireBytes == 20 &&
              LdpIp6TransportAddrTlv::requiredLength == LdpIp6TransportAddrTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpConfigSeqNumTlv> && LdpConfigSeqNumTlv::wireBytes == 8 &&
              LdpConfigSeqNumTlv::requiredLength == LdpConfigSeqNumTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpCommonSessionParamTlv> && LdpCommonSessionParamTlv::wireBytes == 18 &&
              LdpCommonSessionParamTlv::requiredLength ==
                  LdpCommonSessionParamTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpStatusTlv> && LdpStatusTlv::wireBytes == 14 &&
              LdpStatusTlv::requiredLength == LdpStatusTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpGenLabelTlv> && LdpGenLabelTlv::wireBytes == 8 &&
              LdpGenLabelTlv::requiredLength == LdpGenLabelTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpLabelReqMsgIdTlv> && LdpLabelReqMsgIdTlv::wireBytes == 8 &&
              LdpLabelReqMsgIdTlv::requiredLength == LdpLabelReqMsgIdTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpHopCountTlv> && LdpHopCountTlv::wireBytes == 5 &&
              LdpHopCountTlv::requiredLength == LdpHopCountTlv::wireBytes - LdpTlvHdr::wireBytes);
static_assert(isWireType<LdpPathVectorTlv> && LdpPathVectorTlv::wireBytes == 4);
static_assert(isWireType<LdpAddressListTlv> && LdpAddressListTlv::wireBytes == 6);
static_assert(isWireType<LdpCapabilityParameterTlv> && LdpCapabilityParameterTlv::wireBytes == 5 &&
              LdpCapabilityParameterTlv::minLength ==
                  LdpCapabilityParameterTlv::wireBytes - LdpTlvHdr::wireBytes);

} // namespace Ldp
