// Fuzz harness of the hex input: any text either is refused with an InputError
// or gives bytes, and those bytes written back as hex read back the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "HexInput.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   std::string_view const text(reinterpret_cast<char const *>(data), size);
   std::vector<std::uint8_t> bytes;
   try {
      bytes = LdpDecode::parseHexText(text);
   } catch (LdpDecode::InputError const &) {
      return 0;
   }
   // Two digits make a byte: never more bytes than half the text.
   if (bytes.size() * 2 > size) {
      std::abort();
   }
   std::string again;
   char two[4];
   for (std::uint8_t b : bytes) {
      std::snprintf(two, sizeof two, "%02x ", b);
      again += two;
   }
   if (LdpDecode::parseHexText(again) != bytes) {
      std::abort();
   }
   return 0;
}
