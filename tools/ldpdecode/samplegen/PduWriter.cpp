#include "PduWriter.h"

#include <cstring>

#include "ldp/wire/LdpFecElement.h"
#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"

namespace LdpSamples {

using namespace Ldp;

namespace {

template <typename T>
Bytes bytesOf(T const & wire) {
   auto const * p = reinterpret_cast<std::uint8_t const *>(&wire);
   return Bytes(p, p + sizeof(T));
}

void append(Bytes & to, std::uint8_t const * p, std::size_t n) {
   appendBytes(to, p, n);
}

void append(Bytes & to, Bytes const & b) {
   appendBytes(to, b);
}

// A view of type T laid over the start of a buffer, for the wire types whose
// setters write the variable part behind the fixed one.
template <typename T>
T & viewOf(Bytes & b) {
   return *reinterpret_cast<T *>(b.data());
}

} // namespace

void appendBytes(Bytes & to, void const * p, std::size_t n) {
   if (n == 0) {
      return;
   }
   std::size_t const at = to.size();
   to.resize(at + n);
   std::memcpy(to.data() + at, p, n);
}

PduWriter & PduWriter::msgOfType(std::uint16_t type, std::uint32_t msgId, bool uBit) {
   LdpMsgHdr h;
   h.msgUbitAndTypeFieldIs(LdpHdrMsgUbitAndTypeField(static_cast<std::uint16_t>((uBit ? 0x8000 : 0) | type)));
   h.msgIdIs(msgId);
   starts_.push_back(body_.size());
   append(body_, bytesOf(h));
   return *this;
}

PduWriter & PduWriter::msg(LdpMsgType type, std::uint32_t msgId, bool uBit) {
   return msgOfType(static_cast<std::uint16_t>(type), msgId, uBit);
}

PduWriter & PduWriter::add(Bytes const & tlv) {
   append(body_, tlv);
   return *this;
}

Bytes PduWriter::bytes() const {
   Bytes body = body_;
   for (std::size_t i = 0; i < starts_.size(); ++i) {
      std::size_t const end = i + 1 < starts_.size() ? starts_[i + 1] : body.size();
      auto & h = *reinterpret_cast<LdpMsgHdr *>(body.data() + starts_[i]);
      h.lengthIs(static_cast<std::uint16_t>(end - starts_[i] - LdpMsgHdr::msgHdrSizeExclude));
   }
   LdpPduHdr h;
   h.versionIs(1);
   h.lengthIs(static_cast<std::uint16_t>(LdpPduHdr::wireBytes + body.size() - LdpPduHdr::pduHdrSizeExclude));
   h.ldpIdentifierIs(id_);
   Bytes out = bytesOf(h);
   append(out, body);
   return out;
}

namespace Tlv {

Bytes commonHello(std::uint16_t holdTime, bool targeted, bool requestTargeted) {
   LdpCommonHelloTlv t;
   t.typeIs(LdpTlvType::commonHelloTlv);
   t.lengthIs(LdpCommonHelloTlv::requiredLength);
   t.holdTimeIs(holdTime);
   t.targetedHelloIs(targeted);
   t.requestSendTargetedHelloIs(requestTargeted);
   return bytesOf(t);
}

Bytes ipv4Transport(Vorin::IpAddr addr) {
   LdpIpTransportAddrTlv t;
   t.typeIs(LdpTlvType::ipv4TransportAddrTlv);
   t.lengthIs(LdpIpTransportAddrTlv::requiredLength);
   t.ipAddrIs(addr);
   return bytesOf(t);
}

Bytes ipv6Transport(Vorin::Ip6Addr const & addr) {
   LdpIp6TransportAddrTlv t;
   t.typeIs(LdpTlvType::ipv6TransportAddrTlv);
   t.lengthIs(LdpIp6TransportAddrTlv::requiredLength);
   t.ip6AddrIs(addr);
   return bytesOf(t);
}

Bytes configSeqNum(std::uint32_t seq) {
   LdpConfigSeqNumTlv t;
   t.typeIs(LdpTlvType::configSeqNumTlv);
   t.lengthIs(LdpConfigSeqNumTlv::requiredLength);
   t.configSeqNumIs(seq);
   return bytesOf(t);
}

Bytes sessionParams(std::uint16_t keepAlive, std::uint16_t maxPdu, LdpIdentifier const & receiver, bool loopDetect,
                    std::uint8_t pathVectorLimit) {
   LdpCommonSessionParamTlv t;
   t.typeIs(LdpTlvType::commonSessionParamTlv);
   t.lengthIs(LdpCommonSessionParamTlv::requiredLength);
   t.protocolVersionIs(1);
   t.keepAliveTimeIs(keepAlive);
   t.advDisciplineIs(0);
   t.loopDetectIs(loopDetect);
   t.pathVecLimIs(pathVectorLimit);
   t.maxPduLengthIs(maxPdu);
   t.recvLdpIdentifierIs(receiver);
   return bytesOf(t);
}

Bytes capability(LdpTlvType type, bool announced) {
   LdpCapabilityParameterTlv t;
   t.typeIs(type);
   t.unknownIs(1);  // capability TLVs carry the U bit: a peer that lacks them ignores them
   t.lengthIs(LdpCapabilityParameterTlv::minLength);
   t.stateIs(announced);
   return bytesOf(t);
}

Bytes addressList(std::vector<Vorin::IpGenAddr> const & addrs) {
   LdpAddressListTlv t;
   t.typeIs(LdpTlvType::addrListTlv);
   bool const v6 = !addrs.empty() && addrs.front().isV6();
   t.familyIs(v6 ? Vorin::ipv6_ : Vorin::ipv4_);
   std::size_t const each = v6 ? 16 : 4;
   t.lengthIs(static_cast<std::uint16_t>(LdpAddressListTlv::addressFamilyBytes + each * addrs.size()));
   Bytes out = bytesOf(t);
   for (auto const & a : addrs) {
      append(out, a.bytes(), each);
   }
   return out;
}

Bytes fec(std::vector<Bytes> const & elements) {
   Bytes value;
   for (auto const & e : elements) {
      append(value, e);
   }
   LdpTlvHdr h;
   h.typeIs(LdpTlvType::fecTlv);
   h.lengthIs(static_cast<std::uint16_t>(value.size()));
   Bytes out = bytesOf(h);
   append(out, value);
   return out;
}

Bytes genLabel(std::uint32_t label) {
   LdpGenLabelTlv t;
   t.typeIs(LdpTlvType::genLabelTlv);
   t.lengthIs(LdpGenLabelTlv::requiredLength);
   t.labelIs(Vorin::MplsLabel(label));
   return bytesOf(t);
}

Bytes labelRequestMsgId(std::uint32_t msgId) {
   LdpLabelReqMsgIdTlv t;
   t.typeIs(LdpTlvType::labelReqMsgIdTlv);
   t.lengthIs(LdpLabelReqMsgIdTlv::requiredLength);
   t.reqMsgIdIs(msgId);
   return bytesOf(t);
}

Bytes hopCount(std::uint8_t hops) {
   LdpHopCountTlv t;
   t.typeIs(LdpTlvType::hopCountTlv);
   t.lengthIs(LdpHopCountTlv::requiredLength);
   t.hopCountIs(hops);
   return bytesOf(t);
}

Bytes pathVector(std::vector<Vorin::IpAddr> const & lsrIds) {
   Bytes out(LdpPathVectorTlv::wireBytes + LdpPathVectorTlv::lsrIdBytes * lsrIds.size());
   auto & t = viewOf<LdpPathVectorTlv>(out);
   t.typeIs(LdpTlvType::pathVectorTlv);
   t.lengthIs(static_cast<std::uint16_t>(LdpPathVectorTlv::lsrIdBytes * lsrIds.size()));
   for (unsigned i = 0; i < lsrIds.size(); ++i) {
      t.lsrIdIs(i, lsrIds[i]);
   }
   return out;
}

Bytes status(LdpStatusCode code, bool fatal, bool forward, std::uint32_t msgId, std::uint16_t msgType) {
   LdpStatusTlv t;
   t.typeIs(LdpTlvType::statusTlv);
   t.lengthIs(LdpStatusTlv::requiredLength);
   t.statusDataIs(code);
   t.statusErrorIs(fatal);
   t.statusForwardUnknownIs(forward);
   t.msgIdIs(msgId);
   t.msgTypeNboIs(Vorin::NetU16::fromHost(msgType));
   return bytesOf(t);
}

Bytes pwStatus(std::uint32_t bits) {
   LdpPwStatusTlv t;
   t.typeIs(LdpTlvType::pwStatusTlv);
   t.lengthIs(LdpPwStatusTlv::requiredLength);
   t.statusIs(bits);
   return bytesOf(t);
}

Bytes raw(std::uint16_t typeWord, Bytes const & value) {
   LdpTlvHdr h;
   h.tlvTypeFieldIs(LdpTlvTypeField(typeWord));
   h.lengthIs(static_cast<std::uint16_t>(value.size()));
   Bytes out = bytesOf(h);
   append(out, value);
   return out;
}

} // namespace Tlv

namespace Fec {

Bytes wildcard() {
   LdpFecTlvWildcardElementHdr e;
   e.typeIs(LdpFecElementType::wildcardElement);
   return bytesOf(e);
}

Bytes prefix(Vorin::IpGenPrefix const & p) {
   LdpFecTlvPrefixElementHdr e;
   e.typeIs(LdpFecElementType::prefixElement);
   e.familyIs(p.address().isV6() ? Vorin::ipv6_ : Vorin::ipv4_);
   e.prefixBitsIs(static_cast<std::uint8_t>(p.length()));
   Bytes out = bytesOf(e);
   append(out, p.address().bytes(), (p.length() + 7) / 8);
   return out;
}

Bytes hostAddress(Vorin::IpGenAddr const & a) {
   LdpFecTlvHostAddressElementHdr e;
   e.typeIs(LdpFecElementType::hostAddrElement);
   e.familyIs(a.isV6() ? Vorin::ipv6_ : Vorin::ipv4_);
   e.hostAddrLenIs(static_cast<std::uint8_t>(a.byteLength()));
   Bytes out = bytesOf(e);
   append(out, a.bytes(), a.byteLength());
   return out;
}

Bytes pwId(Pseudowire::PseudowireType type, bool controlWord, std::uint32_t groupId, std::uint32_t id,
           std::vector<Bytes> const & subTlvs) {
   Bytes out(LdpFecTlvPwIdElementHdr::wireBytes + LdpFecTlvPwIdElementHdr::pwIdBytes);
   for (auto const & s : subTlvs) {
      append(out, s);
   }
   auto & e = viewOf<LdpFecTlvPwIdElementHdr>(out);
   e.typeIs(LdpFecElementType::pwIdElement);
   e.controlWordIs(controlWord);
   e.pwTypeIs(type);
   e.pwInfoLenIs(static_cast<std::uint8_t>(out.size() - LdpFecTlvPwIdElementHdr::wireBytes));
   e.groupIdIs(Pseudowire::GroupId(groupId));
   e.pwIdIs(Pseudowire::PseudowireId(id));
   return out;
}

Bytes pwMtu(std::uint16_t mtu) {
   LdpPwIntfMtuSubTlv s;
   s.typeIs(LdpPwIntfParamSubTlvType::intfMtu);
   s.lengthIs(LdpPwIntfMtuSubTlv::requiredLength);
   s.mtuIs(mtu);
   return bytesOf(s);
}

Bytes pwDescription(std::string_view text) {
   Bytes out(LdpPwIntfDescSubTlv::wireBytes + text.size());
   auto & s = viewOf<LdpPwIntfDescSubTlv>(out);
   s.typeIs(LdpPwIntfParamSubTlvType::intfDesc);
   s.descriptionIs(text);
   return out;
}

Bytes pwVccv(std::uint8_t cc, std::uint8_t cv) {
   LdpPwVccvParamSubTlv s;
   s.typeIs(LdpPwIntfParamSubTlvType::vccvParam);
   s.lengthIs(LdpPwVccvParamSubTlv::requiredLength);
   s.vccvParamIs(LdpPwVccvParamField(cc, cv));
   return bytesOf(s);
}

} // namespace Fec

} // namespace LdpSamples
