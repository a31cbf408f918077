#include "ldp/wire/LdpPwHdr.h"

#include <cstring>

#include "zon/Assert.h"
#include "zon/Value.h"

namespace Ldp {

namespace {

// The octets right after a view of `wireBytes` octets; the view lies in place over
// a buffer that holds them (see the top of LdpPwHdr.h).
template <typename View>
std::uint8_t const * trailingBytes(View const * v) noexcept {
   return reinterpret_cast<std::uint8_t const *>(v) + View::wireBytes;
}

template <typename View>
std::uint8_t * trailingBytes(View * v) noexcept {
   return reinterpret_cast<std::uint8_t *>(v) + View::wireBytes;
}

LdpStatusCode exactLength(std::uint8_t length, std::uint8_t required) {
   return length == required ? LdpStatusCode::success : LdpStatusCode::badTlvLength;
}

} // namespace

// ---------------------------------------------------------------------------
// PWid FEC element

Zon::String8 LdpFecTlvPwIdElementHdrTypeField::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvPwIdElementHdrTypeField")
       .field("controlWord", controlWord())
       .field("pwType", pwType())
       .str();
}

Pseudowire::PseudowireId LdpFecTlvPwIdElementHdr::pwId() const {
   ZON_ASSERT(pwInfoLen() >= 4);
   Vorin::NetU32 id;
   std::memcpy(&id, trailingBytes(this), pwIdBytes);
   return Pseudowire::PseudowireId(id.value());
}

void LdpFecTlvPwIdElementHdr::pwIdIs(Pseudowire::PseudowireId id) {
   ZON_ASSERT(pwInfoLen() >= 4);
   Vorin::NetU32 const nbo = Vorin::NetU32::fromHost(id.value());
   std::memcpy(trailingBytes(this), &nbo, pwIdBytes);
}

Zon::String8 LdpFecTlvPwIdElementHdr::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvPwIdElementHdr")
       .field("type", type())
       .field("controlWord", controlWord())
       .field("pwType", pwType())
       .field("pwInfoLen", pwInfoLen())
       .field("groupId", groupId())
       .str();
}

// ---------------------------------------------------------------------------
// Interface parameter sub-TLVs

Zon::String8 LdpPwIntfParamSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwIntfParamSubTlv").field("type", type()).field("length", length()).str();
}

LdpStatusCode LdpPwIntfMtuSubTlv::validate() const {
   ZON_ASSERT_TEXT(type() == LdpPwIntfParamSubTlvType::intfMtu, "type() == Ldp::intfMtu_");
   return exactLength(length(), requiredLength);
}

Zon::String8 LdpPwIntfMtuSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwIntfMtuSubTlv")
       .field("type", type())
       .field("length", length())
       .field("mtu", mtu())
       .str();
}

namespace {

// Characters of the description text: at most length - 2 octets, ending early at
// a NUL. Reads only the octets that the length covers.
std::size_t descriptionChars(LdpPwIntfDescSubTlv const & d) noexcept {
   std::size_t const room =
       d.length() > LdpPwIntfDescSubTlv::minLength ? std::size_t(d.length() - LdpPwIntfDescSubTlv::minLength) : 0;
   if (room == 0) {
      return 0;
   }
   auto const * text = trailingBytes(&d);
   auto const * nul = static_cast<std::uint8_t const *>(std::memchr(text, '\0', room));
   return nul ? std::size_t(nul - text) : room;
}

} // namespace

Zon::String8 LdpPwIntfDescSubTlv::description() const {
   return Zon::String8(reinterpret_cast<char const *>(trailingBytes(this)), descriptionChars(*this));
}

void LdpPwIntfDescSubTlv::descriptionIs(std::string_view text) {
   ZON_ASSERT(text.size() <= maxDescriptionChars);
   if (!text.empty()) {
      std::memcpy(trailingBytes(this), text.data(), text.size());
   }
   lengthIs(static_cast<std::uint8_t>(minLength + text.size()));
}

LdpStatusCode LdpPwIntfDescSubTlv::validate() const {
   ZON_ASSERT_TEXT(type() == LdpPwIntfParamSubTlvType::intfDesc, "type() == Ldp::intfDesc_");
   if (length() < minLength || length() > maxLength) {
      return LdpStatusCode::badTlvLength;
   }
   // Counted in place: the parse path validates every description, so no string
   // is built just to measure it.
   return descriptionChars(*this) == std::size_t(length() - minLength) ? LdpStatusCode::success
                                                                       : LdpStatusCode::badTlvLength;
}

