// Pseudowire encodings: the PWid FEC element, the interface parameter sub-TLVs
// that trail it, the PW Status TLV, and the values that a parsed PWid element
// yields (PwFwdEqvClassParams, PwFwdEqvClassInfo) together with its element object.
//
// The views are packed overlays of received bytes, multi-octet fields in network
// order. A few of them (the PW ID of the PWid element, the text of the description
// sub-TLV) have a variable part that follows the fixed part: its accessors read
// the bytes right after the view, so such a view must be used in place, laid over
// the buffer that holds those bytes, never on a copy. The caller checks first that
// the buffer holds them (the FEC TLV parser does).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "ldp/wire/LdpFecElement.h"
#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpWireEnums.h"
#include "pseudowire/PseudowireTypes.h"
#include "vorin/NetInt.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

// ---------------------------------------------------------------------------
// PWid FEC element
// ---------------------------------------------------------------------------

// The 16-bit word after the element type: control-word (C) bit 15, PW type 14..0.
class LdpFecTlvPwIdElementHdrTypeField {
 public:
   static constexpr std::size_t wireBytes = 2;

   constexpr LdpFecTlvPwIdElementHdrTypeField() noexcept = default;
   constexpr explicit LdpFecTlvPwIdElementHdrTypeField(std::uint16_t word) noexcept
       : word_(Vorin::NetU16::fromHost(word)) {}

   constexpr std::uint16_t value() const noexcept { return word_.value(); }
   constexpr void valueIs(std::uint16_t v) noexcept { word_.valueIs(v); }

   constexpr bool controlWord() const noexcept { return (value() >> 15) & 1; }
   constexpr void controlWordIs(bool c) noexcept { valueIs(withBit<std::uint16_t>(value(), 15, c ? 1u : 0u)); }
   constexpr Pseudowire::PseudowireType pwType() const noexcept {
      return Pseudowire::PseudowireType(value() & 0x7FFF);
   }
   constexpr void pwTypeIs(Pseudowire::PseudowireType t) noexcept {
      valueIs(static_cast<std::uint16_t>((value() & 0x8000) | (std::uint16_t(t) & 0x7FFF)));
   }

   // Value('Ldp::LdpFecTlvPwIdElementHdrTypeField', ** {'controlWord': True, 'pwType': ethernet})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvPwIdElementHdrTypeField const &) const noexcept = default;

 private:
   Vorin::NetU16 word_;
};

// The PWid element (type 0x80):
//    0  type        1 octet, 0x80
//    1  pwTypeField 2 octets, C bit and PW type
//    3  pwInfoLen   1 octet, octets after the group ID: PW ID (4) plus the
//                   interface parameter sub-TLVs; 0 means no PW ID
//    4  groupIdNbo  4 octets
//    8  PW ID       4 octets, present only when pwInfoLen >= 4
//   12  interface parameter sub-TLVs, pwInfoLen - 4 octets
// The view covers the 8 octets that are always present (wireBytes). pwId() and
// pwIdIs() reach the 4 octets after them and so need the view laid over a buffer
// that holds them; both assert "pwInfoLen() >= 4". Equality and the text form
// cover the fixed 8 octets only.
class LdpFecTlvPwIdElementHdr : public LdpFecTlvElementHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::size_t pwIdOffset = 8;
   static constexpr std::size_t pwIdBytes = 4;

   constexpr LdpFecTlvPwIdElementHdr() noexcept = default;

   constexpr LdpFecTlvPwIdElementHdrTypeField pwTypeField() const noexcept { return pwTypeField_; }
   constexpr void pwTypeFieldIs(LdpFecTlvPwIdElementHdrTypeField f) noexcept { pwTypeField_ = f; }
   constexpr bool controlWord() const noexcept { return pwTypeField_.controlWord(); }
   constexpr void controlWordIs(bool c) noexcept { pwTypeField_.controlWordIs(c); }
   constexpr Pseudowire::PseudowireType pwType() const noexcept { return pwTypeField_.pwType(); }
   constexpr void pwTypeIs(Pseudowire::PseudowireType t) noexcept { pwTypeField_.pwTypeIs(t); }
   constexpr std::uint8_t pwInfoLen() const noexcept { return pwInfoLen_; }
   constexpr void pwInfoLenIs(std::uint8_t v) noexcept { pwInfoLen_ = v; }
   constexpr Vorin::NetU32 groupIdNbo() const noexcept { return groupIdNbo_; }
   constexpr void groupIdNboIs(Vorin::NetU32 v) noexcept { groupIdNbo_ = v; }
   constexpr Pseudowire::GroupId groupId() const noexcept { return Pseudowire::GroupId(groupIdNbo_.value()); }
   constexpr void groupIdIs(Pseudowire::GroupId g) noexcept { groupIdNbo_.valueIs(g.value()); }

   // The PW ID at offset 8, read from the bytes that follow this view.
   Pseudowire::PseudowireId pwId() const;
   void pwIdIs(Pseudowire::PseudowireId id);

   // Octets of the whole element: 8 + pwInfoLen.
   constexpr std::size_t totalLength() const noexcept { return wireBytes + pwInfoLen_; }

   // Value('Ldp::LdpFecTlvPwIdElementHdr', ** {'type': pwIdElement, 'controlWord': True,
   //    'pwType': ethernet, 'pwInfoLen': 4, 'groupId': 0})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpFecTlvPwIdElementHdr const &) const noexcept = default;

 private:
   LdpFecTlvPwIdElementHdrTypeField pwTypeField_;
   std::uint8_t pwInfoLen_ = 0;
   Vorin::NetU32 groupIdNbo_;
};

