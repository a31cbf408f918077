// What the Address and Address Withdraw message parsers share: one Address List
// TLV, first of the message, kept as an object that references the packet.
#pragma once

#include <cstdint>
#include <utility>

#include "ldp/parser/LdpAddressListTlvParser.h"
#include "ldp/parser/LdpMsgParser.h"

namespace Ldp {

class LdpAddressListMsgParser : public LdpMsgParser {
 public:
   Zon::Ptr<LdpAddressListTlvParser> const & addressListTlv() const noexcept { return addressListTlv_; }
   void addressListTlvIs(Zon::Ptr<LdpAddressListTlvParser> t) noexcept { addressListTlv_ = std::move(t); }
   bool initialized() const noexcept { return initialized_; }

 protected:
   LdpAddressListMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : LdpMsgParser(pkt, offset) {}
   ~LdpAddressListMsgParser() override = default;

   // The message step of a message of type `own`; `typeAssertion` is the text
   // printed when the message is of another type.
   void addressListStep(LdpMsgType own, char const * typeAssertion);
   Zon::String8 addressListText(char const * title, char const * invalidPrefix) const;

 private:
   Zon::Ptr<LdpAddressListTlvParser> addressListTlv_;
   bool initialized_ = false;
};

} // namespace Ldp
