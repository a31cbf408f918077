// The send side's builder of LDP PDUs. It writes into a buffer that the caller
// owns, from the same wire types that the parsers lay over received bytes, and
// never allocates.
//
// PDUs, messages, TLVs and PWid FEC elements are scopes: begin...() writes the
// header with a zero length and end() fills the length in once the scope's
// contents are known. Everything else (fixed TLVs, FEC elements, PW interface
// parameter sub-TLVs, raw bytes) is written whole at the current position, inside
// whatever scope is open.
//
// Running out of buffer, closing a scope that is not open, a length its field
// cannot hold or too deep a nesting is a failure that sticks: the writer writes
// nothing more, never past the end of the buffer, and size() is 0 from then on.
// The caller checks ok() or size() once, after the last end().
//
//    LdpPduWriter w(buffer);
//    w.pduBegin(id);
//    w.msgBegin(LdpMsgType::LdpLabelMapping, 7);
//    w.tlvBegin(LdpTlvType::fecTlv);
//    w.prefixElement(prefix);
//    w.end();                 // FEC TLV
//    w.genLabelTlv(24001);
//    w.end();                 // message
//    w.end();                 // PDU
//    std::size_t n = w.size(); // 0 when the buffer was too small
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "pseudowire/PseudowireTypes.h"
#include "vorin/IpAddr.h"

namespace Ldp {

class LdpPduWriter {
 public:
   // Scopes that may be open at once: PDU > message > TLV > PWid element, and
   // room for TLVs nested in TLVs.
   static constexpr unsigned maxDepth = 8;

   explicit LdpPduWriter(std::span<std::uint8_t> buffer) noexcept : buf_(buffer.data()), cap_(buffer.size()) {}
   LdpPduWriter(LdpPduWriter const &) = delete;
   LdpPduWriter & operator=(LdpPduWriter const &) = delete;

   // False once anything failed.
   bool ok() const noexcept { return !failed_; }
   // Bytes written so far; 0 after a failure.
   std::size_t size() const noexcept { return failed_ ? 0 : pos_; }
   std::span<std::uint8_t const> bytes() const noexcept { return {buf_, size()}; }
   // Scopes open now.
   unsigned depth() const noexcept { return depth_; }
   // Starts over at the beginning of the buffer, the failure cleared.
   void reset() noexcept {
      pos_ = 0;
      depth_ = 0;
      failed_ = false;
   }

   // --- scopes -------------------------------------------------------------
   // A PDU of version 1 (or `version`).
   void pduBegin(LdpIdentifier const & id, std::uint16_t version = 1) noexcept;
   void msgBegin(LdpMsgType type, std::uint32_t msgId, bool uBit = false) noexcept {
      msgBeginWord(static_cast<std::uint16_t>((uBit ? 0x8000u : 0u) | (std::uint16_t(type) & 0x7FFFu)), msgId);
   }
   // A message whose first 16 bits (U bit and type) are `typeWord`.
   void msgBeginWord(std::uint16_t typeWord, std::uint32_t msgId) noexcept;
   void tlvBegin(LdpTlvType type, bool uBit = false, bool fBit = false) noexcept {
      tlvBeginWord(tlvWord(type, uBit, fBit));
   }
   // A TLV whose first 16 bits (U and F bits and type) are `typeWord`.
   void tlvBeginWord(std::uint16_t typeWord) noexcept;
   // A PWid FEC element: its PW information length counts the PW id and the
   // interface parameter sub-TLVs written before end().
   void pwIdElementBegin(Pseudowire::PseudowireType type, bool controlWord, std::uint32_t groupId,
                         std::uint32_t pwId) noexcept;
   // Closes the innermost scope and fills its length field.
   void end() noexcept;