// ---------------------------------------------------------------------------
// Interface parameter sub-TLVs
// ---------------------------------------------------------------------------

// Head of every interface parameter sub-TLV: type octet, then a length octet that
// counts the whole sub-TLV, these 2 octets included.
class LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 2;

   constexpr LdpPwIntfParamSubTlv() noexcept = default;

   constexpr LdpPwIntfParamSubTlvType type() const noexcept { return LdpPwIntfParamSubTlvType(type_); }
   constexpr void typeIs(LdpPwIntfParamSubTlvType t) noexcept { type_ = static_cast<std::uint8_t>(t); }
   constexpr std::uint8_t length() const noexcept { return length_; }
   constexpr void lengthIs(std::uint8_t v) noexcept { length_ = v; }

   // Value('Ldp::LdpPwIntfParamSubTlv', ** {'type': intfMtu, 'length': 4})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwIntfParamSubTlv const &) const noexcept = default;

 private:
   std::uint8_t type_ = 0;
   std::uint8_t length_ = 0;
};

// Interface MTU (0x01): 2-octet MTU; length must be 4.
class LdpPwIntfMtuSubTlv : public LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 4;
   static constexpr std::uint8_t requiredLength = 4;

   constexpr LdpPwIntfMtuSubTlv() noexcept = default;

   constexpr Vorin::NetU16 mtuNbo() const noexcept { return mtuNbo_; }
   constexpr void mtuNboIs(Vorin::NetU16 v) noexcept { mtuNbo_ = v; }
   constexpr std::uint16_t mtu() const noexcept { return mtuNbo_.value(); }
   constexpr void mtuIs(std::uint16_t v) noexcept { mtuNbo_.valueIs(v); }

   // Asserts "type() == Ldp::intfMtu_"; badTlvLength unless the length is 4.
   LdpStatusCode validate() const;
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwIntfMtuSubTlv const &) const noexcept = default;

 private:
   Vorin::NetU16 mtuNbo_;
};

// Interface description (0x03): 0 to 80 characters of text after the 2-octet
// head, length 2 to 82. The text is read in place (see the top of this file).
class LdpPwIntfDescSubTlv : public LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 2;
   static constexpr std::uint8_t minLength = 2;
   static constexpr std::uint8_t maxLength = 82;
   static constexpr std::size_t maxDescriptionChars = maxLength - minLength;

   constexpr LdpPwIntfDescSubTlv() noexcept = default;

   // The text after the head: at most length - 2 octets, ending early at a NUL.
   Zon::String8 description() const;
   // Writes the text after the head and sets the length to 2 + its size; the
   // buffer under the view must hold them. Asserts the size is at most 80.
   void descriptionIs(std::string_view text);

   // Asserts "type() == Ldp::intfDesc_"; badTlvLength unless the length is 2 to
   // 82 and description() is exactly length - 2 characters (no embedded NUL).
   LdpStatusCode validate() const;
   // Reads the description in place, like description().
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwIntfDescSubTlv const &) const noexcept = default;
};

