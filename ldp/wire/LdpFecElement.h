// FEC TLV elements. The wire views lay out the element headers that follow each
// other inside the value of a FEC TLV; like the other headers they are packed
// overlays of received bytes and never check the bytes they are laid over (the FEC
// TLV parser enforces families, prefix lengths and address lengths). The element
// objects are what the parser makes of each accepted element: reference counted,
// filled once by the parser and read-only afterwards.
//
// The pseudowire (PWid) element header, its element object and PwFwdEqvClassInfo
// live in LdpPwHdr.h, which includes this header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "ldp/wire/LdpWireEnums.h"
#include "mpls/FwdEqvClass.h"
#include "vorin/IpAddr.h"
#include "vorin/NetInt.h"
#include "zon/BlockPool.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

// ---------------------------------------------------------------------------
// Wire views
// ---------------------------------------------------------------------------

// The one-octet element type that opens every FEC element.
class LdpFecTlvElementHdrTypeField {
 public:
   static constexpr std::size_t wireBytes = 1;

   constexpr LdpFecTlvElementHdrTypeField() noexcept = default;
   constexpr explicit LdpFecTlvElementHdrTypeField(LdpFecElementType t) noexcept
       : type_(static_cast<std::uint8_t>(t)) {}

   constexpr LdpFecElementType type() const noexcept { return LdpFecElementType(type_); }
   constexpr void typeIs(LdpFecElementType t) noexcept { type_ = static_cast<std::uint8_t>(t); }
   constexpr std::uint8_t value() const noexcept { return type_; }
   constexpr void valueIs(std::uint8_t v) noexcept { type_ = v; }

   // Value('Ldp::LdpFecTlvElementHdrTypeField', ** {'type': prefixElement})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvElementHdrTypeField const &) const noexcept = default;

 private:
   std::uint8_t type_ = 0;
};

// Common head of every FEC element: the type octet. The default type is 0.
class LdpFecTlvElementHdr {
 public:
   static constexpr std::size_t wireBytes = 1;

   constexpr LdpFecTlvElementHdr() noexcept = default;

   constexpr LdpFecTlvElementHdrTypeField typeField() const noexcept { return typeField_; }
   constexpr void typeFieldIs(LdpFecTlvElementHdrTypeField f) noexcept { typeField_ = f; }
   constexpr LdpFecElementType type() const noexcept { return typeField_.type(); }
   constexpr void typeIs(LdpFecElementType t) noexcept { typeField_.typeIs(t); }

   // Value('Ldp::LdpFecTlvElementHdr', ** {'type': wildcardElement})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvElementHdr const &) const noexcept = default;

 private:
   LdpFecTlvElementHdrTypeField typeField_;
};

// The Wildcard element (type 0x01): the type octet and nothing else.
class LdpFecTlvWildcardElementHdr : public LdpFecTlvElementHdr {
 public:
   static constexpr std::size_t wireBytes = 1;

   constexpr LdpFecTlvWildcardElementHdr() noexcept = default;

   // Value('Ldp::LdpFecTlvWildcardElementHdr', ** {'type': wildcardElement})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvWildcardElementHdr const &) const noexcept = default;
};

// The Prefix element (type 0x02):
//    0  type        1 octet
//    1  familyNbo   2 octets, 1 = IPv4, 2 = IPv6
//    3  prefixBits  1 octet, prefix length in bits
//    4  prefix      (prefixBits + 7) / 8 octets, most significant first
// wireBytes is the fixed part; the prefix octets follow it.
class LdpFecTlvPrefixElementHdr : public LdpFecTlvElementHdr {
 public:
   static constexpr std::size_t wireBytes = 4;

   constexpr LdpFecTlvPrefixElementHdr() noexcept = default;

