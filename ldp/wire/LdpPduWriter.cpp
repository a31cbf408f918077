#include "ldp/wire/LdpPduWriter.h"

#include "ldp/wire/LdpFecElement.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

namespace {

// A fixed-size TLV or sub-TLV with its type and its length field filled in.
template <typename T, typename Type>
T fixedItem(Type type) noexcept {
   T t;
   t.typeIs(type);
   t.lengthIs(T::requiredLength);
   return t;
}

} // namespace

namespace {

// The wire structures whose variable part follows them are filled through a
// view laid over the reserved bytes.
template <typename T>
T & viewAt(std::uint8_t * p) noexcept {
   return *reinterpret_cast<T *>(p);
}

} // namespace

void LdpPduWriter::open(Kind kind, std::size_t start) noexcept {
   if (failed_) {
      return;
   }
   if (depth_ == maxDepth) {
      failed_ = true;
      return;
   }
   scopes_[depth_++] = Scope{start, kind};
}

void LdpPduWriter::pduBegin(LdpIdentifier const & id, std::uint16_t version) noexcept {
   std::size_t const start = pos_;
   LdpPduHdr h;
   h.versionIs(version);
   h.ldpIdentifierIs(id);
   put(h);
   open(Kind::pdu, start);
}

void LdpPduWriter::msgBeginWord(std::uint16_t typeWord, std::uint32_t msgId) noexcept {
   std::size_t const start = pos_;
   LdpMsgHdr h;
   h.msgUbitAndTypeFieldIs(LdpHdrMsgUbitAndTypeField(typeWord));
   h.msgIdIs(msgId);
   put(h);
   open(Kind::msg, start);
}

void LdpPduWriter::tlvBeginWord(std::uint16_t typeWord) noexcept {
   std::size_t const start = pos_;
   LdpTlvHdr h;
   h.tlvTypeFieldIs(LdpTlvTypeField(typeWord));
   put(h);
   open(Kind::tlv, start);
}

void LdpPduWriter::pwIdElementBegin(Pseudowire::PseudowireType type, bool controlWord, std::uint32_t groupId,
                                    std::uint32_t pwId) noexcept {
   std::size_t const start = pos_;
   std::uint8_t * p = reserve(LdpFecTlvPwIdElementHdr::wireBytes + LdpFecTlvPwIdElementHdr::pwIdBytes);
   if (!p) {
      return;
   }
   std::memset(p, 0, LdpFecTlvPwIdElementHdr::wireBytes);
   auto & e = viewAt<LdpFecTlvPwIdElementHdr>(p);
   e.typeIs(LdpFecElementType::pwIdElement);
   e.controlWordIs(controlWord);
   e.pwTypeIs(type);
   e.pwInfoLenIs(LdpFecTlvPwIdElementHdr::pwIdBytes); // end() sets the final length
   e.groupIdIs(Pseudowire::GroupId(groupId));
   e.pwIdIs(Pseudowire::PseudowireId(pwId));
   open(Kind::pwId, start);
}

void LdpPduWriter::end() noexcept {
   if (failed_) {
      return;
   }
   if (depth_ == 0) {
      failed_ = true;
      return;
   }
   Scope const s = scopes_[--depth_];
   std::size_t const total = pos_ - s.start;
   std::uint8_t * p = buf_ + s.start;
   switch (s.kind) {
    case Kind::pdu:
    case Kind::msg:
    case Kind::tlv: {
      // The three headers count the bytes after their first four.
      static_assert(LdpPduHdr::pduHdrSizeExclude == 4 && LdpMsgHdr::msgHdrSizeExclude == 4 &&
                    LdpTlvHdr::tlvHdrSizeExclude == 4);
      std::size_t const length = total - LdpTlvHdr::tlvHdrSizeExclude;
      if (length > 0xFFFF) {
         failed_ = true;
         return;
      }
      auto const word = static_cast<std::uint16_t>(length);
      if (s.kind == Kind::pdu) {
         viewAt<LdpPduHdr>(p).lengthIs(word);
      } else if (s.kind == Kind::msg) {
         viewAt<LdpMsgHdr>(p).lengthIs(word);
      } else {
         viewAt<LdpTlvHdr>(p).lengthIs(word);
      }
      return;
    }
    case Kind::pwId: {
      std::size_t const length = total - LdpFecTlvPwIdElementHdr::wireBytes;
      if (length > 0xFF) {
         failed_ = true;
         return;
      }
      viewAt<LdpFecTlvPwIdElementHdr>(p).pwInfoLenIs(static_cast<std::uint8_t>(length));
      return;
    }
   }
}

void LdpPduWriter::commonHelloTlv(std::uint16_t holdTime, bool targeted, bool requestTargeted) noexcept {
   auto t = fixedItem<LdpCommonHelloTlv>(LdpTlvType::commonHelloTlv);
   t.holdTimeIs(holdTime);
   t.targetedHelloIs(targeted);
   t.requestSendTargetedHelloIs(requestTargeted);
   put(t);
}

