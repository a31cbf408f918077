// Builds LDP PDUs for sample and test captures with libLdp's PDU writer
// (ldp/wire/LdpPduWriter.h): each TLV, FEC element and sub-TLV comes back as its
// bytes, so that the samples can combine, split and damage them; the PDU and
// message lengths are filled in by the library writer. Faulty PDUs are made by
// building a good one and then changing the bytes that the fault is about.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "pseudowire/PseudowireTypes.h"
#include "vorin/IpAddr.h"

namespace LdpSamples {

using Bytes = std::vector<std::uint8_t>;

// Appends bytes by resize and copy. vector::insert of short vectors makes GCC 12
// at -O3 warn about bounds it cannot see (a known false alarm).
void appendBytes(Bytes & to, void const * p, std::size_t n);
inline void appendBytes(Bytes & to, Bytes const & b) {
   appendBytes(to, b.data(), b.size());
}

class PduWriter {
 public:
   explicit PduWriter(Ldp::LdpIdentifier const & id) : id_(id) {}

   // Starts a message; the TLVs added next belong to it.
   PduWriter & msg(Ldp::LdpMsgType type, std::uint32_t msgId, bool uBit = false);
   // A message with any 15-bit type (unknown types for fault samples).
   PduWriter & msgOfType(std::uint16_t type, std::uint32_t msgId, bool uBit);
   PduWriter & add(Bytes const & tlv);

   // The PDU: version 1, lengths filled in.
   Bytes bytes() const;

 private:
   struct Msg {
      std::uint16_t typeWord;  // U bit and type
      std::uint32_t msgId;
      Bytes body;              // TLVs
   };
   Ldp::LdpIdentifier id_;
   std::vector<Msg> msgs_;
};

// TLVs, each built from its wire type.
namespace Tlv {
Bytes commonHello(std::uint16_t holdTime, bool targeted, bool requestTargeted);
Bytes ipv4Transport(Vorin::IpAddr addr);
Bytes ipv6Transport(Vorin::Ip6Addr const & addr);
Bytes configSeqNum(std::uint32_t seq);
Bytes sessionParams(std::uint16_t keepAlive, std::uint16_t maxPdu, Ldp::LdpIdentifier const & receiver,
                    bool loopDetect, std::uint8_t pathVectorLimit);
Bytes capability(Ldp::LdpTlvType type, bool announced);
Bytes addressList(std::vector<Vorin::IpGenAddr> const & addrs);
Bytes fec(std::vector<Bytes> const & elements);
Bytes genLabel(std::uint32_t label);
Bytes labelRequestMsgId(std::uint32_t msgId);
Bytes hopCount(std::uint8_t hops);
Bytes pathVector(std::vector<Vorin::IpAddr> const & lsrIds);
Bytes status(Ldp::LdpStatusCode code, bool fatal, bool forward, std::uint32_t msgId, std::uint16_t msgType);
Bytes pwStatus(std::uint32_t bits);
// A TLV of any type with the given value bytes (unknown types for fault samples).
Bytes raw(std::uint16_t typeWord, Bytes const & value);
} // namespace Tlv

// FEC elements and pseudowire interface parameter sub-TLVs.
namespace Fec {
Bytes wildcard();
Bytes prefix(Vorin::IpGenPrefix const & prefix);
Bytes hostAddress(Vorin::IpGenAddr const & addr);
Bytes pwId(Pseudowire::PseudowireType type, bool controlWord, std::uint32_t groupId, std::uint32_t pwId,
           std::vector<Bytes> const & subTlvs);
Bytes pwMtu(std::uint16_t mtu);
Bytes pwDescription(std::string_view text);
Bytes pwVccv(std::uint8_t cc, std::uint8_t cv);
} // namespace Fec

} // namespace LdpSamples