   constexpr Vorin::NetU16 familyNbo() const noexcept { return familyNbo_; }
   constexpr void familyNboIs(Vorin::NetU16 v) noexcept { familyNbo_ = v; }
   constexpr std::uint16_t family() const noexcept { return familyNbo_.value(); }
   constexpr void familyIs(std::uint16_t v) noexcept { familyNbo_.valueIs(v); }
   constexpr std::uint8_t prefixBits() const noexcept { return prefixBits_; }
   constexpr void prefixBitsIs(std::uint8_t v) noexcept { prefixBits_ = v; }

   // Octets of the prefix that follow the fixed part: prefixBits rounded up.
   constexpr std::size_t prefixOctets() const noexcept { return (std::size_t(prefixBits_) + 7) / 8; }
   // Octets of the whole element: 4 + (prefixBits + 7) / 8.
   constexpr std::size_t totalLength() const noexcept { return wireBytes + prefixOctets(); }

   // Value('Ldp::LdpFecTlvPrefixElementHdr', ** {'type': prefixElement, 'family': 1, 'prefixBits': 24})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvPrefixElementHdr const &) const noexcept = default;

 private:
   Vorin::NetU16 familyNbo_;
   std::uint8_t prefixBits_ = 0;
};

// The Host Address element (type 0x03):
//    0  type         1 octet
//    1  familyNbo    2 octets, 1 = IPv4, 2 = IPv6
//    3  hostAddrLen  1 octet, address length in octets (4 or 16)
//    4  address      hostAddrLen octets
// wireBytes is the fixed part; the address follows it.
class LdpFecTlvHostAddressElementHdr : public LdpFecTlvElementHdr {
 public:
   static constexpr std::size_t wireBytes = 4;

   constexpr LdpFecTlvHostAddressElementHdr() noexcept = default;

   constexpr Vorin::NetU16 familyNbo() const noexcept { return familyNbo_; }
   constexpr void familyNboIs(Vorin::NetU16 v) noexcept { familyNbo_ = v; }
   constexpr std::uint16_t family() const noexcept { return familyNbo_.value(); }
   constexpr void familyIs(std::uint16_t v) noexcept { familyNbo_.valueIs(v); }
   constexpr std::uint8_t hostAddrLen() const noexcept { return hostAddrLen_; }
   constexpr void hostAddrLenIs(std::uint8_t v) noexcept { hostAddrLen_ = v; }

   // Octets of the whole element: 4 + hostAddrLen.
   constexpr std::size_t totalLength() const noexcept { return wireBytes + hostAddrLen_; }

   // Value('Ldp::LdpFecTlvHostAddressElementHdr', ** {'type': hostAddrElement, 'family': 1, 'hostAddrLen': 4})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvHostAddressElementHdr const &) const noexcept = default;

 private:
   Vorin::NetU16 familyNbo_;
   std::uint8_t hostAddrLen_ = 0;
};

static_assert(sizeof(LdpFecTlvElementHdrTypeField) == LdpFecTlvElementHdrTypeField::wireBytes &&
              alignof(LdpFecTlvElementHdrTypeField) == 1);
static_assert(sizeof(LdpFecTlvElementHdr) == LdpFecTlvElementHdr::wireBytes && alignof(LdpFecTlvElementHdr) == 1);
static_assert(sizeof(LdpFecTlvWildcardElementHdr) == LdpFecTlvWildcardElementHdr::wireBytes &&
              alignof(LdpFecTlvWildcardElementHdr) == 1);
static_assert(sizeof(LdpFecTlvPrefixElementHdr) == LdpFecTlvPrefixElementHdr::wireBytes &&
              alignof(LdpFecTlvPrefixElementHdr) == 1);
static_assert(sizeof(LdpFecTlvHostAddressElementHdr) == LdpFecTlvHostAddressElementHdr::wireBytes &&
              alignof(LdpFecTlvHostAddressElementHdr) == 1);
static_assert(std::is_trivially_copyable_v<LdpFecTlvElementHdr> &&
              std::is_trivially_copyable_v<LdpFecTlvWildcardElementHdr> &&
              std::is_trivially_copyable_v<LdpFecTlvPrefixElementHdr> &&
              std::is_trivially_copyable_v<LdpFecTlvHostAddressElementHdr>);