void LdpPduWriter::ipv4TransportTlv(Vorin::IpAddr addr) noexcept {
   auto t = fixedItem<LdpIpTransportAddrTlv>(LdpTlvType::ipv4TransportAddrTlv);
   t.ipAddrIs(addr);
   put(t);
}

void LdpPduWriter::ipv6TransportTlv(Vorin::Ip6Addr const & addr) noexcept {
   auto t = fixedItem<LdpIp6TransportAddrTlv>(LdpTlvType::ipv6TransportAddrTlv);
   t.ip6AddrIs(addr);
   put(t);
}

void LdpPduWriter::configSeqNumTlv(std::uint32_t seq) noexcept {
   auto t = fixedItem<LdpConfigSeqNumTlv>(LdpTlvType::configSeqNumTlv);
   t.configSeqNumIs(seq);
   put(t);
}

void LdpPduWriter::sessionParamTlv(std::uint16_t keepAlive, std::uint16_t maxPdu, LdpIdentifier const & receiver,
                                   bool loopDetect, std::uint8_t pathVectorLimit, bool downstreamOnDemand) noexcept {
   auto t = fixedItem<LdpCommonSessionParamTlv>(LdpTlvType::commonSessionParamTlv);
   t.protocolVersionIs(1);
   t.keepAliveTimeIs(keepAlive);
   t.advDisciplineIs(downstreamOnDemand);
   t.loopDetectIs(loopDetect);
   t.pathVecLimIs(pathVectorLimit);
   t.maxPduLengthIs(maxPdu);
   t.recvLdpIdentifierIs(receiver);
   put(t);
}

void LdpPduWriter::capabilityTlv(LdpTlvType type, bool announced) noexcept {
   LdpCapabilityParameterTlv t;
   t.typeIs(type);
   t.unknownIs(1);
   t.lengthIs(LdpCapabilityParameterTlv::minLength);
   t.stateIs(announced);
   put(t);
}

void LdpPduWriter::addressListTlv(std::span<Vorin::IpGenAddr const> addrs) noexcept {
   bool const v6 = !addrs.empty() && addrs.front().isV6();
   std::size_t const each = v6 ? 16 : 4;
   std::size_t const length = LdpAddressListTlv::addressFamilyBytes + each * addrs.size();
   bool mixed = false;
   for (auto const & a : addrs) {
      mixed = mixed || a.isV6() != v6;
   }
   if (length > 0xFFFF || mixed) {
      failed_ = true;
      return;
   }
   LdpAddressListTlv t;
   t.typeIs(LdpTlvType::addrListTlv);
   t.familyIs(v6 ? Vorin::ipv6_ : Vorin::ipv4_);
   t.lengthIs(static_cast<std::uint16_t>(length));
   put(t);
   std::uint8_t * p = reserve(each * addrs.size());
   if (!p) {
      return;
   }
   for (auto const & a : addrs) {
      std::memcpy(p, a.bytes(), each);
      p += each;
   }
}

void LdpPduWriter::genLabelTlv(std::uint32_t label) noexcept {
   auto t = fixedItem<LdpGenLabelTlv>(LdpTlvType::genLabelTlv);
   t.labelIs(Vorin::MplsLabel(label));
   put(t);
}

void LdpPduWriter::labelReqMsgIdTlv(std::uint32_t msgId) noexcept {
   auto t = fixedItem<LdpLabelReqMsgIdTlv>(LdpTlvType::labelReqMsgIdTlv);
   t.reqMsgIdIs(msgId);
   put(t);
}

void LdpPduWriter::hopCountTlv(std::uint8_t hops) noexcept {
   auto t = fixedItem<LdpHopCountTlv>(LdpTlvType::hopCountTlv);
   t.hopCountIs(hops);
   put(t);
}

void LdpPduWriter::pathVectorTlv(std::span<Vorin::IpAddr const> lsrIds) noexcept {
   std::size_t const length = LdpPathVectorTlv::lsrIdBytes * lsrIds.size();
   if (length > 0xFFFF) {
      failed_ = true;
      return;
   }
   std::uint8_t * p = reserve(LdpPathVectorTlv::wireBytes + length);
   if (!p) {
      return;
   }
   std::memset(p, 0, LdpPathVectorTlv::wireBytes);
   auto & t = viewAt<LdpPathVectorTlv>(p);
   t.typeIs(LdpTlvType::pathVectorTlv);
   t.lengthIs(static_cast<std::uint16_t>(length));
   for (unsigned i = 0; i < lsrIds.size(); ++i) {
      t.lsrIdIs(i, lsrIds[i]);
   }
}

void LdpPduWriter::statusTlv(LdpStatusCode code, bool fatal, bool forward, std::uint32_t msgId,
                             std::uint16_t msgType) noexcept {
   auto t = fixedItem<LdpStatusTlv>(LdpTlvType::statusTlv);
   t.statusDataIs(code);
   t.statusErrorIs(fatal);
   t.statusForwardUnknownIs(forward);
   t.msgIdIs(msgId);
   t.msgTypeNboIs(Vorin::NetU16::fromHost(msgType));
   put(t);
}

