// The receive path's single entry for messages: the parser of the message at an
// offset, chosen by its type.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpMsgParser.h"
#include "vorin/Pkt.h"
#include "zon/Ptr.h"

namespace Ldp {

// Builds a base parser (the header step); when it is valid, returns a new parser
// of the message type's class, else the base parser with its fault. Keepalive and
// Capability messages are served by the base parser.
LdpMsgParser::Ptr ldpMsgParserGet(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
