// PDU, message and TLV headers: packed views of wire bytes, every multi-byte field
// in network order. They can be laid over any offset of a received buffer or
// filled in field by field; they never check the bytes they are laid over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/NetInt.h"
#include "zon/String.h"

namespace Ldp {

// Text form of a flag word: Value('Ldp::Name', ** {'v0': b0, 'v1': b1, ...}), one
// entry per wire byte, printed as unsigned numbers.
Zon::String8 wireWordText(char const * typeName, std::uint8_t const * bytes, unsigned n);

// Sets or clears one bit of a word from the low bit of `bit`.
template <typename W>
constexpr W withBit(W word, unsigned pos, unsigned bit) noexcept {
   W const mask = static_cast<W>(W(1) << pos);
   return static_cast<W>((bit & 1u) ? (word | mask) : (word & ~mask));
}

class LdpPduHdr {
 public:
   static constexpr std::size_t wireBytes = 10;
   // Bytes of the header that the length field does not count.
   static constexpr std::uint16_t pduHdrSizeExclude = 4;

   constexpr LdpPduHdr() noexcept = default;

   constexpr Vorin::NetU16 versionNbo() const noexcept { return versionNbo_; }
   constexpr void versionNboIs(Vorin::NetU16 v) noexcept { versionNbo_ = v; }
   constexpr Vorin::NetU16 lengthNbo() const noexcept { return lengthNbo_; }
   constexpr void lengthNboIs(Vorin::NetU16 v) noexcept { lengthNbo_ = v; }
   constexpr LdpIdentifier ldpIdentifier() const noexcept { return ldpIdentifier_; }
   constexpr void ldpIdentifierIs(LdpIdentifier const & id) noexcept { ldpIdentifier_ = id; }

   constexpr std::uint16_t version() const noexcept { return versionNbo_.value(); }
   constexpr void versionIs(std::uint16_t v) noexcept { versionNbo_.valueIs(v); }
   constexpr std::uint16_t length() const noexcept { return lengthNbo_.value(); }
   constexpr void lengthIs(std::uint16_t v) noexcept { lengthNbo_.valueIs(v); }
   // Bytes that the whole PDU occupies; 16-bit, so a length of 0xFFFC wraps to 0.
   constexpr std::uint16_t totalLength() const noexcept {
      return static_cast<std::uint16_t>(length() + pduHdrSizeExclude);
   }

   // "LdpPduHdr: Ver(1),Len(30),LdpId: 10.0.0.1:0"
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPduHdr const &) const noexcept = default;

 private:
   Vorin::NetU16 versionNbo_;
   Vorin::NetU16 lengthNbo_;
   LdpIdentifier ldpIdentifier_;
};

// First word of a message header: U bit (15) and message type (14..0).
class LdpHdrMsgUbitAndTypeField {
 public:
   constexpr LdpHdrMsgUbitAndTypeField() noexcept = default;
   constexpr explicit LdpHdrMsgUbitAndTypeField(std::uint16_t word) noexcept
       : word_(Vorin::NetU16::fromHost(word)) {}

   constexpr std::uint16_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint16_t v) noexcept { word_.valueIs(v); }

   constexpr bool unknown() const noexcept { return value() >> 15; }
   constexpr void unknownIs(unsigned bit) noexcept { valueIs(withBit<std::uint16_t>(value(), 15, bit)); }
   constexpr LdpMsgType type() const noexcept { return LdpMsgType(value() & 0x7FFF); }
   constexpr void typeIs(LdpMsgType t) noexcept {
      valueIs(static_cast<std::uint16_t>((value() & 0x8000) | (std::uint16_t(t) & 0x7FFF)));
   }

   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpHdrMsgUbitAndTypeField const & o) const noexcept {
      return value() <=> o.value();
   }
   constexpr bool operator==(LdpHdrMsgUbitAndTypeField const & o) const noexcept {
      return value() == o.value();
   }

 private:
   Vorin::NetU16 word_;
};

class LdpMsgHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::size_t ldpMsgHdrSize = 8;
   // Bytes of the header that the length field does not count (type and length).
   static constexpr std::uint16_t msgHdrSizeExclude = 4;

   constexpr LdpMsgHdr() noexcept = default;

   constexpr LdpHdrMsgUbitAndTypeField msgUbitAndTypeField() const noexcept { return typeField_; }
   constexpr void msgUbitAndTypeFieldIs(LdpHdrMsgUbitAndTypeField f) noexcept { typeField_ = f; }
   constexpr Vorin::NetU16 lengthNbo() const noexcept { return lengthNbo_; }
   constexpr void lengthNboIs(Vorin::NetU16 v) noexcept { lengthNbo_ = v; }
   constexpr Vorin::NetU32 msgIdNbo() const noexcept { return msgIdNbo_; }
   constexpr void msgIdNboIs(Vorin::NetU32 v) noexcept { msgIdNbo_ = v; }

   constexpr LdpMsgType type() const noexcept { return typeField_.type(); }
   constexpr void typeIs(LdpMsgType t) noexcept { typeField_.typeIs(t); }
   constexpr bool unknown() const noexcept { return typeField_.unknown(); }
   constexpr void unknownIs(unsigned bit) noexcept { typeField_.unknownIs(bit); }
   constexpr std::uint16_t length() const noexcept { return lengthNbo_.value(); }
   constexpr void lengthIs(std::uint16_t v) noexcept { lengthNbo_.valueIs(v); }
   constexpr std::uint32_t msgId() const noexcept { return msgIdNbo_.value(); }
   constexpr void msgIdIs(std::uint32_t v) noexcept { msgIdNbo_.valueIs(v); }
   // Bytes that the whole message occupies; 16-bit, wraps like the wire field.
   constexpr std::uint16_t totalLength() const noexcept {
      return static_cast<std::uint16_t>(length() + msgHdrSizeExclude);
   }

   constexpr bool operator==(LdpMsgHdr const &) const noexcept = default;

 private:
   LdpHdrMsgUbitAndTypeField typeField_;
   Vorin::NetU16 lengthNbo_;
   Vorin::NetU32 msgIdNbo_;
};