// Requested VLAN ID (0x06): 2-octet VLAN ID; length must be 4. The value is not
// range-checked here: VlanIdOrNone refuses 4095 and above when it is taken over.
class LdpPwRequestedVlanIdSubTlv : public LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 4;
   static constexpr std::uint8_t requiredLength = 4;

   constexpr LdpPwRequestedVlanIdSubTlv() noexcept = default;

   constexpr Vorin::NetU16 vlanIdNbo() const noexcept { return vlanIdNbo_; }
   constexpr void vlanIdNboIs(Vorin::NetU16 v) noexcept { vlanIdNbo_ = v; }
   constexpr std::uint16_t vlanId() const noexcept { return vlanIdNbo_.value(); }
   constexpr void vlanIdIs(std::uint16_t v) noexcept { vlanIdNbo_.valueIs(v); }

   // Asserts "type() == Ldp::requestedVlanId_"; badTlvLength unless the length is 4.
   LdpStatusCode validate() const;
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwRequestedVlanIdSubTlv const &) const noexcept = default;

 private:
   Vorin::NetU16 vlanIdNbo_;
};

// Fragmentation indicator (0x09): 2 octets, non-zero when the sender can
// reassemble fragments; length must be 4 (not 2: kept so on purpose, it is what
// peers send).
class LdpPwFragIndicatorSubTlv : public LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 4;
   static constexpr std::uint8_t requiredLength = 4;

   constexpr LdpPwFragIndicatorSubTlv() noexcept = default;

   constexpr Vorin::NetU16 fragIndicatorNbo() const noexcept { return fragIndicatorNbo_; }
   constexpr void fragIndicatorNboIs(Vorin::NetU16 v) noexcept { fragIndicatorNbo_ = v; }
   constexpr std::uint16_t fragIndicator() const noexcept { return fragIndicatorNbo_.value(); }
   constexpr void fragIndicatorIs(std::uint16_t v) noexcept { fragIndicatorNbo_.valueIs(v); }
   constexpr bool fragCapable() const noexcept { return fragIndicator() != 0; }

   // Asserts "type() == Ldp::fragIndicator_"; badTlvLength unless the length is 4.
   LdpStatusCode validate() const;
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwFragIndicatorSubTlv const &) const noexcept = default;

 private:
   Vorin::NetU16 fragIndicatorNbo_;
};

// VCCV parameters: one octet of control channel (CC) types, one of connectivity
// verification (CV) types, each a bit mask.
class LdpPwVccvParamField {
 public:
   static constexpr std::size_t wireBytes = 2;

   constexpr LdpPwVccvParamField() noexcept = default;
   constexpr LdpPwVccvParamField(std::uint8_t cc, std::uint8_t cv) noexcept : ccTypes_(cc), cvTypes_(cv) {}

   constexpr std::uint8_t ccTypes() const noexcept { return ccTypes_; }
   constexpr void ccTypesIs(std::uint8_t v) noexcept { ccTypes_ = v; }
   constexpr std::uint8_t cvTypes() const noexcept { return cvTypes_; }
   constexpr void cvTypesIs(std::uint8_t v) noexcept { cvTypes_ = v; }

   // Value('Ldp::LdpPwVccvParamField', ** {'ccTypes': 1, 'cvTypes': 2})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwVccvParamField const &) const noexcept = default;

 private:
   std::uint8_t ccTypes_ = 0;
   std::uint8_t cvTypes_ = 0;
};

// VCCV parameters (0x0C): LdpPwVccvParamField; length must be 4.
class LdpPwVccvParamSubTlv : public LdpPwIntfParamSubTlv {
 public:
   static constexpr std::size_t wireBytes = 4;
   static constexpr std::uint8_t requiredLength = 4;

   constexpr LdpPwVccvParamSubTlv() noexcept = default;

   constexpr LdpPwVccvParamField vccvParam() const noexcept { return vccvParam_; }
   constexpr void vccvParamIs(LdpPwVccvParamField f) noexcept { vccvParam_ = f; }
   constexpr std::uint8_t ccTypes() const noexcept { return vccvParam_.ccTypes(); }
   constexpr std::uint8_t cvTypes() const noexcept { return vccvParam_.cvTypes(); }

   // Asserts "type() == Ldp::vccvParam_"; badTlvLength unless the length is 4.
   LdpStatusCode validate() const;
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwVccvParamSubTlv const &) const noexcept = default;

 private:
   LdpPwVccvParamField vccvParam_;
};

static_assert(sizeof(LdpFecTlvPwIdElementHdrTypeField) == LdpFecTlvPwIdElementHdrTypeField::wireBytes &&
              alignof(LdpFecTlvPwIdElementHdrTypeField) == 1);