Zon::String8 LdpPwIntfDescSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwIntfDescSubTlv")
       .field("type", type())
       .field("length", length())
       .field("description", description())
       .str();
}

LdpStatusCode LdpPwRequestedVlanIdSubTlv::validate() const {
   ZON_ASSERT_TEXT(type() == LdpPwIntfParamSubTlvType::requestedVlanId, "type() == Ldp::requestedVlanId_");
   return exactLength(length(), requiredLength);
}

Zon::String8 LdpPwRequestedVlanIdSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwRequestedVlanIdSubTlv")
       .field("type", type())
       .field("length", length())
       .field("vlanId", vlanId())
       .str();
}

LdpStatusCode LdpPwFragIndicatorSubTlv::validate() const {
   ZON_ASSERT_TEXT(type() == LdpPwIntfParamSubTlvType::fragIndicator, "type() == Ldp::fragIndicator_");
   return exactLength(length(), requiredLength);
}

Zon::String8 LdpPwFragIndicatorSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwFragIndicatorSubTlv")
       .field("type", type())
       .field("length", length())
       .field("fragIndicator", fragIndicator())
       .str();
}

Zon::String8 LdpPwVccvParamField::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwVccvParamField").field("ccTypes", ccTypes_).field("cvTypes", cvTypes_).str();
}

LdpStatusCode LdpPwVccvParamSubTlv::validate() const {
   ZON_ASSERT_TEXT(type() == LdpPwIntfParamSubTlvType::vccvParam, "type() == Ldp::vccvParam_");
   return exactLength(length(), requiredLength);
}

Zon::String8 LdpPwVccvParamSubTlv::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwVccvParamSubTlv")
       .field("type", type())
       .field("length", length())
       .field("vccvParam", vccvParam_)
       .str();
}

// ---------------------------------------------------------------------------
// What a PWid element carries

Zon::String8 LdpPwIntfParamFlags::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwIntfParamFlags")
       .field("intfMtu", intfMtu_)
       .field("intfDesc", intfDesc_)
       .field("requestedVlanId", requestedVlanId_)
       .field("fragIndicator", fragIndicator_)
       .field("vccvParam", vccvParam_)
       .str();
}

Zon::String8 PwFwdEqvClassParams::stringValue() const {
   return Zon::ValueText("Ldp::PwFwdEqvClassParams")
       .field("groupId", groupId_)
       .field("mtu", mtu_)
       .field("intfDescription", intfDescription_)
       .field("requestedVlanId", requestedVlanId_)
       .field("fragCapable", fragCapable_)
       .field("vccvCcTypes", vccvCcTypes_)
       .field("vccvCvTypes", vccvCvTypes_)
       .str();
}

Zon::String8 PwFwdEqvClassInfo::stringValue() const {
   return Zon::ValueText("Ldp::PwFwdEqvClassInfo")
       .field("pwType", pwType_)
       .field("controlWord", controlWord_)
       .field("groupId", groupId_)
       .field("pwId", pwId_)
       .field("params", params_)
       .str();
}

Zon::String8 LdpFecTlvPwIdElement::stringValue() const { return pwFwdEqvCls_.stringValue(); }

Zon::Ptr<LdpFecTlvPwIdElement> ldpFecTlvPwIdElementFactory(PwFwdEqvClassInfo const & info) {
   return Zon::validPtr(Zon::Ptr<LdpFecTlvPwIdElement>(new LdpFecTlvPwIdElement(info)));
}

Zon::Ptr<LdpFecTlvPwIdElement> ldpFecTlvPwIdElementFactory() {
   return ldpFecTlvPwIdElementFactory(PwFwdEqvClassInfo());
}

// ---------------------------------------------------------------------------
// PW Status TLV

Zon::String8 LdpPwStatusField::stringValue() const {
   return Zon::ValueText("Ldp::LdpPwStatusField").field("status", value()).str();
}

Zon::String8 LdpPwStatusTlv::stringValue() const {
   LdpStatusCode const code = validate();
   if (code != LdpStatusCode::success) {
      return Zon::String8("Error LdpPwStatusTlv: " + Ldp::stringValue(code));
   }
   return Zon::format("LdpPwStatusTlv: 0x%.8x", static_cast<unsigned>(status()));
}

} // namespace Ldp
