// The typed TLV parser of LdpStatusTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpStatusTlvParser : public LdpTypedTlvParser<LdpStatusTlv> {
 public:
   using Ptr = Zon::Ptr<LdpStatusTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   // E (bit 31) and F (bit 30) of the status word. The setters write the low bit
   // of their argument into the received buffer, keeping the other 31 bits.
   bool statusError() const noexcept { return field([](auto const & t) { return t.statusError(); }); }
   void statusErrorIs(unsigned bit) noexcept;
   bool statusForwardUnknown() const noexcept {
      return field([](auto const & t) { return t.statusForwardUnknown(); });
   }
   void statusForwardUnknownIs(unsigned bit) noexcept;
   // The low 30 bits of the status word.
   LdpStatusCode statusData() const noexcept { return field([](auto const & t) { return t.statusData(); }); }
   std::uint32_t msgId() const noexcept { return field([](auto const & t) { return t.msgId(); }); }
   LdpMsgType msgType() const noexcept { return field([](auto const & t) { return t.msgType(); }); }
};

extern template class LdpTypedTlvParser<LdpStatusTlv>;

Zon::Ptr<LdpStatusTlvParser> ldpStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
