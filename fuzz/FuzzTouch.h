// Reads everything a parser exposes, so that the sanitizers see every access the
// agent could make after a parse.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpPduParser.h"
#include "vorin/Pkt.h"

namespace FuzzTouch {

// Keeps a value alive so that the compiler cannot drop the read.
void keep(std::uint64_t v) noexcept;
void keep(std::string const & s) noexcept;

void pdu(Ldp::LdpPduParser const & p);
void fec(Ldp::LdpFecTlvParser const & p);
// ldpMsgParserGet on the message, then the factory of its type's own class.
void message(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace FuzzTouch
