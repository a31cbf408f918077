// The fields of one received message as JSON values: its TLVs, each with its
// type, U and F bits and length and what the library reads from it (hello and
// session parameters, status, labels, FEC elements, address lists, path vector,
// capabilities). Everything is read through the parsers and the wire views of
// libLdp; nothing here decodes bytes itself.
#pragma once

#include <cstdint>

#include "JsonWriter.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/IpAddr.h"
#include "zon/Enum.h"

namespace LdpDecode {

// Addresses, prefixes and LDP identifiers as JSON strings in the library's
// spelling ("192.0.2.1", "10.0.0.0/8", "192.0.2.1:0"), IPv4 written in place.
void writeAddress(JsonWriter & w, Vorin::IpAddr a);
void writeAddress(JsonWriter & w, Vorin::IpGenAddr const & a);
void writePrefix(JsonWriter & w, Vorin::IpGenPrefix const & p);
void writeLdpId(JsonWriter & w, Ldp::LdpIdentifier const & id);

// The library's name of an enumerator as a JSON string, without a copy; its
// number in decimal (as the library spells it) for a value without a name.
template <Zon::RegisteredEnum E>
void writeEnumName(JsonWriter & w, E v) {
   if (auto const * e = Zon::EnumTraits<E>::info().byValue(static_cast<std::int64_t>(v))) {
      w.plainValue(e->name);
   } else {
      w.plainValue(std::string_view(Zon::valueToStrep(v)));
   }
}

// "statusCode": number, "status": name.
void writeStatusCode(JsonWriter & w, Ldp::LdpStatusCode code);
// The message's TLVs as the member "tlvs" (an array in message order); nothing
// when the message's TLVs were not split (its header step failed).
void writeMessageTlvs(JsonWriter & w, Ldp::LdpMsgParser const & msg);

} // namespace LdpDecode