   // --- TLVs written whole ---------------------------------------------------
   void commonHelloTlv(std::uint16_t holdTime, bool targeted, bool requestTargeted) noexcept;
   void ipv4TransportTlv(Vorin::IpAddr addr) noexcept;
   void ipv6TransportTlv(Vorin::Ip6Addr const & addr) noexcept;
   void configSeqNumTlv(std::uint32_t seq) noexcept;
   void sessionParamTlv(std::uint16_t keepAlive, std::uint16_t maxPdu, LdpIdentifier const & receiver,
                        bool loopDetect, std::uint8_t pathVectorLimit, bool downstreamOnDemand = false) noexcept;
   // A capability parameter TLV; it carries the U bit (a peer without the
   // capability ignores it), and `announced` is its S bit.
   void capabilityTlv(LdpTlvType type, bool announced) noexcept;
   // The addresses, all of one family (IPv4 when empty); mixed families fail.
   void addressListTlv(std::span<Vorin::IpGenAddr const> addrs) noexcept;
   void genLabelTlv(std::uint32_t label) noexcept;
   void labelReqMsgIdTlv(std::uint32_t msgId) noexcept;
   void hopCountTlv(std::uint8_t hops) noexcept;
   void pathVectorTlv(std::span<Vorin::IpAddr const> lsrIds) noexcept;
   // `msgType` is the type word of the message the status is about (0 for none).
   void statusTlv(LdpStatusCode code, bool fatal, bool forward, std::uint32_t msgId, std::uint16_t msgType) noexcept;
   void pwStatusTlv(std::uint32_t bits) noexcept;
   // A TLV of any type word with the given value.
   void rawTlv(std::uint16_t typeWord, std::span<std::uint8_t const> value) noexcept;

   // --- FEC elements (inside a FEC TLV) --------------------------------------
   void wildcardElement() noexcept;
   // A Typed Wildcard element: the FEC element type it stands for, and the
   // address family of the Prefix and Host Address types.
   void typedWildcardElement(LdpFecElementType fecType, std::uint16_t family) noexcept;
   void prefixElement(Vorin::IpGenPrefix const & prefix) noexcept;
   void hostAddrElement(Vorin::IpGenAddr const & addr) noexcept;

   // --- PW interface parameter sub-TLVs (inside a PWid element) ---------------
   void pwMtuSubTlv(std::uint16_t mtu) noexcept;
   // At most LdpPwIntfDescSubTlv::maxDescriptionChars characters; more fail.
   void pwDescriptionSubTlv(std::string_view text) noexcept;
   void pwRequestedVlanIdSubTlv(std::uint16_t vlanId) noexcept;
   void pwFragIndicatorSubTlv(std::uint16_t bits) noexcept;
   void pwVccvSubTlv(std::uint8_t ccTypes, std::uint8_t cvTypes) noexcept;

   // Bytes as they are, e.g. an element or TLV built elsewhere.
   void raw(std::span<std::uint8_t const> bytes) noexcept;

   static constexpr std::uint16_t tlvWord(LdpTlvType type, bool uBit, bool fBit) noexcept {
      return static_cast<std::uint16_t>((uBit ? 0x8000u : 0u) | (fBit ? 0x4000u : 0u) |
                                        (std::uint16_t(type) & 0x3FFFu));
   }

 private:
   enum class Kind : std::uint8_t { pdu, msg, tlv, pwId };
   struct Scope {
      std::size_t start;
      Kind kind;
   };

   // Room for `n` more bytes at the current position, or null (and failed).
   std::uint8_t * reserve(std::size_t n) noexcept {
      if (failed_ || n > cap_ - pos_) {
         failed_ = true;
         return nullptr;
      }
      std::uint8_t * p = buf_ + pos_;
      pos_ += n;
      return p;
   }
   // Copies a filled wire structure to the current position.
   template <typename T>
   void put(T const & wire) noexcept {
      static_assert(sizeof(T) == T::wireBytes);
      if (std::uint8_t * p = reserve(sizeof(T))) {
         std::memcpy(p, &wire, sizeof(T));
      }
   }
   void open(Kind kind, std::size_t start) noexcept;

   std::uint8_t * buf_;
   std::size_t cap_;
   std::size_t pos_ = 0;
   Scope scopes_[maxDepth] = {};
   unsigned depth_ = 0;
   bool failed_ = false;
};

} // namespace Ldp
