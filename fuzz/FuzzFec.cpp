// Fuzz harness of the FEC TLV parser: the bytes are one FEC TLV. It is parsed as
// the message parsers do (no protocol parameters, strict wildcard rule) and with
// parameters that relax the rule, and every element is read and printed.
#include <cstddef>
#include <cstdint>

#include "FuzzTouch.h"
#include "ldp/wire/LdpProtoParam.h"
#include "ldp/parser/LdpFecTlvParser.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   static Zon::Ptr<Ldp::LdpProtoParam const> const relaxed = [] {
      auto p = Zon::makePtr<Ldp::LdpProtoParam>(Zon::Name("fuzz"));
      p->fecTlvStrictPrefixWildcardOnlyElementIs(false);
      return Zon::Ptr<Ldp::LdpProtoParam const>(p);
   }();
   auto pkt = Vorin::Pkt::fromBytes({data, size});
   FuzzTouch::fec(*Ldp::ldpFecTlvParserFactory(pkt, 0));
   FuzzTouch::fec(*Ldp::ldpFecTlvParserFactory(pkt, 0, relaxed));
   return 0;
}