void LdpPduWriter::pwStatusTlv(std::uint32_t bits) noexcept {
   auto t = fixedItem<LdpPwStatusTlv>(LdpTlvType::pwStatusTlv);
   t.statusIs(bits);
   put(t);
}

void LdpPduWriter::rawTlv(std::uint16_t typeWord, std::span<std::uint8_t const> value) noexcept {
   tlvBeginWord(typeWord);
   raw(value);
   end();
}

void LdpPduWriter::wildcardElement() noexcept {
   LdpFecTlvWildcardElementHdr e;
   e.typeIs(LdpFecElementType::wildcardElement);
   put(e);
}

void LdpPduWriter::typedWildcardElement(LdpFecElementType fecType, std::uint16_t family) noexcept {
   // Type, the FEC element type it stands for, the length of what follows, and
   // for the IP element types the address family.
   bool const ip = fecType == LdpFecElementType::prefixElement || fecType == LdpFecElementType::hostAddrElement;
   LdpFecTlvElementHdr e;
   e.typeIs(LdpFecElementType::typedWildcardElement);
   put(e);
   std::uint8_t * p = reserve(ip ? 4 : 2);
   if (!p) {
      return;
   }
   p[0] = static_cast<std::uint8_t>(fecType);
   p[1] = ip ? 2 : 0;
   if (ip) {
      Vorin::NetU16 const nbo = Vorin::NetU16::fromHost(family);
      std::memcpy(p + 2, &nbo, sizeof nbo);
   }
}

void LdpPduWriter::prefixElement(Vorin::IpGenPrefix const & prefix) noexcept {
   LdpFecTlvPrefixElementHdr e;
   e.typeIs(LdpFecElementType::prefixElement);
   e.familyIs(prefix.address().isV6() ? Vorin::ipv6_ : Vorin::ipv4_);
   e.prefixBitsIs(static_cast<std::uint8_t>(prefix.length()));
   put(e);
   std::size_t const octets = e.prefixOctets();
   if (std::uint8_t * p = reserve(octets)) {
      std::memcpy(p, prefix.address().bytes(), octets);
   }
}

void LdpPduWriter::hostAddrElement(Vorin::IpGenAddr const & addr) noexcept {
   LdpFecTlvHostAddressElementHdr e;
   e.typeIs(LdpFecElementType::hostAddrElement);
   e.familyIs(addr.isV6() ? Vorin::ipv6_ : Vorin::ipv4_);
   e.hostAddrLenIs(static_cast<std::uint8_t>(addr.byteLength()));
   put(e);
   if (std::uint8_t * p = reserve(addr.byteLength())) {
      std::memcpy(p, addr.bytes(), addr.byteLength());
   }
}

void LdpPduWriter::pwMtuSubTlv(std::uint16_t mtu) noexcept {
   auto s = fixedItem<LdpPwIntfMtuSubTlv>(LdpPwIntfParamSubTlvType::intfMtu);
   s.mtuIs(mtu);
   put(s);
}

void LdpPduWriter::pwDescriptionSubTlv(std::string_view text) noexcept {
   if (text.size() > LdpPwIntfDescSubTlv::maxDescriptionChars) {
      failed_ = true;
      return;
   }
   std::uint8_t * p = reserve(LdpPwIntfDescSubTlv::wireBytes + text.size());
   if (!p) {
      return;
   }
   std::memset(p, 0, LdpPwIntfDescSubTlv::wireBytes);
   auto & s = viewAt<LdpPwIntfDescSubTlv>(p);
   s.typeIs(LdpPwIntfParamSubTlvType::intfDesc);
   s.descriptionIs(text);
}

void LdpPduWriter::pwRequestedVlanIdSubTlv(std::uint16_t vlanId) noexcept {
   auto s = fixedItem<LdpPwRequestedVlanIdSubTlv>(LdpPwIntfParamSubTlvType::requestedVlanId);
   s.vlanIdIs(vlanId);
   put(s);
}

void LdpPduWriter::pwFragIndicatorSubTlv(std::uint16_t bits) noexcept {
   auto s = fixedItem<LdpPwFragIndicatorSubTlv>(LdpPwIntfParamSubTlvType::fragIndicator);
   s.fragIndicatorIs(bits);
   put(s);
}

void LdpPduWriter::pwVccvSubTlv(std::uint8_t ccTypes, std::uint8_t cvTypes) noexcept {
   auto s = fixedItem<LdpPwVccvParamSubTlv>(LdpPwIntfParamSubTlvType::vccvParam);
   s.vccvParamIs(LdpPwVccvParamField(ccTypes, cvTypes));
   put(s);
}

void LdpPduWriter::raw(std::span<std::uint8_t const> bytes) noexcept {
   if (bytes.empty()) {
      return;
   }
   if (std::uint8_t * p = reserve(bytes.size())) {
      std::memcpy(p, bytes.data(), bytes.size());
   }
}

} // namespace Ldp