static_assert(sizeof(LdpFecTlvPwIdElementHdr) == LdpFecTlvPwIdElementHdr::wireBytes &&
              alignof(LdpFecTlvPwIdElementHdr) == 1);
static_assert(sizeof(LdpPwIntfParamSubTlv) == LdpPwIntfParamSubTlv::wireBytes && alignof(LdpPwIntfParamSubTlv) == 1);
static_assert(sizeof(LdpPwIntfMtuSubTlv) == LdpPwIntfMtuSubTlv::wireBytes && alignof(LdpPwIntfMtuSubTlv) == 1);
static_assert(sizeof(LdpPwIntfDescSubTlv) == LdpPwIntfDescSubTlv::wireBytes && alignof(LdpPwIntfDescSubTlv) == 1);
static_assert(sizeof(LdpPwRequestedVlanIdSubTlv) == LdpPwRequestedVlanIdSubTlv::wireBytes &&
              alignof(LdpPwRequestedVlanIdSubTlv) == 1);
static_assert(sizeof(LdpPwFragIndicatorSubTlv) == LdpPwFragIndicatorSubTlv::wireBytes &&
              alignof(LdpPwFragIndicatorSubTlv) == 1);
static_assert(sizeof(LdpPwVccvParamField) == LdpPwVccvParamField::wireBytes && alignof(LdpPwVccvParamField) == 1);
static_assert(sizeof(LdpPwVccvParamSubTlv) == LdpPwVccvParamSubTlv::wireBytes && alignof(LdpPwVccvParamSubTlv) == 1);
// The fixed-length sub-TLVs: the length octet counts the whole sub-TLV.
static_assert(LdpPwIntfMtuSubTlv::requiredLength == LdpPwIntfMtuSubTlv::wireBytes &&
              LdpPwRequestedVlanIdSubTlv::requiredLength == LdpPwRequestedVlanIdSubTlv::wireBytes &&
              LdpPwFragIndicatorSubTlv::requiredLength == LdpPwFragIndicatorSubTlv::wireBytes &&
              LdpPwVccvParamSubTlv::requiredLength == LdpPwVccvParamSubTlv::wireBytes);
static_assert(std::is_trivially_copyable_v<LdpFecTlvPwIdElementHdr> &&
              std::is_trivially_copyable_v<LdpPwIntfMtuSubTlv> && std::is_trivially_copyable_v<LdpPwIntfDescSubTlv> &&
              std::is_trivially_copyable_v<LdpPwRequestedVlanIdSubTlv> &&
              std::is_trivially_copyable_v<LdpPwFragIndicatorSubTlv> &&
              std::is_trivially_copyable_v<LdpPwVccvParamSubTlv>);

// ---------------------------------------------------------------------------
// What a PWid element carries
// ---------------------------------------------------------------------------

// One flag per interface parameter sub-TLV type seen in an element.
class LdpPwIntfParamFlags {
 public:
   LdpPwIntfParamFlags() noexcept = default;

   bool intfMtu() const noexcept { return intfMtu_; }
   void intfMtuIs(bool v) noexcept { intfMtu_ = v; }
   bool intfDesc() const noexcept { return intfDesc_; }
   void intfDescIs(bool v) noexcept { intfDesc_ = v; }
   bool requestedVlanId() const noexcept { return requestedVlanId_; }
   void requestedVlanIdIs(bool v) noexcept { requestedVlanId_ = v; }
   bool fragIndicator() const noexcept { return fragIndicator_; }
   void fragIndicatorIs(bool v) noexcept { fragIndicator_ = v; }
   bool vccvParam() const noexcept { return vccvParam_; }
   void vccvParamIs(bool v) noexcept { vccvParam_ = v; }

   // Value('Ldp::LdpPwIntfParamFlags', ** {'intfMtu': True, 'intfDesc': False,
   //    'requestedVlanId': False, 'fragIndicator': False, 'vccvParam': False})
   Zon::String8 stringValue() const;

   bool operator==(LdpPwIntfParamFlags const &) const noexcept = default;

 private:
   bool intfMtu_ = false;
   bool intfDesc_ = false;
   bool requestedVlanId_ = false;
   bool fragIndicator_ = false;
   bool vccvParam_ = false;
};

// The parameters of a pseudowire FEC that the interface parameter sub-TLVs (and
// the group ID) fill. Every field defaults to zero; an MTU of unspecifiedMtu
// means no MTU was signalled.
class PwFwdEqvClassParams {
 public:
   static constexpr std::uint16_t unspecifiedMtu = 0;

