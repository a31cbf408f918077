// The typed TLV parser of LdpLabelReqMsgIdTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpLabelReqMsgIdTlvParser : public LdpTypedTlvParser<LdpLabelReqMsgIdTlv> {
 public:
   using Ptr = Zon::Ptr<LdpLabelReqMsgIdTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint32_t reqMsgId() const noexcept { return field([](auto const & t) { return t.reqMsgId(); }); }
};

extern template class LdpTypedTlvParser<LdpLabelReqMsgIdTlv>;

Zon::Ptr<LdpLabelReqMsgIdTlvParser> ldpLabelReqMsgIdTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);

} // namespace Ldp
