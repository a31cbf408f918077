#include "ldp/wire/LdpFecElement.h"

#include "ldp/wire/LdpPwHdr.h"
#include "zon/Assert.h"
#include "zon/Value.h"

namespace Ldp {

Zon::String8 LdpFecTlvElementHdrTypeField::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvElementHdrTypeField").field("type", type()).str();
}

Zon::String8 LdpFecTlvElementHdr::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvElementHdr").field("type", type()).str();
}

Zon::String8 LdpFecTlvWildcardElementHdr::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvWildcardElementHdr").field("type", type()).str();
}

Zon::String8 LdpFecTlvPrefixElementHdr::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvPrefixElementHdr")
       .field("type", type())
       .field("family", family())
       .field("prefixBits", prefixBits())
       .str();
}

Zon::String8 LdpFecTlvHostAddressElementHdr::stringValue() const {
   return Zon::ValueText("Ldp::LdpFecTlvHostAddressElementHdr")
       .field("type", type())
       .field("family", family())
       .field("hostAddrLen", hostAddrLen())
       .str();
}

Mpls::FwdEqvClass const & LdpFecTlvElement::fwdEqvCls() const {
   ZON_ASSERT_TEXT(isIpFecElementType(type()), "fwdEqvCls valid for Ip Fec Tlvs only");
   return fwdEqvCls_;
}

void LdpFecTlvElement::fwdEqvClsIs(Mpls::FwdEqvClass const & fec) {
   ZON_ASSERT_TEXT(isIpFecElementType(type()), "fwdEqvCls valid for Ip Fec Tlvs only");
   fwdEqvCls_ = fec;
}

// Only the PWid element holds a pseudowire FEC and overrides these two; reaching
// them means the caller asked the wrong kind of element.
PwFwdEqvClassInfo const & LdpFecTlvElement::pwFwdEqvCls() const {
   ZON_ASSERT_TEXT(false, "pwFwdEqvCls valid for Pw Fec Tlvs only");
}

void LdpFecTlvElement::pwFwdEqvClsIs(PwFwdEqvClassInfo const &) {
   ZON_ASSERT_TEXT(false, "pwFwdEqvCls valid for Pw Fec Tlvs only");
}

Zon::String8 LdpFecTlvElement::stringValue() const {
   ZON_ASSERT_TEXT(false, "Internal Error. To be implemented in derived classes");
}

Zon::String8 LdpFecTlvWildcardElement::stringValue() const { return Zon::String8("Wildcard"); }

LdpFecTlvPrefixElement::LdpFecTlvPrefixElement(Vorin::IpGenPrefix const & prefix) {
   fwdEqvClsIs(Mpls::FwdEqvClass(prefix));
}

Zon::String8 LdpFecTlvPrefixElement::stringValue() const { return fwdEqvCls().prefix().stringValue(); }

LdpFecTlvHostAddrElement::LdpFecTlvHostAddrElement(Vorin::IpGenAddr const & addr) {
   fwdEqvClsIs(Mpls::FwdEqvClass(Vorin::IpGenPrefix(addr, addr.bitLength())));
}

Zon::String8 LdpFecTlvHostAddrElement::stringValue() const { return fwdEqvCls().prefix().stringValue(); }

Zon::Ptr<LdpFecTlvWildcardElement> ldpFecTlvWildcardElementFactory() {
   return Zon::validPtr(Zon::Ptr<LdpFecTlvWildcardElement>(new LdpFecTlvWildcardElement()));
}

Zon::Ptr<LdpFecTlvPrefixElement> ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix const & prefix) {
   return Zon::validPtr(Zon::Ptr<LdpFecTlvPrefixElement>(new LdpFecTlvPrefixElement(prefix)));
}

Zon::Ptr<LdpFecTlvHostAddrElement> ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr const & addr) {
   return Zon::validPtr(Zon::Ptr<LdpFecTlvHostAddrElement>(new LdpFecTlvHostAddrElement(addr)));
}

} // namespace Ldp