   PwFwdEqvClassParams() = default;

   Pseudowire::GroupId groupId() const noexcept { return groupId_; }
   void groupIdIs(Pseudowire::GroupId v) noexcept { groupId_ = v; }
   std::uint16_t mtu() const noexcept { return mtu_; }
   void mtuIs(std::uint16_t v) noexcept { mtu_ = v; }
   Zon::String8 const & intfDescription() const noexcept { return intfDescription_; }
   void intfDescriptionIs(Zon::String8 const & v) { intfDescription_ = v; }
   Pseudowire::VlanIdOrNone requestedVlanId() const noexcept { return requestedVlanId_; }
   void requestedVlanIdIs(Pseudowire::VlanIdOrNone v) noexcept { requestedVlanId_ = v; }
   bool fragCapable() const noexcept { return fragCapable_; }
   void fragCapableIs(bool v) noexcept { fragCapable_ = v; }
   std::uint8_t vccvCcTypes() const noexcept { return vccvCcTypes_; }
   void vccvCcTypesIs(std::uint8_t v) noexcept { vccvCcTypes_ = v; }
   std::uint8_t vccvCvTypes() const noexcept { return vccvCvTypes_; }
   void vccvCvTypesIs(std::uint8_t v) noexcept { vccvCvTypes_ = v; }

   // Value('Ldp::PwFwdEqvClassParams', ** {'groupId': 0, 'mtu': 1500, 'intfDescription': 'ge0',
   //    'requestedVlanId': 0, 'fragCapable': False, 'vccvCcTypes': 0, 'vccvCvTypes': 0})
   Zon::String8 stringValue() const;

   bool operator==(PwFwdEqvClassParams const &) const = default;

 private:
   Pseudowire::GroupId groupId_;
   std::uint16_t mtu_ = unspecifiedMtu;
   Zon::String8 intfDescription_;
   Pseudowire::VlanIdOrNone requestedVlanId_;
   bool fragCapable_ = false;
   std::uint8_t vccvCcTypes_ = 0;
   std::uint8_t vccvCvTypes_ = 0;
};

// The pseudowire FEC of a PWid element: PW type, C bit, group ID, PW ID and the
// interface parameters. The FEC TLV parser writes the group ID both here and in
// the parameters.
class PwFwdEqvClassInfo {
 public:
   PwFwdEqvClassInfo() = default;

   Pseudowire::PseudowireType pwType() const noexcept { return pwType_; }
   void pwTypeIs(Pseudowire::PseudowireType v) noexcept { pwType_ = v; }
   bool controlWord() const noexcept { return controlWord_; }
   void controlWordIs(bool v) noexcept { controlWord_ = v; }
   Pseudowire::GroupId groupId() const noexcept { return groupId_; }
   void groupIdIs(Pseudowire::GroupId v) noexcept { groupId_ = v; }
   Pseudowire::PseudowireId pwId() const noexcept { return pwId_; }
   void pwIdIs(Pseudowire::PseudowireId v) noexcept { pwId_ = v; }
   PwFwdEqvClassParams const & params() const noexcept { return params_; }
   void paramsIs(PwFwdEqvClassParams const & v) { params_ = v; }

   // Value('Ldp::PwFwdEqvClassInfo', ** {'pwType': ethernet, 'controlWord': True,
   //    'groupId': 0, 'pwId': 100, 'params': Value('Ldp::PwFwdEqvClassParams', ** {...})})
   Zon::String8 stringValue() const;

   bool operator==(PwFwdEqvClassInfo const &) const = default;

 private:
   Pseudowire::PseudowireType pwType_ = Pseudowire::PseudowireType::pwTypeUnknown;
   bool controlWord_ = false;
   Pseudowire::GroupId groupId_;
   Pseudowire::PseudowireId pwId_;
   PwFwdEqvClassParams params_;
};

// A PWid element: holds its pseudowire FEC; its text is that of the FEC.
class LdpFecTlvPwIdElement final : public LdpFecTlvElement {
 public:
   LdpFecElementType type() const noexcept override { return LdpFecElementType::pwIdElement; }
   PwFwdEqvClassInfo const & pwFwdEqvCls() const override { return pwFwdEqvCls_; }
   void pwFwdEqvClsIs(PwFwdEqvClassInfo const & info) override { pwFwdEqvCls_ = info; }
   Zon::String8 stringValue() const override;

