// Raw LDP bytes written as hex text, as pasted from a bug report or a trace:
// "0001 001e 0a00 0001 0000 ...". Blanks, line breaks and the separators
// : , - | are ignored, as is a "0x" before a group of digits; '#' starts a
// comment that runs to the end of the line.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "PcapInput.h"

namespace LdpDecode {

// The bytes the text holds; InputError (with line and column) for any other
// character or an odd number of digits.
std::vector<std::uint8_t> parseHexText(std::string_view text);

} // namespace LdpDecode