// ---------------------------------------------------------------------------
// Element objects
// ---------------------------------------------------------------------------

class PwFwdEqvClassInfo; // LdpPwHdr.h

// True for the element types whose FEC is an IP prefix (and the Wildcard).
constexpr bool isIpFecElementType(LdpFecElementType t) noexcept {
   return t == LdpFecElementType::wildcardElement || t == LdpFecElementType::prefixElement ||
          t == LdpFecElementType::hostAddrElement;
}

// One parsed FEC element. The parser fills it through the setters right after
// creating it and stores it as Zon::Ptr<LdpFecTlvElement const>; from then on it
// is only read.
class LdpFecTlvElement : public Zon::PtrInterface, public Zon::PoolAllocated {
 public:
   using Ptr = Zon::Ptr<LdpFecTlvElement>;
   using PtrConst = Zon::Ptr<LdpFecTlvElement const>;

   virtual LdpFecElementType type() const noexcept = 0;

   // The IP FEC of a Wildcard, Prefix or Host Address element; asserts
   // "fwdEqvCls valid for Ip Fec Tlvs only" on any other element.
   Mpls::FwdEqvClass const & fwdEqvCls() const;
   void fwdEqvClsIs(Mpls::FwdEqvClass const & fec);

   // The pseudowire FEC of a PWid element; asserts
   // "pwFwdEqvCls valid for Pw Fec Tlvs only" on any other element.
   virtual PwFwdEqvClassInfo const & pwFwdEqvCls() const;
   virtual void pwFwdEqvClsIs(PwFwdEqvClassInfo const & info);

   // Every element class gives its own text; this one asserts.
   virtual Zon::String8 stringValue() const;

 protected:
   LdpFecTlvElement() noexcept = default;
   ~LdpFecTlvElement() override = default;

 private:
   Mpls::FwdEqvClass fwdEqvCls_;
};

// The Wildcard element: all FECs of the session. Text "Wildcard".
class LdpFecTlvWildcardElement final : public LdpFecTlvElement {
 public:
   LdpFecElementType type() const noexcept override { return LdpFecElementType::wildcardElement; }
   Zon::String8 stringValue() const override;

 private:
   LdpFecTlvWildcardElement() noexcept = default;
   friend Zon::Ptr<LdpFecTlvWildcardElement> ldpFecTlvWildcardElementFactory();
};

// A Prefix element: fwdEqvCls holds the prefix and its length. Its text is that of
// the prefix, "10.1.0.0/16".
class LdpFecTlvPrefixElement final : public LdpFecTlvElement {
 public:
   LdpFecElementType type() const noexcept override { return LdpFecElementType::prefixElement; }
   Zon::String8 stringValue() const override;

 private:
   explicit LdpFecTlvPrefixElement(Vorin::IpGenPrefix const & prefix);
   friend Zon::Ptr<LdpFecTlvPrefixElement> ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix const &);
};

// A Host Address element: fwdEqvCls holds the address as a full-length prefix,
// and its text is that prefix, "10.0.0.1/32".
class LdpFecTlvHostAddrElement final : public LdpFecTlvElement {
 public:
   LdpFecElementType type() const noexcept override { return LdpFecElementType::hostAddrElement; }
   Zon::String8 stringValue() const override;

 private:
   explicit LdpFecTlvHostAddrElement(Vorin::IpGenAddr const & addr);
   friend Zon::Ptr<LdpFecTlvHostAddrElement> ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr const &);
};

Zon::Ptr<LdpFecTlvWildcardElement> ldpFecTlvWildcardElementFactory();
Zon::Ptr<LdpFecTlvPrefixElement> ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix const & prefix);
Zon::Ptr<LdpFecTlvHostAddrElement> ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr const & addr);

} // namespace Ldp