 private:
   explicit LdpFecTlvPwIdElement(PwFwdEqvClassInfo const & info) : pwFwdEqvCls_(info) {}
   friend Zon::Ptr<LdpFecTlvPwIdElement> ldpFecTlvPwIdElementFactory(PwFwdEqvClassInfo const &);

   PwFwdEqvClassInfo pwFwdEqvCls_;
};

// The parser creates the element empty and fills it once the element has parsed.
Zon::Ptr<LdpFecTlvPwIdElement> ldpFecTlvPwIdElementFactory(PwFwdEqvClassInfo const & info);
Zon::Ptr<LdpFecTlvPwIdElement> ldpFecTlvPwIdElementFactory();

// ---------------------------------------------------------------------------
// PW Status TLV
// ---------------------------------------------------------------------------

// The 32-bit PW status word; each flag is a fault, 0 is pwForwarding.
class LdpPwStatusField {
 public:
   static constexpr std::size_t wireBytes = 4;

   static constexpr std::uint32_t pwForwarding = 0;
   static constexpr std::uint32_t pwNotForwarding = 0x00000001;
   static constexpr std::uint32_t localACIngrRecvFault = 0x00000002;
   static constexpr std::uint32_t localACEgrTransFault = 0x00000004;
   static constexpr std::uint32_t localPsnPwIngrRecvFault = 0x00000008;
   static constexpr std::uint32_t localPsnPwEgrTransFault = 0x00000010;

   constexpr LdpPwStatusField() noexcept = default;
   constexpr explicit LdpPwStatusField(std::uint32_t v) noexcept : statusNbo_(Vorin::NetU32::fromHost(v)) {}

   constexpr Vorin::NetU32 statusNbo() const noexcept { return statusNbo_; }
   constexpr void statusNboIs(Vorin::NetU32 v) noexcept { statusNbo_ = v; }
   constexpr std::uint32_t value() const noexcept { return statusNbo_.value(); }
   constexpr void valueIs(std::uint32_t v) noexcept { statusNbo_.valueIs(v); }

   // True when every bit of `flags` is set.
   constexpr bool flag(std::uint32_t flags) const noexcept { return (value() & flags) == flags; }
   constexpr void flagIs(std::uint32_t flags, bool on) noexcept { valueIs(on ? (value() | flags) : (value() & ~flags)); }
   constexpr bool forwarding() const noexcept { return value() == pwForwarding; }

   // Value('Ldp::LdpPwStatusField', ** {'status': 3})
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwStatusField const &) const noexcept = default;

 private:
   Vorin::NetU32 statusNbo_;
};

// PW Status TLV (0x096A): TLV header and the status word; length must be 4.
class LdpPwStatusTlv : public LdpTlvHdr {
 public:
   static constexpr std::size_t wireBytes = 8;
   static constexpr std::uint16_t requiredLength = 4;

   constexpr LdpPwStatusTlv() noexcept = default;

   constexpr LdpPwStatusField statusField() const noexcept { return statusField_; }
   constexpr void statusFieldIs(LdpPwStatusField f) noexcept { statusField_ = f; }
   constexpr std::uint32_t status() const noexcept { return statusField_.value(); }
   constexpr void statusIs(std::uint32_t v) noexcept { statusField_.valueIs(v); }

   // The TLV header check when it fails, else badTlvLength unless the length is 4.
   constexpr LdpStatusCode validate() const noexcept {
      LdpStatusCode const hdr = validateTlvHdr();
      if (hdr != LdpStatusCode::success) {
         return hdr;
      }
      return length() == requiredLength ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
   }

   // "LdpPwStatusTlv: 0x00000001", or "Error LdpPwStatusTlv: badTlvLength".
   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpPwStatusTlv const &) const noexcept = default;

 private:
   LdpPwStatusField statusField_;
};

static_assert(sizeof(LdpPwStatusField) == LdpPwStatusField::wireBytes && alignof(LdpPwStatusField) == 1);
static_assert(sizeof(LdpPwStatusTlv) == LdpPwStatusTlv::wireBytes && alignof(LdpPwStatusTlv) == 1);
static_assert(LdpPwStatusTlv::requiredLength + LdpTlvHdr::tlvHdrSizeExclude == LdpPwStatusTlv::wireBytes);
static_assert(std::is_trivially_copyable_v<LdpPwStatusTlv>);

} // namespace Ldp
