#include "PduWriter.h"

#include <cstring>

#include "ldp/wire/LdpPduWriter.h"
#include "zon/Assert.h"

namespace LdpSamples {

using namespace Ldp;

namespace {

// Runs `write` on a library writer over a buffer large enough for any PDU and
// returns what it wrote.
template <typename F>
Bytes written(F && write) {
   Bytes buf(0x10000 + LdpPduHdr::wireBytes);
   LdpPduWriter w(buf);
   write(w);
   ZON_ASSERT(w.ok() && w.depth() == 0);
   buf.resize(w.size());
   return buf;
}

std::span<std::uint8_t const> spanOf(Bytes const & b) {
   return {b.data(), b.size()};
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
   msgs_.push_back(Msg{static_cast<std::uint16_t>((uBit ? 0x8000 : 0) | type), msgId, {}});
   return *this;
}

PduWriter & PduWriter::msg(LdpMsgType type, std::uint32_t msgId, bool uBit) {
   return msgOfType(static_cast<std::uint16_t>(type), msgId, uBit);
}

PduWriter & PduWriter::add(Bytes const & tlv) {
   ZON_ASSERT(!msgs_.empty());
   appendBytes(msgs_.back().body, tlv);
   return *this;
}

Bytes PduWriter::bytes() const {
   return written([&](LdpPduWriter & w) {
      w.pduBegin(id_);
      for (auto const & m : msgs_) {
         w.msgBeginWord(m.typeWord, m.msgId);
         w.raw(spanOf(m.body));
         w.end();
      }
      w.end();
   });
}

namespace Tlv {

Bytes commonHello(std::uint16_t holdTime, bool targeted, bool requestTargeted) {
   return written([&](LdpPduWriter & w) { w.commonHelloTlv(holdTime, targeted, requestTargeted); });
}

Bytes ipv4Transport(Vorin::IpAddr addr) {
   return written([&](LdpPduWriter & w) { w.ipv4TransportTlv(addr); });
}

Bytes ipv6Transport(Vorin::Ip6Addr const & addr) {
   return written([&](LdpPduWriter & w) { w.ipv6TransportTlv(addr); });
}

Bytes configSeqNum(std::uint32_t seq) {
   return written([&](LdpPduWriter & w) { w.configSeqNumTlv(seq); });
}

Bytes sessionParams(std::uint16_t keepAlive, std::uint16_t maxPdu, LdpIdentifier const & receiver, bool loopDetect,
                    std::uint8_t pathVectorLimit) {
   return written(
       [&](LdpPduWriter & w) { w.sessionParamTlv(keepAlive, maxPdu, receiver, loopDetect, pathVectorLimit); });
}

Bytes capability(LdpTlvType type, bool announced) {
   return written([&](LdpPduWriter & w) { w.capabilityTlv(type, announced); });
}

Bytes addressList(std::vector<Vorin::IpGenAddr> const & addrs) {
   return written([&](LdpPduWriter & w) { w.addressListTlv(addrs); });
}

Bytes fec(std::vector<Bytes> const & elements) {
   return written([&](LdpPduWriter & w) {
      w.tlvBegin(LdpTlvType::fecTlv);
      for (auto const & e : elements) {
         w.raw(spanOf(e));
      }
      w.end();
   });
}

Bytes genLabel(std::uint32_t label) {
   return written([&](LdpPduWriter & w) { w.genLabelTlv(label); });
}

Bytes labelRequestMsgId(std::uint32_t msgId) {
   return written([&](LdpPduWriter & w) { w.labelReqMsgIdTlv(msgId); });
}

Bytes hopCount(std::uint8_t hops) {
   return written([&](LdpPduWriter & w) { w.hopCountTlv(hops); });
}

Bytes pathVector(std::vector<Vorin::IpAddr> const & lsrIds) {
   return written([&](LdpPduWriter & w) { w.pathVectorTlv(lsrIds); });
}

Bytes status(LdpStatusCode code, bool fatal, bool forward, std::uint32_t msgId, std::uint16_t msgType) {
   return written([&](LdpPduWriter & w) { w.statusTlv(code, fatal, forward, msgId, msgType); });
}

Bytes pwStatus(std::uint32_t bits) {
   return written([&](LdpPduWriter & w) { w.pwStatusTlv(bits); });
}

Bytes raw(std::uint16_t typeWord, Bytes const & value) {
   return written([&](LdpPduWriter & w) { w.rawTlv(typeWord, spanOf(value)); });
}

} // namespace Tlv

namespace Fec {

Bytes wildcard() {
   return written([&](LdpPduWriter & w) { w.wildcardElement(); });
}

Bytes prefix(Vorin::IpGenPrefix const & p) {
   return written([&](LdpPduWriter & w) { w.prefixElement(p); });
}

Bytes hostAddress(Vorin::IpGenAddr const & a) {
   return written([&](LdpPduWriter & w) { w.hostAddrElement(a); });
}

Bytes pwId(Pseudowire::PseudowireType type, bool controlWord, std::uint32_t groupId, std::uint32_t id,
           std::vector<Bytes> const & subTlvs) {
   return written([&](LdpPduWriter & w) {
      w.pwIdElementBegin(type, controlWord, groupId, id);
      for (auto const & s : subTlvs) {
         w.raw(spanOf(s));
      }
      w.end();
   });
}

Bytes pwMtu(std::uint16_t mtu) {
   return written([&](LdpPduWriter & w) { w.pwMtuSubTlv(mtu); });
}

Bytes pwDescription(std::string_view text) {
   return written([&](LdpPduWriter & w) { w.pwDescriptionSubTlv(text); });
}

Bytes pwVccv(std::uint8_t cc, std::uint8_t cv) {
   return written([&](LdpPduWriter & w) { w.pwVccvSubTlv(cc, cv); });
}

} // namespace Fec

} // namespace LdpSamples
