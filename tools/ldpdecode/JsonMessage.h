// The fields of one received message as JSON values: its TLVs, each with its
// type, U and F bits and length and what the library reads from it (hello and
// session parameters, status, labels, FEC elements, address lists, path vector,
// capabilities). Everything is read through the parsers and the wire views of
// libLdp; nothing here decodes bytes itself.
#pragma once

#include <cstdint>

#include "JsonWriter.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/wire/LdpWireEnums.h"

namespace LdpDecode {

// "statusCode": number, "status": name.
void writeStatusCode(JsonWriter & w, Ldp::LdpStatusCode code);
// The message's TLVs as the member "tlvs" (an array in message order); nothing
// when the message's TLVs were not split (its header step failed).
void writeMessageTlvs(JsonWriter & w, Ldp::LdpMsgParser const & msg);

} // namespace LdpDecode