// First word of a TLV header: U bit (15), F bit (14), TLV type (13..0).
class LdpTlvTypeField {
 public:
   constexpr LdpTlvTypeField() noexcept = default;
   constexpr explicit LdpTlvTypeField(std::uint16_t word) noexcept : word_(Vorin::NetU16::fromHost(word)) {}

   constexpr std::uint16_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint16_t v) noexcept { word_.valueIs(v); }

   constexpr bool unknown() const noexcept { return (value() >> 15) & 1; }
   constexpr void unknownIs(unsigned bit) noexcept { valueIs(withBit<std::uint16_t>(value(), 15, bit)); }
   constexpr bool forwardUnknown() const noexcept { return (value() >> 14) & 1; }
   constexpr void forwardUnknownIs(unsigned bit) noexcept { valueIs(withBit<std::uint16_t>(value(), 14, bit)); }
   constexpr LdpTlvType type() const noexcept { return LdpTlvType(value() & 0x3FFF); }
   constexpr void typeIs(LdpTlvType t) noexcept {
      valueIs(static_cast<std::uint16_t>((value() & 0xC000) | (std::uint16_t(t) & 0x3FFF)));
   }

   Zon::String8 stringValue() const;

   constexpr auto operator<=>(LdpTlvTypeField const & o) const noexcept { return value() <=> o.value(); }
   constexpr bool operator==(LdpTlvTypeField const & o) const noexcept { return value() == o.value(); }

 private:
   Vorin::NetU16 word_;
};

class LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 4;
   // Bytes of the header that the length field does not count.
   static constexpr std::uint16_t tlvHdrSizeExclude = 4;

   constexpr LdpTlvHdr() noexcept = default;

   constexpr LdpTlvTypeField tlvTypeField() const noexcept { return typeField_; }
   constexpr void tlvTypeFieldIs(LdpTlvTypeField f) noexcept { typeField_ = f; }
   constexpr Vorin::NetU16 lengthNbo() const noexcept { return lengthNbo_; }
   constexpr void lengthNboIs(Vorin::NetU16 v) noexcept { lengthNbo_ = v; }

   constexpr LdpTlvType type() const noexcept { return typeField_.type(); }
   constexpr void typeIs(LdpTlvType t) noexcept { typeField_.typeIs(t); }
   constexpr bool unknown() const noexcept { return typeField_.unknown(); }
   constexpr void unknownIs(unsigned bit) noexcept { typeField_.unknownIs(bit); }
   constexpr bool forwardUnknown() const noexcept { return typeField_.forwardUnknown(); }
   constexpr void forwardUnknownIs(unsigned bit) noexcept { typeField_.forwardUnknownIs(bit); }
   constexpr std::uint16_t length() const noexcept { return lengthNbo_.value(); }
   constexpr void lengthIs(std::uint16_t v) noexcept { lengthNbo_.valueIs(v); }
   // Bytes that the whole TLV occupies; 16-bit, so a length of 0xFFFC wraps to 0.
   constexpr std::uint16_t totalLength() const noexcept {
      return static_cast<std::uint16_t>(length() + tlvHdrSizeExclude);
   }

   // success for the 34 known TLV types; otherwise unknownMessageTypeIgnore when
   // the U bit is set (skip silently), unknownTlv when it is clear.
   constexpr LdpStatusCode validateTlvHdr() const noexcept {
      if (isKnownTlvType(static_cast<std::uint16_t>(type()))) {
         return LdpStatusCode::success;
      }
      return unknown() ? LdpStatusCode::unknownMessageTypeIgnore : LdpStatusCode::unknownTlv;
   }

   constexpr bool operator==(LdpTlvHdr const &) const noexcept = default;

 private:
   LdpTlvTypeField typeField_;
   Vorin::NetU16 lengthNbo_;
};

static_assert(sizeof(LdpPduHdr) == LdpPduHdr::wireBytes && alignof(LdpPduHdr) == 1);
static_assert(sizeof(LdpHdrMsgUbitAndTypeField) == 2 && alignof(LdpHdrMsgUbitAndTypeField) == 1);
static_assert(sizeof(LdpMsgHdr) == LdpMsgHdr::wireBytes && alignof(LdpMsgHdr) == 1);
static_assert(sizeof(LdpTlvTypeField) == 2 && alignof(LdpTlvTypeField) == 1);
static_assert(sizeof(LdpTlvHdr) == LdpTlvHdr::wireBytes && alignof(LdpTlvHdr) == 1);
static_assert(std::is_trivially_copyable_v<LdpPduHdr> && std::is_trivially_copyable_v<LdpMsgHdr> &&
              std::is_trivially_copyable_v<LdpTlvHdr>);

} // namespace Ldp
